// Time, as the library asks for it.

#pragma once

#include <cstdint>
#include <optional>

#include "dqlib/platform/system_time.h"
#include "dqlib/platform/types.h"

namespace dq::platform {

/// The process's source of time. Any thread.
class Clock {
 public:
  Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;
  virtual ~Clock();

  /// Milliseconds since some fixed moment in the past, modulo 2^32. Never runs backwards but for
  /// the wrap, whatever happens to the time of day.
  virtual DWORD TickCount() = 0;

  /// Seconds since 1970-01-01 UTC, by the machine's time of day.
  virtual std::int64_t SecondsSince1970() = 0;

  /// The present date and time of day in the user's time zone.
  virtual SYSTEMTIME LocalTime() = 0;

  /// The date and time of day in the user's time zone at so many seconds since 1970-01-01 UTC, and
  /// back: no value for what the system can't reckon, or for a date or time that doesn't exist. An
  /// hour that is skipped counts as the one behind it, one that comes twice as the system has it.
  virtual std::optional<SYSTEMTIME> LocalTimeOf(std::int64_t seconds) = 0;
  virtual std::optional<std::int64_t> SecondsOf(const SYSTEMTIME& local) = 0;
};

}  // namespace dq::platform
