// Items of a tree control that are objects: what a person does with one goes to it.

#pragma once

#include "dqlib/framework/controls/tree_view_item.h"
#include "dqlib/framework/windows/cmd_target.h"

namespace dq {

class CTreeCtrl;

/// Base of such objects. An item belongs to its owner, who may delete it at any time: its row, with
/// all below it, goes with it. A row that the control deletes leaves the object alone.
class CTreeItem : public CCmdTarget {
  DECLARE_DYNAMIC(CTreeItem)
  CTreeItem() = default;
  ~CTreeItem() override;

  /// The tree in which it has a row, and the row's handle; null while it has none.
  CTreeCtrl* GetTreeCtrl() const { return tree_; }
  HTREEITEM GetHandle() const { return handle_; }

  /// A message of the mouse over the item, or of a character typed while it is selected. The base
  /// gives presses of the left button and characters to the handlers below. False leaves the
  /// message to the tree.
  virtual BOOL OnWndMsg(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result);
  /// The base has the tree do what it does by itself: select, expand, search. Handlers of
  /// notifications that this brings about may delete the item.
  virtual void OnLButtonDown(UINT keys, CPoint point);
  virtual void OnChar(UINT character, UINT repeat, UINT flags);

 private:
  friend class CTreeCtrl;

  CTreeCtrl* tree_ = nullptr;
  HTREEITEM handle_ = nullptr;
};

}  // namespace dq
