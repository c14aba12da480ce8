#include "dqlib/platform/modules.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <set>

#include "dqlib/platform/platform.h"

namespace dq::platform {
namespace {

DWORD Number(std::string_view data, std::size_t at, int bytes) {
  DWORD number = 0;
  for (int byte = bytes; byte-- > 0;) {
    number = number << 8 | static_cast<unsigned char>(data[at + static_cast<std::size_t>(byte)]);
  }
  return number;
}

TEST(Modules, EveryModuleHasTheProgramsPath) {
  Modules& modules = *System().modules;
  EXPECT_EQ(modules.FileName(nullptr), std::filesystem::canonical("/proc/self/exe"));
  EXPECT_EQ(modules.FileName(&modules.System()), modules.FileName(nullptr));
}

struct Stock {
  WORD type;
  WORD group_type;
  WORD first;
  WORD last;
};

class StockPictures : public ::testing::TestWithParam<Stock> {};

TEST_P(StockPictures, EachIsThereWithItsGroupAndUnlikeTheOthers) {
  const Module& system = System().modules->System();
  std::set<std::string_view> different;
  for (WORD name = GetParam().first; name <= GetParam().last; ++name) {
    SCOPED_TRACE(name);
    const Resource* picture = system.Find(GetParam().type, name);
    const Resource* group = system.Find(GetParam().group_type, name);
    ASSERT_NE(picture, nullptr);
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(picture->name, name);
    EXPECT_EQ(group->type, GetParam().group_type);
    EXPECT_TRUE(different.insert(picture->data.substr(44)).second);

    ASSERT_EQ(picture->data.size(), 4u + 40 + 32 * 32 * 3);
    EXPECT_LT(Number(picture->data, 0, 2), 32u) << "hot spot";
    EXPECT_LT(Number(picture->data, 2, 2), 32u) << "hot spot";
    EXPECT_EQ(Number(picture->data, 4, 4), 40u);
    EXPECT_EQ(Number(picture->data, 8, 4), 32u);
    EXPECT_EQ(Number(picture->data, 12, 4), 32u);
    EXPECT_EQ(Number(picture->data, 18, 2), 24u);
    ASSERT_EQ(group->data.size(), 20u);
    EXPECT_EQ(Number(group->data, 14, 4), picture->data.size());
    EXPECT_EQ(Number(group->data, 18, 2), name);
  }
}

INSTANTIATE_TEST_SUITE_P(
    System, StockPictures,
    ::testing::Values(Stock{RESOURCE_CURSOR, RESOURCE_GROUP_CURSOR, 32512, 32516},
                      Stock{RESOURCE_CURSOR, RESOURCE_GROUP_CURSOR, 32640, 32651},
                      Stock{RESOURCE_ICON, RESOURCE_GROUP_ICON, 32512, 32518}));

TEST(StockPictures, PointerHasItsTipAtTheHotSpotOnTheTopRow) {
  const std::string_view arrow =
      System().modules->System().Find(RESOURCE_CURSOR, 32512)->data.substr(44);
  const std::size_t top_row = 31 * 32 * 3;  // rows stand from the bottom
  EXPECT_EQ(arrow.substr(top_row, 6), std::string_view("\0\0\0\xFF\xFF\xFF", 6));
}

TEST(Modules, SystemHasNothingElse) {
  const Module& system = System().modules->System();
  EXPECT_EQ(system.Find(RESOURCE_CURSOR, 32517), nullptr);
  EXPECT_EQ(system.Find(RESOURCE_BITMAP, 32512), nullptr);
  EXPECT_EQ(system.String(32512), std::nullopt);
}

}  // namespace
}  // namespace dq::platform
