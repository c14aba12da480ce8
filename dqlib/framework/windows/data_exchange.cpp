#include "dqlib/framework/windows/data_exchange.h"

namespace dq {

IMPLEMENT_DYNAMIC(CUserException, CException)
IMPLEMENT_DYNAMIC(CNotSupportedException, CException)

CWnd* CDataExchange::PrepareCtrl(int id) {
  CWnd* const control = m_pDlgWnd == nullptr ? nullptr : m_pDlgWnd->GetDlgItem(id);
  if (control == nullptr) throw CNotSupportedException();
  m_hWndLastControl = control->GetSafeHwnd();
  m_bEditLastControl = false;
  return control;
}

CWnd* CDataExchange::PrepareEditCtrl(int id) {
  CWnd* const control = PrepareCtrl(id);
  m_bEditLastControl = true;
  return control;
}

void CDataExchange::Fail() {
  CWnd* const control = m_bSaveAndValidate ? CWnd::FromHandle(m_hWndLastControl) : nullptr;
  if (control != nullptr) {
    control->SetFocus();
    if (m_bEditLastControl) SendToWindow(m_hWndLastControl, EM_SETSEL, 0, -1);
  }
  throw CUserException();
}

}  // namespace dq
