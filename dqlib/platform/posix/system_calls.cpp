#include "dqlib/platform/posix/system_calls.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <pthread.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// Makes a call until it isn't interrupted.
template <typename Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

std::atomic<unsigned> g_forks = 0;

Error LastError() { return ErrorFromErrno(errno); }

/// Writes in pieces with `write(data, size, offset)`, which may take less than it is given.
template <typename Writer>
Error WriteInPieces(std::string_view bytes, Writer write) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count =
        Uninterrupted([&] { return write(bytes.data() + done, bytes.size() - done, done); });
    if (count < 0) return LastError();
    // Nothing written without an error would come again and again.
    if (count == 0) return ErrorFromErrno(EIO);
    done += static_cast<std::size_t>(count);
  }
  return {};
}

}  // namespace

SystemCalls::~SystemCalls() = default;

int SystemCalls::Open(const char* path, int flags, mode_t mode) {
  return ::open(path, flags | O_CLOEXEC, mode);
}
int SystemCalls::Close(int fd) { return ::close(fd); }
ssize_t SystemCalls::Read(int fd, void* data, std::size_t size) { return ::read(fd, data, size); }
ssize_t SystemCalls::Write(int fd, const void* data, std::size_t size) {
  return ::write(fd, data, size);
}
ssize_t SystemCalls::PositionedRead(int fd, void* data, std::size_t size, off_t offset) {
  return ::pread(fd, data, size, offset);
}
ssize_t SystemCalls::PositionedWrite(int fd, const void* data, std::size_t size, off_t offset) {
  return ::pwrite(fd, data, size, offset);
}
off_t SystemCalls::Seek(int fd, off_t offset, int whence) { return ::lseek(fd, offset, whence); }
int SystemCalls::GetFlags(int fd) { return ::fcntl(fd, F_GETFL); }
int SystemCalls::SetFlags(int fd, int flags) { return ::fcntl(fd, F_SETFL, flags); }
int SystemCalls::Sync(int fd) { return ::fsync(fd); }
int SystemCalls::Truncate(int fd, off_t size) { return ::ftruncate(fd, size); }
int SystemCalls::ChangeMode(int fd, mode_t mode) { return ::fchmod(fd, mode); }
int SystemCalls::ChangeMode(const char* path, mode_t mode) { return ::chmod(path, mode); }
int SystemCalls::ChangeOwner(int fd, uid_t user, gid_t group) { return ::fchown(fd, user, group); }
int SystemCalls::LockRange(int fd, int command, struct flock* lock) {
  return ::fcntl(fd, command, lock);
}
int SystemCalls::SetTimes(int fd, const timespec (&times)[2]) { return ::futimens(fd, times); }
int SystemCalls::SetTimes(const char* path, const timespec (&times)[2]) {
  return ::utimensat(AT_FDCWD, path, times, 0);
}
int SystemCalls::Lock(int fd, int operation) { return ::flock(fd, operation); }
void SystemCalls::Pause(unsigned microseconds) { ::usleep(microseconds); }
std::chrono::nanoseconds SystemCalls::MonotonicTime() {
  return std::chrono::steady_clock::now().time_since_epoch();
}
int SystemCalls::StatusOf(int fd, struct stat* status) { return ::fstat(fd, status); }
int SystemCalls::Status(const char* path, struct stat* status) { return ::stat(path, status); }
int SystemCalls::LinkStatus(const char* path, struct stat* status) { return ::lstat(path, status); }
int SystemCalls::StatusAt(int directory, const char* name, struct stat* status, int flags) {
  return ::fstatat(directory, name, status, flags);
}
int SystemCalls::VolumeStatus(const char* path, struct statvfs* status) {
  return ::statvfs(path, status);
}
char* SystemCalls::RealPath(const char* path, char* real) { return ::realpath(path, real); }
char* SystemCalls::CurrentDirectory(char* path, std::size_t size) { return ::getcwd(path, size); }
int SystemCalls::ChangeDirectory(const char* path) { return ::chdir(path); }
DIR* SystemCalls::OpenDirectory(const char* path) { return ::opendir(path); }
const dirent* SystemCalls::ReadDirectory(DIR* directory) { return ::readdir(directory); }
int SystemCalls::CloseDirectory(DIR* directory) { return ::closedir(directory); }
int SystemCalls::Rename(const char* from, const char* to) { return ::rename(from, to); }
int SystemCalls::Link(const char* from, const char* to) { return ::link(from, to); }
int SystemCalls::RenameToNew(const char* from, const char* to) {
#ifdef RENAME_NOREPLACE
  return ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
#else
  static_cast<void>(from), static_cast<void>(to);
  errno = ENOSYS;
  return -1;
#endif
}
ssize_t SystemCalls::ReadLink(const char* path, char* target, std::size_t size) {
  return ::readlink(path, target, size);
}
int SystemCalls::Unlink(const char* path) { return ::unlink(path); }
int SystemCalls::MakeDirectory(const char* path, mode_t mode) { return ::mkdir(path, mode); }
int SystemCalls::RemoveDirectory(const char* path) { return ::rmdir(path); }
void* SystemCalls::Map(std::size_t size, int protection, int fd) {
  return ::mmap(nullptr, size, protection, MAP_SHARED, fd, 0);
}
int SystemCalls::Unmap(void* address, std::size_t size) { return ::munmap(address, size); }

SystemCalls& RealSystemCalls() {
  // Never destroyed: destructors of static objects may write.
  static SystemCalls& calls = *new SystemCalls;
  return calls;
}

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : calls_(other.calls_), fd_(std::exchange(other.fd_, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
  std::swap(calls_, other.calls_);
  std::swap(fd_, other.fd_);
  return *this;
}

FileDescriptor::~FileDescriptor() {
  // What must reach the disk has been synced before; closing has no error that anyone acts on.
  if (fd_ >= 0) static_cast<void>(calls_->Close(fd_));
}

DirectoryReader::DirectoryReader(SystemCalls& calls, const std::string& path)
    : calls_(calls), directory_(calls.OpenDirectory(path.c_str())) {
  if (directory_ == nullptr) error_ = LastError();
}

DirectoryReader::~DirectoryReader() {
  // Nothing was written.
  if (directory_ != nullptr) static_cast<void>(calls_.CloseDirectory(directory_));
}

const char* DirectoryReader::Next() {
  if (!error_.ok()) return nullptr;
  errno = 0;
  const dirent* const entry = calls_.ReadDirectory(directory_);
  if (entry == nullptr && errno != 0) error_ = LastError();
  return entry == nullptr ? nullptr : entry->d_name;
}

int DirectoryReader::fd() const { return ::dirfd(directory_); }

Result<int> OpenFile(SystemCalls& calls, const std::string& path, int flags, mode_t mode) {
  const int fd = Uninterrupted([&] { return calls.Open(path.c_str(), flags, mode); });
  if (fd < 0) return LastError();
  return fd;
}

Error WriteFully(SystemCalls& calls, int fd, std::string_view bytes) {
  return WriteInPieces(bytes, [&](const char* data, std::size_t size, std::size_t) {
    return calls.Write(fd, data, size);
  });
}

Error AppendFully(SystemCalls& calls, int fd, std::string_view bytes) {
  off_t begin = -1;
  std::size_t written = 0;
  const Error error =
      WriteInPieces(bytes, [&](const char* data, std::size_t size, std::size_t done) {
        const ssize_t count = calls.Write(fd, data, size);
        if (count <= 0) return count;
        written = done + static_cast<std::size_t>(count);
        if (done == 0 && written < size) begin = calls.Seek(fd, 0, SEEK_CUR) - count;
        return count;
      });
  if (error.ok() || written == 0 || begin < 0) return error;
  struct stat status;
  const off_t end = begin + static_cast<off_t>(written);
  const bool stands_alone = calls.Seek(fd, 0, SEEK_CUR) == end &&
                            calls.StatusOf(fd, &status) == 0 && status.st_size == end;
  // The failure to write is the one to tell.
  if (stands_alone) static_cast<void>(calls.Truncate(fd, begin));
  return error;
}

Error WriteFullyAt(SystemCalls& calls, int fd, std::string_view bytes, off_t offset) {
  return WriteInPieces(bytes, [&](const char* data, std::size_t size, std::size_t done) {
    return calls.PositionedWrite(fd, data, size, offset + static_cast<off_t>(done));
  });
}

Error ReadFullyAt(SystemCalls& calls, int fd, std::size_t size, off_t offset, std::string& bytes) {
  bytes.resize(size);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = Uninterrupted([&] {
      return calls.PositionedRead(fd, bytes.data() + done, size - done,
                                  offset + static_cast<off_t>(done));
    });
    if (count < 0) return LastError();
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  bytes.resize(done);
  return {};
}

Result<std::string> ReadText(SystemCalls& calls, const std::string& path) {
  constexpr std::size_t kMost = std::size_t{16} << 20;
  const Result<int> fd = OpenFile(calls, path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
  if (!fd.ok()) return fd.error;
  const FileDescriptor file(calls, fd.value);
  std::string text;
  char piece[4096];
  for (;;) {
    const ssize_t count = Uninterrupted([&] { return calls.Read(fd.value, piece, sizeof piece); });
    if (count < 0) return LastError();
    if (count == 0) return text;
    text.append(piece, static_cast<std::size_t>(count));
    if (text.size() > kMost) return ErrorFromErrno(EFBIG);
  }
}

Error SyncFile(SystemCalls& calls, int fd) {
  if (Uninterrupted([&] { return calls.Sync(fd); }) < 0) return LastError();
  return {};
}

Error LockFile(SystemCalls& calls, int fd, int operation, std::chrono::nanoseconds deadline) {
  const int attempt = operation == LOCK_UN ? operation : operation | LOCK_NB;
  constexpr unsigned kFirstWait = 50;
  constexpr unsigned kLongestWait = 2000;
  unsigned wait = kFirstWait;
  for (;;) {
    if (Uninterrupted([&] { return calls.Lock(fd, attempt); }) == 0) return {};
    const Error error = LastError();
    // A pause may take far longer than it was asked for, so only the clock tells what was waited.
    if (error.code != EWOULDBLOCK || calls.MonotonicTime() >= deadline) return error;
    calls.Pause(wait);
    wait = std::min(wait * 2, kLongestWait);
  }
}

Error SyncDirectory(SystemCalls& calls, const std::string& path) {
  const Result<int> fd = OpenFile(calls, path, O_RDONLY | O_DIRECTORY);
  if (!fd.ok()) return fd.error;
  const FileDescriptor directory(calls, fd.value);
  return SyncFile(calls, directory.get());
}

Error GiveToOwnerOf(SystemCalls& calls, int fd, const std::string& directory) {
  if (::geteuid() != 0) return {};
  struct stat above;
  struct stat own;
  if (calls.Status(directory.c_str(), &above) != 0 || calls.StatusOf(fd, &own) != 0) {
    return LastError();
  }
  if (above.st_uid == own.st_uid) return {};
  return calls.ChangeOwner(fd, above.st_uid, above.st_gid) == 0 ? Error{} : LastError();
}

namespace {

/// The same for a directory that was made just now, which goes again if that fails.
Error GiveDirectory(SystemCalls& calls, const std::string& path) {
  if (::geteuid() != 0) return {};
  const std::size_t slash = path.rfind('/');
  const Result<int> fd = OpenFile(calls, path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
  Error error = fd.error;
  if (fd.ok()) {
    const FileDescriptor directory(calls, fd.value);
    error = GiveToOwnerOf(calls, fd.value, slash == 0 ? "/" : path.substr(0, slash));
  }
  // The error is the one to tell, whether the directory can be removed or not.
  if (!error.ok()) static_cast<void>(calls.RemoveDirectory(path.c_str()));
  return error;
}

}  // namespace

Error MakeDirectories(SystemCalls& calls, const std::string& path) {
  constexpr mode_t kUserDirectory = 0700;
  for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
    const std::string directory = path.substr(0, end);
    struct stat status;
    if (calls.MakeDirectory(directory.c_str(), kUserDirectory) != 0) {
      // A directory that exists may be reported by any error that forbids to make one there.
      const int why = errno;
      if (calls.Status(directory.c_str(), &status) != 0) {
        return ErrorFromErrno(why == EEXIST ? errno : why);
      }
      if (!S_ISDIR(status.st_mode)) return ErrorFromErrno(ENOTDIR);
    } else if (const Error error = GiveDirectory(calls, directory); !error.ok()) {
      return error;
    }
    if (end == std::string::npos) return {};
  }
}

unsigned ForkCount() {
  [[maybe_unused]] static const int registered =
      ::pthread_atfork(nullptr, nullptr, [] { g_forks.fetch_add(1); });
  return g_forks.load();
}

Result<std::string> UserConfigDirectory() {
  const char* const configured = std::getenv("XDG_CONFIG_HOME");
  if (configured != nullptr && configured[0] == '/') return std::string(configured);
  const char* home = std::getenv("HOME");
  passwd entry;
  passwd* found = nullptr;
  char buffer[4096];
  if (home == nullptr || home[0] == '\0') {
    home = ::getpwuid_r(::getuid(), &entry, buffer, sizeof buffer, &found) == 0 && found != nullptr
               ? entry.pw_dir
               : nullptr;
  }
  if (home == nullptr || home[0] != '/') return ErrorFromErrno(ENOENT);
  return std::string(home) + "/.config";
}

}  // namespace dq::platform::posix
