
#include "dqlib/platform/checksum.h"
#include "tests/support/testing.h"

namespace dq::test {
namespace {

TEST(LibraryResources, TextsOfTheSeamAndOfKindsOfObjectsAreFoundByNumber) {
  for (const auto& [id, text] : Rows<UINT, std::string_view>{{44514, "&Apply"},
                                                             {44516, "DBMS"},
                                                             {44562, "Abort"},
                                                             {44590, "control %1 can't be pressed"},
                                                             {44635, "Table"},
                                                             {44692, "Package Header"},
                                                             {44704, "DB/2"},
                                                             {44747, "Colon Time separator"},
                                                             {44748, ""}}) {
    EXPECT_EQ(EnglishText(id), text);
    EXPECT_EQ(detail::LoadText(id), text);
  }
}

TEST(LibraryResources, MenusHaveTheTextsOfTheStringTable) {
  const platform::Resource* menu = LibraryResources().Find(4, 45340);
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->data,
            "popup \"\"\nitem 45341 \"Close this tab window\"\n"
            "item 45342 \"Close all tab windows\"\nseparator\nitem 45343 \"Rename...\"\nend\n");
  menu = LibraryResources().Find(4, 45350);
  ASSERT_NE(menu, nullptr);
  EXPECT_NE(menu->data.find("item 57634 \"&Copy\\tCtrl+C\"\n"), std::string::npos) << menu->data;
}

TEST(LibraryResources, PicturesAreFoundWithTheirShapes) {
  CBitmap bitmap;
  for (const PictureRow& row : PictureTable()) {
    ASSERT_TRUE(bitmap.LoadBitmap(DQLIB_GetInstanceHandle(), row.id)) << row.id;
    EXPECT_NE(bitmap.GetSafeHandle()->shapes, nullptr) << row.id;
  }
  ASSERT_TRUE(bitmap.LoadBitmap(DQLIB_GetInstanceHandle(), 2700));
  EXPECT_EQ(bitmap.GetSafeHandle()->size, (CSize{40, 19}));
  EXPECT_EQ(bitmap.GetSafeHandle()->pixels[0], 0xFF00FFU);
}

TEST(LibraryResources, TextsAndDialogsAreAsTheyAlwaysWere) {
  std::string texts, dialogs;
  for (UINT id = 0; id <= 0xFFFF; ++id) {
    const std::string number = std::to_string(id) + "=";
    if (const auto text = LibraryResources().String(id))
      texts += number + std::string(*text) + "\n";
    const platform::Resource* dialog = LibraryResources().Find(5, static_cast<WORD>(id));
    if (dialog != nullptr) dialogs += number + std::string(dialog->data) + "\n";
  }
  EXPECT_EQ(std::ranges::count(texts, '='), 241) << texts;
  EXPECT_EQ(platform::Checksum(texts), 0xB6201E5U) << texts;
  EXPECT_EQ(platform::Checksum(dialogs), 0x4B4B34E3U) << dialogs;
}

}  // namespace
}  // namespace dq::test
