#include "dqlib/platform/color_scheme.h"

#include <algorithm>
#include <iterator>

namespace dq::platform {
namespace {

struct UsualColor {
  SystemColor index;
  /// Blue, green and red, from the highest byte on.
  COLORREF color;
};

constexpr UsualColor kUsual[] = {
    {COLOR_MENU, 0xF0F0F0},       {COLOR_WINDOW, 0xFFFFFF},       {COLOR_MENUTEXT, 0x000000},
    {COLOR_WINDOWTEXT, 0x000000}, {COLOR_HIGHLIGHT, 0xD77800},    {COLOR_HIGHLIGHTTEXT, 0xFFFFFF},
    {COLOR_BTNFACE, 0xF0F0F0},    {COLOR_BTNSHADOW, 0xA0A0A0},    {COLOR_GRAYTEXT, 0x6D6D6D},
    {COLOR_BTNTEXT, 0x000000},    {COLOR_BTNHIGHLIGHT, 0xFFFFFF}, {COLOR_3DDKSHADOW, 0x696969},
    {COLOR_3DLIGHT, 0xE3E3E3},
};

class UsualScheme : public ColorScheme {
 public:
  COLORREF Color(int index) override {
    const auto* const known = std::ranges::find(
        kUsual, index, [](const UsualColor& each) { return static_cast<int>(each.index); });
    return known == std::end(kUsual) ? 0 : known->color;
  }
};

}  // namespace

ColorScheme::~ColorScheme() = default;

ColorScheme& UsualColors() {
  static ColorScheme& usual = *new UsualScheme;
  return usual;
}

}  // namespace dq::platform
