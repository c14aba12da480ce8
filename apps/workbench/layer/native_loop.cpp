#include "apps/workbench/layer/native_loop.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <gtk/gtk.h>
#include <utility>
#include <vector>
#include <wx/evtloop.h>

#include "apps/workbench/layer/display.h"
#include "dqlib/framework/windows/win_thread.h"

namespace workbench {
namespace {

/// So many events are handled in one call at most, so that a flood of them, as from an animation,
/// leaves time for messages.
constexpr int kEventsAtATime = 64;

}  // namespace

NativeLoop::NativeLoop(Hooks hooks)
    : hooks_(std::move(hooks)),
      loop_(std::make_unique<wxGUIEventLoop>()),
      former_loop_(wxEventLoopBase::GetActive()) {
  wxEventLoopBase::SetActive(loop_.get());
}

NativeLoop::~NativeLoop() { wxEventLoopBase::SetActive(former_loop_); }

bool NativeLoop::Wait(dq::DWORD milliseconds) {
  bool handled = DoActs();
  if (lost_) return WaitWithoutDisplay(handled ? 0 : milliseconds) || handled;
  hooks_.update();
  if (!handled && !lost_ && gtk_events_pending() == 0) {
    if (!lost_) hooks_.settled();
    handled = DoActs() || WaitForEvent(milliseconds);
  }
  for (int count = 0; count < kEventsAtATime && HandleEvent(0); ++count) {
    handled = true;
    AfterEvent();
  }
  // Whatever came until now finds its answer when this call returns.
  woken_ = false;
  return handled;
}

/// Returns whether there was one.
bool NativeLoop::WaitForEvent(dq::DWORD milliseconds) {
  if (milliseconds == 0 || woken_) return false;
  constexpr int kForever = -1;
  const bool handled = HandleEvent(
      milliseconds == dq::kForever ? kForever
                                   : static_cast<int>(std::min<dq::DWORD>(milliseconds, INT_MAX)));
  AfterEvent();
  return handled;
}

/// Has the toolkit handle what there is, or else what comes within so many milliseconds; with -1
/// it waits without limit. Returns whether there was anything. If the display turns out to be gone
/// the toolkit's handlers aren't called: what it would answer them is rubbish, on which they crash.
bool NativeLoop::HandleEvent(int milliseconds) {
  GMainContext* const context = g_main_context_default();
  if (lost_ || g_main_context_acquire(context) == 0) return false;
  int priority = 0;
  g_main_context_prepare(context, &priority);
  int wait = 0;
  // Of the call itself, for handlers may run loops of their own.
  std::vector<GPollFD> polled;
  const auto query = [&] {
    return static_cast<std::size_t>(g_main_context_query(context, priority, &wait, polled.data(),
                                                         static_cast<int>(polled.size())));
  };
  for (std::size_t wanted = query(); wanted != polled.size(); wanted = query()) {
    polled.resize(wanted);
  }
  if (wait < 0 || (milliseconds >= 0 && milliseconds < wait)) wait = milliseconds;
  const auto count = static_cast<unsigned int>(polled.size());
  if (!lost_) g_main_context_get_poll_func(context)(polled.data(), count, wait);
  if (!lost_) CheckConnection(polled);
  const bool handles =
      !lost_ &&
      g_main_context_check(context, priority, polled.data(), static_cast<int>(count)) != 0 &&
      !lost_;
  if (handles) g_main_context_dispatch(context);
  g_main_context_release(context);
  return handles;
}

void NativeLoop::AfterEvent() {
  DoActs();
  if (lost_) return;
  hooks_.handled();
  hooks_.update();
}

bool NativeLoop::WaitWithoutDisplay(dq::DWORD milliseconds) {
  if (!std::exchange(told_lost_, true)) {
    hooks_.lost();
    return true;
  }
  std::unique_lock<std::mutex> lock(mutex_);
  wake_.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return woken_.load(); });
  woken_ = false;
  return false;
}

void NativeLoop::Wake() {
  woken_ = true;
  // If nobody waits in the toolkit, the next to do so doesn't.
  g_main_context_wakeup(nullptr);
  const std::lock_guard<std::mutex> lock(mutex_);
  wake_.notify_one();
}

bool NativeLoop::HasWork() const { return !acts_.empty() || gtk_events_pending() != 0; }

void NativeLoop::Post(Act act) { acts_.push_back(std::move(act)); }

void NativeLoop::LoseDisplay() { lost_ = true; }

/// Returns whether there were any.
bool NativeLoop::DoActs() {
  if (acts_.empty()) return false;
  // One by one: an act may run a message loop, in which those behind it are done.
  while (!acts_.empty()) {
    const Act act = std::move(acts_.front());
    acts_.pop_front();
    act();
  }
  return true;
}

}  // namespace workbench
