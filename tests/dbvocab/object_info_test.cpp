
#include <regex>

#include "dqlib/platform/checksum.h"
#include "dqlib/platform/posix/system_services.h"
#include "tests/support/doubles.h"
#include "tests/support/failing_memory.h"
#include "tests/support/failing_system_calls.h"
#include "tests/support/forked_process.h"
#include "tests/support/own_settings.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

using namespace std::literals;

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
  for (const auto& [text, told] : Cases<2>("a.b.c => a|Nodegroup a.b.c ;; .b => |Nodegroup .b ;;"
                                           "b => |Nodegroup .b")) {
    CDBObjectInfo object(OT_NODEGROUP, "former", "former");
    object.SetFullName(text.c_str());
    EXPECT_EQ((object.GetOwner() + "|" + object.GetDefaultTitle()).View(), told);
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
  EXPECT_THAT(
      (std::array{platform::Checksum(texts), platform::Checksum(paths), platform::Checksum(words)}),
      testing::ElementsAre(0x7B9DDD35U, 0xB0A3A558U, 0x702640D6U));
}

TEST(ObjectTypes, ATranslationChangesWhatIsShownAndNotWhatScriptsSay) {
  const CDBObjectInfo view(OT_VIEW, "SCOTT", "V");
  const auto shown = [&view] {
    return GetObjectTypeText(OT_VIEW, DBMS_DB2) + '|' + GetDBMSText(DBMS_NONE) + '|' +
           view.GetDefaultTitle() + '|' + view.GetObjectTypeString();
  };
  EXPECT_EQ(shown(), "View|None|View SCOTT.V|View");
  {
    ResourceModule texts;
    texts.AddString(44640, "Ansicht");
    const CDynLinkLibrary link(&texts);
    EXPECT_EQ(shown(), "Ansicht|None|Ansicht SCOTT.V|View");
    texts.AddString(44700, "Keine");
    EXPECT_EQ(shown(), "Ansicht|Keine|Ansicht SCOTT.V|View");
    ResourceModule others;
    others.AddString(44640, "Sicht");
    const CDQSwitchResourceHandle current(&others);
    EXPECT_EQ(shown(), "Sicht|Keine|Sicht SCOTT.V|View");
  }
  EXPECT_EQ(shown(), "View|None|View SCOTT.V|View");
}

TEST(ObjectTypes, ListsFollowPlatformVersionAndPurpose) {
  const std::string tables = "16 35 40 ", all = "21 37 2 50 51 52 ", snapshots = "32 33 ";
  const std::string package = "Package Header ", outlines = "87 " + package + "20 22 ";
  const std::string oracle = "49 3 9 46 14 45 ", views = "80 81 ", rest = "36 43 44 38 ";
  const std::string servers = "1 7 12 48 ", rules = "18 25 28 30 38 11 User Message ";
  for (const auto& [query, values] : Rows<ObjectTypeQuery, std::string>{
           {{DBMS_SYBASE, 12.5}, tables + all + servers + "15 " + rules + "26 "},
           {{DBMS_SQLSERVER, 6.5}, tables + all + servers + "15 " + rules},
           {{DBMS_SQLSERVER, 7.0}, tables + all + servers + "15 79 " + rules},
           {{DBMS_SQLSERVER, 8.0, true}, all + servers + "14 15 79 " + rules},
           {{DBMS_ORACLE, 8.05},
            tables + all + oracle + outlines + "88 26 27 " + snapshots + rest + "31 34 "},
           {{DBMS_ORACLE, 8.17},
            tables + all + oracle + views + outlines + "88 26 27 " + rest + "31 34 "},
           {{DBMS_ORACLE, 10.2, true, true}, all + oracle + views + outlines + "26 27 " + rest},
           {{DBMS_DB2, 7}, tables + all + "14 11 1 19 38 15 41 42 36 43 31 "},
           {{DBMS_DB2OS390, 7, true}, all + "14 11 1 7 42 36 34 "},
           {{DBMS_NONE},
            tables + all + "1 12 48 15 18 28 30 11 User Message 38 " + oracle + package +
                "20 22 88 26 27 " + snapshots + "36 43 44 19 31 34 "}}) {
    // By number, but for those that lists call by names of their own.
    std::string found;
    for (const auto& [type, id] : ListObjectTypes(query)) {
      const std::string text(EnglishText(id));
      const bool same = GetObjectTypeText(type, query.platform) == text;
      found += (same ? std::to_string(type) : text) + " ";
    }
    EXPECT_EQ(found, values) << query.platform << ' ' << query.version;
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
      EXPECT_TRUE(!object.IsValid() || text.find("$$object_owner$$") == text.npos);
      if (!object.IsValid()) object.SetOwner("OWNING");
      const std::string script(object.GetCreationTemplate(platform).View());
      EXPECT_THAT(script, AllOf(StartsWith("-- Create "), Not(ContainsRegex("[^\n -~]"))));
      EXPECT_THAT(Without(script, "<[a-z]+(_[a-z]+)*>"), Not(ContainsRegex("[<>\"$]|TODO")));
      // Places in angle brackets are left to the person, comments to nobody.
      const std::string code = Without(Without(script, "--[^\n]*\n\n?"), "\n*$");
      const std::string last(server->GetCommandDelimiter(platform).View());
      EXPECT_THAT(code, AllOf(ContainsRegex("CREATE |ADD |PREP |exec sp_(add|grant)"),
                              HasSubstr("NAMED"), EndsWith("\n" + last)));
      EXPECT_EQ(std::ranges::count(code, '('), std::ranges::count(code, ')'));
      EXPECT_EQ(std::ranges::count(code, '\'') % 2, 0);
    }
  }
  const std::string root(server->ResolveVariableString("$$template_root$$").View());
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    if (!entry.is_directory()) found.insert(entry.path().string().substr(root.size()));
  }
  EXPECT_EQ(found, expected) << "no file is there for nobody";
}

TEST(ObjectTypes, TemplatesAreReadUpToTheirFirstZeroAndFilledIn) {
  const TempDirectory files;
  CDQOptionsServer& server = *CDQOptionsServer::GetObject();
  server.SetVariable("$$template_root$$", files.path().c_str());
  std::filesystem::create_directory(files / "Oracle");
  files.Put("Oracle/CRView.tpl", "-- $$object_type$$\n$$object_owner$$.$$object_name$$\0rest"sv);
  ScriptedPrompts prompts;
  prompts.on_box = [&] { EXPECT_EQ(server.GetPlatform(), DBMS_DB2) << "it is set behind that"; };
  const CDBObjectInfo view(OT_VIEW, "SCOTT", "V");
  EXPECT_STREQ(view.GetCreationTemplate(DBMS_ORACLE), "-- View\nSCOTT.V");
  EXPECT_EQ(server.GetPlatform(), DBMS_ORACLE);
  EXPECT_STREQ(CDBObjectInfo(OT_VIEW, "", "V").GetCreationTemplate(DBMS_ORACLE), "");
  EXPECT_STREQ(CDBObjectInfo(OT_ALIAS, "O", "A").GetCreationTemplate(DBMS_ORACLE), "");
  EXPECT_STREQ(view.GetCreationTemplate(DBMS_NONE), "");
  EXPECT_TRUE(prompts.shown.empty());
  server.SetPlatform(DBMS_DB2);
  EXPECT_STREQ(CDBObjectInfo(OT_TABLE, "O", "T").GetCreationTemplate(DBMS_ORACLE), "");
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
  combo.AddObjectType("A text that is much wider than the combo box", OT_DATABASE);
  EXPECT_GT(combo.GetDroppedWidth(), 200);
  EXPECT_TRUE(combo.LoadObjectTypes(DBMS_ORACLE, 8.1, OT_PACKAGE_BODY, true));
  EXPECT_STREQ(combo.GetWindowText(), "Package Body");
  EXPECT_EQ(combo.FindStringExact(-1, "Procedure"), 1) << "behind the row that was there";
  for (const OBJECTTYPES type : {OT_NONE, OT_PACKAGE, OT_USER_MESSAGE}) {
    combo.SetCurrentSelection(type, DBMS_ORACLE);
    EXPECT_STREQ(combo.GetWindowText(), "Package Body");
  }
  const std::string of = "The object type '",
                    no = "' is not valid for the currently selected platform (Oracle).";
  EXPECT_EQ(prompts.shown, (std::vector<ShownBox>{{of + "Package" + no, BOX_INFORMATION},
                                                  {of + "Unknown" + no, BOX_INFORMATION}}));
  CDataExchange load(&window, false), save(&window, true);
  OBJECTTYPES first = OT_NONE;
  combo.SetCurSel(0);
  DDX_ObjectType(&save, 5, first);
  EXPECT_EQ(first, OT_DATABASE);
  for (const auto& [loaded, saved] : Rows<OBJECTTYPES, OBJECTTYPES>{
           {OT_VIEW, OT_NONE}, {OT_TYPE, OT_TYPE}, {OT_PACKAGE, OT_NONE}, {OT_ROLE, OT_ROLE}}) {
    OBJECTTYPES type = loaded;
    DDX_ObjectType(&load, 5, type);
    DDX_ObjectType(&save, 5, type);
    EXPECT_EQ(type, saved) << loaded;
  }
  window.DestroyWindow();
}

TEST(ObjectInfoDialog, EditsTheObject) {
  struct HelpingWindow : MainWindow {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      if (message == WM_COMMANDHELP) helped = lparam;
      return MainWindow::WindowProc(message, wparam, lparam);
    }
    LPARAM helped = 0;
  };
  const char* const specific = "P.0123456789012345678901234567890";
  const std::string n30(30, 'N'), longest = "Table " + n30 + "." + n30;
  const std::string enter_longest = "2756=" + n30 + "\n2757=" + n30 + "\npress 1";
  for (const auto& [given, platform, answers, detach, focus_text, title] :
       Rows<CDBObjectInfo, DBMS, std::string, int, const char*, std::string>{
           {{OT_TABLE, "", "T"}, DBMS_ORACLE, "2757=X", 1, "T", "Table SCOTT.T"},
           {{OT_TABLE, "O", "T"}, DBMS_ORACLE, enter_longest, 1, "T", longest},
           {{OT_TABLE, "O", "T"}, DBMS_ORACLE, "2754=View\n2756=P\npress 1", 1, "T", "View P.T"},
           {{OT_PROCEDURE, "O", specific}, DBMS_DB2, "press 1", 1, "P", "Procedure O.P"},
           {{OT_NODEGROUP, "", ""}, DBMS_DB2OS390, "2757=G\npress 1", 0, "", "Nodegroup SCOTT.G"},
           {{OT_ANONYMOUS_BLOCK, "", ""}, DBMS_ORACLE, "press 1", 1, "", "Anonymous Block ."},
           {{OT_TABLE, "O", "T"}, DBMS_ORACLE, "press 3019\npress 1", 1, "T", "Unknown ."},
           {{OT_NONE, "O", "T"}, DBMS_ORACLE, "press 9\npress 2", 0, nullptr, "Unknown O.T"}}) {
    SCOPED_TRACE(title);
    HelpingWindow main;
    CDBObjectInfo object(given);
    ScriptedPrompts prompts;
    platform::DialogScript script;
    ASSERT_FALSE(platform::DialogScript::Read(answers, script));
    prompts.on_dialog = [&, shown = detach, text = focus_text](platform::DialogView& dialog) {
      for (const auto& control : dialog.Controls()) {
        EXPECT_TRUE(control.id != CDBObjectInfoDlg::kDetach || control.visible == shown);
      }
      const CWnd& focus = *CWnd::GetFocus();
      EXPECT_EQ(focus.GetDlgCtrlID(), text == nullptr ? 2754 : 2757);
      EXPECT_TRUE(text == nullptr || focus.GetWindowText() == text);
      for (const int id : {2756, 2757}) EXPECT_FALSE(dialog.Enter(id, std::string(31, 'N')));
      script.Play(dialog);
      EXPECT_FALSE(script.problem());
    };
    EXPECT_EQ(object.SetPropertiesDlg(platform, 8.1, "SCOTT", nullptr, false, title.c_str()),
              answers.ends_with("press 1"));
    EXPECT_EQ(prompts.dialogs, std::vector{title});
    EXPECT_EQ(object.GetDefaultTitle().View(), title);
    EXPECT_TRUE(prompts.shown.empty());
    EXPECT_EQ(main.helped, given.GetObjectType() == OT_NONE ? 133784 : 0);
  }
}

/// Keys "a" and "r" share a bucket, and so do "b" and the one whose first byte counts as negative.
const std::string kKnownFile =
    "\4\0\1r\xFF\xFF\1\0\x0D\0CDBObjectInfo\x23\0\0\0\1O\1N\1a\0\0"
    "\2\xE4x\1\x80\x28\0\0\0\3own\4name\1b\1\x80\xFF\xFF\xFF\xFF\0\0"s;
const std::string kOldFile = "\1\0\1o\0\0"s;

struct ObjectInfoMapTest : testing::Test {
  ObjectInfoMapTest() {
    map_.Insert("a", nullptr);
    map_.Insert("b", new CDBObjectInfo);
    map_.Insert("r", new CDBObjectInfo(OT_INDEX, "replaced", "replaced"));
    map_.Insert("\xE4x", new CDBAObjectInfo(OT_VIEW, "own", "name", "datasource"));
    map_.Insert("r", new CDBObjectInfo(OT_TABLE, "O", "N"));
  }
  /// "key=owner.name " for each entry, in order; `visit` is called on the way.
  static std::string Contents(const CDBObjectInfoMap& map,
                              const std::function<void(const CString&)>& visit = {}) {
    std::string contents;
    for (POSITION position = map.GetStartPosition(); position != nullptr;) {
      CString key;
      CObject* object = nullptr;
      map.GetNextAssoc(position, key, object);
      auto* const info = DYNAMIC_DOWNCAST(CDBObjectInfo, object);
      contents += key.View();
      if (info != nullptr) contents += "=" + info->GetOwner() + "." + info->GetName();
      contents += " ";
      if (visit) visit(key);
    }
    return contents;
  }
  /// What has been shown since the last time, without what all have.
  std::string Shown() {
    const std::regex form("Error:  Failed to (.*) object map file '" + files_.path() +
                          "/?(.*)'.\nCause: (.*)\\.");
    std::string texts;
    for (const auto& box : std::exchange(prompts_.shown, {})) {
      EXPECT_EQ(box.type, BOX_STOP);
      texts += std::regex_replace(box.text, form, "$1 $2: $3\n");
    }
    return texts;
  }

  TempDirectory files_;
  FailingSystemCalls calls_;
  const std::unique_ptr<platform::Files> failing_ = platform::posix::MakeFiles(calls_);
  const platform::ScopedPlatform scope_{With(&platform::Platform::files, failing_.get())};
  ScriptedPrompts prompts_;
  CDBObjectInfoMap map_;
  const std::string path_ = files_ / "map";
};

TEST_F(ObjectInfoMapTest, FileHasTheFormOfEarlierReleasesByteForByte) {
  EXPECT_TRUE(map_.Save(path_.c_str()) && !map_.IsLoaded());
  EXPECT_EQ(files_.Get("map"), kKnownFile);
  CDBObjectInfoMap loaded;
  loaded.Insert("r", new CDBObjectInfo(OT_INDEX, "old", "old"));
  loaded.Insert("z", new CDBObjectInfo(OT_INDEX, "kept", "kept"));
  EXPECT_TRUE(loaded.Load(path_.c_str()) && loaded.IsLoaded());
  EXPECT_EQ(Contents(loaded), "z=kept.kept a r=O.N b=. \xE4x=own.name ");
  CDBObjectInfo* found = nullptr;
  EXPECT_TRUE(!loaded.Find("R", found) && loaded.Find("\xE4x", found) &&
              found->GetObjectType() == OT_VIEW);
  // An object that stands under several keys is owned once.
  const std::string shared =
      "\5\0\1k\xFF\xFF\1\0\x0D\0CDBObjectInfo\1\0\0\0\1o\1n"
      "\1k\1\x80\1\0\0\0\1p\1q\1l\2\0\1m\2\0\1m\3\0"s;
  for (const auto& [bytes, contents] : Rows<std::string, const char*>{
           {"", ""}, {"\1\0\0\0\0"s, " "}, {shared, "k=p.q l=o.n m=p.q "}}) {
    CDBObjectInfoMap map;
    EXPECT_TRUE(map.Load(files_.Put("map", bytes).c_str()) && map.IsLoaded());
    EXPECT_EQ(Contents(map), contents);
  }
}

TEST_F(ObjectInfoMapTest, EachFailingCallAndAllocationLeavesAWholeFileAndAWholeMap) {
  calls_.WriteAtMost(20);
  const char* const path = path_.c_str();
  for (const bool of_memory : {false, true}) {
    bool failed = true;
    for (int number = 1; failed; ++number) {
      failed = false;
      const auto tried = [&](auto work) {
        of_memory ? FailAllocation(number) : calls_.Fail(number, ENOSPC);
        const bool done = work();
        failed |= of_memory ? AllocationFailed() : calls_.failed();
        calls_.Fail(0, 0);
        EXPECT_EQ(Shown().empty(), done) << number;
        return done;
      };
      files_.Put("map", kOldFile);
      const bool saved = tried([&] { return map_.Save(path); });
      const std::string now = files_.Get("map");
      EXPECT_TRUE(now == kKnownFile || (!saved && now == kOldFile)) << number;
      files_.Put("map", kKnownFile);
      CDBObjectInfoMap map;
      map.Insert("r", new CDBObjectInfo(OT_INDEX, "old", "old"));
      const bool loaded = tried([&] { return map.Load(path); });
      EXPECT_EQ(Contents(map), loaded ? "a r=O.N b=. \xE4x=own.name " : "r=old.old ") << number;
      EXPECT_EQ(map.IsLoaded(), loaded);
    }
  }
  calls_.LeaveRoom(50);
  EXPECT_FALSE(map_.Save((files_ / "new").c_str()));
  EXPECT_EQ(files_.Get("new"), "(none)");
}

TEST_F(ObjectInfoMapTest, UpdateHoldsTheFileAndWritesOverNothingUnread) {
  EXPECT_TRUE(AllEndWell(4, [&](int process) {
    for (int i = 0; i < 10; ++i) {
      CDBObjectInfoMap map;
      const std::string key = std::to_string(process * 10 + i);
      EXPECT_TRUE(map.Update(path_.c_str(), [&] { map.SetAt(key.c_str(), new CDBObjectInfo); }));
    }
  }));
  CDBObjectInfoMap map;
  EXPECT_TRUE(map.Load(path_.c_str()) && map.GetCount() == 40);

  files_.Put("bad", "\1\0\1"s);
  ASSERT_EQ(::symlink("loop", (files_ / "loop").c_str()), 0);
  for (const char* const each : {"bad", "loop", "missing/map"}) {
    EXPECT_FALSE(map.Update((files_ / each).c_str(), [] { FAIL() << "nothing was read"; }));
  }
  EXPECT_EQ(files_.Get("bad"), "\1\0\1"s);
  EXPECT_EQ(Shown(),
            "read bad: The file ended too soon\nopen loop: The path is not valid\n"
            "create missing/map: The file was not found\n");
}

TEST_F(ObjectInfoMapTest, WhatIsDroppedIsDeletedAndPassedByInAWalk) {
  struct Counted : CDBObjectInfo {
    explicit Counted(int& count) : CDBObjectInfo(OT_TABLE, "owner", "key"), left(++count) {}
    ~Counted() override { --left; }
    int& left;
  };
  int left = 0;
  CDBObjectInfoMap map;
  auto* const first = new Counted(left);
  map.SetAt("key", first);
  map.SetAt("key", first);
  EXPECT_EQ(left, 1);
  // The key is a part of the object that goes.
  map.SetAt(first->GetName(), new Counted(left));
  EXPECT_TRUE(left == 1 && map.RemoveKey("key") && !map.RemoveKey("key") && left == 0);
  for (const char* each : {"a", "b", "r"}) map.SetAt(each, new Counted(left));
  const std::string walked = Contents(map, [&](const CString& key) {
    EXPECT_TRUE(map.RemoveKey(key));
    map.SetAt("new", nullptr);
  });
  EXPECT_EQ(walked, "r=owner.key a=owner.key b=owner.key ");
  EXPECT_TRUE(left == 0 && map.GetCount() == 1);
  map.SetAt("a", new Counted(left));
  map.RemoveAll();
  EXPECT_TRUE(left == 0 && map.IsEmpty());
}

TEST_F(ObjectInfoMapTest, FileThatDoesNotHoldAMapChangesNothing) {
  constexpr const char* kTooSoon = "ended too soon";
  std::vector<std::pair<std::string, const char*>> rows = {
      {"\xFF\xFF\xFF\xFF\xFF\xFF"s + std::string(100, '\0'), kTooSoon},
      {"\1\0\1k\xFF\xFF\0\0\x0E\0CMapStringToOb\0\0"s, "has an object of an unexpected class"},
      {"\1\0\1k\5\0"s, "refers to an object that it does not have"}};
  for (std::size_t size = 1; size < kKnownFile.size(); ++size) {
    rows.emplace_back(kKnownFile.substr(0, size), kTooSoon);
  }
  for (const auto& [bytes, cause] : rows) {
    EXPECT_FALSE(map_.Load(files_.Put("map", bytes).c_str())) << bytes;
    EXPECT_EQ(Shown(), "read map: The file "s + cause + "\n");
  }
  EXPECT_TRUE(Contents(map_) == "r=O.N a \xE4x=own.name b=. " && !map_.IsLoaded());
}

TEST_F(ObjectInfoMapTest, FailuresOfTheSystemAreShownWithTheirCause) {
  EXPECT_FALSE(map_.Load((files_ / "missing").c_str()));
  EXPECT_TRUE(Shown().empty()) << "that is told by the result alone";
  files_.Put("map", kKnownFile);
  FailAllocation(1);
  EXPECT_TRUE(!map_.Load(path_.c_str()) && AllocationFailed());
  EXPECT_FALSE(map_.Save((files_ / "missing/map").c_str()) || map_.Load(files_.path().c_str()));
  {
    const CFile reader(path_.c_str(), CFile::modeRead);
    EXPECT_FALSE(map_.Save(path_.c_str())) << "it keeps others out";
    const CFile writer(path_.c_str(), CFile::modeWrite);
    EXPECT_FALSE(map_.Load(path_.c_str())) << "it keeps writers out";
  }
  for (const int error : {EMFILE, ENOMEM}) {
    calls_.FailEach("Read", error);
    EXPECT_FALSE(map_.Load(path_.c_str()));
  }
  EXPECT_EQ(Shown(),
            "open map: Cannot allocate memory\ncreate missing/map: The file was not found\n"
            "open : Access to the file was denied\ncreate map: The file is in use\n"
            "open map: The file is in use\nread map: Too many files are open\n"
            "read map: Cannot allocate memory\n");
}

}  // namespace
}  // namespace dq::test
