// Frames: who gets what their controls notify, how their bars and panes share their client area,
// and which views they make.

#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// What happens, in its order.
std::string g_log;

std::string Take() { return std::exchange(g_log, {}); }

/// A control that keeps one of its notifications to itself.
struct ReflectingWnd : CWnd {
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
    static constexpr MessageMapEntry kEntries[] = {
        ReflectedEntry<&ReflectingWnd::OnCode>(33),
        ReflectedNotificationEntry<&ReflectingWnd::OnNote>(-12),
        ReflectedMessageEntry<&ReflectingWnd::OnMeasure>(WM_MEASUREITEM)};
    return CallEntry(kEntries, *this, key, arguments) || CWnd::CallMapped(key, arguments);
  }
  BOOL OnCode() { return g_log += "code ", keeps; }
  BOOL OnNote(NMHDR* header, LRESULT* result) {
    g_log += "note" + std::to_string(header->code) + " ";
    *result = 5;
    return keeps;
  }
  LRESULT OnMeasure(WPARAM, LPARAM) { return 6; }
  BOOL keeps = 0;
};

TEST(Notifications, GoToTheControlFirstAndThenAlongTheCommandRoute) {
  struct View : CView {
    bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
      static constexpr MessageMapEntry kEntries[] = {NotificationEntry<&View::OnNote>(-12, 9),
                                                     ControlEntry<&View::OnCode>(33, 9)};
      return CallEntry(kEntries, *this, key, arguments) || CView::CallMapped(key, arguments);
    }
    void OnNote(NMHDR*, LRESULT* result) {
      g_log += "view ";
      *result = 7;
    }
    void OnCode() { g_log += "view "; }
  };
  CFrameWnd frame;
  frame.Create("Frame", "", {0, 0, 9, 9});
  View view;
  CDocument* const none = nullptr;
  view.Create(&frame, CRect{}, 1, none);
  ReflectingWnd control;
  control.CreateWnd({.class_name = "C", .parent = &frame, .id = 9});
  NMHDR header{control.GetSafeHwnd(), 9, -12};
  Take();
  std::string results;
  for (const BOOL keeps : {0, 1}) {
    control.keeps = keeps;
    frame.SendMessage(WM_COMMAND, MakeWParam(9, 33),
                      reinterpret_cast<LPARAM>(control.GetSafeHwnd()));
    results += std::to_string(frame.SendMessage(WM_NOTIFY, 9, reinterpret_cast<LPARAM>(&header)));
  }
  EXPECT_EQ(results + std::to_string(frame.SendMessage(WM_MEASUREITEM, 9)), "756");
  EXPECT_EQ(Take(), "code view note-12 view code note-12 ");
  EXPECT_EQ(frame.SendMessage(WM_NOTIFY), 0);
}

struct FrameBar : CControlBar {
  FrameBar(CFrameWnd& frame, DockSide side, CSize size) : CControlBar(side) {
    CreateWnd({.class_name = "Bar", .parent = &frame});
    SetBarSize(size);
  }
  ~FrameBar() override { DestroyWindow(); }
};

TEST(FrameLayout, SharesItsClientAreaAmongItsBarsAndThePane) {
  CFrameWnd frame;
  frame.Create("Frame", "", {0, 0, 300, 200});
  CView view;
  CDocument* const none = nullptr;
  view.Create(&frame, CRect{}, kFirstPaneId, none);
  FrameBar top(frame, DockSide::kTop, {0, 20}), left(frame, DockSide::kLeft, {30, 0}),
      bottom(frame, DockSide::kBottom, {999, 10}), right(frame, DockSide::kRight, {40, 0});
  EXPECT_EQ(view.GetPlace(), (CRect{30, 20, 260, 190}));
  EXPECT_TRUE(left.GetPlace() == (CRect{0, 20, 30, 200}) &&
              bottom.GetPlace() == (CRect{30, 190, 300, 200}) &&
              right.GetPlace() == (CRect{260, 20, 300, 190}));
  frame.MoveWindow(0, 0, 100, 50);
  EXPECT_EQ(view.GetPlace(), (CRect{30, 20, 60, 40}));
  frame.ShowControlBar(&right, false);
  top.SetDockSide(DockSide::kNone);
  left.SetBarSize({5000, 0});
  EXPECT_EQ(view.GetPlace(), (CRect{100, 0, 100, 40})) << "there is no more than all";
}

TEST(FrameLayout, KeepsAMaximisedChildInItsSizeAndPassesThatOn) {
  CMDIFrameWnd main;
  CMDIChildWnd first, second;
  main.Create("Frame", "", {0, 0, 300, 200});
  first.Create("Child", "", {10, 10, 60, 60}, &main);
  second.Create("Child", "", {20, 20, 80, 80}, &main);
  second.ShowWindow(SW_SHOWMAXIMIZED);
  FrameBar bar(main, DockSide::kTop, {0, 50});
  EXPECT_EQ(second.GetPlace(), (CRect{0, 0, 300, 150}));
  main.MDIActivate(&first);
  EXPECT_TRUE(first.IsZoomed() && first.GetPlace() == (CRect{0, 0, 300, 150}));
  EXPECT_TRUE(!second.IsZoomed() && second.GetPlace() == (CRect{20, 20, 80, 80}));
  first.ShowWindow(SW_HIDE);
  EXPECT_TRUE(second.IsZoomed() && main.MDIGetActive() == &second && !first.IsShown());
}

/// A view that is made by its class, and tells of its life.
struct MadeView : CView {
  DECLARE_DYNCREATE(MadeView)
  MadeView() = default;
  ~MadeView() override { g_log += "~view "; }
  void OnInitialUpdate() override { g_log += "initial "; }
  void OnActivateView(bool activate, CView* activated, CView* deactivated) override {
    g_log += activate ? "on" : "off";
    g_log += activated == deactivated ? "= " : " ";
  }
};
IMPLEMENT_DYNCREATE(MadeView, CView)

struct MadeDocument : CDocument {
  ~MadeDocument() override { g_log += "~document "; }
  void DeleteContents() override { g_log += "contents "; }
};

TEST(FrameLayout, MakesViewsOfAClassWhichEndWithTheirWindowAndTakeTheirDocumentAlong) {
  auto* const document = new MadeDocument;
  document->m_bAutoDelete = true;
  const CCreateContext context{.m_pNewViewClass = RUNTIME_CLASS(MadeView),
                               .m_pCurrentDoc = document};
  Take();
  {
    CFrameWnd frame;
    ASSERT_TRUE(frame.Create("Frame", "Tool", {0, 0, 90, 90}, 0, &context));
    document->SetTitle("Doc");
    CView* const view = document->GetFirstView();
    EXPECT_TRUE(view->GetPlace() == (CRect{0, 0, 90, 90}) && frame.GetActiveView() == view);
    frame.InitialUpdateFrame(document, true);
    EXPECT_EQ(Take(), "initial on= on= ");
    EXPECT_EQ(frame.GetWindowText(), "Doc - Tool");
    // While the document is held back, it outlives its last view.
    document->m_bAutoDelete = false;
    view->DestroyWindow();
    EXPECT_TRUE(document->GetViews().empty() && frame.GetActiveView() == nullptr);
    document->m_bAutoDelete = true;
    CView* const next = frame.CreateView(&context);
    frame.SetActiveView(nullptr);
    frame.SetActiveView(next);
    EXPECT_EQ(Take(), "off ~view off on ");
    const CCreateContext wrong{.m_pNewViewClass = RUNTIME_CLASS(CFrameWnd)};
    EXPECT_TRUE(frame.CreateView(&wrong, 5) == nullptr && frame.CreateView(nullptr) == nullptr);
    frame.SendMessage(WM_CLOSE);
    EXPECT_EQ(frame.GetSafeHwnd(), nullptr);
  }
  EXPECT_EQ(Take(), "off ~view contents ~document ");
}

}  // namespace
}  // namespace dq::test
