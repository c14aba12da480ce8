#include "dqlib/platform/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>

#include "dqlib/platform/modules.h"
#include "dqlib/platform/paths.h"
#include "dqlib/platform/posix/file_bytes.h"
#include "dqlib/platform/posix/file_replacement.h"
#include "dqlib/platform/posix/file_search.h"
#include "dqlib/platform/posix/file_sharing.h"
#include "dqlib/platform/posix/native_path.h"
#include "dqlib/platform/posix/opened_file.h"
#include "dqlib/platform/posix/system_calls.h"
#include "dqlib/platform/posix/system_services.h"
#include "dqlib/platform/posix/volumes.h"

namespace dq::platform::posix {
namespace {

constexpr mode_t kEveryone = 0666;

Error LastError() { return ErrorOfFile(errno); }

Error ResultOf(int returned) { return returned == 0 ? Error{} : LastError(); }

std::string_view NameOf(std::string_view native) {
  return native.substr(native.rfind('/') + 1);  // npos + 1 is 0
}

class PosixFiles : public Files {
 public:
  explicit PosixFiles(SystemCalls& calls) : calls_(calls) {}

  Result<HANDLE> Open(std::string_view path, const OpenOptions& options) override;
  Result<std::size_t> Read(HANDLE file, std::span<char> buffer) override;
  Error Write(HANDLE file, std::string_view bytes) override;
  Result<std::uint64_t> WriteAndTell(HANDLE file, std::string_view bytes) override;
  Result<std::uint64_t> Seek(HANDLE file, std::int64_t offset, SeekOrigin origin) override;
  Result<std::uint64_t> Length(HANDLE file) override;
  Error SetLength(HANDLE file, std::uint64_t length) override;
  Error Flush(HANDLE file) override;
  Error Close(HANDLE file) override;

  Error ReadAll(std::string_view path, std::string& bytes) override;
  Error Replace(std::string_view path, std::string_view bytes, bool user_only) override;
  Error ReplaceAndClose(HANDLE file, std::string_view bytes) override;
  Error ReplaceByAndClose(HANDLE file, HANDLE source) override;
  Result<FileStatus> Status(std::string_view path) override;
  Error SetAttributes(std::string_view path, DWORD attributes) override;
  Error SetModified(std::string_view path, std::int64_t seconds) override;
  Error Delete(std::string_view path) override;
  Error Rename(std::string_view from, std::string_view to) override;
  Error Copy(std::string_view from, std::string_view to, bool overwrite) override;
  Error MakeDirectory(std::string_view path) override;
  Error RemoveDirectory(std::string_view path) override;
  Result<std::vector<FoundFile>> Find(std::string_view pattern) override;

  std::string CurrentDirectory() override;
  Error SetCurrentDirectory(std::string_view path) override;
  std::string TempDirectory() override;
  Result<std::string> MakeTempFile(std::string_view directory, std::string_view prefix) override;
  Result<std::string> FullPath(std::string_view path) override;
  Result<std::string> SearchPath(std::string_view name) override;
  Result<std::string> UniversalName(std::string_view path) override;
  UINT KindOfDrive(std::string_view drive) override;
  Result<VolumeFacts> Volume(std::string_view path) override;

 private:
  using OpenedPtr = std::shared_ptr<OpenedFile>;

  /// Null for a handle that is closed or never was open. `Forget` makes it one.
  OpenedPtr Opened(HANDLE file);
  OpenedPtr Forget(HANDLE file);
  Error ReplaceForgotten(HANDLE file, const std::function<Error(int fd)>& write);

  SystemCalls& calls_;
  std::mutex mutex_;
  std::unordered_map<HANDLE, OpenedPtr> files_;
  HANDLE last_handle_ = kNoHandle;
};

const Error kBadHandle{ErrorKind::kInvalidArgument, EBADF};

PosixFiles::OpenedPtr PosixFiles::Opened(HANDLE file) {
  const std::lock_guard lock(mutex_);
  const auto found = files_.find(file);
  return found == files_.end() ? nullptr : found->second;
}

PosixFiles::OpenedPtr PosixFiles::Forget(HANDLE file) {
  const std::lock_guard lock(mutex_);
  const auto found = files_.find(file);
  if (found == files_.end()) return nullptr;
  OpenedPtr opened = std::move(found->second);
  files_.erase(found);
  return opened;
}

Result<HANDLE> PosixFiles::Open(std::string_view path, const OpenOptions& options) try {
  const Result<std::string> native = NativePath(path);
  if (!native.ok()) return native.error;
  if ((!options.read && !options.write) || (options.truncate && !options.write)) {
    return ErrorFromErrno(EINVAL);
  }
  int flags = options.write ? (options.read ? O_RDWR : O_WRONLY) : O_RDONLY;
  if (options.create) flags |= O_CREAT;
  if (options.append) flags |= O_APPEND;
  const auto opened = std::make_shared<OpenedFile>();
  HANDLE handle = kNoHandle;
  {
    // Before the file is made or emptied, because there may be no memory for it afterwards.
    const std::lock_guard lock(mutex_);
    handle = ++last_handle_;
    files_.emplace(handle, opened);
  }
  Error error;
  try {
    auto appending = options.append ? std::make_unique<std::mutex>() : nullptr;
    const mode_t mode = options.user_only ? kUserOnly : kEveryone;
    error = OpenShared(calls_, native.value, flags, mode, options, *opened);
    opened->appending = std::move(appending);
  } catch (const std::exception&) {
    error = ErrorOfException();
  }
  // Not by the flag that opens, so that a file that someone else holds isn't emptied.
  if (error.ok() && opened->ordinary && options.truncate &&
      calls_.Truncate(opened->descriptor.get(), 0) != 0) {
    error = LastError();
  }
  if (error.ok()) return handle;
  const std::lock_guard lock(mutex_);
  files_.erase(handle);
  return error;
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<std::size_t> PosixFiles::Read(HANDLE file, std::span<char> buffer) try {
  const OpenedPtr opened = Opened(file);
  if (!opened) return kBadHandle;
  std::size_t done = 0;
  while (done < buffer.size()) {
    const ssize_t count =
        calls_.Read(opened->descriptor.get(), buffer.data() + done, buffer.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return LastError();
    done += static_cast<std::size_t>(count);
    // A pipe or terminal gives what it has; asking again would wait.
    if (count == 0 || !opened->ordinary) break;
  }
  return done;
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::Write(HANDLE file, std::string_view bytes) try {
  const OpenedPtr opened = Opened(file);
  return opened ? WriteOpened(calls_, *opened, bytes, nullptr) : kBadHandle;
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<std::uint64_t> PosixFiles::WriteAndTell(HANDLE file, std::string_view bytes) try {
  const OpenedPtr opened = Opened(file);
  if (!opened) return kBadHandle;
  std::uint64_t position = 0;
  if (const Error error = WriteOpened(calls_, *opened, bytes, &position); !error.ok()) return error;
  return position;
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<std::uint64_t> PosixFiles::Seek(HANDLE file, std::int64_t offset, SeekOrigin origin) try {
  const OpenedPtr opened = Opened(file);
  if (!opened) return kBadHandle;
  const int whence = origin == SeekOrigin::kBegin     ? SEEK_SET
                     : origin == SeekOrigin::kCurrent ? SEEK_CUR
                                                      : SEEK_END;
  const off_t position = calls_.Seek(opened->descriptor.get(), offset, whence);
  if (position < 0) return LastError();
  return static_cast<std::uint64_t>(position);
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<std::uint64_t> PosixFiles::Length(HANDLE file) try {
  const OpenedPtr opened = Opened(file);
  struct stat status;
  if (!opened) return kBadHandle;
  if (calls_.StatusOf(opened->descriptor.get(), &status) != 0) return LastError();
  return static_cast<std::uint64_t>(status.st_size);
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::SetLength(HANDLE file, std::uint64_t length) try {
  const OpenedPtr opened = Opened(file);
  if (!opened) return kBadHandle;
  if (length > static_cast<std::uint64_t>(INT64_MAX)) return ErrorFromErrno(EINVAL);
  return ResultOf(calls_.Truncate(opened->descriptor.get(), static_cast<off_t>(length)));
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::Flush(HANDLE file) try {
  const OpenedPtr opened = Opened(file);
  if (!opened) return kBadHandle;
  const Error error = ResultOf(calls_.Sync(opened->descriptor.get()));
  // Pipes and terminals have no disk.
  return !opened->ordinary && error.code == EINVAL ? Error{} : error;
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::Close(HANDLE file) try {
  const OpenedPtr opened = Forget(file);
  return opened ? CloseOpened(calls_, *opened) : kBadHandle;
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::ReadAll(std::string_view path, std::string& bytes) try {
  const Result<std::string> native = NativePath(path);
  Error error = native.error;
  if (error.ok()) {
    struct stat status;
    const Result<int> fd = OpenAtOnce(calls_, native.value, O_RDONLY, 0, status);
    error = fd.error;
    if (fd.ok()) {
      const FileDescriptor file(calls_, fd.value);
      if (S_ISREG(status.st_mode)) error = CheckReadable(calls_, fd.value);
      if (error.ok()) error = ReadToEnd(calls_, fd.value, status, bytes);
    }
  }
  if (!error.ok()) bytes.clear();
  return error;
} catch (const std::exception&) {
  bytes.clear();
  return ErrorOfException();
}

Error PosixFiles::Replace(std::string_view path, std::string_view bytes, bool user_only) try {
  const Result<std::string> native = NativePath(path);
  if (!native.ok()) return native.error;
  const Result<std::string> target = FollowLinks(native.value, calls_);
  if (!target.ok()) return target.error;
  Replacement replacement;
  replacement.target = target.value;
  replacement.mode = user_only ? kUserOnly : kEveryone;
  struct stat old;
  if (calls_.Status(target.value.c_str(), &old) == 0) {
    if (S_ISDIR(old.st_mode)) return {ErrorKind::kAccessDenied, EISDIR};
    if (!S_ISREG(old.st_mode)) return ErrorFromErrno(EINVAL);
    if (IsReadOnly(old)) return ErrorFromErrno(EACCES);
    replacement.old = old;
  } else if (errno != ENOENT) {
    return LastError();
  }
  return ReplaceFile(calls_, replacement, [&](int fd) { return WriteFully(calls_, fd, bytes); });
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::ReplaceAndClose(HANDLE file, std::string_view bytes) try {
  return ReplaceForgotten(file, [&](int fd) { return WriteFully(calls_, fd, bytes); });
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::ReplaceByAndClose(HANDLE file, HANDLE source) try {
  return ReplaceForgotten(file, [&](int fd) {
    const OpenedPtr from = Opened(source);
    if (!from) return kBadHandle;
    const int source_fd = from->descriptor.get();
    return calls_.Seek(source_fd, 0, SEEK_SET) < 0 ? LastError() : CopyBytes(calls_, source_fd, fd);
  });
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::ReplaceForgotten(HANDLE file, const std::function<Error(int fd)>& write) {
  const OpenedPtr opened = Forget(file);
  if (!opened) return kBadHandle;
  const Error error = ReplaceOpened(calls_, *opened, write);
  const Error closed = CloseOpened(calls_, *opened);
  return error.ok() ? closed : error;
}

Result<FileStatus> PosixFiles::Status(std::string_view path) try {
  const Result<std::string> native = NativePath(path);
  if (!native.ok()) return native.error;
  struct stat status;
  if (calls_.Status(native.value.c_str(), &status) != 0) return LastError();
  return DescribeFile(NameOf(native.value), status);
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::SetAttributes(std::string_view path, DWORD attributes) try {
  const Result<std::string> native = NativePath(path);
  if (!native.ok()) return native.error;
  const Result<std::string> target = FollowLinks(native.value, calls_);
  if (!target.ok()) return target.error;
  struct stat status;
  if (calls_.Status(target.value.c_str(), &status) != 0) return LastError();
  const bool read_only = (attributes & FILE_READ_ONLY) != 0;
  if (read_only == ((status.st_mode & S_IWUSR) == 0)) return {};
  constexpr mode_t kAllWrite = S_IWUSR | S_IWGRP | S_IWOTH;
  const mode_t mode = status.st_mode & 07777;
  // Taking it back gives the right to write to the user alone: whether others had it is not known.
  return ResultOf(
      calls_.ChangeMode(target.value.c_str(), read_only ? mode & ~kAllWrite : mode | S_IWUSR));
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::SetModified(std::string_view path, std::int64_t seconds) try {
  const Result<std::string> native = NativePath(path);
  if (!native.ok()) return native.error;
  const Result<std::string> target = FollowLinks(native.value, calls_);
  if (!target.ok()) return target.error;
  const timespec times[] = {{0, UTIME_OMIT}, {static_cast<time_t>(seconds), 0}};
  return ResultOf(calls_.SetTimes(target.value.c_str(), times));
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::Delete(std::string_view path) try {
  const Result<std::string> native = NativePath(path);
  if (!native.ok()) return native.error;
  struct stat status;
  if (calls_.LinkStatus(native.value.c_str(), &status) != 0) return LastError();
  if (S_ISDIR(status.st_mode)) return {ErrorKind::kAccessDenied, EISDIR};
  if (IsReadOnly(status)) return ErrorFromErrno(EACCES);
  return ResultOf(calls_.Unlink(native.value.c_str()));
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::Rename(std::string_view from, std::string_view to) try {
  const Result<std::string> native_from = NativePath(from);
  const Result<std::string> native_to = NativePath(to);
  if (!native_from.ok()) return native_from.error;
  if (!native_to.ok()) return native_to.error;
  struct stat status;
  if (calls_.LinkStatus(native_from.value.c_str(), &status) != 0) return LastError();
  if (native_from.value == native_to.value) return {};
  const Error error = RenameToNew(calls_, native_from.value, native_to.value);
  if (error.code != EXDEV || !S_ISREG(status.st_mode)) return error;
  // To another volume a file goes as a copy.
  if (const Error copied = Copy(from, to, false); !copied.ok()) return copied;
  if (calls_.Unlink(native_from.value.c_str()) == 0) return {};
  const Error unlinked = LastError();
  // A file that stays isn't renamed, and what it was copied to goes again.
  static_cast<void>(calls_.Unlink(native_to.value.c_str()));
  return unlinked;
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::Copy(std::string_view from, std::string_view to, bool overwrite) try {
  const Result<std::string> source = NativePath(from);
  const Result<std::string> native_to = NativePath(to);
  if (!source.ok()) return source.error;
  if (!native_to.ok()) return native_to.error;
  struct stat status;
  const Result<int> fd = OpenAtOnce(calls_, source.value, O_RDONLY, 0, status);
  if (!fd.ok()) return fd.error;
  const FileDescriptor file(calls_, fd.value);
  if (!S_ISREG(status.st_mode)) return ErrorFromErrno(EINVAL);
  if (const Error error = CheckReadable(calls_, file.get()); !error.ok()) return error;

  const Result<std::string> target = FollowLinks(native_to.value, calls_);
  if (!target.ok()) return target.error;
  struct stat old;
  if (calls_.Status(target.value.c_str(), &old) == 0) {
    if (!overwrite) return ErrorFromErrno(EEXIST);
    if (S_ISDIR(old.st_mode)) return {ErrorKind::kAccessDenied, EISDIR};
    if (!S_ISREG(old.st_mode)) return ErrorFromErrno(EINVAL);
    if (old.st_dev == status.st_dev && old.st_ino == status.st_ino) return ErrorFromErrno(EINVAL);
    if (IsReadOnly(old)) return ErrorFromErrno(EACCES);
  } else if (errno != ENOENT) {
    return LastError();
  }
  // The copy has the time of its source, and its rights but those to run as someone else.
  Replacement replacement;
  replacement.target = target.value;
  replacement.mode = kUserOnly;
  replacement.only_new = !overwrite;
  return ReplaceFile(calls_, replacement, [&](int copy) {
    const Error copied = CopyBytes(calls_, file.get(), copy);
    if (!copied.ok()) return copied;
    const timespec times[] = {{0, UTIME_OMIT}, status.st_mtim};
    if (calls_.SetTimes(copy, times) != 0) return LastError();
    return ResultOf(calls_.ChangeMode(copy, status.st_mode & 0777));
  });
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::MakeDirectory(std::string_view path) try {
  const Result<std::string> native = NativePath(path);
  if (!native.ok()) return native.error;
  return ResultOf(calls_.MakeDirectory(native.value.c_str(), 0777));
} catch (const std::exception&) {
  return ErrorOfException();
}

Error PosixFiles::RemoveDirectory(std::string_view path) try {
  const Result<std::string> native = NativePath(path);
  if (!native.ok()) return native.error;
  return ResultOf(calls_.RemoveDirectory(native.value.c_str()));
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<std::vector<FoundFile>> PosixFiles::Find(std::string_view pattern) try {
  const Result<std::string> native = NativePath(pattern);
  if (!native.ok()) return native.error;
  return FindFiles(calls_, native.value);
} catch (const std::exception&) {
  return ErrorOfException();
}

std::string PosixFiles::CurrentDirectory() {
  char buffer[kMaxPath + 1];
  const char* const directory = calls_.CurrentDirectory(buffer, sizeof buffer);
  return directory == nullptr ? "" : directory;
}

Error PosixFiles::SetCurrentDirectory(std::string_view path) try {
  const Result<std::string> native = NativePath(path);
  if (!native.ok()) return native.error;
  return ResultOf(calls_.ChangeDirectory(native.value.c_str()));
} catch (const std::exception&) {
  return ErrorOfException();
}

std::string PosixFiles::TempDirectory() {
  const char* const chosen = std::getenv("TMPDIR");
  std::string directory = chosen != nullptr && chosen[0] == '/' ? chosen : "/tmp";
  if (!directory.ends_with('/')) directory += '/';
  return directory;
}

Result<std::string> PosixFiles::MakeTempFile(std::string_view directory,
                                             std::string_view prefix) try {
  constexpr unsigned kNumbers = 0xFFFF;
  if (FindSeparator(prefix) != std::string_view::npos) return ErrorFromErrno(EINVAL);
  if (directory.empty()) return ErrorFromErrno(ENOENT);
  const unsigned first = std::random_device{}() % kNumbers;
  for (unsigned i = 0; i < kNumbers; ++i) {
    char name[16];
    std::snprintf(name, sizeof name, "%X.tmp", (first + i) % kNumbers + 1);
    std::string path = JoinPath(directory, std::string(prefix.substr(0, 3)) + name);
    const Result<std::string> native = NativePath(path);
    if (!native.ok()) return native.error;
    const Result<int> fd = OpenFile(calls_, native.value, O_RDWR | O_CREAT | O_EXCL, kUserOnly);
    if (fd.ok()) {
      const FileDescriptor close(calls_, fd.value);
      return path;
    }
    if (fd.error.code != EEXIST) return fd.error;
  }
  return ErrorFromErrno(EEXIST);
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<std::string> PosixFiles::FullPath(std::string_view path) try {
  if (path.size() > kMaxPath) return Error{ErrorKind::kInvalidArgument, ENAMETOOLONG};
  if (path.empty() || path.find('\0') != std::string_view::npos) return ErrorFromErrno(EINVAL);
  const bool rooted = IsSeparator(path.front()) || HasDrive(path);
  const std::string current = CurrentDirectory();
  if (!rooted && current.empty()) return ErrorFromErrno(ENOENT);  // it may have been removed
  std::string full = platform::FullPath(path, current);
  if (full.size() > kMaxPath) return Error{ErrorKind::kInvalidArgument, ENAMETOOLONG};
  return full;
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<std::string> PosixFiles::SearchPath(std::string_view name) try {
  const Result<std::string> native = NativePath(name);
  if (!native.ok()) return native.error;
  std::vector<std::string> directories;
  if (native.value.find('/') == std::string::npos) {
    directories.push_back(DirectoryOf(SystemModules().FileName(nullptr)));
    directories.emplace_back();
    const char* const variable = std::getenv("PATH");
    std::string_view path = variable == nullptr ? "" : variable;
    while (!path.empty()) {
      const std::size_t colon = std::min(path.find(':'), path.size());
      directories.emplace_back(path.substr(0, colon));
      path.remove_prefix(std::min(colon + 1, path.size()));
    }
  } else {
    directories.emplace_back();
  }
  for (const std::string& directory : directories) {
    const std::string candidate = JoinPath(directory, native.value);
    struct stat status;
    if (calls_.Status(candidate.c_str(), &status) == 0) {
      if (!S_ISDIR(status.st_mode)) return FullPath(candidate);
    } else if (errno == EIO || errno == ENOMEM) {
      // The next directory may have another file of that name. One that may not be entered, and
      // one that isn't there, has none.
      return LastError();
    }
  }
  return ErrorFromErrno(ENOENT);
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<std::string> PosixFiles::UniversalName(std::string_view path) try {
  const Result<std::string> native = NativePath(path);
  return native.ok() ? UniversalNameOf(calls_, native.value) : native.error;
} catch (const std::exception&) {
  return ErrorOfException();
}

UINT PosixFiles::KindOfDrive(std::string_view drive) {
  if (drive.empty()) return DRIVE_KIND_NO_ROOT;
  if (IsNetworkPath(drive)) return DRIVE_KIND_REMOTE;
  if (FormOf(drive) == PathForm::kWindows) return DRIVE_KIND_FIXED;
  const Result<std::string> native = NativePath(drive);
  return native.ok() ? KindOfVolume(calls_, native.value) : UINT{DRIVE_KIND_UNKNOWN};
}

Result<VolumeFacts> PosixFiles::Volume(std::string_view path) try {
  const Result<std::string> native = NativePath(path);
  return native.ok() ? VolumeOf(calls_, native.value) : native.error;
} catch (const std::exception&) {
  return ErrorOfException();
}

}  // namespace

Files& SystemFiles() {
  static PosixFiles& files = *new PosixFiles(RealSystemCalls());
  return files;
}

std::unique_ptr<Files> MakeFiles(SystemCalls& calls) { return std::make_unique<PosixFiles>(calls); }

}  // namespace dq::platform::posix
