#include "dqlib/framework/controls/tree_item.h"

#include "dqlib/framework/controls/tree_ctrl.h"

namespace dq {

IMPLEMENT_DYNAMIC(CTreeItem, CCmdTarget)

CTreeItem::~CTreeItem() {
  if (tree_ != nullptr) tree_->DeleteItem(handle_);
}

BOOL CTreeItem::OnWndMsg(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
  if (message != WM_LBUTTONDOWN && message != WM_CHAR) return 0;
  if (result != nullptr) *result = 0;
  if (message == WM_LBUTTONDOWN) {
    OnLButtonDown(static_cast<UINT>(wparam), PointOfParam(lparam));
  } else {
    const auto details = static_cast<WPARAM>(lparam);
    OnChar(static_cast<UINT>(wparam), LoWord(details), HiWord(details));
  }
  return 1;
}

void CTreeItem::OnLButtonDown(UINT keys, CPoint point) {
  if (tree_ != nullptr) tree_->HandleMessage(WM_LBUTTONDOWN, keys, MakeLParam(point.x, point.y));
}

void CTreeItem::OnChar(UINT character, UINT repeat, UINT flags) {
  if (tree_ == nullptr) return;
  tree_->HandleMessage(WM_CHAR, character, static_cast<LPARAM>(MakeWParam(repeat, flags)));
}

}  // namespace dq
