// Calendar times.

#pragma once

#include "dqlib/platform/types.h"

namespace dq {

/// A date and a time of day, 16 bytes, as files and callers carry it.
struct SYSTEMTIME {
  WORD wYear = 0;
  /// 1 to 12.
  WORD wMonth = 0;
  /// 0 is Sunday.
  WORD wDayOfWeek = 0;
  /// 1 to 31.
  WORD wDay = 0;
  WORD wHour = 0;
  WORD wMinute = 0;
  WORD wSecond = 0;
  WORD wMilliseconds = 0;

  friend bool operator==(const SYSTEMTIME&, const SYSTEMTIME&) = default;
};
static_assert(sizeof(SYSTEMTIME) == 16);

}  // namespace dq
