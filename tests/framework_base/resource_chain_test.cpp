#include "dqlib/framework/base/resource_chain.h"

#include <gtest/gtest.h>
#include <memory>
#include <thread>

#include "dqlib/framework/base/resource_module.h"

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

}  // namespace
}  // namespace dq
