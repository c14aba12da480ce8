// The current user's settings as a text in the registry editor's export format, and back.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/error.h"

namespace dqtool {

/// Appends the whole tree, keys and values in the order of their names.
dq::platform::Error ExportSettings(std::string& text);

/// Lines that an import can't use, by number from 1: such as make no sense, name another root or
/// hold a name that no key or value can have. A text that doesn't begin with the format's header is
/// the line 1.
struct BadLines {
  bool no_header = false;
  std::vector<std::size_t> numbers;
};

/// Makes what the text says, unless it has bad lines, with which nothing is done. `error` tells
/// where the store refused, which the changes before that survive.
BadLines ImportSettings(std::string_view text, dq::platform::Error& error);

}  // namespace dqtool
