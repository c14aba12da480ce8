#include "dqlib/framework/windows/doc_view.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/windows/dialog_controls.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNCREATE(CDocument, CCmdTarget)
IMPLEMENT_DYNAMIC(CView, CWnd)
IMPLEMENT_DYNAMIC(CFormView, CView)

/// A walk through the views. Those that go meanwhile are null in it.
struct CDocument::Update {
  CDocument& document;
  std::vector<CView*> views;
  bool document_gone = false;

  explicit Update(CDocument& of) : document(of), views(of.m_views) {
    document.m_updates.push_back(this);
  }
  Update(const Update&) = delete;
  Update& operator=(const Update&) = delete;
  ~Update() {
    if (!document_gone) document.m_updates.pop_back();
  }
};

CDocument::~CDocument() {
  for (Update* const update : m_updates) update->document_gone = true;
  for (CView* const view : m_views) view->m_pDocument = nullptr;
}

void CDocument::AddView(CView* view) {
  if (view == nullptr || view->m_pDocument == this) return;
  if (view->m_pDocument != nullptr) view->m_pDocument->RemoveView(view);
  m_views.push_back(view);
  view->m_pDocument = this;
}

void CDocument::RemoveView(CView* view) {
  if (view == nullptr || view->m_pDocument != this) return;
  std::erase(m_views, view);
  view->m_pDocument = nullptr;
  for (Update* const update : m_updates) {
    std::ranges::replace(update->views, view, static_cast<CView*>(nullptr));
  }
}

void CDocument::UpdateAllViews(CView* sender, LPARAM hint, CObject* object) {
  Update update(*this);
  for (std::size_t at = 0; !update.document_gone && at < update.views.size(); ++at) {
    CView* const view = update.views[at];
    if (view != nullptr && view != sender) view->OnUpdate(sender, hint, object);
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
  const detail::Watched self(*this);
  if (CWnd::OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  return !self.IsThere() || m_pDocument == nullptr
             ? 0
             : m_pDocument->OnCmdMsg(id, code, extra, handler_info);
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
  if (!detail::MakeControls(*form, *this, m_controls)) return false;
  Attach(document);
  return true;
}

void CFormView::OnInitialUpdate() {
  const detail::Watched self(*this);
  UpdateData(0);
  if (self.IsThere()) CView::OnInitialUpdate();
}

}  // namespace dq
