// Drawing objects as described records: what a brush, a pen, a font or a picture is, without a
// screen. A window layer makes its own objects from the descriptions.
//
// All of it belongs to the user-interface thread.

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/base/geometry.h"
#include "dqlib/framework/base/object.h"
#include "dqlib/platform/color_scheme.h"
#include "dqlib/platform/modules.h"

namespace dq {

/// A colour from its parts.
constexpr COLORREF RGB(BYTE red, BYTE green, BYTE blue) {
  return static_cast<COLORREF>(red | green << 8 | blue << 16);
}

/// A colour of the desktop by `SystemColor`, as the window layer has it, or the usual one; black
/// for a number that is none.
COLORREF GetSysColor(int index);

/// Description of a font: 60 bytes, as files and resources carry it.
struct LOGFONT {
  /// Height of a character in pixels if below 0, of a cell if above.
  LONG lfHeight = 0;
  LONG lfWidth = 0;
  LONG lfEscapement = 0;
  LONG lfOrientation = 0;
  /// 400 is normal, 700 bold.
  LONG lfWeight = 0;
  BYTE lfItalic = 0;
  BYTE lfUnderline = 0;
  BYTE lfStrikeOut = 0;
  BYTE lfCharSet = 0;
  BYTE lfOutPrecision = 0;
  BYTE lfClipPrecision = 0;
  BYTE lfQuality = 0;
  BYTE lfPitchAndFamily = 0;
  /// Face name, zero-ended.
  char lfFaceName[32] = {};
};
static_assert(sizeof(LOGFONT) == 60);

class VectorPicture;

/// Description of a picture: 24-bit colours, row by row from the top.
struct BitmapDescription {
  CSize size;
  std::vector<COLORREF> pixels;
  /// The same picture for devices that paint it finer; null if there are only the pixels.
  std::shared_ptr<const VectorPicture> shapes = nullptr;
};

/// Pictures, cursors and icons by handle: null is none. A handle stays valid as long as the object
/// that owns it, or as the module for those a module hands out.
using HBITMAP = const BitmapDescription*;
struct CursorDescription;
using HCURSOR = const CursorDescription*;
using HICON = const CursorDescription*;

/// Description of a pointer or an icon.
struct CursorDescription {
  WORD id = 0;
  /// The point of a pointer that counts as its place.
  CPoint hot_spot;
  BitmapDescription picture;
};

/// A brush of one colour. Created once; a second creation replaces the first.
class CBrush : public CObject {
  DECLARE_DYNAMIC(CBrush)
  bool CreateSolidBrush(COLORREF color);
  bool IsCreated() const { return created_; }
  COLORREF color() const { return color_; }

 private:
  bool created_ = false;
  COLORREF color_ = 0;
};

/// Styles of pens.
enum PenStyle : int { PS_SOLID = 0, PS_DASH = 1, PS_DOT = 2, PS_DASHDOT = 3, PS_NULL = 5 };

/// A pen. A style that isn't a `PenStyle` is solid; width 0 is one pixel.
class CPen : public CObject {
  DECLARE_DYNAMIC(CPen)
  bool CreatePen(int style, int width, COLORREF color);
  bool IsCreated() const { return created_; }
  int style() const { return style_; }
  int width() const { return width_; }
  COLORREF color() const { return color_; }

 private:
  bool created_ = false;
  int style_ = 0;
  int width_ = 0;
  COLORREF color_ = 0;
};

/// A font.
class CFont : public CObject {
  DECLARE_DYNAMIC(CFont)
  bool CreateFontIndirect(const LOGFONT& description);
  bool IsCreated() const { return created_; }
  /// The description; all zero if there is no font.
  const LOGFONT& GetLogFont() const { return description_; }

 private:
  bool created_ = false;
  LOGFONT description_;
};

/// The system's stock font with that number (10 to 14, 16 and 17), or null.
const LOGFONT* GetStockFont(int number);

/// A picture.
class CBitmap : public CObject {
  DECLARE_DYNAMIC(CBitmap)
  /// Takes over a picture; null leaves it without one. Returns whether there is one now.
  bool Attach(std::unique_ptr<const BitmapDescription> picture);
  /// Loads the picture resource of a module and attaches it. Returns false, and changes nothing, if
  /// there is none.
  bool LoadBitmap(HINSTANCE module, UINT id);
  HBITMAP GetSafeHandle() const { return picture_.get(); }

 private:
  std::unique_ptr<const BitmapDescription> picture_;
};

/// The record of a module's resource by the low 16 bits of its id, or null if there is none. Null
/// module means the system's own resources.
HRSRC FindModuleResource(HINSTANCE module, UINT id, WORD type);

/// Flags of `LoadImage`.
enum ImageFlags : UINT {
  IMAGE_DEFAULT_SIZE = 0x40,
  /// Grey C0C0C0, 808080 and DFDFDF become the desktop's face, shadow and light colours.
  IMAGE_MAP_3D_COLORS = 0x1000,
};

/// Loads a picture in its own size; null module means the system's own resources. Null if there is
/// no such picture or its data is no device-independent bitmap of 1, 4, 8 or 24 bits a pixel.
std::unique_ptr<const BitmapDescription> LoadImage(HINSTANCE module, UINT id, UINT flags);

/// Reads and writes the bytes of a picture resource: a device-independent bitmap with its 40-byte
/// header, without a file header. Reading takes uncompressed ones, rows from the bottom up or from
/// the top down, and gives null for anything it can't make sense of. Writing makes 24 bits a pixel
/// and rows from the bottom up; it gives "" for a description whose pixels don't match its size.
std::unique_ptr<const BitmapDescription> ReadDib(std::string_view bytes);
std::string WriteDib(const BitmapDescription& picture);

/// A pointer or icon of a module; null module means the system's own. Null if there is none or its
/// data is no pointer: x and y of the hot spot as two WORDs, then a picture as above. The result
/// lives as long as the process, and a second load gives the same one.
HCURSOR LoadCursor(HINSTANCE module, UINT id);
HICON LoadIcon(HINSTANCE module, UINT id);

}  // namespace dq
