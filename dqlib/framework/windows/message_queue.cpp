#include "dqlib/framework/windows/message_queue.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <exception>
#include <limits>
#include <unordered_map>
#include <utility>

#include "dqlib/framework/windows/wnd.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

/// Handles count up from here, so that a small number is never one by chance.
constexpr std::uintptr_t kFirstHandle = 0x10000;

/// Bounds of a timer's interval: shorter ones would keep the thread busy, and longer ones couldn't
/// be told from the past on a clock that wraps.
constexpr UINT kShortestInterval = 10;
constexpr UINT kLongestInterval = std::numeric_limits<std::int32_t>::max();

/// Room for so many posted messages is kept for the next ones.
constexpr std::size_t kKeptMessages = 1024;

struct WindowRecord {
  CWnd* window = nullptr;
  MessageQueue* owner = nullptr;
  std::string class_name;
  /// How many of its messages are in the owner's queue, and of its timers.
  std::size_t posted = 0;
  std::size_t timers = 0;
};

DWORD Now() { return platform::Current().clock->TickCount(); }

/// Milliseconds from one reading of the clock to another, negative if that lies before.
std::int32_t Between(DWORD from, DWORD to) { return static_cast<std::int32_t>(to - from); }

}  // namespace

/// A message on its way. It stands on the stack of its sender, who waits until it is answered.
struct MessageQueue::SentMessage {
  HWND window;
  UINT message;
  WPARAM wparam;
  LPARAM lparam;
  LRESULT result = 0;
  Completion answered{};
};

struct MessageQueue::Shared {
  std::mutex mutex;
  std::unordered_map<HWND, WindowRecord> windows;
  std::uintptr_t next_handle = kFirstHandle;

  /// With the lock held: the live window of the handle, or null.
  WindowRecord* Find(HWND window) {
    const auto found = windows.find(window);
    return found == windows.end() ? nullptr : &found->second;
  }
};

MessageQueue::Shared& MessageQueue::All() {
  // Never destroyed: windows may end in the destructors of static objects.
  static Shared& shared = *new Shared;
  return shared;
}

MessageQueue::~MessageQueue() {
  const Lock lock(All().mutex);
  if (windows_ > 0) {
    std::erase_if(All().windows, [this](const auto& entry) { return entry.second.owner == this; });
  }
  for (SentMessage* sent : sent_) CompleteLocked(sent->answered);
}

MessageQueue* MessageQueue::Current() {
  static thread_local bool gone = false;
  struct Holder {
    MessageQueue queue;
    ~Holder() { gone = true; }
  };
  if (gone) return nullptr;
  static thread_local Holder holder;
  return &holder.queue;
}

HWND MessageQueue::AddWindow(CWnd* window, std::string class_name) {
  MessageQueue* const owner = Current();
  if (owner == nullptr) return nullptr;
  const Lock lock(All().mutex);
  const HWND handle = std::bit_cast<HWND>(All().next_handle++);
  All().windows[handle] = {window, owner, std::move(class_name), 0, 0};
  ++owner->windows_;
  return handle;
}

void MessageQueue::ReplaceWindow(HWND handle, CWnd* window) {
  const Lock lock(All().mutex);
  if (WindowRecord* const record = All().Find(handle)) record->window = window;
}

bool MessageQueue::RemoveWindow(HWND window) {
  const Lock lock(All().mutex);
  const WindowRecord* const record = All().Find(window);
  if (record == nullptr) return false;
  MessageQueue& owner = *record->owner;
  --owner.windows_;
  std::erase_if(owner.sent_, [window](SentMessage* sent) {
    if (sent->window != window) return false;
    CompleteLocked(sent->answered);
    return true;
  });
  owner.Forget(window, record->posted, record->timers);
  All().windows.erase(window);
  return true;
}

MSG MessageQueue::PostedMessages::Pop() {
  const MSG message = messages_[next_++];
  if (next_ == messages_.size()) {
    next_ = 0;
    if (messages_.capacity() > kKeptMessages) {
      // Not `{}`, which would keep the memory.
      messages_ = std::vector<MSG>();
    } else {
      messages_.clear();
    }
  } else if (next_ > kKeptMessages && next_ > messages_.size() / 2) {
    // A queue that never runs empty: move the rest down, once for as many as were taken.
    messages_.erase(messages_.begin(), messages_.begin() + static_cast<std::ptrdiff_t>(next_));
    next_ = 0;
  }
  return message;
}

void MessageQueue::PostedMessages::Forget(HWND window) {
  const auto first = messages_.begin() + static_cast<std::ptrdiff_t>(next_);
  messages_.erase(std::remove_if(first, messages_.end(),
                                 [=](const MSG& message) { return message.hwnd == window; }),
                  messages_.end());
}

void MessageQueue::Forget(HWND window, std::size_t posted, std::size_t timers) {
  if (posted > 0) posted_.Forget(window);
  if (timers > 0)
    std::erase_if(timers_, [=](const Timer& timer) { return timer.window == window; });
}

CWnd* MessageQueue::FindWindow(HWND window) {
  const Lock lock(All().mutex);
  const WindowRecord* const record = All().Find(window);
  return record == nullptr ? nullptr : record->window;
}

CWnd* MessageQueue::FindOwnWindow(HWND window) {
  const MessageQueue* const current = Current();
  const Lock lock(All().mutex);
  const WindowRecord* const record = All().Find(window);
  return record == nullptr || record->owner != current ? nullptr : record->window;
}

std::string MessageQueue::ClassName(HWND window) {
  const Lock lock(All().mutex);
  const WindowRecord* const record = All().Find(window);
  return record == nullptr ? std::string() : record->class_name;
}

LRESULT MessageQueue::Send(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  SentMessage sent{window, message, wparam, lparam};
  std::optional<MessageQueue> temporary;
  MessageQueue* own = Current();
  if (own == nullptr) own = &temporary.emplace();
  Lock lock(All().mutex);
  const WindowRecord* const record = All().Find(window);
  if (record == nullptr) return 0;
  record->owner->sent_.push_back(&sent);
  record->owner->wake_.notify_one();
  own->WaitLocked(lock, sent.answered);
  return sent.result;
}

bool MessageQueue::Post(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  const Lock lock(All().mutex);
  WindowRecord* const record = All().Find(window);
  if (record == nullptr) return false;
  record->owner->posted_.Push({window, message, wparam, lparam});
  ++record->posted;
  record->owner->wake_.notify_one();
  return true;
}

bool MessageQueue::SetTimer(HWND window, UINT id, UINT milliseconds) {
  const DWORD interval = std::clamp(milliseconds, kShortestInterval, kLongestInterval);
  const DWORD due = Now() + interval;
  const Lock lock(All().mutex);
  WindowRecord* const record = All().Find(window);
  if (record == nullptr) return false;
  std::vector<Timer>& timers = record->owner->timers_;
  const auto same = std::ranges::find_if(
      timers, [=](const Timer& timer) { return timer.window == window && timer.id == id; });
  if (same != timers.end()) {
    *same = {window, id, interval, due};
  } else {
    timers.push_back({window, id, interval, due});
    ++record->timers;
  }
  return true;
}

bool MessageQueue::KillTimer(HWND window, UINT id) {
  const Lock lock(All().mutex);
  WindowRecord* const record = All().Find(window);
  if (record == nullptr || record->timers == 0) return false;
  const std::size_t killed = std::erase_if(record->owner->timers_, [=](const Timer& timer) {
    return timer.window == window && timer.id == id;
  });
  record->timers -= killed;
  return killed > 0;
}

std::optional<MSG> MessageQueue::Take() {
  ServeWaiting();
  {
    const Lock lock(All().mutex);
    if (!posted_.empty()) {
      const MSG message = posted_.Pop();
      if (WindowRecord* const record = All().Find(message.hwnd)) --record->posted;
      return message;
    }
    if (quit_) {
      const MSG message{nullptr, WM_QUIT, static_cast<WPARAM>(*quit_), 0};
      quit_.reset();
      return message;
    }
    if (timers_.empty()) return std::nullopt;
  }
  return TakeTimer();
}

std::optional<MSG> MessageQueue::TakeTimer() {
  const DWORD now = Now();
  const Lock lock(All().mutex);
  const auto first = std::ranges::min_element(
      timers_, {}, [=](const Timer& timer) { return Between(now, timer.due); });
  if (first == timers_.end() || Between(now, first->due) > 0) return std::nullopt;
  first->due += first->interval;
  if (Between(now, first->due) <= 0) first->due = now + first->interval;
  return MSG{first->window, WM_TIMER, first->id, 0};
}

DWORD MessageQueue::UntilNextTimer() const {
  const DWORD now = Now();
  std::int32_t wait = std::numeric_limits<std::int32_t>::max();
  for (const Timer& timer : timers_) wait = std::min(wait, std::max(0, Between(now, timer.due)));
  return static_cast<DWORD>(wait);
}

void MessageQueue::WaitForWork(DWORD milliseconds) {
  Lock lock(All().mutex);
  const DWORD wait = std::min(milliseconds, UntilNextTimer());
  wake_.wait_for(lock, std::chrono::milliseconds(wait),
                 [this] { return !sent_.empty() || !posted_.empty() || quit_.has_value(); });
}

void MessageQueue::PostQuit(int code) {
  const Lock lock(All().mutex);
  quit_ = code;
}

int MessageQueue::ServeWaiting() {
  Lock lock(All().mutex);
  const std::size_t waiting = sent_.size();
  int served = 0;
  for (; static_cast<std::size_t>(served) < waiting && !sent_.empty(); ++served) ServeFirst(lock);
  return served;
}

void MessageQueue::Wait(Completion& completion) {
  std::optional<MessageQueue> temporary;
  MessageQueue* own = Current();
  if (own == nullptr) own = &temporary.emplace();
  Lock lock(All().mutex);
  own->WaitLocked(lock, completion);
}

void MessageQueue::Complete(Completion& completion) {
  const Lock lock(All().mutex);
  CompleteLocked(completion);
}

void MessageQueue::CompleteLocked(Completion& completion) {
  completion.done = true;
  if (completion.waiter != nullptr) completion.waiter->wake_.notify_one();
}

void MessageQueue::ServeFirst(Lock& lock) {
  SentMessage& sent = *sent_.front();
  sent_.pop_front();
  lock.unlock();
  std::exception_ptr thrown;
  try {
    sent.result = SendToWindow(sent.window, sent.message, sent.wparam, sent.lparam);
  } catch (...) {
    thrown = std::current_exception();
  }
  lock.lock();
  CompleteLocked(sent.answered);
  if (thrown) std::rethrow_exception(thrown);
}

void MessageQueue::WaitLocked(Lock& lock, Completion& completion) {
  completion.waiter = this;
  std::exception_ptr thrown;
  while (!completion.done) {
    if (sent_.empty()) {
      wake_.wait(lock);
      continue;
    }
    try {
      ServeFirst(lock);
    } catch (...) {
      if (!thrown) thrown = std::current_exception();
    }
  }
  if (!thrown) return;
  lock.unlock();
  std::rethrow_exception(thrown);
}

}  // namespace dq
