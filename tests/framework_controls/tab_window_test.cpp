// Windows on tabs: what the strip shows and takes from a person, and which window is shown.

#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// A page that says when it is shown and hidden, and does what a test wants at its moments.
struct Page : CWnd {
  DECLARE_DYNCREATE(Page)
  ~Page() override { --alive, EndInDestructor(); }
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message == WM_CREATE && refuse) return -1;
    if (message == WM_SHOWWINDOW) {
      log += std::to_string(GetDlgCtrlID() - kFirstPaneId) + (wparam != 0 ? "+ " : "- ");
      if (const auto act = std::exchange(at_show, nullptr)) act();
    }
    return CWnd::WindowProc(message, wparam, lparam);
  }
  static inline std::string log;
  static inline bool refuse = false;
  static inline std::function<void()> at_show;
  static inline int alive = 0;
  const int count = ++alive;
};
IMPLEMENT_DYNCREATE(Page, CWnd)

/// A window of 200 by 100 with so many tabs "a", "b" and so on, 19 wide each.
struct Tabs : SEC3DTabWnd {
  explicit Tabs(int count) {
    frame.Create("Frame", "", {0, 0, 200, 100});
    Create(&frame);
    frame.RecalcLayout();
    for (char name = 'a'; name < 'a' + count; ++name) {
      AddTab(RUNTIME_CLASS(Page), std::string(1, name).c_str());
    }
    Page::log.clear();
    frame.SetActiveWindow();
  }
  ~Tabs() override { Page::at_show = nullptr, DestroyWindow(), frame.DestroyWindow(); }
  SEC3DTabControl& strip() { return GetTabControl(); }
  void Mouse(UINT message, int x, WPARAM keys = 0) {
    strip().SendMessage(message, keys, MakeLParam(x, 5));
  }
  std::string Labels() {
    std::string labels;
    for (int at = 0; at < GetTabCount(); ++at) {
      labels += (at == GetActiveTab() ? "*" : "") + std::string(strip().GetTabLabel(at).View());
    }
    return labels;
  }
  CFrameWnd frame;
};

TEST(TabWindow, ShowsTheWindowOfTheActiveTabAndTellsOfTabsAsOfRows) {
  Tabs tabs(3);
  EXPECT_EQ(Page::alive, 3);
  EXPECT_TRUE(tabs.ActivateTab(1) && tabs.ActivateTab(2));
  EXPECT_EQ(std::exchange(Page::log, ""), "1+ 2+ 1- ");
  EXPECT_EQ(Text(tabs.GetTabWindow(2)->GetPlace()), "0,24-200,100");
  RecordingObserver observer;
  EXPECT_TRUE(tabs.RemoveTab(0) && tabs.RemoveTab(1));
  EXPECT_EQ(observer.Take().substr(0, 14), "59647 -rows@0*");
  EXPECT_EQ(tabs.Labels(), "*b");
  EXPECT_EQ(std::exchange(Page::log, ""), "1+ 2- ");
  EXPECT_EQ(tabs.InsertTab(0, RUNTIME_CLASS(Page), nullptr), 0);
  EXPECT_THAT(observer.Take(), testing::HasSubstr("59647 +rows@0*1"));
  EXPECT_EQ(tabs.Labels(), "*b");
  // Positions and windows that aren't there.
  CWnd other;
  for (const int at : {-1, 3}) EXPECT_EQ(tabs.InsertTab(at, RUNTIME_CLASS(Page), "x"), -1);
  for (CWnd* const window : {&other, static_cast<CWnd*>(&tabs), tabs.GetTabWindow(0)}) {
    EXPECT_EQ(tabs.AddTab(window, "x"), -1);
  }
  EXPECT_FALSE(tabs.ActivateTab(2) || tabs.RemoveTab(-1) || tabs.RemoveTab(2));
  EXPECT_EQ(tabs.strip().GetTabIcon(7) + tabs.strip().GetTabLabel(7).GetLength(), 0U);
  // No class, one of no window, and a window that refuses leave a tab without one.
  Page::refuse = true;
  EXPECT_EQ(tabs.AddTab(static_cast<const CRuntimeClass*>(nullptr), "x"), 2);
  EXPECT_EQ(tabs.AddTab(RUNTIME_CLASS(CDocument), "y"), 3);
  EXPECT_EQ(tabs.AddTab(RUNTIME_CLASS(Page), "z"), 4);
  Page::refuse = false;
  EXPECT_TRUE(tabs.ActivateTab(4) && tabs.GetTabWindow(4) == nullptr);
  EXPECT_FALSE(tabs.GetTabWindow(1)->IsShown());
}

TEST(TabWindow, HandlersMayTurnToAnotherTabAndEndTheWindow) {
  Tabs tabs(3);
  tabs.ActivateTab(0);
  Page::at_show = [&] { tabs.ActivateTab(2); };
  tabs.ActivateTab(1);
  EXPECT_EQ(tabs.Labels(), "ab*c");
  EXPECT_EQ(Page::log, "0+ 1+ 2+ 1- 0- ");
  for (const bool shown : {true, false})
    EXPECT_EQ(tabs.GetTabWindow(shown ? 2 : 1)->IsShown(), shown);
  Page::at_show = [&] { tabs.GetTabWindow(0)->DestroyWindow(), tabs.RemoveTab(0); };
  tabs.ActivateTab(0);
  EXPECT_EQ(tabs.Labels(), "*bc");
  Page::at_show = [&] { tabs.frame.DestroyWindow(); };
  tabs.ActivateTab(1);
  EXPECT_FALSE(tabs.ActivateTab(0) && tabs.GetTabWindow(0) != nullptr);
}

TEST(TabWindow, LeavesAloneAWindowThatHasMovedToAnotherParent) {
  Tabs tabs(2);
  CWnd* const moved = tabs.GetTabWindow(1);
  moved->SetParent(&tabs.frame);
  moved->MoveWindow(1, 2, 3, 4);
  tabs.ActivateTab(1);
  tabs.RecalcLayout();
  EXPECT_TRUE(Text(moved->GetPlace()) == "1,2-4,6" && !moved->IsShown());
}

TEST(TabStrip, TakesClicksKeysAndTheWheelAndScrollsWhereTabsAreTooMany) {
  Tabs tabs(26);
  SEC3DTabControl& strip = tabs.strip();
  tabs.ActivateTab(0);
  // 200 - 2 before them - 32 for the buttons: eight whole tabs and a part of the ninth.
  EXPECT_EQ(Text(strip.GetTabRect(0)) + " " + Text(strip.GetTabRect(8)), "2,0-21,24 154,0-168,24");
  for (const auto& [x, part] :
       Rows<int, int>{{1, -1}, {2, 0}, {20, 0}, {21, 1}, {167, 8}, {168, -2}, {199, -3}}) {
    EXPECT_EQ(strip.HitTest({x, 5}), part) << x;
  }
  const auto first = [&](UINT message, int x, WPARAM keys = 0) {
    tabs.Mouse(message, x, keys);
    return strip.GetFirstVisible();
  };
  EXPECT_EQ(first(WM_LBUTTONDOWN, 199), 1);
  EXPECT_EQ(first(WM_TIMER, 0, 1), 2);
  EXPECT_EQ(first(WM_LBUTTONUP, 199), 2);
  EXPECT_EQ(first(WM_TIMER, 0, 1), 2);
  EXPECT_EQ(first(WM_MOUSEWHEEL, 0, MakeWParam(0, 0x10000 - 240)), 4);
  EXPECT_EQ(first(WM_MOUSEWHEEL, 0, MakeWParam(0, 60)), 4);
  EXPECT_EQ(first(WM_MOUSEWHEEL, 0, MakeWParam(0, 60)), 3);
  EXPECT_EQ(first(WM_LBUTTONDOWN, 22), 3);
  EXPECT_EQ(tabs.GetActiveTab(), 4);
  EXPECT_EQ(CWnd::GetFocus(), tabs.GetTabWindow(4));
  tabs.Mouse(WM_LBUTTONUP, 22);
  strip.SetFocus();
  for (const auto& [key, active, shown] : Rows<WPARAM, int, int>{{VK_RIGHT, 5, 3},
                                                                 {VK_END, 25, 18},
                                                                 {VK_RIGHT, 25, 18},
                                                                 {VK_LEFT, 24, 18},
                                                                 {VK_HOME, 0, 0}}) {
    strip.SendMessage(WM_KEYDOWN, key);
    EXPECT_EQ(tabs.GetActiveTab(), active);
    EXPECT_EQ(strip.GetFirstVisible(), shown);
    EXPECT_EQ(CWnd::GetFocus(), &strip);
  }
  // What is in sight stays there while tabs go before it.
  strip.ScrollToTab(25);
  tabs.RemoveTab(0);
  EXPECT_EQ(strip.GetFirstVisible(), 17);
  tabs.frame.MoveWindow(0, 0, 0, 0);
  EXPECT_EQ(strip.HitTest({0, 0}), -1);
  tabs.frame.MoveWindow(0, 0, 600, 100);
  EXPECT_EQ(Text(strip.GetTabRect(24)) + " " + std::to_string(strip.GetFirstVisible()),
            "458,0-477,24 0");
}

TEST(TabStrip, DrawsTheSelectedTabInFrontOfTheOthers) {
  Tabs tabs(2);
  tabs.ActivateTab(0);
  tabs.strip().SetTabLabel(1, std::string(1000, 'w').c_str());
  EXPECT_EQ(tabs.strip().GetTabRect(1).left, 21);
  RecordingDC dc;
  tabs.strip().Paint(dc);
  const std::string drawn = dc.Text();
  EXPECT_THAT(drawn, testing::HasSubstr("text 8,5 \"a\"\n"));
  EXPECT_THAT(drawn, testing::HasSubstr("fill 21,2 168,23 f0f0f0\n"));
  EXPECT_THAT(drawn, testing::HasSubstr("w...\""));
  tabs.SetTabSizes({30, 10, TWS_TABS_ON_BOTTOM});
  EXPECT_EQ(Text(tabs.strip().GetPlace()) + " " + Text(tabs.GetTabWindow(0)->GetPlace()),
            "0,70-200,100 0,0-200,70");
  EXPECT_EQ(tabs.strip().GetTabRect(0).left, 10);
  tabs.SetTabSizes({24, -1, TWS_TABS_ON_BOTTOM});
  EXPECT_EQ(tabs.strip().GetTabRect(0).left, 0);
  tabs.frame.MoveWindow(0, 0, 100, 100);
  RecordingDC narrow;
  tabs.strip().Paint(narrow);
  // The heads of the arrows; only the one forth can be chosen.
  EXPECT_THAT(narrow.Text(),
              testing::HasSubstr("fill 74,12 75,13 6d6d6d\nfill 75,11 76,14 6d6d6d\n"));
  EXPECT_THAT(narrow.Text(),
              testing::EndsWith("fill 92,11 93,14 000000\nfill 93,12 94,13 000000\n"));
  tabs.SetTabSizes({});
  EXPECT_FALSE(tabs.strip().IsShown());
  EXPECT_EQ(Text(tabs.GetTabWindow(0)->GetPlace()), "0,0-100,100");
}

}  // namespace
}  // namespace dq::test
