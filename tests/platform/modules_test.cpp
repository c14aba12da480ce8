#include "dqlib/platform/modules.h"

#include "dqlib/platform/platform.h"
#include "tests/support/testing.h"

namespace dq::platform {
namespace {

DWORD Number(std::string_view data, std::size_t at, int bytes) {
  DWORD number = 0;
  for (int byte = bytes; byte-- > 0;) {
    number = number << 8 | static_cast<unsigned char>(data[at + static_cast<std::size_t>(byte)]);
  }
  return number;
}

TEST(Modules, EachHasTheProgramsPathAndTheSystemsNothingButPictures) {
  Modules& modules = *System().modules;
  EXPECT_EQ(modules.FileName(nullptr), std::filesystem::canonical("/proc/self/exe"));
  EXPECT_EQ(modules.FileName(&modules.System()), modules.FileName(nullptr));
  EXPECT_EQ(modules.System().Find(RESOURCE_CURSOR, 32517), nullptr);
  EXPECT_EQ(modules.System().Find(RESOURCE_BITMAP, 32512), nullptr);
  EXPECT_EQ(modules.System().String(32512), std::nullopt);
}

TEST(StockPictures, EachIsThereWithItsGroupAndUnlikeTheOthers) {
  std::set<std::string_view> different;
  for (const auto& [type, group_type, first, last] :
       test::Rows<WORD, WORD, int, int>{{RESOURCE_CURSOR, RESOURCE_GROUP_CURSOR, 32512, 32516},
                                        {RESOURCE_CURSOR, RESOURCE_GROUP_CURSOR, 32640, 32651},
                                        {RESOURCE_ICON, RESOURCE_GROUP_ICON, 32512, 32518}}) {
    for (int id = first; id <= last; ++id) {
      SCOPED_TRACE(id);
      const auto name = static_cast<WORD>(id);
      const Resource* picture = System().modules->System().Find(type, name);
      const Resource* group = System().modules->System().Find(group_type, name);
      ASSERT_NE(picture, nullptr);
      ASSERT_NE(group, nullptr);
      ASSERT_EQ(picture->data.size(), 4u + 40 + 32 * 32 * 3);
      EXPECT_TRUE(different.insert(picture->data.substr(44)).second);
      ASSERT_EQ(group->data.size(), 20u);
      EXPECT_EQ(Number(group->data, 14, 4), picture->data.size());
      EXPECT_EQ(Number(group->data, 18, 2), name);
    }
  }
}

TEST(StockPictures, DataIsTheHotSpotAndABottomUpBitmap) {
  const Module& system = System().modules->System();
  const std::string_view up = system.Find(RESOURCE_CURSOR, 32516)->data;
  const test::Rows<std::size_t, int, DWORD> fields = {
      {0, 2, 16}, {2, 2, 0}, {4, 4, 40}, {8, 4, 32}, {12, 4, 32}, {16, 2, 1}, {18, 2, 24}};
  for (const auto& [at, bytes, value] : fields) EXPECT_EQ(Number(up, at, bytes), value) << at;
  EXPECT_EQ(Number(up, 44 + (23 * 32 + 8) * 3, 3), 0x000000u) << "at 8, 8 from the top";
  EXPECT_EQ(Number(up, 44 + (8 * 32 + 8) * 3, 3), 0xFFFFFFu);
}

}  // namespace
}  // namespace dq::platform
