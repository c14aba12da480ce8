// Time, as the library asks for it.

#pragma once

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
};

}  // namespace dq::platform
