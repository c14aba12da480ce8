#include "dqlib/framework/controls/row_control.h"

#include <utility>

#include "dqlib/framework/base/text.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

int RowControl::AddString(const char* text) {
  const std::string_view added = detail::OrEmpty(text);
  return InsertString(sorted_ ? rows_.SortedPlace(added) : -1, text);
}

int RowControl::InsertString(int index, const char* text) {
  if (index == -1) index = rows_.size();
  if (index < 0 || index > rows_.size()) return -1;
  rows_.Insert(index, detail::OrEmpty(text));
  if (index <= current_) ++current_;
  Tell(WindowChange::kRowsInserted, {index, 1});
  return index;
}

int RowControl::DeleteString(int index) {
  if (!rows_.Has(index)) return -1;
  const bool was_current = index == current_;
  detail::TellNewRows();
  rows_.Erase(index);
  if (was_current) {
    current_ = -1;
  } else if (index < current_) {
    --current_;
  }
  Tell(WindowChange::kRowsRemoved, {index, 1});
  if (was_current) OnRowsGone(true);
  return rows_.size();
}

void RowControl::ResetContent() {
  const int count = rows_.size();
  detail::TellNewRows();
  rows_.Clear();
  const bool had_current = std::exchange(current_, -1) >= 0;
  if (count > 0) Tell(WindowChange::kRowsRemoved, {0, count});
  OnRowsGone(had_current);
}

int RowControl::SetItemData(int index, std::uintptr_t data) {
  if (!rows_.Has(index)) return -1;
  rows_[index].data = data;
  return 0;
}

std::uintptr_t RowControl::GetItemData(int index) const {
  return rows_.Has(index) ? rows_[index].data : ~std::uintptr_t{0};
}

int RowControl::SetItemDataPtr(int index, void* data) {
  return SetItemData(index, reinterpret_cast<std::uintptr_t>(data));
}

void* RowControl::GetItemDataPtr(int index) const {
  return rows_.Has(index) ? reinterpret_cast<void*>(rows_[index].data) : nullptr;
}

int RowControl::FindString(int after, const char* text) const {
  return rows_.FindPrefix(after, detail::OrEmpty(text));
}

int RowControl::FindStringExact(int after, const char* text) const {
  return rows_.FindExact(after, detail::OrEmpty(text));
}

void RowControl::OnSubclassed(CWnd& former) {
  Control::OnSubclassed(former);
  if (auto* const control = dynamic_cast<RowControl*>(&former)) {
    rows_ = std::move(control->rows_);
    current_ = std::exchange(control->current_, -1);
    sorted_ = control->sorted_;
  }
}

}  // namespace dq
