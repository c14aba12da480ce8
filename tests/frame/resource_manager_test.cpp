#include "dqlib/frame/resource_manager.h"

#include <set>

#include "dqlib/frame/gdi_dispenser.h"
#include "gtest/gtest.h"
#include "siblings/pictures/pictures.h"

namespace dq {
namespace {

TEST(CDQResourceManager, HasAPictureOfItsOwnForEveryIndex) {
  CDQResourceManager* const manager = CDQResourceManager::GetInstance();
  const auto picture = [](UINT id) {
    return CGDIDispenser::g_.GetResourceBitmap(id, DQRESOURCES_GetInstanceHandle());
  };
  std::set<const CBitmap*> seen;
  for (int index = 0; index < 134; ++index) seen.insert(manager->GetBitmap(index));
  for (int index = 0; index < 5; ++index) seen.insert(manager->GetAlertBitmap(index));
  EXPECT_EQ(seen.size(), 139U);
  for (const CBitmap* bitmap : seen) EXPECT_NE(bitmap->GetSafeHandle(), nullptr);
  EXPECT_EQ(manager->GetBitmap(63), picture(3133));
  EXPECT_EQ(manager->GetBitmap(133), picture(3204));
  EXPECT_EQ(manager->GetAlertBitmap(4), picture(3099));
  EXPECT_EQ(manager->GetFont(1), CGDIDispenser::g_.GetDefaultFont(FONT_UNDERLINE));
}

TEST(CDQResourceManager, MapsObjectTypesToPictures) {
  CDQResourceManager* const manager = CDQResourceManager::GetInstance();
  constexpr std::pair<int, int> kIndices[] = {{1, 0},   {2, 87},  {12, 8},  {13, 7},  {19, 13},
                                              {20, 13}, {29, 63}, {32, 22}, {80, 22}, {33, 23},
                                              {81, 23}, {45, 74}, {46, 73}, {88, 132}};
  for (const auto& [type, index] : kIndices) {
    EXPECT_EQ(manager->GetObjectBitmapIndex(type), index) << type;
    EXPECT_EQ(manager->GetObjectBitmap(type), manager->GetBitmap(index)) << type;
  }
  std::set<int> unmapped = {-1, 0, 4, 5, 6, 17, 23, 24, 49, 82, 83, 84, 85, 86, 89};
  for (int type = 53; type <= 78; ++type) unmapped.insert(type);
  for (int type = -1; type < 90; ++type) {
    EXPECT_EQ(manager->GetObjectBitmapIndex(type) == -1, unmapped.contains(type)) << type;
  }
}

}  // namespace
}  // namespace dq
