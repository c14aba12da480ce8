// The vocabulary of date-time formats, as data.

#pragma once

#include <string_view>

#include "dqlib/datetime/date_time_fmt_cell.h"

namespace dq::detail {

/// One element of formats in the notations; the locale's code is "" where locales have none.
struct DateTimeCellRow {
  DATETIMETYPE kind;
  const char* disp;
  const char* ole;
  const char* win;
  const char* description;
  const char* example;
};

/// All there are. Their order tells which one a code that stands twice means.
inline constexpr DateTimeCellRow kDateTimeCells[] = {
    {DTT_MONTH, "mm", "%#m", "M", "Single digit month of the year", "7"},
    {DTT_MONTH, "MM", "%m", "MM", "Double digit month of the year", "07"},
    {DTT_MONTH, "MON", "%b", "MMM", "Three letter abbrev. of the month", "JAN"},
    {DTT_MONTH, "MONTH", "%B", "MMMM", "Full name of the month", "MARCH"},
    {DTT_DAY, "dd", "%#d", "d", "Single digit day of the month", "6"},
    {DTT_DAY, "DD", "%d", "dd", "Double digit day of the month", "06"},
    {DTT_WEEKDAY, "DY", "%a", "ddd", "Three letter abbrev day of the week", "WED"},
    {DTT_WEEKDAY, "DAY", "%A", "dddd", "Full name of the weekday", "FRIDAY"},
    {DTT_WEEKDAY, "D", "%w", "", "Number of days in the week", "3"},
    {DTT_WEEKDAY, "DDD", "%j", "", "Number of days in the year", "234"},
    {DTT_YEAR, "YY", "%y", "yy", "Last two digits of the year", "01"},
    {DTT_YEAR, "YYYY", "%Y", "yyyy", "Four digit year", "2001"},
    {DTT_HOUR, "hh12", "%#I", "h", "Single digit hours of the day(1 to 12)", "4"},
    {DTT_HOUR, "HH12", "%I", "hh", "Double digit hours of the day(1 to 12)", "04"},
    {DTT_HOUR, "hh24", "%#H", "H", "Single digit hours of the day(0 to 23)", "7"},
    {DTT_HOUR, "HH24", "%H", "HH", "Double digit hours of the day(0 to 23)", "07"},
    {DTT_MINUTE, "mi", "%#M", "m", "Single digit minutes of the hour", "1"},
    {DTT_MINUTE, "MI", "%M", "mm", "Double digit minutes of the hour", "01"},
    {DTT_SECOND, "ss", "%#S", "s", "Single digit seconds of the minute", "9"},
    {DTT_SECOND, "SS", "%S", "ss", "Double digit seconds of the minute", "09"},
    {DTT_AMPM, "AM", "%p", "tt", "Display AM or PM", "AM"},
    {DTT_DATESEP, "/", "/", "/", "Forward slash separator", ""},
    {DTT_DATESEP, "-", "-", "-", "Dash separator", ""},
    {DTT_DATESEP, ",", ",", ",", "Comma separator", ""},
    {DTT_DATESEP, ".", ".", ".", "Period separator", ""},
    {DTT_DATESEP, ";", ";", ";", "Semicolon separator", ""},
    {DTT_DATESEP, " ", " ", " ", "Blank space separator", ""},
    {DTT_TIMESEP, ":", ":", ":", "Colon Time separator", ""},
};

/// What formats and values are cut at: the separators among the elements.
inline constexpr std::string_view kDateTimeSeparators = " /-,;:.";

}  // namespace dq::detail
