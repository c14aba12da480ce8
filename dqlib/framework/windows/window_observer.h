// Where a window layer attaches: it learns of every window and of every change of one.

#pragma once

namespace dq {

class CWnd;

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
  kMenu,
  /// It became active among its parent's children, or among the top-level windows.
  kActive,
  /// What a control holds besides its text: items, check marks, range, limits, tool tips.
  kContent,
  /// What is selected, in a text or among items.
  kSelection,
};

/// Told of the windows of one thread, on that thread, right after each change, in the order of the
/// changes. It may read the window, and must not change or destroy any.
class WindowObserver {
 public:
  WindowObserver() = default;
  WindowObserver(const WindowObserver&) = delete;
  WindowObserver& operator=(const WindowObserver&) = delete;
  virtual ~WindowObserver();

  virtual void OnWindowChange(CWnd& window, WindowChange change) = 0;

  /// Whether people work with the windows that this observer draws, so that a modal dialog runs the
  /// message loop until it is closed. Otherwise the platform's prompts run it.
  virtual bool RunsDialogs() const { return false; }
};

/// The calling thread's observer, or null.
WindowObserver* GetWindowObserver();

/// Sets it and returns the former one. Not owned; null for none.
WindowObserver* SetWindowObserver(WindowObserver* observer);

}  // namespace dq
