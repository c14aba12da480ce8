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
  /// To a top-level window: it becomes the active one, or stops being it. The first argument is an
  /// `ActivateState`, the second the handle of the window on the other side, or 0.
  WM_ACTIVATE = 0x0006,
  WM_SETFOCUS = 0x0007,
  WM_KILLFOCUS = 0x0008,
  WM_ENABLE = 0x000A,
  /// Set the window's text to the one that the second argument points to, copy it to there, at most
  /// as many bytes as the first argument says with the zero behind it, and tell its length: 1, and
  /// the bytes without the zero. From other threads too, whose texts are good until the answer.
  WM_SETTEXT = 0x000C,
  WM_GETTEXT = 0x000D,
  WM_GETTEXTLENGTH = 0x000E,
  WM_CLOSE = 0x0010,
  /// To the main window: the person's session is about to end. An answer of 0 keeps it from that.
  WM_QUERYENDSESSION = 0x0011,
  WM_QUIT = 0x0012,
  /// The background is to be drawn on the `CDC` to which the first argument points.
  WM_ERASEBKGND = 0x0014,
  /// The desktop has other colours; see `SystemColorsChanged`.
  WM_SYSCOLORCHANGE = 0x0015,
  /// Whether the session ends, now that all programs have been asked: 1 or 0.
  WM_ENDSESSION = 0x0016,
  WM_SHOWWINDOW = 0x0018,
  /// The pointer is over the window: it may set its shape and answer 1.
  WM_SETCURSOR = 0x0020,
  /// A person presses the mouse: the top-level window's handle; the `HitTest` and the message of
  /// the press as two halves. What a window doesn't handle goes to its parent; the answer is a
  /// `MouseActivate`.
  WM_MOUSEACTIVATE = 0x0021,
  WM_GETMINMAXINFO = 0x0024,
  /// To the owner of an item that it draws, with the control's id (0 for a menu): the second
  /// argument points to a `DRAWITEMSTRUCT` or a `MEASUREITEMSTRUCT`.
  WM_DRAWITEM = 0x002B,
  WM_MEASUREITEM = 0x002C,
  /// To the parent of a list or tree, and before that to the control itself as reflected, before a
  /// key acts: the key, with the current row behind its 16 bits; the control's handle. The answer
  /// is -2 if the key has done all that it is to do, or -1.
  WM_VKEYTOITEM = 0x002E,
  WM_SETFONT = 0x0030,
  WM_GETFONT = 0x0031,
  WM_NOTIFY = 0x004E,
  WM_HELP = 0x0053,
  /// A person asks for a context menu: the window's handle and the place on the screen as two
  /// halves, both -1 if it was asked for by a key. What a window doesn't handle goes to its parent.
  WM_CONTEXTMENU = 0x007B,
  /// What of the window lies at a point of the screen: `HTCLIENT`, or `HTTRANSPARENT` where it lets
  /// the mouse through to a sibling below it.
  WM_NCHITTEST = 0x0084,
  /// Which keys a control wants for itself: a sum of `DialogCode` values.
  WM_GETDLGCODE = 0x0087,
  /// To an edit: put the selection's ends into the `DWORD`s to which the arguments point, if they
  /// aren't null; they are the answer too, as `CEdit::GetSel` has it, or -1.
  EM_GETSEL = 0x00B0,
  /// To an edit or the edit part of a control: select from the first argument to the second.
  EM_SETSEL = 0x00B1,
  /// To an edit: replace what is selected by the text to which the second argument points.
  EM_REPLACESEL = 0x00C2,
  /// To a button: its check mark (0 none, 1 set, 2 undetermined), and to set it.
  BM_GETCHECK = 0x00F0,
  BM_SETCHECK = 0x00F1,
  WM_KEYDOWN = 0x0100,
  WM_KEYUP = 0x0101,
  WM_CHAR = 0x0102,
  /// The same with the Alt key held down.
  WM_SYSKEYDOWN = 0x0104,
  WM_SYSKEYUP = 0x0105,
  WM_SYSCHAR = 0x0106,
  WM_INITDIALOG = 0x0110,
  WM_COMMAND = 0x0111,
  WM_TIMER = 0x0113,
  /// A scroll bar is used: a `ScrollCode`, with the position in the high word where one is dragged;
  /// the second argument is the control's handle, 0 for a bar of the window's own.
  WM_HSCROLL = 0x0114,
  WM_VSCROLL = 0x0115,
  /// A menu is about to drop down: its handle; the position in its menu as the second argument.
  WM_INITMENUPOPUP = 0x0117,
  /// An item of a menu is looked at: its id and, in the high word, its flags; 0xFFFF there and a
  /// null menu as the second argument when the menu is left.
  WM_MENUSELECT = 0x011F,
  /// A key without an item in the menu that is open: the character and, in the high word, what kind
  /// of menu it is (16 for one that drops down); the menu's handle. The answer's low word is a
  /// position, its high word 2 to choose the item, 0 to do nothing.
  WM_MENUCHAR = 0x0120,
  /// To a combo box: puts its rectangle on the screen with the list dropped down into the `CRect`
  /// to which the second argument points. 1, or 0 without such a pointer.
  CB_GETDROPPEDCONTROLRECT = 0x0152,
  /// The mouse: `MouseKey` bits, in the high word how far the wheel was turned (120 is a notch, up
  /// is positive); the place in client coordinates as two halves, that of the wheel on the screen.
  WM_MOUSEMOVE = 0x0200,
  WM_LBUTTONDOWN = 0x0201,
  WM_LBUTTONUP = 0x0202,
  WM_LBUTTONDBLCLK = 0x0203,
  WM_RBUTTONDOWN = 0x0204,
  WM_RBUTTONUP = 0x0205,
  WM_RBUTTONDBLCLK = 0x0206,
  WM_MBUTTONDOWN = 0x0207,
  WM_MBUTTONUP = 0x0208,
  WM_MBUTTONDBLCLK = 0x0209,
  WM_MOUSEWHEEL = 0x020A,
  /// The window has lost the mouse to the one in the second argument, or to none.
  WM_CAPTURECHANGED = 0x0215,
  WM_MDIDESTROY = 0x0221,
  WM_MDIACTIVATE = 0x0222,
  /// A system-wide key was pressed: its id; its modifiers and the key as two halves. See
  /// `RegisterHotKey`.
  WM_HOTKEY = 0x0312,
  /// The thread is idle: items that show commands are to be brought up to date.
  WM_IDLEUPDATECMDUI = 0x0363,
  /// The frame is complete: a view is to be brought up to date the first time.
  WM_INITIALUPDATE = 0x0364,
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
  BN_DOUBLECLICKED = 5,
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
  CBN_SETFOCUS = 3,
  CBN_KILLFOCUS = 4,
  CBN_EDITCHANGE = 5,
  CBN_EDITUPDATE = 6,
  CBN_DROPDOWN = 7,
  CBN_CLOSEUP = 8,
  CBN_SELENDOK = 9,
  CBN_SELENDCANCEL = 10,
};

/// Added to the number of a notification where the control that sent it gets it first.
inline constexpr UINT kReflectBase = 0xBC00;

/// Answers to `WM_NCHITTEST`.
enum HitTest : int { HTTRANSPARENT = -1, HTCLIENT = 1 };

/// Answers to `WM_MOUSEACTIVATE`: whether the windows around become active, and whether the press
/// is dropped then. Others count as the first.
enum MouseActivate : int {
  MA_ACTIVATE = 1,
  MA_ACTIVATEANDEAT = 2,
  MA_NOACTIVATE = 3,
  MA_NOACTIVATEANDEAT = 4,
};

/// First argument of `WM_ACTIVATE`, in its low word.
enum ActivateState : UINT {
  WA_INACTIVE = 0,
  WA_ACTIVE = 1,
  /// By a click.
  WA_CLICKACTIVE = 2,
};

/// Bits of the answer to `WM_GETDLGCODE`.
enum DialogCode : UINT {
  DLGC_WANTARROWS = 1,
  DLGC_WANTTAB = 2,
  /// Enter and Escape too.
  DLGC_WANTALLKEYS = 4,
  DLGC_HASSETSEL = 8,
  DLGC_DEFPUSHBUTTON = 0x10,
  DLGC_UNDEFPUSHBUTTON = 0x20,
  DLGC_RADIOBUTTON = 0x40,
  DLGC_WANTCHARS = 0x80,
  DLGC_STATIC = 0x100,
  DLGC_BUTTON = 0x2000,
};

/// Bits of a mouse message: what is held down.
enum MouseKey : UINT {
  MK_LBUTTON = 1,
  MK_RBUTTON = 2,
  MK_SHIFT = 4,
  MK_CONTROL = 8,
  MK_MBUTTON = 16
};

/// Virtual key numbers. Letters and digits have those of their upper-case characters.
enum VirtualKey : WORD {
  VK_BACK = 0x08,
  VK_TAB = 0x09,
  VK_RETURN = 0x0D,
  VK_SHIFT = 0x10,
  VK_CONTROL = 0x11,
  VK_MENU = 0x12,
  VK_CAPITAL = 0x14,
  VK_ESCAPE = 0x1B,
  VK_SPACE = 0x20,
  VK_PRIOR = 0x21,
  VK_NEXT = 0x22,
  VK_END = 0x23,
  VK_HOME = 0x24,
  VK_LEFT = 0x25,
  VK_UP = 0x26,
  VK_RIGHT = 0x27,
  VK_DOWN = 0x28,
  VK_INSERT = 0x2D,
  VK_DELETE = 0x2E,
  VK_APPS = 0x5D,
  VK_ADD = 0x6B,
  VK_SUBTRACT = 0x6D,
  VK_F1 = 0x70,
  VK_F4 = 0x73,
  VK_F6 = 0x75,
  VK_F10 = 0x79,
};

/// The bar of a window that scrolls, and how it is used.
enum ScrollBar : int { SB_HORZ = 0, SB_VERT = 1 };
enum ScrollCode : int {
  SB_LINEUP = 0,
  SB_LINEDOWN = 1,
  SB_PAGEUP = 2,
  SB_PAGEDOWN = 3,
  /// Let go at a position, and dragged over it.
  SB_THUMBPOSITION = 4,
  SB_THUMBTRACK = 5,
  SB_TOP = 6,
  SB_BOTTOM = 7,
  SB_ENDSCROLL = 8,
};

/// The first argument of `WM_HSCROLL` and `WM_VSCROLL`, and the position in it: of all its 32 bits,
/// where the half that callers know has 16.
constexpr WPARAM MakeScrollParam(ScrollCode code, int position) {
  return static_cast<WPARAM>(static_cast<UINT>(position)) << 16 | static_cast<WPARAM>(code);
}
constexpr int ScrollPositionOf(WPARAM wparam) {
  return static_cast<int>(static_cast<UINT>(wparam >> 16));
}

/// A scroll bar: the ends of what it runs over, how much of it is in sight, and where. There is no
/// bar while all is in sight.
struct SCROLLINFO {
  int nMin = 0;
  int nMax = 0;
  int nPage = 0;
  int nPos = 0;

  friend bool operator==(const SCROLLINFO&, const SCROLLINFO&) = default;
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
  ID_FILE_PRINT = 57607,
  /// Apply in a sheet of pages.
  ID_APPLY_NOW = 0x3021,
  // Commands of documents and of the application.
  ID_FILE_NEW = 57600,
  ID_FILE_OPEN = 57601,
  ID_FILE_CLOSE = 57602,
  ID_FILE_SAVE = 57603,
  ID_FILE_SAVE_AS = 57604,
  ID_FILE_SEND_MAIL = 57612,
  /// The recent files, the latest first.
  ID_FILE_MRU_FIRST = 57616,
  ID_FILE_MRU_LAST = 57631,
  ID_EDIT_CLEAR = 57632,
  ID_EDIT_CLEAR_ALL = 57633,
  ID_EDIT_COPY = 57634,
  ID_EDIT_CUT = 57635,
  ID_EDIT_PASTE = 57637,
  ID_EDIT_SELECT_ALL = 57642,
  ID_APP_EXIT = 57665,
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

/// What comes along the command route with a notification by `WM_NOTIFY`.
struct AFX_NOTIFY {
  LRESULT* pResult = nullptr;
  NMHDR* pNMHDR = nullptr;
};

/// The code of the command route for a notification by `WM_NOTIFY`: its low 16 bits, and the
/// message in the high word.
constexpr int NotifyCode(int code) {
  return static_cast<int>(static_cast<UINT>(WM_NOTIFY) << 16 | (static_cast<UINT>(code) & 0xFFFF));
}

/// Two 16-bit halves of a message argument, and the argument of two halves.
constexpr WORD LoWord(WPARAM value) { return static_cast<WORD>(value & 0xFFFF); }
constexpr WORD HiWord(WPARAM value) { return static_cast<WORD>((value >> 16) & 0xFFFF); }
constexpr WPARAM MakeWParam(UINT low, UINT high) {
  return (static_cast<WPARAM>(high & 0xFFFF) << 16) | (low & 0xFFFF);
}
/// The point of two 16-bit halves, each with a sign.
constexpr CPoint PointOfParam(LPARAM value) {
  const WPARAM halves = static_cast<WPARAM>(value);
  return {static_cast<short>(LoWord(halves)), static_cast<short>(HiWord(halves))};
}
constexpr LPARAM MakeLParam(int low, int high) {
  return static_cast<LPARAM>(MakeWParam(static_cast<UINT>(low), static_cast<UINT>(high)));
}

}  // namespace dq
