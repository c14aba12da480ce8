#include "dqlib/platform/version_resources.h"

#include "dqlib/platform/platform.h"
#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq::platform {
namespace {

struct VersionResourcesTest : testing::Test {
  test::TempDirectory dir;
  VersionResources& resources = *System().version_resources;

  std::vector<char> Fetch(const std::string& path) {
    std::vector<char> block(resources.Size(path));
    if (!resources.Fetch(path, block)) block.clear();
    return block;
  }
};

TEST_F(VersionResourcesTest, ComeFromTheTextFileBesideTheProgram) {
  const std::string path = dir / "tool";
  EXPECT_EQ(resources.Size(path), 0u);
  EXPECT_FALSE(resources.Fetch(path, {}));
  dir.Put("tool.version",
          "\xEF\xBB\xBF FileVersion = 7.1.2.3 \r\nFileVersion=8\n;Comments=no\nnonsense\n"
          "ProductName=A=B");
  const std::vector<char> block = Fetch(path);
  EXPECT_EQ(resources.Query(block, "\\VarFileInfo\\Translation"), "\x09\x04\xB0\x04");
  EXPECT_EQ(resources.Query(block, "\\StringFileInfo\\040904b0\\FileVersion"), "7.1.2.3");
  EXPECT_EQ(resources.Query(block, "\\STRINGFILEINFO\\040904B0\\productname"), "A=B");
  for (const char* query :
       {"\\StringFileInfo\\040904b0\\Comments", "\\StringFileInfo\\040704b0\\FileVersion",
        "\\StringFileInfo\\040904b0", "\\", "", "\\StringFileInfo\\04x904b0\\FileVersion"}) {
    EXPECT_EQ(resources.Query(block, query), std::nullopt) << query;
  }
  std::vector<char> small(block.size() - 1);
  EXPECT_FALSE(resources.Fetch(path, small));
}

TEST_F(VersionResourcesTest, AreTakenFromATableHandedIn) {
  dir.Put("tool.version", "FileVersion=1\n");
  resources.SetTable(dir / "x/../tool", {{"FileVersion", "2"}, {"Translation", "0407,04e4"}});
  EXPECT_EQ(resources.Query(Fetch(dir / "tool"), "\\StringFileInfo\\040704e4\\FileVersion"), "2");
  resources.SetTable(dir / "tool", {});
  EXPECT_EQ(resources.Size(dir / "tool"), 0u);
  resources.SetTable("C:\\Bin\\Tool.exe", {{"FileVersion", "3"}});
  EXPECT_NE(resources.Size("c:/bin/tool.EXE"), 0u);
}

TEST_F(VersionResourcesTest, DamagedBlocksHaveNoTexts) {
  dir.Put("tool.version", "FileVersion=7\nProductName=P\n");
  const std::vector<char> block = Fetch(dir / "tool");
  constexpr const char* kQuery = "\\StringFileInfo\\040904b0\\ProductName";
  ASSERT_EQ(resources.Query(block, kQuery), "P");
  for (std::size_t size = 0; size < block.size(); ++size) {
    EXPECT_EQ(resources.Query(std::span(block).first(size), kQuery), std::nullopt) << size;
  }
  for (std::size_t i = 0; i < block.size(); ++i) {
    std::vector<char> damaged = block;
    damaged[i] = '\xFF';
    const auto text = resources.Query(damaged, kQuery);  // whatever it finds lies in the block
    EXPECT_TRUE(!text || (text->data() >= damaged.data() &&
                          text->data() + text->size() <= damaged.data() + damaged.size()));
  }
}

}  // namespace
}  // namespace dq::platform
