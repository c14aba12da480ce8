#include "apps/workbench/layer/native_dc.h"

#include <algorithm>

#include "apps/workbench/layer/pictures.h"
#include "apps/workbench/layer/style.h"
#include "apps/workbench/layer/text.h"

namespace workbench {
namespace {

using dq::COLORREF;
using dq::CRect;
using dq::LONG;

wxColour ToNative(COLORREF color) {
  const auto part = [color](int shift) {
    return static_cast<unsigned char>(color >> shift & 0xFF);
  };
  return {part(0), part(8), part(16)};
}

wxPenStyle StyleOf(int style) {
  switch (style) {
    case dq::PS_DASH:
      return wxPENSTYLE_SHORT_DASH;
    case dq::PS_DOT:
      return wxPENSTYLE_DOT;
    case dq::PS_DASHDOT:
      return wxPENSTYLE_DOT_DASH;
    default:
      return wxPENSTYLE_SOLID;
  }
}

}  // namespace

IMPLEMENT_DYNAMIC(NativeDC, CDC)

NativeDC::NativeDC(const dq::CSize& area, const Scale& scale, wxBitmap& picture,
                   const wxColour& ground)
    // Without a height it is the dialogs' own, by which the library measures too.
    : CDC({.area = area}, dq::LOGFONT{}),
      area_(area),
      scale_(scale),
      picture_(picture),
      ground_(ground) {}

NativeDC::~NativeDC() {
  if (is_open_) paper_.SelectObject(wxNullBitmap);
}

wxDC& NativeDC::Paper() {
  has_drawn_ = true;
  if (is_open_) return paper_;
  is_open_ = true;
  const wxSize size = scale_.ToNative(area_);
  const bool is_new = !picture_.IsOk() || picture_.GetSize() != size;
  if (is_new) picture_ = wxBitmap(std::max(1, size.x), std::max(1, size.y));
  paper_.SelectObject(picture_);
  if (is_new) {
    paper_.SetBackground(wxBrush(ground_));
    paper_.Clear();
  }
  paper_.SetBackgroundMode(wxTRANSPARENT);
  if (clip_) ClipTo(*clip_);
  return paper_;
}

void NativeDC::UseFont(wxDC& context, const dq::LOGFONT& font) {
  dq::LOGFONT plain = font;
  plain.lfUnderline = plain.lfStrikeOut = 0;
  context.SetFont(ToNativeFont(plain));
}

dq::CDC::TextFit NativeDC::MeasureText(const dq::LOGFONT& font, std::string_view text, LONG limit) {
  UseFont(ruler_, font);
  constexpr long kPiece = 256;
  if (text.size() <= kPiece) {
    const LONG width = scale_.ToLogical(ruler_.GetTextExtent(workbench::ToNative(text)).x);
    if (width <= limit) return {text.size(), width};
  }
  const ShownText shown(text, false);
  // Piece by piece, for a text may be much longer than what fits.
  TextFit fit;
  for (long from = 0; from < shown.size(); from += kPiece) {
    wxArrayInt widths;
    const auto count = static_cast<std::size_t>(std::min(kPiece, shown.size() - from));
    ruler_.GetPartialTextExtents(shown.native().Mid(static_cast<std::size_t>(from), count), widths);
    const LONG before = fit.width;
    for (std::size_t at = 0; at < widths.size(); ++at) {
      const LONG width = before + scale_.ToLogical(widths[at]);
      if (width > limit) return fit;
      fit = {static_cast<std::size_t>(shown.ByteAt(from + static_cast<long>(at) + 1)), width};
    }
  }
  return fit;
}

dq::TEXTMETRIC NativeDC::MeasureFont(const dq::LOGFONT& font) {
  UseFont(ruler_, font);
  const wxFontMetrics native = ruler_.GetFontMetrics();
  dq::TEXTMETRIC metrics;
  metrics.tmAscent = scale_.ToLogical(native.ascent);
  metrics.tmDescent = scale_.ToLogical(native.descent);
  metrics.tmHeight = metrics.tmAscent + metrics.tmDescent;
  metrics.tmAveCharWidth = std::max(1, scale_.ToLogical(native.averageWidth));
  return metrics;
}

void NativeDC::PaintText(const dq::CPoint& top_left, std::string_view text, const dq::LOGFONT& font,
                         COLORREF color) {
  wxDC& paper = Paper();
  UseFont(paper, font);
  paper.SetTextForeground(ToNative(color));
  paper.DrawText(workbench::ToNative(text), scale_.ToNative(top_left));
}

void NativeDC::PaintRect(const CRect& rect, COLORREF color) {
  wxDC& paper = Paper();
  paper.SetPen(*wxTRANSPARENT_PEN);
  paper.SetBrush(wxBrush(ToNative(color)));
  paper.DrawRectangle(scale_.ToNative(rect));
}

void NativeDC::PaintLine(const PaintedLine& line) {
  wxDC& paper = Paper();
  paper.SetPen(
      wxPen(ToNative(line.color), std::max(1, scale_.ToNative(line.width)), StyleOf(line.style)));
  paper.DrawLine(scale_.ToNative(line.from), scale_.ToNative(line.to));
}

void NativeDC::PaintPicture(const CRect& place, const dq::BitmapDescription& picture) {
  const wxRect rect = scale_.ToNative(place);
  const wxBitmap native = ToNativePicture(picture, rect.GetSize());
  if (native.IsOk()) Paper().DrawBitmap(native, rect.GetPosition(), true);
}

void NativeDC::ClipTo(const CRect& rect) {
  clip_ = rect;
  if (!is_open_) return;
  paper_.DestroyClippingRegion();
  paper_.SetClippingRegion(scale_.ToNative(rect));
}

}  // namespace workbench
