// A device that only takes down what is drawn on it, for tests.
//
//   RecordingDC dc;
//   tree.Draw(dc);
//   EXPECT_EQ(dc.Text(), "text 2,1 \"Name\"\n...");

#pragma once

#include <string>

#include "dqlib/framework/base/device_context.h"

namespace dq {

/// Takes down a line for each thing that is painted, in the device's coordinates:
///
///   text 3,4 "Name" 0000ff          its top left corner; the colour, as rrggbb, if it isn't black
///   fill 0,0 10,20 ffffff           left, top, right, bottom
///   line 0,0 10,0 000000 dash 3     up to the second point; style and width if it isn't plain
///   picture 0,0 16,16 of 8x8 1a2b3c4d   where to, its own size, and a checksum of its pixels
///   font "Courier" -11 bold italic  before the first text in another font than the last one
///   clip 0,0 50,50                  before what is cut off at another rectangle than before
///   document "Title"  page  end page  end document  abort
///
/// In texts a quote and a backslash have a backslash before them, and control characters are \xhh.
///
/// Measures don't depend on the system: every character is 7 pixels wide in a line 13 high, 11 of
/// them above the base line, and in proportion in other heights. A font whose height is below 0 has
/// lines 13/11 as high; one with a width has that. 0 is the usual height. The device's own font is
/// 13 high.
class RecordingDC : public CDC {
  DECLARE_DYNAMIC(RecordingDC)
  /// A screen, or what `format` says.
  explicit RecordingDC(const DeviceFormat& format = {.area = {1024, 768}});

  /// What has been taken down so far, each line with a line feed.
  const std::string& Text() const { return text_; }
  /// Forgets it; the font and the clip rectangle are known on.
  void Clear() { text_.clear(); }

 protected:
  TextFit MeasureText(const LOGFONT& font, std::string_view text, LONG limit) override;
  TEXTMETRIC MeasureFont(const LOGFONT& font) override;
  void PaintText(const CPoint& top_left, std::string_view text, const LOGFONT& font,
                 COLORREF color) override;
  void PaintRect(const CRect& rect, COLORREF color) override;
  void PaintLine(const PaintedLine& line) override;
  void PaintPicture(const CRect& place, const BitmapDescription& picture) override;
  void ClipTo(const CRect& rect) override;
  bool BeginDocument(std::string_view title) override;
  PageStart BeginPage() override;
  bool FinishPage() override;
  bool FinishDocument() override;
  void DropDocument() override;

 private:
  std::string text_;
  /// The line of the font of the last text.
  std::string font_;
};

}  // namespace dq
