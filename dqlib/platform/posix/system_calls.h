// The system calls that stores of user data are made of, behind one interface, so that each of them
// can be made to fail.

#pragma once

#include <chrono>
#include <cstddef>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <span>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/types.h>
#include <utility>

#include "dqlib/platform/error.h"

namespace dq::platform::posix {

/// Forwards each call to the system under the same name. Results and errno are those of the
/// system. A class that derives from it overrides only what it changes. Any thread.
class SystemCalls {
 public:
  SystemCalls() = default;
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;
  virtual ~SystemCalls();

  /// The file is closed when another program is run.
  virtual int Open(const char* path, int flags, mode_t mode);
  virtual int Close(int fd);
  virtual ssize_t Read(int fd, void* data, std::size_t size);
  virtual ssize_t Write(int fd, const void* data, std::size_t size);
  virtual ssize_t PositionedRead(int fd, void* data, std::size_t size, off_t offset);
  virtual ssize_t PositionedWrite(int fd, const void* data, std::size_t size, off_t offset);
  virtual off_t Seek(int fd, off_t offset, int whence);
  /// `F_GETFL` and `F_SETFL`.
  virtual int GetFlags(int fd);
  virtual int SetFlags(int fd, int flags);
  virtual int Sync(int fd);
  virtual int Truncate(int fd, off_t size);
  virtual int ChangeMode(int fd, mode_t mode);
  virtual int ChangeMode(const char* path, mode_t mode);
  virtual int ChangeOwner(int fd, uid_t user, gid_t group);
  /// Locks of ranges of bytes: `F_OFD_SETLK` or `F_OFD_GETLK`.
  virtual int LockRange(int fd, int command, struct flock* lock);
  /// Times of the last access and the last change.
  virtual int SetTimes(int fd, const timespec (&times)[2]);
  virtual int SetTimes(const char* path, const timespec (&times)[2]);
  virtual int Lock(int fd, int operation);
  /// Lets some time pass, less if a signal comes.
  virtual void Pause(unsigned microseconds);
  /// Time since some fixed moment, which never runs backwards whatever happens to the time of day.
  virtual std::chrono::nanoseconds MonotonicTime();
  virtual int StatusOf(int fd, struct stat* status);
  virtual int Status(const char* path, struct stat* status);
  /// That of a link itself.
  virtual int LinkStatus(const char* path, struct stat* status);
  /// `fstatat`.
  virtual int StatusAt(int directory, const char* name, struct stat* status, int flags);
  virtual int VolumeStatus(const char* path, struct statvfs* status);
  /// `realpath` into a buffer of `PATH_MAX` bytes.
  virtual char* RealPath(const char* path, char* real);
  virtual char* CurrentDirectory(char* path, std::size_t size);
  virtual int ChangeDirectory(const char* path);
  virtual DIR* OpenDirectory(const char* path);
  /// Null at the end, and with errno set if it fails.
  virtual const dirent* ReadDirectory(DIR* directory);
  virtual int CloseDirectory(DIR* directory);
  virtual int Rename(const char* from, const char* to);
  virtual int Link(const char* from, const char* to);
  /// `EEXIST` if `to` is there, `ENOSYS` or `EINVAL` if that can't be done in one step.
  virtual int RenameToNew(const char* from, const char* to);
  virtual ssize_t ReadLink(const char* path, char* target, std::size_t size);
  virtual int Unlink(const char* path);
  virtual int MakeDirectory(const char* path, mode_t mode);
  virtual int RemoveDirectory(const char* path);
  virtual void* Map(std::size_t size, int protection, int fd);
  virtual int Unmap(void* address, std::size_t size);
};

/// The system itself. Any thread.
SystemCalls& RealSystemCalls();

/// Owns a file descriptor, and closes it.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  FileDescriptor(SystemCalls& calls, int fd) : calls_(&calls), fd_(fd) {}
  FileDescriptor(FileDescriptor&& other) noexcept;
  FileDescriptor& operator=(FileDescriptor&& other) noexcept;
  ~FileDescriptor();

  /// -1 if there is none.
  int get() const { return fd_; }
  bool is_open() const { return fd_ >= 0; }
  /// Gives it up unclosed.
  int Release() { return std::exchange(fd_, -1); }

 private:
  SystemCalls* calls_ = nullptr;
  int fd_ = -1;
};

/// The names of a directory's entries, one after the other.
class DirectoryReader {
 public:
  /// `error()` tells whether it could be opened.
  DirectoryReader(SystemCalls& calls, const std::string& path);
  DirectoryReader(const DirectoryReader&) = delete;
  DirectoryReader& operator=(const DirectoryReader&) = delete;
  ~DirectoryReader();

  /// The next name, which lasts until the next call; null at the end or if reading fails, which
  /// `error()` tells apart.
  const char* Next();
  Error error() const { return error_; }
  /// The open directory, for `StatusAt`.
  int fd() const;

 private:
  SystemCalls& calls_;
  DIR* directory_;
  Error error_;
};

/// The mode of a file with settings or secrets.
inline constexpr mode_t kUserOnly = 0600;

/// The calls again with interruptions and short counts seen to.
///
/// `OpenFile` gives the descriptor or the error. `WriteFully` writes all bytes; if it fails, some
/// of them may have been written. `AppendFully`, for a file open for appending, takes back what it
/// has written if it fails, unless another writer's bytes stand behind or between them by then; it
/// is for one thread at a time. `ReadFullyAt` reads up to the end of the file if that comes
/// first, and replaces `bytes`; `ReadText` reads a file to its end, also one that tells no size,
/// and fails with `kNoSpace` for one of more than 16 MiB. `LockFile` gets an advisory lock
/// (`LOCK_EX` or `LOCK_SH`) or gives it back (`LOCK_UN`). It waits for others until
/// `MonotonicTime` reaches the deadline and fails with `kBusy` then, but tries once in any case.
Result<int> OpenFile(SystemCalls& calls, const std::string& path, int flags, mode_t mode = 0);
Error WriteFully(SystemCalls& calls, int fd, std::string_view bytes);
Error AppendFully(SystemCalls& calls, int fd, std::string_view bytes);
Error WriteFullyAt(SystemCalls& calls, int fd, std::string_view bytes, off_t offset);
Error ReadFullyAt(SystemCalls& calls, int fd, std::size_t size, off_t offset, std::string& bytes);
Result<std::string> ReadText(SystemCalls& calls, const std::string& path);
Error SyncFile(SystemCalls& calls, int fd);
Error LockFile(SystemCalls& calls, int fd, int operation, std::chrono::nanoseconds deadline);

/// Puts the entries of a directory on the disk.
Error SyncDirectory(SystemCalls& calls, const std::string& path);

/// Gives a new file or directory to the owner of the directory that it lies in, if an administrator
/// has made it: what is written below another user's home must not lock that user out. Without the
/// rights of an administrator it does nothing.
Error GiveToOwnerOf(SystemCalls& calls, int fd, const std::string& directory);

/// Makes a directory and those above it, for the user only, or for the owner of the directory above
/// as `GiveToOwnerOf` does. One that exists is left as it is.
Error MakeDirectories(SystemCalls& calls, const std::string& path);

/// How many forks lie between the process that was started and this one. Open files are shared over
/// a fork, and so are their locks: whoever holds some must open them again when the number changes.
unsigned ForkCount();

/// The directory for the user's settings by the rules of the desktop: that of the environment if
/// its path is absolute, else `.config` in the home directory. `kNotFound` if there is no home.
Result<std::string> UserConfigDirectory();

}  // namespace dq::platform::posix
