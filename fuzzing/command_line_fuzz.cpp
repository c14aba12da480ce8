// A command line of any bytes is cut without harm, and arguments that are quoted come out again.

#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view text) {
  std::vector<std::string> arguments, again;
  platform::SplitCommandLine(text, arguments);
  arguments.emplace_back(text);
  std::string line;
  for (const std::string_view argument : arguments) {
    line.append(" ").append(platform::QuoteArgument(argument));
  }
  platform::SplitCommandLine(line, again);
  Require(again == arguments);
}
