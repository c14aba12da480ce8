// What a thread asks the system for itself.

#pragma once

#include "dqlib/platform/error.h"

namespace dq::platform {

enum class ThreadPriority {
  kNormal,
  /// Runs when nothing else wants to.
  kIdle,
};

/// The calling thread. Any thread.
class Threads {
 public:
  Threads() = default;
  Threads(const Threads&) = delete;
  Threads& operator=(const Threads&) = delete;
  virtual ~Threads();

  /// Gives the calling thread a priority. The error is that the system refuses it; the thread then
  /// goes on with the one it had.
  virtual Error SetPriority(ThreadPriority priority) = 0;
};

}  // namespace dq::platform
