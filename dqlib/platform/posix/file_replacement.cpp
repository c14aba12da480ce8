#include "dqlib/platform/posix/file_replacement.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// While it is being filled, nobody may read more of a file than of the one that it replaces.
constexpr mode_t kWhileFilled = 0600;

Error FillFile(SystemCalls& calls, const Replacement& replacement, int fd,
               const std::function<Error(int fd)>& write) {
  if (const Error error = write(fd); !error.ok()) return error;
  if (replacement.old) {
    const struct stat& old = *replacement.old;
    // Only a privileged user can give a file away. For others it stays their own, with the same
    // permissions, as with any program that writes a file anew.
    if (old.st_uid != ::geteuid() || old.st_gid != ::getegid()) {
      static_cast<void>(::fchown(fd, old.st_uid, old.st_gid) == 0);
    }
    const mode_t mode = old.st_mode & 07777;
    if (mode != kWhileFilled && calls.ChangeMode(fd, mode) != 0) return ErrorFromErrno(errno);
  }
  while (calls.Sync(fd) != 0) {
    if (errno != EINTR) return ErrorFromErrno(errno);
  }
  return {};
}

}  // namespace

Error ReplaceFile(SystemCalls& calls, const Replacement& replacement,
                  const std::function<Error(int fd)>& write) {
  const char* const temporary = replacement.temporary.c_str();
  const mode_t mode = replacement.old ? kWhileFilled : replacement.mode;
  const Result<int> fd =
      OpenFile(calls, replacement.temporary, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
  if (!fd.ok()) return fd.error;
  Error error;
  {
    const FileDescriptor file(calls, fd.value);
    error = FillFile(calls, replacement, file.get(), write);
  }
  if (error.ok() && replacement.only_new) {
    error = RenameToNew(replacement.temporary, replacement.target);
  } else if (error.ok() && calls.Rename(temporary, replacement.target.c_str()) != 0) {
    error = ErrorFromErrno(errno);
  }
  if (!error.ok()) {
    // The first error is the one to tell; a file that can't be removed harms nothing.
    static_cast<void>(calls.Unlink(temporary));
    return error;
  }
  if (!replacement.sync_directory) return {};
  error = SyncDirectory(calls, DirectoryOf(replacement.target));
  // Not every file system can sync directories, and not every directory may be read.
  return error.code == EINVAL || error.code == EACCES ? Error{} : error;
}

Error RenameToNew(const std::string& from, const std::string& to) {
#ifdef RENAME_NOREPLACE
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
  if (errno != EINVAL && errno != ENOSYS) return ErrorFromErrno(errno);
#endif
  // The file system can't do it in one step.
  struct stat status;
  if (::lstat(to.c_str(), &status) == 0) return ErrorFromErrno(EEXIST);
  return ::rename(from.c_str(), to.c_str()) == 0 ? Error{} : ErrorFromErrno(errno);
}

std::string TemporaryBeside(const std::string& target) {
  static std::atomic<unsigned> counter = 0;
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);  // differs from that of a dead process of the same id
  char name[64];
  std::snprintf(name, sizeof name, "/.dq%x-%x-%lx.tmp", static_cast<unsigned>(::getpid()),
                counter.fetch_add(1), static_cast<unsigned long>(now.tv_nsec));
  return DirectoryOf(target) + name;
}

std::string DirectoryOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace dq::platform::posix
