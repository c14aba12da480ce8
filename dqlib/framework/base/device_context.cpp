#include "dqlib/framework/base/device_context.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "dqlib/framework/base/vector_picture.h"

namespace dq {
namespace {

/// No device counts farther than to here; lines are cut off where they go on.
constexpr double kFarthest = 1 << 20;
constexpr int kWidestPen = 1 << 15;

bool Contains(const CRect& outer, const CRect& inner) { return Intersect(outer, inner) == inner; }

/// Cuts off what of a line lies beyond `kFarthest`; false if nothing is left of it.
bool CutLine(CPoint& from, CPoint& to) {
  double begin = 0;
  double end = 1;
  const double width = static_cast<double>(to.x) - from.x;
  const double height = static_cast<double>(to.y) - from.y;
  for (const auto& [start, way] : {std::pair<double, double>(from.x, width), {from.y, height}}) {
    if (way == 0 && std::abs(start) > kFarthest) return false;
    if (way == 0) continue;
    const double one = (-kFarthest - start) / way;
    const double other = (kFarthest - start) / way;
    const double enters = std::min(one, other);
    const double leaves = std::max(one, other);
    begin = std::max(begin, enters);
    end = std::min(end, leaves);
  }
  if (begin >= end) return false;
  const CPoint first = from;
  const auto point_at = [&](double part) {
    return CPoint{static_cast<LONG>(std::lround(first.x + part * width)),
                  static_cast<LONG>(std::lround(first.y + part * height))};
  };
  if (begin > 0) from = point_at(begin);
  if (end < 1) to = point_at(end);
  return from != to;
}

/// What a line covers.
CRect BoxOf(const CPoint& from, const CPoint& to, int width) {
  CRect box{std::min(from.x, to.x), std::min(from.y, to.y), std::max(from.x, to.x) + 1,
            std::max(from.y, to.y) + 1};
  // Without the last point of one that runs straight.
  if (from.y == to.y) from.x < to.x ? --box.right : ++box.left;
  if (from.x == to.x) from.y < to.y ? --box.bottom : ++box.top;
  const LONG around = width / 2;
  return {box.left - around, box.top - around, box.right + around, box.bottom + around};
}

bool HasPixels(const BitmapDescription& picture) {
  if (picture.size.cx < 1 || picture.size.cy < 1) return false;
  const auto width = static_cast<std::size_t>(picture.size.cx);
  return picture.pixels.size() % width == 0 &&
         picture.pixels.size() / width == static_cast<std::size_t>(picture.size.cy);
}

/// The part of a picture within it, with `kNoPixel` where the mask is. Of a smooth one the high
/// bytes of the pixels stay.
BitmapDescription CutPicture(const BitmapDescription& picture, const CRect& part,
                             const std::optional<COLORREF>& mask, bool is_smooth = false) {
  BitmapDescription cut;
  cut.size = part.Size();
  cut.pixels.reserve(static_cast<std::size_t>(cut.size.cx) * static_cast<std::size_t>(cut.size.cy));
  for (LONG y = part.top; y < part.bottom; ++y) {
    const std::size_t row = static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.size.cx);
    for (LONG x = part.left; x < part.right; ++x) {
      const COLORREF color = picture.pixels[row + static_cast<std::size_t>(x)];
      const bool is_left_out = (color > 0xFFFFFF && !is_smooth) || color == mask;
      cut.pixels.push_back(is_left_out ? kNoPixel : color);
    }
  }
  return cut;
}

/// Whether a pixel, of which no more than half is seen through, belongs to what a picture shows,
/// and not to its light ground.
bool IsInk(COLORREF color) {
  const COLORREF brightness =
      3 * (color & 0xFF) + 6 * (color >> 8 & 0xFF) + (color >> 16 & 0xFF);  // tenths
  constexpr COLORREF kHalf = 128;
  return color >> 24 < kHalf && brightness < 10 * 0xC0;
}

/// With edges so wide.
BitmapDescription Emboss(const BitmapDescription& picture, std::size_t edge = 1) {
  const auto width = static_cast<std::size_t>(picture.size.cx);
  BitmapDescription relief{picture.size, std::vector<COLORREF>(picture.pixels.size(), kNoPixel)};
  const auto stamp = [&](COLORREF color, std::size_t shift) {
    for (std::size_t i = 0; i + shift * (width + 1) < picture.pixels.size(); ++i) {
      const bool has_room = i % width + shift < width;
      if (has_room && IsInk(picture.pixels[i])) relief.pixels[i + shift * (width + 1)] = color;
    }
  };
  stamp(GetSysColor(COLOR_BTNHIGHLIGHT), edge);
  stamp(GetSysColor(COLOR_BTNSHADOW), 0);
  return relief;
}

/// A rectangle of a size, as far as coordinates reach.
CRect RectAt(const CPoint& place, const CSize& size) {
  const auto end = [](LONG begin, LONG length) {
    return static_cast<LONG>(
        std::min<std::int64_t>(std::int64_t{begin} + length, std::numeric_limits<LONG>::max()));
  };
  return {place.x, place.y, end(place.x, size.cx), end(place.y, size.cy)};
}

struct EdgeColors {
  UINT edge;
  int top_left;
  int bottom_right;
};

/// From the outside inwards.
constexpr EdgeColors kEdgeColors[] = {
    {BDR_RAISEDOUTER, COLOR_3DLIGHT, COLOR_3DDKSHADOW},
    {BDR_SUNKENOUTER, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT},
    {BDR_RAISEDINNER, COLOR_BTNHIGHLIGHT, COLOR_BTNSHADOW},
    {BDR_SUNKENINNER, COLOR_3DDKSHADOW, COLOR_3DLIGHT},
};

}  // namespace

IMPLEMENT_DYNAMIC(CDC, CObject)

CDC::CDC(const DeviceFormat& format, const LOGFONT& default_font)
    : format_(format),
      state_{.font = &own_font_, .pen = &own_pen_, .brush = &own_brush_},
      device_clip_{0, 0, format.area.cx, format.area.cy},
      stage_(format.has_pages ? Stage::kNoDocument : Stage::kPage) {
  state_.clip = device_clip_;
  own_font_.CreateFontIndirect(default_font);
  own_pen_.CreatePen(PS_SOLID, 1, RGB(0, 0, 0));
  own_brush_.CreateSolidBrush(RGB(0xFF, 0xFF, 0xFF));
}

CFont* CDC::SelectObject(CFont* font) {
  metrics_.reset();
  return std::exchange(state_.font, font == nullptr ? &own_font_ : font);
}

CPen* CDC::SelectObject(CPen* pen) {
  return std::exchange(state_.pen, pen == nullptr ? &own_pen_ : pen);
}

CBrush* CDC::SelectObject(CBrush* brush) {
  return std::exchange(state_.brush, brush == nullptr ? &own_brush_ : brush);
}

COLORREF CDC::SetTextColor(COLORREF color) { return std::exchange(state_.text_color, color); }

COLORREF CDC::SetBkColor(COLORREF color) { return std::exchange(state_.background, color); }

int CDC::SetBkMode(int mode) { return std::exchange(state_.background_mode, mode); }

void CDC::IntersectClipRect(const CRect& rect) { state_.clip = Intersect(state_.clip, rect); }

int CDC::SaveDC() {
  saved_.push_back(state_);
  return static_cast<int>(saved_.size());
}

BOOL CDC::RestoreDC(int saved) {
  const auto count = static_cast<std::int64_t>(saved_.size());
  const std::int64_t index = saved < 0 ? count + saved : std::int64_t{saved} - 1;
  if (index < 0 || index >= count) return 0;
  state_ = saved_[static_cast<std::size_t>(index)];
  saved_.erase(saved_.begin() + index, saved_.end());
  metrics_.reset();
  return 1;
}

/// Whether anything within the box shows; then the device is set to cut off what doesn't. It is
/// told of another clip rectangle only where that makes a difference.
bool CDC::Reach(const CRect& box) {
  const CRect visible = Intersect(box, state_.clip);
  if (stage_ != Stage::kPage || visible.IsRectEmpty()) return false;
  if (visible == box ? Contains(device_clip_, box) : device_clip_ == state_.clip) return true;
  device_clip_ = state_.clip;
  ClipTo(device_clip_);
  return true;
}

CPoint CDC::MoveTo(int x, int y) { return std::exchange(state_.position, {x, y}); }

BOOL CDC::LineTo(int x, int y) {
  const CPoint to{x, y};
  DrawSegment(std::exchange(state_.position, to), to, *state_.pen);
  return 1;
}

void CDC::DrawSegment(CPoint from, CPoint to, const CPen& pen) {
  if (!pen.IsCreated() || pen.style() == PS_NULL || from == to || !CutLine(from, to)) return;
  const bool is_known = pen.style() >= PS_SOLID && pen.style() <= PS_DASHDOT;
  const int width = std::clamp(pen.width(), 1, kWidestPen);
  if (!Reach(BoxOf(from, to, width))) return;
  PaintLine({from, to, is_known ? pen.style() : PS_SOLID, width, pen.color()});
}

BOOL CDC::Rectangle(const CRect& rect) {
  FillRect(rect, state_.brush);
  DrawFrame(rect, *state_.pen);
  return 1;
}

void CDC::FillRect(const CRect& rect, const CBrush* brush) {
  if (brush != nullptr && brush->IsCreated()) FillSolidRect(rect, brush->color());
}

void CDC::FillSolidRect(const CRect& rect, COLORREF color) {
  const CRect visible = Intersect(rect, state_.clip);
  if (Reach(visible)) PaintRect(visible, color);
}

void CDC::FrameRect(const CRect& rect, const CBrush* brush) {
  if (brush != nullptr && brush->IsCreated()) Draw3dRect(rect, brush->color(), brush->color());
}

void CDC::Draw3dRect(const CRect& rect, COLORREF top_left, COLORREF bottom_right) {
  DrawRelief(rect, BF_RECT, top_left, bottom_right);
}

void CDC::DrawRelief(const CRect& rect, UINT sides, COLORREF top_left, COLORREF bottom_right) {
  if (rect.IsRectEmpty()) return;
  const auto& [left, top, right, bottom] = rect;
  // The corners where the colours meet are those of the right and bottom sides.
  if ((sides & BF_TOP) != 0) FillSolidRect({left, top, right, top + 1}, top_left);
  if ((sides & BF_LEFT) != 0) FillSolidRect({left, top, left + 1, bottom}, top_left);
  if ((sides & BF_RIGHT) != 0) FillSolidRect({right - 1, top, right, bottom}, bottom_right);
  if ((sides & BF_BOTTOM) != 0) FillSolidRect({left, bottom - 1, right, bottom}, bottom_right);
}

BOOL CDC::DrawEdge(const CRect& rect, UINT edge, UINT flags) {
  CRect inside = rect;
  for (const EdgeColors& row : kEdgeColors) {
    if ((edge & row.edge) == 0 || inside.IsRectEmpty()) continue;
    DrawRelief(inside, flags, GetSysColor(row.top_left), GetSysColor(row.bottom_right));
    if ((flags & BF_LEFT) != 0) ++inside.left;
    if ((flags & BF_TOP) != 0) ++inside.top;
    if ((flags & BF_RIGHT) != 0) --inside.right;
    if ((flags & BF_BOTTOM) != 0) --inside.bottom;
  }
  if ((flags & BF_MIDDLE) != 0) FillSolidRect(inside, GetSysColor(COLOR_BTNFACE));
  return 1;
}

void CDC::DrawFocusRect(const CRect& rect) {
  CPen dots;
  dots.CreatePen(PS_DOT, 1, RGB(0, 0, 0));
  DrawFrame(rect, dots);
}

void CDC::DrawFrame(const CRect& rect, const CPen& pen) {
  if (rect.IsRectEmpty()) return;
  const CPoint corners[] = {{rect.left, rect.top},
                            {rect.right - 1, rect.top},
                            {rect.right - 1, rect.bottom - 1},
                            {rect.left, rect.bottom - 1}};
  for (std::size_t i = 0; i < 4; ++i) DrawSegment(corners[i], corners[(i + 1) % 4], pen);
  // Lines leave out their last point, and so those of a single pixel all they have.
  if (corners[0] == corners[2]) DrawSegment(corners[0], {rect.right, rect.top}, pen);
}

bool CDC::DrawBitmap(const CRect& place, HBITMAP picture, const BitmapDrawing& how) {
  if (picture == nullptr || !HasPixels(*picture)) return false;
  const CRect whole{0, 0, picture->size.cx, picture->size.cy};
  const CRect part = Intersect(how.part.value_or(whole), whole);
  if (part.IsRectEmpty()) return false;
  if (!Reach(place)) return true;
  if (picture->shapes != nullptr && GetPictureScale() > 0) {
    return PaintShapes(place, *picture->shapes, part, how.embossed);
  }
  BitmapDescription painted = CutPicture(*picture, part, how.mask);
  if (how.embossed) painted = Emboss(painted);
  PaintPicture(place, painted);
  return true;
}

/// The part of a picture as fine as the device paints it.
bool CDC::PaintShapes(const CRect& place, const VectorPicture& shapes, const CRect& part,
                      bool embossed) {
  const auto fine = [scale = GetPictureScale()](LONG whole, LONG shown, LONG length) {
    return static_cast<LONG>(std::lround(std::min(4096.0, scale * length * whole / shown)));
  };
  const CSize whole = shapes.size();
  const CSize size{fine(whole.cx, part.Width(), place.Width()),
                   fine(whole.cy, part.Height(), place.Height())};
  const auto rendered = shapes.Render(size);
  if (!HasPixels(*rendered)) return false;
  const auto across = [&](LONG x) {
    return static_cast<LONG>(std::int64_t{x} * size.cx / whole.cx);
  };
  const auto down = [&](LONG y) { return static_cast<LONG>(std::int64_t{y} * size.cy / whole.cy); };
  const CRect cut{across(part.left), down(part.top), across(part.right), down(part.bottom)};
  if (cut.IsRectEmpty()) return true;
  BitmapDescription painted = CutPicture(*rendered, cut, std::nullopt, true);
  const auto edge = static_cast<std::size_t>(std::lround(std::max(1.0, GetPictureScale())));
  if (embossed) painted = Emboss(painted, edge);
  PaintPicture(place, painted);
  return true;
}

bool CDC::DrawBitmap(const CPoint& place, HBITMAP picture, const BitmapDrawing& how) {
  if (picture == nullptr) return false;
  const CRect whole{0, 0, picture->size.cx, picture->size.cy};
  const CSize size = Intersect(how.part.value_or(whole), whole).Size();
  return DrawBitmap(RectAt(place, size), picture, how);
}

int CDC::GetDeviceCaps(int index) const {
  switch (index) {
    case HORZRES:
      return format_.area.cx;
    case VERTRES:
      return format_.area.cy;
    case LOGPIXELSX:
    case LOGPIXELSY:
      return format_.pixels_per_inch;
    case PHYSICALWIDTH:
      return format_.page.cx;
    case PHYSICALHEIGHT:
      return format_.page.cy;
    case PHYSICALOFFSETX:
      return format_.offset.x;
    case PHYSICALOFFSETY:
      return format_.offset.y;
    default:
      return 0;
  }
}

int CDC::StartDoc(std::string_view title) {
  if (stage_ != Stage::kNoDocument || !BeginDocument(title)) return SP_ERROR;
  stage_ = Stage::kBetweenPages;
  return 1;
}

/// The result of a step of a document, behind which comes the next stage.
int CDC::Follow(bool succeeded, Stage next) {
  stage_ = succeeded ? next : Stage::kFailed;
  return succeeded ? 1 : SP_ERROR;
}

int CDC::StartPage() {
  if (stage_ != Stage::kBetweenPages) return SP_ERROR;
  const PageStart started = BeginPage();
  device_clip_ = {0, 0, format_.area.cx, format_.area.cy};
  return Follow(started != PageStart::kFailed,
                started == PageStart::kOpen ? Stage::kPage : Stage::kSkippedPage);
}

int CDC::EndPage() {
  const bool is_skipped = stage_ == Stage::kSkippedPage;
  if (!IsPrinting() || (stage_ != Stage::kPage && !is_skipped)) return SP_ERROR;
  return Follow(is_skipped || FinishPage(), Stage::kBetweenPages);
}

int CDC::EndDoc() {
  if (!IsPrinting()) return SP_ERROR;
  if (stage_ == Stage::kPage || stage_ == Stage::kSkippedPage) EndPage();
  if (stage_ != Stage::kBetweenPages) return SP_ERROR;
  return Follow(FinishDocument(), Stage::kNoDocument);
}

int CDC::AbortDoc() {
  if (!IsPrinting() || stage_ == Stage::kNoDocument) return SP_ERROR;
  stage_ = Stage::kNoDocument;
  DropDocument();
  return 1;
}

bool CDC::BeginDocument(std::string_view) { return false; }

CDC::PageStart CDC::BeginPage() { return PageStart::kFailed; }

bool CDC::FinishPage() { return false; }

bool CDC::FinishDocument() { return false; }

void CDC::DropDocument() {}

}  // namespace dq
