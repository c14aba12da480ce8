// Case of ASCII letters, for names that are compared without regard to it whatever the locale.

#pragma once

#include <algorithm>
#include <string_view>

namespace dq::platform {

constexpr char AsciiLower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                              : character;
}

constexpr char AsciiUpper(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - ('a' - 'A'))
                                              : character;
}

/// Whether the texts are equal but for the case of ASCII letters.
constexpr bool EqualIgnoringCase(std::string_view left, std::string_view right) {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(),
                    [](char l, char r) { return AsciiLower(l) == AsciiLower(r); });
}

}  // namespace dq::platform
