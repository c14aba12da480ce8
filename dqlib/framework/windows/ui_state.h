// What a thread with windows knows beside them. For the framework's own sources.

#pragma once

#include <cstddef>

#include "dqlib/platform/types.h"

namespace dq {

class WindowObserver;

namespace detail {

/// All of one thread. Windows are named by handle, so that a dead one is found out.
struct UiState {
  WindowObserver* observer = nullptr;
  HWND focus = nullptr;
  HWND capture = nullptr;
  HWND active = nullptr;
  /// How many windows of the thread have ended: whoever finds it unchanged after calling a handler
  /// knows that the window is still there.
  std::size_t ended = 0;
};

UiState& CurrentUi();

}  // namespace detail
}  // namespace dq
