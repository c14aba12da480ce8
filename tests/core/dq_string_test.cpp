#include "dqlib/core/dq_string.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/manual_clock.h"
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
  struct {
    const char* text;
    int number;
    double real;
  } const cases[] = {
      {"", 0, 0},
      {"yes", 0, 0},
      {"true", 0, 0},
      {"1", 1, 1},
      {"-5", -5, -5},
      {" +7.5x", 7, 7.5},
      {"99999999999", 2147483647, 99999999999.0},
      {"-99999999999999999999", -2147483647 - 1, -1e20},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CDQString(c.text).Int(), c.number) << c.text;
    EXPECT_EQ(CDQString(c.text).Double(), c.real) << c.text;
    EXPECT_EQ(CDQString(c.text).Bool(), c.number != 0) << c.text;
  }
}

TEST(DQString, WritesNumbers) {
  CDQString text;
  text.SetNumber(4294967295u);
  EXPECT_EQ(text, "4294967295");
  text.SetNumber(true);
  EXPECT_EQ(text, "1");
  text.SetNumber(std::numeric_limits<long>::min());
  EXPECT_EQ(text, "-2147483648") << "a long has 32 bits";
}

TEST(DQString, WritesRealNumbersByWidthAndPrecision) {
  const auto write = [](double value, int width, int precision) {
    CDQString text("old");
    text.SetDouble(value, width, precision);
    return text;
  };
  EXPECT_EQ(write(1.5, 6, 2), "  1.50");
  EXPECT_EQ(write(1.5, 0, 2), "1.50");
  EXPECT_EQ(write(0.25, 0, 0), "0.25");
  EXPECT_EQ(write(1234.5, 5, 0), "1234.5") << "five significant digits";
  EXPECT_EQ(write(1.5, -1, 2), "1.5");
  EXPECT_EQ(write(1.5, 6, -1), "1.5");
}

TEST(DQString, InsertsDeletesAndReplacesAtAPlace) {
  EXPECT_EQ(CDQString("ab").Insert(5, "x"), "ab   x");
  EXPECT_EQ(CDQString("ab").Insert(2, "x"), "abx");
  EXPECT_EQ(CDQString("ab").Insert(0, 'x'), "xab");
  EXPECT_EQ(CDQString("ab").Insert(5, ""), "ab");
  EXPECT_EQ(CDQString("abc").Delete(1, -1), "a");
  EXPECT_EQ(CDQString("abc").Delete(1, 99), "a");
  EXPECT_EQ(CDQString("abc").Delete(3, 1), "abc");
  EXPECT_EQ(CDQString("abc").Replace(1, 1, "xyz"), "axyzc");
  EXPECT_EQ(CDQString("abc").Replace(0, -1, "x"), "x");
  EXPECT_EQ(CDQString("abc").Replace(4, 1, "x"), "abc x");
  CDQString text("ab");
  EXPECT_EQ(text.Insert(1, text), "aabb");
  EXPECT_EQ(text.Insert(5, text), "aabb aabb");
}

TEST(DQString, RemovesCharactersWithoutTouchingHalves) {
  CDQString text(" a b\t\r\nc ");
  EXPECT_EQ(text.TrimWhiteSpace(), 3);
  EXPECT_EQ(text, "abc") << "inner white space goes, too";
  EXPECT_EQ(text.Delete('a').Delete('c').Delete('x'), "b");
  CDQString tabs("ab\tc\t");
  EXPECT_EQ(tabs.ReplaceTabs(4), 2);
  EXPECT_EQ(tabs, "ab    c    ") << "not aligned";

  const TwoByteCharacters page;
  CDQString wide(std::string("\\") + kSo + " A" + kA + "\\");
  wide.TrimWhiteSpace();
  EXPECT_EQ(wide.Delete('\\').Delete('A').Delete('\x83').View(), std::string(kSo) + kA);
}

TEST(DQString, MakesNamesProperAndPlural) {
  EXPECT_EQ(CDQString("hELLO wORLD").MakeProper(), "Hello World");
  EXPECT_EQ(CDQString("a\tb  1c_d").MakeProper(), "A\tB  1c_d");
  EXPECT_EQ(CDQString("").MakeProper(), "");
  EXPECT_EQ(CDQString("").MakePlural(), "");
  EXPECT_EQ(CDQString("Table").MakePlural(), "Tables");
  EXPECT_EQ(CDQString("Index").MakePlural(), "Indexes");
  EXPECT_EQ(CDQString("CLASS").MakePlural(), "CLASSes");
  EXPECT_EQ(CDQString("QUERY").MakePlural(), "QUERies");
  const TwoByteCharacters page;
  EXPECT_EQ(CDQString("\x83\x73").MakePlural(), "\x83\x73s") << "ends with no letter s";
  EXPECT_EQ(CDQString("\x83\x83s").MakePlural(), "\x83\x83ses");
  EXPECT_EQ(CDQString("A \x83\x61").MakeProper(), "A \x83\x61");
}

TEST(DQString, FindsForward) {
  const CDQString text("one Two, one");
  EXPECT_EQ(text.Find("one", 1), 9);
  EXPECT_EQ(text.Find('o', 12), -1);
  EXPECT_EQ(text.Find("", 12), 12);
  EXPECT_EQ(text.Find("", 13), -1) << "past the end";
  EXPECT_EQ(text.FindNoCase("tWO"), 4);
  EXPECT_EQ(text.FindNoCase("tWO", 5), -1);
  EXPECT_EQ(text.FindNoCase('t'), 4) << "only the upper case is there";
  EXPECT_EQ(text.FindNoCase('O', 1), 6) << "only the lower case is there";
  EXPECT_EQ(CDQString("xAa").FindNoCase('a'), 1) << "the first of both cases";
  EXPECT_EQ(CDQString("xaA").FindNoCase('A'), 1);
  EXPECT_EQ(text.FindNoCase('z'), -1);
  EXPECT_EQ(text.FindWhiteSpace(), 3);
  EXPECT_EQ(text.ReverseFindWhiteSpace(), 8);
  EXPECT_EQ(text.FindCharLower(), 0);
  EXPECT_EQ(CDQString("AB").FindCharLower(), -1);

  const TwoByteCharacters page;
  const CDQString wide(std::string(kA) + "xa" + kSo + "\\");
  EXPECT_EQ(wide.Find('\x83'), -1) << "no half of a character";
  EXPECT_EQ(wide.FindNoCase('A'), 3);
  EXPECT_EQ(wide.FindNoCase("A"), 3);
  EXPECT_EQ(wide.Find("\\"), 6);
  EXPECT_EQ(wide.Find("A", 1), 1) << "the walk begins where it is told to";
}

TEST(DQString, OnlyTheCaselessReverseSearchSeesIndexZero) {
  EXPECT_EQ(CDQString("abxx").ReverseFind("ab"), -1);
  EXPECT_EQ(CDQString("abxx").ReverseFindNoCase("AB"), 0);
  const CDQString text("xabxab");
  EXPECT_EQ(text.ReverseFind("ab"), 4);
  EXPECT_EQ(text.ReverseFind("ab", 4), 4);
  EXPECT_EQ(text.ReverseFind("ab", 3), 1);
  EXPECT_EQ(text.ReverseFind("ab", 6), 4) << "past the end is the end";
  EXPECT_EQ(text.ReverseFind("xa", 0), -1);
  EXPECT_EQ(text.ReverseFindNoCase("XA", 0), 0);
  EXPECT_EQ(text.ReverseFindNoCase("AB", 3), 1);
  EXPECT_EQ(text.ReverseFindNoCase('B'), 5);
  EXPECT_EQ(text.ReverseFindNoCase(""), -1);
  EXPECT_EQ(CDQString("ab").ReverseFindNoCase("abc"), -1);
  EXPECT_EQ(CDQString("aba").ReverseFind('a'), 2);

  const TwoByteCharacters page;
  EXPECT_EQ(CDQString("x\x83\x41y").ReverseFind("A"), 2) << "by byte";
  EXPECT_EQ(CDQString("x\x83\x41y").ReverseFindNoCase("a"), 2);
  EXPECT_EQ(CDQString("\x82\x60yY").ReverseFindNoCase("\x82\x81Y"), 0) << "wide letters";
  EXPECT_EQ(CDQString("\x82\x82\x60").ReverseFindNoCase("\x82\x81"), 1);
  EXPECT_EQ(CDQString(kA).ReverseFind('A'), -1) << "by character";
}

TEST(DQString, ReplacesWhatItFinds) {
  struct {
    const char* text;
    const char* find;
    const char* with;
    const char* exact;
    const char* no_case;
  } const cases[] = {
      {"abcabc", "b", "xx", "axxcaxxc", "axxcaxxc"},
      {"abcABC", "bc", "", "aABC", "aA"},
      {"aAaa", "a", "aa", "aaAaaaa", "aaaaaaaa"},  // What was inserted is not searched again.
      {"aaaaa", "aa", "b", "bba", "bba"},
      {"xAbX", "AB", "12", "xAbX", "x12X"},
      {"abc", "", "x", "abc", "abc"},
  };
  for (const auto& c : cases) {
    CDQString exact(c.text);
    CDQString no_case(c.text);
    exact.FindReplace(c.find, c.with);
    no_case.FindReplaceNoCase(c.find, c.with);
    EXPECT_EQ(exact, c.exact) << c.text << " " << c.find;
    EXPECT_EQ(no_case, c.no_case) << c.text << " " << c.find;
  }
  CDQString text("a-A-a");
  EXPECT_EQ(text.FindReplace("a", "bb", false), 1);
  EXPECT_EQ(text, "bb-A-a");
  EXPECT_EQ(text.FindReplaceNoCase("a", "b"), 2);
  EXPECT_EQ(text, "bb-b-b");
  EXPECT_EQ(text.FindReplace("b", "c", false), 1);
  EXPECT_EQ(text, "cb-b-b");
}

TEST(DQString, ReplacesByPartsOfItself) {
  CDQString text("b,a,b");
  const char* own = text;
  EXPECT_EQ(text.FindReplace(own + 4, own + 2), 2) << "b by a,b";
  EXPECT_EQ(text, "a,b,a,a,b");
  EXPECT_EQ(text.FindReplace(text, text), 1);
  EXPECT_EQ(text, "a,b,a,a,b");
  own = text;
  EXPECT_EQ(text.FindReplace(own + 5, own + 8), 1) << ",a,b by b";
  EXPECT_EQ(text, "a,b,ab");
  own = text;
  EXPECT_EQ(text.FindReplaceNoCase(own + 4, own + 5), 1) << "ab by b";
  EXPECT_EQ(text, "a,b,b");
}

TEST(DQString, ReplacesWholeCharacters) {
  const TwoByteCharacters page;
  CDQString text(std::string(kA) + "A" + kSo + "a");
  EXPECT_EQ(text.FindReplace("A", "xyz"), 1);
  EXPECT_EQ(text.FindReplaceNoCase("\\", "/"), 0);
  EXPECT_EQ(text.FindReplaceNoCase("A", "."), 1);
  EXPECT_EQ(text.FindReplace(kSo, "\\"), 1);
  EXPECT_EQ(text.View(), std::string(kA) + "xyz\\.");
}

TEST(DQString, FieldsKeepTheirBlanksAndMayBeEmpty) {
  struct {
    const char* text;
    const char* delimiter;
    std::vector<const char*> fields;
  } const cases[] = {
      {"a,,c", ",", {"a", "", "c"}}, {"", ",", {""}},      {" a , b", ",", {" a ", " b"}},
      {",", ",", {"", ""}},          {"abc", "", {"abc"}}, {"a::b:::c", "::", {"a", "b", ":c"}},
  };
  for (const auto& c : cases) {
    const CDQString text(c.text);
    const int count = static_cast<int>(c.fields.size());
    EXPECT_EQ(text.GetFieldCount(c.delimiter), count) << c.text;
    for (int i = 0; i < count; ++i) {
      EXPECT_EQ(text.GetField(c.delimiter, i), c.fields[i]) << c.text << " " << i;
    }
    EXPECT_EQ(text.GetField(c.delimiter, count), "");
    EXPECT_EQ(text.GetField(c.delimiter, 2147483647), "");
  }
  const TwoByteCharacters page;
  const CDQString wide(std::string(kSo) + "\\" + kA);
  EXPECT_EQ(wide.GetField("\\", 1), kA);
  EXPECT_EQ(wide.GetField('\\', 1), kA);
  EXPECT_EQ(wide.GetFieldCount('\\'), 2);
}

TEST(DQString, DelimitedFieldsBeginAnewInsideTheFormerOne) {
  EXPECT_EQ(CDQString("x<a>y<b>z").GetDelimitedField("<", ">", 1), "b");
  EXPECT_EQ(CDQString("x<a>y<b>z").GetDelimitedField("<", ">", 2), "");
  EXPECT_EQ(CDQString("x<a").GetDelimitedField("<", ">", 0), "");
  EXPECT_EQ(CDQString("<a<b>").GetDelimitedField("<", ">", 0), "a<b");
  EXPECT_EQ(CDQString("<a<b>").GetDelimitedField("<", ">", 1), "b");
  EXPECT_EQ(CDQString("<a>").GetDelimitedField("", ">", 0), "");
  EXPECT_EQ(CDQString("<a>").GetDelimitedField("<", "", 0), "");
  // The next search begins behind an opening taken to be as long as the closing.
  EXPECT_EQ(CDQString("((a)b)").GetDelimitedField("(", "b)", 1), "");
  EXPECT_EQ(CDQString("((((a)").GetDelimitedField("((", ")", 2), "a");
  // Many openings before the only closing take linear time.
  const CDQString openings(std::string(1'000'000, '<') + ">");
  EXPECT_EQ(openings.GetDelimitedField("<", ">", 999'998), "<");
  const TwoByteCharacters page;
  EXPECT_EQ(openings.GetDelimitedField("<", ">", 999'998), "<");
  // From inside a character, the walk to the closing is another one.
  const CDQString wide("\x83\x83\x83\x83>a>");
  EXPECT_EQ(wide.GetDelimitedField("\x83\x83", ">", 0), "\x83\x83");
  EXPECT_EQ(wide.GetDelimitedField("\x83\x83", ">", 1), "\x83>a");
}

TEST(DQString, SplitAddsTokensAndCutsTheString) {
  struct {
    std::string_view text;
    const char* delimiters;
    std::vector<std::string_view> tokens;
    std::string_view left;
  } const cases[] = {
      {"a,,b", ",", {"a", "b"}, "a"}, {",a,b", ",", {"a", "b"}, ",a"},
      {",,", ",", {}, ",,"},          {"a b;c", "; ", {"a", "b", "c"}, "a"},
      {"a,b", "", {"a,b"}, "a,b"},    {"a\0b,c"sv, ",", {"a"}, "a"},
      {",\0a"sv, ",", {}, ","},
  };
  for (const auto& c : cases) {
    CStringArray out;
    out.Add("before");
    CDQString text(c.text);
    EXPECT_EQ(text.Split(c.delimiters, out), static_cast<int>(c.tokens.size())) << c.text;
    EXPECT_EQ(text.View(), c.left);
    std::vector<std::string_view> tokens;
    for (int i = 1; i < out.GetSize(); ++i) tokens.push_back(out[i].View());
    EXPECT_EQ(tokens, c.tokens);
  }
  // Tokens that get shorter on the way, past every reservation.
  std::string many;
  for (int i = 0; i < 5000; ++i) many += std::string(i < 100 ? 500 : 1, 'x') + ",";
  CStringArray out;
  EXPECT_EQ(CDQString(many).Split(",", out), 5000);
  EXPECT_EQ(out[4999], "x");
}

TEST(DQString, TakesFixedFieldsApart) {
  CDQString text("old");
  text.ExtractFromCharBuffer("abcd", 3);
  EXPECT_EQ(text, "abc");
  text.ExtractFromCharBuffer(" b \r\n\0cd", 8);
  EXPECT_EQ(text, " b");
  text.ExtractFromCharBuffer("\0x", 2);
  EXPECT_EQ(text, "");
}

TEST(DQString, FixedFieldLeavesTheLengthAtZero) {
  CDQString text("a former value that is longer than the field");
  const char* buffer = text.PutToCharBuffer("abc", 6);
  EXPECT_EQ(std::string_view(buffer, 6), "abc\0\0\0"sv);
  EXPECT_EQ(text.GetLength(), 0);
  buffer = text.PutToCharBuffer("abcdef", 4);
  EXPECT_EQ(std::string_view(buffer, 4), "abcd");
  buffer = text.PutToCharBuffer(buffer + 1, 8);
  EXPECT_EQ(std::string_view(buffer, 8), "bcd\0\0\0\0\0"sv);
  text.ExtractFromCharBuffer(buffer, 8);
  EXPECT_EQ(text, "bcd");
}

TEST(DQString, RandomTextFollowsFromTheTicks) {
  struct {
    DWORD ticks;
    int type;
    const char* text;
  } const cases[] = {
      {1000, CDQString::RANDOM_ALPHANUMERIC, "id-qBCde23NOjmE"},
      {1000, CDQString::RANDOM_ALPHA, "id-qBTdpsDNfjmG"},
      {1000, CDQString::RANDOM_NUMERIC, "id-468136813581"},
      {1000, 7, "id-9L_r\x85\x98\xab\xbe\xd1\xe4\xf7\n"},
      // The product wraps at 32 bits.
      {4'000'000'001, CDQString::RANDOM_NUMERIC, "id-604836260583"},
  };
  for (const auto& c : cases) {
    testing::ManualClock clock(c.ticks);
    platform::Platform services = platform::Current();
    services.clock = &clock;
    const platform::ScopedPlatform scope(services);
    CDQString text("id-");
    text.GenerateRandomString(12, static_cast<CDQString::RANDOMSTRINGTYPE>(c.type));
    EXPECT_EQ(text, c.text) << c.ticks << " " << c.type;
  }
}

}  // namespace
}  // namespace dq
