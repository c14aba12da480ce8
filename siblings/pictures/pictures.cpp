#include "siblings/pictures/pictures.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <string>

#include "dqlib/framework/base/resource_module.h"
#include "dqlib/framework/base/vector_picture.h"
#include "siblings/pictures/drawn_pictures.h"

namespace dq {
namespace {

/// The family numbers its pictures without gaps.
constexpr UINT kFirstPicture = 3000;
constexpr UINT kLastPicture = 3222;

constexpr int kSide = 16;
constexpr COLORREF kShadow = RGB(0x80, 0x80, 0x80);
constexpr COLORREF kLight = RGB(0xDF, 0xDF, 0xDF);

/// Digits of 3 by 5 pixels, row by row, the highest of three bits at the left.
constexpr int kDigitWidth = 3;
constexpr int kDigitHeight = 5;
constexpr std::array<std::array<unsigned, kDigitHeight>, 10> kDigits = {{
    {7, 5, 5, 5, 7},
    {2, 6, 2, 2, 7},
    {7, 1, 7, 4, 7},
    {7, 1, 7, 1, 7},
    {5, 5, 7, 1, 1},
    {7, 4, 7, 1, 7},
    {7, 4, 7, 5, 7},
    {7, 1, 2, 2, 2},
    {7, 5, 7, 5, 7},
    {7, 5, 7, 1, 7},
}};

/// The shapes of a picture that is made of squares of one pixel.
class Canvas {
 public:
  Canvas() {
    const std::string side = std::to_string(kSide);
    shapes_ = side + ' ' + side + " f C0C0C0 R 0 0 " + side + ' ' + side;
  }

  /// From now on they have the colour.
  void Begin(COLORREF color) {
    char text[] = " f rrggbb";
    std::snprintf(text, sizeof text, " f %02X%02X%02X", color & 0xFF, color >> 8 & 0xFF,
                  color >> 16 & 0xFF);
    shapes_ += text;
  }
  void Set(int x, int y) {
    shapes_ += " R " + std::to_string(x) + ' ' + std::to_string(y) + " 1 1";
  }
  const std::string& shapes() const { return shapes_; }

 private:
  std::string shapes_;
};

/// A raised edge in the greys that follow the desktop's colours.
void DrawEdge(Canvas& canvas) {
  canvas.Begin(kLight);
  for (int i = 0; i < kSide; ++i) {
    canvas.Set(i, 0);
    canvas.Set(0, i);
  }
  canvas.Begin(kShadow);
  for (int i = 0; i < kSide; ++i) {
    canvas.Set(i, kSide - 1);
    canvas.Set(kSide - 1, i);
  }
}

/// A symmetrical emblem whose form and colour come from the id: it catches the eye, while the
/// number below it is what tells pictures apart for certain.
void DrawEmblem(Canvas& canvas, UINT id) {
  constexpr int kRows = 6;
  constexpr int kHalf = 5;
  DWORD bits = id * 2654435761U;
  const auto channel = [&](int shift) { return static_cast<BYTE>((bits >> shift & 3) * 0x38); };
  canvas.Begin(RGB(channel(26), channel(28), channel(30)));
  bits ^= bits >> 15;
  for (int y = 0; y < kRows; ++y) {
    for (int x = 0; x < kHalf; ++x, bits = bits >> 1 | bits << 31) {
      if ((bits & 1) == 0) continue;
      canvas.Set(kSide / 2 - 1 - x, 2 + y);
      canvas.Set(kSide / 2 + x, 2 + y);
    }
  }
}

/// The last three digits of the id.
void DrawNumber(Canvas& canvas, UINT id) {
  canvas.Begin(RGB(0, 0, 0));
  int left = 10;
  for (int place = 0; place < 3; ++place, id /= 10, left -= kDigitWidth + 1) {
    const auto& rows = kDigits[id % 10];
    for (int y = 0; y < kDigitHeight; ++y) {
      for (int x = 0; x < kDigitWidth; ++x) {
        if ((rows[static_cast<std::size_t>(y)] >> (kDigitWidth - 1 - x) & 1) != 0) {
          canvas.Set(left + x, 9 + y);
        }
      }
    }
  }
}

std::string DrawPicture(UINT id) {
  const auto* const drawn = std::ranges::find(kDrawnPictures, id, &DrawnPicture::id);
  if (drawn != std::end(kDrawnPictures)) return std::string(drawn->shapes);
  Canvas canvas;
  DrawEdge(canvas);
  DrawEmblem(canvas, id);
  DrawNumber(canvas, id);
  return canvas.shapes();
}

const ResourceModule* MakeModule() {
  // The hot spot of a pointer, two WORDs, is its upper left corner.
  const std::string hot_spot(4, '\0');
  auto module = std::make_unique<ResourceModule>();
  for (UINT id = kFirstPicture; id <= kLastPicture; ++id) {
    const WORD name = static_cast<WORD>(id);
    AddPicture(*module, name, DrawPicture(id));
    const platform::Resource* const bitmap = module->Find(RESOURCE_BITMAP, name);
    module->AddResource(RESOURCE_CURSOR, name, hot_spot + std::string(bitmap->data));
  }
  return module.release();
}

}  // namespace

HINSTANCE DQRESOURCES_GetInstanceHandle() {
  // Never deleted: pictures may be asked for until the process is gone.
  static const ResourceModule* const module = MakeModule();
  return module;
}

int DQRESOURCES_GetVarStockFont() { return 12; }

int DQRESOURCES_GetFixedStockFont() { return 11; }

bool DQRESOURCES_LoadBitmap(CBitmap& bitmap, UINT id) {
  return bitmap.LoadBitmap(DQRESOURCES_GetInstanceHandle(), id);
}

HCURSOR DQRESOURCES_LoadCursor(UINT id) { return LoadCursor(DQRESOURCES_GetInstanceHandle(), id); }

}  // namespace dq
