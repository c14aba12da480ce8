// Changes to the current user's settings, all of them or none.

#pragma once

#include <optional>
#include <span>
#include <string>

#include "dqlib/platform/error.h"
#include "dqlib/platform/types.h"

namespace dqtool {

/// Without a name it concerns the key: to make it, or to delete it with all below it. A value is
/// set, or deleted. What is deleted need not be there.
struct SettingsChange {
  /// From the root of the user's tree.
  std::string path;
  bool deleted = false;
  std::optional<std::string> name = std::nullopt;
  dq::DWORD type = 0;
  std::string data = {};
};

/// Why changes were not made.
struct SettingsRefusal {
  /// What the store said to the first change that it refused.
  dq::platform::Error refused;
  /// What it said when the changes before that were to be undone; then some of them stay.
  dq::platform::Error not_undone;
};

/// Makes the changes in their order. If the store refuses one, those before it are undone: keys and
/// values are what they were. A process that ends in between leaves what it had done, and what
/// others change meanwhile may be undone too.
SettingsRefusal MakeChanges(std::span<const SettingsChange> changes);

}  // namespace dqtool
