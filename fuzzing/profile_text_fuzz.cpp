// Any text as a profile file, read and changed. Input: lines with the change (`s` sets a key, `k`
// deletes a key, `d` a section), section, key and value, then the text.

#include <set>

#include "dqlib/platform/profile_text.h"
#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  using namespace platform;
  const auto change = TakeLine(input), section = TakeLine(input), key = TakeLine(input),
             value = TakeLine(input);
  const bool whole = change != "s" && change != "k";
  // Every value by section and key, but for those that the change is about, and the lines that
  // belong to no key and no section.
  const auto others = [&](std::string_view text) {
    std::string remarks;
    std::set<std::string> all;
    for (const std::string& name : ProfileSections(text)) {
      for (const std::string& each : ProfileKeys(text, name)) {
        const auto found = FindProfileValue(text, name, each);
        const auto own = FindProfileValue(text, section, whole ? std::string_view(each) : key);
        Require(found.has_value());
        if (!own || own->data() != found->data())
          all.insert((name + '\n' + each + '\n').append(*found));
      }
    }
    std::string lines(text);
    std::ranges::replace(lines, '\r', '\n');
    for (std::string_view rest = lines; !rest.empty();) {
      std::string_view line = TakeLine(rest);
      // A change may bring any line to the begin of the text, where marks aren't a part of it.
      while (line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
      if (!line.empty() && line.find_first_of("=[") == line.npos) remarks.append(line) += '\n';
    }
    all.insert(remarks);
    return all;
  };
  const auto before = others(input);
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
    changed = whole ? DeleteProfileSection(after, section) : DeleteProfileKey(after, section, key);
    Require(!FindProfileValue(after, section, key));
    Require(!whole || ProfileKeys(after, section).empty());
  }
  Require(changed == (input != after) && others(after) == before);
}
