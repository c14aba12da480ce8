// Any text as an options file. What is read holds the promises of the form, and a file that breaks
// it gives nothing.

#include <set>

#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view text) {
  OptionsFile file;
  if (const auto error = ReadOptionsText(text, file)) {
    const auto lines = std::ranges::count(text, '\n') + 2;
    Require(error->line >= 1 && error->line <= static_cast<std::size_t>(lines));
    Require(!error->text.empty() && std::ranges::min(error->text) >= ' ');
    Require(file.options.empty() && file.variables.empty());
    return;
  }
  std::set<int> ids;
  for (const OptionDefinition& each : file.options) {
    Require(each.id > 0 && ids.insert(each.id).second && !each.name.empty());
    Require(IsOptionValue(each.kind, each.fallback));
    for (const auto& own : each.platform_fallbacks) Require(IsOptionValue(each.kind, own.second));
    // What is kept is read back, and never as another kind's.
    const KeptValue kept = KeepOptionValue(each.kind, each.fallback);
    Require(ReadKeptValue(each.kind, kept.type, kept.data) == each.fallback);
    Require(!ReadKeptValue(each.kind, kept.type + 1, kept.data));
  }
}
