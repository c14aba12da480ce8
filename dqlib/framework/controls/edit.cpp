#include "dqlib/framework/controls/edit.h"

namespace dq {

IMPLEMENT_DYNAMIC(CEdit, CWnd)

void CEdit::Describe(platform::DialogControl& control) const {
  Control::Describe(control);
  DescribeEdit(control);
}

LRESULT CEdit::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (const auto answer = AnswerEdit(message, wparam, lparam)) return *answer;
  switch (message) {
    case WM_SETFOCUS:
      Notify(EN_SETFOCUS);
      return 0;
    case WM_KILLFOCUS:
      Notify(EN_KILLFOCUS);
      return 0;
    default:
      return Control::DefWindowProc(message, wparam, lparam);
  }
}

void CEdit::OnSubclassed(CWnd& former) {
  Control::OnSubclassed(former);
  if (const CEdit* const edit = DYNAMIC_DOWNCAST(CEdit, &former)) CopyFrom(*edit);
}

}  // namespace dq
