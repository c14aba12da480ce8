// The date-time formats that every user finds.

#pragma once

namespace dq {

/// One format: the data type it is for and its texts, as `CLGDateTimeFmtDef` takes them.
struct PredefinedDateTimeFmt {
  int type;
  const char* example;
  const char* disp;
  const char* ole;
  const char* win;
};

/// In the order of the users' list. Users' settings name these formats by their texts, and what
/// they print is what saved data looks like, so each row stays as it is, also where its columns
/// disagree: a time in the display text of a date, seconds or a marker that only one notation has,
/// another row's example, one digit for two. "%#c" has no cell.
inline constexpr PredefinedDateTimeFmt kPredefinedDateTimeFmts[] = {
    {6, "04/03/1993 05:34:00 PM", "MM/DD/YYYY HH12:MI:SS AM", "%m/%d/%Y %I:%M:%S %p",
     "MM/dd/yyyy hh:mm:ss tt"},
    {6, "4/3/1993 5:34:00 PM", "mm/dd/YYYY hh12:MI:SS AM", "%#m/%#d/%Y %#I:%M:%S %p",
     "M/d/yyyy h:mm:ss tt"},
    {6, "04/03/93 05:34:00 PM", "MM/DD/YY HH12:MI:SS AM", "%m/%d/%y %I:%M:%S %p",
     "MM/dd/yy hh:mm:ss tt"},
    {6, "1993-04-03 05:34:00 PM", "YYYY-MM-DD HH12:MI:SS AM", "%Y-%m-%d %I:%M:%S %p",
     "yyyy-MM-dd hh:mm:ss tt"},
    {6, "1993-4-3 5:34:00 PM", "YYYY-mm-dd hh12:MI:SS AM", "%Y-%#m-%#d %#I:%M:%S %p",
     "yyyy-M-d h:mm:ss tt"},
    {6, "1993-04-03 17:34:00", "YYYY-MM-DD HH24:MI:SS", "%Y-%m-%d %H:%M:%S", "yyyy-MM-dd HH:mm:ss"},
    {6, "03-Apr-1993 05:34:00 PM", "DD-MON-YYYY HH12:MI:SS AM", "%d-%b-%Y %I:%M:%S %p",
     "dd-MMM-yyyy h:mm:ss tt"},
    {6, "3-Apr-1993 5:34:00 PM", "dd-MON-YYYY hh12:MI:SS AM", "%#d-%b-%Y %#I:%M:%S %p",
     "d-MMM-yyyy hh:mm:ss tt"},
    {6, "03-Apr-93 05:34:00 PM", "DD-MON-YY HH12:MI:SS AM", "%d-%b-%y %I:%M:%S %p",
     "dd-MMM-yy hh:mm:ss tt"},
    {6, "Saturday, April 3, 1993 05:34:00", "DAY, MONTH dd, YYYY HH24:MI:SS", "%#c",
     "dddd, MMMM d, yyyy HH:mm:ss"},
    {5, "04/03/1993", "MM/DD/YYYY", "%m/%d/%Y", "MM/dd/yyyy"},
    {5, "4/3/1993", "MM/DD/YYYY", "%m/%d/%Y", "MM/dd/yyyy"},
    {5, "04/03/93", "MM/DD/YY", "%m/%d/%y", "MM/dd/yy"},
    {5, "1993-04-03", "YYYY-MM-DD", "%Y-%m-%d", "yyyy-MM-dd"},
    {5, "1993-4-3", "YYYY-mm-dd", "%Y-%#m-%#d", "yyyy-M-d"},
    {5, "03-Apr-1993", "DD-MON-YYYY", "%d-%b-%Y", "dd-MMM-yyyy"},
    {5, "3-Apr-1993", "dd-MON-YYYY", "%#d-%b-%Y", "d-MMM-yyyy"},
    {5, "03-Apr-93", "DD-MON-YY HH12:MI:SS AM", "%d-%b-%y", "dd-MMM-yy"},
    {5, "Saturday, April 3, 1993", "DAY, MONTH dd, YYYY", "%#c", "dddd, MMMM d, yyyy"},
    {26, "05:04:03 PM", "HH12:MI:SS AM", "%I:%M:%S %p", "hh:mm:ss tt"},
    {26, "5:4:3 PM", "hh12:mi:ss AM", "%I:%M %p", "hh:mm tt"},
    {26, "17:04:03", "HH24:MI:SS", "%H:%M", "HH:mm"},
    {26, "17:4:3", "hh24:mi:ss", "%I:%M:%S %p", "hh:mm:ss tt"},
};

}  // namespace dq
