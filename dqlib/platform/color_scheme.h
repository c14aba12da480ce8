// The colours of the desktop.

#pragma once

#include "dqlib/platform/types.h"

namespace dq {

/// Numbers of the colours that windows and menus are drawn in.
enum SystemColor : int {
  COLOR_MENU = 4,
  COLOR_WINDOW = 5,
  COLOR_MENUTEXT = 7,
  COLOR_WINDOWTEXT = 8,
  /// Of what is selected.
  COLOR_HIGHLIGHT = 13,
  COLOR_HIGHLIGHTTEXT = 14,
  /// Of buttons, dialogs and bars, with the shades of their edges.
  COLOR_BTNFACE = 15,
  COLOR_BTNSHADOW = 16,
  /// Of texts of what is disabled.
  COLOR_GRAYTEXT = 17,
  COLOR_BTNTEXT = 18,
  COLOR_BTNHIGHLIGHT = 20,
  COLOR_3DDKSHADOW = 21,
  COLOR_3DLIGHT = 22,
};

namespace platform {

/// The desktop's colour scheme, for what draws. On the user-interface thread.
class ColorScheme {
 public:
  ColorScheme() = default;
  ColorScheme(const ColorScheme&) = delete;
  ColorScheme& operator=(const ColorScheme&) = delete;
  virtual ~ColorScheme();

  /// A colour by `SystemColor`; black for a number it doesn't know.
  virtual COLORREF Color(int index) = 0;
};

/// The colours that are usual, for where there is no desktop. Lives until the process ends.
ColorScheme& UsualColors();

}  // namespace platform
}  // namespace dq
