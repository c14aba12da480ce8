#include "dqlib/frame/application_info.h"

#include "dqlib/framework/windows/win_app.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/testing.h"

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
  for (const auto& [version, expected] :
       test::Rows<const char*, const char*>{{"7.1.2.3", "7.1.2|7.1|7|1|3"},
                                            {"7.10.5.44", "7.10.5|7.10|7|0|44"},
                                            {"7.1", "||7|0|0"},
                                            {"", "||0|0|0"},
                                            {"1..2.3.4", "1..2|1.|1|0|3"},
                                            {"12.3.4", "|12.3|12|3|0"}}) {
    SetVersion({{"FileVersion", version}});
    CDQApplicationInfo info;
    EXPECT_STREQ(info.GetLongVersionNumber(), version);
    CString parts = info.GetMediumVersionNumber() + "|" + info.GetShortVersionNumber();
    for (const int number :
         {info.GetMajorVersionNumber(), info.GetMinorVersionNumber(), info.GetBuildNumber()}) {
      parts += ("|" + std::to_string(number)).c_str();
    }
    EXPECT_EQ(parts, expected) << version;
  }
}

TEST_F(ApplicationInfo, TheExecutableGivesDirectoryKeyAndOptionsFile) {
  for (const auto& [path, facts, network] : test::Rows<const char*, const char*, bool>{
           {"c:\\bin\\TOOL.EXE", "c:\\bin|TOOL|TOOL.dqo", false},
           {"\\\\server\\share\\tool.v2.exe", "\\\\server\\share|tool.v2|tool.v2.dqo", true},
           {"/tmp/tool", "/tmp|tool|tool.dqo", false}}) {
    CWinApp app("name");
    app.SetExecutablePath(path);
    CDQApplicationInfo info;
    EXPECT_EQ(
        info.GetExecutableDirectory() + "|" + info.GetRegistryKey() + "|" + info.GetOptionsFile(),
        facts);
    EXPECT_EQ(info.RunningFromNetwork(), network) << path;
  }
  CWinApp app("name");
  app.SetExecutablePath(std::string(300, 'x').c_str());
  EXPECT_EQ(CDQApplicationInfo().GetExecutablePath().GetLength(), 259);
}

TEST_F(ApplicationInfo, TheCodeDecidesTheOptionsFileBeforeTheExecutable) {
  for (const auto& [code, options, which] :
       test::Rows<const char*, const char*, int>{{"Lumen SQL", "LumenSQL.dqo", 1},
                                                 {"lUMEN sql", "LumenSQL.dqo", 1},
                                                 {"LumenSQL", "host.dqo", 0},
                                                 {"Velmora Delta Keeper", "host.dqo", 2},
                                                 {"QUILLBASE", "Quill.dqo", 3},
                                                 {"velmora pacer", "DQPacer.dqo", 4},
                                                 {"", "host.dqo", 0}}) {
    CDQApplicationInfo::SetAppCode(code);
    CDQApplicationInfo info;
    EXPECT_STREQ(info.GetOptionsFile(), options) << code;
    const bool is[] = {CDQApplicationInfo::IsAppLumenSql(), CDQApplicationInfo::IsAppDeltaKeeper(),
                       CDQApplicationInfo::IsAppQuillbase(), CDQApplicationInfo::IsAppDQPacer()};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(is[i], which == i + 1) << code;
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
