
#include "dqlib/platform/locale.h"
#include "tests/support/testing.h"

namespace dq::platform {
namespace {

using test::Rows;

NumberFormat Us(UINT places) { return {places, true, 3, ".", ",", 1}; }

TEST(LayOutNumber, RoundsHalfAwayFromZeroAndFollowsTheFormat) {
  const Rows<UINT, const char*, const char*> us = {
      {2, "1234.5", "1,234.50"},  {0, "1234", "1,234"},  {0, "999", "999"}, {2, "0.005", "0.01"},
      {2, "-0.005", "-0.01"},     {2, "-0.004", "0.00"}, {0, "-0.5", "-1"}, {0, "2.5", "3"},
      {2, "999.995", "1,000.00"}, {0, "007", "7"},       {1, ".5", "0.5"},  {1, "5.", "5.0"}};
  for (const auto& [places, number, text] : us) {
    EXPECT_EQ(LayOutNumber(number, Us(places)), text) << number;
  }
  // More digits than any number type holds.
  EXPECT_EQ(LayOutNumber("0.00499999999999999999999", Us(2)), "0.00");
  EXPECT_EQ(LayOutNumber("-123456789012345678901234567890.123456789012345678905", Us(20)),
            "-123,456,789,012,345,678,901,234,567,890.12345678901234567891");
  for (const auto& [format, number, text] : Rows<NumberFormat, const char*, const char*>{
           {{2, true, 3, ",", "\xE2\x80\xAF", 1}, "-1234.5", "-1\u202F234,50"},
           {{0, true, 0, ".", ",", 1}, "1234567", "1234567"},
           {{0, true, 4, ".", ",", 1}, "1234567", "123,4567"},
           {{2, false, 3, ".", ",", 1}, "-0.5", "-.50"},
           {{0, false, 3, ".", ",", 1}, "0.2", "0"},
           {{1, true, 3, ".", ",", 0}, "-1.1", "(1.1)"},
           {{1, true, 3, ".", ",", 2}, "-1.1", "- 1.1"},
           {{1, true, 3, ".", ",", 3}, "-1.1", "1.1-"},
           {{1, true, 3, ".", ",", 4}, "-1.1", "1.1 -"}}) {
    EXPECT_EQ(LayOutNumber(number, format), text) << number;
  }
}

TEST(LayOutNumber, RefusesWhatIsNoNumberAndFormatsOutOfRange) {
  using namespace std::string_view_literals;
  for (const std::string_view number : {""sv, "-"sv, "."sv, "-."sv, "--1"sv, "1-"sv, "+1"sv, " 1"sv,
                                        "1.2.3"sv, "1,234"sv, "1e5"sv, "1\xB2"sv, "1\0"sv}) {
    EXPECT_EQ(LayOutNumber(number, Us(2)), std::nullopt) << number;
  }
  EXPECT_EQ(LayOutNumber("1", Us(255))->size(), 257U);
  EXPECT_EQ(LayOutNumber("1", Us(256)), std::nullopt);
  EXPECT_EQ(LayOutNumber("1", {1, true, 3, ".", ",", 5}), std::nullopt);
}

}  // namespace
}  // namespace dq::platform
