// Windows: messages and commands.

#include <vector>

#include "dqlib/framework/windows/cmd_target.h"
#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/owner_draw.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {
namespace {

/// Has the menu handle an item that it draws itself; not 0 if there is such a menu.
template <typename Item>
LRESULT OwnerOf(LPARAM lparam, void (CMenu::*handle)(Item*)) {
  Item* const item = reinterpret_cast<Item*>(lparam);
  if (item == nullptr || item->CtlType != ODT_MENU) return 0;
  CMenu* const menu = CMenu::FromHandlePermanent(item->hMenu);
  if (menu != nullptr) (menu->*handle)(item);
  return menu == nullptr ? 0 : 1;
}

/// Copies a text with a zero behind it, cut to the buffer; how many bytes of it.
LRESULT CopyText(std::string_view text, char* buffer, std::size_t size) {
  if (buffer == nullptr || size == 0) return 0;
  const std::size_t copied = text.copy(buffer, size - 1);
  buffer[copied] = '\0';
  return static_cast<LRESULT>(copied);
}

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
  const detail::Watched self(*this);
  if (OnWndMsg(message, wparam, lparam, &result) != 0) return result;
  // A handler that declines may have ended it.
  return self.IsThere() ? DefWindowProc(message, wparam, lparam) : 0;
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
  if (message == WM_COMMAND) return OnCommand(wparam, lparam);
  if (message == WM_NOTIFY) return OnNotify(wparam, lparam, result);
  HWND control = nullptr;
  if (message == WM_VKEYTOITEM) control = reinterpret_cast<HWND>(lparam);
  if ((message == WM_DRAWITEM || message == WM_MEASUREITEM) && wparam != 0) {
    const CWnd* const item = GetDlgItem(static_cast<int>(wparam));
    if (item != nullptr) control = item->GetSafeHwnd();
  }
  if (control != nullptr) {
    const detail::Watched self(*this);
    if (ReflectNotification(control, message, wparam, lparam, result) != 0) return 1;
    if (!self.IsThere()) return 1;
  }
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
    if (exchanging_) return 1;
    LRESULT result = 0;
    const detail::Watched self(*this);
    const HWND control = reinterpret_cast<HWND>(lparam);
    if (ReflectNotification(control, WM_COMMAND, wparam, lparam, &result) != 0) return 1;
    return self.IsThere() ? OnCmdMsg(id, HiWord(wparam), nullptr, nullptr) : 1;
  }
  // A menu item or accelerator: what shows the command may be out of date, so it is asked first.
  const detail::Watched self(*this);
  EnabledTest test;
  test.m_nID = id;
  OnCmdMsg(id, CN_UPDATE_COMMAND_UI, &test, nullptr);
  if (!test.enabled || !self.IsThere()) return 1;
  return OnCmdMsg(id, CN_COMMAND, nullptr, nullptr);
}

BOOL CWnd::OnNotify(WPARAM wparam, LPARAM lparam, LRESULT* result) {
  NMHDR* const header = reinterpret_cast<NMHDR*>(lparam);
  if (header == nullptr) return 0;
  if (exchanging_) return 1;
  const detail::Watched self(*this);
  if (ReflectNotification(header->hwndFrom, WM_NOTIFY, wparam, lparam, result) != 0) return 1;
  if (!self.IsThere()) return 1;
  AFX_NOTIFY notify{result, header};
  return OnCmdMsg(header->idFrom, NotifyCode(header->code), &notify, nullptr);
}

BOOL CWnd::ReflectNotification(HWND control, UINT message, WPARAM wparam, LPARAM lparam,
                               LRESULT* result) {
  CWnd* const child = MessageQueue::FindOwnWindow(control);
  // One that was handed on by the windows above has told the control before.
  if (child == nullptr || child->GetParent() != this) return 0;
  return child->OnChildNotify(message, wparam, lparam, result);
}

BOOL CWnd::OnChildNotify(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
  HandlerArguments arguments;
  arguments.wparam = wparam;
  arguments.lparam = lparam;
  HandlerKey key{kReflectBase + message, 0, 0};
  if (message == WM_COMMAND) key.code = HiWord(wparam);
  if (message == WM_NOTIFY) {
    arguments.header = reinterpret_cast<NMHDR*>(lparam);
    key.code = static_cast<WORD>(arguments.header->code);
  }
  if (!CallMapped(key, arguments)) return 0;
  *result = arguments.result;
  return 1;
}

BOOL CWnd::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  return CCmdTarget::OnCmdMsg(id, code, extra, handler_info);
}

BOOL CWnd::PreTranslateMessage(MSG*) { return 0; }

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CLOSE:
      DestroyWindow();
      return 0;
    case WM_QUERYENDSESSION:
      return 1;
    case WM_ACTIVATE:
      if (LoWord(wparam) != WA_INACTIVE && !IsIconic()) TakeFocusBack();
      return 0;
    case WM_SETFONT:
      font_ = reinterpret_cast<CFont*>(wparam);
      Changed(WindowChange::kFont);
      if (lparam != 0) Invalidate();
      return 0;
    case WM_GETFONT:
      return reinterpret_cast<LRESULT>(font_);
    case WM_RBUTTONUP: {
      const WPARAM place = static_cast<WPARAM>(lparam);
      const CPoint at = ClientToScreen(PointOfParam(static_cast<LPARAM>(place)));
      return WindowProc(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(GetSafeHwnd()),
                        MakeLParam(at.x, at.y));
    }
    case WM_SETTEXT:
      SetWindowText(reinterpret_cast<const char*>(lparam));
      return 1;
    case WM_GETTEXT:
      return CopyText(OnGetText().View(), reinterpret_cast<char*>(lparam), wparam);
    case WM_GETTEXTLENGTH:
      return GetWindowTextLength();
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      return KeyDown(wparam);
    case WM_CHAR:
    case WM_SYSCHAR:
      detail::PassKeyOn(*this);
      return 0;
    case WM_CONTEXTMENU:
    case WM_MOUSEWHEEL:
      return parent_ == nullptr ? 0 : parent_->WindowProc(message, wparam, lparam);
    case WM_GETMINMAXINFO:
      if (lparam != 0) *reinterpret_cast<MINMAXINFO*>(lparam) = UsualLimits();
      return 0;
    case WM_MOUSEACTIVATE:
      return parent_ == nullptr ? LRESULT{MA_ACTIVATE}
                                : parent_->WindowProc(message, wparam, lparam);
    case WM_SETCURSOR:
      SetPointerShape(PointerShape::kArrow);
      return 1;
    case WM_MEASUREITEM:
      return OwnerOf<MEASUREITEMSTRUCT>(lparam, &CMenu::MeasureItem);
    case WM_DRAWITEM:
      return OwnerOf<DRAWITEMSTRUCT>(lparam, &CMenu::DrawItem);
    case WM_NCHITTEST:
      return HTCLIENT;
    case WM_VKEYTOITEM:
      return -1;
    default:
      return 0;
  }
}

LRESULT CWnd::KeyDown(WPARAM key) {
  if (detail::PassKeyOn(*this)) return 0;
  if (key != VK_APPS && !(key == VK_F10 && IsKeyDown(VK_SHIFT))) return 0;
  return WindowProc(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(GetSafeHwnd()), -1);
}

void CWnd::NotifyParent(int code) {
  if (parent_ == nullptr) return;
  parent_->SendMessage(WM_COMMAND, MakeWParam(static_cast<UINT>(id_), static_cast<UINT>(code)),
                       reinterpret_cast<LPARAM>(GetSafeHwnd()));
}

}  // namespace dq
