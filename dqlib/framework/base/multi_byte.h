// Helpers for text in the process's multi-byte code page.
//
// In a single-byte code page, the usual case, they work byte by byte at the speed of the C library.
// In a code page with lead bytes a two-byte character is never split: its second byte is not taken
// for a character, and a search never finds a hit that begins in the middle of a character.
//
// White space is the blank and the characters 9 to 13, whatever the code page. Bytes count as
// unsigned. Texts are bytes; a result is a byte index, or `npos`. Any thread.

#pragma once

#include <string>
#include <string_view>

#include "dqlib/platform/code_page.h"

namespace dq::multi_byte {

inline constexpr std::size_t npos = std::string_view::npos;

/// The process's code page: that of the locale in force.
const platform::CodePage& CurrentCodePage();

/// Blank, tab, line feed, vertical tab, form feed or carriage return.
constexpr bool IsSpace(unsigned char byte) { return byte == 32 || (byte >= 9 && byte <= 13); }

/// Where `character` first stands at or behind `start`, which may be the length.
std::size_t Find(std::string_view text, char character, std::size_t start = 0);

/// Where `wanted` first stands at or behind `start`, which may be the length. An empty `wanted` is
/// found at once.
std::size_t Find(std::string_view text, std::string_view wanted, std::size_t start = 0);

/// Where `character` last stands.
std::size_t ReverseFind(std::string_view text, char character);

/// Compares by unsigned bytes; below 0, 0 or above 0.
int Compare(std::string_view left, std::string_view right);

/// Compares lower-case forms by unsigned bytes; below 0, 0 or above 0.
int CompareNoCase(std::string_view left, std::string_view right);

/// Cuts `text` at any of the delimiter characters, as the run-time's tokeniser does: runs count as
/// one, leading ones are skipped, no token is empty. `position` is where to go on and starts at 0.
/// Returns false, and leaves `token`, when there are no more.
bool NextToken(std::string_view text, std::string_view delimiters, std::size_t& position,
               std::string_view& token);

/// Case of a whole text.
void MakeLower(std::string& text);
void MakeUpper(std::string& text);
std::string Lower(std::string_view text);
std::string Upper(std::string_view text);

/// `text` without white space at its end, or at its start.
std::string_view TrimRight(std::string_view text);
std::string_view TrimLeft(std::string_view text);

}  // namespace dq::multi_byte
