// The messages of an output pane in a dialog.

#pragma once

#include "dqlib/output/output_wnd.h"
#include "dqlib/toolkit/dialog.h"

namespace dq {

/// Shows the rows that the pane has when it opens. The pane must outlive it.
class CDQOutputErrorDialog : public CDQDialog {
  DECLARE_DYNAMIC(CDQOutputErrorDialog)
  static constexpr UINT kTemplateId = 45380;
  /// Where the tree lies, and the button that shows a message.
  static constexpr int kPlaceId = 45381;
  static constexpr int kDisplayId = 45382;

  explicit CDQOutputErrorDialog(CDQOutputWnd& pane, CWnd* parent = nullptr);
  ~CDQOutputErrorDialog() override;

  CDQTree& GetTree() { return m_tree; }

  /// Shows the message of the current row, as it came, in a box.
  virtual void OnDisplayMessage();

 protected:
  BOOL OnInitDialog() override;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;

 private:
  void CopyRows();

  CDQOutputWnd& m_pane;
  CDQTree m_tree;
};

}  // namespace dq
