
#include "dqlib/platform/checksum.h"
#include "tests/support/testing.h"

namespace dq::test {
namespace {

TEST(LibraryResources, TextsAndDialogsAreAsTheyAlwaysWere) {
  std::string texts, dialogs;
  for (UINT id = 0; id <= 0xFFFF; ++id) {
    const std::string number = std::to_string(id) + "=";
    if (const auto text = LibraryResources().String(id))
      texts += number + std::string(*text) + "\n";
    const platform::Resource* dialog = LibraryResources().Find(5, static_cast<WORD>(id));
    if (dialog != nullptr) dialogs += number + std::string(dialog->data) + "\n";
  }
  EXPECT_EQ(std::ranges::count(texts, '='), 127) << texts;
  EXPECT_EQ(platform::Checksum(texts), 0x2E5BCB05U) << texts;
  EXPECT_EQ(platform::Checksum(dialogs), 0x18687881U) << dialogs;
}

}  // namespace
}  // namespace dq::test
