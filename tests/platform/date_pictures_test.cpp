#include "dqlib/platform/posix/date_pictures.h"

#include "tests/support/testing.h"

namespace dq::platform::posix {
namespace {

using Pairs = test::Rows<const char*, const char*>;

TEST(DatePictures, TranslateElementsAndQuoteText) {
  const Pairs rows = {
      {"%0e %_d %-m %#m %0k", "dd d M M HH"},
      {"%A %a %B %h %G %g", "dddd ddd MMMM MMM yyyy yy"},
      {"%D %F", "MM/dd/yy yyyy-MM-dd"},
      {"%T %R", "HH:mm:ss HH:mm"},
      {"%k:%M %l:%M %P", "H:mm h:mm tt"},
      {"%Oy/%Om/%Od %EY", "yy/MM/dd yyyy"},
      {"%I:%M:%S %p %Z", "hh:mm:ss tt"},
      {"%H %Z:%M", "HH:mm"},
      {"%n%H%t%M%%", "HH mm%"},
      {"kl. %H.%M %z", "'kl'. HH.mm"},
      {"%Y\xE5\xB9\xB4%m\xE6\x9C\x88", "yyyy'\xE5\xB9\xB4'MM'\xE6\x9C\x88'"},
      // The second byte of a two-byte character may look like a letter or a bracket.
      {"%Y\x83"
       "a\x83[ %m",
       "yyyy'\x83"
       "a\x83[' MM"},
      {"%H o'clock", "HH 'o''clock'"},
      {"%H'%M''", "HH''mm''''"},
      {"%", ""},
      {"%H%-", "HH"}};
  for (const auto& [pattern, picture] : rows) {
    EXPECT_EQ(TimePicture({.time = pattern}), picture) << pattern;
    EXPECT_EQ(ShortDatePicture({.date = pattern}), picture) << pattern;
  }
}

TEST(DatePictures, FollowPatternsThatNameOthers) {
  EXPECT_EQ(TimePicture({.time = "%r", .time_12h = "%l:%M %p"}), "h:mm tt");
  EXPECT_EQ(TimePicture({.time = "%r"}), "hh:mm:ss tt");
  EXPECT_EQ(TimePicture({.time = "%c", .time_12h = ""}), "");
  // Patterns that name themselves and each other come to an end.
  EXPECT_LT(TimePicture({.time = "%X%X%X%H", .time_12h = ""}).size(), 2000U);
  EXPECT_LT(ShortDatePicture({.date_time = "%x%x%x", .date = "-%c%c"}).size(), 2000U);
}

TEST(DatePictures, LongDateIsTheDateOfTheDateAndTimeWithFullNames) {
  for (const auto& [date_time, picture] :
       Pairs{{"%a %b %e %H:%M:%S %Y", "dddd MMMM d yyyy"},
             {"%a, %d %b %Y, %X", "dddd, dd MMMM yyyy"},
             {"%Y. %b. %-e., %A, %H:%M:%S %Z", "yyyy. MMMM. d., dddd"},
             {"%T, %d.%m.%Y", "dd.MM.yyyy"},
             {"%d-%m-%Y ora %H:%M", "dd-MM-yyyy"},
             {"%Y\xE5\xB9\xB4%d\xE6\x97\xA5 %H\xE6\x99\x82%M\xE5\x88\x86",
              "yyyy'\xE5\xB9\xB4'dd'\xE6\x97\xA5'"},
             {"", "dd.MM.yyyy"}}) {
    const DatePatterns patterns{.date_time = date_time, .date = "%d.%m.%Y", .time = "%T"};
    EXPECT_EQ(LongDatePicture(patterns), picture) << date_time;
  }
}

TEST(DatePictures, TellTheSeparatorOfTheFirstTwoElementsAndTheOrderOfAll) {
  using Text = const char*;
  const test::Rows<Text, Text, Text> rows = {{"M/d/yyyy", "/", "0"},
                                             {"d.M.yy", ".", "1"},
                                             {"yyyy-MM-dd", "-", "2"},
                                             {"yy dd. MM", " ", "2"},
                                             {"d. M. yyyy", ". ", "1"},
                                             {"dddd, MMMM d", ", ", "0"},
                                             {"dddd dd MMM yyyy", " ", "1"},
                                             {"'yd' M 'd'/dd/y", "|", "0"},
                                             {"dddd", "|", "1"},
                                             {"yyyy'J'MM", "|", "2"},
                                             {"yyyy.", "|", "2"}};
  for (const auto& [picture, separator, order] : rows) {
    EXPECT_EQ(DateOrder(picture), order) << picture;
    EXPECT_EQ(PictureSeparator(picture, "dMy", "|"), separator) << picture;
  }
  EXPECT_EQ(PictureSeparator("'kl'. HH.mm", "Hhm", ":"), ".");
  EXPECT_TRUE(HasTwentyFourHours("'h' H:mm"));
  EXPECT_FALSE(HasTwentyFourHours("'H' h''mm tt"));
}

}  // namespace
}  // namespace dq::platform::posix
