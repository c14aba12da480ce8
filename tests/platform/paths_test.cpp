#include "dqlib/platform/paths.h"

#include <gtest/gtest.h>

namespace dq::platform {
namespace {

TEST(Paths, HaveTheFormTheyShow) {
  struct Row {
    const char* path;
    PathForm form;
  };
  const Row rows[] = {
      {"c:\\data", PathForm::kWindows},
      {"C:/data", PathForm::kWindows},
      {"c:", PathForm::kWindows},
      {"a\\b", PathForm::kWindows},
      {"\\\\srv\\s", PathForm::kWindows},
      {"a\\b/c", PathForm::kPosix},
      {"/a", PathForm::kPosix},
      {"a", PathForm::kPosix},
      {"", PathForm::kPosix},
      {"1:\\/", PathForm::kPosix},
      {"ab:c", PathForm::kPosix},
  };
  for (const Row& row : rows) EXPECT_EQ(FormOf(row.path), row.form) << row.path;
}

TEST(Paths, AreCutIntoDriveDirectoryNameAndExtension) {
  struct Row {
    const char* path;
    PathParts parts;
  };
  const Row rows[] = {
      {"c:\\bin\\tool.exe", {"c:", "\\bin\\", "tool", ".exe"}},
      {"C:/bin\\a.b.c", {"C:", "/bin\\", "a.b", ".c"}},
      {"c:tool", {"c:", "", "tool", ""}},
      {"\\\\srv\\share\\x.y\\tool", {"", "\\\\srv\\share\\x.y\\", "tool", ""}},
      {"/usr/lib.d/", {"", "/usr/lib.d/", "", ""}},
      {"/home/.profile", {"", "/home/", "", ".profile"}},
      {"", {"", "", "", ""}},
  };
  for (const Row& row : rows) {
    const PathParts parts = SplitPath(row.path);
    EXPECT_EQ(parts.drive, row.parts.drive) << row.path;
    EXPECT_EQ(parts.directory, row.parts.directory) << row.path;
    EXPECT_EQ(parts.name, row.parts.name) << row.path;
    EXPECT_EQ(parts.extension, row.parts.extension) << row.path;
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

  EXPECT_EQ(JoinPath("c:", "a"), "c:\\a");
  EXPECT_EQ(JoinPath("c:\\", "a"), "c:\\a");
  EXPECT_EQ(JoinPath("c:\\data", "\\a"), "c:\\data\\a");
  EXPECT_EQ(JoinPath("/", "a"), "/a");
  EXPECT_EQ(JoinPath("data", "a"), "data/a");
  EXPECT_EQ(JoinPath("data", "a\\b"), "data\\a\\b");
  EXPECT_EQ(JoinPath("", "a"), "a");
}

TEST(Paths, AreMadeFullByTheirText) {
  struct Row {
    const char* path;
    const char* current;
    const char* full;
  };
  const Row rows[] = {
      {"c:\\data\\.\\x\\..\\a.sql", "/w", "c:\\data\\a.sql"},
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
      {"...", "/w", "/w/..."},
  };
  for (const Row& row : rows) EXPECT_EQ(FullPath(row.path, row.current), row.full) << row.path;
}

TEST(Paths, NamesMatchPatterns) {
  struct Row {
    const char* name;
    const char* pattern;
    bool matches;
  };
  const Row rows[] = {
      {"README", "*.*", true},
      {".", "*.*", true},
      {"a.SQL", "*.sql", true},
      {"a.sql", "A.SQL", true},
      {"asql", "*.sql", false},
      {"a.sql.bak", "*.sql", false},
      {"a", "?", true},
      {"", "?", false},
      {"", "*", true},
      {"ab", "?", false},
      {"\xC3\xA9", "?", true},
      {"abcabd", "*ab?", true},
      {"mississippi", "*iss*ip*", true},
      {"aab", "*ab", true},
      {"ab", "ab*?", false},
      {"a.b", "*.*.*", false},
      {"x", "", false},
      {"", "", true},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(MatchesPattern(row.name, row.pattern), row.matches) << row.name << " " << row.pattern;
  }
  // A pattern made to try every split takes time only in the product of the lengths.
  std::string stars;
  for (int i = 0; i < 1000; ++i) stars += "*a";
  EXPECT_FALSE(MatchesPattern(std::string(5000, 'a') + "b", stars));
}

}  // namespace
}  // namespace dq::platform
