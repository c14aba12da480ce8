// Containers of texts under the framework's operation names.

#pragma once

#include <concepts>
#include <list>
#include <utility>
#include <vector>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/object.h"

namespace dq {

/// A place in a list; null is "no place". It stays valid until its element is removed.
struct ListPosition;
using POSITION = ListPosition*;

/// A list of texts. Owns its elements.
class CStringList {
 public:
  CStringList() = default;
  CStringList(const CStringList&) = delete;
  CStringList& operator=(const CStringList&) = delete;

  int GetCount() const { return static_cast<int>(nodes_.size()); }
  bool IsEmpty() const { return nodes_.empty(); }

  /// The first or last text of a list that isn't empty.
  const CString& GetHead() const { return nodes_.front().text; }
  const CString& GetTail() const { return nodes_.back().text; }

  POSITION AddHead(const CString& text);
  POSITION AddTail(const CString& text);
  /// Removes the first or last text of a list that isn't empty, and returns it.
  CString RemoveHead();
  CString RemoveTail();
  void RemoveAll() { nodes_.clear(); }
  void RemoveAt(POSITION position);

  /// For walking: the place to start from, null if the list is empty; and the text at `position`,
  /// which moves on, to null behind the last.
  POSITION GetHeadPosition() const;
  POSITION GetTailPosition() const;
  const CString& GetNext(POSITION& position) const;
  const CString& GetPrev(POSITION& position) const;
  const CString& GetAt(POSITION position) const;
  void SetAt(POSITION position, const CString& text);

  /// The first place that holds exactly this text, or null.
  POSITION Find(const char* text) const;

 private:
  struct Node;
  using Nodes = std::list<Node>;
  struct Node {
    CString text;
    Nodes::iterator self;
  };

  static Node* ToNode(POSITION position);
  static POSITION ToPosition(const Node& node);

  Nodes nodes_;
};

/// An array of texts by index. Owns its elements.
class CStringArray : public CObject {
 public:
  int GetSize() const { return static_cast<int>(texts_.size()); }
  /// Grows with empty texts or drops the last ones; below 0 counts as 0.
  void SetSize(int size);
  void RemoveAll() { texts_.clear(); }

  /// Elements by an index from 0 to below the size.
  const CString& GetAt(int index) const { return texts_[static_cast<std::size_t>(index)]; }
  const CString& operator[](int index) const { return GetAt(index); }
  CString& operator[](int index) { return texts_[static_cast<std::size_t>(index)]; }
  void SetAt(int index, const CString& text) { texts_[static_cast<std::size_t>(index)] = text; }

  /// Adds at the end, without a copy of a text that has just been made, and returns the new
  /// element's index.
  template <std::convertible_to<CString> Text>
  int Add(Text&& text) {
    texts_.emplace_back(std::forward<Text>(text));
    return GetSize() - 1;
  }
  /// Inserts before `index`, 0 or more, or behind the end after filling up with empty texts.
  void InsertAt(int index, CString text);
  /// Removes `count` elements, all of which exist.
  void RemoveAt(int index, int count = 1);
  /// Makes room for `count` elements in all, so that adding them allocates no more.
  void Reserve(int count);

  /// Stores the count and the texts, or loads them in the place of those that are there. If the
  /// archive throws while it loads, the array is what it was.
  void Serialize(CArchive& archive) override;

 private:
  std::vector<CString> texts_;
};

}  // namespace dq
