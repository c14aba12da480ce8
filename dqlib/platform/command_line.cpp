#include "dqlib/platform/platform.h"

namespace dq::platform {
namespace {

bool IsQuote(char character) { return character == '"' || character == '\''; }

}  // namespace

void SplitCommandLine(std::string_view command_line, std::vector<std::string>& arguments) {
  const CodePage& page = Current().locale->code_page();
  arguments.clear();
  std::string argument;
  bool inside = false;
  char quote = '\0';
  for (std::size_t i = 0; i < command_line.size();) {
    const char character = command_line[i];
    // A backslash may be the second half of a character, which escapes nothing.
    const std::size_t size = page.CharacterSize(command_line.substr(i));
    const bool escape =
        character == '\\' && i + 1 < command_line.size() && IsQuote(command_line[i + 1]);
    if (size == 2 || escape) {
      argument.append(command_line.substr(escape ? i + 1 : i, escape ? 1 : 2));
      inside = true;
      i += 2;
      continue;
    }
    ++i;
    if (quote != '\0' ? character == quote : IsQuote(character)) {
      quote = quote != '\0' ? '\0' : character;
      inside = true;  // '' is an argument, though an empty one
    } else if (quote == '\0' && (character == ' ' || character == '\t')) {
      if (inside) arguments.push_back(std::move(argument));
      argument.clear();
      inside = false;
    } else {
      argument += character;
      inside = true;
    }
  }
  if (inside) arguments.push_back(std::move(argument));
}

std::string QuoteArgument(std::string_view argument) {
  const CodePage& page = Current().locale->code_page();
  std::string quoted = "\"";
  // Backslashes at the end stand behind the group, whose last quote they would make literal.
  std::size_t group_end = quoted.size();
  while (!argument.empty()) {
    const std::size_t size = page.CharacterSize(argument);
    if (IsQuote(argument.front())) quoted += '\\';
    quoted.append(argument.substr(0, size));
    if (size == 2 || argument.front() != '\\') group_end = quoted.size();
    argument.remove_prefix(size);
  }
  return quoted.insert(group_end, 1, '"');
}

}  // namespace dq::platform
