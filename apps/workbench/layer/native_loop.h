// The toolkit's events as the library's message loop takes them in.

#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "dqlib/framework/windows/window_observer.h"

class wxEventLoopBase;

namespace workbench {

/// Handles the toolkit's events. Its handlers never call the library: they post an act, which is
/// done as soon as the toolkit has returned. So handlers of the library may end windows, run
/// dialogs and throw, without any frame of the toolkit between them and the message loop.
class NativeLoop : public dq::NativeEvents {
 public:
  using Act = std::function<void()>;

  /// What the window layer does meanwhile.
  struct Hooks {
    /// Brings the toolkit's windows up to what the library's are. Before the toolkit handles events
    /// and again after each.
    Act update;
    /// An event has been handled, and the acts that were posted by it.
    Act handled;
    /// No event waits, and the thread is about to. May post acts.
    Act settled;
    /// The display is gone; called once.
    Act lost;
  };

  explicit NativeLoop(Hooks hooks);
  ~NativeLoop() override;

  /// Does the acts too that have been posted. An exception that leaves one leaves this call; those
  /// behind it wait for the next call.
  bool Wait(dq::DWORD milliseconds) override;
  void Wake() override;

  /// Has the act done outside of the toolkit, behind those posted before.
  void Post(Act act);
  /// Whether there are acts or events that wait to be handled.
  bool HasWork() const;
  /// The display is gone: the toolkit isn't called any more.
  void LoseDisplay();
  bool HasDisplay() const { return !lost_; }

 private:
  bool DoActs();
  void AfterEvent();
  bool WaitForEvent(dq::DWORD milliseconds);
  bool HandleEvent(int milliseconds);
  bool WaitWithoutDisplay(dq::DWORD milliseconds);

  Hooks hooks_;
  std::unique_ptr<wxEventLoopBase> loop_;
  wxEventLoopBase* former_loop_;
  std::deque<Act> acts_;
  std::atomic<bool> woken_ = false;
  bool lost_ = false;
  bool told_lost_ = false;
  /// For waits without a display.
  std::mutex mutex_;
  std::condition_variable wake_;
};

}  // namespace workbench
