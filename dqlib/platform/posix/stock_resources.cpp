#include "dqlib/platform/posix/stock_resources.h"

#include <algorithm>
#include <cstdlib>

namespace dq::platform::posix {
namespace {

constexpr int kSide = 32;
constexpr WORD kBitsPerPixel = 24;
constexpr int kBytesPerPixel = kBitsPerPixel / 8;
// 32 pixels of 3 bytes are a whole number of DWORDs, so rows need no padding.
static_assert(kSide * kBytesPerPixel % 4 == 0);

/// A line drawing. `strokes` are polylines with blanks between them; a point is two digits to the
/// base 32 (0 to 9, a to v), x to the right and y downwards.
struct Picture {
  WORD id;
  WORD hot_x;
  WORD hot_y;
  COLORREF color;
  std::string_view strokes;
};

constexpr COLORREF kBlack = 0x000000;
constexpr COLORREF kRed = 0x0000C0;
constexpr COLORREF kBlue = 0xC00000;
constexpr COLORREF kAmber = 0x0080E0;

constexpr Picture kPointers[] = {
    {32512, 0, 0, kBlack, "000l5gff00 5gas"},                          // arrow
    {32513, 16, 16, kBlack, "c4k4 g4gs csks"},                         // text
    {32514, 16, 16, kBlack, "84o4 8sos 84os o48s"},                    // wait
    {32515, 16, 16, kBlack, "g0gv 0gvg"},                              // cross
    {32516, 16, 0, kBlack, "g0gv 88g0o8"},                             // up
    {32640, 16, 16, kBlack, "88o8oo8o88 8880 o8v8"},                   // old size
    {32641, 16, 16, kBlack, "44s4ss4s44 88o8oo8o88"},                  // old icon
    {32642, 16, 16, kBlack, "44ss b444 4b44 lsss slss"},               // size, falling
    {32643, 16, 16, kBlack, "s44s l4s4 sls4 4l4s bs4s"},               // size, rising
    {32644, 16, 16, kBlack, "0gvg 6a0g6m pavgpm"},                     // size, sideways
    {32645, 16, 16, kBlack, "g0gv a6g0m6 apgvmp"},                     // size, up and down
    {32646, 16, 16, kBlack, "g0gv 0gvg c4g0k4 crgvkr 4c0g4k rcvgrk"},  // move
    {32647, 16, 16, kBlack, "44s4ss4s44 44ss s44s"},                   // old icon as pointer
    {32648, 16, 16, kBlack, "c4k4scskkscs4k4cc4 88oo"},                // no
    {32649, 12, 0, kBlack, "c0f0fcsesu8u4m4icic0"},                    // hand
    {32650, 0, 0, kBlack, "000c38568c 008c i4s4isi4 isss"},            // working
    {32651, 0, 0, kBlack, "000c38568c j4p4pcjcjg jkjl"},               // help
};

constexpr Picture kIcons[] = {
    {32512, 16, 16, kBlue, "22t2tt2t22 28t8"},                     // application
    {32513, 16, 16, kRed, "a2l2tatlltat2l2aa2 aall laal"},         // stop
    {32514, 16, 16, kBlue, "a2l2tatlltat2l2aa2 c9f6j9gggl gpgq"},  // question
    {32515, 16, 16, kAmber, "g2tt2tg2 gbgk gogp"},                 // exclamation
    {32516, 16, 16, kBlue, "a2l2tatlltat2l2aa2 gegp g8g9"},        // information
    {32517, 16, 16, kBlue, "22t2tt2t22 g2gt 2gtg"},                // the system's sign
    {32518, 16, 16, kAmber, "42s2sggt4g42"},                       // shield
};

constexpr int Digit(char digit) { return digit <= '9' ? digit - '0' : digit - 'a' + 10; }

constexpr bool IsPoint(char x, char y) {
  return std::min(Digit(x), Digit(y)) >= 0 && std::max(Digit(x), Digit(y)) < kSide;
}

/// True if every stroke is made of whole points on the canvas.
constexpr bool IsDrawable(const Picture& picture) {
  for (std::size_t at = 0; at < picture.strokes.size(); at += 2) {
    if (at > 0 && picture.strokes[at] == ' ') ++at;
    if (at + 1 >= picture.strokes.size()) return false;
    if (!IsPoint(picture.strokes[at], picture.strokes[at + 1])) return false;
  }
  return true;
}
static_assert(std::ranges::all_of(kPointers, IsDrawable) &&
              std::ranges::all_of(kIcons, IsDrawable));

void AppendWord(std::string& bytes, WORD value) {
  bytes += static_cast<char>(value & 0xFF);
  bytes += static_cast<char>(value >> 8);
}

void AppendDword(std::string& bytes, DWORD value) {
  AppendWord(bytes, static_cast<WORD>(value & 0xFFFF));
  AppendWord(bytes, static_cast<WORD>(value >> 16));
}

/// Rows of a picture from the bottom, each pixel as blue, green, red; white at first.
class Canvas {
 public:
  void Draw(std::string_view strokes, COLORREF color) {
    while (!strokes.empty()) {
      const std::string_view stroke = strokes.substr(0, strokes.find(' '));
      for (std::size_t at = 2; at + 1 < stroke.size(); at += 2) {
        Line(Digit(stroke[at - 2]), Digit(stroke[at - 1]), Digit(stroke[at]), Digit(stroke[at + 1]),
             color);
      }
      strokes.remove_prefix(std::min(stroke.size() + 1, strokes.size()));
    }
  }

  const std::string& bytes() const { return bytes_; }

 private:
  void Line(int x, int y, int to_x, int to_y, COLORREF color) {
    const int steps = std::max({std::abs(to_x - x), std::abs(to_y - y), 1});
    for (int step = 0; step <= steps; ++step) {
      Set(x + (to_x - x) * step / steps, y + (to_y - y) * step / steps, color);
    }
  }

  void Set(int x, int y, COLORREF color) {
    auto at = static_cast<std::size_t>((kSide - 1 - y) * kSide + x) * kBytesPerPixel;
    for (const int shift : {16, 8, 0}) bytes_[at++] = static_cast<char>(color >> shift);
  }

  std::string bytes_ = std::string(kSide * kSide * kBytesPerPixel, '\xFF');
};

std::string PictureData(const Picture& picture) {
  Canvas canvas;
  canvas.Draw(picture.strokes, picture.color);
  std::string data;
  AppendWord(data, picture.hot_x);
  AppendWord(data, picture.hot_y);
  for (DWORD field : {40, kSide, kSide}) AppendDword(data, field);
  AppendWord(data, 1);  // planes
  AppendWord(data, kBitsPerPixel);
  AppendDword(data, 0);  // not compressed
  AppendDword(data, static_cast<DWORD>(canvas.bytes().size()));
  for (int field = 0; field < 4; ++field) AppendDword(data, 0);  // resolution and colours
  return data + canvas.bytes();
}

/// A directory of one picture. That of a pointer has the size in WORDs, with the height of picture
/// and mask together; that of an icon has it in bytes and the number of colours behind it.
std::string GroupData(WORD name, std::size_t size, bool pointer) {
  std::string data;
  for (int field : {0, pointer ? 2 : 1, 1}) AppendWord(data, static_cast<WORD>(field));
  AppendWord(data, pointer ? WORD{kSide} : WORD{kSide | kSide << 8});
  AppendWord(data, pointer ? WORD{2 * kSide} : WORD{0});
  AppendWord(data, 1);  // planes
  AppendWord(data, kBitsPerPixel);
  AppendDword(data, static_cast<DWORD>(size));
  AppendWord(data, name);
  return data;
}

}  // namespace

StockResources::StockResources() {
  for (const Picture& picture : kPointers) {
    std::string data = PictureData(picture);
    Add(RESOURCE_GROUP_CURSOR, picture.id, GroupData(picture.id, data.size(), true));
    Add(RESOURCE_CURSOR, picture.id, std::move(data));
  }
  for (const Picture& picture : kIcons) {
    std::string data = PictureData(picture);
    Add(RESOURCE_GROUP_ICON, picture.id, GroupData(picture.id, data.size(), false));
    Add(RESOURCE_ICON, picture.id, std::move(data));
  }
}

void StockResources::Add(WORD type, WORD name, std::string data) {
  Entry& entry = entries_[{type, name}];
  entry.data = std::move(data);
  entry.resource = {type, name, entry.data};
}

const Resource* StockResources::Find(WORD type, WORD name) const {
  const auto entry = entries_.find({type, name});
  return entry == entries_.end() ? nullptr : &entry->second.resource;
}

std::optional<std::string_view> StockResources::String(UINT) const { return std::nullopt; }

}  // namespace dq::platform::posix
