#include "dqlib/frame/resource_manager.h"

#include <set>

#include "dqlib/frame/gdi_dispenser.h"
#include "gtest/gtest.h"
#include "siblings/pictures/pictures.h"

namespace dq {
namespace {

TEST(CDQResourceManager, HasAPictureOfItsOwnForEveryIndex) {
  CDQResourceManager* const manager = CDQResourceManager::GetInstance();
  EXPECT_EQ(CDQResourceManager::GetInstance(), manager);
  EXPECT_STREQ(manager->GetRuntimeClass()->m_lpszClassName, "CDQResourceManager");
  std::set<const CBitmap*> seen;
  for (int index = 0; index < 134; ++index) seen.insert(manager->GetBitmap(index));
  for (int index = 0; index < 5; ++index) seen.insert(manager->GetAlertBitmap(index));
  EXPECT_EQ(seen.size(), 139U);
  for (const CBitmap* bitmap : seen) EXPECT_NE(bitmap->GetSafeHandle(), nullptr);
}

TEST(CDQResourceManager, ReadsItsTablesByIndex) {
  CDQResourceManager* const manager = CDQResourceManager::GetInstance();
  const auto picture = [](UINT id) {
    return CGDIDispenser::g_.GetResourceBitmap(id, DQRESOURCES_GetInstanceHandle());
  };
  constexpr std::pair<int, UINT> kPictures[] = {{0, 3000},   {1, 3021},   {31, 3030}, {63, 3133},
                                                {90, 3164},  {91, 3022},  {97, 3048}, {105, 3178},
                                                {127, 3210}, {132, 3222}, {133, 3204}};
  for (const auto& [index, id] : kPictures) EXPECT_EQ(manager->GetBitmap(index), picture(id)) << id;
  constexpr UINT kAlerts[] = {3075, 3001, 3010, 3011, 3099};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(manager->GetAlertBitmap(i), picture(kAlerts[i])) << i;
  EXPECT_EQ(manager->GetFont(0), CGDIDispenser::g_.GetDefaultFont(FONT_BOLD));
  EXPECT_EQ(manager->GetFont(1), CGDIDispenser::g_.GetDefaultFont(FONT_UNDERLINE));
}

TEST(CDQResourceManager, MapsObjectTypesToPictures) {
  CDQResourceManager* const manager = CDQResourceManager::GetInstance();
  constexpr std::pair<int, int> kIndices[] = {
      {1, 0},   {2, 87},  {12, 8},  {13, 7},  {19, 13},  {20, 13},  {22, 15}, {29, 63},
      {32, 22}, {80, 22}, {33, 23}, {81, 23}, {35, 25},  {40, 30},  {41, 32}, {43, 71},
      {45, 74}, {46, 73}, {50, 89}, {51, 88}, {79, 127}, {87, 131}, {88, 132}};
  for (const auto& [type, index] : kIndices) {
    EXPECT_EQ(manager->GetObjectBitmapIndex(type), index) << type;
    EXPECT_EQ(manager->GetObjectBitmap(type), manager->GetBitmap(index)) << type;
  }
  std::set<int> unmapped;
  for (int type = -1; type <= 90; ++type) {
    const int index = manager->GetObjectBitmapIndex(type);
    EXPECT_TRUE(index >= -1 && index < 134) << type;
    if (index == -1) unmapped.insert(type);
  }
  std::set<int> expected = {-1, 0, 4, 5, 6, 17, 23, 24, 49, 82, 83, 84, 85, 86, 89, 90};
  for (int type = 53; type <= 78; ++type) expected.insert(type);
  EXPECT_EQ(unmapped, expected);
}

}  // namespace
}  // namespace dq
