#include "dqlib/frame/application_info.h"

#include "dqlib/framework/windows/win_app.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

constexpr char kHost[] = "/opt/host";

/// An identity on a host whose version resource holds the texts.
struct ApplicationInfo : ::testing::Test {
  ~ApplicationInfo() override {
    CDQApplicationInfo::SetAppCode("");
    SetVersion({});
  }
  static void SetVersion(const platform::VersionTable& table) {
    platform::Current().version_resources->SetTable(kHost, table);
  }
  testing::ScriptedPlatform platform;
};

TEST_F(ApplicationInfo, VersionNumbersAreCutAtTheDots) {
  // The version; its medium and short form, major and minor version and build number.
  for (const std::string row :
       {"7.1.2.3 7.1.2|7.1|7|1|3", "7.10.5.44 7.10.5|7.10|7|0|44", "7.1 ||7|0|0", " ||0|0|0",
        "1..2.3.4 1..2|1.|1|0|3", "12.3.4 |12.3|12|3|0"}) {
    SetVersion({{"FileVersion", row.substr(0, row.find(' '))}});
    CDQApplicationInfo info;
    std::ostringstream told;
    told << info.GetLongVersionNumber().View() << ' ' << info.GetMediumVersionNumber().View() << '|'
         << info.GetShortVersionNumber().View() << '|' << info.GetMajorVersionNumber() << '|'
         << info.GetMinorVersionNumber() << '|' << info.GetBuildNumber();
    EXPECT_EQ(told.str(), row);
  }
}

TEST_F(ApplicationInfo, TheExecutableGivesDirectoryKeyAndOptionsFile) {
  // The path; directory, key and options file, and whether it lies in the network.
  for (const std::string row :
       {"c:\\bin\\TOOL.EXE: c:\\bin|TOOL|TOOL.dqo|0", "/tmp/tool: /tmp|tool|tool.dqo|0",
        "\\\\server\\share\\tool.v2.exe: \\\\server\\share|tool.v2|tool.v2.dqo|1"}) {
    const std::string path = row.substr(0, row.find(": "));
    CWinApp app("name");
    app.SetExecutablePath(path.c_str());
    CDQApplicationInfo info;
    EXPECT_EQ(path + ": " + info.GetExecutableDirectory() + "|" + info.GetRegistryKey() + "|" +
                  info.GetOptionsFile() + (info.RunningFromNetwork() ? "|1" : "|0"),
              row.c_str());
  }
  CWinApp app("name");
  app.SetExecutablePath(std::string(300, 'x').c_str());
  EXPECT_EQ(CDQApplicationInfo().GetExecutablePath().GetLength(), 259);
}

TEST_F(ApplicationInfo, TheCodeDecidesTheOptionsFileBeforeTheExecutable) {
  // The code, the options file, and which of the applications it is.
  for (const std::string row :
       {"Lumen SQL: LumenSQL.dqo 1000", "lUMEN sql: LumenSQL.dqo 1000", "LumenSQL: host.dqo 0000",
        "Velmora Delta Keeper: host.dqo 0100", "QUILLBASE: Quill.dqo 0010",
        "velmora pacer: DQPacer.dqo 0001", ": host.dqo 0000"}) {
    const std::string code = row.substr(0, row.find(':'));
    CDQApplicationInfo::SetAppCode(code.c_str());
    CDQApplicationInfo info;
    std::ostringstream told;
    told << code << ": " << info.GetOptionsFile().View() << ' ' << info.IsAppLumenSql()
         << info.IsAppDeltaKeeper() << info.IsAppQuillbase() << info.IsAppDQPacer();
    EXPECT_EQ(told.str(), row);
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
  target = source;
  EXPECT_EQ(target.GetTitle() + target.GetLongVersionNumber(), "title5.6.7.8");
  EXPECT_EQ(target.GetComments(), "old");
}

TEST_F(ApplicationInfo, VersionTextsAreThoseOfTheFirstTranslation) {
  SetVersion({{"Translation", "0407,04e4"}, {"CompanyName", "Velmora"}});
  const CDQVersionInfo info(kHost);
  EXPECT_EQ(info.GetLanguageString(), "040704e4");
  EXPECT_EQ(info.GetCompanyName() + info.GetInternalName(), "Velmora");
  SetVersion({});
  CDQVersionInfo none(kHost);
  EXPECT_EQ(none.GetVersionInfo(), 0);
  EXPECT_EQ(none.GetLanguageString(), "00000000");
}

}  // namespace
}  // namespace dq
