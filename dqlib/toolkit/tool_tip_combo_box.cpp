#include "dqlib/toolkit/tool_tip_combo_box.h"

namespace dq {

IMPLEMENT_DYNAMIC(CToolTipComboBox, CComboBox)

int CToolTipComboBox::AddString(const char* text, const char* tip, std::uintptr_t data) {
  return Keep(CComboBox::AddString(text), tip, data);
}

int CToolTipComboBox::InsertString(int index, const char* text, const char* tip,
                                   std::uintptr_t data) {
  return Keep(CComboBox::InsertString(index, text), tip, data);
}

int CToolTipComboBox::Keep(int index, const char* tip, std::uintptr_t data) {
  if (index < 0) return -1;
  m_tips.resize(static_cast<std::size_t>(rows_.size() - 1));
  m_tips.insert(m_tips.begin() + index, CString(tip));
  SetItemData(index, data);
  return index;
}

int CToolTipComboBox::DeleteString(int index) {
  if (rows_.Has(index)) {
    m_tips.resize(static_cast<std::size_t>(rows_.size()));
    m_tips.erase(m_tips.begin() + index);
  }
  return CComboBox::DeleteString(index);
}

void CToolTipComboBox::ResetContent() {
  m_tips.clear();
  CComboBox::ResetContent();
}

CString CToolTipComboBox::GetItemTip(int index) const {
  const auto at = static_cast<std::size_t>(index);
  return rows_.Has(index) && at < m_tips.size() ? m_tips[at] : CString();
}

int CToolTipComboBox::FindCode(std::string_view text) const {
  for (int row = 0; row < rows_.size(); ++row) {
    if (rows_.Text(row) == text) return row;
  }
  return -1;
}

bool CToolTipComboBox::Enter(std::string_view value) {
  const int row = FindCode(value);
  return row >= 0 ? Choose(row) : CComboBox::Enter(value);
}

void CToolTipComboBox::OnSubclassed(CWnd& former) {
  CComboBox::OnSubclassed(former);
  // The rows are those that the former control had.
  m_tips.assign(static_cast<std::size_t>(rows_.size()), CString());
}

}  // namespace dq
