// The bars of frames: where they lie, what they tell, and what a person does with them.

#include "tests/support/own_settings.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// Position, style, width and text of each pane.
std::string Panes(const CStatusBar& bar) {
  std::ostringstream text;
  for (int at = 0; at < bar.GetItemCount(); ++at) {
    const StatusPane pane = bar.GetPane(at);
    text << pane.id << ':' << std::hex << pane.style << std::dec << ' ' << pane.width << " ["
         << pane.text.View() << "] ";
  }
  return text.str();
}

struct StatusBars : testing::Test {
  StatusBars() {
    strings.AddString(10, "Line XX");
    strings.AddString(11, "Toggles it\nINS\xC3\x9F");
  }

  ResourceModule strings;
  CDynLinkLibrary link{&strings};
  BarFrame frame;
  CStatusBar bar;
};

TEST_F(StatusBars, ShowTheMessageOfTheirFrameAndStretchTheFirstPane) {
  const UINT ids[] = {0, 10, 11}, missing[] = {0, 12}, others[] = {11, 0};
  frame.SetMessageText("ready");
  ASSERT_TRUE(bar.SetIndicators(ids) && bar.Create(&frame));
  EXPECT_FALSE(bar.SetIndicators(missing) || bar.Create(&frame));
  EXPECT_EQ(Panes(bar),
            "0:8000100 480 [ready] 10:4000000 49 [Line XX] 11:4000000 28 [INS\xC3\x9F] ");
  frame.RecalcLayout();
  EXPECT_EQ(Text(bar.GetPlace()), "0,279-400,300");
  std::string rects;
  for (const int at : {0, 1, 2, 3, -1}) rects += Text(bar.GetItemRect(at)) + " ";
  EXPECT_EQ(rects, "0,2-307,21 309,2-364,21 366,2-400,21 0,0-0,0 0,0-0,0 ");
  bar.MoveWindow(0, 0, 60, 1);
  EXPECT_EQ(Text(bar.GetItemRect(0)) + " " + Text(bar.GetItemRect(2)), "0,2-0,2 59,2-60,2");
  RecordingObserver told;
  CFrameWnd inner;
  inner.CreateWnd({.class_name = "Frame", .parent = &frame, .id = 3});
  EXPECT_EQ(inner.GetMessageBar(), &bar);
  inner.SetMessageText("deep");
  frame.SetMessageText("deep");
  EXPECT_EQ(told.Take(), "3 created 3 content 59393 rows@0*1 0 content ");
  EXPECT_TRUE(bar.SetIndicators(others));
  frame.SetMessageText(nullptr);
  EXPECT_EQ(told.Take(), "59393 -rows@0*3 59393 +rows@0*2 0 content 59393 rows@1*1 ");
  EXPECT_EQ(Panes(bar), "11:4000000 28 [INS\xC3\x9F] 0:0 480 [] ");
  UINT id = 0, style = 0;
  int width = 0;
  EXPECT_TRUE(bar.SetPaneInfo(0, 7, SBPS_POPOUT, -1) && bar.GetPaneInfo(0, id, style, width));
  EXPECT_EQ(std::to_string(id) + " " + std::to_string(style) + " " + std::to_string(width),
            "7 512 0");
  EXPECT_FALSE(bar.SetPaneInfo(2, 7, 0, 0) || bar.GetPaneInfo(-1, id, style, width) ||
               bar.SetPaneText(2, "") || CStatusBar().SetPaneText(0, ""));
}

TEST_F(StatusBars, SayThatTheFrameIsReadyUntilItSaysMoreAndWhenTheHelpOnAMenuEnds) {
  const UINT message[] = {0};
  ASSERT_TRUE(bar.SetIndicators(message) && bar.Create(&frame));
  strings.AddString(500, "Opens it\nOpen");
  const auto look_at = [&](UINT id, UINT flags, LPARAM menu) {
    frame.SendMessage(WM_MENUSELECT, MakeWParam(id, flags), menu);
  };
  for (const auto& [step, now, when_idle] : Rows<std::function<void()>, const char*, const char*>{
           {[] {}, "", "Ready"},
           {[&] { frame.SetMessageText("busy"); }, "busy", "busy"},
           {[&] { look_at(500, 0, 1); }, "Opens it", "Opens it"},
           {[&] { look_at(0, MF_POPUP, 1); }, "", ""},
           {[&] { look_at(0, 0xFFFF, 0); }, "", "Ready"},
           {[&] { look_at(0, 0xFFFF, 0), frame.SetMessageText("done"); }, "done", "done"}}) {
    step();
    EXPECT_EQ(bar.GetPaneText(0), now);
    frame.SendMessage(WM_IDLEUPDATECMDUI, 1);
    EXPECT_EQ(bar.GetPaneText(0), when_idle);
  }
}

TEST_F(StatusBars, AreBroughtUpToDateByHandlersWhichMayEndThem) {
  const UINT ids[] = {0, 10, 11};
  ASSERT_TRUE(bar.Create(&frame) && bar.SetIndicators(ids) && bar.SetPaneText(0, "m"));
  RecordingObserver told;
  const auto update = [&] {
    bar.SendMessage(WM_IDLEUPDATECMDUI, 1);
    return told.Take() + Panes(bar);
  };
  EXPECT_EQ(update(), "0:8000100 480 [m] 10:4000000 49 [Line XX] 11:4000000 28 [INS\xC3\x9F] ");
  bar.SetPaneText(2, "OVR");
  frame.updates[10] = [](CCmdUI& ui) { ui.SetText("Line 1"); };
  frame.updates[11] = [](CCmdUI& ui) { ui.SetRadio(1); };
  EXPECT_EQ(update(),
            "59393 rows@2*1 59393 rows@1*1 59393 rows@1*1 59393 rows@2*1 "
            "0:8000100 480 [m] 10:0 49 [Line 1] 11:200 28 [OVR] ");
  frame.updates.erase(10);
  frame.updates[11] = [](CCmdUI& ui) { ui.Enable(0), ui.SetCheck(0); };
  EXPECT_EQ(update(),
            "59393 rows@1*1 59393 rows@2*1 59393 rows@2*1 "
            "0:8000100 480 [m] 10:4000000 49 [Line 1] 11:4000000 28 [OVR] ");
  frame.updates[10] = [&](CCmdUI& ui) { bar.SetIndicators({}), ui.SetText("x"), ui.Enable(); };
  EXPECT_EQ(update(), "59393 -rows@0*3 ");
  auto dropped = std::make_unique<CStatusBar>();
  ASSERT_TRUE(dropped->Create(&frame, 5) && dropped->SetIndicators(ids));
  frame.updates[10] = [&](CCmdUI& ui) { dropped.reset(), ui.SetText("x"); };
  dropped->SendMessage(WM_IDLEUPDATECMDUI, 1);
  EXPECT_EQ(dropped, nullptr);
}

/// A frame at 100,100 with a status bar, a tool bar, a pane 7 that is 60 wide and 50 high, at the
/// left, and a view.
struct Docking : testing::Test {
  struct Layer : RecordingObserver {
    int GetKeyState(int key) override { return key == held ? kKeyDown : 0; }
    int held = 0;
  };

  Docking() {
    frame.MoveWindow(100, 100, 400, 300);
    frame.EnableDocking(CBRS_ALIGN_ANY);
    const WORD commands[] = {50, 0, 51};
    tools.SetButtons(commands);
    tools.Create(&frame);
    status.Create(&frame);
    pane.CreateWnd({.class_name = "Pane", .text = "Output", .parent = &frame, .id = 7});
    view.CreateWnd({.class_name = "View", .parent = &frame, .id = kFirstPaneId});
    tools.EnableDocking(CBRS_ALIGN_TOP | CBRS_ALIGN_LEFT);
    pane.EnableDocking(CBRS_ALIGN_ANY);
    pane.EnableSizing(true);
    pane.SetBarSize({60, 50});
    layer.Take();
  }
  /// Where the bars that are shown lie, on the screen, and the view.
  std::string Places() {
    std::string text;
    for (const auto& [name, bar] : Rows<const char*, const CControlBar*>{
             {"tools ", &tools}, {"status ", &status}, {"pane ", &pane}}) {
      if (!bar->IsWindowVisible()) continue;
      text += name + Text(bar->GetWindowRect()) + (bar->IsFloating() ? " floats; " : "; ");
    }
    return text + "view " + Text(view.GetWindowRect());
  }
  /// Drags a bar by the mouse from one place on the screen to another.
  void Drag(CControlBar& bar, const CPoint& from, const CPoint& to) {
    for (const auto& [message, at] :
         Rows<UINT, CPoint>{{WM_LBUTTONDOWN, from}, {WM_MOUSEMOVE, to}, {WM_LBUTTONUP, to}}) {
      MouseInput(message, 0, at, &bar);
    }
  }

  CWinApp app{"bars"};
  Layer layer;
  BarFrame frame;
  CToolBar tools;
  CStatusBar status;
  CControlBar pane{DockSide::kLeft};
  CWnd view;
};

TEST_F(Docking, BarsTakeTheirEdgesThoseThatStayFarthestOut) {
  EXPECT_EQ(Places(),
            "tools 100,100-500,127; status 100,379-500,400; pane 100,127-160,379; view "
            "160,127-500,379");
  // The bar, its edge, the bar before which it lies, and where all lie then; "!" if it stays.
  for (const auto& [bar, side, before, places] :
       Rows<CControlBar*, DockSide, CControlBar*, const char*>{
           {&pane, DockSide::kBottom, nullptr,
            "tools 100,100-500,127; status 100,379-500,400; pane 100,329-500,379; view "
            "100,127-500,329"},
           {&tools, DockSide::kLeft, &pane,
            "tools 100,100-128,379; status 100,379-500,400; pane 128,329-500,379; view "
            "128,100-500,329"},
           {&tools, DockSide::kBottom, nullptr, "!"},
           {&status, DockSide::kTop, nullptr, "!"},
           {&pane, DockSide::kTop, &pane, "!"},
           {&pane, DockSide::kRight, &tools,
            "tools 100,100-128,379; status 100,379-500,400; pane 440,100-500,379; view "
            "128,100-440,379"}}) {
    const bool docked = frame.DockControlBar(bar, side, before);
    EXPECT_EQ(docked ? Places() : "!", places);
  }
  EXPECT_EQ(Text(pane.GetInsideRect()) + " " + Text(pane.GetGripperRect()) + " " +
                Text(pane.GetSizingRect()) + " " + Text(tools.GetItemRect(2)),
            "5,8-60,279 0,0-60,8 0,0-5,279 2,41-26,64");
  pane.SetMinBarSize({80, 0});
  frame.ShowControlBar(&tools, false);
  EXPECT_EQ(Places(), "status 100,379-500,400; pane 420,100-500,379; view 100,100-420,379");
  frame.EnableDocking(0);
  CFrameWnd other;
  EXPECT_FALSE(frame.DockControlBar(&pane) || other.FloatControlBar(&pane, {}) ||
               frame.FloatControlBar(&status, {}) || frame.DockControlBar(nullptr));
  pane.DestroyWindow();
  frame.SendMessage(WM_IDLEUPDATECMDUI);
  EXPECT_EQ(Places(), "status 100,379-500,400; view 100,100-500,379");
}

TEST_F(Docking, GoesOnBehindABarThatHasThrown) {
  struct Thrower : CControlBar {
    CSize CalcFixedLayout(const CSize&, bool) override { throw CUserException(); }
  };
  {
    Thrower thrower;
    thrower.CreateWnd({.class_name = "Bar", .parent = &frame, .id = 9});
    EXPECT_THROW(frame.RecalcLayout(), CUserException);
  }
  frame.ShowControlBar(&tools, false);
  EXPECT_EQ(Text(view.GetWindowRect()), "160,100-500,379");
}

TEST_F(Docking, BarsFloatInFramesOfTheirOwnWhichHandOnWhatTheyAreTold) {
  std::string commands;
  frame.updates[51] = [&](CCmdUI& ui) { ui.SetCheck(), commands += "update "; };
  layer.frame_widths = {2, 10, 2, 2};
  EXPECT_TRUE(pane.ToggleFloating() && frame.FloatControlBar(&tools, {700, 700, 700, 700}));
  layer.frame_widths = {};
  EXPECT_EQ(Places(),
            "tools 702,710-762,737 floats; status 100,379-500,400; pane "
            "102,137-202,237 floats; view 100,100-500,379");
  CWnd& around = *pane.GetParent();
  EXPECT_EQ(around.GetWindowText() + " " + Text(pane.GetFloatingPlace()), "Output 100,127-204,239");
  EXPECT_TRUE(around.IsSizable() && !tools.GetParent()->IsSizable());
  for (const bool enable : {false, true}) {
    frame.EnableWindow(enable);
    EXPECT_TRUE(around.IsWindowEnabled() == enable && pane.GetParent() == &around);
  }
  around.MoveWindow(600, 20, 204, 132);
  EXPECT_EQ(Text(pane.GetWindowRect()) + " " + Text(pane.GetFloatingPlace()),
            "602,30-802,150 600,20-804,152");
  EXPECT_EQ(Text(pane.GetInsideRect()), "0,0-200,120");
  frame.SendMessage(WM_IDLEUPDATECMDUI, 1);
  EXPECT_EQ(commands + std::to_string(tools.GetButton(2).checked), "update 1");
  EXPECT_TRUE(!tools.GetButton(0).enabled && frame.GetControlBar(7) == &pane);
  frame.GetAccelTable().Read("F5 59392\n");
  MSG key{pane.GetSafeHwnd(), WM_KEYDOWN, 0x74, 0};
  EXPECT_TRUE(PreTranslateInput(key) && !tools.IsShown()) << "a key of the owner's";
  tools.GetParent()->SendMessage(WM_COMMAND, 59393);
  around.SendMessage(WM_CLOSE);
  EXPECT_EQ(Places(), "view 100,100-500,400");
  CCmdUI ui;
  CButton mark(ButtonKind::kThreeState);
  mark.CreateWnd("Button");
  ui.m_pOther = &mark;
  for (const auto& [id, shown, checked] : Rows<UINT, bool, int>{
           {59392, true, 1}, {59393, true, 1}, {59393, false, 0}, {59394, false, 0}}) {
    frame.SendMessage(WM_COMMAND, id);
    ui.m_nID = id;
    const bool handled = ui.DoUpdate(frame, true);
    EXPECT_TRUE(handled == (id != 59394) && mark.IsWindowEnabled() == handled) << id;
    EXPECT_EQ(mark.GetCheck(), checked) << id;
  }
  EXPECT_TRUE(tools.IsWindowVisible() && frame.DockControlBar(&tools));
  EXPECT_EQ(Places(), "tools 100,100-500,127; view 100,127-500,400");
  // What floats ends with its bar, and bars with their frame.
  const HWND floating = around.GetSafeHwnd();
  pane.DestroyWindow();
  EXPECT_EQ(CWnd::FromHandle(floating), nullptr);
  EXPECT_TRUE(tools.ToggleFloating());
  frame.DestroyWindow();
  EXPECT_EQ(tools.GetSafeHwnd(), nullptr);
}

TEST_F(Docking, BarsAreDraggedToOtherEdgesOutOfTheFrameAndToOtherSizes) {
  struct Row {
    CControlBar& bar;
    CPoint from, to;
    int held;
    const char* places;
  };
  for (const auto& [bar, from, to, held, places] : std::vector<Row>{
           {pane, {158, 200}, {168, 300}, 0, "pane 100,127-170,379; view 170,127-500,379"},
           {pane, {168, 200}, {900, 200}, 0, "pane 100,127-500,379; view 500,127-500,379"},
           {pane, {498, 200}, {0, 200}, 0, "pane 100,127-100,379; view 100,127-500,379"},
           {pane, {110, 130}, {110, 132}, 0, "pane 100,127-160,379; view 160,127-500,379"},
           {pane, {110, 130}, {300, 360}, 0, "pane 100,329-500,379; view 100,127-500,329"},
           {pane, {104, 350}, {470, 240}, 0, "pane 440,127-500,379; view 100,127-440,379"},
           {pane, {450, 130}, {450, 136}, 0, "pane 440,127-500,379; view 100,127-440,379"},
           {pane, {450, 130}, {200, 101}, 0, "pane 100,100-500,150; view 100,177-500,379"},
           {pane, {104, 140}, {104, 165}, 0, "pane 100,127-500,177; view 100,177-500,379"},
           {pane, {200, 175}, {200, 195}, 0, "pane 100,127-500,197; view 100,197-500,379"},
           {pane, {200, 195}, {200, 150}, VK_ESCAPE, "pane 100,127-500,197; view 100,197-500,379"},
           {tools, {104, 110}, {110, 210}, 0, "pane 100,100-500,170; view 128,170-500,379"},
           {pane, {104, 110}, {140, 220}, VK_CONTROL, "pane 136,210-236,310; view 128,100-500,379"},
       }) {
    SCOPED_TRACE(places);
    if (pane.GetWindowRect().Width() == 0) pane.SetBarSize({60, 50});
    layer.held = held;
    // Those of the small frame lie around the bar.
    if (held == VK_CONTROL) layer.frame_widths = {2, 10, 2, 2};
    if (held == VK_ESCAPE) {
      MouseInput(WM_LBUTTONDOWN, 0, from, &bar);
      MouseInput(WM_MOUSEMOVE, 0, to, &bar);
      EXPECT_EQ(pane.GetWindowRect().Height(), 25);
      MSG escape{frame.GetSafeHwnd(), WM_KEYDOWN, VK_ESCAPE, 0};
      EXPECT_TRUE(PreTranslateInput(escape));
    } else {
      Drag(bar, from, to);
    }
    EXPECT_EQ("pane " + Text(pane.GetWindowRect()) + "; view " + Text(view.GetWindowRect()),
              places);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
  }
  layer.held = 0;
  EXPECT_TRUE(pane.IsFloating() && pane.ToggleFloating() && pane.GetDockSide() == DockSide::kTop);
  layer.Take();
  MouseInput(WM_LBUTTONDOWN, 0, {132, 110}, &pane);
  MouseInput(WM_MOUSEMOVE, 0, {495, 300}, &pane);
  EXPECT_EQ(Text(pane.GetDragRect()), "440,170-500,379");
  CWnd::ReleaseCapture();
  EXPECT_EQ(Text(pane.GetDragRect()) + layer.Take(),
            "0,0-0,07 capture 7 content 7 capture 7 content ");
  MouseInput(WM_LBUTTONDBLCLK, 0, {132, 110}, &pane);
  EXPECT_TRUE(pane.IsFloating());
}

TEST_F(Docking, StateComesBackFromTheProfile) {
  app.SetRegistryKey("Bars");
  frame.LoadBarState("None");
  EXPECT_EQ(Places().substr(0, 12), "tools 100,10") << "what isn't there changes nothing";
  // What is done, and where all lie after it was saved and loaded once more.
  for (const auto& [act, places] : Rows<std::function<void()>, const char*>{
           {[] {},
            "tools 100,100-500,127; status 100,379-500,400; pane 100,127-160,379; view "
            "160,127-500,379"},
           {[&] { frame.DockControlBar(&tools, DockSide::kLeft); },
            "tools 160,100-188,379; status 100,379-500,400; pane 100,100-160,379; view "
            "188,100-500,379"},
           {[&] {
              frame.ShowControlBar(&status, false);
              frame.FloatControlBar(&pane, {1800, 1000, 2000, 1300});
            },
            "tools 100,100-128,400; pane 1800,1000-2000,1300 floats; view 128,100-500,400"},
           {[&] {
              frame.ShowControlBar(&tools, false);
              frame.FloatControlBar(&pane, {1920, 1000, 2000, 1300});
            },
            "pane 100,100-200,200 floats; view 100,100-500,400"},
           {[&] {
              app.WriteProfileInt("S", "bar7.floating", 0);
              app.WriteProfileInt("S", "bar7.side", 9);
              app.WriteProfileInt("S", "bar7.width", 1 << 30);
            },
            "status 100,379-500,400; pane 100,100-500,379; view 500,100-500,379"}}) {
    const bool damage = std::string_view(places).starts_with("status");
    act();
    if (!damage) frame.SaveBarState("S");
    pane.SetBarSize({10, 10});
    frame.DockControlBar(&pane, DockSide::kLeft);
    frame.DockControlBar(&tools, DockSide::kTop, &pane);
    frame.ShowControlBar(&status, damage);
    frame.ShowControlBar(&tools, true);
    frame.LoadBarState("S");
    if (damage) frame.ShowControlBar(&status, true);
    EXPECT_EQ(Places(), places);
  }
}

/// A bar, or a pane, that ends something when it gets another size.
template <typename Base>
struct Ending : Base {
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message != WM_SIZE || !end) return Base::WindowProc(message, wparam, lparam);
    std::exchange(end, nullptr)();
    return 0;
  }
  std::function<void()> end;
};

TEST(Bars, MayBeEndedOrEndTheirFrameWhileTheyAreLaidOut) {
  const std::function<void(CFrameWnd&, CControlBar&)> acts[] = {
      [](CFrameWnd& frame, CControlBar& bar) { frame.DockControlBar(&bar, DockSide::kTop); },
      [](CFrameWnd&, CControlBar& bar) { bar.ToggleFloating(); },
      [](CFrameWnd& frame, CControlBar& bar) {
        frame.FloatControlBar(&bar, {9, 9, 200, 300});
      },
      [](CFrameWnd&, CControlBar& bar) {
        bar.SetMinBarSize({90, 90});
      },
      [](CFrameWnd& frame, CControlBar&) { frame.LoadBarState("Ending"); },
      [](CFrameWnd&, CControlBar& bar) {
        MouseInput(WM_LBUTTONDOWN, 0, {57, 200}, &bar);
        MouseInput(WM_MOUSEMOVE, 0, {90, 200}, &bar);
      },
      [](CFrameWnd&, CControlBar& bar) {
        for (const UINT message : {WM_LBUTTONDOWN, WM_MOUSEMOVE, WM_LBUTTONUP}) {
          MouseInput(message, 0, {message == WM_LBUTTONDOWN ? 5 : 900, 5}, &bar);
        }
      },
  };
  CWinApp app("ending");
  for (const auto& act : acts) {
    for (const bool ends_frame : {false, true}) {
      auto frame = std::make_unique<CFrameWnd>();
      auto bar = std::make_unique<Ending<CControlBar>>();
      ASSERT_TRUE(frame->Create("Frame", "", {0, 0, 400, 300}));
      bar->CreateWnd({.class_name = "Pane", .parent = frame.get(), .id = 7});
      frame->EnableDocking(CBRS_ALIGN_ANY);
      bar->EnableDocking(CBRS_ALIGN_ANY);
      bar->EnableSizing(true);
      bar->SetBarSize({160, 160});
      bar->SetDockSide(DockSide::kLeft);
      frame->SaveBarState("Ending");
      bar->SetBarSize({60, 60});
      bar->end = [&] { ends_frame ? frame.reset() : bar.reset(); };
      act(*frame, *bar);
      EXPECT_EQ(ends_frame ? frame == nullptr : bar == nullptr, true) << &act - acts;
      EXPECT_EQ(CWnd::GetCapture(), nullptr);
    }
  }
  for (const bool ends_splitter : {false, true}) {
    BarFrame frame;
    auto splitter = std::make_unique<CSplitterWnd>();
    auto pane = std::make_unique<Ending<CWnd>>();
    ASSERT_TRUE(splitter->CreateStatic(&frame, 1, 2));
    pane->CreateWnd({.class_name = "X", .parent = splitter.get(), .id = kFirstPaneId});
    splitter->SetColumnInfo(0, 100, 0);
    frame.RecalcLayout();
    pane->end = [&] { ends_splitter ? splitter.reset() : pane.reset(); };
    for (const UINT message : {WM_LBUTTONDOWN, WM_MOUSEMOVE, WM_LBUTTONUP}) {
      MouseInput(message, 0, {message == WM_LBUTTONDOWN ? 103 : 200, 5}, splitter.get());
    }
    EXPECT_TRUE(ends_splitter ? splitter == nullptr : pane == nullptr);
  }
}

}  // namespace
}  // namespace dq::test
