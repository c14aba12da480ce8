// A command line of any bytes is cut without harm, and arguments that are quoted come out again.

#include <cstdint>
#include <cstdlib>

#include "dqlib/platform/processes.h"

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

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::vector<std::string> arguments;
  dq::platform::SplitCommandLine(text, arguments);
  std::string line;
  for (const std::string& argument : arguments) line += Quote(argument) + ' ';
  line += Quote(text);
  arguments.emplace_back(text);
  std::vector<std::string> again;
  dq::platform::SplitCommandLine(line, again);
  if (again != arguments) std::abort();
  return 0;
}
