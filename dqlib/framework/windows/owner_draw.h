// Items that their owners draw.

#pragma once

#include <cstdint>

#include "dqlib/framework/base/geometry.h"
#include "dqlib/framework/windows/menu.h"

namespace dq {

class CDC;

/// What is drawn.
enum OwnerDrawType : UINT { ODT_MENU = 1, ODT_LISTBOX = 2, ODT_COMBOBOX = 3, ODT_BUTTON = 4 };

/// Bits of how an item stands.
enum OwnerDrawState : UINT {
  ODS_SELECTED = 1,
  ODS_GRAYED = 2,
  ODS_DISABLED = 4,
  ODS_CHECKED = 8,
  ODS_FOCUS = 16,
  ODS_DEFAULT = 32,
};

/// The owner is asked how large an item is: it sets the width and height, in pixels.
struct MEASUREITEMSTRUCT {
  UINT CtlType = ODT_MENU;
  UINT CtlID = 0;
  UINT itemID = 0;
  UINT itemWidth = 0;
  UINT itemHeight = 0;
  /// What the owner has put there when it added the item.
  std::uintptr_t itemData = 0;
  /// The menu with the item.
  HMENU hMenu = nullptr;
};

/// The owner is to draw an item.
struct DRAWITEMSTRUCT {
  UINT CtlType = ODT_MENU;
  UINT CtlID = 0;
  UINT itemID = 0;
  /// A sum of `OwnerDrawState` values.
  UINT itemState = 0;
  /// The control, or null for a menu's.
  HWND hwndItem = nullptr;
  HMENU hMenu = nullptr;
  /// Where it is drawn, and on what.
  CDC* pDC = nullptr;
  CRect rcItem = {};
  std::uintptr_t itemData = 0;
};

}  // namespace dq
