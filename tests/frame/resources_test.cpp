#include "dqlib/frame/resources.h"

#include "dqlib/frame/switch_resource_handle.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/dialog.h"
#include "dqlib/framework/windows/menu.h"
#include "dqlib/framework/windows/tool_bar.h"
#include "dqlib/framework/windows/wnd.h"
#include "tests/support/joined.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using testing::ShownBox;

/// Two modules with a string each under the same id; the first is current.
class Resources : public ::testing::Test {
 protected:
  Resources() {
    current_.AddString(100, "current %1");
    other_.AddString(100, "other %1 %2 %1");
    AfxSetResourceHandle(&current_);
  }
  ~Resources() override { AfxSetResourceHandle(nullptr); }

  testing::ScriptedPlatform platform_;
  testing::ScriptedPrompts prompts_{BUTTON_NO, BUTTON_NO};
  ResourceModule current_;
  ResourceModule other_;
};

TEST_F(Resources, SwitchedOperationsTakeNullForTheCurrentModule) {
  CString text("old"), told;
  for (const auto& [id, module] :
       test::Rows<UINT, HINSTANCE>{{UINT_MAX, &other_}, {100, nullptr}, {101, &other_}}) {
    told += DQLoadString(text, id, module) != 0 ? "1" : "0";
    told += text + "|";
  }
  DQFormatString1(text, 100, "%2", &other_);
  told += text + "|";
  DQFormatString2(text, 100, "a", "b", &other_);
  told += text + "|";
  told += LoadStringA(&other_, 100, text) + "|" + LoadStringA(&other_, UINT_MAX);
  EXPECT_EQ(told, "1|1current %1|0|other %2 %2 %2|other a b a|other %1 %2 %1|");
  EXPECT_EQ(AfxGetResourceHandle(), &current_);
  const CDQSwitchResourceHandle keeps(nullptr);
  EXPECT_EQ(AfxGetResourceHandle(), &current_);
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
  const std::string picture = WriteDib({{1, 1}, {0}});
  ResourceModule& system = platform_.modules.system;
  for (const auto& [module, id] : {std::pair<ResourceModule*, WORD>{&system, 7}, {&current_, 8}}) {
    module->AddResource(RESOURCE_BITMAP, id, picture);
    module->AddResource(RESOURCE_CURSOR, id, std::string(4, '\0') + picture);
    module->AddResource(RESOURCE_ICON, id, std::string(4, '\0') + picture);
  }
  for (const auto& [module, id] : {std::pair<HINSTANCE, UINT>{nullptr, 7}, {&current_, 8}}) {
    for (const UINT each : {7U, 8U}) {
      CBitmap bitmap;
      EXPECT_EQ(DQLoadBitmap(bitmap, each, module), each == id);
      EXPECT_EQ(DQLoadCursor(each, module) != nullptr, each == id);
      EXPECT_EQ(DQLoadIcon(each, module) != nullptr, each == id);
    }
  }
}

TEST_F(Resources, FindsRecordsByTypeAndLowWord) {
  constexpr std::pair<HRSRC (*)(HINSTANCE, UINT), WORD> kCases[] = {
      {DQFindAcceleratorResource, 9}, {DQFindBitmapResource, 2},    {DQFindDialogResource, 5},
      {DQFindFontResource, 8},        {DQFindFontDirResource, 7},   {DQFindMenuResource, 4},
      {DQFindRCDataResource, 10},     {DQFindIconResource, 3},      {DQFindGroupIconResource, 14},
      {DQFindVersionResource, 16},    {DQFindToolbarResource, 241},
  };
  for (const auto& [find, type] : kCases) {
    platform_.modules.system.AddResource(type, 7, "data");
    const HRSRC found = find(nullptr, 0xABCD0007);
    ASSERT_NE(found, nullptr) << type;
    EXPECT_EQ(found->type, type);
    EXPECT_EQ(find(&current_, 7), nullptr) << type;
  }
  // Strings lie in blocks of sixteen.
  EXPECT_NE(DQFindStringResource(&other_, 0x100000 + 111), nullptr);
  EXPECT_EQ(DQFindStringResource(&other_, 112), nullptr);
}

TEST_F(Resources, ListsComeOutReversed) {
  CStringList list;
  for (const auto& [text, expected] : test::Rows<std::string, const char*>{
           {";;A,;B b;C", "C|B b|A|"}, {";,;", ""}, {std::string("A;B\0;C", 6), "B|A|"}}) {
    other_.AddString(200, text);
    list.AddTail("old");
    DQLIB_LoadResourceList(&other_, 200, ";,", list);
    EXPECT_EQ(test::Joined(list), expected) << text;
  }
  DQLIB_LoadResourceList(nullptr, 100, "", list);
  EXPECT_EQ(list.GetHead(), "current %1");
  DQLIB_LoadResourceList(nullptr, 201, ";", list);
  EXPECT_TRUE(list.IsEmpty());
}

TEST(DQCompareClassName, ComparesTheFirst32BytesWithoutCase) {
  const std::string name(32, 'n');
  CWnd window;
  ASSERT_TRUE(window.CreateWnd((name + "rest").c_str()));
  const HWND handle = window.GetSafeHwnd();
  EXPECT_TRUE(DQCompareClassName(handle, std::string(32, 'N').c_str()));
  EXPECT_FALSE(DQCompareClassName(handle, (name + "rest").c_str()));
  EXPECT_FALSE(DQCompareClassName(handle, nullptr));
  window.DestroyWindow();
  EXPECT_FALSE(DQCompareClassName(handle, ""));
}

TEST_F(Resources, MenusAreDirectAndToolBarsAndDialogsAreSwitched) {
  const WORD commands[] = {5};
  current_.AddResource(RESOURCE_MENU, 3, "item 1 \"a\"\n");
  current_.AddResource(RESOURCE_TOOLBAR, 3, WriteToolBarTemplate({1, 1}, commands));
  CMenu menu;
  EXPECT_FALSE(DQLoadMenu(menu, 3, nullptr)) << "the system's own has none";
  EXPECT_TRUE(DQLoadMenu(menu, 3, &current_));
  CToolBar bar;
  EXPECT_TRUE(DQLoadToolBar(bar, 3, nullptr));
  EXPECT_EQ(bar.GetItemID(0), 5U);
  struct RunDialog : CDialog {
    int DoModal() override {
      text.LoadString(100);
      return text == "current %1" ? 7 : throw std::runtime_error("no screen");
    }
    CString text;
  };
  RunDialog dialog;
  EXPECT_EQ(DQDoModalDialog(dialog, nullptr), 7);
  EXPECT_THROW(DQDoModalDialog(dialog, &other_), std::runtime_error);
  EXPECT_EQ(dialog.text, "other %1 %2 %1");
  EXPECT_EQ(AfxGetResourceHandle(), &current_);
}

}  // namespace
}  // namespace dq
