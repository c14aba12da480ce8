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

struct Header {
  std::int64_t size = 40, width = 3, height = 2, planes = 1, bits = 24, compression = 0, colors = 0;

  std::string Bytes() const {
    return Number(size) + Number(width) + Number(height) + Number(planes, 2) + Number(bits, 2) +
           Number(compression) + std::string(12, '\0') + Number(colors) + Number(0);
  }
};

/// A picture of 3 by 2: red, blue, blue above blue, blue, red.
const std::vector<COLORREF> kPixels = {kRed, kBlue, kBlue, kBlue, kBlue, kRed};
const std::string kPalette("\0\0\xFF\0\xFF\0\0\0", 8);
const std::string kOneBit = Header{.bits = 1}.Bytes() + kPalette + "\xC0___\x60___";

TEST(ReadDib, TakesEveryDepthAndBothDirections) {
  const std::string top("\0\0\xFF\xFF\0\0\xFF\0\0___", 12);
  const std::string bottom("\xFF\0\0\xFF\0\0\0\0\xFF___", 12);
  const std::string cases[] = {
      kOneBit,
      Header{.bits = 4}.Bytes() + kPalette + std::string(14 * 4, 'x') + "\x11\x0F__\x01\x1F__",
      Header{.bits = 8, .colors = 2}.Bytes() + kPalette + "\1\1" + std::string("\0_\0\1\1_", 6),
      Header{}.Bytes() + bottom + top + "junk behind it",
      Header{.colors = 2}.Bytes() + kPalette + bottom + top,
      Header{.height = -2}.Bytes() + top + bottom};
  for (const std::string& bytes : cases) {
    const auto picture = ReadDib(bytes);
    ASSERT_NE(picture, nullptr) << bytes;
    EXPECT_TRUE(picture->size == (CSize{3, 2}) && picture->pixels == kPixels) << bytes;
  }
}

TEST(ReadDib, RefusesWhatMakesNoSense) {
  const Header headers[] = {{.size = 12},
                            {.width = 0},
                            {.height = 0},
                            {.height = INT_MIN},
                            {.width = INT_MAX, .height = INT_MAX, .bits = 1},
                            {.planes = 2},
                            {.bits = 16},
                            {.bits = 8, .compression = 1, .colors = 2},
                            {.bits = 1, .colors = 3},
                            {.colors = UINT_MAX},
                            {.bits = 8, .colors = 1}};  // the rows name a second colour
  for (const Header& header : headers) {
    EXPECT_EQ(ReadDib(header.Bytes() + std::string(64, '\1')), nullptr) << &header - headers;
  }
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
