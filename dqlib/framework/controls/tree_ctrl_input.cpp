// What a person does with a tree control.

#include <algorithm>

#include "dqlib/framework/controls/tree_ctrl.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

using detail::Watched;

namespace {

/// Rows that a notch of the wheel scrolls by.
constexpr int kWheelRows = 3;

}  // namespace

LRESULT CTreeCtrl::TellParent(int code, UINT action, HTREEITEM old_item, HTREEITEM new_item,
                              const CPoint& point) {
  if (GetParent() == nullptr) return 0;
  NM_TREEVIEW told;
  told.hdr = {GetSafeHwnd(), static_cast<UINT>(GetDlgCtrlID()), code};
  told.action = action;
  told.itemOld = old_item;
  told.itemNew = new_item;
  told.ptDrag = point;
  return GetParent()->SendMessage(WM_NOTIFY, static_cast<WPARAM>(GetDlgCtrlID()),
                                  reinterpret_cast<LPARAM>(&told));
}

bool CTreeCtrl::Choose(HTREEITEM item) {
  if (!TakesInput() || !HasItem(item)) return false;
  const HTREEITEM former = GetSelectedItem();
  if (item != former) {
    const Watched self(*this);
    if (TellParent(TVN_SELCHANGING, 0, former, item) != 0) return false;
    if (!self.IsThere() || !HasItem(item)) return false;
    EnsureVisible(item);
    Select(items_.Find(item));
    TellParent(TVN_SELCHANGED, 0, former, item);
  } else {
    EnsureVisible(item);
  }
  return true;
}

bool CTreeCtrl::ChooseExpand(HTREEITEM item, UINT code) {
  if (!TakesInput() || !ItemHasChildren(item)) return false;
  if (code == TVE_TOGGLE) code = IsExpanded(item) ? TVE_COLLAPSE : TVE_EXPAND;
  if (IsExpanded(item) == (code == TVE_EXPAND)) return false;
  const Watched self(*this);
  if (TellParent(TVN_ITEMEXPANDING, code, nullptr, item) != 0) return false;
  if (!self.IsThere() || !Expand(item, code)) return false;
  TellParent(TVN_ITEMEXPANDED, code, nullptr, item);
  return true;
}

bool CTreeCtrl::ChooseRow(int row) {
  return Choose(GetRowItem(std::clamp(row, 0, std::max(0, GetRowCount() - 1))));
}

LRESULT CTreeCtrl::OnPress(const CPoint& point, bool second) {
  const Watched self(*this);
  SetFocus();
  if (!self.IsThere()) return 0;
  UINT where = 0;
  const HTREEITEM item = HitTest(point, &where);
  if (where == TVHT_ONITEMBUTTON) {
    ChooseExpand(item, TVE_TOGGLE);
    return 0;
  }
  if ((where & (TVHT_ONITEMICON | TVHT_ONITEMLABEL)) != 0) Choose(item);
  if (!self.IsThere()) return 0;
  const LRESULT refused = TellParent(second ? NM_DBLCLK : NM_CLICK, 0, nullptr, item, point);
  const bool expands = second && (where & (TVHT_ONITEMICON | TVHT_ONITEMLABEL)) != 0;
  if (expands && refused == 0 && self.IsThere()) ChooseExpand(item, TVE_TOGGLE);
  return 0;
}

/// The left and right arrow keys: first collapse and expand, then go up and down.
bool CTreeCtrl::OnArrow(bool right) {
  const HTREEITEM item = GetSelectedItem();
  if (item == nullptr) return ChooseRow(0);
  const bool has_children = ItemHasChildren(item);
  if (has_children && IsExpanded(item) != right) {
    return ChooseExpand(item, right ? TVE_EXPAND : TVE_COLLAPSE);
  }
  return Choose(right ? GetChildItem(item) : GetParentItem(item));
}

/// False for a key that is none of the tree's.
bool CTreeCtrl::OnKey(WPARAM key) {
  const HTREEITEM item = GetSelectedItem();
  const int row = GetItemRow(item);
  const int page = std::max(1, GetPageRows() - 1);
  switch (key) {
    case VK_UP:
      ChooseRow(row - 1);
      return true;
    case VK_DOWN:
      ChooseRow(row + 1);
      return true;
    case VK_PRIOR:
      ChooseRow(row - page);
      return true;
    case VK_NEXT:
      ChooseRow(std::max(0, row) + page);
      return true;
    case VK_HOME:
      ChooseRow(0);
      return true;
    case VK_END:
      ChooseRow(GetRowCount());
      return true;
    case VK_LEFT:
    case VK_RIGHT:
      OnArrow(key == VK_RIGHT);
      return true;
    case VK_BACK:
      Choose(GetParentItem(item));
      return true;
    case VK_ADD:
    case VK_SUBTRACT:
      ChooseExpand(item, key == VK_ADD ? TVE_EXPAND : TVE_COLLAPSE);
      return true;
    default:
      return false;
  }
}

/// Selects the next row whose text begins with a character, case ignored; the search goes on at the
/// top.
void CTreeCtrl::Search(char character) {
  CString sought(character);
  const int count = GetRowCount();
  const int from = GetItemRow(GetSelectedItem());
  for (int step = 1; step <= count; ++step) {
    const int row = (from + step) % count;
    const std::string& text = items_[items_.AtRow(row)].text;
    if (text.empty() || sought.CompareNoCase(text.substr(0, 1).c_str()) != 0) continue;
    ChooseRow(row);
    return;
  }
}

LRESULT CTreeCtrl::HandleMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  return DefWindowProc(message, wparam, lparam);
}

LRESULT CTreeCtrl::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CREATE:
    case WM_SETFONT: {
      const Watched self(*this);
      const LRESULT result = Control::DefWindowProc(message, wparam, lparam);
      if (!self.IsThere()) return result;
      row_height_ = 0;
      bold_ = nullptr;
      Measure(top_, top_ + GetPageRows() + 1);
      Invalidate();
      UpdateScrolling();
      return result;
    }
    case WM_SIZE:
      if (wparam == SIZE_MINIMIZED) return 0;
      Measure(top_, top_ + GetPageRows() + 1);
      Invalidate();
      UpdateScrolling();
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRow(GetItemRow(GetSelectedItem()));
      break;
    case WM_ENABLE:
      Invalidate();
      break;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      return OnPress(PointOfParam(lparam), message == WM_LBUTTONDBLCLK);
    case WM_MOUSEWHEEL:
      if (GetRowCount() <= GetPageRows()) break;
      ScrollTo(top_ + wheel_.Take(wparam, kWheelRows), left_);
      return 0;
    case WM_VSCROLL:
      ScrollTo(detail::ScrolledPosition(GetScrollInfo(SB_VERT), wparam, 1, GetPageRows()), left_);
      return 0;
    case WM_HSCROLL:
      ScrollTo(top_, detail::ScrolledPosition(GetScrollInfo(SB_HORZ), wparam, GetRowHeight(),
                                              static_cast<int>(GetClientRect().Width())));
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_KEYDOWN:
      if (OnKey(wparam)) return 0;
      break;
    case WM_CHAR:
      if (wparam > VK_SPACE && wparam < 0x100) Search(static_cast<char>(wparam));
      return 0;
    default:
      break;
  }
  return Control::DefWindowProc(message, wparam, lparam);
}

// ---- Without a layer

void CTreeCtrl::Describe(platform::DialogControl& control) const {
  Control::Describe(control);
  control.kind = platform::DialogControlKind::kList;
  control.items.reserve(static_cast<std::size_t>(GetRowCount()));
  for (int row = 0; row < GetRowCount(); ++row) {
    control.items.push_back(items_[items_.AtRow(row)].text);
  }
  control.value = items_[selected_].text;
}

bool CTreeCtrl::Enter(std::string_view value) {
  for (int row = 0; row < GetRowCount(); ++row) {
    if (items_[items_.AtRow(row)].text == value) return ChooseRow(row);
  }
  const int row = detail::IndexFromNumber(value, GetRowCount());
  return row >= 0 && ChooseRow(row);
}

bool CTreeCtrl::Press() {
  const HTREEITEM item = GetSelectedItem();
  if (!TakesInput() || item == nullptr) return false;
  const Watched self(*this);
  if (TellParent(NM_DBLCLK, 0, nullptr, item) == 0 && self.IsThere()) {
    ChooseExpand(item, TVE_TOGGLE);
  }
  return true;
}

}  // namespace dq
