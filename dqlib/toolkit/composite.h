// Trees of objects that own what is below them.
//
//   class Node : public CDQComposite_T<Node*> { ... };
//
//   Node root;
//   root.AddChild(new Node);
//   root.GetChild(0)->GetParent();   // &root

#pragma once

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace dq {

/// A node with children, which are of the class to which `T` points and derive from this one by it.
/// A node owns its children: they are deleted with it, each without its own children by then. One
/// that is deleted by itself leaves its parent. Indexes count from 0.
///
/// It is made for large trees, wide or deep: nothing recurses, adding takes constant time for
/// children that have none themselves, and the number of nodes below is known without a walk while
/// a tree grows.
template <typename T>
class CDQComposite_T {
 public:
  CDQComposite_T() = default;
  CDQComposite_T(const CDQComposite_T&) = delete;
  CDQComposite_T& operator=(const CDQComposite_T&) = delete;
  virtual ~CDQComposite_T();

  /// How many children there are, or with `all_levels` how many nodes below.
  virtual int GetChildCount(bool all_levels = false) const {
    return all_levels ? CountBelow() : static_cast<int>(children_.size());
  }
  /// Null if there is none.
  virtual T GetChild(int index) const { return Has(index) ? children_[At(index)] : nullptr; }
  /// Takes a child over, as the last one. False if it stays the caller's: null, a node that has a
  /// parent, this one or one above it, or one that `Takes` refuses.
  virtual bool AddChild(T child) { return Insert(GetChildCount(), child); }
  /// The same before the child `index`, or behind all with their count; no other index is taken.
  virtual bool InsertChild(int index, T child) { return Insert(index, child); }
  /// Takes a child out, with all below it, and gives it to the caller; null if there is none.
  virtual T RemoveChild(int index);
  /// Deletes them all.
  virtual void DeleteAllChildren() { DeleteTree(children_); }
  /// The index of a child, or -1.
  virtual int FindChild(T child) const;
  /// Null for a node that nothing is above.
  virtual T GetParent() const { return parent_; }

 protected:
  /// Whether a node of this kind may come in as a child. The base takes any.
  virtual bool Takes(T /*child*/) const { return true; }

 private:
  using Children = std::vector<T>;

  static std::size_t At(int index) { return static_cast<std::size_t>(index); }
  bool Has(int index) const { return index >= 0 && At(index) < children_.size(); }
  bool Insert(int index, T child);
  bool IsBelow(const CDQComposite_T& other) const;
  int CountBelow() const;
  void ForgetCounts();
  void DeleteTree(Children& roots);

  /// So many nodes above keep their numbers when one comes in; those farther up count anew.
  static constexpr int kKeptAncestors = 64;

  Children children_;
  T parent_ = nullptr;
  mutable int below_ = 0;
  /// Where it isn't known, it isn't known in any node above either.
  mutable bool below_is_known_ = true;
};

template <typename T>
CDQComposite_T<T>::~CDQComposite_T() {
  DeleteTree(children_);
  if (parent_ == nullptr) return;
  CDQComposite_T& above = *parent_;
  const auto is_this = [this](CDQComposite_T* child) { return child == this; };
  const auto found = std::find_if(above.children_.rbegin(), above.children_.rend(), is_this);
  if (found == above.children_.rend()) return;
  above.children_.erase(std::next(found).base());
  above.ForgetCounts();
}

template <typename T>
bool CDQComposite_T<T>::Insert(int index, T child) {
  if (index < 0 || index > static_cast<int>(children_.size()) || child == nullptr) return false;
  CDQComposite_T& node = *child;
  if (node.parent_ != nullptr || &node == this || !Takes(child)) return false;
  if (!node.children_.empty() && IsBelow(node)) return false;
  children_.insert(children_.begin() + index, child);
  node.parent_ = static_cast<T>(this);
  if (!node.below_is_known_) {
    ForgetCounts();
    return true;
  }
  const int added = 1 + node.below_;
  CDQComposite_T* above = this;
  for (int left = kKeptAncestors; left > 0 && above != nullptr; --left) {
    if (!above->below_is_known_) return true;
    above->below_ += added;
    above = above->parent_;
  }
  if (above != nullptr) above->ForgetCounts();
  return true;
}

template <typename T>
T CDQComposite_T<T>::RemoveChild(int index) {
  if (!Has(index)) return nullptr;
  const T child = children_[At(index)];
  children_.erase(children_.begin() + index);
  static_cast<CDQComposite_T&>(*child).parent_ = nullptr;
  ForgetCounts();
  return child;
}

template <typename T>
int CDQComposite_T<T>::FindChild(T child) const {
  const auto found = std::find(children_.begin(), children_.end(), child);
  return found == children_.end() ? -1 : static_cast<int>(found - children_.begin());
}

template <typename T>
bool CDQComposite_T<T>::IsBelow(const CDQComposite_T& other) const {
  const CDQComposite_T* node = this;
  while (node != nullptr && node != &other) node = node->parent_;
  return node != nullptr;
}

template <typename T>
void CDQComposite_T<T>::ForgetCounts() {
  CDQComposite_T* node = this;
  while (node != nullptr && node->below_is_known_) {
    node->below_is_known_ = false;
    node = node->parent_;
  }
}

template <typename T>
int CDQComposite_T<T>::CountBelow() const {
  if (below_is_known_) return below_;
  // Parents come before their children.
  std::vector<const CDQComposite_T*> unknown = {this};
  for (std::size_t at = 0; at < unknown.size(); ++at) {
    for (const CDQComposite_T* child : unknown[at]->children_) {
      if (!child->below_is_known_) unknown.push_back(child);
    }
  }
  for (auto node = unknown.rbegin(); node != unknown.rend(); ++node) {
    int below = static_cast<int>((*node)->children_.size());
    for (const CDQComposite_T* child : (*node)->children_) below += child->below_;
    (*node)->below_ = below;
    (*node)->below_is_known_ = true;
  }
  return below_;
}

/// Deletes the nodes, and what is below them one by one, without recursion.
template <typename T>
void CDQComposite_T<T>::DeleteTree(Children& roots) {
  if (roots.empty()) return;
  ForgetCounts();
  Children doomed;
  doomed.swap(roots);
  std::reverse(doomed.begin(), doomed.end());
  while (!doomed.empty()) {
    const T child = doomed.back();
    doomed.pop_back();
    CDQComposite_T& node = *child;
    node.parent_ = nullptr;
    doomed.insert(doomed.end(), node.children_.rbegin(), node.children_.rend());
    node.children_.clear();
    delete child;
  }
}

}  // namespace dq
