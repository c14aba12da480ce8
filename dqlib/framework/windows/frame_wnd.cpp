#include "dqlib/framework/windows/frame_wnd.h"

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/document.h"
#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/status_bar.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

using detail::Watched;

namespace {

/// The first part of a string, up to "\n".
std::string FirstPart(UINT string_id) {
  const std::string_view text = AfxFindString(string_id).value_or(std::string_view());
  return std::string(text.substr(0, text.find('\n')));
}

/// The first view of a pane, itself or below it; null if there is none.
CView* FirstView(CWnd* pane) {
  CView* view = DYNAMIC_DOWNCAST(CView, pane);
  CWnd* inner = pane == nullptr ? nullptr : pane->GetTopWindow();
  for (; view == nullptr && inner != nullptr; inner = inner->GetNextWindow()) {
    view = FirstView(inner);
  }
  return view;
}

}  // namespace

IMPLEMENT_DYNCREATE(CFrameWnd, CWnd)

CFrameWnd::~CFrameWnd() {
  deletes_itself_ = false;
  EndInDestructor();
}

bool CFrameWnd::Create(const char* class_name, const char* caption, const CRect& place,
                       UINT menu_id, const CCreateContext* context, bool visible) {
  return CreateFrame({.class_name = class_name == nullptr ? "" : class_name,
                      .text = caption == nullptr ? "" : caption,
                      .place = place,
                      .visible = visible},
                     menu_id, context);
}

bool CFrameWnd::CreateFrame(const WindowCreation& creation, UINT menu_id,
                            const CCreateContext* context) {
  if (menu_id != 0 && !LoadMenuBar(menu_id)) return false;
  title_ = std::string(creation.text);
  ready_due_ = creation.parent == nullptr && message_text_.IsEmpty();
  CDocument* const shown = context == nullptr ? nullptr : context->m_pCurrentDoc;
  const detail::WatchedObject<CDocument> document(shown);
  if (!CreateWnd(creation)) return false;
  const Watched self(*this);
  if (own_menu_.m_hMenu != nullptr) SetMenu(&own_menu_);
  if (self.IsThere() && document.get() == shown && OnCreateClient(context)) {
    if (self.IsThere()) RecalcLayout();
    return self.IsThere();
  }
  if (self.IsThere()) DestroyWindow();
  return false;
}

bool CFrameWnd::LoadMenuBar(UINT menu_id) {
  return own_menu_.m_hMenu != nullptr || own_menu_.LoadMenu(menu_id);
}

bool CFrameWnd::LoadFrame(UINT resource_id, CWnd* parent, const CCreateContext* context) {
  LoadMenuBar(resource_id);
  LoadAccelTable(resource_id);
  const std::string title = FirstPart(resource_id);
  constexpr CRect kUsual{0, 0, 800, 600};
  return CreateFrame({.class_name = "Frame",
                      .text = title,
                      .place = kUsual,
                      .centered = true,
                      .owner = parent,
                      .visible = false},
                     0, context);
}

bool CFrameWnd::OnCreateClient(const CCreateContext* context) {
  if (context == nullptr || context->m_pNewViewClass == nullptr) return true;
  return CreateView(context) != nullptr;
}

CView* CFrameWnd::CreateView(const CCreateContext* context, int id) {
  return CView::MakeView(this, {}, id, context);
}

CView* CFrameWnd::GetActiveView() const {
  CWnd* const window = MessageQueue::FindOwnWindow(active_view_);
  return DYNAMIC_DOWNCAST(CView, window);
}

void CFrameWnd::SetActiveView(CView* view, bool notify) {
  CView* const former = GetActiveView();
  const HWND left = active_view_;
  const HWND now = view == nullptr ? nullptr : view->GetSafeHwnd();
  if (active_view_ == now) return;
  active_view_ = nullptr;
  const Watched self(*this);
  if (former != nullptr) former->OnActivateView(false, view, former);
  // The handler may have chosen another one, or ended windows.
  if (!self.IsThere() || active_view_ != nullptr) return;
  if (now != nullptr && MessageQueue::FindOwnWindow(now) != view) return;
  active_view_ = now;
  if (GetSafeHwnd() != nullptr) Changed(WindowChange::kActive);
  // The former one's handler may have ended it.
  const bool is_left_there = MessageQueue::FindOwnWindow(left) == former;
  if (view != nullptr && notify) {
    view->OnActivateView(true, view, is_left_there ? former : nullptr);
  }
}

CDocument* CFrameWnd::GetActiveDocument() {
  const CView* const view = GetActiveView();
  return view == nullptr ? nullptr : view->GetDocument();
}

void CFrameWnd::RecalcLayout() {
  lay_out_again_ = true;
  layout_due_ = false;
  if (laying_out_ || GetSafeHwnd() == nullptr || IsIconic()) return;
  const Watched self(*this);
  const detail::SetWhile laying_out(*this, laying_out_);
  // Bars that change while they are laid out may ask for it once more, but not for ever.
  constexpr int kMostRounds = 4;
  for (int round = 0; lay_out_again_ && round < kMostRounds; ++round) {
    lay_out_again_ = false;
    CRect room = GetClientRect();
    for (const HWND each : ControlBars()) {
      CWnd* const window = MessageQueue::FindOwnWindow(each);
      CControlBar* const bar = DYNAMIC_DOWNCAST(CControlBar, window);
      if (bar != nullptr && bar->IsShown()) bar->LayOut(room);
      if (!self.IsThere()) return;
    }
    view_rect_ = room;
    LayOutView(room);
    if (!self.IsThere()) return;
  }
}

void CFrameWnd::LayOutView(const CRect& room) {
  if (CWnd* const pane = GetDlgItem(kFirstPaneId)) pane->MoveWindow(room);
}

void CFrameWnd::InitialUpdateFrame(CDocument*, bool visible) {
  const Watched self(*this);
  if (GetActiveView() == nullptr) {
    if (CView* const view = FirstView(GetDlgItem(kFirstPaneId))) SetActiveView(view, false);
  }
  if (self.IsThere()) SendMessageToDescendants(WM_INITIALUPDATE);
  if (!self.IsThere()) return;
  OnUpdateFrameTitle(true);
  if (!visible || !self.IsThere()) return;
  CView* const view = GetActiveView();
  ActivateFrame();
  const auto stays = [&] { return self.IsThere() && view != nullptr && GetActiveView() == view; };
  if (stays()) FocusWhenActive();
  if (stays()) view->OnActivateView(true, view, view);
}

void CFrameWnd::ActivateFrame(int show_command) {
  if (show_command == -1) show_command = IsIconic() ? SW_RESTORE : SW_SHOW;
  const Watched self(*this);
  ShowWindow(show_command);
  if (self.IsThere() && GetParent() == nullptr) SetActiveWindow();
}

void CFrameWnd::OnUpdateFrameTitle(bool add_document) {
  CString text = title_;
  const CDocument* const document = add_document ? GetActiveDocument() : nullptr;
  if (document != nullptr && !document->GetTitle().IsEmpty()) {
    text = document->GetTitle();
    if (!title_.IsEmpty()) text += " - " + title_;
  }
  if (GetWindowText() != text) SetWindowText(text);
}

CStatusBar* CFrameWnd::GetMessageBar() const {
  CWnd* const own = GetDlgItem(kStatusBarId);
  if (CStatusBar* const bar = DYNAMIC_DOWNCAST(CStatusBar, own)) return bar;
  const CFrameWnd* const around = GetParentFrame();
  return around == nullptr ? nullptr : around->GetMessageBar();
}

void CFrameWnd::SetMessageText(const char* text) {
  message_text_ = text == nullptr ? "" : text;
  ready_due_ = false;
  if (GetSafeHwnd() == nullptr) return;
  Changed(WindowChange::kContent);
  if (CStatusBar* const bar = GetMessageBar()) bar->ShowMessage(message_text_);
}

void CFrameWnd::SetMessageText(UINT string_id) { SetMessageText(FirstPart(string_id).c_str()); }

void CFrameWnd::UpdateMenu() {
  if (GetMenu() != nullptr) GetMenu()->UpdateItems(*this);
}

BOOL CFrameWnd::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  // One that declines may have ended the frame.
  const Watched self(*this);
  CView* const view = GetActiveView();
  if (view != nullptr && view->OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  if (!self.IsThere()) return 0;
  if (CWnd::OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  if (!self.IsThere()) return 0;
  CWinApp* const app = AfxGetApp();
  return app == nullptr ? 0 : app->OnCmdMsg(id, code, extra, handler_info);
}

BOOL CFrameWnd::PreTranslateMessage(MSG* message) {
  const CWnd* const capture = GetCapture();
  if (message->message == WM_KEYDOWN && message->wParam == VK_ESCAPE && capture != nullptr &&
      (capture == this || IsChild(capture))) {
    ReleaseCapture();
    return 1;
  }
  if (message->message == WM_KEYDOWN || message->message == WM_SYSKEYDOWN) {
    const CView* const view = GetActiveView();
    CDocument* const document = view == nullptr ? nullptr : view->GetDocument();
    const AcceleratorTable* keys =
        document == nullptr ? nullptr : document->GetDefaultAccelerators();
    if (keys == nullptr) keys = &accelerators_;
    if (keys->Translate(KeyTarget(), static_cast<WORD>(message->wParam), IsKeyDown(VK_CONTROL),
                        IsKeyDown(VK_SHIFT), IsKeyDown(VK_MENU))) {
      return 1;
    }
  }
  return CWnd::PreTranslateMessage(message);
}

bool CFrameWnd::IsMainWindow() const {
  const CWinApp* const app = AfxGetApp();
  return app != nullptr && app->m_pMainWnd == this;
}

void CFrameWnd::OnClose() {
  const Watched self(*this);
  const detail::Closing closing;
  // Those of child frames are asked for together.
  CDocument* const document = GetActiveFrame() == this ? GetActiveDocument() : nullptr;
  if (document != nullptr && !document->CanCloseFrame(this)) return;
  if (!self.IsThere()) return;
  if (IsMainWindow()) {
    CWinApp* const app = AfxGetApp();
    if (!app->SaveAllModified() || !self.IsThere()) return;
    app->CloseAllDocuments();
    if (!self.IsThere()) return;
  } else if (document != nullptr && GetActiveDocument() == document) {
    if (document->m_bAutoDelete && !document->HasViewOutside(*this)) {
      document->OnCloseDocument();
      return;
    }
    document->PreCloseFrame(this);
    if (!self.IsThere()) return;
  }
  DestroyWindow();
}

LRESULT CFrameWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  const Watched self(*this);
  switch (message) {
    case WM_SIZE:
      if (wparam != SIZE_MINIMIZED) RecalcLayout();
      return 0;
    case WM_CLOSE:
      OnClose();
      return 0;
    case WM_QUERYENDSESSION:
      return IsMainWindow() ? AfxGetApp()->SaveAllModified() : 1;
    case WM_ENDSESSION:
      if (wparam != 0 && IsMainWindow()) AfxGetApp()->CloseAllDocuments(true);
      return 0;
    case WM_SETFOCUS: {
      CFrameWnd* const child = GetActiveFrame();
      CWnd* const within = child != this ? static_cast<CWnd*>(child) : GetActiveView();
      if (within != nullptr) within->SetFocus();
      return 0;
    }
    case WM_ACTIVATE: {
      CWnd::DefWindowProc(message, wparam, lparam);
      if (LoWord(wparam) == WA_INACTIVE || !self.IsThere()) return 0;
      if (CView* const view = GetActiveFrame()->GetActiveView()) {
        view->OnActivateView(true, view, view);
      }
      return 0;
    }
    case WM_ENABLE:
      EnableFloatingBars(wparam != 0);
      return 0;
    case WM_IDLEUPDATECMDUI:
      if (layout_due_) RecalcLayout();
      if (self.IsThere() && ready_due_ && GetMessageBar() != nullptr) {
        SetMessageText(IDS_IDLE_MESSAGE);
      }
      if (self.IsThere()) UpdateFloatingBars(wparam);
      return 0;
    case WM_INITMENUPOPUP: {
      CMenu* const menu = CMenu::FromHandle(reinterpret_cast<HMENU>(wparam));
      // Those below have a message of their own when they drop down.
      if (menu != nullptr) menu->UpdateItems(*this, true, false);
      return 0;
    }
    case WM_MENUSELECT:
      ShowMenuHelp(LoWord(wparam), HiWord(wparam), lparam != 0);
      return 0;
    case WM_DESTROY:
      if (AfxGetApp() != nullptr && AfxGetApp() == AfxGetThread() && AfxGetMainWnd() == this) {
        PostQuitMessage(0);
      }
      return 0;
    default:
      return CWnd::DefWindowProc(message, wparam, lparam);
  }
}

/// The string with the id of a command explains it while the person looks at its item.
void CFrameWnd::ShowMenuHelp(UINT id, UINT flags, bool in_menu) {
  const bool is_command = in_menu && (flags & (MF_POPUP | MF_SEPARATOR)) == 0;
  SetMessageText(is_command ? FirstPart(id).c_str() : "");
  ready_due_ = !in_menu;
}

void CFrameWnd::PostNcDestroy() {
  if (deletes_itself_) delete this;
}

}  // namespace dq
