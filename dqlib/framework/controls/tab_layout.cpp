#include "dqlib/framework/controls/tab_layout.h"

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq::detail {
namespace {

/// Pixels.
constexpr LONG kButtonWidth = 16;
/// Of an arrow head, from its base to its tip.
constexpr LONG kArrowHead = 4;

}  // namespace

// ---- The tabs

void TabLayout::Insert(int index) {
  widths_.insert(widths_.begin() + index, -1);
  ForgetEnds(index);
  if (index < first_) ++first_;
}

void TabLayout::Erase(int index) {
  widths_.erase(widths_.begin() + index);
  ForgetEnds(index);
  if (index < first_) --first_;
  if (first_ > 0) FillRoom();
}

void TabLayout::Clear() {
  widths_.clear();
  ends_.clear();
  first_ = 0;
}

void TabLayout::TakeOver(TabLayout& other) {
  widths_ = std::exchange(other.widths_, {});
  first_ = other.first_;
  ForgetAll();
  other.Clear();
}

void TabLayout::Forget(int index) {
  widths_[static_cast<std::size_t>(index)] = -1;
  ForgetEnds(index);
}

void TabLayout::ForgetAll() {
  std::ranges::fill(widths_, -1);
  ends_.clear();
}

void TabLayout::ForgetEnds(int from) const {
  ends_.resize(std::min(ends_.size(), static_cast<std::size_t>(from)));
}

std::int64_t TabLayout::EndOf(int index) const {
  while (static_cast<int>(ends_.size()) <= index) {
    int& width = widths_[ends_.size()];
    if (width < 0) width = std::max(0, measure_(static_cast<int>(ends_.size())));
    ends_.push_back((ends_.empty() ? 0 : ends_.back()) + width);
  }
  return ends_[static_cast<std::size_t>(index)];
}

// ---- Where they lie

bool TabLayout::Overflows() const {
  return StartOf(GetCount()) > std::max<LONG>(0, window_.GetClientRect().right - margin_);
}

CRect TabLayout::GetRoom() const {
  CRect room = window_.GetClientRect();
  if (Overflows()) room.right = std::max<LONG>(0, room.right - 2 * kButtonWidth);
  room.left = std::min(margin_, room.right);
  return room;
}

CRect TabLayout::GetPlace(int index) const {
  const CRect room = GetRoom();
  const std::int64_t origin = StartOf(first_) - room.left;
  const auto place = [origin](std::int64_t at) {
    constexpr std::int64_t kFar = 1 << 30;
    return static_cast<LONG>(std::min(at - origin, kFar));
  };
  return {place(StartOf(index)), room.top, place(EndOf(index)), room.bottom};
}

CRect TabLayout::GetRect(int index) const {
  if (index < first_ || index >= GetCount()) return {};
  return Intersect(GetPlace(index), GetRoom());
}

int TabLayout::HitTest(const CPoint& point) const {
  const CRect room = GetRoom();
  if (!room.PtInRect(point)) return -1;
  const std::int64_t at = StartOf(first_) + point.x - room.left;
  if (at >= StartOf(GetCount())) return -1;
  return static_cast<int>(std::ranges::upper_bound(ends_, at) - ends_.begin());
}

CRect TabLayout::GetButton(bool forward) const {
  if (!Overflows()) return {};
  const CRect client = window_.GetClientRect();
  const LONG right = client.right - (forward ? 0 : kButtonWidth);
  return Intersect({right - kButtonWidth, 0, right, client.bottom}, client);
}

void TabLayout::DrawArrow(CDC& dc, bool forward) const {
  const CRect button = GetButton(forward);
  const COLORREF color = GetSysColor(CanScroll(forward) ? COLOR_BTNTEXT : COLOR_GRAYTEXT);
  const LONG middle = button.Height() / 2;
  for (LONG column = 0; column < kArrowHead; ++column) {
    const LONG x = button.left + (button.Width() - kArrowHead) / 2 + column;
    const LONG from_tip = forward ? kArrowHead - 1 - column : column;
    dc.FillSolidRect({x, middle - from_tip, x + 1, middle + from_tip + 1}, color);
  }
}

// ---- Scrolling

/// The first tab that begins there or behind.
int TabLayout::FirstFrom(std::int64_t start) const {
  if (start <= 0) return 0;
  return static_cast<int>(std::ranges::lower_bound(ends_, start) - ends_.begin()) + 1;
}

/// The first tab in sight when the last one ends at the end of the room.
int TabLayout::LastFirst() const {
  if (!Overflows()) return 0;
  return std::min(FirstFrom(StartOf(GetCount()) - GetRoom().Width()), GetCount() - 1);
}

bool TabLayout::ScrollBy(int tabs) {
  return SetFirst(
      static_cast<int>(std::clamp<std::int64_t>(std::int64_t{first_} + tabs, 0, LastFirst())));
}

bool TabLayout::ScrollTo(int index) {
  const int first = std::min({first_, index, LastFirst()});
  return SetFirst(std::max(first, std::min(index, FirstFrom(EndOf(index) - GetRoom().Width()))));
}

}  // namespace dq::detail
