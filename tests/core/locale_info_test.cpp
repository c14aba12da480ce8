#include "dqlib/core/locale_info.h"

#include <gtest/gtest.h>

#include "tests/support/rows.h"
#include "tests/support/scripted_locale.h"

namespace dq {
namespace {

TEST(LocaleInfo, FallsBackOnlyWhereAnItemCantBeRead) {
  test::ScriptedLocale locale;
  locale.items = {{LOCALE_SGROUPING, "3;0"}, {LOCALE_S1159, ""}, {LOCALE_IDIGITS, "x"}};
  for (const auto& [item, language, text, first, number] :
       test::Rows<DWORD, DWORD, const char*, char, int>{
           {LOCALE_SGROUPING, LOCALE_USER_DEFAULT, "3;0", '3', 3},
           {LOCALE_S1159, LOCALE_USER_DEFAULT, "", '\0', 0},
           {LOCALE_IDIGITS, LOCALE_USER_DEFAULT, "x", 'x', 0},
           {LOCALE_S2359, LOCALE_USER_DEFAULT, "pm", 'p', 7},
           {LOCALE_SGROUPING, 0x407, "pm", 'p', 7}}) {
    EXPECT_STREQ(CDQLocaleInfo::GetInfo(item, "pm", language), text) << item;
    EXPECT_EQ(CDQLocaleInfo::GetInfoChar(item, "pm", language), first) << item;
    EXPECT_EQ(CDQLocaleInfo::GetInfoInt(item, 7, language), number) << item;
  }
  EXPECT_STREQ(CDQLocaleInfo::GetInfo(LOCALE_S2359, nullptr, LOCALE_USER_DEFAULT), "");
  EXPECT_EQ(CDQLocaleInfo::GetInfoChar(LOCALE_S2359, nullptr, LOCALE_USER_DEFAULT), '\0');
}

TEST(LocaleInfo, JoinsDateAndTimePatternsByABlank) {
  test::ScriptedLocale locale;
  locale.items = {{LOCALE_SSHORTDATE, "M/d/yyyy"},
                  {LOCALE_SLONGDATE, "dddd, MMMM dd, yyyy"},
                  {LOCALE_STIMEFORMAT, "h:mm:ss tt"}};
  EXPECT_STREQ(CDQLocaleInfo::GetDateFormat(LOCALE_SSHORTDATE, false), "M/d/yyyy");
  EXPECT_STREQ(CDQLocaleInfo::GetDateFormat(LOCALE_SLONGDATE, true),
               "dddd, MMMM dd, yyyy h:mm:ss tt");
  locale.items.clear();
  EXPECT_STREQ(CDQLocaleInfo::GetDateFormat(LOCALE_SSHORTDATE, true), " ");
}

}  // namespace
}  // namespace dq
