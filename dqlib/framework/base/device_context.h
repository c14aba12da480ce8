// One way to draw and print: on a window, on paper, or into a record that a test reads.
//
//   CFont* const former = dc.SelectObject(&bold);
//   dc.SetBkMode(TRANSPARENT);
//   dc.DrawText("&Name", cell, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
//   dc.SelectObject(former);
//
// Coordinates are pixels of the device, from 0, 0 in the top left corner of what it can draw on. A
// printing device has pixels of its own size. Any numbers may be given: what lies outside isn't
// drawn, and a rectangle without area, or with its edges exchanged, is none.
//
// Texts are in the process's multi-byte code page, where one character is never cut; in the page 0
// one of UTF-8 counts as one. A control character is drawn as a blank.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "dqlib/framework/base/drawing.h"

namespace dq {

/// What stands behind a text: the former contents, or the background colour.
enum BackgroundMode : int { TRANSPARENT = 1, OPAQUE = 2 };

/// Flags of `CDC::DrawText`.
enum DrawTextFlags : UINT {
  DT_LEFT = 0x0000,
  DT_TOP = 0x0000,
  DT_CENTER = 0x0001,
  DT_RIGHT = 0x0002,
  DT_VCENTER = 0x0004,  ///< With `DT_SINGLELINE` only, and so is `DT_BOTTOM`.
  DT_BOTTOM = 0x0008,
  DT_WORDBREAK = 0x0010,  ///< Breaks lines that are too long between words.
  DT_SINGLELINE = 0x0020,
  DT_EXPANDTABS = 0x0040,    ///< A tab goes on to the next multiple of eight average characters.
  DT_NOCLIP = 0x0100,        ///< Draws beyond the rectangle too.
  DT_CALCRECT = 0x0400,      ///< Makes the rectangle as large as the text, and draws nothing.
  DT_NOPREFIX = 0x0800,      ///< An ampersand is one.
  DT_END_ELLIPSIS = 0x8000,  ///< A line that is too long ends in "...".
};

/// Edges of `CDC::DrawEdge`, each made of an outer and an inner one.
enum EdgeType : UINT {
  BDR_RAISEDOUTER = 1,
  BDR_SUNKENOUTER = 2,
  BDR_RAISEDINNER = 4,
  BDR_SUNKENINNER = 8,
  EDGE_RAISED = BDR_RAISEDOUTER | BDR_RAISEDINNER,
  EDGE_ETCHED = BDR_SUNKENOUTER | BDR_RAISEDINNER,
  EDGE_BUMP = BDR_RAISEDOUTER | BDR_SUNKENINNER,
  EDGE_SUNKEN = BDR_SUNKENOUTER | BDR_SUNKENINNER,
};

/// The sides of an edge, and whether the inside is filled with the colour of the desktop's faces.
enum EdgeFlags : UINT {
  BF_LEFT = 1,
  BF_TOP = 2,
  BF_RIGHT = 4,
  BF_BOTTOM = 8,
  BF_RECT = BF_LEFT | BF_TOP | BF_RIGHT | BF_BOTTOM,
  BF_MIDDLE = 0x800,
};

/// What `CDC::GetDeviceCaps` is asked for.
enum DeviceCap : int {
  HORZRES = 8,  ///< Pixels that can be drawn on, across and down.
  VERTRES = 10,
  LOGPIXELSX = 88,  ///< Pixels of an inch.
  LOGPIXELSY = 90,
  PHYSICALWIDTH = 110,  ///< Pixels of the whole page; 0 if there are no pages.
  PHYSICALHEIGHT = 111,
  PHYSICALOFFSETX = 112,  ///< Where on the page 0, 0 is.
  PHYSICALOFFSETY = 113,
};

/// Measures of a font, in pixels.
struct TEXTMETRIC {
  /// Of a line: ascent and descent together.
  LONG tmHeight = 0;
  /// From the top of a line to the base line.
  LONG tmAscent = 0;
  LONG tmDescent = 0;
  LONG tmAveCharWidth = 0;
};

/// The measures of a device.
struct DeviceFormat {
  /// What can be drawn on, in pixels.
  CSize area;
  /// Both across and down.
  int pixels_per_inch = 96;
  /// What is drawn goes to pages.
  bool has_pages = false;
  /// A page, and where on it the area lies.
  CSize page = {};
  CPoint offset = {};
};

/// Results of `CDC::StartDoc` and its kin: above 0 is success.
inline constexpr int SP_ERROR = -1;

/// In a picture that is painted: this pixel isn't.
inline constexpr COLORREF kNoPixel = 0xFFFFFFFF;

/// How `CDC::DrawBitmap` draws a picture.
struct BitmapDrawing {
  /// The part that is drawn, as one picture of a strip; else all of it. What lies outside the
  /// picture is cut off.
  std::optional<CRect> part = {};
  /// The colour whose pixels are left out.
  std::optional<COLORREF> mask = {};
  /// Only in relief, as that of something disabled: its dark pixels in the desktop's shadow colour,
  /// with a light edge below and to the right.
  bool embossed = false;
};

/// Something to draw on. The state (objects, colours, position, clipping) stands here; a device
/// derives from it and paints. On the user-interface thread.
///
/// On a device with pages, what is drawn outside a page is lost; measuring goes on.
class CDC : public CObject {
  DECLARE_DYNAMIC(CDC)

  // State. Each operation returns what it replaces.

  /// The object must live, and not change, until another one is selected. Null, and the begin of
  /// all, is the device's own: a font for running text, a black pen of one pixel, a white brush. A
  /// pen or a brush that wasn't created draws nothing. Of a font, `lfEscapement` and
  /// `lfOrientation` count as 0.
  CFont* SelectObject(CFont* font);
  CPen* SelectObject(CPen* pen);
  CBrush* SelectObject(CBrush* brush);
  /// Black and white at the begin.
  COLORREF SetTextColor(COLORREF color);
  COLORREF SetBkColor(COLORREF color);
  COLORREF GetTextColor() const { return state_.text_color; }
  COLORREF GetBkColor() const { return state_.background; }
  /// A `BackgroundMode`; `OPAQUE` at the begin.
  int SetBkMode(int mode);
  int GetBkMode() const { return state_.background_mode; }
  const CFont& GetCurrentFont() const { return *state_.font; }
  CPoint GetCurrentPosition() const { return state_.position; }

  /// From now on draws only what lies in the rectangle too. `RestoreDC` alone widens that again.
  void IntersectClipRect(const CRect& rect);
  /// What is drawn on; empty if there is nothing left.
  const CRect& GetClipBox() const { return state_.clip; }

  /// Keeps the whole state, and returns its number from 1. `RestoreDC` goes back to a number, or so
  /// many back if it is below 0, and forgets what was kept since; false, and no change, if there is
  /// none.
  int SaveDC();
  BOOL RestoreDC(int saved);

  // Texts.

  /// Draws a line with its top left corner there.
  BOOL TextOut(int x, int y, std::string_view text);

  /// Draws a text in a rectangle, of one line or of several, which end at CR, LF, CR LF; one at the
  /// end of the text begins no line. An ampersand underlines the character behind it, which is so
  /// for the first one only, and vanishes; two are one. Blanks where `DT_WORDBREAK` breaks a line
  /// vanish; a word that is wider than the rectangle isn't broken. What is outside the rectangle is
  /// cut off.
  ///
  /// Returns the height of the lines, without those that begin below the rectangle and are cut off;
  /// with `DT_VCENTER` or `DT_BOTTOM` how far below the rectangle's top the line ends. Linear in
  /// the text.
  int DrawText(std::string_view text, CRect& rect, UINT flags);
  /// The same; the rectangle stays.
  int DrawText(std::string_view text, const CRect& rect, UINT flags);

  /// Of a text in one line.
  CSize GetTextExtent(std::string_view text);
  /// The bytes of as many characters from the start of the text as are at most so wide.
  std::size_t GetFittingLength(std::string_view text, int width);
  BOOL GetTextMetrics(TEXTMETRIC* metrics);

  // Lines and rectangles.

  /// Moves the position, and returns the former one.
  CPoint MoveTo(int x, int y);
  /// A line in the pen from the position up to the point, which isn't drawn itself and is the
  /// position then.
  BOOL LineTo(int x, int y);
  /// Filled with the brush and framed by the pen.
  BOOL Rectangle(const CRect& rect);
  void FillRect(const CRect& rect, const CBrush* brush);
  void FillSolidRect(const CRect& rect, COLORREF color);
  /// One pixel wide.
  void FrameRect(const CRect& rect, const CBrush* brush);
  /// The same; the left and top sides in one colour, the others in another.
  void Draw3dRect(const CRect& rect, COLORREF top_left, COLORREF bottom_right);
  /// An edge of an `EdgeType` on the sides that the `EdgeFlags` name, in the desktop's colours.
  BOOL DrawEdge(const CRect& rect, UINT edge, UINT flags);
  /// A dotted frame. Drawing it again doesn't erase it.
  void DrawFocusRect(const CRect& rect);

  // Pictures.

  /// Draws a picture, or a part of it, stretched to a rectangle, or in its own size. False if there
  /// is no such picture or part.
  bool DrawBitmap(const CRect& place, HBITMAP picture, const BitmapDrawing& how = {});
  bool DrawBitmap(const CPoint& place, HBITMAP picture, const BitmapDrawing& how = {});

  // The device, and its pages.

  /// By `DeviceCap`; 0 for what isn't known.
  int GetDeviceCaps(int index) const;
  BOOL IsPrinting() const { return format_.has_pages; }

  /// A document, and its pages one after the other. Each returns `SP_ERROR` if the device failed or
  /// there is nothing to start or to end. A document that failed takes nothing more and is to be
  /// given up by `AbortDoc`. `EndDoc` ends a page that is open. The state is kept from page to
  /// page.
  int StartDoc(std::string_view title);
  int StartPage();
  int EndPage();
  int EndDoc();
  /// Drops the whole document; nothing of it is printed.
  int AbortDoc();

 protected:
  /// The text that fits into a width.
  struct TextFit {
    std::size_t bytes = 0;
    LONG width = 0;
  };
  /// A line; the last point isn't painted, and isn't the first one.
  struct PaintedLine {
    CPoint from, to;
    /// A `PenStyle`, but not `PS_NULL`.
    int style;
    /// From 1.
    int width;
    COLORREF color;
  };
  enum class PageStart { kFailed, kOpen, kSkipped };

  /// `default_font` is the device's own.
  CDC(const DeviceFormat& format, const LOGFONT& default_font);

  // What a device paints. Rectangles have area and lie, at least in part, within the clip
  // rectangle and so within the device's area; fills lie in it wholly. Underline and strike-out of
  // a font are drawn by fills: the device leaves them out.

  /// The longest start of the text, in whole characters, that is at most `limit` pixels wide, which
  /// may be below 0. A longer start is never narrower. Stops at the limit: the time is that for
  /// what fits.
  virtual TextFit MeasureText(const LOGFONT& font, std::string_view text, LONG limit) = 0;
  virtual TEXTMETRIC MeasureFont(const LOGFONT& font) = 0;
  virtual void PaintText(const CPoint& top_left, std::string_view text, const LOGFONT& font,
                         COLORREF color) = 0;
  virtual void PaintRect(const CRect& rect, COLORREF color) = 0;
  virtual void PaintLine(const PaintedLine& line) = 0;
  /// Stretches the picture, which has pixels, to the rectangle, but for those that are `kNoPixel`.
  virtual void PaintPicture(const CRect& place, const BitmapDescription& picture) = 0;
  /// How many pixels of the device one pixel is, for pictures of shapes: they are painted in so
  /// many, and the high byte of each says how much is seen through it. 0, as here, has them painted
  /// as other pictures.
  virtual double GetPictureScale() const { return 0; }
  /// From now on paints in this rectangle only. It is the device's whole area at the begin and at
  /// the start of each page.
  virtual void ClipTo(const CRect& rect) = 0;

  // Pages, for a device that has some. One that isn't open can't be painted on; of what is drawn to
  // one that is skipped nothing comes here. `FinishDocument` and `DropDocument` end all. False is
  // failure.
  virtual bool BeginDocument(std::string_view title);
  virtual PageStart BeginPage();
  virtual bool FinishPage();
  virtual bool FinishDocument();
  virtual void DropDocument();

 private:
  struct State {
    CFont* font;
    CPen* pen;
    CBrush* brush;
    COLORREF text_color = RGB(0, 0, 0);
    COLORREF background = RGB(0xFF, 0xFF, 0xFF);
    int background_mode = OPAQUE;
    CPoint position = {};
    CRect clip = {};
  };
  enum class Stage { kNoDocument, kBetweenPages, kPage, kSkippedPage, kFailed };
  struct DrawnText;
  /// A point that may be farther away than devices can count.
  struct Place {
    std::int64_t x;
    std::int64_t y;
  };

  int Follow(bool succeeded, Stage next);
  bool PaintShapes(const CRect& place, const VectorPicture& shapes, const CRect& part,
                   bool embossed);
  bool Reach(const CRect& box);
  void DrawSegment(CPoint from, CPoint to, const CPen& pen);
  void DrawFrame(const CRect& rect, const CPen& pen);
  void DrawRelief(const CRect& rect, UINT sides, COLORREF top_left, COLORREF bottom_right);

  const TEXTMETRIC& FontMetrics();
  TextFit FitText(std::string_view text, LONG limit);
  /// Measures a line, and draws it if it is told where its top left corner is.
  TextFit LayOut(std::string_view line, LONG limit, UINT flags, const Place* place = nullptr);
  std::size_t FittingBytes(std::string_view text, LONG limit, UINT flags);
  void DrawRun(const Place& place, std::string_view text);
  int DrawLines(const DrawnText& text, const CRect& rect, UINT flags);
  void DrawLine(const DrawnText& text, std::string_view line, const CRect& rect, std::int64_t top,
                UINT flags);

  const DeviceFormat format_;
  CFont own_font_;
  CPen own_pen_;
  CBrush own_brush_;
  State state_;
  std::vector<State> saved_;
  /// Of the font that is selected, once it is asked for.
  std::optional<TEXTMETRIC> metrics_;
  /// What the device paints in.
  CRect device_clip_;
  Stage stage_;
};

}  // namespace dq
