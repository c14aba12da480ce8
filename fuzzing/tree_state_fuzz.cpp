// Any bytes as the state of a tree: what is read is written and read the same again, and any tree
// takes it, whatever rows it speaks of.

#include <string>

#include "fuzzing/fuzzing.h"

namespace dq::fuzz {

static std::optional<TreeState> Read(std::string_view bytes) {
  CMemFile file;
  file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
  file.SeekToBegin();
  return ReadTreeState(file);
}

static std::string Written(const TreeState& state) {
  CMemFile file;
  WriteTreeState(state, file);
  std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
  file.SeekToBegin();
  file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
  return bytes;
}

/// Two levels of folders with a leaf in each, and another leaf.
static void Fill(CDQTree& tree) {
  tree.AddColumn("", 100);
  int number = 0;
  for (const int level : {0, 1, 2, 2, 1, 0, 0, 1}) {
    tree.AddRow(std::to_string(number++).c_str(), level);
  }
}

}  // namespace dq::fuzz

void dq::fuzz::Try(std::string_view bytes) {
  std::optional<TreeState> state = Read(bytes);
  CDQTree tree;
  Fill(tree);
  const int rows = tree.GetCount();
  if (!state) return;
  // Only as many bytes as it stands on.
  Require(state->selected.size() * sizeof(LONG) + state->expanded.size() * sizeof(WORD) <=
          bytes.size());
  const auto again = Read(Written(*state));
  Require(again && again->current == state->current && again->selected == state->selected &&
          again->expanded == state->expanded);
  tree.TakeState(*state);
  Require(tree.GetCount() == rows);
  for (const LONG row : state->selected) {
    Require(row < 0 || row >= rows || tree.IsMultiSelection() || tree.GetSelectedCount() == 1);
  }
}
