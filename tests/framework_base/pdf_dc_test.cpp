// Pages as readers of PDF see them.

#include "tests/support/doubles.h"
#include "tests/support/forked_process.h"
#include "tests/support/forwarding_files.h"
#include "tests/support/temp_directory.h"

namespace dq::test {
namespace {

/// A square inch without margins, of 300 pixels a side.
constexpr PageFormat kSquareInch{.paper = {2'540, 2'540}, .margin = 0};

/// The bytes of a document that `draw` draws.
std::string Document(const PageFormat& format, const std::function<void(PdfDC&)>& draw) {
  std::string bytes;
  const auto take = [&](std::string_view piece) {
    EXPECT_LT(piece.size(), 200'000u);
    return bytes += piece, platform::Error{};
  };
  PdfDC dc(take, format);
  dc.SetBkMode(TRANSPARENT);
  EXPECT_GT(dc.StartDoc("Rows & \xC3\xA4\xF0\x9F\x98\x80"), 0);
  draw(dc);
  EXPECT_TRUE(dc.EndDoc() > 0 && dc.GetError().ok());
  return bytes;
}

/// What a command of the shell says of a document, which is a.pdf there.
std::string Told(const std::string& bytes, const std::string& command) {
  const TempDirectory dir;
  dir.Put("a.pdf", bytes);
  return RunShell(dir.path(), command);
}

TEST(PdfDC, PagesHaveTheirSizeTitleAndTexts) {
  const auto draw = [](PdfDC& dc) {
    dc.SetCreationTime({.wYear = 2001, .wMonth = 2, .wDay = 3, .wHour = 4, .wMinute = 5});
    for (const char* text : {"(one) \\ \xC3\xA4\xE2\x82\xAC", "tw\xFFo \xC3\xB1\xCE\xB1\x01."}) {
      EXPECT_GT(dc.StartPage(), 0);
      dc.TextOut(0, 0, text);
      EXPECT_GT(dc.EndPage(), 0);
    }
  };
  const std::string bytes = Document({}, draw);
  EXPECT_EQ(Document({}, draw), bytes);
  EXPECT_EQ(
      Told(bytes, "pdfinfo -isodates a.pdf | tr -s ' ' | grep 'Title\\|Creat\\|Pages\\|Page size'"),
      "Title: Rows & \xC3\xA4\xF0\x9F\x98\x80\nCreationDate: 2001-02-03T04:05:00Z\n"
      "Pages: 2\nPage size: 595.276 x 841.89 pts (A4)\n");
  EXPECT_EQ(Told(bytes, "pdftotext a.pdf -"),
            "(one) \\ \xC3\xA4\xE2\x82\xAC\n\n\ftw?o \xC3\xB1? .\n\n\f");
  // The table at its end knows where each object begins.
  const std::size_t table = std::stoul(bytes.substr(bytes.rfind("startxref") + 10));
  int objects = 0;
  for (std::size_t entry = bytes.find("f \n", table) + 3; bytes[entry + 17] == 'n'; entry += 20) {
    const std::string begin = std::to_string(++objects) + " 0 obj\n";
    EXPECT_EQ(bytes.substr(std::stoul(bytes.substr(entry, 10)), begin.size()), begin);
  }
  EXPECT_EQ(objects, 9);
}

TEST(PdfDC, FontsAreTheNearestAndTheirMeasuresTheReaders) {
  ScriptedLocale locale;
  locale.SetCodePage(1252);
  for (const auto& [face, pitch, fonts] : Cases<3>(R"(
      MS Sans Serif => 49 => Helvetica Helvetica-Bold Helvetica-Oblique Helvetica-BoldOblique
      => 49               => Courier Courier-Bold Courier-Oblique Courier-BoldOblique
      TIMES new => 34     => Times-Roman Times-Bold Times-Italic Times-BoldItalic
      => 18               => Times-Roman Times-Bold Times-Italic Times-BoldItalic
      Lucida Console => 0 => Courier Courier-Bold Courier-Oblique Courier-BoldOblique
      ? => 48             => Courier Courier-Bold Courier-Oblique Courier-BoldOblique
      ? => 0              => Helvetica Helvetica-Bold Helvetica-Oblique Helvetica-BoldOblique)")) {
    // All characters of the page 1252, sixteen in a line, whose ends must be where readers see
    // them.
    std::vector<int> ends;
    LOGFONT description{.lfHeight = -100, .lfPitchAndFamily = static_cast<BYTE>(std::stoi(pitch))};
    face.copy(description.lfFaceName, 31);
    const std::string bytes = Document({.margin = 0}, [&](PdfDC& dc) {
      for (const int style : {0, 1, 2, 3}) {
        description.lfWeight = style % 2 == 0 ? 599 : 600;
        description.lfItalic = static_cast<BYTE>(style / 2);
        CFont font;
        font.CreateFontIndirect(description);
        dc.StartPage();
        dc.SelectObject(&font);
        for (int first = 0x20; first < 0x100; first += 16) {
          std::string text(first == 0x70 ? 15 : 16, '\0');
          std::iota(text.begin(), text.end(), static_cast<char>(first));
          dc.TextOut(0, first * 9, text);
          ends.push_back(dc.GetTextExtent(text).cx);
        }
        dc.EndPage();
        dc.SelectObject(static_cast<CFont*>(nullptr));
      }
    });
    EXPECT_EQ(Told(bytes, "pdffonts a.pdf | tail -4 | cut -d' ' -f1 | paste -sd' '"), fonts + '\n');
    const std::string seen = "pdftotext -bbox a.pdf - | sed -n 's/.*xMax=.\\([0-9.]*\\).*/\\1/p'";
    std::istringstream stream(Told(bytes, seen));
    for (const int end : ends) {
      double points = 0;
      EXPECT_TRUE(stream >> points);
      EXPECT_NEAR(end, points * 300 / 72, 0.51) << face << pitch;
    }
    EXPECT_TRUE(stream >> std::ws && stream.eof());
  }
}

TEST(PdfDC, PixelsAreThoseOfTheDevice) {
  CPen red, dots, thick;
  red.CreatePen(PS_SOLID, 1, RGB(255, 0, 0));
  dots.CreatePen(PS_DOT, 2, RGB(0, 0, 255));
  thick.CreatePen(PS_SOLID, 3, RGB(0, 255, 0));
  const BitmapDescription picture{{2, 2}, {RGB(255, 0, 0), 0, RGB(0, 255, 0), RGB(0, 0, 255)}};
  const std::string bytes = Document(kSquareInch, [&](PdfDC& dc) {
    dc.StartPage();
    dc.FillSolidRect({1, 1, 4, 3}, RGB(0, 0, 255));
    const auto line = [&](CPen& pen, CPoint from, CPoint to) {
      dc.SelectObject(&pen);
      dc.MoveTo(from.x, from.y);
      dc.LineTo(to.x, to.y);
    };
    line(red, {5, 1}, {9, 1}), line(red, {9, 3}, {5, 3});
    line(red, {10, 1}, {10, 4}), line(red, {12, 4}, {12, 1});
    line(thick, {1, 5}, {5, 5}), line(dots, {7, 6}, {16, 6});
    dc.DrawBitmap(CRect{1, 8, 5, 12}, &picture, {.mask = 0});
    dc.DrawBitmap(CRect{6, 8, 8, 10}, &picture);
    dc.IntersectClipRect({10, 8, 14, 13});
    dc.SelectObject(&red);
    dc.Rectangle({9, 9, 13, 15});
    dc.DrawBitmap(CRect{13, 10, 17, 14}, &picture);
  });
  // Four of the reader's pixels are one of the device's, which is seen by its middle.
  const TempDirectory dir;
  dir.Put("a.pdf", bytes);
  RunShell(dir.path(), "pdftoppm -r 1200 -aa no -aaVector no -W 64 -H 64 a.pdf a");
  const std::string pixels = dir.Get("a-1.ppm").substr(13);
  std::string map;
  for (std::size_t i = 0; i < 16 * 16; ++i) {
    const std::string color = pixels.substr(((i / 16 * 4 + 2) * 64 + i % 16 * 4 + 2) * 3, 3);
    map += color == "\xFF\xFF\xFF"      ? '.'
           : color == std::string(3, 0) ? '#'
           : color[0]                   ? 'r'
           : color[1]                   ? 'g'
                                        : 'b';
    if (i % 16 == 15) map += '\n';
  }
  EXPECT_EQ(map, R"(................
.bbb.rrrr.r.....
.bbb......r.r...
......rrrrr.r...
.gggg.......r...
.gggg..bbbb....b
.gggg..bbbb....b
................
.rr...r#........
.rr...gb..rrr...
.ggbb.......rr..
.ggbb.......rr..
............rg..
................
................
................
)");
}

TEST(PdfDC, FormatsHaveTheirPixelsAndAnyNumbersAreSafe) {
  constexpr LONG kMost = std::numeric_limits<LONG>::max();
  for (const auto& [format, caps, size] : Rows<PageFormat, std::string_view, std::string_view>{
           {{}, "2362 3389 300 2480 3507 59", "595.276 x 841.89 pts (A4)"},
           {{kPaperLetter, true, 0, 72}, "792 612 72 792 612 0", "792 x 612 pts (letter)"},
           {{{-1, kMost}, false, kMost, 0}, "7 7192 36 14 7200 3", "28.346 x 14400 pts"}}) {
    std::string found;
    const std::string bytes = Document(format, [&](PdfDC& dc) {
      for (const DeviceCap cap :
           {HORZRES, VERTRES, LOGPIXELSX, PHYSICALWIDTH, PHYSICALHEIGHT, PHYSICALOFFSETX}) {
        found += (found.empty() ? "" : " ") + std::to_string(dc.GetDeviceCaps(cap));
      }
    });
    EXPECT_EQ(found, caps);
    EXPECT_EQ(Told(bytes, "pdfinfo a.pdf | grep 'Page size'"),
              "Page size:       " + std::string(size) + '\n');
  }
  const std::string bytes = Document(kSquareInch, [](PdfDC& dc) {
    dc.StartPage();
    for (const LONG height : {-kMost - 1, LONG{0}, kMost}) {
      CFont font;
      font.CreateFontIndirect({.lfHeight = height, .lfWidth = height});
      dc.SelectObject(&font);
      TEXTMETRIC metrics;
      dc.GetTextMetrics(&metrics);
      EXPECT_TRUE(metrics.tmHeight > 0 && metrics.tmHeight < 1 << 17 && metrics.tmAveCharWidth > 0);
      dc.DrawText("a", CRect{-kMost, -kMost, kMost, kMost}, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
      dc.SelectObject(static_cast<CFont*>(nullptr));
    }
  });
  EXPECT_EQ(Told(bytes, "pdftotext a.pdf - 2>&1"), "a\n\n\f");
}

TEST(PdfDC, PagesGoToTheSinkAsTheyAreDrawnAndItsErrorIsTold) {
  std::size_t room = std::string::npos, written = 0, pieces = 0;
  PdfDC dc([&](std::string_view piece) {
    ++pieces;
    written += piece.size();
    return written > room ? platform::Error{platform::ErrorKind::kNoSpace, 28} : platform::Error{};
  });
  const BitmapDescription icon{{16, 16}, std::vector<COLORREF>(256, 7)};
  const auto print = [&] {
    dc.StartDoc("");
    for (int page = 0; page < 300; ++page) {
      if (dc.StartPage() < 0) return SP_ERROR;
      for (int row = 0; row < 60; ++row) {
        dc.TextOut(0, row * 50, "A row of a table with some text in it");
        dc.DrawBitmap(CPoint{2000, row * 50}, &icon);
      }
      if (dc.EndPage() < 0) return SP_ERROR;
    }
    return dc.EndDoc();
  };
  EXPECT_GT(print(), 0);
  EXPECT_GT(pieces, written / 100'000);
  EXPECT_LT(written, 300u * 60 * 200) << "a picture is written once";
  const std::size_t whole = std::exchange(written, 0);
  for (const std::size_t most : {std::size_t{0}, whole / 2, whole - 1}) {
    room = most;
    written = 0;
    EXPECT_LT(print(), 0) << most;
    EXPECT_TRUE(dc.GetError().code == 28 && dc.AbortDoc() > 0);
  }
}

/// Prints pages with their numbers.
int PrintPages(PrinterDC& dc, int count) {
  int result = dc.StartDoc("Pages");
  for (int page = 1; page <= count && result > 0; ++page) {
    result = dc.StartPage();
    dc.TextOut(0, 0, std::to_string(page));
    if (result > 0) result = dc.EndPage();
  }
  return result > 0 ? dc.EndDoc() : result;
}

struct PrinterTest : testing::Test {
  ~PrinterTest() override { EXPECT_EQ(temporary_.Count(), 0u); }

  TempDirectory temporary_, dir_;
  const ScopedVariable where_{"TMPDIR", temporary_.path()};
  const std::string path_ = dir_ / "a.pdf";
  ScriptedPrinting printing_;
};

TEST_F(PrinterTest, PrinterGetsThePagesThatWereChosenWhenTheDocumentEnds) {
  const Rows<int, int, std::string_view> rows = {{1, 0, "1 2 3 "}, {2, 2, "2 "}, {-4, 0, "1 2 3 "},
                                                 {2, 9, "2 3 "},   {3, 1, "3 "}, {4, 0, ""}};
  for (const auto& [first, last, pages] : rows) {
    printing_.document.clear();
    printing_.printed = 0;
    PrinterDC dc({.printer = "p", .copies = 2, .first_page = first, .last_page = last});
    EXPECT_EQ(PrintPages(dc, 3) > 0, !pages.empty());
    EXPECT_EQ(printing_.printed, pages.empty() ? 0 : 1);
    EXPECT_EQ(dc.GetErrorText(),
              pages.empty() ? "The document has none of the pages that were chosen." : "");
    if (pages.empty()) continue;
    EXPECT_EQ(Told(printing_.document, "pdftotext a.pdf - | tr -s '\\n\\f' ' '"), pages);
    EXPECT_EQ(printing_.job.printer + printing_.job.title + std::to_string(printing_.job.copies),
              "pPages2");
  }
  PrinterDC dc({.title = "Own"});
  printing_.outcome = {{platform::ErrorKind::kOther, EIO}, "no paper"};
  EXPECT_LT(PrintPages(dc, 1), 0);
  EXPECT_TRUE(dc.GetErrorText() == "no paper" && printing_.job.title == "Own");
  EXPECT_TRUE(dc.EndDoc() < 0 && dc.StartPage() < 0 && dc.StartDoc("") < 0 && dc.AbortDoc() > 0);
  printing_.outcome = {};
  EXPECT_GT(PrintPages(dc, 1), 0);
  EXPECT_EQ(dc.GetErrorText(), "");
  printing_.printed = 0;
  EXPECT_TRUE(dc.StartDoc("") > 0 && dc.StartPage() > 0 && dc.AbortDoc() > 0);
  EXPECT_EQ(PrinterDC({}).StartDoc(""), 1);
  EXPECT_EQ(printing_.printed, 0);
}

TEST_F(PrinterTest, PagesAreOfThePaperThatIsUsualUnlessTheirMakerSaysOtherwise) {
  ScriptedLocale locale;
  const auto sheet = [](const PrinterDC& dc) {
    return CSize(dc.GetDeviceCaps(PHYSICALWIDTH), dc.GetDeviceCaps(PHYSICALHEIGHT));
  };
  EXPECT_EQ(sheet(PrinterDC({})), CSize(2480, 3507)) << "where it isn't known";
  for (const auto& [paper, size] : Rows<const char*, CSize>{
           {"1", {2550, 3300}}, {"5", {2550, 4200}}, {"8", {3507, 4960}}, {"9", {2480, 3507}}}) {
    locale.items[LOCALE_IPAPERSIZE] = paper;
    EXPECT_EQ(sheet(PrinterDC({})), size);
    EXPECT_EQ(sheet(PrinterDC({}, {.paper = kPaperLetter})), CSize(2550, 3300));
  }
}

TEST_F(PrinterTest, FileIsReplacedAtTheEndOrLeft) {
  const auto abort = [](PrinterDC& dc) {
    return dc.StartDoc("") > 0 && dc.StartPage() > 0 && dc.AbortDoc() > 0;
  };
  {
    PrinterDC dc({.to_file = path_});
    EXPECT_TRUE(abort(dc) && dir_.Count() == 0 && dc.StartDoc("") > 0);
    EXPECT_EQ(platform::System().files->Open(path_, {.write = true, .deny_write = true}).error.kind,
              platform::ErrorKind::kBusy);
  }
  EXPECT_EQ(dir_.Count(), 0u);
  dir_.Put("a.pdf", "old");
  std::filesystem::permissions(path_, std::filesystem::perms{0640});
  PrinterDC dc({.copies = 3, .to_file = path_});
  EXPECT_TRUE(abort(dc) && dir_.Get("a.pdf") == "old" && PrintPages(dc, 2) > 0);
  EXPECT_EQ(RunShell(dir_.path(), "pdftotext a.pdf - | tr -s '\\n\\f' ' '; stat -c ' %a' *"),
            "1 2  640\n");
  EXPECT_EQ(printing_.printed, 0);
  PrinterDC nowhere({.to_file = dir_ / "none/a.pdf"});
  EXPECT_TRUE(PrintPages(nowhere, 1) < 0 && nowhere.AbortDoc() < 0);
  EXPECT_EQ(nowhere.GetErrorText(), "No such file or directory");
}

TEST_F(PrinterTest, WhatCanNotBeWrittenIsToldAndLeavesNothing) {
  struct FullDisk : ForwardingFiles {
    platform::Error Write(HANDLE file, View bytes) override {
      return --room < 0 ? platform::Error{platform::ErrorKind::kNoSpace, ENOSPC}
                        : ForwardingFiles::Write(file, bytes);
    }
    platform::Error ReplaceByAndClose(HANDLE file, HANDLE source) override {
      if (--room >= 0) return ForwardingFiles::ReplaceByAndClose(file, source);
      static_cast<void>(Close(file));
      return {platform::ErrorKind::kNoSpace, ENOSPC};
    }
    platform::Error Delete(View path) override {
      return keeps_open ? platform::Error{platform::ErrorKind::kBusy, 0}
                        : ForwardingFiles::Delete(path);
    }
    platform::Error Close(HANDLE file) override {
      keeps_open = false;
      return ForwardingFiles::Close(file);
    }
    int room = 0;
    bool keeps_open = true;
  } disk;
  dir_.Put("a.pdf", "old");
  bool is_done = false;
  for (int room = 0; !is_done && room < 9; ++room) {
    disk.room = room;
    disk.keeps_open = true;
    PrinterDC dc({.to_file = path_});
    is_done = PrintPages(dc, 800) > 0;
    EXPECT_EQ(is_done, room == 6) << "five writes and a replacement";
    EXPECT_EQ(dc.GetErrorText(), is_done ? "" : "No space left on device");
    EXPECT_EQ(dc.AbortDoc() < 0, is_done);
    EXPECT_EQ(dir_.Get("a.pdf") != "old", is_done);
  }
}

}  // namespace
}  // namespace dq::test
