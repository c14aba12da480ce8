#include "apps/workbench/layer/pictures.h"

#include <wx/image.h>

namespace workbench {

wxBitmap ToNativePicture(dq::HBITMAP picture, const wxSize& size, bool enabled) {
  if (picture == nullptr || picture->pixels.empty() || size.x < 1 || size.y < 1) return {};
  wxImage image(picture->size.cx, picture->size.cy);
  image.InitAlpha();
  std::size_t at = 0;
  for (int y = 0; y < picture->size.cy; ++y) {
    for (int x = 0; x < picture->size.cx; ++x) {
      const dq::COLORREF color = picture->pixels[at++];
      image.SetRGB(x, y, static_cast<unsigned char>(color & 0xFF),
                   static_cast<unsigned char>(color >> 8 & 0xFF),
                   static_cast<unsigned char>(color >> 16 & 0xFF));
      const bool is_ground = color == picture->pixels.front();
      image.SetAlpha(x, y, is_ground ? wxALPHA_TRANSPARENT : wxALPHA_OPAQUE);
    }
  }
  if (image.GetSize() != size) image.Rescale(size.x, size.y, wxIMAGE_QUALITY_NEAREST);
  return wxBitmap(enabled ? image : image.ConvertToDisabled());
}

}  // namespace workbench
