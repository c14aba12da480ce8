// The order of a tree's rows: siblings within their parent, by any comparison.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace dq::detail {

template <typename Item, typename Compare>
void MergeSortTo(Item* items, Item* other, std::size_t count, bool to_other, Compare& compare) {
  constexpr std::size_t kFew = 12;
  if (count <= kFew) {
    for (std::size_t i = 1; i < count; ++i) {
      const Item item = items[i];
      std::size_t at = i;
      for (; at > 0 && compare(items[at - 1], item) > 0; --at) items[at] = items[at - 1];
      items[at] = item;
    }
    if (to_other) std::copy_n(items, count, other);
    return;
  }
  const std::size_t half = count / 2;
  MergeSortTo(items, other, half, !to_other, compare);
  MergeSortTo(items + half, other + half, count - half, !to_other, compare);
  Item* to = to_other ? other : items;
  const Item* first = to_other ? items : other;
  const Item* const first_end = first + half;
  const Item* second = first_end;
  const Item* const second_end = first + count;
  // In order already: it often is, and any comparison may say so.
  if (compare(*(first_end - 1), *second) <= 0) {
    std::copy(first, second_end, to);
    return;
  }
  while (first != first_end && second != second_end) {
    const bool takes_second = compare(*first, *second) > 0;
    *to++ = takes_second ? *second : *first;
    second += takes_second ? 1 : 0;
    first += takes_second ? 0 : 1;
  }
  to = std::copy(first, first_end, to);
  std::copy(second, second_end, to);
}

/// Sorts by a comparison that gives a number below 0, 0 or above 0. What is equal keeps its order.
/// With a comparison that contradicts itself the items end up in some order, each of them once.
template <typename Item, typename Compare>
void MergeSort(std::span<Item> items, Compare compare) {
  if (items.size() < 2) return;
  std::vector<Item> other(items.begin(), items.end());
  MergeSortTo(items.data(), other.data(), items.size(), false, compare);
}

/// The rows of a tree by their parents.
class SiblingGroups {
 public:
  /// A row's level is at most one below that of the row before.
  explicit SiblingGroups(const std::vector<int>& levels);

  /// Calls `sort` with the indexes of each two or more rows that have the same parent, to put them
  /// in order.
  template <typename Sort>
  void ForEach(Sort sort) {
    for (std::size_t parent = 0; parent + 1 < starts_.size(); ++parent) {
      const std::size_t count = starts_[parent + 1] - starts_[parent];
      if (count > 1) sort(std::span(rows_).subspan(starts_[parent], count));
    }
  }
  /// The indexes of all rows in their new order, each with what is below it behind it.
  std::vector<int> GetOrder() const;

 private:
  bool is_flat_;
  /// Where the children of row n begin is at n + 1; those of no row begin at 0.
  std::vector<std::uint32_t> starts_;
  std::vector<int> rows_;
};

/// Rows with the keys that they are sorted by.
template <typename Key>
struct KeyedRow {
  /// The row may stand in bytes that the key leaves at its end.
  [[no_unique_address]] Key key;
  int row;
};

template <typename Key, typename Compare>
void SortByKeys(SiblingGroups& groups, const std::vector<Key>& keys, Compare compare) {
  std::vector<KeyedRow<Key>> items;
  groups.ForEach([&](std::span<int> rows) {
    items.clear();
    items.reserve(rows.size());
    for (const int row : rows) items.push_back({keys[static_cast<std::size_t>(row)], row});
    MergeSort(std::span(items), [&compare](const KeyedRow<Key>& a, const KeyedRow<Key>& b) {
      return compare(a.key, b.key);
    });
    std::transform(items.begin(), items.end(), rows.begin(),
                   [](const KeyedRow<Key>& item) { return item.row; });
  });
}

}  // namespace dq::detail
