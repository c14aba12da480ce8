#include "dqlib/framework/base/ole_date_time.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace dq {
namespace {

TEST(OleDateTime, CountsDaysAndFractionsAwayFromZero) {
  const struct {
    int parts[6];
    DATE date;
  } cases[] = {
      {{1899, 12, 30, 0, 0, 0}, 0},         {{1899, 12, 30, 18, 0, 0}, 0.75},
      {{1899, 12, 29, 6, 0, 0}, -1.25},     {{1899, 12, 29, 0, 0, 0}, -1},
      {{1900, 1, 1, 12, 0, 0}, 2.5},        {{2001, 2, 3, 0, 0, 0}, 36925},
      {{100, 1, 1, 0, 0, 0}, -657434},      {{9999, 12, 31, 0, 0, 0}, 2958465},
      {{1600, 2, 29, 6, 0, 0}, -109512.25},
  };
  for (const auto& c : cases) {
    const auto& p = c.parts;
    const COleDateTime time(p[0], p[1], p[2], p[3], p[4], p[5]);
    EXPECT_DOUBLE_EQ(time.ToDate(), c.date);
    const COleDateTime back(c.date);
    EXPECT_TRUE(back.GetYear() == p[0] && back.GetMonth() == p[1] && back.GetDay() == p[2] &&
                back.GetHour() == p[3] && back.GetMinute() == p[4] && back.GetSecond() == p[5])
        << c.date;
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
                time.GetDayOfWeek() == -1 && time.GetDayOfYear() == -1)
        << date;
  }
  COleDateTime time;
  for (const auto& p : {std::array{99, 1, 1, 0, 0, 0},
                        {10000, 1, 1, 0, 0, 0},
                        {2001, 2, 29, 0, 0, 0},
                        {2001, 0, 1, 0, 0, 0},
                        {2001, 13, 1, 0, 0, 0},
                        {2001, 1, 0, 0, 0, 0},
                        {2001, 1, 1, 24, 0, 0},
                        {2001, 1, 1, 0, 60, 0},
                        {2001, 1, 1, 0, 0, -1}}) {
    EXPECT_FALSE(time.SetDateTime(p[0], p[1], p[2], p[3], p[4], p[5])) << p[0] << p[1] << p[2];
    EXPECT_EQ(time.GetStatus(), COleDateTime::invalid);
  }
  EXPECT_TRUE(time.SetTime(23, 59, 59));
  EXPECT_EQ(time.GetStatus(), COleDateTime::valid);
}

}  // namespace
}  // namespace dq
