// dqtool run: runs a console program and prints what it reports, line by line.

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "apps/dqtool/command.h"
#include "apps/dqtool/number_word.h"
#include "dqlib/dbvocab/db_utility.h"
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

/// Whom the program is to be connected as.
struct Connection {
  std::string user;
  std::optional<std::string> password_file;
  std::string datasource;
  int mode = dq::CDQDBUtility::kNormal;
};

struct Options {
  std::string directory;
  bool keep_left = false;
  std::optional<Connection> connection;
  std::string program;
  std::string arguments;
};

/// Takes an option that has a word behind it; null is none. False if it isn't such an option.
bool TakeOption(const std::string& option, const std::string* word, Options& options) {
  const auto need = [&](const char* what) {
    if (word == nullptr) throw WrongUsage(option + " needs a " + what);
    return *word;
  };
  const auto connection = [&]() -> Connection& {
    if (!options.connection) options.connection.emplace();
    return *options.connection;
  };
  if (option == "--dir") {
    options.directory = need("DIR");
  } else if (option == "--user") {
    connection().user = need("U");
  } else if (option == "--password-file") {
    connection().password_file = need("F");
  } else if (option == "--datasource") {
    connection().datasource = need("D");
  } else if (option == "--auth") {
    connection().mode = ReadNumber<int>(need("MODE"), "MODE");
  } else {
    return false;
  }
  return true;
}

Options Parse(Words words) {
  Options options;
  for (; !words.empty() && words[0].starts_with('-'); words = words.subspan(1)) {
    if (words[0] == "--") {
      words = words.subspan(1);
      break;
    }
    if (words[0] == "--keep-left") {
      options.keep_left = true;
    } else if (TakeOption(words[0], words.size() > 1 ? &words[1] : nullptr, options)) {
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

/// The first line of the file; no value, which has been said, if there is none or it is no text.
std::optional<std::string> ReadPassword(const std::string& path) {
  std::string text;
  const dq::platform::Error error = dq::platform::Current().files->ReadAll(path, text);
  if (!error.ok()) {
    const auto reason = dq::platform::Current().system_errors->Describe(error.code);
    std::string complaint = "run: cannot read " + path + ": " + reason.value_or("");
    Complain(complaint.erase(complaint.find_last_not_of("\r\n: ") + 1));
    return std::nullopt;
  }
  text.resize(std::min(text.find_first_of("\r\n"), text.size()));
  if (text.find('\0') == std::string::npos) return text;
  Complain("run: the password in " + path + " has a zero byte");
  return std::nullopt;
}

/// The program that the options ask for; null, which has been said, if its password can't be read.
std::unique_ptr<dq::CDQConsoleProgram> MakeProgram(const Options& options) {
  if (!options.connection) return std::make_unique<dq::CDQConsoleProgram>();
  auto utility = std::make_unique<dq::CDQDBUtility>();
  utility->SetUser(options.connection->user.c_str());
  utility->SetDatasource(options.connection->datasource.c_str());
  utility->SetAuthenticationMode(options.connection->mode);
  if (options.connection->password_file) {
    const std::optional<std::string> password = ReadPassword(*options.connection->password_file);
    if (!password) return nullptr;
    utility->SetPassword(password->c_str());
  }
  return utility;
}

int Run(dq::CDQConsoleProgram& program, const Options& options) {
  dq::CString last;
  if (!options.connection) {
    return program.RunExecutable(options.program.c_str(), last, options.arguments.c_str());
  }
  const bool has_arguments = !options.arguments.empty();
  const std::string command = options.program + (has_arguments ? " " + options.arguments : "");
  return program.RunExecutable(command.c_str(), last, nullptr);
}

int RunProgram(Words words) {
  const Options options = Parse(words);
  const std::unique_ptr<dq::CDQConsoleProgram> made = MakeProgram(options);
  if (made == nullptr) return kNo;
  dq::CDQConsoleProgram& program = *made;
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
    result = Run(program, options);
    cancelled = canceller.WasAsked();
  }
  if (!g_feedback.output_failure.empty()) return Complain(g_feedback.output_failure);
  if (cancelled) return Complain("run: stopped");
  return result == 1 ? kYes : kNo;
}

const Command kRun{
    "run",
    "[--dir DIR] [--keep-left] [--user U] [--password-file F] [--datasource D] [--auth MODE] "
    "PROGRAM [ARGUMENTS]",
    "Runs a console program and prints its output line by line.",
    "The command line comes first, with passwords masked: what stands between the first '/'\n"
    "and the first '@', and what follows '-P'. Blank lines are left out. ARGUMENTS is one text;\n"
    "blanks separate, quotes group, and nothing is expanded. Options end at PROGRAM.\n"
    "\n"
    "  --dir DIR    the program's working directory\n"
    "  --keep-left  keep the blanks at the start of lines\n"
    "\n"
    "With one of the following, U/PASSWORD@D goes behind PROGRAM and ARGUMENTS, and the password\n"
    "is masked wherever it stands in the command line:\n"
    "\n"
    "  --user U           the user\n"
    "  --password-file F  the password is the first line of the file\n"
    "  --datasource D     the database\n"
    "  --auth MODE        above 0 puts that in quotes, with AS SYSDBA behind it for 2 and\n"
    "                     AS SYSOPER for 4\n"
    "\n"
    "The exit status is 0 when the program ran, whatever its own was, and 1 when it was stopped\n"
    "by a signal to dqtool or because standard output takes no more. A failure is told as\n"
    "'dqtool: CODE: TEXT': -3 it could not be started, -4 a pipe could not be made, -5 reading\n"
    "failed, -6 no program.\n",
    RunProgram};

}  // namespace
}  // namespace dqtool
