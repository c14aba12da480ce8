#include "dqlib/platform/posix/file_replacement.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <exception>
#include <fcntl.h>
#include <mutex>
#include <set>
#include <sys/file.h>
#include <tuple>
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
      static_cast<void>(calls.ChangeOwner(fd, old.st_uid, old.st_gid));
    }
    const mode_t mode = old.st_mode & 07777;
    if (mode != kWhileFilled && calls.ChangeMode(fd, mode) != 0) return ErrorFromErrno(errno);
  }
  while (calls.Sync(fd) != 0) {
    if (errno != EINTR) return ErrorFromErrno(errno);
  }
  return {};
}

/// A file that is being filled.
struct Temporary {
  std::string path;
  FileDescriptor file;
};

// Temporary files that are made up have names of this form behind their stem, a number of the
// process, one of the file and one of the time, which differs from that of a dead process of the
// same number. As long as their process lives they are locked, by which leftovers are told from
// them: the process could be one of another machine.
constexpr char kNameFormat[] = "%x-%x-%lx.tmp";

std::string TemporaryBeside(const std::string& target, const std::string& stem) {
  static std::atomic<unsigned> counter = 0;
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  char name[64];
  std::snprintf(name, sizeof name, kNameFormat, static_cast<unsigned>(::getpid()),
                counter.fetch_add(1), static_cast<unsigned long>(now.tv_nsec));
  return DirectoryOf(target) + '/' + stem + name;
}

bool IsTemporaryName(const char* name, const std::string& stem) {
  if (!std::string_view(name).starts_with(stem)) return false;
  name += stem.size();
  unsigned process = 0;
  unsigned file = 0;
  unsigned long time = 0;
  if (std::sscanf(name, kNameFormat, &process, &file, &time) != 3) return false;
  char exact[64];
  std::snprintf(exact, sizeof exact, kNameFormat, process, file, time);
  return std::strcmp(name, exact) == 0;
}

/// Whether this is the process's first replacement in the directory, as far as that is remembered.
bool IsFirstIn(SystemCalls& calls, const std::string& directory) {
  constexpr std::size_t kMostRemembered = 1000;
  static std::mutex mutex;
  static auto& known = *new std::set<std::tuple<std::string, dev_t, ino_t>>;
  struct stat status;
  if (calls.Status(directory.c_str(), &status) != 0) return false;
  const std::lock_guard lock(mutex);
  if (known.size() >= kMostRemembered) known.clear();
  return known.emplace(directory, status.st_dev, status.st_ino).second;
}

/// Calls `visit` with the paths of the directory's temporary files, opened or the reason why not.
template <typename Visit>
void VisitTemporaries(SystemCalls& calls, const std::string& directory, const std::string& stem,
                      Visit visit) {
  DirectoryReader entries(calls, directory);
  while (const char* const name = entries.Next()) {
    if (!IsTemporaryName(name, stem)) continue;
    const std::string path = directory + '/' + name;
    const Result<int> fd = OpenFile(calls, path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    const FileDescriptor file = fd.ok() ? FileDescriptor(calls, fd.value) : FileDescriptor();
    visit(path, file, fd.error);
  }
}

/// Removes the temporary files of dead processes. What can't be removed harms nothing.
void RemoveLeftovers(SystemCalls& calls, const std::string& directory, const std::string& stem) {
  VisitTemporaries(calls, directory, stem,
                   [&](const std::string& path, const FileDescriptor& file, const Error& error) {
                     const bool is_left =
                         file.is_open()
                             ? calls.Lock(file.get(), LOCK_EX | LOCK_NB) == 0
                             : error.kind == ErrorKind::kAccessDenied && stem != kTemporaryStem;
                     if (is_left) static_cast<void>(calls.Unlink(path.c_str()));
                   });
}

Result<Temporary> MakeTemporary(SystemCalls& calls, const Replacement& replacement) {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW;
  constexpr int kAttempts = 10;
  const mode_t mode = replacement.old ? kWhileFilled : replacement.mode;
  Temporary temporary;
  if (!replacement.temporary.empty()) {
    // What is there and can't be removed somebody else has made, which must not keep this one from
    // writing.
    static_cast<void>(calls.Unlink(replacement.temporary.c_str()));
    temporary.path = replacement.temporary;
    const Result<int> fd = OpenFile(calls, temporary.path, kFlags, mode);
    if (fd.ok()) {
      temporary.file = FileDescriptor(calls, fd.value);
      return temporary;
    }
    if (fd.error.code != EEXIST) return fd.error;
  }
  const std::string directory = DirectoryOf(replacement.target);
  if (IsFirstIn(calls, directory)) RemoveLeftovers(calls, directory, kTemporaryStem);
  if (replacement.stem != kTemporaryStem) RemoveLeftovers(calls, directory, replacement.stem);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    temporary.path = TemporaryBeside(replacement.target, replacement.stem);
    const Result<int> fd = OpenFile(calls, temporary.path, kFlags, mode);
    if (fd.error.code == EEXIST) continue;
    if (!fd.ok()) return fd.error;
    temporary.file = FileDescriptor(calls, fd.value);
    // Between making and locking, somebody may take the file for a leftover.
    const bool taken = calls.Lock(fd.value, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    struct stat status;
    if (!taken && calls.StatusOf(fd.value, &status) == 0 && status.st_nlink > 0) return temporary;
    static_cast<void>(calls.Unlink(temporary.path.c_str()));
  }
  return ErrorFromErrno(EBUSY);
}

}  // namespace

Error ReplaceFile(SystemCalls& calls, const Replacement& replacement,
                  const std::function<Error(int fd)>& write) {
  Error error;
  const std::string directory = DirectoryOf(replacement.target);
  {
    const Result<Temporary> made = MakeTemporary(calls, replacement);
    if (!made.ok()) return made.error;
    const std::string& temporary = made.value.path;
    try {
      error = FillFile(calls, replacement, made.value.file.get(), write);
    } catch (const std::exception&) {
      error = ErrorOfException();
    }
    if (error.ok() && replacement.permission) error = replacement.permission();
    if (error.ok() && replacement.only_new) {
      error = RenameToNew(calls, temporary, replacement.target);
    } else if (error.ok() && calls.Rename(temporary.c_str(), replacement.target.c_str()) != 0) {
      error = ErrorFromErrno(errno);
    }
    if (!error.ok()) {
      // The first error is the one to tell; a file that can't be removed harms nothing.
      static_cast<void>(calls.Unlink(temporary.c_str()));
      return error;
    }
  }
  if (!replacement.sync_directory) return {};
  error = SyncDirectory(calls, directory);
  // Not every file system can sync directories, and not every directory may be read.
  if (error.code == EINVAL || error.code == EACCES) return {};
  // A new file can be taken back; an old one is gone.
  if (!error.ok() && replacement.only_new) {
    static_cast<void>(calls.Unlink(replacement.target.c_str()));
  }
  return error;
}

Error MakeEmptyFile(SystemCalls& calls, const std::string& path) {
  const std::string directory = DirectoryOf(path);
  const Result<Temporary> made = MakeTemporary(
      calls, {.target = path, .temporary = {}, .old = {}, .mode = kUserOnly, .permission = {}});
  if (!made.ok()) return made.error;
  // A file that its owner could not read would be worse than none.
  Error error = GiveToOwnerOf(calls, made.value.file.get(), directory);
  if (error.ok()) error = RenameToNew(calls, made.value.path, path);
  if (!error.ok()) static_cast<void>(calls.Unlink(made.value.path.c_str()));
  return error;
}

Error AwaitReplacements(SystemCalls& calls, LockPatience& patience, const std::string& directory,
                        const std::string& stem, std::chrono::nanoseconds deadline) {
  Error error;
  VisitTemporaries(calls, directory, stem,
                   [&](const std::string&, const FileDescriptor& file, const Error&) {
                     if (!file.is_open() || !error.ok()) return;
                     const Error locked = patience.Lock(file.get(), LOCK_SH, deadline);
                     if (locked.kind == ErrorKind::kBusy) error = locked;
                   });
  return error;
}

Error RenameToNew(SystemCalls& calls, const std::string& from, const std::string& to) {
  if (calls.RenameToNew(from.c_str(), to.c_str()) == 0) return {};
  if (errno != EINVAL && errno != ENOSYS) return ErrorFromErrno(errno);
  // The file system can't do it in one step, but can with two names of a file.
  if (calls.Link(from.c_str(), to.c_str()) == 0) {
    if (calls.Unlink(from.c_str()) == 0) return {};
    const Error error = ErrorFromErrno(errno);
    static_cast<void>(calls.Unlink(to.c_str()));
    return error;
  }
  const bool cannot_link = errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS;
  if (!cannot_link) return ErrorFromErrno(errno);
  // A directory, or a file system that has no links.
  struct stat status;
  if (calls.LinkStatus(to.c_str(), &status) == 0) return ErrorFromErrno(EEXIST);
  if (errno != ENOENT) return ErrorFromErrno(errno);
  return calls.Rename(from.c_str(), to.c_str()) == 0 ? Error{} : ErrorFromErrno(errno);
}

std::string DirectoryOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace dq::platform::posix
