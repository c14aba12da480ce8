// Watches on directories by one inotify instance, which a thread reads as long as there are any.

#include "dqlib/platform/change_notifications.h"

#include <array>
#include <cerrno>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <unordered_map>
#include <utility>

#include "dqlib/platform/posix/directory_watches.h"
#include "dqlib/platform/posix/native_path.h"
#include "dqlib/platform/posix/signal_block.h"
#include "dqlib/platform/posix/system_calls.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

constexpr DWORD kAllFilters =
    CHANGE_FILE_NAME | CHANGE_DIRECTORY_NAME | CHANGE_ATTRIBUTES | CHANGE_SIZE | CHANGE_LAST_WRITE;

/// A watch that somebody may wait for.
struct OpenWatch {
  DirectoryWatch directory;
  bool interrupted = false;
  std::condition_variable told;

  bool HasNews() const {
    return interrupted || directory.changed || directory.gone || !directory.error.ok();
  }
};

FileDescriptor Opened(int descriptor) {
  if (descriptor < 0) throw std::system_error(errno, std::generic_category());
  return {RealSystemCalls(), descriptor};
}

/// An inotify instance, and the thread that reads it until it is destroyed.
class EventReader {
 public:
  /// Enters what it reads into `watches`, and calls `on_news`, both with the mutex held.
  EventReader(std::mutex& mutex, std::function<void()> on_news)
      : inotify_(Opened(inotify_init1(IN_CLOEXEC))),
        wake_(Opened(eventfd(0, EFD_CLOEXEC))),
        mutex_(mutex),
        on_news_(std::move(on_news)),
        watches_(inotify_.get()) {
    // The thread leaves the signals of this process to others.
    const SignalBlock block(AllSignals());
    thread_ = std::thread([this] { Run(); });
  }
  EventReader(const EventReader&) = delete;
  EventReader& operator=(const EventReader&) = delete;
  ~EventReader() {
    eventfd_write(wake_.get(), 1);
    thread_.join();
  }

  /// With the mutex held.
  DirectoryWatches& watches() { return watches_; }

 private:
  void Run() {
    std::array<pollfd, 2> waits{{{inotify_.get(), POLLIN, 0}, {wake_.get(), POLLIN, 0}}};
    for (Error refused; refused.ok();) {
      if (poll(waits.data(), waits.size(), -1) < 0 && errno == EINTR) continue;
      if (waits[1].revents != 0) return;
      const ssize_t size = read(inotify_.get(), buffer_.data(), buffer_.size());
      if (size < 0 && errno == EINTR) continue;
      if (size < 0) refused = ErrorFromErrno(errno);
      const std::lock_guard lock(mutex_);
      try {
        if (!refused.ok()) watches_.Fail(refused);
        watches_.Handle({buffer_.data(), size > 0 ? static_cast<std::size_t>(size) : 0});
      } catch (const std::exception&) {
        watches_.Fail(ErrorOfException());
      }
      on_news_();
    }
  }

  FileDescriptor inotify_;
  FileDescriptor wake_;
  std::mutex& mutex_;
  const std::function<void()> on_news_;
  DirectoryWatches watches_;
  std::array<char, 65536> buffer_;
  std::thread thread_;
};

class InotifyNotifications final : public ChangeNotifications {
 public:
  Result<HANDLE> Open(std::string_view directory, bool subtree, DWORD filter) override;
  Result<ChangeNotice> Wait(HANDLE watch) override;
  void Interrupt(HANDLE watch) override;
  void Close(HANDLE watch) override;

 private:
  using Lock = std::unique_lock<std::mutex>;

  /// Null for a number that names none.
  std::shared_ptr<OpenWatch> Find(HANDLE watch) {
    const auto found = watches_.find(watch);
    return found == watches_.end() ? nullptr : found->second;
  }
  void TellNews() {
    for (const auto& [handle, watch] : watches_) {
      if (watch->HasNews()) watch->told.notify_all();
    }
  }
  /// Gives the reader up if nobody needs it any more.
  void StopIfIdle(Lock lock);

  std::mutex mutex_;
  HANDLE last_handle_ = kNoHandle;
  std::unordered_map<HANDLE, std::shared_ptr<OpenWatch>> watches_;
  std::unique_ptr<EventReader> reader_;
};

Result<HANDLE> InotifyNotifications::Open(std::string_view directory, bool subtree,
                                          DWORD filter) try {
  if ((filter & kAllFilters) == 0) return ErrorFromErrno(EINVAL);
  Result<std::string> path = AbsolutePath(directory);
  if (!path.ok()) return path.error;
  const auto watch = std::make_shared<OpenWatch>();
  watch->directory = {.root = std::move(path.value), .subtree = subtree, .filter = filter};
  Lock lock(mutex_);
  if (reader_ == nullptr) {
    reader_ = std::make_unique<EventReader>(mutex_, [this] { TellNews(); });
  }
  const HANDLE handle = ++last_handle_;
  Error error = ErrorFromErrno(ENOMEM);
  try {
    watches_.emplace(handle, watch);
    error = reader_->watches().Add(watch->directory);
  } catch (const std::exception&) {
    error = ErrorOfException();
    reader_->watches().Remove(watch->directory);
  }
  if (error.ok()) return handle;
  watches_.erase(handle);
  StopIfIdle(std::move(lock));
  return error;
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<ChangeNotice> InotifyNotifications::Wait(HANDLE handle) {
  Lock lock(mutex_);
  const std::shared_ptr<OpenWatch> watch = Find(handle);
  if (watch == nullptr) return ErrorFromErrno(EBADF);
  watch->told.wait(lock, [&] { return watch->HasNews(); });
  if (watch->interrupted) return ChangeNotice::kInterrupted;
  if (std::exchange(watch->directory.changed, false)) return ChangeNotice::kChanged;
  if (watch->directory.gone) return ChangeNotice::kGone;
  return watch->directory.error;
}

void InotifyNotifications::Interrupt(HANDLE handle) {
  const Lock lock(mutex_);
  const std::shared_ptr<OpenWatch> watch = Find(handle);
  if (watch == nullptr) return;
  watch->interrupted = true;
  watch->told.notify_all();
}

void InotifyNotifications::Close(HANDLE handle) {
  Lock lock(mutex_);
  const std::shared_ptr<OpenWatch> watch = Find(handle);
  if (watch == nullptr) return;
  watch->interrupted = true;
  watch->told.notify_all();
  reader_->watches().Remove(watch->directory);
  watches_.erase(handle);
  StopIfIdle(std::move(lock));
}

void InotifyNotifications::StopIfIdle(Lock lock) {
  if (!watches_.empty()) return;
  // Its thread may be about to take the mutex.
  const std::unique_ptr<EventReader> reader = std::move(reader_);
  lock.unlock();
}

}  // namespace

ChangeNotifications& SystemChangeNotifications() {
  static InotifyNotifications& notifications = *new InotifyNotifications;
  return notifications;
}

}  // namespace dq::platform::posix
