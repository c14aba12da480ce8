// A point in time as a number of days.

#pragma once

#include "dqlib/platform/system_time.h"

namespace dq {

/// Days since 1899-12-30, time of day as a fraction that counts away from zero, so that -1.25 is
/// 1899-12-29 06:00.
using DATE = double;

/// A date and time from year 100 to 9999, to the second, or an invalid value. A value.
class COleDateTime {
 public:
  enum DateTimeStatus { valid = 0, invalid = 1, null = 2 };

  /// 1899-12-30 00:00.
  COleDateTime() = default;
  explicit COleDateTime(DATE date);
  explicit COleDateTime(const SYSTEMTIME& time);
  COleDateTime(int year, int month, int day, int hour, int minute, int second);

  DateTimeStatus GetStatus() const { return m_status; }
  DATE ToDate() const { return m_dt; }

  /// The parts, rounded to the nearest second; false if the value isn't valid.
  bool GetAsSystemTime(SYSTEMTIME& time) const;

  /// Parts of the value; -1 if it isn't valid. `GetDayOfWeek` is 1 for Sunday.
  int GetYear() const;
  int GetMonth() const;
  int GetDay() const;
  int GetHour() const;
  int GetMinute() const;
  int GetSecond() const;
  int GetDayOfWeek() const;
  int GetDayOfYear() const;

  /// Set the value. False, and an invalid value, if there is no such date or time.
  bool SetDateTime(int year, int month, int day, int hour, int minute, int second);
  bool SetDate(int year, int month, int day) { return SetDateTime(year, month, day, 0, 0, 0); }
  bool SetTime(int hour, int minute, int second);

 private:
  DATE m_dt = 0;
  DateTimeStatus m_status = valid;
};

}  // namespace dq
