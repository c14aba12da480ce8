// Lists and trees: the mouse.

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "dqlib/framework/controls/sft_tree.h"
#include "dqlib/framework/controls/tree_columns.h"
#include "dqlib/framework/controls/tree_rows.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

using detail::Watched;

namespace {

/// The timer that scrolls while something is dragged beyond the edges, and how often it does.
constexpr UINT kScrollTimer = 0x5F7;
constexpr UINT kScrollMilliseconds = 50;

}  // namespace

bool CSftTree::OnMouse(UINT message, WPARAM keys, const CPoint& point) {
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      PressMouse(message == WM_LBUTTONDBLCLK, keys, point);
      return true;
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
      PressRightButton(point);
      return true;
    case WM_MOUSEMOVE:
      MoveMouse(point);
      return true;
    case WM_LBUTTONUP:
      ReleaseMouse(point);
      return true;
    default:
      return false;
  }
}

void CSftTree::PressMouse(bool is_double, WPARAM keys, const CPoint& point) {
  const Watched self(*this);
  if (GetFocus() != this) SetFocus();
  // A press that comes while another one is under way ends that.
  if (self.IsThere()) EndGesture(true);
  if (!self.IsThere()) return;
  press_point_ = point;
  const TreeHit hit = HitTest(point);
  if (hit.part == TreePart::kHeaderDivider) {
    PressDivider(is_double, hit.column, point);
  } else if (hit.part == TreePart::kHeader) {
    PressTitle(hit.column);
  } else if (hit.row >= 0) {
    PressRow(is_double, keys, hit);
  }
}

void CSftTree::PressDivider(bool is_double, int column, const CPoint& point) {
  if (is_double) {
    FitColumn(column);
    return;
  }
  BeginGesture(Gesture::kDivider, point);
  gesture_column_ = column;
  gesture_width_ = GetColumnWidth(column);
}

void CSftTree::PressTitle(int column) {
  if (column < 0) return;
  header_column_ = column;
  pressed_title_ = column;
  InvalidateHeader();
  const Watched self(*this);
  BeginGesture(Gesture::kTitle, press_point_);
  if (self.IsThere()) Notify(kTreeHeaderDown);
}

void CSftTree::PressRow(bool is_double, WPARAM keys, const TreeHit& hit) {
  const Watched self(*this);
  const bool on_button = hit.part == TreePart::kButton;
  const bool with_shift = (keys & MK_SHIFT) != 0;
  const bool with_control = (keys & MK_CONTROL) != 0;
  pending_row_ = -1;
  if (on_button) {
    // Of several selected rows none is to be lost by opening a branch.
    MoveCaret(hit.row, Selecting::kNothing);
  } else if (drag_enabled_ && !with_shift && !with_control && IsSelected(hit.row)) {
    // It may be the begin of a drag of all that are selected: the others lose it by the release.
    pending_row_ = hit.row;
    MoveCaret(hit.row, Selecting::kNothing);
  } else if (!is_double || !IsSelected(hit.row)) {
    MoveCaret(hit.row, with_shift     ? (with_control ? Selecting::kAddRange : Selecting::kRange)
                       : with_control ? Selecting::kToggle
                                      : Selecting::kAlone);
  }
  if (!self.IsThere() || !rows_->Has(hit.row)) return;
  if (!on_button && drag_enabled_ && !is_double) BeginGesture(Gesture::kPress, press_point_);
  if (!self.IsThere()) return;
  if (on_button) {
    Notify(is_double ? kTreeButtonDoubleClick : kTreeButtonDown);
  } else if (hit.part == TreePart::kPicture) {
    Notify(is_double ? kTreePictureDoubleClick : kTreePictureDown);
  } else if (hit.part == TreePart::kCell) {
    Notify(is_double ? kTreeTextDoubleClick : kTreeTextDown);
  }
}

/// The context menu that the release asks for is about the row under the pointer.
void CSftTree::PressRightButton(const CPoint& point) {
  const Watched self(*this);
  if (GetFocus() != this) SetFocus();
  if (!self.IsThere()) return;
  press_point_ = point;
  const int row = HitTest(point).row;
  if (row >= 0) MoveCaret(row, IsSelected(row) ? Selecting::kNothing : Selecting::kAlone);
}

void CSftTree::MoveMouse(const CPoint& point) {
  const Watched self(*this);
  if (gesture_ == Gesture::kDivider) {
    const std::int64_t width = std::int64_t{gesture_width_} + point.x - gesture_from_.x;
    (*columns_)[gesture_column_].widths.reset();
    ChangeWidth(gesture_column_, static_cast<int>(std::max<std::int64_t>(0, width)));
    return;
  }
  if (gesture_ == Gesture::kPress) {
    const bool stays = std::abs(point.x - gesture_from_.x) < GetSystemMetrics(SM_CXDRAG) &&
                       std::abs(point.y - gesture_from_.y) < GetSystemMetrics(SM_CYDRAG);
    if (stays || caret_ < 0) return;
    gesture_ = Gesture::kDrag;
    dragging_ = true;
    pending_row_ = -1;
    if (!Notify(kTreeBeginDrag)) return;
  }
  if (gesture_ != Gesture::kDrag) return;
  press_point_ = point;
  const bool beyond = point.y < GetHeaderHeight() || point.y >= GetClientRect().bottom;
  if (beyond != scroll_timer_) {
    scroll_timer_ = beyond;
    if (beyond) {
      SetTimer(kScrollTimer, kScrollMilliseconds);
    } else {
      KillTimer(kScrollTimer);
    }
  }
  Notify(kTreeDragging);
}

bool CSftTree::OnTimer(WPARAM id) {
  if (id != kScrollTimer) return false;
  if (!dragging_) {
    KillTimer(kScrollTimer);
    return true;
  }
  const Watched self(*this);
  ScrollTo(SB_VERT, GetScrollPos(SB_VERT) + (press_point_.y < GetHeaderHeight() ? -1 : 1));
  if (self.IsThere()) Notify(kTreeDragging);
  return true;
}

void CSftTree::ReleaseMouse(const CPoint& point) {
  const Gesture ended = gesture_;
  if (ended == Gesture::kNone) return;
  const Watched self(*this);
  if (ended == Gesture::kDivider) MoveMouse(point);
  const int row = std::exchange(pending_row_, -1);
  if (ended == Gesture::kDrag) press_point_ = point;
  EndGesture(false);
  if (!self.IsThere()) return;
  if (ended == Gesture::kTitle) {
    ResetHeader();
  } else if (ended == Gesture::kPress && rows_->Has(row)) {
    MoveCaret(row, Selecting::kAlone);
  } else if (ended == Gesture::kDrag && Notify(kTreeEndDrag)) {
    SetDropTarget(-1);
  }
}

void CSftTree::BeginGesture(Gesture gesture, const CPoint& point) {
  const Watched self(*this);
  gesture_from_ = point;
  SetCapture();
  if (self.IsThere() && GetCapture() == this) gesture_ = gesture;
}

/// Ends what the mouse was pressed for. `cancel`: it is given up, and the parent is told of a drag
/// that is.
void CSftTree::EndGesture(bool cancel) {
  const Gesture ended = std::exchange(gesture_, Gesture::kNone);
  if (ended == Gesture::kNone) return;
  const Watched self(*this);
  dragging_ = false;
  if (std::exchange(scroll_timer_, false)) KillTimer(kScrollTimer);
  if (GetCapture() == this) ReleaseCapture();
  if (!self.IsThere() || !cancel) return;
  pending_row_ = -1;
  if (ended == Gesture::kTitle) {
    ResetHeader();
  } else if (ended == Gesture::kDivider && columns_->Has(gesture_column_)) {
    ChangeWidth(gesture_column_, gesture_width_);
  } else if (ended == Gesture::kDrag && Notify(kTreeCancelDrag)) {
    SetDropTarget(-1);
  }
}

void CSftTree::CancelMode() {
  const bool was_dragging = gesture_ == Gesture::kDrag;
  pending_row_ = -1;
  const Watched self(*this);
  EndGesture(!was_dragging);
  if (self.IsThere() && was_dragging) SetDropTarget(-1);
}

bool CSftTree::ShowPointer() {
  const bool on_divider = gesture_ == Gesture::kDivider ||
                          HitTest(ScreenToClient(GetPointerPos())).part == TreePart::kHeaderDivider;
  if (on_divider) SetPointerShape(PointerShape::kSizeLeftRight);
  return on_divider;
}

}  // namespace dq
