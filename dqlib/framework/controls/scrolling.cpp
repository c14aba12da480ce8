#include "dqlib/framework/controls/scrolling.h"

#include <algorithm>
#include <cstdint>

namespace dq::detail {

int ScrolledPosition(const SCROLLINFO& bar, WPARAM wparam, int line, int page) {
  std::int64_t to = bar.nPos;
  switch (LoWord(wparam)) {
    case SB_LINEUP:
      to -= line;
      break;
    case SB_LINEDOWN:
      to += line;
      break;
    case SB_PAGEUP:
      to -= page;
      break;
    case SB_PAGEDOWN:
      to += page;
      break;
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK:
      to = ScrollPositionOf(wparam);
      break;
    case SB_TOP:
      to = bar.nMin;
      break;
    case SB_BOTTOM:
      to = bar.nMax;
      break;
    default:
      break;
  }
  return static_cast<int>(std::clamp<std::int64_t>(to, bar.nMin, std::max(bar.nMin, bar.nMax)));
}

int WheelTurns::Take(WPARAM wparam, int steps_of_notch) {
  constexpr int kNotch = 120;
  turned_ += static_cast<short>(HiWord(wparam)) * steps_of_notch;
  const int steps = turned_ / kNotch;
  turned_ -= steps * kNotch;
  return -steps;
}

}  // namespace dq::detail
