// The rows of a tree: their order and levels, texts and data, what is expanded and selected.

#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "dqlib/framework/controls/tree_blocks.h"
#include "dqlib/framework/controls/tree_looks.h"
#include "dqlib/framework/controls/tree_texts.h"

namespace dq::detail {

/// Rows by index from 0, with levels: a row's level is at most one below that of the row before.
/// Operations take indexes of rows that are there, unless they say otherwise.
class TreeRows {
 public:
  int GetCount() const { return rows_.size(); }
  bool Has(int row) const { return row >= 0 && row < rows_.size(); }
  const TreeRow& operator[](int row) const { return rows_[row]; }

  /// Inserts a row before an index, or at the end, at a level that is cut as needed. Rows behind it
  /// that would lie too deep then come up as far as they must. Returns the index behind the last
  /// one that does, or behind the row.
  int Insert(int index, std::span<const char* const> texts, int level);
  /// Takes a row out with all below it.
  void Erase(int row);
  void Clear();
  /// Where a row stands now, and the index behind the last one with another level or place.
  struct Moved {
    int row;
    int end;
  };
  /// See `CSftTree::MoveRow`.
  Moved Move(int row, int before, int level);
  /// Returns the index behind the last one whose level changes; the row itself if none does.
  int SetLevel(int row, int level);
  /// The n-th row is to be the one whose index is the n-th of a permutation, which leaves all that
  /// is below a row behind it.
  void Permute(std::span<const int> order) { rows_.Permute(order); }

  const char* Text(int row, int column) const { return texts_.Cell(rows_[row].GetText(), column); }
  /// Calls `visit` with the text of a column of each row, in order.
  template <typename Visit>
  void ForEachText(int column, Visit visit) const;
  bool SetText(int row, int column, std::string_view text);
  void SetData(int row, std::uintptr_t data) { rows_.Uncounted(row).SetData(data); }
  const RowLook& Look(int row) const { return looks_[rows_[row].look]; }
  void SetLook(int row, const RowLook& look);

  /// The level that a row at an index can have, at most.
  int GetMostLevel(int index) const { return index == 0 ? 0 : rows_[index - 1].level + 1; }
  /// Behind the last row that is below a row.
  int GetEnd(int row) const { return rows_.FindNextAtMost(row + 1, rows_[row].level); }
  /// -1 for none.
  int GetParent(int row) const { return rows_.FindPrevAtMost(row, rows_[row].level - 1); }
  /// The sibling before, or without one the parent, or -1.
  int GetPrevLinked(int row) const { return rows_.FindPrevAtMost(row, rows_[row].level); }
  int GetNextSibling(int row) const;
  /// Whether a row behind it has this level, its own or one above, with the same rows above it.
  bool HasNextAt(int row, int level) const {
    const int next = rows_.FindNextAtMost(row + 1, level);
    return next < rows_.size() && rows_[next].level == level;
  }
  int GetPrevSibling(int row) const;
  bool HasChildren(int row) const {
    return row + 1 < rows_.size() && rows_[row + 1].level > rows_[row].level;
  }
  int CountChildren(int row) const;
  /// The levels of all rows.
  std::vector<int> GetLevels() const;

  /// False if nothing changes.
  bool Expand(int row, bool expand, bool deep);
  bool IsShown(int row) const { return !rows_[row].hidden; }
  int CountShown() const { return rows_.CountShown(); }
  int FindShown(int n) const { return rows_.FindShown(n); }
  int CountShownBefore(int row) const { return rows_.CountShownBefore(row); }
  /// The row itself if it is shown, or else the one below which it is hidden.
  int GetShownAncestor(int row) const;

  int CountSelected() const { return rows_.CountSelected(); }
  /// The first one from an index on; the count of rows if there is none.
  int FindSelected(int from) const { return rows_.FindSelected(from); }
  void Select(int first, int last, bool select);
  void UnselectAll();

 private:
  bool IsHiddenBelow(int row) const;
  void RefreshBelow(int row);
  void ShowBelow(int row);
  void HideBelow(int row);
  int CutLevels(int from);
  void Settle(int row);
  void PackTexts();

  TreeBlocks rows_;
  TreeTexts texts_;
  TreeLooks looks_;
};

template <typename Visit>
void TreeRows::ForEachText(int column, Visit visit) const {
  // Rows that were sorted have their texts anywhere: each is fetched some rows before its turn.
  std::array<TextRun, 16> fetched;
  std::size_t count = 0;
  const auto next = [&]() -> TextRun& { return fetched[count++ % fetched.size()]; };
  rows_.ForRange(0, rows_.size(), [&](const TreeRow& row) {
    const bool is_full = count >= fetched.size();
    TextRun& run = next();
    if (is_full) visit(texts_.Cell(run, column));
    run = row.GetText();
    texts_.Prefetch(run);
  });
  const std::size_t left = std::min(count, fetched.size());
  count -= left;
  for (std::size_t i = 0; i < left; ++i) visit(texts_.Cell(next(), column));
}

}  // namespace dq::detail
