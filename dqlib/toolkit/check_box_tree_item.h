// Display items with check boxes, whose parents show the state of what is below them.

#pragma once

#include "dqlib/toolkit/check_box_tree_item_model.h"
#include "dqlib/toolkit/tree_item_base.h"

namespace dq {

/// The images of states.
enum CheckBoxImage : int { kClearImage = 1, kCheckedImage = 2, kMixedImage = 4 };

/// An item with a check box. What a parent shows follows from its model's counts: mixed, if nodes
/// below are checked and others clear; else clear, if all below are clear, as is true of a leaf;
/// else checked. So a leaf is shown as checked by `SetIsChecked` alone, as `ToggleCheckBox` does.
///
/// A press of the mouse on the box toggles; no key does.
class CDQCheckBoxTreeItem : public CDQTreeItemBase {
  DECLARE_DYNAMIC(CDQCheckBoxTreeItem)
  /// Shown as clear.
  CDQCheckBoxTreeItem();
  /// Shown by the model's own state.
  explicit CDQCheckBoxTreeItem(CDQCheckBoxTreeItemModel* model);

  CDQCheckBoxTreeItemModel* GetItemModel() const;
  CTreeViewItemEx& GetTVITEMEX() override;

  /// As the base, for items with check boxes only; then this item's model takes its initial state
  /// and counts, the models above it count, and the items from this one up to the root show what
  /// comes of it.
  bool AddChild(CDQTreeItemBase* child) override;
  bool InsertChild(int index, CDQTreeItemBase* child) override;

  /// Toggles the model, and shows this item and all below it as the model is now, and those above
  /// as their counts are.
  void ToggleCheckBox();
  /// Shows this item, and then those above it up to the root, as their models' counts say: the
  /// first in the record alone, for items that aren't in a tree yet.
  void SetCheckBox();
  void UpdateCheckBox();
  /// Whether it is shown as checked.
  bool GetIsChecked() { return GetTVITEMEX().GetStateImage() == kCheckedImage; }
  /// Shows it and all below it as checked or clear; models stay as they are.
  void SetIsChecked(int checked);

  void OnChar(UINT character, UINT repeat, UINT flags) override;
  void OnLButtonDown(UINT keys, CPoint point) override;

 protected:
  bool Takes(CDQTreeItemBase* child) const override;

 private:
  CDQCheckBoxTreeItem* Parent() const;
  int ImageByModel() const;
  void TakeIn();

  /// The record's image is to be chosen when somebody asks for it, since the model's nodes are
  /// counted only then.
  bool m_bImageDue = false;
};

}  // namespace dq
