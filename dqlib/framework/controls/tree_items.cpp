#include "dqlib/framework/controls/tree_items.h"

#include <utility>

namespace dq::detail {

static_assert(sizeof(std::uintptr_t) >= 8, "a handle holds an item's number and its generation");

HTREEITEM TreeItems::HandleOf(Index item) const {
  if (item == kRoot) return nullptr;
  const std::uintptr_t handle = std::uintptr_t{nodes_[item].generation} << 32 | item;
  return reinterpret_cast<HTREEITEM>(handle);
}

TreeItems::Index TreeItems::Find(HTREEITEM handle) const {
  const auto number = reinterpret_cast<std::uintptr_t>(handle);
  const auto item = static_cast<Index>(number & 0xFFFFFFFF);
  if (item >= nodes_.size() || !nodes_[item].is_live) return kRoot;
  return nodes_[item].generation == number >> 32 ? item : kRoot;
}

// ---- Items

TreeItems::Index TreeItems::NewNode() {
  if (free_.empty()) {
    nodes_.emplace_back();
    return static_cast<Index>(nodes_.size() - 1);
  }
  const Index item = free_.back();
  free_.pop_back();
  return item;
}

TreeItems::Index TreeItems::Insert(Index parent, Index after, Node&& values) {
  const Index item = NewNode();
  const std::uint32_t generation = nodes_[item].generation + 1;
  nodes_[item] = std::move(values);
  Node& node = nodes_[item];
  node.generation = generation;
  node.is_live = true;
  node.parent = parent;
  node.level = nodes_[parent].level + 1;
  node.previous = after;
  node.next = after == kRoot ? nodes_[parent].first_child : nodes_[after].next;
  (after == kRoot ? nodes_[parent].first_child : nodes_[after].next) = item;
  (node.next == kRoot ? nodes_[parent].last_child : nodes_[node.next].previous) = item;
  ++size_;
  if (IsShown(parent) && IsExpanded(parent)) {
    const Index before = after == kRoot ? parent : LastShown(after);
    InsertRows(before == kRoot ? 0 : RowOf(before) + 1, {&item, 1});
  }
  return item;
}

/// Of a shown item: the last row of it and what is shown below it.
TreeItems::Index TreeItems::LastShown(Index item) const {
  while (IsExpanded(item) && nodes_[item].last_child != kRoot) item = nodes_[item].last_child;
  return item;
}

/// Items below one, in order; or those that are shown once it is expanded.
std::vector<TreeItems::Index> TreeItems::Below(Index item, bool shown_only) const {
  std::vector<Index> below;
  Index next = nodes_[item].first_child;
  while (next != kRoot) {
    below.push_back(next);
    const Index child = nodes_[next].first_child;
    if (child != kRoot && (!shown_only || IsExpanded(next))) {
      next = child;
      continue;
    }
    while (next != item && nodes_[next].next == kRoot) next = nodes_[next].parent;
    next = next == item ? kRoot : nodes_[next].next;
  }
  return below;
}

void TreeItems::Unlink(Index item) {
  const Node& node = nodes_[item];
  Node& parent = nodes_[node.parent];
  (node.previous == kRoot ? parent.first_child : nodes_[node.previous].next) = node.next;
  (node.next == kRoot ? parent.last_child : nodes_[node.next].previous) = node.previous;
}

TreeItems::Range TreeItems::Erase(Index item, std::vector<CTreeItem*>& gone) {
  Range rows;
  if (item == kRoot) {
    rows = {0, row_count()};
  } else if (IsShown(item)) {
    rows.first = RowOf(item);
    rows.count = RowOf(LastShown(item)) - rows.first + 1;
  }
  RemoveRows(rows);
  std::vector<Index> doomed = Below(item, false);
  if (item == kRoot) {
    nodes_[kRoot].first_child = nodes_[kRoot].last_child = kRoot;
  } else {
    Unlink(item);
    doomed.insert(doomed.begin(), item);
  }
  for (const Index each : doomed) {
    if (nodes_[each].object != nullptr) gone.push_back(nodes_[each].object);
    const std::uint32_t generation = nodes_[each].generation;
    nodes_[each] = {};
    nodes_[each].generation = generation;
  }
  free_.insert(free_.end(), doomed.rbegin(), doomed.rend());
  size_ -= static_cast<int>(doomed.size());
  return rows;
}

TreeItems::Range TreeItems::Expand(Index item, bool expand) {
  if (item == kRoot || IsExpanded(item) == expand) return {};
  Range rows;
  if (!expand && IsShown(item)) {
    rows.first = RowOf(item) + 1;
    rows.count = RowOf(LastShown(item)) + 1 - rows.first;
    RemoveRows(rows);
  }
  nodes_[item].state ^= TVIS_EXPANDED;
  if (expand && IsShown(item)) {
    const std::vector<Index> below = Below(item, true);
    rows = {RowOf(item) + 1, static_cast<int>(below.size())};
    InsertRows(rows.first, below);
  }
  return rows;
}

bool TreeItems::IsBelow(Index item, Index other) const {
  while (item != kRoot && nodes_[item].level > nodes_[other].level) item = nodes_[item].parent;
  return item == other;
}

// ---- Rows

int TreeItems::RowOf(Index item) const {
  if (RowsOf(item) == 0) return -1;
  int row = RowsOf(nodes_[item].left);
  for (Index up = nodes_[item].up; up != kRoot; up = nodes_[item].up) {
    if (nodes_[up].right == item) row += RowsOf(nodes_[up].left) + 1;
    item = up;
  }
  return row;
}

TreeItems::Index TreeItems::AtRow(int row) const {
  if (row < 0 || row >= row_count()) return kRoot;
  Index item = top_;
  for (;;) {
    const int before = RowsOf(nodes_[item].left);
    if (row == before) return item;
    if (row < before) {
      item = nodes_[item].left;
    } else {
      row -= before + 1;
      item = nodes_[item].right;
    }
  }
}

void TreeItems::SetLeft(Index item, Index below) {
  nodes_[item].left = below;
  if (below != kRoot) nodes_[below].up = item;
  nodes_[item].rows = RowsOf(below) + RowsOf(nodes_[item].right) + 1;
}

void TreeItems::SetRight(Index item, Index below) {
  nodes_[item].right = below;
  if (below != kRoot) nodes_[below].up = item;
  nodes_[item].rows = RowsOf(nodes_[item].left) + RowsOf(below) + 1;
}

void TreeItems::SetTop(Index item) {
  top_ = item;
  if (item != kRoot) nodes_[item].up = kRoot;
}

/// One tree of both, where chance decides which is on top, in proportion to their sizes: so it is
/// as flat as one that was put together in random order, whatever the order was.
TreeItems::Index TreeItems::Join(Index before, Index behind) {
  if (before == kRoot) return behind;
  if (behind == kRoot) return before;
  random_ ^= random_ << 13;
  random_ ^= random_ >> 17;
  random_ ^= random_ << 5;
  const auto all =
      static_cast<std::uint64_t>(RowsOf(before)) + static_cast<std::uint64_t>(RowsOf(behind));
  if (static_cast<int>(random_ * all >> 32) < RowsOf(before)) {
    SetRight(before, Join(nodes_[before].right, behind));
    return before;
  }
  SetLeft(behind, Join(before, nodes_[behind].left));
  return behind;
}

/// The first so many rows of a tree, and the others.
TreeItems::Halves TreeItems::Split(Index item, int rows) {
  if (item == kRoot) return {kRoot, kRoot};
  const int before = RowsOf(nodes_[item].left);
  if (rows <= before) {
    const Halves halves = Split(nodes_[item].left, rows);
    SetLeft(item, halves.behind);
    return {halves.before, item};
  }
  const Halves halves = Split(nodes_[item].right, rows - before - 1);
  SetRight(item, halves.before);
  return {item, halves.behind};
}

TreeItems::Index TreeItems::Balanced(std::span<const Index> items) {
  if (items.empty()) return kRoot;
  const std::size_t middle = items.size() / 2;
  const Index top = items[middle];
  SetLeft(top, Balanced(items.first(middle)));
  SetRight(top, Balanced(items.subspan(middle + 1)));
  return top;
}

void TreeItems::InsertRows(int at, std::span<const Index> items) {
  const Index added = Balanced(items);
  if (at == row_count()) return SetTop(Join(top_, added));
  const auto [before, behind] = Split(top_, at);
  SetTop(Join(Join(before, added), behind));
}

void TreeItems::RemoveRows(const Range& range) {
  if (range.count == 0) return;
  const auto [before, rest] = Split(top_, range.first);
  const auto [removed, behind] = Split(rest, range.count);
  SetTop(Join(before, behind));
  std::vector<Index> open = {removed};
  while (!open.empty()) {
    Node& node = nodes_[open.back()];
    open.pop_back();
    for (const Index below : {node.left, node.right}) {
      if (below != kRoot) open.push_back(below);
    }
    node.left = node.right = node.up = kRoot;
    node.rows = 0;
  }
}

}  // namespace dq::detail
