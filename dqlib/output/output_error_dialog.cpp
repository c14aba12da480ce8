#include "dqlib/output/output_error_dialog.h"

#include "dqlib/output/message_rows.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDQOutputErrorDialog, CDQDialog)

CDQOutputErrorDialog::CDQOutputErrorDialog(CDQOutputWnd& pane, CWnd* parent)
    : CDQDialog(kTemplateId, parent), m_pane(pane) {
  detail::MakeMessageTree(m_tree);
  m_tree.SetDeleteCallback(&detail::SharedMessage::FreeRow);
}

CDQOutputErrorDialog::~CDQOutputErrorDialog() { EndInDestructor(); }

BOOL CDQOutputErrorDialog::OnInitDialog() {
  const BOOL result = CDQDialog::OnInitDialog();
  CWnd* const place = GetDlgItem(kPlaceId);
  if (place == nullptr) return result;
  m_tree.ResetContent();
  CopyRows();
  detail::CreateMessageTree(m_tree, place->GetPlace(), this, CDQOutputWnd::kTreeId);
  m_tree.EnsureRowVisible(m_tree.GetCaret());
  return result;
}

void CDQOutputErrorDialog::CopyRows() {
  CDQTree& from = *m_pane.GetTreeWnd();
  const detail::SharedMessage* former = nullptr;
  detail::SharedMessage::Maker own;
  for (int row = 0; row < from.GetCount(); ++row) {
    const int added = m_tree.AddRow(detail::MessageTexts{from.CellText(row, detail::kTimeColumn),
                                                         from.CellText(row, detail::kSourceColumn),
                                                         from.CellText(row, detail::kTextColumn)});
    m_tree.SetRowPicture(added, from.GetRowPicture(row));
    const detail::SharedMessage* const message = detail::SharedMessage::Of(from, row);
    if (message == nullptr) continue;
    if (message != former) own = detail::SharedMessage::Make(message->Text());
    former = message;
    own->AddRow(m_tree, added);
  }
  for (int column = 0; column < detail::kMessageColumns; ++column) m_tree.FitColumn(column);
  const int current = from.GetCaret();
  if (current < 0) return;
  m_tree.SelectRows(current, current);
  m_tree.SetCaret(current);
}

void CDQOutputErrorDialog::OnDisplayMessage() { detail::ShowCurrentMessage(m_tree); }

bool CDQOutputErrorDialog::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  using Self = CDQOutputErrorDialog;
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&Self::OnDisplayMessage>(kDisplayId),
      ControlEntry<&Self::OnDisplayMessage>(kTreeTextDoubleClick, CDQOutputWnd::kTreeId),
  };
  return CallEntry(kEntries, *this, key, arguments) || CDQDialog::CallMapped(key, arguments);
}

}  // namespace dq
