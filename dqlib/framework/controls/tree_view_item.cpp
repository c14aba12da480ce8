#include "dqlib/framework/controls/tree_view_item.h"

namespace dq {

void CTreeViewItemEx::SetText(const char* text) {
  text_ = text;
  mask_ |= TVIF_TEXT;
}

void CTreeViewItemEx::SetImage(int image) {
  image_ = image;
  mask_ |= TVIF_IMAGE;
}

void CTreeViewItemEx::SetSelectedImage(int image) {
  selected_image_ = image;
  mask_ |= TVIF_SELECTEDIMAGE;
}

void CTreeViewItemEx::SetParam(LPARAM param) {
  param_ = param;
  mask_ |= TVIF_PARAM;
}

void CTreeViewItemEx::SetState(UINT state, UINT mask) {
  state_ = (state_ & ~mask) | (state & mask);
  state_mask_ |= mask;
  mask_ |= TVIF_STATE;
}

}  // namespace dq
