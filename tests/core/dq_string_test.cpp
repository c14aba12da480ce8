#include "dqlib/core/dq_string.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <random>
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

TEST(DQString, RemovesCharactersWithoutTouchingHalves) {
  CDQString tabs("ab\tc\t");
  EXPECT_EQ(tabs.ReplaceTabs(4), 2);
  EXPECT_EQ(tabs, "ab    c    ") << "not aligned";
  const TwoByteCharacters page;
  CDQString wide(std::string("\\ ") + kSo + " \t\r\nA" + kA + "\\ ");
  EXPECT_EQ(wide.TrimWhiteSpace(), 7) << "inner white space goes, too";
  EXPECT_EQ(wide.Delete('\\').Delete('A').Delete('\x83').View(), std::string(kSo) + kA);
}

TEST(DQString, FindsForwardByCharacterAndWithoutCaseTheFirstOfBoth) {
  const CDQString text("one Two, one");
  EXPECT_EQ(text.Find("", 12), 12);
  EXPECT_EQ(text.Find("", 13), -1) << "past the end";
  EXPECT_EQ(text.FindNoCase("tWO"), 4);
  EXPECT_EQ(CDQString("xAa").FindNoCase('a'), 1);
  EXPECT_EQ(text.FindWhiteSpace(), 3);
  EXPECT_EQ(text.ReverseFindWhiteSpace(), 8);
  EXPECT_EQ(text.FindCharLower(), 0);
  EXPECT_EQ(CDQString("AB").FindCharLower(), -1);
  const TwoByteCharacters page;
  const CDQString wide(std::string(kA) + "xa" + kSo + "\\");
  EXPECT_EQ(wide.Find('\x83'), -1) << "no half of a character";
  EXPECT_EQ(wide.FindNoCase("A"), 3);
  EXPECT_EQ(wide.Find("A", 1), 1) << "the walk begins where it is told to";
}

TEST(DQString, OnlyTheCaselessReverseSearchSeesIndexZero) {
  EXPECT_EQ(CDQString("abxx").ReverseFind("ab"), -1);
  EXPECT_EQ(CDQString("abxx").ReverseFindNoCase("AB"), 0);
  const TwoByteCharacters page;
  EXPECT_EQ(CDQString("x\x83\x41y").ReverseFind("A"), 2) << "by byte";
  EXPECT_EQ(CDQString("\x82\x60yY").ReverseFindNoCase("\x82\x81Y"), 0) << "wide letters";
  EXPECT_EQ(CDQString(kA).ReverseFind('A'), -1) << "by character";
}

/// The searches as they are told: place by place.
struct PlainSearch {
  std::string text;
  const platform::CodePage& page = platform::Current().locale->code_page();

  std::string Lower(std::string part) const {
    page.LowerInPlace(part.data(), part.size());
    return part;
  }
  std::size_t SizeAt(std::string_view walked, std::size_t at) const {
    return page.CharacterSize(walked.substr(at));
  }
  int FindNoCase(const std::string& wanted, std::size_t start) const {
    const std::string lower = Lower(text);
    for (; start < text.size(); start += SizeAt(lower, start)) {
      if (lower.compare(start, wanted.size(), Lower(wanted)) == 0) return static_cast<int>(start);
    }
    return -1;
  }
  int ReverseFindNoCase(const std::string& wanted, std::size_t start) const {
    for (std::size_t at = std::min(start, text.size() - 1) + 1; at-- > 0;) {
      if (Lower(text.substr(at, wanted.size())) == Lower(wanted)) return static_cast<int>(at);
    }
    return -1;
  }
  int FindCharacter(char wanted, std::size_t start, bool no_case, bool last) const {
    const auto byte = static_cast<unsigned char>(wanted);
    int hit = -1;
    for (; start < text.size() && (last || hit < 0); start += SizeAt(text, start)) {
      const bool same = no_case ? text[start] == static_cast<char>(page.Lower(byte)) ||
                                      text[start] == static_cast<char>(page.Upper(byte))
                                : text[start] == wanted;
      if (same && SizeAt(text, start) == 1) hit = static_cast<int>(start);
    }
    return hit;
  }
};

TEST(DQString, SearchesAgreeWithPlainOnesInEveryCodePage) {
  test::ScriptedLocale locale;
  constexpr unsigned kSeed = 5;
  std::mt19937 random(kSeed);
  // Letters of both widths, lead bytes that change with case, and what fills the ways between.
  constexpr std::string_view kBytes = "aAbBcxxx\x82\x60\x81\x82\x83\x41\xA2\xE5\xA3\x40\xE9\xC9";
  const auto pick = [&](std::size_t size) {
    std::string text;
    while (text.size() < size) text += kBytes[random() % kBytes.size()];
    return text;
  };
  for (int i = 0; i < 40'000; ++i) {
    constexpr UINT kPages[] = {0, 1252, 932, 936, 949, 950};
    ASSERT_TRUE(locale.SetCodePage(kPages[i % std::size(kPages)]));
    PlainSearch plain{pick(1 + random() % 12)};
    if (i % 8 == 0) {
      // Ways that are longer than what is looked at first.
      plain.text = pick(3) + std::string(200 + random() % 400, 'x') + plain.text +
                   std::string(200 + random() % 400, random() % 2 == 0 ? 'x' : '\x82');
    }
    const CDQString text(plain.text);
    const std::string wanted = random() % 2 == 0
                                   ? pick(1 + random() % 3)
                                   : plain.text.substr(random() % plain.text.size(), 4);
    const std::size_t start = random() % plain.text.size();
    const int from = static_cast<int>(start);
    const char ch = wanted[0];
    const std::string where = "step " + std::to_string(i) + " of seed " + std::to_string(kSeed);
    ASSERT_EQ(text.FindNoCase(wanted.c_str(), from), plain.FindNoCase(wanted, start)) << where;
    ASSERT_EQ(text.ReverseFindNoCase(wanted.c_str(), from), plain.ReverseFindNoCase(wanted, start))
        << where;
    ASSERT_EQ(text.FindNoCase(ch, from), plain.FindCharacter(ch, start, true, false)) << where;
    ASSERT_EQ(text.ReverseFind(ch), plain.FindCharacter(ch, 0, false, true)) << where;
    const std::string other = i % 8 == 0 ? plain.text.substr(0, start) + wanted : wanted;
    const auto sign = [](int order) { return (order > 0) - (order < 0); };
    ASSERT_EQ(sign(text.CompareNoCase(other.c_str())),
              sign(plain.Lower(plain.text).compare(plain.Lower(other))))
        << where;
  }
}

TEST(DQString, WhatWasInsertedIsNotSearchedAgain) {
  CDQString text("aAaa");
  EXPECT_EQ(text.FindReplace("a", "aa"), 3);
  EXPECT_EQ(text, "aaAaaaa");
  EXPECT_EQ(text.FindReplaceNoCase("a", "ab", false), 1);
  EXPECT_EQ(text.FindReplaceNoCase("AB", "-"), 1);
  EXPECT_EQ(text.FindReplace("a", "b", false), 1);
  EXPECT_EQ(text, "-bAaaaa");
}

TEST(DQString, FieldsKeepTheirBlanksAndMayBeEmpty) {
  const CDQString text(" a ,, c");
  EXPECT_EQ(text.GetFieldCount(","), 3);
  EXPECT_EQ(text.GetField(",", 0) + "|" + text.GetField(",", 1) + "|" + text.GetField(',', 2),
            " a || c");
  EXPECT_EQ(text.GetField(",", 2147483647), "");
  EXPECT_EQ(CDQString("").GetFieldCount(","), 1);
}

TEST(DQString, DelimitedFieldsBeginAnewInsideTheFormerOne) {
  EXPECT_EQ(CDQString("<a<b>").GetDelimitedField("<", ">", 0), "a<b");
  EXPECT_EQ(CDQString("<a<b>").GetDelimitedField("<", ">", 1), "b");
  // The next search begins behind an opening taken to be as long as the closing.
  EXPECT_EQ(CDQString("((a)b)").GetDelimitedField("(", "b)", 1), "");
  EXPECT_EQ(CDQString("((((a)").GetDelimitedField("((", ")", 2), "a");
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
