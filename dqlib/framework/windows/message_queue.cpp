#include "dqlib/framework/windows/message_queue.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <exception>
#include <limits>
#include <unordered_map>
#include <utility>

#include "dqlib/framework/windows/wnd.h"
#include "dqlib/platform/per_thread.h"
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
  /// How many of its messages are in the owner's queue.
  std::size_t posted = 0;
};

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
  bool IsAlive(HWND window) const { return windows.contains(window); }
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

MessageQueue* MessageQueue::Current() { return platform::PerThread<MessageQueue>(); }

HWND MessageQueue::AddWindow(CWnd* window, std::string class_name) {
  MessageQueue* const owner = Current();
  if (owner == nullptr) return nullptr;
  const Lock lock(All().mutex);
  const HWND handle = std::bit_cast<HWND>(All().next_handle++);
  All().windows[handle] = {window, owner, std::move(class_name), 0};
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
  const auto first = owner.timers_.lower_bound({window, 0});
  auto last = first;
  for (; last != owner.timers_.end() && last->first.first == window; ++last) {
    owner.due_.erase(last->second.due);
  }
  owner.timers_.erase(first, last);
  const std::size_t posted = record->posted;
  All().windows.erase(window);
  owner.posted_.AddDead(posted, All());
  return true;
}

std::optional<MSG> MessageQueue::PostedMessages::Pop(Shared& shared) {
  while (!empty()) {
    const MSG message = Next();
    if (WindowRecord* const record = shared.Find(message.hwnd)) {
      --record->posted;
      return message;
    }
    --dead_;
  }
  return std::nullopt;
}

MSG MessageQueue::PostedMessages::Next() {
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

void MessageQueue::PostedMessages::AddDead(std::size_t count, const Shared& shared) {
  dead_ += count;
  // One pass for as many as it takes out.
  if (dead_ <= kKeptMessages || dead_ <= (messages_.size() - next_) / 2) return;
  const auto first = messages_.begin() + static_cast<std::ptrdiff_t>(next_);
  messages_.erase(
      std::remove_if(first, messages_.end(),
                     [&shared](const MSG& message) { return !shared.IsAlive(message.hwnd); }),
      messages_.end());
  dead_ = 0;
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

std::vector<HWND> MessageQueue::OwnWindows() {
  const MessageQueue* const current = Current();
  std::vector<HWND> own;
  const Lock lock(All().mutex);
  for (const auto& [window, record] : All().windows) {
    if (record.owner == current) own.push_back(window);
  }
  std::ranges::sort(own);
  return own;
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
  record->owner->WakeUp();
  own->WaitLocked(lock, sent.answered);
  return sent.result;
}

bool MessageQueue::Post(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  const Lock lock(All().mutex);
  WindowRecord* const record = All().Find(window);
  if (record == nullptr) return false;
  record->owner->posted_.Push({window, message, wparam, lparam});
  ++record->posted;
  record->owner->WakeUp();
  return true;
}

std::int64_t MessageQueue::ReadClock() {
  const DWORD reading = platform::Current().clock->TickCount();
  // With its sign: another clock, put in force since, may be behind.
  now_ += static_cast<std::int32_t>(reading - std::exchange(reading_, reading));
  return now_;
}

void MessageQueue::Schedule(const TimerName& name, Timer& timer, std::int64_t due) {
  timer.due = {due, ++scheduled_};
  due_.emplace(timer.due, name);
}

bool MessageQueue::SetTimer(HWND window, UINT id, UINT milliseconds) {
  const DWORD interval = std::clamp(milliseconds, kShortestInterval, kLongestInterval);
  const Lock lock(All().mutex);
  const WindowRecord* const record = All().Find(window);
  if (record == nullptr) return false;
  MessageQueue& owner = *record->owner;
  const auto [timer, is_new] = owner.timers_.try_emplace({window, id});
  if (!is_new) owner.due_.erase(timer->second.due);
  timer->second.interval = interval;
  owner.Schedule(timer->first, timer->second, owner.ReadClock() + interval);
  return true;
}

bool MessageQueue::KillTimer(HWND window, UINT id) {
  const Lock lock(All().mutex);
  const WindowRecord* const record = All().Find(window);
  if (record == nullptr) return false;
  MessageQueue& owner = *record->owner;
  const auto timer = owner.timers_.find({window, id});
  if (timer == owner.timers_.end()) return false;
  owner.due_.erase(timer->second.due);
  owner.timers_.erase(timer);
  return true;
}

std::optional<MSG> MessageQueue::Take(Round* round) {
  ServeWaiting();
  const Lock lock(All().mutex);
  if (const std::optional<MSG> message = posted_.Pop(All())) return message;
  if (!quit_) return TakeTimer(round);
  const MSG message{nullptr, WM_QUIT, static_cast<WPARAM>(*quit_), 0};
  quit_.reset();
  return message;
}

std::optional<MSG> MessageQueue::TakeTimer(Round* round) {
  if (due_.empty()) return std::nullopt;
  const std::int64_t now = ReadClock();
  auto first = round == nullptr ? due_.begin() : due_.lower_bound(round->from);
  for (; first != due_.end() && first->first.first <= now; ++first) {
    const auto [due, scheduled] = first->first;
    if (round != nullptr) round->from = first->first;
    if (round != nullptr && scheduled > round->begun) continue;
    const TimerName name = first->second;
    Timer& timer = timers_.at(name);
    due_.erase(first);
    // One that is late comes once.
    Schedule(name, timer, due + timer.interval > now ? due + timer.interval : now + timer.interval);
    return MSG{name.first, WM_TIMER, name.second, 0};
  }
  return std::nullopt;
}

void MessageQueue::SetEvents(NativeEvents* events) {
  const Lock lock(All().mutex);
  events_ = events;
}

bool MessageQueue::TakeInEvents() { return events_ != nullptr && events_->Wait(0); }

bool MessageQueue::WaitForWork(DWORD milliseconds) {
  Lock lock(All().mutex);
  std::int64_t wait = milliseconds;
  if (!due_.empty()) {
    wait = std::min(wait, std::max(std::int64_t{0}, due_.begin()->first.first - ReadClock()));
  }
  const auto has_work = [this] { return !sent_.empty() || !posted_.empty() || quit_.has_value(); };
  if (events_ == nullptr) {
    wake_.wait_for(lock, std::chrono::milliseconds(wait), has_work);
    return false;
  }
  if (has_work()) return false;
  // What comes from now on wakes the wait, even before it has begun.
  lock.unlock();
  return events_->Wait(static_cast<DWORD>(wait));
}

void MessageQueue::WakeUp() {
  wake_.notify_one();
  if (events_ != nullptr) events_->Wake();
}

bool MessageQueue::IsToEnd() {
  const Lock lock(All().mutex);
  return quit_.has_value();
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
