// System calls of which one fails.
//
//   FailingSystemCalls calls;
//   calls.Fail(3, ENOSPC);  // the third from now on
//   ... work ...
//   if (!calls.failed()) ... there were fewer than three

#pragma once

#include <algorithm>
#include <cerrno>
#include <functional>
#include <limits>
#include <sys/file.h>
#include <sys/mman.h>
#include <utility>

#include "dqlib/platform/posix/system_calls.h"

namespace dq::test {

class FailingSystemCalls : public platform::posix::SystemCalls {
 public:
  /// The call of this number from now on, from 1, fails with this errno. Closing and giving back
  /// memory always work, as they do in the system.
  void Fail(int call, int error) {
    countdown_ = call;
    error_ = error;
    failed_ = false;
  }
  /// Each write takes one byte less than it is given, and at most this many.
  void WriteAtMost(std::size_t bytes) { most_ = bytes; }
  /// The disk has room for so many bytes more; a write takes what still fits.
  void LeaveRoom(std::size_t bytes) { room_ = bytes; }
  /// Something happens after the next write that takes a part.
  void AfterWrites(std::function<void()> happens) { happens_ = std::move(happens); }
  /// The next new name is on another volume.
  void SplitVolumes() { split_ = true; }
  bool failed() const { return failed_; }

  ssize_t Write(int fd, const void* data, std::size_t size) override {
    const std::size_t wanted = size;
    if (!Takes(size)) return -1;
    const ssize_t count = SystemCalls::Write(fd, data, size);
    if (size < wanted && happens_) std::exchange(happens_, {})();
    return count;
  }
  ssize_t PositionedWrite(int fd, const void* data, std::size_t size, off_t offset) override {
    return Takes(size) ? SystemCalls::PositionedWrite(fd, data, size, offset) : -1;
  }
  int LockRange(int fd, int command, struct flock* lock) override {
    return lock->l_type != F_UNLCK && Fails() ? -1 : SystemCalls::LockRange(fd, command, lock);
  }
  int Lock(int fd, int operation) override {
    // Giving up a lock works always too.
    return (operation & LOCK_UN) == 0 && Fails() ? -1 : SystemCalls::Lock(fd, operation);
  }
  int RenameToNew(const char* from, const char* to) override {
    if (Fails()) return -1;
    if (!std::exchange(split_, false)) return SystemCalls::RenameToNew(from, to);
    errno = EXDEV;
    return -1;
  }
  void* Map(std::size_t size, int protection, int fd) override {
    return Fails() ? MAP_FAILED : SystemCalls::Map(size, protection, fd);
  }
  char* RealPath(const char* path, char* real) override {
    return Fails() ? nullptr : SystemCalls::RealPath(path, real);
  }
  char* CurrentDirectory(char* path, std::size_t size) override {
    return Fails() ? nullptr : SystemCalls::CurrentDirectory(path, size);
  }
  DIR* OpenDirectory(const char* path) override {
    return Fails() ? nullptr : SystemCalls::OpenDirectory(path);
  }
  const dirent* ReadDirectory(DIR* directory) override {
    return Fails() ? nullptr : SystemCalls::ReadDirectory(directory);
  }

  // The others all alike: -1 or what the system says.
#define DQ_FAILING(returned, Name, parameters, ...) \
  returned Name parameters override { return Fails() ? -1 : SystemCalls::Name(__VA_ARGS__); }
  DQ_FAILING(int, Open, (const char* path, int flags, mode_t mode), path, flags, mode)
  DQ_FAILING(ssize_t, Read, (int fd, void* data, std::size_t size), fd, data, size)
  DQ_FAILING(ssize_t, PositionedRead, (int fd, void* data, std::size_t size, off_t offset), fd,
             data, size, offset)
  DQ_FAILING(off_t, Seek, (int fd, off_t offset, int whence), fd, offset, whence)
  DQ_FAILING(int, GetFlags, (int fd), fd)
  DQ_FAILING(int, SetFlags, (int fd, int flags), fd, flags)
  DQ_FAILING(int, Sync, (int fd), fd)
  DQ_FAILING(int, Truncate, (int fd, off_t size), fd, size)
  DQ_FAILING(int, ChangeMode, (int fd, mode_t mode), fd, mode)
  DQ_FAILING(int, ChangeMode, (const char* path, mode_t mode), path, mode)
  DQ_FAILING(int, ChangeOwner, (int fd, uid_t user, gid_t group), fd, user, group)
  DQ_FAILING(int, SetTimes, (int fd, const timespec (&times)[2]), fd, times)
  DQ_FAILING(int, SetTimes, (const char* path, const timespec (&times)[2]), path, times)
  DQ_FAILING(int, StatusOf, (int fd, struct stat* status), fd, status)
  DQ_FAILING(int, Status, (const char* path, struct stat* status), path, status)
  DQ_FAILING(int, LinkStatus, (const char* path, struct stat* status), path, status)
  DQ_FAILING(int, StatusAt, (int directory, const char* name, struct stat* status, int flags),
             directory, name, status, flags)
  DQ_FAILING(int, VolumeStatus, (const char* path, struct statvfs* status), path, status)
  DQ_FAILING(int, ChangeDirectory, (const char* path), path)
  DQ_FAILING(int, Rename, (const char* from, const char* to), from, to)
  DQ_FAILING(ssize_t, ReadLink, (const char* path, char* target, std::size_t size), path, target,
             size)
  DQ_FAILING(int, Unlink, (const char* path), path)
  DQ_FAILING(int, MakeDirectory, (const char* path, mode_t mode), path, mode)
  DQ_FAILING(int, RemoveDirectory, (const char* path), path)
#undef DQ_FAILING

 private:
  bool Fails() {
    if (countdown_ == 0 || --countdown_ > 0) return false;
    failed_ = true;
    errno = error_;
    return true;
  }
  /// Lessens the size to what a write takes.
  bool Takes(std::size_t& size) {
    if (Fails()) return false;
    if (most_ != kAny && size > 1) size = std::min(size - 1, most_);
    size = std::min(size, room_);
    room_ -= size;
    if (size == 0) errno = ENOSPC;
    return size > 0;
  }

  static constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();
  int countdown_ = 0;
  int error_ = 0;
  bool failed_ = false;
  bool split_ = false;
  std::function<void()> happens_;
  std::size_t most_ = kAny;
  std::size_t room_ = kAny;
};

}  // namespace dq::test
