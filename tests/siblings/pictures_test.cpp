#include "siblings/pictures/pictures.h"

#include "dqlib/platform/checksum.h"
#include "tests/support/testing.h"

namespace dq::test {
namespace {

TEST(Pictures, CanAllBeToldApart) {
  std::string all;
  std::set<std::string> seen;
  CBitmap bitmap;
  for (UINT id = 3000; id <= 3222; ++id) {
    ASSERT_TRUE(DQRESOURCES_LoadBitmap(bitmap, id)) << id;
    const auto [picture, is_new] = seen.insert(WriteDib(*bitmap.GetSafeHandle()));
    EXPECT_TRUE(is_new) << id;
    all += *picture;
    ASSERT_NE(DQRESOURCES_LoadCursor(id), nullptr) << id;
  }
  EXPECT_EQ(platform::Checksum(all), 0x49A9FDDFU) << "what they show";
  const HBITMAP last = bitmap.GetSafeHandle();
  EXPECT_FALSE(DQRESOURCES_LoadBitmap(bitmap, 3223));
  EXPECT_EQ(bitmap.GetSafeHandle(), last);
}

TEST(Pictures, ShowTheirNumbersBelowAnEmblem) {
  const std::map<COLORREF, char> letters = {
      {0, '#'}, {0xC0C0C0, ' '}, {0xDFDFDF, '.'}, {0x808080, ':'}};
  CBitmap bitmap;
  ASSERT_TRUE(DQRESOURCES_LoadBitmap(bitmap, 3012));
  std::string drawn;
  for (const COLORREF color : bitmap.GetSafeHandle()->pixels) {
    drawn += letters.contains(color) ? letters.at(color) : 'o';
    if (drawn.size() % 17 == 16) drawn += '\n';
  }
  EXPECT_EQ(drawn, R"(...............:
.              :
.     oooo     :
.  oooooooooo  :
.  o  oooo  o  :
.    o oo o    :
.   o oooo o   :
.     o  o     :
.              :
. ###  #  ###  :
. # # ##    #  :
. # #  #  ###  :
. # #  #  #    :
. ### ### ###  :
.              :
::::::::::::::::
)");
}

}  // namespace
}  // namespace dq::test
