#include "dqlib/framework/controls/tree_sort.h"

#include <numeric>

namespace dq::detail {

SiblingGroups::SiblingGroups(const std::vector<int>& levels) : rows_(levels.size()) {
  is_flat_ = std::all_of(levels.begin(), levels.end(), [](int level) { return level == 0; });
  if (is_flat_) {
    starts_ = {0, static_cast<std::uint32_t>(levels.size())};
    std::iota(rows_.begin(), rows_.end(), 0);
    return;
  }
  // The latest row of each level above, one further down, so that the first one is no row.
  std::vector<std::uint32_t> above{0};
  std::vector<std::uint32_t> parents(levels.size());
  starts_.assign(levels.size() + 2, 0);
  for (std::size_t row = 0; row < levels.size(); ++row) {
    const auto level = static_cast<std::size_t>(levels[row]);
    above.resize(level + 1);
    parents[row] = above[level];
    ++starts_[parents[row] + 1];
    above.push_back(static_cast<std::uint32_t>(row + 1));
  }
  std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
  std::vector<std::uint32_t> next = starts_;
  for (std::size_t row = 0; row < levels.size(); ++row) {
    rows_[next[parents[row]]++] = static_cast<int>(row);
  }
}

std::vector<int> SiblingGroups::GetOrder() const {
  if (is_flat_) return rows_;
  std::vector<int> order;
  order.reserve(rows_.size());
  // Of each level, the siblings that are still to come.
  std::vector<std::span<const int>> waiting{std::span(rows_).first(starts_[1])};
  while (!waiting.empty()) {
    std::span<const int>& siblings = waiting.back();
    if (siblings.empty()) {
      waiting.pop_back();
      continue;
    }
    const int row = siblings.front();
    siblings = siblings.subspan(1);
    order.push_back(row);
    const std::size_t below = static_cast<std::size_t>(row) + 1;
    const std::uint32_t count = starts_[below + 1] - starts_[below];
    if (count > 0) waiting.push_back(std::span(rows_).subspan(starts_[below], count));
  }
  return order;
}

}  // namespace dq::detail
