#include "dqlib/platform/prompts.h"

#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <poll.h>
#include <string>
#include <unistd.h>

#include "dqlib/platform/ascii.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// Answers that make no sense before the default button is taken: a terminal that is fed by a
/// program must not be asked for ever.
constexpr int kAttempts = 10;
/// Bytes of an answer that are looked at; more than the longest button name.
constexpr std::size_t kLongestAnswer = 32;

/// Where a person can be asked: descriptors to read answers from and to write questions to.
class Terminal {
 public:
  /// The terminal on standard input and error, or else the one that the process belongs to.
  Terminal() {
    if (isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1) {
      input_ = STDIN_FILENO;
      output_ = STDERR_FILENO;
    } else {
      opened_ = open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC);
      input_ = output_ = opened_;
    }
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() {
    if (opened_ >= 0) close(opened_);
  }

  /// False without a terminal, and in the background of one, where reading would stop the process.
  bool CanAsk() const {
    if (input_ < 0) return false;
    const pid_t foreground = tcgetpgrp(input_);
    return foreground == -1 || foreground == getpgrp();
  }

  int input() const { return input_; }
  int output() const { return output_; }

 private:
  int opened_ = -1;
  int input_ = -1;
  int output_ = -1;
};

/// Waits until the descriptor can be read or written, or never can be again.
void WaitFor(int descriptor, short events) {
  pollfd wait{descriptor, events, 0};
  while (poll(&wait, 1, -1) < 0 && errno == EINTR) {
  }
}

/// Writes all of the text; where it can't be written there is nobody left to tell.
void WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written > 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (written < 0 && errno == EAGAIN) {
      WaitFor(descriptor, POLLOUT);
    } else if (written == 0 || errno != EINTR) {
      return;
    }
  }
}

/// The start of the next line without its line end; no value at the end of input.
std::optional<std::string> ReadLine(int descriptor) {
  std::string line;
  for (;;) {
    char byte = 0;
    const ssize_t count = read(descriptor, &byte, 1);
    if (count < 0 && errno == EAGAIN) WaitFor(descriptor, POLLIN);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count <= 0) return std::nullopt;
    if (byte == '\n' || byte == '\r') return line;
    if (line.size() < kLongestAnswer) line += byte;
  }
}

std::string_view Name(BoxButton button) {
  switch (button) {
    case BUTTON_OK:
      return "OK";
    case BUTTON_CANCEL:
      return "Cancel";
    case BUTTON_ABORT:
      return "Abort";
    case BUTTON_RETRY:
      return "Retry";
    case BUTTON_IGNORE:
      return "Ignore";
    case BUTTON_YES:
      return "Yes";
    case BUTTON_NO:
      return "No";
  }
  return {};
}

/// Line ends become single ones, and other control characters question marks: the text may hold
/// what came from a server, which must not steer the terminal.
std::string ForTerminal(std::string_view text) {
  std::string shown;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte == '\r' && text.substr(at + 1).starts_with('\n')) continue;
    const bool steers = (byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F;
    shown += steers ? '?' : text[at];
  }
  return shown;
}

std::string WithLineEnd(std::string text) {
  if (!text.ends_with('\n')) text += '\n';
  return text;
}

/// "[Yes] / No / Cancel: ", the default in brackets.
std::string ButtonLine(UINT type) {
  std::string line;
  for (const BoxButton button : BoxButtons(type)) {
    if (!line.empty()) line += " / ";
    const bool preselected = button == DefaultBoxButton(type);
    line += preselected ? "[" : "";
    line += Name(button);
    line += preselected ? "]" : "";
  }
  return line + ": ";
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

/// The button that the answer names, by its word or first letter; a box with one button takes any
/// answer.
std::optional<BoxButton> Choose(UINT type, std::string_view answer) {
  const std::span<const BoxButton> buttons = BoxButtons(type);
  if (answer.empty() || buttons.size() == 1) return DefaultBoxButton(type);
  for (const BoxButton button : buttons) {
    const std::string_view name = Name(button);
    if (EqualIgnoringCase(answer, name) || EqualIgnoringCase(answer, name.substr(0, 1)))
      return button;
  }
  return std::nullopt;
}

BoxButton Ask(const Terminal& terminal, UINT type) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    WriteAll(terminal.output(), ButtonLine(type));
    const std::optional<std::string> answer = ReadLine(terminal.input());
    if (!answer) {
      WriteAll(terminal.output(), "\n");
      break;
    }
    if (const auto button = Choose(type, Trim(*answer))) return *button;
  }
  return DefaultBoxButton(type);
}

/// Asks on the terminal. Without one, a question takes its default button and its text goes to
/// standard error as it stands. A terminal has neither captions
/// nor icons nor help topics.
class TerminalPrompts : public Prompts {
 public:
  int Show(std::string_view, std::string_view text, UINT type, UINT) override {
    const std::lock_guard lock(one_at_a_time_);
    const Terminal terminal;
    if (!terminal.CanAsk()) {
      WriteAll(STDERR_FILENO, WithLineEnd(std::string(text)));
      return DefaultBoxButton(type);
    }
    WriteAll(terminal.output(), WithLineEnd(ForTerminal(text)));
    return Ask(terminal, type);
  }

 private:
  std::mutex one_at_a_time_;
};

}  // namespace

Prompts& SystemPrompts() {
  static TerminalPrompts& prompts = *new TerminalPrompts;
  return prompts;
}

}  // namespace dq::platform::posix
