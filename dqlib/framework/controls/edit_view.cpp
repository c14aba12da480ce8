#include "dqlib/framework/controls/edit_view.h"

#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNCREATE(CEditView, CView)

bool CEditView::Create(CWnd* parent, const CRect& place, int id, const CCreateContext* context) {
  return CreateAs("Edit", parent, place, id, context);
}

void CEditView::Describe(platform::DialogControl& control) const {
  CView::Describe(control);
  DescribeEdit(control);
}

LRESULT CEditView::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (const auto answer = AnswerEdit(message, wparam, lparam)) return *answer;
  const detail::Watched self(*this);
  const LRESULT result = CView::DefWindowProc(message, wparam, lparam);
  const bool gets = message == WM_SETFOCUS;
  if ((gets || message == WM_KILLFOCUS) && self.IsThere()) {
    NotifyEdit(gets ? EN_SETFOCUS : EN_KILLFOCUS);
  }
  return result;
}

void CEditView::TellEdit(WindowChange change) {
  if (GetSafeHwnd() != nullptr) Changed(change);
}

bool CEditView::NotifyEdit(int code) {
  const HWND self = GetSafeHwnd();
  NotifyParent(code);
  return self != nullptr && FromHandle(self) == this;
}

}  // namespace dq
