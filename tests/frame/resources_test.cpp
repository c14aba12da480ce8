// Resources of modules, how they are loaded, and the pictures, brushes and fonts made of them.

#include "dqlib/platform/checksum.h"
#include "siblings/pictures/pictures.h"
#include "tests/support/doubles.h"

namespace dq::test {
namespace {

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
  for (const auto& [module, reason, result, asked] :
       Rows<HINSTANCE, DWORD, int, int>{{library, PROCESS_ATTACH, 1, 1},
                                        {nullptr, PROCESS_ATTACH, 0, 1},
                                        {library, THREAD_ATTACH, 1, 0},
                                        {library, THREAD_DETACH, 1, 0},
                                        {library, PROCESS_DETACH, 1, 1}}) {
    ScriptedPlatform platform;
    EXPECT_EQ(DQLIB_EntryPoint(module, reason, nullptr), result) << reason;
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
  platform.facts.colors = {{SYSTEM_COLOR_FACE, 7}};
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
