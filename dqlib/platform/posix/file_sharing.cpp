#include "dqlib/platform/posix/file_sharing.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <random>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

// Each thing that can be registered has a range of bytes far behind the end of any file. Who
// registers it locks one byte of the range, and who must know whether anyone else did asks for a
// lock on the whole of it. A file open for reading takes a shared lock, so all of them lock the
// first byte; one open only for writing can have exclusive locks alone and takes a free byte.
constexpr off_t kBase = off_t{1} << 62;
constexpr off_t kRange = 4096;

enum class Role { kReader, kWriter, kWriteDenier, kReadDenier };

struct flock LockOf(Role role, short type, off_t slot, off_t size) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = kBase + static_cast<off_t>(role) * kRange + slot;
  lock.l_len = size;
  return lock;
}

unsigned Random() {
  thread_local std::minstd_rand generator(std::random_device{}());
  return static_cast<unsigned>(generator());
}

/// Whether the last call says that this file system has no locks, so that nothing can be denied.
bool HasNoLocks() {
  return errno == EINVAL || errno == ENOLCK || errno == ENOSYS || errno == ENOTSUP;
}

Error Register(SystemCalls& calls, int fd, Role role, bool readable) {
  struct flock lock = LockOf(role, readable ? F_RDLCK : F_WRLCK, 0, 1);
  const off_t first = readable ? 0 : static_cast<off_t>(Random() % kRange);
  for (off_t i = 0; i < kRange; ++i) {
    lock.l_start = LockOf(role, F_RDLCK, (first + i) % kRange, 1).l_start;
    if (calls.LockRange(fd, F_OFD_SETLK, &lock) == 0 || HasNoLocks()) return {};
    if (errno != EAGAIN && errno != EACCES && errno != EINTR) return ErrorFromErrno(errno);
  }
  return ErrorFromErrno(EBUSY);
}

/// `kBusy` if others have registered for that.
Error CheckNoOthers(SystemCalls& calls, int fd, Role role) {
  struct flock lock = LockOf(role, F_WRLCK, 0, kRange);
  while (calls.LockRange(fd, F_OFD_GETLK, &lock) != 0) {
    if (HasNoLocks()) return {};
    if (errno != EINTR) return ErrorFromErrno(errno);
  }
  return lock.l_type == F_UNLCK ? Error{} : ErrorFromErrno(EBUSY);
}

void Unregister(SystemCalls& calls, int fd) {
  struct flock lock = LockOf(Role::kReader, F_UNLCK, 0, kRange * 4);
  static_cast<void>(calls.LockRange(fd, F_OFD_SETLK, &lock));  // giving up locks doesn't fail
}

/// Each role, and whether a file so opened takes it and excludes it.
struct Claim {
  Role role;
  bool takes;
  bool excludes;
};

Error TryToShare(SystemCalls& calls, int fd, const OpenOptions& options) {
  const Claim claims[] = {
      {Role::kReader, options.read, options.deny_read},
      {Role::kWriter, options.write, options.deny_write || options.deny_read},
      {Role::kWriteDenier, options.deny_write, options.write},
      {Role::kReadDenier, options.deny_read, true},
  };
  Error error;
  for (const Claim& claim : claims) {
    if (error.ok() && claim.takes) error = Register(calls, fd, claim.role, options.read);
  }
  for (const Claim& claim : claims) {
    if (error.ok() && claim.excludes) error = CheckNoOthers(calls, fd, claim.role);
  }
  return error;
}

}  // namespace

Error ShareFile(SystemCalls& calls, int fd, const OpenOptions& options,
                std::chrono::steady_clock::time_point deadline) {
  // Everyone registers first and looks then. So of two that exclude each other one sees the other
  // in any case; where both see each other, they try again at different times.
  constexpr int kAttempts = 6;
  constexpr int kLongestWait = 16;
  for (int attempt = 1;; ++attempt) {
    const Error error = TryToShare(calls, fd, options);
    if (error.ok()) return {};
    Unregister(calls, fd);
    const bool in_time = attempt < kAttempts || std::chrono::steady_clock::now() < deadline;
    if (error.code != EBUSY || !in_time) return error;
    const int longer = std::clamp(attempt - kAttempts, 1, kLongestWait);
    calls.Pause(100 + Random() % (1000 * static_cast<unsigned>(longer)));
  }
}

Error CheckReadable(SystemCalls& calls, int fd) {
  return CheckNoOthers(calls, fd, Role::kReadDenier);
}

}  // namespace dq::platform::posix
