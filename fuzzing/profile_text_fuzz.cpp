// Any text as a profile file, read and changed. Input: lines with the change (`s` sets a key, `k`
// deletes a key, `d` a section), section, key and value, then the text.

#include <map>

#include "dqlib/platform/profile_text.h"
#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

using namespace platform;

/// Every value by section and key, but for those that the change is about.
std::map<std::string, std::string> Others(std::string_view text, std::string_view section,
                                          std::string_view key, bool of_section) {
  std::map<std::string, std::string> values;
  for (const std::string& name : ProfileSections(text)) {
    for (const std::string& each : ProfileKeys(text, name)) {
      const auto value = FindProfileValue(text, name, each);
      const auto own = FindProfileValue(text, section, of_section ? std::string_view(each) : key);
      Require(value.has_value());
      if (!own || own->data() != value->data()) values[name + '\n' + each] = *value;
    }
  }
  return values;
}

/// The lines that belong to no key and no section.
std::string Remarks(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  std::string remarks;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    if (!line.empty() && line.find_first_of("=[") == line.npos) remarks.append(line) += '\n';
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
  return remarks;
}

}  // namespace

void Try(std::string_view input) {
  const std::string_view change = TakeLine(input);
  const std::string_view section = TakeLine(input);
  const std::string_view key = TakeLine(input);
  const std::string_view value = TakeLine(input);
  const bool of_section = change != "s" && change != "k";
  const auto others = Others(input, section, key, of_section);
  if (!IsProfileSectionName(section) || !IsProfileKeyName(key) || !IsProfileValue(value)) return;

  std::string after(input);
  bool changed = false;
  if (change == "s") {
    changed = SetProfileValue(after, section, key, value);
    const auto found = FindProfileValue(after, section, key);
    const bool plain = value.find_first_of(" \t\"'") == value.npos;
    Require(found && (plain ? *found == value : value.find(*found) != value.npos));
    Require(!SetProfileValue(after, section, key, value));
  } else {
    changed =
        of_section ? DeleteProfileSection(after, section) : DeleteProfileKey(after, section, key);
    Require(!FindProfileValue(after, section, key));
    Require(!of_section || ProfileKeys(after, section).empty());
  }
  Require(changed == (input != after));
  Require(Others(after, section, key, of_section) == others && Remarks(after) == Remarks(input));
}

}  // namespace dq::fuzz
