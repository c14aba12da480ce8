#include "siblings/pictures/pictures.h"

#include "tests/support/testing.h"

namespace dq {
namespace {

TEST(Pictures, CanAllBeToldApart) {
  std::set<std::string> seen;
  CBitmap bitmap;
  for (UINT id = 3000; id <= 3222; ++id) {
    ASSERT_TRUE(DQRESOURCES_LoadBitmap(bitmap, id)) << id;
    EXPECT_TRUE(seen.insert(WriteDib(*bitmap.GetSafeHandle())).second) << id;
    ASSERT_NE(DQRESOURCES_LoadCursor(id), nullptr) << id;
  }
  const HBITMAP last = bitmap.GetSafeHandle();
  EXPECT_FALSE(DQRESOURCES_LoadBitmap(bitmap, 3223));
  EXPECT_EQ(bitmap.GetSafeHandle(), last);
}

}  // namespace
}  // namespace dq
