#include "dqlib/framework/base/vector_picture.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numbers>
#include <utility>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/base/resource_module.h"

namespace dq {
namespace {

constexpr LONG kLargestDesign = 1024;
constexpr LONG kLargest = 4096;
/// As many sizes of a picture are kept.
constexpr std::size_t kMostKept = 4;
constexpr int kStepsOfCurve = 16;
constexpr int kStepsOfCircle = 24;
constexpr int kOpaque = 255;

}  // namespace

// ---- The text

class VectorPicture::Reader {
 public:
  Reader(std::string_view text, VectorPicture& picture) : rest_(text), picture_(picture) {}

  bool Read() {
    double width = 0;
    double height = 0;
    const bool has_size = Number(width) && Number(height) && IsLength(width) && IsLength(height);
    if (!has_size) return false;
    picture_.size_ = {static_cast<LONG>(width), static_cast<LONG>(height)};
    for (std::string_view word = Word(); !word.empty(); word = Word()) {
      if (word.size() != 1 || !Command(word.front())) return false;
    }
    return true;
  }

 private:
  static bool IsLength(double length) {
    return length >= 1 && length <= kLargestDesign && length == std::floor(length);
  }

  std::string_view Word() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
    const std::string_view word = rest_.substr(0, rest_.find(' '));
    rest_.remove_prefix(word.size());
    return word;
  }

  /// The next word, if it is one; else nothing is taken.
  bool Number(double& number) {
    const std::string_view before = rest_;
    const std::string_view word = Word();
    const char* const end = word.data() + word.size();
    const auto read = std::from_chars(word.data(), end, number, std::chars_format::fixed);
    constexpr double kFarthest = 2 * kLargestDesign;
    if (!word.empty() && read.ec == std::errc() && read.ptr == end &&
        std::abs(number) <= kFarthest) {
      return true;
    }
    rest_ = before;
    return false;
  }

  bool ReadPoint(Point& point) { return Number(point.x) && Number(point.y); }

  bool Color(COLORREF& color) {
    const std::string_view word = Word();
    unsigned int parts = 0;
    constexpr int kHex = 16;
    const auto read = std::from_chars(word.data(), word.data() + word.size(), parts, kHex);
    if (word.size() != 6 || read.ptr != word.data() + word.size()) return false;
    color = RGB(static_cast<BYTE>(parts >> 16), static_cast<BYTE>(parts >> 8),
                static_cast<BYTE>(parts));
    return true;
  }

  bool Command(char command) {
    if (command == 'f' || command == 's') {
      Shape& shape = picture_.shapes_.emplace_back();
      if (command == 's' && (!Number(shape.width) || shape.width <= 0)) return false;
      return Color(shape.color);
    }
    if (picture_.shapes_.empty()) return false;
    std::vector<Line>& lines = picture_.shapes_.back().lines;
    switch (command) {
      case 'M':
        lines.emplace_back(1);
        return ReadPoint(lines.back().front());
      case 'R':
        return Rectangle(lines);
      case 'O':
        return Ellipse(lines);
      default:
        break;
    }
    if (lines.empty()) return false;
    switch (command) {
      case 'L':
        return Points(lines.back());
      case 'C':
        return Curves(lines.back());
      case 'Z': {
        const Point first = lines.back().front();
        lines.back().push_back(first);
        return true;
      }
      default:
        return false;
    }
  }

  bool Points(Line& line) {
    Point point{};
    if (!ReadPoint(point)) return false;
    do line.push_back(point);
    while (ReadPoint(point));
    return true;
  }

  bool Curves(Line& line) {
    int count = 0;
    for (std::array<Point, 4> bend{}; ReadPoint(bend[1]); ++count) {
      bend[0] = line.back();
      if (!ReadPoint(bend[2]) || !ReadPoint(bend[3])) return false;
      for (int step = 1; step <= kStepsOfCurve; ++step) {
        const double t = static_cast<double>(step) / kStepsOfCurve;
        const double u = 1 - t;
        const double weights[] = {u * u * u, 3 * u * u * t, 3 * u * t * t, t * t * t};
        Point at{};
        for (std::size_t i = 0; i < bend.size(); ++i) {
          at.x += weights[i] * bend[i].x;
          at.y += weights[i] * bend[i].y;
        }
        line.push_back(at);
      }
    }
    return count > 0;
  }

  bool Rectangle(std::vector<Line>& lines) {
    Point at{};
    Point size{};
    if (!ReadPoint(at) || !ReadPoint(size)) return false;
    lines.push_back(
        {at, {at.x + size.x, at.y}, {at.x + size.x, at.y + size.y}, {at.x, at.y + size.y}, at});
    return true;
  }

  bool Ellipse(std::vector<Line>& lines) {
    Point middle{};
    Point radii{};
    if (!ReadPoint(middle) || !ReadPoint(radii)) return false;
    Line& line = lines.emplace_back();
    for (int step = 0; step <= kStepsOfCircle; ++step) {
      const double angle = 2 * std::numbers::pi * step / kStepsOfCircle;
      line.push_back({middle.x + radii.x * std::cos(angle), middle.y + radii.y * std::sin(angle)});
    }
    return true;
  }

  std::string_view rest_;
  VectorPicture& picture_;
};

std::shared_ptr<const VectorPicture> VectorPicture::Read(std::string_view text) {
  auto picture = std::make_shared<VectorPicture>();
  if (!Reader(text, *picture).Read()) return nullptr;
  return picture;
}

std::shared_ptr<const VectorPicture> VectorPicture::Recolored(
    const std::function<COLORREF(COLORREF)>& to) const {
  auto picture = std::make_shared<VectorPicture>();
  picture->size_ = size_;
  picture->shapes_ = shapes_;
  for (Shape& shape : picture->shapes_) shape.color = to(shape.color);
  return picture;
}

std::shared_ptr<const VectorPicture> VectorPicture::Part(const CRect& part) const {
  auto picture = std::make_shared<VectorPicture>();
  picture->size_ = part.Size();
  for (Shape shape : shapes_) {
    const double reach = shape.width / 2;
    bool is_above = true;
    bool is_below = true;
    bool is_left = true;
    bool is_right = true;
    for (Line& line : shape.lines) {
      for (Point& point : line) {
        point.x -= part.left;
        point.y -= part.top;
        is_left = is_left && point.x + reach <= 0;
        is_right = is_right && point.x - reach >= picture->size_.cx;
        is_above = is_above && point.y + reach <= 0;
        is_below = is_below && point.y - reach >= picture->size_.cy;
      }
    }
    const bool is_outside = is_left || is_right || is_above || is_below;
    if (!is_outside) picture->shapes_.push_back(std::move(shape));
  }
  return picture;
}

// ---- Pixels

/// How much of each pixel shapes cover: for each the area of it that lies to the right of lines,
/// which adds up from the left of a row to its right.
class VectorPicture::Raster {
 public:
  Raster(const VectorPicture& picture, const CSize& size)
      : width_(static_cast<std::size_t>(size.cx)),
        height_(static_cast<std::size_t>(size.cy)),
        scale_x_(static_cast<double>(size.cx) / picture.size_.cx),
        scale_y_(static_cast<double>(size.cy) / picture.size_.cy),
        areas_((width_ + 2) * height_),
        colors_(width_ * height_) {
    for (const Shape& shape : picture.shapes_) Paint(shape);
  }

  BitmapDescription Finish(const CSize& size) const {
    BitmapDescription picture{.size = size, .pixels = {}};
    picture.pixels.reserve(colors_.size());
    for (const auto& [red, green, blue, cover] : colors_) {
      const int opaque = static_cast<int>(std::lround(cover * kOpaque));
      if (opaque == 0) {
        picture.pixels.push_back(kNoPixel);
        continue;
      }
      const auto part = [cover = cover](double sum) {
        return static_cast<BYTE>(std::clamp<long>(std::lround(sum / cover), 0, kOpaque));
      };
      picture.pixels.push_back(RGB(part(red), part(green), part(blue)) |
                               static_cast<COLORREF>(kOpaque - opaque) << 24);
    }
    return picture;
  }

 private:
  /// Parts of a colour by how much they cover, and how much that is.
  struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double cover = 0;
  };

  void Paint(const Shape& shape) {
    std::ranges::fill(areas_, 0.0);
    for (const Line& line : shape.lines) {
      if (shape.width > 0) {
        AddStroke(line, shape.width / 2);
      } else {
        AddPolygon(line);
      }
    }
    for (std::size_t y = 0; y < height_; ++y) {
      double area = 0;
      for (std::size_t x = 0; x < width_; ++x) {
        area += areas_[y * (width_ + 2) + x];
        const double cover = std::min(1.0, std::abs(area));
        if (cover > 0) Blend(colors_[y * width_ + x], shape.color, cover);
      }
    }
  }

  static void Blend(Color& under, COLORREF color, double cover) {
    const auto mix = [&](double& part, double over) { part += (over - part) * cover; };
    mix(under.red, color & 0xFF);
    mix(under.green, color >> 8 & 0xFF);
    mix(under.blue, color >> 16 & 0xFF);
    mix(under.cover, 1);
  }

  /// Each piece as a quadrangle with a disc at its end, all around in one direction.
  void AddStroke(const Line& line, double half) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      Line disc;
      for (int step = 0; step < kStepsOfCircle; ++step) {
        const double angle = 2 * std::numbers::pi * step / kStepsOfCircle;
        disc.push_back({line[i].x + half * std::cos(angle), line[i].y + half * std::sin(angle)});
      }
      AddPolygon(disc);
      if (i == 0) continue;
      const Point from = line[i - 1];
      const Point to = line[i];
      const double length = std::hypot(to.x - from.x, to.y - from.y);
      if (length == 0) continue;
      const double x = (to.y - from.y) / length * half;
      const double y = (from.x - to.x) / length * half;
      AddPolygon({{from.x + x, from.y + y},
                  {to.x + x, to.y + y},
                  {to.x - x, to.y - y},
                  {from.x - x, from.y - y}});
    }
  }

  void AddPolygon(const Line& line) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      AddEdge(Scaled(line[i]), Scaled(line[(i + 1) % line.size()]));
    }
  }

  Point Scaled(const Point& point) const { return {point.x * scale_x_, point.y * scale_y_}; }

  void AddEdge(Point from, Point to) {
    if (from.y == to.y) return;
    const double direction = from.y < to.y ? 1 : -1;
    if (from.y > to.y) std::swap(from, to);
    const double slope = (to.x - from.x) / (to.y - from.y);
    const double bottom = std::min(to.y, static_cast<double>(height_));
    double y = std::max(from.y, 0.0);
    double x = from.x + (y - from.y) * slope;
    while (y < bottom) {
      const double row = std::floor(y);
      const double next_y = std::min(row + 1, bottom);
      const double next_x = from.x + (next_y - from.y) * slope;
      AddToRow(&areas_[static_cast<std::size_t>(row) * (width_ + 2)], std::min(x, next_x),
               std::max(x, next_x), (next_y - y) * direction);
      x = next_x;
      y = next_y;
    }
  }

  /// A piece of an edge within one row, from `left` to `right`, so high. What of it is left of the
  /// picture stands at its left edge; what is right of it counts for no pixel.
  void AddToRow(double* row, double left, double right, double height) const {
    const auto width = static_cast<double>(width_);
    if (left >= width) return;
    if (right <= 0) {
      row[0] += height;
      return;
    }
    const double high_per_pixel = right > left ? height / (right - left) : 0;
    if (left < 0) {
      row[0] -= left * high_per_pixel;
      height += left * high_per_pixel;
      left = 0;
    }
    if (right > width) {
      height -= (right - width) * high_per_pixel;
      right = width;
    }
    const auto first = static_cast<std::size_t>(left);
    const auto last = static_cast<std::size_t>(right);
    if (first == last) {
      const double covered = 1 - ((left + right) / 2 - static_cast<double>(first));
      row[first] += height * covered;
      row[first + 1] += height * (1 - covered);
      return;
    }
    // Of the pixels behind the edge's part in one, all of that part is covered.
    for (std::size_t x = first; x <= last; ++x) {
      const double from = std::max(left, static_cast<double>(x));
      const double to = std::min(right, static_cast<double>(x + 1));
      if (to <= from) break;
      const double part = high_per_pixel * (to - from);
      const double covered = 1 - ((from + to) / 2 - static_cast<double>(x));
      row[x] += part * covered;
      row[x + 1] += part * (1 - covered);
    }
  }

  std::size_t width_;
  std::size_t height_;
  double scale_x_;
  double scale_y_;
  std::vector<double> areas_;
  std::vector<Color> colors_;
};

std::shared_ptr<const BitmapDescription> VectorPicture::Render(const CSize& size) const {
  if (size.cx < 1 || size.cy < 1 || size.cx > kLargest || size.cy > kLargest) {
    return std::make_shared<BitmapDescription>();
  }
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto known = std::ranges::find_if(
      rendered_, [&size](const auto& picture) { return picture->size == size; });
  if (known != rendered_.end()) return *known;
  if (rendered_.size() == kMostKept) rendered_.erase(rendered_.begin());
  rendered_.push_back(std::make_shared<const BitmapDescription>(Raster(*this, size).Finish(size)));
  return rendered_.back();
}

BitmapDescription VectorPicture::RenderMasked(COLORREF mask) const {
  BitmapDescription picture = Raster(*this, size_).Finish(size_);
  constexpr COLORREF kHalf = 128;
  for (COLORREF& color : picture.pixels) color = color >> 24 >= kHalf ? mask : color & 0xFFFFFF;
  return picture;
}

bool AddPicture(ResourceModule& module, WORD id, std::string_view text, COLORREF mask) {
  const auto picture = VectorPicture::Read(text);
  if (picture == nullptr) return false;
  module.AddResource(RESOURCE_BITMAP, id, WriteDib(picture->RenderMasked(mask)));
  module.AddResource(RESOURCE_SHAPES, id, std::string(text));
  return true;
}

}  // namespace dq
