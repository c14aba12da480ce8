// Signals from thread to thread.

#pragma once

#include <condition_variable>
#include <functional>
#include <limits>
#include <mutex>
#include <vector>

#include "dqlib/platform/types.h"

namespace dq {

/// A wait without end.
inline constexpr DWORD kForever = std::numeric_limits<DWORD>::max();

/// An event that is set or not, and that threads wait for. With manual reset it stays set, and lets
/// everybody through, until it is reset; else the first wait that it ends resets it. Any thread,
/// but that nobody may wait for it any more when it is destroyed.
///
///   CEvent stop(false, true);
///   ... a thread: while (!stop.Lock(1000)) Look();
///   stop.SetEvent();
class CEvent {
 public:
  explicit CEvent(bool set = false, bool manual_reset = false)
      : set_(set), manual_reset_(manual_reset) {}
  CEvent(const CEvent&) = delete;
  CEvent& operator=(const CEvent&) = delete;

  /// Setting an event that is set does nothing, and so does resetting one that isn't.
  void SetEvent();
  void ResetEvent();

  /// Waits until the event is set, so many milliseconds at most; false if it wasn't.
  bool Lock(DWORD milliseconds = kForever);

  /// For a thread that waits for something else too: while the watch lives, a function is called
  /// each time the event is set, by the thread that sets it, and at once by its constructor if the
  /// event is set already. It ends the other wait, returns soon, and must not use the event.
  ///
  ///   const CEvent::Watch watch(stop, [&] { processes.Interrupt(pipe); });
  class Watch {
   public:
    Watch(CEvent& event, std::function<void()> on_set);
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    /// Waits for a call that is under way.
    ~Watch();

   private:
    friend class CEvent;
    CEvent& event_;
    const std::function<void()> on_set_;
  };

 private:
  std::mutex mutex_;
  std::condition_variable told_;
  bool set_;
  const bool manual_reset_;
  std::vector<const Watch*> watches_;
};

}  // namespace dq
