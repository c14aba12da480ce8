// The items of a tree control, and in which row each stands.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "dqlib/framework/controls/tree_view_item.h"

namespace dq {

class CTreeItem;

namespace detail {

/// Items with siblings, children and a parent, as numbers that stay the same while an item lives.
/// Those that are shown, because all they are below is expanded, have rows counted from 0. Where
/// an item stands, and which one stands in a row, is found in logarithmic time, and so is a single
/// item put in or taken out; rows that come or go together take time in proportion to their number.
class TreeItems {
 public:
  using Index = std::uint32_t;
  /// What all items are below; as a sibling or child, none.
  static constexpr Index kRoot = 0;

  struct Node {
    std::string text = {};
    LPARAM param = 0;
    CTreeItem* object = nullptr;
    UINT state = 0;
    int image = 0;
    int selected_image = 0;
    /// 0 at the top.
    int level = 0;

    Index parent = kRoot;
    Index first_child = kRoot;
    Index last_child = kRoot;
    Index next = kRoot;
    Index previous = kRoot;

    // The rows are a balanced tree of the shown items, in order: `left` before, `right` behind, and
    // so many of them from this one down; 0 for one that isn't shown.
    Index left = kRoot;
    Index right = kRoot;
    Index up = kRoot;
    int rows = 0;
    /// How many items have had the number; 0 while none has it.
    std::uint32_t generation = 0;
    bool is_live = false;
  };
  struct Range {
    int first = 0;
    int count = 0;
  };

  TreeItems() : nodes_(1) { nodes_[kRoot].level = -1; }

  /// Null for the root. The item of a handle, or the root if it names none.
  HTREEITEM HandleOf(Index item) const;
  Index Find(HTREEITEM handle) const;
  Node& operator[](Index item) { return nodes_[item]; }
  const Node& operator[](Index item) const { return nodes_[item]; }
  int size() const { return size_; }

  /// Puts an item with these values in, behind the sibling `after`, or with the root as that before
  /// all.
  Index Insert(Index parent, Index after, Node&& values);
  /// Takes an item out with all below it, the root's children with the root, and returns the rows
  /// that they had. `gone` takes their objects, where they have one.
  Range Erase(Index item, std::vector<CTreeItem*>& gone);
  /// Marks an item as expanded or not, and returns the rows that came or went.
  Range Expand(Index item, bool expand);
  bool IsExpanded(Index item) const {
    return item == kRoot || (nodes_[item].state & TVIS_EXPANDED) != 0;
  }

  int row_count() const { return RowsOf(top_); }
  /// -1 if it isn't shown.
  int RowOf(Index item) const;
  /// The root if there is no such row.
  Index AtRow(int row) const;
  bool IsShown(Index item) const { return item == kRoot || nodes_[item].rows > 0; }
  /// Whether `item` is below `other`.
  bool IsBelow(Index item, Index other) const;

 private:
  struct Halves {
    Index before;
    Index behind;
  };

  int RowsOf(Index item) const { return item == kRoot ? 0 : nodes_[item].rows; }
  Index NewNode();
  Index LastShown(Index item) const;
  std::vector<Index> Below(Index item, bool shown_only) const;
  void Unlink(Index item);

  void SetLeft(Index item, Index below);
  void SetRight(Index item, Index below);
  void SetTop(Index item);
  Index Join(Index before, Index behind);
  Halves Split(Index item, int rows);
  Index Balanced(std::span<const Index> items);
  void InsertRows(int at, std::span<const Index> items);
  void RemoveRows(const Range& range);

  /// The root's first.
  std::vector<Node> nodes_;
  std::vector<Index> free_;
  Index top_ = kRoot;
  int size_ = 0;
  std::uint32_t random_ = 0x9E3779B9;
};

}  // namespace detail
}  // namespace dq
