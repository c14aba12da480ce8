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
#include <vector>

#include "apps/common/content.h"
#include "apps/dqtool/command.h"
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
  /// What a failed start names: the program, without its arguments, and its folder.
  std::string program;
  std::string folder;
  /// That standard output takes no more.
  std::optional<OutputClosed> output_closed;
};
Feedback g_feedback;

void OnFailure(int code, const char* text) {
  // The one failure without a text.
  std::string complaint = text == nullptr ? "No program to run" : text;
  complaint.erase(complaint.find_last_not_of("\r\n") + 1);
  if (code == dq::CONSOLE_START_FAILED) {
    complaint += ": '" + g_feedback.program + "' in '" + g_feedback.folder + "'";
  }
  Complain(std::to_string(code) + ": " + complaint);
}

int OnFeedback(int code, const char* text) {
  if (code != dq::CONSOLE_LINE) {
    OnFailure(code, text);
  } else if (!g_feedback.output_closed) {
    try {
      PrintLine(text);
    } catch (const OutputClosed& closed) {
      // Nobody listens, so the program has nobody to run for.
      g_feedback.output_closed = closed;
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

constexpr Option kUser{"--user", "U", "the user"};
constexpr Option kPasswordFile{"--password-file", "F",
                               "the password is the first line of the file"};
constexpr Option kDatasource{"--datasource", "D", "the database"};
constexpr Option kAuth{"--auth", "MODE",
                       "0, or above 0 puts that in quotes, with AS SYSDBA behind it for 2 and\n"
                       "AS SYSOPER for 4"};

Options OptionsOf(const Arguments& arguments) {
  Options options{.directory = arguments.Get("--dir"),
                  .keep_left = arguments.Has("--keep-left"),
                  .connection = std::nullopt,
                  .program = arguments.words[0],
                  .arguments = arguments.words.size() > 1 ? arguments.words[1] : ""};
  if (arguments.Has("--dir") && options.directory.empty()) throw WrongUsage("DIR is empty");
  for (const Option& option : {kUser, kPasswordFile, kDatasource, kAuth}) {
    if (arguments.Has(option.name)) options.connection.emplace();
  }
  if (!options.connection) return options;
  options.connection->user = arguments.Get(kUser.name);
  options.connection->datasource = arguments.Get(kDatasource.name);
  if (const std::string* const file = arguments.Find(kPasswordFile.name)) {
    options.connection->password_file = *file;
  }
  if (const std::string* const mode = arguments.Find(kAuth.name)) {
    options.connection->mode = ReadNumber<int>(*mode, kAuth.value, 0, dq::CDQDBUtility::kSysOper);
  }
  return options;
}

/// The first line of the file; no value, which has been said, if there is none or it is no text.
std::optional<std::string> ReadPassword(const std::string& path) {
  std::optional<std::string> text = dqapps::ReadContent(path);
  if (!text) return text;
  text->resize(std::min(text->find_first_of("\r\n"), text->size()));
  if (text->find('\0') == std::string::npos) return text;
  Complain("the password in " + dqapps::NameOfInput(path) + " has a zero byte");
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

/// What a start that failed is told by.
void NoteNames(const Options& options) {
  std::vector<std::string> words;
  dq::platform::SplitCommandLine(options.program, words);
  g_feedback.program = words.empty() ? options.program : words[0];
  dq::platform::Files& files = *dq::platform::Current().files;
  const auto full = files.FullPath(options.directory);
  g_feedback.folder = options.directory.empty() ? files.CurrentDirectory()
                      : full.ok()               ? full.value
                                                : options.directory;
}

/// The status of a program that `env` and shells have.
int StatusOf(const dq::CDQConsoleProgram& program, bool has_run) {
  constexpr int kNotExecutable = 126;
  constexpr int kNotFound = 127;
  if (has_run) return program.GetExitCode();
  const dq::platform::Error& error = program.GetStartError();
  if (error.ok()) return kNo;
  return error.kind == dq::platform::ErrorKind::kNotFound ? kNotFound : kNotExecutable;
}

int RunProgram(const Arguments& arguments) {
  const Options options = OptionsOf(arguments);
  const std::unique_ptr<dq::CDQConsoleProgram> made = MakeProgram(options);
  if (made == nullptr) return kNo;
  dq::CDQConsoleProgram& program = *made;
  program.SetCallback(OnFeedback);
  program.SetCurrentDirectory(options.directory.c_str());
  program.EnableTrimLeft(!options.keep_left);
  NoteNames(options);

  bool has_run = false;
  bool cancelled = false;
  {
    Canceller canceller(program);
    g_feedback.canceller = &canceller;
    const auto watch =
        dq::platform::Current().console->WatchStopRequests([&canceller] { canceller.Cancel(); });
    has_run = Run(program, options) == 1;
    cancelled = canceller.WasAsked();
  }
  if (g_feedback.output_closed) throw OutputClosed(*g_feedback.output_closed);
  if (cancelled) return Complain("stopped");
  return StatusOf(program, has_run);
}

const Command kRun{
    "run",
    "Runs a console program and prints its output line by line.",
    "The command line comes first, with passwords masked (see below). Blank lines are left out.\n"
    "ARGUMENTS is one text; blanks separate, quotes group, and nothing is expanded. Options stand\n"
    "before PROGRAM; what is behind it is the program's.\n"
    "\n"
    "With --user, --password-file, --datasource or --auth, U/PASSWORD@D goes behind PROGRAM and\n"
    "ARGUMENTS.\n"
    "\n"
    "What is masked in the command line that is printed:\n"
    "\n"
    "  scott/tiger@ora1     what stands between the first '/' and the first '@', and the same\n"
    "                       text wherever it stands\n"
    "  -Psecret             what is glued to the first '-P'\n"
    "  --password-file F    the password from the file, wherever it stands\n"
    "\n"
    "All else stays open: '-P secret' with a blank between, '-psecret', '--password=secret', a\n"
    "second '-P' or another 'u/p@d', a password with a blank in it, and what the program prints\n"
    "itself. An '@' or a '/' before the password (a path, a script '@x.sql') moves the first "
    "form.\n"
    "A line that begins with USERID isn't masked by the first form. Other users of the machine\n"
    "see a program's arguments while it runs. So give a password by --password-file, or by a file\n"
    "or variable of the environment that the program reads itself.\n"
    "\n"
    "The exit status is the program's own, or 128 and the number of the signal that it died by;\n"
    "127 if the program isn't found, 126 if it can't be started otherwise; 1 if dqtool itself\n"
    "failed or was stopped by a signal. A failure is told as 'dqtool: run: CODE: TEXT': -3 it\n"
    "could not be started, -4 a pipe could not be made, -5 reading failed, -6 no program.\n",
    {{"PROGRAM [ARGUMENTS]",
      RunProgram,
      {{"--dir", "DIR", "the program's working directory"},
       {"--keep-left", "", "keep the blanks at the start of lines"},
       kUser,
       kPasswordFile,
       kDatasource,
       kAuth}}}};

}  // namespace
}  // namespace dqtool
