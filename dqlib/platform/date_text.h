// Dates laid out by picture strings.

#pragma once

#include <string>
#include <string_view>

#include "dqlib/platform/locale.h"
#include "dqlib/platform/system_time.h"

namespace dq::platform {

/// Lays out the date by a picture ("dddd, MMMM dd, yyyy"): d, M and y in their usual numbers, the
/// names from the locale with that identifier; text in single quotes, of which two stand for one,
/// and everything else as it stands. The day of the week is reckoned from the date. A date that
/// isn't on the calendar gives "".
std::string LayOutDate(const SYSTEMTIME& date, std::string_view picture, Locale& locale,
                       DWORD locale_id);

/// Day of the week of a date of the Gregorian calendar, 0 for Sunday; -1 if there is no such date.
int DayOfWeek(int year, int month, int day);

/// Days of a month, 1 to 12, in a year.
int DaysInMonth(int year, int month);

/// Days from 1899-12-30 to a date that is on the calendar; negative before it.
long DaysFromOrigin(int year, int month, int day);

/// The date that lies so many days behind 1899-12-30; month and day count from 1.
void DateFromDays(long days, int& year, int& month, int& day);

}  // namespace dq::platform
