#include "dqlib/framework/controls/tree_columns.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace dq::detail {

bool CellWidths::Add(int width, int cells) {
  if (--left_ < 0) return false;
  counts_[width] += cells;
  return true;
}

bool CellWidths::Remove(int width) {
  const auto found = counts_.find(width);
  if (--left_ < 0 || found == counts_.end()) return false;
  if (--found->second == 0) counts_.erase(found);
  return true;
}

int CellWidths::GetWidest() {
  left_ = patience_;
  return counts_.empty() ? 0 : counts_.rbegin()->first;
}

int TreeColumns::GetLeft(int column) const {
  std::int64_t left = 0;
  for (int i = 0; i < std::min(column, GetCount()); ++i) left += (*this)[i].width;
  return static_cast<int>(std::min<std::int64_t>(left, kWidest));
}

int TreeColumns::FindAt(int x) const {
  std::int64_t left = 0;
  for (int i = 0; i < GetCount(); ++i) {
    const std::int64_t right = left + (*this)[i].width;
    if (x >= left && x < right) return i;
    left = right;
  }
  return -1;
}

int TreeColumns::FindEdge(int x, int distance) const {
  std::int64_t right = 0;
  int found = -1;
  for (int i = 0; i < GetCount(); ++i) {
    right += (*this)[i].width;
    if (x >= right - distance && x < right + distance) found = i;
  }
  return found;
}

void TreeColumns::ForgetWidths() {
  for (TreeColumn& column : columns_) column.widths.reset();
  has_widths_ = false;
}

void TreeColumns::KeepWidths(int column, CellWidths widths) {
  (*this)[column].widths = std::move(widths);
  has_widths_ = true;
}

}  // namespace dq::detail
