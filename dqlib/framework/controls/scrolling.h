// What the scroll bars and the wheel ask of a control that draws itself.

#pragma once

#include "dqlib/framework/windows/window_messages.h"

namespace dq::detail {

/// Where a use of a scroll bar, as the first argument of `WM_HSCROLL` and `WM_VSCROLL` tells of it,
/// has it go, from its first to its last position. `line` and `page` are its steps.
int ScrolledPosition(const SCROLLINFO& bar, WPARAM wparam, int line, int page);

/// Adds up how far a wheel is turned, which may be by less than a notch.
class WheelTurns {
 public:
  /// How many steps down the first argument of `WM_MOUSEWHEEL` makes, with so many for a notch;
  /// below 0 up.
  int Take(WPARAM wparam, int steps_of_notch);

 private:
  int turned_ = 0;
};

}  // namespace dq::detail
