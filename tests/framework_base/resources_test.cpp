#include "dqlib/platform/checksum.h"
#include "tests/support/doubles.h"

namespace dq::test {
namespace {

constexpr UINT kId = 50000;

/// A chain of an older and a newer module, and a third that may become the current one.
struct ResourceChain : testing::Test {
  ResourceChain() {
    older_.AddString(kId, "older");
    older_.AddString(kId + 1, "only older");
    older_.AddResource(RESOURCE_BITMAP, 5, "x");
    newer_.AddString(kId, "newer");
    newer_.AddString(kId + 1, "");
    current_.AddString(kId, "current");
  }
  ~ResourceChain() override { AfxSetResourceHandle(former_); }

  ResourceModule older_, newer_, current_;
  HINSTANCE former_ = AfxGetResourceHandle();
  std::optional<CDynLinkLibrary> older_link_{&older_}, newer_link_{&newer_};
};

TEST_F(ResourceChain, StringIsTheCurrentModulesThenTheNewestLinkedOnesThenTheFrameworks) {
  AFX_EXTENSION_MODULE state;
  const CDynLinkLibrary unready(state), again(&newer_);
  newer_link_.reset();
  EXPECT_EQ(AfxFindString(kId), "newer") << "by its other link";
  AfxSetResourceHandle(&current_);
  EXPECT_TRUE(AfxFindString(kId) == "current" && !AfxFindString(kId + 2));
  EXPECT_EQ(AfxFindString(kId + 1), "only older") << "an empty text is none";
  EXPECT_EQ(AfxFindString(61696), "Invalid filename.");
  current_.AddString(61696, "own");
  EXPECT_EQ(AfxFindString(61696), "own");
  older_link_.reset();
  EXPECT_TRUE(!AfxFindString(kId + 1) && CDynLinkLibrary::head() == &again);
  std::string all;
  for (UINT id = 0; id < 70'000; ++id) {
    const auto text = FrameworkModule().String(id);
    if (text) all += std::to_string(id) + "=" + std::string(*text) + "\n";
  }
  EXPECT_EQ(platform::Checksum(all), 0xE8443C5AU) << all;
}

TEST_F(ResourceChain, ATranslationComesBeforeItsModuleWhereverThatComes) {
  ResourceModule first, second;
  first.AddString(kId, "first");
  first.AddString(kId + 1, "");
  first.AddResource(RESOURCE_BITMAP, 5, "y");
  const CDynLinkLibrary none(nullptr, &older_);
  std::optional<CDynLinkLibrary> link(std::in_place, &first, &older_);
  const CDynLinkLibrary newest(&newer_), again(&older_);
  EXPECT_EQ(AfxFindString(kId), "first") << "before the newest link of its module";
  AfxSetResourceHandle(&older_);
  EXPECT_TRUE(AfxFindString(kId) == "first" && AfxFindString(kId + 1) == "only older");
  EXPECT_EQ(AfxFindResourceHandle(5, RESOURCE_BITMAP), &first);
  second.AddString(kId, "second");
  {
    const CDynLinkLibrary other(&second, &older_), of_framework(&second, &FrameworkModule());
    second.AddString(61696, "Kein Dateiname.");
    EXPECT_TRUE(AfxFindString(kId) == "second" && AfxFindString(61696) == "Kein Dateiname.");
  }
  AfxSetResourceHandle(&current_);
  EXPECT_EQ(AfxFindString(kId), "current");
  AfxSetResourceHandle(&older_);
  link.reset();
  EXPECT_EQ(AfxFindString(kId), "older");
}

TEST_F(ResourceChain, ResourceIsSearchedByTheLowHalfOfItsName) {
  AfxSetResourceHandle(&current_);
  for (const UINT id : {5, 0x70005}) EXPECT_EQ(AfxFindResourceHandle(id, RESOURCE_BITMAP), &older_);
  EXPECT_EQ(AfxFindResourceHandle(kId / 16 + 1, RESOURCE_STRING), &current_);
  EXPECT_EQ(AfxFindResourceHandle(5, RESOURCE_ICON), &current_) << "where none has it";
  AfxSetResourceHandle(nullptr);
  EXPECT_EQ(AfxFindResourceHandle(5, RESOURCE_ICON), nullptr);
  EXPECT_EQ(AfxFindResourceHandle(61696 / 16 + 1, RESOURCE_STRING), &FrameworkModule());
}

TEST_F(ResourceChain, WorkersLoadStringsWhileTheCurrentModuleIsSwitched) {
  std::thread worker([] {
    for (int i = 0; i < 2000; ++i) EXPECT_TRUE(AfxFindString(kId));
  });
  for (int i = 0; i < 2000; ++i) AfxSetResourceHandle(i % 2 == 0 ? &current_ : nullptr);
  worker.join();
}

TEST(ResourceModule, AddedOnesReplaceTheTablesAndArentTheCallers) {
  constexpr StringRow kTable[] = {{15, "fifteen"}, {16, "sixteen"}, {40, "forty"}};
  ResourceModule module(kTable);
  module.AddString(16, "added");
  module.AddString(17, "new");
  module.AddString(160, "x");
  std::string strings, blocks;
  for (UINT id = 0; id < 200; ++id) {
    if (const auto text = module.String(id)) strings += std::string(*text) + " ";
    if (module.Find(RESOURCE_STRING, static_cast<WORD>(id))) blocks += std::to_string(id) + " ";
  }
  EXPECT_EQ(strings, "fifteen added new forty x ");
  EXPECT_EQ(blocks, "1 2 3 11 ") << "of sixteen strings each, one of which is there";

  std::string data("\0picture", 8);
  module.AddResource(RESOURCE_BITMAP, 7, data);
  data.assign(8, 'x');
  EXPECT_EQ(module.Find(RESOURCE_BITMAP, 7)->data, std::string_view("\0picture", 8));
  EXPECT_TRUE(!module.Find(RESOURCE_BITMAP, 8) && !module.Find(RESOURCE_ICON, 7));
  module.AddResource(RESOURCE_BITMAP, 7, "changed");
  EXPECT_EQ(module.Find(RESOURCE_BITMAP, 7)->data, "changed");
}

TEST(ExtensionModule, TakesUpTheClassesEnteredSinceTheRawAttachStep) {
  // Without a module it is not loaded.
  ResourceModule module;
  for (const bool given : {true, false}) {
    AFX_EXTENSION_MODULE state;
    const CRuntimeClass* const before = ProgramClassList().head;
    AfxRawAttachExtensionModule();
    const CRuntimeClass guest("Guest", 1, nullptr, RUNTIME_CLASS(CObject));
    AfxRawAttachExtensionModule();
    const CRuntimeClass second("Second", 1, nullptr, RUNTIME_CLASS(CObject));
    EXPECT_EQ(AfxInitExtensionModule(state, given ? &module : nullptr), given);
    EXPECT_TRUE(state.bInitialized == given && ProgramClassList().head == before);
    EXPECT_EQ(CRuntimeClass::FromName("Guest"), nullptr) << "its module isn't in the chain";
    {
      const CDynLinkLibrary link(state);
      EXPECT_EQ(CRuntimeClass::FromName("Guest"), given ? &guest : nullptr);
      EXPECT_EQ(CRuntimeClass::FromName("Second"), given ? &second : nullptr);
      EXPECT_EQ(CRuntimeClass::FromName("CBrush"), RUNTIME_CLASS(CBrush));
    }
    EXPECT_EQ(CRuntimeClass::FromName("Guest"), nullptr);
  }
}

constexpr COLORREF kRed = RGB(0xFF, 0, 0), kBlue = RGB(0, 0, 0xFF);

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
  for (const std::string& bytes :
       {kOneBit, Header(4) + kPalette + std::string(14 * 4, 'x') + "\x11\x0F__\x01\x1F__",
        Header(8, 2) + kPalette + "\1\1" + std::string("\0_\0\1\1_", 6),
        Header(24) + bottom + top + "junk behind it", Header(24, 2) + kPalette + bottom + top,
        Header(24, 0, -2) + top + bottom}) {
    const auto picture = ReadDib(bytes);
    ASSERT_NE(picture, nullptr) << bytes;
    EXPECT_TRUE(picture->size == (CSize{3, 2}) && picture->pixels == kPixels) << bytes;
  }
}

TEST(ReadDib, RefusesWhatMakesNoSense) {
  const std::string ones(64, '\1');
  // Numbers of the header, by their places.
  const Rows<int, int, int> rows = {{0, 4, 12}, {4, 4, 0},   {4, 4, -1}, {8, 4, 0}, {8, 4, INT_MIN},
                                    {12, 2, 2}, {14, 2, 16}, {16, 4, 1}, {32, 4, 3}};
  for (const auto& [at, size, number] : rows) {
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
  for (const auto& [width, size] : {std::pair(1, 52u), {2, 64u}, {3, 76u}, {4, 76u}, {11, 148u}}) {
    BitmapDescription picture{{width, 3}, {}};
    for (int i = 0; i < width * 3; ++i) picture.pixels.push_back(RGB(1, static_cast<BYTE>(i), 3));
    EXPECT_EQ(WriteDib(picture).size(), size);
    const auto read = ReadDib(WriteDib(picture));
    ASSERT_NE(read, nullptr) << width;
    EXPECT_EQ(read->pixels, picture.pixels) << width;
  }
  for (const auto& [width, count] : {std::pair(3, 5U), {3, 7U}, {3, 9U}, {0, 0U}}) {
    EXPECT_EQ(WriteDib({{width, 2}, std::vector<COLORREF>(count, kRed)}), "") << count;
  }
}

TEST(LoadImage, MapsJustTheThreeGreysWhenAsked) {
  ScriptedPlatform platform;
  platform.scheme.colors = {{15, 1}, {16, 2}, {22, 3}};
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
  EXPECT_TRUE(LoadCursor(&module, 5)->hot_spot == (CPoint{1, 0}) && cursor->hot_spot.x == 2);
}

TEST(Rectangle, MeetsAndUnitesOthersAndWrapsAtTheEndsOfNumbers) {
  const CRect a{0, 0, 10, 10}, b{5, -5, 20, 5}, flat{3, 3, 3, 9}, low{0, 5, 1, 5}, dot{0, 0, 1, 1};
  EXPECT_TRUE(Intersect(a, b) == (CRect{5, 0, 10, 5}) && Intersect(b, a) == Intersect(a, b));
  EXPECT_TRUE(Unite(a, b) == (CRect{0, -5, 20, 10}) && Unite(b, a) == Unite(a, b));
  EXPECT_TRUE(Intersect(a, {10, 0, 20, 10}) == CRect{} && Unite(flat, low) == CRect{});
  EXPECT_TRUE(Unite(a, flat) == a && Unite(flat, a) == a);
  EXPECT_TRUE(flat.IsRectEmpty() && low.IsRectEmpty() && !dot.IsRectEmpty());
  EXPECT_TRUE(dot.PtInRect({0, 0}) && !dot.PtInRect({1, 0}) && !dot.PtInRect({0, 1}));
  EXPECT_FALSE(dot.PtInRect({-1, 0}) || dot.PtInRect({0, -1}));
  CRect moved{1, 2, INT_MAX, 3};
  moved.OffsetRect(1, -4);
  EXPECT_TRUE(moved == (CRect{2, -2, INT_MIN, -1}) && moved.Size() == (CSize{INT_MAX - 1, 1}));
}

TEST(StockFonts, AreAsTheyAlwaysWere) {
  std::string all;
  for (char number = 0; number < 20; ++number) {
    const LOGFONT* const font = GetStockFont(number);
    if (font != nullptr) (all += number).append(reinterpret_cast<const char*>(font), sizeof *font);
  }
  EXPECT_EQ(platform::Checksum(all), 0xA065877BU) << testing::PrintToString(all);
}

}  // namespace
}  // namespace dq::test
