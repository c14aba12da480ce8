// Points, sizes and rectangles in whole pixels.

#pragma once

#include <algorithm>

#include "dqlib/platform/types.h"

namespace dq {
namespace detail {

/// Sums and differences of coordinates wrap at the ends of the range: any number may come from a
/// caller or a file, and a window far off the screen is no reason to stop.
constexpr LONG WrappingSum(LONG a, LONG b) {
  return static_cast<LONG>(static_cast<DWORD>(a) + static_cast<DWORD>(b));
}
constexpr LONG WrappingDifference(LONG a, LONG b) {
  return static_cast<LONG>(static_cast<DWORD>(a) - static_cast<DWORD>(b));
}

}  // namespace detail

/// A point; `x` grows to the right and `y` downwards.
struct CPoint {
  LONG x = 0;
  LONG y = 0;

  void Offset(LONG dx, LONG dy) {
    x = detail::WrappingSum(x, dx);
    y = detail::WrappingSum(y, dy);
  }
  friend bool operator==(const CPoint&, const CPoint&) = default;
};

/// A width and a height.
struct CSize {
  LONG cx = 0;
  LONG cy = 0;

  friend bool operator==(const CSize&, const CSize&) = default;
};

/// A rectangle whose right and bottom edges lie just outside it.
struct CRect {
  LONG left = 0;
  LONG top = 0;
  LONG right = 0;
  LONG bottom = 0;

  LONG Width() const { return detail::WrappingDifference(right, left); }
  LONG Height() const { return detail::WrappingDifference(bottom, top); }
  CSize Size() const { return {Width(), Height()}; }
  CPoint TopLeft() const { return {left, top}; }

  /// True if it has no area.
  bool IsRectEmpty() const { return right <= left || bottom <= top; }
  void SetRect(LONG l, LONG t, LONG r, LONG b) { *this = {l, t, r, b}; }
  void OffsetRect(LONG dx, LONG dy) {
    left = detail::WrappingSum(left, dx);
    right = detail::WrappingSum(right, dx);
    top = detail::WrappingSum(top, dy);
    bottom = detail::WrappingSum(bottom, dy);
  }
  bool PtInRect(const CPoint& point) const {
    return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
  }
  friend bool operator==(const CRect&, const CRect&) = default;
};

/// What both rectangles cover; all 0 if that has no area.
inline CRect Intersect(const CRect& a, const CRect& b) {
  const CRect both{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                   std::min(a.bottom, b.bottom)};
  return both.IsRectEmpty() ? CRect{} : both;
}

/// The smallest rectangle with both; one without area doesn't count.
inline CRect Unite(const CRect& a, const CRect& b) {
  if (a.IsRectEmpty()) return b.IsRectEmpty() ? CRect{} : b;
  if (b.IsRectEmpty()) return a;
  return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
          std::max(a.bottom, b.bottom)};
}

}  // namespace dq
