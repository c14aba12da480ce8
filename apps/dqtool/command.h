// What a command of dqtool is made of.
//
// A command is one file, `<name>_command.cpp`, named in the CMake list. It defines a `Command` at
// namespace scope, which enters itself in the table:
//
//   int RunEcho(Words words) {
//     if (words.empty()) throw WrongUsage("a TEXT is needed");
//     PrintLine(words[0]);
//     return kYes;
//   }
//   const Command kEcho{"echo", "TEXT", "Prints a text.", "", RunEcho};

#pragma once

#include <exception>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace dqtool {

/// The program's exit status.
enum ExitStatus : int {
  kYes = 0,         ///< Done, or the answer is yes.
  kNo = 1,          ///< Failed, which has been said on standard error, or the answer is no.
  kWrongUsage = 2,  ///< The words of the command line make no sense; nothing was done.
};

/// The words behind the command's name.
using Words = std::span<const std::string>;

/// Thrown by a command that can't make sense of its words, before it has done anything. The text
/// says what is wrong, in lower case and without a full stop.
class WrongUsage : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Thrown by a command that is asked for its help among its options.
class HelpWanted : public std::exception {};

/// Thrown when standard output takes no more, with the reason. It is told on standard error, which
/// may go elsewhere.
class OutputClosed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One command. Each is a constant static object, which enters itself in the table.
struct Command {
  Command(const char* name, const char* usage, const char* summary, const char* help,
          int (*run)(Words));
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  const char* name;
  /// Its words, as the usage line shows them: "[--dir DIR] PROGRAM".
  const char* usage;
  /// One sentence for the list of commands.
  const char* summary;
  /// More, for the command's own help: lines, each with its end; may be "".
  const char* help;
  /// Does it and returns an `ExitStatus`.
  int (*run)(Words words);
};

/// All commands, sorted by name.
std::vector<const Command*> AllCommands();

/// Prints a line on standard output, in one piece and at once. Throws `OutputClosed` if it can't be
/// written.
void PrintLine(std::string_view line);

/// Says `dqtool: TEXT` on standard error, by `OnOneLine`, and returns `kNo`.
int Complain(std::string_view text);

/// The text as one line: whatever a terminal would take for a command is written as `\xHH`.
std::string OnOneLine(std::string_view text);

/// Whether the word is that for help.
bool AsksForHelp(std::string_view word);

/// For an option that the command doesn't know: throws `HelpWanted` if it is that for help, else
/// `WrongUsage`.
[[noreturn]] void RefuseOption(const std::string& word);

}  // namespace dqtool
