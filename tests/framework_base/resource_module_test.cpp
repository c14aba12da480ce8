#include "dqlib/framework/base/resource_module.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace dq {
namespace {

constexpr StringRow kTable[] = {{15, "fifteen"}, {16, "sixteen"}, {40, "forty"}};

TEST(ResourceModule, StringsOfTheTableGiveWayToAddedOnes) {
  ResourceModule module(kTable);
  module.AddString(16, "added");
  module.AddString(17, "new");
  for (const auto& [id, text] :
       {std::pair(15, "fifteen"), {16, "added"}, {17, "new"}, {40, "forty"}}) {
    EXPECT_EQ(module.String(id), text) << id;
  }
  for (const UINT id : {0U, 14U, 18U, 41U}) EXPECT_EQ(module.String(id), std::nullopt) << id;
}

TEST(ResourceModule, BlockOfStringsIsThereIfOneOfItsSixteenIs) {
  ResourceModule module(kTable);
  module.AddString(160, "x");
  for (const WORD block : std::initializer_list<WORD>{1, 2, 3, 11})
    EXPECT_NE(module.Find(RESOURCE_STRING, block), nullptr);
  for (const WORD block : std::initializer_list<WORD>{0, 4, 10, 12})
    EXPECT_EQ(module.Find(RESOURCE_STRING, block), nullptr);
}

TEST(ResourceModule, ResourcesAreCopiesFoundByTypeAndName) {
  ResourceModule module;
  std::string data("\0picture", 8);
  module.AddResource(RESOURCE_BITMAP, 7, data);
  data.assign(8, 'x');
  ASSERT_NE(module.Find(RESOURCE_BITMAP, 7), nullptr);
  EXPECT_EQ(module.Find(RESOURCE_BITMAP, 7)->data, std::string_view("\0picture", 8));
  EXPECT_EQ(module.Find(RESOURCE_BITMAP, 8), nullptr);
  EXPECT_EQ(module.Find(RESOURCE_ICON, 7), nullptr);

  module.AddResource(RESOURCE_BITMAP, 7, "changed");
  EXPECT_EQ(module.Find(RESOURCE_BITMAP, 7)->data, "changed");
}

}  // namespace
}  // namespace dq
