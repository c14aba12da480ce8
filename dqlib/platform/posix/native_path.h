// Paths as callers give them, made ready for the system.

#pragma once

#include <string>
#include <string_view>

#include "dqlib/platform/posix/system_calls.h"

namespace dq::platform::posix {

/// Longest path in bytes.
inline constexpr std::size_t kMaxPath = 4095;

/// The path with the system's separator. `kInvalidArgument` for one that is too long or holds a
/// zero; `kNotFound` for "", and for drives and network paths, which don't exist here.
Result<std::string> NativePath(std::string_view path);

/// The same from the root, without a separator at its end but for the root's.
Result<std::string> AbsolutePath(std::string_view path);

/// The file that a path names when links at its end are followed, whether it exists or not. For
/// whoever writes there: in a directory where everybody may make files and nobody remove another's,
/// a link of someone who is neither this user nor the directory's owner may be a trap, and is
/// `kAccessDenied`.
Result<std::string> FollowLinks(std::string path, SystemCalls& calls = RealSystemCalls());

}  // namespace dq::platform::posix
