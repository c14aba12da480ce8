// A checksum that finds torn and damaged bytes in files.

#pragma once

#include <cstdint>
#include <string_view>

namespace dq::platform {

/// CRC-32C (Castagnoli) of `bytes` behind those that `before` is the checksum of. Any thread.
std::uint32_t Checksum(std::string_view bytes, std::uint32_t before = 0);
/// The same on a processor that has no instruction for it.
std::uint32_t ChecksumByTables(std::string_view bytes, std::uint32_t before = 0);

}  // namespace dq::platform
