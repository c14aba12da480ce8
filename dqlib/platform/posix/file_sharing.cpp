#include "dqlib/platform/posix/file_sharing.h"

#include <cerrno>
#include <fcntl.h>
#include <random>
#include <unistd.h>

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

void Register(int fd, Role role, bool readable) {
  struct flock lock = LockOf(role, readable ? F_RDLCK : F_WRLCK, 0, 1);
  const off_t first = readable ? 0 : static_cast<off_t>(Random() % kRange);
  for (off_t i = 0; i < kRange; ++i) {
    lock.l_start = LockOf(role, F_RDLCK, (first + i) % kRange, 1).l_start;
    if (::fcntl(fd, F_OFD_SETLK, &lock) == 0) return;
    // Without locks in this file system, nothing can be registered.
    if (errno != EAGAIN && errno != EACCES && errno != EINTR) return;
  }
}

bool OthersHave(int fd, Role role) {
  struct flock lock = LockOf(role, F_WRLCK, 0, kRange);
  return ::fcntl(fd, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

void Unregister(int fd) {
  struct flock lock = LockOf(Role::kReader, F_UNLCK, 0, kRange * 4);
  static_cast<void>(::fcntl(fd, F_OFD_SETLK, &lock));  // giving up locks doesn't fail
}

bool Conflicts(int fd, const OpenOptions& options) {
  if (OthersHave(fd, Role::kReadDenier)) return true;
  if (options.write && OthersHave(fd, Role::kWriteDenier)) return true;
  if ((options.deny_write || options.deny_read) && OthersHave(fd, Role::kWriter)) return true;
  return options.deny_read && OthersHave(fd, Role::kReader);
}

}  // namespace

Error ShareFile(int fd, const OpenOptions& options) {
  // Everyone registers first and looks then. So of two that exclude each other one sees the other
  // in any case; where both see each other, they try again at different times.
  constexpr int kAttempts = 6;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (attempt > 0) ::usleep(100 + Random() % 1000);
    if (options.read) Register(fd, Role::kReader, options.read);
    if (options.write) Register(fd, Role::kWriter, options.read);
    if (options.deny_write) Register(fd, Role::kWriteDenier, options.read);
    if (options.deny_read) Register(fd, Role::kReadDenier, options.read);
    if (!Conflicts(fd, options)) return {};
    Unregister(fd);
  }
  return ErrorFromErrno(EBUSY);
}

Error CheckReadable(int fd) {
  return OthersHave(fd, Role::kReadDenier) ? ErrorFromErrno(EBUSY) : Error{};
}

}  // namespace dq::platform::posix
