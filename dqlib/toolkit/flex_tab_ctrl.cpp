#include "dqlib/toolkit/flex_tab_ctrl.h"

#include "dqlib/framework/windows/drag_drop.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/toolkit/flex_tab.h"
#include "dqlib/toolkit/flex_tab_data.h"
#include "dqlib/toolkit/flex_tab_drop_target.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDQFlexTabCtrl, SEC3DTabControl)

namespace {

/// The position of a tab's mark, or -1.
int FindMark(const CUIntArray& marks, int tab) {
  for (int at = 0; at < marks.GetSize(); ++at) {
    if (marks[at] == static_cast<UINT>(tab)) return at;
  }
  return -1;
}

void SetMark(CUIntArray& marks, int tab, bool marked) {
  const int at = FindMark(marks, tab);
  if (marked && at < 0) marks.Add(static_cast<UINT>(tab));
  if (!marked && at >= 0) marks.RemoveAt(at);
}

void ShiftMarks(CUIntArray& marks, int index, int by) {
  for (int at = marks.GetSize() - 1; at >= 0; --at) {
    const int shifted = detail::ShiftedIndex(static_cast<int>(marks[at]), index, by);
    if (shifted < 0) {
      marks.RemoveAt(at);
    } else {
      marks[at] = static_cast<UINT>(shifted);
    }
  }
}

}  // namespace

CDQFlexTabCtrl::~CDQFlexTabCtrl() { EndInDestructor(); }

bool CDQFlexTabCtrl::IsTabDragable(int index) const {
  return HasTab(index) && FindMark(m_arrNotDragable, index) < 0;
}

void CDQFlexTabCtrl::SetTabDragable(int index, bool dragable) {
  if (HasTab(index)) SetMark(m_arrNotDragable, index, !dragable);
}

bool CDQFlexTabCtrl::IsTabClosable(int index) const {
  return HasTab(index) && !m_arrNotClosable.IsEmpty() && FindMark(m_arrNotClosable, index) < 0;
}

void CDQFlexTabCtrl::SetTabClosable(int index, bool closable) {
  if (HasTab(index)) SetMark(m_arrNotClosable, index, !closable);
}

void CDQFlexTabCtrl::OnTabsShift(int index, int by) {
  SEC3DTabControl::OnTabsShift(index, by);
  ShiftMarks(m_arrNotDragable, index, by);
  ShiftMarks(m_arrNotClosable, index, by);
  m_nDragged = detail::ShiftedIndex(m_nDragged, index, by);
}

// ---- Dragging

void CDQFlexTabCtrl::OnLButtonDown(UINT keys, CPoint point) {
  const detail::Watched self(*this);
  SEC3DTabControl::OnLButtonDown(keys, point);
  if (self.IsThere()) m_bDragArmed = GetPressedTab() >= 0;
}

void CDQFlexTabCtrl::OnPressEnds() {
  m_bDragArmed = false;
  SEC3DTabControl::OnPressEnds();
}

void CDQFlexTabCtrl::OnMouseMove(UINT keys, CPoint point) {
  const int tab = GetPressedTab();
  if ((keys & MK_LBUTTON) == 0 || !m_bDragArmed || !IsTabDragable(tab)) return;
  if (GetTabRect(tab).PtInRect(point)) {
    SetTabSelected(tab, tab == GetActiveTab());
  } else {
    DragTab(tab);
  }
}

void CDQFlexTabCtrl::DragTab(int index) {
  const CWnd* const parent = GetParent();
  if (parent == nullptr || !parent->IsKindOf(RUNTIME_CLASS(CDQFlexTab))) return;
  const detail::Watched self(*this);
  SetTabSelected(index, false);
  m_bDragArmed = false;
  m_nDragged = index;
  ReleaseCapture();
  if (!self.IsThere() || m_nDragged < 0) return;
  const CDQFlexTabData data(static_cast<const CDQFlexTab*>(parent), m_nDragged);
  COleDataSource source;
  source.CacheGlobalData(CDQFlexTabDropTarget::GetClipboardFormat(), data.GetBytes());
  source.DoDragDrop(*this, DROPEFFECT_MOVE);
  if (!self.IsThere()) return;
  // What it was dropped on may have left it here, and without a drop it may have gone or another
  // one may have become the active one.
  if (m_nDragged == GetActiveTab()) SetTabSelected(m_nDragged, true);
  m_nDragged = -1;
}

}  // namespace dq
