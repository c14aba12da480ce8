#include "siblings/pictures/pictures.h"

#include <array>

#include "dqlib/framework/base/resource_module.h"

namespace dq {
namespace {

/// The family numbers its pictures without gaps.
constexpr UINT kFirstPicture = 3000;
constexpr UINT kLastPicture = 3222;

constexpr int kSide = 16;
constexpr COLORREF kFace = RGB(0xC0, 0xC0, 0xC0);
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

/// A drawing surface of the size of a picture.
class Canvas {
 public:
  Canvas() { picture_.pixels.assign(kSide * kSide, kFace); }

  void Set(int x, int y, COLORREF color) {
    const int at = y * kSide + x;
    picture_.pixels[static_cast<std::size_t>(at)] = color;
  }
  const BitmapDescription& picture() const { return picture_; }

 private:
  BitmapDescription picture_{{kSide, kSide}, {}};
};

/// A raised edge in the greys that follow the desktop's colours.
void DrawEdge(Canvas& canvas) {
  for (int i = 0; i < kSide; ++i) {
    canvas.Set(i, 0, kLight);
    canvas.Set(0, i, kLight);
  }
  for (int i = 0; i < kSide; ++i) {
    canvas.Set(i, kSide - 1, kShadow);
    canvas.Set(kSide - 1, i, kShadow);
  }
}

/// A symmetrical emblem whose form and colour come from the id: it catches the eye, while the
/// number below it is what tells pictures apart for certain.
void DrawEmblem(Canvas& canvas, UINT id) {
  constexpr int kRows = 6;
  constexpr int kHalf = 5;
  DWORD bits = id * 2654435761U;
  const auto channel = [&](int shift) { return static_cast<BYTE>((bits >> shift & 3) * 0x38); };
  const COLORREF color = RGB(channel(26), channel(28), channel(30));
  bits ^= bits >> 15;
  for (int y = 0; y < kRows; ++y) {
    for (int x = 0; x < kHalf; ++x, bits = bits >> 1 | bits << 31) {
      if ((bits & 1) == 0) continue;
      canvas.Set(kSide / 2 - 1 - x, 2 + y, color);
      canvas.Set(kSide / 2 + x, 2 + y, color);
    }
  }
}

/// The last three digits of the id.
void DrawNumber(Canvas& canvas, UINT id) {
  int left = 10;
  for (int place = 0; place < 3; ++place, id /= 10, left -= kDigitWidth + 1) {
    const auto& rows = kDigits[id % 10];
    for (int y = 0; y < kDigitHeight; ++y) {
      for (int x = 0; x < kDigitWidth; ++x) {
        if ((rows[static_cast<std::size_t>(y)] >> (kDigitWidth - 1 - x) & 1) != 0) {
          canvas.Set(left + x, 9 + y, RGB(0, 0, 0));
        }
      }
    }
  }
}

std::string DrawPicture(UINT id) {
  Canvas canvas;
  DrawEdge(canvas);
  DrawEmblem(canvas, id);
  DrawNumber(canvas, id);
  return WriteDib(canvas.picture());
}

const ResourceModule* MakeModule() {
  // The hot spot of a pointer, two WORDs, is its upper left corner.
  const std::string hot_spot(4, '\0');
  auto module = std::make_unique<ResourceModule>();
  for (UINT id = kFirstPicture; id <= kLastPicture; ++id) {
    const std::string picture = DrawPicture(id);
    module->AddResource(RESOURCE_CURSOR, static_cast<WORD>(id), hot_spot + picture);
    module->AddResource(RESOURCE_BITMAP, static_cast<WORD>(id), picture);
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
