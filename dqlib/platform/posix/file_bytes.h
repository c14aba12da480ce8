// All bytes of open files.

#pragma once

#include <string>

#include "dqlib/platform/error.h"
#include "dqlib/platform/posix/system_calls.h"

namespace dq::platform::posix {

/// Reads from the file's position to its end. An ordinary file ends where it did when it was
/// opened, unless it says that it has no bytes, as those do that the system makes up.
/// Replaces `bytes`, whose memory is used again. `kNoSpace` from 2 GiB on.
Error ReadToEnd(SystemCalls& calls, int fd, const struct stat& status, std::string& bytes);

/// Writes what stands from the one's position to its end to the other.
Error CopyBytes(SystemCalls& calls, int from, int to);

}  // namespace dq::platform::posix
