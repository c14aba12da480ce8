// The tree control.

#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// A parent that takes down what the tree tells, refuses what it is to refuse, and may end it.
struct TreeParent : CWnd {
  TreeParent() { CreateWnd("Parent"); }
  ~TreeParent() override { DestroyWindow(); }
  BOOL OnNotify(WPARAM, LPARAM lparam, LRESULT* result) override {
    const auto& what = *reinterpret_cast<const NM_TREEVIEW*>(lparam);
    told += std::to_string(what.hdr.code) + " ";
    *result = what.hdr.code == refused ? 1 : 0;
    if (what.hdr.code == ends_at) FromHandle(what.hdr.hwndFrom)->DestroyWindow();
    return 1;
  }
  std::string told;
  int refused = 0, ends_at = 0;
};

/// A, with x, which has y, and z below it, and B; rows are 20 high.
struct Tree : CTreeCtrl {
  Tree() { Create(&parent, {0, 0, 200, 60}, 7); }
  /// The texts of the rows, the selected one in brackets.
  std::string Shown() const {
    std::string text;
    for (int row = 0; row < GetRowCount(); ++row) {
      const HTREEITEM item = GetRowItem(row);
      EXPECT_EQ(GetItemRow(item), row);
      const std::string name(GetItemText(item).View());
      text += item == GetSelectedItem() ? "[" + name + "]" : name;
    }
    return text;
  }
  void Click(int across, int down, UINT message = WM_LBUTTONDOWN) {
    SendMessage(message, MK_LBUTTON, MakeLParam(across, down));
  }
  TreeParent parent;
  const HTREEITEM a = InsertItem("A"), x = InsertItem("x", a), y = InsertItem("y", x),
                  z = InsertItem("z", a), b = InsertItem("B");
};

/// Takes down all but what is to be drawn.
struct RowObserver : RecordingObserver {
  void OnWindowChange(CWnd& window, WindowChange change, const ChangedRange& range) override {
    if (change == WindowChange::kInvalidated || change == WindowChange::kScroll) return;
    RecordingObserver::OnWindowChange(window, change, range);
  }
};

TEST(TreeCtrl, ShowsWhatIsExpandedAndTellsRowsByRange) {
  Tree tree;
  RowObserver observer;
  for (const auto& [act, shown, told] : Rows<std::function<void()>, const char*, const char*>{
           {[&] { tree.Expand(tree.a); }, "AxzB", "7 rows@0*1 7 +rows@1*2 "},
           {[&] { tree.EnsureVisible(tree.y); }, "AxyzB", "7 rows@1*1 7 +rows@2*1 "},
           {[&] { tree.SelectItem(tree.y); }, "Ax[y]zB", "7 selection "},
           {[&] { tree.Expand(tree.a, TVE_TOGGLE); }, "[A]B",
            "7 rows@0*1 7 -rows@1*3 7 selection "},
           {[&] { tree.Expand(tree.a, TVE_TOGGLE); }, "[A]xyzB", "7 rows@0*1 7 +rows@1*3 "},
           {[&] { tree.InsertItem("w", tree.a, tree.x); }, "[A]xywzB", "7 +rows@3*1 "},
           {[&] { tree.InsertItem("f", TVI_ROOT, TVI_FIRST); }, "f[A]xywzB", "7 +rows@0*1 "},
           {[&] { tree.SelectItem(tree.y), tree.DeleteItem(tree.x); }, "fA[w]zB",
            "7 selection 7 -rows@2*2 7 selection "},
           {[&] { tree.SetItemText(tree.z, "Z"); }, "fA[w]ZB", "7 rows@3*1 "},
           {[&] { tree.DeleteAllItems(); }, "", "7 -rows@0*5 7 selection "}}) {
    act();
    EXPECT_EQ(tree.Shown(), shown);
    EXPECT_EQ(observer.Take(), told) << shown;
  }
  EXPECT_FALSE(tree.HasItem(tree.a) || tree.SelectItem(tree.a) || tree.Expand(tree.a) ||
               tree.InsertItem("q", tree.a) || tree.DeleteItem(nullptr) || tree.GetCount() > 0);
  EXPECT_TRUE(tree.GetItemText(tree.a).IsEmpty() && tree.GetParentItem(tree.y) == nullptr);
  const HTREEITEM anew = tree.InsertItem("n");
  EXPECT_TRUE(anew != tree.a && !tree.HasItem(tree.b)) << "numbers are used again, handles aren't";
}

TEST(TreeCtrl, KeepsItsRowsThroughAnyChanges) {
  // Against a plain list of what is shown.
  struct Plain {
    HTREEITEM handle;
    std::vector<std::unique_ptr<Plain>> below;
  };
  std::mt19937 random(7);
  const auto pick = [&](std::size_t count) { return random() % count; };
  CTreeCtrl tree;
  Plain root{nullptr, {}};
  std::function<void(Plain&, std::vector<HTREEITEM>&)> shown = [&](Plain& node, auto& rows) {
    if (node.handle != nullptr) rows.push_back(node.handle);
    if (node.handle != nullptr && !tree.IsExpanded(node.handle)) return;
    for (const auto& child : node.below) shown(*child, rows);
  };
  for (int step = 0; step < 3000; ++step) {
    Plain* node = &root;
    while (!node->below.empty() && pick(4) != 0) node = node->below[pick(node->below.size())].get();
    const std::size_t at = pick(node->below.size() + 1);
    switch (pick(8)) {
      case 0:
        if (at == node->below.size()) break;
        EXPECT_TRUE(tree.DeleteItem(node->below[at]->handle));
        node->below.erase(node->below.begin() + static_cast<int>(at));
        break;
      case 1:
      case 2:
        tree.Expand(node->handle, TVE_TOGGLE);
        break;
      default: {
        const HTREEITEM after = at == 0 ? TVI_FIRST : node->below[at - 1]->handle;
        auto child = std::make_unique<Plain>();
        child->handle = tree.InsertItem("i", node->handle, after);
        node->below.insert(node->below.begin() + static_cast<int>(at), std::move(child));
      }
    }
    std::vector<HTREEITEM> rows;
    shown(root, rows);
    ASSERT_EQ(tree.GetRowCount(), static_cast<int>(rows.size())) << step;
    for (int row = 0; row < tree.GetRowCount(); ++row) {
      ASSERT_EQ(tree.GetRowItem(row), rows[static_cast<std::size_t>(row)]) << step;
      ASSERT_EQ(tree.GetItemRow(rows[static_cast<std::size_t>(row)]), row) << step;
    }
  }
}

TEST(TreeCtrl, KnowsWhatLiesAtAPointAndPaintsIt) {
  Tree tree;
  tree.SetItemState(tree.b, INDEXTOSTATEIMAGEMASK(2), TVIS_STATEIMAGEMASK);
  CImageList pictures;
  pictures.Create({8, 8});
  tree.SetImageList(&pictures);
  for (const auto& [point, item, where] :
       Rows<CPoint, HTREEITEM, UINT>{{{0, 0}, tree.a, TVHT_ONITEMBUTTON},
                                     {{5, 5}, tree.a, TVHT_ONITEMBUTTON},
                                     {{20, 5}, tree.a, TVHT_ONITEMICON},
                                     {{28, 5}, tree.a, TVHT_ONITEMLABEL},
                                     {{100, 5}, tree.a, TVHT_ONITEMRIGHT},
                                     {{18, 25}, tree.b, TVHT_ONITEMINDENT},
                                     {{19, 25}, tree.b, TVHT_ONITEMSTATEICON},
                                     {{34, 39}, tree.b, TVHT_ONITEMSTATEICON},
                                     {{35, 25}, tree.b, TVHT_ONITEMICON},
                                     {{5, 40}, nullptr, TVHT_NOWHERE},
                                     {{5, -1}, nullptr, TVHT_ABOVE},
                                     {{-1, 60}, nullptr, TVHT_TOLEFT | TVHT_BELOW}}) {
    UINT told = 0;
    EXPECT_TRUE(tree.HitTest(point, &told) == item && told == where) << point.x << "," << point.y;
  }
  tree.SetImageList(nullptr);
  tree.SelectItem(tree.b);
  RecordingDC dc;
  tree.Paint(dc);
  EXPECT_EQ(dc.Text(),
            "fill 0,0 200,60 ffffff\n"
            // A's button, a frame with a plus, and its text.
            "fill 5,5 14,6 a0a0a0\nfill 5,5 6,14 a0a0a0\nfill 13,5 14,14 a0a0a0\n"
            "fill 5,13 14,14 a0a0a0\nfill 7,9 12,10 000000\nfill 9,7 10,12 000000\n"
            "fill 19,0 32,20 ffffff\ntext 22,3 \"A\"\n"
            // B's check box with its mark, and its text, selected without the focus.
            "fill 20,23 33,36 ffffff\nfill 20,23 33,24 696969\nfill 20,23 21,36 696969\n"
            "fill 32,23 33,36 696969\nfill 20,35 33,36 696969\nline 23,29 25,32 000000 2\n"
            "line 25,32 30,26 000000 2\nfill 35,20 48,40 f0f0f0\ntext 38,23 \"B\"\n");
  // A page of three rows of five.
  tree.EnsureVisible(tree.y);
  EXPECT_TRUE(tree.GetPageRows() == 3 && tree.GetScrollInfo(SB_VERT).nMax == 4);
  for (const auto& [code, top] : Rows<UINT, int>{{SB_LINEDOWN, 1},
                                                 {SB_PAGEDOWN, 2},
                                                 {SB_LINEUP, 1},
                                                 {SB_TOP, 0},
                                                 {SB_THUMBTRACK | 1 << 16, 1},
                                                 {SB_BOTTOM, 2}}) {
    tree.SendMessage(WM_VSCROLL, code);
    EXPECT_TRUE(tree.GetTopRow() == top && tree.GetScrollPos(SB_VERT) == top) << code;
  }
  EXPECT_EQ(tree.HitTest({45, 5}), tree.y);
  tree.SendMessage(WM_MOUSEWHEEL, MakeWParam(0, 120));
  EXPECT_EQ(tree.GetTopRow(), 0);
}

TEST(TreeCtrl, TakesKeysAndPressesAndAsksItsParent) {
  Tree tree;
  // Keys, with c for a character, what is shown then, and what the parent is told.
  constexpr const char* kSelect = "-401 -402 ";
  for (const auto& [key, shown, told] :
       Rows<UINT, const char*, std::string>{{VK_DOWN, "[A]B", kSelect},
                                            {VK_RIGHT, "[A]xzB", "-405 -406 "},
                                            {VK_RIGHT, "A[x]zB", kSelect},
                                            {VK_ADD, "A[x]yzB", "-405 -406 "},
                                            {VK_END, "Axyz[B]", kSelect},
                                            {VK_PRIOR, "Ax[y]zB", kSelect},
                                            {VK_BACK, "A[x]yzB", kSelect},
                                            {VK_LEFT, "A[x]zB", "-405 -406 "},
                                            {VK_LEFT, "[A]xzB", kSelect},
                                            {VK_NEXT, "Ax[z]B", kSelect},
                                            {VK_UP, "A[x]zB", kSelect},
                                            {VK_HOME, "[A]xzB", kSelect},
                                            {VK_UP, "[A]xzB", ""}}) {
    tree.parent.told.clear();
    tree.SendMessage(WM_KEYDOWN, key);
    EXPECT_EQ(tree.Shown() + tree.parent.told, shown + told) << key;
  }
  for (const auto& [x, y, message, shown, told] : Rows<int, int, UINT, const char*, const char*>{
           {40, 25, WM_LBUTTONDOWN, "A[x]zB", "-401 -402 -2 "},
           {24, 25, WM_LBUTTONDOWN, "A[x]yzB", "-405 -406 "},
           {24, 5, WM_LBUTTONDBLCLK, "[A]B", "-401 -402 -3 -405 -406 "},
           {90, 25, WM_LBUTTONDOWN, "[A]B", "-2 "}}) {
    tree.parent.told.clear();
    tree.Click(x, y, message);
    EXPECT_EQ(tree.Shown() + tree.parent.told, std::string(shown) + told) << x;
  }
  tree.SendMessage(WM_CHAR, 'b');
  EXPECT_TRUE(tree.Shown() == "A[B]" && tree.Enter("1") && !tree.Enter("3"));
  tree.parent.refused = TVN_SELCHANGING;
  EXPECT_TRUE(!tree.Choose(tree.b) && tree.Shown() == "[A]B");
  tree.parent.refused = TVN_ITEMEXPANDING;
  EXPECT_TRUE(!tree.ChooseExpand(tree.a, TVE_EXPAND) && tree.Shown() == "[A]B");
  tree.EnableWindow(false);
  EXPECT_FALSE(tree.Choose(tree.b));
  tree.EnableWindow();
  for (const int code : {TVN_SELCHANGING, NM_CLICK}) {
    Tree ended;
    ended.parent.ends_at = code;
    ended.Click(24, 5);
    EXPECT_EQ(ended.GetSafeHwnd(), nullptr);
  }
}

}  // namespace
}  // namespace dq::test
