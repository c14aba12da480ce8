#include "dqlib/framework/controls/tab_control.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(SECTabControlBase, CWnd)
IMPLEMENT_DYNAMIC(SEC3DTabControl, SECTabControlBase)

using detail::Watched;

namespace {

// Pixels.
constexpr int kIconSize = 16;
constexpr int kPadding = 6;
constexpr int kIconGap = 4;
constexpr int kWidestText = 240;
constexpr int kButtonSize = 16;
/// How far tabs that aren't selected stay behind.
constexpr int kRelief = 2;

constexpr UINT kScrollTimer = 1;
constexpr UINT kScrollMilliseconds = 150;
constexpr int kNotch = 120;

}  // namespace

// ---- The tabs

SECTabControlBase::~SECTabControlBase() { EndInDestructor(); }

SECTabControlBase::Tab* SECTabControlBase::Find(int index) {
  return HasTab(index) ? &tabs_[static_cast<std::size_t>(index)] : nullptr;
}

void SECTabControlBase::Tell(WindowChange change, const ChangedRange& range) {
  if (GetSafeHwnd() == nullptr) return;
  Changed(change, range);
  Invalidate();
}

void SECTabControlBase::Measure(Tab& tab) {
  total_width_ -= tab.width;
  tab.width = std::max(0, MeasureTab(tab));
  total_width_ += tab.width;
}

void SECTabControlBase::MeasureTabs() {
  for (Tab& tab : tabs_) Measure(tab);
  Tell(WindowChange::kRowsChanged, {0, GetTabCount()});
}

bool SECTabControlBase::InsertTab(int index, const char* label, HWND window) {
  if (index < 0 || index > GetTabCount()) return false;
  Tab& tab = *tabs_.emplace(tabs_.begin() + index);
  tab.label = label;
  tab.window = window;
  Measure(tab);
  OnTabsShift(index, 1);
  Tell(WindowChange::kRowsInserted, {index, 1});
  return true;
}

bool SECTabControlBase::RemoveTab(int index) {
  const Tab* const tab = Find(index);
  if (tab == nullptr) return false;
  detail::TellNewRows();
  total_width_ -= tab->width;
  tabs_.erase(tabs_.begin() + index);
  OnTabsShift(index, -1);
  Tell(WindowChange::kRowsRemoved, {index, 1});
  return true;
}

void SECTabControlBase::OnTabsShift(int index, int by) {
  active_ = detail::ShiftedIndex(active_, index, by);
}

CString SECTabControlBase::GetTabLabel(int index) const {
  return HasTab(index) ? TabAt(index).label : CString();
}

bool SECTabControlBase::SetTabLabel(int index, const char* label) {
  Tab* const tab = Find(index);
  if (tab == nullptr) return false;
  tab->label = label;
  Measure(*tab);
  Tell(WindowChange::kRowsChanged, {index, 1});
  return true;
}

UINT SECTabControlBase::GetTabIcon(int index) const {
  return HasTab(index) ? TabAt(index).icon_id : 0;
}

bool SECTabControlBase::SetTabIcon(int index, UINT icon) {
  Tab* const tab = Find(index);
  if (tab == nullptr) return false;
  tab->icon_id = icon;
  tab->icon = icon == 0 ? nullptr : LoadIcon(AfxFindResourceHandle(icon, RESOURCE_ICON), icon);
  Measure(*tab);
  Tell(WindowChange::kRowsChanged, {index, 1});
  return true;
}

HWND SECTabControlBase::GetTabHandle(int index) const {
  return HasTab(index) ? TabAt(index).window : nullptr;
}

CWnd* SECTabControlBase::GetTabWindow(int index) const { return FromHandle(GetTabHandle(index)); }

const void* SECTabControlBase::GetTabExtra(int index) const {
  return HasTab(index) ? TabAt(index).extra : nullptr;
}

bool SECTabControlBase::SetTabExtra(int index, const void* extra) {
  Tab* const tab = Find(index);
  if (tab != nullptr) tab->extra = extra;
  return tab != nullptr;
}

int SECTabControlBase::FindTab(HWND window) const {
  if (window == nullptr) return -1;
  const auto found = std::ranges::find(tabs_, window, &Tab::window);
  return found == tabs_.end() ? -1 : static_cast<int>(found - tabs_.begin());
}

bool SECTabControlBase::GetTabInfo(int index, CString& label, bool& selected, CWnd*& window,
                                   const void*& extra) const {
  if (!HasTab(index)) return false;
  const Tab& tab = TabAt(index);
  label = tab.label;
  selected = tab.selected;
  window = FromHandle(tab.window);
  extra = tab.extra;
  return true;
}

bool SECTabControlBase::ActivateTab(int index) {
  if (index != -1 && !HasTab(index)) return false;
  if (Tab* const former = Find(active_)) former->selected = false;
  active_ = index;
  if (Tab* const tab = Find(index)) tab->selected = true;
  Tell(WindowChange::kSelection);
  return true;
}

bool SECTabControlBase::IsTabSelected(int index) const {
  return HasTab(index) && TabAt(index).selected;
}

void SECTabControlBase::SetTabSelected(int index, bool selected) {
  Tab* const tab = Find(index);
  if (tab == nullptr || tab->selected == selected) return;
  tab->selected = selected;
  Tell(WindowChange::kRowsChanged, {index, 1});
}

void SECTabControlBase::Choose(int index) {
  if (HasTab(index) && ActivateTab(index)) NotifyParent(kTabActivated);
}

// ---- The strip

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
  margin_ = std::max(0, margin);
  ClampFirst();
  Tell(WindowChange::kContent);
}

void SEC3DTabControl::SetAtBottom(bool at_bottom) {
  if (std::exchange(at_bottom_, at_bottom) != at_bottom) Tell(WindowChange::kContent);
}

// ---- Where tabs are

bool SEC3DTabControl::Overflows() const {
  return GetTotalWidth() > std::max<LONG>(0, GetClientRect().right - margin_);
}

CRect SEC3DTabControl::TabsRect() const {
  CRect room = GetClientRect();
  if (Overflows()) room.right = std::max<LONG>(0, room.right - 2 * kButtonSize);
  room.left = std::min<LONG>(margin_, room.right);
  return room;
}

CRect SEC3DTabControl::GetButtonRect(Part button) const {
  if (button == kNothing || !Overflows()) return {};
  const CRect client = GetClientRect();
  const LONG right = client.right - (button == kScrollBack ? kButtonSize : 0);
  const LONG top = std::max<LONG>(0, (client.bottom - kButtonSize) / 2);
  return Intersect({right - kButtonSize, top, right, top + kButtonSize}, client);
}

/// The first tab in sight when the last one ends at the end of the strip.
int SEC3DTabControl::LastFirst() const {
  if (!Overflows()) return 0;
  long long room = TabsRect().Width();
  int first = GetTabCount();
  while (first > 0 && room >= TabAt(first - 1).width) room -= TabAt(--first).width;
  return std::min(first, GetTabCount() - 1);
}

void SEC3DTabControl::SetFirst(int first) {
  if (std::exchange(first_, first) != first) Tell(WindowChange::kContent);
}

void SEC3DTabControl::ClampFirst() { SetFirst(std::min(first_, LastFirst())); }

bool SEC3DTabControl::ScrollBy(int tabs) {
  const long long wanted = static_cast<long long>(first_) + tabs;
  const int first = static_cast<int>(std::clamp<long long>(wanted, 0, LastFirst()));
  const bool scrolls = first != first_;
  SetFirst(first);
  return scrolls;
}

void SEC3DTabControl::ScrollToTab(int index) {
  if (!HasTab(index)) return;
  ClampFirst();
  if (index < first_) return SetFirst(index);
  long long room = TabsRect().Width() - static_cast<long long>(TabAt(index).width);
  int first = index;
  while (first > first_ && room >= TabAt(first - 1).width) room -= TabAt(--first).width;
  SetFirst(first);
}

CRect SEC3DTabControl::GetTabRect(int index) const {
  if (!HasTab(index) || index < first_) return {};
  const CRect room = TabsRect();
  LONG left = room.left;
  for (int at = first_; at < index && left < room.right; ++at) left += TabAt(at).width;
  if (left >= room.right) return {};
  return Intersect({left, room.top, left + TabAt(index).width, room.bottom}, room);
}

int SEC3DTabControl::HitTest(const CPoint& point) const {
  for (const Part button : {kScrollBack, kScrollOn}) {
    if (GetButtonRect(button).PtInRect(point)) return button;
  }
  const CRect room = TabsRect();
  if (!room.PtInRect(point)) return kNothing;
  LONG right = room.left;
  for (int at = first_; at < GetTabCount() && right <= point.x; ++at) {
    right += TabAt(at).width;
    if (point.x < right) return at;
  }
  return kNothing;
}

void SEC3DTabControl::OnTabsShift(int index, int by) {
  SECTabControlBase::OnTabsShift(index, by);
  if (pressed_ >= 0) pressed_ = detail::ShiftedIndex(pressed_, index, by);
  // What is in sight stays there.
  if (index < first_) first_ += by;
  first_ = std::min(first_, LastFirst());
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

bool SEC3DTabControl::OnWheel(int turned) {
  if (!Overflows()) return false;
  turned_ += turned;
  ScrollBy(-turned_ / kNotch);
  turned_ %= kNotch;
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
      if (OnWheel(static_cast<short>(HiWord(wparam)))) return 0;
      break;
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
      ClampFirst();
      Invalidate();
      return 0;
    case WM_SETFONT: {
      const LRESULT answer = SECTabControlBase::DefWindowProc(message, wparam, lparam);
      MeasureTabs();
      ClampFirst();
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
  const CRect room = TabsRect();
  LONG left = room.left;
  for (int at = first_; at < GetTabCount() && left < room.right; ++at) {
    const CRect rect{left, room.top, left + TabAt(at).width, room.bottom};
    left = rect.right;
    dc.SaveDC();
    dc.IntersectClipRect(room);
    PaintTab(dc, at, rect);
    dc.RestoreDC(-1);
  }
  if (!Overflows()) return;
  PaintButton(dc, kScrollBack, first_ > 0);
  PaintButton(dc, kScrollOn, first_ < LastFirst());
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
  if (index == first_) draw_side(shape.left, 1, false);
  draw_side(far_end, tab.selected ? inwards * kRelief : inwards, true);
  CRect inside{shape.left + kPadding, rect.top + kRelief,
               std::min(shape.right, TabsRect().right) - kPadding, rect.bottom - kRelief};
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

/// A button with an arrow head of fills.
void SEC3DTabControl::PaintButton(CDC& dc, Part button, bool enabled) const {
  const CRect rect = GetButtonRect(button);
  dc.DrawEdge(rect, pressed_ == button ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT | BF_MIDDLE);
  const COLORREF color = GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT);
  constexpr LONG kHead = 4;
  const LONG middle = rect.top + rect.Height() / 2;
  for (LONG column = 0; column < kHead; ++column) {
    const LONG from_tip = button == kScrollBack ? column : kHead - 1 - column;
    const LONG x = rect.left + (rect.Width() - kHead) / 2 + column;
    dc.FillSolidRect({x, middle - from_tip, x + 1, middle + from_tip + 1}, color);
  }
}

}  // namespace dq
