#include "dqlib/platform/clock.h"

#include <ctime>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

class MonotonicClock : public Clock {
 public:
  DWORD TickCount() override {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const std::uint64_t milliseconds = static_cast<std::uint64_t>(now.tv_sec) * 1000 +
                                       static_cast<std::uint64_t>(now.tv_nsec) / 1'000'000;
    return static_cast<DWORD>(milliseconds);
  }
};

}  // namespace

Clock& SystemClock() {
  static MonotonicClock& clock = *new MonotonicClock;
  return clock;
}

}  // namespace dq::platform::posix
