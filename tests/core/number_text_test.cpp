#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "dqlib/core/dq_string.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_locale.h"

namespace dq {
namespace {

using Items = std::map<DWORD, std::string>;

const Items kUs = {{LOCALE_SDECIMAL, "."}, {LOCALE_STHOUSAND, ","}, {LOCALE_SGROUPING, "3;0"},
                   {LOCALE_IDIGITS, "2"},  {LOCALE_ILZERO, "1"},    {LOCALE_INEGNUMBER, "1"}};

Items With(DWORD item, const char* text) {
  Items items = kUs;
  items[item] = text;
  return items;
}

/// What the text becomes, by both ways in; "(stays)" if it is left alone.
std::string Format(const char* text, char decimal = '.', char thousand = ',') {
  char output[255] = "(stays)";
  DQFormatNumber(text, output, decimal, thousand);
  CDQString string(text);
  string.FormatNumber(decimal, thousand);
  const bool stays = std::strcmp(output, "(stays)") == 0;
  EXPECT_STREQ(string, stays ? text : output);
  return output;
}

TEST(FormatNumber, TakesTheItemsOfTheUsersLocale) {
  Items german = With(LOCALE_SDECIMAL, ",");
  german[LOCALE_STHOUSAND] = ".";
  for (const auto& [items, number, text] : test::Rows<Items, const char*, const char*>{
           {kUs, "-1234.565", "-1,234.57"},
           // Without a decimal separator there are no decimal places.
           {kUs, "1234", "1,234"},
           // The separator that is looked for is the locale's, while a number has a point
           // everywhere.
           {german, "1234.5", "1.235"},
           {german, "1234,5", "(stays)"},
           {With(LOCALE_SDECIMAL, ""), "1234.5", "1,23450"},
           {With(LOCALE_IDIGITS, "-1"), "2.5", "(stays)"},
           {With(LOCALE_IDIGITS, "2147483647"), "2.5", "(stays)"},
           {With(LOCALE_ILZERO, "0"), "0.5", ".50"},
           {With(LOCALE_SGROUPING, "3;2;0"), "1234567", "1,234,567"},
           {With(LOCALE_INEGNUMBER, "0"), "-1", "(1)"},
           {kUs, "1,234.5", "(stays)"},
       }) {
    test::ScriptedLocale locale;
    locale.items = items;
    EXPECT_EQ(Format(number), text) << number;
  }
}

TEST(FormatNumber, UsesAGivenSeparatorOnlyForOneThatCantBeRead) {
  test::ScriptedLocale locale;
  locale.items = kUs;
  locale.items.erase(LOCALE_STHOUSAND);
  EXPECT_EQ(Format("1234.5", '!', '?'), "1?234.50");
}

TEST(FormatNumber, LeavesATextWhoseResultHasNoRoom) {
  test::ScriptedLocale locale;
  locale.items = With(LOCALE_SGROUPING, "0");
  EXPECT_EQ(Format(std::string(254, '7').c_str()), std::string(254, '7'));
  EXPECT_EQ(Format(std::string(255, '7').c_str()), "(stays)");
  // What vanishes takes no room.
  EXPECT_EQ(Format((std::string(1000, '0') + "7").c_str()), "7");
  locale.items = kUs;
  EXPECT_EQ(Format(std::string(191, '7').c_str()).size(), 254U);
  EXPECT_EQ(Format(std::string(192, '7').c_str()), "(stays)");

  char output[] = "kept";
  DQFormatNumber(nullptr, output, '.', ',');
  DQFormatNumber("1", nullptr, '.', ',');
  EXPECT_STREQ(output, "kept");
}

}  // namespace
}  // namespace dq
