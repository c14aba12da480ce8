#include "dqlib/frame/gdi_dispenser.h"

#include <cstring>

#include "dqlib/framework/base/resource_chain.h"
#include "gtest/gtest.h"
#include "siblings/pictures/pictures.h"
#include "tests/support/scripted_platform.h"

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
  EXPECT_EQ(dispenser.GetSolidBrush(5), brush);
  EXPECT_EQ(dispenser.GetPen(5), pen);
  dispenser.OnSysColorChange();
  EXPECT_EQ(dispenser.GetSolidBrush(5), brush);
  EXPECT_TRUE(brush->IsCreated() && pen->IsCreated());
  EXPECT_EQ(pen->style(), 0);
  EXPECT_EQ(pen->width(), 0);
}

bool SameFont(const LOGFONT& left, const LOGFONT& right) {
  return std::memcmp(&left, &right, sizeof(LOGFONT)) == 0;
}

TEST(CGDIDispenser, DerivesFontsFromTheStockFont) {
  CGDIDispenser dispenser;
  LOGFONT expected = *GetStockFont(DQRESOURCES_GetVarStockFont());
  EXPECT_TRUE(SameFont(dispenser.GetDefaultFont(FONT_PLAIN)->GetLogFont(), expected));
  expected.lfUnderline = 1;
  EXPECT_TRUE(SameFont(dispenser.GetDefaultFont(FONT_UNDERLINE)->GetLogFont(), expected));
  expected.lfUnderline = 0;
  expected.lfWeight = 700;
  EXPECT_TRUE(SameFont(dispenser.GetDefaultFont(FONT_BOLD)->GetLogFont(), expected));
}

TEST(CGDIDispenser, MeasuresTheTitleFontOnce) {
  test::ScriptedPlatform platform;
  constexpr std::pair<int, LONG> kHeights[] = {
      {1, 0}, {5, -1}, {72, -8}, {96, -11}, {120, -13}, {600, -67}, {INT32_MAX, -238609294}};
  for (const auto& [pixels_per_inch, height] : kHeights) {
    platform.facts.pixels_per_inch = pixels_per_inch;
    CGDIDispenser dispenser;
    LOGFONT expected;
    expected.lfHeight = height;
    expected.lfWeight = 700;
    std::strcpy(expected.lfFaceName, "MS Sans Serif");
    CFont* const font = dispenser.GetDefaultFont(FONT_TITLE);
    EXPECT_TRUE(SameFont(font->GetLogFont(), expected)) << pixels_per_inch;
    platform.facts.pixels_per_inch = 7;
    EXPECT_EQ(dispenser.GetDefaultFont(FONT_TITLE), font);
    EXPECT_EQ(font->GetLogFont().lfHeight, height);
  }
}

TEST(CGDIDispenser, KeepsPicturesUnderTheModuleWhereTheyWereFound) {
  test::ScriptedPlatform platform;
  platform.facts.colors = {{SYSTEM_COLOR_FACE, 7}};
  ResourceModule module;
  module.AddResource(RESOURCE_BITMAP, 9, WriteDib({{1, 1}, {0xC0C0C0}}));
  const CDynLinkLibrary link(&module);
  CGDIDispenser dispenser;

  CBitmap* const searched = dispenser.GetResourceBitmap(9, nullptr);
  ASSERT_NE(searched->GetSafeHandle(), nullptr);
  EXPECT_EQ(searched->GetSafeHandle()->pixels.front(), 7U);
  CBitmap* const again = dispenser.GetResourceBitmap(9, nullptr);
  EXPECT_NE(again, searched);
  EXPECT_NE(again->GetSafeHandle(), nullptr);
  EXPECT_EQ(dispenser.GetResourceBitmap(9, &module), searched);
  EXPECT_EQ(dispenser.GetResourceBitmap(9, &module), searched);
  EXPECT_NE(dispenser.GetResourceBitmap(0x10009, &module), searched);
}

TEST(CGDIDispenser, RemembersAPictureThatCouldNotBeLoaded) {
  ResourceModule module;
  CGDIDispenser dispenser;
  CBitmap* const failed = dispenser.GetResourceBitmap(9, &module);
  ASSERT_NE(failed, nullptr);
  EXPECT_EQ(failed->GetSafeHandle(), nullptr);
  module.AddResource(RESOURCE_BITMAP, 9, WriteDib({{1, 1}, {0}}));
  EXPECT_EQ(dispenser.GetResourceBitmap(9, &module), failed);
  EXPECT_EQ(failed->GetSafeHandle(), nullptr);
  // Found nowhere, so kept under no module; a null module still makes a new one.
  EXPECT_NE(dispenser.GetResourceBitmap(10, nullptr), dispenser.GetResourceBitmap(10, nullptr));
}

}  // namespace
}  // namespace dq
