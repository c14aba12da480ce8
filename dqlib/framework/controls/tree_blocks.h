// The rows of a tree, in order, in blocks.

#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "dqlib/framework/controls/tree_texts.h"

namespace dq::detail {

/// A row of a tree. New ones are as this says, but for the level. It is kept small: there may be
/// millions.
struct TreeRow {
  TextRun GetText() const { return {chunk, offset, size}; }
  void SetText(const TextRun& run) {
    chunk = run.chunk;
    offset = static_cast<std::uint16_t>(run.offset);
    size = run.size;
  }
  std::uintptr_t GetData() const { return std::bit_cast<std::uintptr_t>(data); }
  void SetData(std::uintptr_t value) { data = std::bit_cast<decltype(data)>(value); }

  /// A number in halves, which needs no gap before it.
  std::array<std::uint32_t, sizeof(std::uintptr_t) / 4> data{};
  /// See `TextRun`.
  std::uint32_t chunk = 0;
  std::uint32_t size = 0;
  /// See `TreeLooks`.
  std::uint32_t look = 0;
  int level = 0;
  std::uint16_t offset = 0;
  /// What is below it isn't shown.
  bool collapsed : 1 = false;
  /// It lies below a collapsed row.
  bool hidden : 1 = false;
  bool selected : 1 = false;
};
static_assert(sizeof(TreeRow) <= 28);

/// A sequence of rows by index from 0. Rows stand in blocks of at most 512, over which lies a tree
/// of sums: a row is found by index, by its place among those that are shown, or by its level, in
/// logarithmic time, and a change moves one block. Indexes are those of rows that are there.
class TreeBlocks {
 public:
  int size() const { return all_.rows; }
  int CountShown() const { return all_.shown; }
  int CountSelected() const { return all_.selected; }

  const TreeRow& operator[](int row) const { return RowAt(Find(row)); }
  /// For changes of texts, looks and data, which nothing is counted of.
  TreeRow& Uncounted(int row) { return RowAt(Find(row)); }
  /// Calls `change` with a row.
  template <typename Change>
  void Edit(int row, Change change) {
    EditBlock(row, row + 1, change);
  }
  /// With the rows of a range that stand in the block of its first one; returns the index behind.
  template <typename Change>
  int EditBlock(int first, int last, Change change);
  /// With each row of a range, in order.
  template <typename Change>
  void EditRange(int first, int last, Change change) {
    while (first < last) first = EditBlock(first, last, [&](TreeRow& row) { change(row); });
  }
  /// The same for reading.
  template <typename Visit>
  void ForRange(int first, int last, Visit visit) const;

  /// Inserts rows before an index, or at the end.
  void Insert(int index, const TreeRow& row);
  void Insert(int index, std::span<const TreeRow> rows);
  void Erase(int first, int last);
  void Clear();
  /// The n-th row is to be the one whose index is the n-th of a permutation.
  void Permute(std::span<const int> order);

  /// The n-th row that is shown, and how many that are shown lie before one.
  int FindShown(int n) const;
  int CountShownBefore(int row) const;
  /// The first row from an index on that is selected; the count of rows if there is none.
  int FindSelected(int from) const;
  /// The first row from an index on whose level is at most so deep, the count of rows if there is
  /// none; the last such one before an index, or -1.
  int FindNextAtMost(int from, int level) const;
  int FindPrevAtMost(int before, int level) const;

 private:
  struct Totals {
    int rows = 0;
    int shown = 0;
    int selected = 0;
    int least_level = std::numeric_limits<int>::max();
  };
  using Rows = std::vector<TreeRow>;
  struct Block {
    Rows rows;
    Totals totals;
  };
  struct Place {
    std::size_t block;
    std::size_t at;
    /// The index of the block's first row.
    int first;
  };

  const Totals& TotalsOf(std::size_t block) const { return blocks_[block].totals; }
  TreeRow& RowAt(const Place& place) { return blocks_[place.block].rows[place.at]; }
  const TreeRow& RowAt(const Place& place) const { return blocks_[place.block].rows[place.at]; }
  Place Find(int row) const;
  int FirstRowOf(std::size_t block) const;
  static Totals Sum(const Totals& a, const Totals& b);
  static Totals Count(const Rows& rows);
  static void Count(Totals& totals, const TreeRow& row, int by);
  void Recount(std::size_t block);
  void Refresh(std::size_t block);
  const std::vector<Totals>& Sums() const;
  void Rebuild();
  void Forget() const {
    last_block_ = 0;
    last_first_ = 0;
  }
  void InsertBlock(std::size_t block, Rows rows);
  bool Merge(std::size_t block);
  template <typename Predicate>
  std::size_t NextBlock(std::size_t block, Predicate fits) const;
  template <typename Predicate>
  std::size_t PrevBlock(std::size_t block, Predicate fits) const;

  static constexpr std::size_t kNone = ~std::size_t{0};

  std::vector<Block> blocks_;
  /// A binary tree of sums, its root at 1, the children of node n at 2n and 2n + 1; the sums of the
  /// blocks begin at `leaves_`, a power of two.
  mutable std::vector<Totals> sums_;
  std::size_t leaves_ = 0;
  /// The block whose change isn't in the sums above it yet: there is one at most, which saves most
  /// of the work where one row after the other is added or changed.
  mutable std::size_t unsummed_ = kNone;
  /// Of all rows, but for the level, which stays as it is.
  Totals all_;
  /// Of the block where a row was looked up last.
  mutable std::size_t last_block_ = 0;
  mutable int last_first_ = 0;
};

template <typename Change>
int TreeBlocks::EditBlock(int first, int last, Change change) {
  const Place place = Find(first);
  Block& block = blocks_[place.block];
  const std::size_t count =
      std::min(block.rows.size() - place.at, static_cast<std::size_t>(last - first));
  bool levels_changed = false;
  for (TreeRow& row : std::span(block.rows).subspan(place.at, count)) {
    const int level = row.level;
    Count(block.totals, row, -1);
    change(row);
    Count(block.totals, row, 1);
    levels_changed |= row.level != level;
  }
  if (levels_changed) block.totals = Count(block.rows);
  Refresh(place.block);
  return first + static_cast<int>(count);
}

template <typename Visit>
void TreeBlocks::ForRange(int first, int last, Visit visit) const {
  while (first < last) {
    const Place place = Find(first);
    const Rows& block = blocks_[place.block].rows;
    const std::size_t count =
        std::min(block.size() - place.at, static_cast<std::size_t>(last - first));
    for (const TreeRow& row : std::span(block).subspan(place.at, count)) visit(row);
    first += static_cast<int>(count);
  }
}

}  // namespace dq::detail
