#include "dqlib/frame/library.h"

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/resources/string_table.h"
#include "gtest/gtest.h"
#include "tests/support/scripted_platform.h"

namespace dq {
namespace {

int CountLinks() {
  int count = 0;
  for (const auto* link = CDynLinkLibrary::head(); link != nullptr; link = link->next()) ++count;
  return count;
}

TEST(Library, EntryPointAttachesAndTakesNothingDown) {
  const HINSTANCE library = &LibraryResources();
  EXPECT_EQ(DQLIB_GetInstanceHandle(), library);
  ASSERT_NE(CDynLinkLibrary::head(), nullptr);
  EXPECT_EQ(CDynLinkLibrary::head()->resources(), library);
  const struct {
    HINSTANCE module;
    DWORD reason;
    int result;
    int links;
    std::vector<HINSTANCE> asked;
  } cases[] = {
      {library, PROCESS_ATTACH, 1, 1, {library}}, {nullptr, PROCESS_ATTACH, 0, 0, {nullptr}},
      {library, THREAD_ATTACH, 1, 0, {}},         {library, THREAD_DETACH, 1, 0, {}},
      {library, PROCESS_DETACH, 1, 0, {library}},
  };
  for (const auto& row : cases) {
    testing::ScriptedPlatform platform;
    const int before = CountLinks();
    EXPECT_EQ(DQLIB_EntryPoint(row.module, row.reason, nullptr), row.result) << row.reason;
    EXPECT_EQ(CountLinks(), before + row.links) << row.reason;
    EXPECT_EQ(platform.modules.named, row.asked) << row.reason;
    EXPECT_EQ(DQLIB_GetInstanceHandle(), library) << row.reason;
  }
  const int before = CountLinks();
  for (int calls = 1; calls <= 2; ++calls) {
    DQLIB_InitializeExtensionDLL();
    EXPECT_EQ(CountLinks(), before + calls);
    EXPECT_EQ(CDynLinkLibrary::head()->resources(), library);
  }
}

}  // namespace
}  // namespace dq
