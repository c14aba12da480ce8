#include "dqlib/toolkit/tree_ctrl_ex.h"

#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNCREATE(CDQTreeCtrlEx, CTreeCtrl)

namespace {

/// The item that a notification of a tree is about; null for one of another kind.
HTREEITEM ItemOf(const NMHDR& header) {
  switch (header.code) {
    case NM_CLICK:
    case NM_DBLCLK:
    case TVN_SELCHANGING:
    case TVN_SELCHANGED:
    case TVN_ITEMEXPANDING:
    case TVN_ITEMEXPANDED:
      return reinterpret_cast<const NM_TREEVIEW&>(header).itemNew;
    default:
      return nullptr;
  }
}

}  // namespace

CDQTreeCtrlEx::~CDQTreeCtrlEx() { EndInDestructor(); }

// ---- Items

HTREEITEM CDQTreeCtrlEx::InsertItem(CDQTreeItemBase* item, HTREEITEM parent, int /*level*/) {
  if (item == nullptr) return nullptr;
  const HTREEITEM handle = CTreeCtrl::InsertItem(*item, item->GetTVITEMEX(), parent);
  item->GetTVITEMEX().SetItem(handle);
  return handle;
}

HTREEITEM CDQTreeCtrlEx::LoadTree(CDQTreeItemBase* item, HTREEITEM parent, int levels) {
  const HTREEITEM loaded = InsertItem(item, parent, 0);
  if (loaded == nullptr) return nullptr;
  if (GetParentItem(loaded) == nullptr && !HasItem(m_htiRoot)) m_htiRoot = loaded;
  struct Open {
    CDQTreeItemBase* item;
    int level;
  };
  std::vector<Open> open = {{item, 0}};
  while (!open.empty()) {
    const auto [above, level] = open.back();
    open.pop_back();
    for (int at = 0; level < levels && at < above->GetChildCount(); ++at) {
      CDQTreeItemBase* const child = above->GetChild(at);
      // Without a row of its own nothing below it has a place.
      if (InsertItem(child, above->GetHandle(), level + 1) == nullptr) continue;
      if (child->GetChildCount() > 0) open.push_back({child, level + 1});
    }
  }
  return loaded;
}

void CDQTreeCtrlEx::ExpandToLevel(HTREEITEM item, int levels) {
  struct Open {
    HTREEITEM item;
    int levels;
  };
  std::vector<Open> open = {{item, levels}};
  while (!open.empty()) {
    const auto [above, left] = open.back();
    open.pop_back();
    if (left <= 0) continue;
    Expand(above, TVE_EXPAND);
    for (HTREEITEM child = GetChildItem(above); child != nullptr;
         child = GetNextSiblingItem(child)) {
      open.push_back({child, left - 1});
    }
  }
  EnsureVisible(m_htiRoot);
}

void CDQTreeCtrlEx::ClearTree() {
  if (GetSafeHwnd() == nullptr) return;
  DeleteAllItems();
  m_htiRoot = nullptr;
}

CDQTreeItemBase* CDQTreeCtrlEx::GetItemFromHandle(HTREEITEM item) const {
  return dynamic_cast<CDQTreeItemBase*>(GetItemObject(item));
}

CDQTreeItemBase* CDQTreeCtrlEx::GetItemFromPt(const CPoint& point, UINT* flags) const {
  return GetItemFromHandle(HitTest(point, flags));
}

// ---- Looks

void CDQTreeCtrlEx::PickOwnColor(HTREEITEM item, COLORREF& text) const {
  const CDQTreeItemBase* const shown = GetItemFromHandle(item);
  if (shown != nullptr && shown->GetItemTextColor() != CDQTreeItemBase::kDefaultColor) {
    text = shown->GetItemTextColor();
  }
}

void CDQTreeCtrlEx::PickTextColors(HTREEITEM item, COLORREF& text, COLORREF& background) const {
  CTreeCtrl::PickTextColors(item, text, background);
  PickOwnColor(item, text);
}

CFont* CDQTreeCtrlEx::PickTextFont(HTREEITEM item, COLORREF& text) const {
  PickOwnColor(item, text);
  return CTreeCtrl::PickTextFont(item, text);
}

// ---- Routing

BOOL CDQTreeCtrlEx::OnWndMsg(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
  CDQTreeItemBase* item = nullptr;
  if (message >= WM_MOUSEMOVE && message <= WM_MBUTTONDBLCLK) {
    item = GetItemFromPt(PointOfParam(lparam));
  } else if (message == WM_CHAR) {
    item = GetItemFromHandle(GetSelectedItem());
  }
  const detail::Watched self(*this);
  if (item != nullptr && item->OnWndMsg(message, wparam, lparam, result) != 0) return 1;
  return self.IsThere() ? CTreeCtrl::OnWndMsg(message, wparam, lparam, result) : 1;
}

BOOL CDQTreeCtrlEx::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  CDQTreeItemBase* const item = GetItemFromHandle(GetSelectedItem());
  const detail::Watched self(*this);
  if (item != nullptr && item->OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  return self.IsThere() ? CTreeCtrl::OnCmdMsg(id, code, extra, handler_info) : 1;
}

BOOL CDQTreeCtrlEx::OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
  if (message == WM_NOTIFY) {
    const HTREEITEM handle = ItemOf(*reinterpret_cast<const NMHDR*>(lparam));
    CDQTreeItemBase* const item = GetItemFromHandle(handle);
    const detail::Watched self(*this);
    if (item != nullptr && item->HandleChildNotify(message, wparam, lparam, result) != 0) return 1;
    if (!self.IsThere()) return 1;
  }
  return CTreeCtrl::OnChildNotify(message, wparam, lparam, result);
}

}  // namespace dq
