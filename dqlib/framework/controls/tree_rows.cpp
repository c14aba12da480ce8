#include "dqlib/framework/controls/tree_rows.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace dq::detail {
namespace {

constexpr int kNothingClosed = std::numeric_limits<int>::max();

/// Marks rows as hidden or shown, one after the other in their order.
class Hider {
 public:
  /// Begins behind a row.
  explicit Hider(const TreeRow& row)
      : closed_(row.hidden || row.collapsed ? row.level : kNothingClosed) {}

  void operator()(TreeRow& row) {
    row.hidden = row.level > closed_;
    if (!row.hidden) closed_ = row.collapsed ? row.level : kNothingClosed;
  }
  /// Rows below this level that follow are hidden.
  int GetClosedLevel() const { return closed_; }

 private:
  int closed_;
};

}  // namespace

int TreeRows::Insert(int index, std::span<const char* const> texts, int level) {
  TreeRow added;
  added.level = std::clamp(level, 0, GetMostLevel(index));
  added.SetText(texts_.Add(texts));
  const bool is_last = index == rows_.size();
  rows_.Insert(index, added);
  if (is_last && added.level == 0) return index + 1;
  if (IsHiddenBelow(index)) rows_.Edit(index, [](TreeRow& row) { row.hidden = true; });
  if (is_last) return index + 1;
  const int end = CutLevels(index + 1);
  if (end > index + 1 || (HasChildren(index) && rows_[index + 1].hidden != rows_[index].hidden)) {
    RefreshBelow(index);
  }
  return end;
}

void TreeRows::Erase(int row) {
  const int end = GetEnd(row);
  rows_.ForRange(row, end, [this](const TreeRow& gone) {
    texts_.Free(gone.GetText());
    looks_.Release(gone.look);
  });
  rows_.Erase(row, end);
  PackTexts();
}

void TreeRows::Clear() {
  rows_.Clear();
  texts_ = {};
  looks_ = {};
}

TreeRows::Moved TreeRows::Move(int row, int before, int level) {
  const int end = GetEnd(row);
  if (before > row && before < end) return {-1, -1};
  std::vector<TreeRow> moved;
  moved.reserve(static_cast<std::size_t>(end - row));
  rows_.ForRange(row, end, [&](const TreeRow& each) { moved.push_back(each); });
  rows_.Erase(row, end);
  const int index = before > row ? before - (end - row) : before;
  const int by = std::clamp(level, 0, GetMostLevel(index)) - moved.front().level;
  for (TreeRow& each : moved) each.level += by;
  rows_.Insert(index, moved);
  const int cut_end = CutLevels(index + (end - row));
  Settle(index);
  return {index, std::max(end, cut_end)};
}

int TreeRows::SetLevel(int row, int level) {
  const int by = std::clamp(level, 0, GetMostLevel(row)) - rows_[row].level;
  if (by == 0) return row;
  const int end = GetEnd(row);
  rows_.EditRange(row, end, [by](TreeRow& each) { each.level += by; });
  const int cut_end = CutLevels(end);
  Settle(row);
  return cut_end;
}

/// Brings up the rows from an index on that lie more than one below the row before. Returns the
/// index of the first one that doesn't.
int TreeRows::CutLevels(int from) {
  for (; from < rows_.size() && rows_[from].level > GetMostLevel(from); ++from) {
    rows_.Edit(from, [most = GetMostLevel(from)](TreeRow& row) { row.level = most; });
  }
  return from;
}

/// Shows or hides a row that has come to its place, and what is below it.
void TreeRows::Settle(int row) {
  rows_.Edit(row, [hidden = IsHiddenBelow(row)](TreeRow& each) { each.hidden = hidden; });
  RefreshBelow(row);
}

bool TreeRows::SetText(int row, int column, std::string_view text) {
  TreeRow& changed = rows_.Uncounted(row);
  TextRun run = changed.GetText();
  if (!texts_.SetCell(run, column, text)) return false;
  changed.SetText(run);
  PackTexts();
  return true;
}

void TreeRows::PackTexts() {
  if (!texts_.IsWasteful()) return;
  TreeTexts packed;
  for (int row = 0; row < rows_.size(); ++row) {
    TreeRow& moved = rows_.Uncounted(row);
    moved.SetText(packed.Copy(texts_, moved.GetText()));
  }
  texts_ = std::move(packed);
}

void TreeRows::SetLook(int row, const RowLook& look) {
  const std::uint32_t number = looks_.Take(look);
  looks_.Release(std::exchange(rows_.Uncounted(row).look, number));
}

int TreeRows::GetNextSibling(int row) const {
  const int end = GetEnd(row);
  return end < rows_.size() && rows_[end].level == rows_[row].level ? end : -1;
}

int TreeRows::GetPrevSibling(int row) const {
  const int found = GetPrevLinked(row);
  return found >= 0 && rows_[found].level == rows_[row].level ? found : -1;
}

int TreeRows::CountChildren(int row) const {
  const int end = GetEnd(row);
  const int level = rows_[row].level + 1;
  int count = 0;
  for (int at = row + 1; at < end; at = rows_.FindNextAtMost(at + 1, level)) ++count;
  return count;
}

std::vector<int> TreeRows::GetLevels() const {
  std::vector<int> levels;
  levels.reserve(static_cast<std::size_t>(rows_.size()));
  rows_.ForRange(0, rows_.size(), [&](const TreeRow& row) { levels.push_back(row.level); });
  return levels;
}

bool TreeRows::IsHiddenBelow(int row) const {
  const int parent = GetParent(row);
  return parent >= 0 && (rows_[parent].hidden || rows_[parent].collapsed);
}

void TreeRows::RefreshBelow(int row) { rows_.EditRange(row + 1, GetEnd(row), Hider(rows_[row])); }

bool TreeRows::Expand(int row, bool expand, bool deep) {
  if (deep) {
    bool changes = false;
    rows_.EditRange(row, GetEnd(row), [&](TreeRow& each) {
      changes |= each.collapsed == expand;
      each.collapsed = !expand;
    });
    if (changes) RefreshBelow(row);
    return changes;
  }
  if (rows_[row].collapsed != expand) return false;
  rows_.Edit(row, [expand](TreeRow& each) { each.collapsed = !expand; });
  if (rows_[row].hidden) return true;
  if (expand) {
    ShowBelow(row);
  } else {
    HideBelow(row);
  }
  return true;
}

/// What is below collapsed rows is hidden already, and isn't looked at: so opening one branch after
/// the other from the top down takes no longer than opening them at once.
void TreeRows::ShowBelow(int row) {
  const int end = GetEnd(row);
  Hider hider(rows_[row]);
  // The farther nothing is collapsed, the more is looked at in one step.
  constexpr int kFewRows = 8;
  constexpr int kManyRows = 1024;
  for (int at = row + 1, step = kFewRows; at < end; step = std::min(2 * step, kManyRows)) {
    const int to = step < end - at ? at + step : end;
    at = rows_.EditBlock(at, to, [&hider](TreeRow& each) { hider(each); });
    if (at < end && hider.GetClosedLevel() != kNothingClosed) {
      at = rows_.FindNextAtMost(at, hider.GetClosedLevel());
      step = kFewRows / 2;
    }
  }
}

void TreeRows::HideBelow(int row) {
  const int end = GetEnd(row);
  const int shown = rows_.CountShownBefore(row) + 1;
  while (shown < rows_.CountShown()) {
    const int at = rows_.FindShown(shown);
    if (at >= end) return;
    rows_.EditBlock(at, end, [](TreeRow& each) { each.hidden = true; });
  }
}

int TreeRows::GetShownAncestor(int row) const {
  if (!rows_[row].hidden) return row;
  return rows_.FindShown(rows_.CountShownBefore(row) - 1);
}

void TreeRows::Select(int first, int last, bool select) {
  rows_.EditRange(first, last, [select](TreeRow& row) { row.selected = select; });
}

void TreeRows::UnselectAll() {
  const int count = rows_.size();
  for (int at = FindSelected(0); at < count; at = FindSelected(at)) {
    at = rows_.EditBlock(at, count, [](TreeRow& row) { row.selected = false; });
  }
}

}  // namespace dq::detail
