#include "dqlib/dbvocab/version_number.h"

#include <charconv>
#include <cmath>
#include <cstdint>

#include "dqlib/framework/base/multi_byte.h"

namespace dq::detail {
namespace {

constexpr std::size_t npos = std::string_view::npos;

constexpr int kDecimals = 6;
constexpr std::uint64_t kMillion = 1'000'000;

/// The number's millionths, if it is the double next to a whole count of them and small enough that
/// its text with six decimals is just that count; -1 else. Every version of real life is.
std::int64_t Millionths(double number) {
  constexpr double kBeyond = 1e6;
  if (!(number >= 0 && number < kBeyond) || std::signbit(number)) return -1;
  // A count that isn't the nearest one is found out below.
  // NOLINTNEXTLINE(bugprone-incorrect-roundings)
  const auto count = static_cast<std::int64_t>(number * 1e6 + 0.5);
  return static_cast<double>(count) / 1e6 == number ? count : -1;
}

std::size_t DigitsOf(std::uint64_t number) {
  std::size_t digits = 1;
  for (; number >= 10; number /= 10) ++digits;
  return digits;
}

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

/// For texts that are more than digits and a point.
double LeadingNumberOfAny(std::string_view text) {
  text = multi_byte::TrimLeft(text);
  const bool is_negative = text.starts_with('-');
  if (is_negative || text.starts_with('+')) text.remove_prefix(1);
  const bool is_hex = text.starts_with("0x") || text.starts_with("0X");
  if (is_hex) text.remove_prefix(2);
  // A second sign makes it no number. Words that begin as "infinity" or "nan" do are none either.
  const std::string_view digits = is_hex ? "0123456789abcdefABCDEF." : "0123456789.";
  if (text.empty() || digits.find(text.front()) == npos) return 0;
  const auto format = is_hex ? std::chars_format::hex : std::chars_format::general;
  double number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number, format);
  if (read.ec != std::errc{}) return 0;
  return is_negative ? -number : number;
}

}  // namespace

VersionNumberText::VersionNumberText(double number) {
  char* const begin = bytes_.data();
  const auto written =
      std::to_chars(begin, begin + bytes_.size(), number, std::chars_format::fixed, kDecimals);
  size_ = static_cast<std::size_t>(written.ptr - begin);
}

std::size_t SignificantLength(double number) {
  const std::int64_t millionths = Millionths(number);
  if (millionths < 0) {
    const VersionNumberText whole(number);
    const std::string_view text = whole.View();
    const std::size_t last = text.find_last_not_of('0');
    return text[last] == '.' ? last + 2 : last + 1;
  }
  auto decimals = static_cast<std::uint64_t>(millionths) % kMillion;
  std::size_t count = kDecimals;
  for (; count > 1 && decimals % 10 == 0; --count) decimals /= 10;
  return DigitsOf(static_cast<std::uint64_t>(millionths) / kMillion) + 1 + count;
}

double LeadingNumber(std::string_view text) {
  // So many digits are exact in a double, and so are the powers of ten: one division rounds once.
  constexpr double kPowers[] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  constexpr std::size_t kMostDigits = 15;
  std::uint64_t digits = 0;
  std::size_t count = 0;
  std::size_t decimals = 0;
  std::size_t at = 0;
  bool has_point = false;
  for (; at < text.size(); ++at) {
    if (IsDigit(text[at])) {
      if (++count > kMostDigits) return LeadingNumberOfAny(text);
      digits = digits * 10 + static_cast<std::uint64_t>(text[at] - '0');
      if (has_point) ++decimals;
    } else if (text[at] == '.' && !has_point) {
      has_point = true;
    } else {
      break;
    }
  }
  constexpr std::string_view kGoesOn = "eExX";
  const bool goes_on = at < text.size() && kGoesOn.find(text[at]) != npos;
  if (count == 0 || goes_on) return text.empty() ? 0 : LeadingNumberOfAny(text);
  return static_cast<double>(digits) / kPowers[decimals];
}

}  // namespace dq::detail
