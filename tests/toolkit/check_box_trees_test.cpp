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
    constexpr int kNodes = 100000;
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

}  // namespace
}  // namespace dq::test
