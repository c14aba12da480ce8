// The image lists that menus share.

#pragma once

#include <deque>

#include "dqlib/framework/controls/image_list.h"

namespace dq {

/// The image list that was made of a bitmap resource.
struct CImageListInfo : CObject {
  UINT id = 0;
  CImageList images;
};

/// Image lists by the numbers of their bitmap resources. On the user-interface thread.
class CImageListInfoArray {
 public:
  /// That of the process: what is in it lives until the process ends.
  static CImageListInfoArray& Shared();

  /// The list of the bitmap, made of pictures of a width and with a colour that is seen through
  /// when it is first asked for. Null if there is no such bitmap, or it is narrower; then it is
  /// looked for again the next time.
  CImageList* FindOrCreate(UINT bitmap_id, int width, COLORREF mask);
  int GetSize() const { return static_cast<int>(lists_.size()); }

 private:
  std::deque<CImageListInfo> lists_;
};

}  // namespace dq
