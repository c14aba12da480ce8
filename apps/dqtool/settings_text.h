// The current user's settings as a text in the registry editor's export format, and back.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "apps/dqtool/settings_changes.h"
#include "dqlib/platform/error.h"

namespace dqtool {

/// Appends the whole tree, keys and values in the order of their names.
dq::platform::Error ExportSettings(std::string& text);

/// Lines that can't be used, by number from 1: such as make no sense, name another root or hold a
/// name that no key or value can have. A text that doesn't begin with the format's header has none.
struct BadLines {
  bool no_header = false;
  std::vector<std::size_t> numbers;
  bool any() const { return no_header || !numbers.empty(); }
};

/// Puts what the good lines say in the place of `changes`.
BadLines ReadSettings(std::string_view text, std::vector<SettingsChange>& changes);

}  // namespace dqtool
