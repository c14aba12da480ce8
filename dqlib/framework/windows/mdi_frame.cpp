#include "dqlib/framework/windows/mdi_frame.h"

#include <unordered_set>
#include <vector>

#include "dqlib/framework/windows/document.h"
#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_thread.h"

namespace dq {

using detail::Watched;
using WatchedDocument = detail::WatchedObject<CDocument>;

namespace {

CMDIChildWnd* ToChild(HWND window) {
  CWnd* const own = MessageQueue::FindOwnWindow(window);
  return DYNAMIC_DOWNCAST(CMDIChildWnd, own);
}

/// Where the next child frame lies: a step below and to the right of the one before it, as long as
/// it is mostly in sight.
CRect NextPlace(const CWnd& client, const CWnd* before) {
  constexpr LONG kStep = 24;
  const CRect room = client.GetClientRect();
  const CSize size{room.Width() / 4 * 3, room.Height() / 4 * 3};
  CPoint at;
  if (before != nullptr) at = before->GetPlace().TopLeft();
  if (before != nullptr) at.Offset(kStep, kStep);
  if (at.x > room.Width() / 4 || at.y > room.Height() / 4) at = {};
  return {at.x, at.y, at.x + size.cx, at.y + size.cy};
}

/// Adds the documents of the views below a window.
void AddDocuments(const CWnd& window, std::vector<WatchedDocument>& documents,
                  std::unordered_set<CDocument*>& known) {
  for (CWnd* child = window.GetTopWindow(); child != nullptr; child = child->GetNextWindow()) {
    const CView* const view = DYNAMIC_DOWNCAST(CView, child);
    CDocument* const document = view == nullptr ? nullptr : view->GetDocument();
    if (document != nullptr && known.insert(document).second) documents.emplace_back(document);
    AddDocuments(*child, documents, known);
  }
}

CWnd* LastSibling(CWnd& window) {
  CWnd* last = &window;
  while (last->GetNextWindow() != nullptr) last = last->GetNextWindow();
  return last;
}

/// The next child frame that a person can use: below `from` and then from the top on, or above it
/// and then from the bottom on; null if there is no other.
CMDIChildWnd* OtherChild(CMDIChildWnd& from, bool forward) {
  const CWnd* const client = from.GetParent();
  const auto step = [&](CWnd& window) {
    CWnd* const next = forward ? window.GetNextWindow() : window.GetPrevWindow();
    if (next != nullptr) return next;
    return forward ? client->GetTopWindow() : LastSibling(window);
  };
  for (CWnd* next = step(from); next != &from; next = step(*next)) {
    CMDIChildWnd* const child = DYNAMIC_DOWNCAST(CMDIChildWnd, next);
    if (child != nullptr && child->IsShown() && child->IsWindowEnabled()) return child;
  }
  return nullptr;
}

}  // namespace

IMPLEMENT_DYNCREATE(CMDIFrameWnd, CFrameWnd)
IMPLEMENT_DYNCREATE(CMDIChildWnd, CFrameWnd)

/// The window in which child frames lie: it makes them active and ends them when it is told to, and
/// keeps the one that is maximised in its size.
class CMDIFrameWnd::Client : public CWnd {
 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    CMDIFrameWnd* const frame = DYNAMIC_DOWNCAST(CMDIFrameWnd, GetParent());
    CMDIChildWnd* const child = ToChild(reinterpret_cast<HWND>(wparam));
    if (frame != nullptr && child != nullptr && child->GetParent() == this) {
      const Watched self(*this);
      if (message == WM_MDIACTIVATE) frame->Activate(child);
      if (message == WM_MDIDESTROY) child->DestroyWindow();
      if (!self.IsThere()) return 0;
    }
    CMDIChildWnd* const active = frame == nullptr ? nullptr : frame->MDIGetActive();
    if (active != nullptr && message == WM_SETFOCUS) {
      active->SetFocus();
    } else if (active != nullptr && message == WM_SIZE && active->IsZoomed()) {
      active->MoveWindow(GetClientRect());
    } else {
      return CWnd::DefWindowProc(message, wparam, lparam);
    }
    return 0;
  }
};

CMDIFrameWnd::CMDIFrameWnd() = default;

CMDIFrameWnd::~CMDIFrameWnd() { EndInDestructor(); }

CWnd* CMDIFrameWnd::GetMDIClient() {
  if (GetSafeHwnd() == nullptr) return nullptr;
  if (client_ == nullptr) client_ = std::make_unique<Client>();
  if (client_->GetSafeHwnd() == nullptr) {
    if (!client_->CreateWnd({.class_name = "MDIClient", .parent = this, .id = kFirstPaneId})) {
      return nullptr;
    }
    const Watched self(*this);
    RecalcLayout();
    if (!self.IsThere()) return nullptr;
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
  const Watched self(*this);
  if (child != nullptr) child->SetWindowOrder(nullptr);
  Changed(WindowChange::kActive);
  CMDIChildWnd* const left = ToChild(former);
  const bool zoomed = left != nullptr && left->IsZoomed();
  // One that is hidden stays so, and as it is.
  if (zoomed && child != nullptr && left->IsShown()) left->ShowWindow(SW_SHOWNOACTIVATE);
  for (const HWND told : {former, now}) {
    SendToWindow(told, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(former),
                 reinterpret_cast<LPARAM>(now));
    // The handler may have chosen another one.
    if (!self.IsThere() || active_child_ != now) return;
  }
  CMDIChildWnd* const active = ToChild(now);
  if (zoomed && active != nullptr && !active->IsZoomed()) active->ShowWindow(SW_SHOWMAXIMIZED);
  if (self.IsThere()) OnUpdateFrameMenu();
  if (self.IsThere()) OnUpdateFrameTitle(true);
}

void CMDIFrameWnd::OnUpdateFrameMenu() {
  CDocument* const document = GetActiveDocument();
  CMenu* const wanted = document == nullptr ? nullptr : document->GetDefaultMenu();
  if (wanted == document_menu_) return;
  if (document_menu_ == nullptr) own_menu_ = GetMenu();
  document_menu_ = wanted;
  SetMenu(wanted == nullptr ? own_menu_ : wanted);
}

void CMDIFrameWnd::MDINext() {
  CMDIChildWnd* const former = MDIGetActive();
  CMDIChildWnd* const next = former == nullptr ? nullptr : OtherChild(*former, true);
  if (next == nullptr) return;
  const Watched self(*this);
  const Watched left(*former);
  MDIActivate(next);
  if (!self.IsThere() || !left.IsThere() || MDIGetActive() == former) return;
  // Behind all, so that each has its turn before it comes back.
  CWnd* const last = LastSibling(*former);
  if (last != former) former->SetWindowOrder(last);
}

void CMDIFrameWnd::MDIPrev() {
  CMDIChildWnd* const former = MDIGetActive();
  if (former != nullptr) MDIActivate(OtherChild(*former, false));
}

CFrameWnd* CMDIFrameWnd::GetActiveFrame() {
  CMDIChildWnd* const child = MDIGetActive();
  return child == nullptr ? static_cast<CFrameWnd*>(this) : child;
}

CDocument* CMDIFrameWnd::GetActiveDocument() {
  CMDIChildWnd* const child = MDIGetActive();
  return child == nullptr ? CFrameWnd::GetActiveDocument() : child->GetActiveDocument();
}

bool CMDIFrameWnd::CloseOwnDocuments() {
  std::vector<WatchedDocument> documents;
  std::unordered_set<CDocument*> known;
  AddDocuments(*this, documents, known);
  const Watched self(*this);
  for (const WatchedDocument& document : documents) {
    if (document && !document->CanCloseFrame(this)) return false;
    if (!self.IsThere()) return false;
  }
  for (const WatchedDocument& document : documents) {
    if (!document || !document->m_bAutoDelete || document->HasViewOutside(*this)) continue;
    document->OnCloseDocument();
    if (!self.IsThere()) return false;
  }
  // Those that stay are told of the frames that go.
  std::vector<HWND> frames;
  const CWnd* const first = client_ == nullptr ? nullptr : client_->GetTopWindow();
  for (const CWnd* each = first; each != nullptr; each = each->GetNextWindow()) {
    frames.push_back(each->GetSafeHwnd());
  }
  for (const HWND each : frames) {
    CMDIChildWnd* const child = ToChild(each);
    CDocument* const document = child == nullptr ? nullptr : child->GetActiveDocument();
    if (document != nullptr) document->PreCloseFrame(child);
    if (!self.IsThere()) return false;
  }
  return true;
}

void CMDIFrameWnd::OnClose() {
  const detail::Closing closing;
  // The application's own asks for all documents, wherever they are shown.
  if (IsMainWindow() || CloseOwnDocuments()) CFrameWnd::OnClose();
}

BOOL CMDIFrameWnd::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  const Watched self(*this);
  CMDIChildWnd* const child = MDIGetActive();
  if (child != nullptr && child->OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  if (!self.IsThere()) return 0;
  return CFrameWnd::OnCmdMsg(id, code, extra, handler_info);
}

BOOL CMDIFrameWnd::PreTranslateMessage(MSG* message) {
  // Key combinations of the active child frame come first, wherever the focus is.
  CMDIChildWnd* const child = MDIGetActive();
  const CWnd* const window = MessageQueue::FindOwnWindow(message->hwnd);
  const Watched self(*this);
  if (child != nullptr && window != child && !child->IsChild(window)) {
    if (child->PreTranslateMessage(message) != 0 || !self.IsThere()) return 1;
  }
  if (CFrameWnd::PreTranslateMessage(message) != 0 || !self.IsThere()) return 1;
  return message->message == WM_KEYDOWN && TurnByKey(message->wParam) ? 1 : 0;
}

bool CMDIFrameWnd::TurnByKey(WPARAM key) {
  CMDIChildWnd* const child = MDIGetActive();
  if (child == nullptr || !IsKeyDown(VK_CONTROL) || IsKeyDown(VK_MENU)) return false;
  if (key == VK_F4) {
    child->SendMessage(WM_CLOSE);
  } else if (key == VK_F6 || key == VK_TAB) {
    IsKeyDown(VK_SHIFT) ? MDIPrev() : MDINext();
  } else {
    return false;
  }
  return true;
}

CMDIChildWnd::~CMDIChildWnd() { EndInDestructor(); }

bool CMDIChildWnd::Create(const char* class_name, const char* caption, const CRect& place,
                          CMDIFrameWnd* parent, const CCreateContext* context) {
  CWnd* const client = parent == nullptr ? nullptr : parent->GetMDIClient();
  if (client == nullptr) return false;
  if (!CreateFrame({.class_name = class_name == nullptr ? "" : class_name,
                    .text = caption == nullptr ? "" : caption,
                    .place = place,
                    .parent = client},
                   0, context)) {
    return false;
  }
  const Watched self(*this);
  parent->MDIActivate(this);
  return self.IsThere();
}

bool CMDIChildWnd::LoadFrame(UINT resource_id, CWnd* parent, const CCreateContext* context) {
  CWnd* const around = parent != nullptr ? parent : GetActiveWindow();
  CMDIFrameWnd* main = DYNAMIC_DOWNCAST(CMDIFrameWnd, around);
  CWnd* const usual = parent == nullptr ? AfxGetMainWnd() : nullptr;
  if (main == nullptr) main = DYNAMIC_DOWNCAST(CMDIFrameWnd, usual);
  CWnd* const client = main == nullptr ? nullptr : main->GetMDIClient();
  if (client == nullptr) return false;
  LoadAccelTable(resource_id);
  return CreateFrame({.class_name = "ChildFrame",
                      .place = NextPlace(*client, main->MDIGetActive()),
                      .parent = client,
                      .visible = false},
                     0, context);
}

CMDIFrameWnd* CMDIChildWnd::GetMDIFrame() const {
  const CWnd* const client = GetParent();
  return client == nullptr ? nullptr : DYNAMIC_DOWNCAST(CMDIFrameWnd, client->GetParent());
}

CWnd& CMDIChildWnd::KeyTarget() {
  CMDIFrameWnd* const frame = GetMDIFrame();
  return frame == nullptr ? CFrameWnd::KeyTarget() : *frame;
}

void CMDIChildWnd::MDIDestroy() {
  if (CWnd* const client = GetParent()) {
    client->SendMessage(WM_MDIDESTROY, reinterpret_cast<WPARAM>(GetSafeHwnd()));
  }
}

void CMDIChildWnd::MDIActivate() {
  if (CMDIFrameWnd* const frame = GetMDIFrame()) frame->MDIActivate(this);
}

bool CMDIChildWnd::IsActiveFrame() const {
  const CMDIFrameWnd* const frame = GetMDIFrame();
  return frame == nullptr || frame->MDIGetActive() == this;
}

void CMDIChildWnd::OnTurnTo(CWnd&) {
  if (!IsActiveFrame()) MDIActivate();
}

void CMDIChildWnd::SetActiveView(CView* view, bool notify) {
  const Watched self(*this);
  CFrameWnd::SetActiveView(view, notify);
  CMDIFrameWnd* const main = self.IsThere() && GetActiveView() != nullptr ? GetMDIFrame() : nullptr;
  if (main != nullptr && main->MDIGetActive() == this) main->OnUpdateFrameMenu();
}

void CMDIChildWnd::ActivateFrame(int show_command) {
  const Watched self(*this);
  CMDIFrameWnd* const main = GetMDIFrame();
  const CMDIChildWnd* const former = main == nullptr ? nullptr : main->MDIGetActive();
  // The state of the child frame before is passed on.
  if (show_command == -1 && former != nullptr && former->IsZoomed())
    show_command = SW_SHOWMAXIMIZED;
  CFrameWnd::ActivateFrame(show_command);
  if (self.IsThere()) MDIActivate();
}

void CMDIChildWnd::OnUpdateFrameTitle(bool add_document) {
  const CDocument* const document = add_document ? GetActiveDocument() : nullptr;
  if (document == nullptr || document->GetTitle().IsEmpty()) return;
  CString text = document->GetTitle();
  if (window_number_ > 0) text += CString(":") + std::to_string(window_number_).c_str();
  const Watched self(*this);
  if (GetWindowText() != text) SetWindowText(text);
  CMDIFrameWnd* const main = self.IsThere() ? GetMDIFrame() : nullptr;
  if (main != nullptr && main->MDIGetActive() == this) main->OnUpdateFrameTitle(true);
}

LRESULT CMDIChildWnd::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  const Watched self(*this);
  switch (message) {
    case WM_SHOWWINDOW:
    case WM_DESTROY: {
      const bool goes = message == WM_DESTROY || wparam == 0;
      CMDIFrameWnd* const frame = goes ? GetMDIFrame() : nullptr;
      if (frame == nullptr || frame->MDIGetActive() != this) break;
      frame->Activate(OtherChild(*this, true));
      if (!self.IsThere()) return 0;
      break;
    }
    case WM_MDIACTIVATE: {
      const bool activated = reinterpret_cast<HWND>(lparam) == GetSafeHwnd();
      if (activated) FocusWhenActive();
      CView* const view = self.IsThere() ? GetActiveView() : nullptr;
      if (view != nullptr) view->OnActivateView(activated, view, view);
      if (!self.IsThere()) return 0;
      break;
    }
    default:
      break;
  }
  return CFrameWnd::DefWindowProc(message, wparam, lparam);
}

}  // namespace dq
