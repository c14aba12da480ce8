// The messages that wait for a thread's windows, its timers, and the register of all windows.

#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "dqlib/framework/windows/window_messages.h"

namespace dq {

class CWnd;

/// The queue of one thread. Each thread that has windows, or sends to windows of others, gets one
/// that lives as long as the thread; when it ends, its windows are dead and senders that wait for
/// them are released.
///
/// A thread that waits here serves what others send to it meanwhile, so that two threads may send
/// to each other at the same time. An exception that leaves a handler then is held back until what
/// the thread waits for has come, and its sender gets 0.
///
/// One lock guards all queues and the register: a send touches two queues, and a window's death
/// those of all its senders. Handlers run without it.
class MessageQueue {
 public:
  /// Something that one thread waits for and another reports. Touched with the lock only.
  struct Completion {
    bool done = false;
    MessageQueue* waiter = nullptr;
  };

  MessageQueue() = default;
  MessageQueue(const MessageQueue&) = delete;
  MessageQueue& operator=(const MessageQueue&) = delete;
  ~MessageQueue();

  /// The calling thread's queue; null when the thread's own objects are gone already, as in the
  /// destructor of a static object.
  static MessageQueue* Current();

  /// Enters a window of the calling thread and returns its handle; null if the thread has no queue.
  static HWND AddWindow(CWnd* window, std::string class_name);
  /// Another object becomes the window of a handle.
  static void ReplaceWindow(HWND handle, CWnd* window);
  /// Ends a handle, drops its timers and posted messages and releases its senders with 0. False if
  /// it is dead already.
  static bool RemoveWindow(HWND window);
  /// The window of a handle, null if it is dead. Any thread; only the window's own may use it.
  static CWnd* FindWindow(HWND window);
  /// The same, and null if it belongs to another thread.
  static CWnd* FindOwnWindow(HWND window);
  /// The name of the window's class; "" for a dead handle.
  static std::string ClassName(HWND window);

  /// Sends to a window of another thread and waits for its answer; 0 if it is dead or dies first.
  static LRESULT Send(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  /// Queues for the window's thread. False if it is dead. Any thread.
  static bool Post(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

  /// On the window's thread: starts a timer or starts it anew; false if the window is dead.
  static bool SetTimer(HWND window, UINT id, UINT milliseconds);
  static bool KillTimer(HWND window, UINT id);

  /// On the queue's thread: serves the messages that wait now, not those that come meanwhile, and
  /// returns how many there were.
  int ServeWaiting();
  /// On the queue's thread: serves what others have sent, and takes the next message out: a posted
  /// one, then `WM_QUIT` if the thread shall end, then that of the timer which is due longest. No
  /// value if nothing waits.
  std::optional<MSG> Take();
  /// Waits until there is something to serve or take, at most so many milliseconds.
  void WaitForWork(DWORD milliseconds);
  /// Has `Take` give `WM_QUIT` with the code once there is no posted message.
  void PostQuit(int code);

  /// Waits on the calling thread until another has called `Complete`; one thread per completion.
  static void Wait(Completion& completion);
  static void Complete(Completion& completion);

 private:
  using Lock = std::unique_lock<std::mutex>;
  struct SentMessage;
  struct Shared;
  struct Timer {
    HWND window;
    UINT id;
    DWORD interval;
    /// Reading of the platform's clock.
    DWORD due;
  };

  /// Messages in order. One block of memory, so that a flood of them leaves none behind.
  class PostedMessages {
   public:
    bool empty() const { return next_ == messages_.size(); }
    void Push(const MSG& message) { messages_.push_back(message); }
    MSG Pop();
    void Forget(HWND window);

   private:
    std::vector<MSG> messages_;
    /// Those before it are taken out.
    std::size_t next_ = 0;
  };

  static Shared& All();
  static void CompleteLocked(Completion& completion);
  void ServeFirst(Lock& lock);
  void WaitLocked(Lock& lock, Completion& completion);
  std::optional<MSG> TakeTimer();
  DWORD UntilNextTimer() const;
  void Forget(HWND window, std::size_t posted, std::size_t timers);

  std::deque<SentMessage*> sent_;
  PostedMessages posted_;
  std::vector<Timer> timers_;
  std::optional<int> quit_;
  std::condition_variable wake_;
  std::size_t windows_ = 0;
};

}  // namespace dq
