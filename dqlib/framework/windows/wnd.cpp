#include "dqlib/framework/windows/wnd.h"

#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/win_thread.h"

namespace dq {

IMPLEMENT_DYNAMIC(CWnd, CObject)

CWnd::~CWnd() {
  DestroyWindow();
  CWinThread* const thread = AfxGetThread();
  if (thread != nullptr && thread->m_pMainWnd == this) thread->m_pMainWnd = nullptr;
}

bool CWnd::CreateWnd(const char* class_name) {
  if (MessageQueue::FindWindow(m_hWnd) != nullptr) return false;
  m_hWnd = MessageQueue::AddWindow(this, class_name == nullptr ? "" : class_name);
  return m_hWnd != nullptr;
}

bool CWnd::DestroyWindow() { return MessageQueue::RemoveWindow(m_hWnd.exchange(nullptr)); }

LRESULT CWnd::SendMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  return SendToWindow(m_hWnd, message, wparam, lparam);
}

CWnd* CWnd::FromHandle(HWND window) { return MessageQueue::FindWindow(window); }

LRESULT CWnd::WindowProc(UINT, WPARAM, LPARAM) { return 0; }

LRESULT SendToWindow(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (CWnd* own = MessageQueue::FindOwnWindow(window)) {
    return own->WindowProc(message, wparam, lparam);
  }
  return MessageQueue::Send(window, message, wparam, lparam);
}

int GetWindowClassName(HWND window, char* buffer, int size) {
  if (buffer == nullptr || size < 1) return 0;
  const std::string name = MessageQueue::ClassName(window);
  const std::size_t length = name.copy(buffer, static_cast<std::size_t>(size - 1));
  buffer[length] = '\0';
  return static_cast<int>(length);
}

}  // namespace dq
