#include "dqlib/framework/base/drawing.h"

#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include "dqlib/framework/base/little_endian.h"
#include "dqlib/framework/base/vector_picture.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

constexpr std::size_t kDibHeaderSize = 40;
constexpr std::size_t kPaletteEntrySize = 4;
/// Two WORDs in front of the picture of a pointer or an icon.
constexpr std::size_t kHotSpotSize = 4;

constexpr unsigned Byte(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

constexpr WORD ReadWord(std::string_view bytes, std::size_t at) {
  return detail::FromLittleEndian<WORD>(bytes.substr(at));
}

constexpr DWORD ReadDword(std::string_view bytes, std::size_t at) {
  return detail::FromLittleEndian<DWORD>(bytes.substr(at));
}

/// Blue, green, red: the order of palettes and of 24-bit pixels.
constexpr COLORREF ReadColor(std::string_view bytes, std::size_t at) {
  return Byte(bytes, at) << 16 | Byte(bytes, at + 1) << 8 | Byte(bytes, at + 2);
}

template <std::unsigned_integral T>
void Append(T value, std::string& bytes) {
  bytes += detail::AsText(detail::ToLittleEndian(value));
}

/// Bytes of a row, which is filled up to a multiple of 4.
constexpr std::uint64_t RowSize(std::uint64_t width, unsigned bits) {
  return (width * bits + 31) / 32 * 4;
}

/// What the header of a bitmap says, with every length checked against the bytes there are.
struct DibLayout {
  std::size_t width;
  std::size_t height;
  unsigned bits;
  bool top_down;
  std::size_t row_size;
  std::string_view palette;
  std::string_view rows;
};

std::optional<DibLayout> ReadLayout(std::string_view bytes) {
  if (bytes.size() < kDibHeaderSize || ReadDword(bytes, 0) != kDibHeaderSize) return std::nullopt;
  const LONG width = static_cast<LONG>(ReadDword(bytes, 4));
  const std::int64_t height = static_cast<LONG>(ReadDword(bytes, 8));
  const unsigned planes = ReadWord(bytes, 12);
  const unsigned bits = ReadWord(bytes, 14);
  const DWORD compression = ReadDword(bytes, 16);
  const std::uint64_t colors_used = ReadDword(bytes, 32);
  if (width < 1 || height == 0 || planes != 1 || compression != 0) return std::nullopt;
  if (bits != 1 && bits != 4 && bits != 8 && bits != 24) return std::nullopt;

  // In a 24-bit bitmap a palette is a hint for displays and isn't used.
  const std::uint64_t most_colors = bits == 24 ? colors_used : std::uint64_t{1} << bits;
  if (colors_used > most_colors) return std::nullopt;
  const std::uint64_t colors = colors_used == 0 && bits != 24 ? most_colors : colors_used;
  const std::string_view body = bytes.substr(kDibHeaderSize);
  if (colors > body.size() / kPaletteEntrySize) return std::nullopt;

  DibLayout layout{};
  const std::size_t palette_size = static_cast<std::size_t>(colors) * kPaletteEntrySize;
  layout.palette = body.substr(0, palette_size);
  layout.rows = body.substr(palette_size);
  layout.width = static_cast<std::size_t>(width);
  layout.height = static_cast<std::size_t>(height < 0 ? -height : height);
  layout.bits = bits;
  layout.top_down = height < 0;
  const std::uint64_t row_size = RowSize(layout.width, bits);
  if (layout.height > layout.rows.size() / row_size) return std::nullopt;
  layout.row_size = static_cast<std::size_t>(row_size);
  return layout;
}

/// The colour of one pixel; no value if it names a colour that the palette doesn't have.
std::optional<COLORREF> ReadPixel(const DibLayout& layout, std::string_view row, std::size_t x) {
  if (layout.bits == 24) return ReadColor(row, x * 3);
  const std::size_t first_bit = x * layout.bits;
  const unsigned shift = 8 - layout.bits - static_cast<unsigned>(first_bit % 8);
  const unsigned index = Byte(row, first_bit / 8) >> shift & ((1U << layout.bits) - 1);
  if (index >= layout.palette.size() / kPaletteEntrySize) return std::nullopt;
  return ReadColor(layout.palette, index * kPaletteEntrySize);
}

std::unique_ptr<BitmapDescription> ParseDib(std::string_view bytes) {
  const auto layout = ReadLayout(bytes);
  if (!layout) return nullptr;
  auto picture = std::make_unique<BitmapDescription>();
  picture->size = {static_cast<LONG>(layout->width), static_cast<LONG>(layout->height)};
  picture->pixels.reserve(layout->width * layout->height);
  for (std::size_t y = 0; y < layout->height; ++y) {
    const std::size_t stored = layout->top_down ? y : layout->height - 1 - y;
    const std::string_view row = layout->rows.substr(stored * layout->row_size, layout->row_size);
    for (std::size_t x = 0; x < layout->width; ++x) {
      const auto color = ReadPixel(*layout, row, x);
      if (!color) return nullptr;
      picture->pixels.push_back(*color);
    }
  }
  return picture;
}

/// Of what is drawn in the three greys of buttons, the colours of the desktop.
COLORREF ToDesktopColor(COLORREF color) {
  switch (color) {
    case RGB(0xC0, 0xC0, 0xC0):
      return GetSysColor(COLOR_BTNFACE);
    case RGB(0x80, 0x80, 0x80):
      return GetSysColor(COLOR_BTNSHADOW);
    case RGB(0xDF, 0xDF, 0xDF):
      return GetSysColor(COLOR_3DLIGHT);
    default:
      return color;
  }
}

void MapToDesktopColors(BitmapDescription& picture) {
  for (COLORREF& color : picture.pixels) color = ToDesktopColor(color);
  if (picture.shapes != nullptr) picture.shapes = picture.shapes->Recolored(ToDesktopColor);
}

constexpr LOGFONT MakeFont(LONG height, LONG width, LONG weight, BYTE char_set,
                           BYTE pitch_and_family, std::string_view face) {
  LOGFONT font;
  font.lfHeight = height;
  font.lfWidth = width;
  font.lfWeight = weight;
  font.lfCharSet = char_set;
  font.lfPitchAndFamily = pitch_and_family;
  for (std::size_t i = 0; i < face.size(); ++i) font.lfFaceName[i] = face[i];
  return font;
}

constexpr BYTE kOemCharSet = 255;
constexpr BYTE kFixedModern = 0x31;
constexpr BYTE kVariableSwiss = 0x22;

struct StockFont {
  int number;
  LOGFONT font;
};

constexpr StockFont kStockFonts[] = {
    {10, MakeFont(12, 8, 400, kOemCharSet, kFixedModern, "Terminal")},
    {11, MakeFont(12, 9, 400, 0, kFixedModern, "Courier")},
    {12, MakeFont(12, 9, 400, 0, kVariableSwiss, "MS Sans Serif")},
    {13, MakeFont(16, 7, 700, 0, kVariableSwiss, "System")},
    {14, MakeFont(16, 7, 700, 0, kVariableSwiss, "System")},
    {16, MakeFont(15, 8, 400, 0, kFixedModern, "Fixedsys")},
    {17, MakeFont(-11, 0, 400, 0, 0, "MS Shell Dlg")},
};

/// Pointers are kept by content, so that a module that is gone never answers for another one at its
/// address.
const CursorDescription* LoadPointer(HINSTANCE module, UINT id, WORD type) {
  const HRSRC record = FindModuleResource(module, id, type);
  if (record == nullptr || record->data.size() < kHotSpotSize) return nullptr;

  using Key = std::tuple<WORD, WORD, std::string>;
  static auto& loaded = *new std::map<Key, std::unique_ptr<const CursorDescription>>;
  Key key(type, record->name, record->data);
  if (const auto found = loaded.find(key); found != loaded.end()) return found->second.get();

  std::unique_ptr<BitmapDescription> picture = ParseDib(record->data.substr(kHotSpotSize));
  if (picture == nullptr) return nullptr;
  auto pointer = std::make_unique<CursorDescription>();
  pointer->id = record->name;
  pointer->hot_spot = {ReadWord(record->data, 0), ReadWord(record->data, 2)};
  pointer->picture = std::move(*picture);
  return loaded.emplace(std::move(key), std::move(pointer)).first->second.get();
}

}  // namespace

IMPLEMENT_DYNAMIC(CBrush, CObject)
IMPLEMENT_DYNAMIC(CPen, CObject)
IMPLEMENT_DYNAMIC(CFont, CObject)
IMPLEMENT_DYNAMIC(CBitmap, CObject)

COLORREF GetSysColor(int index) { return platform::Current().color_scheme->Color(index); }

bool CBrush::CreateSolidBrush(COLORREF color) {
  color_ = color;
  return created_ = true;
}

bool CPen::CreatePen(int style, int width, COLORREF color) {
  style_ = style;
  width_ = width;
  color_ = color;
  return created_ = true;
}

bool CFont::CreateFontIndirect(const LOGFONT& description) {
  description_ = description;
  return created_ = true;
}

const LOGFONT* GetStockFont(int number) {
  for (const StockFont& stock : kStockFonts) {
    if (stock.number == number) return &stock.font;
  }
  return nullptr;
}

bool CBitmap::Attach(std::unique_ptr<const BitmapDescription> picture) {
  picture_ = std::move(picture);
  return picture_ != nullptr;
}

bool CBitmap::LoadBitmap(HINSTANCE module, UINT id) {
  auto picture = LoadImage(module, id, 0);
  return picture != nullptr && Attach(std::move(picture));
}

HRSRC FindModuleResource(HINSTANCE module, UINT id, WORD type) {
  const platform::Module& searched =
      module == nullptr ? platform::Current().modules->System() : *module;
  return searched.Find(type, static_cast<WORD>(id));
}

std::unique_ptr<const BitmapDescription> LoadImage(HINSTANCE module, UINT id, UINT flags) {
  const HRSRC record = FindModuleResource(module, id, RESOURCE_BITMAP);
  if (record == nullptr) return nullptr;
  std::unique_ptr<BitmapDescription> picture = ParseDib(record->data);
  const HRSRC shapes = FindModuleResource(module, id, RESOURCE_SHAPES);
  if (picture != nullptr && shapes != nullptr) picture->shapes = VectorPicture::Read(shapes->data);
  if (picture != nullptr && (flags & IMAGE_MAP_3D_COLORS) != 0) MapToDesktopColors(*picture);
  return picture;
}

std::unique_ptr<const BitmapDescription> ReadDib(std::string_view bytes) { return ParseDib(bytes); }

std::string WriteDib(const BitmapDescription& picture) {
  if (picture.size.cx < 1 || picture.size.cy < 1) return {};
  const auto width = static_cast<std::size_t>(picture.size.cx);
  const auto height = static_cast<std::size_t>(picture.size.cy);
  if (picture.pixels.size() / width != height || picture.pixels.size() % width != 0) return {};

  const auto row_size = static_cast<std::size_t>(RowSize(width, 24));
  std::string bytes;
  bytes.reserve(kDibHeaderSize + row_size * height);
  Append(DWORD{kDibHeaderSize}, bytes);
  Append(static_cast<DWORD>(picture.size.cx), bytes);
  Append(static_cast<DWORD>(picture.size.cy), bytes);
  Append(WORD{1}, bytes);
  Append(WORD{24}, bytes);
  bytes.resize(kDibHeaderSize, '\0');  // No compression, size of the data implied, no palette.
  for (std::size_t y = height; y-- > 0;) {
    for (std::size_t x = 0; x < width; ++x) {
      const COLORREF color = picture.pixels[y * width + x];
      bytes += static_cast<char>(color >> 16 & 0xFF);
      bytes += static_cast<char>(color >> 8 & 0xFF);
      bytes += static_cast<char>(color & 0xFF);
    }
    bytes.append(row_size - width * 3, '\0');
  }
  return bytes;
}

HCURSOR LoadCursor(HINSTANCE module, UINT id) { return LoadPointer(module, id, RESOURCE_CURSOR); }

HICON LoadIcon(HINSTANCE module, UINT id) { return LoadPointer(module, id, RESOURCE_ICON); }

}  // namespace dq
