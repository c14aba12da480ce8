// The data behind a tree with check boxes, where parents show the state of what is below them.

#pragma once

#include <cstdint>

#include "dqlib/toolkit/tree_item_model.h"

namespace dq {

/// What a node begins with. The first two say what the host's class stores itself.
enum InitialCheckState : int {
  kInitiallyClear = 0,
  kInitiallyChecked = 1,
  /// Takes the state of its parent when it comes in.
  kInheritCheckState = 2,
};

/// A node that is checked (1) or clear (0), and counts what is below it. The host's class stores
/// the state. A parent with a checked node below it, be it one of many, is checked itself; so
/// toggling one that is shown as mixed clears all.
///
/// Counts are of all levels below, without the node itself. They are those of the moment when they
/// were last brought up to date, which happens where the comments say so: a node that is added
/// changes no counts above it. More than `kCountedAtOnce` nodes are counted when somebody asks, or
/// before the library changes their states, so that a tree that grows isn't counted with each node;
/// states that the host sets itself in between are counted as they are then.
///
/// All nodes of a tree are of this class. Each operation takes time in proportion to the tree at
/// most, whatever its shape; the host's setter mustn't add or remove nodes.
class CDQCheckBoxTreeItemModel : public CDQTreeItemModel {
  DECLARE_DYNAMIC(CDQCheckBoxTreeItemModel)
  static constexpr int kCountedAtOnce = 64;

  explicit CDQCheckBoxTreeItemModel(InitialCheckState initial = kInitiallyClear);

  virtual int GetCheckState() const = 0;
  virtual void SetCheckState(int state) = 0;

  /// Takes the parent's state, if it inherits and has a parent, and brings its counts up to date.
  void InitCheck();
  /// As the base, and `InitCheck` of the child. Nodes of other classes aren't taken.
  bool AddChild(CDQTreeItemModel* child) override;
  bool InsertChild(int index, CDQTreeItemModel* child) override;

  /// Checks it, or clears it if it was checked, and all below it in the same way; then brings the
  /// nodes above up to date: their counts, and their states, which are checked where a node below
  /// is. Returns the new state.
  int ToggleCheckState();

  bool HasMixedStateChildren() const { return HasCheckedChildren() && HasUncheckedChildren(); }
  /// As many are checked, or clear, as there are nodes below now: both are true of a leaf.
  bool HasOnlyCheckedChildren() const;
  bool HasOnlyUncheckedChildren() const;
  /// Checks, or clears, all below it, and makes the count of those that of all nodes below, at each
  /// of them too. The other count stays.
  void AllCheckedChildren();
  void AllUncheckedChildren();

 protected:
  /// Brings the counts up to date, and remarks them for debugging.
  void UpdateChildCount();
  /// Counts the checked, and the clear, nodes below a node as they are now.
  int CountCheckedChildren(const CDQCheckBoxTreeItemModel* node) const;
  int CountUncheckedChildren(const CDQCheckBoxTreeItemModel* node) const;
  /// Checks all below it if `state` isn't 0, else clears them; counts become what they say then.
  void UpdateAllChildren(int state);
  /// Brings the nodes above up to date, from the parent to the root.
  void UpdateParents();

  bool HasCheckedChildren() const { return CurrentCounts().checked > 0; }
  bool HasUncheckedChildren() const { return CurrentCounts().unchecked > 0; }
  /// Make the count 0, at all nodes below too.
  void ZeroCheckedChildren();
  void ZeroUncheckedChildren();
  /// Add 1 to the count, at most up to the number of nodes below, or take 1 away, down to 0, and do
  /// so at the parent; they end at the first node that is at its limit.
  void IncrementCheckedChildren();
  void DecrementCheckedChildren();
  void IncrementUncheckedChildren();
  void DecrementUncheckedChildren();

  bool Takes(CDQTreeItemModel* child) const override;
  /// "text, Checked: n Unchecked: n".
  CString GetTraceText() const override;

 private:
  friend class CDQCheckBoxTreeItem;

  struct Counts {
    int checked = 0;
    int unchecked = 0;
  };

  /// A moment in the life of a tree; later ones are larger, and 0 is none.
  using Moment = std::uint64_t;

  CDQCheckBoxTreeItemModel* Parent() const;
  CDQCheckBoxTreeItemModel* Child(int index) const;
  std::vector<CDQCheckBoxTreeItemModel*> SelfAndBelow();
  bool TakeIn(CDQTreeItemModel* child, bool is_in);
  Counts CountBelow(Moment as_of) const;
  const Counts& CurrentCounts() const;
  void SetCounts(const Counts& counts);
  void CountAbove() const;
  void CheckAllBelow(bool checked, int Counts::*counted);
  void ZeroAllBelow(int Counts::*counted);
  void Change(int Counts::*counted, int by);
  void TraceCounts() const;

  mutable Counts m_counts;
  InitialCheckState m_eInitialState;
  /// When the counts were to be brought up to date, if they haven't been counted yet; nodes that
  /// came in later don't count.
  mutable Moment m_nDue = 0;
  /// When it came in.
  Moment m_nAdded = 0;
};

}  // namespace dq
