#include "dqlib/frame/resources.h"

#include <stdexcept>

#include "dqlib/frame/switch_resource_handle.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/wnd.h"
#include "gtest/gtest.h"
#include "tests/support/scripted_platform.h"

namespace dq {
namespace {

using test::Box;

/// Two modules with a string each under the same id; the first is current.
class Resources : public testing::Test {
 protected:
  Resources() {
    current_.AddString(100, "current %1");
    other_.AddString(100, "other %1 %2 %1");
    AfxSetResourceHandle(&current_);
  }
  ~Resources() override { AfxSetResourceHandle(nullptr); }

  test::ScriptedPlatform platform_;
  ResourceModule current_;
  ResourceModule other_;
};

TEST_F(Resources, SwitchedOperationsTakeNullForTheCurrentModule) {
  CString text;
  EXPECT_NE(DQLoadString(text, 100, nullptr), 0);
  EXPECT_EQ(text, "current %1");
  EXPECT_NE(DQLoadString(text, 100, &other_), 0);
  EXPECT_EQ(text, "other %1 %2 %1");
  DQFormatString1(text, 100, "%2", &other_);
  EXPECT_EQ(text, "other %2 %2 %2");
  DQFormatString2(text, 100, "a", "b", &other_);
  EXPECT_EQ(text, "other a b a");
  EXPECT_EQ(&LoadStringA(&other_, 100, text), &text);
  EXPECT_EQ(text, "other %1 %2 %1");
  EXPECT_EQ(LoadStringA(&current_, 100), "current %1");
  EXPECT_EQ(AfxGetResourceHandle(), &current_);
}

TEST_F(Resources, LoadStringKnowsNoTextAndUnknownIds) {
  CString text("old");
  EXPECT_EQ(DQLoadString(text, static_cast<UINT>(-1), &other_), 1);
  EXPECT_EQ(text, "");
  text = "old";
  EXPECT_EQ(DQLoadString(text, 101, &other_), 0);
  EXPECT_EQ(text, "");
  // The module of the second family has no rule for -1.
  other_.AddString(static_cast<UINT>(-1), "all ones");
  EXPECT_EQ(LoadStringA(&other_, static_cast<UINT>(-1)), "all ones");
}

TEST_F(Resources, TheTwoSwitchesDifferInNull) {
  {
    const CDQSwitchResourceHandle keeps(nullptr);
    EXPECT_EQ(AfxGetResourceHandle(), &current_);
  }
  {
    const CSwitchRCHandle sets(nullptr);
    EXPECT_EQ(AfxGetResourceHandle(), nullptr);
  }
  {
    const CDQSwitchResourceHandle inner(nullptr);
    AfxSetResourceHandle(&other_);
  }
  EXPECT_EQ(AfxGetResourceHandle(), &current_);
}

TEST_F(Resources, BoxesShowTheStringOfTheModule) {
  platform_.prompts.answer = BUTTON_NO;
  EXPECT_EQ(DQAfxMessageBox(100, BOX_YES_NO, 12, nullptr), BUTTON_NO);
  EXPECT_EQ(MessageBoxA(&other_, 100, BOX_STOP), BUTTON_NO);
  DQLIB_DoUnderConstructionMessageBox();
  const std::vector<Box>& boxes = platform_.prompts.boxes;
  ASSERT_EQ(boxes.size(), 3U);
  EXPECT_EQ(boxes[0], (Box{"current %1", 4, 12}));
  EXPECT_EQ(boxes[1], (Box{"other %1 %2 %1", 16, 100}));
  EXPECT_EQ(boxes[2], (Box{"This Feature is Under Construction.", 0, 0}));
}

TEST_F(Resources, TheModuleComesBackWhenAnOperationThrows) {
  platform_.prompts.on_show = [&] {
    EXPECT_EQ(AfxGetResourceHandle(), &other_);
    throw std::runtime_error("broken screen");
  };
  EXPECT_THROW(DQAfxMessageBox(100, BOX_OK, 0, &other_), std::runtime_error);
  EXPECT_EQ(AfxGetResourceHandle(), &current_);
  EXPECT_THROW(MessageBoxA(&other_, 100, BOX_OK), std::runtime_error);
  EXPECT_EQ(AfxGetResourceHandle(), &current_);
}

TEST_F(Resources, DirectOperationsTakeNullForTheSystem) {
  const std::string picture = WriteDib({{1, 1}, {RGB(1, 2, 3)}});
  platform_.modules.system.AddResource(RESOURCE_BITMAP, 1, picture);
  platform_.modules.system.AddResource(RESOURCE_CURSOR, 2, std::string(4, '\0') + picture);
  platform_.modules.system.AddResource(RESOURCE_ICON, 3, std::string(4, '\0') + picture);
  CBitmap bitmap;
  EXPECT_FALSE(DQLoadBitmap(bitmap, 1, &current_));
  EXPECT_TRUE(DQLoadBitmap(bitmap, 1, nullptr));
  EXPECT_EQ(DQLoadCursor(2, &current_), nullptr);
  EXPECT_NE(DQLoadCursor(2, nullptr), nullptr);
  EXPECT_EQ(DQLoadIcon(3, &current_), nullptr);
  EXPECT_NE(DQLoadIcon(3, nullptr), nullptr);
}

TEST_F(Resources, FindsRecordsByTypeAndLowWord) {
  constexpr struct {
    HRSRC (*find)(HINSTANCE, UINT);
    WORD type;
  } kCases[] = {
      {DQFindAcceleratorResource, 9}, {DQFindBitmapResource, 2},    {DQFindDialogResource, 5},
      {DQFindFontResource, 8},        {DQFindFontDirResource, 7},   {DQFindMenuResource, 4},
      {DQFindRCDataResource, 10},     {DQFindIconResource, 3},      {DQFindGroupIconResource, 14},
      {DQFindVersionResource, 16},    {DQFindToolbarResource, 241},
  };
  for (const auto& [find, type] : kCases) other_.AddResource(type, 7, "data");
  platform_.modules.system.AddResource(RESOURCE_MENU, 7, "the system's");
  for (const auto& [find, type] : kCases) {
    const HRSRC found = find(&other_, 0xABCD0007);
    ASSERT_NE(found, nullptr) << type;
    EXPECT_EQ(found->type, type);
    EXPECT_EQ(find(&other_, 8), nullptr) << type;
    EXPECT_EQ(find(&current_, 7), nullptr) << type;
  }
  EXPECT_EQ(DQFindMenuResource(nullptr, 7)->data, "the system's");
}

TEST_F(Resources, FindsStringsByTheirBlock) {
  other_.AddString(0x123F, "last of its block");
  const HRSRC block = DQFindStringResource(&other_, 0x1230);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(block->name, 0x124);
  EXPECT_EQ(DQFindStringResource(&other_, 0x123F), block);
  EXPECT_EQ(DQFindStringResource(&other_, 0x1240), nullptr);
  EXPECT_EQ(DQFindStringResource(&other_, 0x101230), block);
}

TEST_F(Resources, ListsComeOutReversed) {
  const std::pair<std::string, std::vector<const char*>> cases[] = {
      {"A;B;C", {"C", "B", "A"}},
      {";;A,;B b;", {"B b", "A"}},
      {";,;", {}},
      {std::string("A;B\0;C", 6), {"B", "A"}},
      {"only", {"only"}},
  };
  CStringList list;
  for (const auto& [text, expected] : cases) {
    other_.AddString(200, text);
    list.AddTail("old");
    DQLIB_LoadResourceList(&other_, 200, ";,", list);
    std::vector<std::string> tokens;
    for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
      tokens.emplace_back(list.GetNext(at));
    }
    EXPECT_EQ(tokens, std::vector<std::string>(expected.begin(), expected.end())) << text;
  }
  DQLIB_LoadResourceList(&other_, 201, ";", list);
  EXPECT_TRUE(list.IsEmpty());
  DQLIB_LoadResourceList(nullptr, 100, " ", list);
  EXPECT_EQ(list.GetHead(), "%1");
  DQLIB_LoadResourceList(nullptr, 100, "", list);
  EXPECT_EQ(list.GetHead(), "current %1");
}

TEST(DQCompareClassName, ComparesTheFirst32BytesWithoutCase) {
  const std::string name(32, 'n');
  CWnd window;
  CWnd long_window;
  ASSERT_TRUE(window.CreateWnd("SysTreeView"));
  ASSERT_TRUE(long_window.CreateWnd((name + "rest").c_str()));
  const HWND handle = window.GetSafeHwnd();
  EXPECT_TRUE(DQCompareClassName(handle, "sysTREEview"));
  for (const char* other : {"SysTree", "SysTreeViews", "", static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(DQCompareClassName(handle, other));
  }
  EXPECT_TRUE(DQCompareClassName(long_window.GetSafeHwnd(), name.c_str()));
  EXPECT_FALSE(DQCompareClassName(long_window.GetSafeHwnd(), (name + "rest").c_str()));
  window.DestroyWindow();
  EXPECT_FALSE(DQCompareClassName(handle, "SysTreeView"));
  EXPECT_FALSE(DQCompareClassName(nullptr, ""));
}

}  // namespace
}  // namespace dq
