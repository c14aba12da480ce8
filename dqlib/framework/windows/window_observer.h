// Where a window layer attaches: it learns of every window and of every change of one, is asked
// what only a screen can tell, and brings the events of its native windows into the message loop.
// `docs/window-layer.md` tells what a layer does with it.

#pragma once

#include <string_view>

#include "dqlib/framework/base/geometry.h"
#include "dqlib/platform/types.h"

namespace dq {

class COleDataObject;
class COleDropSource;
class CWnd;
struct LOGFONT;
struct MenuHandle;
enum class PointerShape;

/// What has changed about a window.
enum class WindowChange {
  kCreated,
  /// The handle is dead; the object may be in its destructor.
  kDestroyed,
  /// Another object has taken the window over; the handle is the same.
  kReplaced,
  kText,
  kRectangle,
  kShown,
  kEnabled,
  /// The window has got the focus, or lost it.
  kFocus,
  /// Something of it must be drawn; see `CWnd::GetUpdateRect`.
  kInvalidated,
  /// Its place among its siblings, or its parent.
  kOrder,
  /// Another main menu.
  kMenu,
  /// It became active among its parent's children, or among the top-level windows, or stopped.
  kActive,
  /// What a control holds besides its text and rows: check marks, range, limits, style.
  kContent,
  /// What is selected in a text or among items; of a date the range has the bytes of the part.
  kSelection,
  /// Rows, buttons or tabs came in: those of the range are new.
  kRowsInserted,
  /// They went: so many, where the first of the range was.
  kRowsRemoved,
  /// Those of the range have another text, mark or state; 0, 0 for all, and how many there are.
  kRowsChanged,
  /// The id by which its parent knows it.
  kId,
  /// It has got the mouse capture, or lost it.
  kCapture,
  /// The text of its tool tip; see `CWnd::GetToolTip`.
  kToolTip,
  kFont,
  /// Range, page or position of a scroll bar of its own.
  kScroll,
};

/// What has changed about a menu.
enum class MenuChange {
  /// Its items: those of the range came in, went, or have another text, state or mark.
  kItemsInserted,
  kItemsRemoved,
  kItemsChanged,
  /// The handle is dead.
  kDestroyed,
};

/// Which rows, items or bytes a change is about, counted from 0; 0, 0 where it is about the whole.
struct ChangedRange {
  int first = 0;
  int count = 0;

  friend bool operator==(const ChangedRange&, const ChangedRange&) = default;
};

/// Where a menu is shown by itself, on the screen; see `CMenu::TrackPopupMenu`.
struct MenuSpot {
  CPoint at;
  /// A sum of `TrackFlag` bits.
  UINT flags = 0;
  /// Where a press doesn't leave the menu; empty for nowhere.
  CRect stays_open_in;
};

/// See `WindowObserver`.
inline constexpr int kMostRowRanges = 32;

/// The events of a window layer's native windows, as the message loop of its thread takes them in.
class NativeEvents {
 public:
  NativeEvents() = default;
  NativeEvents(const NativeEvents&) = delete;
  NativeEvents& operator=(const NativeEvents&) = delete;
  virtual ~NativeEvents();

  /// Handles the native events that wait. If there are none, waits for one or for `Wake`, at most
  /// so many milliseconds; with 0 not at all. Returns whether it has handled any. Handlers may run
  /// message loops of their own meanwhile, which call it again. An exception that leaves it goes
  /// out of the message loop, to who runs that. A handler may set another observer: this object
  /// must outlive the calls that are under way then. While its thread waits for another thread's
  /// answer or end, it isn't called.
  virtual bool Wait(DWORD milliseconds) = 0;

  /// Ends the innermost `Wait` that is under way, or the next one if there is none. Called on any
  /// thread and with the library's locks held, so it mustn't call the library.
  virtual void Wake() = 0;
};

/// Told of the windows of one thread, on that thread, right after each change, in the order of the
/// changes. Only rows that come into a window, or go, one after the other are told together, at the
/// latest before the next other change and before the thread waits for its next message: by a
/// change for each place where they are side by side now, from the first place on, so that what
/// lies before it is as it stays; or where that would be more than `kMostRowRanges` changes, by one
/// `kRowsChanged` about all. It may read the window, and must not change or destroy any while it is
/// told. An exception that leaves it is traced, and the change stands.
class WindowObserver {
 public:
  WindowObserver() = default;
  WindowObserver(const WindowObserver&) = delete;
  WindowObserver& operator=(const WindowObserver&) = delete;
  virtual ~WindowObserver();

  virtual void OnWindowChange(CWnd& window, WindowChange change, const ChangedRange& range) = 0;
  /// Of any menu of the thread, shown or not.
  virtual void OnMenuChange(MenuHandle* /*menu*/, MenuChange /*change*/,
                            const ChangedRange& /*range*/) {}

  /// Whether people work with the windows that this observer draws, so that a modal dialog runs the
  /// message loop until it is closed. Otherwise the platform's prompts run it. Asked after each
  /// message and native event while one runs: a layer that says no then, because its display is
  /// gone, has it cancelled.
  virtual bool RunsDialogs() const { return false; }

  /// The native events to be taken in by the message loop, or null. Asked when the observer is set;
  /// they stay in use until another one is.
  virtual NativeEvents* GetEvents() { return nullptr; }

  /// How much the window's frame, its menu and its scroll bars take on each side, in pixels. Asked
  /// while the window is made, before anything else is told of it, when its menu changes, and by
  /// `CWnd::UpdateFrameWidths`.
  virtual CRect GetFrameWidths(const CWnd& /*window*/) { return {}; }

  /// A `SystemMetric` of the screen, of which `usual` is the usual number.
  virtual int GetMetric(int /*metric*/, int usual) { return usual; }

  /// See `dq::GetKeyState` in `screen.h`.
  virtual int GetKeyState(int /*key*/) { return 0; }

  /// The pointer's place on the screen.
  virtual CPoint GetPointer() { return {}; }

  virtual void SetPointer(PointerShape /*shape*/) {}

  /// How large a line of text is in a font, null for the dialogs' own; `usual` is a guess.
  virtual CSize MeasureText(const LOGFONT* /*font*/, std::string_view /*text*/,
                            const CSize& usual) {
    return usual;
  }

  /// Shows the wait pointer over all windows (`true`), or no longer. While it is shown, the
  /// observer that is set is told to show it, and the former one no longer.
  virtual void ShowWaitPointer(bool /*show*/) {}

  /// Sounds as a message box of the type would; -1 for a simple beep.
  virtual void Beep(UINT /*type*/) {}

  /// Shows a menu and returns the command that the person chose in it, 0 for none. `owner` gets
  /// what `CMenu::TrackPopupMenu` says meanwhile.
  virtual UINT TrackMenu(MenuHandle* /*menu*/, const MenuSpot& /*spot*/, CWnd& /*owner*/) {
    return 0;
  }

  /// Drags the data from a window until `source` says that they are dropped or the drag is given
  /// up, and returns the `DropEffect` with which they were dropped; see
  /// `COleDataSource::DoDragDrop`. What comes over the layer's own windows it reports by
  /// `DragInput`.
  virtual UINT StartDrag(CWnd& /*from*/, const COleDataObject& /*data*/, UINT /*effects*/,
                         COleDropSource& /*source*/) {
    return 0;
  }
};

/// The calling thread's observer, or null.
WindowObserver* GetWindowObserver();

/// Sets it and returns the former one. Not owned; null for none. Changes that the former one hasn't
/// been told are told before.
WindowObserver* SetWindowObserver(WindowObserver* observer);

}  // namespace dq
