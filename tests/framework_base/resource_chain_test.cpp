#include "dqlib/framework/base/resource_chain.h"

#include "dqlib/framework/base/resource_module.h"
#include "dqlib/platform/checksum.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

constexpr UINT kId = 50000;

/// A chain of an older and a newer module, and a third that may become the current one.
class ResourceChain : public ::testing::Test {
 protected:
  ResourceChain() {
    older_.AddString(kId, "older");
    older_.AddString(kId + 1, "only older");
    older_.AddResource(RESOURCE_BITMAP, 5, "x");
    newer_.AddString(kId, "newer");
    newer_.AddString(kId + 1, "");
    current_.AddString(kId, "current");
    older_link_ = std::make_unique<CDynLinkLibrary>(&older_);
    newer_link_ = std::make_unique<CDynLinkLibrary>(&newer_);
  }
  ~ResourceChain() override { AfxSetResourceHandle(former_); }

  ResourceModule older_;
  ResourceModule newer_;
  ResourceModule current_;
  HINSTANCE former_ = AfxGetResourceHandle();
  std::unique_ptr<CDynLinkLibrary> older_link_;
  std::unique_ptr<CDynLinkLibrary> newer_link_;
};

TEST_F(ResourceChain, StringIsTheCurrentModulesThenTheNewestThenTheFrameworks) {
  AFX_EXTENSION_MODULE state;
  const CDynLinkLibrary unready(state);
  EXPECT_EQ(AfxFindString(kId), "newer");
  AfxSetResourceHandle(&current_);
  EXPECT_EQ(AfxFindString(kId), "current");
  EXPECT_EQ(AfxFindString(kId + 1), "only older") << "an empty text is none";
  EXPECT_EQ(AfxFindString(kId + 2), std::nullopt);
  EXPECT_EQ(AfxFindString(61696), "Invalid filename.");
  current_.AddString(61696, "own");
  EXPECT_EQ(AfxFindString(61696), "own");
  std::string all;
  for (UINT id = 0; id < 70'000; ++id) {
    const auto text = FrameworkModule().String(id);
    if (text) all += std::to_string(id) + "=" + std::string(*text) + "\n";
  }
  EXPECT_EQ(platform::Checksum(all), 0x1B4B36ADU) << all;
}

TEST_F(ResourceChain, DroppingALinkUncoversOlderOnes) {
  const CDynLinkLibrary again(&newer_);
  newer_link_.reset();
  EXPECT_EQ(AfxFindString(kId), "newer") << "by its other link";
  older_link_.reset();
  EXPECT_EQ(AfxFindString(kId + 1), std::nullopt);
  EXPECT_EQ(CDynLinkLibrary::head(), &again);
}

TEST_F(ResourceChain, ResourceIsSearchedByTheLowHalfOfItsName) {
  AfxSetResourceHandle(&current_);
  EXPECT_EQ(AfxFindResourceHandle(5, RESOURCE_BITMAP), &older_);
  EXPECT_EQ(AfxFindResourceHandle(0x70005, RESOURCE_BITMAP), &older_);
  EXPECT_EQ(AfxFindResourceHandle(kId / 16 + 1, RESOURCE_STRING), &current_);
  EXPECT_EQ(AfxFindResourceHandle(5, RESOURCE_ICON), &current_) << "where none has it";
  AfxSetResourceHandle(nullptr);
  EXPECT_EQ(AfxFindResourceHandle(5, RESOURCE_ICON), nullptr);
  EXPECT_EQ(AfxFindResourceHandle(61696 / 16 + 1, RESOURCE_STRING), &FrameworkModule());
}

TEST_F(ResourceChain, WorkersLoadStringsWhileTheCurrentModuleIsSwitched) {
  std::thread worker([] {
    for (int round = 0; round < 2000; ++round) EXPECT_TRUE(AfxFindString(kId));
  });
  for (int round = 0; round < 2000; ++round) {
    AfxSetResourceHandle(round % 2 == 0 ? &current_ : nullptr);
  }
  worker.join();
}

TEST(ResourceModule, AddedOnesReplaceTheTablesAndArentTheCallers) {
  constexpr StringRow kTable[] = {{15, "fifteen"}, {16, "sixteen"}, {40, "forty"}};
  ResourceModule module(kTable);
  module.AddString(16, "added");
  module.AddString(17, "new");
  module.AddString(160, "x");
  std::string strings, blocks;
  for (UINT id = 0; id < 200; ++id) {
    if (const auto text = module.String(id)) strings += std::string(*text) + " ";
    if (module.Find(RESOURCE_STRING, static_cast<WORD>(id))) blocks += std::to_string(id) + " ";
  }
  EXPECT_EQ(strings, "fifteen added new forty x ");
  EXPECT_EQ(blocks, "1 2 3 11 ") << "of sixteen strings each, one of which is there";

  std::string data("\0picture", 8);
  module.AddResource(RESOURCE_BITMAP, 7, data);
  data.assign(8, 'x');
  ASSERT_NE(module.Find(RESOURCE_BITMAP, 7), nullptr);
  EXPECT_EQ(module.Find(RESOURCE_BITMAP, 7)->data, std::string_view("\0picture", 8));
  EXPECT_TRUE(!module.Find(RESOURCE_BITMAP, 8) && !module.Find(RESOURCE_ICON, 7));
  module.AddResource(RESOURCE_BITMAP, 7, "changed");
  EXPECT_EQ(module.Find(RESOURCE_BITMAP, 7)->data, "changed");
}

}  // namespace
}  // namespace dq
