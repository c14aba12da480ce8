// Windows without a screen: a handle, a class name, and messages.

#pragma once

#include <atomic>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/object.h"

namespace dq {

/// A window. It belongs to the thread that created it, which alone may touch it; only
/// `SendMessage` and `GetSafeHwnd` may be called from other threads, which see to it that the
/// object outlives the call. When its thread ends, the window's handle is dead.
class CWnd : public CObject {
  DECLARE_DYNAMIC(CWnd)
  CWnd() = default;
  /// Ends the window. A calling thread that has it as its main window has none afterwards.
  ~CWnd() override;

  /// Makes the window, of the given window class, for the calling thread; a null name counts as "".
  /// Returns false if it is made already, or while the program's static objects are taken down.
  bool CreateWnd(const char* class_name);
  /// Ends the window: its handle is dead from then on, and senders that wait are released with 0; a
  /// message that is being handled still gets its answer. Returns false if there is none.
  bool DestroyWindow();

  HWND GetSafeHwnd() const { return m_hWnd; }

  /// Has the window handle the message at once and returns its result. From another thread it
  /// blocks until the window's thread has pumped its queue and handled it; meanwhile messages that
  /// others send to windows of the calling thread are handled. A window that isn't made, or ends
  /// first, answers 0, and so does one whose handler is left by an exception; that goes on in the
  /// window's thread.
  LRESULT SendMessage(UINT message, WPARAM wparam = 0, LPARAM lparam = 0);

  /// The window of a handle, or null if it is dead. On the window's thread.
  static CWnd* FromHandle(HWND window);

  /// Null while the window isn't made. Read only.
  std::atomic<HWND> m_hWnd = nullptr;

 protected:
  /// Handles a message; the base handles none and answers 0.
  virtual LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam);

 private:
  friend LRESULT SendToWindow(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
};

/// `CWnd::SendMessage` by handle: a dead or null handle answers 0. Any thread.
LRESULT SendToWindow(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

/// Copies the name of the window's class to `buffer`, cut to `size` - 1 bytes and zero-ended, and
/// returns its length; 0 for a dead handle, a null buffer or a size below 1. Any thread.
int GetWindowClassName(HWND window, char* buffer, int size);

}  // namespace dq
