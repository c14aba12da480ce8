// Commands by which the desktop's programs are reached.

#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "dqlib/platform/error.h"

namespace dq::platform::posix {

/// How long a command may take that hands something to a program and ends. One that takes longer is
/// such a program itself.
inline constexpr std::chrono::milliseconds kHandOverTime{2'000};

/// Runs a program with its arguments, whatever is in them. No value if it goes on behind that time,
/// and else its exit code. The error is that it couldn't be run; `kUnsupported` if there is no such
/// program. What it says is lost: the standard handles of this process are the host's own.
Result<std::optional<int>> RunCommand(const std::vector<std::string>& arguments,
                                      std::chrono::milliseconds patience = kHandOverTime);

/// The same for commands of the cross-desktop tools, whose exit codes have a meaning: `kNotFound`
/// for a file, `kUnsupported` if they know no program, `kOther` if that failed.
Error RunDesktopCommand(const std::vector<std::string>& arguments);

}  // namespace dq::platform::posix
