// The process's cache of drawing objects.

#pragma once

#include <array>
#include <deque>
#include <utility>

#include "dqlib/framework/base/drawing.h"

namespace dq {

/// Fonts that the dispenser makes.
enum eFontStyle {
  FONT_PLAIN = 0,      ///< The stock font for running text.
  FONT_BOLD = 1,       ///< The same with weight 700.
  FONT_UNDERLINE = 2,  ///< The same, underlined.
  FONT_TITLE = 3,      ///< "MS Sans Serif", 8 points, weight 700.
};

/// Brushes, pens, fonts and pictures that painting code shares. Each is made when it is first asked
/// for and lives until the process ends, so pointers stay valid. The one instance is itself a
/// static object: nothing may be used from the constructor or the destructor of another. For the
/// user-interface thread.
class CGDIDispenser {
 public:
  /// The one instance.
  static CGDIDispenser g_;

  /// The brush, or solid pen of width 0, of exactly that colour.
  CBrush* GetSolidBrush(COLORREF color);
  CPen* GetPen(COLORREF color);

  /// The font of the style, which must be 0 to 3.
  CFont* GetDefaultFont(eFontStyle style);

  /// The picture with the id of a module, mapped to the desktop's colours. Never null: where
  /// loading failed the object has no picture, and stays so. With a null module the picture is
  /// searched for along the chain of resource modules, and each call makes an object of its own,
  /// because pictures are kept under the module where they were found; callers who care give a
  /// module.
  CBitmap* GetResourceBitmap(UINT id, HINSTANCE module);

  /// Does nothing: a change of the system's colours keeps every object as it is, since callers hold
  /// pointers to them.
  void OnSysColorChange();

 private:
  struct ResourceBitmap {
    HINSTANCE module = nullptr;
    UINT id = 0;
    CBitmap bitmap;
  };

  std::deque<std::pair<COLORREF, CBrush>> m_solidBrushes;
  std::deque<std::pair<COLORREF, CPen>> m_pens;
  std::array<CFont, 4> m_defaultFonts;
  std::deque<ResourceBitmap> m_resourceBitmaps;
};

}  // namespace dq
