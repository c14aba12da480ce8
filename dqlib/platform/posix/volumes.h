// Facts about the volumes that paths lie on.

#pragma once

#include <string>

#include "dqlib/platform/files.h"
#include "dqlib/platform/posix/system_calls.h"

namespace dq::platform::posix {

/// The operations of `Files` of the same names. `path` is as the system has it.
Result<VolumeFacts> VolumeOf(SystemCalls& calls, const std::string& path);
Result<std::string> UniversalNameOf(SystemCalls& calls, const std::string& path);

/// `DRIVE_KIND_REMOTE` or `DRIVE_KIND_FIXED`, `DRIVE_KIND_NO_ROOT` if there is no such file, and
/// `DRIVE_KIND_UNKNOWN` if the system can't tell.
UINT KindOfVolume(SystemCalls& calls, const std::string& path);

}  // namespace dq::platform::posix
