#include "siblings/pictures/pictures.h"

#include <set>

#include "gtest/gtest.h"

namespace dq {
namespace {

TEST(Pictures, CanAllBeToldApart) {
  std::set<std::string> seen;
  for (UINT id = 3000; id <= 3222; ++id) {
    CBitmap bitmap;
    ASSERT_TRUE(DQRESOURCES_LoadBitmap(bitmap, id)) << id;
    EXPECT_TRUE(seen.insert(WriteDib(*bitmap.GetSafeHandle())).second) << id;
    const HCURSOR cursor = DQRESOURCES_LoadCursor(id);
    ASSERT_NE(cursor, nullptr) << id;
    EXPECT_EQ(cursor->picture.pixels, bitmap.GetSafeHandle()->pixels) << id;
  }
}

TEST(Pictures, UnknownIdLeavesTheBitmap) {
  CBitmap bitmap;
  ASSERT_TRUE(DQRESOURCES_LoadBitmap(bitmap, 3000));
  const HBITMAP handle = bitmap.GetSafeHandle();
  for (UINT id : {0U, 2999U, 3223U}) {
    EXPECT_FALSE(DQRESOURCES_LoadBitmap(bitmap, id)) << id;
    EXPECT_EQ(DQRESOURCES_LoadCursor(id), nullptr) << id;
  }
  EXPECT_EQ(bitmap.GetSafeHandle(), handle);
}

TEST(Pictures, StockFontsAreOfTheirKind) {
  constexpr BYTE kFixedPitch = 1;
  const LOGFONT* variable = GetStockFont(DQRESOURCES_GetVarStockFont());
  const LOGFONT* fixed = GetStockFont(DQRESOURCES_GetFixedStockFont());
  ASSERT_TRUE(variable != nullptr && fixed != nullptr);
  EXPECT_EQ(variable->lfPitchAndFamily & kFixedPitch, 0);
  EXPECT_EQ(fixed->lfPitchAndFamily & kFixedPitch, kFixedPitch);
  for (int number : {9, 15, 18}) EXPECT_EQ(GetStockFont(number), nullptr) << number;
}

}  // namespace
}  // namespace dq
