#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "dqlib/framework/windows/dialog.h"
#include "dqlib/framework/windows/doc_view.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/tool_bar.h"
#include "tests/support/main_window.h"

namespace dq {
namespace {

/// Every message that test windows get, as "id:message".
using Log = std::vector<std::string>;

/// A window that keeps what it is sent and runs a handler of the test's for a message.
struct LogWnd : CWnd {
  LogWnd(Log& to, CWnd* parent, int id) : log(to) {
    CreateWnd({.class_name = "Test", .place = {0, 0, 100, 50}, .parent = parent, .id = id});
    log.clear();
  }
  ~LogWnd() override { DestroyWindow(); }

  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    log.push_back(std::to_string(GetDlgCtrlID()) + ":" + std::to_string(message));
    if (on.contains(message)) on[message]();
    return CWnd::WindowProc(message, wparam, lparam);
  }
  void PostNcDestroy() override { ++ended; }

  Log& log;
  std::map<UINT, std::function<void()>> on;
  int ended = 0;
};

/// The windows 1, below it 2, 4 and 5, and 3 below 2.
struct WindowTree : ::testing::Test {
  Log log;
  LogWnd top{log, nullptr, 1};
  LogWnd child{log, &top, 2};
  LogWnd inner{log, &child, 3};
  LogWnd second{log, &top, 4};
  LogWnd third{log, &top, 5};
};

TEST_F(WindowTree, KeepsChildrenInOrderAndFindsThemByTheirIds) {
  LogWnd parent(log, nullptr, 1);
  std::vector<std::unique_ptr<LogWnd>> children;
  for (int i = 0; i < 100; ++i) children.push_back(std::make_unique<LogWnd>(log, &parent, i % 60));
  EXPECT_EQ(parent.GetDlgItem(7), children[7].get()) << "the first of two";
  children[7]->SetWindowOrder(children[99].get());
  EXPECT_EQ(parent.GetDlgItem(7), children[67].get());
  children[67].reset();
  EXPECT_EQ(parent.GetDlgItem(7), children[7].get());
  children[7]->SetDlgCtrlID(777);
  EXPECT_EQ(parent.GetDlgItem(7), nullptr);
  children[7]->SetDlgCtrlID(8);
  EXPECT_EQ(parent.GetDlgItem(8), children[8].get());
  CWnd taker;
  ASSERT_TRUE(taker.SubclassDlgItem(9, &parent));
  EXPECT_EQ(parent.GetDlgItem(9), &taker);
  EXPECT_EQ(taker.GetPrevWindow(), children[8].get());
  EXPECT_EQ(taker.GetNextWindow(), children[10].get());
  EXPECT_TRUE(taker.DestroyWindow());
  EXPECT_EQ(parent.GetDlgItem(9), children[69].get());
  EXPECT_TRUE(children[69]->DestroyWindow());
  EXPECT_EQ(parent.GetDlgItem(9), nullptr);
  children[70]->SetWindowOrder(nullptr);
  EXPECT_EQ(parent.GetDlgItem(10), children[70].get()) << "the first now";
  int count = 0;
  for (const CWnd* at = parent.GetTopWindow(); at != nullptr; at = at->GetNextWindow()) {
    ++count;
    EXPECT_EQ(at->GetParent(), &parent);
    EXPECT_TRUE(at->GetNextWindow() == nullptr || at->GetNextWindow()->GetPrevWindow() == at);
  }
  EXPECT_EQ(count, 97);
  EXPECT_EQ(parent.SetParent(children[3].get()), nullptr) << "not below itself";
  EXPECT_EQ(children[3]->SetParent(children[4].get()), &parent);
  EXPECT_EQ(children[3]->GetTopLevelParent(), &parent);
}

TEST_F(WindowTree, EndsParentsFirstAndTellsTheLastToChildren) {
  top.on[WM_DESTROY] = [&] {
    EXPECT_FALSE(top.DestroyWindow()) << "it is ending already";
    EXPECT_EQ(top.GetDlgItem(4), &second) << "the children are still there";
    CWnd late;
    EXPECT_FALSE(late.CreateWnd({.class_name = "Late", .parent = &top}));
  };
  child.on[WM_DESTROY] = [&] { second.DestroyWindow(); };
  EXPECT_TRUE(top.DestroyWindow());
  EXPECT_EQ(log, (Log{"1:2", "2:2", "4:2", "3:2", "5:2"}));
  for (const LogWnd* window : {&top, &child, &inner, &second, &third}) {
    EXPECT_EQ(window->GetSafeHwnd(), nullptr);
    EXPECT_EQ(window->ended, 1);
  }
}

TEST_F(WindowTree, EndsWhatDescendantsOwnAlsoAfterAnotherObjectTookTheirPlace) {
  auto former = std::make_unique<LogWnd>(log, &top, 6);
  CWnd owned;
  ASSERT_TRUE(owned.CreateWnd({.class_name = "Popup", .owner = former.get()}));
  former->InvalidateRect({1, 1, 5, 5});
  CWnd taker;
  ASSERT_TRUE(taker.SubclassDlgItem(6, &top));
  former.reset();
  EXPECT_EQ(owned.GetOwner(), &taker);
  EXPECT_EQ(taker.GetUpdateRect(), (CRect{1, 1, 5, 5}));
  top.DestroyWindow();
  EXPECT_EQ(owned.GetSafeHwnd(), nullptr);
}

TEST_F(WindowTree, ObjectsMayGoInAnyOrderAndInTheirOwnHandlers) {
  auto lowest = std::make_unique<LogWnd>(log, &inner, 6);
  top.on[WM_DESTROY] = [&] { lowest.reset(); };
  inner.on[WM_SIZE] = [&] { top.DestroyWindow(); };
  inner.MoveWindow(1, 2, 30, 40);
  EXPECT_EQ(lowest, nullptr);
  EXPECT_EQ(inner.GetSafeHwnd(), nullptr);
  auto other = std::make_unique<LogWnd>(log, nullptr, 1);
  LogWnd below(log, other.get(), 2);
  below.on[WM_DESTROY] = [&] { other.reset(); };
  other->DestroyWindow();
  EXPECT_EQ(other, nullptr);
  EXPECT_EQ(below.GetSafeHwnd(), nullptr);
}

TEST_F(WindowTree, WindowsOfOneOwnerEndWithItFromTheLastAndEachMayGoBefore) {
  LogWnd owner(log, nullptr, 1);
  std::vector<std::unique_ptr<CWnd>> owned;
  for (int id = 0; id < 6; ++id) {
    owned.push_back(std::make_unique<CWnd>());
    ASSERT_TRUE(owned.back()->CreateWnd({.class_name = "Popup", .owner = &owner, .id = id}));
  }
  for (const std::size_t first : {0U, 3U, 5U}) EXPECT_TRUE(owned[first]->DestroyWindow());
  CWnd late;
  ASSERT_TRUE(late.CreateWnd({.class_name = "Popup", .owner = &owner}));
  owned[2].reset();
  EXPECT_EQ(late.GetOwner(), &owner);
  owner.DestroyWindow();
  for (const std::size_t last : {1U, 4U}) EXPECT_EQ(owned[last]->GetSafeHwnd(), nullptr);
  EXPECT_EQ(late.GetSafeHwnd(), nullptr);
}

TEST_F(WindowTree, ChainOfWindowsEndsFromItsLastAndItsLastCallsMayDropTheOnesAbove) {
  struct Link : CWnd {
    void PostNcDestroy() override {
      ended->push_back(GetDlgCtrlID());
      if (drops != nullptr) drops->reset();
    }
    std::vector<int>* ended = nullptr;
    std::unique_ptr<Link>* drops = nullptr;
  };
  std::vector<int> ended;
  std::vector<std::unique_ptr<Link>> chain;
  CWnd* above = &top;
  for (int id = 0; id < 6; ++id) {
    chain.push_back(std::make_unique<Link>());
    chain.back()->ended = &ended;
    ASSERT_TRUE(chain.back()->CreateWnd({.class_name = "Link", .parent = above, .id = id}));
    above = chain.back().get();
  }
  chain[5]->drops = &chain[3];
  chain[0]->DestroyWindow();
  EXPECT_EQ(ended, (std::vector{5, 4, 2, 1, 0}));
  EXPECT_EQ(chain[3], nullptr);
  EXPECT_FALSE(top.IsChild(chain[0].get()));
}

TEST_F(WindowTree, SendsToDescendantsThatAreStillThere) {
  inner.on[WM_USER] = [&] { second.DestroyWindow(); };
  top.SendMessageToDescendants(WM_USER);
  EXPECT_EQ(log, (Log{"2:1024", "3:1024", "4:2", "5:1024"}));
}

TEST_F(WindowTree, RectanglesFollowParentsAndFrames) {
  top.SetFrameWidths({4, 20, 4, 4});
  top.MoveWindow(100, 200, 300, 150);
  child.MoveWindow(10, 10, 80, -5);
  inner.MoveWindow({1, 2, 11, 22});
  EXPECT_EQ(top.GetClientRect(), (CRect{0, 0, 292, 126}));
  EXPECT_EQ(child.GetWindowRect(), (CRect{114, 230, 194, 230})) << "a negative height counts as 0";
  EXPECT_EQ(inner.GetWindowRect(), (CRect{115, 232, 125, 252}));
  EXPECT_EQ(top.ScreenToClient(inner.GetWindowRect()), (CRect{11, 12, 21, 32}));
  log.clear();
  child.MoveWindow(10, 10, 80, 0);
  EXPECT_EQ(log, Log{}) << "nothing has changed";
  child.MoveWindow(11, 10, 80, 0);
  child.MoveWindow(11, 10, 90, 7);
  EXPECT_EQ(log, (Log{"2:3", "2:5"}));
  child.MoveWindow(2147483000, 0, 2147483000, 1);
  EXPECT_EQ(child.GetPlace().right, 2147483647);
  inner.MoveWindow(2147483000, -2147483647, 2147483647, 2147483647);
  EXPECT_EQ(inner.ScreenToClient(inner.ClientToScreen({3, 4})), (CPoint{3, 4})) << "they wrap";
  LogWnd whole(log, nullptr, 4);
  whole.SetFrameWidths({-2147483647 - 1, 0, 2147483647, 0});
  EXPECT_EQ(whole.GetClientRect().Width(), 101);
}

TEST_F(WindowTree, FocusGoesToWhatIsEnabledAndLeavesWhatIsHidden) {
  child.SetFocus();
  log.clear();
  EXPECT_EQ(second.SetFocus(), &child);
  EXPECT_EQ(log, (Log{"2:8", "4:7"}));
  child.EnableWindow(false);
  child.SetFocus();
  EXPECT_EQ(CWnd::GetFocus(), &second);
  EXPECT_TRUE(top.ShowWindow(SW_HIDE));
  EXPECT_EQ(CWnd::GetFocus(), nullptr) << "it was below a window that is hidden";
  EXPECT_TRUE(second.IsShown() && !second.IsWindowVisible());
  top.ShowWindow(SW_SHOW);
  // A handler that moves the focus on has the last word.
  second.on[WM_KILLFOCUS] = [&] { top.SetFocus(); };
  second.SetFocus();
  child.EnableWindow();
  child.SetFocus();
  EXPECT_EQ(CWnd::GetFocus(), &top);
  top.DestroyWindow();
  EXPECT_EQ(CWnd::GetFocus(), nullptr);
}

TEST_F(WindowTree, PlacementKeepsTheNormalRectangle) {
  top.MoveWindow(10, 20, 300, 200);
  top.ShowWindow(SW_SHOWMAXIMIZED);
  WINDOWPLACEMENT placement;
  ASSERT_TRUE(top.GetWindowPlacement(&placement));
  placement.rcNormalPosition = {1, 2, 31, 42};
  EXPECT_TRUE(top.SetWindowPlacement(&placement));
  EXPECT_TRUE(top.IsZoomed());
  top.ShowWindow(SW_SHOWNORMAL);
  EXPECT_EQ(top.GetWindowRect(), (CRect{1, 2, 31, 42}));
  placement.length = 40;
  EXPECT_FALSE(top.SetWindowPlacement(&placement));
  EXPECT_FALSE(CWnd().GetWindowPlacement(&placement));
}

TEST_F(WindowTree, RestoringGivesWhatAMinimisedWindowWasBefore) {
  constexpr CRect kNormal{10, 20, 310, 220};
  const CRect full{0, 0, GetScreenSize().cx, GetScreenSize().cy};
  // The commands, and the last state as the placement has it: show command and flags.
  const struct {
    std::vector<int> commands;
    UINT show;
    UINT flags;
    CRect place;
  } rows[] = {
      {{SW_SHOWMAXIMIZED}, 3, 0, full},
      {{SW_SHOWMAXIMIZED, SW_RESTORE}, 1, 0, kNormal},
      {{SW_SHOWMAXIMIZED, SW_MINIMIZE}, 2, 2, kNormal},
      {{SW_SHOWMAXIMIZED, SW_MINIMIZE, SW_RESTORE}, 3, 2, full},
      {{SW_SHOWMAXIMIZED, SW_SHOWMINNOACTIVE, SW_SHOWMINIMIZED, SW_RESTORE}, 3, 2, full},
      {{SW_SHOWMAXIMIZED, SW_MINIMIZE, SW_SHOW}, 2, 2, kNormal},
      {{SW_SHOWMAXIMIZED, SW_MINIMIZE, SW_SHOWNORMAL}, 1, 0, kNormal},
      {{SW_SHOWMAXIMIZED, SW_MINIMIZE, SW_SHOWNOACTIVATE}, 1, 0, kNormal},
      {{SW_SHOWMAXIMIZED, SW_MINIMIZE, SW_RESTORE, SW_RESTORE}, 1, 0, kNormal},
      {{SW_SHOWMAXIMIZED, SW_RESTORE, SW_MINIMIZE, SW_RESTORE}, 1, 0, kNormal},
      {{SW_MINIMIZE}, 2, 0, kNormal},
      {{SW_MINIMIZE, SW_RESTORE}, 1, 0, kNormal},
      {{SW_MINIMIZE, SW_SHOWMAXIMIZED, SW_RESTORE}, 1, 0, kNormal},
      {{SW_RESTORE}, 1, 0, kNormal},
  };
  for (const auto& row : rows) {
    LogWnd window(log, nullptr, 1);
    window.MoveWindow(kNormal);
    for (const int command : row.commands) window.ShowWindow(command);
    WINDOWPLACEMENT placement;
    ASSERT_TRUE(window.GetWindowPlacement(&placement));
    EXPECT_EQ(placement.showCmd, row.show) << &row - rows;
    EXPECT_EQ(placement.flags, row.flags) << &row - rows;
    EXPECT_EQ(window.GetWindowRect(), row.place) << &row - rows;
    EXPECT_EQ(placement.rcNormalPosition, kNormal) << &row - rows;
    // Another window takes the placement over, and what it is restored to.
    LogWnd other(log, nullptr, 2);
    EXPECT_TRUE(other.SetWindowPlacement(&placement));
    for (LogWnd* each : {&window, &other}) each->ShowWindow(SW_RESTORE);
    EXPECT_EQ(other.GetWindowRect(), window.GetWindowRect()) << &row - rows;
  }
}

// ---- Commands

constexpr UINT kOpen = 40001;
constexpr UINT kClose = 40002;

/// A target with handlers for two commands, which counts what it handles.
struct Target : CWnd {
  Target() { CreateWnd("Target"); }
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
    static constexpr MessageMapEntry kEntries[] = {
        CommandEntry<&Target::OnOpen>(kOpen),
        UpdateEntry<&Target::OnUpdateOpen>(kOpen),
        CommandRangeEntry<&Target::OnRange>(kClose, kClose + 9),
        MessageEntry<&Target::OnApp>(WM_APP + 7),
    };
    return CallEntry(kEntries, *this, key, arguments) || CWnd::CallMapped(key, arguments);
  }
  void OnOpen() { ++opened; }
  void OnUpdateOpen(CCmdUI* ui) { ui->Enable(enabled ? 1 : 0); }
  BOOL OnRange(UINT id) { return id == kClose ? 0 : 1; }
  LRESULT OnApp(WPARAM wparam, LPARAM lparam) { return static_cast<LRESULT>(wparam) + lparam; }

  int opened = 0;
  bool enabled = true;
};

TEST(Commands, GoToTheActiveViewThenTheFrameThenTheApplication) {
  testing::MainWindow main;
  CFrameWnd frame;
  ASSERT_TRUE(frame.Create("Frame", "caption", {0, 0, 10, 10}));
  Target view;
  frame.SetActiveView(&view);
  frame.SendMessage(WM_COMMAND, kOpen);
  EXPECT_EQ(view.opened, 1);
  int asked = 0;
  EXPECT_TRUE(frame.OnCmdMsg(kClose + 9, CN_COMMAND, nullptr, &asked));
  EXPECT_FALSE(frame.OnCmdMsg(kClose + 10, CN_COMMAND, nullptr, &asked));
  EXPECT_EQ(view.opened, 1) << "asking calls nothing";
  view.enabled = false;
  frame.SendMessage(WM_COMMAND, kOpen);
  EXPECT_EQ(view.opened, 1) << "a disabled command isn't run from a menu";
  EXPECT_TRUE(frame.OnCmdMsg(kClose + 9, CN_COMMAND, nullptr, nullptr));
  EXPECT_FALSE(frame.OnCmdMsg(kClose, CN_COMMAND, nullptr, nullptr)) << "the handler declines";
  EXPECT_EQ(view.SendMessage(WM_APP + 7, 3, 4), 7);
  view.DestroyWindow();
  EXPECT_EQ(frame.GetActiveView(), nullptr);
  EXPECT_FALSE(frame.OnCmdMsg(kOpen, CN_COMMAND, nullptr, nullptr));
}

/// Something that handles the commands 33001 and on whose letters it is given, and says by its name
/// that it did.
template <typename Base>
struct Stop : Base {
  using Base::Base;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
    if (key.message != WM_COMMAND || key.code != CN_COMMAND ||
        handles.find(static_cast<char>(key.id - 33001 + 'a')) == std::string::npos) {
      return Base::CallMapped(key, arguments);
    }
    if (!arguments.only_ask) *asked += name;
    return true;
  }
  std::string handles;
  char name = '?';
  std::string* asked = nullptr;
};

TEST(Commands, GoFromWhereTheyAreSentUpToTheApplication) {
  std::string asked;
  Stop<CWinApp> app("routes");
  Stop<CMDIFrameWnd> main;
  Stop<CMDIChildWnd> child;
  Stop<CMDIChildWnd> other;
  Stop<CView> view;
  Stop<CDocument> document;
  Stop<CDialog> dialog;
  CToolBar bars[2];
  ASSERT_TRUE(main.Create("Frame", "", {}));
  for (CMDIChildWnd* each : {&other, &child}) ASSERT_TRUE(each->Create("Child", "", {}, &main));
  ASSERT_TRUE(view.Create(&child, {}, 1, &document));
  ASSERT_TRUE(dialog.CreateIndirect({}, &main));
  const auto set = [&asked](auto& stop, char name, const char* handles) {
    stop.name = name;
    stop.handles = handles;
    stop.asked = &asked;
  };
  set(app, 'A', "abcdefgh");
  set(main, 'M', "abcdef");
  set(dialog, 'D', "ah");
  set(child, 'C', "abd");
  set(document, 'T', "abe");
  set(view, 'V', "a");
  set(other, 'O', "g");
  // The windows to which each command is sent, and who gets it. '-': nobody.
  const struct {
    CWnd* to;
    const char* got;
  } rows[] = {
      {&main, "VTACTAAA-"}, {&child, "VTACTAAA-"}, {&other, "AAAAAAOA-"}, {&dialog, "DTACTAAD-"}};
  for (const auto& row : rows) {
    std::string got;
    for (UINT id = 33001; id < 33010; ++id) {
      asked.clear();
      row.to->SendMessage(WM_COMMAND, id);
      got += asked.empty() ? "-" : asked;
    }
    EXPECT_EQ(got, row.got) << &row - rows;
  }
  // Without a child frame that is active, the main frame's own come first.
  child.MDIDestroy();
  other.MDIDestroy();
  asked.clear();
  for (UINT id = 33001; id < 33010; ++id) main.SendMessage(WM_COMMAND, id);
  EXPECT_EQ(asked, "MMMMMMAA");
}

TEST(Commands, ButtonsOfAChildFrameAreEnabledForTheApplicationsCommands) {
  std::string asked;
  Stop<CWinApp> app("buttons");
  app.handles = "a";
  CMDIFrameWnd main;
  CMDIChildWnd child;
  CToolBar bar;
  ASSERT_TRUE(main.Create("Frame", "", {}) && child.Create("Child", "", {}, &main));
  ASSERT_TRUE(bar.Create(&child));
  const WORD commands[] = {33001, 33002};
  bar.SetButtons(commands);
  app.m_pMainWnd = &main;
  PumpUntilIdle();
  EXPECT_TRUE(bar.GetButton(0).enabled);
  EXPECT_FALSE(bar.GetButton(1).enabled);
  app.asked = &asked;
  app.name = 'A';
  EXPECT_TRUE(bar.ClickButton(0));
  EXPECT_FALSE(bar.ClickButton(1));
  EXPECT_EQ(asked, "A");
}

TEST(Commands, ChildFramesAreActiveOneAtATime) {
  CMDIFrameWnd frame;
  ASSERT_TRUE(frame.Create("Frame", "caption", {0, 0, 300, 200}));
  CMDIChildWnd first;
  CMDIChildWnd second;
  Target view;
  for (CMDIChildWnd* child : {&first, &second}) child->Create("Child", "", {}, &frame);
  EXPECT_EQ(frame.MDIGetActive(), &second);
  first.SetActiveView(&view);
  EXPECT_FALSE(frame.OnCmdMsg(kOpen, CN_COMMAND, nullptr, nullptr));
  frame.MDINext();
  EXPECT_EQ(frame.GetActiveFrame(), &first);
  EXPECT_TRUE(frame.OnCmdMsg(kOpen, CN_COMMAND, nullptr, nullptr));
  frame.MoveWindow(0, 0, 400, 300);
  EXPECT_EQ(frame.GetMDIClient()->GetPlace(), (CRect{0, 0, 400, 300}));
  first.MDIDestroy();
  EXPECT_EQ(frame.MDIGetActive(), &second);
  frame.DestroyWindow();
  EXPECT_EQ(frame.GetActiveFrame(), &frame);
}

}  // namespace
}  // namespace dq
