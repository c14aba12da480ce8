#include "dqlib/framework/base/pdf_dc.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "dqlib/framework/base/drawn_character.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/pdf_file.h"
#include "dqlib/framework/base/pdf_fonts.h"
#include "dqlib/framework/base/text.h"

namespace dq {
namespace {

using detail::PdfReference;

constexpr std::int64_t kHundredthsPerInch = 2540;
constexpr std::int64_t kPointsPerInch = 72;
/// Measures of fonts are parts of so many.
constexpr std::int64_t kThousand = 1000;
constexpr LONG kUsualPoints = 10;
constexpr std::int64_t kLargestFont = 1 << 15;
constexpr LONG kNarrowest = 10, kWidest = 1000;  // percent

/// How much of a page is kept before it is written as one of its streams.
constexpr std::size_t kContentPiece = 1 << 16;
/// How many pixels of pictures are remembered, so that one that is drawn again is written once.
constexpr std::size_t kMostPixels = 1 << 20;

PageFormat Sensible(PageFormat format) {
  // From a stamp to the largest page that every reader takes.
  constexpr LONG kShortest = 1'000, kLongest = 508'000;
  format.paper.cx = std::clamp(format.paper.cx, kShortest, kLongest);
  format.paper.cy = std::clamp(format.paper.cy, kShortest, kLongest);
  if (format.is_landscape) std::swap(format.paper.cx, format.paper.cy);
  format.is_landscape = false;
  format.margin =
      std::clamp(format.margin, LONG{0}, std::min(format.paper.cx, format.paper.cy) / 4);
  format.pixels_per_inch = std::clamp(format.pixels_per_inch, 36, 2'400);
  return format;
}

DeviceFormat DeviceFor(const PageFormat& given) {
  const PageFormat format = Sensible(given);
  const auto pixels = [&](std::int64_t length) {
    return static_cast<LONG>(length * format.pixels_per_inch / kHundredthsPerInch);
  };
  DeviceFormat device;
  device.area = {pixels(format.paper.cx - 2 * format.margin),
                 pixels(format.paper.cy - 2 * format.margin)};
  device.pixels_per_inch = format.pixels_per_inch;
  device.has_pages = true;
  device.page = {pixels(format.paper.cx), pixels(format.paper.cy)};
  device.offset = {pixels(format.margin), pixels(format.margin)};
  return device;
}

LOGFONT UsualFont(const PageFormat& format) {
  LOGFONT font;
  font.lfHeight = -kUsualPoints * Sensible(format).pixels_per_inch / LONG{kPointsPerInch};
  return font;
}

/// The character of the page 1252 that a font shows.
unsigned char ShownByte(char32_t code) {
  const unsigned char byte = detail::WesternByte(code).value_or('?');
  return byte < 0x20 || byte == 0x7F ? ' ' : byte;
}

/// A number of so many parts of `scale`, a power of 10, as PDF has it.
std::string Decimal(std::int64_t number, std::int64_t scale) {
  std::string text = number < 0 ? "-" : "";
  const std::int64_t positive = number < 0 ? -number : number;
  text += std::to_string(positive / scale);
  std::int64_t rest = positive % scale;
  if (rest != 0) text += '.';
  while (rest != 0) {
    scale /= 10;
    text += static_cast<char>('0' + rest / scale);
    rest %= scale;
  }
  return text;
}

/// A length on paper in points.
std::string Points(std::int64_t hundredths) {
  return Decimal(
      (hundredths * kPointsPerInch * kThousand + kHundredthsPerInch / 2) / kHundredthsPerInch,
      kThousand);
}

std::string Numbers(std::initializer_list<std::int64_t> numbers) {
  std::string text;
  for (const std::int64_t number : numbers) text += std::to_string(number) + ' ';
  return text;
}

/// Numbers of half pixels.
std::string Halves(std::int64_t x, std::int64_t y) {
  return Decimal(x * 5, 10) + ' ' + Decimal(y * 5, 10) + ' ';
}

/// Red, green and blue of 0 to 1, with a blank behind each.
std::string ColorParts(COLORREF color) {
  std::string parts;
  for (const int shift : {0, 8, 16}) {
    const std::int64_t part = color >> shift & 0xFF;
    parts += Decimal((part * kThousand + 127) / 255, kThousand) + ' ';
  }
  return parts;
}

std::string DashPattern(int style, std::int64_t unit) {
  switch (style) {
    case PS_DASH:
      return '[' + Numbers({3 * unit, unit}) + "] 0 d\n";
    case PS_DOT:
      return '[' + Numbers({unit}) + "] 0 d\n";
    case PS_DASHDOT:
      return '[' + Numbers({3 * unit, unit, unit, unit}) + "] 0 d\n";
    default:
      return "[] 0 d\n";
  }
}

std::string PictureEntries(const BitmapDescription& picture) {
  return " /Type /XObject /Subtype /Image /Width " + std::to_string(picture.size.cx) + " /Height " +
         std::to_string(picture.size.cy) + ' ';
}

}  // namespace

struct PdfDC::Document {
  explicit Document(const PdfSink& sink) : file(sink) {}

  detail::PdfFile file;
  const int catalog = file.NewObject();
  const int pages = file.NewObject();
  const int resources = file.NewObject();
  const int info = file.NewObject();
  std::string title;
  std::vector<int> page_objects;
  std::bitset<detail::kPdfFontCount> fonts;
  std::vector<int> pictures;
  /// Objects of pictures by their size and pixels.
  std::unordered_map<std::string, int> known_pictures;
  std::size_t known_pixels = 0;

  /// Of the page that is drawn: what isn't written yet, and the streams that are.
  std::string content;
  std::vector<int> streams;
  bool is_clipped = false;
  /// What the page's content has set.
  std::optional<COLORREF> fill;
  std::optional<UsedFont> font;
};

IMPLEMENT_DYNAMIC(PdfDC, CDC)

PdfDC::PdfDC(PdfSink sink, const PageFormat& format)
    : CDC(DeviceFor(format), UsualFont(format)), sink_(std::move(sink)), page_(Sensible(format)) {}

PdfDC::~PdfDC() = default;

PdfDC::UsedFont PdfDC::FontFor(const LOGFONT& font) const {
  UsedFont used;
  used.index = detail::ChoosePdfFont(font);
  const detail::PdfFont& pdf = detail::PdfFontAt(used.index);
  const std::int64_t height =
      font.lfHeight == 0 ? -std::int64_t{kUsualPoints} * page_.pixels_per_inch / kPointsPerInch
                         : font.lfHeight;
  const std::int64_t size =
      height < 0 ? -height : (height * kThousand) / (pdf.ascent + pdf.descent);
  used.size = static_cast<LONG>(std::clamp<std::int64_t>(size, 1, kLargestFont));
  if (font.lfWidth != 0) {
    const std::int64_t natural = std::max<std::int64_t>(1, pdf.WidthOf('x') * used.size);
    used.percent = static_cast<LONG>(std::clamp<std::int64_t>(
        std::int64_t{font.lfWidth} * 100 * kThousand / natural, kNarrowest, kWidest));
  }
  return used;
}

CDC::TextFit PdfDC::MeasureText(const LOGFONT& font, std::string_view text, LONG limit) {
  const UsedFont used = FontFor(font);
  const detail::PdfFont& pdf = detail::PdfFontAt(used.index);
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  const std::int64_t scale = std::int64_t{used.size} * used.percent;
  constexpr std::int64_t kParts = 100 * kThousand;
  std::int64_t width = 0;
  std::size_t bytes = 0;
  while (bytes < text.size()) {
    const auto character = detail::FirstCharacter(text.substr(bytes), page);
    const std::int64_t wider = width + scale * pdf.WidthOf(ShownByte(character.code));
    if ((wider + kParts / 2) / kParts > limit) break;
    width = wider;
    bytes += character.size;
  }
  return {bytes, static_cast<LONG>((width + kParts / 2) / kParts)};
}

TEXTMETRIC PdfDC::MeasureFont(const LOGFONT& font) {
  const UsedFont used = FontFor(font);
  const detail::PdfFont& pdf = detail::PdfFontAt(used.index);
  const auto pixels = [&](std::int64_t thousandths) {
    return static_cast<LONG>((thousandths * used.size + kThousand / 2) / kThousand);
  };
  TEXTMETRIC metrics;
  metrics.tmAscent = pixels(pdf.ascent);
  metrics.tmDescent = pixels(pdf.descent);
  metrics.tmHeight = metrics.tmAscent + metrics.tmDescent;
  metrics.tmAveCharWidth = pixels(std::int64_t{pdf.WidthOf('x')} * used.percent / 100);
  return metrics;
}

bool PdfDC::BeginDocument(std::string_view title) {
  document_ = std::make_unique<Document>(sink_);
  document_->title = title;
  error_ = document_->file.error();
  return error_.ok();
}

void PdfDC::DropDocument() { document_.reset(); }

CDC::PageStart PdfDC::BeginPage() {
  // The units of a page's content are the device's pixels, upwards from the area's lower edge.
  const std::int64_t scale = kPointsPerInch * 1'000'000 / page_.pixels_per_inch;
  const std::string unit = Decimal(scale, 1'000'000);
  const std::int64_t height = std::int64_t{Height()} * kHundredthsPerInch / page_.pixels_per_inch;
  AppendContent(unit + " 0 0 " + unit + ' ' + Points(page_.margin) + ' ' +
                Points(page_.paper.cy - page_.margin - height) + " cm\n" +
                Numbers({0, 0, GetDeviceCaps(HORZRES), Height()}) + "re W n\n");
  return error_.ok() ? PageStart::kOpen : PageStart::kFailed;
}

void PdfDC::AppendContent(std::string_view operators) {
  document_->content += operators;
  if (document_->content.size() >= kContentPiece) FlushContent();
}

void PdfDC::FlushContent() {
  Document& document = *document_;
  document.streams.push_back(document.file.NewObject());
  document.file.WriteStream(document.streams.back(), "", document.content);
  document.content.clear();
  error_ = document.file.error();
}

bool PdfDC::FinishPage() {
  Document& document = *document_;
  if (document.is_clipped) document.content += "Q\n";
  FlushContent();
  std::string contents;
  for (const int stream : document.streams) contents += PdfReference(stream) + ' ';
  document.page_objects.push_back(document.file.NewObject());
  document.file.WriteObject(document.page_objects.back(),
                            "<< /Type /Page /Parent " + PdfReference(document.pages) +
                                " /Resources " + PdfReference(document.resources) +
                                " /MediaBox [0 0 " + Points(page_.paper.cx) + ' ' +
                                Points(page_.paper.cy) + "] /Contents [" + contents + "] >>");
  document.streams.clear();
  document.is_clipped = false;
  document.fill.reset();
  document.font.reset();
  error_ = document.file.error();
  return error_.ok();
}

bool PdfDC::FinishDocument() {
  Document& document = *document_;
  if (document.page_objects.empty()) {
    PdfDC::BeginPage();
    PdfDC::FinishPage();
  }
  WriteResources();
  std::string kids;
  for (const int page : document.page_objects) kids += PdfReference(page) + ' ';
  detail::PdfFile& file = document.file;
  file.WriteObject(document.pages, "<< /Type /Pages /Count " +
                                       std::to_string(document.page_objects.size()) + " /Kids [" +
                                       kids + "] >>");
  file.WriteObject(document.catalog,
                   "<< /Type /Catalog /Pages " + PdfReference(document.pages) + " >>");
  file.WriteObject(document.info, "<<" + InfoEntries() + " >>");
  file.Finish(document.catalog, document.info);
  error_ = file.error();
  if (error_.ok()) document_.reset();
  return error_.ok();
}

void PdfDC::WriteResources() {
  Document& document = *document_;
  detail::PdfFile& file = document.file;
  std::string entries = "<< /Font <<";
  for (std::size_t i = 0; i < detail::kPdfFontCount; ++i) {
    if (!document.fonts[i]) continue;
    const int font = file.NewObject();
    std::string object = "<< /Type /Font /Subtype /Type1 /BaseFont /";
    object.append(detail::PdfFontAt(i).name).append(" /Encoding /WinAnsiEncoding >>");
    file.WriteObject(font, object);
    entries += " /F" + std::to_string(i) + ' ' + PdfReference(font);
  }
  entries += " >> /XObject <<";
  for (const int picture : document.pictures) {
    entries += " /P" + std::to_string(picture) + ' ' + PdfReference(picture);
  }
  file.WriteObject(document.resources, entries + " >> >>");
}

std::string PdfDC::InfoEntries() const {
  std::string entries;
  if (!document_->title.empty()) {
    const platform::CodePage& page = multi_byte::CurrentCodePage();
    entries +=
        " /Title " + detail::PdfString("\xFE\xFF" + detail::BigEndianUtf16(document_->title, page));
  }
  if (created_) {
    char date[64];
    std::snprintf(date, sizeof date, "D:%04u%02u%02u%02u%02u%02u", created_->wYear,
                  created_->wMonth, created_->wDay, created_->wHour, created_->wMinute,
                  created_->wSecond);
    entries += " /CreationDate " + detail::PdfString(date);
  }
  return entries;
}

void PdfDC::SetFill(COLORREF color) {
  if (document_->fill == color) return;
  document_->fill = color;
  AppendContent(ColorParts(color) + "rg\n");
}

void PdfDC::PaintText(const CPoint& top_left, std::string_view text, const LOGFONT& font,
                      COLORREF color) {
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  std::string bytes;
  while (!text.empty()) {
    const auto character = detail::FirstCharacter(text, page);
    bytes += static_cast<char>(ShownByte(character.code));
    text.remove_prefix(character.size);
  }
  SetFill(color);
  const UsedFont used = FontFor(font);
  std::string operators = "BT ";
  if (document_->font != used) {
    document_->font = used;
    document_->fonts.set(used.index);
    operators += "/F" + Numbers({static_cast<std::int64_t>(used.index), used.size}) + "Tf " +
                 std::to_string(used.percent) + " Tz ";
  }
  const std::int64_t base_line = std::int64_t{Height()} - top_left.y - MeasureFont(font).tmAscent;
  operators += Numbers({top_left.x, base_line}) + "Td " + detail::PdfString(bytes) + " Tj ET\n";
  AppendContent(operators);
}

void PdfDC::PaintRect(const CRect& rect, COLORREF color) {
  SetFill(color);
  AppendContent(Numbers({rect.left, Height() - rect.bottom, rect.Width(), rect.Height()}) +
                "re f\n");
}

void PdfDC::PaintLine(const PaintedLine& line) {
  const CPoint& from = line.from;
  const CPoint& to = line.to;
  const int width = line.width;
  // Through the middles of pixels, or between two where it is an even number of pixels wide;
  // lengthwise from the begin of the first to that of the last.
  const std::int64_t right = (to.x > from.x) - (to.x < from.x);
  const std::int64_t down = (to.y > from.y) - (to.y < from.y);
  const std::int64_t middle = width % 2;
  const auto point = [&](const CPoint& pixel) {
    const std::int64_t x = 2 * std::int64_t{pixel.x} + (right == 0 ? middle : 1 - right);
    const std::int64_t y = 2 * std::int64_t{pixel.y} + (down == 0 ? middle : 1 - down);
    return Halves(x, 2 * std::int64_t{Height()} - y);
  };
  const std::int64_t unit = std::max<std::int64_t>(width, page_.pixels_per_inch / kPointsPerInch);
  AppendContent(ColorParts(line.color) + "RG " + std::to_string(width) + " w " +
                DashPattern(line.style, unit) + point(from) + "m " + point(to) + "l S\n");
}

void PdfDC::ClipTo(const CRect& rect) {
  Document& document = *document_;
  if (document.is_clipped) AppendContent("Q\n");
  const CRect area{0, 0, GetDeviceCaps(HORZRES), Height()};
  document.is_clipped = rect != area;
  document.fill.reset();
  document.font.reset();
  if (!document.is_clipped) return;
  AppendContent("q " + Numbers({rect.left, Height() - rect.bottom, rect.Width(), rect.Height()}) +
                "re W n\n");
}

void PdfDC::PaintPicture(const CRect& place, const BitmapDescription& picture) {
  const int number = ObjectOf(picture);
  AppendContent(
      "q " +
      Numbers({std::int64_t{place.right} - place.left, 0, 0, std::int64_t{place.bottom} - place.top,
               place.left, std::int64_t{Height()} - place.bottom}) +
      "cm /P" + std::to_string(number) + " Do Q\n");
}

/// The object that a picture is in the document.
int PdfDC::ObjectOf(const BitmapDescription& picture) {
  Document& document = *document_;
  std::string key = std::to_string(picture.size.cx) + ' ';
  const auto* const first = reinterpret_cast<const char*>(picture.pixels.data());
  key.append(first, picture.pixels.size() * sizeof(COLORREF));
  if (const auto known = document.known_pictures.find(key);
      known != document.known_pictures.end()) {
    return known->second;
  }
  int mask = 0;
  if (std::ranges::find(picture.pixels, kNoPixel) != picture.pixels.end()) {
    mask = document.file.NewObject();
    WriteMask(mask, picture);
  }
  const int number = document.file.NewObject();
  WritePicture(number, picture, mask);
  document.pictures.push_back(number);
  document.known_pixels += picture.pixels.size();
  if (document.known_pixels > kMostPixels) {
    document.known_pictures.clear();
    document.known_pixels = picture.pixels.size();
  }
  document.known_pictures.emplace(std::move(key), number);
  return number;
}

void PdfDC::WritePicture(int number, const BitmapDescription& picture, int mask) {
  const auto width = static_cast<std::size_t>(picture.size.cx);
  std::string entries = PictureEntries(picture) + "/ColorSpace /DeviceRGB /BitsPerComponent 8";
  if (mask != 0) entries += " /Mask " + PdfReference(mask);
  detail::PdfFile& file = document_->file;
  file.BeginStream(number, entries, picture.pixels.size() * 3);
  std::string row;
  for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
    const COLORREF color = picture.pixels[i];
    for (const int shift : {0, 8, 16}) row += static_cast<char>(color >> shift & 0xFF);
    if ((i + 1) % width != 0) continue;
    file.Append(row);
    row.clear();
  }
  file.EndStream();
}

/// A bit for each pixel, set where there is none; each row begins with a byte.
void PdfDC::WriteMask(int number, const BitmapDescription& picture) {
  const auto width = static_cast<std::size_t>(picture.size.cx);
  const std::size_t row_size = (width + 7) / 8;
  detail::PdfFile& file = document_->file;
  file.BeginStream(number, PictureEntries(picture) + "/ImageMask true /BitsPerComponent 1",
                   row_size * static_cast<std::size_t>(picture.size.cy));
  std::string row(row_size, '\0');
  for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
    const std::size_t x = i % width;
    if (picture.pixels[i] == kNoPixel) row[x / 8] = static_cast<char>(row[x / 8] | 0x80 >> x % 8);
    if (x + 1 < width) continue;
    file.Append(row);
    row.assign(row_size, '\0');
  }
  file.EndStream();
}

}  // namespace dq
