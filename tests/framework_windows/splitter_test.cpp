// The panes of splitters: where they lie, and what a person does with the bars between them.

#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// A view that keeps how many there are and what it is notified.
struct PaneView : CView {
  DECLARE_DYNCREATE(PaneView)
  PaneView() { ++count; }
  ~PaneView() override { --count; }
  static inline int count = 0;
};
IMPLEMENT_DYNCREATE(PaneView, CView)

/// A splitter of 2 rows and 3 columns that fills a frame, every pane at least 20 wide and high.
struct Splitters : testing::Test {
  struct Splitter : CSplitterWnd {
    void MoveTracking(const CPoint& point) override {
      CSplitterWnd::MoveTracking(point);
      if (follows) TakeTrackedSizes();
    }
    bool follows = false;
  };
  struct Frame : BarFrame {
    BOOL OnCommand(WPARAM wparam, LPARAM) override { return command = LoWord(wparam), 1; }
    int command = 0;
  };

  Splitters() {
    splitter.CreateStatic(&frame, 2, 3);
    for (int row = 0; row < 2; ++row) {
      for (int column = 0; column < 3; ++column) {
        splitter.CreateView(row, column, RUNTIME_CLASS(PaneView), {100, 200}, &context);
        splitter.SetColumnInfo(column, 100, 20);
      }
      splitter.SetRowInfo(row, 200, 20);
    }
    frame.RecalcLayout();
  }
  /// Sizes of the columns and of the rows.
  std::string Sizes() {
    std::string text;
    int size = 0, least = 0;
    for (int at = 0; at < 3; ++at) splitter.GetColumnInfo(at, size, least), text += Number(size);
    for (int at = 0; at < 3; ++at) splitter.GetRowInfo(at, size, least), text += Number(size);
    return text;
  }
  static std::string Number(int number) { return std::to_string(number) + " "; }
  /// Goes on to the next pane or to the previous one ('<'): the active ones.
  std::string Go(std::string_view steps) {
    std::string text;
    for (const char step : steps) {
      text += splitter.ActivateNext(step == '<') ? "" : "!";
      int row = 0, column = 0;
      const CWnd* const pane = splitter.GetActivePane(&row, &column);
      EXPECT_TRUE(pane == splitter.GetPane(row, column) && pane == frame.GetActiveView());
      text += std::to_string(row) + Number(column);
    }
    return text;
  }
  void Mouse(UINT message, int x, int y) { splitter.SendMessage(message, 0, MakeLParam(x, y)); }

  CDocument document;
  const CCreateContext context{.m_pCurrentDoc = &document};
  Frame frame;
  Splitter splitter;
};

TEST_F(Splitters, HandTheirRoomOutFromTheFirstPaneOnAndCloseThoseThatWouldBeTooSmall) {
  EXPECT_EQ(Sizes(), "100 100 188 200 94 0 ");
  EXPECT_EQ(Text(splitter.GetPane(1, 2)->GetPlace()), "212,206-400,300");
  // Client size, and ideal sizes of the columns: what they get.
  for (const auto& [width, first, second, sizes] :
       Rows<int, int, int, const char*>{{212, 90, 90, "90 90 20 "},
                                        {211, 90, 90, "90 109 0 "},
                                        {400, 19, 20, "0 20 368 "},
                                        {131, 100, 90, "119 0 0 "},
                                        {132, 100, 90, "100 20 0 "},
                                        {31, 100, 90, "19 0 0 "},
                                        {400, 1 << 30, 1, "388 0 0 "},
                                        {5, 100, 90, "0 0 0 "},
                                        {400, -5, 30, "0 30 358 "}}) {
    splitter.SetColumnInfo(0, first, 20);
    splitter.SetColumnInfo(1, second, 20);
    splitter.MoveWindow(0, 0, width, 300);
    EXPECT_EQ(Sizes(), sizes + std::string("200 94 0 ")) << width;
  }
}

TEST_F(Splitters, MakePanesAndKnowWhichOfThemIsActive) {
  EXPECT_EQ(PaneView::count, 6);
  EXPECT_EQ(splitter.GetPane(1, 2)->GetDlgCtrlID(), 0xE912);
  EXPECT_EQ(frame.GetActiveView(), splitter.GetPane(0, 0)) << "the first one";
  EXPECT_EQ(document.GetViews().size(), 6U);
  const CSize size{10, 10};
  for (const auto& [row, column, made] :
       Rows<int, int, const CRuntimeClass*>{{0, 0, RUNTIME_CLASS(PaneView)},
                                            {2, 0, RUNTIME_CLASS(PaneView)},
                                            {0, -1, RUNTIME_CLASS(PaneView)},
                                            {0, 1, RUNTIME_CLASS(CDocument)},
                                            {0, 1, nullptr}}) {
    if (row == 0 && column == 1) splitter.DeleteView(0, 1);
    EXPECT_FALSE(splitter.CreateView(row, column, made, size)) << row << column;
  }
  EXPECT_TRUE(splitter.CreateView(0, 1, RUNTIME_CLASS(PaneView), size));
  EXPECT_EQ(document.GetViews().back(), splitter.GetPane(0, 1)) << "that of the active view";
  EXPECT_EQ(Go("><<>"), "01 00 12 00 ");
  splitter.GetPane(0, 1)->ShowWindow(SW_HIDE);
  EXPECT_EQ(Go("><"), "02 00 ");
  splitter.DeleteView(0, 0);
  EXPECT_EQ(Go("<"), "12 ");
  frame.SetActiveView(nullptr);
  CWnd inner;
  inner.CreateWnd({.class_name = "X", .parent = splitter.GetPane(1, 0)});
  int row = 0;
  EXPECT_FALSE(splitter.IsChildPane(&inner, &row) || splitter.IsChildPane(nullptr) || row != -1);
  inner.SetFocus();
  EXPECT_EQ(splitter.GetActivePane(), splitter.GetPane(1, 0));
  // What panes say goes to the frame, and all ends with the splitter.
  splitter.GetPane(1, 1)->GetParent()->SendMessage(WM_COMMAND, 77, 1);
  EXPECT_EQ(frame.command, 77);
  frame.SetActiveView(nullptr);
  frame.InitialUpdateFrame(nullptr, false);
  EXPECT_EQ(frame.GetActiveView(), splitter.GetPane(0, 2)) << "the first that was made";
  splitter.DestroyWindow();
  EXPECT_TRUE(PaneView::count == 0 && frame.GetActiveView() == nullptr);
  CSplitterWnd other;
  EXPECT_FALSE(other.CreateStatic(&frame, 1, 1) || other.CreateStatic(&frame, 0, 2) ||
               other.CreateStatic(&frame, 1, 17) || other.CreateStatic(nullptr, 1, 2));
}

TEST_F(Splitters, BarsAreDraggedByTheMouse) {
  // Where the mouse is pressed and let go, and the sizes then; the next begins where this one ends.
  for (const auto& [from, to, sizes] :
       Rows<CPoint, CPoint, const char*>{{{103, 50}, {133, 90}, "130 70 188 200 94 0 "},
                                         {{206, 50}, {400, 50}, "130 258 0 200 94 0 "},
                                         {{395, 50}, {385, 50}, "130 258 0 200 94 0 "},
                                         {{395, 50}, {375, 50}, "130 238 20 200 94 0 "},
                                         {{132, 203}, {0, 0}, "0 368 20 0 294 0 "},
                                         {{3, 2}, {22, 21}, "0 368 20 0 294 0 "},
                                         {{5, 5}, {25, 225}, "20 348 20 220 74 0 "},
                                         {{10, 10}, {50, 50}, "20 348 20 220 74 0 "}}) {
    Mouse(WM_LBUTTONDOWN, from.x, from.y);
    Mouse(WM_MOUSEMOVE, to.x, to.y);
    Mouse(WM_LBUTTONUP, to.x, to.y);
    EXPECT_EQ(Sizes(), sizes) << from.x << "," << from.y;
  }
  EXPECT_FALSE(splitter.IsTracking() || CWnd::GetCapture() != nullptr);
}

TEST_F(Splitters, TellWhereADraggedBarIsShownAndLeaveAllAsItWasWhenItIsGivenUp) {
  RecordingObserver told;
  Mouse(WM_LBUTTONDOWN, 103, 203);
  Mouse(WM_MOUSEMOVE, 113, 0);
  Mouse(WM_MOUSEMOVE, 113, -1);
  EXPECT_EQ(Text(splitter.GetTrackedColumnBar()) + " " + Text(splitter.GetTrackedRowBar()),
            "110,0-116,300 0,0-400,6");
  MSG escape{frame.GetActiveView()->GetSafeHwnd(), WM_KEYDOWN, VK_ESCAPE, 0};
  EXPECT_TRUE(PreTranslateInput(escape) && !PreTranslateInput(escape));
  EXPECT_EQ(told.Take(), "59648 capture 59648 content 59648 content 59648 capture 59648 content ");
  EXPECT_EQ(Text(splitter.GetTrackedColumnBar()) + Sizes(), "0,0-0,0100 100 188 200 94 0 ");
  // Panes that follow the mouse, until the capture is lost.
  splitter.follows = true;
  Mouse(WM_LBUTTONDOWN, 103, 50);
  Mouse(WM_MOUSEMOVE, 113, 0);
  EXPECT_EQ(Sizes(), "110 90 188 200 94 0 ");
  Mouse(WM_MOUSEMOVE, 93, 0);
  EXPECT_EQ(Sizes(), "90 110 188 200 94 0 ");
  frame.SetCapture();
  EXPECT_EQ(Sizes(), "100 100 188 200 94 0 ");
  frame.ReleaseCapture();
}

}  // namespace
}  // namespace dq::test
