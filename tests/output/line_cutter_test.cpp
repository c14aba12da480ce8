#include "dqlib/output/line_cutter.h"

#include <gmock/gmock.h>

#include "tests/support/plain_line_cutter.h"

namespace dq::detail {
namespace {

using test::CutOutput;

TEST(LineCutter, KeepsTheRulesOfLineEndsAndBlanks) {
  struct Case {
    const char* output;
    bool trim_left;
    CutOutput expected;
  };
  const Case cases[] = {
      {"\nfoo\nbar\n", true, {{"foo"}, "bar"}},  // one line end at the start holds nothing up
      {"\r\n\nfoo\n \n\t\nbar", true, {{"foo"}, "bar"}},
      {"  a  \n  b  \nc", true, {{"a", "b"}, "c"}},
      {"  a  \n  b  \nc", false, {{"  a", "  b"}, "c"}},
      {"a\n  last  \n", true, {{"a"}, "  last"}},
      {"a\fb\x1a"
       "c\vd",
       true,
       {{"a", "b"}, "c\vd"}},
      {"a\x1a\nb\n\x1a\n\x1a", true, {{"a\x1a"}, "b\n\x1a\n\x1a"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(test::CutWith(LineCutter(c.trim_left), c.output, 255), c.expected)
        << ::testing::PrintToString(c.output);
  }
}

TEST(LineCutter, AgreesWithThePlainCuttingOfAllShortOutputs) {
  constexpr std::string_view kAlphabet = "a \n\r\x1a";
  constexpr int kLength = 6;
  int count = 1;
  for (int i = 0; i < kLength; ++i) count *= static_cast<int>(kAlphabet.size());
  for (int number = 0; number < count; ++number) {
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
