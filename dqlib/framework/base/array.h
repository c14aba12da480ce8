// Arrays under the framework's operation names.

#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "dqlib/framework/base/object.h"

namespace dq {

/// An array of values by index, which takes new elements as `Argument`. Elements that are pointers
/// are not owned, unless a derived class says so.
template <typename T, typename Argument = const T&>
class CArray : public CObject {
 public:
  int GetSize() const { return static_cast<int>(elements_.size()); }
  bool IsEmpty() const { return elements_.empty(); }

  /// Elements by an index from 0 to below the size.
  const T& GetAt(int index) const { return elements_[static_cast<std::size_t>(index)]; }
  const T& operator[](int index) const { return GetAt(index); }
  T& operator[](int index) { return elements_[static_cast<std::size_t>(index)]; }
  void SetAt(int index, Argument element) { elements_[static_cast<std::size_t>(index)] = element; }

  /// Adds at the end and returns the new element's index.
  int Add(Argument element) {
    elements_.push_back(element);
    return GetSize() - 1;
  }

  /// Grows with default elements or drops the last ones; below 0 counts as 0.
  void SetSize(int size) { elements_.resize(size > 0 ? static_cast<std::size_t>(size) : 0); }

  /// Inserts before `index`, 0 or more, or behind the end after filling up with default elements.
  void InsertAt(int index, Argument element) {
    T copy(element);  // which may be one of those that move
    SetSize(std::max(GetSize(), index));
    elements_.insert(elements_.begin() + index, std::move(copy));
  }
  /// Removes `count` elements, all of which exist.
  void RemoveAt(int index, int count = 1) {
    elements_.erase(elements_.begin() + index, elements_.begin() + index + count);
  }

  /// Makes room for elements to come, so that as many of them are added without a move.
  void Reserve(int size) { elements_.reserve(size > 0 ? static_cast<std::size_t>(size) : 0); }

  virtual void RemoveAll() { elements_.clear(); }

 protected:
  void SetElements(std::vector<T> elements) { elements_ = std::move(elements); }

 private:
  std::vector<T> elements_;
};

/// Objects, which it doesn't own.
class CObArray : public CArray<CObject*, CObject*> {};

class CUIntArray : public CArray<UINT, UINT> {};

class CWordArray : public CArray<WORD, WORD> {
 public:
  /// Stores the count and the numbers, or loads them in the place of those that are there. If the
  /// archive throws while it loads, the array is what it was.
  void Serialize(CArchive& archive) override;
};

/// An array of pointers whose elements are all of one type: `CTypedPtrArray<CObArray, CDocument*>`.
/// Null is an element too.
template <typename Base, typename Pointer>
class CTypedPtrArray : public Base {
 public:
  Pointer GetAt(int index) const { return static_cast<Pointer>(Base::GetAt(index)); }
  Pointer operator[](int index) const { return GetAt(index); }
  void SetAt(int index, Pointer element) { Base::SetAt(index, element); }
  int Add(Pointer element) { return Base::Add(element); }
  void InsertAt(int index, Pointer element) { Base::InsertAt(index, element); }
};

}  // namespace dq
