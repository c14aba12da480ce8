#include "dqlib/toolkit/tab_rename_dlg.h"

#include "dqlib/framework/controls/dialog_exchange.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

IMPLEMENT_DYNAMIC(CTabRenameDlg, CDQDialog)

void CTabRenameDlg::DoDataExchange(CDataExchange* exchange) {
  CDQDialog::DoDataExchange(exchange);
  DDX_Text(exchange, kLabelId, m_strLabel);
}

void CTabRenameDlg::OnOK() {
  if (!GetDlgItemText(kLabelId).IsEmpty()) return CDQDialog::OnOK();
  const detail::Watched self(*this);
  AfxMessageBox(IDS_TAB_NAME_BLANK, BOX_EXCLAMATION);
  CWnd* const edit = self.IsThere() ? GetDlgItem(kLabelId) : nullptr;
  if (edit != nullptr) edit->SetFocus();
}

}  // namespace dq
