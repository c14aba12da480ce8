// A point in time as a number of days.
//
//   COleDateTime time;
//   if (time.ParseDateTime("4/3/1993 5:34 PM")) text = time.Format("%Y-%m-%d %H:%M:%S");

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "dqlib/platform/locale.h"
#include "dqlib/platform/system_time.h"

namespace dq {

/// Days since 1899-12-30, time of day as a fraction that counts away from zero, so that -1.25 is
/// 1899-12-29 06:00.
using DATE = double;

/// Language numbers, which stand for the locales of the same numbers.
inline constexpr DWORD LANG_USER_DEFAULT = LOCALE_USER_DEFAULT;
inline constexpr DWORD LANG_SYSTEM_DEFAULT = LOCALE_SYSTEM_DEFAULT;

/// Flags of `COleDateTime::ParseDateTime`: the value gets the time or the date alone.
inline constexpr DWORD VAR_TIMEVALUEONLY = 1;
inline constexpr DWORD VAR_DATEVALUEONLY = 2;
/// Flag: the order of the date is year, month, day, whatever the locale says.
inline constexpr DWORD LOCALE_NOUSEROVERRIDE = 0x80000000;

namespace detail {
struct DateTimeParts;
}

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
  /// A value that isn't `valid` is none.
  void SetStatus(DateTimeStatus status) { m_status = status; }
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

  /// The present date and time of day in the user's time zone, to the second.
  static COleDateTime GetCurrentTime();

  /// Reads a date, a time or both, with blanks or a comma between; a date alone is its midnight, a
  /// time alone is on 1899-12-30. False, and an invalid value, for anything else; null reads as "".
  ///
  /// A date is year, month and day, month and year (of the first of the month), or month and day of
  /// the present year, with blanks, or one of "/-.," and any blanks, between them; nothing need
  /// stand between a number and the name of a month. A year of three or four digits may come
  /// first; else the order is that of the locale's short date. What is no date in that order is
  /// read as year, month, day if all are numbers, then with month and day exchanged. A month may be
  /// a name, in full or short, of the locale, or else in English. A year of one or two digits is
  /// from 1930 to 2029; month and year take one of more.
  ///
  /// A time is "h:mm" or "h:mm:ss", from 0 to 23 hours, with an "AM", "PM", "A" or "P", or the
  /// locale's marker, behind it, which hours above 12 take no notice of; with hour 0, it is 0
  /// or 12. With a marker, the hour may stand alone. Where the locale's date separator isn't ".",
  /// numbers between full stops are a time ("10.20"), unless they are a date with a year of three
  /// or four digits.
  ///
  /// Blanks are " ", tabs, CR and LF. Names are compared without regard to the case of ASCII
  /// letters. Leading zeros that no element has are passed over. `flags` are those above;
  /// `language` is a locale identifier, and 0 is the user's.
  bool ParseDateTime(const char* text, DWORD flags = 0, DWORD language = LANG_USER_DEFAULT);

  /// The value laid out by a format of codes, the same on every machine:
  ///
  ///   %d %m %y %Y  day, month, year of the century, year in four digits
  ///   %H %I %M %S  hour to 23, hour to 12, minute, second
  ///   %p           marker of the half day by the user's locale, or "AM" and "PM" if it has none
  ///   %a %A %b %B  short and full name of the day and of the month, by the user's locale
  ///   %j %w %U %W  day of the year, day of the week from Sunday, 0; week of the year by weeks
  ///                from Sunday and from Monday
  ///   %x %X %c     "%m/%d/%y", "%H:%M:%S", and both with a blank between; "%#x" is
  ///                "%A, %B %d, %Y", "%#c" that with the time
  ///   %z %Z        nothing, for the value is of no time zone
  ///   %%           a per cent sign
  ///
  /// A "#" behind the "%" of a number leaves its leading zeros out. Everything else, unknown codes
  /// too, stands for itself. An empty or null format gives "", an invalid value
  /// "Invalid DateTime", a null one "".
  CString Format(const char* format) const;

 private:
  void Take(const detail::DateTimeParts& parts);

  DATE m_dt = 0;
  DateTimeStatus m_status = valid;
};

}  // namespace dq
