#include "dqlib/dbvocab/object_info.h"

#include <regex>

#include "dqlib/dbvocab/object_info_dialog.h"
#include "dqlib/dbvocab/object_type_list.h"
#include "dqlib/dbvocab/sql_string.h"
#include "dqlib/platform/checksum.h"
#include "siblings/options/options_server.h"
#include "tests/support/main_window.h"
#include "tests/support/own_settings.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using namespace std::string_view_literals;
using testing::ScriptedPrompts;
using testing::ShownBox;

constexpr DBMS kPlatforms[] = {DBMS_NONE, DBMS_SYBASE, DBMS_SQLSERVER,
                               DBMS_DB2,  DBMS_ORACLE, DBMS_DB2OS390};

TEST(ObjectInfo, IsValidWithNameAndTheOwnerThatItsTypeNeeds) {
  std::string without_owner, without_name;
  for (int number = -2; number < 100; ++number) {
    const auto type = static_cast<OBJECTTYPES>(number);
    EXPECT_EQ(CDBObjectInfo(type, "O", "N").IsValid(), number != OT_NONE) << number;
    if (CDBObjectInfo(type, "", "N").IsValid()) without_owner += std::to_string(number) + " ";
    if (CDBObjectInfo(type, "O", "").IsValid()) without_name += std::to_string(number) + " ";
  }
  EXPECT_EQ(without_owner, "7 8 10 13 15 18 22 25 26 27 29 36 38 41 42 46 49 53 79 88 ");
  EXPECT_EQ(without_name, "49 ");
  for (const auto& [text, owner, title] : test::Rows<const char*, const char*, const char*>{
           {"a.b.c", "a", "a.b.c"}, {".b", "", ".b"}, {"", "", "."}, {"b", "", ".b"}}) {
    CDBObjectInfo object(OT_NODEGROUP, "former", "former");
    object.SetFullName(text);
    EXPECT_EQ(object.GetOwner(), owner) << text;
    EXPECT_EQ(object.GetDefaultTitle().View(), "Nodegroup " + std::string(title));
    EXPECT_EQ(object.GetObjectTypeString(true), "NODEGROUP");
  }
  const CDBAObjectInfo object("new", OT_TABLE, "O", "N", "source", "database", "table");
  EXPECT_EQ(object.GetOwner() + object.GetDatasourceName() + object.GetDatabaseName() +
                object.GetObjectNewName() + object.GetTableName(),
            "Osourcedatabasenewtable");
}

TEST(ObjectTypes, TextsTemplatesAndWordsAreAsTheyAlwaysWere) {
  std::string texts, paths, words;
  for (int type = -1; type < 100; ++type) {
    for (const DBMS platform : kPlatforms) {
      texts += GetObjectTypeText(static_cast<OBJECTTYPES>(type), platform) + "\n";
      paths += GetCreationTemplatePath(platform, static_cast<OBJECTTYPES>(type)) + "\n";
    }
  }
  for (const SqlWord& each : SqlWords()) words += each.name + ("=" + *each.value) + "\n";
  EXPECT_EQ(SqlWords().size(), 198U);
  EXPECT_EQ(platform::Checksum(texts), 0x7B9DDD35U);
  EXPECT_EQ(platform::Checksum(paths), 0xB0A3A558U);
  EXPECT_EQ(platform::Checksum(words), 0x702640D6U);
}

TEST(ObjectTypes, ListsFollowPlatformVersionAndPurpose) {
  const auto list = [](const ObjectTypeQuery& query) {
    std::string values;
    for (const auto& entry : ListObjectTypes(query)) {
      values += std::to_string(entry.type) + ' ';
      // Lists call packages and user messages by names of their own.
      const CString text = GetObjectTypeText(entry.type, query.platform);
      const bool differs = entry.type == OT_PACKAGE || entry.type == OT_USER_MESSAGE;
      EXPECT_EQ(differs ? text.View() : entry.text, text.View());
    }
    return values;
  };
  const std::string tables = "16 35 40 ", all = "21 37 2 50 51 52 ";
  const std::string oracle = "49 3 9 46 14 45 ", views = "80 81 ", outlines = "87 19 20 22 ";
  const std::string rest = "36 43 44 38 ", snapshots = "32 33 ", sequences = "31 34 ";
  for (const auto& [query, values] : test::Rows<ObjectTypeQuery, std::string>{
           {{DBMS_SYBASE, 12.5}, tables + all + "1 7 12 48 15 18 25 28 30 38 11 39 26 "},
           {{DBMS_SQLSERVER, 6.5}, tables + all + "1 7 12 48 15 18 25 28 30 38 11 39 "},
           {{DBMS_SQLSERVER, 7.0}, tables + all + "1 7 12 48 15 79 18 25 28 30 38 11 39 "},
           {{DBMS_SQLSERVER, 8.0, true}, all + "1 7 12 48 14 15 79 18 25 28 30 38 11 39 "},
           {{DBMS_ORACLE, 8.05},
            tables + all + oracle + outlines + "88 26 27 " + snapshots + rest + sequences},
           {{DBMS_ORACLE, 8.17},
            tables + all + oracle + views + outlines + "88 26 27 " + rest + sequences},
           {{DBMS_ORACLE, 10.2, true, true}, all + oracle + views + outlines + "26 27 " + rest},
           {{DBMS_DB2, 7}, tables + all + "14 11 1 19 38 15 41 42 36 43 31 "},
           {{DBMS_DB2OS390, 7, true}, all + "14 11 1 7 42 36 34 "},
           {{DBMS_NONE},
            tables + all + "1 12 48 15 18 28 30 11 39 38 " + oracle + "19 20 22 88 26 27 " +
                snapshots + "36 43 44 19 " + sequences}}) {
    EXPECT_EQ(list(query), values) << query.platform << ' ' << query.version;
  }
}

std::string Without(const std::string& text, const char* pattern) {
  return std::regex_replace(text, std::regex(pattern), "");
}

TEST(ObjectTypes, TemplatesFillInToScriptsThatThePlatformsToolsCanRun) {
  using namespace ::testing;
  CDQOptionsServer* const server = CDQOptionsServer::GetObject();
  std::set<std::string> expected, found;
  for (const DBMS platform : kPlatforms) {
    for (int type = OT_NONE; type <= OT_REDO_LOG_GROUP + 1; ++type) {
      CDBObjectInfo object(static_cast<OBJECTTYPES>(type), "", "NAMED");
      std::string path(GetCreationTemplatePath(platform, object.GetObjectType()).View());
      const std::string text(GetCreationTemplateText(platform, object.GetObjectType()).View());
      SCOPED_TRACE(path);
      EXPECT_EQ(path.empty(), text.empty());
      if (path.empty()) continue;
      std::ranges::replace(path, '\\', '/');
      expected.insert(path.substr(path.find('/')));
      EXPECT_THAT(Without(text, "\\$\\$object_(type|owner|name)\\$\\$"), Not(HasSubstr("$$")));
      EXPECT_TRUE(!object.IsValid() || text.find("$$object_owner$$") == text.npos);
      if (!object.IsValid()) object.SetOwner("OWNING");
      const std::string script(object.GetCreationTemplate(platform).View());
      EXPECT_THAT(script, StartsWith("-- Create "));
      EXPECT_THAT(script, Not(ContainsRegex("[^\n -~]")));
      EXPECT_THAT(Without(script, "<[a-z]+(_[a-z]+)*>"), Not(ContainsRegex("[<>\"$]|TODO")));
      // Places in angle brackets are left to the person, comments to nobody.
      const std::string code = Without(Without(script, "--[^\n]*\n\n?"), "\n*$");
      EXPECT_THAT(code, EndsWith("\n" + std::string(server->GetCommandDelimiter(platform).View())));
      EXPECT_THAT(code, ContainsRegex("CREATE |ADD |PREP |exec sp_(add|grant)"));
      EXPECT_THAT(code, HasSubstr("NAMED"));
      EXPECT_EQ(std::ranges::count(code, '('), std::ranges::count(code, ')'));
      EXPECT_EQ(std::ranges::count(code, '\'') % 2, 0);
    }
  }
  const std::string root(server->ResolveVariableString("$$template_root$$").View());
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    if (!entry.is_directory()) found.insert(entry.path().string().substr(root.size()));
  }
  EXPECT_EQ(found, expected);
}

TEST(ObjectTypes, TemplatesAreReadUpToTheirFirstZeroAndFilledIn) {
  const test::TempDirectory files;
  CDQOptionsServer& server = *CDQOptionsServer::GetObject();
  server.SetVariable("$$template_root$$", files.path().c_str());
  std::filesystem::create_directory(files / "Oracle");
  files.Put("Oracle/CRView.tpl",
            "-- $$object_type$$\nVIEW $$object_owner$$.$$object_name$$\0rest"sv);
  ScriptedPrompts prompts;
  DBMS at_box = DBMS_NONE;
  prompts.on_box = [&] { at_box = server.GetPlatform(); };
  const CDBObjectInfo view(OT_VIEW, "SCOTT", "V");
  EXPECT_STREQ(view.GetCreationTemplate(DBMS_ORACLE), "-- View\nVIEW SCOTT.V");
  EXPECT_EQ(server.GetPlatform(), DBMS_ORACLE);
  EXPECT_STREQ(CDBObjectInfo(OT_VIEW, "", "V").GetCreationTemplate(DBMS_ORACLE), "");
  EXPECT_STREQ(CDBObjectInfo(OT_ALIAS, "O", "A").GetCreationTemplate(DBMS_ORACLE), "");
  EXPECT_STREQ(view.GetCreationTemplate(DBMS_NONE), "");
  EXPECT_TRUE(prompts.shown.empty());
  server.SetPlatform(DBMS_DB2);
  EXPECT_STREQ(CDBObjectInfo(OT_TABLE, "O", "T").GetCreationTemplate(DBMS_ORACLE), "");
  EXPECT_EQ(at_box, DBMS_DB2) << "the file is looked for before the platform changes";
  EXPECT_EQ(server.GetPlatform(), DBMS_ORACLE);
  EXPECT_EQ(prompts.shown, (std::vector<ShownBox>{{"Error:  Failed to open the template file '" +
                                                       files.path() + "\\Oracle\\CRTable.tpl'.",
                                                   BOX_STOP}}));
}

TEST(ObjectTypeCombo, ChoosesByTheTextOnThePlatformAndTellsWhatItLacks) {
  CWnd window;
  window.CreateWnd("Dialog");
  CDQObjectTypeCombo combo;
  combo.CreateWnd({.class_name = "ComboBox", .parent = &window, .id = 5});
  ScriptedPrompts prompts;
  combo.AddObjectType("A text that is much wider than the combo box", OT_NONE);
  EXPECT_GT(combo.GetDroppedWidth(), 200);
  EXPECT_TRUE(combo.LoadObjectTypes(DBMS_ORACLE, 8.1, OT_PACKAGE_BODY, true));
  EXPECT_STREQ(combo.GetWindowText(), "Package Body");
  EXPECT_EQ(combo.FindStringExact(-1, "Procedure"), 1) << "behind the row that was there";
  for (const OBJECTTYPES type : {OT_NONE, OT_PACKAGE, OT_USER_MESSAGE, OT_TABLE}) {
    combo.SetCurrentSelection(type, DBMS_ORACLE);
    EXPECT_STREQ(combo.GetWindowText(), "Package Body");
  }
  const auto box = [](const std::string& type) {
    return ShownBox{
        "The object type '" + type + "' is not valid for the currently selected platform (Oracle).",
        BOX_INFORMATION};
  };
  EXPECT_EQ(prompts.shown, (std::vector{box("Package"), box("Unknown"), box("Table")}));

  CDataExchange load(&window, false);
  CDataExchange save(&window, true);
  for (const auto& [loaded, saved] : test::Rows<OBJECTTYPES, OBJECTTYPES>{
           {OT_VIEW, OT_NONE}, {OT_TYPE, OT_TYPE}, {OT_PACKAGE, OT_NONE}, {OT_ROLE, OT_ROLE}}) {
    OBJECTTYPES type = loaded;
    DDX_ObjectType(&load, 5, type);
    DDX_ObjectType(&save, 5, type);
    EXPECT_EQ(type, saved) << loaded;
  }
  window.DestroyWindow();
}

TEST(ObjectInfoDialog, EditsTheObject) {
  struct HelpingWindow : testing::MainWindow {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      if (message == WM_COMMANDHELP) helped = lparam;
      return MainWindow::WindowProc(message, wparam, lparam);
    }
    LPARAM helped = 0;
  };
  HelpingWindow main;
  const char* const specific = "P.0123456789012345678901234567890";
  for (const auto& [given, platform, answers, detach_shown, focus_text, title] :
       test::Rows<CDBObjectInfo, DBMS, std::string, int, const char*, const char*>{
           {{OT_TABLE, "", "T"}, DBMS_ORACLE, "2757=X", 1, "T", "Table SCOTT.T"},
           {{OT_TABLE, "O", "T"}, DBMS_ORACLE, "2754=View\n2756=P\npress 1", 1, "T", "View P.T"},
           {{OT_PROCEDURE, "O", specific}, DBMS_DB2, "press 1", 1, "P", "Procedure O.P"},
           {{OT_NODEGROUP, "", ""}, DBMS_DB2OS390, "2757=G\npress 1", 0, "", "Nodegroup SCOTT.G"},
           {{OT_ANONYMOUS_BLOCK, "", ""}, DBMS_ORACLE, "press 1", 1, "", "Anonymous Block ."},
           {{OT_TABLE, "O", "T"}, DBMS_ORACLE, "press 3019\npress 1", 1, "T", "Unknown ."},
           {{OT_NONE, "O", "T"}, DBMS_ORACLE, "press 9\npress 2", 0, nullptr, "Unknown O.T"}}) {
    SCOPED_TRACE(title);
    CDBObjectInfo object(given);
    ScriptedPrompts prompts;
    platform::DialogScript script;
    ASSERT_FALSE(platform::DialogScript::Read(answers, script));
    prompts.on_dialog = [&, shown = detach_shown, text = focus_text](platform::DialogView& dialog) {
      for (const auto& control : dialog.Controls()) {
        EXPECT_TRUE(control.id != CDBObjectInfoDlg::kDetach || control.visible == shown);
      }
      CWnd* const focus = CWnd::GetFocus();
      ASSERT_NE(focus, nullptr);
      EXPECT_EQ(focus->GetDlgCtrlID(), text == nullptr ? 2754 : 2757);
      EXPECT_TRUE(text == nullptr || focus->GetWindowText() == text);
      script.Play(dialog);
      EXPECT_FALSE(script.problem()) << script.problem()->text;
    };
    main.helped = 0;
    EXPECT_EQ(object.SetPropertiesDlg(platform, 8.1, "SCOTT", nullptr, false, title),
              answers.ends_with("press 1"));
    EXPECT_EQ(prompts.dialogs, std::vector<std::string>{title});
    EXPECT_EQ(object.GetDefaultTitle(), title);
    EXPECT_TRUE(prompts.shown.empty());
    EXPECT_EQ(main.helped, given.GetObjectType() == OT_NONE ? 133784 : 0);
  }
}

}  // namespace
}  // namespace dq
