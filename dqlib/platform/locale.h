// The user's locale: items such as separators and patterns, number formatting, and the code page.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dqlib/platform/code_page.h"
#include "dqlib/platform/error.h"
#include "dqlib/platform/types.h"

namespace dq {

/// Locale identifiers that every platform knows. Any other may be unknown to it.
inline constexpr DWORD LOCALE_USER_DEFAULT = 0x400;
inline constexpr DWORD LOCALE_SYSTEM_DEFAULT = 0x800;
/// US English, the same on every machine.
inline constexpr DWORD LOCALE_US_ENGLISH = 0x409;

/// Numbers of locale items. Patterns are picture strings: "M/d/yyyy", "h:mm:ss tt". A run of items
/// (days, months) counts on from its first.
enum LocaleItem : DWORD {
  LOCALE_SLIST = 12,              ///< List separator.
  LOCALE_SDECIMAL = 14,           ///< Decimal separator.
  LOCALE_STHOUSAND = 15,          ///< Thousands separator.
  LOCALE_SGROUPING = 16,          ///< Sizes of digit groups: "3;0".
  LOCALE_IDIGITS = 17,            ///< Number of decimal places.
  LOCALE_ILZERO = 18,             ///< "1" if a leading zero is written.
  LOCALE_SDATE = 29,              ///< Date separator.
  LOCALE_STIME = 30,              ///< Time separator.
  LOCALE_SSHORTDATE = 31,         ///< Short date pattern.
  LOCALE_SLONGDATE = 32,          ///< Long date pattern.
  LOCALE_IDATE = 33,              ///< Order of the short date: "0" M-D-Y, "1" D-M-Y, "2" Y-M-D.
  LOCALE_ITIME = 35,              ///< "1" for a 24-hour clock.
  LOCALE_S1159 = 40,              ///< Marker of the morning; may be empty.
  LOCALE_S2359 = 41,              ///< Marker of the afternoon; may be empty.
  LOCALE_SDAYNAME1 = 42,          ///< Monday; to 48, Sunday.
  LOCALE_SABBREVDAYNAME1 = 49,    ///< Short name of Monday; to 55.
  LOCALE_SMONTHNAME1 = 56,        ///< January; to 67, December.
  LOCALE_SABBREVMONTHNAME1 = 68,  ///< Short name of January; to 79.
  LOCALE_SNEGATIVESIGN = 81,      ///< Sign of negative numbers.
  LOCALE_STIMEFORMAT = 4099,      ///< Time pattern.
  LOCALE_IPAPERSIZE = 4106,       ///< Usual paper: "1" Letter, "5" Legal, "8" A3, "9" A4.
  LOCALE_INEGNUMBER = 4112,       ///< Order of a negative number, as `NumberFormat` has it.
};

namespace platform {

/// How a number text is laid out.
struct NumberFormat {
  static constexpr UINT kMaxDecimalPlaces = 255;

  /// 0 to `kMaxDecimalPlaces`.
  UINT decimal_places = 0;
  /// A number below 1 begins with a zero; one that has no decimal places always does.
  bool leading_zero = false;
  /// Digits in a group, 0 for no grouping.
  UINT grouping = 0;
  std::string decimal_separator;
  std::string thousands_separator;
  /// 0 "(1.1)", 1 "-1.1", 2 "- 1.1", 3 "1.1-", 4 "1.1 -".
  UINT negative_order = 0;
};

/// Lays out `number`, which is digits with at most one leading "-" and at most one ".", whatever
/// separator the format has, and at least one digit. Rounds half away from zero to the format's
/// places, exactly for any number of digits. Leading zeros vanish; a number that rounds to zero has
/// no sign. No value for any other text, and for a format out of its ranges.
std::optional<std::string> LayOutNumber(std::string_view number, const NumberFormat& format);

/// The locale of the process's user. Any thread, but for `SetCodePage`.
class Locale {
 public:
  Locale() = default;
  Locale(const Locale&) = delete;
  Locale& operator=(const Locale&) = delete;
  virtual ~Locale();

  /// The item's text in the locale with that identifier, possibly empty; no value when the locale
  /// or the item isn't known.
  virtual std::optional<std::string> Item(DWORD item, DWORD locale) = 0;

  /// The code page of 8-bit text, at first the page 0.
  virtual const CodePage& code_page() const = 0;

  /// Chooses the code page for the whole process; call it before other threads run. False, and no
  /// change, for a number that `CodePage::Get` doesn't know.
  virtual bool SetCodePage(UINT number) = 0;
};

}  // namespace platform
}  // namespace dq
