// Pictures by object type, by picture index and by alert, and the fonts that go with them.

#pragma once

#include "dqlib/frame/cleaner.h"
#include "dqlib/framework/base/drawing.h"

namespace dq {

/// Hands out the pictures of the family. One instance, made on first use and deleted when the
/// process ends. Everything it returns belongs to `CGDIDispenser::g_`, so neither may be used from
/// the constructor or the destructor of a static object: there the instance may be gone. For the
/// user-interface thread.
class CDQResourceManager : public CObject {
  DECLARE_DYNAMIC(CDQResourceManager)
  static CDQResourceManager* GetInstance();

  /// The picture with an index of 0 to 133, which isn't checked: callers get theirs from the
  /// tables.
  CBitmap* GetBitmap(int index);

  /// The picture index of an object type, or -1 if it has none.
  int GetObjectBitmapIndex(int object_type) const;

  /// The picture of an object type that has one; callers test `GetObjectBitmapIndex` first.
  CBitmap* GetObjectBitmap(int object_type);

  /// The alert picture with an index of 0 to 4, which isn't checked.
  CBitmap* GetAlertBitmap(int index);

  /// Font 0 is bold, 1 underlined; other indices are not checked.
  CFont* GetFont(int index);

 protected:
  CDQResourceManager() = default;

 private:
  static CDQResourceManager* s_pDQResourceManager;
  static CDQGlobalResourceCleaner<CDQResourceManager> s_cleaner;
};

}  // namespace dq
