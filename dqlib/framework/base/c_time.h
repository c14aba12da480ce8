// A moment, as the seconds since 1970 in which programs and servers count time.
//
//   const CTimeSpan in_day = CTime(1970, 1, 1, 7, 30, 0) - CTime(1970, 1, 1, 0, 0, 0);
//   name = CTime::GetCurrentTime().Format("%Y/%m/%d(%H:%M:%S)");

#pragma once

#include <compare>
#include <cstdint>
#include <optional>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/platform/system_time.h"

namespace dq {

/// A length of time in seconds, which may be below 0. A value.
class CTimeSpan {
 public:
  CTimeSpan() = default;
  explicit CTimeSpan(std::int64_t seconds) : m_timeSpan(seconds) {}

  std::int64_t GetTotalSeconds() const { return m_timeSpan; }
  friend auto operator<=>(const CTimeSpan&, const CTimeSpan&) = default;

 private:
  std::int64_t m_timeSpan = 0;
};

/// A moment, whose parts are told in the user's time zone, or none: where a date or time that
/// doesn't exist was given, or one out of the years 1970 to 9999 in the user's time zone. A value.
class CTime {
 public:
  /// None.
  CTime() = default;
  /// So many seconds behind 1970-01-01 00:00 UTC.
  explicit CTime(std::int64_t seconds);
  CTime(int year, int month, int day, int hour, int minute, int second);
  /// To the second; the day of the week isn't read.
  explicit CTime(const SYSTEMTIME& time);
  static CTime GetCurrentTime();

  bool IsValid() const { return m_time.has_value(); }
  /// Seconds since 1970-01-01 00:00 UTC, which is below 0 early on that day in time zones to the
  /// east; 0 for none.
  std::int64_t GetTime() const { return m_time.value_or(0); }

  /// Parts; -1 for none. `GetDayOfWeek` is 1 for Sunday.
  int GetYear() const;
  int GetMonth() const;
  int GetDay() const;
  int GetHour() const;
  int GetMinute() const;
  int GetSecond() const;
  int GetDayOfWeek() const;
  /// All of them; false, and no change, for none.
  bool GetAsSystemTime(SYSTEMTIME& time) const;

  /// Laid out by a format as `COleDateTime::Format` has it; "" for none.
  CString Format(const char* format) const;

  /// The time from `other` to this one; 0 if either is none.
  CTimeSpan operator-(const CTime& other) const;
  /// None comes first.
  friend auto operator<=>(const CTime&, const CTime&) = default;

 private:
  int Part(WORD SYSTEMTIME::*part) const;

  std::optional<std::int64_t> m_time;
};

}  // namespace dq
