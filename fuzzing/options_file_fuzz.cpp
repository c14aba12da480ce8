// Any text as an options file. What is read holds the promises of the form, and a file that breaks
// it gives nothing.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>

#include "siblings/options/options_file.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  dq::OptionsFile file;
  if (const auto error = dq::ReadOptionsText(text, file)) {
    const auto lines = std::ranges::count(text, '\n') + 2;
    Require(error->line >= 1 && error->line <= static_cast<std::size_t>(lines));
    Require(!error->text.empty());
    Require(std::ranges::none_of(error->text, [](char each) { return each < ' '; }));
    Require(file.options.empty() && file.variables.empty());
    return 0;
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
  return 0;
}
