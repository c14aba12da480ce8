#include "apps/workbench/layer/native_loop.h"

#include <chrono>
#include <gtk/gtk.h>
#include <utility>
#include <wx/evtloop.h>

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
  if (!handled && gtk_events_pending() == 0) {
    hooks_.settled();
    handled = DoActs() || WaitForEvent(milliseconds);
  }
  for (int count = 0; !lost_ && count < kEventsAtATime && gtk_events_pending() != 0; ++count) {
    loop_->Dispatch();
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
  bool handled = true;
  if (milliseconds == dq::kForever) {
    loop_->Dispatch();
  } else {
    constexpr int kTimeIsUp = -1;
    handled = loop_->DispatchTimeout(milliseconds) != kTimeIsUp;
  }
  handled = handled && !woken_;
  AfterEvent();
  return handled;
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
