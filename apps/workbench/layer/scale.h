// Lengths of the library, pixels at 96 dots to the inch, and those of the display.

#pragma once

#include <cmath>
#include <limits>
#include <wx/gdicmn.h>

#include "dqlib/framework/base/geometry.h"

namespace workbench {

/// The display's scale. Lengths are rounded to the nearest; edges of rectangles are, not their
/// sizes, so that what touches in the library touches on the display.
class Scale {
 public:
  explicit Scale(double factor = 1) : factor_(factor) {}

  double factor() const { return factor_; }

  int ToNative(dq::LONG length) const { return Rounded(length * factor_); }
  dq::LONG ToLogical(int length) const { return Rounded(length / factor_); }

  wxPoint ToNative(const dq::CPoint& at) const { return {ToNative(at.x), ToNative(at.y)}; }
  wxSize ToNative(const dq::CSize& size) const { return {ToNative(size.cx), ToNative(size.cy)}; }
  wxRect ToNative(const dq::CRect& rect) const {
    const wxPoint corner = ToNative(rect.TopLeft());
    return {corner, wxSize(ToNative(rect.right) - corner.x, ToNative(rect.bottom) - corner.y)};
  }
  dq::CPoint ToLogical(const wxPoint& at) const { return {ToLogical(at.x), ToLogical(at.y)}; }
  dq::CSize ToLogical(const wxSize& size) const { return {ToLogical(size.x), ToLogical(size.y)}; }

 private:
  /// Far more than any screen, and far less than what windows on it can be moved by.
  static constexpr double kFarthest = 30000;

  static int Rounded(double length) {
    return static_cast<int>(std::lround(std::fmax(-kFarthest, std::fmin(length, kFarthest))));
  }

  double factor_;
};

}  // namespace workbench
