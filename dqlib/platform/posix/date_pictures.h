// Date and time patterns of the system's locales, translated to picture strings.
//
//   "%d.%m.%Y"        ->  "dd.MM.yyyy"
//   "%I:%M:%S %p %Z"  ->  "hh:mm:ss tt"

#pragma once

#include <string>
#include <string_view>

namespace dq::platform::posix {

/// The patterns of one locale, in the notation of `strftime`.
struct DatePatterns {
  std::string date_time = {};
  std::string date = {};
  std::string time = {};
  /// May be empty where nobody uses a 12-hour clock.
  std::string time_12h = {};
};

/// Translations, as texts of the kind that `LOCALE_SSHORTDATE` and `LOCALE_STIMEFORMAT` are. An
/// element without a picture, such as a time zone or a day of the year, is left out, and so are
/// blanks at the ends. Text stands in single quotes where it could be taken for a picture, as
/// letters and whatever isn't ASCII could; a single quote is doubled. Any bytes may come in. Any
/// thread.
std::string ShortDatePicture(const DatePatterns& patterns);
std::string TimePicture(const DatePatterns& patterns);

/// The system has no pattern for a long date. It is the date in `date_time`, the day and the month
/// by their full names if they are named; the short date if there is no date in it.
std::string LongDatePicture(const DatePatterns& patterns);

/// What stands between the first two elements of a picture that are any of `letters`; `fallback` if
/// that is nothing or quoted text.
std::string PictureSeparator(std::string_view picture, std::string_view letters,
                             std::string_view fallback);

/// The order of day, month and year in a picture, as `LOCALE_IDATE` has it; the name of a day
/// doesn't count.
std::string DateOrder(std::string_view picture);

/// True if a picture has hours of a 24-hour clock.
bool HasTwentyFourHours(std::string_view picture);

}  // namespace dq::platform::posix
