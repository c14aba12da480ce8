#include "dqlib/platform/checksum.h"
#include "tests/support/doubles.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

using namespace std::string_view_literals;
using enum ControlDialog::Id;
using enum ControlDialog::RowsId;
using Text = const char*;

CDQBigInt Big(Text text) { return CDQBigInt(std::string(text)); }

TEST(BigInt, TextsThatMakeNumbers) {
  for (const auto& [text, shown, number] : Cases<3>(R"(=> 0 => 0 ;; - => 0 => 0 ;; -007 => -7 => -7
       -5-3 => -5-3 => -473 ;; -0 => 0 => 0 ;; 123456 => 123456 => 123456
       -1234567 => -1234567 => -234567)")) {
    EXPECT_EQ(CDQBigInt(text).toString(), shown) << text;
    EXPECT_EQ(static_cast<int>(CDQBigInt(text)), std::stoi(number)) << text;
  }
  EXPECT_TRUE(Big("-0") == 0 && CDQBigInt() == Big(""));
  EXPECT_EQ(CDQBigInt(LLONG_MIN).toString(), "-9223372036854775808");
  // What is no number reckons as it can: "-" counts -3.
  EXPECT_EQ(static_cast<int>(Big("7-2") * Big("3")), 2016);
  EXPECT_EQ(static_cast<int>(Big("1-2") + Big("14")), 86);
  // A stream gives words, and the last one stays at its end.
  std::istringstream in(" -12\t34x ");
  CDQBigInt number;
  std::string read;
  while (in >> number) read += number.toString() + ";";
  EXPECT_EQ(read + number.toString(), "-12;34x;34x");
}

TEST(BigInt, OperandsOfAllIntegerTypesKeepTheirValue) {
  const auto check = [one = CDQBigInt(1)](auto number, Text shown) {
    const CDQBigInt big = number;
    CDQBigInt twice = big;
    ((((twice *= number) /= number) += number) -= number) %= big * 2;
    for (const CDQBigInt& same : {big, one * number, number * one, one + (number - one),
                                  number + one - 1, big / one, twice - big}) {
      EXPECT_EQ(same.toString(), shown);
    }
    EXPECT_TRUE(number == big && big == number && !(big != number) && big <= number &&
                number >= big && number < big + 1 && big - 1 < number && big + 1 > number &&
                big / number == 1 && number / big == 1);
  };
  check(short{7}, "7");
  check(4'294'967'295U, "4294967295");
  check(5'000'000'000L, "5000000000");
  check(LLONG_MAX, "9223372036854775807");
  check(ULLONG_MAX, "18446744073709551615");
}

TEST(BigInt, DividesWithItsOwnRemaindersOfWhichNegativeZerosAreLessThanZero) {
  // A smaller number leaves the larger one. A guess from two digits may be too high, and 10. What
  // is no number is divided as it can be.
  for (const auto& [dividend, divisor, quotient, remainder] : Cases<4>(R"(
       -7 => 2 => -3 => -1 ;; 7 => -7 => -1 => -0 ;; 0 => 0 => 1 => 0 ;; -3 => 5 => 0 => -5
       100000000000000000000 => 19999999999 => 5000000000 => 5000000000
       1000000007000000049 => 1000000007 => 1000000000 => 49 ;; 7x2 => 3 => 299 => 1Z5
       :::: => 14 => 793 => 8 ;; 99999 => x => 1111 => 20007)")) {
    EXPECT_EQ((CDQBigInt(dividend) / CDQBigInt(divisor)).toString(), quotient) << dividend;
    EXPECT_EQ((CDQBigInt(dividend) % CDQBigInt(divisor)).toString(), remainder) << dividend;
  }
  const CDQBigInt zero = Big("7") % Big("-7");
  EXPECT_TRUE(zero != 0 && zero < 0);
  std::ostringstream products;
  products << CDQBigInt(0) * -1 << ' ' << CDQBigInt(0) * CDQBigInt(-1) << ' ' << CDQBigInt(-1) / 2;
  EXPECT_EQ(products.str(), "-0 0 0");
  for (const int n : {-5, 5}) {
    EXPECT_TRUE(n + zero == n && zero + n == n && n - zero == n && zero - n == -n) << n;
  }
}

TEST(BigInt, IntsAndTheNumberItselfAsOperandsGiveWhatNumbersGive) {
  for (const Text text : {"1", "-9", "99999", "-12345678901234567890"}) {
    const CDQBigInt big = Big(text);
    for (const int n : {INT_MIN, -100, -11, -10, -1, 1, 7, 10, 99, 100, 101, INT_MAX}) {
      EXPECT_TRUE(big * n == big * CDQBigInt(n) && n * big == big * n) << text << " * " << n;
      EXPECT_EQ(big / n, big / CDQBigInt(n)) << text << " / " << n;
    }
    EXPECT_TRUE(big / 0 == big && big * 0 == 0) << text << " without an error";
    CDQBigInt x[] = {big, big, big, big, big};
    EXPECT_TRUE((x[0] += x[0]) == big * 2 && (x[1] -= x[1]).toString() == "0") << text;
    EXPECT_TRUE((x[2] *= x[2]) == big * CDQBigInt(big) && (x[3] /= x[3]) == 1) << text;
    EXPECT_EQ(x[4] %= x[4], 0) << text;
  }
}

TEST(BigInt, ProductsAndQuotientsAreThoseOfSingleDigits) {
  std::mt19937 random(3);
  // Half of the numbers have runs of 0 and 9, which carry and make guesses wrong.
  const auto digits = [&](std::size_t size, bool runs) {
    std::string text(1, "123456789"[random() % 9]);
    while (text.size() < size) {
      const char same = text.back() == '0' ? '0' : '9';
      text += runs && random() % 8 != 0 ? same : "0123456789"[random() % 10];
    }
    return text;
  };
  for (int i = 0; i < 3'000; ++i) {
    const CDQBigInt a(digits(1 + random() % 80, i % 2 == 0));
    const std::string text = digits(1 + random() % 60, i % 3 == 0);
    const CDQBigInt b(text);
    CDQBigInt product;
    for (const char digit : text) (product *= 10) += a * (digit - '0');
    ASSERT_TRUE(a * b == product && b * a == product) << "step " << i;
    for (const CDQBigInt& rest : {CDQBigInt(), b - 1}) {
      ASSERT_TRUE((product + rest) / b == a && (product + rest) % b == rest) << "step " << i;
    }
  }
  // As many as have room without memory of their own, and more than what is summed up at once.
  for (const std::size_t size : {320u, 9'000u}) {
    const CDQBigInt nines(std::string(size, '9'));
    const CDQBigInt square(std::string(size - 1, '9') + '8' + std::string(size - 1, '0') + '1');
    EXPECT_TRUE(nines * nines == square && square / nines == nines) << size;
  }
}

/// Chooses code page 932 while it lives, in which "\x83\x5C" and "\x83\x41" are characters whose
/// second bytes look like a backslash and an "A".
struct TwoByteCharacters : ScriptedLocale {
  TwoByteCharacters() { EXPECT_TRUE(SetCodePage(932)); }
};

TEST(DQString, ReadsNumbersAtItsStartAndWritesThemByWidthAndPrecision) {
  const Rows<Text, int, double> texts = {
      {"true", 0, 0}, {"", 0, 0},       {"-5", -5, -5},
      {" +7", 7, 7},  {"7.5x", 7, 7.5}, {"99999999999", INT_MAX, 99999999999.0},
      {"0", 0, 0},    {".5x", 0, .5},   {"-99999999999999999999", INT_MIN, -1e20}};
  for (const auto& [text, number, real] : texts) {
    const CDQString string(text);
    EXPECT_TRUE(string.Int() == number && string.Double() == real && string.Bool() == (number != 0))
        << text;
  }
  CDQString text, all;
  const auto put = [&](auto... numbers) { ((text.SetNumber(numbers), all += text + " "), ...); };
  put(4294967295u, -7, true, false, std::numeric_limits<long>::min());
  EXPECT_EQ(all, "4294967295 -7 1 0 -2147483648 ") << "a long has 32 bits";
  // Without a precision the width is a number of significant digits.
  const Rows<double, int, int, Text> rows = {
      {1.5, 6, 2, "  1.50"},    {1.26, 0, 1, "1.3"},     {1.26, 1, 1, "1.3"}, {0.25, 0, 0, "0.25"},
      {1234.5, 5, 0, "1234.5"}, {1234.5, 1, 0, "1e+03"}, {1.5, -1, 2, "1.5"}, {1.5, 6, -1, "1.5"}};
  for (const auto& [value, width, precision, expected] : rows) {
    text.SetDouble(value, width, precision);
    EXPECT_EQ(text, expected);
  }
}

TEST(DQString, ChangesPlacesFillsGapsWithBlanksAndDropsCharacters) {
  const Rows<int, int, Text, Text> rows = {
      {1, 2, "xyz", "axyzd"}, {1, 0, "x", "axbcd"},   {1, -1, "x", "ax"}, {3, 9, "", "abc"},
      {4, 1, "x", "abcdx"},   {6, 0, "x", "abcd  x"}, {6, 0, "", "abcd"}, {-1, 1, "", "bcd"}};
  for (const auto& [pos, count, with, expected] : rows) {
    EXPECT_EQ(CDQString("abcd").Replace(pos, count, with), expected) << pos << ' ' << count;
  }
  EXPECT_EQ(CDQString("abcd").Delete(1, 2).Insert(1, "<>").Insert(2, '-'), "a<->d");
  CDQString tabs("ab\tc\t");
  EXPECT_TRUE(tabs.ReplaceTabs(4) == 2 && tabs == "ab    c    ") << "not aligned";
  // Characters go without touching halves of others.
  const TwoByteCharacters page;
  CDQString wide("\\ \x83\x5C \t\r\nA\x83\x41\\ ");
  EXPECT_EQ(wide.TrimWhiteSpace(), 7) << "inner white space goes, too";
  EXPECT_EQ(wide.Delete('\\').Delete('A').Delete('\x83'), "\x83\x5C\x83\x41");
}

TEST(DQString, MakesProperNamesAndPlurals) {
  const Rows<Text, Text, Text> rows = {
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

TEST(DQString, FindsForwardAndWithoutCaseTheFirstOfBoth) {
  const CDQString text("one Two, one");
  EXPECT_TRUE(text.Find("", 12) == 12 && text.Find("", 13) == -1) << "not past the end";
  EXPECT_TRUE(text.Find("one", 1) == 9 && text.Find('o', 1) == 6 && text.Find('x') == -1);
  EXPECT_TRUE(text.Find("one", -1) == 0 && text.Find('o', -1) == 0);
  EXPECT_TRUE(text.FindNoCase("tWO") == 4 && text.FindNoCase("ONE", 1) == 9);
  EXPECT_TRUE(CDQString("xAa").FindNoCase('a') == 1 && text.FindNoCase('T', 5) == -1);
  EXPECT_TRUE(text.FindWhiteSpace() == 3 && text.ReverseFindWhiteSpace() == 8);
  const CDQString caps("AB");
  EXPECT_TRUE(caps.FindWhiteSpace() == -1 && caps.ReverseFindWhiteSpace() == -1);
  EXPECT_TRUE(CDQString("AbC").FindCharLower() == 1 && caps.FindCharLower() == -1);
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
  EXPECT_EQ(CDQString("\x83\x41").ReverseFind('A'), -1) << "by character";
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
  const auto fields = [&](auto by) {
    return text.GetField(by, 0) + "|" + text.GetField(by, 1) + "|" + text.GetField(by, 2) +
           text.GetField(by, 3);
  };
  EXPECT_EQ(fields(",") + fields(',') + fields(""), " a || c a || c a ,, c||");
  EXPECT_EQ(text.GetField(",", 2147483647), "");
  const TwoByteCharacters page;
  EXPECT_EQ(fields(',') + CDQString("\x83,,b").GetField(',', 0), " a || c\x83,");
}

TEST(DQString, DelimitedFieldsBeginAnewInsideTheFormerOne) {
  // The next search begins behind an opening taken to be as long as the closing.
  const Rows<Text, Text, Text, int, Text> rows = {
      {"<a<b>", "<", ">", 0, "a<b"}, {"<a<b>", "<", ">", 1, "b"}, {"<a<b>", "<", ">", 2, ""},
      {"<a<b>", "", ">", 0, ""},     {"<a<b>", "<", "", 0, ""},   {"((a)b)", "(", "b)", 1, ""},
      {"((((a)", "((", ")", 2, "a"}};
  for (const auto& [text, open, close, index, field] : rows) {
    EXPECT_EQ(CDQString(text).GetDelimitedField(open, close, index), field) << open << index;
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
  for (const auto& [text, tokens, left] : Rows<std::string_view, Text, std::string_view>{
           {",a,;b", "|a|b", ",a"}, {"a\0b,c"sv, "|a", "a"}, {",\0a"sv, "", ","}}) {
    CStringArray out;
    out.Add("before");
    CDQString string(text), all;
    const int count = string.Split(",;", out);
    for (int i = 1; i <= count; ++i) all += "|" + out[i];
    EXPECT_TRUE(out.GetSize() == count + 1 && string == left && all == tokens) << text << all;
  }
  // Tokens that get shorter on the way, past every reservation.
  std::string many;
  for (int i = 0; i < 5000; ++i) many += std::string(i < 100 ? 500 : 1, 'x') + ",";
  CStringArray out;
  EXPECT_TRUE(CDQString(many).Split(",", out) == 5000 && out[4999] == "x");
  const TwoByteCharacters page;
  EXPECT_TRUE(CDQString("a\x83").Split("\x83", out) == 1 && out[5000] == "a") << "a lone half";
}

TEST(DQString, FixedFieldsEndAtAZeroAndLeaveTheLengthThere) {
  CDQString text("a former value that is longer than the field");
  const char* buffer = text.PutToCharBuffer("abcdef", 4);
  EXPECT_TRUE(std::string_view(buffer, 4) == "abcd" && text.GetLength() == 0);
  buffer = text.PutToCharBuffer(buffer + 1, 8);
  EXPECT_EQ(std::string_view(buffer, 8), "bcd\0\0\0\0\0"sv);
  for (const auto& [size, value] :
       Rows<int, Text>{{3, " b"}, {5, " b"}, {8, " b"}, {-1, ""}, {1, ""}, {2, " b"}}) {
    text.ExtractFromCharBuffer(" b \r\n\0cd", size);
    EXPECT_EQ(text, value) << size;
  }
}

TEST(DQString, RandomTextFollowsFromTheTicks) {
  // The last product wraps at 32 bits.
  using Type = CDQString::RANDOMSTRINGTYPE;
  for (const auto& [ticks, type, expected, checksum] : Rows<DWORD, Type, Text, DWORD>{
           {1000, CDQString::RANDOM_ALPHANUMERIC, "id-qBCde23NOjmE", 0x58463BEA},
           {1000, CDQString::RANDOM_ALPHA, "id-qBTdpsDNfjmG", 0x52A78746},
           {1000, Type{7}, "id-9L_r\x85\x98\xab\xbe\xd1\xe4\xf7\n", 0xED61B865},
           {4'000'000'001, CDQString::RANDOM_NUMERIC, "id-604836260583", 0x487617AB}}) {
    ManualClock clock(ticks);
    CDQString text("id-"), many;
    text.GenerateRandomString(12, type);
    many.GenerateRandomString(5000, type);
    EXPECT_EQ(text, expected) << ticks << " " << type;
    EXPECT_EQ(platform::Checksum(many.View()), checksum) << ticks << " " << type;
  }
}

TEST(FormatNumber, FollowsTheUsersLocaleAndUsesGivenSeparatorsForWhatCantBeRead) {
  ScriptedLocale locale;
  constexpr DWORD kPlaces = LOCALE_IDIGITS, kZero = LOCALE_ILZERO, kSign = LOCALE_INEGNUMBER,
                  kGroups = LOCALE_SGROUPING, kPoint = LOCALE_SDECIMAL, kMark = LOCALE_STHOUSAND;
  const std::string stays = "(stays)", most(254, '7'), zeros(1000, '0');
  // There is room for 254 bytes. What vanishes takes none.
  const Rows<DWORD, Text, std::string, std::string> rows = {
      {kGroups, "3;2;0", "7654321", "7,654,321"}, {kPoint, ".", "1234", "1,234"},
      {kPlaces, "2", "-1234.565", "-1,234.57"},   {kPlaces, "-1", "2", stays},
      {kMark, ".", "1234.5", "1.234.50"},         {kGroups, "-1", "1", stays},
      {kPoint, "", "1234.5", "1,23450"},          {kPlaces, "0", "2.4", "2"},
      {kGroups, "0", most + "7", stays},          {kZero, "0", "0.5", ".50"},
      {kPlaces, "2", "1,234.5", stays},           {kSign, "-1", "-1", stays},
      {kPoint, ",", "1234.5", "1,235"},           {kGroups, "0", most, most},
      {kGroups, "0", zeros + "7", "7"},           {kSign, "0", "-1", "(1)"}};
  for (const auto& [item, setting, number, expected] : rows) {
    locale.items = {{kPoint, "."},  {kMark, ","}, {kGroups, "3;0"},
                    {kPlaces, "2"}, {kZero, "1"}, {kSign, "1"}};
    locale.items[item] = setting;
    char output[255] = "(stays)";
    DQFormatNumber(number.c_str(), output, '.', '?');
    EXPECT_EQ(output, expected) << number;
    CDQString string(number);
    string.FormatNumber('.', '?');
    EXPECT_EQ(string.View(), expected == stays ? number : expected);
  }
  locale.items.clear();
  char output[20] = "kept";
  DQFormatNumber(nullptr, output, '.', ',');
  DQFormatNumber("1", nullptr, '.', ',');
  EXPECT_STREQ(output, "kept");
  for (const auto& [number, expected] : {std::pair("-1234.5", "-1?234.50"), {"0.5", "0.50"}}) {
    DQFormatNumber(number, output, '.', '?');
    EXPECT_STREQ(output, expected);
  }
}

// Numbers that no control writes in a way of its own.
static_assert(!detail::ExchangedNumber<bool> && !detail::ExchangedNumber<CDQBigInt>);

struct DataExchange : testing::Test {
  ControlDialog dialog;
  CEdit& edit = dialog.edit();
  CDataExchange save{&dialog, true}, load{&dialog, false};
  ScriptedPrompts prompts;
};

TEST_F(DataExchange, BlanksAreTheNumberZeroOfEachType) {
  const auto expect = [&](auto value) {
    // 32 characters are read.
    const std::string blanks(31, ' ');
    for (const auto& [text, expected] : Rows<std::string, int>{
             {" +7\t", 7}, {"", 0}, {"\t ", 0}, {blanks + "12", 1}, {blanks + " 1", 0}}) {
      edit.SetWindowText(text.c_str());
      value = 99;
      DQDDX_CustomNumber(&save, kEdit, value);
      EXPECT_EQ(value, expected) << text;
    }
    edit.SetWindowText("x");
    value = 99;
    EXPECT_THROW(DQDDX_Text(&save, kEdit, value), CUserException);
    DQDDX_Text(&load, kEdit, value);
    EXPECT_EQ(edit.GetWindowText(), "99");
  };
  std::apply([&](auto... numbers) { (expect(numbers), ...); },
             std::tuple<BYTE, short, int, UINT, long, unsigned long, long long>());
}

TEST_F(DataExchange, ReadsSixtyTwoCharactersOfBigNumbersWithoutBlanks) {
  CDQBigInt value;
  const std::string digits = "-1234567890" + std::string(51, '1');
  edit.SetWindowText((digits + "2").c_str());
  DQDDX_Text(&save, kEdit, value);
  EXPECT_EQ(value.toString(), digits);
  edit.SetWindowText("1 2");
  EXPECT_THROW(DQDDX_Text(&save, kEdit, value), CUserException);
  EXPECT_THAT(prompts.shown, testing::ElementsAre(ShownBox{"Please enter an integer.", 0, 61712}));
  DQDDX_Text(&load, kEdit, value);
  EXPECT_EQ(edit.GetWindowText(), digits);
}

TEST_F(DataExchange, TrimsTextsAndHoldsRanges) {
  CString text = " a b\t";
  DQDDX_TextTrimRightLeftSpace(&load, kEdit, text, true);
  DQDDX_TextTrimRightLeftSpace(&save, kEdit, text, false);
  EXPECT_TRUE(prompts.shown.empty());
  DQDDX_TextTrimRightLeftSpace(&save, kEdit, text, true);
  EXPECT_EQ(text, "a b");
  for (const int value : {5, 6}) DQDDV_MinMaxI64(&save, value, 5, 6);
  for (const int value : {4, 7}) {
    EXPECT_THROW(DQDDV_MinMaxI64(&save, value, 5, 6), CUserException) << value;
    DQDDV_MinMaxI64(&load, value, 5, 6);
  }
  const ShownBox between{"Enter a value between 5 and 6\n"};
  const ShownBox trimmed{"Whitespace characters was trimmed from the string a b"};
  EXPECT_THAT(prompts.shown, testing::ElementsAre(trimmed, between, between));
}

enum class Color { kRed, kGreen, kBlue, kNone = 9 };

TEST_F(DataExchange, MovesWhatIsChosenAndLeavesTheVariableWithoutAChoice) {
  using enum Color;
  const auto moved = [&](auto exchange, int id, Color value) {
    exchange(&load, id, value);
    value = kNone;
    exchange(&save, id, value);
    return value;
  };
  EXPECT_EQ(moved(DQDDX_CBEnum<Color>, kDropList, kBlue), kBlue);
  EXPECT_EQ(moved(DQDDX_CBEnum<Color>, kCombo, kNone), kNone);
  EXPECT_EQ(moved(DQDDX_RadioEnum<Color>, kRadio, kGreen), kGreen);
  EXPECT_EQ(moved(DQDDX_RadioEnum<Color>, kRadio, kBlue), kNone);
  CString text = "two";
  DQDDX_CBStringExact(&load, kCombo, text);
  DQDDX_CBStringExact(&save, kCombo, text);
  EXPECT_EQ(text, "Two");
  CStringList list;
  for (const Text row : {"b", "a", "b"}) list.AddTail(row);
  DQDDX_StringList(&load, kList, list);
  EXPECT_EQ(dialog.list().GetCount(), 3);
  DQDDX_StringList(&save, kList, list);
  EXPECT_EQ(Joined(list), "b|a|b|");
  bool check = true;
  DQDDX_Check(&load, kCheck, check);
  EXPECT_EQ(dialog.IsDlgButtonChecked(kCheck), 1U);
  dialog.CheckDlgButton(kCheck, 2);
  check = false;
  DQDDX_Check(&save, kCheck, check);
  EXPECT_TRUE(check) << "undetermined counts as set";
  EXPECT_THROW(DQDDX_StringList(&save, kMissing, list), CNotSupportedException);
  EXPECT_THROW(DQDDX_StringList(&save, kStatic, list), CNotSupportedException);
  EXPECT_EQ(list.GetCount(), 3);
}

}  // namespace
}  // namespace dq::test
