// Arrays of pointers that own their elements, and walks through them.

#pragma once

#include <cstdint>
#include <memory>

#include "dqlib/framework/base/array.h"
#include "dqlib/framework/base/string_collections.h"

namespace dq {

/// An array with the calls of a list. A position is good until the array is emptied.
template <typename T, typename Argument>
class CListCompatibleArray : public CArray<T, Argument> {
 public:
  int GetCount() const { return this->GetSize(); }

  POSITION AddTail(Argument element) { return ToPosition(this->Add(element)); }

  /// The place to start a walk from, null if there is no element; and the element at `position`,
  /// which isn't null and moves on, to null behind the last.
  POSITION GetHeadPosition() const { return this->IsEmpty() ? nullptr : ToPosition(0); }
  const T& GetNext(POSITION& position) const {
    const int index = static_cast<int>(reinterpret_cast<std::uintptr_t>(position)) - 1;
    position = index + 1 < this->GetSize() ? ToPosition(index + 1) : nullptr;
    return this->GetAt(index);
  }

 private:
  /// Null is no place, so places count from 1.
  static POSITION ToPosition(int index) {
    return reinterpret_cast<POSITION>(static_cast<std::uintptr_t>(index) + 1);
  }
};

/// Owns its elements: they are deleted with it and when it is emptied, and a copy of it has copies
/// of them. No element is null. Whoever overwrites an element, or cuts the array by its size, takes
/// the former element over.
template <typename T>
class CLGAutoDeletePtrCollectionT : public CListCompatibleArray<T*, T*> {
 public:
  CLGAutoDeletePtrCollectionT() = default;
  CLGAutoDeletePtrCollectionT(const CLGAutoDeletePtrCollectionT& other)
      : CListCompatibleArray<T*, T*>() {
    CopyFrom(other);
  }
  CLGAutoDeletePtrCollectionT& operator=(const CLGAutoDeletePtrCollectionT& other) {
    if (this != &other) {
      RemoveAll();
      CopyFrom(other);
    }
    return *this;
  }
  ~CLGAutoDeletePtrCollectionT() override { DeleteAll(); }

  void RemoveAll() override {
    DeleteAll();
    CListCompatibleArray<T*, T*>::RemoveAll();
  }

 private:
  void DeleteAll() {
    for (int i = 0; i < this->GetSize(); ++i) std::default_delete<T>()(this->GetAt(i));
  }

  void CopyFrom(const CLGAutoDeletePtrCollectionT& other) {
    this->SetSize(other.GetSize());
    for (int i = 0; i < other.GetSize(); ++i) {
      this->SetAt(i, std::make_unique<T>(*other.GetAt(i)).release());
    }
  }
};

/// A walk through an array of pointers, which must outlive it and keep its elements meanwhile.
template <typename T>
class CArrayIterT {
 public:
  explicit CArrayIterT(CArray<T*, T*>& array) : array_(array) {}
  /// The next element, null behind the last.
  T* Next() { return next_ < array_.GetSize() ? array_[next_++] : nullptr; }

 private:
  CArray<T*, T*>& array_;
  int next_ = 0;
};

/// The same for reading.
template <typename T>
class CConstPtrArrayIterT {
 public:
  explicit CConstPtrArrayIterT(const CArray<T*, T*>& array) : array_(array) {}
  const T* Next() { return next_ < array_.GetSize() ? array_[next_++] : nullptr; }

 private:
  const CArray<T*, T*>& array_;
  int next_ = 0;
};

}  // namespace dq
