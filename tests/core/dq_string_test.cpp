#include "dqlib/core/dq_string.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/manual_clock.h"
#include "tests/support/own_service.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_locale.h"

namespace dq {
namespace {

using namespace std::string_view_literals;

/// In code page 932, two characters whose second bytes look like a backslash and an "A".
constexpr const char* kSo = "\x83\x5C";
constexpr const char* kA = "\x83\x41";

/// Chooses code page 932 while it lives.
class TwoByteCharacters {
 public:
  TwoByteCharacters() { EXPECT_TRUE(locale_.SetCodePage(932)); }

 private:
  test::ScriptedLocale locale_;
};

TEST(DQString, ReadsNumbersAtItsStart) {
  for (const auto& [text, number, real] : test::Rows<const char*, int, double>{
           {"", 0, 0},
           {"true", 0, 0},
           {"-5", -5, -5},
           {" +7.5x", 7, 7.5},
           {"99999999999", 2147483647, 99999999999.0},
           {"-99999999999999999999", -2147483647 - 1, -1e20},
       }) {
    EXPECT_EQ(CDQString(text).Int(), number) << text;
    EXPECT_EQ(CDQString(text).Double(), real) << text;
    EXPECT_EQ(CDQString(text).Bool(), number != 0) << text;
  }
}

TEST(DQString, WritesNumbersAndRealOnesByWidthAndPrecision) {
  CDQString text;
  text.SetNumber(4294967295u);
  EXPECT_EQ(text, "4294967295");
  text.SetNumber(true);
  EXPECT_EQ(text, "1");
  text.SetNumber(std::numeric_limits<long>::min());
  EXPECT_EQ(text, "-2147483648") << "a long has 32 bits";
  for (const auto& [value, width, precision, expected] : test::Rows<double, int, int, const char*>{
           {1.5, 6, 2, "  1.50"},
           {1.5, 0, 2, "1.50"},
           {0.25, 0, 0, "0.25"},
           {1234.5, 5, 0, "1234.5"},  // five significant digits
           {1.5, -1, 2, "1.5"},
           {1.5, 6, -1, "1.5"},
       }) {
    text.SetDouble(value, width, precision);
    EXPECT_EQ(text, expected);
  }
}

TEST(DQString, InsertsDeletesAndReplacesAtAPlace) {
  EXPECT_EQ(CDQString("ab").Insert(5, "x"), "ab   x");
  EXPECT_EQ(CDQString("ab").Insert(0, 'x').Insert(5, ""), "xab");
  EXPECT_EQ(CDQString("abc").Delete(3, 1).Delete(1, -1), "a");
  EXPECT_EQ(CDQString("abc").Replace(4, 1, "x"), "abc x");
}

TEST(DQString, RemovesCharactersWithoutTouchingHalves) {
  CDQString tabs("ab\tc\t");
  EXPECT_EQ(tabs.ReplaceTabs(4), 2);
  EXPECT_EQ(tabs, "ab    c    ") << "not aligned";
  const TwoByteCharacters page;
  CDQString wide(std::string("\\ ") + kSo + " \t\r\nA" + kA + "\\ ");
  EXPECT_EQ(wide.TrimWhiteSpace(), 7) << "inner white space goes, too";
  EXPECT_EQ(wide.Delete('\\').Delete('A').Delete('\x83').View(), std::string(kSo) + kA);
}

TEST(DQString, MakesNamesProperAndPlural) {
  EXPECT_EQ(CDQString("hELLO wORLD").MakeProper(), "Hello World");
  EXPECT_EQ(CDQString("a\tb  1c_d").MakeProper(), "A\tB  1c_d");
  const TwoByteCharacters page;
  EXPECT_EQ(CDQString("A \x83\x61").MakeProper(), "A \x83\x61");
  for (const auto& [name, plural] :
       test::Rows<const char*, const char*>{{"", ""},
                                            {"Table", "Tables"},
                                            {"Index", "Indexes"},
                                            {"CLASS", "CLASSes"},
                                            {"QUERY", "QUERies"},
                                            // Ends with no letter s.
                                            {"\x83\x73", "\x83\x73s"}}) {
    EXPECT_EQ(CDQString(name).MakePlural(), plural);
  }
}

TEST(DQString, FindsForward) {
  const CDQString text("one Two, one");
  EXPECT_EQ(text.Find("one", 1), 9);
  EXPECT_EQ(text.Find('o', 12), -1);
  EXPECT_EQ(text.Find("", 12), 12);
  EXPECT_EQ(text.Find("", 13), -1) << "past the end";
  EXPECT_EQ(text.FindNoCase("tWO"), 4);
  EXPECT_EQ(text.FindNoCase('t'), 4) << "only the upper case is there";
  EXPECT_EQ(text.FindNoCase('O', 1), 6) << "only the lower case is there";
  EXPECT_EQ(CDQString("xAa").FindNoCase('a'), 1) << "the first of both cases";
  EXPECT_EQ(text.FindWhiteSpace(), 3);
  EXPECT_EQ(text.ReverseFindWhiteSpace(), 8);
  EXPECT_EQ(text.FindCharLower(), 0);
  EXPECT_EQ(CDQString("AB").FindCharLower(), -1);

  const TwoByteCharacters page;
  const CDQString wide(std::string(kA) + "xa" + kSo + "\\");
  EXPECT_EQ(wide.Find('\x83'), -1) << "no half of a character";
  EXPECT_EQ(wide.FindNoCase('A'), 3);
  EXPECT_EQ(wide.FindNoCase("A"), 3);
  EXPECT_EQ(wide.Find("A", 1), 1) << "the walk begins where it is told to";
}

TEST(DQString, OnlyTheCaselessReverseSearchSeesIndexZero) {
  EXPECT_EQ(CDQString("abxx").ReverseFind("ab"), -1);
  EXPECT_EQ(CDQString("abxx").ReverseFindNoCase("AB"), 0);
  const CDQString text("xabxab");
  EXPECT_EQ(text.ReverseFind("ab", 4), 4);
  EXPECT_EQ(text.ReverseFind("ab", 3), 1);
  EXPECT_EQ(text.ReverseFind("ab", 6), 4) << "past the end is the end";
  EXPECT_EQ(text.ReverseFindNoCase("AB", 3), 1);
  EXPECT_EQ(text.ReverseFindNoCase('B'), 5);
  EXPECT_EQ(text.ReverseFindNoCase(""), -1);

  const TwoByteCharacters page;
  EXPECT_EQ(CDQString("x\x83\x41y").ReverseFind("A"), 2) << "by byte";
  EXPECT_EQ(CDQString("x\x83\x41y").ReverseFindNoCase("a"), 2);
  EXPECT_EQ(CDQString("\x82\x60yY").ReverseFindNoCase("\x82\x81Y"), 0) << "wide letters";
  EXPECT_EQ(CDQString(kA).ReverseFind('A'), -1) << "by character";
}

TEST(DQString, ReplacesWhatItFinds) {
  for (const auto& [text, find, with, exact, no_case] :
       test::Rows<const char*, const char*, const char*, const char*, const char*>{
           {"abcABC", "bc", "", "aABC", "aA"},
           // What was inserted is not searched again.
           {"aAaa", "a", "aa", "aaAaaaa", "aaaaaaaa"},
           {"aaaaa", "aa", "b", "bba", "bba"},
           {"abc", "", "x", "abc", "abc"},
       }) {
    CDQString exactly(text);
    CDQString caseless(text);
    exactly.FindReplace(find, with);
    caseless.FindReplaceNoCase(find, with);
    EXPECT_EQ(exactly, exact) << text << " " << find;
    EXPECT_EQ(caseless, no_case) << text << " " << find;
  }
  CDQString text("a-A-a");
  EXPECT_EQ(text.FindReplace("a", "bb", false), 1);
  EXPECT_EQ(text.FindReplaceNoCase("a", "b"), 2);
  EXPECT_EQ(text, "bb-b-b");
  const TwoByteCharacters page;
  text = std::string(kA) + "A" + kSo + "a";
  EXPECT_EQ(text.FindReplaceNoCase("\\", "/"), 0);
  EXPECT_EQ(text.FindReplaceNoCase("A", "."), 2);
  EXPECT_EQ(text.FindReplace(kSo, "\\"), 1);
  EXPECT_EQ(text.View(), std::string(kA) + ".\\.");
}

TEST(DQString, FieldsKeepTheirBlanksAndMayBeEmpty) {
  const TwoByteCharacters page;
  for (const auto& [text, delimiter, fields] :
       test::Rows<std::string, const char*, std::vector<std::string>>{
           {" a ,, c", ",", {" a ", "", " c"}},
           {"", ",", {""}},
           {",", ",", {"", ""}},
           {"abc", "", {"abc"}},
           {"a::b:::c", "::", {"a", "b", ":c"}},
           {std::string(kSo) + "\\" + kA, "\\", {kSo, kA}},
       }) {
    const CDQString string(text);
    const int count = static_cast<int>(fields.size());
    EXPECT_EQ(string.GetFieldCount(delimiter), count) << text;
    for (int i = 0; i < count; ++i) {
      EXPECT_EQ(string.GetField(delimiter, i).View(), fields[i]) << text << " " << i;
    }
    EXPECT_EQ(string.GetField(delimiter, count), "");
    EXPECT_EQ(string.GetField(delimiter, 2147483647), "");
  }
}

TEST(DQString, DelimitedFieldsBeginAnewInsideTheFormerOne) {
  for (const auto& [text, open, close, index, field] :
       test::Rows<const char*, const char*, const char*, int, const char*>{
           {"x<a>y<b>z", "<", ">", 1, "b"},
           {"x<a>y<b>z", "<", ">", 2, ""},
           {"x<a", "<", ">", 0, ""},
           {"<a<b>", "<", ">", 0, "a<b"},
           {"<a<b>", "<", ">", 1, "b"},
           {"<a>", "", ">", 0, ""},
           {"<a>", "<", "", 0, ""},
           // The next search begins behind an opening taken to be as long as the closing.
           {"((a)b)", "(", "b)", 1, ""},
           {"((((a)", "((", ")", 2, "a"},
       }) {
    EXPECT_EQ(CDQString(text).GetDelimitedField(open, close, index), field) << text << index;
  }
  // Many openings before the only closing take linear time.
  const CDQString openings(std::string(1'000'000, '<') + ">");
  EXPECT_EQ(openings.GetDelimitedField("<", ">", 999'998), "<");
  const TwoByteCharacters page;
  EXPECT_EQ(openings.GetDelimitedField("<", ">", 999'998), "<");
  // From inside a character, the walk to the closing is another one.
  EXPECT_EQ(CDQString("\x83\x83\x83\x83>a>").GetDelimitedField("\x83\x83", ">", 1), "\x83>a");
}

TEST(DQString, SplitAddsTokensAndCutsTheString) {
  for (const auto& [text, delimiters, tokens, left] :
       test::Rows<std::string_view, const char*, std::vector<std::string_view>, std::string_view>{
           {",a,,b", ",", {"a", "b"}, ",a"},
           {",,", ",", {}, ",,"},
           {"a b;c", "; ", {"a", "b", "c"}, "a"},
           {"a,b", "", {"a,b"}, "a,b"},
           {"a\0b,c"sv, ",", {"a"}, "a"},
           {",\0a"sv, ",", {}, ","}}) {
    CStringArray out;
    out.Add("before");
    CDQString string(text);
    EXPECT_EQ(string.Split(delimiters, out), static_cast<int>(tokens.size())) << text;
    EXPECT_EQ(string.View(), left);
    for (int i = 1; i < out.GetSize(); ++i) EXPECT_EQ(out[i].View(), tokens[i - 1]) << text;
  }
  // Tokens that get shorter on the way, past every reservation.
  std::string many;
  for (int i = 0; i < 5000; ++i) many += std::string(i < 100 ? 500 : 1, 'x') + ",";
  CStringArray out;
  EXPECT_EQ(CDQString(many).Split(",", out), 5000);
  EXPECT_EQ(out[4999], "x");
}

TEST(DQString, FixedFieldsEndAtAZeroAndLeaveTheLengthThere) {
  CDQString text("a former value that is longer than the field");
  const char* buffer = text.PutToCharBuffer("abcdef", 4);
  EXPECT_EQ(std::string_view(buffer, 4), "abcd");
  EXPECT_EQ(text.GetLength(), 0);
  buffer = text.PutToCharBuffer(buffer + 1, 8);
  EXPECT_EQ(std::string_view(buffer, 8), "bcd\0\0\0\0\0"sv);
  text.ExtractFromCharBuffer(buffer, 8);
  EXPECT_EQ(text, "bcd");
  text.ExtractFromCharBuffer("abcd", 3);
  EXPECT_EQ(text, "abc");
  text.ExtractFromCharBuffer(" b \r\n\0cd", 8);
  EXPECT_EQ(text, " b");
}

TEST(DQString, RandomTextFollowsFromTheTicks) {
  for (const auto& [ticks, type, expected] : test::Rows<DWORD, int, const char*>{
           {1000, CDQString::RANDOM_ALPHANUMERIC, "id-qBCde23NOjmE"},
           {1000, CDQString::RANDOM_ALPHA, "id-qBTdpsDNfjmG"},
           {1000, 7, "id-9L_r\x85\x98\xab\xbe\xd1\xe4\xf7\n"},
           // The product wraps at 32 bits.
           {4'000'000'001, CDQString::RANDOM_NUMERIC, "id-604836260583"},
       }) {
    testing::ManualClock clock(ticks);
    const platform::ScopedPlatform scope(test::With(&platform::Platform::clock, &clock));
    CDQString text("id-");
    text.GenerateRandomString(12, static_cast<CDQString::RANDOMSTRINGTYPE>(type));
    EXPECT_EQ(text, expected) << ticks << " " << type;
  }
}

}  // namespace
}  // namespace dq
