// Frames: their control bars, which are docked, float, are shown and hidden, and come back as they
// were.

#include <algorithm>
#include <string>
#include <vector>

#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/mini_dock_frame.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_app.h"

namespace dq {

using detail::Watched;
using detail::WrappingDifference;
using detail::WrappingSum;

namespace {

/// How far from the bars of an edge the pointer may be for a bar that is dragged there, in pixels.
constexpr LONG kDockDistance = 32;

constexpr DockSide kSides[] = {DockSide::kTop, DockSide::kBottom, DockSide::kLeft,
                               DockSide::kRight};

CControlBar* BarOf(HWND window) {
  CWnd* const own = MessageQueue::FindOwnWindow(window);
  return DYNAMIC_DOWNCAST(CControlBar, own);
}

CMiniDockFrameWnd* FloatingOf(HWND window) {
  CWnd* const own = MessageQueue::FindOwnWindow(window);
  return DYNAMIC_DOWNCAST(CMiniDockFrameWnd, own);
}

/// How far a point lies behind the inner end of the bars of an edge; below 0 over them.
LONG DistanceFrom(DockSide side, const CRect& view, const CPoint& at) {
  switch (side) {
    case DockSide::kTop:
      return WrappingDifference(at.y, view.top);
    case DockSide::kBottom:
      return WrappingDifference(view.bottom, at.y);
    case DockSide::kLeft:
      return WrappingDifference(at.x, view.left);
    default:
      return WrappingDifference(view.right, at.x);
  }
}

/// Whether a point lies nearer to the frame's edge than the middle of a bar there.
bool IsOutside(const CControlBar& bar, const CPoint& at) {
  const CRect& place = bar.GetPlace();
  const CPoint middle{place.left + place.Width() / 2, place.top + place.Height() / 2};
  switch (bar.GetDockSide()) {
    case DockSide::kTop:
      return at.y < middle.y;
    case DockSide::kBottom:
      return at.y > middle.y;
    case DockSide::kLeft:
      return at.x < middle.x;
    default:
      return at.x > middle.x;
  }
}

/// The rectangle with so much around it.
CRect Inflated(const CRect& rect, const CRect& widths) {
  return {WrappingDifference(rect.left, widths.left), WrappingDifference(rect.top, widths.top),
          WrappingSum(rect.right, widths.right), WrappingSum(rect.bottom, widths.bottom)};
}

/// The values of a bar in the profile.
class BarProfile {
 public:
  BarProfile(const char* section, const CControlBar& bar)
      : section_(section), bar_("bar" + std::to_string(bar.GetDlgCtrlID()) + ".") {}

  int Read(const char* name, int fallback) const {
    return static_cast<int>(AfxGetApp()->GetProfileInt(section_, (bar_ + name).c_str(), fallback));
  }
  void Write(const char* name, int value) const {
    AfxGetApp()->WriteProfileInt(section_, (bar_ + name).c_str(), value);
  }

 private:
  const char* section_;
  std::string bar_;
};

}  // namespace

/// What the profile says of a bar.
struct CFrameWnd::BarState {
  HWND bar;
  int order;
  int side;
  bool floats;
  bool visible;
  CSize size;
  CRect place;
};

bool CFrameWnd::CanDock(const CControlBar& bar, DockSide side) const {
  return bar.CanDock(side) && (dock_sides_ & AlignmentOf(side)) != 0;
}

std::vector<HWND> CFrameWnd::ControlBars() const {
  std::vector<HWND> bars;
  for (const bool dockable : {false, true}) {
    for (CWnd* child = GetTopWindow(); child != nullptr; child = child->GetNextWindow()) {
      const CControlBar* const bar = DYNAMIC_DOWNCAST(CControlBar, child);
      if (bar != nullptr && bar->IsDockable() == dockable) bars.push_back(bar->GetSafeHwnd());
    }
  }
  for (const HWND each : floating_) {
    const CMiniDockFrameWnd* const floating = FloatingOf(each);
    const CControlBar* const bar = floating == nullptr ? nullptr : floating->GetBar();
    if (bar != nullptr) bars.push_back(bar->GetSafeHwnd());
  }
  return bars;
}

CControlBar* CFrameWnd::GetControlBar(UINT id) const {
  for (const HWND each : ControlBars()) {
    CControlBar* const bar = BarOf(each);
    if (bar != nullptr && bar->GetDlgCtrlID() == static_cast<int>(id)) return bar;
  }
  return nullptr;
}

void CFrameWnd::ShowControlBar(CControlBar* bar, bool show) {
  if (bar == nullptr || bar->IsShown() == show) return;
  const Watched self(*this);
  const int command = show ? SW_SHOWNA : SW_HIDE;
  CWnd* const parent = bar->GetParent();
  CMiniDockFrameWnd* const floating = DYNAMIC_DOWNCAST(CMiniDockFrameWnd, parent);
  const HWND around = floating == nullptr ? nullptr : floating->GetSafeHwnd();
  bar->ShowWindow(command);
  if (CMiniDockFrameWnd* const left = FloatingOf(around)) left->ShowWindow(command);
  if (self.IsThere()) RecalcLayout();
}

bool CFrameWnd::DockControlBar(CControlBar* bar, DockSide side, CControlBar* before) {
  if (bar == nullptr || bar->GetDockingFrame() != this || bar == before) return false;
  if (side == DockSide::kNone) side = bar->GetLastDockSide();
  if (!CanDock(*bar, side)) return false;
  const Watched self(*this);
  const HWND handle = bar->GetSafeHwnd();
  const HWND behind = before == nullptr ? nullptr : before->GetSafeHwnd();
  if (bar->IsFloating()) {
    CWnd* const floating = bar->GetParent();
    bar->SetParent(this);
    floating->DestroyWindow();
    if (!self.IsThere() || BarOf(handle) != bar) return false;
  }
  bar->m_eSide = bar->m_eLastSide = side;
  const CWnd* const next = BarOf(behind);
  if (next != nullptr && next->GetParent() == this) {
    bar->SetWindowOrder(next->GetPrevWindow());
  } else if (bar->GetNextWindow() != nullptr) {
    CWnd* last = bar;
    while (last->GetNextWindow() != nullptr) last = last->GetNextWindow();
    bar->SetWindowOrder(last);
  }
  RecalcLayout();
  return self.IsThere();
}

bool CFrameWnd::FloatControlBar(CControlBar* bar, const CRect& place) {
  return Float(bar, place, false);
}

bool CFrameWnd::Float(CControlBar* bar, const CRect& place, bool of_bar) {
  if (bar == nullptr || bar->GetDockingFrame() != this || !bar->IsDockable()) return false;
  const Watched self(*this);
  const HWND handle = bar->GetSafeHwnd();
  if (!bar->IsFloating()) {
    const CSize size = bar->CalcFloatingLayout();
    auto made = std::make_unique<CMiniDockFrameWnd>(bar->IsSizingEnabled());
    if (!made->Create(*this, bar->GetWindowText(),
                      {place.left, place.top, WrappingSum(place.left, size.cx),
                       WrappingSum(place.top, size.cy)})) {
      return false;
    }
    made->DeleteWithWindow();
    // It is its own from now on.
    CMiniDockFrameWnd* const floating = made.release();
    if (!self.IsThere() || BarOf(handle) != bar) {
      floating->DestroyWindow();
      return false;
    }
    std::erase_if(floating_, [](HWND each) { return FloatingOf(each) == nullptr; });
    floating_.push_back(floating->GetSafeHwnd());
    bar->SetParent(floating);
    bar->m_eSide = DockSide::kNone;
    bar->m_rectFloat = floating->GetPlace();
    floating->RecalcLayout();
    if (!self.IsThere() || BarOf(handle) != bar) return false;
  }
  if (!bar->IsFloating()) return false;
  CWnd* const floating = bar->GetParent();
  const HWND around = floating->GetSafeHwnd();
  if (!place.IsRectEmpty()) {
    const CRect& frame = floating->GetFrameWidths();
    floating->MoveWindow(of_bar ? Inflated(place, frame) : place);
  }
  if (BarOf(handle) == bar && FloatingOf(around) == floating && bar->IsShown()) {
    floating->ShowWindow(SW_SHOWNA);
  }
  if (self.IsThere()) RecalcLayout();
  return self.IsThere();
}

CFrameWnd::DockTarget CFrameWnd::TargetOf(CControlBar& bar, const CPoint& from,
                                          const CPoint& screen) const {
  const bool floats = IsKeyDown(VK_CONTROL);
  if (!floats && bar.GetWindowRect().PtInRect(screen)) {
    return {bar.GetDockSide(), nullptr, bar.GetWindowRect()};
  }
  const CPoint at = ScreenToClient(screen);
  const CRect client = GetClientRect();
  const bool is_near =
      at.x >= -kDockDistance && WrappingDifference(at.x, client.right) < kDockDistance &&
      at.y >= -kDockDistance && WrappingDifference(at.y, client.bottom) < kDockDistance;
  DockTarget target;
  LONG nearest = kDockDistance;
  for (const DockSide side : kSides) {
    const LONG distance = DistanceFrom(side, view_rect_, at);
    if (!is_near || floats || distance >= nearest || !CanDock(bar, side)) continue;
    nearest = distance;
    target.side = side;
  }
  if (target.side == DockSide::kNone) {
    const CPoint grip = bar.GetWindowRect().TopLeft();
    const CSize size = bar.CalcFloatingLayout();
    const LONG left = WrappingDifference(
        screen.x,
        std::clamp<LONG>(WrappingDifference(from.x, grip.x), 0, std::max<LONG>(0, size.cx)));
    const LONG top = WrappingDifference(
        screen.y,
        std::clamp<LONG>(WrappingDifference(from.y, grip.y), 0, std::max<LONG>(0, size.cy)));
    target.place = {left, top, WrappingSum(left, size.cx), WrappingSum(top, size.cy)};
    return target;
  }
  CRect strip = view_rect_;
  for (const HWND each : ControlBars()) {
    CControlBar* const other = BarOf(each);
    if (other == nullptr || other == &bar || !other->IsDockable() || !other->IsShown()) continue;
    if (other->GetDockSide() != target.side || !IsOutside(*other, at)) continue;
    target.before = other;
    strip = other->GetPlace();
    break;
  }
  const bool horizontal = target.side == DockSide::kTop || target.side == DockSide::kBottom;
  const CSize size = bar.CalcFixedLayout(view_rect_.Size(), horizontal);
  if (target.side == DockSide::kTop) strip.bottom = WrappingSum(strip.top, size.cy);
  if (target.side == DockSide::kBottom) strip.top = WrappingDifference(strip.bottom, size.cy);
  if (target.side == DockSide::kLeft) strip.right = WrappingSum(strip.left, size.cx);
  if (target.side == DockSide::kRight) strip.left = WrappingDifference(strip.right, size.cx);
  const CPoint origin = ClientToScreen({});
  strip.OffsetRect(origin.x, origin.y);
  target.place = strip;
  return target;
}

void CFrameWnd::SaveBarState(const char* section) const {
  if (AfxGetApp() == nullptr) return;
  int order = 0;
  for (const HWND each : ControlBars()) {
    const CControlBar* const bar = BarOf(each);
    const BarProfile profile(section, *bar);
    profile.Write("order", order++);
    profile.Write("visible", bar->IsShown() ? 1 : 0);
    profile.Write("side", static_cast<int>(bar->GetLastDockSide()));
    profile.Write("floating", bar->IsFloating() ? 1 : 0);
    profile.Write("width", bar->GetBarSize().cx);
    profile.Write("height", bar->GetBarSize().cy);
    const CRect& place = bar->GetFloatingPlace();
    profile.Write("left", place.left);
    profile.Write("top", place.top);
    profile.Write("right", place.right);
    profile.Write("bottom", place.bottom);
  }
}

std::vector<CFrameWnd::BarState> CFrameWnd::ReadBarStates(const char* section) const {
  std::vector<BarState> states;
  for (const HWND each : ControlBars()) {
    const CControlBar* const bar = BarOf(each);
    const BarProfile profile(section, *bar);
    const int visible = profile.Read("visible", -1);
    if (visible < 0) continue;
    const CSize& size = bar->GetBarSize();
    states.push_back({.bar = each,
                      .order = profile.Read("order", 0),
                      .side = profile.Read("side", 0),
                      .floats = profile.Read("floating", 0) != 0,
                      .visible = visible != 0,
                      .size = {profile.Read("width", size.cx), profile.Read("height", size.cy)},
                      .place = {profile.Read("left", 0), profile.Read("top", 0),
                                profile.Read("right", 0), profile.Read("bottom", 0)}});
  }
  std::ranges::stable_sort(states, {}, &BarState::order);
  return states;
}

void CFrameWnd::LoadBarState(const char* section) {
  if (AfxGetApp() == nullptr) return;
  const CSize screen = GetScreenSize();
  const CRect in_sight{0, 0, screen.cx, screen.cy};
  const Watched self(*this);
  for (const BarState& state : ReadBarStates(section)) {
    CControlBar* const bar = self.IsThere() ? BarOf(state.bar) : nullptr;
    if (bar == nullptr) continue;
    const bool has_side =
        std::ranges::find(kSides, static_cast<DockSide>(state.side)) != std::end(kSides);
    bar->SetBarSize({std::min(state.size.cx, screen.cx), std::min(state.size.cy, screen.cy)});
    if (!self.IsThere() || BarOf(state.bar) != bar) continue;
    bar->m_rectFloat = Intersect(state.place, in_sight).IsRectEmpty() ? CRect{} : state.place;
    if (has_side) DockControlBar(bar, static_cast<DockSide>(state.side));
    if (!self.IsThere() || BarOf(state.bar) != bar) continue;
    if (state.floats && !bar->IsFloating()) bar->ToggleFloating();
    if (self.IsThere() && BarOf(state.bar) == bar) ShowControlBar(bar, state.visible);
  }
}

bool CFrameWnd::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  const bool is_bar = key.message == WM_COMMAND && key.id >= kToolBarId && key.id <= kLastBarId &&
                      GetControlBar(key.id) != nullptr;
  static constexpr MessageMapEntry kEntries[] = {
      CommandRangeEntry<&CFrameWnd::OnBarCheck>(kToolBarId, kLastBarId),
      UpdateRangeEntry<&CFrameWnd::OnUpdateBarCheck>(kToolBarId, kLastBarId),
  };
  if (is_bar && CallEntry(kEntries, *this, key, arguments)) return true;
  return CWnd::CallMapped(key, arguments);
}

void CFrameWnd::OnBarCheck(UINT id) {
  if (CControlBar* const bar = GetControlBar(id)) ShowControlBar(bar, !bar->IsShown());
}

void CFrameWnd::OnUpdateBarCheck(CCmdUI* ui) {
  const CControlBar* const bar = GetControlBar(ui->m_nID);
  ui->SetCheck(bar != nullptr && bar->IsShown() ? 1 : 0);
}

void CFrameWnd::EnableFloatingBars(bool enable) {
  // With those of the frames below.
  std::vector<HWND> floating;
  std::vector<CWnd*> windows{this};
  while (!windows.empty()) {
    CWnd* const window = windows.back();
    windows.pop_back();
    if (const CFrameWnd* const frame = DYNAMIC_DOWNCAST(CFrameWnd, window)) {
      floating.insert(floating.end(), frame->floating_.begin(), frame->floating_.end());
    }
    for (CWnd* child = window->GetTopWindow(); child != nullptr; child = child->GetNextWindow()) {
      windows.push_back(child);
    }
  }
  for (const HWND each : floating) {
    if (CMiniDockFrameWnd* const frame = FloatingOf(each)) frame->EnableWindow(enable);
  }
}

void CFrameWnd::UpdateFloatingBars(WPARAM disable_if_no_handler) {
  const std::vector<HWND> floating = floating_;
  for (const HWND each : floating) {
    if (CMiniDockFrameWnd* const frame = FloatingOf(each)) {
      frame->SendMessageToDescendants(WM_IDLEUPDATECMDUI, disable_if_no_handler);
    }
  }
}

}  // namespace dq
