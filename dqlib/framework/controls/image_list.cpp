#include "dqlib/framework/controls/image_list.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/vector_picture.h"

namespace dq {

IMPLEMENT_DYNAMIC(CImageList, CObject)

namespace {

/// As many pixels as the numbers of a strip can count downwards and in all.
constexpr LONG kMostPixels = std::numeric_limits<LONG>::max();

/// How many whole pictures of a size stand in a strip.
int PicturesOf(HBITMAP strip, const CSize& size) {
  if (strip == nullptr || size.cx < 1 || size.cy < 1 || strip->size.cy < size.cy) return 0;
  if (strip->size.cx < size.cx) return 0;
  const auto pixels =
      static_cast<std::uint64_t>(strip->size.cx) * static_cast<std::uint64_t>(strip->size.cy);
  return pixels == strip->pixels.size() ? strip->size.cx / size.cx : 0;
}

/// The pixels of a part of a picture, which may reach beyond it; what is outside, and what has the
/// mask colour, is transparent.
std::vector<COLORREF> Cut(const BitmapDescription& picture, const CPoint& from, const CSize& size,
                          COLORREF mask, const CSize& room) {
  std::vector<COLORREF> pixels(
      static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy), kNoPixel);
  for (LONG y = 0; y < std::min(size.cy, room.cy); ++y) {
    for (LONG x = 0; x < std::min(size.cx, room.cx); ++x) {
      const auto stride = static_cast<std::size_t>(picture.size.cx);
      const COLORREF color = picture.pixels[static_cast<std::size_t>(from.y + y) * stride +
                                            static_cast<std::size_t>(from.x + x)];
      const auto to = static_cast<std::size_t>(y) * static_cast<std::size_t>(size.cx) +
                      static_cast<std::size_t>(x);
      if (color != mask) pixels[to] = color;
    }
  }
  return pixels;
}

/// The shapes of a part of a strip, or null. They know of no mask but the usual one.
std::shared_ptr<const VectorPicture> CutShapes(const BitmapDescription& strip, const CPoint& from,
                                               const CSize& size, COLORREF mask) {
  const VectorPicture* const shapes = mask == kPictureMask ? strip.shapes.get() : nullptr;
  if (shapes == nullptr || shapes->size() != strip.size) return nullptr;
  return shapes->Part({from.x, from.y, from.x + size.cx, from.y + size.cy});
}

}  // namespace

std::size_t CImageList::ImagePixels() const {
  return static_cast<std::size_t>(size_.cx) * static_cast<std::size_t>(size_.cy);
}

bool CImageList::Create(const CSize& size) {
  if (size.cx < 1 || size.cy < 1 || size.cx > kMostPixels / size.cy) return false;
  size_ = size;
  count_ = 0;
  strip_ = {.size = {size.cx, 0}, .pixels = {}};
  shapes_.clear();
  return true;
}

bool CImageList::Create(UINT bitmap_id, int width, COLORREF mask) {
  CBitmap bitmap;
  if (!bitmap.LoadBitmap(AfxFindResourceHandle(bitmap_id, RESOURCE_BITMAP), bitmap_id))
    return false;
  const HBITMAP strip = bitmap.GetSafeHandle();
  CImageList made;
  if (!made.Create({width, strip->size.cy}) || made.Add(strip, mask) < 0) return false;
  size_ = made.size_;
  count_ = made.count_;
  strip_ = std::move(made.strip_);
  shapes_ = std::move(made.shapes_);
  return true;
}

int CImageList::Add(HBITMAP strip, COLORREF mask) {
  const int pictures = PicturesOf(strip, size_);
  if (pictures == 0 || pictures > kMostPixels / size_.cy - count_) return -1;
  // The strip may be this list's own.
  std::vector<COLORREF> added;
  added.reserve(ImagePixels() * static_cast<std::size_t>(pictures));
  for (int at = 0; at < pictures; ++at) {
    const CPoint from{at * size_.cx, 0};
    const std::vector<COLORREF> picture = Cut(*strip, from, size_, mask, size_);
    added.insert(added.end(), picture.begin(), picture.end());
    shapes_.push_back(CutShapes(*strip, from, size_, mask));
  }
  strip_.pixels.insert(strip_.pixels.end(), added.begin(), added.end());
  count_ += pictures;
  strip_.size.cy = size_.cy * count_;
  return count_ - pictures;
}

int CImageList::Add(const CImageList& from, int index) {
  if (!from.Has(index) || size_.cx < 1) return -1;
  BitmapDescription picture{.size = size_, .pixels = {}};
  const CRect place = from.GetImageRect(index);
  picture.pixels = Cut(from.strip_, place.TopLeft(), size_, kNoPixel, place.Size());
  const auto shapes = from.size_ == size_ ? from.shapes_[static_cast<std::size_t>(index)] : nullptr;
  const int added = Add(&picture);
  if (added >= 0) shapes_.back() = shapes;
  return added;
}

bool CImageList::Replace(int index, HBITMAP strip, COLORREF mask) {
  if (!Has(index) || PicturesOf(strip, size_) == 0) return false;
  const std::vector<COLORREF> picture = Cut(*strip, {}, size_, mask, size_);
  const std::size_t start = ImagePixels() * static_cast<std::size_t>(index);
  shapes_[static_cast<std::size_t>(index)] = CutShapes(*strip, {}, size_, mask);
  std::ranges::copy(picture, strip_.pixels.begin() + static_cast<std::ptrdiff_t>(start));
  return true;
}

bool CImageList::Remove(int index) {
  if (index == -1 && size_.cx > 0) return Create(size_);
  if (!Has(index)) return false;
  const auto pixels = static_cast<std::ptrdiff_t>(ImagePixels());
  const auto start = strip_.pixels.begin() + pixels * index;
  strip_.pixels.erase(start, start + pixels);
  shapes_.erase(shapes_.begin() + index);
  strip_.size.cy = size_.cy * --count_;
  return true;
}

CRect CImageList::GetImageRect(int index) const {
  if (!Has(index)) return {};
  return {0, size_.cy * index, size_.cx, size_.cy * (index + 1)};
}

BitmapDescription CImageList::GetImage(int index) const {
  if (!Has(index)) return {};
  const CPoint from = GetImageRect(index).TopLeft();
  return {.size = size_,
          .pixels = Cut(strip_, from, size_, kNoPixel, size_),
          .shapes = shapes_[static_cast<std::size_t>(index)]};
}

bool CImageList::Draw(CDC& dc, int index, const CPoint& at, bool embossed) const {
  if (!Has(index)) return false;
  const BitmapDescription image = GetImage(index);
  return dc.DrawBitmap(at, &image, {.embossed = embossed});
}

}  // namespace dq
