#include "dqlib/framework/controls/tab_control.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(SEC3DTabControl, SECTabControlBase)

using detail::Watched;

namespace {

// Pixels.
constexpr int kIconSize = 16;
constexpr int kPadding = 6;
constexpr int kIconGap = 4;
constexpr int kWidestText = 240;
constexpr LONG kButtonHeight = 16;
/// How far tabs that aren't selected stay behind.
constexpr int kRelief = 2;

constexpr UINT kScrollTimer = 1;
constexpr UINT kScrollMilliseconds = 150;

}  // namespace

SEC3DTabControl::SEC3DTabControl() { layout().SetMargin(kUsualMargin); }

SEC3DTabControl::~SEC3DTabControl() { EndInDestructor(); }

bool SEC3DTabControl::Create(CWnd* parent, int id) {
  return parent != nullptr && CreateWnd({.class_name = "TabControl", .parent = parent, .id = id});
}

int SEC3DTabControl::GetIdealHeight() const {
  return std::max<int>(kIconSize, GetTextExtent(*this, "X").cy) + 2 * (kRelief + 2);
}

int SEC3DTabControl::MeasureTab(const Tab& tab) const {
  const int text = std::min<int>(kWidestText, GetTextExtent(*this, tab.label.View()).cx);
  return 2 * kPadding + text + (tab.icon == nullptr ? 0 : kIconSize + kIconGap);
}

void SEC3DTabControl::SetMargin(int margin) {
  layout().SetMargin(std::max(0, margin));
  layout().FillRoom();
  Tell(WindowChange::kContent);
}

void SEC3DTabControl::SetAtBottom(bool at_bottom) {
  if (std::exchange(at_bottom_, at_bottom) != at_bottom) Tell(WindowChange::kContent);
}

// ---- Where tabs are

CRect SEC3DTabControl::GetButtonRect(Part button) const {
  if (button == kNothing) return {};
  CRect rect = layout().GetButton(button == kScrollOn);
  const LONG top = std::max<LONG>(0, (rect.bottom - kButtonHeight) / 2);
  return Intersect({rect.left, top, rect.right, top + kButtonHeight}, rect);
}

void SEC3DTabControl::FillRoom() {
  if (layout().FillRoom()) Tell(WindowChange::kContent);
}

bool SEC3DTabControl::ScrollBy(int tabs) {
  const bool scrolls = layout().ScrollBy(tabs);
  if (scrolls) Tell(WindowChange::kContent);
  return scrolls;
}

void SEC3DTabControl::ScrollToTab(int index) {
  if (HasTab(index) && layout().ScrollTo(index)) Tell(WindowChange::kContent);
}

int SEC3DTabControl::HitTest(const CPoint& point) const {
  for (const Part button : {kScrollBack, kScrollOn}) {
    if (GetButtonRect(button).PtInRect(point)) return button;
  }
  return layout().HitTest(point);
}

void SEC3DTabControl::OnTabsShift(int index, int by) {
  SECTabControlBase::OnTabsShift(index, by);
  if (pressed_ >= 0) pressed_ = detail::ShiftedIndex(pressed_, index, by);
}

// ---- What a person does with it

void SEC3DTabControl::OnLButtonDown(UINT, CPoint point) {
  const int hit = HitTest(point);
  if (hit == kNothing) return;
  const Watched self(*this);
  SetCapture();
  if (!self.IsThere() || GetCapture() != this) return;
  pressed_ = hit;
  if (hit >= 0) return Choose(hit);
  ScrollBy(hit == kScrollOn ? 1 : -1);
  Invalidate();
  SetTimer(kScrollTimer, kScrollMilliseconds);
}

void SEC3DTabControl::OnLButtonUp(UINT, CPoint) {
  const Watched self(*this);
  if (GetCapture() == this) ReleaseCapture();
  if (self.IsThere()) OnPressEnds();
}

void SEC3DTabControl::OnPressEnds() {
  if (std::exchange(pressed_, kNothing) >= kNothing) return;
  KillTimer(kScrollTimer);
  Invalidate();
}

bool SEC3DTabControl::OnKey(WPARAM key) {
  const int count = GetTabCount();
  const int active = GetActiveTab();
  int wanted = -1;
  if (key == VK_LEFT) wanted = active - 1;
  if (key == VK_RIGHT) wanted = active + 1;
  if (key == VK_HOME) wanted = 0;
  if (key == VK_END) wanted = count - 1;
  if (!HasTab(wanted) || wanted == active) return false;
  const Watched self(*this);
  ScrollToTab(wanted);
  Choose(wanted);
  // It went to the tab's window.
  if (self.IsThere()) SetFocus();
  return true;
}

LRESULT SEC3DTabControl::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  const UINT keys = LoWord(wparam);
  const CPoint point = PointOfParam(lparam);
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      OnLButtonDown(keys, point);
      return 0;
    case WM_MOUSEMOVE:
      OnMouseMove(keys, point);
      return 0;
    case WM_LBUTTONUP:
      OnLButtonUp(keys, point);
      return 0;
    case WM_CAPTURECHANGED:
      OnPressEnds();
      return 0;
    case WM_MOUSEWHEEL:
      if (!layout().Overflows()) break;
      ScrollBy(wheel_.Take(wparam, 1));
      return 0;
    case WM_TIMER:
      if (wparam != kScrollTimer) break;
      if (pressed_ < kNothing) ScrollBy(pressed_ == kScrollOn ? 1 : -1);
      return 0;
    case WM_KEYDOWN:
      if (OnKey(wparam)) return 0;
      break;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      Invalidate();
      return 0;
    case WM_SIZE:
      FillRoom();
      Invalidate();
      return 0;
    case WM_SETFONT: {
      const LRESULT answer = SECTabControlBase::DefWindowProc(message, wparam, lparam);
      MeasureTabs();
      FillRoom();
      return answer;
    }
    default:
      break;
  }
  return SECTabControlBase::DefWindowProc(message, wparam, lparam);
}

// ---- Drawing

void SEC3DTabControl::OnPaint(CDC& dc) {
  const CRect client = GetClientRect();
  dc.FillSolidRect(client, GetSysColor(COLOR_BTNFACE));
  dc.SelectObject(GetFont());
  // The edge of the windows; the selected tab is open towards its own.
  CRect edge = client;
  (at_bottom_ ? edge.bottom : edge.top) = at_bottom_ ? 1 : client.bottom - 1;
  dc.FillSolidRect(edge, GetSysColor(COLOR_BTNSHADOW));
  const CRect room = layout().GetRoom();
  for (int at = layout().GetFirst(); at < GetTabCount(); ++at) {
    const CRect rect = layout().GetPlace(at);
    if (rect.left >= room.right) break;
    dc.SaveDC();
    dc.IntersectClipRect(room);
    PaintTab(dc, at, rect);
    dc.RestoreDC(-1);
  }
  if (!layout().Overflows()) return;
  PaintButton(dc, kScrollBack);
  PaintButton(dc, kScrollOn);
}

/// A face with a line at its far end and to its right; that of the first one has a left side too.
void SEC3DTabControl::PaintTab(CDC& dc, int index, const CRect& rect) const {
  const Tab& tab = TabAt(index);
  CRect shape = rect;
  LONG& far_end = at_bottom_ ? shape.bottom : shape.top;
  LONG& near_end = at_bottom_ ? shape.top : shape.bottom;
  const LONG inwards = at_bottom_ ? -1 : 1;
  if (!tab.selected) {
    far_end += inwards * kRelief;
    near_end -= inwards;
  }
  dc.FillSolidRect(shape, GetSysColor(COLOR_BTNFACE));
  const auto draw_side = [&](LONG from, LONG width, bool across) {
    const LONG low = std::min(from, from + width);
    const LONG high = std::max(from, from + width);
    dc.FillSolidRect(across ? CRect{shape.left, low, shape.right, high}
                            : CRect{low, shape.top, high, shape.bottom},
                     GetSysColor(tab.selected && across ? COLOR_HIGHLIGHT : COLOR_BTNSHADOW));
  };
  draw_side(shape.right, -1, false);
  if (index == layout().GetFirst()) draw_side(shape.left, 1, false);
  draw_side(far_end, tab.selected ? inwards * kRelief : inwards, true);
  CRect inside{shape.left + kPadding, rect.top + kRelief,
               std::min(shape.right, layout().GetRoom().right) - kPadding, rect.bottom - kRelief};
  if (tab.icon != nullptr) {
    const LONG top = inside.top + (inside.Height() - kIconSize) / 2;
    dc.DrawBitmap(CRect{inside.left, top, inside.left + kIconSize, top + kIconSize},
                  &tab.icon->picture);
    inside.left += kIconSize + kIconGap;
  }
  dc.SetBkMode(TRANSPARENT);
  dc.SetTextColor(GetSysColor(COLOR_BTNTEXT));
  dc.DrawText(tab.label.View(), inside, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
  if (index == GetActiveTab() && GetFocus() == this) {
    dc.DrawFocusRect({shape.left + 3, rect.top + 4, shape.right - 3, rect.bottom - 4});
  }
}

void SEC3DTabControl::PaintButton(CDC& dc, Part button) const {
  dc.DrawEdge(GetButtonRect(button), pressed_ == button ? EDGE_SUNKEN : EDGE_RAISED,
              BF_RECT | BF_MIDDLE);
  layout().DrawArrow(dc, button == kScrollOn);
}

}  // namespace dq
