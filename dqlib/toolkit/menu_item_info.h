// What a menu whose items are drawn by their owner knows of each of them.

#pragma once

#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/object.h"

namespace dq {

/// The id of a popup's record, as menus tell it of popups; and no picture.
inline constexpr UINT kPopupId = 0xFFFFFFFF;
inline constexpr int kNoImage = -1;

/// One item. A pointer to it is the item's owner-draw data.
class CMenuItemInfo : public CObject {
 public:
  CMenuItemInfo(UINT id, int image, const char* text);

  /// What a menu's operations take as the item's text.
  const char* AsItemData() const { return reinterpret_cast<const char*>(this); }

  const UINT m_nID;
  /// Index of a picture in the menu's image list, or `kNoImage`.
  int m_nImage;
  /// With its "&", and with what stands for its keys behind a tab.
  CString m_strText;
};

/// The records of a menu, which it owns. Items that have a command id in common share a record.
/// Null as a text is "". Finding one by its id or address takes constant time, so does adding;
/// deleting is linear.
class CMenuItemInfoArray {
 public:
  CMenuItemInfoArray() = default;
  CMenuItemInfoArray(const CMenuItemInfoArray&) = delete;
  CMenuItemInfoArray& operator=(const CMenuItemInfoArray&) = delete;
  ~CMenuItemInfoArray();

  int GetSize() const { return static_cast<int>(records_.size()); }
  /// By an index from 0 to below the size.
  CMenuItemInfo* GetAt(int index) const { return records_[static_cast<std::size_t>(index)].get(); }
  CMenuItemInfo* operator[](int index) const { return GetAt(index); }

  /// Gives the first record with the id another image and text, or else adds one at the end.
  /// Returns the record.
  CMenuItemInfo* AddOrReplace(UINT id, int image, const char* text);
  /// Adds one of a popup, without a picture.
  CMenuItemInfo* AddItem(const char* text);

  /// Delete the first match; false if there is none. Texts are compared byte by byte.
  bool Delete(UINT id);
  bool Delete(const char* text);
  bool Delete(const CMenuItemInfo* record);
  void RemoveAll();

  /// The first one with the id, or null.
  CMenuItemInfo* Find(UINT id) const;
  /// The record that an item's data point to; null if they are no record of this array, whatever
  /// else they are.
  CMenuItemInfo* Find(const void* data) const;

 private:
  using Records = std::vector<std::unique_ptr<CMenuItemInfo>>;

  CMenuItemInfo* Add(UINT id, int image, const char* text);
  bool Erase(Records::iterator place);

  Records records_;
  std::unordered_map<UINT, CMenuItemInfo*> first_of_id_;
  std::unordered_set<const void*> addresses_;
};

}  // namespace dq
