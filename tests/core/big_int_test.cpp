#include "dqlib/core/big_int.h"

#include "tests/support/testing.h"

namespace dq {
namespace {

using Text = const char*;

CDQBigInt Big(Text text) { return CDQBigInt(std::string(text)); }

TEST(BigInt, TextsThatMakeNumbers) {
  const test::Rows<Text, Text, int> rows = {{"", "0", 0},   {"-5-3", "-5-3", -473},
                                            {"-", "0", 0},  {"-007", "-7", -7},
                                            {"-0", "0", 0}, {"123456", "123456", 123456},
                                            {"7", "7", 7},  {"-1234567", "-1234567", -234567}};
  for (const auto& [text, shown, number] : rows) {
    EXPECT_EQ(Big(text).toString(), shown) << text;
    EXPECT_EQ(static_cast<int>(Big(text)), number) << text;
  }
  EXPECT_TRUE(Big("-0") == 0 && CDQBigInt() == Big(""));
  EXPECT_EQ(CDQBigInt(LLONG_MIN).toString(), "-9223372036854775808");
  // A stream gives words, and the last one stays at its end.
  std::istringstream in(" -12\t34x ");
  CDQBigInt number;
  std::string read;
  while (in >> number) read += number.toString() + ";";
  EXPECT_EQ(read + number.toString(), "-12;34x;34x");
}

TEST(BigInt, OperandsOfAllIntegerTypesKeepTheirValue) {
  const CDQBigInt one = 1;
  const auto check = [&](auto number, const char* shown) {
    const CDQBigInt big = number;
    EXPECT_EQ(big.toString(), shown);
    for (const CDQBigInt& same :
         {one * number, number * one, one + (number - one), number + one - 1, big / one}) {
      EXPECT_EQ(same.toString(), shown);
    }
    CDQBigInt x = big;
    ((((x *= number) /= number) += number) -= number) %= big * 2;
    EXPECT_TRUE(x == big * 2 && big / number == 1 && number / big == 1);
    EXPECT_TRUE(number == big && big == number && !(big != number) && big <= number &&
                number >= big && number < big + 1 && big - 1 < number && big + 1 > number);
  };
  check(short{7}, "7");
  check(4'294'967'295U, "4294967295");
  check(5'000'000'000L, "5000000000");
  check(LLONG_MAX, "9223372036854775807");
  check(ULLONG_MAX, "18446744073709551615");
}

TEST(BigInt, DividesWithItsOwnRemainders) {
  for (const auto& [dividend, divisor, quotient, remainder] : test::Rows<Text, Text, Text, Text>{
           {"-7", "2", "-3", "-1"},
           {"7", "-7", "-1", "-0"},
           {"0", "0", "1", "0"},
           // A smaller number leaves the larger one.
           {"-3", "5", "0", "-5"},
           // The guess from two digits is too high, and 10.
           {"100000000000000000000", "19999999999", "5000000000", "5000000000"},
           {"1000000007000000049", "1000000007", "1000000000", "49"}}) {
    EXPECT_EQ((Big(dividend) / Big(divisor)).toString(), quotient) << dividend;
    EXPECT_EQ((Big(dividend) % Big(divisor)).toString(), remainder) << dividend;
  }
}

TEST(BigInt, NegativeZerosAreLessThanZeroAndHarmless) {
  const CDQBigInt zero = Big("7") % Big("-7");
  EXPECT_TRUE(zero != 0 && zero < 0);
  std::ostringstream products;
  products << CDQBigInt(0) * -1 << ' ' << CDQBigInt(0) * CDQBigInt(-1) << ' ' << CDQBigInt(-1) / 2;
  EXPECT_EQ(products.str(), "-0 0 0");
  for (const int other : {-5, 5}) {
    EXPECT_TRUE(other + zero == other && zero + other == other && other - zero == other &&
                zero - other == -other)
        << other;
  }
}

TEST(BigInt, IntsAndTheNumberItselfAsOperandsGiveWhatNumbersGive) {
  for (const Text text : {"1", "-9", "99999", "-12345678901234567890"}) {
    const CDQBigInt big = Big(text);
    for (const int operand : {INT_MIN, -100, -11, -10, -1, 1, 7, 10, 99, 100, 101, INT_MAX}) {
      EXPECT_EQ(big * operand, big * CDQBigInt(operand)) << text << ' ' << operand;
      EXPECT_EQ(operand * big, big * operand) << text << ' ' << operand;
      EXPECT_EQ(big / operand, big / CDQBigInt(operand)) << text << ' ' << operand;
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
    std::string text(1, static_cast<char>('1' + random() % 9));
    while (text.size() < size) {
      text += runs && random() % 8 != 0 ? text.back() == '0' ? '0' : '9'
                                        : static_cast<char>('0' + random() % 10);
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
      ASSERT_EQ((product + rest) / b, a) << "step " << i;
      ASSERT_EQ((product + rest) % b, rest) << "step " << i;
    }
  }
  // More than what is summed up at once.
  const CDQBigInt nines(std::string(9'000, '9'));
  const CDQBigInt square(std::string(8'999, '9') + '8' + std::string(8'999, '0') + '1');
  EXPECT_TRUE(nines * nines == square && square / nines == nines);
}

TEST(BigInt, TextsThatAreNoNumbersDoNoHarm) {
  // "-" counts -3.
  EXPECT_EQ(static_cast<int>(Big("7-2") * Big("3")), 2016);
  EXPECT_EQ(static_cast<int>(Big("1-2") + Big("14")), 86);
  for (const Text left : {"x", "1-2", "/5", "\xFF\xFF", "::::", "-/0"}) {
    for (const Text right : {"x", "/5", "\xFF\xFF", "::::", "a\x80", "-/0"}) {
      CDQBigInt number = Big(left);
      (((number += Big(right)) -= Big("14")) *= Big(right)) *= -7;
      // The sum has a top digit of 0 for some.
      const CDQBigInt divisor = Big(right) + Big("14");
      if (divisor == 0) continue;
      EXPECT_NE((number / divisor % Big(right)).toString(), "");
    }
  }
}

}  // namespace
}  // namespace dq
