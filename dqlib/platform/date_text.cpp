#include "dqlib/platform/date_text.h"

#include <cstdint>

namespace dq::platform {
namespace {

constexpr int kDaysIn400Years = 146097;

bool IsLeapYear(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

/// Decimal digits of a number that isn't negative, with zeros before them up to the width.
std::string Padded(int number, std::size_t width) {
  std::string text;
  do {
    text.insert(text.begin(), static_cast<char>('0' + number % 10));
    number /= 10;
  } while (number != 0);
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  return text;
}

std::string Name(Locale& locale, DWORD locale_id, DWORD first, int index) {
  return locale.Item(first + static_cast<DWORD>(index), locale_id).value_or("");
}

/// Days from 0000-03-01 to the first of a month, years beginning in March so that a leap day is the
/// last of its year.
long DaysFromMarch(int year, int month, int day) {
  const int shifted = month > 2 ? year : year - 1;
  const int era = shifted / 400;
  const int year_of_era = shifted - era * 400;
  const int day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const int day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return static_cast<long>(era) * kDaysIn400Years + day_of_era;
}

/// 1899-12-30, counted from 0000-03-01.
constexpr long kOrigin = 693899;

}  // namespace

int DaysInMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

long DaysFromOrigin(int year, int month, int day) {
  return DaysFromMarch(year, month, day) - kOrigin;
}

void DateFromDays(long days, int& year, int& month, int& day) {
  // By Neri and Schneider, "Euclidean affine functions and their application to calendar
  // algorithms": quotients by multiplication, years from March on.
  const auto quarters = 4 * static_cast<std::uint32_t>(days + kOrigin) + 3;
  const std::uint32_t century = quarters / kDaysIn400Years;
  const std::uint32_t quarters_of_century = quarters % kDaysIn400Years | 3;
  const std::uint64_t years = std::uint64_t{2939745} * quarters_of_century;
  const std::uint32_t day_of_year = static_cast<std::uint32_t>(years) / 2939745 / 4;
  const std::uint32_t months = 2141 * day_of_year + 197913;
  const bool is_behind_december = day_of_year >= 306;
  day = static_cast<int>((months & 0xFFFF) / 2141) + 1;
  month = static_cast<int>(months >> 16) - (is_behind_december ? 12 : 0);
  year = static_cast<int>(100 * century + (years >> 32)) + (is_behind_december ? 1 : 0);
}

int DayOfWeek(int year, int month, int day) {
  if (year < 1 || month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month)) return -1;
  // The origin was a Saturday.
  const long days = DaysFromOrigin(year, month, day) + 6;
  return static_cast<int>((days % 7 + 7) % 7);
}

std::string LayOutDate(const SYSTEMTIME& date, std::string_view picture, Locale& locale,
                       DWORD locale_id) {
  const int week_day = DayOfWeek(date.wYear, date.wMonth, date.wDay);
  if (week_day < 0) return {};
  // Names of days begin with Monday.
  const int day_name = (week_day + 6) % 7;
  std::string text;
  for (std::size_t i = 0; i < picture.size();) {
    const char letter = picture[i];
    if (letter == '\'') {
      for (++i; i < picture.size(); ++i) {
        if (picture[i] != '\'') {
          text += picture[i];
        } else if (picture.substr(i, 2) == "''") {
          text += picture[++i];
        } else {
          break;
        }
      }
      ++i;
      continue;
    }
    std::size_t run = 1;
    while (i + run < picture.size() && picture[i + run] == letter) ++run;
    i += run;
    switch (letter) {
      case 'd':
        text += run > 3    ? Name(locale, locale_id, LOCALE_SDAYNAME1, day_name)
                : run == 3 ? Name(locale, locale_id, LOCALE_SABBREVDAYNAME1, day_name)
                           : Padded(date.wDay, run);
        break;
      case 'M':
        text += run > 3    ? Name(locale, locale_id, LOCALE_SMONTHNAME1, date.wMonth - 1)
                : run == 3 ? Name(locale, locale_id, LOCALE_SABBREVMONTHNAME1, date.wMonth - 1)
                           : Padded(date.wMonth, run);
        break;
      case 'y':
        text += run > 2 ? Padded(date.wYear, 4) : Padded(date.wYear % 100, run);
        break;
      default:
        text.append(run, letter);
    }
  }
  return text;
}

}  // namespace dq::platform
