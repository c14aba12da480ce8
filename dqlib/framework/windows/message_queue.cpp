#include "dqlib/framework/windows/message_queue.h"

#include <bit>
#include <exception>
#include <optional>
#include <unordered_map>
#include <utility>

#include "dqlib/framework/windows/wnd.h"

namespace dq {
namespace {

/// Handles count up from here, so that a small number is never one by chance.
constexpr std::uintptr_t kFirstHandle = 0x10000;

struct WindowRecord {
  CWnd* window = nullptr;
  MessageQueue* owner = nullptr;
  std::string class_name;
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
  const WindowRecord* Find(HWND window) const {
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
  All().windows[handle] = {window, owner, std::move(class_name)};
  ++owner->windows_;
  return handle;
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
  All().windows.erase(window);
  return true;
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
