// What a thread with windows knows beside them. For the framework's own sources.

#pragma once

#include <cstddef>

#include "dqlib/platform/types.h"

namespace dq {

class CCmdTarget;
class CWnd;
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

/// A window that is at work while handlers, which may end it, are called. Once it isn't there,
/// nothing of it may be touched. A target of commands that is no window can't be watched, nor can a
/// window that isn't made: both count as there.
class Watched {
 public:
  explicit Watched(const CWnd& window);
  explicit Watched(const CCmdTarget& target);

  bool IsThere() const;

 private:
  const CWnd* window_;
  HWND handle_;
  std::size_t ended_;
};

}  // namespace detail
}  // namespace dq
