#include "dqlib/framework/controls/tree_looks.h"

#include <algorithm>
#include <functional>
#include <tuple>

namespace dq::detail {
namespace {

auto ColumnLess() {
  return [](const std::pair<int, CellStyle>& cell, int column) { return cell.first < column; };
}

/// Below 0, 0 or above 0; pointers to unrelated objects have an order by `std::less` alone.
template <typename Value>
int Compare(const Value& a, const Value& b) {
  return std::less<>()(a, b) ? -1 : std::less<>()(b, a) ? 1 : 0;
}

int CompareCells(const std::pair<int, CellStyle>& a, const std::pair<int, CellStyle>& b) {
  for (const int order :
       {Compare(a.first, b.first), Compare(a.second.text, b.second.text),
        Compare(a.second.background, b.second.background), Compare(a.second.font, b.second.font),
        Compare(a.second.picture, b.second.picture)}) {
    if (order != 0) return order;
  }
  return 0;
}

}  // namespace

const CellStyle* RowLook::Find(int column) const {
  const auto at = std::lower_bound(cells.begin(), cells.end(), column, ColumnLess());
  return at != cells.end() && at->first == column ? &at->second : nullptr;
}

void RowLook::Set(int column, const CellStyle& style) {
  const auto at = std::lower_bound(cells.begin(), cells.end(), column, ColumnLess());
  const bool is_there = at != cells.end() && at->first == column;
  if (style == CellStyle{}) {
    if (is_there) cells.erase(at);
  } else if (is_there) {
    at->second = style;
  } else {
    cells.insert(at, {column, style});
  }
}

bool TreeLooks::Less::operator()(const RowLook& a, const RowLook& b) const {
  if (a.picture != b.picture) return std::less<>()(a.picture, b.picture);
  if (a.cells.size() != b.cells.size()) return a.cells.size() < b.cells.size();
  for (std::size_t i = 0; i < a.cells.size(); ++i) {
    const int order = CompareCells(a.cells[i], b.cells[i]);
    if (order != 0) return order < 0;
  }
  return false;
}

std::uint32_t TreeLooks::Take(const RowLook& look) {
  const auto found = numbers_.find(look);
  if (found != numbers_.end()) {
    if (found->second != 0) ++looks_[found->second].rows;
    return found->second;
  }
  if (free_.empty()) {
    // Room for all of them to become free, so that a release needs no memory.
    free_.reserve(looks_.size() + 1);
    free_.push_back(static_cast<std::uint32_t>(looks_.size()));
    looks_.emplace_back();
  }
  const std::uint32_t number = free_.back();
  looks_[number] = {numbers_.emplace(look, number).first, 1};
  free_.pop_back();
  return number;
}

void TreeLooks::Release(std::uint32_t number) {
  if (number == 0 || --looks_[number].rows > 0) return;
  numbers_.erase(looks_[number].look);
  free_.push_back(number);
}

}  // namespace dq::detail
