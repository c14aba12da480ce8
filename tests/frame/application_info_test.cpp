#include "dqlib/frame/application_info.h"

#include <gtest/gtest.h>

#include "dqlib/framework/windows/win_app.h"
#include "tests/support/scripted_platform.h"

namespace dq {
namespace {

constexpr char kHost[] = "/opt/host";

/// An identity on a host whose version resource holds the texts.
class ApplicationInfo : public ::testing::Test {
 protected:
  ~ApplicationInfo() override {
    CDQApplicationInfo::SetAppCode("");
    SetVersion({});
  }
  static void SetVersion(const platform::VersionTable& table) {
    platform::Current().version_resources->SetTable(kHost, table);
  }

  testing::ScriptedPlatform platform_;
};

TEST_F(ApplicationInfo, VersionNumbersAreCutAtTheDots) {
  struct Row {
    const char* version;
    const char* medium;
    const char* short_version;
    int major;
    int minor;
    int build;
  };
  for (const Row& row :
       {Row{"7.1.2.3", "7.1.2", "7.1", 7, 1, 3}, Row{"7.12.0.0", "7.12.0", "7.12", 7, 2, 0},
        Row{"7.10.5.44", "7.10.5", "7.10", 7, 0, 44}, Row{"7.1", "", "", 7, 0, 0},
        Row{"7", "", "", 0, 0, 0}, Row{"", "", "", 0, 0, 0}, Row{"1..2.3.4", "1..2", "1.", 1, 0, 3},
        Row{"12.3.4", "", "12.3", 12, 3, 0}}) {
    SetVersion({{"FileVersion", row.version}, {"ProductName", "Tool"}});
    CDQApplicationInfo info;
    EXPECT_STREQ(info.GetLongVersionNumber(), row.version);
    EXPECT_STREQ(info.GetMediumVersionNumber(), row.medium) << row.version;
    EXPECT_STREQ(info.GetShortVersionNumber(), row.short_version) << row.version;
    EXPECT_EQ(info.GetMajorVersionNumber(), row.major) << row.version;
    EXPECT_EQ(info.GetMinorVersionNumber(), row.minor) << row.version;
    EXPECT_EQ(info.GetBuildNumber(), row.build) << row.version;
    EXPECT_STREQ(info.GetProductName(), "Tool");
  }
}

TEST_F(ApplicationInfo, TheExecutableGivesDirectoryKeyAndOptionsFile) {
  struct Row {
    const char* path;
    const char* directory;
    const char* key;
    const char* options;
    bool network;
  };
  for (const Row& row :
       {Row{"c:\\bin\\TOOL.EXE", "c:\\bin", "TOOL", "TOOL.dqo", false},
        Row{"tool.exe", "", "tool", "tool.dqo", false},
        Row{"\\\\server\\share\\tool.v2.exe", "\\\\server\\share", "tool.v2", "tool.v2.dqo", true},
        Row{"/tmp/tool", "/tmp", "tool", "tool.dqo", false}}) {
    CWinApp app("name");
    app.SetExecutablePath(row.path);
    CDQApplicationInfo info;
    EXPECT_STREQ(info.GetExecutablePath(), row.path);
    EXPECT_STREQ(info.GetExecutableDirectory(), row.directory);
    EXPECT_STREQ(info.GetRegistryKey(), row.key);
    EXPECT_STREQ(info.GetOptionsFile(), row.options);
    EXPECT_EQ(info.RunningFromNetwork(), row.network) << row.path;
  }
  CWinApp app("name");
  app.SetExecutablePath(std::string(300, 'x').c_str());
  EXPECT_EQ(CDQApplicationInfo().GetExecutablePath().GetLength(), 259);
}

TEST_F(ApplicationInfo, TheCodeDecidesTheOptionsFileBeforeTheExecutable) {
  struct Row {
    const char* code;
    const char* options;
    int which;
  };
  for (const Row& row : {Row{"Lumen SQL", "LumenSQL.dqo", 1}, Row{"lUMEN sql", "LumenSQL.dqo", 1},
                         Row{"LumenSQL", "host.dqo", 0}, Row{"Velmora Delta Keeper", "host.dqo", 2},
                         Row{"QUILLBASE", "Quill.dqo", 3}, Row{"velmora pacer", "DQPacer.dqo", 4},
                         Row{"DQPacer", "host.dqo", 0}, Row{"", "host.dqo", 0}}) {
    CDQApplicationInfo::SetAppCode(row.code);
    CDQApplicationInfo info;
    EXPECT_STREQ(info.GetOptionsFile(), row.options) << row.code;
    EXPECT_EQ(CDQApplicationInfo::IsAppLumenSql(), row.which == 1) << row.code;
    EXPECT_EQ(CDQApplicationInfo::IsAppDeltaKeeper(), row.which == 2) << row.code;
    EXPECT_EQ(CDQApplicationInfo::IsAppQuillbase(), row.which == 3) << row.code;
    EXPECT_EQ(CDQApplicationInfo::IsAppDQPacer(), row.which == 4) << row.code;
    info.SetOptionsFile("own.dqo");
    EXPECT_STREQ(info.GetOptionsFile(), "own.dqo");
  }
}

TEST_F(ApplicationInfo, AssignmentLeavesTheVersionResourceOfTheTarget) {
  SetVersion({{"FileVersion", "1.2.3.4"}, {"Comments", "old"}});
  CDQApplicationInfo target;
  SetVersion({{"FileVersion", "5.6.7.8"}, {"Comments", "new"}});
  CDQApplicationInfo source;
  source.SetTitle("title");
  source.SetSplashIDB(7);
  target = source;
  EXPECT_EQ(target.GetTitle() + target.GetLongVersionNumber(), "title5.6.7.8");
  EXPECT_EQ(target.GetSplashIDB(), 7u);
  EXPECT_EQ(target.GetComments(), "old");
}

TEST_F(ApplicationInfo, VersionTextsAreThoseOfTheFirstTranslation) {
  SetVersion({{"Translation", "0407,04e4"}, {"CompanyName", "Velmora"}});
  const CDQVersionInfo info(kHost);
  EXPECT_EQ(info.GetLanguageString(), "040704e4");
  EXPECT_EQ(info.GetCompanyName(), "Velmora");
  EXPECT_EQ(info.GetInternalName(), "");
  SetVersion({});
  CDQVersionInfo none(kHost);
  EXPECT_EQ(none.GetVersionInfo(), 0);
  EXPECT_EQ(none.GetCompanyName(), "");
  EXPECT_EQ(none.GetLanguageString(), "00000000");
}

}  // namespace
}  // namespace dq
