#include "dqlib/framework/base/drawn_character.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "dqlib/framework/base/text.h"

namespace dq::detail {
namespace {

constexpr UINT kWesternPage = 1252;

/// What the bytes 80h to 9Fh are in the page 1252; 0 for none.
constexpr std::array<char16_t, 32> kWesternSigns = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80h
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,       // 88h
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90h
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,  // 98h
};
constexpr unsigned char kFirstSign = 0x80;
constexpr unsigned char kBehindSigns = 0xA0;

char32_t WesternCode(unsigned char byte) {
  if (byte < kFirstSign || byte >= kBehindSigns) return byte;
  const char32_t code = kWesternSigns[byte - kFirstSign];
  return code == 0 ? kUnknownCharacter : code;
}

DrawnCharacter FirstOfUtf8(std::string_view text) {
  const unsigned char lead = Byte(text.front());
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < size) return {};
  char32_t code = lead & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) {
    if ((Byte(text[i]) & 0xC0) != 0x80) return {};
    code = code << 6 | (Byte(text[i]) & 0x3FU);
  }
  // The shortest form alone counts, and halves of UTF-16 are no characters.
  const bool is_short = size == 3 ? code < 0x800 : size == 4 && code < 0x10000;
  if (is_short || (code >= 0xD800 && code < 0xE000) || code > 0x10FFFF) return {};
  return {size, code};
}

}  // namespace

DrawnCharacter FirstCharacter(std::string_view text, const platform::CodePage& page) {
  const unsigned char first = Byte(text.front());
  if (first < 0x80) return {1, first};
  if (page.number() == kWesternPage) return {1, WesternCode(first)};
  if (!page.IsSingleByte()) return {page.CharacterSize(text), kUnknownCharacter};
  return FirstOfUtf8(text);
}

std::optional<unsigned char> WesternByte(char32_t code) {
  if (code < kFirstSign || (code >= kBehindSigns && code <= 0xFF)) {
    return static_cast<unsigned char>(code);
  }
  const auto sign = std::ranges::find(kWesternSigns, code);
  if (sign == kWesternSigns.end()) return std::nullopt;
  return static_cast<unsigned char>(kFirstSign + std::distance(kWesternSigns.begin(), sign));
}

std::string BigEndianUtf16(std::string_view text, const platform::CodePage& page) {
  std::string units;
  const auto append = [&units](char32_t unit) {
    units += static_cast<char>(unit >> 8);
    units += static_cast<char>(unit & 0xFF);
  };
  while (!text.empty()) {
    const DrawnCharacter character = FirstCharacter(text, page);
    if (character.code < 0x10000) {
      append(character.code);
    } else {
      append(0xD800 + ((character.code - 0x10000) >> 10));
      append(0xDC00 + (character.code & 0x3FF));
    }
    text.remove_prefix(character.size);
  }
  return units;
}

}  // namespace dq::detail
