#include "dqlib/platform/checksum.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace dq::platform {
namespace {

constexpr int kStride = 8;
using Tables = std::array<std::array<std::uint32_t, 256>, kStride>;

/// Table k carries a byte over k further bytes, so that eight bytes are taken in one step.
constexpr Tables MakeTables() {
  constexpr std::uint32_t kPolynomial = 0x82F63B78;
  Tables tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t value = byte;
    for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ (value & 1 ? kPolynomial : 0);
    tables[0][byte] = value;
  }
  for (std::size_t k = 1; k < kStride; ++k) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t value = tables[k - 1][byte];
      tables[k][byte] = (value >> 8) ^ tables[0][value & 0xFF];
    }
  }
  return tables;
}

constexpr Tables kTables = MakeTables();

constexpr std::uint32_t Byte(char c) { return static_cast<unsigned char>(c); }

#if defined(__x86_64__)
__attribute__((target("sse4.2"))) std::uint32_t ChecksumByInstruction(std::string_view bytes,
                                                                      std::uint32_t before) {
  std::uint64_t crc = ~before;
  const char* at = bytes.data();
  std::size_t left = bytes.size();
  for (; left >= sizeof(std::uint64_t); left -= sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    crc = __builtin_ia32_crc32di(crc, word);
    at += sizeof word;
  }
  auto rest = static_cast<std::uint32_t>(crc);
  for (; left > 0; --left) rest = __builtin_ia32_crc32qi(rest, static_cast<unsigned char>(*at++));
  return ~rest;
}
#endif

}  // namespace

std::uint32_t Checksum(std::string_view bytes, std::uint32_t before) {
#if defined(__x86_64__)
  static const bool has_instruction = __builtin_cpu_supports("sse4.2") != 0;
  if (has_instruction) return ChecksumByInstruction(bytes, before);
#endif
  return ChecksumByTables(bytes, before);
}

std::uint32_t ChecksumByTables(std::string_view bytes, std::uint32_t before) {
  std::uint32_t crc = ~before;
  std::size_t i = 0;
  for (; i + kStride <= bytes.size(); i += kStride) {
    const std::uint32_t low = crc ^ (Byte(bytes[i]) | Byte(bytes[i + 1]) << 8 |
                                     Byte(bytes[i + 2]) << 16 | Byte(bytes[i + 3]) << 24);
    crc = kTables[7][low & 0xFF] ^ kTables[6][low >> 8 & 0xFF] ^ kTables[5][low >> 16 & 0xFF] ^
          kTables[4][low >> 24] ^ kTables[3][Byte(bytes[i + 4])] ^ kTables[2][Byte(bytes[i + 5])] ^
          kTables[1][Byte(bytes[i + 6])] ^ kTables[0][Byte(bytes[i + 7])];
  }
  for (; i < bytes.size(); ++i) crc = (crc >> 8) ^ kTables[0][(crc ^ Byte(bytes[i])) & 0xFF];
  return ~crc;
}

}  // namespace dq::platform
