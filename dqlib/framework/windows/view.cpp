#include "dqlib/framework/windows/view.h"

#include <utility>

#include "dqlib/framework/windows/document.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

using detail::Watched;

IMPLEMENT_DYNAMIC(CView, CWnd)

CView::~CView() {
  m_bDeletesItself = false;
  EndInDestructor();
  if (m_pDocument != nullptr) m_pDocument->RemoveView(this);
}

bool CView::Create(CWnd* parent, const CRect& place, int id, const CCreateContext* context) {
  return CreateAs("View", parent, place, id, context);
}

bool CView::CreateAs(std::string_view window_class, CWnd* parent, const CRect& place, int id,
                     const CCreateContext* context) {
  if (parent == nullptr) return false;
  // Handlers may close it.
  const detail::WatchedObject<CDocument> document(context == nullptr ? nullptr
                                                                     : context->m_pCurrentDoc);
  if (!CreateWnd({.class_name = window_class, .place = place, .parent = parent, .id = id})) {
    return false;
  }
  Attach(document.get());
  return true;
}

bool CView::Create(CWnd* parent, const CRect& place, int id, CDocument* document) {
  const CCreateContext context{.m_pCurrentDoc = document};
  return Create(parent, place, id, &context);
}

CView* CView::MakeView(CWnd* parent, const CRect& place, int id, const CCreateContext* context) {
  if (parent == nullptr || parent->GetSafeHwnd() == nullptr) return nullptr;
  if (context == nullptr || context->m_pNewViewClass == nullptr) return nullptr;
  std::unique_ptr<CObject> object(context->m_pNewViewClass->CreateObject());
  CView* const view = DYNAMIC_DOWNCAST(CView, object.get());
  if (view == nullptr || !view->Create(parent, place, id, context)) return nullptr;
  // A handler may have ended its window.
  if (view->GetSafeHwnd() == nullptr) return nullptr;
  view->m_bDeletesItself = true;
  // It is its own from now on.
  static_cast<void>(object.release());
  return view;
}

void CView::Attach(CDocument* document) {
  if (document != nullptr) document->AddView(this);
  CFrameWnd* const frame = GetParentFrame();
  if (frame != nullptr && frame->GetActiveView() == nullptr) frame->SetActiveView(this, false);
}

void CView::InitialUpdateAhead() {
  const Watched self(*this);
  OnInitialUpdate();
  if (self.IsThere()) m_bUpdatedAhead = true;
}

void CView::OnInitialUpdate() { OnUpdate(nullptr, 0, nullptr); }

void CView::OnUpdate(CView*, LPARAM, CObject*) { Invalidate(); }

void CView::OnActivateView(bool activate, CView* activated, CView* deactivated) {
  if (!activate || activated != this || deactivated == this) return;
  const CFrameWnd* const frame = GetParentFrame();
  if (frame == nullptr || frame->IsActiveFrame()) FocusWhenActive();
}

void CView::OnTurnTo(CWnd& window) {
  CWnd* nearest = &window;
  while (nearest != nullptr && !nearest->IsKindOf(RUNTIME_CLASS(CView))) {
    nearest = nearest->GetParent();
  }
  if (nearest != this) return;
  const Watched self(*this);
  if (CFrameWnd* const frame = GetParentFrame()) frame->SetActiveView(this);
  if (self.IsThere()) FocusWhenActive();
}

BOOL CView::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  const Watched self(*this);
  if (CWnd::OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  return !self.IsThere() || m_pDocument == nullptr
             ? 0
             : m_pDocument->OnCmdMsg(id, code, extra, handler_info);
}

LRESULT CView::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  CFrameWnd* const frame = GetParentFrame();
  switch (message) {
    case WM_INITIALUPDATE:
      if (!std::exchange(m_bUpdatedAhead, false)) OnInitialUpdate();
      return 0;
    case WM_DESTROY:
      if (frame != nullptr && frame->GetActiveView() == this) frame->SetActiveView(nullptr);
      return 0;
    default:
      return CWnd::DefWindowProc(message, wparam, lparam);
  }
}

void CView::PostNcDestroy() {
  // Whatever handlers of the document throw.
  const std::unique_ptr<CView> own(m_bDeletesItself ? this : nullptr);
  // The document may go with its last view.
  if (m_pDocument != nullptr) m_pDocument->RemoveView(this);
}

}  // namespace dq
