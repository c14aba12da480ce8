// The texts of device contexts: how they are cut into lines, and where each line stands.

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/base/drawn_character.h"
#include "dqlib/framework/base/multi_byte.h"

namespace dq {
namespace {

constexpr LONG kFurthest = std::numeric_limits<LONG>::max();
constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kLineEnds = "\r\n";
constexpr std::string_view kEllipsis = "...";
constexpr int kCharactersOfTab = 8;

LONG Saturated(std::int64_t number) {
  return static_cast<LONG>(
      std::clamp<std::int64_t>(number, std::numeric_limits<LONG>::min(), kFurthest));
}

/// Cuts a text into lines, one after the other.
class LineCutter {
 public:
  LineCutter(std::string_view text, UINT flags)
      : rest_(text),
        is_single_((flags & DT_SINGLELINE) != 0),
        breaks_words_((flags & DT_WORDBREAK) != 0) {
    BeginParagraph();
  }

  /// Takes the next line; false if there is none left. `fitting` tells how many bytes of a text fit
  /// into a line.
  template <typename Fitting>
  bool Next(Fitting fitting, std::string_view& line) {
    if (is_done_) return false;
    line = std::exchange(paragraph_, {});
    if (breaks_words_ && !is_single_) BreakLine(fitting(line), line);
    if (paragraph_.empty()) {
      is_done_ = rest_.empty();
      BeginParagraph();
    }
    return true;
  }

 private:
  void BeginParagraph() {
    const std::size_t end = is_single_ ? rest_.npos : rest_.find_first_of(kLineEnds);
    paragraph_ = rest_.substr(0, end);
    rest_.remove_prefix(paragraph_.size());
    rest_.remove_prefix(rest_.starts_with("\r\n") ? 2 : rest_.empty() ? 0 : 1);
  }

  /// Leaves to `line` as many words as fit, one at least, and the others to the paragraph. Blanks
  /// at its start belong to its first word.
  void BreakLine(std::size_t fitting, std::string_view& line) {
    const std::size_t word = line.find_first_not_of(kBlanks);
    if (fitting >= line.size() || word == line.npos) return;
    std::size_t end = line.find_last_of(kBlanks, fitting);
    if (end == line.npos || end < word) end = line.find_first_of(kBlanks, std::max(word, fitting));
    if (end == line.npos) return;
    const std::size_t next = line.find_first_not_of(kBlanks, end);
    if (next != line.npos) paragraph_ = line.substr(next);
    line = line.substr(0, line.find_last_not_of(kBlanks, end) + 1);
  }

  std::string_view rest_;
  const bool is_single_;
  const bool breaks_words_;
  /// What is left of the one that lines are taken from.
  std::string_view paragraph_;
  bool is_done_ = false;
};

/// How far a font's underline and strike-out are below the top of a line, and how thick.
struct StrokeLines {
  LONG underline;
  LONG strike_out;
  LONG thickness;
};

StrokeLines StrokeLinesOf(const TEXTMETRIC& metrics) {
  const LONG thickness = std::max<LONG>(1, metrics.tmHeight / 16);
  const LONG underline = metrics.tmAscent + std::max<LONG>(1, metrics.tmDescent / 4);
  return {std::min(underline, metrics.tmHeight - thickness),
          metrics.tmAscent - metrics.tmAscent / 3, thickness};
}

}  // namespace

/// A text without its prefixes.
struct CDC::DrawnText {
  DrawnText(std::string_view given, UINT flags) : text(given) {
    if ((flags & DT_NOPREFIX) != 0 || given.find('&') == given.npos) return;
    const platform::CodePage& page = multi_byte::CurrentCodePage();
    while (!given.empty()) {
      const bool is_prefix = given.front() == '&';
      if (is_prefix) given.remove_prefix(1);
      if (given.empty()) break;
      if (is_prefix && given.front() != '&' && mnemonic == given.npos) mnemonic = plain.size();
      const std::size_t size = page.CharacterSize(given);
      plain += given.substr(0, size);
      given.remove_prefix(size);
    }
    text = plain;
  }
  DrawnText(const DrawnText&) = delete;
  DrawnText& operator=(const DrawnText&) = delete;

  std::string plain;
  std::string_view text;
  /// Where the character stands that is underlined.
  std::size_t mnemonic = std::string_view::npos;
};

const TEXTMETRIC& CDC::FontMetrics() {
  if (!metrics_) metrics_ = MeasureFont(state_.font->GetLogFont());
  return *metrics_;
}

CDC::TextFit CDC::FitText(std::string_view text, LONG limit) {
  if (text.empty() || limit < 0) return {};
  return MeasureText(state_.font->GetLogFont(), text, limit);
}

CSize CDC::GetTextExtent(std::string_view text) {
  return {FitText(text, kFurthest).width, FontMetrics().tmHeight};
}

std::size_t CDC::GetFittingLength(std::string_view text, int width) {
  return FitText(text, width).bytes;
}

BOOL CDC::GetTextMetrics(TEXTMETRIC* metrics) {
  if (metrics == nullptr) return 0;
  *metrics = FontMetrics();
  return 1;
}

BOOL CDC::TextOut(int x, int y, std::string_view text) {
  DrawRun({x, y}, text);
  return 1;
}

/// Draws a text without tabs to expand.
void CDC::DrawRun(const Place& place, std::string_view text) {
  const CRect& clip = state_.clip;
  const TEXTMETRIC metrics = FontMetrics();
  const std::int64_t bottom = place.y + metrics.tmHeight;
  if (place.x >= clip.right || place.y >= clip.bottom || bottom <= clip.top) return;
  const TextFit shown = FitText(text, Saturated(clip.right - place.x));
  std::int64_t right = place.x + shown.width;
  if (shown.bytes < text.size()) {
    // Of what goes on outside, the first character shows in part.
    const std::string_view cut = text.substr(shown.bytes);
    const auto last = detail::FirstCharacter(cut, multi_byte::CurrentCodePage());
    text = text.substr(0, shown.bytes + last.size);
    right = std::int64_t{clip.right} + 1;
  }
  const CRect box{Saturated(place.x), Saturated(place.y), Saturated(right), Saturated(bottom)};
  if (state_.background_mode == OPAQUE) FillSolidRect(box, state_.background);
  if (!Reach(box)) return;
  const LOGFONT& font = state_.font->GetLogFont();
  PaintText(box.TopLeft(), text, font, state_.text_color);
  const StrokeLines lines = StrokeLinesOf(metrics);
  const auto stroke = [&](LONG below) {
    const std::int64_t top = place.y + below;
    const CRect line{box.left, Saturated(top), box.right, Saturated(top + lines.thickness)};
    FillSolidRect(line, state_.text_color);
  };
  if (font.lfUnderline != 0) stroke(lines.underline);
  if (font.lfStrikeOut != 0) stroke(lines.strike_out);
}

CDC::TextFit CDC::LayOut(std::string_view line, LONG limit, UINT flags, const Place* place) {
  const bool expands_tabs = (flags & DT_EXPANDTABS) != 0;
  const LONG average = std::max<LONG>(1, FontMetrics().tmAveCharWidth);
  const std::int64_t stop = std::int64_t{kCharactersOfTab} * average;
  std::int64_t width = 0;
  std::size_t at = 0;
  while (true) {
    const std::size_t tab = expands_tabs ? std::min(line.find('\t', at), line.size()) : line.size();
    const std::string_view run = line.substr(at, tab - at);
    // A line that is drawn without tabs needs no measures.
    const bool is_last = tab == line.size();
    if (place != nullptr) DrawRun({place->x + width, place->y}, run);
    if (place != nullptr && is_last) return {};
    const TextFit fit = FitText(run, Saturated(limit - width));
    at += fit.bytes;
    width += fit.width;
    if (is_last || fit.bytes < run.size()) break;
    const std::int64_t behind_tab = (width / stop + 1) * stop;
    if (behind_tab > limit) break;
    width = behind_tab;
    ++at;
  }
  return {at, Saturated(width)};
}

/// How much of a long text fits into a line, in a time that doesn't depend on what doesn't: few
/// characters are narrower than a pixel, or have more than four bytes.
std::size_t CDC::FittingBytes(std::string_view text, LONG limit, UINT flags) {
  const std::size_t most = 4 * (static_cast<std::size_t>(std::max<LONG>(limit, 0)) + 1);
  return LayOut(text.substr(0, most), limit, flags).bytes;
}

int CDC::DrawText(std::string_view text, CRect& rect, UINT flags) {
  if ((flags & DT_CALCRECT) == 0) return DrawText(text, std::as_const(rect), flags);
  const DrawnText drawn(text, flags);
  const LONG limit = Saturated(std::int64_t{rect.right} - rect.left);
  std::int64_t height = 0;
  LONG widest = 0;
  LineCutter lines(drawn.text, flags);
  const auto fitting = [&](std::string_view line) { return FittingBytes(line, limit, flags); };
  for (std::string_view line; lines.Next(fitting, line);) {
    widest = std::max(widest, LayOut(line, kFurthest, flags).width);
    height += FontMetrics().tmHeight;
  }
  rect.right = Saturated(std::int64_t{rect.left} + widest);
  rect.bottom = Saturated(rect.top + height);
  return Saturated(height);
}

int CDC::DrawText(std::string_view text, const CRect& rect, UINT flags) {
  if ((flags & DT_CALCRECT) != 0) {
    CRect calculated = rect;
    return DrawText(text, calculated, flags);
  }
  // Put back also where a device fails.
  struct FormerClip {
    ~FormerClip() { clip = former; }
    CRect& clip;
    const CRect former;
  } const former{state_.clip, state_.clip};
  if ((flags & DT_NOCLIP) == 0) IntersectClipRect(rect);
  return DrawLines(DrawnText(text, flags), rect, flags);
}

int CDC::DrawLines(const DrawnText& text, const CRect& rect, UINT flags) {
  const LONG line_height = FontMetrics().tmHeight;
  const LONG limit = Saturated(std::int64_t{rect.right} - rect.left);
  const bool is_cut_off = (flags & DT_NOCLIP) == 0;
  std::int64_t top = rect.top;
  if ((flags & DT_SINGLELINE) != 0) {
    const std::int64_t room = std::int64_t{rect.bottom} - rect.top - line_height;
    if ((flags & DT_VCENTER) != 0) {
      top += room / 2;
    } else if ((flags & DT_BOTTOM) != 0) {
      top += room;
    }
  }
  LineCutter lines(text.text, flags);
  const auto fitting = [&](std::string_view line) { return FittingBytes(line, limit, flags); };
  for (std::string_view line; !(is_cut_off && top >= rect.bottom) && lines.Next(fitting, line);) {
    DrawLine(text, line, rect, top, flags);
    top += line_height;
  }
  return Saturated(top - rect.top);
}

void CDC::DrawLine(const DrawnText& text, std::string_view line, const CRect& rect,
                   std::int64_t top, UINT flags) {
  const std::int64_t room = std::int64_t{rect.right} - rect.left;
  std::size_t mnemonic = text.mnemonic - static_cast<std::size_t>(line.data() - text.text.data());
  std::string shortened;
  if ((flags & DT_END_ELLIPSIS) != 0 && LayOut(line, Saturated(room), flags).bytes < line.size()) {
    const LONG dots = FitText(kEllipsis, kFurthest).width;
    const std::size_t kept = LayOut(line, Saturated(room - dots), flags).bytes;
    if (mnemonic >= kept) mnemonic = line.npos;
    shortened.append(line.substr(0, kept)).append(kEllipsis);
    line = shortened;
  }
  Place place{rect.left, top};
  if ((flags & (DT_CENTER | DT_RIGHT)) != 0) {
    const std::int64_t free = room - LayOut(line, kFurthest, flags).width;
    place.x += (flags & DT_RIGHT) != 0 ? free : free / 2;
  }
  LayOut(line, kFurthest, flags, &place);
  if (mnemonic >= line.size()) return;
  const std::int64_t left = place.x + LayOut(line.substr(0, mnemonic), kFurthest, flags).width;
  const std::string_view behind = line.substr(mnemonic);
  const auto marked = detail::FirstCharacter(behind, multi_byte::CurrentCodePage());
  const std::int64_t right = left + FitText(behind.substr(0, marked.size), kFurthest).width;
  const StrokeLines strokes = StrokeLinesOf(FontMetrics());
  const std::int64_t below = top + strokes.underline;
  FillSolidRect(
      {Saturated(left), Saturated(below), Saturated(right), Saturated(below + strokes.thickness)},
      state_.text_color);
}

}  // namespace dq
