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
  const test::SystemLocale locale("C");
  constexpr std::pair<const char*, const char*> kDates[] = {
      {" 1993-04-03 05:34:00 PM ", "1993-04-03 17:34:00"},
      {"13/12/29", "2029-12-13 00:00:00"},
      {"1/2/30", "1930-01-02 00:00:00"},
      {"4.3", "2001-04-03 00:00:00"},
      {"12 Apr", "2001-04-12 00:00:00"},
      {"apr 3, 1993 5:34pm", "1993-04-03 17:34:00"},
      {"3-APRIL-93", "1993-04-03 00:00:00"},
      {"12:30 am", "1899-12-30 00:30:00"},
      {"0:30:01 PM", "1899-12-30 12:30:01"},
      {"13:30 AM", "1899-12-30 13:30:00"}};
  for (const auto& [text, value] : kDates) {
    EXPECT_EQ(Read(text), value) << text;
  }
  std::istringstream no_dates(
      "|4|1993|2/30/2001|1900-02-29|1993-13-13|0099-01-01|10000-01-01|1-1-10000|4/3/1993 24:00|"
      "5:60|5:3:60|5 PM|5:30 XM|5:30 PM PM|4//3/1993|4/3/1993/|Apr Apr 1993|Apr 1993|001/2/1993|"
      "4/3/1993 5:30 x|5:30\xFF|1 2 3 4 5 6 7 8 9 1 2 3|Marching 3");
  for (std::string text; std::getline(no_dates, text, '|');) {
    EXPECT_EQ(Read(text.c_str()), "invalid") << text;
  }
  EXPECT_EQ(Read(nullptr), "invalid");
  // The fixed order, in which "00" is a year.
  constexpr std::pair<const char*, const char*> kFixedOrder[] = {
      {"00-04-03", "2000-04-03 00:00:00"},
      {"2001-25-12", "2001-12-25 00:00:00"},
      {"1993-Apr-3", "1993-04-03 00:00:00"},
      {"Apr-3-1993", "invalid"}};
  for (const auto& [text, value] : kFixedOrder) {
    EXPECT_EQ(Read(text, LOCALE_NOUSEROVERRIDE, LANG_SYSTEM_DEFAULT), value) << text;
  }
  EXPECT_EQ(Read("4/3/1993 5:34", VAR_TIMEVALUEONLY, 0), "1899-12-30 05:34:00");
  EXPECT_EQ(Read("4/3/1993 5:34", VAR_DATEVALUEONLY), "1993-04-03 00:00:00");
}

TEST(OleDateTime, ReadsInTheLocalesOrderAndLanguage) {
  for (const auto& [name, text, value] : test::Rows<const char*, const char*, const char*>{
           {"de_DE", "4/13", "2001-04-13 00:00:00"},
           {"de_DE", "3. M\xC3\xA4rz 1993", "1993-03-03 00:00:00"},
           {"de_DE", "3-DEZ-93", "1993-12-03 00:00:00"},
           {"de_DE", "3 march 1993 5:00 pm", "1993-03-03 17:00:00"},
           {"ja_JP", "93/4/3", "1993-04-03 00:00:00"},
           {"ja_JP", "1993-11月-3 5:34 午後", "1993-11-03 17:34:00"},
           {"ja_JP", "3 Apr 1993", "1993-04-03 00:00:00"},
           {"ja_JP", "1993-13月-3", "invalid"}}) {
    const test::SystemLocale locale(name);
    EXPECT_EQ(Read(text), value) << name << " " << text;
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
