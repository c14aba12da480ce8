// Static objects that delete singletons when the process ends.

#pragma once

#include "dqlib/framework/base/object.h"

namespace dq {

/// Deletes the `T` (a descendant of `CObject`) that it holds. One static instance per singleton.
template <typename T>
class CDQGlobalResourceCleaner {
 public:
  CDQGlobalResourceCleaner() = default;
  CDQGlobalResourceCleaner(const CDQGlobalResourceCleaner&) = delete;
  CDQGlobalResourceCleaner& operator=(const CDQGlobalResourceCleaner&) = delete;
  virtual ~CDQGlobalResourceCleaner() {
    CObject* object = m_pObject;
    delete object;
  }

  /// Takes over the object; one that it held before is not deleted.
  void SetObject(T* object) { m_pObject = object; }

 private:
  T* m_pObject = nullptr;
};

/// The same for any object. A copy points to the same object and deletes it too: a cleaner is meant
/// to be one static object, and nothing protects a copy.
class CDQObjCleaner {
 public:
  CDQObjCleaner() = default;
  CDQObjCleaner(const CDQObjCleaner&) = default;
  CDQObjCleaner& operator=(const CDQObjCleaner&) = default;
  virtual ~CDQObjCleaner();

  /// Takes over the object; one that it held before is not deleted.
  void SetObject(CObject* object) { m_pObject = object; }

 private:
  CObject* m_pObject = nullptr;
};

}  // namespace dq
