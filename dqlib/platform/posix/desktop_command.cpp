#include "dqlib/platform/posix/desktop_command.h"

#include <cerrno>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "dqlib/platform/posix/signal_block.h"
#include "dqlib/platform/posix/system_services.h"
#include "dqlib/platform/processes.h"

namespace dq::platform::posix {
namespace {

/// What the thread that waits for a command shares with who has run it.
struct Run {
  std::mutex mutex;
  std::condition_variable over;
  std::optional<Result<int>> end;
};

Result<int> RunToItsEnd(const std::string& command_line) {
  Processes& processes = SystemProcesses();
  const Result<StartedProcess> started = processes.Start({.command_line = command_line,
                                                          .standard_input = kNullDevice,
                                                          .standard_output = kNullDevice,
                                                          .standard_error = kNullDevice});
  if (!started.ok()) return started.error;
  const Result<int> end = processes.Wait(started.value.process);
  processes.Close(started.value.process);
  return end;
}

Error Unsupported() { return ErrorFromErrno(ENOSYS); }

}  // namespace

Result<std::optional<int>> RunCommand(const std::vector<std::string>& arguments,
                                      std::chrono::milliseconds patience) try {
  std::string command_line;
  for (const std::string& argument : arguments) command_line += QuoteArgument(argument) + " ";
  const auto run = std::make_shared<Run>();
  {
    // The thread leaves the signals of this process to others.
    const SignalBlock block(AllSignals());
    std::thread([run, command_line] {
      const Result<int> end = RunToItsEnd(command_line);
      const std::lock_guard lock(run->mutex);
      run->end = end;
      run->over.notify_all();
    }).detach();
  }
  std::unique_lock lock(run->mutex);
  if (!run->over.wait_for(lock, patience, [&] { return run->end.has_value(); })) {
    return std::optional<int>();
  }
  if (run->end->ok()) return std::optional(run->end->value);
  return run->end->error.kind == ErrorKind::kNotFound ? Unsupported() : run->end->error;
} catch (const std::exception&) {
  return ErrorOfException();
}

Error RunDesktopCommand(const std::vector<std::string>& arguments) {
  const Result<std::optional<int>> ended = RunCommand(arguments);
  if (!ended.ok()) return ended.error;
  switch (ended.value.value_or(0)) {
    case 0:
      return {};
    case 2:
      return ErrorFromErrno(ENOENT);
    case 3:
      return Unsupported();
    default:
      return {ErrorKind::kOther, EIO};
  }
}

}  // namespace dq::platform::posix
