#include "dqlib/frame/gdi_dispenser.h"

#include <algorithm>
#include <string_view>

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/platform/platform.h"
#include "siblings/pictures/pictures.h"

namespace dq {
namespace {

constexpr LONG kBoldWeight = 700;

/// Height of the title font, for its characters, so below 0. Rounds to the nearest pixel, halves
/// up.
LONG TitleFontHeight() {
  constexpr std::int64_t kPoints = 8;
  constexpr std::int64_t kPointsPerInch = 72;
  const std::int64_t pixels_per_inch = platform::Current().system_facts->VerticalPixelsPerInch();
  return static_cast<LONG>(-((kPoints * pixels_per_inch + kPointsPerInch / 2) / kPointsPerInch));
}

LOGFONT DescribeFont(eFontStyle style) {
  LOGFONT font;
  if (style == FONT_TITLE) {
    constexpr std::string_view kFace = "MS Sans Serif";
    font.lfHeight = TitleFontHeight();
    font.lfWeight = kBoldWeight;
    std::ranges::copy(kFace, font.lfFaceName);
    return font;
  }
  if (const LOGFONT* stock = GetStockFont(DQRESOURCES_GetVarStockFont())) font = *stock;
  if (style == FONT_BOLD) font.lfWeight = kBoldWeight;
  if (style == FONT_UNDERLINE) font.lfUnderline = 1;
  return font;
}

}  // namespace

CGDIDispenser CGDIDispenser::g_;

CBrush* CGDIDispenser::GetSolidBrush(COLORREF color) {
  for (auto& [known, brush] : m_solidBrushes) {
    if (known == color) return &brush;
  }
  auto& [known, brush] = m_solidBrushes.emplace_back();
  known = color;
  brush.CreateSolidBrush(color);
  return &brush;
}

CPen* CGDIDispenser::GetPen(COLORREF color) {
  for (auto& [known, pen] : m_pens) {
    if (known == color) return &pen;
  }
  auto& [known, pen] = m_pens.emplace_back();
  known = color;
  pen.CreatePen(0, 0, color);
  return &pen;
}

CFont* CGDIDispenser::GetDefaultFont(eFontStyle style) {
  CFont& font = m_defaultFonts[static_cast<std::size_t>(style)];
  if (!font.IsCreated()) font.CreateFontIndirect(DescribeFont(style));
  return &font;
}

CBitmap* CGDIDispenser::GetResourceBitmap(UINT id, HINSTANCE module) {
  if (module != nullptr) {
    for (ResourceBitmap& known : m_resourceBitmaps) {
      if (known.id == id && known.module == module) return &known.bitmap;
    }
  }
  // The record goes in before the load and stays if it fails: a picture that isn't there is looked
  // for once.
  ResourceBitmap& added = m_resourceBitmaps.emplace_back();
  added.module = module != nullptr ? module : AfxFindResourceHandle(id, RESOURCE_BITMAP);
  added.id = id;
  added.bitmap.Attach(LoadImage(added.module, id, IMAGE_DEFAULT_SIZE | IMAGE_MAP_3D_COLORS));
  return &added.bitmap;
}

void CGDIDispenser::OnSysColorChange() {}

}  // namespace dq
