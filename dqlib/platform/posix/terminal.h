// The terminal as a place where a person is asked.

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <termios.h>

#include "dqlib/platform/seam_texts.h"

namespace dq::platform::posix {

/// Where a person can be asked: descriptors to read answers from and to write questions to.
class Terminal {
 public:
  /// The terminal on standard input and error, or else the one that the process belongs to.
  Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal();

  /// False without a terminal, and in the background of one, where reading would stop the process.
  bool CanAsk() const;

  int input() const { return input_; }
  int output() const { return output_; }

 private:
  int opened_ = -1;
  int input_ = -1;
  int output_ = -1;
};

/// A terminal that doesn't show what is typed, for a scope. Keys that end or stop the program are
/// characters meanwhile, because a program that ends now would leave a terminal without echo.
class HiddenInput {
 public:
  explicit HiddenInput(int descriptor);
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;
  ~HiddenInput();

  /// Whether input is hidden; false if the terminal refuses.
  bool hidden() const { return hidden_; }

 private:
  int descriptor_;
  termios former_{};
  bool hidden_ = false;
};

/// Writes all of the text; where it can't be written there is nobody left to tell.
void WriteAll(int descriptor, std::string_view text);

/// The next line without its line end, its first `longest` bytes at most; no value at the end of
/// input.
std::optional<std::string> ReadLine(int descriptor, std::size_t longest);

/// Line ends become single ones, and other control characters question marks: the text may hold
/// what came from a server, which must not steer the terminal.
std::string ForTerminal(std::string_view text);

/// Which of the texts the answer names: by its word or first letter, as it is shown or, when it is
/// none of those, in English. The case of ASCII letters is ignored. No value if it names none, or a
/// letter several.
std::optional<std::size_t> NamedText(std::string_view answer, std::span<const SeamTextId> texts);

/// Without the blanks and tabs around it.
std::string_view Trim(std::string_view text);

}  // namespace dq::platform::posix
