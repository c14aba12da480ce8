// The columns of a tree.

#pragma once

#include <map>
#include <optional>
#include <vector>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/platform/types.h"

namespace dq::detail {

/// How wide each cell of a column has to be, for a column that is fitted again and again while rows
/// come and go.
class CellWidths {
 public:
  /// `rows`: how many are counted at first. Who changes more than that and some, and doesn't ask
  /// for the widest meanwhile, does better to measure all again: then `Add` and `Remove` are false.
  explicit CellWidths(int rows) : patience_(rows + kPatience), left_(patience_) {}

  bool Add(int width, int cells = 1);
  bool Remove(int width);
  /// 0 without cells.
  int GetWidest();

 private:
  static constexpr int kPatience = 4096;

  std::map<int, int> counts_;
  int patience_;
  int left_;
};

struct TreeColumn {
  CString title;
  int width = 0;
  UINT format = 0;
  /// While it is known.
  std::optional<CellWidths> widths;
};

/// Columns by index from 0, from left to right.
class TreeColumns {
 public:
  int GetCount() const { return static_cast<int>(columns_.size()); }
  bool Has(int column) const { return column >= 0 && column < GetCount(); }
  /// One that is there.
  TreeColumn& operator[](int column) { return columns_[static_cast<std::size_t>(column)]; }
  const TreeColumn& operator[](int column) const {
    return columns_[static_cast<std::size_t>(column)];
  }
  void Add(const TreeColumn& column) { columns_.push_back(column); }

  /// All together count as no wider than this.
  static constexpr int kWidest = 1 << 30;

  /// Where a column begins; the width of all for the count.
  int GetLeft(int column) const;
  /// The column at so many pixels from the left, or -1.
  int FindAt(int x) const;
  /// The one whose right edge is at most so far away, the last of several; or -1.
  int FindEdge(int x, int distance) const;

  /// Forgets what cells need.
  void ForgetWidths();
  bool HasWidths() const { return has_widths_; }
  void KeepWidths(int column, CellWidths widths);

 private:
  std::vector<TreeColumn> columns_;
  bool has_widths_ = false;
};

}  // namespace dq::detail
