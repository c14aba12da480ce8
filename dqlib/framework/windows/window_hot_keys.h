// Hot keys of windows: keys that reach them wherever the person types.

#pragma once

#include "dqlib/framework/windows/wnd.h"
#include "dqlib/platform/hot_keys.h"

namespace dq {

/// From now on `WM_HOTKEY` is posted to the window each time the key is pressed, with the id, and
/// as `MakeLParam` the modifiers and the key, until `UnregisterHotKey` or the window's end. `id` is
/// the key's own among those of the window, `modifiers` a sum of `HotKeyModifier` values, `key` a
/// virtual key. Errors are those of `platform::HotKeys`; `kInvalidArgument` for a window that isn't
/// made, or is another thread's.
platform::Error RegisterHotKey(const CWnd& window, int id, UINT modifiers, UINT key);

/// Gives the key back. `kNotFound` if the window has none with the id.
platform::Error UnregisterHotKey(const CWnd& window, int id);

}  // namespace dq
