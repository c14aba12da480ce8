#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "dqlib/platform/locale.h"

namespace dq::platform {
namespace {

NumberFormat Us(UINT places = 2) {
  return {.decimal_places = places,
          .leading_zero = true,
          .grouping = 3,
          .decimal_separator = ".",
          .thousands_separator = ",",
          .negative_order = 1};
}

TEST(LayOutNumber, RoundsHalfAwayFromZeroAndGroups) {
  struct {
    const char* number;
    UINT places;
    const char* text;
  } const cases[] = {
      {"1234.5", 2, "1,234.50"},
      {"1234", 0, "1,234"},
      {"999", 0, "999"},
      {"1000000", 0, "1,000,000"},
      {"0.005", 2, "0.01"},
      {"-0.005", 2, "-0.01"},
      {"0.00499999999999999999999", 2, "0.00"},
      {"-0.004", 2, "0.00"},
      {"-0", 0, "0"},
      {"0.5", 0, "1"},
      {"-0.5", 0, "-1"},
      {"2.5", 0, "3"},
      {"999.995", 2, "1,000.00"},
      {"99.9", 0, "100"},
      {"007", 0, "7"},
      {".5", 1, "0.5"},
      {"5.", 1, "5.0"},
      // More digits than any number type holds.
      {"123456789012345678901234567890.123456789012345678905", 20,
       "123,456,789,012,345,678,901,234,567,890.12345678901234567891"},
  };
  for (const auto& c : cases) EXPECT_EQ(LayOutNumber(c.number, Us(c.places)), c.text) << c.number;
}

TEST(LayOutNumber, RefusesWhatIsNoNumber) {
  for (const std::string_view number : {"", "-", ".", "-.", "--1", "1-", "+1", " 1", "1 ", "1.2.3",
                                        "1,234", "1e5", "0x1", "abc", "1\xB2"}) {
    EXPECT_EQ(LayOutNumber(number, Us()), std::nullopt) << number;
  }
  EXPECT_EQ(LayOutNumber(std::string_view("1\0", 2), Us()), std::nullopt);
}

TEST(LayOutNumber, FollowsTheFormat) {
  struct {
    NumberFormat format;
    const char* number;
    const char* text;
  } const cases[] = {
      {{2, true, 3, ",", ".", 1}, "-1234567.891", "-1.234.567,89"},
      {{2, true, 3, ",", "\xE2\x80\xAF", 1},
       "1234.5",
       "1\xE2\x80\xAF"
       "234,50"},
      {{0, true, 0, ".", ",", 1}, "1234567", "1234567"},
      {{0, true, 4, ".", ",", 1}, "1234567", "123,4567"},
      {{2, false, 3, ".", ",", 1}, "0.5", ".50"},
      {{2, false, 3, ".", ",", 1}, "-0.5", "-.50"},
      {{0, false, 3, ".", ",", 1}, "0.2", "0"},
      {{1, true, 3, ".", ",", 0}, "-1.1", "(1.1)"},
      {{1, true, 3, ".", ",", 2}, "-1.1", "- 1.1"},
      {{1, true, 3, ".", ",", 3}, "-1.1", "1.1-"},
      {{1, true, 3, ".", ",", 4}, "-1.1", "1.1 -"},
  };
  for (const auto& c : cases) EXPECT_EQ(LayOutNumber(c.number, c.format), c.text) << c.text;
}

TEST(LayOutNumber, RefusesAFormatOutOfItsRanges) {
  EXPECT_EQ(LayOutNumber("1", Us(255))->size(), 257U);
  EXPECT_EQ(LayOutNumber("1", Us(256)), std::nullopt);
  NumberFormat order = Us();
  order.negative_order = 5;
  EXPECT_EQ(LayOutNumber("1", order), std::nullopt);
}

TEST(LayOutNumber, AgreesWithIntegerArithmetic) {
  constexpr unsigned kSeed = 20010911;
  std::mt19937 random(kSeed);
  constexpr long long kPowers[] = {1, 10, 100, 1000, 10000};
  for (int round = 0; round < 20000; ++round) {
    const long long ten_thousandths =
        std::uniform_int_distribution<int>(-20000000, 20000000)(random);
    const UINT places = std::uniform_int_distribution<UINT>(0, 4)(random);
    const long long unit = kPowers[4 - places];
    const long long size = std::llabs(ten_thousandths);
    const long long rounded = (size + unit / 2) / unit;  // unit is 1 or even
    char number[40];
    std::snprintf(number, sizeof number, "%s%lld.%04lld", ten_thousandths < 0 ? "-" : "",
                  size / 10000, size % 10000);
    const long long whole = rounded / kPowers[places];
    std::string expected = ten_thousandths < 0 && rounded != 0 ? "-" : "";
    expected += whole < 1000 ? std::to_string(whole) : std::to_string(whole / 1000) + ",";
    char part[40];
    if (whole >= 1000)
      expected.append(part, std::snprintf(part, sizeof part, "%03lld", whole % 1000));
    if (places > 0) {
      expected.append(part, std::snprintf(part, sizeof part, ".%0*lld", static_cast<int>(places),
                                          rounded % kPowers[places]));
    }
    ASSERT_EQ(LayOutNumber(number, Us(places)), expected) << number << " seed " << kSeed;
  }
}

}  // namespace
}  // namespace dq::platform
