#include "apps/workbench/layer/pictures.h"

#include <wx/image.h>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/base/vector_picture.h"

namespace workbench {
namespace {

/// `clear` is seen through.
wxImage ToImage(const dq::BitmapDescription& picture, const wxSize& size, dq::COLORREF clear) {
  const auto count = static_cast<std::size_t>(picture.size.cx) *
                     static_cast<std::size_t>(std::max(0, picture.size.cy));
  if (picture.size.cx < 1 || count < 1 || picture.pixels.size() < count || size.x < 1 ||
      size.y < 1) {
    return {};
  }
  wxImage image(picture.size.cx, picture.size.cy);
  image.InitAlpha();
  std::size_t at = 0;
  for (int y = 0; y < picture.size.cy; ++y) {
    for (int x = 0; x < picture.size.cx; ++x) {
      const dq::COLORREF color = picture.pixels[at++];
      const auto part = [color](int shift) {
        return static_cast<unsigned char>(color >> shift & 0xFF);
      };
      image.SetRGB(x, y, part(0), part(8), part(16));
      const auto opaque = static_cast<unsigned char>(wxALPHA_OPAQUE - (color >> 24));
      image.SetAlpha(x, y, color == clear ? wxALPHA_TRANSPARENT : opaque);
    }
  }
  if (image.GetSize() != size) image.Rescale(size.x, size.y, wxIMAGE_QUALITY_NEAREST);
  return image;
}

/// As fine as it is shown, if it has shapes.
dq::BitmapDescription Fine(const dq::BitmapDescription& picture, const wxSize& size) {
  return picture.shapes == nullptr ? picture : *picture.shapes->Render({size.x, size.y});
}

}  // namespace

wxBitmap ToNativePicture(const dq::BitmapDescription& picture, const wxSize& size) {
  const wxImage image = ToImage(Fine(picture, size), size, dq::kNoPixel);
  return image.IsOk() ? wxBitmap(image) : wxBitmap();
}

wxBitmap ToCommandPicture(dq::HBITMAP picture, const wxSize& size, bool enabled) {
  if (picture == nullptr || picture->pixels.empty()) return {};
  const bool is_fine = picture->shapes != nullptr;
  const dq::COLORREF clear = is_fine ? dq::kNoPixel : picture->pixels.front();
  const wxImage image = ToImage(Fine(*picture, size), size, clear);
  if (!image.IsOk()) return {};
  return wxBitmap(enabled ? image : image.ConvertToDisabled());
}

}  // namespace workbench
