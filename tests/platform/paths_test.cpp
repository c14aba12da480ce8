#include "dqlib/platform/paths.h"

#include "tests/support/testing.h"

namespace dq::platform {
namespace {

using test::Rows;

TEST(Paths, HaveTheFormTheyShow) {
  for (const char* path : {"c:\\data", "C:/data", "c:", "a\\b", "\\\\srv\\s"}) {
    EXPECT_EQ(FormOf(path), PathForm::kWindows) << path;
  }
  for (const char* path : {"a\\b/c", "/a", "a", "", "1:\\/", "ab:c"}) {
    EXPECT_EQ(FormOf(path), PathForm::kPosix) << path;
  }
}

TEST(Paths, AreCutIntoDriveDirectoryNameAndExtension) {
  for (const auto& [path, expected] :
       Rows<const char*, const char*>{{"c:\\bin\\tool.exe", "c:|\\bin\\|tool|.exe"},
                                      {"C:/bin\\a.b.c", "C:|/bin\\|a.b|.c"},
                                      {"c:tool", "c:||tool|"},
                                      {"\\\\srv\\share\\x.y\\tool", "|\\\\srv\\share\\x.y\\|tool|"},
                                      {"/usr/lib.d/", "|/usr/lib.d/||"},
                                      {"/home/.profile", "|/home/||.profile"},
                                      {"", "|||"}}) {
    const auto [drive, directory, name, extension] = SplitPath(path);
    std::ostringstream parts;
    parts << drive << '|' << directory << '|' << name << '|' << extension;
    EXPECT_EQ(parts.str(), expected);
  }
}

TEST(Paths, PartsMakeUpThePathAgain) {
  constexpr std::string_view kAlphabet = "ac:\\/.";
  std::string path;
  for (int number = 0; number < 6 * 6 * 6 * 6 * 6 * 6; ++number) {
    path.clear();
    for (int rest = number; rest > 0; rest /= 6) path += kAlphabet[static_cast<unsigned>(rest % 6)];
    const PathParts parts = SplitPath(path);
    ASSERT_EQ(MakePath(parts.drive, parts.directory, parts.name, parts.extension), path);
  }
}

TEST(Paths, AreJoinedWithWhatIsMissing) {
  EXPECT_EQ(MakePath("c", "data", "a", "sql"), "c:data\\a.sql");
  EXPECT_EQ(MakePath("c:", "\\data\\", "a", ".sql"), "c:\\data\\a.sql");
  EXPECT_EQ(MakePath("", "data", "a", "sql"), "data/a.sql");
  EXPECT_EQ(MakePath("", "data\\x", "a", ""), "data\\x\\a");
  EXPECT_EQ(MakePath("", "", "tool", "dqo"), "tool.dqo");
  const Rows<const char*, const char*, const char*> rows = {
      {"c:", "a", "c:\\a"}, {"c:\\", "a", "c:\\a"},  {"c:\\data", "\\a", "c:\\data\\a"},
      {"/", "a", "/a"},     {"data", "a", "data/a"}, {"data", "a\\b", "data\\a\\b"},
      {"", "a", "a"}};
  for (const auto& [first, second, joined] : rows) EXPECT_EQ(JoinPath(first, second), joined);
}

TEST(Paths, AreMadeFullByTheirText) {
  using Text = const char*;
  const Rows<Text, Text, Text> rows = {{"c:\\data\\.\\x\\..\\a.sql", "/w", "c:\\data\\a.sql"},
                                       {"C:/data//a", "/w", "C:\\data\\a"},
                                       {"c:\\..\\..", "/w", "c:\\"},
                                       {"c:x", "/w", "c:\\x"},
                                       {"c:\\data\\", "/w", "c:\\data\\"},
                                       {"\\\\srv\\share\\..\\..\\a", "/w", "\\\\srv\\share\\a"},
                                       {"\\data\\..\\x", "/w", "\\x"},
                                       {"/a/./b/../../../c/", "/w", "/c/"},
                                       {"a\\b", "/w", "/w/a/b"},
                                       {"../x", "/w/v", "/w/x"},
                                       {"x", "/", "/x"},
                                       {".", "/w/", "/w"},
                                       {"..", "/", "/"},
                                       {"sub/x", "c:\\w", "c:\\w\\sub\\x"},
                                       {"...", "/w", "/w/..."}};
  for (const auto& [path, current, full] : rows) {
    EXPECT_EQ(FullPath(path, current), full) << path;
  }
}

TEST(Paths, NamesMatchPatterns) {
  using Names = std::vector<const char*>;
  for (const auto& [pattern, names, others] :
       Rows<const char*, Names, Names>{{"*.*", {"README", "."}, {}},
                                       {"*.sql", {"a.SQL"}, {"asql", "a.sql.bak"}},
                                       {"A.SQL", {"a.sql"}, {}},
                                       {"?", {"a", "\xC3\xA9"}, {"", "ab"}},
                                       {"*ab?", {"abcabd"}, {}},
                                       {"*iss*ip*", {"mississippi"}, {}},
                                       {"*ab", {"aab"}, {}},
                                       {"ab*?", {}, {"ab"}},
                                       {"*.*.*", {}, {"a.b"}},
                                       {"*", {""}, {}},
                                       {"", {""}, {"x"}}}) {
    for (const char* name : names) EXPECT_TRUE(MatchesPattern(name, pattern)) << name << pattern;
    for (const char* name : others) EXPECT_FALSE(MatchesPattern(name, pattern)) << name << pattern;
  }
  // A pattern made to try every split takes time only in the product of the lengths.
  std::string stars;
  for (int i = 0; i < 1000; ++i) stars += "*a";
  EXPECT_FALSE(MatchesPattern(std::string(5000, 'a') + "b", stars));
}

}  // namespace
}  // namespace dq::platform
