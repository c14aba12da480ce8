// What a window layer is told, asked and reports: changes, frames, native events, mouse and keys.

#include "tests/support/doubles.h"
#include "tests/support/layer_conformance.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// Native events that a test puts in: each is a call.
struct FakeEvents : NativeEvents {
  bool Wait(DWORD milliseconds) override {
    if (milliseconds > 0 && on_wait) on_wait(milliseconds);
    std::unique_lock lock(mutex);
    if (events.empty() && milliseconds > 0) {
      ++waits;
      woken.wait_for(lock, std::chrono::milliseconds(milliseconds),
                     [this] { return is_woken || !events.empty(); });
    }
    is_woken = false;
    if (events.empty()) return false;
    const auto event = events.front();
    events.pop_front();
    lock.unlock();
    event();
    return true;
  }
  void Wake() override {
    const std::lock_guard lock(mutex);
    is_woken = true;
    woken.notify_one();
  }
  void Put(std::function<void()> event) {
    const std::lock_guard lock(mutex);
    events.push_back(std::move(event));
    woken.notify_one();
  }

  std::mutex mutex;
  std::condition_variable woken;
  std::deque<std::function<void()>> events;
  bool is_woken = false;
  int waits = 0;
  std::function<void(DWORD)> on_wait;
};

/// A layer that people work with.
struct Layer : RecordingObserver {
  Layer() { SetWindowObserver(this); }
  NativeEvents* GetEvents() override { return &events; }
  bool RunsDialogs() const override { return runs; }
  int GetKeyState(int key) override { return key == held ? kKeyDown : 0; }
  void SetPointer(PointerShape shape) override { pointer += static_cast<int>(shape); }
  UINT TrackMenu(HMENU, const MenuSpot& spot, CWnd&) override {
    return spot.flags + static_cast<UINT>(spot.at.x + spot.stays_open_in.right);
  }
  int GetMetric(int metric, int usual) override { return metric == SM_CYMENU ? 31 : usual; }
  CSize MeasureText(const LOGFONT* font, std::string_view, const CSize& usual) override {
    return font == nullptr ? usual : CSize{-font->lfHeight, usual.cx};
  }
  void ShowWaitPointer(bool show) override { waiting += show ? "+" : "-"; }
  void Beep(UINT type) override { waiting += std::to_string(static_cast<int>(type)); }

  FakeEvents events;
  bool runs = true;
  int held = 0;
  int pointer = 0;
  std::string waiting;
};

/// Keeps its messages as "number(first,second) ".
struct LogWnd : CWnd {
  explicit LogWnd(const WindowCreation& creation = {.class_name = "Test"}) {
    CreateWnd(creation);
    log.clear();
  }
  ~LogWnd() override { DestroyWindow(); }
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    log += std::to_string(GetDlgCtrlID()) + ":" + std::to_string(message) + " ";
    if (on_message) on_message(message);
    return CWnd::WindowProc(message, wparam, lparam);
  }
  static std::string Take() { return std::exchange(log, {}); }
  static inline std::string log;
  std::function<void(UINT)> on_message;
};

TEST(NativeEvents, AreTakenInByEveryLoopWhichOtherThreadsWake) {
  Layer layer;
  CWinApp app("loop");
  int posted = 0;
  LogWnd window;
  window.on_message = [&](UINT message) { posted += message == WM_APP; };
  // A post and a send from another thread end a wait that would last for ever.
  std::jthread other([&, handle = window.GetSafeHwnd()] {
    PostToWindow(handle, WM_APP, 0, 0);
    SendToWindow(handle, WM_APP, 0, 0);
    layer.events.Put([&] { window.PostMessage(WM_APP); });
  });
  EXPECT_TRUE(PumpUntil([&] { return posted == 3; }));
  // A flood of messages keeps nobody from working.
  window.on_message = [&](UINT) { window.PostMessage(WM_APP); };
  bool native = false;
  window.PostMessage(WM_APP);
  layer.events.Put([&] { native = true; });
  EXPECT_TRUE(PumpUntil([&] { return native; }, 10000));
  window.on_message = [](UINT message) {
    if (message == WM_APP + 1) PostQuitMessage(5);
  };
  // One call ends, however many events come; the loop of the application takes the rest.
  int taken = 0;
  std::function<void()> again = [&] {
    if (++taken < 9) layer.events.Put(again);
    if (taken == 9) window.PostMessage(WM_APP + 1);
  };
  layer.events.Put(again);
  PumpUntilIdle();
  EXPECT_LT(taken, 9);
  EXPECT_TRUE(app.Run() == 5 && taken == 9);
  // What a handler throws comes out of the loop.
  layer.events.Put([] { throw CUserException(); });
  EXPECT_THROW(PumpUntil([] { return false; }, 10000), CUserException);
}

TEST(NativeEvents, TimersIdleWorkAndNestedLoopsAreAsWithoutThem) {
  for (const bool with_layer : {false, true}) {
    std::optional<Layer> layer;
    if (with_layer) layer.emplace();
    struct App : CWinApp {
      App() : CWinApp("idle") {}
      BOOL OnIdle(LONG count) override { return idled += std::to_string(count), count < 1; }
      std::string idled;
    } app;
    int timers = 0;
    LogWnd window;
    window.on_message = [&](UINT message) {
      if (message == WM_TIMER && ++timers == 1) {
        EXPECT_TRUE(PumpUntil([&] { return timers == 3; }));
        PostQuitMessage(3);
      }
    };
    window.SetTimer(1, 10);
    EXPECT_TRUE(app.Run() == 3 && timers == 3);
    EXPECT_EQ(app.idled.substr(0, 2), "01") << "it idles until it wants no more";
    // With nothing to do it waits, instead of asking again and again.
    EXPECT_LT(with_layer ? layer->events.waits : 0, 10);
  }
}

TEST(WindowLayer, IsToldOfRowsTogetherAndInTheOrderOfTheChanges) {
  ControlDialog dialog;
  CListBox& list = dialog.list();
  RecordingObserver told;
  for (int row = 0; row < 1000; ++row) list.AddString("x");
  for (const int index : {3, 1003, 500}) list.InsertString(index, "y");
  list.InsertString(0, "z");
  EXPECT_EQ(told.Take(), "20 +rows@0*1 20 +rows@4*1003 ") << "the old ones lie between";
  list.DeleteString(0);
  for (int row = 0; row < 5; ++row) list.DeleteString(10);
  for (int row = 9; row > 7; --row) list.DeleteString(row);
  list.DeleteString(0);
  list.SetCurSel(1);
  dialog.Get<CListBox>(ControlDialog::kMany).AddString("a");
  EXPECT_EQ(told.Take(), "20 -rows@0*2 20 -rows@7*7 20 selection 21 +rows@3*1 ");
  list.AddString("q");
  PumpUntilIdle();
  EXPECT_EQ(told.changes, "20 +rows@998*1 ") << "at the latest before the thread waits";
}

TEST(WindowLayer, FollowsRowsThatComeAndGoAnywhereByFewChanges) {
  struct Mirror : RecordingObserver {
    void OnWindowChange(CWnd& window, WindowChange change, const ChangedRange& range) override {
      const auto& list = static_cast<const CListBox&>(window);
      ++told;
      auto [first, count] = range;
      if (change == WindowChange::kRowsRemoved) {
        rows.erase(rows.begin() + first, rows.begin() + first + std::exchange(count, 0));
      } else if (change == WindowChange::kRowsInserted) {
        rows.insert(rows.begin() + first, static_cast<std::size_t>(count), {});
      } else if (change == WindowChange::kRowsChanged) {
        rows.assign(static_cast<std::size_t>(count = list.GetCount()), {});
      }
      for (int at = first; at < first + count; ++at) rows[at] = list.GetText(at);
    }
    std::vector<CString> rows;
    int told = 0;
  } mirror;
  CListBox list({.sorted = true});
  list.CreateWnd("ListBox");
  list.AddString("500");
  std::mt19937 random(20261);
  const auto number = [&](int most) { return static_cast<int>(random() % most); };
  for (int round = 0; round < 100; ++round) {
    detail::TellRows();
    mirror.told = 0;
    // First a thousand around an old one; then some here and there, or at many places.
    for (int row = round == 0 ? 1000 : 0; row > 0; --row) {
      list.AddString(std::to_string(number(1000)).c_str());
    }
    const bool adds = number(2) == 0;
    for (int left = round == 0 ? 0 : number(round % 8 == 0 ? 99 : 12); left > 0; --left) {
      const int at = number(list.GetCount() + 1);
      for (int run = number(3); run >= 0; --run) {
        adds ? list.InsertString(at, std::to_string(left).c_str()) : list.DeleteString(at);
      }
    }
    detail::TellRows();
    EXPECT_LE(mirror.told, round == 0 ? 2 : kMostRowRanges);
    ASSERT_EQ(static_cast<int>(mirror.rows.size()), list.GetCount()) << round;
    for (int at = 0; at < list.GetCount(); ++at) ASSERT_EQ(mirror.rows[at], list.GetText(at));
  }
}

TEST(WindowLayer, IsToldWhatChangesInMenus) {
  CMenu menu, sub;
  RecordingObserver told;
  told.menus = true;
  sub.CreatePopupMenu();
  sub.AppendMenu(MF_STRING, 7, "seven");
  menu.LoadMenuIndirect("item 1 \"One\"\nitem 2 \"Two\" checked\nitem 3 \"Three\"\n");
  menu.AppendMenu(MF_POPUP, reinterpret_cast<std::uintptr_t>(sub.Detach()), "Sub");
  told.Take();
  for (int twice = 0; twice < 2; ++twice) menu.EnableMenuItem(1, MF_GRAYED);
  for (int twice = 0; twice < 2; ++twice) menu.CheckMenuRadioItem(1, 3, 3, MF_BYCOMMAND);
  for (int twice = 0; twice < 2; ++twice) menu.ModifyMenu(2, MF_STRING, 2, "Zwei");
  for (int twice = 0; twice < 2; ++twice) menu.CheckMenuItem(2, MF_CHECKED);
  menu.InsertMenu(0, MF_BYPOSITION | MF_SEPARATOR);
  menu.EnableMenuItem(7, MF_GRAYED);
  menu.SetDefaultItem(1, true);
  menu.RemoveMenu(0, MF_BYPOSITION);
  menu.DestroyMenu();
  EXPECT_EQ(told.Take(),
            "items@0*1 items@1*1 items@2*1 items@1*1 items@1*1 +items@0*1 items@0*1 items@1*1 "
            "-items@0*1 menu gone@0*0 menu gone@0*0 ");
}

TEST(WindowLayer, ThatThrowsOrGoesAwayLeavesTheLibraryWhole) {
  struct Thrower : Layer {
    void OnWindowChange(CWnd&, WindowChange, const ChangedRange&) override { throw 1; }
    CRect GetFrameWidths(const CWnd&) override { throw 1; }
    int GetKeyState(int) override { throw 1; }
    int GetMetric(int, int) override { throw 1; }
    NativeEvents* GetEvents() override { throw 1; }
  };
  {
    Thrower thrower;
    thrower.events.Put([] { ADD_FAILURE() << "those of the former observer are left"; });
    SetWindowObserver(&thrower);
    PumpUntilIdle();
    CWnd window;
    EXPECT_TRUE(window.CreateWnd({.class_name = "Test", .place = {0, 0, 9, 9}}));
    window.SetWindowText("x");
    EXPECT_TRUE(window.GetWindowText() == "x" && window.GetClientRect() == (CRect{0, 0, 9, 9}));
    EXPECT_TRUE(GetKeyState(VK_SHIFT) == 0 && GetSystemMetrics(SM_CYMENU) == 20);
  }
  MainWindow main;
  CDialog dialog;
  dialog.InitModalIndirect(ReadDialogTemplate("size 9 9\n").value(), &main);
  Layer layer;
  SetWindowObserver(nullptr);
  std::optional<CWaitCursor> wait(std::in_place);
  SetWindowObserver(&layer);
  EXPECT_EQ(GetSystemMetrics(SM_CYMENU), 31);
  EXPECT_EQ(GetTextExtent(GetStockFont(17), "abc"), (CSize{11, 21}));
  EXPECT_EQ(GetTextExtent(main, "abc"), (CSize{21, 13}));
  layer.events.on_wait = [&](DWORD milliseconds) {
    EXPECT_EQ(milliseconds, kForever) << "nothing is asked meanwhile";
    layer.events.Put([&] { layer.runs = false; });
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  layer.events.on_wait = {};
  layer.runs = true;
  layer.events.Put([] { SetWindowObserver(nullptr); });
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  wait.reset();
  EXPECT_TRUE(main.IsWindowEnabled() && layer.waiting == "+-") << "as long as it is set";
}

TEST(WindowLayer, TellsAllWindowsThatTheDesktopHasOtherColors) {
  EXPECT_TRUE(GetSysColor(COLOR_WINDOW) == 0xFFFFFF && GetSysColor(99) == 0);
  LogWnd top({.class_name = "T", .place = {0, 0, 9, 9}, .id = 1});
  LogWnd child({.class_name = "C", .parent = &top, .id = 2}), ended({.class_name = "T", .id = 3});
  child.on_message = [&](UINT) { ended.DestroyWindow(); };
  top.ValidateRect();
  SystemColorsChanged();
  child.on_message = {};
  EXPECT_EQ(LogWnd::Take(), "1:21 2:21 3:2 ");
  EXPECT_EQ(top.GetUpdateRect(), (CRect{0, 0, 9, 9}));
}

TEST(WindowLayer, GivesFramesWhileWindowsAreMade) {
  Layer layer;
  layer.frame_widths = {4, 30, 6, 8};
  SetScreenSize({1000, 800});
  CWnd owner;
  owner.CreateWnd({.class_name = "Owner", .place = {900, 700, 1000, 800}});
  CDialog dialog;
  const DialogTemplate pattern = ReadDialogTemplate("size 100 60\n").value();
  ASSERT_TRUE(dialog.CreateIndirect(pattern, &owner));
  EXPECT_EQ(dialog.GetClientRect(), (CRect{0, 0, 100, 60}));
  EXPECT_EQ(dialog.GetWindowRect(), (CRect{890, 701, 1000, 799})) << "but within the screen";
  owner.MoveWindow(100, 100, 200, 200);
  dialog.CenterWindow();
  EXPECT_EQ(dialog.GetPlace(), (CRect{145, 151, 255, 249}));
  owner.ShowWindow(SW_HIDE);
  dialog.CenterWindow();
  EXPECT_EQ(dialog.GetPlace(), (CRect{445, 351, 555, 449})) << "who is hidden gives no place";
  CWnd child;
  child.CreateWnd({.class_name = "Child", .place = {7, 7, 27, 17}, .parent = &dialog});
  child.CenterWindow();
  EXPECT_EQ(child.GetPlace(), (CRect{40, 25, 60, 35}));
  SetScreenSize({1920, 1080});
}

TEST(WindowLayer, ReportsTheMouseToWhatIsUnderItOrHasItCaptured) {
  Layer layer;
  LogWnd top({.class_name = "Top", .place = {100, 100, 300, 300}, .id = 1});
  LogWnd child({.class_name = "C", .place = {10, 10, 60, 60}, .parent = &top, .id = 2});
  LogWnd other({.class_name = "C", .place = {0, 0, 90, 90}, .parent = &top, .id = 3});
  CButton group(ButtonKind::kGroup);
  group.CreateWnd({.class_name = "Button", .place = {5, 5, 80, 80}, .parent = &other, .id = 4});
  CWnd inner;
  inner.CreateWnd({.class_name = "C", .place = {6, 6, 20, 20}, .parent = &other, .id = 5});
  std::string hits;
  for (const CPoint& at : {CPoint{99, 150}, {105, 105}, {115, 115}, {299, 299}, {170, 170}}) {
    const CWnd* const hit = top.WindowAt(at);
    hits += hit == nullptr ? "- " : std::to_string(hit->GetDlgCtrlID()) + " ";
    if (at.x == 115) child.ShowWindow(SW_HIDE);
  }
  EXPECT_EQ(hits + std::to_string(top.WindowAt({107, 107})->GetDlgCtrlID()), "- 3 2 1 3 5");
  child.ShowWindow(SW_SHOW);
  LogWnd::Take();
  EXPECT_TRUE(MouseInput(WM_LBUTTONDOWN, MK_LBUTTON, {115, 116}, &child));
  EXPECT_TRUE(CWnd::GetActiveWindow() == &top && LogWnd::Take() == "2:33 1:33 1:6 1:7 2:513 ");
  child.SetCapture();
  MouseInput(WM_MOUSEMOVE, 0, {0, 0}, nullptr);
  other.SetCapture();
  MouseInput(WM_MOUSEMOVE, 0, {0, 0}, &child);
  CWnd::ReleaseCapture();
  EXPECT_EQ(LogWnd::Take(), "2:512 2:533 3:512 3:533 ");
  MouseInput(WM_MOUSEMOVE, 0, {0, 0}, &child);
  child.EnableWindow(false);
  MouseInput(WM_MOUSEWHEEL, MakeWParam(0, 120), {0, 0}, &child);
  MouseInput(WM_RBUTTONUP, 0, {0, 0}, &other);
  EXPECT_EQ(LogWnd::Take(), "2:32 2:512 2:10 1:522 3:517 3:123 1:123 ");
  top.EnableWindow(false);
  EXPECT_FALSE(MouseInput(WM_LBUTTONDOWN, 0, {0, 0}, &other) || MouseInput(0, 0, {}, nullptr));
  child.SetCapture();
  child.DestroyWindow();
  EXPECT_EQ(CWnd::GetCapture(), nullptr);
}

TEST(WindowLayer, ReportsKeysToTheFocusAndMenusToTheirOwner) {
  Layer layer;
  ResourceModule module;
  module.AddResource(RESOURCE_ACCELERATOR, 5, "ctrl+K 7\nF3 8\n");
  const CDynLinkLibrary link(&module);
  struct Frame : CFrameWnd {
    BOOL OnCmdMsg(UINT id, int code, void* extra, void* info) override {
      if (code == CN_COMMAND) LogWnd::log += "!" + std::to_string(id) + " ";
      return CFrameWnd::OnCmdMsg(id, code, extra, info);
    }
  } frame;
  frame.Create("Frame", "", {0, 0, 100, 100});
  EXPECT_TRUE(frame.LoadAccelTable(5) && !KeyInput(WM_KEYDOWN, 'K'));
  LogWnd view({.class_name = "V", .parent = &frame, .id = 2});
  view.SetFocus();
  LogWnd::Take();
  for (const int held : {0, int{VK_CONTROL}}) {
    layer.held = held;
    EXPECT_TRUE(KeyInput(WM_KEYDOWN, 'K'));
  }
  layer.held = VK_SHIFT;
  for (const UINT message : {WM_KEYDOWN, WM_SYSKEYDOWN}) KeyInput(message, VK_F10);
  EXPECT_EQ(LogWnd::Take(), "2:256 !7 2:256 2:123 2:260 2:123 ");
  CMenu menu;
  EXPECT_EQ(menu.TrackPopupMenu(0, 9, 9, &view), 0);
  menu.CreatePopupMenu();
  const CRect button{0, 0, 20, 20};
  EXPECT_TRUE(menu.TrackPopupMenu(TPM_RETURNCMD | TPM_RIGHTBUTTON, 9, 9, &view, &button) == 287 &&
              menu.TrackPopupMenu(0, 11, 9, &view) == 1);
  PumpUntilIdle();
  EXPECT_EQ(LogWnd::Take(), "2:279 2:287 2:279 2:287 2:273 ");
}

TEST(WindowLayer, DragsDataFromWindowsToTheTargetsOfOthers) {
  struct Target : COleDropTarget {
    UINT OnDragEnter(CWnd*, COleDataObject* data, UINT, CPoint point) override {
      log += "enter" + std::to_string(point.x) + " ";
      return data->IsDataAvailable(CLIPBOARD_TEXT) ? allowed : 0;
    }
    UINT OnDragOver(CWnd*, COleDataObject*, UINT, CPoint) override {
      return log += "over ", allowed;
    }
    void OnDragLeave(CWnd*) override { log += "leave "; }
    BOOL OnDrop(CWnd*, COleDataObject* data, UINT effect, CPoint) override {
      log += "drop" + std::to_string(effect) + *data->GetData(CLIPBOARD_TEXT) + " ";
      return taken;
    }
    int OnDropEx(CWnd*, COleDataObject*, UINT wanted, UINT, CPoint) override {
      log += "wants" + std::to_string(wanted) + " ";
      return chosen;
    }
    std::string log;
    UINT allowed = DROPEFFECT_COPY | DROPEFFECT_LINK;
    BOOL taken = 1;
    int chosen = -1;
  } target, second;
  CWnd top, child, other;
  for (CWnd* each : {&top, &other}) each->CreateWnd({.class_name = "T", .place = {10, 10, 90, 90}});
  child.CreateWnd({.class_name = "C", .place = {20, 20, 30, 30}, .parent = &top});
  EXPECT_TRUE(target.Register(&top) && !target.Register(&other) && !second.Register(&top));
  COleDataSource source;
  for (const char* text : {"z", "a"}) source.CacheGlobalData(CLIPBOARD_TEXT, text);
  EXPECT_TRUE(source.DoDragDrop(child, DROPEFFECT_COPY) == 0 && source.SetClipboard());
  struct Dragging : Layer {
    UINT StartDrag(CWnd& from, const COleDataObject& data, UINT effects,
                   COleDropSource& asked) override {
      for (const UINT keys : {1u, 0u, 2u, 3u}) {
        steps += std::to_string(static_cast<int>(asked.QueryContinueDrag(false, keys)));
      }
      const bool goes_on = asked.QueryContinueDrag(true, 1) != DragStep::kGiveUp;
      if (goes_on || asked.GiveFeedback(effects)) return DROPEFFECT_NONE;
      DragInput drag(data, effects);
      for (CWnd* over : {&from, &from, static_cast<CWnd*>(nullptr)}) drag.Move(over, 0, {15, 0});
      return drag.Drop(&from, MK_CONTROL, {15, 0}) | DROPEFFECT_LINK;
    }
    std::string steps;
  } layer;
  std::string effects;
  const auto drag = [&] {
    effects += std::to_string(source.DoDragDrop(child, 3)) + target.log + "; ";
  };
  drag();
  target.log.clear();
  target.chosen = DROPEFFECT_MOVE;
  drag();
  EXPECT_EQ(effects,
            "1enter5 over leave enter5 wants1 drop1a ; 2enter5 over leave enter5 wants1 ; ");
  EXPECT_EQ(layer.steps, "01020102");
  struct Silent : COleDropSource {
    bool GiveFeedback(UINT effect) override { return effect == 3; }
  } silent;
  EXPECT_EQ(source.DoDragDrop(child, 3, &silent), 0u);
  COleDataObject pasted;
  pasted.AttachClipboard();
  EXPECT_TRUE(pasted.GetData(CLIPBOARD_TEXT) == "a" && !pasted.GetData(CLIPBOARD_FILES));
  top.DestroyWindow();
  EXPECT_TRUE(target.Register(&other) && COleDropTarget::Of(&other) == &target);
}

TEST(WindowLayer, ActivatesWindowsWhichKeepTheirFocus) {
  LogWnd first({.class_name = "T", .id = 1}), second({.class_name = "T", .id = 2});
  LogWnd child({.class_name = "C", .parent = &first, .id = 3});
  first.SetActiveWindow();
  child.SetFocus();
  LogWnd::Take();
  EXPECT_EQ(second.SetActiveWindow(), &first);
  EXPECT_TRUE(CWnd::GetFocus() == &second && LogWnd::Take() == "1:6 2:6 3:8 2:7 ");
  first.SetActiveWindow(true);
  EXPECT_TRUE(CWnd::GetFocus() == &child && LogWnd::Take() == "2:6 1:6 2:8 3:7 ");
  CWnd::LeaveActiveWindow();
  EXPECT_TRUE(CWnd::GetFocus() == nullptr && CWnd::GetActiveWindow() == nullptr);
  first.SetActiveWindow();
  EXPECT_EQ(CWnd::GetFocus(), &child);
  // A window that ends leaves the focus, and its owner becomes active.
  LogWnd owned({.class_name = "T", .owner = &first, .id = 4});
  owned.SetActiveWindow();
  LogWnd::Take();
  owned.DestroyWindow();
  EXPECT_EQ(LogWnd::Take(), "4:8 4:2 1:6 3:7 ");
}

TEST(WindowLayer, IsToldOfFontsAndScrollBarsAndDrawsWhatIsToBeDrawn) {
  struct Painted : LogWnd {
    using LogWnd::LogWnd;
    void OnPaint(CDC& dc) override {
      dc.TextOut(1, 2, "text");
      Invalidate();
    }
  } window({.class_name = "T", .place = {0, 0, 50, 50}, .id = 1});
  RecordingObserver told;
  CFont font;
  window.SetFont(&font);
  EXPECT_EQ(window.GetFont(), &font);
  window.ValidateRect();
  window.SetFont(nullptr, false);
  EXPECT_TRUE(window.GetUpdateRect().IsRectEmpty());
  std::string places;
  for (const SCROLLINFO& info :
       {SCROLLINFO{0, 99, 10, 95}, {5, 9, 0, 1}, {0, 3, 9, 2}, {9, 0, 1, 4}}) {
    for (int twice = 0; twice < 2; ++twice) window.SetScrollInfo(SB_VERT, info);
    places += std::to_string(window.GetScrollPos(SB_VERT)) + " ";
  }
  EXPECT_TRUE(window.SetScrollPos(SB_HORZ, 7) == 0 && window.GetScrollPos(SB_HORZ) == 0);
  EXPECT_EQ(places, "90 5 0 9 ");
  EXPECT_EQ(told.Take(),
            "1 font 1 invalidated 1 font 1 scroll@1*1 1 scroll@1*1 1 scroll@1*1 1 scroll@1*1 ");
  RecordingDC dc({100, 100});
  dc.SetTextColor(5);
  LogWnd::Take();
  window.Paint(dc);
  EXPECT_TRUE(LogWnd::Take() == "1:20 " && dc.GetTextColor() == 5);
  EXPECT_EQ(window.GetUpdateRect(), (CRect{0, 0, 50, 50})) << "asked for while it was drawn";
}

TEST(WindowLayer, ShowsWaitPointersOnceAndHasMenusDrawTheirItems) {
  Layer layer;
  {
    const CWaitCursor outer;
    const CWaitCursor inner;
    MessageBeep(static_cast<UINT>(-1));
  }
  EXPECT_EQ(layer.waiting, "+-1-");
  struct OwnMenu : CMenu {
    void MeasureItem(MEASUREITEMSTRUCT* item) override { item->itemWidth = 70; }
    void DrawItem(DRAWITEMSTRUCT* item) override { item->itemState |= ODS_CHECKED; }
  } menu;
  menu.CreatePopupMenu();
  LogWnd owner;
  MEASUREITEMSTRUCT measured{.hMenu = menu.GetSafeHmenu()};
  DRAWITEMSTRUCT drawn{.hMenu = menu.GetSafeHmenu()};
  EXPECT_EQ(owner.SendMessage(WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&measured)), 1);
  EXPECT_EQ(owner.SendMessage(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&drawn)), 1);
  EXPECT_TRUE(measured.itemWidth == 70 && drawn.itemState == ODS_CHECKED);
  menu.DestroyMenu();
  EXPECT_EQ(owner.SendMessage(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&drawn)), 0);
}

/// Its second button needs the first one's mark.
struct UpdatedDialog : CDialog {
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
    static constexpr MessageMapEntry kEntries[] = {UpdateEntry<&UpdatedDialog::OnUpdate>(11)};
    return CallEntry(kEntries, *this, key, arguments) || CDialog::CallMapped(key, arguments);
  }
  void OnUpdate(CCmdUI* ui) {
    ui->Enable(IsDlgButtonChecked(10));
    if (ends) DestroyWindow();
  }
  bool ends = false;
};

TEST(DialogControls, AreBroughtUpToDateWhenTheThreadIsIdle) {
  CWinApp app("idle");
  UpdatedDialog dialog;
  const auto pattern = ReadDialogTemplate(
      "size 9 9\ncheck 10 \"\" 0 0 1 1\nbutton 11 \"\" 0 0 1 1\nbutton 12 \"\" 0 0 1 1\n");
  ASSERT_TRUE(dialog.CreateIndirect(pattern.value(), nullptr));
  dialog.ShowWindow(SW_SHOW);
  std::string enabled;
  for (const int check : {0, 1}) {
    dialog.CheckDlgButton(10, check);
    PumpUntilIdle();
    for (const int id : {11, 12})
      enabled += std::to_string(dialog.GetDlgItem(id)->IsWindowEnabled());
  }
  EXPECT_EQ(enabled, "0111");
  dialog.UpdateDialogControls(dialog, true);
  EXPECT_FALSE(dialog.GetDlgItem(12)->IsWindowEnabled());
  dialog.ends = true;
  PumpUntilIdle();
  EXPECT_EQ(dialog.GetSafeHwnd(), nullptr);
}

TEST(WindowLayer, LeavesWhatIsHiddenOrDisabled) {
  Layer layer;
  LogWnd owner({.class_name = "T", .id = 1}), owned({.class_name = "T", .owner = &owner, .id = 2});
  LogWnd child({.class_name = "C", .parent = &owned, .id = 3});
  owned.SetActiveWindow();
  child.SetCapture();
  owned.EnableWindow(false);
  EXPECT_TRUE(CWnd::GetCapture() == nullptr && !KeyInput(WM_KEYDOWN, 'K'));
  EXPECT_TRUE(owner.SetActiveWindow() == &owned && owned.SetActiveWindow() == &owner);
  EXPECT_EQ(CWnd::GetActiveWindow(), &owner) << "who is disabled doesn't become active";
  owned.EnableWindow();
  owned.SetActiveWindow();
  child.SetCapture();
  owned.ShowWindow(SW_HIDE);
  EXPECT_TRUE(CWnd::GetCapture() == nullptr && CWnd::GetActiveWindow() == &owner);
  owner.ShowWindow(SW_HIDE);
  EXPECT_EQ(CWnd::GetActiveWindow(), nullptr);
  // A window that ends others while it is asked whether it is hit.
  LogWnd top({.class_name = "T", .place = {0, 0, 50, 50}, .id = 4});
  auto second = std::make_unique<LogWnd>(
      WindowCreation{.class_name = "C", .place = {0, 0, 9, 9}, .parent = &top, .id = 6});
  LogWnd first({.class_name = "C", .place = {0, 0, 9, 9}, .parent = &top, .id = 5});
  second->SetWindowOrder(nullptr);
  second->on_message = [&](UINT message) {
    if (message == WM_NCHITTEST) first.DestroyWindow();
  };
  EXPECT_EQ(top.WindowAt({1, 1}), second.get());
}

TEST(WindowLayer, ThatOnlyRecordsConforms) {
  RecordingObserver layer;
  CheckLayer(layer);
}

}  // namespace
}  // namespace dq::test
