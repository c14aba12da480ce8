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
  std::int64_t SecondsSince1970() override { return seconds; }
  SYSTEMTIME LocalTime() override { return local_time; }
  /// Moves on by so many milliseconds; wraps as the system's does.
  void Advance(DWORD milliseconds) { now_ += milliseconds; }

  /// The time of day, which `Advance` leaves: set it before other threads ask.
  std::int64_t seconds = 0;
  SYSTEMTIME local_time = {.wYear = 2001,
                           .wMonth = 2,
                           .wDayOfWeek = 6,
                           .wDay = 3,
                           .wHour = 4,
                           .wMinute = 5,
                           .wSecond = 6,
                           .wMilliseconds = 7};

 private:
  std::atomic<DWORD> now_;
};

}  // namespace dq::testing
