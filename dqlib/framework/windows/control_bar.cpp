#include "dqlib/framework/windows/control_bar.h"

#include <algorithm>

#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(CControlBar, CWnd)

CFrameWnd* CControlBar::GetDockingFrame() const {
  CWnd* const parent = GetParent();
  return DYNAMIC_DOWNCAST(CFrameWnd, parent);
}

void CControlBar::SetDockSide(DockSide side) {
  if (side == m_eSide) return;
  m_eSide = side;
  if (CFrameWnd* const frame = GetDockingFrame()) frame->RecalcLayout();
}

void CControlBar::SetBarSize(const CSize& size) {
  if (size == m_sizeBar) return;
  m_sizeBar = size;
  if (CFrameWnd* const frame = GetDockingFrame()) frame->RecalcLayout();
}

CSize CControlBar::CalcFixedLayout(const CSize&, bool) { return m_sizeBar; }

void CControlBar::LayOut(CRect& room) {
  const CSize wanted = CalcFixedLayout(room.Size(), IsHorizontal());
  const LONG height = std::clamp<LONG>(wanted.cy, 0, std::max<LONG>(0, room.Height()));
  const LONG width = std::clamp<LONG>(wanted.cx, 0, std::max<LONG>(0, room.Width()));
  CRect place = room;
  switch (m_eSide) {
    case DockSide::kNone:
      return;
    case DockSide::kTop:
      place.bottom = room.top += height;
      break;
    case DockSide::kBottom:
      place.top = room.bottom -= height;
      break;
    case DockSide::kLeft:
      place.right = room.left += width;
      break;
    case DockSide::kRight:
      place.left = room.right -= width;
      break;
  }
  MoveWindow(place);
}

void CControlBar::OnUpdateCmdUI(CCmdTarget& target, bool disable_if_no_handler) {
  UpdateDialogControls(target, disable_if_no_handler);
}

LRESULT CControlBar::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_IDLEUPDATECMDUI: {
      CFrameWnd* const frame = GetParentFrame();
      if (frame != nullptr && IsWindowVisible()) OnUpdateCmdUI(*frame, wparam != 0);
      return 0;
    }
    case WM_COMMAND:
      // What its controls ask for is the frame's.
      return GetParent() == nullptr ? 0 : GetParent()->SendMessage(message, wparam, lparam);
    default:
      return CWnd::DefWindowProc(message, wparam, lparam);
  }
}

}  // namespace dq
