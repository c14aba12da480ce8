#include "siblings/options/option_value.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "dqlib/framework/base/little_endian.h"
#include "dqlib/platform/ascii.h"

namespace dq {
namespace {

constexpr std::size_t kColorDigits = 6;

struct KindRow {
  OptionKind kind;
  std::string_view word;
};
constexpr KindRow kKinds[] = {
    {OptionKind::kBool, "bool"},           {OptionKind::kInt, "int"},
    {OptionKind::kString, "string"},       {OptionKind::kBinary, "binary"},
    {OptionKind::kDirectory, "directory"}, {OptionKind::kColor, "color"},
};

struct PlatformRow {
  DBMS platform;
  std::string_view word;
};
constexpr PlatformRow kPlatforms[] = {
    {DBMS_NONE, "none"}, {DBMS_SYBASE, "sybase"}, {DBMS_SQLSERVER, "sqlserver"},
    {DBMS_DB2, "db2"},   {DBMS_ORACLE, "oracle"}, {DBMS_DB2OS390, "db2os390"},
};

/// The number that the whole text is, written the one way in which numbers are written.
std::optional<int> NumberOf(std::string_view text) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  if (parsed.ec != std::errc{} || parsed.ptr != end) return std::nullopt;
  return std::to_string(number) == text ? std::optional(number) : std::nullopt;
}

int HexDigit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  const char letter = platform::AsciiLower(character);
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

bool IsHex(std::string_view text) {
  return std::ranges::all_of(text, [](char each) { return HexDigit(each) >= 0; });
}

}  // namespace

bool IsTextKind(OptionKind kind) {
  return kind == OptionKind::kString || kind == OptionKind::kDirectory ||
         kind == OptionKind::kColor;
}

bool IsOptionValue(OptionKind kind, std::string_view value) {
  switch (kind) {
    case OptionKind::kBool:
      return value == "0" || value == "1";
    case OptionKind::kInt:
      return NumberOf(value).has_value();
    case OptionKind::kString:
    case OptionKind::kDirectory:
      return value.find('\0') == std::string_view::npos;
    case OptionKind::kColor:
      return value.empty() || (value.size() == kColorDigits && IsHex(value));
    case OptionKind::kBinary:
      return true;
  }
  return false;
}

int OptionNumber(std::string_view value) { return NumberOf(value).value_or(0); }

std::string_view KindWord(OptionKind kind) {
  const auto* const row = std::ranges::find(kKinds, kind, &KindRow::kind);
  return row == std::end(kKinds) ? std::string_view() : row->word;
}

std::optional<OptionKind> KindOfWord(std::string_view word) {
  const auto* const row = std::ranges::find(kKinds, word, &KindRow::word);
  return row == std::end(kKinds) ? std::nullopt : std::optional(row->kind);
}

std::string_view PlatformWord(DBMS platform) {
  const auto* const row = std::ranges::find(kPlatforms, platform, &PlatformRow::platform);
  return row == std::end(kPlatforms) ? std::string_view() : row->word;
}

std::optional<DBMS> PlatformOfWord(std::string_view word) {
  const auto* const row = std::ranges::find(kPlatforms, word, &PlatformRow::word);
  return row == std::end(kPlatforms) ? std::nullopt : std::optional(row->platform);
}

std::string HexOfBytes(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string digits;
  digits.reserve(bytes.size() * 2);
  for (const char each : bytes) {
    const auto byte = static_cast<unsigned char>(each);
    digits += kDigits[byte >> 4];
    digits += kDigits[byte & 0xF];
  }
  return digits;
}

std::optional<std::string> BytesOfHex(std::string_view digits) {
  if (digits.size() % 2 != 0 || !IsHex(digits)) return std::nullopt;
  std::string bytes;
  bytes.reserve(digits.size() / 2);
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    bytes += static_cast<char>(HexDigit(digits[i]) << 4 | HexDigit(digits[i + 1]));
  }
  return bytes;
}

KeptValue KeepOptionValue(OptionKind kind, const OptionValue& value) {
  if (kind == OptionKind::kBinary) return {REGISTRY_BINARY, value};
  if (IsTextKind(kind)) return {REGISTRY_STRING, value + '\0'};
  const auto number = static_cast<DWORD>(OptionNumber(value));
  return {REGISTRY_DWORD, std::string(detail::AsText(detail::ToLittleEndian(number)))};
}

std::optional<OptionValue> ReadKeptValue(OptionKind kind, DWORD type, std::string_view data) {
  OptionValue value(data);
  if (kind == OptionKind::kBinary) {
    return type == REGISTRY_BINARY ? std::optional(value) : std::nullopt;
  }
  if (IsTextKind(kind)) {
    if (type != REGISTRY_STRING) return std::nullopt;
    // The zero behind a text may or may not be part of the data.
    if (value.ends_with('\0')) value.pop_back();
  } else {
    if (type != REGISTRY_DWORD || data.size() != sizeof(DWORD)) return std::nullopt;
    value = std::to_string(static_cast<std::int32_t>(detail::FromLittleEndian<DWORD>(data)));
  }
  return IsOptionValue(kind, value) ? std::optional(value) : std::nullopt;
}

}  // namespace dq
