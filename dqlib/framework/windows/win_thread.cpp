#include "dqlib/framework/windows/win_thread.h"

#include <system_error>
#include <thread>
#include <utility>

#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

thread_local CWinThread* t_thread = nullptr;

}  // namespace

IMPLEMENT_DYNAMIC(CWinThread, CObject)

CWinThread::~CWinThread() {
  if (t_thread == this) t_thread = nullptr;
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

WorkerThread AfxBeginThread(UINT (*procedure)(void*), void* parameter) {
  WorkerThread worker;
  if (procedure == nullptr) return worker;
  auto state = std::make_unique<WorkerThread::State>();
  const auto run = [=, main_window = AfxGetMainWnd(), finished = state->finished] {
    {
      CWinThread self;
      self.m_pMainWnd = main_window;
      t_thread = &self;
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
