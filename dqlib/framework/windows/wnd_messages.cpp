// Windows: messages and commands.

#include <vector>

#include "dqlib/framework/windows/cmd_target.h"
#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {
namespace {

/// Learns whether a command is enabled, and shows nothing.
class EnabledTest : public CCmdUI {
 public:
  void Enable(BOOL on) override {
    m_bEnableChanged = true;
    enabled = on != 0;
  }
  void SetCheck(int) override {}
  void SetRadio(BOOL) override {}
  void SetText(const char*) override {}

  bool enabled = true;
};

}  // namespace

LRESULT CWnd::SendMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  return SendToWindow(m_hWnd, message, wparam, lparam);
}

bool CWnd::PostMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  return MessageQueue::Post(m_hWnd, message, wparam, lparam);
}

LRESULT SendToWindow(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (CWnd* own = MessageQueue::FindOwnWindow(window)) {
    return own->WindowProc(message, wparam, lparam);
  }
  return MessageQueue::Send(window, message, wparam, lparam);
}

bool PostToWindow(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  return MessageQueue::Post(window, message, wparam, lparam);
}

void CWnd::SendMessageToDescendants(UINT message, WPARAM wparam, LPARAM lparam, bool deep) {
  // By handle, because handlers may end windows. The last one is the next to be served.
  std::vector<HWND> waiting;
  const auto add_children = [&](const CWnd& window) {
    for (const CWnd* child = window.last_child_; child != nullptr; child = child->previous_) {
      waiting.push_back(child->m_hWnd);
    }
  };
  add_children(*this);
  while (!waiting.empty()) {
    const HWND next = waiting.back();
    waiting.pop_back();
    CWnd* window = MessageQueue::FindOwnWindow(next);
    if (window == nullptr) continue;
    window->WindowProc(message, wparam, lparam);
    window = MessageQueue::FindOwnWindow(next);
    if (deep && window != nullptr) add_children(*window);
  }
}

UINT CWnd::SetTimer(UINT id, UINT milliseconds) {
  return MessageQueue::SetTimer(m_hWnd, id, milliseconds) ? id : 0;
}

bool CWnd::KillTimer(UINT id) { return MessageQueue::KillTimer(m_hWnd, id); }

LRESULT CWnd::WindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  LRESULT result = 0;
  if (OnWndMsg(message, wparam, lparam, &result) != 0) return result;
  return DefWindowProc(message, wparam, lparam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
  if (message == WM_COMMAND) return OnCommand(wparam, lparam);
  if (message == WM_NOTIFY) return OnNotify(wparam, lparam, result);
  HandlerArguments arguments;
  arguments.wparam = wparam;
  arguments.lparam = lparam;
  if (!CallMapped({message, 0, 0}, arguments)) return 0;
  *result = arguments.result;
  return 1;
}

BOOL CWnd::OnCommand(WPARAM wparam, LPARAM lparam) {
  const UINT id = LoWord(wparam);
  if (lparam != 0) {
    // A handler would find half of the values in the variables and half in the controls.
    return exchanging_ ? 1 : OnCmdMsg(id, HiWord(wparam), nullptr, nullptr);
  }
  // A menu item or accelerator: what shows the command may be out of date, so it is asked first.
  const detail::Watched self(*this);
  EnabledTest test;
  test.m_nID = id;
  OnCmdMsg(id, CN_UPDATE_COMMAND_UI, &test, nullptr);
  if (!test.enabled || !self.IsThere()) return 1;
  return OnCmdMsg(id, CN_COMMAND, nullptr, nullptr);
}

BOOL CWnd::OnNotify(WPARAM, LPARAM lparam, LRESULT* result) {
  HandlerArguments arguments;
  arguments.header = reinterpret_cast<NMHDR*>(lparam);
  if (arguments.header == nullptr) return 0;
  const HandlerKey key{WM_NOTIFY, arguments.header->code, arguments.header->idFrom};
  if (!CallMapped(key, arguments)) return 0;
  *result = arguments.result;
  return 1;
}

BOOL CWnd::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  return CCmdTarget::OnCmdMsg(id, code, extra, handler_info);
}

BOOL CWnd::PreTranslateMessage(MSG*) { return 0; }

LRESULT CWnd::DefWindowProc(UINT message, WPARAM, LPARAM lparam) {
  if (message == WM_CLOSE) {
    DestroyWindow();
  } else if (message == WM_GETMINMAXINFO && lparam != 0) {
    auto& info = *reinterpret_cast<MINMAXINFO*>(lparam);
    const CSize screen = GetScreenSize();
    info.ptMaxSize = info.ptMaxTrackSize = {screen.cx, screen.cy};
    info.ptMaxPosition = info.ptMinTrackSize = {};
  }
  return 0;
}

void CWnd::NotifyParent(int code) {
  if (parent_ == nullptr) return;
  parent_->SendMessage(WM_COMMAND, MakeWParam(static_cast<UINT>(id_), static_cast<UINT>(code)),
                       reinterpret_cast<LPARAM>(GetSafeHwnd()));
}

}  // namespace dq
