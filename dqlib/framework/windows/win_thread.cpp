#include "dqlib/framework/windows/win_thread.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <utility>

#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

/// How long a condition may hold unnoticed, in milliseconds.
constexpr DWORD kLongestWait = 100;

thread_local CWinThread* t_thread = nullptr;

/// After so many messages native events are taken in too, so that a flood of messages doesn't keep
/// a person from working.
constexpr int kMessagesAtATime = 16;

enum class Pumped { kNothing, kMessage, kQuit };

/// Handles the next message of the queue. `code` takes that of the thread's end.
Pumped PumpOne(MessageQueue& queue, int& code, MessageQueue::Round* round = nullptr) {
  thread_local int handled = 0;
  if (++handled % kMessagesAtATime == 0) queue.TakeInEvents();
  std::optional<MSG> message = queue.Take(round);
  if (!message) return Pumped::kNothing;
  if (message->message == WM_QUIT) {
    code = static_cast<int>(message->wParam);
    return Pumped::kQuit;
  }
  if (PreTranslateInput(*message)) return Pumped::kMessage;
  if (CWnd* const window = MessageQueue::FindOwnWindow(message->hwnd)) {
    window->WindowProc(message->message, message->wParam, message->lParam);
  }
  return Pumped::kMessage;
}

/// Offers a message to its window and those above it.
bool OfferToWindows(MSG& message) {
  // By handle, because what one window does with it may end those above.
  for (HWND next = message.hwnd; CWnd* const window = MessageQueue::FindOwnWindow(next);) {
    const CWnd* const parent = window->GetParent();
    next = parent == nullptr ? nullptr : parent->GetSafeHwnd();
    if (window->PreTranslateMessage(&message) != 0) return true;
  }
  return false;
}

bool Idle(LONG count) { return t_thread != nullptr && t_thread->OnIdle(count) != 0; }

/// When there is no message left: takes in native events, and idles if there are none either; then
/// waits. `idled` counts the calls of `idle`, and is -1 once there is nothing more to do.
template <typename Idle>
void IdleAndWait(MessageQueue& queue, int& idled, DWORD milliseconds, Idle idle) {
  detail::TellRows();
  bool handled = queue.TakeInEvents();
  if (!handled) {
    if (idled >= 0) idled = idle(idled) ? idled + 1 : -1;
    handled = idled < 0 && queue.WaitForWork(milliseconds);
  }
  if (handled) idled = 0;
}

}  // namespace

IMPLEMENT_DYNAMIC(CWinThread, CCmdTarget)

CWinThread::~CWinThread() {
  if (t_thread == this) t_thread = nullptr;
}

int CWinThread::Run() {
  MessageQueue* const queue = MessageQueue::Current();
  if (queue == nullptr) return 0;
  for (int code = 0, idled = 0;;) {
    switch (PumpOne(*queue, code)) {
      case Pumped::kQuit:
        return code;
      case Pumped::kMessage:
        idled = 0;
        break;
      case Pumped::kNothing:
        IdleAndWait(*queue, idled, kForever, [this](LONG count) { return OnIdle(count) != 0; });
        break;
    }
  }
}

BOOL CWinThread::PreTranslateMessage(MSG* message) { return OfferToWindows(*message) ? 1 : 0; }

BOOL CWinThread::OnIdle(LONG count) {
  if (count != 0) return 0;
  const HWND main = m_pMainWnd == nullptr ? nullptr : m_pMainWnd->GetSafeHwnd();
  const HWND active = detail::CurrentUi().active;
  for (const HWND top : {main, active == main ? nullptr : active}) {
    // Another thread's main window is that one's to bring up to date.
    if (MessageQueue::FindOwnWindow(top) == nullptr) continue;
    SendToWindow(top, WM_IDLEUPDATECMDUI, 1, 0);
    if (CWnd* const window = MessageQueue::FindOwnWindow(top)) {
      window->SendMessageToDescendants(WM_IDLEUPDATECMDUI, 1);
    }
  }
  return 0;
}

bool PreTranslateInput(MSG& message) {
  return t_thread != nullptr ? t_thread->PreTranslateMessage(&message) != 0
                             : OfferToWindows(message);
}

int PumpUntilIdle() {
  MessageQueue* const queue = MessageQueue::Current();
  if (queue == nullptr) return 0;
  MessageQueue::Round round = queue->BeginRound();
  int handled = 0;
  bool took_events = false;
  for (int code = 0, idled = 0;;) {
    switch (PumpOne(*queue, code, &round)) {
      case Pumped::kQuit:
        queue->PostQuit(code);
        return handled;
      case Pumped::kMessage:
        ++handled;
        idled = 0;
        break;
      case Pumped::kNothing:
        detail::TellRows();
        // Once, so that the call ends however many come.
        if (!std::exchange(took_events, true) && queue->TakeInEvents()) break;
        if (!Idle(idled++)) return handled;
        break;
    }
  }
}

namespace {

/// Handles messages until the condition holds, which is asked at least each time `longest_wait` has
/// passed.
bool Pump(const std::function<bool()>& condition, DWORD milliseconds, DWORD longest_wait) {
  MessageQueue* const queue = MessageQueue::Current();
  platform::Clock& clock = *platform::Current().clock;
  const DWORD start = clock.TickCount();
  int code = 0;
  int idled = 0;
  while (!condition()) {
    const DWORD passed = clock.TickCount() - start;
    if (queue == nullptr || (milliseconds != kForever && passed >= milliseconds)) return false;
    switch (PumpOne(*queue, code)) {
      case Pumped::kQuit:
        queue->PostQuit(code);
        return false;
      case Pumped::kMessage:
        idled = 0;
        break;
      case Pumped::kNothing:
        IdleAndWait(*queue, idled, std::min(longest_wait, milliseconds - passed), Idle);
        break;
    }
  }
  return true;
}

}  // namespace

bool PumpUntil(const std::function<bool()>& condition, DWORD milliseconds) {
  return Pump(condition, milliseconds, kLongestWait);
}

bool PumpUntilHandled(const std::function<bool()>& condition) {
  return Pump(condition, kForever, kForever);
}

void PostQuitMessage(int code) {
  if (MessageQueue* const queue = MessageQueue::Current()) queue->PostQuit(code);
}

CWinThread* AfxGetThread() { return t_thread; }

void AfxSetThread(CWinThread* thread) { t_thread = thread; }

CWnd* AfxGetMainWnd() { return t_thread == nullptr ? nullptr : t_thread->m_pMainWnd; }

struct WorkerThread::State {
  std::thread thread;
  /// Shared with the thread, which may outlive this.
  std::shared_ptr<MessageQueue::Completion> finished = std::make_shared<MessageQueue::Completion>();

  ~State() {
    if (thread.joinable()) thread.detach();
  }
};

WorkerThread::WorkerThread() = default;
WorkerThread::WorkerThread(WorkerThread&&) noexcept = default;
WorkerThread& WorkerThread::operator=(WorkerThread&&) noexcept = default;
WorkerThread::~WorkerThread() = default;

void WorkerThread::Join() {
  if (state_ == nullptr) return;
  const std::unique_ptr<State> state = std::move(state_);
  MessageQueue::Wait(*state->finished);
  state->thread.join();
}

WorkerThread AfxBeginThread(UINT (*procedure)(void*), void* parameter, int priority) {
  WorkerThread worker;
  if (procedure == nullptr) return worker;
  auto state = std::make_unique<WorkerThread::State>();
  const auto run = [=, main_window = AfxGetMainWnd(), finished = state->finished] {
    {
      CWinThread self;
      self.m_pMainWnd = main_window;
      t_thread = &self;
      if (priority == THREAD_PRIORITY_IDLE) {
        // One that the system refuses runs as others do.
        static_cast<void>(
            platform::Current().threads->SetPriority(platform::ThreadPriority::kIdle));
      }
      procedure(parameter);
    }
    MessageQueue::Complete(*finished);
  };
  try {
    state->thread = std::thread(run);
    worker.state_ = std::move(state);
  } catch (const std::system_error&) {
    // There is no other way to learn that the system has no thread left; the result says it.
  }
  return worker;
}

int PumpSentMessages() {
  MessageQueue* const queue = MessageQueue::Current();
  return queue == nullptr ? 0 : queue->ServeWaiting();
}

}  // namespace dq
