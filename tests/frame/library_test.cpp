#include "dqlib/resources/library.h"

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/resources/string_table.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

int CountLinks() {
  int count = 0;
  for (const auto* link = CDynLinkLibrary::head(); link != nullptr; link = link->next()) ++count;
  return count;
}

TEST(Library, EntryPointAttachesAndTakesNothingDown) {
  const HINSTANCE library = &LibraryResources();
  ASSERT_NE(CDynLinkLibrary::head(), nullptr);
  EXPECT_EQ(CDynLinkLibrary::head()->resources(), library);
  for (const auto& [module, reason, result, links, asked] :
       test::Rows<HINSTANCE, DWORD, int, int, std::vector<HINSTANCE>>{
           {library, PROCESS_ATTACH, 1, 1, {library}},
           {nullptr, PROCESS_ATTACH, 0, 0, {nullptr}},
           {library, THREAD_ATTACH, 1, 0, {}},
           {library, THREAD_DETACH, 1, 0, {}},
           {library, PROCESS_DETACH, 1, 0, {library}},
       }) {
    testing::ScriptedPlatform platform;
    const int before = CountLinks();
    EXPECT_EQ(DQLIB_EntryPoint(module, reason, nullptr), result) << reason;
    EXPECT_EQ(CountLinks(), before + links) << reason;
    EXPECT_EQ(platform.modules.named, asked) << reason;
  }
  const int before = CountLinks();
  DQLIB_InitializeExtensionDLL();
  EXPECT_EQ(CountLinks(), before + 1);
  EXPECT_EQ(DQLIB_GetInstanceHandle(), library);
  EXPECT_EQ(CDynLinkLibrary::head()->resources(), library);
}

}  // namespace
}  // namespace dq
