#include "dqlib/platform/posix/opened_file.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <utility>

#include "dqlib/platform/posix/file_replacement.h"
#include "dqlib/platform/posix/file_sharing.h"
#include "dqlib/platform/posix/native_path.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

Error LastError() { return ErrorOfFile(errno); }

/// Whether the path leads to the file; `kNotFound` is false.
Result<bool> IsAt(SystemCalls& calls, const std::string& native, const struct stat& file) {
  struct stat now;
  if (calls.Status(native.c_str(), &now) == 0) {
    return now.st_dev == file.st_dev && now.st_ino == file.st_ino;
  }
  return errno == ENOENT ? Result<bool>(false) : LastError();
}

/// Whether a path whose links end at `target` leads to a pipe or a terminal: the system has links
/// to those with names that aren't paths.
bool LeadsToDevice(SystemCalls& calls, const std::string& native, const std::string& target) {
  struct stat status;
  return target != native && calls.Status(native.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

/// Opens a file by a path that ends in no link, nor gets one meanwhile.
Result<int> OpenToWrite(SystemCalls& calls, const std::string& native, int flags, mode_t mode,
                        struct stat& status) {
  const Result<std::string> target = FollowLinks(native, calls);
  if (!target.ok()) return target.error;
  if (LeadsToDevice(calls, native, target.value)) {
    return OpenAtOnce(calls, native, flags, mode, status);
  }
  return OpenAtOnce(calls, target.value, flags | O_NOFOLLOW, mode, status);
}

/// Opens a file that is to be replaced, and notes whether that made it.
Result<int> OpenToReplace(SystemCalls& calls, const std::string& native, int flags, mode_t mode,
                          struct stat& status, OpenedFile& opened) {
  Result<std::string> target = FollowLinks(native, calls);
  if (!target.ok()) return target.error;
  if (LeadsToDevice(calls, native, target.value)) {
    opened.target = native;
    return OpenAtOnce(calls, native, flags & ~O_CREAT, mode, status);
  }
  opened.target = std::move(target.value);
  flags |= O_NOFOLLOW;
  const Result<int> fd = OpenAtOnce(calls, opened.target, flags & ~O_CREAT, mode, status);
  if (fd.error.code != ENOENT || (flags & O_CREAT) == 0) return fd;
  const Result<int> made = OpenAtOnce(calls, opened.target, flags | O_EXCL, mode, status);
  opened.made = made.ok();
  return made;
}

}  // namespace

Error ErrorOfFile(int error) {
  Error told = ErrorFromErrno(error);
  if (error == EISDIR) told.kind = ErrorKind::kAccessDenied;
  return told;
}

bool IsReadOnly(const struct stat& status) {
  return S_ISREG(status.st_mode) && (status.st_mode & S_IWUSR) == 0;
}

Result<int> OpenAtOnce(SystemCalls& calls, const std::string& native, int flags, mode_t mode,
                       struct stat& status) {
  const Result<int> opened = OpenFile(calls, native, flags | O_NONBLOCK | O_NOCTTY, mode);
  if (!opened.ok()) return ErrorOfFile(static_cast<int>(opened.error.code));
  FileDescriptor file(calls, opened.value);
  if (calls.StatusOf(file.get(), &status) != 0) return LastError();
  if (S_ISDIR(status.st_mode)) return ErrorOfFile(EISDIR);
  if (!S_ISREG(status.st_mode)) {
    const int former = calls.GetFlags(file.get());
    if (former < 0 || calls.SetFlags(file.get(), former & ~O_NONBLOCK) != 0) return LastError();
  }
  return file.Release();
}

Error OpenShared(SystemCalls& calls, const std::string& native, int flags, mode_t mode,
                 const OpenOptions& options, OpenedFile& opened) {
  // Claiming may wait for somebody who puts a new file in the place of this one. Then what is
  // written to the file that is open now would be lost, and what is denied for it denied to nobody.
  constexpr int kAttempts = 100;
  const bool must_stay = options.write || options.deny_write || options.deny_read;
  const auto deadline =
      std::chrono::steady_clock::now() + std::chrono::milliseconds(options.patience);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    opened = {};
    struct stat status;
    const Result<int> fd = options.replace
                               ? OpenToReplace(calls, native, flags, mode, status, opened)
                           : options.write ? OpenToWrite(calls, native, flags, mode, status)
                                           : OpenAtOnce(calls, native, flags, mode, status);
    if (options.replace && fd.error.code == EEXIST) continue;  // someone else was faster
    if (!fd.ok()) return fd.error;
    opened.descriptor = FileDescriptor(calls, fd.value);
    opened.ordinary = S_ISREG(status.st_mode);
    Error error;
    if (options.write && IsReadOnly(status)) error = ErrorFromErrno(EACCES);
    if (error.ok() && opened.ordinary) error = ShareFile(calls, fd.value, options, deadline);
    Result<bool> same = true;
    if (error.ok() && opened.ordinary && must_stay) same = IsAt(calls, native, status);
    if (error.ok()) error = same.error;
    if (error.ok() && same.value) return {};
    // What others hold isn't taken from them.
    if (error.code == EBUSY) opened.made = false;
    static_cast<void>(CloseOpened(calls, opened));
    if (!error.ok()) return error;
  }
  return ErrorFromErrno(EBUSY);
}

Error WriteOpened(SystemCalls& calls, OpenedFile& opened, std::string_view bytes,
                  std::uint64_t* position) {
  const int fd = opened.descriptor.get();
  const bool appends = opened.appending != nullptr;
  const auto lock = appends ? std::unique_lock(*opened.appending) : std::unique_lock<std::mutex>();
  const Error error = appends ? AppendFully(calls, fd, bytes) : WriteFully(calls, fd, bytes);
  if (error.ok() && position != nullptr) {
    *position = static_cast<std::uint64_t>(std::max<off_t>(calls.Seek(fd, 0, SEEK_CUR), 0));
  }
  return error;
}

Error ReplaceOpened(SystemCalls& calls, OpenedFile& opened,
                    const std::function<Error(int fd)>& write) {
  if (opened.target.empty()) return ErrorFromErrno(EBADF);  // not opened for that
  const int fd = opened.descriptor.get();
  if (!opened.ordinary) return write(fd);
  Replacement replacement;
  struct stat old;
  if (calls.StatusOf(fd, &old) != 0) return LastError();
  const Result<bool> same = IsAt(calls, opened.target, old);
  if (!same.ok()) return same.error;
  if (!same.value) return ErrorFromErrno(EBUSY);
  replacement.target = opened.target;
  replacement.old = old;
  return ReplaceFile(calls, replacement, write);
}

Error CloseOpened(SystemCalls& calls, OpenedFile& opened) {
  struct stat status;
  // Nobody else has it open. Should it stay, it is empty.
  if (opened.made && calls.StatusOf(opened.descriptor.get(), &status) == 0 &&
      IsAt(calls, opened.target, status).value) {
    static_cast<void>(calls.Unlink(opened.target.c_str()));
  }
  const int fd = opened.descriptor.Release();
  // An interrupted close has closed.
  return calls.Close(fd) == 0 || errno == EINTR ? Error{} : LastError();
}

}  // namespace dq::platform::posix
