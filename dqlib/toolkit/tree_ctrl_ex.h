// A tree control that shows items, which are objects, and has them take part in what happens.
//
//   CDQCheckBoxTreeController controller;
//   CDQTreeCtrlEx tree;
//   tree.SetController(&controller);
//   tree.Create(&pane, place, 12);
//   std::unique_ptr<CDQTreeItemBase> root(controller.CreateTreeItem(&model));
//   tree.ExpandToLevel(tree.LoadTree(root.get(), TVI_ROOT, 9), 2);

#pragma once

#include "dqlib/framework/controls/tree_ctrl.h"
#include "dqlib/toolkit/tree_controller.h"

namespace dq {

/// The control. Items and controller aren't owned; items may go before the tree, or after it. What
/// the mouse does over an item, and characters while one is selected, go to that item first
/// (`CTreeItem::OnWndMsg`), and so do commands, to the selected one, and notifications about an
/// item (`CDQTreeItemBase::HandleChildNotify`).
class CDQTreeCtrlEx : public CTreeCtrl {
  DECLARE_DYNCREATE(CDQTreeCtrlEx)
  ~CDQTreeCtrlEx() override;

  using Controller = CDQTreeController_T<CDQTreeItemBase>;
  void SetController(Controller* controller) { m_pController = controller; }
  Controller* GetController() const { return m_pController; }

  /// The item that `ExpandToLevel` brings into view. The first one that is loaded at the top,
  /// unless it is set.
  void SethtiRoot(HTREEITEM root) { m_htiRoot = root; }
  HTREEITEM GethtiRoot() const { return m_htiRoot; }

  /// Inserts an item and so many levels of what is below it, 0 for the item alone, as the last one
  /// below `parent` (`TVI_ROOT` or null is the top). Returns its handle; null, and no change, if
  /// the item is null or there is no such parent, as where its row would be below itself.
  HTREEITEM LoadTree(CDQTreeItemBase* item, HTREEITEM parent, int levels);
  /// Inserts one item with its record. `level` is that at which it is loaded, from 0 for the item
  /// with which `LoadTree` began.
  virtual HTREEITEM InsertItem(CDQTreeItemBase* item, HTREEITEM parent, int level);
  using CTreeCtrl::InsertItem;
  /// Expands an item and what is below it, so many levels in all, and brings the root into view.
  void ExpandToLevel(HTREEITEM item, int levels);
  /// Deletes all items, if the window exists. The objects stay.
  void ClearTree();

  /// The item at a point, or null, and where that lies: `TreeHitFlag` bits.
  CDQTreeItemBase* GetItemFromPt(const CPoint& point, UINT* flags = nullptr) const;
  /// The object of a handle, or null.
  CDQTreeItemBase* GetItemFromHandle(HTREEITEM item) const;

  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;

 protected:
  BOOL OnWndMsg(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) override;
  BOOL OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) override;
  /// An item's own text colour counts, if it has one.
  void PickTextColors(HTREEITEM item, COLORREF& text, COLORREF& background) const override;
  CFont* PickTextFont(HTREEITEM item, COLORREF& text) const override;

 private:
  void PickOwnColor(HTREEITEM item, COLORREF& text) const;

  Controller* m_pController = nullptr;
  HTREEITEM m_htiRoot = nullptr;
};

}  // namespace dq
