#include "dqlib/framework/base/ole_date_time.h"

#include <cmath>

#include "dqlib/framework/base/date_time_text.h"
#include "dqlib/platform/date_text.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;
constexpr int kSecondsInDay = 86400;
/// The string of the framework that is shown for a value that is no date.
constexpr UINT kInvalid = 61883;

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

/// The fraction of a date before the origin counts away from it although time goes forwards.
detail::DateTimeParts Cut(DATE date) {
  auto days = static_cast<long>(date);
  const double seconds = std::fabs(date - static_cast<double>(days)) * kSecondsInDay;
  int time = static_cast<int>(seconds);
  if (seconds - time >= 0.5) ++time;
  if (time == kSecondsInDay) {
    time = 0;
    ++days;
  }
  detail::DateTimeParts parts;
  parts.hour = time / 3600;
  parts.minute = time / 60 % 60;
  parts.second = time % 60;
  platform::DateFromDays(days, parts.year, parts.month, parts.day);
  return parts;
}

bool IsInRange(DATE date) {
  static const DATE first = static_cast<DATE>(platform::DaysFromOrigin(kFirstYear, 1, 1));
  static const DATE behind = static_cast<DATE>(platform::DaysFromOrigin(kLastYear, 12, 31) + 1);
  // What rounds up to the second behind the last one is out of range too.
  return date > first - 1 && date < behind - 0.5 / kSecondsInDay;
}

}  // namespace

bool detail::DateTimeParts::Exists() const {
  return year >= kFirstYear && year <= kLastYear && month >= 1 && month <= 12 && day >= 1 &&
         day <= platform::DaysInMonth(year, month) && hour >= 0 && hour <= 23 && minute >= 0 &&
         minute <= 59 && second >= 0 && second <= 59;
}

COleDateTime::COleDateTime(DATE date) : m_dt(date), m_status(IsInRange(date) ? valid : invalid) {}

COleDateTime::COleDateTime(const SYSTEMTIME& time) {
  SetDateTime(time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond);
}

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second) {
  SetDateTime(year, month, day, hour, minute, second);
}

bool COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second) {
  const detail::DateTimeParts parts{year, month, day, hour, minute, second};
  m_status = invalid;
  if (!parts.Exists()) return false;
  Take(parts);
  return true;
}

void COleDateTime::Take(const detail::DateTimeParts& parts) {
  const std::int64_t days = platform::DaysFromOrigin(parts.year, parts.month, parts.day);
  m_dt = ToDays(days * kSecondsInDay + parts.hour * 3600 + parts.minute * 60 + parts.second);
  m_status = valid;
}

bool COleDateTime::SetTime(int hour, int minute, int second) {
  return SetDateTime(1899, 12, 30, hour, minute, second);
}

bool COleDateTime::GetAsSystemTime(SYSTEMTIME& time) const {
  if (m_status != valid) return false;
  const detail::DateTimeParts parts = Cut(m_dt);
  time = {.wYear = static_cast<WORD>(parts.year),
          .wMonth = static_cast<WORD>(parts.month),
          .wDayOfWeek = static_cast<WORD>(platform::DayOfWeek(parts.year, parts.month, parts.day)),
          .wDay = static_cast<WORD>(parts.day),
          .wHour = static_cast<WORD>(parts.hour),
          .wMinute = static_cast<WORD>(parts.minute),
          .wSecond = static_cast<WORD>(parts.second),
          .wMilliseconds = 0};
  return true;
}

int COleDateTime::GetYear() const { return m_status == valid ? Cut(m_dt).year : -1; }

int COleDateTime::GetMonth() const { return m_status == valid ? Cut(m_dt).month : -1; }

int COleDateTime::GetDay() const { return m_status == valid ? Cut(m_dt).day : -1; }

int COleDateTime::GetHour() const { return m_status == valid ? Cut(m_dt).hour : -1; }

int COleDateTime::GetMinute() const { return m_status == valid ? Cut(m_dt).minute : -1; }

int COleDateTime::GetSecond() const { return m_status == valid ? Cut(m_dt).second : -1; }

int COleDateTime::GetDayOfWeek() const {
  if (m_status != valid) return -1;
  const detail::DateTimeParts parts = Cut(m_dt);
  return platform::DayOfWeek(parts.year, parts.month, parts.day) + 1;
}

int COleDateTime::GetDayOfYear() const {
  if (m_status != valid) return -1;
  const detail::DateTimeParts parts = Cut(m_dt);
  return static_cast<int>(platform::DaysFromOrigin(parts.year, parts.month, parts.day) -
                          platform::DaysFromOrigin(parts.year, 1, 1)) +
         1;
}

COleDateTime COleDateTime::GetCurrentTime() {
  return COleDateTime(platform::Current().clock->LocalTime());
}

bool COleDateTime::ParseDateTime(const char* text, DWORD flags, DWORD language) {
  m_status = invalid;
  const auto parts = detail::ReadDateTime(text != nullptr ? text : "", flags, language);
  if (!parts) return false;
  Take(*parts);
  return true;
}

CString COleDateTime::Format(const char* format) const {
  if (format == nullptr || *format == '\0' || m_status == null) return {};
  if (m_status != valid) return detail::LoadText(kInvalid);
  return detail::LayOutDateTime(Cut(m_dt), format);
}

}  // namespace dq
