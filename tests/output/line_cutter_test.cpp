#include "dqlib/output/line_cutter.h"

#include "tests/support/testing.h"

namespace dq::detail {
namespace {

/// Each line with "|" behind it, and the rest.
std::string Cut(std::string_view output, std::size_t chunk, bool trim_left) {
  LineCutter cutter(trim_left);
  std::string cut;
  for (; !output.empty(); output.remove_prefix(std::min(chunk, output.size()))) {
    cutter.Feed(std::string(output.substr(0, chunk)).c_str());
    for (std::string_view line; cutter.Next(line);) cut += std::string(line.data()) + '|';
  }
  return cut + cutter.Rest().data();
}

TEST(LineCutter, GivesLinesWithTextThatSomethingFollows) {
  for (const auto& [output, trimmed, whole] : test::Rows<const char*, const char*, const char*>{
           {"", "", ""},
           {"no end ", "no end", "no end"},
           {" \n \r\n", "", ""},
           {"\n\r\f\x1a  a \r\n\r\n \tb\n", "a| \tb", "  a| \tb"},
           {"a\x1a\r\nb", "a\x1a|b", "a\x1a|b"},
           {"\x1a\na\nb", "a|b", "a|b"},
           {" a\n\n \n b \n c", "a|b| c", " a| b| c"}}) {
    EXPECT_EQ(Cut(output, 255, true), trimmed) << output;
    EXPECT_EQ(Cut(output, 255, false), whole) << output;
  }
}

TEST(LineCutter, CutsAllShortOutputsAlikeHoweverTheyArrive) {
  constexpr std::string_view kAlphabet = "a \n\r\f\x1a";
  for (int number = 0; number < 6 * 6 * 6 * 6 * 6 * 6; ++number) {
    std::string output;
    for (int i = 0, digits = number; i < 6; ++i, digits /= 6) output += kAlphabet[digits % 6];
    for (const bool trim_left : {true, false}) {
      const std::string cut = Cut(output, 255, trim_left);
      ASSERT_TRUE(Cut(output, 1, trim_left) == cut && Cut(output, 2, trim_left) == cut)
          << ::testing::PrintToString(output);
    }
  }
}

}  // namespace
}  // namespace dq::detail
