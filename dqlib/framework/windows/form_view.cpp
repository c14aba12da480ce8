#include "dqlib/framework/windows/form_view.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/windows/dialog_controls.h"
#include "dqlib/framework/windows/dialog_keys.h"
#include "dqlib/framework/windows/document.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(CFormView, CView)

CFormView::CFormView(UINT template_id) : m_nTemplate(template_id) {}

CFormView::CFormView(DialogTemplate form)
    : m_pTemplate(std::make_unique<DialogTemplate>(std::move(form))) {}

CFormView::~CFormView() {
  // While the controls are still there: their parent goes first.
  EndInDestructor();
}

bool CFormView::Create(CWnd* parent, const CRect& place, int id, const CCreateContext* context) {
  if (parent == nullptr || GetSafeHwnd() != nullptr) return false;
  std::optional<DialogTemplate> found;
  if (m_pTemplate == nullptr) found = FindDialogTemplate(m_nTemplate);
  const DialogTemplate* const form = m_pTemplate != nullptr ? m_pTemplate.get()
                                     : found                ? &*found
                                                            : nullptr;
  if (form == nullptr) return false;
  // Handlers may close it.
  const detail::WatchedObject<CDocument> document(context == nullptr ? nullptr
                                                                     : context->m_pCurrentDoc);
  m_controls.clear();
  m_sizeForm = form->size;
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
  Attach(document.get());
  return true;
}

bool CFormView::Create(CWnd* parent, int id, CDocument* document) {
  return CView::Create(parent, {}, id, document);
}

void CFormView::ResizeParentToFit(bool shrink_only) {
  CFrameWnd* const frame = GetParentFrame();
  if (GetSafeHwnd() == nullptr || frame == nullptr || frame->IsZoomed() || frame->IsIconic())
    return;
  if (GetParent() != frame) return;
  const detail::Watched self(*this);
  const detail::Watched around(*frame);
  // The bars may have come since.
  frame->RecalcLayout();
  if (!self.IsThere() || !around.IsThere()) return;
  const CSize size = GetClientRect().Size();
  const CRect& place = frame->GetPlace();
  const auto fit = [shrink_only](LONG frame_now, LONG form, LONG now) {
    const LONG wanted = detail::WrappingSum(frame_now, detail::WrappingDifference(form, now));
    return shrink_only ? std::min(frame_now, wanted) : wanted;
  };
  frame->MoveWindow(place.left, place.top, fit(place.Width(), m_sizeForm.cx, size.cx),
                    fit(place.Height(), m_sizeForm.cy, size.cy));
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

void CFormView::OnTurnTo(CWnd& window) {
  const CWnd* const focus = GetFocus();
  if (IsChild(focus)) m_hFocus = focus->GetSafeHwnd();
  CView::OnTurnTo(window);
}

LRESULT CFormView::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  const detail::Watched self(*this);
  if (message == WM_IDLEUPDATECMDUI) UpdateDialogControls(*this, false);
  if (!self.IsThere()) return 0;
  if (message == WM_SETFOCUS) {
    CWnd* const last = FromHandle(m_hFocus);
    if (IsChild(last) && last->IsShown()) last->SetFocus();
    if (self.IsThere() && GetFocus() == this) detail::FocusFirst(*this);
    return 0;
  }
  return CView::DefWindowProc(message, wparam, lparam);
}

}  // namespace dq
