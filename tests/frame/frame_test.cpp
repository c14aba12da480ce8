// What a program is, and what it tells: its identity and version, and messages of its own, of the
// system and of the database to the main window and in boxes. Then resources of modules, how they
// are loaded, and the pictures, brushes and fonts made of them.

#include "dqlib/platform/checksum.h"
#include "tests/support/doubles.h"
#include "tests/support/failing_memory.h"
#include "tests/support/forwarding_files.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// An identity on a host whose version resource holds the texts.
struct ApplicationInfo : testing::Test {
  ~ApplicationInfo() override {
    CDQApplicationInfo::SetAppCode("");
    SetVersion({});
  }
  static void SetVersion(const platform::VersionTable& table) {
    platform::Current().version_resources->SetTable("/opt/host", table);
  }
  /// Long, medium and short version, major and minor version and build number.
  static std::string Versions(const CDQApplicationInfo& info) {
    std::ostringstream told;
    told << info.GetLongVersionNumber().View() << ' ' << info.GetMediumVersionNumber().View() << '|'
         << info.GetShortVersionNumber().View() << '|' << info.GetMajorVersionNumber() << '|'
         << info.GetMinorVersionNumber() << '|' << info.GetBuildNumber();
    return told.str();
  }
  /// Directory, key and options file.
  static std::string Places(CDQApplicationInfo& info) {
    return std::string(info.GetExecutableDirectory() + "|" + info.GetRegistryKey() + "|" +
                       info.GetOptionsFile() + "|");
  }
  ScriptedPlatform platform;
};

TEST_F(ApplicationInfo, VersionNumbersAreCutAtTheDots) {
  for (const std::string row :
       {"7.1.2.3 7.1.2|7.1|7|1|3", "7.10.5.44 7.10.5|7.10|7|0|44", "7.1 ||7|0|0", " ||0|0|0",
        "1..2.3.4 1..2|1.|1|0|3", "12.3.4 |12.3|12|3|0"}) {
    SetVersion({{"FileVersion", row.substr(0, row.find(' '))}});
    EXPECT_EQ(Versions(CDQApplicationInfo()), row);
  }
}

TEST_F(ApplicationInfo, TheExecutableGivesDirectoryKeyAndOptionsFileUnlessTheCodeDoes) {
  CWinApp app("name");
  // The code and the path; directory, key, options file, and which of the applications it is.
  for (const auto& [code, path, told] : Cases<3>(R"(=> c:\bin\TOOL.EXE => c:\bin|TOOL|TOOL.dqo|0000
      => \\server\share\a.v2.exe => \\server\share|a.v2|a.v2.dqo|0000
      Lumen SQL => /tmp/tool => /tmp|tool|LumenSQL.dqo|1000
      Velmora Delta Keeper => tool => |tool|tool.dqo|0100 ;; LumenSQL => tool => |tool|tool.dqo|0000
      velmora pacer => tool => |tool|DQPacer.dqo|0001 ;; QUILLBASE => tool => |tool|Quill.dqo|0010
      lUMEN sql => /tool => |tool|LumenSQL.dqo|1000)")) {
    app.SetExecutablePath(path.c_str());
    CDQApplicationInfo::SetAppCode(code.c_str());
    CDQApplicationInfo info;
    std::ostringstream all;
    all << Places(info) << info.IsAppLumenSql() << info.IsAppDeltaKeeper() << info.IsAppQuillbase()
        << info.IsAppDQPacer();
    EXPECT_EQ(all.str(), told);
    info.SetOptionsFile("own.dqo");
    EXPECT_STREQ(info.GetOptionsFile(), "own.dqo");
  }
  app.SetExecutablePath(std::string(300, 'x').c_str());
  EXPECT_EQ(CDQApplicationInfo().GetExecutablePath().GetLength(), 259);
}

TEST_F(ApplicationInfo, RunsFromTheNetworkWhereTheDriveOrTheNearestDirectoryIsRemoteOrUnknown) {
  struct : ForwardingFiles {
    UINT KindOfDrive(std::string_view place) override {
      return place.size() > 4 ? UINT{DRIVE_KIND_NO_ROOT} : kind;
    }
    UINT kind = 0;
  } files;
  CWinApp app("name");
  for (const char* path : {"c:\\bin\\tool.exe", "/tmp/none/tool"}) {
    app.SetExecutablePath(path);
    std::string told;
    for (files.kind = 0; files.kind < 7; ++files.kind) {
      told += CDQApplicationInfo().RunningFromNetwork() ? '1' : '0';
    }
    EXPECT_EQ(told, "1100100") << path;
  }
}

TEST_F(ApplicationInfo, VersionTextsAreThoseOfTheFirstTranslationAndNotAssigned) {
  platform::VersionTable table = {{"Translation", "0407,04e4"}, {"Comments", "c"}};
  for (const char* name : {"CompanyName", "FileDescription", "LegalCopyright", "LegalTrademarks",
                           "OriginalFileName", "ProductVersion"}) {
    table[name] = name;
  }
  SetVersion(table);
  CDQApplicationInfo info;
  EXPECT_EQ(info.GetLanguageString() + info.GetCompanyName() + info.GetInternalName() +
                info.GetFileDescription() + info.GetLegalCopyright() + info.GetLegalTrademarks() +
                info.GetOriginalFileName() + info.GetProductVersion(),
            "040704e4CompanyNameFileDescriptionLegalCopyrightLegalTrademarks"
            "OriginalFileNameProductVersion");
  SetVersion({{"FileVersion", "5.6.7.8"}, {"Comments", "new"}, {"ProductName", "sold"}});
  CWinApp app("name");
  app.SetExecutablePath("/bin/tool");
  CDQApplicationInfo source;
  source.SetTitle("title");
  source.SetSplashIDB(9);
  EXPECT_EQ(source.GetProductName() + Places(source).c_str(), "sold/bin|tool|tool.dqo|");
  app.SetExecutablePath("/else/where");
  info = source;
  EXPECT_EQ(Versions(info) + Places(info), "5.6.7.8 5.6.7|5.6|5|6|8/bin|tool|tool.dqo|");
  EXPECT_EQ(info.GetTitle() + info.GetExecutablePath() + info.GetProductName() + info.GetComments(),
            "title/bin/toolsoldc");
  EXPECT_EQ(info.GetSplashIDB(), 9U);
  // The file is looked for, and then its resource read, before which the former one goes.
  for (int number = 1; !info.GetComments().IsEmpty(); ++number) {
    ASSERT_LT(number, 100);
    FailAllocation(number);
    try {
      info.GetVersionInfo();
    } catch (const std::bad_alloc&) {
    }
    AllocationFailed();
  }
  platform::Current().version_resources->SetTable(std::string(259, 'x'), {{"Comments", "of x"}});
  platform.modules.path.assign(300, 'x');
  EXPECT_EQ(CDQVersionInfo().GetComments(), "of x");
  SetVersion({});
  CDQVersionInfo none("/opt/host");
  EXPECT_TRUE(none.GetVersionInfo() == 0 && none.GetLanguageString() == "00000000");
}

TEST(OutputMessageTraits, TellSourceAndKind) {
  std::string told;
  for (int type = 0; type < 9; ++type) {
    const OutputMessageTraits& traits = GetOutputMessageTraits(type);
    told += std::to_string(static_cast<int>(traits.kind)) + ":";
    told += detail::LoadText(traits.source_id).View().substr(0, 8);
    told += " ";
  }
  EXPECT_EQ(told,
            "0:Program 1:Program 2:Program 0:DBMS 1:DBMS 2:DBMS 3:Start Ta 4:End Task 0:Program ");
}

TEST(CDQOutputMessage, IsNullAndTracedWhenMemoryRunsOut) {
  std::string traced;
  traced.reserve(100);
  const TraceSink former = SetTraceSink([&](std::string_view text) { traced += text; });
  FailAllocation(1);
  EXPECT_EQ(CDQOutputMessage::CreateOutputMessage(OUTPUT_DBMS_INFO, "text", false), nullptr);
  EXPECT_TRUE(AllocationFailed());
  SetTraceSink(former);
  EXPECT_EQ(traced, "Out of memory, could not create CDQOutputMessage.\n");
}

/// The output message of a send that is under way.
CDQOutputMessage& Output(const MSG& sent) {
  return *reinterpret_cast<CDQOutputMessage*>(sent.lParam);
}

/// The number and the arguments; of an output message, its type, text and target.
std::string Told(const MSG& sent) {
  std::string told = std::to_string(sent.message) + " " + std::to_string(sent.wParam) + " ";
  if (sent.message != 33801) return told + std::to_string(sent.lParam) + "; ";
  const CDQOutputMessage& output = Output(sent);
  told += std::to_string(output.GetType()) + " ";
  return told.append((output.GetText() + "|" + output.GetTarget() + "; ").View());
}

TEST(CDQOutputMessage, IsWithTheMainWindowWhichMayDeleteItWhenTheSendReturns) {
  CDQOutputMessage message(static_cast<OutputMessageType>(8), "old");
  EXPECT_EQ(message.GetType(), OUTPUT_PROGRAM_INFO);
  message.SendErrorMessage(static_cast<const char*>(nullptr), "no window");
  EXPECT_EQ(message.GetText() + "|" + message.GetTarget(), "|no window");
  message.SetType(static_cast<OutputMessageType>(-1));
  EXPECT_EQ(message.GetType(), OUTPUT_PROGRAM_INFO);
  MainWindow window;
  std::string told;
  window.on_message = [&](const MSG& sent) {
    EXPECT_EQ(&Output(sent), &message);
    told += Told(sent);
  };
  message.SendErrorMessage("first", "kept");
  message.SendInfoMessage("hello");
  message.SendInfoMessage(IDS_UNKNOWN_OS_ERROR);
  message.SendErrorMessage("bad", nullptr);
  message.SendErrorMessage(message.GetTarget(), message.GetText());
  message.SendErrorMessage(IDS_UNKNOWN_OS_ERROR, "T");
  message.SendErrorMessage("bad", "");
  EXPECT_EQ(
      told,
      "33801 1 2 first|kept; 33801 0 0 hello|kept; 33801 0 0 Unknown OS Error|kept; "
      "33801 0 2 bad|kept; 33801 1 2 kept|bad; 33801 1 2 Unknown OS Error|T; 33801 1 2 bad|; ");
  window.on_message = [&](const MSG& sent) {
    told = Told(sent) + (Output(sent).GetAutoDelete() ? "deleted" : "kept");
    delete &Output(sent);
  };
  CDQOutputMessage::CreateOutputMessage(OUTPUT_DBMS_INFO, "x", true)->SendErrorMessage("end", "T");
  EXPECT_EQ(told, "33801 1 2 end|T; deleted");
}

TEST(CDQSystemErrorMsg, ReadsTheLastErrorOnceAndShowsThePlaceIfThereIsOne) {
  ScriptedPlatform platform;
  ScriptedPrompts prompts;
  platform.errors.last = 2;
  platform.errors.texts = {{2, "100%s\r\n"}, {3, "three\r\n"}};
  CDQSystemErrorMsg message;
  EXPECT_EQ(message.GetErrorMessage(), "100%s\r\n");
  platform.errors.last = 3;
  EXPECT_EQ(message.GetErrorCode(), 2);
  message.SetErrorCode(4);
  EXPECT_EQ(message.GetErrorMessage() + RetrieveOSErrorMessage(2) + RetrieveOSErrorMessage(4),
            "100%s\r\nUnknown OS Error");
  platform.errors.last = 2;
  CDQSystemErrorMsg("a%d.cpp", 7).Show();
  CDQSystemErrorMsg("a.cpp", -1).Show();
  CDQSystemErrorMsg("", 7).Show();
  CDQSystemErrorMsg(3).Show();
  CDQSystemErrorMsg(4).Show();
  const char* const placed = "Error: 100%s\r\n\nFile: a%d.cpp,  Line 7";
  EXPECT_EQ(prompts.shown,
            (std::vector<ShownBox>{
                {placed, 48}, {"100%s\r\n", 48}, {"100%s\r\n", 48}, {"three\r\n", 48}, {"", 48}}));
}

TEST(NetworkErrorHandler, ShowsWhatItCanFindOut) {
  using platform::NetworkError;
  struct : platform::Network {
    platform::Result<NetworkError> LastError() override { return last; }
    platform::Result<NetworkError> last;
  } network;
  const platform::ScopedPlatform scope(With(&platform::Platform::network, &network));
  const std::string cut = "%d %s" + std::string(250, 'x');
  const Rows<DWORD, platform::Result<NetworkError>, int, std::string> rows = {
      {0xFFFFFFFF, NetworkError{9, "unused", "unused"}, 1, "Network error -1.\r\n"},
      {1208, NetworkError{9, "route", "Acme"}, 1, "Acme failed with error code9.\r\nroute"},
      {1208, NetworkError{0xFFFFFFFF, cut + "x", cut + "x"}, 1,
       cut + " failed with error code-1.\r\n" + cut},
      {1208, platform::Error{platform::ErrorKind::kNotFound, 61}, 0,
       "WNetGetLastError failed with error 61."}};
  for (const auto& [code, last, result, text] : rows) {
    ScriptedPrompts prompts;
    network.last = last;
    EXPECT_EQ(NetworkErrorHandler(code), result) << text;
    EXPECT_EQ(prompts.shown, (std::vector<ShownBox>{{text, 16, 0}}));
  }
}

TEST(DQDBErrorHandler, OpensThePaneBeforeEachLineAndEndsSilently) {
  struct BrokenRecord : ErrorRecord {
    BrokenRecord() : ErrorRecord("") {}
    CString GetErrorDescription() const override { throw 7; }
  };
  Errors errors;
  for (const char* text : {"one", "100%s", "lost"}) errors.Add(std::make_unique<ErrorRecord>(text));
  errors.Add(std::make_unique<BrokenRecord>());
  errors.Add(std::make_unique<ErrorRecord>("behind"));
  MainWindow window;
  std::string told;
  window.on_message = [&](const MSG& sent) {
    told += Told(sent);
    if (told.find("100%s") == std::string::npos) return;
    window.DestroyWindow();
    window.app.m_pMainWnd = nullptr;
  };
  EXPECT_NO_THROW(DQLIB_DQDBErrorHandler(errors));
  EXPECT_EQ(told, "33818 0 1; 33801 0 5 one|; 33818 0 1; 33801 0 5 100%s|; ");
  ASSERT_TRUE(errors.MoreErrors());
  EXPECT_EQ(errors.GetNextError().GetErrorDescription(), "behind");
}

/// Two modules with a string each under the same id; the first is current.
struct Resources : testing::Test {
  Resources() {
    current_.AddString(100, "current %1");
    other_.AddString(100, "other %1 %2 %1");
    AfxSetResourceHandle(&current_);
  }
  ~Resources() override { AfxSetResourceHandle(nullptr); }
  ScriptedPlatform platform_;
  ScriptedPrompts prompts_{BUTTON_NO, BUTTON_NO};
  ResourceModule current_, other_;
};

TEST_F(Resources, SwitchedOperationsTakeNullForTheCurrentModule) {
  CString text("old"), told;
  for (const auto& [id, module] :
       Rows<UINT, HINSTANCE>{{UINT_MAX, &other_}, {100, nullptr}, {101, &other_}}) {
    told += (DQLoadString(text, id, module) != 0 ? "1" : "0") + text + "|";
  }
  DQFormatString1(text, 100, "%2", &other_);
  told += text + "|";
  DQFormatString2(text, 100, "a", "b", &other_);
  told += text + "|";
  told += LoadStringA(&other_, 100, text) + "|" + LoadStringA(&other_, UINT_MAX);
  EXPECT_EQ(told, "1|1current %1|0|other %2 %2 %2|other a b a|other %1 %2 %1|");
  const CDQSwitchResourceHandle keeps(nullptr);
  EXPECT_EQ(AfxGetResourceHandle(), &current_);
  current_.AddString(57344, "Tool");
  EXPECT_EQ(CDQApplicationInfo().GetTitle(), "Tool");
  const CSwitchRCHandle sets(nullptr);
  EXPECT_EQ(AfxGetResourceHandle(), nullptr);
}

TEST_F(Resources, BoxesShowTheStringOfTheModule) {
  EXPECT_EQ(DQAfxMessageBox(100, BOX_YES_NO, 12, nullptr), BUTTON_NO);
  EXPECT_EQ(MessageBoxA(&other_, 100, BOX_STOP), BUTTON_NO);
  DQLIB_DoUnderConstructionMessageBox();
  EXPECT_EQ(prompts_.shown, (std::vector<ShownBox>{{"current %1", 4, 12},
                                                   {"other %1 %2 %1", 16, 100},
                                                   {"This Feature is Under Construction.", 0, 0}}));
  prompts_.on_box = [] { throw std::runtime_error("no screen"); };
  EXPECT_THROW(DQAfxMessageBox(100, BOX_OK, 0, &other_), std::runtime_error);
  EXPECT_THROW(MessageBoxA(&other_, 100, BOX_OK), std::runtime_error);
  EXPECT_EQ(AfxGetResourceHandle(), &current_);
}

TEST_F(Resources, DirectOperationsTakeNullForTheSystem) {
  const std::string picture = WriteDib({{1, 1}, {0}}), headed = std::string(4, '\0') + picture;
  for (ResourceModule* const module : {&platform_.modules.system, &current_}) {
    const WORD id = module == &current_ ? 8 : 7;
    module->AddResource(RESOURCE_BITMAP, id, picture);
    for (const WORD type : {RESOURCE_CURSOR, RESOURCE_ICON}) module->AddResource(type, id, headed);
  }
  for (const auto& [module, id, there] : Rows<HINSTANCE, UINT, bool>{
           {nullptr, 7, true}, {nullptr, 8, false}, {&current_, 7, false}, {&current_, 8, true}}) {
    CBitmap bitmap;
    EXPECT_EQ(DQLoadBitmap(bitmap, id, module), there);
    EXPECT_EQ(DQLoadCursor(id, module) != nullptr, there);
    EXPECT_EQ(DQLoadIcon(id, module) != nullptr, there);
  }
}

TEST_F(Resources, FindsRecordsByTypeAndLowWord) {
  const Rows<HRSRC (*)(HINSTANCE, UINT), WORD> rows = {
      {DQFindAcceleratorResource, 9}, {DQFindBitmapResource, 2},   {DQFindDialogResource, 5},
      {DQFindFontResource, 8},        {DQFindFontDirResource, 7},  {DQFindMenuResource, 4},
      {DQFindRCDataResource, 10},     {DQFindIconResource, 3},     {DQFindGroupIconResource, 14},
      {DQFindVersionResource, 16},    {DQFindToolbarResource, 241}};
  for (const auto& [find, type] : rows) {
    platform_.modules.system.AddResource(type, 7, "data");
    const HRSRC found = find(nullptr, 0xABCD0007);
    EXPECT_TRUE(found != nullptr && found->type == type && find(&current_, 7) == nullptr) << type;
  }
  // Strings lie in blocks of sixteen.
  EXPECT_TRUE(DQFindStringResource(&other_, 0x100000 + 111) && !DQFindStringResource(&other_, 112));
}

TEST_F(Resources, ListsComeOutReversed) {
  CStringList list;
  for (const auto& [text, expected] : Rows<std::string, const char*>{
           {";;A,;B b;C", "C|B b|A|"}, {";,;", ""}, {std::string("A;B\0;C", 6), "B|A|"}}) {
    other_.AddString(200, text);
    list.AddTail("old");
    DQLIB_LoadResourceList(&other_, 200, ";,", list);
    EXPECT_EQ(Joined(list), expected) << text;
  }
  DQLIB_LoadResourceList(nullptr, 100, "", list);
  EXPECT_EQ(Joined(list), "current %1|");
  DQLIB_LoadResourceList(nullptr, 201, list.GetHead(), list);
  EXPECT_TRUE(list.IsEmpty());
}

TEST(DQCompareClassName, ComparesTheFirst32BytesWithoutCase) {
  const std::string name(32, 'n');
  CWnd window;
  ASSERT_TRUE(window.CreateWnd((name + "s").c_str()));
  const HWND hwnd = window.GetSafeHwnd();
  EXPECT_TRUE(DQCompareClassName(hwnd, std::string(32, 'N').c_str()));
  EXPECT_FALSE(DQCompareClassName(hwnd, (name + "s").c_str()) || DQCompareClassName(hwnd, nullptr));
  window.DestroyWindow();
  EXPECT_FALSE(DQCompareClassName(hwnd, ""));
}

TEST_F(Resources, MenusAreDirectAndToolBarsAndDialogsAreSwitched) {
  const WORD commands[] = {5};
  current_.AddResource(RESOURCE_MENU, 3, "item 1 \"a\"\n");
  current_.AddResource(RESOURCE_TOOLBAR, 3, WriteToolBarTemplate({1, 1}, commands));
  CMenu menu;
  EXPECT_TRUE(!DQLoadMenu(menu, 3, nullptr) && DQLoadMenu(menu, 3, &current_));
  CToolBar bar;
  EXPECT_TRUE(DQLoadToolBar(bar, 3, nullptr) && bar.GetItemID(0) == 5);
  struct RunDialog : CDialog {
    int DoModal() override {
      text.LoadString(100);
      return text == "current %1" ? 7 : throw std::runtime_error("no screen");
    }
    CString text;
  } dialog;
  EXPECT_EQ(DQDoModalDialog(dialog, nullptr), 7);
  EXPECT_THROW(DQDoModalDialog(dialog, &other_), std::runtime_error);
  EXPECT_TRUE(dialog.text == "other %1 %2 %1" && AfxGetResourceHandle() == &current_);
}

/// How often the library hangs in the chain of modules.
int CountLinks() {
  int count = 0;
  for (const auto* link = CDynLinkLibrary::head(); link != nullptr; link = link->next()) {
    count += link->resources() == DQLIB_GetInstanceHandle() ? 1 : 0;
  }
  return count;
}

TEST(Library, EntryPointAttachesAndTakesNothingDown) {
  const HINSTANCE library = &LibraryResources();
  const int before = CountLinks();
  EXPECT_GT(before, 0);
  // Only the first attaches.
  for (const auto& [module, reason, asked] :
       Rows<HINSTANCE, DWORD, int>{{library, PROCESS_ATTACH, 1},
                                   {nullptr, PROCESS_ATTACH, 1},
                                   {library, THREAD_ATTACH, 0},
                                   {library, PROCESS_DETACH, 1}}) {
    ScriptedPlatform platform;
    EXPECT_EQ(DQLIB_EntryPoint(module, reason, nullptr), module == nullptr ? 0 : 1) << reason;
    EXPECT_EQ(CountLinks(), before + 1) << reason;
    EXPECT_EQ(platform.modules.named, std::vector<HINSTANCE>(asked, module)) << reason;
  }
  DQLIB_InitializeExtensionDLL();
  EXPECT_EQ(CountLinks(), before + 2);
}

TEST(CDQResourceManager, HasTheFamilysPicturesAndFontsAndMapsObjectTypesToPictures) {
  CDQResourceManager* const manager = CDQResourceManager::GetInstance();
  EXPECT_EQ(CDQResourceManager::GetInstance(), manager) << "there is one";
  std::map<const CBitmap*, UINT> ids;
  for (UINT id = 3000; id <= 3222; ++id) {
    ids[CGDIDispenser::g_.GetResourceBitmap(id, DQRESOURCES_GetInstanceHandle())] = id;
  }
  std::string pictures, indices;
  for (int i = 0; i < 134; ++i) pictures += std::to_string(ids[manager->GetBitmap(i)]) + ' ';
  for (int i = 0; i < 5; ++i) pictures += std::to_string(ids[manager->GetAlertBitmap(i)]) + ' ';
  EXPECT_EQ(platform::Checksum(pictures), 0x79B1E734U) << pictures;
  EXPECT_EQ(manager->GetFont(0), CGDIDispenser::g_.GetDefaultFont(FONT_BOLD));
  EXPECT_EQ(manager->GetFont(1), CGDIDispenser::g_.GetDefaultFont(FONT_UNDERLINE));
  EXPECT_EQ(manager->GetObjectBitmap(88), manager->GetBitmap(132));
  for (int type = -1; type < 100; ++type) {
    indices += std::to_string(manager->GetObjectBitmapIndex(type)) + ' ';
  }
  EXPECT_EQ(platform::Checksum(indices), 0xE7308C1EU) << indices;
}

struct Counted : CObject {
  ~Counted() override { ++deleted; }
  static inline int deleted = 0;
};

TEST(Cleaners, DeleteTheirObjectAndSoDoCopies) {
  {
    CDQObjCleaner original;
    original.SetObject(new Counted);
    const CDQObjCleaner copy(original);
    CDQGlobalResourceCleaner<Counted> typed;
    typed.SetObject(new Counted);
    original.SetObject(nullptr);
    EXPECT_EQ(Counted::deleted, 0);
  }
  EXPECT_EQ(Counted::deleted, 2);
}

TEST(CGDIDispenser, MakesOneBrushAndOnePenForAColorAndItsFontsOnce) {
  ScriptedPlatform platform;
  platform.facts.pixels_per_inch = 120;
  CGDIDispenser dispenser;
  CBrush* const brush = dispenser.GetSolidBrush(5);
  CPen* const pen = dispenser.GetPen(5);
  for (COLORREF color = 0; color < 1000; ++color) {
    EXPECT_EQ(dispenser.GetSolidBrush(color)->color(), color);
    EXPECT_EQ(dispenser.GetPen(color)->color(), color);
  }
  dispenser.OnSysColorChange();
  EXPECT_TRUE(dispenser.GetSolidBrush(5) == brush && dispenser.GetPen(5) == pen);
  std::ostringstream told;
  for (const eFontStyle style : {FONT_PLAIN, FONT_BOLD, FONT_UNDERLINE, FONT_TITLE}) {
    CFont* const font = dispenser.GetDefaultFont(style);
    const LOGFONT& made = font->GetLogFont();
    told << made.lfHeight << ' ' << made.lfWeight << ' ' << int{made.lfUnderline} << "; ";
    EXPECT_STREQ(made.lfFaceName, "MS Sans Serif") << style;
    EXPECT_EQ(dispenser.GetDefaultFont(style), font) << style;
  }
  EXPECT_EQ(told.str(), "12 400 0; 12 700 0; 12 400 1; -13 700 0; ");
  platform.facts.pixels_per_inch = 96;
  EXPECT_EQ(CGDIDispenser().GetDefaultFont(FONT_TITLE)->GetLogFont().lfHeight, -11);
}

TEST(CGDIDispenser, KeepsPicturesUnderTheModuleWhereTheyWereFound) {
  ScriptedPlatform platform;
  platform.scheme.colors = {{COLOR_BTNFACE, 7}};
  ResourceModule module;
  module.AddResource(RESOURCE_BITMAP, 9, WriteDib({{1, 1}, {0xC0C0C0}}));
  const CDynLinkLibrary link(&module);
  CGDIDispenser dispenser;
  CBitmap* const searched = dispenser.GetResourceBitmap(9, nullptr);
  ASSERT_NE(searched->GetSafeHandle(), nullptr);
  EXPECT_EQ(searched->GetSafeHandle()->pixels.front(), 7U);
  EXPECT_NE(dispenser.GetResourceBitmap(9, nullptr), searched);
  EXPECT_EQ(dispenser.GetResourceBitmap(9, &module), searched);
  const ResourceModule other;
  EXPECT_EQ(dispenser.GetResourceBitmap(9, &other)->GetSafeHandle(), nullptr);

  // A failed load stays; what was found nowhere is made anew each time.
  CBitmap* const failed = dispenser.GetResourceBitmap(10, &module);
  module.AddResource(RESOURCE_BITMAP, 10, WriteDib({{1, 1}, {0}}));
  EXPECT_TRUE(dispenser.GetResourceBitmap(10, &module) == failed && !failed->GetSafeHandle());
  EXPECT_NE(dispenser.GetResourceBitmap(11, nullptr), dispenser.GetResourceBitmap(11, nullptr));
}

}  // namespace
}  // namespace dq::test
