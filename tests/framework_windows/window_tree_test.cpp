// The tree of windows, what its observer is told, and the way of commands through it.

#include "tests/support/doubles.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// A window that tells every message it gets as "id:message " and runs the test's handlers.
struct LogWnd : CWnd {
  static inline std::string log;

  LogWnd() = default;
  LogWnd(CWnd* parent, int id) {
    CreateWnd({.class_name = "Test", .place = {0, 0, 100, 50}, .parent = parent, .id = id});
    log.clear();
  }
  ~LogWnd() override { DestroyWindow(); }

  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    log += std::to_string(GetDlgCtrlID()) + ":" + std::to_string(message) + " ";
    if (on.contains(message)) on[message]();
    return CWnd::WindowProc(message, wparam, lparam);
  }
  void PostNcDestroy() override {
    log += std::to_string(GetDlgCtrlID()) + ". ";
    if (on.contains(0)) on[0]();
  }
  std::string Take() { return std::exchange(log, {}); }

  /// By messages, and by 0 for the end.
  std::map<UINT, std::function<void()>> on;
};

/// The windows 1, below it 2, 4 and 5, and 3 below 2.
struct WindowTree : testing::Test {
  LogWnd top{nullptr, 1}, child{&top, 2}, inner{&child, 3}, second{&top, 4}, third{&top, 5};
};

TEST_F(WindowTree, KeepsChildrenInOrderAndFindsTheFirstOfAnIdHoweverTheyChange) {
  std::mt19937 random(20261);
  std::vector<std::unique_ptr<LogWnd>> plain;
  LogWnd parent(nullptr, 1);
  for (int step = 0; step < 4000; ++step) {
    const int id = static_cast<int>(random() % 40);
    const auto at = plain.begin() + static_cast<int>(random() % (plain.size() + 1));
    const auto first = std::ranges::find(plain, id, &LogWnd::GetDlgCtrlID);
    ASSERT_EQ(parent.GetDlgItem(id), first == plain.end() ? nullptr : first->get()) << step;
    const unsigned what = random() % 16;
    if (at == plain.end() || (what < 6 && plain.size() < 70)) {
      plain.push_back(std::make_unique<LogWnd>(&parent, id));
    } else if (what < 10) {
      plain.erase(at);
    } else if (what < 12) {
      (*at)->SetDlgCtrlID(id);
    } else if (what < 15) {
      (*at)->SetWindowOrder(what == 14 ? nullptr : plain.back().get());
      what == 14 ? std::rotate(plain.begin(), at, at + 1) : std::rotate(at, at + 1, plain.end());
    } else if (first != plain.end()) {
      auto taker = std::make_unique<LogWnd>();
      ASSERT_TRUE(taker->SubclassDlgItem(id, &parent));
      *first = std::move(taker);
    }
    const CWnd *child_at = parent.GetTopWindow(), *before = nullptr;
    for (const auto& each : plain) {
      ASSERT_EQ(child_at, each.get()) << step;
      ASSERT_TRUE(each->GetPrevWindow() == before && each->GetParent() == &parent) << step;
      child_at = (before = child_at)->GetNextWindow();
    }
    ASSERT_EQ(child_at, nullptr) << step;
  }
  EXPECT_EQ(child.SetParent(&inner), nullptr) << "not below itself";
  EXPECT_TRUE(inner.SetParent(&third) == &child && inner.GetTopLevelParent() == &top);
  CWnd owned;
  owned.CreateWnd({.class_name = "O", .owner = &inner});
  EXPECT_TRUE(top.SetParent(&owned) == nullptr && owned.GetOwner() == nullptr);
}

TEST_F(WindowTree, EndsParentsFirstAndTellsTheLastToChildren) {
  top.on[WM_DESTROY] = [&] {
    EXPECT_FALSE(top.DestroyWindow() || CWnd().CreateWnd({.class_name = "Late", .parent = &top}));
    EXPECT_EQ(top.GetDlgItem(4), &second) << "the children are still there";
  };
  child.on[WM_DESTROY] = [&] { second.DestroyWindow(); };
  EXPECT_TRUE(top.DestroyWindow() && top.Take() == "1:2 2:2 4:2 4. 3:2 5:2 3. 2. 5. 1. ");
  for (const CWnd* each : {&top, &child, &third}) EXPECT_EQ(each->GetSafeHwnd(), nullptr);
}

TEST_F(WindowTree, EndsAsAWholeWhateverHandlersThrow) {
  child.on[WM_DESTROY] = [] { throw CFileException(); };
  inner.on[0] = top.on[0] = [] { throw CUserException(); };
  EXPECT_THROW(top.DestroyWindow(), CFileException) << "the first";
  EXPECT_EQ(top.Take(), "1:2 2:2 3:2 4:2 5:2 3. 2. 4. 5. 1. ");
  EXPECT_TRUE(top.CreateWnd("Again") && child.CreateWnd({.class_name = "C", .parent = &top}));
  inner.on = child.on = top.on = {};
  auto around = std::make_unique<CWnd>();
  around->CreateWnd("Around");
  LogWnd below(around.get(), 6);
  below.on[WM_DESTROY] = [] { throw CUserException(); };
  around.reset();
  EXPECT_EQ(below.GetSafeHwnd(), nullptr) << "a destructor has nobody to tell";
}

TEST_F(WindowTree, OwnedWindowsEndWithTheirOwnerFromTheLastAndEachMayGoBefore) {
  auto former = std::make_unique<LogWnd>(&top, 6);
  std::vector<std::unique_ptr<LogWnd>> owned;
  for (int id = 10; id < 16; ++id) {
    owned.push_back(std::make_unique<LogWnd>());
    ASSERT_TRUE(owned.back()->CreateWnd({.class_name = "P", .owner = former.get(), .id = id}));
    if (id == 14) {
      for (const std::size_t first : {0U, 4U}) EXPECT_TRUE(owned[first]->DestroyWindow());
      owned[2].reset();
    }
  }
  // What another object takes the place of keeps what it owns, and what is to be drawn.
  former->InvalidateRect({1, 1, 5, 5});
  CWnd taker;
  ASSERT_TRUE(taker.SubclassDlgItem(6, &top));
  former.reset();
  EXPECT_TRUE(owned[1]->GetOwner() == &taker && taker.GetUpdateRect() == (CRect{1, 1, 5, 5}));
  top.Take();
  top.DestroyWindow();
  EXPECT_EQ(top.Take(), "1:2 2:2 3:2 4:2 5:2 15:2 15. 13:2 13. 11:2 11. 3. 2. 4. 5. 1. ");
}

TEST_F(WindowTree, ObjectsMayGoInAnyOrderAndInTheirOwnHandlers) {
  auto lowest = std::make_unique<LogWnd>(&inner, 6);
  top.on[WM_DESTROY] = [&] { lowest.reset(); };
  inner.on[WM_SIZE] = [&] { top.DestroyWindow(); };
  inner.MoveWindow(1, 2, 30, 40);
  EXPECT_TRUE(lowest == nullptr && inner.GetSafeHwnd() == nullptr);
  auto other = std::make_unique<LogWnd>(nullptr, 1);
  LogWnd below(other.get(), 2);
  below.on[WM_DESTROY] = [&] { other.reset(); };
  other->DestroyWindow();
  EXPECT_TRUE(other == nullptr && below.GetSafeHwnd() == nullptr);
  // Of a chain, the last one drops one above it.
  std::vector<std::unique_ptr<LogWnd>> chain;
  for (int id = 0; id < 6; ++id) {
    chain.push_back(std::make_unique<LogWnd>(id == 0 ? nullptr : chain.back().get(), id));
  }
  chain[5]->on[0] = [&] { chain[3].reset(); };
  chain[0]->DestroyWindow();
  EXPECT_EQ(top.Take(), "0:2 1:2 2:2 3:2 4:2 5:2 5. 4. 2. 1. 0. ");
}

TEST_F(WindowTree, HotKeysAreMessagesAndEndWithTheirWindow) {
  struct Keys : platform::HotKeys {
    platform::Error Register(const platform::HotKey& key, std::function<void()> press) override {
      log += "+" + std::to_string(key.modifiers) + ":" + std::to_string(key.key) + " ";
      if (key.key == VK_F1) return {platform::ErrorKind::kAlreadyExists, 0};
      presses[key.id] = std::move(press);
      return {};
    }
    platform::Error Unregister(std::uintptr_t, int id) override {
      log += "-" + std::to_string(id) + " ";
      return {};
    }
    std::map<int, std::function<void()>> presses;
    std::string log;
    platform::ScopedPlatform scope{With(&platform::Platform::hot_keys, this)};
  } keys;
  struct KeyWnd : CWnd {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      if (message == WM_HOTKEY) pressed = {wparam, lparam};
      return CWnd::WindowProc(message, wparam, lparam);
    }
    std::pair<WPARAM, LPARAM> pressed;
  } window;
  EXPECT_EQ(RegisterHotKey(window, 7, 0, 'A').kind, platform::ErrorKind::kInvalidArgument);
  ASSERT_TRUE(window.CreateWnd("Keys"));
  EXPECT_TRUE(RegisterHotKey(window, 70000, MOD_ALT | MOD_CONTROL, 'A').ok() &&
              RegisterHotKey(window, 8, 0, 'B').ok() && RegisterHotKey(window, 9, 0, 'C').ok());
  EXPECT_EQ(RegisterHotKey(window, 5, 0, VK_F1).kind, platform::ErrorKind::kAlreadyExists);
  keys.presses[70000]();
  EXPECT_TRUE(window.pressed.first == 0 && PumpUntilIdle() == 1);
  EXPECT_TRUE(window.pressed == std::pair(WPARAM{70000}, LPARAM{0x410003}));
  EXPECT_TRUE(UnregisterHotKey(window, 8).ok());
  for (const int gone : {8, 5}) {
    EXPECT_EQ(UnregisterHotKey(window, gone).kind, platform::ErrorKind::kNotFound);
  }
  window.DestroyWindow();
  keys.presses[9]();
  EXPECT_EQ(keys.log, "+3:65 +0:66 +0:67 +0:112 -8 -70000 -9 ");
}

TEST_F(WindowTree, SendsToDescendantsThatAreStillThere) {
  inner.on[WM_USER] = [&] { second.DestroyWindow(); };
  top.SendMessageToDescendants(WM_USER);
  top.SendMessageToDescendants(WM_USER, 0, 0, false);
  EXPECT_EQ(top.Take(), "2:1024 3:1024 4:2 4. 5:1024 2:1024 5:1024 ");
}

TEST_F(WindowTree, RectanglesFollowParentsAndFrames) {
  SetFrameWidths(top, {4, 20, 4, 4});
  top.MoveWindow(100, 200, 300, 150);
  child.MoveWindow(10, 10, 80, -5);
  inner.MoveWindow({1, 2, 11, 22});
  EXPECT_EQ(top.GetClientRect(), (CRect{0, 0, 292, 126}));
  EXPECT_EQ(child.GetWindowRect(), (CRect{114, 230, 194, 230})) << "a negative height counts as 0";
  EXPECT_EQ(inner.GetWindowRect(), (CRect{115, 232, 125, 252}));
  EXPECT_EQ(top.ScreenToClient(inner.GetWindowRect()), (CRect{11, 12, 21, 32}));
  top.Take();
  child.MoveWindow(10, 10, 80, 0);  // nothing changes
  child.MoveWindow(11, 10, 80, 0);
  child.MoveWindow(11, 10, 90, 7);
  EXPECT_EQ(top.Take(), "2:3 2:5 ");
  child.MoveWindow(2147483000, 0, 2147483000, 1);
  EXPECT_EQ(child.GetPlace().right, 2147483647);
  inner.MoveWindow(2147483000, -2147483647, 2147483647, 2147483647);
  EXPECT_EQ(inner.ScreenToClient(inner.ClientToScreen({3, 4})), (CPoint{3, 4})) << "they wrap";
  SetFrameWidths(third, {-2147483647 - 1, 0, 2147483647, 0});
  EXPECT_EQ(third.GetClientRect().Width(), 101);
  MINMAXINFO info{{}, {1, 1}, {2, 2}, {3, 3}, {4, 4}};
  EXPECT_EQ(top.SendMessage(WM_GETMINMAXINFO), 0);
  EXPECT_EQ(top.SendMessage(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info)), 0);
  EXPECT_TRUE(info.ptMaxSize == (CPoint{1920, 1080}) && info.ptMaxTrackSize == info.ptMaxSize);
  EXPECT_TRUE(info.ptMaxPosition == CPoint() && info.ptMinTrackSize == CPoint());
}

TEST_F(WindowTree, FocusGoesToWhatIsEnabledAndLeavesWhatIsHidden) {
  RecordingObserver observer;
  EXPECT_TRUE(inner.SetFocus() == nullptr && second.SetFocus() == &inner);
  EXPECT_TRUE(!child.EnableWindow(false) && child.EnableWindow(false) &&
              inner.SetFocus() == &second && CWnd::GetFocus() == &second);
  EXPECT_TRUE(top.ShowWindow(SW_HIDE) && second.IsShown() && !second.IsWindowVisible());
  EXPECT_EQ(CWnd::GetFocus(), nullptr) << "it was below a window that is hidden";
  EXPECT_TRUE(!top.ShowWindow(SW_SHOW) && child.EnableWindow() && inner.SetFocus() == &second);
  child.EnableWindow(false);
  EXPECT_EQ(top.Take(), "3:7 3:8 4:7 2:10 4:8 1:24 1:24 1:6 4:7 2:10 4:8 3:7 3:8 2:10 ");
  EXPECT_EQ(observer.Take(),
            "3 focus 3 focus 4 focus 2 enabled 1 shown 4 focus 1 shown 1 active 4 focus "
            "2 enabled 4 focus 3 focus 2 enabled 3 focus ");
  // A handler that moves the focus on has the last word.
  second.on[WM_KILLFOCUS] = [&] { top.SetFocus(); };
  second.SetFocus();
  child.EnableWindow();
  EXPECT_TRUE(child.SetFocus() == &second && CWnd::GetFocus() == &top);
  EXPECT_TRUE(second.SetCapture() == nullptr && third.SetCapture() == &second);
  top.DestroyWindow();
  EXPECT_TRUE(CWnd::GetFocus() == nullptr && CWnd::GetCapture() == nullptr);
}

TEST_F(WindowTree, PlacementKeepsTheNormalRectangleAndWhatAMinimisedWindowWasBefore) {
  constexpr CRect kNormal{10, 20, 310, 220}, kFull{0, 0, 1920, 1080};
  WINDOWPLACEMENT placement;
  // The show commands (1 normal, 2 minimised, 3 maximised, 4 normal and not active, 5 show,
  // 6 minimise, 7 minimised and not active, 8 show and not active, 9 restore), and the last state
  // as the placement has it: show command and flags.
  for (const auto& [commands, state] : Cases<2>(R"(3729 => 3 2 ;; 3699 => 1 0 ;; 3969 => 1 0
      39 => 1 0 ;; 36 => 2 2 ;; 369 => 3 2 ;; 365 => 2 2 ;; 361 => 1 0 ;; 364 => 1 0 ;; 639 => 1 0
      3 => 3 0 ;; 6 => 2 0 ;; 69 => 1 0 ;; 68 => 2 0 ;; 9 => 1 0)")) {
    LogWnd window(nullptr, 1), other(nullptr, 2);
    window.MoveWindow(kNormal);
    for (const char command : commands) window.ShowWindow(command - '0');
    ASSERT_TRUE(window.GetWindowPlacement(&placement));
    EXPECT_EQ(std::to_string(placement.showCmd) + " " + std::to_string(placement.flags), state);
    EXPECT_EQ(window.GetWindowRect(), state == "3 0" || state == "3 2" ? kFull : kNormal);
    EXPECT_EQ(placement.rcNormalPosition, kNormal) << commands;
    // Another window takes the placement over, and what it is restored to.
    EXPECT_TRUE(other.SetWindowPlacement(&placement));
    for (LogWnd* each : {&window, &other}) each->ShowWindow(SW_RESTORE);
    EXPECT_EQ(other.GetWindowRect(), window.GetWindowRect());
  }
  child.ShowWindow(SW_SHOWMAXIMIZED);
  EXPECT_EQ(child.GetPlace(), (CRect{0, 0, 100, 50})) << "as large as its parent";
  // What it is told, and that it says where it lies.
  struct Limited : LogWnd {
    using LogWnd::LogWnd;
    LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      const LRESULT result = LogWnd::DefWindowProc(message, wparam, lparam);
      if (message == WM_GETMINMAXINFO) {
        reinterpret_cast<MINMAXINFO*>(lparam)->ptMaxPosition = {-4, 3};
        reinterpret_cast<MINMAXINFO*>(lparam)->ptMaxSize = {90, -1};
      }
      return result;
    }
  } limited{&top, 6};
  for (const int command : {SW_SHOWMAXIMIZED, SW_SHOWMINIMIZED, SW_RESTORE, SW_SHOWNORMAL}) {
    limited.ShowWindow(command);
    LogWnd::log += std::to_string(limited.GetPlace().left) + " ";
  }
  EXPECT_EQ(limited.Take(), "6:36 6:3 6:5 -4 6:3 6:5 0 6:36 6:3 6:5 -4 6:3 6:5 0 ");
  limited.ShowWindow(SW_SHOWMAXIMIZED);
  EXPECT_EQ(limited.GetPlace(), (CRect{-4, 3, 86, 3}));
  placement.length = 40;
  EXPECT_FALSE(top.SetWindowPlacement(&placement) || CWnd().GetWindowPlacement(&placement));
}

TEST_F(WindowTree, TellsItsObserverOfEveryChangeInTheOrderOfTheChanges) {
  CWnd other;
  CMenu menu;
  RecordingObserver observer;
  EXPECT_TRUE(other.CreateWnd({.class_name = "Test", .id = 9}) && other.DestroyWindow() &&
              other.SubclassDlgItem(5, &top));
  child.SetWindowText("x");
  child.MoveWindow(0, 0, 100, 50, false);
  child.MoveWindow(1, 0, 100, 52);
  observer.frame_widths = {1, 1, 1, 1};
  child.UpdateFrameWidths();
  child.ShowWindow(SW_SHOWMAXIMIZED);
  child.Invalidate();
  child.SetWindowOrder(&second);
  inner.SetParent(&second);
  child.SetMenu(&menu);
  top.SetActiveWindow();
  child.DestroyWindow();
  EXPECT_EQ(observer.Take(),
            "9 created 9 destroyed 5 replaced 2 text 2 rectangle 2 invalidated 2 rectangle 2 "
            "rectangle 2 invalidated 2 order 3 order 2 menu 1 active 1 focus 2 destroyed ");
  // What is no window tells nothing.
  CFrameWnd frame;
  CToolBar bar;
  CView view;
  frame.SetActiveView(&view);
  frame.SetWindowText("x");
  frame.MoveWindow(1, 2, 3, 4);
  frame.SetMessageText("ready");
  bar.SetPictureSize({4, 4});
  bar.Invalidate();
  EXPECT_FALSE(bar.ShowWindow(SW_SHOW) || bar.EnableWindow(false));
  EXPECT_TRUE(frame.Create("Frame", "", {}) && view.CreateWnd({.class_name = "View", .id = 8}));
  for (int twice = 0; twice < 2; ++twice) frame.SetActiveView(&view);
  frame.SetMessageText("busy");
  EXPECT_EQ(observer.Take(), "0 created 8 created 0 active 0 content ");
}

// ---- Commands

/// Has handlers for the commands 1, whose update disables it, and 2 to 11, of which 2 declines.
struct Target : CView {
  Target() { CreateWnd("Target"); }
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
    static constexpr MessageMapEntry kEntries[] = {
        CommandEntry<&Target::OnOpen>(1), UpdateEntry<&Target::OnUpdateOpen>(1),
        CommandRangeEntry<&Target::OnRange>(2, 11), MessageEntry<&Target::OnApp>(WM_APP + 7)};
    return CallEntry(kEntries, *this, key, arguments) || CView::CallMapped(key, arguments);
  }
  void OnOpen() { called += "open "; }
  void OnUpdateOpen(CCmdUI* ui) { on_update(*ui); }
  BOOL OnRange(UINT id) { return called += std::to_string(id) + " ", id == 2 ? 0 : 1; }
  LRESULT OnApp(WPARAM wparam, LPARAM lparam) { return static_cast<LRESULT>(wparam) + lparam; }

  std::string called;
  std::function<void(CCmdUI&)> on_update;
};

TEST(Commands, CallTheHandlersOfTheMapsUnlessTheyAreDisabledOrOnlyAskedFor) {
  CFrameWnd frame;
  ASSERT_TRUE(frame.Create("Frame", "caption", {}));
  Target view;
  frame.SetActiveView(&view);
  for (const bool enabled : {true, false}) {
    view.on_update = [=](CCmdUI& it) { it.Enable(enabled); };
    for (const LPARAM control : {0, 1}) frame.SendMessage(WM_COMMAND, 1, control);
  }
  int asked = 0;
  std::string answers;
  for (const UINT id : {1U, 2U, 11U, 12U}) {
    answers += std::to_string(frame.OnCmdMsg(id, CN_COMMAND, nullptr, &asked));
    answers += std::to_string(frame.OnCmdMsg(id, CN_COMMAND, nullptr, nullptr)) + " ";
  }
  EXPECT_EQ(answers + view.called, "11 10 11 00 open open open open 2 11 ");
  EXPECT_EQ(view.SendMessage(WM_APP + 7, 3, 4), 7);
  CCmdUI ui;
  for (const bool passes_on : {false, true, false}) {
    view.on_update = [=](CCmdUI& it) { passes_on ? it.ContinueRouting() : it.Enable(); };
    EXPECT_EQ(frame.OnCmdMsg(1, CN_UPDATE_COMMAND_UI, &ui, nullptr), passes_on ? 0 : 1);
  }
  view.DestroyWindow();
  EXPECT_FALSE(frame.GetActiveView() || frame.OnCmdMsg(1, CN_COMMAND, nullptr, nullptr));
}

/// Handles the commands 33001 and on whose letters stand behind its own, by which it says that it
/// did.
template <typename Base>
struct Stop : Base {
  explicit Stop(const char* letters) : handles(letters) {}
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
    const bool stops = key.message == WM_COMMAND && key.code == CN_COMMAND &&
                       handles.find(static_cast<char>(key.id - 33001 + 'a')) != handles.npos;
    if (stops) LogWnd::log += handles.front();
    return stops || Base::CallMapped(key, arguments);
  }
  std::string handles;
};

TEST(Commands, GoFromWhereTheyAreSentUpToTheApplication) {
  Stop<CWinApp> app("Aabcdefghwx");
  Stop<CMDIFrameWnd> main("Mabcdef");
  Stop<CMDIChildWnd> child("Cabd"), other("Og");
  Stop<CView> view("Va");
  Stop<CDocument> document("Tabe");
  Stop<CDialog> dialog("Dah");
  ASSERT_TRUE(main.Create("Frame", "", {}));
  for (CMDIChildWnd* each : {&other, &child}) ASSERT_TRUE(each->Create("Child", "", {}, &main));
  ASSERT_TRUE(view.Create(&child, {}, 1, &document) && dialog.CreateIndirect({}, &main));
  const auto sent = [](CWnd& to) {
    std::string got;
    // A dialog keeps the first and the last one, which aren't commands.
    for (const UINT id : {0x7FFF, 33001, 33002, 33003, 33004, 33005, 33006, 33007, 33008, 33009,
                          0x8000, 0xEFFF, 0xF000}) {
      LogWnd::log.clear();
      to.SendMessage(WM_COMMAND, id);
      got += LogWnd::log.empty() ? "-" : LogWnd::log;
    }
    return got;
  };
  EXPECT_EQ(sent(main) + sent(child) + sent(other) + sent(dialog),
            "AVTACTAAA-AAAAVTACTAAA-AAAAAAAAAAOA-AAA-DTACTAAD-AA-");
  // Without a child frame that is active, the main frame's own come first.
  for (CMDIChildWnd* each : {&other, &child}) each->MDIDestroy();
  EXPECT_EQ(sent(main), "AMMMMMMAA-AAA");
}

TEST(Document, TellsTheViewsThatAreStillThereUntilItGoesItself) {
  struct View : CView {
    void OnUpdate(CView*, LPARAM hint, CObject*) override {
      LogWnd::log += std::to_string(GetDlgCtrlID()) + ":" + std::to_string(hint) + " ";
      on_update();
    }
    std::function<void()> on_update = [] {};
  };
  auto document = std::make_unique<CDocument>();
  CDocument other;
  std::unique_ptr<View> views[4];
  LogWnd::log.clear();
  for (int id = 0; id < 4; ++id) {
    views[id] = std::make_unique<View>();
    views[id]->SetDlgCtrlID(id);
    for (int twice = 0; twice < 2; ++twice) document->AddView(views[id].get());
  }
  document->UpdateAllViews(views[1].get(), 7);
  views[0]->on_update = [&] { views[2].reset(); };
  document->UpdateAllViews(nullptr, 8);
  other.AddView(views[3].get());
  document->UpdateAllViews(nullptr, 9);
  views[0]->on_update = [&] { document.reset(); };
  document->UpdateAllViews(nullptr);
  EXPECT_EQ(LogWnd::log, "0:7 2:7 3:7 0:8 1:8 3:8 0:9 1:9 0:0 ");
  EXPECT_TRUE(views[1]->GetDocument() == nullptr && views[3]->GetDocument() == &other);
}

TEST(Frame, HasTheMenuOfAResourceAndAsItsActiveViewTheFirstOrTheOneWithTheFocus) {
  ResourceModule module;
  module.AddResource(RESOURCE_MENU, 5, "item 44 \"a\"\n");
  module.AddResource(RESOURCE_DIALOG, 5, "caption \"Form\"\nsize 30 20\nedit 9 \"x\" 0 0 1 1\n");
  module.AddString(5, "ready");
  const CDynLinkLibrary link(&module);
  CFrameWnd frame;
  EXPECT_TRUE(!frame.Create("Frame", "", {}, 4) && frame.Create("Frame", "", {}, 5));
  EXPECT_EQ(frame.GetMenu()->GetMenuItemID(0), 44U);
  frame.SetMessageText(5U);
  CDocument document;
  CView view;
  CFormView form(5), none(4);
  ASSERT_TRUE(view.Create(&frame, {}, 1, &document) && form.Create(&frame, 2, &document));
  EXPECT_TRUE(frame.GetActiveView() == &view && !none.Create(&frame, 3, &document));
  EXPECT_TRUE(form.SetFocus() == nullptr && frame.GetActiveView() == &form);
  EXPECT_EQ(frame.GetMessageText() + form.GetWindowText() + form.GetDlgItemText(9), "readyFormx");
  form.OnInitialUpdate();
  EXPECT_EQ(form.GetUpdateRect(), (CRect{0, 0, 30, 20}));
  // A frame that fits the form, with its bars.
  CFormView alone(5);
  CFrameWnd around;
  CControlBar bar;
  ASSERT_TRUE(around.Create("Frame", "", {10, 10, 90, 25}) &&
              alone.Create(&around, kFirstPaneId, nullptr));
  bar.SetBarSize({0, 7});
  bar.CreateWnd({.class_name = "Bar", .parent = &around, .id = 8});
  SetFrameWidths(around, {2, 3, 2, 2});
  std::string places;
  for (const bool shrink_only : {true, false}) {
    alone.ResizeParentToFit(shrink_only);
    const CRect place = around.GetPlace();
    places += std::to_string(place.Width()) + "x" + std::to_string(place.Height()) + " ";
  }
  EXPECT_EQ(places, "34x15 34x32 ");
  EXPECT_EQ(alone.GetClientRect().Size(), alone.GetFormSize());
}

TEST(Commands, ChildFramesAreActiveOneAtATime) {
  CMDIFrameWnd frame;
  ASSERT_TRUE(frame.Create("Frame", "caption", {0, 0, 300, 200}));
  LogWnd::log.clear();
  struct Child : CMDIChildWnd {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      const auto name = [](auto window) {
        const CWnd* const child = CWnd::FromHandle(reinterpret_cast<HWND>(window));
        return child == nullptr ? std::string("none") : std::string(child->GetWindowText());
      };
      if (message == WM_MDIACTIVATE) LogWnd::log += name(wparam) + ">" + name(lparam) + " ";
      return CMDIChildWnd::WindowProc(message, wparam, lparam);
    }
  } children[3];
  for (const int i : {0, 1, 2}) children[i].Create("", std::to_string(i).c_str(), {}, &frame);
  RecordingObserver observer;
  frame.MDINext();
  for (int twice = 0; twice < 2; ++twice) children[1].MDIActivate();
  EXPECT_EQ(observer.Take(), "0 order 0 active 0 order ");
  frame.MDINext();
  EXPECT_EQ(LogWnd::log, "none>0 0>1 0>1 1>2 1>2 2>1 2>1 1>0 1>0 ");
  frame.DestroyWindow();
  EXPECT_EQ(frame.GetActiveFrame(), &frame);
}

}  // namespace
}  // namespace dq::test
