// Printing by the system's print command: that of the printing system which nearly every POSIX
// system has, and whose documents are PDF.

#include "dqlib/platform/printing.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <sstream>
#include <string_view>
#include <thread>
#include <utility>

#include "dqlib/platform/posix/signal_block.h"
#include "dqlib/platform/posix/system_services.h"
#include "dqlib/platform/processes.h"
#include "dqlib/platform/seam_texts.h"

namespace dq::platform::posix {
namespace {

/// Of what a command says so much is kept: the names of all printers, or why it failed.
constexpr std::size_t kMostHeard = 1 << 16;
/// How long what a command has said may still be on its way when the command is over. Others that
/// it has left behind may hold its pipe for ever.
constexpr std::chrono::milliseconds kLastWords{500};
/// How long the system may take to name its printers, those of the network too: a person waits for
/// a dialog meanwhile.
constexpr std::chrono::milliseconds kPatience{8'000};

Processes& Children() { return SystemProcesses(); }

/// A pipe end or a process that is given up at the end.
class OwnedHandle {
 public:
  explicit OwnedHandle(HANDLE handle) : handle_(handle) {}
  OwnedHandle(const OwnedHandle&) = delete;
  OwnedHandle& operator=(const OwnedHandle&) = delete;
  ~OwnedHandle() { Close(); }

  HANDLE get() const { return handle_; }
  void Close() { Children().Close(std::exchange(handle_, kNoHandle)); }

 private:
  HANDLE handle_;
};

/// Collects what is written to a pipe, until nobody can write to it any more or it is told to end.
class Listener {
 public:
  explicit Listener(const Pipe& pipe) : read_end_(pipe.read_end), write_end_(pipe.write_end) {
    const SignalBlock block(AllSignals());
    thread_ = std::thread([this] { Listen(); });
  }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  ~Listener() {
    write_end_.Close();
    End();
  }

  /// To be given to who writes, and to be closed here then.
  OwnedHandle& write_end() { return write_end_; }

  /// All that has been written until now.
  std::string Heard() {
    {
      std::unique_lock lock(mutex_);
      over_.wait_for(lock, kLastWords, [this] { return is_over_; });
    }
    End();
    return {heard_.data(), size_};
  }

 private:
  void Listen() {
    std::array<char, 1'024> buffer;
    while (const std::size_t size = Children().Read(read_end_.get(), buffer).value) {
      const std::size_t kept = std::min(size, heard_.size() - size_);
      std::copy_n(buffer.begin(), kept, heard_.begin() + static_cast<std::ptrdiff_t>(size_));
      size_ += kept;
    }
    const std::lock_guard lock(mutex_);
    is_over_ = true;
    over_.notify_all();
  }
  void End() {
    Children().Interrupt(read_end_.get());
    if (thread_.joinable()) thread_.join();
  }

  OwnedHandle read_end_;
  OwnedHandle write_end_;
  std::array<char, kMostHeard> heard_;
  std::size_t size_ = 0;
  std::mutex mutex_;
  std::condition_variable over_;
  bool is_over_ = false;
  std::thread thread_;
};

/// Ends a process that goes on for longer than it may.
class TimeLimit {
 public:
  TimeLimit(HANDLE process, std::chrono::milliseconds time) {
    const SignalBlock block(AllSignals());
    thread_ = std::thread([this, process, time] {
      std::unique_lock lock(mutex_);
      const bool is_met = met_.wait_for(lock, time, [this] { return is_met_; });
      // One that can't be ended has ended.
      if (!is_met) static_cast<void>(Children().Terminate(process));
    });
  }
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;
  /// The process has ended.
  ~TimeLimit() {
    {
      const std::lock_guard lock(mutex_);
      is_met_ = true;
    }
    met_.notify_all();
    thread_.join();
  }

 private:
  std::mutex mutex_;
  std::condition_variable met_;
  bool is_met_ = false;
  std::thread thread_;
};

/// What has become of a command.
struct Run {
  /// That it couldn't be started, or its input not be had.
  Error error{};
  bool is_found = true;
  bool has_read_all = true;
  int exit_code = 0;
  /// What it has written.
  std::string output{};
};

/// False if nobody reads the document to its end; the error is that of the document.
Result<bool> WriteDocument(HANDLE pipe, const DocumentReader& document) try {
  std::array<char, 1 << 16> buffer;
  while (true) {
    const Result<std::size_t> read = document(buffer);
    if (!read.ok()) return read.error;
    if (read.value == 0) return true;
    if (!Children().Write(pipe, {buffer.data(), read.value}).ok()) return false;
  }
} catch (const std::exception&) {
  return ErrorOfException();
}

/// Runs a command to its end, or ends it if it goes on for longer than `patience`, where that is
/// given.
Run RunCommand(const std::string& command_line, const DocumentReader& document,
               std::optional<std::chrono::milliseconds> patience = {}) {
  const Result<Pipe> output = Children().CreatePipe();
  if (!output.ok()) return {.error = output.error};
  Listener listener(output.value);
  const Result<Pipe> input = Children().CreatePipe();
  if (!input.ok()) return {.error = input.error};
  OwnedHandle read_end(input.value.read_end);
  OwnedHandle write_end(input.value.write_end);

  const auto started = Children().Start({.command_line = command_line,
                                         .standard_input = read_end.get(),
                                         .standard_output = listener.write_end().get(),
                                         .standard_error = listener.write_end().get()});
  if (!started.ok()) {
    return {.error = started.error, .is_found = started.error.kind != ErrorKind::kNotFound};
  }
  const OwnedHandle process(started.value.process);
  read_end.Close();
  listener.write_end().Close();
  const Result<bool> written = WriteDocument(write_end.get(), document);
  // Half a document must not be taken for a whole one; a command that ends otherwise says why.
  if (!written.ok()) static_cast<void>(Children().Terminate(process.get()));
  write_end.Close();
  std::optional<TimeLimit> limit;
  if (patience) limit.emplace(process.get(), *patience);
  const Result<int> ended = Children().Wait(process.get());
  limit.reset();
  const std::string heard = listener.Heard();
  return {.error = written.ok() ? ended.error : written.error,
          .has_read_all = written.value,
          .exit_code = ended.value,
          .output = heard};
}

/// What `lpstat`, in words that don't depend on the language, says.
Result<std::string> AskForPrinters(std::string_view option) {
  constexpr int kNoCommand = 127;
  const Run run = RunCommand(
      "env LC_ALL=C lpstat " + std::string(option),
      [](std::span<char>) { return Result<std::size_t>(); }, kPatience);
  if (!run.is_found || run.exit_code == kNoCommand) return Error{ErrorKind::kUnsupported, ENOSYS};
  if (!run.error.ok()) return run.error;
  if (run.exit_code != 0) return Error{ErrorKind::kOther, EIO};
  return run.output;
}

std::string TrimmedRight(std::string text) {
  text.erase(text.find_last_not_of(" \t\r\n") + 1);
  return text;
}

/// A title that fits into a line.
std::string TitleOf(const PrintJob& job) {
  std::string title = job.title;
  const auto is_control = [](char character) { return character >= 0 && character < ' '; };
  std::ranges::replace_if(title, is_control, ' ');
  return title;
}

/// One of the print commands that a system may have.
struct PrintCommand {
  std::string_view name;
  /// In front of a printer, a number of copies and a title.
  std::string_view printer;
  std::string_view copies;
  std::string_view title;
};

constexpr PrintCommand kPrintCommands[] = {
    {"lp", " -d ", " -n ", " -t "},
    {"lpr", " -P ", " -#", " -J "},
};

std::string CommandLine(const PrintCommand& command, const PrintJob& job) {
  std::string line(command.name);
  const auto add = [&line](std::string_view option, std::string_view argument) {
    line.append(option).append(QuoteArgument(argument));
  };
  if (!job.printer.empty()) add(command.printer, job.printer);
  if (job.copies > 1) add(command.copies, std::to_string(job.copies));
  if (const std::string title = TitleOf(job); !title.empty()) add(command.title, title);
  return line;
}

class PosixPrinting final : public Printing {
 public:
  Result<std::vector<std::string>> Printers() override try {
    const Result<std::string> answer = AskForPrinters("-e");
    if (!answer.ok()) return answer.error;
    std::vector<std::string> printers;
    std::istringstream lines(answer.value);
    for (std::string line; std::getline(lines, line);) {
      // No printer's name has a blank; a remark has.
      if (!line.empty() && line.find(' ') == line.npos) printers.push_back(line);
    }
    return printers;
  } catch (const std::exception&) {
    return ErrorOfException();
  }

  Result<std::string> DefaultPrinter() override try {
    constexpr std::string_view kIntroduction = "system default destination: ";
    const Result<std::string> answer = AskForPrinters("-d");
    if (!answer.ok()) return answer.error;
    const std::size_t found = answer.value.find(kIntroduction);
    if (found == std::string::npos) return std::string();
    const std::string behind = answer.value.substr(found + kIntroduction.size());
    return behind.substr(0, behind.find('\n'));
  } catch (const std::exception&) {
    return ErrorOfException();
  }

  PrintOutcome Print(const PrintJob& job, const DocumentReader& document) override try {
    for (const PrintCommand& command : kPrintCommands) {
      const Run run = RunCommand(CommandLine(command, job), document);
      if (run.is_found) return OutcomeOf(run);
    }
    return {{ErrorKind::kUnsupported, ENOSYS}, std::string(Text(IDS_NO_PRINT_COMMAND))};
  } catch (const std::exception&) {
    return {.error = ErrorOfException()};
  }

 private:
  static PrintOutcome OutcomeOf(const Run& run) {
    if (!run.error.ok()) return {.error = run.error};
    if (run.exit_code == 0 && run.has_read_all) return {};
    PrintOutcome outcome{{ErrorKind::kOther, EIO}, TrimmedRight(run.output)};
    if (outcome.words.empty()) {
      outcome.words = Filled(Text(IDS_PRINT_COMMAND_FAILED), {std::to_string(run.exit_code)});
    }
    return outcome;
  }
};

}  // namespace

Printing& SystemPrinting() {
  static PosixPrinting& printing = *new PosixPrinting;
  return printing;
}

}  // namespace dq::platform::posix
