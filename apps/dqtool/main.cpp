// dqtool: the library's services at a shell prompt.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "apps/dqtool/command.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/platform.h"

namespace dqtool {
namespace {

std::string UsageLine(const Command& command) {
  return std::string("usage: dqtool ") + command.name + (*command.usage != '\0' ? " " : "") +
         command.usage;
}

/// Calls `say` with each line of the text.
template <typename Say>
void SayLines(std::string_view text, Say say) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    say(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void PrintHelp() {
  PrintLine("usage: dqtool COMMAND [WORD ...]");
  PrintLine("");
  PrintLine("Commands:");
  std::size_t widest = 0;
  const std::vector<const Command*> commands = AllCommands();
  for (const Command* command : commands) {
    widest = std::max(widest, std::string_view(command->name).size());
  }
  for (const Command* command : commands) {
    std::string name = command->name;
    name.resize(widest + 2, ' ');
    PrintLine("  " + name + command->summary);
  }
  PrintLine("");
  PrintLine("'dqtool COMMAND --help' tells more about one.");
  PrintLine("Results go to standard output, complaints to standard error. The exit status is");
  PrintLine("0 for done or yes, 1 for failed or no, 2 for wrong usage.");
}

void PrintHelp(const Command& command) {
  PrintLine(UsageLine(command));
  PrintLine("");
  PrintLine(command.summary);
  if (*command.help != '\0') PrintLine("");
  SayLines(command.help, PrintLine);
}

const Command& FindCommand(const std::string& name) {
  for (const Command* command : AllCommands()) {
    if (name == command->name) return *command;
  }
  throw WrongUsage("no command named " + name);
}

int Dispatch(const std::vector<std::string>& words) {
  if (words.empty()) throw WrongUsage("a COMMAND is needed");
  const Words rest(words.begin() + 1, words.end());
  if (AsksForHelp(words[0]) || words[0] == "help") {
    if (rest.size() > 1) throw WrongUsage("help is for one COMMAND at a time");
    if (rest.empty()) {
      PrintHelp();
    } else {
      PrintHelp(FindCommand(rest[0]));
    }
    return kYes;
  }
  const Command& command = FindCommand(words[0]);
  try {
    if (!rest.empty() && AsksForHelp(rest[0])) throw HelpWanted();
    return command.run(rest);
  } catch (const HelpWanted&) {
    PrintHelp(command);
    return kYes;
  } catch (const WrongUsage& wrong) {
    Complain(std::string(command.name) + ": " + wrong.what());
    SayLines(UsageLine(command), Complain);
    return kWrongUsage;
  }
}

int Main(const std::vector<std::string>& words) {
  try {
    dq::CWinApp app("dqtool");
    app.SetRegistryKey("Velmora");
    return Dispatch(words);
  } catch (const WrongUsage& wrong) {
    Complain(wrong.what());
    Complain("'dqtool --help' lists the commands");
    return kWrongUsage;
  } catch (const std::exception& failure) {
    return Complain(failure.what());
  }
}

}  // namespace
}  // namespace dqtool

int main(int argc, char** argv) {
  dq::platform::Current().console->PrepareStreams();
  // Each line is one write, whoever reads at the other end.
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  std::vector<std::string> words;
  if (argc > 1) words.assign(std::next(argv), argv + argc);
  return dqtool::Main(words);
}
