#include "dqlib/framework/base/ole_date_time.h"

#include <array>
#include <cmath>
#include <ctime>
#include <gtest/gtest.h>
#include <iomanip>
#include <limits>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/rows.h"
#include "tests/support/system_locale.h"

/// Where `LOCPATH` is set, the C library's `newlocale` never frees its copy of it.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace dq {
namespace {

TEST(OleDateTime, CountsDaysAndFractionsAwayFromZero) {
  for (const auto& [parts, date] : test::Rows<std::array<int, 6>, DATE>{
           {{1899, 12, 30, 0, 0, 0}, 0},
           {{1899, 12, 29, 6, 0, 0}, -1.25},
           {{1900, 1, 1, 12, 0, 0}, 2.5},
           {{100, 1, 1, 0, 0, 0}, -657434},
           {{9999, 12, 31, 0, 0, 0}, 2958465},
           {{1600, 2, 29, 6, 0, 0}, -109512.25},
       }) {
    EXPECT_DOUBLE_EQ(std::make_from_tuple<COleDateTime>(parts).ToDate(), date);
    const COleDateTime back(date);
    EXPECT_EQ((std::array{back.GetYear(), back.GetMonth(), back.GetDay(), back.GetHour(),
                          back.GetMinute(), back.GetSecond()}),
              parts);
  }
  EXPECT_EQ(COleDateTime(2001, 2, 3, 0, 0, 0).GetDayOfWeek(), 7);
  EXPECT_EQ(COleDateTime(2004, 12, 31, 0, 0, 0).GetDayOfYear(), 366);
}

TEST(OleDateTime, RoundsToTheSecondAcrossMidnight) {
  SYSTEMTIME parts;
  ASSERT_TRUE(COleDateTime(36925 - 0.1 / 86400).GetAsSystemTime(parts));
  EXPECT_EQ(parts, (SYSTEMTIME{.wYear = 2001, .wMonth = 2, .wDayOfWeek = 6, .wDay = 3}));
  EXPECT_EQ(COleDateTime(-1 - 86399.9 / 86400).GetDay(), 30);
  EXPECT_EQ(COleDateTime(parts).ToDate(), 36925);
}

TEST(OleDateTime, WhatIsNotOnTheCalendarIsInvalid) {
  SYSTEMTIME parts;
  for (const DATE date : {-657435.0, 2958466.0, 2958466 - 0.4 / 86400, 1e300, -HUGE_VAL,
                          std::numeric_limits<double>::quiet_NaN()}) {
    const COleDateTime time(date);
    EXPECT_EQ(time.GetStatus(), COleDateTime::invalid) << date;
    EXPECT_TRUE(!time.GetAsSystemTime(parts) && time.GetYear() == -1 && time.GetSecond() == -1 &&
                time.GetDayOfWeek() == -1 && time.GetDayOfYear() == -1);
  }
  COleDateTime time;
  constexpr std::tuple<int, int, int, int, int, int> kParts[] = {
      {99, 1, 1, 0, 0, 0},    {2001, 2, 29, 0, 0, 0}, {2001, 13, 1, 0, 0, 0},
      {2001, 1, 1, 24, 0, 0}, {2001, 1, 1, 0, 60, 0}, {2001, 1, 1, 0, 0, -1}};
  for (const auto& [year, month, day, hour, minute, second] : kParts) {
    EXPECT_FALSE(time.SetDateTime(year, month, day, hour, minute, second)) << year << month << day;
    EXPECT_EQ(time.GetStatus(), COleDateTime::invalid);
  }
  EXPECT_TRUE(time.SetTime(23, 59, 59));
  EXPECT_EQ(time.GetStatus(), COleDateTime::valid);
}

std::string Text(const COleDateTime& time) {
  return time.GetStatus() == COleDateTime::valid
             ? std::string(time.Format("%Y-%m-%d %H:%M:%S").View())
             : "invalid";
}

std::string Read(const char* text, DWORD flags = 0, DWORD language = LANG_USER_DEFAULT) {
  COleDateTime time;
  const bool read = time.ParseDateTime(text, flags, language);
  EXPECT_EQ(read, time.GetStatus() == COleDateTime::valid);
  return Text(time);
}

TEST(OleDateTime, PrintsItsPartsAndTheLocalesNames) {
  const COleDateTime time(1993, 4, 3, 17, 5, 9);
  const COleDateTime early(100, 3, 1, 0, 0, 0);
  for (const auto& [name, format, late, first] :
       test::Rows<const char*, const char*, const char*, const char*>{
           {"C", "%#Y-%#m-%#d %#H:%#M:%#S %y %#y", "1993-4-3 17:5:9 93 93", "100-3-1 0:0:0 00 0"},
           {"C", "%I %#I %p %j %#j %w %U %W", "05 5 PM 093 93 6 13 13", "12 12 AM 060 60 1 09 09"},
           {"C", "%#c|%c|%x|%X|%#x",
            "Saturday, April 03, 1993 17:05:09|04/03/93 17:05:09|04/03/93|"
            "17:05:09|Saturday, April 03, 1993",
            "Monday, March 01, 0100 00:00:00|03/01/00 00:00:00|"
            "03/01/00|00:00:00|Monday, March 01, 0100"},
           {"C", "%a %#A %b%%%Z%q%#q%", "Sat Saturday Apr%%q%#q%", "Mon Monday Mar%%q%#q%"},
           {"de_DE", "%a %A %b %B %I %p", "Sa Samstag Apr April 05 PM",
            "Mo Montag M\xC3\xA4r M\xC3\xA4rz 12 AM"},
           {"ja_JP", "%A %b %B %p", "土曜日 4月 4月 午後", "月曜日 3月 3月 午前"}}) {
    const test::SystemLocale locale(name);
    EXPECT_EQ(time.Format(format), late) << name << " " << format;
    EXPECT_EQ(early.Format(format), first) << name << " " << format;
  }
  const std::string many(1000, 'x');
  EXPECT_EQ(time.Format((many + "%d" + many).c_str()).View(), many + "03" + many);
  EXPECT_TRUE(time.Format("").IsEmpty() && time.Format(nullptr).IsEmpty());
  EXPECT_EQ(COleDateTime(1e9).Format("%d"), "Invalid DateTime");
}

TEST(OleDateTime, ReadsDatesAndTimes) {
  constexpr const char* kInvalid = "invalid";
  for (const auto& [locales, text, value] :
       test::Rows<std::vector<const char*>, std::string, const char*>{
           {{"C", "de_DE", "ja_JP"}, " 1993-04-03 05:34:00 PM ", "1993-04-03 17:34:00"},
           {{"C"}, "1/2/29", "2029-01-02 00:00:00"},
           {{"C"}, "1/2/30", "1930-01-02 00:00:00"},
           {{"C"}, "4/3", "2001-04-03 00:00:00"},
           {{"C", "de_DE"}, "13/4", "2001-04-13 00:00:00"},
           {{"C", "de_DE"}, "4/13", "2001-04-13 00:00:00"},
           {{"C"}, "1/2/100", "0100-01-02 00:00:00"},
           {{"C", "de_DE", "ja_JP"}, "12 Apr", "2001-04-12 00:00:00"},
           {{"C", "de_DE"}, "apr 3, 1993 5:34pm", "1993-04-03 17:34:00"},
           {{"C", "de_DE"}, "3-APRIL-93", "1993-04-03 00:00:00"},
           {{"C", "de_DE"}, "3-Apr-01", "2001-04-03 00:00:00"},
           // Year, month, day; then month and day exchanged.
           {{"C", "de_DE", "ja_JP"}, "99/12/31", "1999-12-31 00:00:00"},
           {{"C", "ja_JP"}, "00-01-02", "2000-01-02 00:00:00"},
           {{"C", "ja_JP"}, "13/12/11", "2013-12-11 00:00:00"},
           {{"de_DE"}, "13/12/11", "2011-12-13 00:00:00"},
           {{"C", "de_DE"}, "31/12/99", "1999-12-31 00:00:00"},
           {{"de_DE"}, "12/31/99", "1999-12-31 00:00:00"},
           {{"C", "de_DE", "ja_JP"}, "2001-25-12", "2001-12-25 00:00:00"},
           {{"ja_JP"}, "93/4/3", "1993-04-03 00:00:00"},
           // Month and year.
           {{"C", "de_DE", "ja_JP"}, "4/2001", "2001-04-01 00:00:00"},
           {{"C", "de_DE", "ja_JP"}, "2001-4", "2001-04-01 00:00:00"},
           {{"C", "de_DE", "ja_JP"}, "12/100", "0100-12-01 00:00:00"},
           {{"C", "de_DE", "ja_JP"}, "Apr 2001", "2001-04-01 00:00:00"},
           {{"C", "de_DE", "ja_JP"}, "2001April", "2001-04-01 00:00:00"},
           {{"de_DE"}, "Dezember 2001", "2001-12-01 00:00:00"},
           // Digits glued to a name.
           {{"C", "de_DE", "ja_JP"}, "3Apr2001", "2001-04-03 00:00:00"},
           {{"C", "de_DE", "ja_JP"}, "2001Apr3", "2001-04-03 00:00:00"},
           {{"C", "de_DE", "ja_JP"}, "2001Apr03 5p", "2001-04-03 17:00:00"},
           {{"de_DE"}, "3Dez1993", "1993-12-03 00:00:00"},
           // The half day.
           {{"C", "de_DE", "ja_JP"}, "12:30 am", "1899-12-30 00:30:00"},
           {{"C"}, "0:30:01 PM", "1899-12-30 12:30:01"},
           {{"C"}, "12:59:59 pm", "1899-12-30 12:59:59"},
           {{"C"}, "13:30 AM", "1899-12-30 13:30:00"},
           {{"C"}, "23:59:59", "1899-12-30 23:59:59"},
           {{"C", "de_DE", "ja_JP"}, "5 PM", "1899-12-30 17:00:00"},
           {{"C", "de_DE", "ja_JP"}, "5PM", "1899-12-30 17:00:00"},
           {{"C", "de_DE", "ja_JP"}, "5p", "1899-12-30 17:00:00"},
           {{"C", "de_DE", "ja_JP"}, "12 a", "1899-12-30 00:00:00"},
           {{"C", "de_DE", "ja_JP"}, "0 AM", "1899-12-30 00:00:00"},
           {{"C"}, "4/3 5 PM", "2001-04-03 17:00:00"},
           {{"ja_JP"}, "1993-11月-3 5:34 午後", "1993-11-03 17:34:00"},
           {{"es_CR"}, "3/4/1993 5 p.m.", "1993-04-03 17:00:00"},
           // Both, in either order.
           {{"C", "de_DE"}, "8:30:00 January 25, 1996", "1996-01-25 08:30:00"},
           {{"C", "de_DE", "ja_JP"}, "10:20:30, 3-Apr-2001", "2001-04-03 10:20:30"},
           {{"C", "de_DE", "ja_JP"}, "2001-04-03, 10:20", "2001-04-03 10:20:00"},
           {{"C", "de_DE", "ja_JP"}, "5 PM 2001-04-03", "2001-04-03 17:00:00"},
           // Full stops, where "." isn't the date separator and where it is.
           {{"C"}, "10.20", "1899-12-30 10:20:00"},
           {{"C"}, "10.20.30", "1899-12-30 10:20:30"},
           {{"C"}, "4/3/1993 5.30 PM", "1993-04-03 17:30:00"},
           {{"C", "de_DE"}, "25.12.2001", "2001-12-25 00:00:00"},
           {{"C", "de_DE"}, "12.2001", "2001-12-01 00:00:00"},
           {{"C", "de_DE"}, "3.Apr.93", "1993-04-03 00:00:00"},
           {{"de_DE"}, "10.12", "2001-12-10 00:00:00"},
           {{"de_DE"}, "10.12.30", "1930-12-10 00:00:00"},
           // Blanks and zeros.
           {{"C"}, "\t4/3/1993\r\n5 : 34\t:09 \n", "1993-04-03 05:34:09"},
           {{"C"}, "004/0003/2001 010:00020", "2001-04-03 10:20:00"},
           {{"C"}, "001/02/003", "2003-01-02 00:00:00"},
           // Names of the locale, which may hold separators, and English ones.
           {{"de_DE"}, "3. M\xC3\xA4rz 1993", "1993-03-03 00:00:00"},
           {{"de_DE"}, "3-DEZ-93", "1993-12-03 00:00:00"},
           {{"de_DE", "C"}, "3 march 1993 5:00 pm", "1993-03-03 17:00:00"},
           {{"fr_FR"}, "03-oct.-1993", "1993-10-03 00:00:00"},
           {{"fr_FR"}, "03-oct-1993", "1993-10-03 00:00:00"},
           {{"mn_MN"}, "03-1-р сар-1993", "1993-01-03 00:00:00"},
           {{"st_ZA"}, "3-Jan-1993", "1993-06-03 00:00:00"},
           {{"ja_JP"}, "3 Apr 1993", "1993-04-03 00:00:00"}}) {
    for (const char* name : locales) {
      const test::SystemLocale locale(name);
      EXPECT_EQ(Read(text.c_str()), value) << name << " " << text;
    }
  }
  for (const char* name : {"C", "de_DE", "ja_JP"}) {
    const test::SystemLocale locale(name);
    std::istringstream no_dates(
        "|4|1993|2/30/2001|1900-02-29|1993-13-13|0099-01-01|0001-01-01|1/2/0009|10000-01-01|"
        "1-1-10000|4/3/1993 24:00|5:60|5:3:60|5:30 XM|5:30 PM PM|4//3/1993|4/3/1993/|Apr Apr 1993|"
        "4/3/1993 5:30 x|5:30\xFF|1 2 3 4 5 6 7 8 9 1 2 3|Marching 3|31/31/31|13/14/15|"
        "10:20:30,5|2001-13|2001-0|13/2001|0/2001|4/99|24.00|24.00.00|10.20:30|10:20.30|1.2.3.4|"
        "36925|36925.5|5 x|24 PM|PM|5 PM 6 PM|4/3/1993 5|10:20 10:30|5 4/3/1993|3AprMay|Apr3Apr|"
        "1993-13月-3|4/3/1993,,5:30|4/3/1993/5:30");
    for (std::string text; std::getline(no_dates, text, '|');) {
      EXPECT_EQ(Read(text.c_str()), kInvalid) << name << " " << text;
    }
    EXPECT_EQ(Read(nullptr), kInvalid);
    // The fixed order, in which "00" is a year.
    constexpr std::pair<const char*, const char*> kFixedOrder[] = {
        {"00-04-03", "2000-04-03 00:00:00"},
        {"2001-25-12", "2001-12-25 00:00:00"},
        {"1993-Apr-3", "1993-04-03 00:00:00"},
        {"12-4", "2001-12-04 00:00:00"},
        {"31/12/99", "invalid"},
        {"Apr-3-1993", "invalid"}};
    for (const auto& [text, value] : kFixedOrder) {
      EXPECT_EQ(Read(text, LOCALE_NOUSEROVERRIDE, LANG_SYSTEM_DEFAULT), value) << text;
    }
    EXPECT_EQ(Read("1993-4-3 5:34", VAR_TIMEVALUEONLY, 0), "1899-12-30 05:34:00");
    EXPECT_EQ(Read("1993-4-3 5:34", VAR_DATEVALUEONLY), "1993-04-03 00:00:00");
  }
}

TEST(OleDateTime, PrintsAndReadsTheWholeCalendar) {
  const test::SystemLocale locale("C");
  constexpr std::time_t kFirst = -59'011'459'200;
  constexpr std::time_t kBehind = 253'402'300'800;
  // Steps of a prime number of days and of seconds, so that all of both come up.
  for (std::time_t when = kFirst; when < kBehind; when += 101 * 86'400 + 40'009) {
    const std::tm parts = *std::gmtime(&when);
    const COleDateTime time(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                            parts.tm_min, parts.tm_sec);
    std::ostringstream wanted;
    wanted << std::put_time(&parts, "%m/%d/%y %H:%M:%S %I %p %a %j %U %W %w %B");
    ASSERT_EQ(time.Format("%c %I %p %a %j %U %W %w %B"), wanted.str().c_str());
    ASSERT_EQ(Read(time.Format("%Y-%m-%d %I:%M:%S %p")), Text(time));
    ASSERT_EQ(Read(time.Format("%d %b %Y %X")), Text(time));
  }
}

}  // namespace
}  // namespace dq
