// The state of a tree as it is kept: which rows are current, selected and expanded.

#pragma once

#include <optional>
#include <vector>

#include "dqlib/platform/types.h"

namespace dq {

class CFile;

/// The rows are those of the tree at that time, by their indexes.
struct TreeState {
  LONG current = -1;
  std::vector<LONG> selected;
  /// Those that have children and are expanded, rising. The form has no room for rows above 65,535.
  std::vector<WORD> expanded;
};

/// Writes the state to a file: the current row, the number of selected rows and each of them, by 32
/// bits, and the expanded ones as an array of words is stored. Throws what the file does.
void WriteTreeState(const TreeState& state, CFile& file);

/// Reads it from the file's position on. No value if the bytes are none such or too few; any are
/// safe.
std::optional<TreeState> ReadTreeState(CFile& file);

}  // namespace dq
