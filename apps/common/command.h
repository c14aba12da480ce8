// What a command of a host is made of, and the program that finds and runs it.
//
// A command is one file, `<name>_command.cpp`, named in the CMake list. It defines a `Command` at
// namespace scope, which enters itself in the table:
//
//   int RunEcho(const Arguments& arguments) {
//     return PrintAnswer(arguments, arguments.words[0], {{"text", arguments.words[0]}});
//   }
//   const Command kEcho{"echo", "Prints a text.", "", {{"TEXT", RunEcho, {kJson}}}};
//
// docs/hosting.md tells more.

#pragma once

#include <vector>

#include "apps/common/answer.h"
#include "apps/common/command_line.h"
#include "apps/common/console.h"
#include "apps/common/names.h"

namespace dqapps {

/// One command. Each is a constant static object, which enters itself in the table.
struct Command {
  Command(const char* name, const char* summary, const char* help, std::vector<Form> forms);
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  const char* name;
  /// One sentence for the list of commands.
  const char* summary;
  /// More, for the command's own help, above its options: lines, each with its end; may be "".
  const char* help;
  std::vector<Form> forms;
};

/// All commands, sorted by name.
std::vector<const Command*> AllCommands();

/// Who runs commands.
struct Program {
  const char* name;
  const char* version;
};

/// Does what the words behind the program's name say and returns the exit status: runs a command,
/// or prints help or the version. What goes wrong has been told.
int RunCommandLine(const Program& program, Words words);

}  // namespace dqapps
