// Share modes of open files, by advisory locks that hold until the file is closed.

#pragma once

#include <chrono>

#include "dqlib/platform/files.h"
#include "dqlib/platform/posix/system_calls.h"

namespace dq::platform::posix {

/// Registers an open ordinary file with what it is opened for and what it denies to others. `kBusy`
/// if that and what others have registered exclude each other until the deadline has passed. Where
/// the file system has no locks, nothing is denied.
Error ShareFile(SystemCalls& calls, int fd, const OpenOptions& options,
                std::chrono::steady_clock::time_point deadline);

/// `kBusy` if someone denies reading. For a file that is read at once and closed.
Error CheckReadable(SystemCalls& calls, int fd);

}  // namespace dq::platform::posix
