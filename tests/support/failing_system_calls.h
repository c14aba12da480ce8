// System calls of which one fails.
//
//   FailingSystemCalls calls;
//   calls.Fail(3, ENOSPC);  // the third from now on
//   ... work ...
//   if (!calls.failed()) ... there were fewer than three

#pragma once

#include <sys/file.h>
#include <sys/mman.h>

#include "dqlib/platform/posix/system_calls.h"
#include "tests/support/testing.h"

namespace dq::test {

class FailingSystemCalls : public platform::posix::SystemCalls {
 public:
  /// The call of this number from now on, from 1, fails with this errno. Closing and giving back
  /// memory always work, as they do in the system.
  void Fail(int call, int error) {
    countdown_ = call;
    error_ = error;
  }
  /// Each write takes one byte less than it is given, and at most this many.
  void WriteAtMost(std::size_t bytes) { most_ = bytes; }
  /// The disk has room for so many bytes more; a write takes what still fits.
  void LeaveRoom(std::size_t bytes) { room_ = bytes; }
  /// Something happens after the next write that takes a part.
  void AfterWrites(std::function<void()> happens) { happens_ = std::move(happens); }
  /// Each call of this name fails from now on, or so many, opening only of paths with this end; 0
  /// ends that. "Unlock" is a name too.
  void FailEach(std::string_view name, int error, std::string_view path_end = "", int times = -1) {
    broken_ = name;
    broken_error_ = error;
    broken_end_ = path_end;
    times_ = error != 0 ? times : 0;
  }
  /// Whether it has come to the call of that number.
  bool failed() const { return countdown_ < 0; }

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
    // Giving up a lock works always too, but for who wants to see what happens then.
    const bool fails = (operation & LOCK_UN) != 0 ? Fails("Unlock", false) : Fails();
    return fails ? -1 : SystemCalls::Lock(fd, operation);
  }
  int Open(const char* path, int flags, mode_t mode) override {
    const bool is_meant = std::string_view(path).ends_with(broken_end_);
    return Fails(is_meant ? "Open" : "-") ? -1 : SystemCalls::Open(path, flags, mode);
  }

  // The others all alike: that they failed, or what the system says.
  using Times = const timespec (&)[2];
  using Stat = struct stat*;
#define DQ_FAILING(returned, failure, Name, parameters, ...)        \
  returned Name parameters override {                               \
    return Fails(#Name) ? failure : SystemCalls::Name(__VA_ARGS__); \
  }
  DQ_FAILING(void*, MAP_FAILED, Map, (std::size_t size, int how, int fd), size, how, fd)
  DQ_FAILING(char*, nullptr, RealPath, (const char* path, char* real), path, real)
  DQ_FAILING(char*, nullptr, CurrentDirectory, (char* path, std::size_t size), path, size)
  DQ_FAILING(DIR*, nullptr, OpenDirectory, (const char* path), path)
  DQ_FAILING(const dirent*, nullptr, ReadDirectory, (DIR * directory), directory)
  DQ_FAILING(ssize_t, -1, Read, (int fd, void* to, std::size_t size), fd, to, size)
  DQ_FAILING(ssize_t, -1, PositionedRead, (int f, void* to, std::size_t n, off_t at), f, to, n, at)
  DQ_FAILING(off_t, -1, Seek, (int fd, off_t offset, int whence), fd, offset, whence)
  DQ_FAILING(int, -1, GetFlags, (int fd), fd)
  DQ_FAILING(int, -1, SetFlags, (int fd, int flags), fd, flags)
  DQ_FAILING(int, -1, Sync, (int fd), fd)
  DQ_FAILING(int, -1, Truncate, (int fd, off_t size), fd, size)
  DQ_FAILING(int, -1, ChangeMode, (int fd, mode_t mode), fd, mode)
  DQ_FAILING(int, -1, ChangeMode, (const char* path, mode_t mode), path, mode)
  DQ_FAILING(int, -1, ChangeOwner, (int fd, uid_t user, gid_t group), fd, user, group)
  DQ_FAILING(int, -1, SetTimes, (int fd, Times times), fd, times)
  DQ_FAILING(int, -1, SetTimes, (const char* path, Times times), path, times)
  DQ_FAILING(int, -1, StatusOf, (int fd, Stat status), fd, status)
  DQ_FAILING(int, -1, Status, (const char* path, Stat status), path, status)
  DQ_FAILING(int, -1, LinkStatus, (const char* path, Stat status), path, status)
  DQ_FAILING(int, -1, StatusAt, (int fd, const char* path, Stat to, int how), fd, path, to, how)
  DQ_FAILING(int, -1, VolumeStatus, (const char* path, struct statvfs* to), path, to)
  DQ_FAILING(int, -1, ChangeDirectory, (const char* path), path)
  DQ_FAILING(int, -1, RenameToNew, (const char* from, const char* to), from, to)
  DQ_FAILING(int, -1, Link, (const char* from, const char* to), from, to)
  DQ_FAILING(int, -1, Rename, (const char* from, const char* to), from, to)
  DQ_FAILING(ssize_t, -1, ReadLink, (const char* path, char* to, std::size_t size), path, to, size)
  DQ_FAILING(int, -1, Unlink, (const char* path), path)
  DQ_FAILING(int, -1, MakeDirectory, (const char* path, mode_t mode), path, mode)
  DQ_FAILING(int, -1, RemoveDirectory, (const char* path), path)
#undef DQ_FAILING

 private:
  /// Those that always work don't count as calls.
  bool Fails(std::string_view name = "-", bool counts = true) {
    const bool is_broken = name == broken_ && times_ != 0 && times_-- != 0;
    if (!is_broken && (!counts || countdown_ <= 0 || --countdown_ > 0)) return false;
    if (!is_broken) countdown_ = -1;
    errno = is_broken ? broken_error_ : error_;
    return true;
  }
  /// Lessens the size to what a write takes.
  bool Takes(std::size_t& size) {
    if (Fails()) return false;
    if (most_ != SIZE_MAX && size > 1) size = std::min(size - 1, most_);
    size = std::min(size, room_);
    room_ -= size;
    if (size == 0) errno = ENOSPC;
    return size > 0;
  }

  /// Calls up to the one that fails, 0 if none is to, less if it has.
  int countdown_ = 0, error_ = 0;
  std::string_view broken_, broken_end_;
  int broken_error_ = 0, times_ = 0;
  std::function<void()> happens_;
  std::size_t most_ = SIZE_MAX, room_ = SIZE_MAX;
};

}  // namespace dq::test
