// Characters as they are drawn: one by one, with what a font calls them.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "dqlib/platform/code_page.h"

namespace dq::detail {

/// Stands for a character whose code isn't known.
inline constexpr char32_t kUnknownCharacter = 0xFFFD;

/// One character of a text.
struct DrawnCharacter {
  /// Its bytes.
  std::size_t size = 1;
  /// Its code in Unicode. A byte that begins no character of UTF-8, and one of a page with lead
  /// bytes that isn't ASCII, is `kUnknownCharacter`.
  char32_t code = kUnknownCharacter;
};

/// The first character of `text`, which isn't empty. In the page 0 it may be one of UTF-8.
DrawnCharacter FirstCharacter(std::string_view text, const platform::CodePage& page);

/// The byte of a character in the page 1252; none if it has none.
std::optional<unsigned char> WesternByte(char32_t code);

/// A text in UTF-16, high bytes first.
std::string BigEndianUtf16(std::string_view text, const platform::CodePage& page);

}  // namespace dq::detail
