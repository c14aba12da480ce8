#include "dqlib/platform/profile_files.h"

#include <unistd.h>

#include "dqlib/platform/posix/system_services.h"
#include "tests/support/failing_system_calls.h"
#include "tests/support/forked_process.h"
#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq::platform {
namespace {

namespace fs = std::filesystem;

struct ProfileFilesTest : testing::Test {
  test::TempDirectory dir;
  ProfileFiles& profiles = *System().profile_files;
  const std::string path = dir / "a.ini";
};

TEST_F(ProfileFilesTest, AreMadeForTheUserAndReadBack) {
  EXPECT_EQ(profiles.Read(path, "s", "k"), std::nullopt);
  EXPECT_TRUE(profiles.Sections(path).empty());
  EXPECT_TRUE(profiles.Write(path, "s", "k", {}).ok() && profiles.Write(path, "s", {}, {}).ok());
  EXPECT_EQ(dir.Count(), 0u) << "deleting nothing makes no file";
  EXPECT_TRUE(profiles.Write(path, "s", "k", "v").ok());
  EXPECT_EQ(dir.Mode("a.ini"), 0600u);
  EXPECT_EQ(profiles.Read(path, "S", "K"), "v");
  EXPECT_EQ(profiles.Sections(path), std::vector<std::string>{"s"});
  EXPECT_EQ(profiles.Keys(path, "s"), std::vector<std::string>{"k"});
  EXPECT_TRUE(profiles.Write(path, "s", "k", {}).ok());
  EXPECT_EQ(dir.Get("a.ini"), "[s]\r\n");
  const test::ScopedVariable variable("XDG_CONFIG_HOME", dir / "config");
  EXPECT_TRUE(profiles.Write("own.ini", "s", "k", "v").ok());
  EXPECT_EQ(profiles.Read("own.ini", "s", "k"), "v");
  EXPECT_EQ(dir.Get("config/velmora/own.ini"), "[s]\r\nk=v\r\n");
  EXPECT_EQ(dir.Mode("config/velmora"), 0700u);
}

TEST_F(ProfileFilesTest, WritingKeepsPermissionsLinksAndBytesOfOthers) {
  const std::string before = "\xEF\xBB\xBF; \xFF comment\r[a]\rk = 1\r\n\n[b]\nk=2";
  dir.Put("a.ini", before);
  fs::permissions(path, fs::perms{0640});
  fs::create_symlink("a.ini", dir / "link.ini");
  fs::create_hard_link(path, dir / "same.ini");
  EXPECT_TRUE(profiles.Write(path, "a", "k", "1").ok() && profiles.Write(path, "a", "j", {}).ok());
  EXPECT_TRUE(fs::equivalent(path, dir / "same.ini")) << "what changes nothing writes nothing";
  EXPECT_TRUE(profiles.Write(dir / "link.ini", "b", "k", "3").ok());
  EXPECT_EQ(dir.Get("a.ini"), before.substr(0, before.size() - 1) + "3");
  EXPECT_TRUE(fs::is_symlink(dir / "link.ini"));
  EXPECT_EQ(dir.Mode("a.ini"), 0640u);
}

TEST_F(ProfileFilesTest, BadInputIsRefusedAndChangesNothing) {
  dir.Put("a.ini", "[s]\r\nk=v\r\n");
  using Text = std::string_view;
  for (const auto& [section, key, value] :
       test::Rows<Text, Text, Text>{{"", "k", "v"},
                                    {"s", "", "v"},
                                    {"s", "k=", "v"},
                                    {"s", "k", "a\n[t]"},
                                    {"s", "k", Text("\0", 1)}}) {
    EXPECT_EQ(profiles.Write(path, section, key, value).kind, ErrorKind::kInvalidArgument);
  }
  EXPECT_EQ(dir.Get("a.ini"), "[s]\r\nk=v\r\n");
  EXPECT_EQ(profiles.Write(dir / "none/a.ini", "s", "k", "v").kind, ErrorKind::kNotFound);
  EXPECT_EQ(profiles.Write("c:\\a.ini", "s", "k", "v").kind, ErrorKind::kNotFound);
  EXPECT_FALSE(profiles.Write(dir.path(), "s", "k", "v").ok());
  const std::string wide("\xFF\xFE[\0s\0]\0", 8);
  dir.Put("wide.ini", wide);
  EXPECT_EQ(profiles.Write(dir / "wide.ini", "s", "k", "v").kind, ErrorKind::kUnsupported);
  EXPECT_EQ(dir.Get("wide.ini"), wide);
  ASSERT_EQ(mkfifo((dir / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(profiles.Write(dir / "pipe", "s", "k", "v").kind, ErrorKind::kInvalidArgument);
  EXPECT_EQ(profiles.Read(dir / "pipe", "s", "k"), std::nullopt);
  fs::permissions(path, fs::perms{0400});
  EXPECT_EQ(profiles.Write(path, "s", "k", "new").kind, ErrorKind::kAccessDenied);
}

TEST_F(ProfileFilesTest, ATemporaryNameThatIsTakenBlocksNoWriteAndALeftoverGoes) {
  // The name under which a.ini is written anew. A directory there can't be removed like a file.
  const std::string name = ".dq65abe8b5491700c0.tmp";
  fs::create_directory(dir / name);
  EXPECT_TRUE(profiles.Write(path, "s", "k", "v").ok());
  EXPECT_EQ(dir.Get("a.ini"), "[s]\r\nk=v\r\n");
  EXPECT_EQ(dir.Count(), 2u);
  fs::remove(dir / name);
  dir.Put(name, "of a killed writer");
  EXPECT_TRUE(profiles.Write(path, "s", "k", "w").ok());
  EXPECT_EQ(dir.Get(name), "(none)");
}

TEST_F(ProfileFilesTest, EightProcessesLoseNothing) {
  constexpr int kProcesses = 8;
  constexpr int kKeys = 50;
  const auto key = [](int process, int i) { return std::to_string(process * kKeys + i); };
  const auto section = [](int process) { return "s" + std::to_string(process % 3); };
  EXPECT_TRUE(test::AllEndWell(kProcesses, [&](int process) {
    for (int i = 0; i < kKeys; ++i) {
      EXPECT_TRUE(profiles.Write(path, section(process), key(process, i), "v").ok());
    }
  }));
  for (int process = 0; process < kProcesses; ++process) {
    for (int i = 0; i < kKeys; ++i) {
      ASSERT_EQ(profiles.Read(path, section(process), key(process, i)), "v");
    }
  }
  EXPECT_EQ(dir.Count(), 1u);
}

}  // namespace
}  // namespace dq::platform
