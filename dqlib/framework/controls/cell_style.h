// How a cell of a list or tree is drawn where that is other than usual.

#pragma once

#include "dqlib/framework/base/drawing.h"

namespace dq {

/// `kNoColor` is the control's own colour, a null font its own font, a null picture none. Font and
/// picture aren't owned: they live as long as a cell has them.
struct CellStyle {
  static constexpr COLORREF kNoColor = 0xFFFFFFFF;
  COLORREF text = kNoColor;
  COLORREF background = kNoColor;
  const LOGFONT* font = nullptr;
  HBITMAP picture = nullptr;

  friend bool operator==(const CellStyle&, const CellStyle&) = default;
};

}  // namespace dq
