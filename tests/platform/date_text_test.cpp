#include "dqlib/platform/date_text.h"

#include "tests/support/scripted_locale.h"
#include "tests/support/testing.h"

namespace dq::platform {
namespace {

TEST(DateText, LaysOutPictures) {
  test::ScriptedLocale locale;
  locale.items = {{LOCALE_SDAYNAME1, "Monday"},
                  {LOCALE_SABBREVDAYNAME1, "Mon"},
                  {LOCALE_SMONTHNAME1 + 2, "March"},
                  {LOCALE_SABBREVMONTHNAME1 + 2, "Mar"}};
  const SYSTEMTIME date{.wYear = 2004, .wMonth = 3, .wDay = 1};
  const SYSTEMTIME never{.wYear = 2003, .wMonth = 2, .wDay = 29};
  const test::Rows<SYSTEMTIME, const char*, const char*> rows = {
      {date, "d/M/y", "1/3/4"},
      {date, "dd.MM.yy", "01.03.04"},
      {date, "yyy", "2004"},
      {date, "ddd, MMM y", "Mon, Mar 4"},
      {date, "d 'de' MMMM", "1 de March"},
      {date, "dddddMMMMMyyyyy", "MondayMarch2004"},
      {date, "d 'o''clock' ''M", "1 o'clock 3"},
      {date, "''''d", "'1"},
      {date, "'d", "d"},
      {date, "'", ""},
      {date, "", ""},
      {date, "x\xC3\xA9h", "x\xC3\xA9h"},
      {never, "d", ""},
      {{}, "d", ""}};
  for (const auto& [time, picture, text] : rows) {
    EXPECT_EQ(LayOutDate(time, picture, locale, LOCALE_USER_DEFAULT), text) << picture;
  }
}

TEST(DateText, CountsEveryDayOnce) {
  int year = 100, month = 1, day = 1;
  int week_day = DayOfWeek(year, month, day);
  for (long days = DaysFromOrigin(year, month, day); year < 2500; ++days) {
    int back[3] = {};
    DateFromDays(days, back[0], back[1], back[2]);
    ASSERT_TRUE(DaysFromOrigin(year, month, day) == days && back[0] == year && back[1] == month &&
                back[2] == day && DayOfWeek(year, month, day) == week_day)
        << year << '-' << month << '-' << day;
    week_day = (week_day + 1) % 7;
    if (++day > DaysInMonth(year, month)) {
      day = 1;
      if (++month > 12) month = 1, ++year;
    }
  }
  EXPECT_EQ(DaysFromOrigin(1899, 12, 30), 0);
  EXPECT_EQ(DayOfWeek(2001, 2, 3), 6);
  EXPECT_EQ(DaysInMonth(1900, 2) * 100 + DaysInMonth(2000, 2), 2829);
  EXPECT_TRUE(DayOfWeek(2001, 13, 1) == -1 && DayOfWeek(2001, 0, 1) == -1 &&
              DayOfWeek(2001, 4, 31) == -1 && DayOfWeek(0, 1, 1) == -1);
}

}  // namespace
}  // namespace dq::platform
