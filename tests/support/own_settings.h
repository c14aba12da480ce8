// The system's services over a directory that is the test program's own: its registry and profile
// files are real, and the user's are not touched.

#pragma once

#include "tests/support/temp_directory.h"

namespace dq::test {

/// Stands from before the first test to the program's end, since the registry is opened once.
struct OwnSettings {
  TempDirectory directory;
  ScopedVariable configuration{"XDG_CONFIG_HOME", directory.path()};
};
inline const OwnSettings own_settings;

}  // namespace dq::test
