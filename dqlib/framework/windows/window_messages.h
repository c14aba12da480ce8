// Numbers of window messages, notification codes and commands, as the family's tools exchange them.

#pragma once

#include "dqlib/framework/base/geometry.h"
#include "dqlib/platform/types.h"

namespace dq {

enum WindowMessage : UINT {
  WM_CREATE = 0x0001,
  WM_DESTROY = 0x0002,
  WM_MOVE = 0x0003,
  WM_SIZE = 0x0005,
  WM_SETFOCUS = 0x0007,
  WM_KILLFOCUS = 0x0008,
  WM_ENABLE = 0x000A,
  WM_CLOSE = 0x0010,
  WM_QUIT = 0x0012,
  WM_SHOWWINDOW = 0x0018,
  WM_GETMINMAXINFO = 0x0024,
  WM_NOTIFY = 0x004E,
  WM_HELP = 0x0053,
  /// To an edit control or the edit part of one: select from the first argument to the second.
  EM_SETSEL = 0x00B1,
  /// To a button: its check mark (0 none, 1 set, 2 undetermined), and to set it.
  BM_GETCHECK = 0x00F0,
  BM_SETCHECK = 0x00F1,
  WM_KEYDOWN = 0x0100,
  WM_KEYUP = 0x0101,
  WM_CHAR = 0x0102,
  WM_INITDIALOG = 0x0110,
  WM_COMMAND = 0x0111,
  WM_TIMER = 0x0113,
  /// To a combo box: puts its rectangle on the screen with the list dropped down into the `CRect`
  /// to which the second argument points. 1, or 0 without such a pointer.
  CB_GETDROPPEDCONTROLRECT = 0x0152,
  WM_MDIDESTROY = 0x0221,
  WM_MDIACTIVATE = 0x0222,
  /// The thread is idle: items that show commands are to be brought up to date.
  WM_IDLEUPDATECMDUI = 0x0363,
  /// Private numbers of window classes begin here, and those of applications.
  WM_USER = 0x0400,
  WM_APP = 0x8000,
};

/// What is handled when a command comes along a command route: a command, or the update of what
/// shows it. Other codes are those of notifications.
enum CommandCode : int {
  CN_COMMAND = 0,
  CN_UPDATE_COMMAND_UI = -1,
};

/// Notifications of controls: the high word of the first argument of `WM_COMMAND`.
enum NotificationCode : int {
  BN_CLICKED = 0,
  EN_SETFOCUS = 0x0100,
  EN_KILLFOCUS = 0x0200,
  EN_CHANGE = 0x0300,
  EN_UPDATE = 0x0400,
  EN_MAXTEXT = 0x0501,
  LBN_SELCHANGE = 1,
  LBN_DBLCLK = 2,
  /// Of a list with check marks: one of them has changed.
  CLBN_CHKCHANGE = 40,
  CBN_SELCHANGE = 1,
  CBN_EDITCHANGE = 5,
};

/// First argument of `WM_SIZE`.
enum SizeType : UINT { SIZE_RESTORED = 0, SIZE_MINIMIZED = 1, SIZE_MAXIMIZED = 2 };

/// How `CWnd::ShowWindow` shows a window.
enum ShowCommand : int {
  SW_HIDE = 0,
  SW_SHOWNORMAL = 1,
  SW_SHOWMINIMIZED = 2,
  SW_SHOWMAXIMIZED = 3,
  SW_SHOWNOACTIVATE = 4,
  SW_SHOW = 5,
  SW_MINIMIZE = 6,
  SW_SHOWMINNOACTIVE = 7,
  SW_SHOWNA = 8,
  SW_RESTORE = 9,
};

/// Bits of `WINDOWPLACEMENT::flags`.
enum PlacementFlag : UINT {
  /// Of a minimised window: `SW_RESTORE` makes it maximised, as it was before.
  WPF_RESTORETOMAXIMIZED = 2,
};

/// Ids that every program uses alike.
enum CommonId : int {
  IDOK = 1,
  IDCANCEL = 2,
  IDABORT = 3,
  IDRETRY = 4,
  IDIGNORE = 5,
  IDYES = 6,
  IDNO = 7,
  /// Help on the dialog.
  ID_HELP = 9,
  /// Apply in a sheet of pages.
  ID_APPLY_NOW = 0x3021,
};

/// Answer to `WM_GETMINMAXINFO`: sizes of a window in pixels, and where it lies when maximised.
struct MINMAXINFO {
  CPoint ptReserved;
  CPoint ptMaxSize;
  CPoint ptMaxPosition;
  CPoint ptMinTrackSize;
  CPoint ptMaxTrackSize;
};

/// How a window is shown, and the rectangle it has when it is neither minimised nor maximised; that
/// one is in coordinates of the work area for a top-level window. Stored as it stands: 44 bytes.
struct WINDOWPLACEMENT {
  UINT length = 44;
  UINT flags = 0;
  UINT showCmd = SW_SHOWNORMAL;
  CPoint ptMinPosition{-1, -1};
  CPoint ptMaxPosition{-1, -1};
  CRect rcNormalPosition;

  friend bool operator==(const WINDOWPLACEMENT&, const WINDOWPLACEMENT&) = default;
};
static_assert(sizeof(WINDOWPLACEMENT) == 44);

/// What a window is made with.
struct CREATESTRUCT {
  const char* lpszName = nullptr;
  const char* lpszClass = nullptr;
  DWORD style = 0;
  int x = 0;
  int y = 0;
  int cx = 0;
  int cy = 0;
};

/// A message as a queue holds it.
struct MSG {
  HWND hwnd = nullptr;
  UINT message = 0;
  WPARAM wParam = 0;
  LPARAM lParam = 0;
};

/// Head of what `WM_NOTIFY` points to.
struct NMHDR {
  HWND hwndFrom = nullptr;
  UINT idFrom = 0;
  int code = 0;
};

/// Two 16-bit halves of a message argument, and the argument of two halves.
constexpr WORD LoWord(WPARAM value) { return static_cast<WORD>(value & 0xFFFF); }
constexpr WORD HiWord(WPARAM value) { return static_cast<WORD>((value >> 16) & 0xFFFF); }
constexpr WPARAM MakeWParam(UINT low, UINT high) {
  return (static_cast<WPARAM>(high & 0xFFFF) << 16) | (low & 0xFFFF);
}
constexpr LPARAM MakeLParam(int low, int high) {
  return static_cast<LPARAM>(MakeWParam(static_cast<UINT>(low), static_cast<UINT>(high)));
}

}  // namespace dq
