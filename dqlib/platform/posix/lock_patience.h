// How long calls wait for the locks of others.

#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>

#include "dqlib/platform/posix/system_calls.h"

namespace dq::platform::posix {

/// The most that one call waits for others, all its locks together: who was stopped while it held a
/// lock doesn't stop everyone for ever.
inline constexpr std::chrono::seconds kLockPatience{20};

/// The patience of the calls of one service with each thing that it locks. After one of them has
/// waited in vain, those of the next 20 seconds don't wait, so that many calls in a row take no
/// longer than one; each tries all the same, and the first that gets its lock ends that. Any
/// thread.
class LockPatience {
 public:
  explicit LockPatience(SystemCalls& calls) : calls_(calls) {}

  /// Until when a call that begins now may wait, by `SystemCalls::MonotonicTime`.
  std::chrono::nanoseconds Deadline(const std::string& thing = {});
  /// `LockFile`, of which a failure for others' sake is remembered.
  Error Lock(int fd, int operation, std::chrono::nanoseconds deadline,
             const std::string& thing = {});

 private:
  SystemCalls& calls_;
  std::mutex mutex_;
  /// Until when nobody waits for the things that were waited for in vain.
  std::map<std::string, std::chrono::nanoseconds> given_up_;
};

}  // namespace dq::platform::posix
