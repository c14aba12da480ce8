#include "dqlib/framework/windows/mini_dock_frame.h"

#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(CMiniDockFrameWnd, CFrameWnd)

bool CMiniDockFrameWnd::Create(CFrameWnd& owner, const char* caption, const CRect& place) {
  return CreateFrame({.class_name = "MiniFrame",
                      .text = caption,
                      .place = place,
                      .client_size = true,
                      .owner = &owner,
                      .visible = false,
                      .enabled = owner.GetTopLevelParent()->IsWindowEnabled()},
                     0, nullptr);
}

CFrameWnd* CMiniDockFrameWnd::GetDockingFrame() const {
  CWnd* const owner = GetOwner();
  return DYNAMIC_DOWNCAST(CFrameWnd, owner);
}

CControlBar* CMiniDockFrameWnd::GetBar() const {
  CWnd* const bar = GetTopWindow();
  return DYNAMIC_DOWNCAST(CControlBar, bar);
}

void CMiniDockFrameWnd::RecalcLayout() {
  if (CControlBar* const bar = GetBar()) bar->MoveWindow(GetClientRect());
}

BOOL CMiniDockFrameWnd::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  CView* const view = GetActiveView();
  return view == nullptr ? 0 : view->OnCmdMsg(id, code, extra, handler_info);
}

BOOL CMiniDockFrameWnd::PreTranslateMessage(MSG* message) {
  const detail::Watched self(*this);
  if (CFrameWnd::PreTranslateMessage(message) != 0) return 1;
  CFrameWnd* const owner = self.IsThere() ? GetDockingFrame() : nullptr;
  return owner == nullptr ? 0 : owner->PreTranslateMessage(message);
}

void CMiniDockFrameWnd::OnClose() {
  CFrameWnd* const owner = GetDockingFrame();
  if (owner != nullptr) owner->ShowControlBar(GetBar(), false);
}

LRESULT CMiniDockFrameWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  const detail::Watched self(*this);
  CFrameWnd* const owner = GetDockingFrame();
  switch (message) {
    case WM_COMMAND:
    case WM_NOTIFY:
      return owner == nullptr ? 0 : owner->SendMessage(message, wparam, lparam);
    case WM_MOVE:
    case WM_SIZE: {
      const LRESULT result = CFrameWnd::DefWindowProc(message, wparam, lparam);
      CControlBar* const bar = self.IsThere() ? GetBar() : nullptr;
      if (bar != nullptr) bar->m_rectFloat = GetPlace();
      return result;
    }
    default:
      return CFrameWnd::DefWindowProc(message, wparam, lparam);
  }
}

}  // namespace dq
