#include "dqlib/platform/posix/terminal.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "dqlib/platform/ascii.h"

namespace dq::platform::posix {
namespace {

/// Waits until the descriptor can be read or written, or never can be again.
void WaitFor(int descriptor, short events) {
  pollfd wait{descriptor, events, 0};
  while (poll(&wait, 1, -1) < 0 && errno == EINTR) {
  }
}

/// The first character, which UTF-8 may write as several bytes.
std::string_view Initial(std::string_view word) {
  std::size_t size = std::min<std::size_t>(1, word.size());
  while (size < word.size() && (static_cast<unsigned char>(word[size]) & 0xC0) == 0x80) ++size;
  return word.substr(0, size);
}

}  // namespace

Terminal::Terminal() {
  if (isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1) {
    input_ = STDIN_FILENO;
    output_ = STDERR_FILENO;
  } else {
    opened_ = open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC);
    input_ = output_ = opened_;
  }
}

Terminal::~Terminal() {
  if (opened_ >= 0) close(opened_);
}

bool Terminal::CanAsk() const {
  if (input_ < 0) return false;
  const pid_t foreground = tcgetpgrp(input_);
  return foreground == -1 || foreground == getpgrp();
}

HiddenInput::HiddenInput(int descriptor) : descriptor_(descriptor) {
  if (tcgetattr(descriptor, &former_) != 0) return;
  termios changed = former_;
  changed.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ISIG);
  hidden_ = tcsetattr(descriptor, TCSADRAIN, &changed) == 0;
}

HiddenInput::~HiddenInput() {
  // A terminal that is gone can't be set back, and needn't be.
  if (hidden_) tcsetattr(descriptor_, TCSADRAIN, &former_);
}

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

std::optional<std::string> ReadLine(int descriptor, std::size_t longest) {
  std::string line;
  for (;;) {
    char byte = 0;
    const ssize_t count = read(descriptor, &byte, 1);
    if (count < 0 && errno == EAGAIN) WaitFor(descriptor, POLLIN);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count <= 0) return std::nullopt;
    if (byte == '\n' || byte == '\r') return line;
    if (line.size() < longest) line += byte;
  }
}

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

std::optional<std::size_t> NamedText(std::string_view answer, std::span<const SeamTextId> texts) {
  for (const auto form : {&Text, &EnglishText}) {
    std::optional<std::size_t> found;
    bool by_several = false;
    for (std::size_t at = 0; at < texts.size(); ++at) {
      const std::string_view word = form(texts[at]);
      if (EqualIgnoringCase(answer, word)) return at;
      if (!EqualIgnoringCase(answer, Initial(word))) continue;
      by_several = found.has_value();
      found = at;
    }
    if (by_several) return std::nullopt;
    if (found) return found;
  }
  return std::nullopt;
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

}  // namespace dq::platform::posix
