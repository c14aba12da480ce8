// A command line of any bytes is cut without harm, and arguments that are quoted come out again.

#include "dqlib/platform/processes.h"
#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

/// Groups with "...". A backslash at the end would hide the closing quote, so it stands behind it.
std::string Quote(std::string_view argument) {
  const std::size_t size = argument.find_last_not_of('\\') + 1;
  std::string quoted = "\"";
  for (const char character : argument.substr(0, size)) {
    if (character == '"' || character == '\'') quoted += '\\';
    quoted += character;
  }
  quoted += '"';
  return quoted.append(argument.substr(size));
}

}  // namespace

void Try(std::string_view text) {
  std::vector<std::string> arguments;
  dq::platform::SplitCommandLine(text, arguments);
  std::string line;
  for (const std::string& argument : arguments) line += Quote(argument) + ' ';
  line += Quote(text);
  arguments.emplace_back(text);
  std::vector<std::string> again;
  dq::platform::SplitCommandLine(line, again);
  Require(again == arguments);
}

}  // namespace dq::fuzz
