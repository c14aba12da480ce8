// What is mounted where, from the text that the system gives of it.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dqlib/platform/posix/system_calls.h"

namespace dq::platform::posix {

/// One mounted file system.
struct Mount {
  std::string root;    ///< The directory of the file system that is seen at the mount point.
  std::string point;   ///< The mount point.
  std::string type;    ///< "ext4", "nfs4" and so on.
  std::string source;  ///< The device, or the server and what it exports.
};

/// The mount that a full path without links lies on; no value if none covers it. `table` has the
/// lines of `/proc/self/mountinfo`; others are skipped.
std::optional<Mount> FindMount(std::string_view table, std::string_view full_path);

/// Whether the file system lies on another machine.
bool IsRemote(const Mount& mount);

/// `\\server\share\...` for a path on that mount; no value if that isn't shared in such a form.
std::optional<std::string> NetworkPath(const Mount& mount, std::string_view full_path);

/// The system's own table; "" where the system has none.
Result<std::string> ReadMountTable(SystemCalls& calls);

}  // namespace dq::platform::posix
