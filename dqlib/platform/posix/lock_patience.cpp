#include "dqlib/platform/posix/lock_patience.h"

namespace dq::platform::posix {

using std::chrono::nanoseconds;

nanoseconds LockPatience::Deadline(const std::string& thing) {
  const nanoseconds now = calls_.MonotonicTime();
  const std::lock_guard lock(mutex_);
  const auto given_up = given_up_.find(thing);
  return given_up != given_up_.end() && now < given_up->second ? now : now + kLockPatience;
}

Error LockPatience::Lock(int fd, int operation, nanoseconds deadline, const std::string& thing) {
  const Error error = LockFile(calls_, fd, operation, deadline);
  const std::lock_guard lock(mutex_);
  if (error.ok()) {
    given_up_.erase(thing);
  } else if (error.kind == ErrorKind::kBusy) {
    const nanoseconds now = calls_.MonotonicTime();
    nanoseconds& until = given_up_[thing];
    // One that didn't wait says nothing new.
    if (now >= until) until = now + kLockPatience;
  }
  return error;
}

}  // namespace dq::platform::posix
