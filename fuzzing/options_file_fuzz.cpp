// Any text as an options file. What is read holds the promises of the form, and a file that breaks
// it gives nothing.

#include <set>

#include "fuzzing/fuzzing.h"
#include "siblings/options/options_file.h"

void dq::fuzz::Try(std::string_view text) {
  dq::OptionsFile file;
  if (const auto error = dq::ReadOptionsText(text, file)) {
    const auto lines = std::ranges::count(text, '\n') + 2;
    Require(error->line >= 1 && error->line <= static_cast<std::size_t>(lines));
    Require(!error->text.empty());
    Require(std::ranges::none_of(error->text, [](char each) { return each < ' '; }));
    Require(file.options.empty() && file.variables.empty());
    return;
  }
  std::set<int> ids;
  for (const dq::OptionDefinition& each : file.options) {
    Require(each.id > 0 && ids.insert(each.id).second && !each.name.empty());
    Require(dq::IsOptionValue(each.kind, each.fallback));
    for (const auto& [platform, value] : each.platform_fallbacks) {
      Require(dq::IsOptionValue(each.kind, value));
    }
    // What is kept is read back, and never as another kind's.
    const dq::KeptValue kept = dq::KeepOptionValue(each.kind, each.fallback);
    Require(dq::ReadKeptValue(each.kind, kept.type, kept.data) == each.fallback);
    Require(!dq::ReadKeptValue(each.kind, kept.type + 1, kept.data));
  }
}
