#include "apps/common/command.h"

#include <algorithm>
#include <exception>

#include "dqlib/platform/ascii.h"

namespace dqapps {
namespace {

/// Built by the first command that enters itself, in whatever file that is.
std::vector<const Command*>& Table() {
  static std::vector<const Command*> table;
  return table;
}

/// Prints a row of a list in two columns; lines behind the text's first are put below it.
void PrintRow(std::string name, std::size_t width, std::string_view text) {
  std::string line = "  " + std::move(name);
  while (true) {
    line.resize(std::max(line.size(), width + 4), ' ');
    const std::string_view part = text.substr(0, text.find('\n'));
    PrintLine(line.append(part));
    if (part.size() == text.size()) break;
    text.remove_prefix(part.size() + 1);
    line.clear();
  }
}

void PrintHelp(const Program& program) {
  const std::string name = program.name;
  PrintLine("usage: " + name + " COMMAND [WORD ...]");
  PrintLine("       " + name + " help [COMMAND]");
  PrintLine("       " + name + " --version");
  PrintLine("");
  PrintLine("Commands:");
  std::size_t widest = 0;
  const std::vector<const Command*> commands = AllCommands();
  for (const Command* command : commands) {
    widest = std::max(widest, std::string_view(command->name).size());
  }
  for (const Command* command : commands) PrintRow(command->name, widest, command->summary);
  PrintLine("");
  PrintLine("'" + name + " COMMAND --help' tells more about one.");
  PrintLine("");
  PrintLine(
      "Options stand anywhere, as '--name VALUE' or '--name=VALUE'. A word that begins with '-'");
  PrintLine(
      "and is neither an option nor a number stands behind '--', which ends the options. '-' in");
  PrintLine("the place of a file that is read is standard input. Names may be in any case.");
  PrintLine("");
  PrintLine(
      "With --json a list is an array of objects, one a line, and any other answer one object.");
  PrintLine("A text that isn't UTF-8 is {\"hex\": \"...\"} there, with its bytes in hexadecimal.");
  PrintLine("");
  PrintLine("Results go to standard output, complaints to standard error. The exit status is");
  PrintLine("0 for done or yes, 1 for failed or no, 2 for wrong usage.");
}

void PrintOptions(const Command& command) {
  std::vector<std::pair<std::string, std::string>> rows;
  std::size_t widest = 0;
  for (const Form& form : command.forms) {
    for (const Option& option : form.options) {
      std::string name = option.name;
      if (*option.value != '\0') name.append(" ").append(option.value);
      widest = std::max(widest, name.size());
      std::pair row(std::move(name), std::string(option.help));
      if (std::ranges::find(rows, row) == rows.end()) rows.push_back(std::move(row));
    }
  }
  // What is most of all the same stands last.
  std::stable_partition(rows.begin(), rows.end(),
                        [](const auto& row) { return row.first != kJson.name; });
  if (!rows.empty()) PrintLine("");
  for (const auto& [name, text] : rows) PrintRow(name, widest, text);
}

void PrintHelp(const Program& program, const Command& command) {
  const std::string start = std::string(program.name) + " " + command.name;
  const char* margin = "usage: ";
  for (const Form& form : command.forms) {
    const std::string usage = UsageOf(form);
    std::string line = margin + start;
    if (!usage.empty()) line += ' ';
    PrintLine(line += usage);
    margin = "       ";
  }
  PrintLine("");
  PrintLine(command.summary);
  std::string_view help = command.help;
  if (help.ends_with('\n')) help.remove_suffix(1);
  if (!help.empty()) {
    PrintLine("");
    PrintLine(help);
  }
  PrintOptions(command);
}

/// Null if there is none.
const Command* CommandNamed(const std::string& name) {
  const auto found = std::ranges::find_if(Table(), [&name](const Command* command) {
    return dq::platform::EqualIgnoringCase(name, command->name);
  });
  return found == Table().end() ? nullptr : *found;
}

const Command& FindCommand(const std::string& name) {
  if (const Command* const command = CommandNamed(name)) return *command;
  std::vector<std::string> names = {"help"};
  for (const Command* command : AllCommands()) names.emplace_back(command->name);
  throw WrongUsage("no command named " + name + DidYouMean(name, names));
}

int PrintHelpOf(const Program& program, Words words) {
  if (words.size() > 1) throw WrongUsage("help is for one COMMAND at a time");
  if (words.empty() || AsksForHelp(words[0])) {
    PrintHelp(program);
  } else {
    PrintHelp(program, FindCommand(words[0]));
  }
  return kYes;
}

int RunCommand(const Program& program, const Command& command, Words words) {
  SetComplainer(program.name, command.name);
  const std::string start = std::string(program.name) + " " + command.name;
  const Form* form = nullptr;
  try {
    Arguments arguments;
    form = &ReadCommandLine(command.forms, words, arguments);
    return form->run(arguments);
  } catch (const HelpWanted&) {
    PrintHelp(program, command);
    return kYes;
  } catch (const WrongUsageOfForm& wrong) {
    Complain(wrong.what());
    form = &wrong.form();
  } catch (const WrongUsage& wrong) {
    Complain(wrong.what());
  }
  const std::string usage = form == nullptr ? std::string() : UsageOf(*form);
  Complain(form == nullptr ? "'" + start + " --help' tells how it is used"
                           : "usage: " + start + (usage.empty() ? "" : " ") + usage);
  return kWrongUsage;
}

int Dispatch(const Program& program, Words words) {
  if (words.empty()) throw WrongUsage("a COMMAND is needed");
  const std::string& first = words[0];
  const Words rest = words.subspan(1);
  if (AsksForHelp(first) || dq::platform::EqualIgnoringCase(first, "help")) {
    return PrintHelpOf(program, rest);
  }
  if (dq::platform::EqualIgnoringCase(first, "--version")) {
    if (!rest.empty()) throw WrongUsage("--version takes no words");
    PrintLine(std::string(program.name) + " " + program.version);
    return kYes;
  }
  if (first.starts_with('-')) {
    // Options may stand before the command too.
    const auto found = std::ranges::find_if(words, CommandNamed);
    if (found != words.end()) {
      std::vector<std::string> others(words.begin(), found);
      others.insert(others.end(), found + 1, words.end());
      return RunCommand(program, *CommandNamed(*found), others);
    }
    throw WrongUsage("no option " + first + " before a COMMAND" +
                     DidYouMean(first, std::vector<std::string>{"--help", "--version"}));
  }
  return RunCommand(program, FindCommand(first), rest);
}

}  // namespace

Command::Command(const char* command_name, const char* command_summary, const char* command_help,
                 std::vector<Form> command_forms)
    : name(command_name),
      summary(command_summary),
      help(command_help),
      forms(std::move(command_forms)) {
  Table().push_back(this);
}

std::vector<const Command*> AllCommands() {
  std::vector<const Command*> commands = Table();
  std::ranges::sort(commands, {},
                    [](const Command* command) { return std::string_view(command->name); });
  return commands;
}

int RunCommandLine(const Program& program, Words words) {
  SetComplainer(program.name, "");
  try {
    return Dispatch(program, words);
  } catch (const WrongUsage& wrong) {
    Complain(wrong.what());
    Complain("'" + std::string(program.name) + " --help' lists the commands");
    return kWrongUsage;
  } catch (const OutputClosed& closed) {
    return closed.IsReaderGone() ? int{kReaderGone} : Complain(closed.what());
  } catch (const std::exception& failure) {
    return Complain(failure.what());
  }
}

}  // namespace dqapps
