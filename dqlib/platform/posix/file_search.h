// Files as a directory lists them.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/files.h"
#include "dqlib/platform/posix/system_calls.h"

namespace dq::platform::posix {

/// What is known of a file of this name, without directory.
FileStatus DescribeFile(std::string_view name, const struct stat& status);

/// `Files::Find` with a pattern as the system has it. Fails if an entry can't be looked at for any
/// other reason than that it is gone, so that no list lacks what is there.
Result<std::vector<FoundFile>> FindFiles(SystemCalls& calls, const std::string& pattern);

}  // namespace dq::platform::posix
