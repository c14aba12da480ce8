// Keys that reach the program wherever the person types.

#pragma once

#include <cstdint>
#include <functional>

#include "dqlib/platform/error.h"
#include "dqlib/platform/types.h"

namespace dq {

/// Keys that are held while a hot key is pressed.
enum HotKeyModifier : UINT {
  MOD_ALT = 1,
  MOD_CONTROL = 2,
  MOD_SHIFT = 4,
};

namespace platform {

/// One hot key of a window.
struct HotKey {
  /// The window's handle, and a number that is the key's own among those of the window.
  std::uintptr_t window = 0;
  int id = 0;
  /// A sum of `HotKeyModifier` values.
  UINT modifiers = 0;
  /// A virtual key.
  UINT key = 0;
};

/// The hot keys of the system, for a host with windows, which puts the desktop's in place. On the
/// user-interface thread.
class HotKeys {
 public:
  HotKeys() = default;
  HotKeys(const HotKeys&) = delete;
  HotKeys& operator=(const HotKeys&) = delete;
  virtual ~HotKeys();

  /// From now on `on_press` is called each time the key is pressed, whichever program has the
  /// focus. `kAlreadyExists` if any program has the key, or the window one with the id;
  /// `kUnsupported` where there are no such keys, as without windows.
  virtual Error Register(const HotKey& hot_key, std::function<void()> on_press) = 0;

  /// Gives the key back. One that isn't registered is `kNotFound`.
  virtual Error Unregister(std::uintptr_t window, int id) = 0;
};

}  // namespace platform
}  // namespace dq
