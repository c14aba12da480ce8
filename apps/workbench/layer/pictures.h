// The library's pictures as the toolkit's.

#pragma once

#include <wx/bitmap.h>

#include "dqlib/framework/base/drawing.h"

namespace workbench {

/// A picture in another size; pixels that are `dq::kNoPixel` are seen through. Not a picture for
/// one without pixels.
wxBitmap ToNativePicture(const dq::BitmapDescription& picture, const wxSize& size);

/// The picture of a command: the colour of its first pixel is seen through. `enabled` false greys
/// it. Not a picture for null.
wxBitmap ToCommandPicture(dq::HBITMAP picture, const wxSize& size, bool enabled);

}  // namespace workbench
