#include "dqlib/toolkit/image_list_info.h"

#include <algorithm>

namespace dq {

CImageListInfoArray& CImageListInfoArray::Shared() {
  // Never taken down: menus of static objects draw to the end.
  static CImageListInfoArray& lists = *new CImageListInfoArray;
  return lists;
}

CImageList* CImageListInfoArray::FindOrCreate(UINT bitmap_id, int width, COLORREF mask) {
  const auto known = std::ranges::find(lists_, bitmap_id, &CImageListInfo::id);
  if (known != lists_.end()) return &known->images;
  CImageListInfo& made = lists_.emplace_back();
  made.id = bitmap_id;
  if (made.images.Create(bitmap_id, width, mask)) return &made.images;
  lists_.pop_back();
  return nullptr;
}

}  // namespace dq
