// System calls of which one fails.
//
//   FailingSystemCalls calls;
//   calls.Fail(3, ENOSPC);  // the third from now on
//   ... work ...
//   if (!calls.failed()) ... there were fewer than three

#pragma once

#include <algorithm>
#include <cerrno>
#include <limits>
#include <sys/file.h>
#include <sys/mman.h>

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
  bool failed() const { return failed_; }

  int Open(const char* path, int flags, mode_t mode) override {
    return Fails() ? -1 : SystemCalls::Open(path, flags, mode);
  }
  ssize_t Read(int fd, void* data, std::size_t size) override {
    return Fails() ? -1 : SystemCalls::Read(fd, data, size);
  }
  ssize_t Write(int fd, const void* data, std::size_t size) override {
    return Fails() ? -1 : SystemCalls::Write(fd, data, Less(size));
  }
  ssize_t PositionedRead(int fd, void* data, std::size_t size, off_t offset) override {
    return Fails() ? -1 : SystemCalls::PositionedRead(fd, data, size, offset);
  }
  ssize_t PositionedWrite(int fd, const void* data, std::size_t size, off_t offset) override {
    return Fails() ? -1 : SystemCalls::PositionedWrite(fd, data, Less(size), offset);
  }
  int Sync(int fd) override { return Fails() ? -1 : SystemCalls::Sync(fd); }
  int Truncate(int fd, off_t size) override {
    return Fails() ? -1 : SystemCalls::Truncate(fd, size);
  }
  int ChangeMode(int fd, mode_t mode) override {
    return Fails() ? -1 : SystemCalls::ChangeMode(fd, mode);
  }
  int ChangeMode(const char* path, mode_t mode) override {
    return Fails() ? -1 : SystemCalls::ChangeMode(path, mode);
  }
  int ChangeOwner(int fd, uid_t user, gid_t group) override {
    return Fails() ? -1 : SystemCalls::ChangeOwner(fd, user, group);
  }
  int SetTimes(int fd, const timespec (&times)[2]) override {
    return Fails() ? -1 : SystemCalls::SetTimes(fd, times);
  }
  int SetTimes(const char* path, const timespec (&times)[2]) override {
    return Fails() ? -1 : SystemCalls::SetTimes(path, times);
  }
  int LockRange(int fd, int command, struct flock* lock) override {
    return lock->l_type != F_UNLCK && Fails() ? -1 : SystemCalls::LockRange(fd, command, lock);
  }
  int Lock(int fd, int operation) override {
    // Giving up a lock works always too.
    return (operation & LOCK_UN) == 0 && Fails() ? -1 : SystemCalls::Lock(fd, operation);
  }
  int StatusOf(int fd, struct stat* status) override {
    return Fails() ? -1 : SystemCalls::StatusOf(fd, status);
  }
  int Status(const char* path, struct stat* status) override {
    return Fails() ? -1 : SystemCalls::Status(path, status);
  }
  int Rename(const char* from, const char* to) override {
    return Fails() ? -1 : SystemCalls::Rename(from, to);
  }
  int RenameToNew(const char* from, const char* to) override {
    return Fails() ? -1 : SystemCalls::RenameToNew(from, to);
  }
  ssize_t ReadLink(const char* path, char* target, std::size_t size) override {
    return Fails() ? -1 : SystemCalls::ReadLink(path, target, size);
  }
  int RemoveDirectory(const char* path) override {
    return Fails() ? -1 : SystemCalls::RemoveDirectory(path);
  }
  int Unlink(const char* path) override { return Fails() ? -1 : SystemCalls::Unlink(path); }
  int MakeDirectory(const char* path, mode_t mode) override {
    return Fails() ? -1 : SystemCalls::MakeDirectory(path, mode);
  }
  void* Map(std::size_t size, int protection, int fd) override {
    return Fails() ? MAP_FAILED : SystemCalls::Map(size, protection, fd);
  }

 private:
  bool Fails() {
    if (countdown_ == 0 || --countdown_ > 0) return false;
    failed_ = true;
    errno = error_;
    return true;
  }
  std::size_t Less(std::size_t size) const {
    return most_ == kAny || size < 2 ? size : std::min(size - 1, most_);
  }

  static constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();
  int countdown_ = 0;
  int error_ = 0;
  bool failed_ = false;
  std::size_t most_ = kAny;
};

}  // namespace dq::test
