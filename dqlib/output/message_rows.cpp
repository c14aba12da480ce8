#include "dqlib/output/message_rows.h"

#include "dqlib/framework/windows/message_box.h"

namespace dq::detail {

void MakeMessageTree(CDQTree& tree) {
  // Column by column as they are, without titles; the last one takes the rest.
  constexpr int kWidths[kMessageColumns] = {80, 60, 600};
  for (const int width : kWidths) tree.AddColumn("", width);
  // Rows stand in the order in which they came.
  tree.SetAutoSort(false);
  tree.SetMultiSelect();
}

bool CreateMessageTree(CDQTree& tree, const CRect& place, CWnd* parent, UINT id) {
  if (!tree.Create(0, place, parent, id)) return false;
  tree.ShowHeader(false);
  tree.ShowTreeLines(false);
  tree.ShowButtons(false);
  return true;
}

SharedMessage* SharedMessage::Of(const CSftTree& tree, int row) {
  auto* const text = reinterpret_cast<CString*>(tree.GetRowData(row));
  return static_cast<SharedMessage*>(text);
}

void SharedMessage::AddRow(CSftTree& tree, int row) {
  CString* const text = this;
  if (tree.SetRowData(row, reinterpret_cast<std::uintptr_t>(text))) ++holders_;
}

void SharedMessage::FreeRow(CSftTree&, int, std::uintptr_t data) {
  auto* const message = static_cast<SharedMessage*>(reinterpret_cast<CString*>(data));
  if (message != nullptr) message->Release();
}

void ShowCurrentMessage(const CSftTree& tree) {
  const SharedMessage* const message = SharedMessage::Of(tree, tree.GetCaret());
  if (message == nullptr) return;
  // The row may go while the box is shown.
  const CString text = message->Text();
  AfxMessageBox(text, BOX_OK | BOX_INFORMATION);
}

}  // namespace dq::detail
