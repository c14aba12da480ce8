#include "dqlib/framework/base/recording_dc.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include "dqlib/framework/base/drawn_character.h"
#include "dqlib/framework/base/little_endian.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/platform/checksum.h"

namespace dq {
namespace {

constexpr std::int64_t kUsualHeight = 13;
constexpr std::int64_t kUsualAscent = 11;
constexpr std::int64_t kUsualWidth = 7;
/// No font is larger; so a line has room for more characters than a text has.
constexpr std::int64_t kLargest = 1 << 20;

constexpr LONG kBold = 600;

LOGFONT UsualFont() {
  LOGFONT font;
  font.lfHeight = LONG{kUsualHeight};
  return font;
}

std::int64_t LineHeight(const LOGFONT& font) {
  const std::int64_t height = font.lfHeight;
  if (height == 0) return kUsualHeight;
  return std::clamp<std::int64_t>(height > 0 ? height : -height * kUsualHeight / kUsualAscent, 1,
                                  kLargest);
}

std::int64_t CharacterWidth(const LOGFONT& font) {
  const std::int64_t width =
      font.lfWidth != 0 ? font.lfWidth : LineHeight(font) * kUsualWidth / kUsualHeight;
  return std::clamp<std::int64_t>(width, 1, kLargest);
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char character : text) {
    const unsigned char byte = detail::Byte(character);
    if (byte < 0x20 || byte == 0x7F) {
      char code[8];
      std::snprintf(code, sizeof code, "\\x%02x", byte);
      quoted += code;
      continue;
    }
    if (character == '"' || character == '\\') quoted += '\\';
    quoted += character;
  }
  return quoted += '"';
}

std::string Point(LONG x, LONG y) { return ' ' + std::to_string(x) + ',' + std::to_string(y); }

std::string Corners(const CRect& rect) {
  return Point(rect.left, rect.top) + Point(rect.right, rect.bottom);
}

std::string Color(COLORREF color) {
  char digits[16];
  std::snprintf(digits, sizeof digits, " %02x%02x%02x", color & 0xFF, color >> 8 & 0xFF,
                color >> 16 & 0xFF);
  return digits;
}

std::string DescribeFont(const LOGFONT& font) {
  const std::string_view face(font.lfFaceName, sizeof font.lfFaceName);
  std::string line = "font " + Quoted(face.substr(0, face.find('\0')));
  line += ' ' + std::to_string(font.lfHeight);
  if (font.lfWidth != 0) line += " wide " + std::to_string(font.lfWidth);
  if (font.lfWeight >= kBold) line += " bold";
  if (font.lfItalic != 0) line += " italic";
  return line += '\n';
}

}  // namespace

IMPLEMENT_DYNAMIC(RecordingDC, CDC)

RecordingDC::RecordingDC(const DeviceFormat& format)
    : CDC(format, UsualFont()), font_(DescribeFont(UsualFont())) {}

CDC::TextFit RecordingDC::MeasureText(const LOGFONT& font, std::string_view text, LONG limit) {
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  const std::int64_t width = CharacterWidth(font);
  std::int64_t reached = 0;
  std::size_t bytes = 0;
  while (bytes < text.size() && reached + width <= limit) {
    bytes += detail::FirstCharacter(text.substr(bytes), page).size;
    reached += width;
  }
  return {bytes, static_cast<LONG>(reached)};
}

TEXTMETRIC RecordingDC::MeasureFont(const LOGFONT& font) {
  const std::int64_t height = LineHeight(font);
  const std::int64_t ascent = height * kUsualAscent / kUsualHeight;
  return {static_cast<LONG>(height), static_cast<LONG>(ascent), static_cast<LONG>(height - ascent),
          static_cast<LONG>(CharacterWidth(font))};
}

void RecordingDC::PaintText(const CPoint& top_left, std::string_view text, const LOGFONT& font,
                            COLORREF color) {
  std::string described = DescribeFont(font);
  if (described != font_) text_ += described;
  font_ = std::move(described);
  text_ += "text" + Point(top_left.x, top_left.y) + ' ' + Quoted(text);
  text_ += color == 0 ? "\n" : Color(color) + '\n';
}

void RecordingDC::PaintRect(const CRect& rect, COLORREF color) {
  text_ += "fill" + Corners(rect) + Color(color) + '\n';
}

void RecordingDC::PaintLine(const PaintedLine& line) {
  text_ += "line" + Point(line.from.x, line.from.y) + Point(line.to.x, line.to.y);
  text_ += Color(line.color);
  if (line.style != PS_SOLID) {
    text_ += line.style == PS_DASH ? " dash" : line.style == PS_DOT ? " dot" : " dash-dot";
  }
  if (line.width > 1) text_ += ' ' + std::to_string(line.width);
  text_ += '\n';
}

void RecordingDC::PaintPicture(const CRect& place, const BitmapDescription& picture) {
  std::string pixels;
  pixels.reserve(picture.pixels.size() * sizeof(COLORREF));
  for (const COLORREF color : picture.pixels) {
    pixels += detail::AsText(detail::ToLittleEndian(color));
  }
  char checksum[16];
  std::snprintf(checksum, sizeof checksum, " %08x", platform::Checksum(pixels));
  text_ += "picture" + Corners(place) + " of " + std::to_string(picture.size.cx) + 'x' +
           std::to_string(picture.size.cy) + checksum + '\n';
}

void RecordingDC::ClipTo(const CRect& rect) { text_ += "clip" + Corners(rect) + '\n'; }

bool RecordingDC::BeginDocument(std::string_view title) {
  text_ += "document " + Quoted(title) + '\n';
  return true;
}

CDC::PageStart RecordingDC::BeginPage() {
  text_ += "page\n";
  return PageStart::kOpen;
}

bool RecordingDC::FinishPage() {
  text_ += "end page\n";
  return true;
}

bool RecordingDC::FinishDocument() {
  text_ += "end document\n";
  return true;
}

void RecordingDC::DropDocument() { text_ += "abort\n"; }

}  // namespace dq
