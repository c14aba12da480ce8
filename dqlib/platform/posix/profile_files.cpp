#include "dqlib/platform/profile_files.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "dqlib/platform/paths.h"
#include "dqlib/platform/per_thread.h"
#include "dqlib/platform/posix/file_replacement.h"
#include "dqlib/platform/posix/lock_patience.h"
#include "dqlib/platform/posix/native_path.h"
#include "dqlib/platform/posix/system_calls.h"
#include "dqlib/platform/posix/system_services.h"
#include "dqlib/platform/profile_text.h"

namespace dq::platform::posix {
namespace {

/// A file that is larger is no profile.
constexpr off_t kMaxProfile = off_t{256} << 20;

Error LastError() { return ErrorFromErrno(errno); }

/// The path as the system has it.
Result<std::string> Locate(std::string_view path) {
  Result<std::string> native = NativePath(path);
  if (!native.ok()) return native;
  if (FindSeparator(path) == std::string_view::npos) {
    const Result<std::string> directory = UserConfigDirectory();
    if (!directory.ok()) return directory.error;
    native.value = directory.value + "/velmora/" + native.value;
  }
  return native;
}

/// The text of an open file, and what else is known of it.
Error ReadOpenFile(SystemCalls& calls, int fd, std::string& text, struct stat& status) {
  if (calls.StatusOf(fd, &status) != 0) return LastError();
  if (!S_ISREG(status.st_mode)) return ErrorFromErrno(S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
  if (status.st_size > kMaxProfile) return ErrorFromErrno(EFBIG);
  return ReadFullyAt(calls, fd, static_cast<std::size_t>(status.st_size), 0, text);
}

/// The name under which a file is written anew, always the same one, so that what a writer leaves
/// that is killed goes with the next write. Only who holds the lock on the file uses it.
std::string TemporaryFor(const std::string& file) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char character : std::string_view(file).substr(file.rfind('/') + 1)) {
    hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3;
  }
  char name[40];
  std::snprintf(name, sizeof name, "/.dq%016llx.tmp", static_cast<unsigned long long>(hash));
  return DirectoryOf(file) + name;
}

/// A profile file that no other writer changes meanwhile.
///
/// The lock is on the file itself, which a write replaces by a new one. So who has waited for it
/// looks whether the file still is the one at that path, and otherwise begins again.
class LockedProfile {
 public:
  LockedProfile(SystemCalls& calls, LockPatience& patience, std::string path)
      : calls_(calls), patience_(patience), path_(std::move(path)) {}
  LockedProfile(const LockedProfile&) = delete;
  LockedProfile& operator=(const LockedProfile&) = delete;

  /// Removes a file that was made for a write that has failed since.
  ~LockedProfile() {
    // An empty file means the same as none, so that it may stay if it can't be removed. One that
    // isn't was another writer's before this one had the lock.
    if (made_ && locked_ && status_.st_size == 0) static_cast<void>(calls_.Unlink(path_.c_str()));
  }

  /// A file that doesn't exist is made, empty, if `create`; else `kNotFound`.
  Error Open(bool create) {
    const std::chrono::nanoseconds deadline = patience_.Deadline(path_);
    for (;;) {
      if (const Error error = OpenOnce(create); !error.ok()) return error;
      const Error error = patience_.Lock(file_.get(), LOCK_EX, deadline, path_);
      if (!error.ok()) return error;
      struct stat now;
      if (calls_.StatusOf(file_.get(), &status_) != 0) return LastError();
      if (calls_.Status(path_.c_str(), &now) != 0) {
        if (errno != ENOENT) return LastError();
      } else if (now.st_dev == status_.st_dev && now.st_ino == status_.st_ino) {
        locked_ = true;
        return {};
      }
      made_ = false;
    }
  }

  Error Read(std::string& text) { return ReadOpenFile(calls_, file_.get(), text, status_); }

  Error Replace(const std::string& text) {
    // A mode without the owner's right to write is how a file is marked read-only, which a
    // replacement or a privileged user would get round.
    if ((status_.st_mode & S_IWUSR) == 0) return ErrorFromErrno(EACCES);
    Replacement replacement;
    replacement.target = path_;
    replacement.temporary = TemporaryFor(path_);
    replacement.old = status_;
    // What one key says may be lost with the power, as long as the file stays whole.
    replacement.sync_directory = false;
    return ReplaceFile(calls_, replacement, [&](int fd) { return WriteFully(calls_, fd, text); });
  }

  /// What was written stays.
  void Keep() { made_ = false; }

 private:
  Error OpenOnce(bool create) {
    // For writing, though it is only read and locked: who may not write it may not replace it.
    constexpr int kFlags = O_RDWR | O_NONBLOCK | O_NOCTTY;
    // A link to nowhere that comes in here is met each time, and isn't followed.
    constexpr int kAttempts = 10;
    Result<int> fd = OpenFile(calls_, path_, kFlags);
    for (int attempt = 0; create && fd.error.code == ENOENT && attempt < kAttempts; ++attempt) {
      const Error made = MakeEmptyFile(calls_, path_);
      if (!made.ok() && made.kind != ErrorKind::kAlreadyExists) return made;
      made_ = made.ok();
      fd = OpenFile(calls_, path_, kFlags);
    }
    if (!fd.ok()) return fd.error;
    file_ = FileDescriptor(calls_, fd.value);
    return {};
  }

  SystemCalls& calls_;
  LockPatience& patience_;
  std::string path_;
  FileDescriptor file_;
  struct stat status_ {};
  bool made_ = false;
  bool locked_ = false;
};

/// The text of the file that a thread read last. Kept, so that reading many keys doesn't make the
/// memory anew for each.
struct ReadProfile {
  std::string text;
};

class PosixProfileFiles : public ProfileFiles {
 public:
  explicit PosixProfileFiles(SystemCalls& calls) : calls_(calls), patience_(calls) {}

  std::optional<std::string> Read(std::string_view path, std::string_view section,
                                  std::string_view key) override {
    const ThreadKept<ReadProfile> read;
    const auto value = FindProfileValue(Text(path, *read), section, key);
    return value ? std::optional<std::string>(*value) : std::nullopt;
  }

  Error Write(std::string_view path, std::string_view section, std::optional<std::string_view> key,
              std::optional<std::string_view> value) override;

  std::vector<std::string> Sections(std::string_view path) override {
    const ThreadKept<ReadProfile> read;
    return ProfileSections(Text(path, *read));
  }

  std::vector<std::string> Keys(std::string_view path, std::string_view section) override {
    const ThreadKept<ReadProfile> read;
    return ProfileKeys(Text(path, *read), section);
  }

  Error CheckReadable(std::string_view path) override {
    const ThreadKept<ReadProfile> read;
    Error error = Load(path, *read);
    if (error.ok() && IsWideProfile(read->text)) error = {ErrorKind::kUnsupported, EILSEQ};
    return error.kind == ErrorKind::kNotFound ? Error{} : error;
  }

 private:
  /// Reads the file's text into `read`.
  Error Load(std::string_view path, ReadProfile& read);
  /// The same, and the text; "" if it can't be read.
  std::string_view Text(std::string_view path, ReadProfile& read) {
    return Load(path, read).ok() ? read.text : std::string_view{};
  }

  SystemCalls& calls_;
  LockPatience patience_;
};

Error PosixProfileFiles::Load(std::string_view path, ReadProfile& read) {
  constexpr std::size_t kMostKept = 1 << 20;
  // An assignment would keep the memory.
  if (read.text.capacity() > kMostKept) std::string().swap(read.text);
  const Result<std::string> located = Locate(path);
  if (!located.ok()) return located.error;
  const Result<int> fd = OpenFile(calls_, located.value, O_RDONLY | O_NONBLOCK | O_NOCTTY);
  if (!fd.ok()) return fd.error;
  const FileDescriptor file(calls_, fd.value);
  struct stat status;
  return ReadOpenFile(calls_, file.get(), read.text, status);
}

/// Changes the text; false if it says that already.
bool Change(std::string& text, std::string_view section, std::optional<std::string_view> key,
            std::optional<std::string_view> value) {
  if (!key) return DeleteProfileSection(text, section);
  if (!value) return DeleteProfileKey(text, section, *key);
  return SetProfileValue(text, section, *key, *value);
}

Error PosixProfileFiles::Write(std::string_view path, std::string_view section,
                               std::optional<std::string_view> key,
                               std::optional<std::string_view> value) try {
  const bool sets = key && value;
  if (!IsProfileSectionName(section) || (key && !IsProfileKeyName(*key)) ||
      (sets && !IsProfileValue(*value))) {
    return ErrorFromErrno(EINVAL);
  }
  Result<std::string> located = Locate(path);
  if (located.ok()) located = FollowLinks(std::move(located.value), calls_);
  if (!located.ok()) return located.error;
  LockedProfile profile(calls_, patience_, located.value);
  Error error = profile.Open(sets);
  if (error.kind == ErrorKind::kNotFound && sets && FindSeparator(path) == std::string_view::npos) {
    // The directory for settings belongs to this program, unlike those that callers name.
    error = MakeDirectories(calls_, DirectoryOf(located.value));
    if (error.ok()) error = profile.Open(sets);
  }
  if (error.kind == ErrorKind::kNotFound && !sets) return {};  // nothing there to delete
  std::string text;
  if (error.ok()) error = profile.Read(text);
  if (error.ok() && IsWideProfile(text)) error = {ErrorKind::kUnsupported, EILSEQ};
  if (error.ok() && Change(text, section, key, value)) error = profile.Replace(text);
  if (error.ok()) profile.Keep();
  return error;
} catch (const std::exception&) {
  return ErrorOfException();
}

}  // namespace

ProfileFiles& SystemProfileFiles() {
  static PosixProfileFiles& profiles = *new PosixProfileFiles(RealSystemCalls());
  return profiles;
}

std::unique_ptr<ProfileFiles> MakeProfileFiles(SystemCalls& calls) {
  return std::make_unique<PosixProfileFiles>(calls);
}

}  // namespace dq::platform::posix
