#include "dqlib/output/line_cutter.h"

#include <gmock/gmock.h>

#include "tests/support/plain_line_cutter.h"
#include "tests/support/rows.h"

namespace dq::detail {
namespace {

using test::CutOutput;

TEST(LineCutter, KeepsTheRulesOfLineEndsAndBlanks) {
  for (const auto& [output, trim_left, expected] : test::Rows<const char*, bool, CutOutput>{
           {"\nfoo\nbar\n", true, {{"foo"}, "bar"}},  // one line end at the start holds nothing up
           {"  a  \n  b  \nc", true, {{"a", "b"}, "c"}},
           {"  a  \n  b  \nc", false, {{"  a", "  b"}, "c"}},
           {"a\n  last  \n", true, {{"a"}, "  last"}},
           {"a\fb\x1Ay\vz", true, {{"a", "b"}, "y\vz"}},
           {"a\x1a\nb\n\x1a\n\x1a", true, {{"a\x1a"}, "b\n\x1a\n\x1a"}},
       }) {
    EXPECT_EQ(test::CutWith(LineCutter(trim_left), output, 255), expected)
        << ::testing::PrintToString(output);
  }
}

TEST(LineCutter, AgreesWithThePlainCuttingOfAllShortOutputs) {
  constexpr std::string_view kAlphabet = "a \n\r\x1a";
  constexpr int kLength = 6;
  constexpr int kCount = 5 * 5 * 5 * 5 * 5 * 5;
  for (int number = 0; number < kCount; ++number) {
    std::string output;
    for (int i = 0, digits = number; i < kLength; ++i, digits /= 5) output += kAlphabet[digits % 5];
    for (const std::size_t chunk : {1, 2, 255}) {
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
