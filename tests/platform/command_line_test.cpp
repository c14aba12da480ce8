#include "dqlib/platform/platform.h"
#include "tests/support/testing.h"

namespace dq::platform {
namespace {

TEST(SplitCommandLine, CutsAtBlanksAndTakesQuotesAway) {
  Locale& locale = *Current().locale;
  for (const auto& [page, line, expected] : test::Rows<UINT, const char*, std::vector<std::string>>{
           {0, "", {}},
           {0, " \t ", {}},
           {0, " \tsqlite3  sales.db\t-batch ", {"sqlite3", "sales.db", "-batch"}},
           {0, "'one arg' \"and another\"", {"one arg", "and another"}},
           {0, "a'b c'\"d e\"f", {"ab cd ef"}},
           {0, "'' x \"\"", {"", "x", ""}},
           {0, "'say \"hi\"' \"it's\"", {"say \"hi\"", "it's"}},
           {0, "\\'a \\\"b", {"'a", "\"b"}},
           {0, "'a\\'b' \"a\\\"b\"", {"a'b", "a\"b"}},
           {0, "C:\\dir\\file a\\ b \\\\", {"C:\\dir\\file", "a\\", "b", "\\\\"}},
           {0, "$HOME *.sql ~ `x` ; | > #c", {"$HOME", "*.sql", "~", "`x`", ";", "|", ">", "#c"}},
           {0, "'no end", {"no end"}},
           // A second byte that looks like a backslash is none.
           {932, "\"\x95\\\" b", {"\x95\\", "b"}}}) {
    ASSERT_TRUE(locale.SetCodePage(page));
    std::vector<std::string> arguments{"of a former call"};
    SplitCommandLine(line, arguments);
    EXPECT_EQ(arguments, expected) << line;
  }
  ASSERT_TRUE(locale.SetCodePage(0));
}

}  // namespace
}  // namespace dq::platform
