#include "dqlib/framework/controls/list_box.h"

#include <algorithm>

namespace dq {

IMPLEMENT_DYNAMIC(CListBox, CWnd)
IMPLEMENT_DYNAMIC(CCheckListBox, CListBox)

int CListBox::GetText(int index, CString& text) const {
  text = GetText(index);
  return GetTextLen(index);
}

int CListBox::GetTextLen(int index) const {
  return rows_.Has(index) ? static_cast<int>(rows_.Text(index).size()) : -1;
}

int CListBox::SetCurSel(int index) {
  if (multiple_ || (index != -1 && !rows_.Has(index))) return -1;
  if (index != current_) {
    current_ = index;
    Tell(WindowChange::kSelection);
  }
  return index;
}

int CListBox::SelectString(int after, const char* text) {
  const int found = FindString(after, text);
  return found < 0 ? -1 : SetCurSel(found);
}

bool CListBox::IsSelected(int index) const {
  return multiple_ ? (rows_[index].flags & kSelected) != 0 : index == current_;
}

void CListBox::Mark(int index, bool selected) {
  BYTE& flags = rows_[index].flags;
  flags = static_cast<BYTE>(selected ? flags | kSelected : flags & ~kSelected);
}

int CListBox::GetSel(int index) const {
  if (!rows_.Has(index)) return -1;
  return IsSelected(index) ? 1 : 0;
}

int CListBox::SetSel(int index, bool selected) {
  if (!multiple_ || (index != -1 && !rows_.Has(index))) return -1;
  if (index == -1) {
    for (int at = 0; at < rows_.size(); ++at) Mark(at, selected);
  } else {
    Mark(index, selected);
    current_ = index;
  }
  Tell(WindowChange::kSelection,
       index == -1 ? ChangedRange{0, rows_.size()} : ChangedRange{index, 1});
  return 0;
}

int CListBox::GetSelCount() const {
  int count = 0;
  for (int at = 0; at < rows_.size(); ++at) count += IsSelected(at) ? 1 : 0;
  return count;
}

int CListBox::GetSelItems(int size, int* indexes) const {
  int count = 0;
  for (int at = 0; at < rows_.size() && count < size; ++at) {
    if (IsSelected(at)) indexes[count++] = at;
  }
  return count;
}

int CListBox::GetTopIndex() const { return std::clamp(top_, 0, std::max(0, rows_.size() - 1)); }

int CListBox::SetTopIndex(int index) {
  if (!rows_.Has(index)) return -1;
  top_ = index;
  Tell(WindowChange::kContent);
  return 0;
}

bool CListBox::Choose(int index) {
  if (!TakesInput() || !rows_.Has(index)) return false;
  if (multiple_) {
    SetSel(index, !IsSelected(index));
  } else if (index != current_) {
    SetCurSel(index);
  } else {
    return true;
  }
  Notify(LBN_SELCHANGE);
  return true;
}

void CListBox::Describe(platform::DialogControl& control) const {
  RowControl::Describe(control);
  control.kind = platform::DialogControlKind::kList;
  control.items = rows_.Texts();
  control.multiple = multiple_;
  control.value = multiple_ ? JoinRows([this](int at) { return IsSelected(at); })
                            : std::string(rows_.Text(current_));
}

bool CListBox::Enter(std::string_view value) {
  if (!multiple_) return Choose(rows_.FindNamed(value));
  std::vector<bool> named;
  if (!TakesInput() || !rows_.FindAllNamed(value, named)) return false;
  bool changed = false;
  for (int at = 0; at < rows_.size(); ++at) {
    const bool selected = named[static_cast<std::size_t>(at)];
    changed |= selected != IsSelected(at);
    Mark(at, selected);
  }
  if (!changed) return true;
  Tell(WindowChange::kSelection);
  Notify(LBN_SELCHANGE);
  return true;
}

bool CListBox::Press() {
  if (!TakesInput() || !rows_.Has(current_)) return false;
  Notify(LBN_DBLCLK);
  return true;
}

void CListBox::OnSubclassed(CWnd& former) {
  RowControl::OnSubclassed(former);
  if (const CListBox* const list = DYNAMIC_DOWNCAST(CListBox, &former)) {
    multiple_ = list->multiple_;
    top_ = list->top_;
  }
}

// ---- Check marks

int CCheckListBox::GetCheck(int index) const {
  if (!rows_.Has(index)) return 0;
  const BYTE flags = rows_[index].flags;
  return (flags & kUndetermined) != 0 ? 2 : (flags & kChecked) != 0 ? 1 : 0;
}

void CCheckListBox::SetCheck(int index, int check) {
  if (!rows_.Has(index)) return;
  BYTE& flags = rows_[index].flags;
  const int mark = check == 1 ? kChecked : check == 2 ? kUndetermined : 0;
  flags = static_cast<BYTE>((flags & ~(kChecked | kUndetermined)) | mark);
  Tell(WindowChange::kRowsChanged, {index, 1});
}

bool CCheckListBox::IsEnabled(int index) const {
  return rows_.Has(index) && (rows_[index].flags & kDisabled) == 0;
}

void CCheckListBox::Enable(int index, bool enabled) {
  if (!rows_.Has(index)) return;
  BYTE& flags = rows_[index].flags;
  flags = static_cast<BYTE>(enabled ? flags & ~kDisabled : flags | kDisabled);
  Tell(WindowChange::kRowsChanged, {index, 1});
}

bool CCheckListBox::Toggle(int index) {
  if (!TakesInput() || !IsEnabled(index)) return false;
  SetCheck(index, GetCheck(index) == 0 ? 1 : 0);
  Notify(CLBN_CHKCHANGE);
  return true;
}

void CCheckListBox::Describe(platform::DialogControl& control) const {
  CListBox::Describe(control);
  control.multiple = true;
  control.value = JoinRows([this](int at) { return GetCheck(at) == 1; });
}

bool CCheckListBox::Enter(std::string_view value) {
  std::vector<bool> named;
  if (!TakesInput() || !rows_.FindAllNamed(value, named)) return false;
  std::vector<int> changes;
  for (int at = 0; at < rows_.size(); ++at) {
    if (named[static_cast<std::size_t>(at)] == (GetCheck(at) == 1)) continue;
    // A mark that is undetermined stands until the row is named.
    if (GetCheck(at) == 2 && !named[static_cast<std::size_t>(at)]) continue;
    if (!IsEnabled(at)) return false;
    changes.push_back(at);
  }
  for (const int at : changes) SetCheck(at, named[static_cast<std::size_t>(at)] ? 1 : 0);
  if (!changes.empty()) Notify(CLBN_CHKCHANGE);
  return true;
}

}  // namespace dq
