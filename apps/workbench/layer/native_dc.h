// The library's device context on a picture of the toolkit's.

#pragma once

#include <optional>
#include <wx/bitmap.h>
#include <wx/dcmemory.h>

#include "apps/workbench/layer/scale.h"
#include "dqlib/framework/base/device_context.h"

namespace workbench {

/// Draws on a picture of the window's size, which is made with the first thing that is drawn.
class NativeDC : public dq::CDC {
  DECLARE_DYNAMIC(NativeDC)
  /// `picture` is the one that was drawn before, which is drawn on if it has the size; `ground` is
  /// the colour of a new one.
  NativeDC(const dq::CSize& area, const Scale& scale, wxBitmap& picture, const wxColour& ground);
  ~NativeDC() override;

  /// Whether anything was drawn.
  bool HasDrawn() const { return has_drawn_; }

 protected:
  TextFit MeasureText(const dq::LOGFONT& font, std::string_view text, dq::LONG limit) override;
  dq::TEXTMETRIC MeasureFont(const dq::LOGFONT& font) override;
  void PaintText(const dq::CPoint& top_left, std::string_view text, const dq::LOGFONT& font,
                 dq::COLORREF color) override;
  void PaintRect(const dq::CRect& rect, dq::COLORREF color) override;
  void PaintLine(const PaintedLine& line) override;
  void PaintPicture(const dq::CRect& place, const dq::BitmapDescription& picture) override;
  double GetPictureScale() const override { return scale_.factor(); }
  void ClipTo(const dq::CRect& rect) override;

 private:
  wxDC& Paper();
  void UseFont(wxDC& context, const dq::LOGFONT& font);

  dq::CSize area_;
  const Scale& scale_;
  wxBitmap& picture_;
  wxColour ground_;
  wxMemoryDC paper_;
  /// For measuring without a picture.
  wxMemoryDC ruler_;
  std::optional<dq::CRect> clip_;
  bool is_open_ = false;
  bool has_drawn_ = false;
};

}  // namespace workbench
