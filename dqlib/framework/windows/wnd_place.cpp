// Windows: their text, their place on the screen, and what is drawn of them.

#include <algorithm>
#include <limits>
#include <utility>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/windows/menu.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {

using detail::Watched;
using detail::WrappingDifference;
using detail::WrappingSum;

namespace {

LONG Clamp(long long value) {
  return static_cast<LONG>(std::clamp<long long>(value, std::numeric_limits<LONG>::min(),
                                                 std::numeric_limits<LONG>::max()));
}

}  // namespace

void CWnd::SetWindowText(const char* text) {
  OnSetText(text == nullptr ? "" : text);
  if (m_hWnd == nullptr) return;
  Changed(WindowChange::kText);
  OnTextWasSet();
}

void CWnd::MoveWindow(const CRect& place, bool repaint) {
  MoveWindow(place.left, place.top, place.Width(), place.Height(), repaint);
}

void CWnd::MoveWindow(int x, int y, int width, int height, bool repaint) {
  if (m_hWnd == nullptr) return;
  const CRect place{x, y, Clamp(static_cast<long long>(x) + std::max(0, width)),
                    Clamp(static_cast<long long>(y) + std::max(0, height))};
  const bool moved = place.TopLeft() != place_.TopLeft();
  const bool sized = place.Size() != place_.Size();
  const Watched self(*this);
  if (moved || sized) {
    place_ = place;
    Changed(WindowChange::kRectangle);
  }
  if (moved) WindowProc(WM_MOVE, 0, MakeLParam(place.left, place.top));
  if (!self.IsThere()) return;
  if (sized) SendSize();
  if (self.IsThere() && repaint) Invalidate();
}

void CWnd::SendSize() {
  const CRect client = GetClientRect();
  const bool iconic = IsIconic();
  WindowProc(WM_SIZE, state_, iconic ? 0 : MakeLParam(client.right, client.bottom));
}

CRect CWnd::GetWindowRect() const {
  CRect rect = place_;
  for (const CWnd* above = parent_; above != nullptr; above = above->parent_) {
    rect.OffsetRect(above->place_.left, above->place_.top);
    rect.OffsetRect(above->frame_widths_.left, above->frame_widths_.top);
  }
  return rect;
}

CRect CWnd::GetClientRect() const {
  const auto inner = [](LONG extent, LONG first, LONG second) {
    return Clamp(std::max(0LL, 0LL + extent - first - second));
  };
  return {0, 0, inner(place_.Width(), frame_widths_.left, frame_widths_.right),
          inner(place_.Height(), frame_widths_.top, frame_widths_.bottom)};
}

void CWnd::TakeFrameWidths() {
  frame_widths_ = {};
  if (detail::CurrentUi().observer == nullptr) return;
  detail::Guarded([this] { frame_widths_ = detail::CurrentUi().observer->GetFrameWidths(*this); });
}

void CWnd::UpdateFrameWidths() {
  if (m_hWnd == nullptr) return;
  const CSize client = GetClientRect().Size();
  const CRect former = frame_widths_;
  TakeFrameWidths();
  if (frame_widths_ == former) return;
  const Watched self(*this);
  Changed(WindowChange::kRectangle);
  if (self.IsThere() && GetClientRect().Size() != client) SendSize();
}

CRect CWnd::CenteredPlace(const CWnd* in) const {
  CRect around;
  CRect within;
  if (parent_ != nullptr) {
    within = parent_->GetClientRect();
    around = in == nullptr ? within : parent_->ScreenToClient(in->GetWindowRect());
  } else {
    const CSize screen = GetScreenSize();
    within = {0, 0, screen.cx, screen.cy};
    if (in == nullptr) in = owner_;
    // Who can't be seen gives no place.
    const bool is_seen = in != nullptr && in->IsWindowVisible() && !in->IsIconic();
    around = is_seen ? in->GetWindowRect() : within;
  }
  const auto place = [](LONG first, LONG second, LONG lowest, LONG highest, LONG extent) {
    const LONG middle = static_cast<LONG>((0LL + first + second - extent) / 2);
    return std::max(lowest, std::min(middle, WrappingDifference(highest, extent)));
  };
  const CSize size = place_.Size();
  const LONG left = place(around.left, around.right, within.left, within.right, size.cx);
  const LONG top = place(around.top, around.bottom, within.top, within.bottom, size.cy);
  return {left, top, WrappingSum(left, size.cx), WrappingSum(top, size.cy)};
}

void CWnd::CenterWindow(const CWnd* in) { MoveWindow(CenteredPlace(in)); }

CPoint CWnd::ClientToScreen(const CPoint& point) const {
  CPoint on_screen = GetWindowRect().TopLeft();
  on_screen.Offset(frame_widths_.left, frame_widths_.top);
  on_screen.Offset(point.x, point.y);
  return on_screen;
}

CPoint CWnd::ScreenToClient(const CPoint& point) const {
  const CRect at{point.x, point.y, point.x, point.y};
  return ScreenToClient(at).TopLeft();
}

CRect CWnd::ScreenToClient(const CRect& rect) const {
  const CPoint origin = ClientToScreen({});
  return {WrappingDifference(rect.left, origin.x), WrappingDifference(rect.top, origin.y),
          WrappingDifference(rect.right, origin.x), WrappingDifference(rect.bottom, origin.y)};
}

void CWnd::Changed(WindowChange change, const ChangedRange& range) {
  if (detail::CurrentUi().observer != nullptr) detail::TellChange(*this, change, range);
}

void CWnd::Invalidate(bool erase) { InvalidateRect(GetClientRect(), erase); }

void CWnd::InvalidateRect(const CRect& rect, bool erase) {
  if (m_hWnd == nullptr) return;
  const CRect part = Intersect(rect, GetClientRect());
  update_ = Unite(update_, part);
  erase_ = erase_ || erase;
  Changed(WindowChange::kInvalidated);
}

CRect CWnd::GetUpdateRect(bool* erase) const {
  if (erase != nullptr) *erase = erase_;
  return update_;
}

void CWnd::ValidateRect() {
  update_ = {};
  erase_ = false;
}

void CWnd::Paint(CDC& dc) {
  if (m_hWnd == nullptr) return;
  const Watched self(*this);
  const int saved = dc.SaveDC();
  // Before it draws, so that what it asks to be drawn anew meanwhile isn't lost.
  ValidateRect();
  WindowProc(WM_ERASEBKGND, reinterpret_cast<WPARAM>(&dc), 0);
  if (self.IsThere()) OnPaint(dc);
  dc.RestoreDC(saved);
}

CMenu* CWnd::GetMenu() const { return CMenu::FromHandle(menu_); }

void CWnd::SetMenu(CMenu* menu) {
  if (m_hWnd == nullptr) return;
  menu_ = menu == nullptr ? nullptr : menu->GetSafeHmenu();
  Changed(WindowChange::kMenu);
  UpdateFrameWidths();
}

void CWnd::SetFont(CFont* font, bool redraw) {
  SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font), redraw ? 1 : 0);
}

void CWnd::SetToolTip(const CString& text) {
  if (m_hWnd == nullptr || tool_tip_ == text) return;
  tool_tip_ = text;
  Changed(WindowChange::kToolTip);
}

void CWnd::SetScrollInfo(ScrollBar bar, const SCROLLINFO& info) {
  SCROLLINFO set = info;
  const LONG last = static_cast<LONG>(std::clamp<long long>(
      0LL + info.nMax - std::max(0LL, info.nPage - 1LL), info.nMin, info.nMax));
  set.nPos = info.nMin > info.nMax ? info.nMin : std::clamp(info.nPos, info.nMin, last);
  if (m_hWnd == nullptr || set == scroll_[bar]) return;
  scroll_[bar] = set;
  Changed(WindowChange::kScroll, {bar, 1});
  UpdateFrameWidths();
}

int CWnd::SetScrollPos(ScrollBar bar, int position) {
  SCROLLINFO info = scroll_[bar];
  const int former = std::exchange(info.nPos, position);
  SetScrollInfo(bar, info);
  return former;
}

}  // namespace dq
