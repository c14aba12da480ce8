// The dialog by which a person gives a tab another name.

#pragma once

#include "dqlib/toolkit/dialog.h"

namespace dq {

/// Asks for a name, and goes on asking while it is empty.
class CTabRenameDlg : public CDQDialog {
  DECLARE_DYNAMIC(CTabRenameDlg)
  enum Id : UINT { kTemplateId = 45344, kLabelId = 45345 };

  explicit CTabRenameDlg(CWnd* parent = nullptr) : CDQDialog(kTemplateId, parent) {}

  /// The name: what the dialog shows first, and behind OK what the person has entered.
  CString m_strLabel;

 protected:
  void DoDataExchange(CDataExchange* exchange) override;
  void OnOK() override;
};

}  // namespace dq
