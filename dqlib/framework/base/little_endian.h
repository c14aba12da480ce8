// Whole numbers as bytes, lowest first: the order of archives, of pictures and of the registry's
// numbers.

#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <string_view>

namespace dq::detail {

template <std::unsigned_integral T>
constexpr std::array<char, sizeof(T)> ToLittleEndian(T value) {
  std::array<char, sizeof(T)> bytes{};
  for (std::size_t i = 0; i < sizeof(T); ++i) bytes[i] = static_cast<char>(value >> 8 * i & 0xFF);
  return bytes;
}

/// The number at the start of the bytes, of which there are enough.
template <std::unsigned_integral T>
constexpr T FromLittleEndian(std::string_view bytes) {
  T value = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i) {
    value = static_cast<T>(value | T{static_cast<unsigned char>(bytes[i])} << 8 * i);
  }
  return value;
}

/// The bytes as a view, for those who take texts; valid as long as they are.
template <std::size_t size>
constexpr std::string_view AsText(const std::array<char, size>& bytes) {
  return {bytes.data(), size};
}

}  // namespace dq::detail
