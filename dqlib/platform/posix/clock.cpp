#include "dqlib/platform/clock.h"

#include <ctime>

#include "dqlib/platform/date_text.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// Where the system's years count from.
constexpr int kFirstYear = 1900;

SYSTEMTIME ToSystemTime(const std::tm& parts, long milliseconds) {
  return {.wYear = static_cast<WORD>(parts.tm_year + kFirstYear),
          .wMonth = static_cast<WORD>(parts.tm_mon + 1),
          .wDayOfWeek = static_cast<WORD>(parts.tm_wday),
          .wDay = static_cast<WORD>(parts.tm_mday),
          .wHour = static_cast<WORD>(parts.tm_hour),
          .wMinute = static_cast<WORD>(parts.tm_min),
          .wSecond = static_cast<WORD>(parts.tm_sec),
          .wMilliseconds = static_cast<WORD>(milliseconds)};
}

class PosixClock : public Clock {
 public:
  DWORD TickCount() override {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const std::uint64_t milliseconds = static_cast<std::uint64_t>(now.tv_sec) * 1000 +
                                       static_cast<std::uint64_t>(now.tv_nsec) / 1'000'000;
    return static_cast<DWORD>(milliseconds);
  }

  std::int64_t SecondsSince1970() override { return std::time(nullptr); }

  SYSTEMTIME LocalTime() override {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    // Who writes line after line asks for the same second again and again.
    thread_local std::time_t second = -1;
    thread_local std::tm parts{};
    if (second != now.tv_sec) {
      localtime_r(&now.tv_sec, &parts);
      second = now.tv_sec;
    }
    return ToSystemTime(parts, now.tv_nsec / 1'000'000);
  }

  std::optional<SYSTEMTIME> LocalTimeOf(std::int64_t seconds) override {
    const std::time_t moment = seconds;
    std::tm parts{};
    if (localtime_r(&moment, &parts) == nullptr) return std::nullopt;
    const bool fits = parts.tm_year >= -kFirstYear && parts.tm_year <= 0xFFFF - kFirstYear;
    return fits ? std::optional(ToSystemTime(parts, 0)) : std::nullopt;
  }

  std::optional<std::int64_t> SecondsOf(const SYSTEMTIME& local) override {
    if (local.wMonth < 1 || local.wMonth > 12 || local.wDay < 1 ||
        local.wDay > DaysInMonth(local.wYear, local.wMonth) || local.wHour > 23 ||
        local.wMinute > 59 || local.wSecond > 59) {
      return std::nullopt;
    }
    std::tm parts{};
    parts.tm_year = local.wYear - kFirstYear;
    parts.tm_mon = local.wMonth - 1;
    parts.tm_mday = local.wDay;
    parts.tm_hour = local.wHour;
    parts.tm_min = local.wMinute;
    parts.tm_sec = local.wSecond;
    parts.tm_isdst = -1;
    // -1 is a moment too; this is set if there is any.
    parts.tm_wday = -1;
    const std::time_t seconds = std::mktime(&parts);
    return parts.tm_wday < 0 ? std::nullopt : std::optional(std::int64_t{seconds});
  }
};

}  // namespace

Clock& SystemClock() {
  static PosixClock& clock = *new PosixClock;
  return clock;
}

}  // namespace dq::platform::posix
