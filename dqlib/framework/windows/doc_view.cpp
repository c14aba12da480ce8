#include "dqlib/framework/windows/doc_view.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/windows/dialog_controls.h"
#include "dqlib/framework/windows/frame_wnd.h"

namespace dq {

IMPLEMENT_DYNCREATE(CDocument, CCmdTarget)
IMPLEMENT_DYNAMIC(CView, CWnd)
IMPLEMENT_DYNAMIC(CFormView, CView)

CDocument::~CDocument() {
  for (CView* const view : m_views) view->m_pDocument = nullptr;
}

void CDocument::AddView(CView* view) {
  if (view == nullptr || view->m_pDocument == this) return;
  if (view->m_pDocument != nullptr) view->m_pDocument->RemoveView(view);
  m_views.push_back(view);
  view->m_pDocument = this;
}

void CDocument::RemoveView(CView* view) {
  if (std::erase(m_views, view) > 0) view->m_pDocument = nullptr;
}

void CDocument::UpdateAllViews(CView* sender, LPARAM hint, CObject* object) {
  const std::vector<CView*> views = m_views;
  for (CView* const view : views) {
    const bool stays = std::find(m_views.begin(), m_views.end(), view) != m_views.end();
    if (stays && view != sender) view->OnUpdate(sender, hint, object);
  }
}

CView::~CView() {
  CView::DestroyWindow();
  if (m_pDocument != nullptr) m_pDocument->RemoveView(this);
}

bool CView::Create(CWnd* parent, const CRect& place, int id, CDocument* document) {
  if (parent == nullptr) return false;
  if (!CreateWnd({.class_name = "View", .place = place, .parent = parent, .id = id})) return false;
  Attach(document);
  return true;
}

void CView::Attach(CDocument* document) {
  if (document != nullptr) document->AddView(this);
  CFrameWnd* const frame = GetParentFrame();
  if (frame != nullptr && frame->GetActiveView() == nullptr) frame->SetActiveView(this);
}

void CView::OnInitialUpdate() { OnUpdate(nullptr, 0, nullptr); }

void CView::OnUpdate(CView*, LPARAM, CObject*) { Invalidate(); }

BOOL CView::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  if (CWnd::OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  return m_pDocument == nullptr ? 0 : m_pDocument->OnCmdMsg(id, code, extra, handler_info);
}

LRESULT CView::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_SETFOCUS) {
    if (CFrameWnd* const frame = GetParentFrame()) frame->SetActiveView(this);
  }
  return CWnd::DefWindowProc(message, wparam, lparam);
}

CFormView::CFormView(UINT template_id) : m_nTemplate(template_id) {}

CFormView::CFormView(DialogTemplate form)
    : m_pTemplate(std::make_unique<DialogTemplate>(std::move(form))) {}

CFormView::~CFormView() {
  // While the controls are still there: their parent goes first.
  CFormView::DestroyWindow();
}

bool CFormView::Create(CWnd* parent, int id, CDocument* document) {
  if (parent == nullptr || GetSafeHwnd() != nullptr) return false;
  std::optional<DialogTemplate> found;
  if (m_pTemplate == nullptr) found = FindDialogTemplate(m_nTemplate);
  const DialogTemplate* const form = m_pTemplate != nullptr ? m_pTemplate.get()
                                     : found                ? &*found
                                                            : nullptr;
  if (form == nullptr) return false;
  m_controls.clear();
  if (!CreateWnd({.class_name = "FormView",
                  .text = form->caption,
                  .place = {0, 0, form->size.cx, form->size.cy},
                  .parent = parent,
                  .id = id})) {
    return false;
  }
  detail::MakeControls(*form, *this, m_controls);
  Attach(document);
  return true;
}

void CFormView::OnInitialUpdate() {
  UpdateData(0);
  CView::OnInitialUpdate();
}

}  // namespace dq
