// The fonts that every reader of PDF has, with their measures.

#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "dqlib/framework/base/drawing.h"

namespace dq::detail {

/// Widths of the characters 20h to FFh of the page 1252.
using PdfCharacterWidths = std::array<std::uint16_t, 224>;

/// One font. Measures are thousandths of its size.
struct PdfFont {
  std::string_view name;
  /// The highest and the lowest that any of its characters reaches from the base line.
  int ascent;
  int descent;
  const PdfCharacterWidths& widths;

  /// The width of a character, which is none of 0 to 1Fh.
  int WidthOf(unsigned char byte) const { return widths[byte - 0x20U]; }
};

inline constexpr std::size_t kPdfFontCount = 12;

/// The font of an index below `kPdfFontCount`.
const PdfFont& PdfFontAt(std::size_t index);

/// The index of the font that is nearest to a description, by its face name, else by pitch and
/// family; by weight and slant.
std::size_t ChoosePdfFont(const LOGFONT& font);

}  // namespace dq::detail
