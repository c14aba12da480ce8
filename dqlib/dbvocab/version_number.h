// Numbers of versions as text, and back.

#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace dq::detail {

/// A number's text with six decimals, as `%lf` has it in the "C" locale.
class VersionNumberText {
 public:
  explicit VersionNumberText(double number);

  std::string_view View() const { return {bytes_.data(), size_}; }

 private:
  /// The largest double has 309 digits before the point.
  std::array<char, 320> bytes_;
  std::size_t size_;
};

/// How many characters of `VersionNumberText` count: trailing zeros don't, but for one behind the
/// point.
std::size_t SignificantLength(double number);

/// The number at the start of a text, as `strtod` reads it in the "C" locale; 0 if there is none,
/// for a number that no double can hold, and for the words "infinity" and "nan".
double LeadingNumber(std::string_view text);

}  // namespace dq::detail
