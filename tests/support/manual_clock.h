// A clock that a test moves by hand.

#pragma once

#include <atomic>

#include "dqlib/platform/clock.h"

namespace dq::testing {

/// Stands still at `start` until it is moved. Any thread.
class ManualClock : public platform::Clock {
 public:
  explicit ManualClock(DWORD start = 0) : now_(start) {}

  DWORD TickCount() override { return now_; }
  /// Moves on by so many milliseconds; wraps as the system's does.
  void Advance(DWORD milliseconds) { now_ += milliseconds; }

 private:
  std::atomic<DWORD> now_;
};

}  // namespace dq::testing
