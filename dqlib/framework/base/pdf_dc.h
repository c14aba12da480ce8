// Makes pages: writes what is drawn as a PDF document, for printers and for people.
//
//   PdfDC dc([&](std::string_view bytes) { return files.Write(file, bytes); });
//   dc.StartDoc("Rows");
//   dc.StartPage();
//   dc.DrawText("Name", cell, DT_SINGLELINE);
//   if (dc.EndDoc() < 0) Tell(dc.GetError());

#pragma once

#include <bitset>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/platform/error.h"
#include "dqlib/platform/system_time.h"

namespace dq {

namespace detail {
class PdfFile;
}

/// Sizes of paper, upright, in hundredths of a millimetre.
inline constexpr CSize kPaperA3{29'700, 42'000};
inline constexpr CSize kPaperA4{21'000, 29'700};
inline constexpr CSize kPaperLetter{21'590, 27'940};
inline constexpr CSize kPaperLegal{21'590, 35'560};

/// The form of pages. Numbers that no paper has are brought to the nearest that some might have.
struct PageFormat {
  /// Upright, in hundredths of a millimetre.
  CSize paper = kPaperA4;
  /// Turned by a quarter: width and height exchanged.
  bool is_landscape = false;
  /// What can't be drawn on at each side, because printers can't, in hundredths of a millimetre.
  LONG margin = 500;
  int pixels_per_inch = 300;
};

/// Takes the bytes of a document one after the other, in pieces of some size.
using PdfSink = std::function<platform::Error(std::string_view bytes)>;

/// A device whose pages are those of a PDF document. The document is written while it is drawn: of
/// a page not more than a small part is kept, however many there are. The same drawing makes the
/// same bytes. A document without pages gets an empty one.
///
/// Texts are in Courier, Helvetica or Times, which every reader has, as the face name, else pitch
/// and family of a font say; plain, bold, italic or both. They have the characters of the page
/// 1252; "?" stands for others. A font with a width is stretched to it.
class PdfDC : public CDC {
  DECLARE_DYNAMIC(PdfDC)
  explicit PdfDC(PdfSink sink, const PageFormat& format = {});
  /// A document that is open is given up: what the sink has is none.
  ~PdfDC() override;

  /// What the document says of when it was made; without, nothing. Before `StartDoc`.
  void SetCreationTime(const SYSTEMTIME& time) { created_ = time; }

  /// Why the last document failed; no error if the sink has taken all so far.
  const platform::Error& GetError() const { return error_; }

 protected:
  TextFit MeasureText(const LOGFONT& font, std::string_view text, LONG limit) override;
  TEXTMETRIC MeasureFont(const LOGFONT& font) override;
  void PaintText(const CPoint& top_left, std::string_view text, const LOGFONT& font,
                 COLORREF color) override;
  void PaintRect(const CRect& rect, COLORREF color) override;
  void PaintLine(const PaintedLine& line) override;
  void PaintPicture(const CRect& place, const BitmapDescription& picture) override;
  /// Fine enough for a printer. A pixel that is seen through in part is painted.
  double GetPictureScale() const override { return 4; }
  void ClipTo(const CRect& rect) override;
  bool BeginDocument(std::string_view title) override;
  PageStart BeginPage() override;
  bool FinishPage() override;
  bool FinishDocument() override;
  void DropDocument() override;

  /// For a device that makes something of the document: what is told as the error from now on.
  void SetError(const platform::Error& error) { error_ = error; }

 private:
  /// A font as it is drawn in.
  struct UsedFont {
    std::size_t index = 0;
    /// In pixels.
    LONG size = 0;
    /// Of the natural width.
    LONG percent = 100;
    friend bool operator==(const UsedFont&, const UsedFont&) = default;
  };
  /// What a document has besides its file.
  struct Document;

  UsedFont FontFor(const LOGFONT& font) const;
  int ObjectOf(const BitmapDescription& picture);
  void WritePicture(int number, const BitmapDescription& picture, int mask);
  void WriteMask(int number, const BitmapDescription& picture);
  void SetFill(COLORREF color);
  void AppendContent(std::string_view operators);
  void FlushContent();
  void WriteResources();
  std::string InfoEntries() const;
  LONG Height() const { return GetDeviceCaps(VERTRES); }

  const PdfSink sink_;
  const PageFormat page_;
  std::optional<SYSTEMTIME> created_;
  platform::Error error_;
  std::unique_ptr<Document> document_;
};

}  // namespace dq
