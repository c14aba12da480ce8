// dqtool run: runs a console program and prints what it reports, line by line.

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "apps/dqtool/command.h"
#include "dqlib/framework/base/c_string.h"
#include "dqlib/output/console_program.h"
#include "dqlib/platform/platform.h"

namespace dqtool {
namespace {

/// Cancels a program on a thread of its own, because the one inside `RunExecutable` can't.
class Canceller {
 public:
  explicit Canceller(dq::CDQConsoleProgram& program)
      : program_(program), thread_([this] { Run(); }) {}
  Canceller(const Canceller&) = delete;
  Canceller& operator=(const Canceller&) = delete;
  ~Canceller() {
    Set(ended_);
    thread_.join();
  }

  /// From any thread.
  void Cancel() { Set(asked_); }

  bool WasAsked() {
    const std::lock_guard lock(mutex_);
    return asked_;
  }

 private:
  void Set(bool& flag) {
    const std::lock_guard lock(mutex_);
    flag = true;
    changed_.notify_all();
  }

  void Run() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return asked_ || ended_; });
    while (!ended_) {
      lock.unlock();
      program_.CancelProgram();
      lock.lock();
      // Again, until the run has ended: the request may have come before the program was started.
      changed_.wait_for(lock, std::chrono::milliseconds(10), [this] { return ended_; });
    }
  }

  dq::CDQConsoleProgram& program_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool asked_ = false;
  bool ended_ = false;
  std::thread thread_;
};

/// What the feedback procedure, which is handed no pointer, works on.
struct Feedback {
  Canceller* canceller = nullptr;
  /// Why standard output takes no more; "" while it does.
  std::string output_failure;
};
Feedback g_feedback;

std::string_view WithoutLineEnd(std::string_view text) {
  return text.substr(0, text.find_last_not_of("\r\n") + 1);
}

void OnFailure(int code, const char* text) {
  // The one failure without a text.
  if (text == nullptr) text = "No program to run";
  Complain(std::to_string(code) + ": " + std::string(WithoutLineEnd(text)));
}

int OnFeedback(int code, const char* text) {
  if (code != dq::CONSOLE_LINE) {
    OnFailure(code, text);
  } else if (g_feedback.output_failure.empty()) {
    try {
      PrintLine(text);
    } catch (const OutputClosed& closed) {
      // Nobody listens, so the program has nobody to run for.
      g_feedback.output_failure = closed.what();
      g_feedback.canceller->Cancel();
    }
  }
  return 0;
}

struct Options {
  std::string directory;
  bool keep_left = false;
  std::string program;
  std::string arguments;
};

Options Parse(Words words) {
  Options options;
  for (; !words.empty() && words[0].starts_with('-'); words = words.subspan(1)) {
    if (words[0] == "--") {
      words = words.subspan(1);
      break;
    }
    if (words[0] == "--keep-left") {
      options.keep_left = true;
    } else if (words[0] == "--dir") {
      if (words.size() < 2) throw WrongUsage("--dir needs a DIR");
      options.directory = words[1];
      words = words.subspan(1);
    } else {
      RefuseOption(words[0]);
    }
  }
  if (words.empty()) throw WrongUsage("a PROGRAM is needed");
  if (words.size() > 2) throw WrongUsage("ARGUMENTS is one text; put it in quotes");
  options.program = words[0];
  if (words.size() == 2) options.arguments = words[1];
  return options;
}

int RunProgram(Words words) {
  const Options options = Parse(words);
  dq::CDQConsoleProgram program;
  program.SetCallback(OnFeedback);
  program.SetCurrentDirectory(options.directory.c_str());
  program.EnableTrimLeft(!options.keep_left);

  int result = 0;
  bool cancelled = false;
  {
    Canceller canceller(program);
    g_feedback = {.canceller = &canceller, .output_failure = {}};
    const auto watch =
        dq::platform::Current().console->WatchStopRequests([&canceller] { canceller.Cancel(); });
    dq::CString last;
    result = program.RunExecutable(options.program.c_str(), last, options.arguments.c_str());
    cancelled = canceller.WasAsked();
  }
  if (!g_feedback.output_failure.empty()) return Complain(g_feedback.output_failure);
  if (cancelled) return Complain("run: stopped");
  return result == 1 ? kYes : kNo;
}

const Command kRun{
    "run", "[--dir DIR] [--keep-left] PROGRAM [ARGUMENTS]",
    "Runs a console program and prints its output line by line.",
    "The command line comes first, with passwords masked: what stands between the first '/'\n"
    "and the first '@', and what follows '-P'. Blank lines are left out. ARGUMENTS is one text;\n"
    "blanks separate, quotes group, and nothing is expanded. Options end at PROGRAM.\n"
    "\n"
    "  --dir DIR    the program's working directory\n"
    "  --keep-left  keep the blanks at the start of lines\n"
    "\n"
    "The exit status is 0 when the program ran, whatever its own was, and 1 when it was stopped\n"
    "by a signal to dqtool or because standard output takes no more. A failure is told as\n"
    "'dqtool: CODE: TEXT': -3 it could not be started, -4 a pipe could not be made, -5 reading\n"
    "failed, -6 no program.\n",
    RunProgram};

}  // namespace
}  // namespace dqtool
