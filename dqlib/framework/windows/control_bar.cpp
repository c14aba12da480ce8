#include "dqlib/framework/windows/control_bar.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/mini_dock_frame.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(CControlBar, CWnd)

using detail::Watched;
using detail::WrappingDifference;
using detail::WrappingSum;

namespace {

// Pixels across.
constexpr LONG kGripperSize = 8;
constexpr LONG kSizingSize = 5;

CMiniDockFrameWnd* FloatingFrame(const CControlBar& bar) {
  CWnd* const parent = bar.GetParent();
  return DYNAMIC_DOWNCAST(CMiniDockFrameWnd, parent);
}

}  // namespace

CControlBar::~CControlBar() { EndInDestructor(); }

BOOL CControlBar::DestroyWindow() {
  if (MessageQueue::FindOwnWindow(GetSafeHwnd()) != this) return CWnd::DestroyWindow();
  if (CFrameWnd* const frame = GetDockingFrame()) frame->DelayRecalcLayout();
  const CWnd* const floating = FloatingFrame(*this);
  const HWND around = floating == nullptr ? nullptr : floating->GetSafeHwnd();
  const BOOL ended = CWnd::DestroyWindow();
  // The bar may have deleted itself.
  if (CWnd* const left = MessageQueue::FindOwnWindow(around)) left->DestroyWindow();
  return ended;
}

CFrameWnd* CControlBar::GetDockingFrame() const {
  if (const CMiniDockFrameWnd* const floating = FloatingFrame(*this)) {
    return floating->GetDockingFrame();
  }
  CWnd* const parent = GetParent();
  return DYNAMIC_DOWNCAST(CFrameWnd, parent);
}

void CControlBar::SetDockSide(DockSide side) {
  if (side != DockSide::kNone) m_eLastSide = side;
  if (side == m_eSide || IsFloating()) return;
  m_eSide = side;
  if (CFrameWnd* const frame = GetDockingFrame()) frame->RecalcLayout();
}

void CControlBar::EnableDocking(UINT sides) {
  m_bDockable = true;
  m_nSides = sides & CBRS_ALIGN_ANY;
  if (CFrameWnd* const frame = GetDockingFrame()) frame->RecalcLayout();
}

bool CControlBar::IsFloating() const { return FloatingFrame(*this) != nullptr; }

bool CControlBar::ToggleFloating() {
  CFrameWnd* const frame = GetDockingFrame();
  if (frame == nullptr) return false;
  if (IsFloating()) return frame->DockControlBar(this);
  CRect place = m_rectFloat;
  if (place.IsRectEmpty()) {
    const CPoint at = GetWindowRect().TopLeft();
    place = {at.x, at.y, at.x, at.y};
  }
  return frame->FloatControlBar(this, place);
}

void CControlBar::SetBarSize(const CSize& size) {
  const CSize allowed{std::max(size.cx, m_sizeMin.cx), std::max(size.cy, m_sizeMin.cy)};
  if (allowed == m_sizeBar) return;
  m_sizeBar = allowed;
  if (CFrameWnd* const frame = GetDockingFrame()) frame->RecalcLayout();
}

void CControlBar::SetMinBarSize(const CSize& size) {
  m_sizeMin = {std::max<LONG>(0, size.cx), std::max<LONG>(0, size.cy)};
  SetBarSize(m_sizeBar);
}

void CControlBar::EnableSizing(bool enable) {
  m_bSizing = enable;
  if (GetSafeHwnd() != nullptr) Changed(WindowChange::kContent);
  if (CFrameWnd* const frame = GetDockingFrame()) frame->RecalcLayout();
}

CSize CControlBar::CalcFixedLayout(const CSize&, bool) { return m_sizeBar; }

CSize CControlBar::CalcFloatingLayout() {
  return {std::max(m_sizeBar.cx, kLeastFloating), std::max(m_sizeBar.cy, kLeastFloating)};
}

void CControlBar::LayOut(CRect& room) {
  const Watched self(*this);
  if (m_eSide != DockSide::kNone) MoveWindow(TakePlace(room));
  // What is around its inside may have come or gone though the bar itself lies where it did.
  if (self.IsThere()) LayOutInside();
}

CRect CControlBar::TakePlace(CRect& room) {
  const CSize wanted = CalcFixedLayout(room.Size(), IsHorizontal());
  const LONG height = std::clamp<LONG>(wanted.cy, 0, std::max<LONG>(0, room.Height()));
  const LONG width = std::clamp<LONG>(wanted.cx, 0, std::max<LONG>(0, room.Width()));
  CRect place = room;
  switch (m_eSide) {
    case DockSide::kNone:
      return {};
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
  return place;
}

// ---- Its parts

CRect CControlBar::GetGripperRect() const {
  if (!m_bDockable || m_eSide == DockSide::kNone) return {};
  CRect strip = GetClientRect();
  (IsHorizontal() ? strip.right : strip.bottom) = kGripperSize;
  return Intersect(strip, GetClientRect());
}

CRect CControlBar::GetSizingRect() const {
  if (!m_bSizing) return {};
  CRect strip = GetClientRect();
  switch (m_eSide) {
    case DockSide::kNone:
      return {};
    case DockSide::kTop:
      strip.top = std::max<LONG>(0, strip.bottom - kSizingSize);
      break;
    case DockSide::kBottom:
      strip.bottom = std::min(strip.bottom, kSizingSize);
      break;
    case DockSide::kLeft:
      strip.left = std::max<LONG>(0, strip.right - kSizingSize);
      break;
    case DockSide::kRight:
      strip.right = std::min(strip.right, kSizingSize);
      break;
  }
  return strip;
}

CRect CControlBar::GetInsideRect() const {
  CRect inside = GetClientRect();
  const CRect edge = GetSizingRect();
  const CRect gripper = GetGripperRect();
  if (m_eSide == DockSide::kTop) inside.bottom -= edge.Height();
  if (m_eSide == DockSide::kBottom) inside.top += edge.Height();
  if (m_eSide == DockSide::kLeft) inside.right -= edge.Width();
  if (m_eSide == DockSide::kRight) inside.left += edge.Width();
  if (IsHorizontal()) inside.left += gripper.Width();
  if (IsVertical()) inside.top += gripper.Height();
  return Intersect(inside, GetClientRect());
}

void CControlBar::OnPaint(CDC& dc) {
  const CRect gripper = GetGripperRect();
  const CRect edge = GetSizingRect();
  if (!gripper.IsRectEmpty()) dc.DrawEdge(gripper, BDR_RAISEDINNER, BF_RECT | BF_MIDDLE);
  if (!edge.IsRectEmpty()) dc.DrawEdge(edge, EDGE_RAISED, BF_RECT | BF_MIDDLE);
}

// ---- What a person does with it

void CControlBar::BeginDrag(Drag drag, const CPoint& screen) {
  if (drag == Drag::kNone || GetDockingFrame() == nullptr) return;
  const Watched self(*this);
  SetCapture();
  if (!self.IsThere() || GetCapture() != this) return;
  m_eDrag = drag;
  m_ptDragFrom = screen;
  m_sizeFormer = m_sizeBar;
}

void CControlBar::DragTo(const CPoint& screen) {
  const LONG dx = WrappingDifference(screen.x, m_ptDragFrom.x);
  const LONG dy = WrappingDifference(screen.y, m_ptDragFrom.y);
  const CFrameWnd* const frame = GetDockingFrame();
  if (m_eDrag == Drag::kNone || frame == nullptr) return;
  if (m_eDrag == Drag::kSize) return DragSize(dx, dy);
  const auto is_click = [](LONG way, int metric) {
    return way > -GetSystemMetrics(metric) && way < GetSystemMetrics(metric);
  };
  if (m_rectDrag.IsRectEmpty() && is_click(dx, SM_CXDRAG) && is_click(dy, SM_CYDRAG)) return;
  const CRect place = frame->TargetOf(*this, m_ptDragFrom, screen).place;
  if (place == m_rectDrag) return;
  m_rectDrag = place;
  Changed(WindowChange::kContent);
}

/// Gives it the size of a sizing edge that was dragged so far, but leaves the view no less than
/// nothing.
void CControlBar::DragSize(LONG dx, LONG dy) {
  const CSize room = GetDockingFrame()->GetViewRect().Size();
  CSize size = m_sizeFormer;
  const auto drag = [](LONG former, LONG by, LONG now, LONG free) {
    return std::min(WrappingSum(former, by), std::max(now, WrappingSum(now, free)));
  };
  if (IsHorizontal()) {
    const LONG by = m_eSide == DockSide::kTop ? dy : WrappingDifference(0, dy);
    size.cy = drag(size.cy, by, GetPlace().Height(), room.cy);
  } else {
    const LONG by = m_eSide == DockSide::kLeft ? dx : WrappingDifference(0, dx);
    size.cx = drag(size.cx, by, GetPlace().Width(), room.cx);
  }
  SetBarSize(size);
}

void CControlBar::EndDrag(bool accept, const CPoint& screen) {
  const Drag drag = std::exchange(m_eDrag, Drag::kNone);
  if (drag == Drag::kNone) return;
  const bool moved = !std::exchange(m_rectDrag, {}).IsRectEmpty();
  const Watched self(*this);
  if (moved) Changed(WindowChange::kContent);
  if (GetCapture() == this) ReleaseCapture();
  CFrameWnd* const frame = self.IsThere() ? GetDockingFrame() : nullptr;
  if (frame == nullptr) return;
  if (drag == Drag::kSize && !accept) SetBarSize(m_sizeFormer);
  if (!accept || !moved) return;
  const CFrameWnd::DockTarget target = frame->TargetOf(*this, m_ptDragFrom, screen);
  if (target.place == GetWindowRect()) return;
  if (target.side == DockSide::kNone) {
    frame->Float(this, target.place, true);
  } else {
    frame->DockControlBar(this, target.side, target.before);
  }
}

void CControlBar::OnUpdateCmdUI(CCmdTarget& target, bool disable_if_no_handler) {
  UpdateDialogControls(target, disable_if_no_handler);
}

LRESULT CControlBar::OnMouse(UINT message, const CPoint& point) {
  const Watched self(*this);
  const CPoint screen = ClientToScreen(point);
  const bool on_edge = GetSizingRect().PtInRect(point);
  const bool on_gripper = !on_edge && GetGripperRect().PtInRect(point);
  switch (message) {
    case WM_LBUTTONDOWN:
      if (on_edge || on_gripper) BeginDrag(on_edge ? Drag::kSize : Drag::kMove, screen);
      break;
    case WM_LBUTTONDBLCLK:
      if (on_gripper) ToggleFloating();
      break;
    case WM_LBUTTONUP:
      DragTo(screen);
      if (self.IsThere()) EndDrag(true, screen);
      break;
    default:
      DragTo(screen);
  }
  return 0;
}

LRESULT CControlBar::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CREATE:
      if (CFrameWnd* const frame = GetDockingFrame()) frame->DelayRecalcLayout();
      return 0;
    case WM_IDLEUPDATECMDUI: {
      CFrameWnd* const frame = IsFloating() ? GetDockingFrame() : GetParentFrame();
      if (frame != nullptr && IsWindowVisible()) OnUpdateCmdUI(*frame, wparam != 0);
      return 0;
    }
    case WM_MOVE:
    case WM_SIZE:
      LayOutInside();
      return 0;
    case WM_COMMAND:
    case WM_NOTIFY:
      return GetParent() == nullptr ? 0 : GetParent()->SendMessage(message, wparam, lparam);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_LBUTTONUP:
    case WM_MOUSEMOVE:
      return OnMouse(message, PointOfParam(lparam));
    case WM_CAPTURECHANGED:
      EndDrag(false, {});
      return 0;
    case WM_SETCURSOR: {
      if (!GetSizingRect().PtInRect(ScreenToClient(GetPointerPos()))) break;
      SetPointerShape(IsHorizontal() ? PointerShape::kSizeUpDown : PointerShape::kSizeLeftRight);
      return 1;
    }
    default:
      break;
  }
  return CWnd::DefWindowProc(message, wparam, lparam);
}

}  // namespace dq
