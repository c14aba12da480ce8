// Speed of date-time texts against fmt.

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fmt/chrono.h>
#include <fmt/compile.h>
#include <string>
#include <vector>

#include "benchmarks/ratio.h"
#include "dqlib/framework/base/ole_date_time.h"

namespace {

constexpr int kValues = 100'000;

/// The same value for both.
struct Value {
  dq::COleDateTime ours;
  std::tm peer;
};

std::vector<Value> Values() {
  std::vector<Value> values;
  unsigned state = 1;
  const auto next = [&state](int count) {
    state = state * 214013 + 2531011;
    return static_cast<int>(state >> 16 & 0x7FFF) % count;
  };
  while (values.size() < kValues) {
    const int year = 1900 + next(200);
    const int month = 1 + next(12);
    const int day = 1 + next(28);
    const int hour = next(24);
    const int minute = next(60);
    const int second = next(60);
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    values.push_back({dq::COleDateTime(year, month, day, hour, minute, second), parts});
  }
  return values;
}

/// Ours begins with a count of days, the peer with parts that somebody has reckoned.
template <typename Peer>
void Compare(const char* name, const char* peer_name, const char* format, double goal,
             const std::vector<Value>& values, Peer peer) {
  for (const Value& value : values) {
    if (value.ours.Format(format).View() == peer(value.peer)) continue;
    std::fprintf(stderr, "%s: the results differ\n", name);
    std::exit(2);
  }
  bench::Ratio(name, peer_name, goal)
      .Run(
          [&] {
            for (const Value& value : values) bench::Keep(value.ours.Format(format));
          },
          [&] {
            for (const Value& value : values) bench::Keep(peer(value.peer));
          });
}

}  // namespace

int main() {
  const std::vector<Value> values = Values();
  Compare("COleDateTime::Format, 100,000 dates and times", "fmt, compiled, std::tm",
          "%Y-%m-%d %H:%M:%S", 1.3, values, [](const std::tm& parts) {
            return fmt::format(FMT_COMPILE("{:%Y-%m-%d %H:%M:%S}"), parts);
          });
  Compare("COleDateTime::Format, 100,000 dates and times", "fmt, compiled, numbers",
          "%Y-%m-%d %H:%M:%S", 1.3, values, [](const std::tm& parts) {
            return fmt::format(FMT_COMPILE("{}-{:02}-{:02} {:02}:{:02}:{:02}"),
                               parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                               parts.tm_min, parts.tm_sec);
          });
  Compare("COleDateTime::Format, 100,000 with a half day", "fmt, compiled, std::tm",
          "%m/%d/%Y %I:%M:%S %p", 1.3, values, [](const std::tm& parts) {
            return fmt::format(FMT_COMPILE("{:%m/%d/%Y %I:%M:%S %p}"), parts);
          });
  return bench::Finish();
}
