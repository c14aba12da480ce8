// Threads of the framework.

#pragma once

#include <functional>
#include <memory>

#include "dqlib/framework/base/event.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {

/// A thread that the framework knows. The program's first one is its `CWinApp` (see
/// `win_app.h`); others are begun by
/// `AfxBeginThread`.
class CWinThread : public CCmdTarget {
  DECLARE_DYNAMIC(CWinThread)
  CWinThread() = default;
  ~CWinThread() override;

  /// Handles messages until the thread is told to end by `PostQuitMessage`, and returns its code.
  virtual int Run();
  /// Looks at a queued message before it is dispatched; true keeps it from that. The base asks the
  /// message's window and the windows above it.
  virtual BOOL PreTranslateMessage(MSG* message);
  /// Called each time there is no message left, with `count` from 0 on, until it returns 0 or
  /// another message comes. On the first call the base has the main window, if that is the thread's
  /// own, and the active one, with their descendants, bring up to date what shows commands
  /// (`WM_IDLEUPDATECMDUI`).
  virtual BOOL OnIdle(LONG count);

  /// The thread's main window, which application messages go to; null if it has none. A thread
  /// begun by another gets that one's, which must then outlive what the thread does. Not owned. It
  /// is still a window of the other thread: this one may send and post to it, but neither touch it
  /// nor own windows by it, and what it makes itself no layer draws. A worker that wants a window
  /// shown has the main window do so by a message.
  CWnd* m_pMainWnd = nullptr;
};

/// The calling thread's object, or null if the framework doesn't know the thread.
CWinThread* AfxGetThread();

/// Makes `thread` the calling thread's object, as the application object does for its own.
void AfxSetThread(CWinThread* thread);

/// The main window of the calling thread, or null.
CWnd* AfxGetMainWnd();

/// Priorities of threads.
enum ThreadPriorityLevel : int {
  /// Runs when nothing else wants to, as far as the system allows it.
  THREAD_PRIORITY_IDLE = -15,
  THREAD_PRIORITY_NORMAL = 0,
};

/// A thread begun by `AfxBeginThread`, or none. Dropping it lets the thread go on by itself.
class WorkerThread {
 public:
  WorkerThread();
  WorkerThread(WorkerThread&&) noexcept;
  WorkerThread& operator=(WorkerThread&&) noexcept;
  ~WorkerThread();

  /// True if there is a thread that hasn't been joined.
  explicit operator bool() const { return state_ != nullptr; }

  /// Waits for the thread's end, and handles meanwhile what it and others send to windows of the
  /// calling thread, but no native events: its windows stand still. Does nothing if there is no
  /// thread. Not for the thread itself to call.
  void Join();

 private:
  friend WorkerThread AfxBeginThread(UINT (*procedure)(void*), void* parameter, int priority);
  struct State;
  std::unique_ptr<State> state_;
};

/// Runs `procedure(parameter)` on a new thread that the framework knows; its result is dropped. No
/// thread if the procedure is null or the system can't have another. Priorities are those of
/// `ThreadPriorityLevel`.
WorkerThread AfxBeginThread(UINT (*procedure)(void*), void* parameter,
                            int priority = THREAD_PRIORITY_NORMAL);

/// Offers a message of the keyboard or the mouse to the thread and to the window that it is for,
/// and the windows above, as the message loop does with those that were posted: for a window layer,
/// which calls it before its native windows see the event. True if one has taken it.
bool PreTranslateInput(MSG& message);

/// Handles the calling thread's messages, and timers that are due, until there is nothing left and
/// the thread has idled; returns how many it handled. Each is dropped if its window has ended. One
/// call serves each timer once at most, and none that is started meanwhile, so that it ends however
/// slow their handlers are. A thread that is told to end stays so, and handles nothing more here.
int PumpUntilIdle();

/// Handles messages as they come until `condition` holds: it is asked first, after each message,
/// and at least every tenth of a second. False if the time is up first (by the platform's clock),
/// or if the thread is told to end; then it stays so.
bool PumpUntil(const std::function<bool()>& condition, DWORD milliseconds = kForever);

/// The same for what only the thread itself can bring about by what it handles: `condition` is
/// asked first, and after each message and native event, and the thread sleeps until then. False if
/// the thread is told to end; then it stays so.
bool PumpUntilHandled(const std::function<bool()>& condition);

/// Has the loop that runs on the calling thread end with the code, once no posted message is left.
void PostQuitMessage(int code);

/// Handles the messages that other threads have sent to windows of the calling thread and that
/// wait; returns how many there were. What is sent meanwhile waits for the next call.
int PumpSentMessages();

}  // namespace dq
