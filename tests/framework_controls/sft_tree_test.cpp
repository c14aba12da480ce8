// The list and tree control: its geometry, what it paints, and what a person does with it.

#include "tests/support/doubles.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// A parent that keeps the codes of what its tree tells, and calls a handler with each. The tree
/// has the rows a, ab, abc, b, c, d, da, e at the levels 0, 1, 2, 1, 0, 0, 1, 0, of which five are
/// in sight at a time; each is 18 pixels high, the titles 22.
struct TreeParent : CWnd {
  TreeParent() {
    CreateWnd({.class_name = "Parent", .place = {0, 0, 300, 200}});
    tree->AddColumn("Name", 120);
    tree->AddColumn("Size", 60, kColumnNumber);
    for (const auto& [name, level] : Rows<const char*, int>{
             {"a", 0}, {"ab", 1}, {"abc", 2}, {"b", 1}, {"c", 0}, {"d", 0}, {"da", 1}, {"e", 0}}) {
      tree->SetCellText(tree->AddRow(name, level), 1, "12");
    }
    tree->Create(this, {0, 0, 200, 118}, 7);
    tree->SetFocus();
  }
  ~TreeParent() override { DestroyWindow(); }
  BOOL OnCommand(WPARAM wparam, LPARAM) override {
    codes += std::to_string(HiWord(wparam)) + ' ';
    if (handler) handler(HiWord(wparam));
    return 1;
  }
  /// What was told, the selected rows, and the one with the caret: "1 : 0 2 /2".
  std::string Take() {
    std::string text = std::exchange(codes, {}) + ": ";
    for (const int row : tree->GetSelectedRows()) text += std::to_string(row) + ' ';
    return text + '/' + std::to_string(tree->GetCaret());
  }
  void Mouse(UINT message, int x, int y, WPARAM keys = 0) {
    if (tree) tree->SendMessage(message, keys, MakeLParam(x, y));
  }
  void Press(int x, int y, WPARAM keys = 0) {
    Mouse(WM_LBUTTONDOWN, x, y, keys);
    Mouse(WM_LBUTTONUP, x, y);
  }

  HeldKeys layer;
  std::string codes;
  std::function<void(int code)> handler;
  std::unique_ptr<CSftTree> tree = std::make_unique<CSftTree>();
};

TEST(SftTree, PaintsTitlesBranchesAndCells) {
  TreeParent parent;
  CSftTree& tree = *parent.tree;
  tree.SetMultiSelection(true);
  for (int row = 7; row > 1; --row) tree.DeleteRow(row);
  tree.MoveWindow(0, 0, 110, 60);
  tree.SetColumnWidth(0, 60);
  tree.SetColumnWidth(1, 50);
  tree.SetCellText(1, 0, "longer");
  tree.SetCellStyle(0, 1, {.text = RGB(255, 0, 0), .background = RGB(0, 0, 9)});
  tree.SetSortMark(1, false);
  tree.SelectRow(1);
  tree.SetCaret(1);
  RecordingDC dc({.area = {110, 60}});
  tree.Paint(dc);
  EXPECT_EQ(dc.Text(), R"(fill 0,0 60,1 ffffff
fill 0,0 1,22 ffffff
fill 59,0 60,22 a0a0a0
fill 0,21 60,22 a0a0a0
fill 1,1 59,21 f0f0f0
text 6,4 "Name"
fill 60,0 110,1 ffffff
fill 60,0 61,22 ffffff
fill 109,0 110,22 a0a0a0
fill 60,21 110,22 a0a0a0
fill 61,1 109,21 f0f0f0
fill 97,9 104,10 a0a0a0
fill 98,10 103,11 a0a0a0
fill 99,11 102,12 a0a0a0
fill 100,12 101,13 a0a0a0
text 71,4 "..."
fill 0,22 110,60 ffffff
line 8,31 8,32 a0a0a0 dot
line 8,31 16,31 a0a0a0 dot
fill 3,26 12,35 ffffff
fill 3,26 12,27 a0a0a0
fill 3,26 4,35 a0a0a0
fill 11,26 12,35 a0a0a0
fill 3,34 12,35 a0a0a0
fill 5,30 10,31 000000
text 19,24 "a"
fill 60,22 110,40 000009
text 93,24 "12" ff0000
fill 32,40 110,58 0078d7
line 24,40 24,50 a0a0a0 dot
line 24,49 32,49 a0a0a0 dot
text 35,42 "..." ffffff
text 93,42 "12" ffffff
line 32,40 109,40 000000 dot
line 109,40 109,57 000000 dot
line 109,57 32,57 000000 dot
line 32,57 32,40 000000 dot
)");
  // Only what is asked for is painted.
  dc.Clear();
  dc.IntersectClipRect({62, 42, 100, 44});
  tree.ShowTreeLines(false);
  tree.Paint(dc);
  EXPECT_EQ(dc.Text(),
            "fill 62,42 100,44 ffffff\nfill 62,42 100,44 0078d7\nclip 63,42 100,44\n"
            "text 93,42 \"12\" ffffff\n");
}

TEST(SftTree, LeavesTheMaskOfPicturesOut) {
  TreeParent parent;
  const BitmapDescription picture{{1, 1}, {RGB(255, 0, 255)}};
  parent.tree->SetRowPicture(0, &picture);
  RecordingDC dc({.area = {200, 100}});
  parent.tree->Paint(dc);
  EXPECT_NE(dc.Text().find(" of 1x1 ffffffff\n"), std::string::npos) << dc.Text();
}

TEST(SftTree, ToldWhereAPointLies) {
  TreeParent parent;
  CSftTree& tree = *parent.tree;
  const BitmapDescription picture{{10, 10}, std::vector<COLORREF>(100)};
  tree.SetRowPicture(1, &picture);
  // Part, row and column.
  for (const auto& [x, y, hit] : Rows<int, int, std::string>{{5, 5, "1 -1 0"},
                                                             {118, 5, "2 -1 0"},
                                                             {123, 21, "2 -1 0"},
                                                             {150, 5, "1 -1 1"},
                                                             {190, 5, "1 -1 -1"},
                                                             {8, 30, "4 0 0"},
                                                             {17, 30, "6 0 0"},
                                                             {5, 41, "3 1 0"},
                                                             {20, 41, "4 1 0"},
                                                             {33, 41, "5 1 0"},
                                                             {46, 41, "6 1 0"},
                                                             {40, 60, "3 2 0"},
                                                             {121, 60, "6 2 1"},
                                                             {185, 60, "0 2 -1"},
                                                             {-1, 60, "0 -1 -1"},
                                                             {5, 118, "0 -1 -1"}}) {
    const TreeHit found = tree.HitTest({x, y});
    EXPECT_EQ(std::to_string(static_cast<int>(found.part)) + ' ' + std::to_string(found.row) + ' ' +
                  std::to_string(found.column),
              hit)
        << x << ' ' << y;
  }
  CRect rect;
  const auto place = [&](int row, int column, bool inside) {
    return tree.GetCellRect(row, column, &rect, inside) ? Text(rect) : "none";
  };
  EXPECT_EQ(place(1, 0, false) + ' ' + place(1, 0, true) + ' ' + place(2, 1, true),
            "0,40-120,58 44,40-120,58 120,58-180,76");
  EXPECT_EQ(place(5, -1, false) + place(6, 0, false) + place(0, 2, false), "0,112-180,130nonenone");
  tree.SetTopRow(7);
  EXPECT_EQ(tree.GetTopRow(), 3) << "the page is full";
  EXPECT_EQ(place(3, 1, false) + place(2, 0, false), "120,22-180,40none");
  EXPECT_EQ(tree.HitTest({5, 111}).row, 7);
}

TEST(SftTree, ScrollsAndStaysWhereItIsWhileRowsComeAndGoAbove) {
  TreeParent parent;
  CSftTree& tree = *parent.tree;
  const auto scroll = [&] {
    const SCROLLINFO info = tree.GetScrollInfo(SB_VERT);
    return std::to_string(info.nMax) + ' ' + std::to_string(info.nPage) + ' ' +
           std::to_string(info.nPos) + " top " + std::to_string(tree.GetTopRow());
  };
  EXPECT_EQ(scroll(), "7 5 0 top 0");
  for (int row = 0; row < 100000; ++row) tree.AddRow("x");
  tree.SendMessage(WM_VSCROLL, MakeScrollParam(SB_THUMBTRACK, 90000));
  EXPECT_EQ(scroll(), "100007 5 90000 top 90000");
  tree.ValidateRect();
  tree.InsertRow(0, "y", 0);
  EXPECT_EQ(scroll(), "100008 5 90001 top 90001");
  tree.DeleteRow(1);
  EXPECT_EQ(scroll(), "100004 5 89997 top 89997");
  EXPECT_TRUE(tree.GetUpdateRect().IsRectEmpty()) << "what is in sight is the same";
  tree.DeleteRow(tree.GetTopRow());
  EXPECT_EQ(scroll(), "100003 5 89997 top 89997");
  tree.SendMessage(WM_VSCROLL, SB_BOTTOM);
  tree.SendMessage(WM_VSCROLL, SB_PAGEUP);
  EXPECT_EQ(scroll(), "100003 5 99995 top 99995");
  tree.SendMessage(WM_MOUSEWHEEL, MakeWParam(0, 240));
  EXPECT_EQ(scroll(), "100003 5 99989 top 99989");
  tree.EnsureRowVisible(2);
  EXPECT_EQ(scroll(), "100003 5 2 top 2");
  tree.ResetContent();
  EXPECT_EQ(scroll(), "0 5 0 top -1");
  // Rows that are far away, or hidden, aren't drawn anew, nor what a row below the screen changes.
  for (int row = 0; row < 20; ++row) tree.AddRow("x");
  tree.ValidateRect();
  tree.SetCellText(9, 0, "far");
  tree.AddRow("far");
  EXPECT_TRUE(tree.GetUpdateRect().IsRectEmpty());
  tree.SelectRow(2);
  EXPECT_EQ(Text(tree.GetUpdateRect()), "0,58-200,76");
  tree.ValidateRect();
  tree.SetDropTarget(2);
  EXPECT_EQ(Text(tree.GetUpdateRect()), "0,58-200,76");
  tree.ValidateRect();
  tree.SetDropTarget(2);
  EXPECT_TRUE(tree.GetUpdateRect().IsRectEmpty());
  // The last child takes its parent's button away.
  tree.SetLevel(1, 1);
  tree.ValidateRect();
  tree.DeleteRow(1);
  EXPECT_EQ(tree.GetUpdateRect().top, 22);
  // To the right: columns that are in sight as a whole aren't scrolled to.
  tree.SetColumnWidth(0, 300);
  tree.EnsureCellVisible(2, 1);
  EXPECT_EQ(tree.GetHorizontalPos(), 160);
  EXPECT_EQ(tree.HitTest({150, 40}).column, 1);
  tree.SetRedraw(false);
  tree.ResetContent();
  EXPECT_EQ(tree.GetScrollInfo(SB_VERT).nMax, 19);
  tree.SetRedraw(true);
  EXPECT_EQ(tree.GetScrollInfo(SB_VERT).nMax, 0);
}

TEST(SftTree, SelectsByKeys) {
  // What is held (s Shift, c Control), keys, and what was told and is selected then, of a tree with
  // single and one with multiple selection.
  constexpr WORD kUp = VK_UP, kDown = VK_DOWN, kLeft = VK_LEFT, kRight = VK_RIGHT;
  struct Case {
    const char* held;
    std::vector<WORD> keys;
    const char* one;
    const char* many;
  };
  for (const bool multi : {false, true}) {
    TreeParent parent;
    parent.tree->SetMultiSelection(multi);
    for (const Case& each :
         std::vector<Case>{{"", {kDown, kDown}, "1 1 : 1 /1", "1 1 : 1 /1"},
                           {"s", {kDown, kDown}, "1 1 : 3 /3", "1 1 : 1 2 3 /3"},
                           {"s", {kUp, kUp, kUp}, "1 1 1 : 0 /0", "1 1 1 : 0 1 /0"},
                           {"c", {VK_END, kUp}, "1 1 : 6 /6", "1 1 : 0 1 /6"},
                           {"c", {VK_SPACE}, ": 6 /6", "1 : 0 1 6 /6"},
                           {"cs", {VK_END}, "1 : 7 /7", "1 : 0 1 6 7 /7"},
                           {"c", {VK_SPACE}, ": 7 /7", "1 : 0 1 6 /7"},
                           {"", {VK_HOME, kLeft}, "1 33 : 0 /0", "1 33 : 0 /0"},
                           {"", {kRight, kRight, kRight}, "1 1 : 2 /2", "1 1 : 2 /2"},
                           {"", {kLeft, kLeft, VK_NEXT}, "1 33 1 : 5 /5", "1 33 1 : 5 /5"},
                           {"", {VK_PRIOR, VK_RETURN}, "1 45 : 1 /1", "1 45 : 1 /1"}}) {
      parent.layer.held.clear();
      for (const char held : std::string_view(each.held)) {
        parent.layer.held.insert(held == 's' ? VK_SHIFT : VK_CONTROL);
      }
      for (const WORD key : each.keys) parent.tree->SendMessage(WM_KEYDOWN, key);
      EXPECT_EQ(parent.Take(), multi ? each.many : each.one) << each.held << each.keys.front();
    }
  }
}

TEST(SftTree, AKeyActsUnlessItsParentHasDoneAllOfIt) {
  struct Asked : TreeParent {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      if (message != WM_VKEYTOITEM) return CWnd::WindowProc(message, wparam, lparam);
      codes += std::to_string(LoWord(wparam)) + '@' + std::to_string(wparam >> 16) + ' ';
      return LoWord(wparam) == VK_DOWN ? -2 : -1;
    }
  } parent;
  parent.tree->SetCaret(3);
  for (const WORD key : {VK_DOWN, VK_UP}) parent.tree->SendMessage(WM_KEYDOWN, key);
  EXPECT_EQ(parent.Take(), "40@3 38@3 1 : 2 /2");
}

TEST(SftTree, FindsRowsByWhatIsTyped) {
  ManualClock clock;
  TreeParent parent;
  parent.tree->Expand(5, false);
  for (const auto& [typed, row] : Rows<std::string, int>{{"a", 0},
                                                         {"a", 1},
                                                         {"a", 2},
                                                         {"a", 0},
                                                         {" b", 3},
                                                         {" ABC", 2},
                                                         {" d", 5},
                                                         {"a", 5},
                                                         {" d", 5},
                                                         {"x", 5},
                                                         {" e", 7}}) {
    // A blank in the table is a rest.
    if (typed.front() == ' ') clock.Advance(2000);
    for (const char c : typed) {
      if (c != ' ') parent.tree->SendMessage(WM_CHAR, static_cast<WPARAM>(c));
    }
    EXPECT_EQ(parent.tree->GetCaret(), row) << typed;
  }
}

TEST(SftTree, SelectsByTheMouseAndTellsWhatWasPressed) {
  TreeParent parent;
  CSftTree& tree = *parent.tree;
  const BitmapDescription picture{{10, 10}, std::vector<COLORREF>(100)};
  tree.SetDefaultPictures(&picture, &picture, nullptr);
  tree.SetMultiSelection(true);
  constexpr WPARAM kShift = MK_SHIFT, kControl = MK_CONTROL;
  for (const auto& [x, y, keys, told] :
       Rows<int, int, WPARAM, const char*>{{60, 45, 0, "1 35 : 1 /1"},
                                           {8, 30, 0, "1 33 : 1 /0"},
                                           {20, 30, 0, "1 34 : 0 /0"},
                                           {150, 80, kShift, "1 35 : 0 1 2 3 /3"},
                                           {60, 45, kControl, "1 35 : 0 2 3 /1"},
                                           {190, 66, 0, "1 : 2 /2"},
                                           {190, 100, kShift | kControl, "1 : 2 3 4 /4"},
                                           {150, 5, 0, "36 : 2 3 4 /4"},
                                           {190, 5, 0, ": 2 3 4 /4"}}) {
    parent.Press(x, y, keys);
    EXPECT_EQ(parent.Take(), told) << x << ' ' << y;
  }
  EXPECT_EQ(tree.GetHeaderColumn(), 1);
  for (const auto& [x, told] :
       Rows<int, const char*>{{8, "1 40 : 2 3 4 /0"}, {20, "1 44 : 0 /0"}, {40, "45 : 0 /0"}}) {
    parent.Mouse(WM_LBUTTONDBLCLK, x, 30);
    EXPECT_EQ(parent.Take(), told);
  }
  // The context menu is about the row under the pointer; by the keyboard it stands at the caret.
  parent.Mouse(WM_RBUTTONDOWN, 60, 45);
  EXPECT_EQ(parent.Take(), "1 : 1 /1");
  struct Menu : CSftTree {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      if (message == WM_CONTEXTMENU) at = PointOfParam(lparam);
      return CSftTree::WindowProc(message, wparam, lparam);
    }
    CPoint at;
  } menu;
  menu.Create(&parent, {10, 20, 90, 90}, 8);
  menu.AddRow("a");
  menu.SetCaret(0);
  menu.SendMessage(WM_KEYDOWN, VK_APPS);
  EXPECT_EQ(menu.at, (CPoint{26, 38}));
}

TEST(SftTree, DividersAndRowsAreDragged) {
  TreeParent parent;
  CSftTree& tree = *parent.tree;
  const auto drag = [&](int x, int y, int to_x, int to_y, UINT end = WM_LBUTTONUP) {
    parent.Mouse(WM_LBUTTONDOWN, x, y);
    parent.Mouse(WM_MOUSEMOVE, to_x, to_y);
    if (end == WM_KEYDOWN) tree.SendMessage(WM_KEYDOWN, VK_ESCAPE);
    if (end == WM_LBUTTONUP) parent.Mouse(end, to_x, to_y);
    if (end == WM_CAPTURECHANGED) CWnd::ReleaseCapture();
    if (end == WM_CLOSE) tree.CancelMode();
    EXPECT_TRUE(CWnd::GetCapture() == nullptr && !tree.IsDragging());
    return parent.Take() + ' ' + std::to_string(tree.GetColumnWidth(0));
  };
  EXPECT_EQ(drag(119, 5, 90, 9), ": /-1 91");
  EXPECT_EQ(drag(91, 5, -900, 9), ": /-1 0");
  EXPECT_EQ(drag(1, 5, 150, 9, WM_KEYDOWN), ": /-1 0");
  parent.Mouse(WM_LBUTTONDBLCLK, 1, 5);
  EXPECT_EQ(tree.GetColumnWidth(0), 3 * 16 + 6 + 3 * 7) << "abc, at level 2";
  EXPECT_EQ(drag(40, 45, 40, 80), "1 35 : 1 /1 75") << "not allowed";
  tree.EnableDrag(true);
  EXPECT_EQ(drag(40, 45, 41, 46), "35 : 1 /1 75") << "not far enough";
  EXPECT_EQ(drag(40, 45, 40, 80), "35 8 9 10 : 1 /1 75");
  EXPECT_EQ(drag(40, 45, 40, 80, WM_KEYDOWN), "35 8 9 11 : 1 /1 75");
  EXPECT_EQ(drag(40, 45, 40, 80, WM_CAPTURECHANGED), "35 8 9 11 : 1 /1 75");
  EXPECT_EQ(drag(40, 45, 40, 80, WM_CLOSE), "35 8 9 : 1 /1 75");
  // A press while another lasts takes that one back.
  parent.Mouse(WM_LBUTTONDOWN, 74, 5);
  parent.Mouse(WM_MOUSEMOVE, 90, 5);
  EXPECT_EQ(tree.GetColumnWidth(0), 91);
  EXPECT_EQ(drag(40, 45, 40, 45), "35 : 1 /1 75");
  // All that are selected are dragged; a press without a drag leaves the one alone.
  tree.SetMultiSelection(true);
  tree.SelectRows(0, 3);
  EXPECT_EQ(drag(40, 45, 40, 80), "35 8 9 10 : 0 1 2 3 /1 75");
  EXPECT_EQ(drag(40, 45, 40, 45), "35 1 : 1 /1 75");
  tree.SelectRows(0, 3);
  tree.SetMultiSelection(true);
  EXPECT_EQ(parent.Take(), ": 1 /1") << "selects anew";
  tree.SelectRows(0, 3);
  parent.Mouse(WM_LBUTTONDOWN, 40, 45);
  tree.InsertRow(0, "", 0);
  parent.Mouse(WM_LBUTTONUP, 40, 45);
  EXPECT_EQ(tree.GetSelectedRows(), std::vector{2}) << "the row that was pressed";
}

TEST(SftTree, MayBeEmptiedOrEndInItsOwnNotification) {
  for (const bool ends : {false, true}) {
    for (int code : {1, 8, 9, 10, 11, 33, 34, 35, 36, 40, 44, 45}) {
      TreeParent parent;
      parent.tree->EnableDrag(true);
      parent.tree->SetCaret(0);
      bool called = false;
      parent.handler = [&](int told) {
        if (told != code || parent.tree == nullptr) return;
        called = true;
        ends ? parent.tree.reset() : parent.tree->ResetContent();
      };
      const BitmapDescription picture{{10, 10}, std::vector<COLORREF>(100)};
      parent.tree->SetDefaultPictures(&picture, &picture, &picture);
      for (const int x : {8, 20, 150}) {
        for (const int y : {5, 30, 45}) {
          for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK}) {
            parent.Mouse(message, x, y);
          }
        }
      }
      parent.Mouse(WM_LBUTTONDOWN, 150, 100);
      for (const int y : {50, 200}) parent.Mouse(WM_MOUSEMOVE, 150, y);
      if (parent.tree) parent.tree->SendMessage(WM_TIMER, 0x5F7);
      if (parent.tree) parent.tree->SendMessage(WM_KEYDOWN, code == 11 ? VK_ESCAPE : VK_DOWN);
      parent.Mouse(WM_LBUTTONUP, 150, 50);
      EXPECT_TRUE(called) << code;
      EXPECT_TRUE(ends || parent.tree->GetCount() == 0) << code;
    }
  }
}

TEST(SftTree, MayBeEmptiedOrEndWhileItBringsARowIntoSight) {
  struct Tree : CSftTree {
    void OnLayoutChanged() override {
      CSftTree::OnLayoutChanged();
      if (act) std::exchange(act, nullptr)();
    }
    std::function<void()> act;
  };
  for (const bool ends : {false, true}) {
    TreeParent parent;
    auto tree = std::make_unique<Tree>();
    tree->Create(&parent, {0, 0, 90, 90}, 8);
    for (int level = 0; level < 3; ++level) tree->AddRow("x", level);
    for (int row = 0; row < 2; ++row) tree->Expand(row, false);
    tree->act = [&] { ends ? tree.reset() : tree->ResetContent(); };
    tree->EnsureRowVisible(2);
    EXPECT_TRUE(ends ? tree == nullptr : tree->GetCount() == 0);
  }
}

TEST(SftTree, AColumnThatIsFittedFollowsEachRow) {
  CSftTree tree;
  tree.AddColumn("T", 0);
  tree.AddColumn("", 0);
  std::mt19937 random(5);
  const BitmapDescription wide{{90, 10}, std::vector<COLORREF>(900)};
  for (int step = 0; step < 4000; ++step) {
    const int row = tree.AddRow("", static_cast<int>(random() % 4));
    tree.SetCellText(row, static_cast<int>(random() % 2), std::string(random() % 40, 'x').c_str());
    if (step % 3 == 0) tree.SetRowPicture(row, &wide);
    if (step % 5 == 0) tree.SetLevel(row, 0);
    if (tree.GetCount() > 30) tree.DeleteRow(static_cast<int>(random() % 30));
    for (int column = 0; column < 2; ++column) {
      tree.FitColumn(column);
      const int fitted = tree.GetColumnWidth(column);
      tree.SetColumnWidth(column, 1);
      if (step % 7 == 0) tree.FitColumn(column);
      if (step % 7 != 0) continue;
      ASSERT_EQ(tree.GetColumnWidth(column), fitted) << step << ' ' << column;
    }
  }
}

TEST(SftTree, StandsInDialogsAsAList) {
  CDialog dialog;
  ASSERT_TRUE(dialog.CreateIndirect(
      *ReadDialogTemplate("size 9 9\nclass \"SftTree\" 1 \"\" 0 0 50 50 multiple"), nullptr));
  auto& tree = *dynamic_cast<CSftTree*>(dialog.GetDlgItem(1));
  for (const char* row : {"One", "Two", "Three", "two"}) tree.AddRow(row);
  platform::DialogControl shown;
  EXPECT_TRUE(tree.Enter("3\ntwo\nTWO"));
  tree.Describe(shown);
  EXPECT_EQ(shown.value, "Two\nThree\ntwo");
  EXPECT_TRUE(shown.multiple && shown.items.size() == 4 && tree.Press());
  EXPECT_FALSE(tree.Enter("5"));
  tree.SetMultiSelection(false);
  EXPECT_TRUE(tree.Enter("1"));
  EXPECT_EQ(tree.GetCaret(), 0);
  // Who takes its place has its rows.
  CSftTree heir;
  EXPECT_TRUE(heir.SubclassDlgItem(1, &dialog));
  EXPECT_EQ(heir.GetCellText(3, 0), "two");
}

}  // namespace
}  // namespace dq::test
