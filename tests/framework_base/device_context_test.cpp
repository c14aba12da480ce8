// What is drawn, as a recording device takes it down: 7 pixels a character, 13 a line.

#include "tests/support/doubles.h"

namespace dq::test {
namespace {

constexpr LONG kMost = std::numeric_limits<LONG>::max(), kLeast = std::numeric_limits<LONG>::min();

/// What has been taken down since the last time, with ";" for line ends.
std::string Taken(RecordingDC& dc) {
  std::string text = dc.Text();
  std::ranges::replace(text, '\n', ';');
  dc.Clear();
  return text;
}

struct Drawing : testing::Test {
  Drawing() { dc.SetBkMode(TRANSPARENT); }
  RecordingDC dc;
};

/// The flags that letters stand for.
UINT Flags(std::string_view letters) {
  constexpr std::pair<char, UINT> kLetters[] = {
      {'1', DT_SINGLELINE}, {'.', DT_END_ELLIPSIS}, {'w', DT_WORDBREAK}, {'r', DT_RIGHT},
      {'c', DT_CENTER},     {'v', DT_VCENTER},      {'b', DT_BOTTOM},    {'o', DT_NOCLIP},
      {'t', DT_EXPANDTABS}, {'&', DT_NOPREFIX},     {'-', DT_LEFT}};
  UINT flags = 0;
  for (const auto& [letter, flag] : kLetters) {
    if (letters.find(letter) != letters.npos) flags |= flag;
  }
  return flags;
}

TEST_F(Drawing, TextsAreBrokenAlignedShortenedAndMarkedInTheirRectangle) {
  // A rectangle at 10,20 of a width and a height. In texts _ is a blank, ~ a tab, | a line feed.
  for (const auto& [flags, width, height, text, result] : Cases<5>(R"(
    -   => 70 => 50 => a|b|c|d     => 52 text 10,20 "a";text 10,33 "b";text 10,46 "c";clip 10,20 80,70;text 10,59 "d";
    -   => 70 => 50 => a|          => 13 text 10,20 "a";
    -   => 70 => 50 => ||          => 26
    -   => 70 => 50 =>             => 13
    -   => 70 => 13 => a|b         => 13 text 10,20 "a";
    1   => 70 => 50 => a|b         => 13 text 10,20 "a\x0ab";
    r   => 70 => 50 => abc|d       => 26 text 59,20 "abc";text 73,33 "d";
    c   => 70 => 50 => abc         => 13 text 34,20 "abc";
    1v  => 70 => 50 => a           => 31 text 10,38 "a";
    1b  => 70 => 50 => a           => 50 text 10,57 "a";
    v   => 70 => 50 => a           => 13 text 10,20 "a";
    1v  => 70 => 5  => a           => 9 clip 10,20 80,25;text 10,16 "a";
    1   => 14 => 50 => abcdef      => 13 clip 10,20 24,70;text 10,20 "abc";
    1o  => 14 => 50 => abcdef      => 13 text 10,20 "abcdef";
    o   => 14 => 5  => a|bcd       => 26 text 10,20 "a";text 10,33 "bcd";
    1r  => 14 => 50 => abc         => 13 clip 10,20 24,70;text 3,20 "abc";
    1.  => 35 => 50 => abcdef      => 13 text 10,20 "ab...";
    1.  => 42 => 50 => abcdef      => 13 text 10,20 "abcdef";
    1.  => 41 => 50 => aä€def      => 13 text 10,20 "aä...";
    1.r => 37 => 50 => abcdef      => 13 text 12,20 "ab...";
    1.  => 10 => 50 => abc         => 13 clip 10,20 20,70;text 10,20 "..";
    .   => 28 => 50 => abcde|f     => 26 text 10,20 "a...";text 10,33 "f";
    w   => 35 => 99 => ab cd ef    => 26 text 10,20 "ab cd";text 10,33 "ef";
    w   => 41 => 99 => ab cd ef    => 26 text 10,20 "ab cd";text 10,33 "ef";
    w   => 34 => 99 => ab cd ef    => 39 text 10,20 "ab";text 10,33 "cd";text 10,46 "ef";
    w   => 28 => 99 => ab__~cd__|e => 39 text 10,20 "ab";text 10,33 "cd  ";text 10,46 "e";
    w   => 21 => 99 => ab cd__|e   => 39 text 10,20 "ab";text 10,33 "cd";text 10,46 "e";
    w   => 14 => 99 => a bcd e     => 39 text 10,20 "a";clip 10,20 24,119;text 10,33 "bcd";text 10,46 "e";
    w   => 21 => 99 => __abc d     => 26 clip 10,20 31,119;text 10,20 "  ab";text 10,33 "d";
    w   => 7  => 99 => ____        => 13 clip 10,20 17,119;text 10,20 "  ";
    w1  => 14 => 99 => a b c       => 13 clip 10,20 24,119;text 10,20 "a b";
    wc  => 35 => 99 => ab cd e     => 26 text 10,20 "ab cd";text 24,33 "e";
    w.  => 28 => 99 => a bcdef     => 26 text 10,20 "a";text 10,33 "b...";
    -   => 70 => 50 => S&ave &as   => 13 text 10,20 "Save as";fill 17,32 24,33 000000;
    -   => 70 => 50 => R&&D && &   => 13 text 10,20 "R&D & ";
    -   => 70 => 50 => x&ä         => 13 text 10,20 "xä";fill 17,32 24,33 000000;
    &   => 70 => 50 => R&&&D       => 13 text 10,20 "R&&&D";
    r   => 70 => 50 => a|b&c       => 26 text 73,20 "a";text 66,33 "bc";fill 73,45 80,46 000000;
    1.  => 28 => 50 => &abcdef     => 13 text 10,20 "a...";fill 10,32 17,33 000000;
    1.  => 28 => 50 => abcd&ef     => 13 text 10,20 "a...";
    -   => 70 => 50 => a~b         => 13 text 10,20 "a\x09b";
    t   => 200 => 50 => ~a~&b      => 13 text 66,20 "a";text 122,20 "b";fill 122,32 129,33 000000;
    t   => 200 => 50 => 12345678~b => 13 text 10,20 "12345678";text 122,20 "b";
    tr  => 70 => 50 => a~b         => 13 text 17,20 "a";text 73,20 "b";
    tw  => 70 => 50 => a~bcd e     => 26 text 10,20 "a";text 10,33 "bcd e";
    t1. => 77 => 50 => a~bcdefg    => 13 text 10,20 "a";text 66,20 "...";)")) {
    std::string given = text;
    for (const auto& [sign, meaning] : {std::pair('_', ' '), {'~', '\t'}, {'|', '\n'}}) {
      std::ranges::replace(given, sign, meaning);
    }
    RecordingDC fresh;
    fresh.SetBkMode(TRANSPARENT);
    const CRect rect{10, 20, 10 + std::stoi(width), 20 + std::stoi(height)};
    const std::string bottom = std::to_string(fresh.DrawText(given, rect, Flags(flags)));
    const std::string drawn = Taken(fresh);
    EXPECT_EQ(bottom + (drawn.empty() ? "" : " ") + drawn, result) << flags << ' ' << text;
  }
  for (const std::string_view text : {"a\nb", "a\rb", "a\r\nb", "a\r\nb\r"}) {
    EXPECT_EQ(dc.DrawText(text, CRect{0, 0, 9, 99}, 0), 26) << text;
  }
}

TEST_F(Drawing, TextsAreMeasuredWithoutBeingDrawn) {
  const Rows<const char*, LONG, std::string_view, CSize> rows = {
      {"", 6, "abc\nd&e", {21, 26}}, {"w", 36, "ab cd longer", {42, 26}},
      {"1v", 2, "ab\ncd", {35, 13}}, {"t", 1, "a\tb", {63, 13}},
      {"w&", kMost, "&&", {14, 13}}, {"", -8, "", {0, 13}}};
  for (const auto& [flags, right, text, size] : rows) {
    CRect rect{1, 2, right, -5};
    const CRect given = rect;
    EXPECT_EQ(dc.DrawText(text, given, Flags(flags) | DT_CALCRECT), size.cy) << text;
    EXPECT_EQ(dc.DrawText(text, rect, Flags(flags) | DT_CALCRECT), size.cy) << text;
    EXPECT_EQ(rect, (CRect{1, 2, 1 + size.cx, 2 + size.cy})) << text;
  }
  EXPECT_EQ(dc.GetTextExtent("x\xE2\x82\xAC&"), (CSize{21, 13}));
  EXPECT_EQ(dc.GetFittingLength("x\xE2\x82\xACy", 20), 4u);
  EXPECT_EQ(dc.GetFittingLength("x", -1), 0u);
  ScriptedLocale locale;
  locale.SetCodePage(932);
  EXPECT_EQ(dc.GetTextExtent("\x83\x5C&\x83"), (CSize{21, 13}));
  dc.DrawText("\x81&&x", CRect{0, 0, 99, 99}, 0);
  EXPECT_EQ(Taken(dc), "text 0,0 \"\x81&x\";fill 7,12 14,13 000000;") << "a second half is no sign";
}

TEST_F(Drawing, FontsAreMeasuredInProportionAndNamedWhenTheyChange) {
  // A height and a width, and those of a line and of a character.
  std::istringstream rows(
      "0 0 13 7  26 0 26 14  -11 0 13 7  -22 5 26 5  1 0 1 1  -2147483648 0 1048576 564617 "
      "2147483647 -2147483648 1048576 1");
  for (LONG height, width, line, character; rows >> height >> width >> line >> character;) {
    LOGFONT description{.lfHeight = height, .lfWidth = width, .lfFaceName = "A \"B\""};
    CFont font;
    font.CreateFontIndirect(description);
    CFont* const own = dc.SelectObject(&font);
    TEXTMETRIC metrics;
    EXPECT_TRUE(dc.GetTextMetrics(&metrics) && metrics.tmAscent + metrics.tmDescent == line);
    EXPECT_TRUE(metrics.tmHeight == line && metrics.tmAveCharWidth == character) << height;
    EXPECT_EQ(dc.SelectObject(own), &font);
  }
  CFont bold;
  LOGFONT description{.lfHeight = -11, .lfWidth = 9, .lfWeight = 700, .lfFaceName = "A \"B\""};
  description.lfItalic = description.lfUnderline = description.lfStrikeOut = 1;
  bold.CreateFontIndirect(description);
  dc.SelectObject(&bold);
  dc.SetTextColor(RGB(1, 2, 3));
  dc.TextOut(5, 6, "a");
  dc.SelectObject(static_cast<CFont*>(nullptr));
  dc.SetTextColor(0);
  dc.TextOut(5, 6, "\"\\");
  EXPECT_EQ(Taken(dc), R"(font "A \"B\"" -11 wide 9 bold italic;text 5,6 "a" 010203;)"
                       R"(fill 5,18 14,19 010203;fill 5,14 14,15 010203;)"
                       R"(font "" 13;text 5,6 "\"\\";)");
  EXPECT_FALSE(dc.GetTextMetrics(nullptr));
}

TEST_F(Drawing, LinesAndRectangles) {
  CBrush red, hollow;
  CPen dots, wide, none;
  red.CreateSolidBrush(RGB(255, 0, 0));
  dots.CreatePen(PS_DOT, 0, RGB(0, 255, 0));
  wide.CreatePen(77, 3, 0);
  none.CreatePen(PS_NULL, 0, 0);
  const auto line = [&](CPen* pen, int x, int y) {
    CPen* const former = dc.SelectObject(pen);
    dc.MoveTo(5, 5);
    dc.LineTo(x, y);
    EXPECT_EQ(dc.SelectObject(former), pen);
    EXPECT_EQ(dc.GetCurrentPosition(), (CPoint{x, y}));
    return Taken(dc);
  };
  EXPECT_EQ(line(&dots, 9, 5), "line 5,5 9,5 00ff00 dot;");
  EXPECT_EQ(line(&wide, 7, 1), "line 5,5 7,1 000000 3;");
  EXPECT_EQ(line(&none, 9, 5) + line(&dots, 5, 5), "");
  const CRect rect{10, 20, 14, 24};
  EXPECT_EQ((dc.Rectangle(rect), Taken(dc)),
            "fill 10,20 14,24 ffffff;line 10,20 13,20 000000;line 13,20 13,23 000000;"
            "line 13,23 10,23 000000;line 10,23 10,20 000000;");
  dc.SelectObject(&none);
  CBrush* const own = dc.SelectObject(&red);
  EXPECT_EQ((dc.Rectangle(rect), Taken(dc)), "fill 10,20 14,24 ff0000;");
  EXPECT_EQ(dc.SelectObject(&hollow), &red);
  EXPECT_EQ((dc.Rectangle(rect), dc.FillRect(rect, nullptr), Taken(dc)), "");
  EXPECT_TRUE(dc.SelectObject(own) == &hollow &&
              dc.SelectObject(static_cast<CBrush*>(nullptr)) == own);
  EXPECT_EQ((dc.FrameRect({1, 2, 4, 4}, &red), dc.FrameRect(rect, nullptr), Taken(dc)),
            "fill 1,2 4,3 ff0000;fill 1,2 2,4 ff0000;fill 3,2 4,4 ff0000;fill 1,3 4,4 ff0000;");
  EXPECT_EQ((dc.Draw3dRect({1, 2, 4, 4}, 1, 2), Taken(dc)),
            "fill 1,2 4,3 010000;fill 1,2 2,4 010000;fill 3,2 4,4 020000;fill 1,3 4,4 020000;");
  EXPECT_EQ((dc.DrawFocusRect({0, 0, 3, 2}), dc.DrawFocusRect({5, 5, 6, 6}), Taken(dc)),
            "line 0,0 2,0 000000 dot;line 2,0 2,1 000000 dot;line 2,1 0,1 000000 dot;"
            "line 0,1 0,0 000000 dot;line 5,5 6,5 000000 dot;");
  EXPECT_EQ((dc.DrawEdge({0, 0, 9, 9}, EDGE_SUNKEN, BF_TOP | BF_MIDDLE), Taken(dc)),
            "fill 0,0 9,1 a0a0a0;fill 0,1 9,2 696969;fill 0,2 9,9 f0f0f0;");
  EXPECT_EQ((dc.DrawEdge({0, 0, 1, 9}, EDGE_RAISED, BF_RECT | BF_MIDDLE), Taken(dc)),
            "fill 0,0 1,1 e3e3e3;fill 0,0 1,9 e3e3e3;fill 0,0 1,9 696969;fill 0,8 1,9 696969;");
}

TEST_F(Drawing, ClippingIsToldWhereItMattersAndStateComesBack) {
  CFont font;
  font.CreateFontIndirect({.lfHeight = 26});
  dc.IntersectClipRect({10, 10, 100, 60});
  dc.FillSolidRect({0, 0, 50, 20}, 0);  // cut by itself
  dc.TextOut(10, 47, "in");
  EXPECT_EQ(Taken(dc), "fill 10,10 50,20 000000;text 10,47 \"in\";");
  EXPECT_EQ(dc.SaveDC(), 1);
  dc.IntersectClipRect({20, 0, 40, 90});
  EXPECT_EQ(dc.GetClipBox(), (CRect{20, 10, 40, 60}));
  EXPECT_TRUE(dc.SaveDC() == 2 && dc.SetTextColor(1) == 0 && dc.SetBkColor(2) == 0xFFFFFF);
  EXPECT_EQ(dc.SetBkMode(OPAQUE), TRANSPARENT);
  dc.SelectObject(&font);
  dc.MoveTo(30, 30);
  dc.TextOut(33, 40, "x");
  dc.MoveTo(20, 10);
  dc.LineTo(40, 10);
  dc.LineTo(40, 99);
  EXPECT_EQ(Taken(dc),
            "fill 33,40 40,60 020000;clip 20,10 40,60;font \"\" 26;"
            "text 33,40 \"x\" 010000;line 20,10 40,10 000000;");
  EXPECT_TRUE(dc.RestoreDC(-2) && !dc.RestoreDC(1) && !dc.RestoreDC(0) && !dc.RestoreDC(-1));
  EXPECT_TRUE(dc.GetBkMode() == TRANSPARENT && dc.GetTextColor() == 0 &&
              dc.GetBkColor() == 0xFFFFFF);
  EXPECT_TRUE(dc.GetCurrentPosition() == CPoint{} &&
              dc.GetCurrentFont().GetLogFont().lfHeight == 13);
  dc.TextOut(33, 40, "abcd");
  EXPECT_EQ(Taken(dc), "clip 10,10 100,60;font \"\" 13;text 33,40 \"abcd\";");
  dc.IntersectClipRect({0, 0, 5, 5});
  dc.FillSolidRect({0, 0, 99, 99}, 0);
  EXPECT_TRUE(dc.GetClipBox().IsRectEmpty() && dc.Text().empty());
  EXPECT_EQ(dc.DrawText("a", CRect{0, 0, 9, 9}, 0), 13);
}

TEST_F(Drawing, AnyNumbersAreSafe) {
  const LONG numbers[] = {kLeast, kLeast + 1, -1, 0, 1, 700, kMost - 1, kMost};
  CPen pen;
  pen.CreatePen(PS_SOLID, kMost, 0);
  dc.SelectObject(&pen);
  dc.SetBkMode(OPAQUE);
  CBitmap dot;
  dot.Attach(std::make_unique<BitmapDescription>(BitmapDescription{{1, 1}, {0}}));
  for (const LONG left : numbers) {
    for (const LONG top : numbers) {
      for (const LONG right : numbers) {
        dc.MoveTo(left, top);
        dc.LineTo(right, left);
        dc.TextOut(left, right, "text");
        dc.DrawBitmap(CPoint{left, right}, dot.GetSafeHandle());
        for (CRect rect : {CRect{left, top, right, top}, CRect{left, top, right, right}}) {
          dc.Rectangle(rect);
          dc.DrawFocusRect(rect);
          dc.DrawEdge(rect, ~0u, ~0u);
          for (const char* flags : {"-", "1v", "1b", "c", "r.", "w", "t"}) {
            CRect measured = rect;
            dc.DrawText("a\t&b c", rect, Flags(flags));
            dc.DrawText("a\t&b c", measured, Flags(flags) | DT_CALCRECT);
          }
        }
      }
    }
  }
  EXPECT_EQ(dc.Text().find("fill -"), std::string::npos);
  dc.Clear();
  dc.SelectObject(static_cast<CPen*>(nullptr));
  dc.MoveTo(kLeast, 5);
  dc.LineTo(kMost, 5);
  dc.MoveTo(kLeast, kLeast);
  dc.LineTo(kMost, kMost);
  dc.LineTo(kMost, 0);
  EXPECT_EQ(Taken(dc),
            "line -1048576,5 1048576,5 000000;"
            "line -1048576,-1048576 1048576,1048576 000000;");
}

TEST_F(Drawing, PicturesAreCutMaskedEmbossedAndStretched) {
  constexpr COLORREF kWhite = RGB(255, 255, 255), kPink = RGB(255, 0, 255), kBlue = RGB(0, 0, 200);
  // A strip of two pictures of 2 by 2.
  const BitmapDescription strip{{4, 2},
                                {kBlue, kWhite, kPink, kBlue,  //
                                 kPink, kBlue, kBlue, kWhite}};
  struct Pixels : RecordingDC {
    void PaintPicture(const CRect& place, const BitmapDescription& picture) override {
      RecordingDC::PaintPicture(place, picture);
      painted = picture.pixels;
    }
    std::vector<COLORREF> painted;
  } device;
  constexpr COLORREF kDark = 0xA0A0A0, kNone = kNoPixel;
  const auto paints = [&](const BitmapDrawing& how, std::vector<COLORREF> pixels) {
    return device.DrawBitmap(CRect{1, 2, 30, 40}, &strip, how) && device.painted == pixels;
  };
  EXPECT_TRUE(paints({}, strip.pixels));
  EXPECT_EQ(Taken(device), "picture 1,2 30,40 of 4x2 976ca824;");
  EXPECT_TRUE(paints({.part = CRect{2, 0, 4, 2}, .mask = kPink}, {kNone, kBlue, kBlue, kWhite}));
  EXPECT_TRUE(paints({.part = CRect{3, -1, 9, 1}}, {kBlue}));
  EXPECT_TRUE(paints({.part = CRect{0, 0, 2, 2}, .embossed = true}, {kDark, kNone, kDark, kDark}));
  EXPECT_TRUE(paints({.part = CRect{0, 0, 3, 2}, .mask = kPink, .embossed = true},
                     {kDark, kNone, kNone, kNone, kDark, kDark}));
  EXPECT_TRUE(paints({.part = CRect{2, 0, 4, 2}, .embossed = true}, {kDark, kDark, kDark, kWhite}));
  Taken(device);
  EXPECT_TRUE(device.DrawBitmap(CPoint{1020, 5}, &strip));
  EXPECT_EQ(Taken(device), "picture 1020,5 1024,7 of 4x2 976ca824;");
  EXPECT_TRUE(device.DrawBitmap(CPoint{2000, 5}, &strip));
  const BitmapDescription none, torn{{2, 2}, {0, 0, 0}}, odd{{3, 1}, {0, 0, 0, 0}};
  for (HBITMAP picture : {&none, &torn, &odd, static_cast<HBITMAP>(nullptr)}) {
    EXPECT_FALSE(device.DrawBitmap(CPoint{}, picture) || device.DrawBitmap(CRect{}, picture));
  }
  EXPECT_FALSE(device.DrawBitmap(CPoint{}, &strip, {.part = CRect{4, 0, 9, 9}}));
  EXPECT_EQ(Taken(device), "");
}

/// A letter for each pixel: how much of it there is, from " " to "#".
std::string Covered(std::string_view text, const CSize& size) {
  const auto picture = VectorPicture::Read(text);
  if (picture == nullptr) return "bad";
  std::string rows;
  const auto rendered = picture->Render(size);
  for (const COLORREF color : rendered->pixels) {
    rows += " .+#"[(255 - (color >> 24)) * 3 / 255];
    if (rows.size() % (static_cast<std::size_t>(size.cx) + 1) == static_cast<std::size_t>(size.cx))
      rows += '/';
  }
  return rows;
}

TEST(VectorPicture, CoversPixelsAtAnySize) {
  const Rows<std::string, CSize, std::string> rows = {
      {"2 2 f FF0000 R 0.5 0 1.5 1", {2, 2}, ".#/  /"},
      {"2 2 f FF0000 R 0.5 0 1.5 1", {4, 4}, " ###/ ###/    /    /"},
      {"4 4 f 0000FF R 0 0 4 4 M 1 1 L 1 3 3 3 3 1 Z", {4, 4}, "####/#  #/#  #/####/"},
      {"4 4 f 0 f 00FF00 R 0 0 1 1", {4, 4}, "bad"},
      {"3 3 s 1 000000 M -9 1.5 L 9 1.5", {3, 3}, "   /###/   /"},
      {"4 4 f 000000 O 2 2 2 2", {4, 4}, " ++ /+##+/+##+/ ++ /"},
      {"4 4 f 000000 M 0 0 C 0 4 4 4 4 0 Z", {4, 4}, "+##+/+##+/ ++ /    /"},
      {"4 4 f 000000 M 0 0 L 4 0 0 4", {4, 4}, "###./##. /#.  /.   /"},
      {"4 4 f 000000 M -4 0 L 8 6 -4 6", {4, 4}, "    /    /+   /##+ /"},
      {"1 1 f 000000 R -9 -9 99 99", {5000, 1}, ""}};
  for (const auto& [text, size, covered] : rows) EXPECT_EQ(Covered(text, size), covered) << text;
  for (const char* bad : {"", "16", "0 4", "2 1025", "2 2 R 0 0 1 1", "2 2 f FF00",
                          "2 2 f FF0000 L 1 1", "2 2 f FF0000 M 0 0 C 1 1", "2 2 s 0 FF0000",
                          "2 2 f FF0000 M nan 1", "2 2 f FF0000 R 0 0 1"}) {
    EXPECT_EQ(VectorPicture::Read(bad), nullptr) << bad;
  }
}

TEST(VectorPicture, StandsBehindABitmapAndIsPaintedAsFineAsTheDevice) {
  ResourceModule module;
  EXPECT_TRUE(AddPicture(module, 7, "2 1 f C0C0C0 R 0 0 1.25 1") && !AddPicture(module, 8, "2"));
  CBitmap bitmap;
  ASSERT_TRUE(bitmap.LoadBitmap(&module, 7) && !CBitmap().LoadBitmap(&module, 8));
  EXPECT_EQ(bitmap.GetSafeHandle()->pixels, (std::vector<COLORREF>{0xC0C0C0, kPictureMask}));
  struct Fine : RecordingDC {
    void PaintPicture(const CRect&, const BitmapDescription& picture) override {
      painted = picture;
    }
    double GetPictureScale() const override { return scale; }
    double scale = 2;
    BitmapDescription painted;
  } device;
  const auto painted = [&](const CRect& place, const BitmapDrawing& how) {
    EXPECT_TRUE(device.DrawBitmap(place, bitmap.GetSafeHandle(), how));
    return device.painted.pixels;
  };
  constexpr COLORREF kGrey = 0xC0C0C0, kDark = 0xA0A0A0, kWhite = 0xFFFFFF;
  EXPECT_EQ(painted({5, 5, 7, 6}, {}), (std::vector<COLORREF>{kGrey, kGrey, 0x7FC0C0C0, kNoPixel,
                                                              kGrey, kGrey, 0x7FC0C0C0, kNoPixel}));
  EXPECT_EQ(painted({5, 5, 6, 6}, {.part = CRect{1, 0, 2, 1}}),
            (std::vector<COLORREF>{0x7FC0C0C0, kNoPixel, 0x7FC0C0C0, kNoPixel}));
  device.scale = 0;
  EXPECT_EQ(painted({5, 5, 7, 6}, {.mask = kPictureMask}),
            (std::vector<COLORREF>{kGrey, kNoPixel}));
  ScriptedPlatform platform;
  platform.scheme.colors = {{15, 0x112233}, {16, kDark}, {20, kWhite}};
  device.scale = 1;
  const auto mapped = LoadImage(&module, 7, IMAGE_MAP_3D_COLORS);
  EXPECT_TRUE(device.DrawBitmap(CPoint{}, mapped.get()));
  EXPECT_EQ(device.painted.pixels.front(), 0x112233U);
  device.scale = 2;
  EXPECT_TRUE(device.DrawBitmap(CRect{0, 0, 4, 2}, mapped.get(), {.embossed = true}));
  EXPECT_EQ(std::vector<COLORREF>(device.painted.pixels.begin() + 16, device.painted.pixels.end()),
            (std::vector<COLORREF>{kDark, kDark, kDark, kDark, kDark, kWhite, kWhite, kNoPixel,  //
                                   kDark, kDark, kDark, kDark, kDark, kWhite, kWhite, kNoPixel}));
}

TEST(Pages, FollowOneAnotherAndOutsideThemNothingIsDrawn) {
  DeviceFormat sheet{.area = {90, 80}, .page = {100, 110}, .offset = {5, 15}};
  sheet.pixels_per_inch = 300;
  sheet.has_pages = true;
  RecordingDC paper(sheet);
  std::string caps;
  for (const int cap : {HORZRES, VERTRES, LOGPIXELSX, LOGPIXELSY, PHYSICALWIDTH, PHYSICALHEIGHT,
                        PHYSICALOFFSETX, PHYSICALOFFSETY, DeviceCap{7}}) {
    caps += std::to_string(paper.GetDeviceCaps(cap)) + ' ';
  }
  EXPECT_EQ(caps, "90 80 300 300 100 110 5 15 0 ");
  EXPECT_TRUE(paper.IsPrinting() && !RecordingDC().IsPrinting());
  paper.SetBkMode(TRANSPARENT);
  const auto draw = [&] { paper.DrawText("x", CRect{0, 0, 5, 99}, 0); };
  draw();
  EXPECT_TRUE(paper.StartPage() < 0 && paper.EndPage() < 0 && paper.EndDoc() < 0);
  EXPECT_TRUE(paper.AbortDoc() < 0 && paper.StartDoc("Rows") > 0);
  draw();
  EXPECT_TRUE(paper.StartDoc("x") < 0 && paper.EndPage() < 0 && paper.StartPage() > 0);
  draw();
  EXPECT_TRUE(paper.StartPage() < 0 && paper.EndPage() > 0 && paper.StartPage() > 0);
  draw();
  EXPECT_TRUE(paper.EndDoc() > 0 && paper.StartDoc("") > 0 && paper.StartPage() > 0);
  EXPECT_TRUE(paper.AbortDoc() > 0 && paper.EndDoc() < 0);
  EXPECT_EQ(Taken(paper),
            "document \"Rows\";page;clip 0,0 5,80;text 0,0 \"x\";end page;page;"
            "clip 0,0 5,80;text 0,0 \"x\";end page;end document;"
            "document \"\";page;abort;");
  RecordingDC screen;
  EXPECT_TRUE(screen.StartDoc("") < 0 && screen.EndPage() < 0 && screen.EndDoc() < 0 &&
              screen.AbortDoc() < 0 && screen.Text().empty());
}

}  // namespace
}  // namespace dq::test
