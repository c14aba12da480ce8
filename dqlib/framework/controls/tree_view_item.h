// What a tree control knows of an item: a record that is filled, inserted and passed on.

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "dqlib/platform/types.h"

namespace dq {

struct TreeItemTag;
/// An item of a tree control. That of one that was deleted is told from all others and names none;
/// null is no item.
using HTREEITEM = const TreeItemTag*;

/// Places for `CTreeCtrl::InsertItem`: the top level as a parent; before and behind all siblings.
inline const HTREEITEM TVI_ROOT = reinterpret_cast<HTREEITEM>(~std::uintptr_t{0xFFFF});
inline const HTREEITEM TVI_FIRST = reinterpret_cast<HTREEITEM>(~std::uintptr_t{0xFFFE});
inline const HTREEITEM TVI_LAST = reinterpret_cast<HTREEITEM>(~std::uintptr_t{0xFFFD});

/// Which members of a record count.
enum TreeItemMask : UINT {
  TVIF_TEXT = 0x1,
  TVIF_IMAGE = 0x2,
  TVIF_PARAM = 0x4,
  TVIF_STATE = 0x8,
  TVIF_SELECTEDIMAGE = 0x20,
  TVIF_ALL = TVIF_TEXT | TVIF_IMAGE | TVIF_PARAM | TVIF_STATE | TVIF_SELECTEDIMAGE,
};

/// Bits of an item's state.
enum TreeItemState : UINT {
  TVIS_SELECTED = 0x2,
  TVIS_BOLD = 0x10,
  TVIS_EXPANDED = 0x20,
  /// The picture that lies over the item's, and that of its state before it; 0 is none.
  TVIS_OVERLAYMASK = 0xF00,
  TVIS_STATEIMAGEMASK = 0xF000,
};

/// The state bits of an overlay or state image from 0 to 15, and the image in state bits.
constexpr UINT INDEXTOOVERLAYMASK(int image) { return (static_cast<UINT>(image) & 0xF) << 8; }
constexpr UINT INDEXTOSTATEIMAGEMASK(int image) { return (static_cast<UINT>(image) & 0xF) << 12; }
constexpr int OverlayImageOf(UINT state) { return static_cast<int>(state >> 8 & 0xF); }
constexpr int StateImageOf(UINT state) { return static_cast<int>(state >> 12 & 0xF); }

/// The record: text, image, selected image, state, state image and param. What is set counts, and
/// `GetMask` says what that is; of the state the bits of `GetStateMask` count.
class CTreeViewItemEx {
 public:
  UINT GetMask() const { return mask_; }
  UINT GetStateMask() const { return state_mask_; }

  HTREEITEM GetItem() const { return item_; }
  void SetItem(HTREEITEM item) { item_ = item; }

  /// Up to the first zero; null counts as "".
  const CString& GetText() const { return text_; }
  void SetText(const char* text);
  int GetImage() const { return image_; }
  void SetImage(int image);
  int GetSelectedImage() const { return selected_image_; }
  void SetSelectedImage(int image);
  LPARAM GetParam() const { return param_; }
  void SetParam(LPARAM param);

  /// All state bits, and a change of those in `mask`.
  UINT GetState() const { return state_; }
  void SetState(UINT state, UINT mask);
  int GetOverlayImage() const { return OverlayImageOf(state_); }
  void SetOverlayImage(int image) { SetState(INDEXTOOVERLAYMASK(image), TVIS_OVERLAYMASK); }
  int GetStateImage() const { return StateImageOf(state_); }
  void SetStateImage(int image) { SetState(INDEXTOSTATEIMAGEMASK(image), TVIS_STATEIMAGEMASK); }

 private:
  CString text_;
  HTREEITEM item_ = nullptr;
  LPARAM param_ = 0;
  UINT mask_ = 0;
  UINT state_ = 0;
  UINT state_mask_ = 0;
  int image_ = 0;
  int selected_image_ = 0;
};

}  // namespace dq
