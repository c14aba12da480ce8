#include <gmock/gmock.h>

#include "dqlib/platform/platform.h"

namespace dq::platform {
namespace {

using Arguments = std::vector<std::string>;

Arguments Split(std::string_view command_line) {
  Arguments arguments{"of a former call"};
  SplitCommandLine(command_line, arguments);
  return arguments;
}

TEST(SplitCommandLine, CutsAtBlanksAndTakesQuotesAway) {
  const std::pair<const char*, Arguments> cases[] = {
      {"", {}},
      {" \t ", {}},
      {" \tsqlite3  sales.db\t-batch ", {"sqlite3", "sales.db", "-batch"}},
      {"'one arg' \"and another\"", {"one arg", "and another"}},
      {"a'b c'\"d e\"f", {"ab cd ef"}},
      {"'' x \"\"", {"", "x", ""}},
      {"'say \"hi\"' \"it's\"", {"say \"hi\"", "it's"}},
      {"\\'a \\\"b", {"'a", "\"b"}},
      {"'a\\'b' \"a\\\"b\"", {"a'b", "a\"b"}},
      {"C:\\dir\\file a\\ b \\\\", {"C:\\dir\\file", "a\\", "b", "\\\\"}},
      {"$HOME *.sql ~ `x` ; | > #c", {"$HOME", "*.sql", "~", "`x`", ";", "|", ">", "#c"}},
      {"'no end", {"no end"}}};
  for (const auto& [line, expected] : cases) EXPECT_EQ(Split(line), expected) << line;
}

TEST(SplitCommandLine, TakesNoTrailByteForABackslash) {
  Locale& locale = *Current().locale;
  ASSERT_TRUE(locale.SetCodePage(932));
  EXPECT_EQ(Split("\"\x95\\\" b"), (Arguments{"\x95\\", "b"}));
  ASSERT_TRUE(locale.SetCodePage(0));
}

}  // namespace
}  // namespace dq::platform
