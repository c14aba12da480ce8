#include "dqlib/framework/base/ole_date_time.h"

#include <cmath>

#include "dqlib/platform/date_text.h"

namespace dq {
namespace {

constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;
constexpr int kSecondsInDay = 86400;

struct Parts {
  int year = 0;
  int month = 0;
  int day = 0;
  int second_of_day = 0;
};

/// Seconds from the origin, rounded; the fraction of a date before the origin counts away from it
/// although time goes forwards.
std::int64_t ToSeconds(DATE date) {
  const double days = std::trunc(date);
  const double time = std::fabs(date - days);
  return static_cast<std::int64_t>(days) * kSecondsInDay + std::llround(time * kSecondsInDay);
}

DATE ToDays(std::int64_t seconds) {
  std::int64_t days = seconds / kSecondsInDay;
  std::int64_t time = seconds % kSecondsInDay;
  if (time < 0) {
    time += kSecondsInDay;
    --days;
  }
  const double fraction = static_cast<double>(time) / kSecondsInDay;
  return days < 0 ? static_cast<double>(days) - fraction : static_cast<double>(days) + fraction;
}

Parts Cut(DATE date) {
  const std::int64_t seconds = ToSeconds(date);
  std::int64_t days = seconds / kSecondsInDay;
  Parts parts;
  parts.second_of_day = static_cast<int>(seconds % kSecondsInDay);
  if (parts.second_of_day < 0) {
    parts.second_of_day += kSecondsInDay;
    --days;
  }
  platform::DateFromDays(static_cast<long>(days), parts.year, parts.month, parts.day);
  return parts;
}

bool IsInRange(DATE date) {
  static const DATE first = static_cast<DATE>(platform::DaysFromOrigin(kFirstYear, 1, 1));
  static const DATE behind = static_cast<DATE>(platform::DaysFromOrigin(kLastYear, 12, 31) + 1);
  // What rounds up to the second behind the last one is out of range too.
  return date > first - 1 && date < behind - 0.5 / kSecondsInDay;
}

}  // namespace

COleDateTime::COleDateTime(DATE date) : m_dt(date), m_status(IsInRange(date) ? valid : invalid) {}

COleDateTime::COleDateTime(const SYSTEMTIME& time) {
  SetDateTime(time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond);
}

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second) {
  SetDateTime(year, month, day, hour, minute, second);
}

bool COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second) {
  m_status = invalid;
  if (year < kFirstYear || year > kLastYear || month < 1 || month > 12 || day < 1 ||
      day > platform::DaysInMonth(year, month) || hour < 0 || hour > 23 || minute < 0 ||
      minute > 59 || second < 0 || second > 59) {
    return false;
  }
  const std::int64_t days = platform::DaysFromOrigin(year, month, day);
  m_dt = ToDays(days * kSecondsInDay + hour * 3600 + minute * 60 + second);
  m_status = valid;
  return true;
}

bool COleDateTime::SetTime(int hour, int minute, int second) {
  return SetDateTime(1899, 12, 30, hour, minute, second);
}

bool COleDateTime::GetAsSystemTime(SYSTEMTIME& time) const {
  if (m_status != valid) return false;
  const Parts parts = Cut(m_dt);
  time = {.wYear = static_cast<WORD>(parts.year),
          .wMonth = static_cast<WORD>(parts.month),
          .wDayOfWeek = static_cast<WORD>(platform::DayOfWeek(parts.year, parts.month, parts.day)),
          .wDay = static_cast<WORD>(parts.day),
          .wHour = static_cast<WORD>(parts.second_of_day / 3600),
          .wMinute = static_cast<WORD>(parts.second_of_day / 60 % 60),
          .wSecond = static_cast<WORD>(parts.second_of_day % 60),
          .wMilliseconds = 0};
  return true;
}

int COleDateTime::GetYear() const { return m_status == valid ? Cut(m_dt).year : -1; }

int COleDateTime::GetMonth() const { return m_status == valid ? Cut(m_dt).month : -1; }

int COleDateTime::GetDay() const { return m_status == valid ? Cut(m_dt).day : -1; }

int COleDateTime::GetHour() const {
  return m_status == valid ? Cut(m_dt).second_of_day / 3600 : -1;
}

int COleDateTime::GetMinute() const {
  return m_status == valid ? Cut(m_dt).second_of_day / 60 % 60 : -1;
}

int COleDateTime::GetSecond() const {
  return m_status == valid ? Cut(m_dt).second_of_day % 60 : -1;
}

int COleDateTime::GetDayOfWeek() const {
  if (m_status != valid) return -1;
  const Parts parts = Cut(m_dt);
  return platform::DayOfWeek(parts.year, parts.month, parts.day) + 1;
}

int COleDateTime::GetDayOfYear() const {
  if (m_status != valid) return -1;
  const Parts parts = Cut(m_dt);
  return static_cast<int>(platform::DaysFromOrigin(parts.year, parts.month, parts.day) -
                          platform::DaysFromOrigin(parts.year, 1, 1)) +
         1;
}

}  // namespace dq
