#include "dqlib/platform/posix/file_bytes.h"

#include <algorithm>
#include <cerrno>
#include <memory>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// More fits neither a text nor what anyone waits for.
constexpr std::size_t kMaxWholeFile = 0x7FFFFFFF;

}  // namespace

Error ReadToEnd(SystemCalls& calls, int fd, const struct stat& status, std::string& bytes) {
  // A string is filled with zeros as it grows; in steps of this size they don't leave the cache.
  constexpr std::size_t kStep = 256 * 1024;
  if (status.st_size > static_cast<off_t>(kMaxWholeFile)) return ErrorFromErrno(EFBIG);
  const std::size_t expected =
      S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
  std::size_t size = 0;
  if (bytes.size() > expected) bytes.resize(expected);
  bytes.reserve(expected);
  for (;;) {
    if (size == bytes.size()) {
      const std::size_t step = std::clamp(size, std::size_t{4096}, kStep);
      bytes.resize(expected > size ? std::min(expected, size + kStep) : size + step);
    }
    const ssize_t count = calls.Read(fd, bytes.data() + size, bytes.size() - size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return ErrorFromErrno(errno);
    size += static_cast<std::size_t>(count);
    if (size > kMaxWholeFile) return ErrorFromErrno(EFBIG);
    if (count == 0 || size == expected) break;
  }
  bytes.resize(size);
  return {};
}

Error CopyBytes(SystemCalls& calls, int from, int to) {
  constexpr std::size_t kStep = 256 * 1024;
  const auto buffer = std::make_unique<char[]>(kStep);
  for (;;) {
    const ssize_t count = calls.Read(from, buffer.get(), kStep);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return ErrorFromErrno(errno);
    if (count == 0) return {};
    const std::string_view bytes(buffer.get(), static_cast<std::size_t>(count));
    if (const Error error = WriteFully(calls, to, bytes); !error.ok()) return error;
  }
}

}  // namespace dq::platform::posix
