#include "dqlib/framework/controls/sft_tabs.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {
namespace {

/// What a tab has beside and above its label, and is at most wide, in pixels.
constexpr int kBeside = 9;
constexpr int kAbove = 4;
constexpr int kMostWidth = 400;
/// How much a tab is lower than the current one.
constexpr int kLower = 2;

CSize Extent(const CWnd& window, const CFont* font, std::string_view text) {
  return font != nullptr && font->IsCreated() ? GetTextExtent(&font->GetLogFont(), text)
                                              : GetTextExtent(window, text);
}

}  // namespace

IMPLEMENT_DYNCREATE(CSftTabs, CWnd)

// ---- Tabs

int CSftTabs::InsertTab(int index, const char* label, BYTE flags) {
  if (index == -1) index = rows_.size();
  if (index < 0 || index > rows_.size()) return -1;
  rows_.Insert(index, detail::OrEmpty(label));
  rows_[index].flags = flags;
  looks_.emplace(looks_.begin() + index);
  current_ = detail::ShiftedIndex(current_, index, 1);
  layout_.Insert(index);
  Tell(WindowChange::kRowsInserted, {index, 1});
  Redraw();
  return index;
}

bool CSftTabs::DeleteTab(int index) {
  if (!rows_.Has(index)) return false;
  detail::TellNewRows();
  rows_.Erase(index);
  looks_.erase(looks_.begin() + index);
  current_ = detail::ShiftedIndex(current_, index, -1);
  layout_.Erase(index);
  Tell(WindowChange::kRowsRemoved, {index, 1});
  Redraw();
  return true;
}

void CSftTabs::DeleteAllTabs() {
  const int count = rows_.size();
  if (count == 0) return;
  detail::TellNewRows();
  rows_.Clear();
  looks_.clear();
  current_ = -1;
  layout_.Clear();
  Tell(WindowChange::kRowsRemoved, {0, count});
  Redraw();
}

void CSftTabs::SetTabLabel(int index, const char* label) {
  if (!rows_.Has(index) || rows_.Text(index) == detail::OrEmpty(label)) return;
  rows_.SetText(index, detail::OrEmpty(label));
  layout_.Forget(index);
  Tell(WindowChange::kRowsChanged, {index, 1});
  Redraw();
}

bool CSftTabs::IsTabEnabled(int index) const {
  return rows_.Has(index) && (rows_[index].flags & kTabDisabled) == 0;
}

void CSftTabs::EnableTab(int index, bool enable) {
  if (!rows_.Has(index)) return;
  BYTE& flags = rows_[index].flags;
  flags = static_cast<BYTE>(enable ? flags & ~kTabDisabled : flags | kTabDisabled);
  Tell(WindowChange::kRowsChanged, {index, 1});
  Redraw();
}

void CSftTabs::SetTabData(int index, std::uintptr_t data) {
  if (rows_.Has(index)) rows_[index].data = data;
}

bool CSftTabs::SetCurSel(int index) {
  if (index != -1 && !rows_.Has(index)) return false;
  current_ = index;
  if (has_own_look_) BringIntoSight(index);
  Tell(WindowChange::kSelection);
  Redraw();
  return true;
}

bool CSftTabs::Choose(int index) {
  if (!TakesInput() || !IsTabEnabled(index)) return false;
  wished_ = index;
  return Notify(kTabWished) && current_ == index;
}

void CSftTabs::Describe(platform::DialogControl& control) const {
  control.kind = platform::DialogControlKind::kList;
  control.items = rows_.Texts();
  control.value = rows_.Text(current_);
}

bool CSftTabs::Enter(std::string_view value) { return Choose(rows_.FindNamed(value)); }

void CSftTabs::OnSubclassed(CWnd& former) {
  Control::OnSubclassed(former);
  CSftTabs* const tabs = DYNAMIC_DOWNCAST(CSftTabs, &former);
  if (tabs == nullptr) return;
  rows_ = std::exchange(tabs->rows_, {});
  looks_ = std::exchange(tabs->looks_, {});
  current_ = std::exchange(tabs->current_, -1);
  layout_.TakeOver(tabs->layout_);
  has_own_look_ = tabs->has_own_look_;
  style_ = tabs->style_;
  colors_ = tabs->colors_;
  behind_ = tabs->behind_;
  highlight_font_ = tabs->highlight_font_;
}

// ---- Their look

void CSftTabs::TakeOwnLook() {
  // A layer shows it in another way from now on.
  if (!std::exchange(has_own_look_, true)) Tell(WindowChange::kContent);
  Redraw();
}

void CSftTabs::Redraw() {
  if (has_own_look_ && GetSafeHwnd() != nullptr) Invalidate();
}

void CSftTabs::SetStyle(int style) {
  style_ = style >= kTabsRaised && style <= kTabsRaisedBelow ? style : int{kTabsRaised};
  layout_.ForgetAll();
  TakeOwnLook();
}

void CSftTabs::SetColors(const TabColors& colors, std::optional<COLORREF> behind) {
  colors_ = colors;
  behind_ = behind;
  TakeOwnLook();
}

TabColors CSftTabs::GetTabColors(int index) const {
  return rows_.Has(index) ? LookOf(index).colors : TabColors{};
}

void CSftTabs::SetTabColors(int index, const TabColors& colors) {
  if (!rows_.Has(index)) return;
  LookOf(index).colors = colors;
  TakeOwnLook();
}

CFont* CSftTabs::GetTabFont(int index) const {
  return rows_.Has(index) ? LookOf(index).font : nullptr;
}

void CSftTabs::SetTabFont(int index, CFont* font) {
  if (!rows_.Has(index)) return;
  LookOf(index).font = font;
  layout_.Forget(index);
  TakeOwnLook();
}

void CSftTabs::SetHighlightFont(CFont* font) {
  highlight_font_ = font;
  layout_.ForgetAll();
  TakeOwnLook();
}

CFont* CSftTabs::FontOf(int index, bool current) const {
  CFont* const own = LookOf(index).font;
  return own == nullptr && current ? highlight_font_ : own;
}

COLORREF CSftTabs::ColorOf(int index, std::optional<COLORREF> TabColors::*color,
                           int system_color) const {
  const std::optional<COLORREF>& own = LookOf(index).colors.*color;
  if (own.has_value()) return *own;
  return (colors_.*color).value_or(GetSysColor(system_color));
}

// ---- Where they lie

int CSftTabs::GetWantedHeight() const {
  LONG height = std::max(Extent(*this, nullptr, "X").cy, Extent(*this, highlight_font_, "X").cy);
  for (const Look& each : looks_) {
    if (each.font != nullptr) height = std::max(height, Extent(*this, each.font, "X").cy);
  }
  return static_cast<int>(height) + 2 * kAbove + kLower;
}

int CSftTabs::WidthOf(int index) const {
  std::string label(rows_.Text(index));
  const std::size_t mark = IsFlat(style_) ? label.npos : label.find('&');
  if (mark != label.npos) label.erase(mark, 1);
  // As the current one it is as wide.
  const LONG width = std::max(Extent(*this, FontOf(index, false), label).cx,
                              Extent(*this, FontOf(index, true), label).cx);
  return static_cast<int>(std::clamp<LONG>(width, 0, kMostWidth - 2 * kBeside)) + 2 * kBeside;
}

std::vector<CRect> CSftTabs::GetTabRects() const {
  std::vector<CRect> rects;
  rects.reserve(static_cast<std::size_t>(rows_.size()));
  for (int at = 0; at < rows_.size(); ++at) rects.push_back(GetTabRect(at));
  return rects;
}

void CSftTabs::BringIntoSight(int index) {
  if (rows_.Has(index) && GetSafeHwnd() != nullptr) layout_.ScrollTo(index);
}

// ---- A person

void CSftTabs::PressAt(const CPoint& point) {
  for (const bool forward : {false, true}) {
    if (!GetArrowRect(forward).PtInRect(point)) continue;
    layout_.ScrollBy(forward ? 1 : -1);
    return Redraw();
  }
  Choose(HitTest(point));
}

void CSftTabs::Step(int from, int step) {
  for (int at = from; rows_.Has(at); at += step) {
    if (!IsTabEnabled(at)) continue;
    Choose(at);
    return;
  }
}

LRESULT CSftTabs::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      PressAt(PointOfParam(lparam));
      return 0;
    case WM_KEYDOWN:
      switch (wparam) {
        case VK_LEFT:
        case VK_UP:
          return Step(current_ - 1, -1), 0;
        case VK_RIGHT:
        case VK_DOWN:
          return Step(current_ + 1, 1), 0;
        case VK_HOME:
          return Step(0, 1), 0;
        case VK_END:
          return Step(rows_.size() - 1, -1), 0;
        default:
          return Control::DefWindowProc(message, wparam, lparam);
      }
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_SIZE:
      if (has_own_look_) BringIntoSight(current_ >= 0 ? current_ : GetFirstVisible());
      Redraw();
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      Redraw();
      return 0;
    case WM_SETFONT:
      layout_.ForgetAll();
      Redraw();
      return Control::DefWindowProc(message, wparam, lparam);
    default:
      return Control::DefWindowProc(message, wparam, lparam);
  }
}

// ---- Drawing

void CSftTabs::DrawTab(CDC& dc, int index) const {
  CRect tab = GetTabRect(index);
  if (tab.IsRectEmpty()) return;
  const bool is_current = index == current_;
  const bool is_flat = IsFlat(style_);
  if (!is_current && !is_flat) (LiesBelow(style_) ? tab.bottom -= kLower : tab.top += kLower);
  dc.FillSolidRect(tab, is_current ? ColorOf(index, &TabColors::highlight_background,
                                             is_flat ? COLOR_WINDOW : COLOR_BTNFACE)
                                   : ColorOf(index, &TabColors::background, COLOR_BTNFACE));
  if (!is_flat) {
    dc.DrawEdge(tab, EDGE_RAISED, BF_LEFT | BF_RIGHT | (LiesBelow(style_) ? BF_BOTTOM : BF_TOP));
  } else if (is_current) {
    CRect mark = tab;
    (LiesBelow(style_) ? mark.top = mark.bottom - kLower : mark.bottom = mark.top + kLower);
    dc.FillSolidRect(mark, GetSysColor(COLOR_HIGHLIGHT));
  } else {
    dc.FillSolidRect({tab.right - 1, tab.top + kAbove, tab.right, tab.bottom - kAbove},
                     GetSysColor(COLOR_BTNSHADOW));
  }
  CRect label = Intersect(tab, {tab.left + kBeside, tab.top, tab.right - 2, tab.bottom});
  if (label.IsRectEmpty()) return;
  CFont* const own = FontOf(index, is_current);
  CFont* const former = dc.SelectObject(own != nullptr ? own : GetFont());
  dc.SetTextColor(!IsTabEnabled(index) ? GetSysColor(COLOR_GRAYTEXT)
                  : is_current         ? ColorOf(index, &TabColors::highlight_text, COLOR_BTNTEXT)
                                       : ColorOf(index, &TabColors::text, COLOR_BTNTEXT));
  dc.DrawText(rows_.Text(index), label,
              DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | (is_flat ? UINT{DT_NOPREFIX} : 0));
  dc.SelectObject(former);
  if (is_current && CWnd::GetFocus() == this) {
    dc.DrawFocusRect({tab.left + 3, tab.top + 3, tab.right - 3, tab.bottom - 3});
  }
}

void CSftTabs::DrawArrow(CDC& dc, bool forward) const {
  const CRect arrow = GetArrowRect(forward);
  if (arrow.IsRectEmpty()) return;
  dc.DrawEdge(arrow, BDR_RAISEDINNER, BF_RECT | BF_MIDDLE);
  layout_.DrawArrow(dc, forward);
}

void CSftTabs::OnPaint(CDC& dc) {
  if (!has_own_look_) return;
  const CRect client = GetClientRect();
  dc.SetBkMode(TRANSPARENT);
  dc.FillSolidRect(client, behind_.value_or(GetSysColor(COLOR_BTNFACE)));
  const LONG end = layout_.GetRoom().right;
  for (int at = GetFirstVisible(); at < rows_.size() && layout_.GetPlace(at).left < end; ++at) {
    if (at != current_) DrawTab(dc, at);
  }
  // The edge of the page, which the current tab covers.
  CRect edge = client;
  (LiesBelow(style_) ? edge.bottom = edge.top + 1 : edge.top = edge.bottom - 1);
  dc.FillSolidRect(edge, GetSysColor(LiesBelow(style_) ? COLOR_BTNSHADOW : COLOR_BTNHIGHLIGHT));
  if (rows_.Has(current_)) DrawTab(dc, current_);
  for (const bool forward : {false, true}) DrawArrow(dc, forward);
}

}  // namespace dq
