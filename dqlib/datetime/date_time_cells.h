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
  const char* example;
};

/// All there are. Their order tells which one a code that stands twice means.
inline constexpr DateTimeCellRow kDateTimeCells[] = {
    {DTT_MONTH, "mm", "%#m", "M", "7"},      {DTT_MONTH, "MM", "%m", "MM", "07"},
    {DTT_MONTH, "MON", "%b", "MMM", "JAN"},  {DTT_MONTH, "MONTH", "%B", "MMMM", "MARCH"},
    {DTT_DAY, "dd", "%#d", "d", "6"},        {DTT_DAY, "DD", "%d", "dd", "06"},
    {DTT_WEEKDAY, "DY", "%a", "ddd", "WED"}, {DTT_WEEKDAY, "DAY", "%A", "dddd", "FRIDAY"},
    {DTT_WEEKDAY, "D", "%w", "", "3"},       {DTT_WEEKDAY, "DDD", "%j", "", "234"},
    {DTT_YEAR, "YY", "%y", "yy", "01"},      {DTT_YEAR, "YYYY", "%Y", "yyyy", "2001"},
    {DTT_HOUR, "hh12", "%#I", "h", "4"},     {DTT_HOUR, "HH12", "%I", "hh", "04"},
    {DTT_HOUR, "hh24", "%#H", "H", "7"},     {DTT_HOUR, "HH24", "%H", "HH", "07"},
    {DTT_MINUTE, "mi", "%#M", "m", "1"},     {DTT_MINUTE, "MI", "%M", "mm", "01"},
    {DTT_SECOND, "ss", "%#S", "s", "9"},     {DTT_SECOND, "SS", "%S", "ss", "09"},
    {DTT_AMPM, "AM", "%p", "tt", "AM"},      {DTT_DATESEP, "/", "/", "/", ""},
    {DTT_DATESEP, "-", "-", "-", ""},        {DTT_DATESEP, ",", ",", ",", ""},
    {DTT_DATESEP, ".", ".", ".", ""},        {DTT_DATESEP, ";", ";", ";", ""},
    {DTT_DATESEP, " ", " ", " ", ""},        {DTT_TIMESEP, ":", ":", ":", ""},
};

/// What formats and values are cut at: the separators among the elements.
inline constexpr std::string_view kDateTimeSeparators = " /-,;:.";

}  // namespace dq::detail
