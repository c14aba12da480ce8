#include "dqlib/toolkit/flex_dialog.h"

namespace dq {

IMPLEMENT_DYNAMIC(CNSFlexDialog, CDialog)

BOOL CNSFlexDialog::OnInitDialog() {
  const BOOL choose_focus = CDialog::OnInitDialog();
  InitFlex();
  SetModified(0);
  return choose_focus;
}

void CNSFlexDialog::SetModified(BOOL modified) {
  m_bModified = modified != 0;
  if (CWnd* const button = GetDlgItem(ID_APPLY_NOW)) button->EnableWindow(m_bModified);
}

bool CNSFlexDialog::Apply() {
  if (UpdateData(1) == 0) return false;
  const HWND self = GetSafeHwnd();
  OnApplyChanges(m_pSubject);
  if (FromHandle(self) != this) return false;
  SetModified(0);
  return true;
}

void CNSFlexDialog::OnApply() { Apply(); }

void CNSFlexDialog::OnOK() {
  if (Apply()) EndDialog(IDOK);
}

void CNSFlexDialog::OnApplyChanges(void*) {}

bool CNSFlexDialog::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&CNSFlexDialog::OnApply>(ID_APPLY_NOW),
  };
  return CallEntry(kEntries, *this, key, arguments) || CDialog::CallMapped(key, arguments);
}

}  // namespace dq
