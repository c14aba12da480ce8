#include "dqlib/frame/gdi_dispenser.h"

#include "dqlib/framework/base/resource_chain.h"
#include "siblings/pictures/pictures.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

TEST(CGDIDispenser, MakesOneBrushAndOnePenForAColor) {
  CGDIDispenser dispenser;
  CBrush* const brush = dispenser.GetSolidBrush(5);
  CPen* const pen = dispenser.GetPen(5);
  for (COLORREF color = 0; color < 1000; ++color) {
    EXPECT_EQ(dispenser.GetSolidBrush(color)->color(), color);
    EXPECT_EQ(dispenser.GetPen(color)->color(), color);
  }
  dispenser.OnSysColorChange();
  EXPECT_EQ(dispenser.GetSolidBrush(5), brush);
  EXPECT_EQ(dispenser.GetPen(5), pen);
}

TEST(CGDIDispenser, MakesItsFontsOnce) {
  testing::ScriptedPlatform platform;
  platform.facts.pixels_per_inch = 120;
  CGDIDispenser dispenser;
  const LOGFONT& stock = *GetStockFont(DQRESOURCES_GetVarStockFont());
  for (const auto& [style, height, weight, underline, face] :
       test::Rows<eFontStyle, LONG, LONG, int, std::string>{
           {FONT_PLAIN, stock.lfHeight, stock.lfWeight, 0, stock.lfFaceName},
           {FONT_BOLD, stock.lfHeight, 700, 0, stock.lfFaceName},
           {FONT_UNDERLINE, stock.lfHeight, stock.lfWeight, 1, stock.lfFaceName},
           {FONT_TITLE, -13, 700, 0, "MS Sans Serif"}}) {
    CFont* const font = dispenser.GetDefaultFont(style);
    const LOGFONT& made = font->GetLogFont();
    EXPECT_EQ(std::tuple(made.lfHeight, made.lfWeight, int{made.lfUnderline}),
              std::tuple(height, weight, underline));
    EXPECT_EQ(made.lfFaceName, face) << style;
    EXPECT_EQ(dispenser.GetDefaultFont(style), font) << style;
  }
  platform.facts.pixels_per_inch = 96;
  EXPECT_EQ(CGDIDispenser().GetDefaultFont(FONT_TITLE)->GetLogFont().lfHeight, -11);
}

TEST(CGDIDispenser, KeepsPicturesUnderTheModuleWhereTheyWereFound) {
  testing::ScriptedPlatform platform;
  platform.facts.colors = {{SYSTEM_COLOR_FACE, 7}};
  ResourceModule module;
  module.AddResource(RESOURCE_BITMAP, 9, WriteDib({{1, 1}, {0xC0C0C0}}));
  const CDynLinkLibrary link(&module);
  CGDIDispenser dispenser;
  CBitmap* const searched = dispenser.GetResourceBitmap(9, nullptr);
  ASSERT_NE(searched->GetSafeHandle(), nullptr);
  EXPECT_EQ(searched->GetSafeHandle()->pixels.front(), 7U);
  EXPECT_NE(dispenser.GetResourceBitmap(9, nullptr), searched);
  EXPECT_EQ(dispenser.GetResourceBitmap(9, &module), searched);
  const ResourceModule other;
  EXPECT_EQ(dispenser.GetResourceBitmap(9, &other)->GetSafeHandle(), nullptr);

  // A failed load stays; what was found nowhere is made anew each time.
  CBitmap* const failed = dispenser.GetResourceBitmap(10, &module);
  module.AddResource(RESOURCE_BITMAP, 10, WriteDib({{1, 1}, {0}}));
  EXPECT_EQ(dispenser.GetResourceBitmap(10, &module), failed);
  EXPECT_EQ(failed->GetSafeHandle(), nullptr);
  EXPECT_NE(dispenser.GetResourceBitmap(11, nullptr), dispenser.GetResourceBitmap(11, nullptr));
}

}  // namespace
}  // namespace dq
