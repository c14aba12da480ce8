// A command line of any bytes is cut without harm, and arguments that are quoted come out again.

#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view text) {
  std::vector<std::string> arguments, again;
  platform::SplitCommandLine(text, arguments);
  arguments.emplace_back(text);
  std::string line;
  for (const std::string_view argument : arguments) {
    // A backslash at the end would hide the closing quote, so it stands behind it.
    const std::size_t size = argument.find_last_not_of('\\') + 1;
    line += " \"";
    for (const char character : argument.substr(0, size)) {
      if (character == '"' || character == '\'') line += '\\';
      line += character;
    }
    (line += '"') += argument.substr(size);
  }
  platform::SplitCommandLine(line, again);
  Require(again == arguments);
}
