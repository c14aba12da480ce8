// The library's pictures as the toolkit's.

#pragma once

#include <wx/bitmap.h>

#include "dqlib/framework/base/drawing.h"

namespace workbench {

/// A picture in another size; the colour of its first pixel, as that of most, is seen through.
/// `enabled` false greys it. Not a picture for null or one without pixels.
wxBitmap ToNativePicture(dq::HBITMAP picture, const wxSize& size, bool enabled);

}  // namespace workbench
