// Pictures as shapes, which can be painted at any size.

#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "dqlib/framework/base/drawing.h"

namespace dq {

/// A picture of filled and stroked shapes, one over the other. On any thread.
///
/// Its text is words with blanks between them. Width and height come first, in pixels, from 1 to
/// 1024: the size for which it is drawn, and in whose coordinates, from the upper left corner. Then
/// shapes: `f RRGGBB` begins one that is filled, `s WIDTH RRGGBB` one whose lines are drawn so
/// wide; what follows up to the next one belongs to it:
///
///   M x y        begins a line there
///   L x y ...    goes on to a point, or to several
///   C x y x y x y ...  a curve to the third point, which the first two bend
///   Z            back to where the line began
///   R x y w h    a rectangle
///   O x y r r    an ellipse by its middle and its radii
///
/// Where lines of one shape run around a place in both directions there is a hole.
class VectorPicture {
 public:
  /// Null if the text isn't one.
  static std::shared_ptr<const VectorPicture> Read(std::string_view text);

  const CSize& size() const { return size_; }

  /// At a size, from 1 to 4096 each way; empty beyond that. The edges are smooth: the high byte of
  /// a pixel says how much is seen through it, from 0 to 255, where it is `kNoPixel`. Those that
  /// were rendered last are kept.
  std::shared_ptr<const BitmapDescription> Render(const CSize& size) const;

  /// The same with other colours: `to` says which for each.
  std::shared_ptr<const VectorPicture> Recolored(
      const std::function<COLORREF(COLORREF color)>& to) const;

  /// What lies in a rectangle of it, as a picture by itself.
  std::shared_ptr<const VectorPicture> Part(const CRect& part) const;

  /// At its own size, without transparency: what is mostly seen through has the mask's colour.
  BitmapDescription RenderMasked(COLORREF mask) const;

 private:
  struct Point {
    double x;
    double y;
  };
  using Line = std::vector<Point>;
  struct Shape {
    COLORREF color = 0;
    /// 0 if it is filled.
    double width = 0;
    std::vector<Line> lines;
  };
  class Reader;
  class Raster;

  CSize size_;
  std::vector<Shape> shapes_;
  mutable std::mutex mutex_;
  mutable std::vector<std::shared_ptr<const BitmapDescription>> rendered_;
};

/// The type of the resource that holds the text of a bitmap's shapes, under the bitmap's id.
inline constexpr WORD RESOURCE_SHAPES = 0x5348;

/// The colour that stands for what is seen through where a picture's bitmap is kept.
inline constexpr COLORREF kPictureMask = RGB(0xFF, 0, 0xFF);

class ResourceModule;

/// Adds a picture to a module: its bitmap, with what is seen through in the colour of the mask, and
/// its shapes. False, and nothing is added, if the text isn't one.
bool AddPicture(ResourceModule& module, WORD id, std::string_view text,
                COLORREF mask = kPictureMask);

}  // namespace dq
