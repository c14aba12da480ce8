// A clock that a test moves by hand.

#pragma once

#include "dqlib/platform/clock.h"
#include "tests/support/testing.h"

namespace dq::testing {

/// Stands still at `start` until it is moved. Any thread.
class ManualClock : public platform::Clock {
 public:
  explicit ManualClock(DWORD start = 0) : now_(start) {}

  DWORD TickCount() override { return now_; }
  std::int64_t SecondsSince1970() override { return seconds; }
  SYSTEMTIME LocalTime() override { return local_time; }
  /// Moves on by so many milliseconds; wraps as the system's does.
  void Advance(DWORD milliseconds) { now_ += milliseconds; }

  /// The time of day, which `Advance` leaves: set it before other threads ask.
  std::int64_t seconds = 0;
  SYSTEMTIME local_time{2001, 2, 6, 3, 4, 5, 6, 7};  // Saturday the 3rd of February, 04:05:06.007

 private:
  std::atomic<DWORD> now_;
};

}  // namespace dq::testing
