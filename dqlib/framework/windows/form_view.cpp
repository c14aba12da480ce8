#include "dqlib/framework/windows/form_view.h"

#include <utility>

#include "dqlib/framework/windows/dialog_controls.h"
#include "dqlib/framework/windows/dialog_keys.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(CFormView, CView)

CFormView::CFormView(UINT template_id) : m_nTemplate(template_id) {}

CFormView::CFormView(DialogTemplate form)
    : m_pTemplate(std::make_unique<DialogTemplate>(std::move(form))) {}

CFormView::~CFormView() {
  // While the controls are still there: their parent goes first.
  CFormView::DestroyWindow();
}

bool CFormView::Create(CWnd* parent, const CRect& place, int id, const CCreateContext* context) {
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
                  .place = {place.left, place.top, detail::WrappingSum(place.left, form->size.cx),
                            detail::WrappingSum(place.top, form->size.cy)},
                  .client_size = true,
                  .parent = parent,
                  .id = id})) {
    return false;
  }
  if (!detail::MakeControls(*form, *this, m_controls)) return false;
  Attach(context == nullptr ? nullptr : context->m_pCurrentDoc);
  return true;
}

bool CFormView::Create(CWnd* parent, int id, CDocument* document) {
  return CView::Create(parent, {}, id, document);
}

void CFormView::OnInitialUpdate() {
  const detail::Watched self(*this);
  UpdateData(0);
  if (self.IsThere()) CView::OnInitialUpdate();
}

BOOL CFormView::PreTranslateMessage(MSG* message) {
  if (CView::PreTranslateMessage(message) != 0) return 1;
  return detail::TranslateDialogKey(*this, *message) ? 1 : 0;
}

LRESULT CFormView::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_IDLEUPDATECMDUI) UpdateDialogControls(*this, false);
  return CView::DefWindowProc(message, wparam, lparam);
}

}  // namespace dq
