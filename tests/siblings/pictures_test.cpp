#include "siblings/pictures/pictures.h"

#include "tests/support/testing.h"

namespace dq::test {
namespace {

TEST(Pictures, CanAllBeToldApart) {
  std::set<std::string> seen;
  CBitmap bitmap;
  for (UINT id = 3000; id <= 3222; ++id) {
    ASSERT_TRUE(DQRESOURCES_LoadBitmap(bitmap, id)) << id;
    EXPECT_TRUE(seen.insert(WriteDib(*bitmap.GetSafeHandle())).second) << id;
    ASSERT_NE(DQRESOURCES_LoadCursor(id), nullptr) << id;
  }
  const HBITMAP last = bitmap.GetSafeHandle();
  EXPECT_FALSE(DQRESOURCES_LoadBitmap(bitmap, 3223));
  EXPECT_EQ(bitmap.GetSafeHandle(), last);
}

/// Rows of pictures side by side, a letter for each of their colours.
std::string Drawn(const std::vector<UINT>& ids, std::size_t first, std::size_t last) {
  const std::map<COLORREF, char> letters = {{0xC0C0C0, ' '}, {0xDFDFDF, '.'}, {0x808080, ':'}};
  std::string drawn;
  for (std::size_t y = first; y <= last; ++y) {
    for (const UINT id : ids) {
      CBitmap bitmap;
      DQRESOURCES_LoadBitmap(bitmap, id);
      for (std::size_t x = 0; x < 16; ++x) {
        const COLORREF color = bitmap.GetSafeHandle()->pixels[y * 16 + x];
        drawn += color == 0 ? '#' : letters.contains(color) ? letters.at(color) : 'o';
      }
    }
    drawn += '\n';
  }
  return drawn;
}

TEST(Pictures, ShowTheirNumbersBelowAnEmblem) {
  EXPECT_EQ(
      Drawn({3012}, 0, 8) + Drawn({3012, 3037, 3148, 3169, 3205}, 9, 13) + Drawn({3012}, 14, 15),
      R"(...............:
.              :
.     oooo     :
.  oooooooooo  :
.  o  oooo  o  :
.    o oo o    :
.   o oooo o   :
.     o  o     :
.              :
. ###  #  ###  :. ### ### ###  :.  #  # # ###  :.  #  ### ###  :. ### ### ###  :
. # # ##    #  :. # #   #   #  :. ##  # # # #  :. ##  #   # #  :.   # # # #    :
. # #  #  ###  :. # # ###  #   :.  #  ### ###  :.  #  ### ###  :. ### # # ###  :
. # #  #  #    :. # #   #  #   :.  #    # # #  :.  #  # #   #  :. #   # #   #  :
. ### ### ###  :. ### ###  #   :. ###   # ###  :. ### ### ###  :. ### ### ###  :
.              :
::::::::::::::::
)");
}

}  // namespace
}  // namespace dq::test
