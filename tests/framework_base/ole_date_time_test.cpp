
#include "tests/support/system_locale.h"

/// Where `LOCPATH` is set, the C library's `newlocale` never frees its copy of it.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace dq::test {
namespace {

TEST(OleDateTime, CountsDaysAndFractionsAwayFromZero) {
  constexpr std::pair<const char*, DATE> kDates[] = {
      {"1899-12-30 00:00:00", 0},       {"1899-12-29 06:00:00", -1.25},
      {"1900-01-01 12:00:00", 2.5},     {"0100-01-01 00:00:00", -657434},
      {"9999-12-31 00:00:00", 2958465}, {"1600-02-29 06:00:00", -109512.25}};
  for (const auto& [text, date] : kDates) {
    SYSTEMTIME parts;
    ASSERT_TRUE(COleDateTime(date).GetAsSystemTime(parts));
    EXPECT_DOUBLE_EQ(COleDateTime(parts).ToDate(), date);
    EXPECT_EQ(COleDateTime(date).Format("%Y-%m-%d %H:%M:%S"), text);
  }
  // Rounded to the second, across midnight.
  EXPECT_EQ(COleDateTime(36925 - 0.1 / 86400).Format("%Y-%m-%d %X"), "2001-02-03 00:00:00");
  EXPECT_EQ(COleDateTime(-1 - 86399.9 / 86400).Format("%d %X"), "30 00:00:00");
  const COleDateTime time(2004, 12, 31, 1, 2, 3);
  SYSTEMTIME parts;
  ASSERT_TRUE(time.GetAsSystemTime(parts));
  EXPECT_EQ(parts, (SYSTEMTIME{2004, 12, 5, 31, 1, 2, 3, 0}));
  EXPECT_TRUE(time.GetYear() == 2004 && time.GetMonth() == 12 && time.GetDay() == 31);
  EXPECT_TRUE(time.GetHour() == 1 && time.GetMinute() == 2 && time.GetSecond() == 3);
  EXPECT_TRUE(time.GetDayOfWeek() == 6 && time.GetDayOfYear() == 366);
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
  constexpr std::array<int, 6> kParts[] = {{99, 1, 1, 0, 0, 0},    {10'000, 1, 1, 0, 0, 0},
                                           {2001, 2, 29, 0, 0, 0}, {2001, 13, 1, 0, 0, 0},
                                           {2001, 1, 0, 0, 0, 0},  {2001, 1, 1, 24, 0, 0},
                                           {2001, 1, 1, 0, 60, 0}, {2001, 1, 1, 0, 0, -1}};
  for (const auto& [year, month, day, hour, minute, second] : kParts) {
    EXPECT_FALSE(time.SetDateTime(year, month, day, hour, minute, second)) << year << month << day;
    EXPECT_EQ(time.GetStatus(), COleDateTime::invalid);
  }
  EXPECT_TRUE(time.SetTime(23, 59, 59) && time.GetStatus() == COleDateTime::valid);
}

/// What is read, without a time of midnight and without the day that a time alone has.
std::string Read(const char* text, DWORD flags = 0, DWORD language = LANG_USER_DEFAULT) {
  COleDateTime time;
  const bool read = time.ParseDateTime(text, flags, language);
  EXPECT_EQ(read, time.GetStatus() == COleDateTime::valid);
  if (!read) return "invalid";
  const std::string value(time.Format("%Y-%m-%d %H:%M:%S").View());
  if (value.starts_with("1899-12-30 ")) return value.substr(11);
  return value.substr(0, value.find(" 00:00:00"));
}

/// Reads the texts of "text = value|text = value" in each of the locales.
void ExpectRead(const std::string& locales, const std::string& table, DWORD flags = 0,
                DWORD language = LANG_USER_DEFAULT) {
  std::istringstream names(locales);
  for (std::string name; names >> name;) {
    const SystemLocale locale(name);
    std::istringstream rows(table);
    for (std::string row; std::getline(rows, row, '|');) {
      const std::size_t sign = row.find(" = ");
      EXPECT_EQ(Read(row.substr(0, sign).c_str(), flags, language), row.substr(sign + 3))
          << row << " in " << name;
    }
  }
}

TEST(OleDateTime, PrintsItsPartsAndTheLocalesNames) {
  const COleDateTime time(1993, 4, 3, 17, 5, 9);
  const COleDateTime early(100, 3, 1, 0, 0, 0);
  for (const auto& [name, format, late, first] :
       Rows<const char*, const char*, const char*, const char*>{
           {"C", "%#Y-%#m-%#d %#H:%#M:%#S %y %#y", "1993-4-3 17:5:9 93 93", "100-3-1 0:0:0 00 0"},
           {"C", "%I %#I %p %j %#j %w %U %W", "05 5 PM 093 93 6 13 13", "12 12 AM 060 60 1 09 09"},
           {"C", "%#c|%x", "Saturday, April 03, 1993 17:05:09|04/03/93",
            "Monday, March 01, 0100 00:00:00|03/01/00"},
           {"C", "%c|%X", "04/03/93 17:05:09|17:05:09", "03/01/00 00:00:00|00:00:00"},
           {"C", "%#x|%Y", "Saturday, April 03, 1993|1993", "Monday, March 01, 0100|0100"},
           {"C", "%a %#A %b%%%Z%q%#q%", "Sat Saturday Apr%%q%#q%", "Mon Monday Mar%%q%#q%"},
           {"de_DE", "%a %A %b %B %p", "Sa Samstag Apr April PM", "Mo Montag M\xC3\xA4r März AM"},
           {"ja_JP", "%A %b %B %p", "土曜日 4月 4月 午後", "月曜日 3月 3月 午前"}}) {
    const SystemLocale locale(name);
    EXPECT_EQ(time.Format(format), late) << name << " " << format;
    EXPECT_EQ(early.Format(format), first) << name << " " << format;
  }
  // Sunday, Monday and the last day of a year that begins with a Sunday.
  const SystemLocale locale("C");
  EXPECT_EQ(COleDateTime(1995, 1, 1, 11, 0, 0).Format("%a %j %U %W %p") + "|" +
                COleDateTime(1995, 1, 2, 12, 0, 0).Format("%a %j %U %#W %I %p") + "|" +
                COleDateTime(1995, 12, 31, 13, 0, 0).Format("%a %j %U %W %I"),
            "Sun 001 01 00 AM|Mon 002 01 1 12 PM|Sun 365 53 52 01");
  const std::string many(1000, 'x');
  EXPECT_EQ(time.Format((many + "%d" + many).c_str()).View(), many + "03" + many);
  EXPECT_TRUE(time.Format("").IsEmpty() && time.Format(nullptr).IsEmpty());
  EXPECT_EQ(COleDateTime(1e9).Format("%d"), "Invalid DateTime");
}

TEST(OleDateTime, ReadsDatesAndTimes) {
  constexpr char kAll[] = "C de_DE ja_JP";
  ExpectRead(
      kAll,
      " 1993-04-03 05:34:00 PM  = 1993-04-03 17:34:00|12 Apr = 2001-04-12|"
      // Year, month, day; then month and day exchanged; then month and year.
      "99/12/31 = 1999-12-31|2001-25-12 = 2001-12-25|4/2001 = 2001-04-01|2001-4 = 2001-04-01|"
      "12/100 = 0100-12-01|Apr 2001 = 2001-04-01|2001April = 2001-04-01|"
      // Digits glued to a name.
      "3Apr2001 = 2001-04-03|2001Apr3 = 2001-04-03|2001Apr03 5p = 2001-04-03 17:00:00|"
      // The half day.
      "12:30 am = 00:30:00|5 PM = 17:00:00|5PM = 17:00:00|5p = 17:00:00|12 a = 00:00:00|"
      "0 AM = 00:00:00|5 PM 2001-04-03 = 2001-04-03 17:00:00|"
      "10:20:30, 3-Apr-2001 = 2001-04-03 10:20:30|2001-04-03, 10:20 = 2001-04-03 10:20:00");
  ExpectRead("C",
             "1/2/29 = 2029-01-02|1/2/30 = 1930-01-02|4/3 = 2001-04-03|1/2/100 = 0100-01-02|"
             "0:30:01 PM = 12:30:01|12:59:59 pm = 12:59:59|13:30 AM = 13:30:00|23:59:59 = 23:59:59|"
             "4/3 5 PM = 2001-04-03 17:00:00|"
             // Full stops, where "." isn't the date separator; blanks and zeros.
             "10.20 = 10:20:00|10.20.30 = 10:20:30|4/3/1993 5.30 PM = 1993-04-03 17:30:00|"
             "\t4/3/1993\r\n5 : 34\t:09 \n = 1993-04-03 05:34:09|001/02/003 = 2003-01-02|"
             "004/0003/2001 010:00020 = 2001-04-03 10:20:00");
  ExpectRead("C de_DE",
             "13/4 = 2001-04-13|4/13 = 2001-04-13|apr 3, 1993 5:34pm = 1993-04-03 17:34:00|"
             "3-APRIL-93 = 1993-04-03|3-Apr-01 = 2001-04-03|31/12/99 = 1999-12-31|"
             "8:30:00 January 25, 1996 = 1996-01-25 08:30:00|25.12.2001 = 2001-12-25|"
             "12.2001 = 2001-12-01|3.Apr.93 = 1993-04-03|"
             "3 march 1993 5:00 pm = 1993-03-03 17:00:00");
  ExpectRead("C ja_JP", "00-01-02 = 2000-01-02|13/12/11 = 2013-12-11");
  ExpectRead("de_DE",
             "13/12/11 = 2011-12-13|12/31/99 = 1999-12-31|Dezember 2001 = 2001-12-01|"
             "3Dez1993 = 1993-12-03|10.12 = 2001-12-10|10.12.30 = 1930-12-10|"
             "3. M\xC3\xA4rz 1993 = 1993-03-03|3-DEZ-93 = 1993-12-03");
  ExpectRead("ja_JP",
             "93/4/3 = 1993-04-03|1993-11月-3 5:34 午後 = 1993-11-03 17:34:00|"
             "3 Apr 1993 = 1993-04-03");
  // Names that hold separators, and one that another month has in English.
  ExpectRead("es_CR", "3/4/1993 5 p.m. = 1993-04-03 17:00:00");
  ExpectRead("fr_FR", "03-oct.-1993 = 1993-10-03|03-oct-1993 = 1993-10-03");
  ExpectRead("mn_MN", "03-1-р сар-1993 = 1993-01-03");
  ExpectRead("st_ZA", "3-Jan-1993 = 1993-06-03");
  // The fixed order, in which "00" is a year.
  ExpectRead(kAll,
             "00-04-03 = 2000-04-03|2001-25-12 = 2001-12-25|1993-Apr-3 = 1993-04-03|"
             "12-4 = 2001-12-04|31/12/99 = invalid|Apr-3-1993 = invalid",
             LOCALE_NOUSEROVERRIDE, LANG_SYSTEM_DEFAULT);
  ExpectRead(kAll, "1993-4-3 5:34 = 05:34:00", VAR_TIMEVALUEONLY, 0);
  ExpectRead(kAll, "1993-4-3 5:34 = 1993-04-03", VAR_DATEVALUEONLY);
}

TEST(OleDateTime, ReadsNothingElse) {
  std::string no_dates(
      "|4|1993|2/30/2001|1900-02-29|1993-13-13|0099-01-01|0001-01-01|1/2/0009|10000-01-01|"
      "1-1-10000|4/3/1993 24:00|5:60|5:3:60|5:30 XM|5:30 PM PM|4//3/1993|4/3/1993/|Apr Apr 1993|"
      "4/3/1993 5:30 x|5:30\xFF|1 2 3 4 5 6 7 8 9 1 2 3|Marching 3|31/31/31|13/14/15|"
      "10:20:30,5|2001-13|2001-0|13/2001|0/2001|4/99|24.00|24.00.00|10.20:30|10:20.30|1.2.3.4|"
      "36925|36925.5|5 x|24 PM|PM|5 PM 6 PM|4/3/1993 5|10:20 10:30|5 4/3/1993|3AprMay|Apr3Apr|"
      "1993-13月-3|4/3/1993,,5:30|4/3/1993/5:30|");
  for (std::size_t at = 0; (at = no_dates.find('|', at)) != no_dates.npos; at += 11) {
    no_dates.replace(at, 1, " = invalid|");
  }
  ExpectRead("C de_DE ja_JP", no_dates);
  EXPECT_EQ(Read(nullptr), "invalid");
}

}  // namespace
}  // namespace dq::test
