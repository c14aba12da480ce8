#include "dqlib/core/dq_string.h"

#include "dqlib/platform/checksum.h"
#include "tests/support/manual_clock.h"
#include "tests/support/own_service.h"
#include "tests/support/scripted_locale.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using namespace std::string_view_literals;
using test::Rows;

/// In code page 932, two characters whose second bytes look like a backslash and an "A".
constexpr const char* kSo = "\x83\x5C";
constexpr const char* kA = "\x83\x41";

/// Chooses code page 932 while it lives.
struct TwoByteCharacters : test::ScriptedLocale {
  TwoByteCharacters() { EXPECT_TRUE(SetCodePage(932)); }
};

TEST(DQString, ReadsNumbersAtItsStart) {
  const Rows<const char*, int, double> rows = {
      {"true", 0, 0},     {"", 0, 0},
      {"-5", -5, -5},     {"99999999999", INT_MAX, 99999999999.0},
      {" +7.5x", 7, 7.5}, {"-99999999999999999999", INT_MIN, -1e20}};
  for (const auto& [text, number, real] : rows) {
    const CDQString string(text);
    EXPECT_TRUE(string.Int() == number && string.Double() == real) << text;
    EXPECT_EQ(string.Bool(), number != 0) << text;
  }
}

TEST(DQString, WritesNumbersAndRealOnesByWidthAndPrecision) {
  CDQString text, all;
  const auto put = [&](auto number) {
    text.SetNumber(number);
    all += text + " ";
  };
  put(4294967295u);
  put(-7);
  put(true);
  put(false);
  put(std::numeric_limits<long>::min());
  EXPECT_EQ(all, "4294967295 -7 1 0 -2147483648 ") << "a long has 32 bits";
  // Without a precision the width is a number of significant digits.
  const Rows<double, int, int, const char*> rows = {
      {1.5, 6, 2, "  1.50"},    {1.26, 0, 1, "1.3"},     {1.26, 1, 1, "1.3"}, {0.25, 0, 0, "0.25"},
      {1234.5, 5, 0, "1234.5"}, {1234.5, 1, 0, "1e+03"}, {1.5, -1, 2, "1.5"}, {1.5, 6, -1, "1.5"}};
  for (const auto& [value, width, precision, expected] : rows) {
    text.SetDouble(value, width, precision);
    EXPECT_EQ(text, expected);
  }
}

TEST(DQString, ChangesPlacesAndFillsGapsWithBlanks) {
  const Rows<int, int, const char*, const char*> rows = {
      {1, 2, "xyz", "axyzd"}, {1, 0, "x", "axbcd"},   {1, -1, "x", "ax"}, {3, 9, "", "abc"},
      {4, 1, "x", "abcdx"},   {6, 0, "x", "abcd  x"}, {6, 0, "", "abcd"}, {-1, 1, "", "bcd"}};
  for (const auto& [pos, count, with, expected] : rows) {
    EXPECT_EQ(CDQString("abcd").Replace(pos, count, with), expected) << pos << ' ' << count;
  }
  EXPECT_EQ(CDQString("abcd").Delete(1, 2).Insert(1, "<>").Insert(2, '-'), "a<->d");
}

TEST(DQString, MakesProperNamesAndPlurals) {
  const Rows<const char*, const char*, const char*> rows = {
      {"Y", "Y", "ies"},          {"", "", ""},
      {"BOX", "Box", "BOXes"},    {"class", "Class", "classes"},
      {"city", "City", "cities"}, {"a B\tc-d\n1e", "A B\tC-d\n1e", "a B\tc-d\n1es"}};
  for (const auto& [text, proper, plural] : rows) {
    EXPECT_EQ(CDQString(text).MakeProper(), proper);
    EXPECT_EQ(CDQString(text).MakePlural(), plural);
  }
  const TwoByteCharacters page;
  EXPECT_EQ(CDQString("\x83\x59").MakePlural(), "\x83\x59s") << "it ends in no Y";
}

TEST(DQString, RemovesCharactersWithoutTouchingHalves) {
  CDQString tabs("ab\tc\t");
  EXPECT_TRUE(tabs.ReplaceTabs(4) == 2 && tabs == "ab    c    ") << "not aligned";
  const TwoByteCharacters page;
  CDQString wide(std::string("\\ ") + kSo + " \t\r\nA" + kA + "\\ ");
  EXPECT_EQ(wide.TrimWhiteSpace(), 7) << "inner white space goes, too";
  EXPECT_EQ(wide.Delete('\\').Delete('A').Delete('\x83').View(), std::string(kSo) + kA);
}

TEST(DQString, FindsForwardAndWithoutCaseTheFirstOfBoth) {
  const CDQString text("one Two, one");
  EXPECT_TRUE(text.Find("", 12) == 12 && text.Find("", 13) == -1) << "not past the end";
  EXPECT_TRUE(text.Find("one", 1) == 9 && text.Find('o', 1) == 6 && text.Find('x') == -1);
  EXPECT_TRUE(text.FindNoCase("tWO") == 4 && text.FindNoCase("ONE", 1) == 9);
  EXPECT_TRUE(CDQString("xAa").FindNoCase('a') == 1 && text.FindNoCase('T', 5) == -1);
  EXPECT_TRUE(text.FindWhiteSpace() == 3 && text.ReverseFindWhiteSpace() == 8);
  EXPECT_TRUE(CDQString("x").FindWhiteSpace() == -1 &&
              CDQString("x").ReverseFindWhiteSpace() == -1);
  EXPECT_TRUE(CDQString("AbC").FindCharLower() == 1 && CDQString("AB").FindCharLower() == -1);
}

TEST(DQString, OnlyTheCaselessReverseSearchSeesIndexZero) {
  const CDQString text("ababxab");
  for (const auto& [start, place, no_case] : Rows<int, int, int>{
           {-1, 5, 5}, {7, 5, 5}, {5, 5, 5}, {4, 2, 2}, {2, 2, 2}, {1, -1, 0}, {0, -1, 0}}) {
    EXPECT_EQ(text.ReverseFind("ab", start), place) << start;
    EXPECT_EQ(text.ReverseFindNoCase("AB", start), no_case) << start;
    EXPECT_EQ(text.ReverseFindNoCase('A', start), no_case) << start;
  }
  EXPECT_TRUE(text.ReverseFind("b") == 6 && text.ReverseFindNoCase('B') == 6);
  EXPECT_TRUE(text.ReverseFind("") == -1 && text.ReverseFindNoCase("") == -1);
  EXPECT_TRUE(CDQString().ReverseFind("a") == -1 && CDQString().ReverseFindNoCase("a") == -1);
  const TwoByteCharacters page;
  EXPECT_EQ(CDQString("x\x83\x41y").ReverseFind("A"), 2) << "by byte";
  EXPECT_EQ(CDQString(kA).ReverseFind('A'), -1) << "by character";
}

TEST(DQString, WhatWasInsertedIsNotSearchedAgain) {
  CDQString text("aAaa");
  EXPECT_TRUE(text.FindReplace("a", "aa") == 3 && text == "aaAaaaa") << text;
  EXPECT_EQ(text.FindReplaceNoCase("a", "ab", false), 1);
  EXPECT_TRUE(text.FindReplaceNoCase("AB", "-") == 1 && text == "-aAaaaa") << text;
  EXPECT_TRUE(text.FindReplace("a", "b", false) == 1 && text == "-bAaaaa") << text;
  EXPECT_TRUE(text.FindReplaceNoCase("A", "") == 5 && text == "-b") << text;
  EXPECT_TRUE(text.FindReplace("", "x") == 0 && text == "-b") << text;
}

TEST(DQString, FieldsKeepTheirBlanksAndMayBeEmpty) {
  const CDQString text(" a ,, c");
  EXPECT_TRUE(text.GetFieldCount(",") == 3 && CDQString().GetFieldCount(',') == 1);
  const auto fields = [&](auto delimiter) {
    return text.GetField(delimiter, 0) + "|" + text.GetField(delimiter, 1) + "|" +
           text.GetField(delimiter, 2) + text.GetField(delimiter, 3);
  };
  EXPECT_EQ(fields(",") + fields(',') + fields(""), " a || c a || c a ,, c||");
  EXPECT_EQ(text.GetField(",", 2147483647), "");
  const TwoByteCharacters page;
  EXPECT_EQ(fields(',') + CDQString("\x83,,b").GetField(',', 0), " a || c\x83,");
}

TEST(DQString, DelimitedFieldsBeginAnewInsideTheFormerOne) {
  // Many openings before the only closing take linear time.
  const CDQString openings(std::string(1'000'000, '<') + ">");
  for (const auto& [text, open, close, index, field] :
       Rows<CDQString, const char*, const char*, int, const char*>{
           {"<a<b>", "<", ">", 0, "a<b"},
           {"<a<b>", "<", ">", 1, "b"},
           {"<a<b>", "<", ">", 2, ""},
           {"<a<b>", "", ">", 0, ""},
           {"<a<b>", "<", "", 0, ""},
           // The next search begins behind an opening taken to be as long as the closing.
           {"((a)b)", "(", "b)", 1, ""},
           {"((((a)", "((", ")", 2, "a"},
           {openings, "<", ">", 999'998, "<"}}) {
    EXPECT_EQ(text.GetDelimitedField(open, close, index), field) << open << index;
  }
  const TwoByteCharacters page;
  EXPECT_EQ(openings.GetDelimitedField("<", ">", 999'998), "<");
  // From inside a character, the walk to the closing is another one.
  EXPECT_EQ(CDQString("\x83\x83\x83\x83>a>").GetDelimitedField("\x83\x83", ">", 1), "\x83>a");
}

TEST(DQString, SplitAddsTokensAndCutsTheString) {
  for (const auto& [text, tokens, left] : Rows<std::string_view, const char*, std::string_view>{
           {",a,;b", "|a|b", ",a"}, {"a\0b,c"sv, "|a", "a"}, {",\0a"sv, "", ","}}) {
    CStringArray out;
    out.Add("before");
    CDQString string(text), all;
    const int count = string.Split(",;", out);
    for (int i = 1; i < out.GetSize(); ++i) all += "|" + out[i];
    EXPECT_TRUE(count == out.GetSize() - 1 && string == left && all == tokens) << text << all;
  }
  // Tokens that get shorter on the way, past every reservation.
  std::string many;
  for (int i = 0; i < 5000; ++i) many += std::string(i < 100 ? 500 : 1, 'x') + ",";
  CStringArray out;
  EXPECT_TRUE(CDQString(many).Split(",", out) == 5000 && out[4999] == "x");
}

TEST(DQString, FixedFieldsEndAtAZeroAndLeaveTheLengthThere) {
  CDQString text("a former value that is longer than the field");
  const char* buffer = text.PutToCharBuffer("abcdef", 4);
  EXPECT_TRUE(std::string_view(buffer, 4) == "abcd" && text.GetLength() == 0);
  buffer = text.PutToCharBuffer(buffer + 1, 8);
  EXPECT_EQ(std::string_view(buffer, 8), "bcd\0\0\0\0\0"sv);
  for (const auto& [size, value] :
       Rows<int, const char*>{{3, " b"}, {5, " b"}, {8, " b"}, {-1, ""}, {1, ""}, {2, " b"}}) {
    text.ExtractFromCharBuffer(" b \r\n\0cd", size);
    EXPECT_EQ(text, value) << size;
  }
}

TEST(DQString, RandomTextFollowsFromTheTicks) {
  for (const auto& [ticks, type, expected, checksum] : Rows<DWORD, int, const char*, DWORD>{
           {1000, CDQString::RANDOM_ALPHANUMERIC, "id-qBCde23NOjmE", 0x58463BEA},
           {1000, CDQString::RANDOM_ALPHA, "id-qBTdpsDNfjmG", 0x52A78746},
           {1000, 7, "id-9L_r\x85\x98\xab\xbe\xd1\xe4\xf7\n", 0xED61B865},
           // The product wraps at 32 bits.
           {4'000'000'001, CDQString::RANDOM_NUMERIC, "id-604836260583", 0x487617AB}}) {
    testing::ManualClock clock(ticks);
    const platform::ScopedPlatform scope(test::With(&platform::Platform::clock, &clock));
    CDQString text("id-"), many;
    text.GenerateRandomString(12, static_cast<CDQString::RANDOMSTRINGTYPE>(type));
    EXPECT_EQ(text, expected) << ticks << " " << type;
    many.GenerateRandomString(5000, static_cast<CDQString::RANDOMSTRINGTYPE>(type));
    EXPECT_EQ(platform::Checksum(many.View()), checksum) << ticks << " " << type;
  }
}

TEST(FormatNumber, FollowsTheUsersLocaleAndUsesGivenSeparatorsForWhatCantBeRead) {
  constexpr const char* kNone = nullptr;
  const std::string stays = "(stays)";
  const Rows<std::map<DWORD, const char*>, std::string, std::string> rows = {
      {{}, "-1234.565", "-1,234.57"},
      {{}, "1,234.5", stays},
      {{{LOCALE_IDIGITS, "0"}}, "2.4", "2"},
      {{{LOCALE_SGROUPING, "3;2;0"}}, "1234567", "1,234,567"},
      {{{LOCALE_IDIGITS, "-1"}}, "2.5", stays},
      {{{LOCALE_SGROUPING, "-1"}}, "1", stays},
      {{{LOCALE_ILZERO, "0"}}, "0.5", ".50"},
      {{{LOCALE_INEGNUMBER, "0"}}, "-1", "(1)"},
      {{{LOCALE_IDIGITS, "2147483647"}}, "2.5", stays},
      {{{LOCALE_INEGNUMBER, "-1"}}, "-1", stays},
      // A number has a point everywhere; without the locale's separator it has no places.
      {{{LOCALE_SDECIMAL, ","}}, "1234,5", stays},
      {{}, "1234", "1,234"},
      {{{LOCALE_SDECIMAL, ""}}, "1234.5", "1,23450"},
      {{{LOCALE_SDECIMAL, ","}, {LOCALE_STHOUSAND, "."}}, "1234.5", "1.235"},
      {{{LOCALE_SDECIMAL, kNone}, {LOCALE_STHOUSAND, kNone}}, "1234.5", "1?234.50"},
      {{{LOCALE_IDIGITS, kNone}, {LOCALE_ILZERO, kNone}}, "0.5", "0.50"},
      {{{LOCALE_SGROUPING, kNone}, {LOCALE_INEGNUMBER, kNone}}, "-1234", "-1,234"},
      // There is room for 254 bytes. What vanishes takes none.
      {{{LOCALE_SGROUPING, "0"}}, std::string(254, '7'), std::string(254, '7')},
      {{{LOCALE_SGROUPING, "0"}}, std::string(255, '7'), stays},
      {{}, std::string(192, '7'), stays},
      {{}, std::string(1000, '0') + "7", "7"}};
  for (const auto& [changes, number, expected] : rows) {
    test::ScriptedLocale locale;
    locale.items = {{LOCALE_SDECIMAL, "."}, {LOCALE_STHOUSAND, ","}, {LOCALE_SGROUPING, "3;0"},
                    {LOCALE_IDIGITS, "2"},  {LOCALE_ILZERO, "1"},    {LOCALE_INEGNUMBER, "1"}};
    for (const auto& [item, text] : changes) {
      locale.items.erase(item);
      if (text != nullptr) locale.items[item] = text;
    }
    char output[255] = "(stays)";
    DQFormatNumber(number.c_str(), output, '.', '?');
    EXPECT_EQ(output, expected) << number;
    CDQString string(number);
    string.FormatNumber('.', '?');
    EXPECT_EQ(string.View(), expected == stays ? number : expected);
  }
  char output[] = "kept";
  DQFormatNumber(nullptr, output, '.', ',');
  DQFormatNumber("1", nullptr, '.', ',');
  EXPECT_STREQ(output, "kept");
}

}  // namespace
}  // namespace dq
