#include "dqlib/output/line_cutter.h"

#include <gtest/gtest.h>

#include "tests/support/plain_line_cutter.h"

namespace dq::detail {
namespace {

TEST(LineCutter, AgreesWithThePlainCuttingOfAllShortOutputs) {
  constexpr std::string_view kAlphabet = "a \n\r\f\x1a";
  constexpr int kLength = 6;
  constexpr int kCount = 6 * 6 * 6 * 6 * 6 * 6;
  for (int number = 0; number < kCount; ++number) {
    std::string output;
    for (int i = 0, digits = number; i < kLength; ++i, digits /= 6) output += kAlphabet[digits % 6];
    for (const std::size_t chunk : {2, 255}) {
      for (const bool trim_left : {true, false}) {
        ASSERT_EQ(test::CutWith(LineCutter(trim_left), output, chunk),
                  test::CutPlainly(output, chunk, trim_left))
            << ::testing::PrintToString(output) << " by " << chunk;
      }
    }
  }
}

}  // namespace
}  // namespace dq::detail
