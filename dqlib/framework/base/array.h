// An array under the framework's operation names.

#pragma once

#include <cstddef>
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

  virtual void RemoveAll() { elements_.clear(); }

 private:
  std::vector<T> elements_;
};

}  // namespace dq
