// The kinds of options and the values that fit them.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dqlib/dbvocab/dbms.h"
#include "dqlib/platform/registry.h"

namespace dq {

enum class OptionKind { kBool, kInt, kString, kBinary, kDirectory, kColor };

/// A value in the form in which programs hand it around: "0" or "1"; decimal digits of a 32-bit
/// number, with a "-" before them if it is below 0; the text itself; bytes; a path; or a colour as
/// six hexadecimal digits rrggbb. "" is a value of every kind but the first two.
using OptionValue = std::string;

/// Whether options of the kind hold a text that programs read as such: texts, paths and colours.
bool IsTextKind(OptionKind kind);

/// Whether the text is a value of the kind. Texts and paths hold no zero.
bool IsOptionValue(OptionKind kind, std::string_view value);

/// The number of a bool or int value; 0 for any other text.
int OptionNumber(std::string_view value);

/// The words by which options files and commands name kinds and platforms: "bool", "int", "string",
/// "binary", "directory", "color"; "none", "sybase", "sqlserver", "db2", "oracle", "db2os390". A
/// kind or platform that has no word gets "".
std::string_view KindWord(OptionKind kind);
std::optional<OptionKind> KindOfWord(std::string_view word);
std::string_view PlatformWord(DBMS platform);
std::optional<DBMS> PlatformOfWord(std::string_view word);

/// Bytes as pairs of hexadecimal digits, and the opposite; no value if the text is anything else.
std::string HexOfBytes(std::string_view bytes);
std::optional<std::string> BytesOfHex(std::string_view digits);

/// How a value is kept in the registry: a DWORD, a zero-ended text, or bytes.
struct KeptValue {
  DWORD type = REGISTRY_NONE;
  std::string data;
};
KeptValue KeepOptionValue(OptionKind kind, const OptionValue& value);
/// The value that was kept; none if type or data are no value of the kind.
std::optional<OptionValue> ReadKeptValue(OptionKind kind, DWORD type, std::string_view data);

}  // namespace dq
