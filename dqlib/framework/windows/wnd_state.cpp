// Windows: visibility, enabling, focus, and the state that a placement describes.

#include <algorithm>
#include <utility>
#include <vector>

#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {

using detail::Watched;

namespace {

/// What a show command asks for.
struct Showing {
  bool visible = true;
  /// A `SizeType`, or -1 to keep the state.
  int state = -1;
  bool activate = true;
};

Showing ShowingOf(int command, bool minimized_from_maximized) {
  switch (command) {
    case SW_HIDE:
      return {.visible = false, .activate = false};
    case SW_SHOWNORMAL:
      return {.state = SIZE_RESTORED};
    case SW_RESTORE:
      return {.state = minimized_from_maximized ? int{SIZE_MAXIMIZED} : int{SIZE_RESTORED}};
    case SW_SHOWNOACTIVATE:
      return {.state = SIZE_RESTORED, .activate = false};
    case SW_SHOWMAXIMIZED:
      return {.state = SIZE_MAXIMIZED};
    case SW_SHOWMINIMIZED:
    case SW_MINIMIZE:
    case SW_SHOWMINNOACTIVE:
      return {.state = SIZE_MINIMIZED, .activate = false};
    case SW_SHOWNA:
      return {.activate = false};
    default:
      return {};
  }
}

}  // namespace

bool CWnd::IsWindowVisible() const {
  if (m_hWnd == nullptr) return false;
  const CWnd* window = this;
  while (window != nullptr && window->visible_) window = window->parent_;
  return window == nullptr;
}

bool CWnd::ShowWindow(int command) {
  if (m_hWnd == nullptr) return false;
  const Showing showing =
      ShowingOf(command, IsIconic() && (placement_.flags & WPF_RESTORETOMAXIMIZED) != 0);
  const bool was_visible = visible_;
  const Watched self(*this);
  if (visible_ != showing.visible) {
    visible_ = showing.visible;
    Changed(WindowChange::kShown);
    if (!visible_) LeaveFocus(*this, true);
    if (self.IsThere() && !visible_) LeaveCapture(*this);
    if (!self.IsThere()) return was_visible;
    WindowProc(WM_SHOWWINDOW, visible_ ? 1 : 0, 0);
    if (self.IsThere() && !visible_ && detail::CurrentUi().active == m_hWnd) PassActivity();
  }
  if (self.IsThere() && showing.state >= 0) SetState(static_cast<UINT>(showing.state));
  if (self.IsThere() && showing.activate && parent_ == nullptr) SetActiveWindow();
  return was_visible;
}

void CWnd::SetState(UINT state) {
  if (state == state_) return;
  const Watched self(*this);
  const CRect maximized = state == SIZE_MAXIMIZED ? MaximizedPlace() : CRect{};
  // The handler that was asked may have changed it itself.
  if (!self.IsThere() || state == state_) return;
  if (state_ == SIZE_RESTORED) placement_.rcNormalPosition = place_;
  if (state == SIZE_MINIMIZED && IsZoomed()) {
    placement_.flags |= WPF_RESTORETOMAXIMIZED;
  } else if (state != SIZE_MAXIMIZED) {
    placement_.flags &= ~static_cast<UINT>(WPF_RESTORETOMAXIMIZED);
  }
  state_ = state;
  const CPoint former = place_.TopLeft();
  place_ = state == SIZE_MAXIMIZED ? maximized : placement_.rcNormalPosition;
  Changed(WindowChange::kRectangle);
  if (place_.TopLeft() != former) WindowProc(WM_MOVE, 0, MakeLParam(place_.left, place_.top));
  if (self.IsThere()) SendSize();
}

MINMAXINFO CWnd::UsualLimits() const {
  const CSize screen = GetScreenSize();
  const CSize whole = parent_ != nullptr ? parent_->GetClientRect().Size() : screen;
  MINMAXINFO limits;
  limits.ptMaxSize = {whole.cx, whole.cy};
  limits.ptMaxTrackSize = {screen.cx, screen.cy};
  return limits;
}

/// Asks for it.
CRect CWnd::MaximizedPlace() {
  MINMAXINFO limits = UsualLimits();
  WindowProc(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
  const CPoint& corner = limits.ptMaxPosition;
  return {corner.x, corner.y, detail::WrappingSum(corner.x, std::max<LONG>(0, limits.ptMaxSize.x)),
          detail::WrappingSum(corner.y, std::max<LONG>(0, limits.ptMaxSize.y))};
}

bool CWnd::GetWindowPlacement(WINDOWPLACEMENT* placement) const {
  if (m_hWnd == nullptr || placement == nullptr) return false;
  *placement = placement_;
  placement->length = sizeof(WINDOWPLACEMENT);
  if (state_ == SIZE_RESTORED) placement->rcNormalPosition = place_;
  placement->showCmd = state_ == SIZE_RESTORED    ? SW_SHOWNORMAL
                       : state_ == SIZE_MINIMIZED ? SW_SHOWMINIMIZED
                                                  : SW_SHOWMAXIMIZED;
  return true;
}

bool CWnd::SetWindowPlacement(const WINDOWPLACEMENT* placement) {
  if (m_hWnd == nullptr || placement == nullptr) return false;
  if (placement->length != sizeof(WINDOWPLACEMENT)) return false;
  const Watched self(*this);
  const WINDOWPLACEMENT wanted = *placement;
  placement_ = wanted;
  if (state_ == SIZE_RESTORED) MoveWindow(wanted.rcNormalPosition);
  if (self.IsThere()) ShowWindow(static_cast<int>(wanted.showCmd));
  if (!self.IsThere()) return true;
  const UINT was_maximized = IsIconic() ? placement_.flags & WPF_RESTORETOMAXIMIZED : 0;
  placement_.flags = wanted.flags | was_maximized;
  return true;
}

bool CWnd::EnableWindow(bool enable) {
  if (m_hWnd == nullptr) return false;
  const bool was_disabled = !enabled_;
  if (enabled_ == enable) return was_disabled;
  const Watched self(*this);
  enabled_ = enable;
  Changed(WindowChange::kEnabled);
  if (!enable) LeaveFocus(*this, false);
  if (!enable && self.IsThere()) LeaveCapture(*this);
  if (!self.IsThere()) return was_disabled;
  WindowProc(WM_ENABLE, enable ? 1 : 0, 0);
  return was_disabled;
}

/// Takes the focus from the window and what is below it. With `pass_on` the nearest window above
/// that can have it gets it.
void CWnd::LeaveFocus(const CWnd& window, bool pass_on) {
  CWnd* const focus = GetFocus();
  if (focus == nullptr || !window.HasWithin(focus)) return;
  CWnd* heir = pass_on ? window.parent_ : nullptr;
  while (heir != nullptr && !heir->CanHaveFocus()) heir = heir->parent_;
  if (heir != nullptr) {
    heir->SetFocus();
    return;
  }
  detail::CurrentUi().focus = nullptr;
  focus->GetTopLevelParent()->last_focus_ = focus->m_hWnd;
  focus->Changed(WindowChange::kFocus);
  focus->WindowProc(WM_KILLFOCUS, 0, 0);
}

void CWnd::LeaveCapture(const CWnd& window) {
  const CWnd* const capture = GetCapture();
  if (capture != nullptr && (capture == &window || window.IsChild(capture))) ReleaseCapture();
}

/// A window that is hidden isn't the active one any more: the window of its owner is, if a person
/// can use that, or none.
void CWnd::PassActivity() {
  CWnd* const heir = owner_ == nullptr ? nullptr : owner_->GetTopLevelParent();
  if (heir != nullptr && heir->enabled_ && heir->IsWindowVisible()) {
    heir->SetActiveWindow();
  } else {
    LeaveActiveWindow();
  }
}

/// Whether it is visible doesn't count: dialogs and pages set the focus before they are shown.
bool CWnd::CanHaveFocus() const {
  const CWnd* window = this;
  while (window != nullptr && window->enabled_ && !window->destroying_) window = window->parent_;
  return window == nullptr;
}

CWnd* CWnd::SetFocus() {
  CWnd* const former = GetFocus();
  if (m_hWnd == nullptr || former == this) return former;
  if (!CanHaveFocus()) return former;
  const HWND self = m_hWnd;
  const HWND other = detail::CurrentUi().focus;
  detail::CurrentUi().focus = self;
  if (former != nullptr) {
    CWnd* const top = former->GetTopLevelParent();
    if (top != GetTopLevelParent()) top->last_focus_ = other;
    former->Changed(WindowChange::kFocus);
    former->WindowProc(WM_KILLFOCUS, reinterpret_cast<WPARAM>(self), 0);
  }
  // The former one's handler may have moved the focus on, or ended windows.
  if (detail::CurrentUi().focus == self && MessageQueue::FindOwnWindow(self) == this) {
    Changed(WindowChange::kFocus);
    const Watched there(*this);
    WindowProc(WM_SETFOCUS, reinterpret_cast<WPARAM>(other), 0);
    if (there.IsThere()) TellTurnTo(true);
  }
  return MessageQueue::FindOwnWindow(other);
}

void CWnd::TellTurnTo(bool while_focused) {
  const HWND self = m_hWnd;
  std::vector<HWND> around;
  for (const CWnd* window = this; window != nullptr; window = window->parent_) {
    around.push_back(window->m_hWnd);
  }
  for (auto each = around.rbegin(); each != around.rend(); ++each) {
    if (while_focused && detail::CurrentUi().focus != self) return;
    CWnd* const window = MessageQueue::FindOwnWindow(*each);
    if (MessageQueue::FindOwnWindow(self) != this) return;
    if (window != nullptr) window->OnTurnTo(*this);
  }
}

void CWnd::FocusWhenActive() {
  CWnd* const top = GetTopLevelParent();
  if (m_hWnd == nullptr || HasWithin(GetFocus())) return;
  if (top == GetActiveWindow()) {
    SetFocus();
  } else if (!HasWithin(MessageQueue::FindOwnWindow(top->last_focus_))) {
    top->last_focus_ = m_hWnd;
  }
}

CWnd* CWnd::GetFocus() { return MessageQueue::FindOwnWindow(detail::CurrentUi().focus); }

CWnd* CWnd::SetCapture() { return m_hWnd == nullptr ? GetCapture() : HandCapture(m_hWnd); }

CWnd* CWnd::GetCapture() { return MessageQueue::FindOwnWindow(detail::CurrentUi().capture); }

void CWnd::ReleaseCapture() { HandCapture(nullptr); }

/// Returns who had it.
CWnd* CWnd::HandCapture(HWND now) {
  const HWND former = std::exchange(detail::CurrentUi().capture, now);
  if (former == now) return MessageQueue::FindOwnWindow(former);
  if (CWnd* const window = MessageQueue::FindOwnWindow(former)) {
    window->Changed(WindowChange::kCapture);
    window->WindowProc(WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(now));
  }
  // The handler may have taken it back.
  if (detail::CurrentUi().capture == now) {
    if (CWnd* const window = MessageQueue::FindOwnWindow(now)) {
      window->Changed(WindowChange::kCapture);
    }
  }
  return MessageQueue::FindOwnWindow(former);
}

CWnd* CWnd::SetActiveWindow(bool by_click) {
  const CWnd* const top = GetTopLevelParent();
  // A modal dialog has disabled it: that one is active.
  if (m_hWnd == nullptr || !top->enabled_) return GetActiveWindow();
  const HWND former = detail::CurrentUi().active;
  Activate(top->m_hWnd, by_click ? WA_CLICKACTIVE : WA_ACTIVE);
  return MessageQueue::FindOwnWindow(former);
}

void CWnd::LeaveActiveWindow() { Activate(nullptr, WA_INACTIVE); }

void CWnd::Activate(HWND now, UINT state) {
  const HWND former = detail::CurrentUi().active;
  if (former == now) return;
  detail::CurrentUi().active = now;
  if (CWnd* const window = MessageQueue::FindOwnWindow(former)) {
    CWnd* const focus = GetFocus();
    const Watched watched(*window);
    if (focus != nullptr && window->IsChild(focus)) window->last_focus_ = focus->m_hWnd;
    window->Changed(WindowChange::kActive);
    window->WindowProc(WM_ACTIVATE, WA_INACTIVE, reinterpret_cast<LPARAM>(now));
    // Without another active window there is none for the keyboard either.
    if (now == nullptr && watched.IsThere()) LeaveFocus(*window, false);
  }
  if (detail::CurrentUi().active != now) return;
  if (CWnd* const window = MessageQueue::FindOwnWindow(now)) {
    window->Changed(WindowChange::kActive);
    window->WindowProc(WM_ACTIVATE, state, reinterpret_cast<LPARAM>(former));
  }
}

/// As a window does that has become active, unless the focus is in it already.
void CWnd::TakeFocusBack() {
  if (HasWithin(GetFocus())) return;
  CWnd* const last = MessageQueue::FindOwnWindow(std::exchange(last_focus_, nullptr));
  bool is_usable = last != nullptr && IsChild(last);
  for (const CWnd* at = last; is_usable && at != this; at = at->parent_) is_usable = at->visible_;
  if (is_usable) {
    const Watched self(*this);
    last->SetFocus();
    // It may have passed it on.
    if (!self.IsThere() || HasWithin(GetFocus())) return;
  }
  SetFocus();
}

bool CWnd::IsHit(const CPoint& screen) {
  return WindowProc(WM_NCHITTEST, 0, MakeLParam(screen.x, screen.y)) != HTTRANSPARENT;
}

CWnd* CWnd::GetActiveWindow() { return MessageQueue::FindOwnWindow(detail::CurrentUi().active); }

}  // namespace dq
