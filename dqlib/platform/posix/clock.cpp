#include "dqlib/platform/clock.h"

#include <ctime>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

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
    return {.wYear = static_cast<WORD>(parts.tm_year + 1900),
            .wMonth = static_cast<WORD>(parts.tm_mon + 1),
            .wDayOfWeek = static_cast<WORD>(parts.tm_wday),
            .wDay = static_cast<WORD>(parts.tm_mday),
            .wHour = static_cast<WORD>(parts.tm_hour),
            .wMinute = static_cast<WORD>(parts.tm_min),
            .wSecond = static_cast<WORD>(parts.tm_sec),
            .wMilliseconds = static_cast<WORD>(now.tv_nsec / 1'000'000)};
  }
};

}  // namespace

Clock& SystemClock() {
  static PosixClock& clock = *new PosixClock;
  return clock;
}

}  // namespace dq::platform::posix
