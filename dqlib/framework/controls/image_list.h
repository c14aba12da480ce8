// Image lists: pictures of one size, known by their index.

#pragma once

#include <memory>
#include <vector>

#include "dqlib/framework/base/device_context.h"

namespace dq {

/// Pictures of one size, cut from strips in which they stand beside one another, with transparent
/// pixels where a strip has its mask colour. With `kPictureMask` they keep the shapes that a strip
/// has, and are painted as fine as the device can. Indexes count from 0; for one that isn't there,
/// and before `Create`, operations do nothing and answer false, -1 or an empty value.
///
///   CImageList pictures;
///   pictures.Create(2700, 16, RGB(0xFF, 0, 0xFF));
///   pictures.Draw(dc, 1, {4, 2});
class CImageList : public CObject {
  DECLARE_DYNAMIC(CImageList)

  /// Begins anew without pictures, for those of a size in pixels. False, and no change, if that is
  /// empty.
  bool Create(const CSize& size);
  /// Begins anew with the strip that is the bitmap resource with the id by the chain of resource
  /// modules. A picture is as wide as `width` and as high as the strip. False, and no change, if
  /// there is no such bitmap, or it is narrower.
  bool Create(UINT bitmap_id, int width, COLORREF mask);

  /// Adds the pictures of a strip at the end, as many as are whole, and returns the index of the
  /// first. What is higher than the pictures is left out. -1, and no change, if there is none.
  /// `kNoPixel` as the mask makes nothing transparent.
  int Add(HBITMAP strip, COLORREF mask = kNoPixel);
  /// Adds a picture of another list, or of this one, and returns its index. One of another size is
  /// cut off, or filled up with what is transparent. -1 if there is no such picture.
  int Add(const CImageList& from, int index);
  /// Puts the first picture of a strip in the place of another one.
  bool Replace(int index, HBITMAP strip, COLORREF mask = kNoPixel);
  /// Takes a picture out, or all with -1; those behind it move up.
  bool Remove(int index);

  int GetImageCount() const { return count_; }
  const CSize& GetImageSize() const { return size_; }

  /// The pixels of all pictures, one below the other, and where one of them stands in it;
  /// transparent ones are `kNoPixel`. The handle is that of the list as long as it lives, and the
  /// picture changes with it; null without pictures.
  HBITMAP GetStrip() const { return count_ == 0 ? nullptr : &strip_; }
  CRect GetImageRect(int index) const;
  /// A picture by itself, with its shapes if it has any.
  BitmapDescription GetImage(int index) const;

  /// Draws a picture in its own size; `embossed`, only in relief, as that of something disabled.
  bool Draw(CDC& dc, int index, const CPoint& at, bool embossed = false) const;

 private:
  bool Has(int index) const { return index >= 0 && index < count_; }
  std::size_t ImagePixels() const;

  CSize size_;
  int count_ = 0;
  BitmapDescription strip_;
  /// Of each picture; null for one of pixels alone.
  std::vector<std::shared_ptr<const VectorPicture>> shapes_;
};

}  // namespace dq
