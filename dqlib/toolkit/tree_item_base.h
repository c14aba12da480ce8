// Display items of a tree: what a model looks like in a tree control.

#pragma once

#include "dqlib/framework/controls/tree_item.h"
#include "dqlib/platform/types.h"
#include "dqlib/toolkit/tree_item_model.h"

namespace dq {

/// An item with the items below it, which it owns, and the record of which a tree control makes its
/// row (`CDQTreeCtrlEx::LoadTree`). The model isn't owned, and must live as long as the item is
/// used. An item that is deleted takes its row along.
class CDQTreeItemBase : public CTreeItem, public CDQComposite_T<CDQTreeItemBase*> {
  DECLARE_DYNAMIC(CDQTreeItemBase)
  /// The tree's own colour.
  static constexpr COLORREF kDefaultColor = 0xFFFFFFFF;

  CDQTreeItemBase();
  /// Copies the model's text and images, if it isn't null.
  explicit CDQTreeItemBase(CDQTreeItemModel* model);
  ~CDQTreeItemBase() override;

  /// The record; its param is the item's address.
  virtual CTreeViewItemEx& GetTVITEMEX() { return m_record; }

  COLORREF GetItemTextColor() const { return m_textColor; }
  /// Drawn with the next drawing of the row.
  void SetItemTextColor(COLORREF color) { m_textColor = color; }

  CDQTreeItemModel* GetItemModel() const { return m_pModel; }
  /// The record stays as it is.
  void SetItemModel(CDQTreeItemModel* model) { m_pModel = model; }

  /// Change the record, and the row, if there is one. The second bits of a state say which count.
  void UpdateItemText(const char* text);
  void UpdateImage(int image);
  void UpdateSelectedImage(int image);
  void UpdateState(UINT state, UINT mask);
  void UpdateOverlayImage(int image);
  void UpdateStateImage(int image);

  /// A notification of the tree about this item, before the tree's parent gets it; not 0 keeps it
  /// from there. `HandleChildNotify` is what the tree calls, and asks the other one, in which the
  /// base does nothing.
  virtual BOOL HandleChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result);

 protected:
  virtual BOOL OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result);
  /// Passes the record to the tree, if the item is in one.
  void UpdateTreeCtrl();

 private:
  CTreeViewItemEx m_record;
  COLORREF m_textColor = kDefaultColor;
  CDQTreeItemModel* m_pModel = nullptr;
};

}  // namespace dq
