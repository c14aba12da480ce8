#include <algorithm>

#include "dqlib/platform/locale.h"

namespace dq::platform {
namespace {

constexpr UINT kLastNegativeOrder = 4;

/// A decimal number as digits.
struct Decimal {
  bool negative = false;
  /// Without leading zeros; empty for a number below 1.
  std::string whole;
  std::string places;
};

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

std::optional<Decimal> Parse(std::string_view number) {
  Decimal decimal;
  if (number.starts_with('-')) {
    decimal.negative = true;
    number.remove_prefix(1);
  }
  const std::size_t point = std::min(number.find('.'), number.size());
  std::string_view whole = number.substr(0, point);
  const std::string_view places = number.substr(std::min(point + 1, number.size()));
  if (whole.empty() && places.empty()) return std::nullopt;
  if (!std::ranges::all_of(whole, IsDigit) || !std::ranges::all_of(places, IsDigit)) {
    return std::nullopt;
  }
  whole.remove_prefix(std::min(whole.find_first_not_of('0'), whole.size()));
  decimal.whole = whole;
  decimal.places = places;
  return decimal;
}

/// Adds one to the last digit; false if the carry runs out of the first.
bool Increment(std::string& digits) {
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
    if (*digit != '9') {
      ++*digit;
      return true;
    }
    *digit = '0';
  }
  return false;
}

/// Rounds half away from zero to exactly `count` places.
void Round(Decimal& decimal, std::size_t count) {
  const bool up = decimal.places.size() > count && decimal.places[count] >= '5';
  decimal.places.resize(count, '0');
  if (up && !Increment(decimal.places) && !Increment(decimal.whole)) decimal.whole.insert(0, "1");
  const auto is_zero = [](char digit) { return digit == '0'; };
  if (decimal.whole.empty() && std::ranges::all_of(decimal.places, is_zero)) {
    decimal.negative = false;
  }
}

std::string Group(std::string_view digits, std::size_t size, std::string_view separator) {
  if (size == 0) return std::string(digits);
  std::string grouped;
  grouped.reserve(digits.size() + digits.size() / size * separator.size());
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i != 0 && (digits.size() - i) % size == 0) grouped += separator;
    grouped += digits[i];
  }
  return grouped;
}

std::string Negative(const std::string& text, UINT order) {
  switch (order) {
    case 0:
      return "(" + text + ")";
    case 1:
      return "-" + text;
    case 2:
      return "- " + text;
    case 3:
      return text + "-";
    default:
      return text + " -";
  }
}

}  // namespace

std::optional<std::string> LayOutNumber(std::string_view number, const NumberFormat& format) {
  if (format.decimal_places > NumberFormat::kMaxDecimalPlaces ||
      format.negative_order > kLastNegativeOrder) {
    return std::nullopt;
  }
  std::optional<Decimal> decimal = Parse(number);
  if (!decimal) return std::nullopt;
  Round(*decimal, format.decimal_places);

  std::string text = Group(decimal->whole, format.grouping, format.thousands_separator);
  // A text without any digit would be no number.
  if (text.empty() && (format.leading_zero || decimal->places.empty())) text = "0";
  if (!decimal->places.empty()) text += format.decimal_separator + decimal->places;
  return decimal->negative ? Negative(text, format.negative_order) : text;
}

}  // namespace dq::platform
