#include "dqlib/toolkit/flex_dialog.h"

#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(CNSFlexDialog, CDQDialog)

BOOL CNSFlexDialog::OnInitDialog() {
  const detail::Watched self(*this);
  const BOOL choose_focus = CDQDialog::OnInitDialog();
  if (!self.IsThere()) return 0;
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
  const detail::Watched self(*this);
  OnApplyChanges(m_pSubject);
  if (!self.IsThere()) return false;
  SetModified(0);
  return self.IsThere();
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
  return CallEntry(kEntries, *this, key, arguments) || CDQDialog::CallMapped(key, arguments);
}

}  // namespace dq
