// Trees with check boxes: their models, their items in a tree control, and rows with check boxes.

#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// A model as a host has it.
struct Model : CDQCheckBoxTreeItemModel {
  explicit Model(const char* text, int begin = 0, InitialCheckState initial = kInitiallyClear)
      : CDQCheckBoxTreeItemModel(initial), name(text), state(begin) {}
  CString GetItemText() const override { return name; }
  int GetCheckState() const override { return state; }
  void SetCheckState(int now) override { state = now; }

  /// Its name, its state, and "m", "c", "u" for mixed, only checked and only unchecked below; then
  /// what is below it.
  std::string Text() const {
    std::string text = name + std::to_string(state) + (HasMixedStateChildren() ? "m" : "") +
                       (HasOnlyCheckedChildren() ? "c" : "") +
                       (HasOnlyUncheckedChildren() ? "u" : "");
    for (int at = 0; at < GetChildCount(); ++at) {
      text += ' ' + static_cast<const Model*>(GetChild(at))->Text();
    }
    return text;
  }
  using CDQCheckBoxTreeItemModel::CountCheckedChildren, CDQCheckBoxTreeItemModel::UpdateAllChildren,
      CDQCheckBoxTreeItemModel::IncrementCheckedChildren,
      CDQCheckBoxTreeItemModel::DecrementCheckedChildren,
      CDQCheckBoxTreeItemModel::IncrementUncheckedChildren,
      CDQCheckBoxTreeItemModel::DecrementUncheckedChildren,
      CDQCheckBoxTreeItemModel::ZeroCheckedChildren;

  std::string name;
  int state;
};

/// Takes down the remarks for debugging.
struct Remarks {
  ~Remarks() { SetTraceSink(former); }
  std::string text;
  TraceSink former = SetTraceSink([this](std::string_view line) { text += line; });
};

/// r with the nodes a, with x and y below it, and b.
struct ModelTree : Model {
  ModelTree() : Model("r") {
    AddChild(a);
    for (Model* child : {x, y}) a->AddChild(child);
    AddChild(b);
  }
  Model *a = new Model("a"), *b = new Model("b"), *x = new Model("x"), *y = new Model("y");
};

TEST(CheckBoxModel, TogglesAllBelowAndBringsAllAboveUpToDate) {
  ModelTree root;
  for (const auto& [toggled, state, text] :
       Rows<Model*, int, const char*>{{root.x, 1, "r1m a1m x1cu y0cu b0cu"},
                                      {root.y, 1, "r1m a1c x1cu y1cu b0cu"},
                                      {root.b, 1, "r1c a1c x1cu y1cu b1cu"},
                                      {root.a, 0, "r1m a0u x0cu y0cu b1cu"},
                                      {root.b, 0, "r0u a0u x0cu y0cu b0cu"},
                                      {&root, 1, "r1c a1c x1cu y1cu b1cu"},
                                      {root.x, 0, "r1m a1m x0cu y1cu b1cu"},
                                      // A mixed one is checked, so this clears it.
                                      {&root, 0, "r0u a0u x0cu y0cu b0cu"}}) {
    EXPECT_EQ(toggled->ToggleCheckState(), state) << text;
    EXPECT_EQ(root.Text(), text);
  }
  Remarks told;
  root.x->ToggleCheckState();
  root.TraceDump(1);
  EXPECT_EQ(told.text,
            "a Checked: 1 Unchecked: 1\nr Checked: 2 Unchecked: 2\n\tr, Checked: 2 Unchecked: 2\n"
            "\t\ta, Checked: 1 Unchecked: 1\n\t\t\tx, Checked: 0 Unchecked: 0\n"
            "\t\t\ty, Checked: 0 Unchecked: 0\n\t\tb, Checked: 0 Unchecked: 0\n");
  // The counts by themselves end at their limits, and all those above then.
  for (int i = 0; i < 3; ++i) root.a->IncrementCheckedChildren();
  EXPECT_EQ(root.Text(), "r1m a1mc x1cu y0cu b0cu");
  for (int i = 0; i < 2; ++i) root.a->DecrementCheckedChildren();
  EXPECT_EQ(root.Text(), "r1m a1 x1cu y0cu b0cu");
  EXPECT_EQ(root.CountCheckedChildren(&root), 2);
  root.AllCheckedChildren();
  EXPECT_EQ(root.Text(), "r1mc a1mc x1cu y1cu b1cu") << "the other count stays";
  root.ZeroCheckedChildren();
  EXPECT_EQ(root.Text(), "r1 a1 x1cu y1cu b1cu");
  root.UpdateAllChildren(0);
  EXPECT_EQ(root.Text(), "r1u a0u x0cu y0cu b0cu");
  for (int i = 0; i < 2; ++i) root.a->DecrementUncheckedChildren();
  EXPECT_EQ(root.Text(), "r1 a0 x0cu y0cu b0cu");
  for (int i = 0; i < 3; ++i) root.a->IncrementUncheckedChildren();
  EXPECT_EQ(root.Text(), "r1u a0u x0cu y0cu b0cu");
}

TEST(CheckBoxModel, CountsAreThoseOfTheMomentWhenTheyWereBroughtUpToDate) {
  ModelTree root;
  root.InitCheck();
  root.x->state = 1;
  EXPECT_EQ(root.Text(), "r0u a0 x1cu y0cu b0cu") << "the host's own change";
  root.InitCheck();
  EXPECT_EQ(root.Text(), "r0m a0 x1cu y0cu b0cu");

  // So they are where many nodes are counted only later, as far as the library changes states.
  using Step = std::function<void(Model & a, Model & heir)>;
  for (const Step& step :
       {Step([](Model&a, Model&) { a.UpdateAllChildren(1); }),
        Step([](Model&a, Model&) { a.AllCheckedChildren(); }),
        Step([](Model&a, Model&) { a.ToggleCheckState(), a.ToggleCheckState(); }),
        Step([](Model&, Model&heir) { heir.InitCheck(); })}) {
    ModelTree large;
    for (int node = 0; node < 1000; ++node) large.AddChild(new Model("n"));
    auto* const heir = new Model("h", 0, kInheritCheckState);
    large.AddChild(heir);
    large.InitCheck();
    large.state = 1;
    step(*large.a, *heir);
    EXPECT_TRUE(large.HasOnlyUncheckedChildren());
  }
}

TEST(CheckBoxModel, TakesItsParentsStateAsItComesInAndIsCountedWhenTheParentIs) {
  Model root("r", 1);
  auto *const heir = new Model("h", 0, kInheritCheckState), *const own = new Model("o");
  root.InitCheck();
  EXPECT_TRUE(root.AddChild(heir) && heir->state == 1);
  EXPECT_EQ(root.Text(), "r1 h1cu") << "counted before it came in";
  root.InitCheck();
  EXPECT_TRUE(root.InsertChild(0, own));
  EXPECT_EQ(root.Text(), "r1 o0cu h1cu");
  root.InitCheck();
  EXPECT_EQ(root.Text(), "r1m o0cu h1cu");
  // What isn't taken stays the caller's.
  CDQTreeItemModel plain;
  for (CDQTreeItemModel* none : {&plain, static_cast<CDQTreeItemModel*>(&root)}) {
    EXPECT_FALSE(root.AddChild(none) || heir->AddChild(none) || root.AddChild(nullptr));
  }
  EXPECT_FALSE(own->AddChild(heir) || root.InsertChild(3, &plain));
  const std::unique_ptr<CDQTreeItemModel> out(root.RemoveChild(1));
  EXPECT_TRUE(out.get() == heir && heir->GetParent() == nullptr && root.FindChild(own) == 0);
  EXPECT_TRUE(root.GetChild(1) == nullptr && root.GetChild(-1) == nullptr && !root.RemoveChild(1));
  delete own;
  EXPECT_EQ(root.GetChildCount(true), 0);
}

TEST(CheckBoxModel, MakesNothingOfTreesThatAreVeryWideOrVeryDeep) {
  for (const bool deep : {false, true}) {
    Model root("r");
    Model* parent = &root;
    constexpr int kNodes = 60000;
    for (int at = 0; at < kNodes; ++at) {
      auto* const node = new Model("n");
      ASSERT_TRUE(parent->AddChild(node));
      if (deep) parent = node;
      ASSERT_TRUE(at % 1000 != 0 || root.GetChildCount(true) == at + 1);
    }
    EXPECT_EQ(root.ToggleCheckState(), 1);
    EXPECT_TRUE(root.HasOnlyCheckedChildren() && !root.HasMixedStateChildren());
    EXPECT_EQ(deep ? parent->ToggleCheckState() : root.ToggleCheckState(), 0);
    EXPECT_EQ(root.CountCheckedChildren(&root), 0) << "nothing above the last one is checked";
  }
}

// ---- Items

/// The tree of models in a control, with items that were put together from the top down.
struct ItemTree {
  ItemTree() {
    tree.SetController(&controller);
    tree.Create(&main, {0, 0, 200, 200}, 7);
    for (Model* model : {static_cast<Model*>(&models), models.a, models.x, models.y, models.b}) {
      items[model->name] = controller.CreateTreeItem(model);
      if (model == &models) continue;
      const auto& above = static_cast<Model*>(model->GetParent())->name;
      EXPECT_TRUE(items[above]->AddChild(items[model->name]));
    }
    root.reset(items["r"]);
  }
  /// The images of r, a, x, y and b, which the rows have too.
  std::string Images() {
    std::string images;
    for (const char* name : {"r", "a", "x", "y", "b"}) {
      const int image = items[name]->GetTVITEMEX().GetStateImage();
      const HTREEITEM row = items[name]->GetHandle();
      EXPECT_TRUE(row == nullptr || StateImageOf(tree.GetItemState(row, ~0U)) == image) << name;
      images += std::to_string(image);
    }
    return images;
  }
  /// A press on the check box in a row, or so far right of its left edge.
  void Press(int row, LONG by = 8, UINT message = WM_LBUTTONDOWN) {
    CRect box;
    ASSERT_TRUE(tree.GetStateImageRect(tree.GetRowItem(row), &box));
    tree.SendMessage(message, MK_LBUTTON, MakeLParam(box.left + by, box.top + 5));
  }

  MainWindow main;
  ModelTree models;
  CDQCheckBoxTreeController controller;
  std::map<std::string, CDQCheckBoxTreeItem*> items;
  std::unique_ptr<CDQTreeItemBase> root;
  CDQTreeCtrlEx tree;
};

TEST(CheckBoxItems, ShowWhatIsBelowThemAndToggleByTheMouse) {
  ItemTree shown;
  CDQTreeCtrlEx& tree = shown.tree;
  shown.items["a"]->UpdateStateImage(kMixedImage);
  EXPECT_EQ(shown.Images(), "14111") << "nothing is checked, but what one item was given";
  shown.items["a"]->UpdateCheckBox();
  const HTREEITEM root = tree.LoadTree(shown.root.get(), TVI_ROOT, 1);
  EXPECT_TRUE(tree.GetCount() == 3 && tree.GethtiRoot() == root);
  tree.ClearTree();
  EXPECT_TRUE(shown.root->GetHandle() == nullptr && tree.GethtiRoot() == nullptr);
  tree.ExpandToLevel(tree.LoadTree(shown.root.get(), TVI_ROOT, 9), 1);
  EXPECT_EQ(tree.GetRowCount(), 3);
  tree.ExpandToLevel(shown.root->GetHandle(), 2);
  ASSERT_EQ(tree.GetRowCount(), 5);
  // Which row is pressed, the images then, and the state of the root's model.
  for (const auto& [row, images, state] : Rows<int, const char*, int>{{2, "44211", 1},
                                                                      {3, "42221", 1},
                                                                      {4, "22222", 1},
                                                                      {1, "41112", 1},
                                                                      {4, "11111", 0},
                                                                      {0, "22222", 1},
                                                                      {3, "44212", 1},
                                                                      // Mixed, so checked: cleared.
                                                                      {0, "11111", 0}}) {
    shown.Press(row);
    EXPECT_EQ(shown.Images(), images) << row;
    EXPECT_EQ(shown.models.state, state) << row;
  }
  shown.Press(2, 8, WM_LBUTTONDBLCLK);
  shown.Press(2, 20);
  for (const UINT key : {VK_SPACE, VK_RETURN}) {
    tree.SendMessage(WM_KEYDOWN, key);
    tree.SendMessage(WM_CHAR, key);
  }
  EXPECT_EQ(shown.Images(), "11111") << "only a press on the box toggles";
  EXPECT_EQ(tree.GetItemFromHandle(tree.GetSelectedItem()), shown.items["x"]);
  shown.items["a"]->SetIsChecked(1);
  EXPECT_TRUE(shown.Images() == "12221" && shown.items["x"]->GetIsChecked());
  shown.items["a"]->UpdateCheckBox();
  EXPECT_EQ(shown.Images(), "11221") << "models are as they were";
}

TEST(CheckBoxItems, KeepTheImageThatWasChosenForThem) {
  ItemTree shown;
  shown.models.a->ToggleCheckState();
  EXPECT_EQ(shown.Images(), "11111") << "the models alone";
  shown.items["a"]->UpdateCheckBox();
  EXPECT_EQ(shown.Images(), "42111");
}

TEST(CheckBoxItems, PassWhatTheyAreOnToTheirRows) {
  ItemTree shown;
  CDQTreeCtrlEx& tree = shown.tree;
  CDQCheckBoxTreeItem& a = *shown.items["a"];
  tree.ExpandToLevel(tree.LoadTree(shown.root.get(), nullptr, 9), 3);
  a.UpdateItemText("changed");
  a.UpdateState(TVIS_BOLD, TVIS_BOLD);
  a.UpdateOverlayImage(3);
  CTreeViewItemEx record;
  record.SetItem(a.GetHandle());
  EXPECT_TRUE(tree.GetItem(record) && record.GetText() == "changed" && record.GetState() == 0x1330);
  a.SetItemTextColor(RGB(1, 2, 3));
  RecordingDC dc;
  tree.Paint(dc);
  EXPECT_NE(dc.Text().find("text 57,23 \"changed\" 010203"), std::string::npos) << dc.Text();
  UINT flags = 0;
  EXPECT_TRUE(tree.GetItemFromPt({60, 25}, &flags) == &a && flags == TVHT_ONITEMLABEL);
  EXPECT_TRUE(tree.GetItemFromPt({60, 190}, &flags) == nullptr && flags == TVHT_NOWHERE);
  CDQTreeItemBase plain;
  EXPECT_FALSE(a.AddChild(&plain));
  const HTREEITEM gone = tree.LoadTree(&plain, TVI_ROOT, 0);
  tree.DeleteItem(gone);
  for (const HTREEITEM none : {gone, a.GetHandle()}) {
    EXPECT_TRUE(tree.LoadTree(shown.root.get(), none, 9) == nullptr && tree.GetCount() == 5);
  }
  // An item that goes takes its rows along; rows that go leave the items.
  delete &a;
  EXPECT_EQ(tree.GetRowCount(), 2);
  tree.DeleteAllItems();
  EXPECT_TRUE(shown.items["b"]->GetTreeCtrl() == nullptr && shown.root->GetChildCount() == 1);
}

TEST(TreeItems, HearFirstWhatTheirTreeIsAskedAndTellsOfThem) {
  struct Told : CDQTreeItemBase {
    BOOL OnCmdMsg(UINT id, int, void*, void*) override {
      told += std::to_string(id) + " ";
      return keeps;
    }
    BOOL OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) override {
      const int code = reinterpret_cast<const NMHDR*>(lparam)->code;
      told += std::to_string(message) + "/" + std::to_string(wparam) + std::to_string(code) + " ";
      *result = 1;
      return keeps != 0 ? keeps : CDQTreeItemBase::OnChildNotify(message, wparam, lparam, result);
    }
    BOOL keeps = 1;
    std::string told;
  } item;
  struct Tree : CDQTreeCtrlEx {
    LRESULT OnTimer(WPARAM timer, LPARAM) { return static_cast<LRESULT>(timer) + 1; }
    bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
      static constexpr MessageMapEntry kEntries[] = {MessageEntry<&Tree::OnTimer>(WM_TIMER)};
      return CallEntry(kEntries, *this, key, arguments) ||
             CDQTreeCtrlEx::CallMapped(key, arguments);
    }
  } tree;
  MainWindow main;
  tree.Create(&main, {0, 0, 200, 200}, 7);
  const HTREEITEM row = tree.LoadTree(&item, TVI_ROOT, 0);
  EXPECT_FALSE(tree.Choose(row)) << "the item answers in the parent's place";
  item.keeps = 0;
  EXPECT_TRUE(tree.Choose(row));
  tree.OnCmdMsg(5, CN_COMMAND, nullptr, nullptr);
  // One of another kind is about no item, whatever lies behind its header.
  NM_TREEVIEW other;
  other.hdr = {tree.GetSafeHwnd(), 7, -12};
  other.itemNew = row;
  main.SendMessage(WM_NOTIFY, 7, reinterpret_cast<LPARAM>(&other));
  EXPECT_EQ(item.told, "78/7-401 78/7-401 78/7-402 5 ");
  EXPECT_EQ(tree.SendMessage(WM_TIMER, 8), 9) << "what is about no item goes to the tree's own map";
}

// ---- Rows

/// Takes down the codes of what it is told.
struct Teller : CWnd {
  Teller() { CreateWnd("Teller"); }
  ~Teller() override { DestroyWindow(); }
  BOOL OnCommand(WPARAM wparam, LPARAM lparam) override {
    const BOOL handled = CWnd::OnCommand(wparam, lparam);
    codes += std::to_string(HiWord(wparam)) + (handled ? "! " : " ");
    return 1;
  }
  std::string codes;
};

/// r, with a, which has x and y, and b below it, and s.
struct CheckTree : CDQCheckListTree {
  CheckTree() {
    for (const WORD id : {WORD{5}, WORD{6}, WORD{7}}) {
      BitmapDescription picture{.size = {9, 9}, .pixels = {}};
      picture.pixels.assign(81, id);
      module.AddResource(RESOURCE_BITMAP, id, WriteDib(picture));
    }
    Create(0, {0, 0, 200, 200}, &parent, 7);
    AddColumn("Name", 150);
    EXPECT_TRUE(!LoadCheckStateBitmaps(5, 6, 8) && LoadCheckStateBitmaps(5, 6, 7));
    for (const auto& [name, level] :
         Rows<const char*, int>{{"r", 0}, {"a", 1}, {"x", 2}, {"y", 2}, {"b", 1}, {"s", 0}}) {
      EXPECT_TRUE(SetLevel(AddString(name), level));
    }
  }
  /// The states of all rows.
  std::string States() const {
    std::string states;
    for (int row = 0; row < GetCount(); ++row) states += std::to_string(GetItemCheckState(row));
    return states;
  }
  /// Presses the part of a row; what the parent is told.
  std::string Press(int row, TreePart part) {
    parent.codes.clear();
    CPoint at{0, GetHeaderHeight() + (row - GetTopRow()) * GetRowHeight() + GetRowHeight() / 2};
    while (HitTest(at).part != part && at.x < 200) ++at.x;
    SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MakeLParam(at.x, at.y));
    SendMessage(WM_LBUTTONUP, 0, MakeLParam(at.x, at.y));
    return parent.codes;
  }
  using CDQCheckListTree::GetSiblingGroupState, CDQCheckListTree::UpdateItemCheckbox,
      CDQCheckListTree::IsItemLeaf, CDQCheckListTree::IsItemParent, CDQCheckListTree::IsItemRoot,
      CDQCheckListTree::GetItemCheckState;

  ResourceModule module;
  CDynLinkLibrary link{&module};
  Teller parent;
};

TEST(CheckListTree, HasParentsShowWhatIsBelowThem) {
  CheckTree tree;
  for (const auto& [act, states] : Rows<std::function<void()>, const char*>{
           {[&] { tree.SetCheck(2, true); }, "112000"},
           {[&] { tree.SetCheck(3, true); }, "122200"},
           {[&] { tree.SetCheck(4, true); }, "222220"},
           {[&] { tree.UpdateItemCheckbox(1); }, "100020"},
           // A mixed one is checked, with all below it.
           {[&] { tree.UpdateItemCheckbox(0); }, "222220"},
           {[&] { tree.SetCheck(9, true), tree.SetCheck(-1, false); }, "222220"},
           {[&] { tree.SetCheck(3, false); }, "112020"},
           {[&] { tree.SelectAll(); }, "222222"},
           {[&] { tree.UnselectAll(); }, "000000"},
           {[&] { tree.SetSingleCheck(true), tree.UpdateItemCheckbox(2); }, "112000"},
           {[&] { tree.SelectAll(); }, "112000"},
           {[&] { tree.UpdateItemCheckbox(5); }, "000002"},
           {[&] { tree.UpdateItemCheckbox(-1), tree.UpdateItemCheckbox(6); }, "000002"},
           {[&] { tree.SetCheck(4, true); }, "100020"},
           {[&] { tree.SetColumnBitmap(4, 0, nullptr), tree.UpdateItemCheckbox(4); }, "000030"}}) {
    act();
    EXPECT_EQ(tree.States(), states);
  }
  EXPECT_TRUE(!tree.GetCheck(-1) && tree.GetItemCheckState(-1) == 3 &&
              tree.GetSiblingGroupState(6) == 3);
  tree.SetCheck(5, true);
  CUIntArray checked;
  EXPECT_TRUE(tree.GetSelectedItems(checked) == 1 && checked[0] == 5 &&
              tree.GetCheckedCount() == 1);
  tree.MoveWindow(0, 0, 200, tree.GetHeaderHeight() + 2 * tree.GetRowHeight());
  tree.SetTopCheckedIndex();
  EXPECT_EQ(tree.GetTopRow(), 4) << "as far as it goes";
  // Other pictures don't change states; bold is that of the row and of those below it alone.
  CBitmap own[3];
  for (CBitmap& each : own) {
    each.Attach(std::make_unique<BitmapDescription>(BitmapDescription{{1, 1}, {0}}));
  }
  tree.Initialize(&own[0], &own[1], &own[2], false, true);
  EXPECT_TRUE(tree.States() == "000032" && tree.GetColumnBitmap(5, 0) == own[2].GetSafeHandle());
  tree.SetCheck(1, true);
  std::string bold;
  for (int row = 0; row < 6; ++row) bold += tree.GetItemFont(row, 0) == nullptr ? '-' : 'b';
  EXPECT_EQ(bold + tree.States(), "-bbb--122230");
  Remarks told;
  for (const int row : {0, 2}) {
    EXPECT_EQ(tree.IsItemLeaf(row), row == 2);
    EXPECT_EQ(tree.IsItemParent(row), row == 0);
    EXPECT_EQ(tree.IsItemRoot(row), row == 0);
  }
  EXPECT_EQ(told.text, "leaf[ ] parent[x] root[x]\nleaf[x] parent[ ] root[ ]\n");
}

TEST(CheckListTree, TogglesByItsBoxesAndWhereItIsToByItsTexts) {
  CheckTree tree;
  EXPECT_EQ(tree.Press(2, TreePart::kPicture), "1 30 34 ");
  EXPECT_EQ(tree.Press(3, TreePart::kCell), "1 35 ");
  EXPECT_EQ(tree.States(), "112000");
  CBitmap own[3];
  for (CBitmap& each : own) {
    each.Attach(
        std::make_unique<BitmapDescription>(BitmapDescription{{9, 9}, std::vector<COLORREF>(81)}));
  }
  tree.Initialize(&own[0], &own[1], &own[2], true);
  EXPECT_EQ(tree.Press(3, TreePart::kCell), "30 35 ");
  EXPECT_EQ(tree.States(), "122200");
  tree.parent.codes.clear();
  for (const UINT key : {VK_SPACE, VK_SHIFT}) tree.SendMessage(WM_KEYDOWN, key);
  EXPECT_TRUE(tree.parent.codes == "44 " && tree.States() == "122200") << "a key toggles nothing";
}

}  // namespace
}  // namespace dq::test
