// Any text as a profile file, read and changed. Input: lines with the change (`s` sets a key, `k`
// deletes a key, `d` a section), section, key and value, then the text.

#include "dqlib/platform/profile_text.h"
#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

using namespace platform;

/// What a value is read back as.
std::string_view ReadBack(std::string_view value) {
  while (!value.empty() && (value.front() == ' ' || value.front() == '\t')) value.remove_prefix(1);
  while (!value.empty() && (value.back() == ' ' || value.back() == '\t')) value.remove_suffix(1);
  if (value.size() >= 2 && value.front() == value.back() &&
      (value.front() == '"' || value.front() == '\'')) {
    value = value.substr(1, value.size() - 2);
  }
  return value;
}

/// At most a part of one line gave way to something new.
void RequireOneLineChanged(std::string_view before, std::string_view after) {
  const std::size_t shorter = std::min(before.size(), after.size());
  std::size_t front = 0;
  while (front < shorter && before[front] == after[front]) ++front;
  std::size_t back = 0;
  while (back < shorter - front &&
         before[before.size() - 1 - back] == after[after.size() - 1 - back]) {
    ++back;
  }
  const std::string_view gone = before.substr(front, before.size() - front - back);
  Require(gone.find_first_of("\r\n") == std::string_view::npos);
}

/// Nothing but whole lines of keys and sections is gone.
void RequireOnlyLinesRemoved(std::string_view before, std::string_view after) {
  if (before.starts_with("\xEF\xBB\xBF")) {
    Require(after.starts_with("\xEF\xBB\xBF"));
    before.remove_prefix(3);
    after.remove_prefix(3);
  }
  while (!before.empty()) {
    std::size_t end = std::min(before.find_first_of("\r\n"), before.size());
    end += before.substr(end, 2) == "\r\n" ? 2 : end < before.size() ? 1 : 0;
    const std::string_view line = before.substr(0, end);
    before.remove_prefix(end);
    if (after.starts_with(line)) {
      after.remove_prefix(end);
    } else {
      Require(line.find_first_of("=[") != std::string_view::npos);
    }
  }
  Require(after.empty());
}

}  // namespace

void Try(std::string_view input) {
  const std::string_view change = TakeLine(input);
  const std::string_view section = TakeLine(input);
  const std::string_view key = TakeLine(input);
  const std::string_view value = TakeLine(input);
  const std::string before(input);

  for (const std::string& name : ProfileSections(before)) {
    for (const std::string& each : ProfileKeys(before, name)) {
      Require(FindProfileValue(before, name, each).has_value());
    }
  }
  if (!IsProfileSectionName(section) || !IsProfileKeyName(key) || !IsProfileValue(value)) return;

  std::string after = before;
  bool changed = false;
  if (change == "s") {
    changed = SetProfileValue(after, section, key, value);
    Require(FindProfileValue(after, section, key) == ReadBack(value));
    RequireOneLineChanged(before, after);
    std::string again = after;
    Require(!SetProfileValue(again, section, key, value));
  } else if (change == "k") {
    changed = DeleteProfileKey(after, section, key);
    Require(!FindProfileValue(after, section, key));
    RequireOnlyLinesRemoved(before, after);
  } else {
    changed = DeleteProfileSection(after, section);
    Require(!FindProfileValue(after, section, key));
    Require(ProfileKeys(after, section).empty());
    RequireOnlyLinesRemoved(before, after);
  }
  Require(changed == (before != after));
}

}  // namespace dq::fuzz
