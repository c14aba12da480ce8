// Windows without a screen: a handle, a class name, a place in the tree of windows, a text, a
// rectangle, and messages. A window layer draws them by observing them (see `window_observer.h`).

#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <string_view>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/windows/cmd_target.h"
#include "dqlib/framework/windows/window_observer.h"

namespace dq {

class CDC;
class CDataExchange;
class CFont;
class CFrameWnd;
class CMenu;
struct MenuHandle;
namespace detail {
class AllSteps;
}
namespace platform {
struct DialogControl;
}

/// How a window begins its life. Members may be left out: `{.class_name = "Edit", .id = 3}`.
struct WindowCreation {
  std::string_view class_name;
  std::string_view text = {};
  /// In the parent's client coordinates, or the screen's without a parent.
  CRect place = {};
  /// The size in `place` is that of the client area: the frame is added to it.
  bool client_size = false;
  /// It lies in the middle of its owner, or of the screen without one; see `CWnd::CenterWindow`.
  bool centered = false;
  CWnd* parent = nullptr;
  /// Owner of a window without a parent: it ends before its owner does.
  CWnd* owner = nullptr;
  int id = 0;
  bool visible = true;
  bool enabled = true;
};

/// A window. It belongs to the thread that created it, which alone may touch it; only
/// `SendMessage`, `PostMessage` and `GetSafeHwnd` may be called from other threads, which see to it
/// that the object outlives the call. When its thread ends, the window's handle is dead.
///
/// Operations on a window that isn't made do nothing and answer as the comment says, or else 0,
/// false, null or "".
class CWnd : public CCmdTarget {
  DECLARE_DYNAMIC(CWnd)
  CWnd();
  /// Ends the window. A calling thread that has it as its main window has none afterwards.
  ~CWnd() override;

  /// Makes the window for the calling thread, with the frame that the window layer gives it. Its
  /// first message is `WM_CREATE`, with the creation's address as its second argument; a result of
  /// -1 refuses, and the window ends. `WM_SIZE` and `WM_MOVE` follow. Returns false if
  /// it is made already, the parent or owner isn't or is about to end, or the program's static
  /// objects are taken down.
  bool CreateWnd(const WindowCreation& creation);
  /// The same with a class name and nothing else; null counts as "".
  bool CreateWnd(const char* class_name);

  /// Ends the window with its descendants and the windows it owns. If it has the focus, or one
  /// below it has, the window around gets that first. `WM_DESTROY` reaches all of them, parents
  /// first, while they are still there. Afterwards their handles are dead, their timers and posted
  /// messages gone, senders that wait released with 0 (a message that is being handled still gets
  /// its answer), and each gets `PostNcDestroy`, children first. Where the active window was among
  /// them, the window around or the owner becomes active, unless that is disabled. All of them end
  /// even if a handler throws;
  /// the first exception goes on afterwards. Returns false if there is no window or it is ending
  /// already.
  virtual BOOL DestroyWindow();

  HWND GetSafeHwnd() const { return m_hWnd; }
  /// The window of a handle, or null if it is dead. On the window's thread.
  static CWnd* FromHandle(HWND window);

  /// Has the window handle the message at once and returns its result. From another thread it
  /// blocks until the window's thread has pumped its queue and handled it; meanwhile messages that
  /// others send to windows of the calling thread are handled. A window that isn't made, or ends
  /// first, answers 0, and so does one whose handler is left by an exception; that goes on in the
  /// window's thread.
  LRESULT SendMessage(UINT message, WPARAM wparam = 0, LPARAM lparam = 0);
  /// Queues the message for the window's thread. False if the window is dead. It is dropped if the
  /// window ends before its turn.
  bool PostMessage(UINT message, WPARAM wparam = 0, LPARAM lparam = 0);
  /// Sends to all descendants, a window's children in order before its next sibling; with `deep`
  /// false to the children alone. Windows that end meanwhile are left out.
  void SendMessageToDescendants(UINT message, WPARAM wparam = 0, LPARAM lparam = 0,
                                bool deep = true);

  /// Sends `WM_TIMER` with the id through the message loop each time so many milliseconds have
  /// passed; one that is late comes once. Below 10 counts as 10, more than 2^31 - 1 (so any
  /// negative number) as that. A timer with the id is started anew. Returns the id, 0 if it failed.
  UINT SetTimer(UINT id, UINT milliseconds);
  bool KillTimer(UINT id);

  // What it is.

  /// "" for a window that isn't made.
  const std::string& GetWindowClass() const { return class_name_; }
  /// The id by which its parent knows it.
  int GetDlgCtrlID() const { return id_; }
  void SetDlgCtrlID(int id);
  /// The text: caption of a frame or dialog, content of an edit control. A null text counts as "".
  void SetWindowText(const char* text);
  CString GetWindowText() const { return OnGetText(); }
  int GetWindowTextLength() const { return OnGetTextLength(); }

  // Its place in the tree.

  CWnd* GetParent() const { return parent_; }
  /// Moves it to another parent, behind that one's children, or to the top level (null). If the new
  /// parent belongs to a window that this one owns, it is owned no longer.
  CWnd* SetParent(CWnd* parent);
  /// The owner of a window without a parent.
  CWnd* GetOwner() const { return owner_; }
  /// Itself or the nearest ancestor without a parent.
  CWnd* GetTopLevelParent();
  /// The nearest ancestor that is a frame, or null.
  CFrameWnd* GetParentFrame() const;
  /// First child from the top, the next and previous sibling towards the bottom and the top.
  /// New children come in at the bottom.
  CWnd* GetTopWindow() const { return first_child_; }
  CWnd* GetNextWindow() const { return next_; }
  CWnd* GetPrevWindow() const { return previous_; }
  /// The first child with the id, or null. Constant time.
  CWnd* GetDlgItem(int id) const;
  /// Whether `other` is below this one.
  bool IsChild(const CWnd* other) const;
  /// The deepest visible window at a point of the screen, itself or below it; null if the point is
  /// outside of it. Of siblings the topmost.
  CWnd* WindowAt(const CPoint& screen);
  /// Puts it behind a sibling, or with null before all.
  void SetWindowOrder(CWnd* after);

  // Its place on the screen, in pixels.

  /// Moves and sizes it, in the parent's client coordinates; a negative width or height counts as
  /// 0. A move sends `WM_MOVE`, another size `WM_SIZE` with the client size. `repaint` invalidates
  /// it.
  void MoveWindow(int x, int y, int width, int height, bool repaint = true);
  void MoveWindow(const CRect& place, bool repaint = true);
  /// In screen coordinates.
  CRect GetWindowRect() const;
  /// From 0, 0 to the client size: the window without its frame.
  CRect GetClientRect() const;
  /// In the parent's client coordinates.
  const CRect& GetPlace() const { return place_; }
  /// What the frame takes on each side: as the window layer said when the window was made, 0
  /// without one. `UpdateFrameWidths` asks again, and sends `WM_SIZE` if the client size is another
  /// then.
  const CRect& GetFrameWidths() const { return frame_widths_; }
  void UpdateFrameWidths();
  /// Moves it to the middle of another window (null: its parent's client area, its owner, or the
  /// screen), but not beyond the screen's edges, or its parent's.
  void CenterWindow(const CWnd* in = nullptr);
  /// Whether a person can drag its edges: a window layer asks. Frames can be sized, the base can't.
  virtual bool IsSizable() const { return false; }
  CPoint ClientToScreen(const CPoint& point) const;
  CPoint ScreenToClient(const CPoint& point) const;
  CRect ScreenToClient(const CRect& rect) const;

  /// Shows, hides, minimises, maximises; a `ShowCommand`. Sends `WM_SHOWWINDOW` when visibility
  /// changes, and as the state changes `WM_MOVE`, if its corner moves, and `WM_SIZE`. Where it lies
  /// when it is maximised is the answer to `WM_GETMINMAXINFO`. `SW_RESTORE` makes a minimised
  /// window what it was before, `SW_SHOWNORMAL` neither minimised nor maximised. What has the focus
  /// in a window that is hidden leaves it to the window around. Returns whether it was visible.
  bool ShowWindow(int command);
  /// Its own state, and whether it and all its ancestors are visible.
  bool IsShown() const { return visible_; }
  bool IsWindowVisible() const;
  bool IsZoomed() const { return state_ == SIZE_MAXIMIZED; }
  bool IsIconic() const { return state_ == SIZE_MINIMIZED; }
  /// False, and `placement` unchanged, if the window isn't made.
  bool GetWindowPlacement(WINDOWPLACEMENT* placement) const;
  bool SetWindowPlacement(const WINDOWPLACEMENT* placement);

  /// Returns whether it was disabled. Sends `WM_ENABLE` on a change. A window that is disabled
  /// loses the focus and the mouse.
  bool EnableWindow(bool enable = true);
  bool IsWindowEnabled() const { return enabled_; }
  /// Gives it the keyboard: `WM_KILLFOCUS` to the former window, `WM_SETFOCUS` to this one, and
  /// `OnTurnTo` to all around it. Returns the former. Nothing happens if it or one above is
  /// disabled; a hidden one can have it.
  CWnd* SetFocus();
  /// Whether it can get the focus: it and all above it are enabled, and none of them is ending.
  bool CanHaveFocus() const;
  /// The window of the calling thread that has the focus, or null.
  static CWnd* GetFocus();
  /// Has the mouse's messages come to this window, wherever the pointer is, until it is released or
  /// another one takes it; who had it gets `WM_CAPTURECHANGED`.
  CWnd* SetCapture();
  static CWnd* GetCapture();
  static void ReleaseCapture();
  /// Makes it, or the top-level window around it, the active one of the thread's top-level windows,
  /// and returns the former: that one gets `WM_ACTIVATE` with `WA_INACTIVE`, this one with
  /// `by_click` or `WA_ACTIVE`. What had the focus in a window when it stopped being active gets it
  /// back, unless another one was to have it then; else the window itself does. One that is
  /// disabled doesn't become active.
  CWnd* SetActiveWindow(bool by_click = false);
  static CWnd* GetActiveWindow();
  /// None of the thread's windows is active any more: the person works with another program.
  static void LeaveActiveWindow();

  /// Marks it, or a part of it in client coordinates, to be drawn; `erase`: its background first.
  void Invalidate(bool erase = true);
  void InvalidateRect(const CRect& rect, bool erase = true);
  /// What is to be drawn; empty if nothing. `erase`, if not null, takes whether the background is
  /// to be erased.
  CRect GetUpdateRect(bool* erase = nullptr) const;
  /// Counts it as drawn, as a window layer does when it has drawn it.
  void ValidateRect();
  /// Draws the window's client area: for a window layer, where it has no native control for the
  /// window. `dc` has client coordinates, and is clipped to what is to be drawn; `WM_ERASEBKGND`
  /// gets its address first. Its state is the same afterwards, and the window counts as drawn.
  void Paint(CDC& dc);

  /// The window's main menu: the object that has it at present; null without one, and once it has
  /// been destroyed. Not owned.
  CMenu* GetMenu() const;
  void SetMenu(CMenu* menu);

  /// The font of its text; null is the dialogs' own. Not owned. Sent as `WM_SETFONT`.
  CFont* GetFont() const { return font_; }
  void SetFont(CFont* font, bool redraw = true);

  /// The text that explains it when the pointer rests on it; "" for none. Set by the
  /// `CToolTipCtrl` that has it as a tool.
  const CString& GetToolTip() const { return tool_tip_; }
  void SetToolTip(const CString& text);

  /// A scroll bar of the window's own. `SetScrollInfo` keeps the position within the range; a
  /// person's use of it comes as `WM_HSCROLL` or `WM_VSCROLL`.
  SCROLLINFO GetScrollInfo(ScrollBar bar) const { return scroll_[bar]; }
  void SetScrollInfo(ScrollBar bar, const SCROLLINFO& info);
  int GetScrollPos(ScrollBar bar) const { return scroll_[bar].nPos; }
  int SetScrollPos(ScrollBar bar, int position);

  // Dialogs and controls.

  /// Moves values from the controls to the variables (`save`), or the other way, by
  /// `DoDataExchange`. False if it failed, or runs already for this window; the control that failed
  /// has the focus then. See `data_exchange.h`.
  BOOL UpdateData(BOOL save = 1);
  void SetDlgItemText(int id, const char* text);
  /// "" if there is no such control.
  CString GetDlgItemText(int id) const;
  void SetDlgItemInt(int id, int value);
  void CheckDlgButton(int id, int check);
  int IsDlgButtonChecked(int id) const;
  /// Checks one of a range of radio buttons and takes the mark from the others.
  void CheckRadioButton(int first_id, int last_id, int id);
  int GetCheckedRadioButton(int first_id, int last_id) const;
  /// Brings the controls up to date by the update handlers that `target` and its route have for
  /// their ids; with `disable_if_no_handler`, push buttons whose command nobody handles are
  /// disabled. Handlers may end any of them, and this window.
  void UpdateDialogControls(CCmdTarget& target, bool disable_if_no_handler);
  /// Takes the place of the window that `parent` has under the id, with its handle and, where both
  /// are of one kind of control, all it holds. That window's object isn't a window any more. False,
  /// and no change, if this one is made already or there is no such window.
  bool SubclassDlgItem(int id, CWnd* parent);

  /// Handles a message, or gives it to `DefWindowProc`. The one way in for all messages.
  virtual LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam);
  /// Commands go to the window's own handlers.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;
  /// Looks at a queued message before it is dispatched; true keeps it from that.
  virtual BOOL PreTranslateMessage(MSG* message);

  /// What the person who answers a dialog sees of it as a control, and what they enter: see
  /// `platform/dialog_view.h`. The base shows its text and takes nothing.
  virtual void Describe(platform::DialogControl& control) const;
  virtual bool Enter(std::string_view value);
  /// A person presses it. The base takes no press.
  virtual bool Press();
  /// Whether a dialog's focus stops at it on its way from control to control.
  virtual bool IsTabStop() const { return false; }

  /// Null while the window isn't made. Read only.
  std::atomic<HWND> m_hWnd = nullptr;

 protected:
  /// Finds a handler. `WM_COMMAND` goes to `OnCommand`, `WM_NOTIFY` to `OnNotify`, others to the
  /// handlers of the class. False if there is none.
  virtual BOOL OnWndMsg(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result);
  /// The first argument holds the id and, in its high word, the notification code; the second the
  /// control's handle, 0 for a menu item or accelerator.
  virtual BOOL OnCommand(WPARAM wparam, LPARAM lparam);
  virtual BOOL OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result);
  /// What a window does by itself: `WM_SETTEXT` and its kin are about its text, `WM_CLOSE` destroys
  /// it, `WM_GETMINMAXINFO` answers with the screen's size, and for a maximised child its parent's
  /// client area, one that becomes active takes the focus, the right button asks for the context
  /// menu as the key for it does, and what the wheel, the context menu and a press ask for goes on
  /// to the parent.
  virtual LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam);
  /// A person turns to `window`, this one or one below it: they press the mouse there, or the focus
  /// has come. The windows around are told first. The base does nothing; a child frame becomes the
  /// active one, and the nearest view that of its frame.
  virtual void OnTurnTo(CWnd& /*window*/) {}
  /// A notification of this control that its parent has got (`WM_COMMAND`, `WM_NOTIFY`,
  /// `WM_DRAWITEM`, `WM_MEASUREITEM`, `WM_VKEYTOITEM`): the control may keep it from the parent
  /// by 1. The base has the handlers of the class that are entered as reflected.
  virtual BOOL OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result);
  /// Draws the client area. The base draws nothing.
  virtual void OnPaint(CDC& /*dc*/) {}
  /// The last call for a window that ended. An object that was made by `new` may delete itself
  /// here.
  virtual void PostNcDestroy() {}
  /// Moves values between controls and variables, as `exchange` says.
  virtual void DoDataExchange(CDataExchange* exchange);

  /// For the destructor of each class whose window's handlers need that class's own members: ends
  /// the window by the class's `DestroyWindow`. What a handler throws is traced.
  void EndInDestructor();

  /// Where the text is kept: in the window, unless a control has a model of its own.
  virtual CString OnGetText() const { return text_; }
  virtual int OnGetTextLength() const { return OnGetText().GetLength(); }
  virtual void OnSetText(const char* text) { text_ = text; }
  /// `SetWindowText` has set the text of the window, and the observer knows.
  virtual void OnTextWasSet() {}
  /// Takes over what a window of the same kind held, when this one takes its place.
  virtual void OnSubclassed(CWnd& /*former*/) {}

  /// Gives it the focus if its top-level window is the active one, and else has it get the focus
  /// when that becomes it. What has the focus below it keeps it.
  void FocusWhenActive();

  /// Tells the observer; `range` says which rows, items or bytes the change is about.
  void Changed(WindowChange change, const ChangedRange& range = {});
  /// Sends the parent `WM_COMMAND` with the window's id and the notification code.
  void NotifyParent(int code);

 private:
  friend LRESULT SendToWindow(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  friend bool MouseInput(UINT message, WPARAM keys, const CPoint& screen, CWnd* under);
  friend bool OfferKey(MSG message);
  struct ChildIndex;

  void Link(CWnd* parent, CWnd* after);
  void Unlink();
  void SetState(UINT state);
  MINMAXINFO UsualLimits() const;
  CRect MaximizedPlace();
  void SendSize();
  void LeaveOwner();
  void TakePlaceOf(CWnd& former);
  HWND HeirOfActivity() const;
  bool DestroyOwned(detail::AllSteps& steps);
  void TakeDownTree(detail::AllSteps& steps);
  void TakeDown(detail::AllSteps& steps);
  bool HasWithin(const CWnd* window) const { return window == this || IsChild(window); }
  void TellTurnTo(bool while_focused);
  static void LeaveFocus(const CWnd& window, bool pass_on);
  static void LeaveCapture(const CWnd& window);
  void PassActivity();
  static void Activate(HWND now, UINT state);
  static CWnd* HandCapture(HWND now);
  void TakeFrameWidths();
  CRect CenteredPlace(const CWnd* in) const;
  bool IsHit(const CPoint& screen);
  void TakeFocusBack();
  LRESULT KeyDown(WPARAM key);
  BOOL ReflectNotification(HWND control, UINT message, WPARAM wparam, LPARAM lparam,
                           LRESULT* result);

  CString text_;
  std::string class_name_;
  CRect place_;
  CRect frame_widths_;
  CRect update_;
  WINDOWPLACEMENT placement_;
  CWnd* parent_ = nullptr;
  CWnd* owner_ = nullptr;
  CWnd* first_child_ = nullptr;
  CWnd* last_child_ = nullptr;
  CWnd* next_ = nullptr;
  CWnd* previous_ = nullptr;
  /// Windows that this one owns.
  CWnd* first_owned_ = nullptr;
  CWnd* next_owned_ = nullptr;
  CWnd* previous_owned_ = nullptr;
  MenuHandle* menu_ = nullptr;
  CFont* font_ = nullptr;
  CString tool_tip_;
  SCROLLINFO scroll_[2];
  /// What below it gets the focus when it becomes active: what had it, unless another one was to.
  HWND last_focus_ = nullptr;
  /// The children by id, once somebody has asked for one.
  mutable std::unique_ptr<ChildIndex> children_by_id_;
  int id_ = 0;
  UINT state_ = SIZE_RESTORED;
  bool visible_ = false;
  bool enabled_ = true;
  bool erase_ = false;
  bool destroying_ = false;
  bool exchanging_ = false;
};

/// `CWnd::SendMessage` and `PostMessage` by handle: a dead or null handle answers 0 and false. Any
/// thread.
LRESULT SendToWindow(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
bool PostToWindow(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

/// Copies the name of the window's class to `buffer`, cut to `size` - 1 bytes and zero-ended, and
/// returns its length; 0 for a dead handle, a null buffer or a size below 1. Any thread.
int GetWindowClassName(HWND window, char* buffer, int size);

}  // namespace dq
