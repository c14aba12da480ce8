#include "dqlib/toolkit/option_lists.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDQOptionChecklist, CCheckListBox)

void CDQOptionChecklist::LoadOptions(CDQOptionDataArray& options) {
  m_pOptions = &options;
  ResetContent();
  for (int at = 0; at < options.GetSize(); ++at) {
    const CDQOption* const option = CDQOptionsServer::GetObject()->GetOptionByID(options.GetID(at));
    if (option == nullptr || option->GetKind() != OptionKind::kBool) continue;
    const int row = AddString(option->GetShortName());
    SetItemData(row, static_cast<std::uintptr_t>(at));
    SetCheck(row, OptionNumber(options.GetValue(at)));
  }
}

bool CDQOptionChecklist::StoreChecks() {
  bool stored = true;
  for (int row = 0; m_pOptions != nullptr && row < GetCount(); ++row) {
    const int at = static_cast<int>(GetItemData(row));
    stored = m_pOptions->SetValue(at, GetCheck(row) != 0 ? "1" : "0") && stored;
  }
  return stored;
}

bool CDQOptionChecklist::SaveOptions() {
  const bool stored = StoreChecks();
  return (m_pOptions == nullptr || m_pOptions->SaveOptions()) && stored;
}

void CDQOptionMultiList::AddList(UINT title_id, std::span<const UINT> option_ids) {
  m_titles.push_back(title_id);
  CDQOptionDataArray& options = *m_arrays.AddArray();
  for (const UINT id : option_ids) options.AddOption(static_cast<int>(id), true, true);
}

void CDQOptionMultiList::SetControls(CComboBox& combo, CDQOptionChecklist& list) {
  m_pCombo = &combo;
  m_pList = &list;
  // Of an earlier run, which may have been cancelled, nothing is left.
  for (int at = 0; at < m_arrays.GetSize(); ++at) m_arrays.GetArray(at)->LoadOptions();
  combo.ResetContent();
  for (std::size_t at = 0; at < m_titles.size(); ++at) {
    const int row = combo.AddString(detail::LoadText(m_titles[at]));
    combo.SetItemData(row, at);
  }
  combo.SetCurSel(0);
  if (CDQOptionDataArray* const first = m_arrays.GetArray(ChosenList())) list.LoadOptions(*first);
}

int CDQOptionMultiList::ChosenList() const {
  const int row = m_pCombo->GetCurSel();
  return row < 0 ? -1 : static_cast<int>(m_pCombo->GetItemData(row));
}

void CDQOptionMultiList::OnComboSelChange() {
  if (m_pCombo == nullptr) return;
  CDQOptionDataArray* const chosen = m_arrays.GetArray(ChosenList());
  if (chosen == nullptr) return;
  m_pList->StoreChecks();
  m_pList->LoadOptions(*chosen);
}

bool CDQOptionMultiList::SaveOptions() {
  const bool stored = m_pList == nullptr || m_pList->StoreChecks();
  return m_arrays.SaveOptions() && stored;
}

}  // namespace dq
