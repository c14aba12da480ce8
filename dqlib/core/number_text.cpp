#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "dqlib/core/dq_string.h"
#include "dqlib/core/locale_info.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

/// Bytes of a formatted number, its zero included.
constexpr std::size_t kCapacity = 255;

/// The user's numbers; no value if the locale has a number of places or a size that is below zero.
std::optional<platform::NumberFormat> UserFormat(char decimal_char, char thousand_char) {
  const auto number = [](DWORD item, int fallback) {
    return CDQLocaleInfo::GetInfoInt(item, fallback, LOCALE_USER_DEFAULT);
  };
  const auto separator = [](DWORD item, char fallback) {
    const char text[] = {fallback, '\0'};
    return std::string(CDQLocaleInfo::GetInfo(item, text, LOCALE_USER_DEFAULT).View());
  };
  const int places = number(LOCALE_IDIGITS, 2);
  const int leading_zero = number(LOCALE_ILZERO, 1);
  const int grouping = number(LOCALE_SGROUPING, 3);
  const int negative_order = number(LOCALE_INEGNUMBER, 1);
  if (places < 0 || grouping < 0 || negative_order < 0) return std::nullopt;
  return platform::NumberFormat{.decimal_places = static_cast<UINT>(places),
                                .leading_zero = leading_zero != 0,
                                .grouping = static_cast<UINT>(grouping),
                                .decimal_separator = separator(LOCALE_SDECIMAL, decimal_char),
                                .thousands_separator = separator(LOCALE_STHOUSAND, thousand_char),
                                .negative_order = static_cast<UINT>(negative_order)};
}

/// No value if the text is no number or the result too long.
std::optional<std::string> FormatByLocale(std::string_view number, char decimal_char,
                                          char thousand_char) {
  std::optional<platform::NumberFormat> format = UserFormat(decimal_char, thousand_char);
  if (!format) return std::nullopt;
  if (multi_byte::Find(number, format->decimal_separator) == multi_byte::npos) {
    format->decimal_places = 0;
  }
  std::optional<std::string> text = platform::LayOutNumber(number, *format);
  if (text && text->size() >= kCapacity) text.reset();
  return text;
}

}  // namespace

void CDQString::FormatNumber(char decimalChar, char thousandChar) {
  // Up to the first zero, as `DQFormatNumber` reads its input.
  const char* text = *this;
  if (const auto formatted = FormatByLocale(text, decimalChar, thousandChar)) *this = *formatted;
}

void DQFormatNumber(const char* input, char* output, char decimalChar, char thousandChar) {
  if (input == nullptr || output == nullptr) return;
  const auto formatted = FormatByLocale(input, decimalChar, thousandChar);
  if (formatted) std::memcpy(output, formatted->c_str(), formatted->size() + 1);
}

}  // namespace dq
