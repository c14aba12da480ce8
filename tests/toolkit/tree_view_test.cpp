// Trees: drags, views with a tree, and the machines of the network.

#include "tests/support/doubles.h"
#include "tests/support/trees.h"

namespace dq::test {
namespace {

/// Drags from one row to a place, or with -1 there to another row, and tells the rows then.
std::string Drag(CDQTree& tree, int row, CPoint to) {
  const auto middle = [&tree](int of) {
    CRect place;
    tree.GetCellRect(of, 0, &place, true);
    return CPoint{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
  };
  const CPoint from = tree.ClientToScreen(middle(row));
  to = tree.ClientToScreen(to.x < 0 ? middle(static_cast<int>(to.y)) : to);
  MouseInput(WM_LBUTTONDOWN, MK_LBUTTON, from, &tree);
  MouseInput(WM_MOUSEMOVE, MK_LBUTTON, to, &tree);
  MouseInput(WM_LBUTTONUP, 0, to, &tree);
  return RowsOf(tree);
}

TEST(Tree, ADragMovesRowsOrTellsOfOtherWindows) {
  struct Foreign : CDQTree {
    LRESULT OnForeignDrop(CWnd* target, const CStringArray*) override {
      return told += "drop on " + std::to_string(target->GetDlgCtrlID()) + " ", 0;
    }
    LRESULT OnForeignDrag(CWnd* target) override {
      return told += "over " + std::to_string(target->GetDlgCtrlID()) + " ", 0;
    }
    void PostDrag() override { told += "end "; }
    std::string told;
  };
  ScriptedPrompts prompts;
  WithParent<Foreign> parent("a, b,c");
  CWnd other;
  other.CreateWnd({.class_name = "Other", .place = {0, 200, 400, 300}, .parent = &parent, .id = 9});
  parent.tree.MoveWindow({0, 0, 400, 200});
  EXPECT_EQ(Drag(parent.tree, 2, {-1, 0}), "a, b,c") << "it isn't allowed";
  parent.tree.AllowDrag(true);
  EXPECT_EQ(Drag(parent.tree, 2, {-1, 0}), "a, b, c");
  EXPECT_EQ(Drag(parent.tree, 1, {20, 190}), "a, c,b") << "below all rows";
  EXPECT_EQ(Drag(parent.tree, 1, {20, 2}), "a, c,b") << "on the titles";
  EXPECT_EQ(Drag(parent.tree, 1, {20, 250}), "a, c,b");
  EXPECT_EQ(parent.tree.told, "end end end over 9 drop on 9 end ");
  EXPECT_TRUE(prompts.shown.empty() && parent.tree.GetDropTarget() == -1);
}

/// Takes rows from elsewhere, and keeps what it is told of other windows.
struct DropTree : CDQTree {
  void* CreateItem(const char* text, bool) override {
    return takes ? const_cast<char*>(text) : nullptr;
  }
  LRESULT OnForeignDrop(CWnd* target, const CStringArray* texts) override {
    told += target == this ? "in " : "out ";
    for (int at = 0; texts != nullptr && at < texts->GetSize(); ++at) told += (*texts)[at] + " ";
    return 0;
  }
  void PostDrag() override { told += "over "; }
  bool takes = true;
  std::string told;
};

struct DropView : CDQTreeView {
  std::unique_ptr<CDQTree> CreateTreeControl() override { return std::make_unique<DropTree>(); }
  DropTree& tree() { return static_cast<DropTree&>(*GetTree()); }
};

TEST(TreeView, IsFilledByItsTreeWhichTakesItsCommandsAndDrops) {
  MainWindow main;
  main.MoveWindow({0, 0, 400, 300});
  DropView view;
  view.EnableDragging(true);
  ASSERT_TRUE(view.Create(&main, {0, 0, 300, 200}, 1, static_cast<CDocument*>(nullptr)));
  DropTree& tree = view.tree();
  EXPECT_TRUE(tree.GetDlgCtrlID() == 3070 && tree.GetPlace() == view.GetClientRect());
  view.MoveWindow({0, 0, 200, 100});
  view.SetFocus();
  EXPECT_TRUE(tree.GetPlace() == view.GetClientRect() && CWnd::GetFocus() == &tree);
  const auto enabled = [&] {
    std::string bits;
    for (const UINT id : {57635U, 57634U, 57637U, 57632U, 57642U}) {
      struct : CCmdUI {
        void Enable(BOOL on) override { bit = on != 0 ? '1' : '0'; }
        char bit = '-';
      } ui;
      ui.m_nID = id;
      view.OnCmdMsg(id, CN_UPDATE_COMMAND_UI, &ui, nullptr);
      bits += ui.bit;
    }
    return bits;
  };
  platform::Current().clipboard->SetAll({});
  EXPECT_EQ(enabled(), "00000");
  tree.AddColumn("", 100);
  Fill(tree, "a, b,c");
  tree.SetMultiSelect();
  EXPECT_EQ(enabled(), "00001");
  view.SendMessage(WM_COMMAND, 57642);
  view.SendMessage(WM_COMMAND, 57634);
  EXPECT_EQ(enabled(), "11111");

  const auto drop = [&](UINT format, std::string_view bytes, int row) {
    COleDataObject data;
    data.SetData(format, bytes);
    CRect place;
    tree.GetCellRect(row, -1, &place);
    const CPoint point = tree.ClientToScreen(CPoint{5, place.top + 1});
    DragInput drag(data, DROPEFFECT_COPY);
    const UINT over = drag.Move(&tree, MK_LBUTTON, point);
    EXPECT_EQ(tree.GetDropTarget(), row);
    const UINT effect = drag.Drop(&tree, 0, point);
    return std::to_string(over) + std::to_string(effect) + " " + RowsOf(tree);
  };
  EXPECT_EQ(drop(CLIPBOARD_TEXT, std::string_view("text\0", 5), 2), "11 a, b,c,text");
  EXPECT_EQ(drop(CLIPBOARD_FILES, std::string_view("/f\0/g\0", 7), 0), "11 a, b, /f, /g,c,text");
  EXPECT_EQ(drop(1234, "x", 0), "00 a, b, /f, /g,c,text") << "neither a text nor files";
  tree.takes = false;
  EXPECT_EQ(drop(CLIPBOARD_TEXT, "more", 0), "10 a, b, /f, /g,c,text");
  EXPECT_EQ(tree.told + std::to_string(tree.GetDropTarget()), "in text in /f /g in more -1");
  CWnd other;
  CDQTreeDropTarget target;
  COleDataObject data;
  data.SetData(CLIPBOARD_TEXT, "x");
  EXPECT_EQ(target.OnDragOver(&other, &data, 0, {}), DROPEFFECT_NONE);
  tree.UnselectAll();
  tree.SelectRow(1);
  target.SetDragged(&tree);
  EXPECT_EQ(target.OnDropEx(&tree, &data, 0, DROPEFFECT_MOVE, {20, 2}), DROPEFFECT_NONE);
  EXPECT_EQ(RowsOf(tree), "a, b, /f, /g,c,text") << "nothing moves by a drop on the titles";

  struct : RecordingObserver {
    UINT StartDrag(CWnd&, const COleDataObject& data, UINT, COleDropSource&) override {
      told +=
          data.GetData(CLIPBOARD_TEXT).value_or("-") + (CWnd::GetCapture() == nullptr ? "" : "!");
      return 0;
    }
    std::string told;
  } layer;
  Drag(tree, 1, {-1, 0});
  EXPECT_STREQ(layer.told.c_str(), "b") << "while the tree doesn't capture the mouse";

  auto second = std::make_unique<CDQTree>();
  CDQTree* const plain = second.get();
  view.SetTree(std::move(second));
  EXPECT_TRUE(view.GetTree() == plain && view.GetDlgItem(3070) == plain);
  EXPECT_TRUE(plain->IsDragAllowed());
  view.EnableDragging(false);
  EXPECT_FALSE(plain->IsDragAllowed()) << "they were by the view alone";
}

TEST(NetworkTree, ListsTheMachinesOnceItIsOpened) {
  struct : platform::Network {
    platform::Result<platform::NetworkError> LastError() override { return platform::Error{}; }
    platform::Result<std::vector<std::string>> Machines() override { return machines; }
    platform::Result<std::vector<std::string>> machines =
        platform::Error{platform::ErrorKind::kOther, 53};
  } network;
  const platform::ScopedPlatform scope(With(&platform::Platform::network, &network));
  ScriptedPrompts prompts;
  WithParent<CDQNetworkTree> parent;
  CDQNetworkTree& tree = parent.tree;
  tree.Initialize(1);
  EXPECT_EQ(RowsOf(tree), "Network");
  tree.SetCaret(0);
  parent.Reflect(33);
  EXPECT_EQ(prompts.shown.at(0).text, "Network error 53.\r\n");
  network.machines = std::vector<std::string>{"\\\\ALPHA", "beta"};
  parent.Reflect(33);
  EXPECT_EQ(RowsOf(tree), "Network, ALPHA, beta");
  tree.SelectAll();
  CStringArray names;
  EXPECT_TRUE(tree.GetSelectedMachines(names) == 2 && tree.GetMachineCount() == 2);
  EXPECT_EQ(names[0] + names[1], "ALPHAbeta");
}

}  // namespace
}  // namespace dq::test
