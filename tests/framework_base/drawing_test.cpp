#include "dqlib/framework/base/drawing.h"

#include "dqlib/platform/checksum.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

constexpr COLORREF kRed = RGB(0xFF, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 0xFF);

std::string Number(std::int64_t value, int size = 4) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> 8 * i & 0xFF);
  return bytes;
}

std::string Header(int bits, std::int64_t colors = 0, int height = 2) {
  return Number(40) + Number(3) + Number(height) + Number(1, 2) + Number(bits, 2) +
         std::string(16, '\0') + Number(colors) + Number(0);
}

/// A picture of 3 by 2: red, blue, blue above blue, blue, red.
const std::vector<COLORREF> kPixels = {kRed, kBlue, kBlue, kBlue, kBlue, kRed};
const std::string kPalette("\0\0\xFF\0\xFF\0\0\0", 8);
const std::string kOneBit = Header(1) + kPalette + "\xC0___\x60___";

TEST(ReadDib, TakesEveryDepthAndBothDirections) {
  const std::string top("\0\0\xFF\xFF\0\0\xFF\0\0___", 12);
  const std::string bottom("\xFF\0\0\xFF\0\0\0\0\xFF___", 12);
  const std::string cases[] = {
      kOneBit,
      Header(4) + kPalette + std::string(14 * 4, 'x') + "\x11\x0F__\x01\x1F__",
      Header(8, 2) + kPalette + "\1\1" + std::string("\0_\0\1\1_", 6),
      Header(24) + bottom + top + "junk behind it",
      Header(24, 2) + kPalette + bottom + top,
      Header(24, 0, -2) + top + bottom};
  for (const std::string& bytes : cases) {
    const auto picture = ReadDib(bytes);
    ASSERT_NE(picture, nullptr) << bytes;
    EXPECT_TRUE(picture->size == (CSize{3, 2}) && picture->pixels == kPixels) << bytes;
  }
}

TEST(ReadDib, RefusesWhatMakesNoSense) {
  const std::string ones(64, '\1');
  // Numbers of the header, by their places.
  for (const auto& [at, size, number] : {std::tuple(0, 4, 12),
                                         {4, 4, 0},
                                         {8, 4, 0},
                                         {8, 4, INT_MIN},
                                         {12, 2, 2},
                                         {14, 2, 16},
                                         {16, 4, 1},
                                         {32, 4, 3}}) {
    EXPECT_EQ(ReadDib((kOneBit + ones).replace(at, size, Number(number, size))), nullptr) << at;
  }
  EXPECT_EQ(ReadDib((kOneBit + ones).replace(4, 8, Number(INT_MAX) + Number(INT_MAX))), nullptr);
  EXPECT_EQ(ReadDib(Header(24, UINT_MAX) + ones), nullptr);
  EXPECT_EQ(ReadDib(Header(8, 1) + ones), nullptr) << "the rows name a second colour";
  for (std::size_t size = 0; size < kOneBit.size(); ++size) {
    EXPECT_EQ(ReadDib(std::string_view(kOneBit).substr(0, size)), nullptr) << size << " bytes";
  }
}

TEST(WriteDib, IsReadBackAtEveryRowPadding) {
  for (LONG width = 1; width <= 4; ++width) {
    BitmapDescription picture{{width, 3}, {}};
    for (LONG i = 0; i < width * 3; ++i) picture.pixels.push_back(RGB(1, static_cast<BYTE>(i), 3));
    const auto read = ReadDib(WriteDib(picture));
    ASSERT_NE(read, nullptr) << width;
    EXPECT_EQ(read->pixels, picture.pixels) << width;
  }
  for (const auto& [width, count] : {std::pair(3, 5U), {3, 7U}, {3, 9U}, {0, 0U}}) {
    EXPECT_EQ(WriteDib({{width, 2}, std::vector<COLORREF>(count, kRed)}), "") << count;
  }
}

TEST(LoadImage, MapsJustTheThreeGreysWhenAsked) {
  testing::ScriptedPlatform platform;
  platform.facts.colors = {{15, 1}, {16, 2}, {22, 3}};
  ResourceModule module;
  const BitmapDescription greys{{4, 1}, {0xC0C0C0, 0x808080, 0xDFDFDF, 0xC0C0C1}};
  module.AddResource(RESOURCE_BITMAP, 7, WriteDib(greys));
  EXPECT_EQ(LoadImage(&module, 0x50007, 0x1040)->pixels,
            (std::vector<COLORREF>{1, 2, 3, 0xC0C0C1}));
  EXPECT_EQ(LoadImage(&module, 7, IMAGE_DEFAULT_SIZE)->pixels, greys.pixels);
}

TEST(LoadCursor, GivesOnePointerForOneResource) {
  ResourceModule module;
  module.AddResource(RESOURCE_CURSOR, 5, Number(0x80000002) + kOneBit);
  module.AddResource(RESOURCE_ICON, 5, Number(0x80000002) + kOneBit);
  module.AddResource(RESOURCE_CURSOR, 6, Number(0));
  const HCURSOR cursor = LoadCursor(&module, 5);
  ASSERT_NE(cursor, nullptr);
  EXPECT_TRUE(cursor->hot_spot == (CPoint{2, 0x8000}) && cursor->picture.pixels == kPixels);
  EXPECT_TRUE(LoadCursor(&module, 5) == cursor && LoadIcon(&module, 5) != cursor);
  EXPECT_TRUE(LoadCursor(&module, 6) == nullptr && LoadCursor(&module, 7) == nullptr);

  // A changed module, or another one at its address, is not taken for the first.
  module.AddResource(RESOURCE_CURSOR, 5, Number(1) + kOneBit);
  EXPECT_EQ(LoadCursor(&module, 5)->hot_spot, (CPoint{1, 0}));
  EXPECT_EQ(cursor->hot_spot, (CPoint{2, 0x8000}));
}

TEST(StockFonts, AreAsTheyAlwaysWere) {
  std::ostringstream all;
  for (int number = 0; number < 20; ++number) {
    const LOGFONT* const font = GetStockFont(number);
    if (font == nullptr) continue;
    all << number << ' ' << font->lfHeight << ' ' << font->lfWidth << ' ' << font->lfWeight << ' '
        << int{font->lfCharSet} << ' ' << int{font->lfPitchAndFamily} << font->lfFaceName << '\n';
  }
  EXPECT_EQ(platform::Checksum(all.str()), 0x3124EA62U) << all.str();
}

}  // namespace
}  // namespace dq
