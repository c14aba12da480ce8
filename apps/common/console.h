// What a command says: results on standard output, complaints on standard error.

#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace dqapps {

/// The program's exit status.
enum ExitStatus : int {
  kYes = 0,           ///< Done, or the answer is yes.
  kNo = 1,            ///< Failed, which has been said on standard error, or the answer is no.
  kWrongUsage = 2,    ///< The words of the command line make no sense; nothing was done.
  kReaderGone = 141,  ///< Nobody reads standard output any more: 128 and the number of SIGPIPE.
};

/// Thrown by a command that can't make sense of its words, before it has done anything. The text
/// says what is wrong, in lower case and without a full stop.
class WrongUsage : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Thrown when standard output takes no more, with the reason. It is told on standard error, which
/// may go elsewhere, unless it is only that nobody reads any more.
class OutputClosed : public std::runtime_error {
 public:
  OutputClosed(const std::string& text, bool reader_gone)
      : std::runtime_error(text), reader_gone_(reader_gone) {}
  bool IsReaderGone() const { return reader_gone_; }

 private:
  bool reader_gone_;
};

/// Prints a line on standard output, in one piece and at once. Throws `OutputClosed` if it can't be
/// written.
void PrintLine(std::string_view line);

/// What stands before each complaint: the program, and the command that runs. "" takes it away.
void SetComplainer(std::string_view program, std::string_view command);

/// `PROGRAM: COMMAND: TEXT`.
std::string ByComplainer(std::string_view text);

/// Says `PROGRAM: COMMAND: TEXT` on standard error, by `OnOneLine`, and returns `kNo`. Line ends
/// behind the text are dropped.
int Complain(std::string_view text);

/// Says each line of the text so.
void ComplainInLines(std::string_view text);

/// The text as one line: whatever a terminal would take for a command is written as `\xHH`.
std::string OnOneLine(std::string_view text);

}  // namespace dqapps
