#include "dqlib/frame/library.h"

#include "dqlib/frame/resource_manager.h"
#include "dqlib/frame/resources.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/resources/string_table.h"
#include "gtest/gtest.h"
#include "tests/support/scripted_platform.h"

namespace dq {
namespace {

int CountLinks() {
  int count = 0;
  for (const CDynLinkLibrary* link = CDynLinkLibrary::head(); link != nullptr;
       link = link->next()) {
    if (link->resources() == &LibraryResources()) ++count;
  }
  return count;
}

TEST(Library, IsAttachedBeforeTheProgramBegins) {
  EXPECT_EQ(DQLIB_GetInstanceHandle(), &LibraryResources());
  EXPECT_GE(CountLinks(), 1);
  test::ScriptedPlatform platform;
  DQAfxMessageBox(IDS_UNKNOWN_OS_ERROR, BOX_INFORMATION, 0, nullptr);
  EXPECT_EQ(platform.prompts.boxes.back().text, "Unknown OS Error");
  EXPECT_NE(CDQResourceManager::GetInstance()->GetObjectBitmap(35)->GetSafeHandle(), nullptr);
}

TEST(Library, AddsALinkAtEachInitialisation) {
  const int before = CountLinks();
  DQLIB_InitializeExtensionDLL();
  DQLIB_InitializeExtensionDLL();
  EXPECT_EQ(CountLinks(), before + 2);
}

TEST(Library, EntryPointAttachesAndTakesNothingDown) {
  const HINSTANCE library = &LibraryResources();
  const struct {
    const char* name;
    HINSTANCE module;
    DWORD reason;
    int result;
    int links;
    std::vector<HINSTANCE> asked;
  } cases[] = {
      {"attach", library, PROCESS_ATTACH, 1, 1, {library}},
      {"attach without a module", nullptr, PROCESS_ATTACH, 0, 0, {nullptr}},
      {"thread attach", library, THREAD_ATTACH, 1, 0, {}},
      {"thread detach", library, THREAD_DETACH, 1, 0, {}},
      {"detach", library, PROCESS_DETACH, 1, 0, {library}},
      {"no reason known", library, 77, 1, 0, {}},
  };
  for (const auto& row : cases) {
    test::ScriptedPlatform platform;
    const int before = CountLinks();
    EXPECT_EQ(DQLIB_EntryPoint(row.module, row.reason, nullptr), row.result) << row.name;
    EXPECT_EQ(CountLinks(), before + row.links) << row.name;
    EXPECT_EQ(platform.modules.named, row.asked) << row.name;
    EXPECT_EQ(DQLIB_GetInstanceHandle(), library) << row.name;
  }
}

}  // namespace
}  // namespace dq
