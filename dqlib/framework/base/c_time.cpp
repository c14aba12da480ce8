#include "dqlib/framework/base/c_time.h"

#include "dqlib/framework/base/ole_date_time.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

constexpr int kFirstYear = 1970;
constexpr int kLastYear = 9999;

}  // namespace

CTime::CTime(std::int64_t seconds) {
  const auto local = platform::Current().clock->LocalTimeOf(seconds);
  // In time zones to the west it begins in the year before.
  const bool is_known =
      local && local->wYear <= kLastYear && (local->wYear >= kFirstYear || seconds >= 0);
  if (is_known) m_time = seconds;
}

CTime::CTime(int year, int month, int day, int hour, int minute, int second) {
  SYSTEMTIME time;
  // What the calendar has is found out below; here only what the record can't hold.
  for (const int part : {month, day, hour, minute, second}) {
    if (part < 0 || part > 0xFF) return;
  }
  if (year < kFirstYear || year > kLastYear) return;
  time.wYear = static_cast<WORD>(year);
  time.wMonth = static_cast<WORD>(month);
  time.wDay = static_cast<WORD>(day);
  time.wHour = static_cast<WORD>(hour);
  time.wMinute = static_cast<WORD>(minute);
  time.wSecond = static_cast<WORD>(second);
  m_time = platform::Current().clock->SecondsOf(time);
}

CTime::CTime(const SYSTEMTIME& time)
    : CTime(time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond) {}

CTime CTime::GetCurrentTime() { return CTime(platform::Current().clock->SecondsSince1970()); }

bool CTime::GetAsSystemTime(SYSTEMTIME& time) const {
  if (!m_time) return false;
  const auto local = platform::Current().clock->LocalTimeOf(*m_time);
  if (local) time = *local;
  return local.has_value();
}

int CTime::Part(WORD SYSTEMTIME::*part) const {
  SYSTEMTIME time;
  return GetAsSystemTime(time) ? time.*part : -1;
}

int CTime::GetYear() const { return Part(&SYSTEMTIME::wYear); }

int CTime::GetMonth() const { return Part(&SYSTEMTIME::wMonth); }

int CTime::GetDay() const { return Part(&SYSTEMTIME::wDay); }

int CTime::GetHour() const { return Part(&SYSTEMTIME::wHour); }

int CTime::GetMinute() const { return Part(&SYSTEMTIME::wMinute); }

int CTime::GetSecond() const { return Part(&SYSTEMTIME::wSecond); }

int CTime::GetDayOfWeek() const {
  const int day = Part(&SYSTEMTIME::wDayOfWeek);
  return day < 0 ? -1 : day + 1;
}

CString CTime::Format(const char* format) const {
  SYSTEMTIME time;
  return GetAsSystemTime(time) ? COleDateTime(time).Format(format) : CString();
}

CTimeSpan CTime::operator-(const CTime& other) const {
  return CTimeSpan(m_time && other.m_time ? *m_time - *other.m_time : 0);
}

}  // namespace dq
