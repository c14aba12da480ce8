// Child processes by posix_spawn, which costs the same however much memory this process holds.

#include "dqlib/platform/processes.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <condition_variable>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <unordered_map>
#include <utility>

#include "dqlib/platform/posix/signal_block.h"
#include "dqlib/platform/posix/system_calls.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// Repeats a system call while a signal interrupts it.
template <typename Call>
auto Uninterrupted(Call call) {
  decltype(call()) result;
  do {
    result = call();
  } while (result < 0 && errno == EINTR);
  return result;
}

/// Owns a descriptor that no child inherits.
class Descriptor {
 public:
  Descriptor() = default;
  /// Takes the number over, or a copy of it above those of the standard handles, which a start
  /// would otherwise overwrite before it comes to this one.
  explicit Descriptor(int number) : number_(number) {
    if (number < 0 || number > STDERR_FILENO) return;
    number_ = fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = errno;
    close(number);
    errno = error;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }

  int number() const { return number_; }
  bool valid() const { return number_ >= 0; }

 private:
  int number_ = -1;
};

enum class Direction { kRead, kWrite };

class PipeEnd {
 public:
  /// `wake` is readable once reads or writes are to end.
  PipeEnd(Direction direction, int end, int wake) : direction_(direction), end_(end), wake_(wake) {}

  bool valid() const { return end_.valid() && wake_.valid(); }
  int number() const { return end_.number(); }

  Result<std::size_t> Read(std::span<char> buffer) const;
  Result<std::size_t> Write(std::string_view bytes) const;
  void Interrupt() const;

 private:
  Error WaitFor(short event) const;

  const Direction direction_;
  const Descriptor end_;
  const Descriptor wake_;
};

Error PipeEnd::WaitFor(short event) const {
  // The pipe stays in blocking mode, which it would share with a child that is given this end.
  std::array<pollfd, 2> waits{{{number(), event, 0}, {wake_.number(), POLLIN, 0}}};
  if (Uninterrupted([&] { return poll(waits.data(), waits.size(), -1); }) < 0) {
    return ErrorFromErrno(errno);
  }
  return waits[1].revents != 0 ? ErrorFromErrno(EPIPE) : Error{};
}

Result<std::size_t> PipeEnd::Read(std::span<char> buffer) const {
  if (direction_ != Direction::kRead) return ErrorFromErrno(EBADF);
  if (const Error error = WaitFor(POLLIN); !error.ok()) return error;
  const ssize_t size = Uninterrupted([&] { return read(number(), buffer.data(), buffer.size()); });
  if (size < 0) return ErrorFromErrno(errno);
  return static_cast<std::size_t>(size);
}

Result<std::size_t> PipeEnd::Write(std::string_view bytes) const {
  if (direction_ != Direction::kWrite) return ErrorFromErrno(EBADF);
  // A pipe without a reader raises SIGPIPE in the writing thread. It is held back, and taken away
  // unless one was waiting already.
  sigset_t sigpipe;
  sigemptyset(&sigpipe);
  sigaddset(&sigpipe, SIGPIPE);
  const SignalBlock block(sigpipe);
  sigset_t pending;
  sigpending(&pending);
  for (std::size_t written = 0; written < bytes.size();) {
    if (const Error error = WaitFor(POLLOUT); !error.ok()) return error;
    // A pipe that takes anything takes so much at once, and so does a file.
    const std::size_t piece = std::min<std::size_t>(bytes.size() - written, PIPE_BUF);
    const ssize_t size =
        Uninterrupted([&] { return write(number(), bytes.data() + written, piece); });
    if (size < 0) {
      const int error = errno;
      const timespec no_time{};
      if (error == EPIPE && sigismember(&pending, SIGPIPE) == 0) {
        Uninterrupted([&] { return sigtimedwait(&sigpipe, nullptr, &no_time); });
      }
      return ErrorFromErrno(error);
    }
    written += static_cast<std::size_t>(size);
  }
  return bytes.size();
}

void PipeEnd::Interrupt() const {
  // Can't fail but when it is signalled already to the limit, and then it has its effect.
  eventfd_write(wake_.number(), 1);
}

/// Takes the descriptor over.
Result<std::shared_ptr<PipeEnd>> MakeEnd(Direction direction, FileDescriptor descriptor) {
  FileDescriptor wake(RealSystemCalls(), eventfd(0, EFD_CLOEXEC));
  if (!descriptor.is_open() || !wake.is_open()) return ErrorFromErrno(errno);
  auto end = std::make_shared<PipeEnd>(direction, descriptor.get(), wake.get());
  const int error = errno;
  static_cast<void>(descriptor.Release());
  static_cast<void>(wake.Release());
  if (!end->valid()) return ErrorFromErrno(error);
  return end;
}

/// A child of this process. Its number is its own until it is reaped, which is done under the lock
/// that also stands round ending it.
class Child : public std::enable_shared_from_this<Child> {
 public:
  /// Before any other call, the number of the process.
  void Begin(pid_t number) { number_ = number; }

  Result<int> Wait();
  Error Terminate();
  /// Sees to it that the child is reaped when it ends. False if the system has no thread for that.
  bool Abandon();

 private:
  /// Takes the end from the system. No value if it hasn't come and `options` is WNOHANG.
  std::optional<Result<int>> Reap(int options) const;

  pid_t number_ = 0;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool waited_for_ = false;
  std::optional<Result<int>> end_;
};

std::optional<Result<int>> Child::Reap(int options) const {
  siginfo_t info{};
  const id_t id = static_cast<id_t>(number_);
  if (Uninterrupted([&] { return waitid(P_PID, id, &info, WEXITED | options); }) < 0) {
    return ErrorFromErrno(errno);
  }
  if (info.si_pid == 0) return std::nullopt;
  return info.si_code == CLD_EXITED ? info.si_status : 128 + info.si_status;
}

Result<int> Child::Wait() {
  std::unique_lock lock(mutex_);
  while (!end_) {
    if (waited_for_) {
      ended_.wait(lock);
      continue;
    }
    waited_for_ = true;
    lock.unlock();
    Reap(WNOWAIT);  // Only waits: whether it failed, the next one says again.
    lock.lock();
    end_ = Reap(0);
    ended_.notify_all();
  }
  return *end_;
}

Error Child::Terminate() {
  const std::lock_guard lock(mutex_);
  if (end_ || kill(-number_, SIGKILL) == 0 || errno == ESRCH) return {};
  return ErrorFromErrno(errno);
}

bool Child::Abandon() {
  const std::lock_guard lock(mutex_);
  if (end_ || waited_for_) return true;
  end_ = Reap(WNOHANG);
  if (end_) return true;
  // The thread leaves the signals of this process to others.
  const SignalBlock block(AllSignals());
  try {
    std::thread([self = shared_from_this()] { self->Wait(); }).detach();
  } catch (const std::system_error&) {
    return false;
  }
  return true;
}

/// What a child is made with, as the system wants it.
class SpawnSettings {
 public:
  SpawnSettings() {
    posix_spawnattr_init(&attributes_);
    posix_spawn_file_actions_init(&actions_);
    posix_spawnattr_setflags(&attributes_, static_cast<short>(POSIX_SPAWN_SETSID) |
                                               POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    sigfillset(&signals);
    sigdelset(&signals, SIGKILL);
    sigdelset(&signals, SIGSTOP);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }

  /// Errors of these are that memory has run out.
  int Redirect(int descriptor, int standard) {
    return posix_spawn_file_actions_adddup2(&actions_, descriptor, standard);
  }
  /// To the null device.
  int Redirect(int standard) {
    return posix_spawn_file_actions_addopen(&actions_, standard, "/dev/null", O_RDWR, 0);
  }
  int ChangeDirectory(const std::string& directory) {
    return posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str());
  }
  int CloseOthers() {
    return posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
  }

  int Spawn(const std::string& program, std::vector<std::string>& arguments, pid_t& number) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    return posix_spawnp(&number, program.c_str(), &actions_, &attributes_, pointers.data(),
                        environ);
  }

 private:
  posix_spawnattr_t attributes_;
  posix_spawn_file_actions_t actions_;
};

/// One count for the tables of all kinds, so that a handle names one thing only.
std::atomic<HANDLE> g_next_handle = kNoHandle + 1;

/// What handles of one kind name.
template <typename T>
class HandleTable {
 public:
  HANDLE Add(std::shared_ptr<T> object) {
    static_assert(sizeof(HANDLE) == 8, "numbers must not run out");
    const HANDLE handle = g_next_handle.fetch_add(1, std::memory_order_relaxed);
    const std::lock_guard lock(mutex_);
    objects_.emplace(handle, std::move(object));
    return handle;
  }
  /// Null for a number that names none.
  std::shared_ptr<T> Find(HANDLE handle) {
    const std::lock_guard lock(mutex_);
    const auto found = objects_.find(handle);
    return found == objects_.end() ? nullptr : found->second;
  }
  std::shared_ptr<T> Remove(HANDLE handle) {
    const std::lock_guard lock(mutex_);
    const auto node = objects_.extract(handle);
    return node.empty() ? nullptr : node.mapped();
  }

 private:
  std::mutex mutex_;
  std::unordered_map<HANDLE, std::shared_ptr<T>> objects_;
};

class PosixProcesses final : public Processes {
 public:
  Result<Pipe> CreatePipe() override;
  Result<HANDLE> OpenStandardInput() override { return Open(STDIN_FILENO, Direction::kRead); }
  Result<HANDLE> OpenStandardOutput() override { return Open(STDOUT_FILENO, Direction::kWrite); }
  Result<StartedProcess> Start(const StartInfo& info) override;
  void Close(HANDLE handle) override;

  Result<std::size_t> Read(HANDLE read_end, std::span<char> buffer) override {
    const auto end = ends_.Find(read_end);
    return end == nullptr ? ErrorFromErrno(EBADF) : end->Read(buffer);
  }
  Result<std::size_t> Write(HANDLE write_end, std::string_view bytes) override {
    const auto end = ends_.Find(write_end);
    return end == nullptr ? ErrorFromErrno(EBADF) : end->Write(bytes);
  }
  void Interrupt(HANDLE handle) override {
    if (const auto end = ends_.Find(handle)) end->Interrupt();
  }
  Result<int> Wait(HANDLE process) override {
    const auto child = children_.Find(process);
    return child == nullptr ? ErrorFromErrno(EBADF) : child->Wait();
  }
  Error Terminate(HANDLE process) override {
    const auto child = children_.Find(process);
    return child == nullptr ? ErrorFromErrno(EBADF) : child->Terminate();
  }
  std::optional<std::string> EnvironmentVariable(const std::string& name) override {
    const char* const value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
  }
  std::string_view LineEnd() override { return "\n"; }

 private:
  Result<HANDLE> Open(int standard, Direction direction);
  int RedirectStandardHandles(const StartInfo& info, SpawnSettings& settings);
  void Abandon(std::shared_ptr<Child> child);

  HandleTable<PipeEnd> ends_;
  HandleTable<Child> children_;
  /// Children that are still to be abandoned, for want of a thread.
  std::mutex mutex_;
  std::vector<std::shared_ptr<Child>> unabandoned_;
};

Result<Pipe> PosixProcesses::CreatePipe() try {
  std::array<int, 2> numbers;
  if (pipe2(numbers.data(), O_CLOEXEC) != 0) return ErrorFromErrno(errno);
  FileDescriptor reader(RealSystemCalls(), numbers[0]);
  FileDescriptor writer(RealSystemCalls(), numbers[1]);
  const auto write_end = MakeEnd(Direction::kWrite, std::move(writer));
  if (!write_end.ok()) return write_end.error;
  const auto read_end = MakeEnd(Direction::kRead, std::move(reader));
  if (!read_end.ok()) return read_end.error;
  return Pipe{.read_end = ends_.Add(read_end.value), .write_end = ends_.Add(write_end.value)};
} catch (const std::exception&) {
  return ErrorOfException();
}

Result<HANDLE> PosixProcesses::Open(int standard, Direction direction) try {
  FileDescriptor copy(RealSystemCalls(), fcntl(standard, F_DUPFD_CLOEXEC, 0));
  const auto end = MakeEnd(direction, std::move(copy));
  return end.ok() ? Result<HANDLE>(ends_.Add(end.value)) : end.error;
} catch (const std::exception&) {
  return ErrorOfException();
}

int PosixProcesses::RedirectStandardHandles(const StartInfo& info, SpawnSettings& settings) {
  const std::pair<HANDLE, int> redirections[] = {{info.standard_input, STDIN_FILENO},
                                                 {info.standard_output, STDOUT_FILENO},
                                                 {info.standard_error, STDERR_FILENO}};
  for (const auto& [handle, standard] : redirections) {
    if (handle == kNoHandle) continue;
    const auto end = ends_.Find(handle);
    if (end == nullptr && handle != kNullDevice) return EBADF;
    const int error =
        end == nullptr ? settings.Redirect(standard) : settings.Redirect(end->number(), standard);
    if (error != 0) return error;
  }
  return settings.CloseOthers();
}

Result<StartedProcess> PosixProcesses::Start(const StartInfo& info) try {
  constexpr char kZero = '\0';
  if (info.command_line.find(kZero) != std::string::npos ||
      info.directory.find(kZero) != std::string::npos) {
    return ErrorFromErrno(EINVAL);
  }
  std::vector<std::string> arguments;
  SplitCommandLine(info.command_line, arguments);
  if (arguments.empty()) return ErrorFromErrno(ENOENT);
  std::string program = arguments.front();
  SpawnSettings settings;
  if (const int error = RedirectStandardHandles(info, settings)) return ErrorFromErrno(error);
  if (!info.directory.empty()) {
    if (const int error = settings.ChangeDirectory(info.directory)) return ErrorFromErrno(error);
    if (program.find('/') != std::string::npos) {
      // The child is in its directory already when it looks for the program.
      std::error_code error;
      program = std::filesystem::absolute(program, error).string();
      if (error) return ErrorFromErrno(error.value());
    }
  }
  // Known before it runs, because there may be no memory for that afterwards.
  const auto child = std::make_shared<Child>();
  const HANDLE handle = children_.Add(child);
  pid_t number = 0;
  int error = ENOMEM;
  try {
    error = settings.Spawn(program, arguments, number);
  } catch (const std::bad_alloc&) {
    // Only what comes before the process is made takes memory.
  }
  if (error != 0) {
    children_.Remove(handle);
    return ErrorFromErrno(error);
  }
  child->Begin(number);
  return StartedProcess{.process = handle, .process_id = static_cast<DWORD>(number)};
} catch (const std::exception&) {
  return ErrorOfException();
}

void PosixProcesses::Close(HANDLE handle) {
  if (auto child = children_.Remove(handle)) {
    Abandon(std::move(child));
  } else {
    ends_.Remove(handle);
  }
}

void PosixProcesses::Abandon(std::shared_ptr<Child> child) {
  const std::lock_guard lock(mutex_);
  unabandoned_.push_back(std::move(child));
  std::erase_if(unabandoned_, [](const auto& each) { return each->Abandon(); });
}

}  // namespace

Processes& SystemProcesses() {
  // Never destroyed: threads that wait for abandoned children outlive static objects.
  static auto& processes = *new PosixProcesses;
  return processes;
}

}  // namespace dq::platform::posix
