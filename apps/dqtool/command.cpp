#include "apps/dqtool/command.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace dqtool {
namespace {

/// Built by the first command that enters itself, in whatever file that is.
std::vector<const Command*>& Table() {
  static std::vector<const Command*> table;
  return table;
}

}  // namespace

Command::Command(const char* command_name, const char* command_usage, const char* command_summary,
                 const char* command_help, int (*command_run)(Words))
    : name(command_name),
      usage(command_usage),
      summary(command_summary),
      help(command_help),
      run(command_run) {
  Table().push_back(this);
}

std::vector<const Command*> AllCommands() {
  std::vector<const Command*> commands = Table();
  std::ranges::sort(commands, {},
                    [](const Command* command) { return std::string_view(command->name); });
  return commands;
}

void PrintLine(std::string_view line) {
  std::string whole;
  whole.reserve(line.size() + 1);
  whole.append(line).push_back('\n');
  if (std::fwrite(whole.data(), 1, whole.size(), stdout) != whole.size() ||
      std::fflush(stdout) != 0) {
    throw OutputClosed(std::string("standard output: ") + std::strerror(errno));
  }
}

int Complain(std::string_view text) {
  std::string line = "dqtool: ";
  line.append(OnOneLine(text)).push_back('\n');
  // There is no other place to complain of a failure to complain.
  std::fwrite(line.data(), 1, line.size(), stderr);
  return kNo;
}

std::string OnOneLine(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string line;
  for (const char each : text) {
    const auto byte = static_cast<unsigned char>(each);
    if (byte < 0x20 || byte == 0x7F) {
      line.append("\\x").append({digits[byte >> 4], digits[byte & 0xF]});
    } else {
      line += each;
    }
  }
  return line;
}

bool AsksForHelp(std::string_view word) { return word == "--help" || word == "-h"; }

void RefuseOption(const std::string& word) {
  if (AsksForHelp(word)) throw HelpWanted();
  throw WrongUsage("no option " + word);
}

}  // namespace dqtool
