#include "dqlib/framework/windows/frame_wnd.h"

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_app.h"

namespace dq {
namespace {

CMDIChildWnd* ToChild(HWND window) {
  CWnd* const own = MessageQueue::FindOwnWindow(window);
  return DYNAMIC_DOWNCAST(CMDIChildWnd, own);
}

}  // namespace

IMPLEMENT_DYNCREATE(CFrameWnd, CWnd)
IMPLEMENT_DYNCREATE(CMDIFrameWnd, CFrameWnd)
IMPLEMENT_DYNCREATE(CMDIChildWnd, CFrameWnd)

CFrameWnd::~CFrameWnd() { CFrameWnd::DestroyWindow(); }

bool CFrameWnd::Create(const char* class_name, const char* caption, const CRect& place,
                       UINT menu_id) {
  if (menu_id != 0 && own_menu_.m_hMenu == nullptr && !own_menu_.LoadMenu(menu_id)) return false;
  if (!CreateWnd({.class_name = class_name == nullptr ? "" : class_name,
                  .text = caption == nullptr ? "" : caption,
                  .place = place})) {
    return false;
  }
  if (menu_id != 0) SetMenu(&own_menu_);
  return true;
}

CWnd* CFrameWnd::GetActiveView() const { return MessageQueue::FindOwnWindow(active_view_); }

void CFrameWnd::SetActiveView(CWnd* view) {
  const HWND former = active_view_;
  active_view_ = view == nullptr ? nullptr : view->GetSafeHwnd();
  if (former != active_view_ && GetSafeHwnd() != nullptr) Changed(WindowChange::kActive);
}

void CFrameWnd::SetMessageText(const char* text) {
  message_text_ = text == nullptr ? "" : text;
  if (GetSafeHwnd() != nullptr) Changed(WindowChange::kContent);
}

void CFrameWnd::SetMessageText(UINT string_id) {
  SetMessageText(std::string(AfxFindString(string_id).value_or(std::string_view())).c_str());
}

void CFrameWnd::UpdateMenu() {
  if (GetMenu() != nullptr) GetMenu()->UpdateItems(*this);
}

BOOL CFrameWnd::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  // One that declines may have ended the frame.
  const detail::Watched self(*this);
  CWnd* const view = GetActiveView();
  if (view != nullptr && view->OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  if (!self.IsThere()) return 0;
  if (CWnd::OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  if (!self.IsThere()) return 0;
  CWinApp* const app = AfxGetApp();
  return app == nullptr ? 0 : app->OnCmdMsg(id, code, extra, handler_info);
}

BOOL CFrameWnd::PreTranslateMessage(MSG* message) {
  if (message->message == WM_KEYDOWN || message->message == WM_SYSKEYDOWN) {
    const auto is_down = [](int key) { return (GetKeyState(key) & kKeyDown) != 0; };
    if (accelerators_.Translate(*this, static_cast<WORD>(message->wParam), is_down(VK_CONTROL),
                                is_down(VK_SHIFT), is_down(VK_MENU))) {
      return 1;
    }
  }
  return CWnd::PreTranslateMessage(message);
}

/// The window in which child frames lie: it makes them active and ends them when it is told to.
class CMDIFrameWnd::Client : public CWnd {
 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    CMDIFrameWnd* const frame = DYNAMIC_DOWNCAST(CMDIFrameWnd, GetParent());
    CMDIChildWnd* const child = ToChild(reinterpret_cast<HWND>(wparam));
    if (frame != nullptr && child != nullptr && child->GetParent() == this) {
      if (message == WM_MDIACTIVATE) frame->Activate(child);
      if (message == WM_MDIDESTROY) child->DestroyWindow();
    }
    return CWnd::DefWindowProc(message, wparam, lparam);
  }
};

CMDIFrameWnd::CMDIFrameWnd() = default;

CMDIFrameWnd::~CMDIFrameWnd() { CMDIFrameWnd::DestroyWindow(); }

CWnd* CMDIFrameWnd::GetMDIClient() {
  if (GetSafeHwnd() == nullptr) return nullptr;
  if (client_ == nullptr) client_ = std::make_unique<Client>();
  if (client_->GetSafeHwnd() == nullptr &&
      !client_->CreateWnd({.class_name = "MDIClient", .place = GetClientRect(), .parent = this})) {
    return nullptr;
  }
  return client_.get();
}

CMDIChildWnd* CMDIFrameWnd::MDIGetActive() const { return ToChild(active_child_); }

void CMDIFrameWnd::MDIActivate(CMDIChildWnd* child) {
  CWnd* const client = GetMDIClient();
  if (client == nullptr || child == nullptr) return;
  client->SendMessage(WM_MDIACTIVATE, reinterpret_cast<WPARAM>(child->GetSafeHwnd()));
}

void CMDIFrameWnd::Activate(CMDIChildWnd* child) {
  const HWND former = active_child_;
  const HWND now = child == nullptr ? nullptr : child->GetSafeHwnd();
  if (former == now) return;
  active_child_ = now;
  Changed(WindowChange::kActive);
  for (const HWND told : {former, now}) {
    SendToWindow(told, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(former),
                 reinterpret_cast<LPARAM>(now));
  }
}

void CMDIFrameWnd::MDINext() {
  CMDIChildWnd* const active = MDIGetActive();
  CWnd* const client = GetMDIClient();
  if (client == nullptr) return;
  CWnd* next = active == nullptr ? nullptr : active->GetNextWindow();
  if (next == nullptr) next = client->GetTopWindow();
  MDIActivate(DYNAMIC_DOWNCAST(CMDIChildWnd, next));
}

CFrameWnd* CMDIFrameWnd::GetActiveFrame() {
  CMDIChildWnd* const child = MDIGetActive();
  return child == nullptr ? static_cast<CFrameWnd*>(this) : child;
}

BOOL CMDIFrameWnd::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  const detail::Watched self(*this);
  CMDIChildWnd* const child = MDIGetActive();
  if (child != nullptr && child->OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  if (!self.IsThere()) return 0;
  return CFrameWnd::OnCmdMsg(id, code, extra, handler_info);
}

LRESULT CMDIFrameWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_SIZE && wparam != SIZE_MINIMIZED && client_ != nullptr) {
    const detail::Watched self(*this);
    client_->MoveWindow(GetClientRect());
    if (!self.IsThere()) return 0;
  }
  return CFrameWnd::DefWindowProc(message, wparam, lparam);
}

CMDIChildWnd::~CMDIChildWnd() { CMDIChildWnd::DestroyWindow(); }

bool CMDIChildWnd::Create(const char* class_name, const char* caption, const CRect& place,
                          CMDIFrameWnd* parent) {
  CWnd* const client = parent == nullptr ? nullptr : parent->GetMDIClient();
  if (client == nullptr) return false;
  if (!CreateWnd({.class_name = class_name == nullptr ? "" : class_name,
                  .text = caption == nullptr ? "" : caption,
                  .place = place,
                  .parent = client})) {
    return false;
  }
  const detail::Watched self(*this);
  parent->MDIActivate(this);
  return self.IsThere();
}

CMDIFrameWnd* CMDIChildWnd::GetMDIFrame() const {
  const CWnd* const client = GetParent();
  return client == nullptr ? nullptr : DYNAMIC_DOWNCAST(CMDIFrameWnd, client->GetParent());
}

void CMDIChildWnd::MDIDestroy() {
  if (CWnd* const client = GetParent()) {
    client->SendMessage(WM_MDIDESTROY, reinterpret_cast<WPARAM>(GetSafeHwnd()));
  }
}

void CMDIChildWnd::MDIActivate() {
  if (CMDIFrameWnd* const frame = GetMDIFrame()) frame->MDIActivate(this);
}

LRESULT CMDIChildWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_DESTROY) {
    CMDIFrameWnd* const frame = GetMDIFrame();
    if (frame != nullptr && frame->MDIGetActive() == this) {
      CWnd* next = GetNextWindow() != nullptr ? GetNextWindow() : GetPrevWindow();
      frame->Activate(DYNAMIC_DOWNCAST(CMDIChildWnd, next));
    }
  }
  return CFrameWnd::DefWindowProc(message, wparam, lparam);
}

}  // namespace dq
