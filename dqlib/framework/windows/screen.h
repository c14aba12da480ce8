// The screen, the keyboard and the pointer, as a window layer reports them. On the user-interface
// thread.

#pragma once

#include <string_view>

#include "dqlib/framework/base/geometry.h"
#include "dqlib/platform/types.h"

namespace dq {

class CWnd;
struct LOGFONT;

/// Width and height of the primary screen in pixels. 1920 by 1080 until a window layer reports the
/// real one.
CSize GetScreenSize();
void SetScreenSize(const CSize& size);

/// Numbers of what `GetSystemMetrics` tells, in pixels.
enum SystemMetric : int {
  SM_CXSCREEN = 0,
  SM_CYSCREEN = 1,
  /// Width of a vertical scroll bar, height of a horizontal one.
  SM_CXVSCROLL = 2,
  SM_CYHSCROLL = 3,
  SM_CYCAPTION = 4,
  SM_CXICON = 11,
  SM_CYICON = 12,
  /// Height of a menu bar of one line.
  SM_CYMENU = 15,
  SM_CXSMICON = 49,
  SM_CYSMICON = 50,
  /// How far the pointer moves before a press is a drag.
  SM_CXDRAG = 68,
  SM_CYDRAG = 69,
};

/// A number of the window layer's, or a usual one without a layer; 0 for a number that is none.
int GetSystemMetrics(int metric);

/// Of the answer of `GetKeyState`.
inline constexpr int kKeyDown = 0x8000;
inline constexpr int kKeyLocked = 1;

/// How a key stood, by its virtual key number, at the event that is being handled: `kKeyDown` and
/// `kKeyLocked`. 0 without a window layer.
int GetKeyState(int key);
/// Whether a key was down at that event.
bool IsKeyDown(int key);

/// The pointer's place on the screen; 0, 0 without a window layer.
CPoint GetPointerPos();

/// How large a line of text is on the screen, in pixels: in a font, where null is the dialogs' own,
/// and in the font of a window. For menus that font is the stock font 17. Without a window layer
/// every character is 7 wide, and lines are 13 high.
CSize GetTextExtent(const LOGFONT* font, std::string_view text);
CSize GetTextExtent(const CWnd& window, std::string_view text);

/// For a window layer: the desktop has other colours (`GetSysColor`). All windows of the calling
/// thread get `WM_SYSCOLORCHANGE`, the older ones first, and are drawn anew.
void SystemColorsChanged();

/// Sounds as a message box of the type (`BoxType`) would; -1 for a simple beep. Silent without a
/// window layer.
void MessageBeep(UINT type);

/// What the pointer looks like.
enum class PointerShape { kArrow, kText, kWait, kCross, kHand, kSizeLeftRight, kSizeUpDown, kNo };

/// Gives the pointer a shape, until it moves over another window: for handlers of `WM_SETCURSOR`.
void SetPointerShape(PointerShape shape);

/// Shows the wait pointer for its lifetime; they nest.
class CWaitCursor {
 public:
  CWaitCursor();
  CWaitCursor(const CWaitCursor&) = delete;
  CWaitCursor& operator=(const CWaitCursor&) = delete;
  ~CWaitCursor();
};

}  // namespace dq
