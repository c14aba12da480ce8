// Facts about the volumes that paths lie on.

#pragma once

#include <string>

#include "dqlib/platform/files.h"

namespace dq::platform::posix {

/// The operations of `Files` of the same names. `path` is as the system has it.
Result<VolumeFacts> VolumeOf(const std::string& path);
Result<std::string> UniversalNameOf(const std::string& path);

/// `DRIVE_KIND_REMOTE` or `DRIVE_KIND_FIXED`, and `DRIVE_KIND_NO_ROOT` if there is no such file.
UINT KindOfVolume(const std::string& path);

}  // namespace dq::platform::posix
