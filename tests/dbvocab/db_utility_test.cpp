#include "dqlib/dbvocab/db_utility.h"

#include "dqlib/dbvocab/dbms_factory.h"
#include "tests/support/temp_directory.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

std::string g_reports;

int Record(int code, const char* text) {
  g_reports += g_reports.empty() && text != nullptr ? text : "|" + std::to_string(code);
  return 0;
}

TEST(DBUtility, PutsTheConnectionBehindTheCommandAndHidesThePassword) {
  using Text = const char*;
  CDQDBUtility utility;
  utility.SetCallback(Record);
  for (const auto& [command, user, password, datasource, mode, printed, reported] :
       test::Rows<Text, Text, Text, Text, int, Text, std::string>{
           {"echo a", "", "", "", 0, "a", "echo a  "},
           {"echo", "u", "p", "d", 0, "u/p@d", "echo u/****@d "},
           {"echo", "u", "u", "d", 0, "u/u@d", "echo ****/****@d "},
           {"echo a:secret", "u", "secret", "", -1, "a:secret u/secret", "echo a:**** u/**** "},
           {"echo", "u", "a/b@c", "d", 0, "u/a/b@c@d", "echo u/****@d "},
           {"/bin/echo", "u", "secret", "d", 0, "u/secret@d", "/****@d "},
           {"env USERID=1 echo", "u", "secret", "d", 0, "u/secret@d",
            "env USERID=1 echo u/****@d "},
           {"echo @*", "u", "*", "", 0, "@* u/*", "echo @* u/**** "},
           {"echo", "u", "", "d", 1, "u@d", "echo 'u@d' "},
           {"echo", "u", "p", "d", 2, "u/p@d AS SYSDBA", "echo 'u/****@d AS SYSDBA' "},
           {"echo", "", "p", "", 4, "/p AS SYSOPER", "echo '/**** AS SYSOPER' "}}) {
    utility.SetUser(user);
    utility.SetPassword(password);
    utility.SetDatasource(datasource);
    utility.SetAuthenticationMode(mode);
    CString output;
    g_reports.clear();
    EXPECT_EQ(utility.RunExecutable(command, output, nullptr), 1) << reported;
    EXPECT_EQ(output, printed);
    EXPECT_EQ(g_reports, reported + "|1");
  }
}

TEST(DBUtility, NullCommandIsNoProgramWhateverRanBefore) {
  const test::TempDirectory files;
  CDQDBUtility utility;
  CString output;
  EXPECT_EQ(utility.RunExecutable("pwd -P", output, files.path().c_str()), 1);
  EXPECT_EQ(output.View(), std::filesystem::canonical(files.path()).string());
  utility.SetCallback(Record);
  g_reports.clear();
  EXPECT_EQ(utility.RunExecutable(nullptr, output, nullptr), 0);
  EXPECT_EQ(g_reports, "|-6");
  CString kept;
  EXPECT_EQ(utility.RunExecutable("pwd -P", kept, nullptr), 1);
  EXPECT_EQ(kept, output) << "the directory stays";
}

TEST(DBMSFactory, CallsThePlatformsCreatorBetweenItsHooks) {
  struct Factory : CDBMSFactoryT<std::string> {
    using CDBMSFactoryT::CDBMSFactoryT;
    void PreCreateObject() override { calls += "<"; }
    std::string* CreateSybase() override { return &(calls += "2"); }
    std::string* CreateSpare5() override { return &(calls += "8"); }
    void PostCreateObject(std::string* object) override { calls += object == &calls ? "> " : ". "; }
    std::string calls;
  };
  std::string calls;
  for (int platform = 0; platform < 12; ++platform) {
    Factory factory(static_cast<DBMS>(platform));
    EXPECT_EQ(factory.CreateObject() != nullptr, platform == 2 || platform == 8);
    calls += factory.calls;
  }
  EXPECT_EQ(calls, "<. <. <2> <. <. <. <. <. <8> <. <. <. ");
}

}  // namespace
}  // namespace dq
