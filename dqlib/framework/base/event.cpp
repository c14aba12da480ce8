#include "dqlib/framework/base/event.h"

#include <chrono>
#include <utility>

namespace dq {

void CEvent::SetEvent() {
  const std::lock_guard lock(mutex_);
  if (std::exchange(set_, true)) return;
  told_.notify_all();
  for (const Watch* watch : watches_) watch->on_set_();
}

void CEvent::ResetEvent() {
  const std::lock_guard lock(mutex_);
  set_ = false;
}

bool CEvent::Lock(DWORD milliseconds) {
  std::unique_lock lock(mutex_);
  const auto is_set = [this] { return set_; };
  if (milliseconds == kForever) {
    told_.wait(lock, is_set);
  } else if (!told_.wait_for(lock, std::chrono::milliseconds(milliseconds), is_set)) {
    return false;
  }
  set_ = manual_reset_;
  return true;
}

CEvent::Watch::Watch(CEvent& event, std::function<void()> on_set)
    : event_(event), on_set_(std::move(on_set)) {
  const std::lock_guard lock(event_.mutex_);
  event_.watches_.push_back(this);
  if (event_.set_) on_set_();
}

CEvent::Watch::~Watch() {
  const std::lock_guard lock(event_.mutex_);
  std::erase(event_.watches_, this);
}

}  // namespace dq
