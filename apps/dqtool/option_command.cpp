// dqtool option: shows and changes the options of the library.

#include <optional>
#include <string>
#include <string_view>

#include "apps/dqtool/command.h"
#include "siblings/options/options_server.h"

namespace dqtool {
namespace {

std::string Shown(const dq::CDQOption& option) {
  const dq::OptionValue value = dq::CDQOptionsServer::GetObject()->GetValue(option.GetID());
  return option.GetKind() == dq::OptionKind::kBinary ? dq::HexOfBytes(value) : value;
}

/// The option with the id; null, which has been said, if there is none.
const dq::CDQOption* FindOption(const std::string& word) {
  if (word.empty() || word.find_first_not_of("0123456789") != std::string::npos) {
    throw WrongUsage("ID is a number, not '" + word + "'");
  }
  // A number that is too large is that of no option.
  const bool fits = dq::IsOptionValue(dq::OptionKind::kInt, word);
  const dq::CDQOption* const option =
      fits ? dq::CDQOptionsServer::GetObject()->GetOptionByID(dq::OptionNumber(word)) : nullptr;
  if (option == nullptr) Complain("no option with id " + word);
  return option;
}

/// Whether the value that was read last is the one that is kept. What is to say has been said.
bool WasRead() { return dq::CDQOptionsServer::GetObject()->GetReadError().ok(); }

int List() {
  dq::CDQOptionsServer& server = *dq::CDQOptionsServer::GetObject();
  bool read = true;
  for (const int id : server.GetOptionIDs()) {
    const dq::CDQOption& option = *server.GetOptionByID(id);
    const std::string shown = Shown(option);
    if (WasRead()) {
      PrintLine(std::to_string(id) + "\t" + std::string(dq::KindWord(option.GetKind())) + "\t" +
                std::string(option.GetName().View()) + "\t" + OnOneLine(shown));
    } else {
      read = false;
    }
  }
  if (server.GetOptionIDs().empty()) return Complain("option: no options file was read");
  return read ? kYes : kNo;
}

int Get(const std::string& id) {
  const dq::CDQOption* const option = FindOption(id);
  if (option == nullptr) return kNo;
  const std::string shown = Shown(*option);
  if (!WasRead()) return kNo;
  PrintLine(shown);
  return kYes;
}

int Set(const std::string& id, const std::string& word) {
  const dq::CDQOption* const option = FindOption(id);
  if (option == nullptr) return kNo;
  const dq::OptionKind kind = option->GetKind();
  const auto value = kind == dq::OptionKind::kBinary ? dq::BytesOfHex(word) : std::optional(word);
  if (!value || !dq::IsOptionValue(kind, *value)) {
    return Complain("option " + id + " takes a value of the kind " +
                    std::string(dq::KindWord(kind)) + ", not '" + word + "'");
  }
  if (dq::CDQOptionsServer::GetObject()->SetValue(option->GetID(), *value)) return kYes;
  return Complain("option " + id + " could not be kept");
}

int RunOption(Words words) {
  dq::CDQOptionsServer& server = *dq::CDQOptionsServer::GetObject();
  server.AddOptions("DQSyntax.Dqo", 52500, 52639, true, true);
  server.AddOptions("dqtool.dqo", 60000, 60099, true, false);
  if (words.size() >= 2 && words[0] == "--platform") {
    const auto platform = dq::PlatformOfWord(words[1]);
    if (!platform) throw WrongUsage("no platform " + words[1]);
    server.SetPlatform(*platform);
    words = words.subspan(2);
  }
  if (words.empty()) throw WrongUsage("list, get or set is needed");
  if (words[0] == "list" && words.size() == 1) return List();
  if (words[0] == "get" && words.size() == 2) return Get(words[1]);
  if (words[0] == "set" && words.size() == 3) return Set(words[1], words[2]);
  throw WrongUsage("list, get ID or set ID VALUE, not that");
}

const Command kOption{
    "option", "[--platform NAME] list | get ID | set ID VALUE",
    "Shows and changes options by number.",
    "'list' prints a line ID<TAB>KIND<TAB>NAME<TAB>VALUE for each option, control characters as\n"
    "'\\xHH'. 'get' prints the value as it is. 'set' keeps it for this user. Values by kind:\n"
    "\n"
    "  bool               0 or 1\n"
    "  int                a number from -2147483648 to 2147483647\n"
    "  string, directory  a text\n"
    "  binary             bytes, two hexadecimal digits each\n"
    "  color              rrggbb in hexadecimal, or nothing\n"
    "\n"
    "  --platform NAME    the value for sybase, sqlserver, db2, oracle or db2os390, of options\n"
    "                     that have one for each\n",
    RunOption};

}  // namespace
}  // namespace dqtool
