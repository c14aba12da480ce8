#include "dqlib/framework/base/drawing.h"

#include <climits>

#include "gtest/gtest.h"
#include "tests/support/scripted_platform.h"

namespace dq {
namespace {

constexpr COLORREF kRed = RGB(0xFF, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 0xFF);

std::string Dword(std::int64_t value, int size = 4) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> 8 * i & 0xFF);
  return bytes;
}

struct Header {
  std::int64_t size = 40;
  std::int64_t width = 3;
  std::int64_t height = 2;
  std::int64_t planes = 1;
  std::int64_t bits = 24;
  std::int64_t compression = 0;
  std::int64_t colors = 0;
};

std::string Bytes(const Header& header) {
  return Dword(header.size) + Dword(header.width) + Dword(header.height) + Dword(header.planes, 2) +
         Dword(header.bits, 2) + Dword(header.compression) + std::string(12, '\0') +
         Dword(header.colors) + Dword(0);
}

const std::string kRedBlue("\0\0\xFF\0\xFF\0\0\0", 8);  // a palette of two

/// A picture of 3 by 2: red, blue, blue above blue, blue, red.
const std::vector<COLORREF> kPixels = {kRed, kBlue, kBlue, kBlue, kBlue, kRed};
const std::string kOneBit = Bytes({.bits = 1}) + kRedBlue + "\xC0___\x60___";

TEST(ReadDib, TakesEveryDepthAndBothDirections) {
  const std::string red("\0\0\xFF", 3);
  const std::string blue("\xFF\0\0", 3);
  const std::string top = red + blue + blue + "___";
  const std::string bottom = blue + blue + red + "___";
  const std::string rest(14 * 4, 'x');
  const std::pair<const char*, std::string> cases[] = {
      {"1 bit", kOneBit},
      {"4 bits, whole palette", Bytes({.bits = 4}) + kRedBlue + rest + "\x11\x0F__\x01\x1F__"},
      {"8 bits, two colours",
       Bytes({.bits = 8, .colors = 2}) + kRedBlue + "\1\1" + std::string("\0_\0\1\1_", 6)},
      {"24 bits", Bytes({}) + bottom + top},
      {"24 bits, unused palette", Bytes({.colors = 2}) + kRedBlue + bottom + top},
      {"24 bits, top down", Bytes({.height = -2}) + top + bottom},
      {"more behind it", Bytes({}) + bottom + top + "junk"},
  };
  for (const auto& [name, bytes] : cases) {
    const auto picture = ReadDib(bytes);
    ASSERT_NE(picture, nullptr) << name;
    EXPECT_EQ(picture->size, (CSize{3, 2})) << name;
    EXPECT_EQ(picture->pixels, kPixels) << name;
  }
}

TEST(ReadDib, RefusesWhatMakesNoSense) {
  const std::string rows(64, '\0');
  const std::pair<const char*, std::string> cases[] = {
      {"older header", Bytes({.size = 12})},
      {"newer header", Bytes({.size = 108})},
      {"no width", Bytes({.width = 0})},
      {"width below 0", Bytes({.width = -3})},
      {"no height", Bytes({.height = 0})},
      {"least height", Bytes({.height = INT_MIN})},
      {"greatest size", Bytes({.width = INT_MAX, .height = INT_MAX})},
      {"greatest size of bits", Bytes({.width = INT_MAX, .height = INT_MAX, .bits = 1})},
      {"two planes", Bytes({.planes = 2})},
      {"16 bits", Bytes({.bits = 16})},
      {"no bits", Bytes({.bits = 0})},
      {"run lengths", Bytes({.bits = 8, .compression = 1, .colors = 2})},
      {"palette larger than the depth", Bytes({.bits = 1, .colors = 3})},
      {"palette larger than the data", Bytes({.colors = UINT_MAX})},
      {"colour that isn't in the palette", Bytes({.bits = 8, .colors = 1}) + "\1\1\1\1\1\1\1\1"},
  };
  for (const auto& [name, bytes] : cases) EXPECT_EQ(ReadDib(bytes + rows), nullptr) << name;
  for (std::size_t size = 0; size < kOneBit.size(); ++size) {
    EXPECT_EQ(ReadDib(std::string_view(kOneBit).substr(0, size)), nullptr) << size << " bytes";
  }
}

TEST(WriteDib, IsReadBackAtEveryRowPadding) {
  for (LONG width = 1; width <= 5; ++width) {
    BitmapDescription picture{{width, 3}, {}};
    for (LONG i = 0; i < width * 3; ++i) {
      picture.pixels.push_back(RGB(static_cast<BYTE>(i), 0xFE, static_cast<BYTE>(200 - i)));
    }
    const auto read = ReadDib(WriteDib(picture));
    ASSERT_NE(read, nullptr) << width;
    EXPECT_EQ(read->pixels, picture.pixels) << width;
  }
  EXPECT_EQ(WriteDib({{3, 2}, {5, kRed}}), "");
  EXPECT_EQ(WriteDib({{3, 2}, {7, kRed}}), "");
  EXPECT_EQ(WriteDib({{0, 2}, {}}), "");
}

TEST(LoadImage, MapsJustTheThreeGreysWhenAsked) {
  test::ScriptedPlatform platform;
  platform.facts.colors = {
      {SYSTEM_COLOR_FACE, 1}, {SYSTEM_COLOR_SHADOW, 2}, {SYSTEM_COLOR_LIGHT, 3}};
  ResourceModule module;
  const BitmapDescription greys{{4, 1}, {0xC0C0C0, 0x808080, 0xDFDFDF, 0xC0C0C1}};
  module.AddResource(RESOURCE_BITMAP, 7, WriteDib(greys));

  const auto mapped = LoadImage(&module, 0x50007, IMAGE_DEFAULT_SIZE | IMAGE_MAP_3D_COLORS);
  EXPECT_EQ(mapped->pixels, (std::vector<COLORREF>{1, 2, 3, 0xC0C0C1}));
  EXPECT_EQ(LoadImage(&module, 7, IMAGE_DEFAULT_SIZE)->pixels, greys.pixels);
}

TEST(CBitmap, KeepsItsPictureWhenALoadFails) {
  test::ScriptedPlatform platform;
  platform.modules.system.AddResource(RESOURCE_BITMAP, 7, kOneBit);
  platform.modules.system.AddResource(RESOURCE_BITMAP, 8, "broken");
  CBitmap bitmap;
  ASSERT_TRUE(bitmap.LoadBitmap(nullptr, 7));
  const HBITMAP handle = bitmap.GetSafeHandle();
  EXPECT_FALSE(bitmap.LoadBitmap(nullptr, 8));
  EXPECT_FALSE(bitmap.LoadBitmap(nullptr, 9));
  EXPECT_EQ(bitmap.GetSafeHandle(), handle);
  EXPECT_FALSE(bitmap.Attach(nullptr));
  EXPECT_EQ(bitmap.GetSafeHandle(), nullptr);
}

TEST(LoadCursor, GivesOnePointerForOneResource) {
  test::ScriptedPlatform platform;
  platform.modules.system.AddResource(RESOURCE_CURSOR, 5, Dword(0x80000002) + kOneBit);
  platform.modules.system.AddResource(RESOURCE_ICON, 5, Dword(0) + kOneBit);
  platform.modules.system.AddResource(RESOURCE_CURSOR, 6, Dword(0));
  platform.modules.system.AddResource(RESOURCE_CURSOR, 7, "xyz");
  const HCURSOR cursor = LoadCursor(nullptr, 5);
  ASSERT_NE(cursor, nullptr);
  EXPECT_EQ(cursor->id, 5);
  EXPECT_EQ(cursor->hot_spot, (CPoint{2, 0x8000}));
  EXPECT_EQ(cursor->picture.pixels, kPixels);
  EXPECT_EQ(LoadCursor(nullptr, 5), cursor);
  EXPECT_NE(LoadIcon(nullptr, 5), cursor);
  for (UINT id : {6U, 7U, 8U}) EXPECT_EQ(LoadCursor(nullptr, id), nullptr) << id;

  // Another module at the same address, or a changed one, is not taken for the first.
  platform.modules.system.AddResource(RESOURCE_CURSOR, 5, Dword(1) + kOneBit);
  EXPECT_EQ(LoadCursor(nullptr, 5)->hot_spot, (CPoint{1, 0}));
  EXPECT_EQ(cursor->hot_spot, (CPoint{2, 0x8000}));
}

}  // namespace
}  // namespace dq
