// Speed of date-time texts against fmt, the C library, ICU and a library of dates.

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <date/date.h>
#include <fmt/chrono.h>
#include <fmt/compile.h>
#include <malloc.h>
#include <memory>
#include <sstream>
#include <string>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <vector>

#include "benchmarks/ratio.h"
#include "dqlib/datetime/date_time_format.h"
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

constexpr std::size_t kTexts = 1'000'000;

/// One conversion, as each of the libraries is told of it.
struct Conversion {
  const char* name;
  int code;
  const char* in_fmt;
  const char* out_fmt;
  const char* c_in;
  const char* c_out;
  const char* icu_in;
  const char* icu_out;
};

constexpr Conversion kConversions[] = {
    {"to the server", 6, "MM/DD/YYYY HH12:MI:SS AM", "YYYY-MM-DD HH24:MI:SS",
     "%m/%d/%Y %I:%M:%S %p", "%Y-%m-%d %H:%M:%S", "MM/dd/yyyy hh:mm:ss a", "yyyy-MM-dd HH:mm:ss"},
    {"to the user", 6, "YYYY-MM-DD HH24:MI:SS", "MM/DD/YYYY HH12:MI:SS AM", "%Y-%m-%d %H:%M:%S",
     "%m/%d/%Y %I:%M:%S %p", "yyyy-MM-dd HH:mm:ss", "MM/dd/yyyy hh:mm:ss a"},
    // Three times the same, since only what a format says last counts.
    {"of a long format", 6, "YYYY-MM-DD HH24:MI:SS, YYYY-MM-DD HH24:MI:SS, YYYY-MM-DD HH24:MI:SS",
     "YYYY-MM-DD HH24:MI:SS", "%Y-%m-%d %H:%M:%S, %Y-%m-%d %H:%M:%S, %Y-%m-%d %H:%M:%S",
     "%Y-%m-%d %H:%M:%S", "yyyy-MM-dd HH:mm:ss, yyyy-MM-dd HH:mm:ss, yyyy-MM-dd HH:mm:ss",
     "yyyy-MM-dd HH:mm:ss"},
    {"names of months", 5, "DD-MON-YYYY", "YYYY-MM-DD", "%d-%b-%Y", "%Y-%m-%d", "dd-MMM-yyyy",
     "yyyy-MM-dd"}};

class Icu {
 public:
  explicit Icu(const Conversion& conversion)
      : in_(conversion.icu_in, icu::Locale::getUS(), status_),
        out_(conversion.icu_out, icu::Locale::getUS(), status_) {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone("UTC"));
    in_.setTimeZone(*zone);
    out_.setTimeZone(*zone);
  }

  const std::string& operator()(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    const UDate time = in_.parse(icu::UnicodeString::fromUTF8(text), status);
    icu::UnicodeString printed;
    out_.format(time, printed);
    result_.clear();
    return printed.toUTF8String(result_);
  }

 private:
  UErrorCode status_ = U_ZERO_ERROR;
  icu::SimpleDateFormat in_;
  icu::SimpleDateFormat out_;
  std::string result_;
};

std::size_t MemoryInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

void CompareConversion(const Conversion& conversion) {
  std::vector<dq::CString> texts;
  std::vector<std::string> peers_texts;
  while (texts.size() < kTexts) {
    for (const Value& value : Values()) {
      char text[64];
      peers_texts.emplace_back(text,
                               std::strftime(text, sizeof text, conversion.c_in, &value.peer));
      texts.emplace_back(peers_texts.back());
    }
  }
  const std::unique_ptr<dq::CLGDateTimeFormat> format(
      dq::CDateTimeFormatFactory(dq::DBMS_SQLSERVER, 0, 8).CreateObject());
  const dq::CString in_fmt = conversion.in_fmt;
  const dq::CString out_fmt = conversion.out_fmt;
  dq::CString out;
  const auto ours = [&](const dq::CString& text) -> const dq::CString& {
    format->FormatDateTime(conversion.code, text, out, in_fmt, out_fmt);
    return out;
  };
  const auto c_library = [&](const std::string& text) {
    std::tm parts{};
    strptime(text.c_str(), conversion.c_in, &parts);
    char printed[64];
    const std::size_t size = std::strftime(printed, sizeof printed, conversion.c_out, &parts);
    return std::string(printed, size);
  };
  Icu icu(conversion);
  const auto dates = [&](const std::string& text) {
    std::istringstream stream(text);
    date::sys_seconds time;
    date::from_stream(stream, conversion.c_in, time);
    return date::format(conversion.c_out, time);
  };
  const auto run = [&](const char* peer_name, double goal, auto& peer) {
    for (std::size_t i = 0; i < kValues; ++i) {
      if (ours(texts[i]).View() == peer(peers_texts[i])) continue;
      std::fprintf(stderr, "%s, %s: the results differ\n", conversion.name, peer_name);
      std::exit(2);
    }
    bench::Ratio(std::string("FormatDateTime, 1,000,000 values, ") + conversion.name, peer_name,
                 goal)
        .Run(
            [&] {
              for (const dq::CString& text : texts) bench::Keep(ours(text));
            },
            [&] {
              for (const std::string& text : peers_texts) bench::Keep(peer(text));
            },
            3);
  };
  run("strptime and strftime", 2, c_library);
  const std::size_t before = MemoryInUse();
  for (const dq::CString& text : texts) ours(text);
  if (MemoryInUse() != before) {
    std::fprintf(stderr, "%s: memory is kept\n", conversion.name);
    ++bench::Misses();
  }
  run("ICU SimpleDateFormat", 1.0 / 20, icu);
  run("date::from_stream, date::format", 1.0 / 5, dates);
}

}  // namespace

int main() {
  for (const Conversion& conversion : kConversions) CompareConversion(conversion);
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
