// The messages that wait for a thread's windows, its timers, and the register of all windows.

#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "dqlib/framework/windows/window_messages.h"
#include "dqlib/framework/windows/window_observer.h"

namespace dq {

class CWnd;

/// The queue of one thread. Each thread that has windows, or sends to windows of others, gets one
/// that lives as long as the thread; when it ends, its windows are dead and senders that wait for
/// them are released.
///
/// A thread that waits here serves what others send to it meanwhile, so that two threads may send
/// to each other at the same time. An exception that leaves a handler then is held back until what
/// the thread waits for has come, and its sender gets 0. What it waits for so is the answer to a
/// message or the end of a thread (`Wait`); native events and posted messages stay where they are
/// meanwhile, so that its windows stand still.
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
  /// The windows of the calling thread, the older ones first.
  static std::vector<HWND> OwnWindows();
  /// The name of the window's class; "" for a dead handle.
  static std::string ClassName(HWND window);

  /// Sends to a window of another thread and waits for its answer; 0 if it is dead or dies first.
  static LRESULT Send(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  /// Queues for the window's thread. False if it is dead. Any thread.
  static bool Post(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

  /// When a timer is due, by a clock that doesn't wrap, and in which order those of one moment
  /// come.
  using Moment = std::pair<std::int64_t, std::uint64_t>;

  /// What a pump that serves each timer once knows of them: see `BeginRound`.
  struct Round {
    std::uint64_t begun = 0;
    /// Those that are due before are done with in this round.
    Moment from{std::numeric_limits<std::int64_t>::min(), 0};
  };

  /// On the window's thread: starts a timer or starts it anew; false if the window is dead.
  static bool SetTimer(HWND window, UINT id, UINT milliseconds);
  static bool KillTimer(HWND window, UINT id);

  /// On the queue's thread: the native events that its waits take in; null for none. Not owned.
  void SetEvents(NativeEvents* events);
  /// On the queue's thread: handles the native events that wait. False if there were none.
  bool TakeInEvents();

  /// On the queue's thread: serves the messages that wait now, not those that come meanwhile, and
  /// returns how many there were.
  int ServeWaiting();
  /// On the queue's thread: serves what others have sent, and takes the next message out: a posted
  /// one, then `WM_QUIT` if the thread shall end, then that of the timer which is due longest. No
  /// value if nothing waits. With a round, a timer that was served or started since it began waits
  /// for the next one.
  std::optional<MSG> Take(Round* round = nullptr);
  Round BeginRound() const { return {.begun = scheduled_}; }
  /// Waits until there is something to serve or take, or a native event, at most so many
  /// milliseconds. Returns whether native events were handled.
  bool WaitForWork(DWORD milliseconds);
  /// Has `Take` give `WM_QUIT` with the code once there is no posted message.
  void PostQuit(int code);
  /// Whether the thread shall end: `WM_QUIT` waits.
  bool IsToEnd();

  /// Waits on the calling thread until another has called `Complete`; one thread per completion.
  static void Wait(Completion& completion);
  static void Complete(Completion& completion);

 private:
  using Lock = std::unique_lock<std::mutex>;
  struct SentMessage;
  struct Shared;
  using TimerName = std::pair<HWND, UINT>;
  struct Timer {
    DWORD interval;
    Moment due;
  };

  /// Messages in order. One block of memory, so that a flood of them leaves none behind. Those of a
  /// window that ends stay until they are taken or too many are dead, so that many windows end in
  /// linear time.
  class PostedMessages {
   public:
    bool empty() const { return next_ == messages_.size(); }
    void Push(const MSG& message) { messages_.push_back(message); }
    /// The next one whose window lives; no value if there is none.
    std::optional<MSG> Pop(Shared& shared);
    void AddDead(std::size_t count, const Shared& shared);

   private:
    MSG Next();

    std::vector<MSG> messages_;
    /// Those before it are taken out.
    std::size_t next_ = 0;
    std::size_t dead_ = 0;
  };

  static Shared& All();
  static void CompleteLocked(Completion& completion);
  /// Ends a wait of the queue's thread, from any thread.
  void WakeUp();
  void ServeFirst(Lock& lock);
  void WaitLocked(Lock& lock, Completion& completion);
  std::optional<MSG> TakeTimer(Round* round);
  std::int64_t ReadClock();
  void Schedule(const TimerName& name, Timer& timer, std::int64_t due);

  std::deque<SentMessage*> sent_;
  PostedMessages posted_;
  std::map<TimerName, Timer> timers_;
  std::map<Moment, TimerName> due_;
  /// How many times a timer was given the moment when it is due.
  std::uint64_t scheduled_ = 0;
  /// The last reading of the platform's clock, and the same without the wraps.
  DWORD reading_ = 0;
  std::int64_t now_ = 0;
  std::optional<int> quit_;
  std::condition_variable wake_;
  NativeEvents* events_ = nullptr;
  std::size_t windows_ = 0;
};

}  // namespace dq
