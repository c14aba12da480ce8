// Lists and trees: the caret and what is selected.

#include <algorithm>
#include <utility>

#include "dqlib/framework/controls/sft_tree.h"
#include "dqlib/framework/controls/tree_rows.h"

namespace dq {

// ---- By the program

void CSftTree::SetMultiSelection(bool multi) {
  multi_selection_ = multi;
  rows_->UnselectAll();
  if (multi && caret_ >= 0) rows_->Select(caret_, caret_ + 1, true);
  Tell(WindowChange::kSelection);
  Redraw();
}

bool CSftTree::IsSelected(int row) const {
  if (!rows_->Has(row)) return false;
  return multi_selection_ ? (*rows_)[row].selected : row == caret_;
}

bool CSftTree::SelectRow(int row, bool select) {
  if (!rows_->Has(row)) return false;
  if (multi_selection_) {
    SelectRows(row, row, select);
  } else if (select) {
    SetCaret(row);
  } else if (row == caret_) {
    SetCaret(-1);
  }
  return true;
}

void CSftTree::SelectRows(int first, int last, bool select) {
  first = std::max(first, 0);
  last = std::min(last, GetCount() - 1);
  if (first > last) return;
  if (!multi_selection_) {
    SelectRow(select ? last : caret_ >= first && caret_ <= last ? caret_ : -1, select);
    return;
  }
  rows_->Select(first, last + 1, select);
  Tell(WindowChange::kSelection, {first, last - first + 1});
  InvalidateRows(first, last);
}

int CSftTree::GetSelectedCount() const {
  return multi_selection_ ? rows_->CountSelected() : caret_ >= 0 ? 1 : 0;
}

std::vector<int> CSftTree::GetSelectedRows() const {
  std::vector<int> selected;
  if (!multi_selection_) {
    if (caret_ >= 0) selected.push_back(caret_);
    return selected;
  }
  selected.reserve(static_cast<std::size_t>(rows_->CountSelected()));
  const int count = GetCount();
  for (int row = rows_->FindSelected(0); row < count; row = rows_->FindSelected(row + 1)) {
    selected.push_back(row);
  }
  return selected;
}

bool CSftTree::SetCaret(int row) {
  if (row != -1 && !rows_->Has(row)) return false;
  anchor_ = row;
  if (row == caret_) return true;
  const int former = std::exchange(caret_, row);
  Tell(WindowChange::kSelection);
  InvalidateRow(former);
  InvalidateRow(row);
  return true;
}

// ---- By a person

/// Selects the rows that are shown from one to another one.
void CSftTree::SelectShown(int from, int to) {
  const int first = std::min(from, to);
  const int last = std::max(from, to);
  const int n = rows_->CountShownBefore(first);
  const int end = rows_->CountShownBefore(last) + 1;
  for (int at = n; at < end;) {
    // As many as stand side by side.
    const int row = rows_->FindShown(at);
    int count = 1;
    if (rows_->FindShown(end - 1) - row == end - 1 - at) {
      count = end - at;
    } else {
      while (at + count < end && rows_->FindShown(at + count) == row + count) ++count;
    }
    SelectRows(row, row + count - 1);
    at += count;
  }
}

void CSftTree::MoveCaret(int row, Selecting selecting) {
  if (!rows_->Has(row)) return;
  const int former = caret_;
  const int anchor = rows_->Has(anchor_) ? rows_->GetShownAncestor(anchor_) : row;
  bool changed = former != row;
  SetCaret(row);
  if (multi_selection_) {
    const int selected = rows_->CountSelected();
    const bool ranges = selecting == Selecting::kRange || selecting == Selecting::kAddRange;
    if (selecting == Selecting::kToggle) {
      SelectRow(row, !IsSelected(row));
      changed = true;
    } else if (ranges || (selecting == Selecting::kAlone && (selected != 1 || !IsSelected(row)))) {
      if (selecting != Selecting::kAddRange) SelectNone();
      SelectShown(ranges ? anchor : row, row);
      changed = true;
    }
    if (ranges) anchor_ = anchor;
  }
  if (changed && m_hWnd != nullptr) Notify(kTreeSelectionChanged);
}

/// Takes all rows out of the selection, and draws those anew that were in it.
void CSftTree::SelectNone() {
  if (rows_->CountSelected() == 0) return;
  InvalidateSelected();
  rows_->UnselectAll();
  Tell(WindowChange::kSelection);
}

void CSftTree::InvalidateSelected() {
  if (GetCount() == 0) return;
  const int first = GetTopRow();
  const int shown = std::min(rows_->CountShownBefore(first) + GetPageRows(), GetShownCount() - 1);
  const int last = rows_->FindShown(shown);
  for (int row = rows_->FindSelected(first); row <= last; row = rows_->FindSelected(row + 1)) {
    InvalidateRow(row);
  }
}

void CSftTree::RedrawSelection() {
  InvalidateRow(caret_);
  if (multi_selection_) InvalidateSelected();
}

}  // namespace dq
