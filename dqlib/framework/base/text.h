// Small steps between the forms that texts and places in them have.

#pragma once

#include <cstddef>
#include <string_view>

namespace dq::detail {

/// The zero-ended text as a view; "" for null.
constexpr std::string_view OrEmpty(const char* text) { return text == nullptr ? "" : text; }

/// The byte that a character is, 0 to 255.
constexpr unsigned char Byte(char character) { return static_cast<unsigned char>(character); }

/// A place in a text as callers of the string classes have it: -1 for `npos`.
constexpr int ToIndex(std::size_t position) {
  return position == std::string_view::npos ? -1 : static_cast<int>(position);
}

}  // namespace dq::detail
