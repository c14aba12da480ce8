#include "dqlib/platform/console.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <exception>
#include <fcntl.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform {
namespace {

constexpr std::array kStopSignals = {SIGINT, SIGQUIT, SIGTERM, SIGHUP};

/// What the signal handler tells the watch's thread, and what its destructor does.
constexpr char kStopAsked = 's';
constexpr char kWatchEnds = 'e';

/// Where the signal handler writes; -1 without a watch.
std::atomic<int> g_wake = -1;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler reads it");

void OnStopSignal(int) {
  const int error = errno;
  // A full pipe holds requests enough, so a failure loses nothing.
  [[maybe_unused]] const auto written = write(g_wake.load(), &kStopAsked, 1);
  errno = error;
}

// A handler, and not "ignore", because that would be passed on to children.
void OnRefusedWrite(int) {}

bool IsIgnored(int signal_number) {
  struct sigaction present {};
  return sigaction(signal_number, nullptr, &present) == 0 && present.sa_handler == SIG_IGN;
}

struct sigaction Handler(void (*function)(int)) {
  struct sigaction action {};
  action.sa_handler = function;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  return action;
}

class SignalWatch : public Console::StopWatch {
 public:
  SignalWatch(int read_end, int write_end, std::function<void()> on_stop)
      : read_end_(read_end), write_end_(write_end), on_stop_(std::move(on_stop)) {
    // First, because it may fail, and nothing is to be taken back then.
    thread_ = std::thread([this] { Run(); });
    g_wake = write_end_;
    const struct sigaction action = Handler(OnStopSignal);
    for (std::size_t i = 0; i < kStopSignals.size(); ++i) {
      if (IsIgnored(kStopSignals[i])) continue;
      watched_[i] = sigaction(kStopSignals[i], &action, &former_[i]) == 0;
    }
  }

  ~SignalWatch() override {
    for (std::size_t i = 0; i < kStopSignals.size(); ++i) {
      if (watched_[i]) sigaction(kStopSignals[i], &former_[i], nullptr);
    }
    g_wake = -1;
    // The pipe may be full of requests; then the thread is about to make room.
    while (write(write_end_, &kWatchEnds, 1) < 0 && (errno == EAGAIN || errno == EINTR)) {
      std::this_thread::yield();
    }
    thread_.join();
    close(read_end_);
    close(write_end_);
  }

 private:
  void Run() {
    char word = 0;
    for (;;) {
      const auto size = read(read_end_, &word, 1);
      if (size < 0 && errno == EINTR) continue;
      if (size != 1 || word == kWatchEnds) return;
      on_stop_();
    }
  }

  int read_end_;
  int write_end_;
  std::function<void()> on_stop_;
  std::array<bool, kStopSignals.size()> watched_{};
  std::array<struct sigaction, kStopSignals.size()> former_{};
  std::thread thread_;
};

class PosixConsole : public Console {
 public:
  void PrepareStreams() override {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
      if (fcntl(stream, F_GETFD) != -1 || errno != EBADF) continue;
      // The lowest number that is free is the stream's, since those below it are open by now.
      open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
    const struct sigaction action = Handler(OnRefusedWrite);
    for (const int refusal : {SIGPIPE, SIGXFSZ}) {
      if (!IsIgnored(refusal)) sigaction(refusal, &action, nullptr);
    }
  }

  std::unique_ptr<StopWatch> WatchStopRequests(std::function<void()> on_stop) override {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return nullptr;
    // Only the writer must not wait: it may be a signal handler.
    fcntl(ends[1], F_SETFL, O_NONBLOCK);
    try {
      return std::make_unique<SignalWatch>(ends[0], ends[1], std::move(on_stop));
    } catch (const std::exception&) {
      close(ends[0]);
      close(ends[1]);
      return nullptr;
    }
  }
};

}  // namespace

namespace posix {

Console& SystemConsole() {
  static Console* const console = new PosixConsole;
  return *console;
}

}  // namespace posix
}  // namespace dq::platform
