// dqtool option: shows and changes the options of the library.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/dqtool/command.h"
#include "apps/dqtool/host_options.h"
#include "apps/dqtool/vocabulary.h"
#include "dqlib/datetime/date_time_fmt_def.h"
#include "siblings/options/options_server.h"

namespace dqtool {
namespace {

/// The options server, for the platform that the arguments name.
dq::CDQOptionsServer& ServerFor(const Arguments& arguments) {
  dq::CDQOptionsServer& server = HostOptions();
  if (const std::string* const word = arguments.Find("--platform")) {
    server.SetPlatform(PlatformOf(*word));
  }
  return server;
}

/// Refuses a platform for an option that has one value for all of them.
void CheckPlatform(const Arguments& arguments, const dq::CDQOption& option) {
  if (arguments.Has("--platform") && !option.IsPerPlatform()) {
    throw WrongUsage("option " + std::to_string(option.GetID()) +
                     " has one value for all platforms, without --platform");
  }
}

std::string Shown(dq::CDQOptionsServer& server, const dq::CDQOption& option) {
  const dq::OptionValue value = server.GetValue(option.GetID());
  return option.GetKind() == dq::OptionKind::kBinary ? dq::HexOfBytes(value) : value;
}

Fields FieldsOf(const dq::CDQOption& option, const std::string& shown) {
  return {{"id", option.GetID()},
          {"kind", dq::KindWord(option.GetKind())},
          {"name", option.GetName().View()},
          {"value", shown}};
}

/// The option with the number or name; null, which has been said, if there is none.
const dq::CDQOption* FindOption(dq::CDQOptionsServer& server, const std::string& word) {
  const bool is_number = !word.empty() && word.find_first_not_of("0123456789") == std::string::npos;
  if (is_number) {
    // A number that is too large is that of no option.
    const bool fits = dq::IsOptionValue(dq::OptionKind::kInt, word);
    const dq::CDQOption* const option =
        fits ? server.GetOptionByID(dq::OptionNumber(word)) : nullptr;
    if (option == nullptr) Complain("no option with id " + word);
    return option;
  }
  if (const dq::CDQOption* const option =
          server.GetOptionByID(server.GetOptionIDByName(word.c_str()))) {
    return option;
  }
  std::vector<std::string> names;
  for (const int id : server.GetOptionIDs())
    names.emplace_back(server.GetOptionNameByID(id).View());
  throw WrongUsage("ID is an option's number or name, not '" + word + "'" +
                   DidYouMean(word, names));
}

/// Whether the value that was read last is the one that is kept. What is to say has been said.
bool WasRead(const dq::CDQOptionsServer& server) { return server.GetReadError().ok(); }

int List(const Arguments& arguments) {
  dq::CDQOptionsServer& server = ServerFor(arguments);
  if (server.GetOptionIDs().empty()) return Complain("no options file was read");
  int status = kYes;
  Listing listing(arguments);
  for (const int id : server.GetOptionIDs()) {
    const dq::CDQOption& option = *server.GetOptionByID(id);
    const std::string shown = Shown(server, option);
    if (WasRead(server)) {
      listing.Add(FieldsOf(option, shown));
    } else {
      status = kNo;
    }
  }
  return listing.End(status);
}

int Get(const Arguments& arguments) {
  dq::CDQOptionsServer& server = ServerFor(arguments);
  const dq::CDQOption* const option = FindOption(server, arguments.words[0]);
  if (option == nullptr) return kNo;
  CheckPlatform(arguments, *option);
  const std::string shown = Shown(server, *option);
  if (!WasRead(server)) return kNo;
  return PrintAnswer(arguments, shown, FieldsOf(*option, shown));
}

/// What the option takes, for complaints.
std::string Wanted(const dq::CDQOption& option) {
  const dq::OptionDefinition& definition = option.GetDefinition();
  if (!definition.range) {
    return "a value of the kind " + std::string(dq::KindWord(option.GetKind()));
  }
  return "a number from " + std::to_string(definition.range->first) + " to " +
         std::to_string(definition.range->second);
}

int Set(const Arguments& arguments) {
  dq::CDQOptionsServer& server = ServerFor(arguments);
  const dq::CDQOption* const option = FindOption(server, arguments.words[0]);
  if (option == nullptr) return kNo;
  CheckPlatform(arguments, *option);
  const std::string& word = arguments.words[1];
  const bool is_binary = option->GetKind() == dq::OptionKind::kBinary;
  const auto value = is_binary ? dq::BytesOfHex(word) : std::optional(word);
  const std::string subject = "option " + std::to_string(option->GetID());
  if (!value || !dq::IsValueOf(option->GetDefinition(), *value)) {
    return Complain(subject + " takes " + Wanted(*option) + ", not '" + word + "'");
  }
  if (option->GetID() == kDateFormatOption && !word.empty() &&
      !dq::CLGDateTimeFmtDef::IsValidDateTimeFmt(word, dq::DTF_DISP)) {
    return Complain(subject + " takes a format in display notation, not '" + word + "'");
  }
  return server.SetValue(option->GetID(), *value) ? int{kYes}
                                                  : Complain(subject + " could not be kept");
}

int Unset(const Arguments& arguments) {
  dq::CDQOptionsServer& server = ServerFor(arguments);
  const dq::CDQOption* const option = FindOption(server, arguments.words[0]);
  if (option == nullptr) return kNo;
  CheckPlatform(arguments, *option);
  if (server.UnsetValue(option->GetID())) return kYes;
  return Complain("option " + std::to_string(option->GetID()) + " could not be reset");
}

constexpr Option kValuesOf{"--platform", "P",
                           "the value for none, sybase, sqlserver, db2, oracle or db2os390, of\n"
                           "options that have one for each"};

const Command kOption{
    "option",
    "Shows and changes options by number or name.",
    "'list' prints a line ID<TAB>KIND<TAB>NAME<TAB>VALUE for each option, control characters as\n"
    "'\\xHH'. 'get' prints the value as it is. 'set' keeps it for this user, and 'unset' lets the\n"
    "default hold again. An ID is an option's number or its name. Values by kind:\n"
    "\n"
    "  bool               0 or 1\n"
    "  int                a number from -2147483648 to 2147483647, or of the option's own range\n"
    "  string, directory  a text\n"
    "  binary             bytes, two hexadecimal digits each\n"
    "  color              rrggbb in hexadecimal, or nothing\n"
    "\n"
    "JSON: [{\"id\", \"kind\", \"name\", \"value\"}], or one such object for 'get'.\n",
    {{"list", List, {kValuesOf, kJson}},
     {"get ID", Get, {kValuesOf, kJson}},
     {"set ID VALUE", Set, {kValuesOf}},
     {"unset ID", Unset, {kValuesOf}}}};

}  // namespace
}  // namespace dqtool
