#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "dqlib/framework/base/date_time_text.h"
#include "dqlib/platform/date_text.h"
#include "dqlib/platform/platform.h"

namespace dq::detail {
namespace {

/// The numbers below 100, two digits each.
constexpr auto kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const std::size_t number = i / 2;
    pairs[i] = static_cast<char>('0' + (i % 2 == 0 ? number / 10 : number % 10));
  }
  return pairs;
}();

/// Collects a short text without allocating, and any longer one behind it.
class Output {
 public:
  void Put(char character) {
    if (used_ == buffer_.size()) Spill();
    buffer_[used_++] = character;
  }

  void Put(std::string_view text) {
    if (text.size() > buffer_.size() - used_) {
      Spill();
      long_text_ += text;
      return;
    }
    // For markers and names cheaper than a call.
    for (const char character : text) buffer_[used_++] = character;
  }

  /// A number of at most `width` digits, with zeros before it up to the width unless it is bare.
  void Put(int number, std::size_t width, bool bare) {
    std::array<char, 4> digits{'0', '0', '0', '0'};
    std::size_t first = digits.size();
    for (; number != 0; number /= 10) digits[--first] = static_cast<char>('0' + number % 10);
    first = bare ? std::min(first, digits.size() - 1) : digits.size() - width;
    Put(std::string_view(digits.data() + first, digits.size() - first));
  }

  /// A number below 100.
  void PutTwo(int number, bool bare) {
    if (buffer_.size() - used_ < 2) Spill();
    const char* const pair = kPairs.data() + 2 * static_cast<std::size_t>(number);
    if (number < 10 && bare) {
      buffer_[used_++] = pair[1];
      return;
    }
    std::memcpy(buffer_.data() + used_, pair, 2);
    used_ += 2;
  }

  /// All of it; valid until more is put.
  std::string_view View() {
    const std::string_view text(buffer_.data(), used_);
    if (long_text_.empty()) return text;
    Spill();
    return long_text_;
  }

 private:
  void Spill() {
    long_text_.append(buffer_.data(), used_);
    used_ = 0;
  }

  std::array<char, 128> buffer_;
  std::size_t used_ = 0;
  std::string long_text_;
};

std::string_view WithoutBlanks(std::string_view name) {
  while (!name.empty() && name.front() == ' ') name.remove_prefix(1);
  while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
  return name;
}

constexpr std::string_view kShortDate = "%m/%d/%y";
constexpr std::string_view kLongDate = "%A, %B %d, %Y";
constexpr std::string_view kTime = "%H:%M:%S";

class Layout {
 public:
  Layout(Output& output, const DateTimeParts& parts) : output_(output), parts_(parts) {}

  void Write(std::string_view format) {
    for (std::size_t i = 0; i < format.size(); ++i) {
      if (format[i] != '%') {
        output_.Put(format[i]);
        continue;
      }
      const std::size_t start = i++;
      const bool bare = i < format.size() && format[i] == '#';
      if (bare) ++i;
      if (i >= format.size() || !WriteCode(format[i], bare)) {
        output_.Put(format.substr(start, i - start + 1));
      }
    }
  }

 private:
  /// False, and nothing, for a code that there isn't.
  bool WriteCode(char code, bool bare) {
    switch (code) {
      case 'd':
        output_.PutTwo(parts_.day, bare);
        return true;
      case 'm':
        output_.PutTwo(parts_.month, bare);
        return true;
      case 'y':
        output_.PutTwo(parts_.year % 100, bare);
        return true;
      case 'Y':
        if (bare) {
          output_.Put(parts_.year, 4, true);
        } else {
          output_.PutTwo(parts_.year / 100, false);
          output_.PutTwo(parts_.year % 100, false);
        }
        return true;
      case 'H':
        output_.PutTwo(parts_.hour, bare);
        return true;
      case 'I':
        output_.PutTwo((parts_.hour + 11) % 12 + 1, bare);
        return true;
      case 'M':
        output_.PutTwo(parts_.minute, bare);
        return true;
      case 'S':
        output_.PutTwo(parts_.second, bare);
        return true;
      case 'p':
        WriteMarker();
        return true;
      default:
        return WriteRareCode(code, bare);
    }
  }

  bool WriteRareCode(char code, bool bare) {
    switch (code) {
      case 'a':
      case 'A':
        // Names of days begin with Monday.
        WriteName(code == 'a' ? LOCALE_SABBREVDAYNAME1 : LOCALE_SDAYNAME1, (WeekDay() + 6) % 7);
        return true;
      case 'b':
      case 'B':
        WriteName(code == 'b' ? LOCALE_SABBREVMONTHNAME1 : LOCALE_SMONTHNAME1, parts_.month - 1);
        return true;
      case 'j':
        output_.Put(YearDay() + 1, 3, bare);
        return true;
      case 'w':
        output_.PutTwo(WeekDay(), true);
        return true;
      case 'U':
        output_.PutTwo((YearDay() + 7 - WeekDay()) / 7, bare);
        return true;
      case 'W':
        output_.PutTwo((YearDay() + 7 - (WeekDay() + 6) % 7) / 7, bare);
        return true;
      case 'x':
      case 'c':
        Write(bare ? kLongDate : kShortDate);
        if (code == 'x') return true;
        output_.Put(' ');
        Write(kTime);
        return true;
      case 'X':
        Write(kTime);
        return true;
      case 'z':
      case 'Z':
        // The value belongs to no zone.
        return true;
      case '%':
        output_.Put('%');
        return true;
      default:
        return false;
    }
  }

  void WriteName(DWORD first, int index) {
    const DWORD item = first + static_cast<DWORD>(index);
    if (!WriteItem(item, LOCALE_USER_DEFAULT)) WriteItem(item, LOCALE_US_ENGLISH);
  }

  void WriteMarker() {
    const bool morning = parts_.hour < 12;
    if (!WriteItem(morning ? LOCALE_S1159 : LOCALE_S2359, LOCALE_USER_DEFAULT)) {
      output_.Put(morning ? "AM" : "PM");
    }
  }

  /// False, and nothing, for a name that there isn't.
  bool WriteItem(DWORD item, DWORD locale) {
    const std::optional<std::string> found = platform::Current().locale->Item(item, locale);
    const std::string_view name = found ? WithoutBlanks(*found) : std::string_view();
    output_.Put(name);
    return !name.empty();
  }

  int WeekDay() const { return platform::DayOfWeek(parts_.year, parts_.month, parts_.day); }

  /// From 0.
  int YearDay() const {
    return static_cast<int>(platform::DaysFromOrigin(parts_.year, parts_.month, parts_.day) -
                            platform::DaysFromOrigin(parts_.year, 1, 1));
  }

  Output& output_;
  const DateTimeParts& parts_;
};

}  // namespace

std::string LocaleName(DWORD item, DWORD locale) {
  const std::optional<std::string> found = platform::Current().locale->Item(item, locale);
  return std::string(found ? WithoutBlanks(*found) : std::string_view());
}

CString LayOutDateTime(const DateTimeParts& parts, std::string_view format) {
  Output output;
  Layout(output, parts).Write(format);
  return output.View();
}

void LayOutDateTime(const DateTimeParts& parts, std::string_view format, CString& text) {
  Output output;
  Layout(output, parts).Write(format);
  text = output.View();
}

}  // namespace dq::detail
