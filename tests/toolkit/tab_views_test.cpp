// Tab views whose views are made when they are first asked for, splitters that hide a row or a
// column, and the workbooks of the family.

#include "tests/support/own_settings.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// A view that keeps how many there are, and what it is told.
struct PageView : CView {
  DECLARE_DYNCREATE(PageView)
  PageView() { ++count; }
  ~PageView() override { --count; }
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message == WM_CREATE && refuses) return -1;
    const LRESULT result = CView::WindowProc(message, wparam, lparam);
    if (message == WM_CREATE && at_create) at_create();
    if (const auto act = at_message) act(message);
    return result;
  }
  void OnInitialUpdate() override { ++updated; }
  int updated = 0;
  std::function<void(UINT)> at_message;
  static inline int count = 0;
  static inline bool refuses = false;
  static inline std::function<void()> at_create;
};
IMPLEMENT_DYNCREATE(PageView, CView)

struct OtherView : PageView {
  DECLARE_DYNCREATE(OtherView)
};
IMPLEMENT_DYNCREATE(OtherView, PageView)

struct ThirdView : PageView {
  DECLARE_DYNCREATE(ThirdView)
};
IMPLEMENT_DYNCREATE(ThirdView, PageView)

struct OwnDocument : CDocument {
  OwnDocument() { m_bAutoDelete = true, ++count; }
  ~OwnDocument() override { --count; }
  static inline int count = 0;
};

struct TabView : CDQSftTabView {
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message == 0x87D0) told += wparam == 0 && lparam == 0 ? "!" : "?";
    return CDQSftTabView::WindowProc(message, wparam, lparam);
  }
  bool OnTabChanging(int index) override {
    told += std::to_string(index);
    if (at_changing) at_changing();
    return agrees;
  }
  using CDQSftTabView::OnTabChange;
  std::string told;
  std::function<void()> at_changing;
  bool agrees = true;
};

struct TabViews : testing::Test {
  TabViews() {
    view.Create(&frame, {}, kFirstPaneId, &document);
    frame.RecalcLayout();
    for (const char* label : {"&One", "T&wo", "E&"}) {
      view.addTabView(RUNTIME_CLASS(PageView), &document, label, label[0] == 'T', false, 7);
    }
  }
  ~TabViews() override {
    PageView::refuses = false;
    PageView::at_create = nullptr;
    frame.DestroyWindow();
    EXPECT_EQ(PageView::count, 0);
  }
  /// The tab that is shown, how many views there are, and what was told.
  std::string State() {
    EXPECT_EQ(view.GetCurrentTab(), view.GetTabControl().GetCurSel());
    return std::to_string(view.GetCurrentTab()) + "/" + std::to_string(PageView::count) +
           std::exchange(view.told, {});
  }
  std::string Alt(const std::string& letters) {
    std::string states;
    for (const char letter : letters) {
      KeyInput(WM_SYSCHAR, static_cast<WPARAM>(letter));
      states += State() + " ";
    }
    return states;
  }
  std::string Click(int index) {
    CSftTabs& tabs = view.GetTabControl();
    const CPoint at = tabs.ClientToScreen(tabs.GetTabRect(index).TopLeft());
    MouseInput(WM_LBUTTONDOWN, 0, {at.x + 3, at.y + 3}, &tabs);
    return State();
  }

  CDocument document;
  BarFrame frame;
  TabView view;
};

TEST_F(TabViews, MakeAViewWhenItsTabIsSwitchedToFirst) {
  EXPECT_TRUE(State() == "-1/0" && view.getTabCount() == 3 && view.GetActivePane() == nullptr);
  for (const int wrong : {-1, 3}) view.switchTab(wrong, true), view.SetTabLabel(wrong, "x");
  EXPECT_TRUE(State() == "-1/0" && view.getView(3) == nullptr && !view.GetTabInfo(-1));
  view.switchTab(1, true);
  EXPECT_EQ(State(), "1/1!");
  CView* const second = view.GetCurrentView();
  EXPECT_TRUE(second->GetDlgCtrlID() == 0xE902 && second->GetDocument() == &document);
  EXPECT_TRUE(static_cast<PageView*>(second)->updated == 1 && CWnd::GetFocus() == second);
  EXPECT_TRUE(frame.GetActiveView() == second && view.GetActivePane() == second);
  EXPECT_EQ(Text(second->GetPlace()), "2,25-398,298") << "with an edge around";
  view.switchTab(0, false);
  EXPECT_EQ(State(), "0/2!");
  EXPECT_TRUE(!second->IsShown() && view.GetCurrentView()->IsShown());
  EXPECT_EQ(Text(view.GetCurrentView()->GetPlace()), "0,23-400,300");
  EXPECT_TRUE(frame.GetActiveView() == view.GetCurrentView()) << "it takes the place";
  frame.MoveWindow(0, 0, 200, 100);
  EXPECT_EQ(Text(view.GetCurrentView()->GetPlace()), "0,23-200,100");
  view.switchTab(0, true);
  EXPECT_EQ(State(), "0/2") << "the same view is shown";
  EXPECT_EQ(view.GetActivePane(), view.getView(0));
  second->DestroyWindow();
  EXPECT_TRUE(view.GetTabInfo(1)->IsCreated() == false && State() == "0/1");
  EXPECT_TRUE(view.getView(1)->GetDlgCtrlID() == 0xE902 && !view.getView(1)->IsShown());
}

TEST_F(TabViews, LabelsHaveAMnemonicThatSomeStylesTakeOut) {
  for (const auto& [label, plain, mnemonic] :
       Rows<const char*, const char*, int>{{"&one", "one", 'O'},
                                           {"a&&b", "a&b", '&'},
                                           {"&", "&", 0},
                                           {"a&", "a&", 0},
                                           {"a&b&c", "ab&c", 'B'},
                                           {"", "", 0},
                                           {nullptr, "", 0}}) {
    for (int style = 0; style < 5; ++style) {
      const CTabData tab(label, style);
      EXPECT_EQ(tab.m_strLabel, style == 1 || style == 2 ? plain : label == nullptr ? "" : label);
      EXPECT_EQ(tab.m_cMnemonic, mnemonic) << plain;
    }
  }
  view.SetTabStyle(kTabsFlatBelow);
  view.switchTab(0, true);
  EXPECT_STREQ(view.GetTabControl().GetTabLabel(1), "Two");
  EXPECT_EQ(Text(view.GetCurrentView()->GetPlace()), "0,0-400,277");
  view.SetTabStyle(7);
  EXPECT_STREQ(view.GetTabControl().GetTabLabel(1), "T&wo");
  view.told.clear();
  EXPECT_EQ(Alt("wx&O"), "1/21! 1/2 1/2 0/20! ");
  view.enableView(1, false);
  EXPECT_TRUE(Alt("w") == "0/2 " && Click(1) == "0/2");
  view.SetTabLabel(2, "&Wide");
  EXPECT_STREQ(view.GetTabInfo(2)->GetLabel(), "&Wide");
  EXPECT_EQ(Alt("W"), "2/32! ");
  view.enableView(1, true);
  EXPECT_EQ(Alt("WW"), "1/31! 2/32! ") << "from one to the next";
}

TEST_F(TabViews, ViewsAreBroughtUpToDateOnceWhenTheirFrameIsCompleteOrLater) {
  view.switchTab(0, true);
  auto* const first = static_cast<PageView*>(view.getView(0));
  EXPECT_EQ(first->updated, 1);
  frame.InitialUpdateFrame(&document, true);
  auto* const late = static_cast<PageView*>(view.getView(1));
  EXPECT_TRUE(first->updated == 1 && late->updated == 1);
  frame.InitialUpdateFrame(&document, true);
  EXPECT_TRUE(first->updated == 2 && late->updated == 2) << "as if for another document";
}

TEST_F(TabViews, WhatCantBeMadeLeavesAllAsItWas) {
  view.switchTab(0, true);
  view.addTabView(nullptr, nullptr, nullptr, false, true, 0);
  view.addTabView(RUNTIME_CLASS(CDocument), nullptr, "D", false, true, 0);
  State();
  PageView::refuses = true;
  for (const int index : {1, 3, 4}) view.switchTab(index, true);
  EXPECT_TRUE(State() == "0/1" && !view.GetTabInfo(1)->IsCreated());
  EXPECT_EQ(view.createTabView(RUNTIME_CLASS(PageView), nullptr, "X", false, true, 0), nullptr);
  EXPECT_TRUE(State() == "0/1" && view.getTabCount() == 6);
  PageView::refuses = false;
  CView* const made = view.createTabView(RUNTIME_CLASS(PageView), nullptr, "Y", false, false, 9);
  EXPECT_TRUE(State() == "0/2" && made != nullptr && made == view.getView(6) && !made->IsShown());
  auto* const gone = new OwnDocument;
  view.addTabView(RUNTIME_CLASS(PageView), gone, "Z", false, false, 0);
  delete gone;
  EXPECT_EQ(view.getView(7)->GetDocument(), nullptr);
  // It asks for itself while it is made.
  PageView::at_create = [this] { view.switchTab(1, true); };
  view.switchTab(1, true);
  EXPECT_EQ(State(), "1/4!");
  TabView unmade;
  EXPECT_EQ(unmade.addTabView(RUNTIME_CLASS(PageView), nullptr, "", false, true, 0), -1);
}

TEST_F(TabViews, HandlersMayRefuseAndEndThem) {
  EXPECT_EQ(Click(0), "0/10!");
  view.agrees = false;
  EXPECT_TRUE(Click(1) == "0/11" && CWnd::GetFocus() == view.getView(0));
  view.agrees = true;
  for (const int how : {0, 1}) {
    TabView other;
    other.Create(&frame, {}, 9, &document);
    for (int at = 0; at < 2; ++at) {
      other.addTabView(RUNTIME_CLASS(PageView), nullptr, "x", false, at == 0, 0);
    }
    const auto end = [&] { other.DestroyWindow(); };
    (how == 0 ? other.at_changing : PageView::at_create) = end;
    EXPECT_FALSE(other.GetTabControl().Choose(1));
    EXPECT_TRUE(other.GetSafeHwnd() == nullptr && PageView::count == 1);
    PageView::at_create = nullptr;
  }
}

TEST_F(TabViews, ShowTheirColours) {
  const COLORREF face = GetSysColor(COLOR_BTNFACE);
  EXPECT_TRUE(view.GetBkColor() == face && !view.GetBkBrush().IsCreated());
  view.SetColors(1, 2, 3, 4, 5);
  view.SetTabTextHighlightColor(6);
  EXPECT_EQ(view.GetBkBrush().color() + view.GetTabTextHighlightBrush().color(), 7U);
  EXPECT_EQ(
      view.GetTabControl().GetColors(),
      (TabColors{.background = 2, .text = 3, .highlight_background = 4, .highlight_text = 6}));
  EXPECT_EQ(view.GetTabControl().GetBehindColor(), COLORREF{1});
  view.switchTab(1, true);
  RecordingDC dc;
  view.Paint(dc);
  EXPECT_TRUE(dc.Text().starts_with("fill 0,0 400,300 010000\nfill 0,23 400,24 a0a0a0\n"));
}

// ---- Splitters

struct HidingSplitters : testing::Test {
  HidingSplitters() {
    document = new OwnDocument;
    frame.SetActiveWindow();
    const CCreateContext context{.m_pCurrentDoc = document};
    splitter.CreateStatic(&frame, 2, 3);
    for (int row = 0; row < 2; ++row) {
      for (int column = 0; column < 3; ++column) {
        splitter.CreateView(row, column, RUNTIME_CLASS(PageView), {100, 120}, &context);
        panes[row * 3 + column] = splitter.GetPane(row, column);
      }
    }
    frame.RecalcLayout();
  }
  ~HidingSplitters() override {
    PageView::at_create = nullptr;
    frame.DestroyWindow();
    EXPECT_EQ(PageView::count + OwnDocument::count, 0);
  }
  /// Ids, 0xE9 left out, with "-" for a hidden one.
  std::string Ids() {
    std::ostringstream ids;
    for (const CWnd* pane : panes) {
      ids << std::hex << pane->GetDlgCtrlID() - 0xE900 << (pane->IsShown() ? " " : "- ");
    }
    return ids.str();
  }
  /// Widths of the columns, and heights of the rows.
  std::string Sizes() {
    std::string text;
    for (int at = 0, size = 0, least = 0; at < splitter.GetColumnCount(); ++at) {
      splitter.GetColumnInfo(at, size, least), text += std::to_string(size) + " ";
    }
    for (int at = 0, size = 0, least = 0; at < splitter.GetRowCount(); ++at) {
      splitter.GetRowInfo(at, size, least), text += "/" + std::to_string(size);
    }
    return text;
  }
  void Mouse(UINT message, int x) { splitter.SendMessage(message, 0, MakeLParam(x, 50)); }

  BarFrame frame;
  CDQSplitterWnd splitter;
  OwnDocument* document;
  CWnd* panes[6];
};

TEST_F(HidingSplitters, HideAColumnAndBringItBackAsItWas) {
  EXPECT_EQ(Sizes() + " " + Ids(), "100 100 188 /120/174 0 1 2 10 11 12 ");
  splitter.SetActivePane(1, 1);
  splitter.HideColumn(1);
  EXPECT_EQ(Sizes() + " " + Ids(), "100 294 /120/174 0 3- 1 10 13- 11 ");
  EXPECT_TRUE(frame.GetActiveView() == panes[5] && splitter.GetHiddenColumn() == 1);
  for (const int column : {0, 1, 2, -1}) splitter.HideColumn(column);
  EXPECT_EQ(Ids(), "0 3- 1 10 13- 11 ") << "one at a time";
  splitter.HideRow(0);
  EXPECT_EQ(Sizes() + " " + Ids(), "100 294 /300 20- 23- 21- 0 3- 1 ");
  splitter.HideRow(0);
  splitter.ShowColumn();
  EXPECT_EQ(Sizes() + " " + Ids(), "100 100 188 /300 20- 21- 22- 0 1 2 ");
  splitter.HideColumn(2);
  EXPECT_EQ(Sizes() + " " + Ids(), "100 294 /300 20- 21- 23- 0 1 3- ");
  splitter.ShowRow();
  splitter.ShowRow();
  EXPECT_EQ(Sizes() + " " + Ids(), "100 294 /120/174 0 1 3- 10 11 13- ");
  splitter.ShowColumn();
  splitter.ShowColumn();
  EXPECT_EQ(Sizes() + " " + Ids(), "100 100 188 /120/174 0 1 2 10 11 12 ");
  splitter.SetActivePane(0, 2);
  splitter.HideColumn(2);
  EXPECT_EQ(frame.GetActiveView(), panes[0]) << "past the end";
  splitter.SetActivePane(1, 0);
  splitter.HideRow(1);
  EXPECT_TRUE(frame.GetActiveView() == panes[0] && document->GetViews().size() == 6);
}

TEST_F(HidingSplitters, KeepTheLastOneAndTheHiddenPanesAmongTheMost) {
  CDQSplitterWnd many;
  CView* all[32];
  many.CreateStatic(&frame, 2, 16, 5);
  for (int at = 0; at < 32; ++at) {
    many.CreateView(at / 16, at % 16, RUNTIME_CLASS(PageView), {10, 10});
    all[at] = static_cast<CView*>(many.GetPane(at / 16, at % 16));
  }
  many.HideColumn(3);
  EXPECT_TRUE(!all[3]->IsShown() && all[3]->GetDlgCtrlID() == 0xE90F &&
              many.GetPane(1, 0) == all[16]);
  many.ShowColumn();
  for (int at = 0; at < 32; ++at) EXPECT_EQ(many.GetPane(at / 16, at % 16), all[at]) << at;
  many.HideRow(0);
  many.HideRow(0);
  EXPECT_TRUE(many.GetRowCount() == 1 && many.GetPane(0, 0) == all[16]);
  CDQSplitterWnd unmade;
  unmade.HideColumn(0);
  unmade.ShowRow();
}

TEST_F(HidingSplitters, ReplaceAPaneByAViewOfTheSameDocument) {
  std::string traced;
  const TraceSink former = SetTraceSink([&](std::string_view text) { traced += text; });
  for (const auto& [row, column, made] :
       Rows<int, int, const CRuntimeClass*>{{0, 0, RUNTIME_CLASS(PageView)},
                                            {0, 0, RUNTIME_CLASS(CView)},
                                            {0, 3, RUNTIME_CLASS(OtherView)},
                                            {-1, 0, nullptr}}) {
    EXPECT_FALSE(splitter.ReplaceView(row, column, made, {50, 60})) << row << column;
  }
  EXPECT_EQ(traced, "");
  constexpr const char* kFailed = "CDQSplitterWnd::ReplaceView - Failed to create view\n";
  for (const CRuntimeClass* wrong :
       {RUNTIME_CLASS(CDocument), static_cast<const CRuntimeClass*>(nullptr)}) {
    EXPECT_FALSE(splitter.ReplaceView(0, 0, wrong, {50, 60}));
    EXPECT_TRUE(std::exchange(traced, {}) == kFailed && splitter.GetPane(0, 0) == panes[0]);
  }
  splitter.HideColumn(1);
  EXPECT_FALSE(splitter.ReplaceView(0, 2, RUNTIME_CLASS(OtherView), {50, 60}));
  EXPECT_TRUE(splitter.ReplaceView(0, 0, RUNTIME_CLASS(OtherView), {50, 60}));
  auto* const made = static_cast<PageView*>(splitter.GetPane(0, 0));
  EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(OtherView)) && made->GetDocument() == document);
  EXPECT_TRUE(frame.GetActiveView() == made && CWnd::GetFocus() == made && made->updated == 1);
  EXPECT_EQ(Sizes(), "50 344 /60/234");
  EXPECT_TRUE(splitter.ReplaceView(1, 1, RUNTIME_CLASS(OtherView), {50, 60}));
  EXPECT_EQ(frame.GetActiveView(), made) << "another pane stays active";
  // The document outlives its last view, even where the next can't be made.
  for (CView* const each : std::vector(document->GetViews())) {
    if (each != made) each->DestroyWindow();
  }
  PageView::refuses = true;
  EXPECT_FALSE(splitter.ReplaceView(0, 0, RUNTIME_CLASS(ThirdView), {}));
  PageView::refuses = false;
  EXPECT_TRUE(traced == kFailed && PageView::count == 0);
  document->OnCloseDocument();
  SetTraceSink(former);
}

TEST_F(HidingSplitters, StandHandlersAndASecondLife) {
  auto* const second = static_cast<PageView*>(panes[1]);
  second->at_message = [&](UINT message) {
    if (message == WM_SHOWWINDOW) splitter.ShowColumn();
  };
  splitter.HideColumn(1);
  EXPECT_EQ(Sizes() + " " + Ids(), "100 100 188 /120/174 0 1 2 10 11 12 ");
  second->at_message = nullptr;
  // What is being replaced ends, and then the whole splitter.
  for (const bool whole : {false, true}) {
    if (whole) splitter.HideColumn(1);
    auto* const told = static_cast<PageView*>(panes[5]);
    told->at_message = [&, whole](UINT message) {
      CWnd* const ending = whole ? &splitter : splitter.GetPane(0, 0);
      if (message == WM_SIZE && ending != nullptr) ending->DestroyWindow();
    };
    EXPECT_FALSE(
        splitter.ReplaceView(0, whole ? 1 : 0, RUNTIME_CLASS(OtherView), {50, whole ? 30 : 60}));
    if (!whole) told->at_message = nullptr;
  }
  EXPECT_TRUE(splitter.GetSafeHwnd() == nullptr && document->GetViews().empty());
  document->OnCloseDocument();
  splitter.CreateStatic(&frame, 2, 3);
  splitter.ShowColumn();
  splitter.ShowRow();
  EXPECT_EQ(splitter.GetRowCount() * splitter.GetColumnCount(), 6);
  EXPECT_EQ(splitter.GetHiddenRow() + splitter.GetHiddenColumn(), -2);
}

TEST_F(HidingSplitters, PanesFollowTheMouseIfTheyAreDynamic) {
  for (const bool dynamic : {false, true}) {
    splitter.SetDynamic(dynamic);
    Mouse(WM_LBUTTONDOWN, 103);
    Mouse(WM_MOUSEMOVE, 133);
    EXPECT_EQ(Sizes(), dynamic ? "130 70 188 /120/174" : "100 100 188 /120/174");
    splitter.SendMessage(WM_CAPTURECHANGED);
    EXPECT_TRUE(Sizes() == "100 100 188 /120/174" && splitter.IsDynamic() == dynamic);
    CWnd::ReleaseCapture();
  }
  Mouse(WM_LBUTTONDOWN, 103);
  Mouse(WM_MOUSEMOVE, 133);
  splitter.HideColumn(0);
  EXPECT_TRUE(!splitter.IsTracking() && Sizes() == "100 294 /120/174");
  splitter.ShowColumn();
  EXPECT_EQ(Sizes(), "100 100 188 /120/174");
}

// ---- Workbooks

TEST(Worksheets, AskTheOptionsWhetherTheyAreMaximised) {
  CDQOptionsServer& server = *CDQOptionsServer::GetObject();
  struct Book : CDQWorkbook {
    void InvalidateTab(SECWorksheetWnd*) override { ++invalidated; }
    int invalidated = 0;
  } book;
  book.Create("Book", "", {0, 0, 400, 300});
  CDQWorksheet first, second, third;
  for (const bool option : {false, true}) {
    server.SetBool(50229, option);
    CDQWorksheet& sheet = option ? second : first;
    sheet.LoadFrame(1, &book);
    EXPECT_TRUE(sheet.GetMaximizeOption() == option && sheet.GetDQWorkbook() == &book);
    sheet.ActivateFrame();
    EXPECT_EQ(sheet.IsZoomed(), option);
  }
  EXPECT_EQ(book.invalidated, 0);
  book.AllowWorkbookMode(true);
  first.MDIActivate();
  EXPECT_EQ(std::exchange(book.invalidated, 0), 2) << "the former and the new one";
  second.ShowWindow(SW_HIDE);
  EXPECT_EQ(book.invalidated, 1);
  CDQWorksheet::SetEnableMaximize(false);
  EXPECT_FALSE(second.Maximizable());
  third.LoadFrame(1, &book);
  third.ActivateFrame(SW_SHOWMAXIMIZED);
  CDQWorksheet::SetEnableMaximize(true);
  EXPECT_TRUE(!third.IsZoomed() && third.Maximizable());
  third.Close();
  EXPECT_TRUE(third.GetSafeHwnd() == nullptr && book.GetSheetCount() == 2);
}

}  // namespace
}  // namespace dq::test
