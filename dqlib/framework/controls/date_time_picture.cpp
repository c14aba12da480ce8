#include "dqlib/framework/controls/date_time_picture.h"

#include <algorithm>
#include <charconv>

#include "dqlib/framework/base/drawn_character.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/date_text.h"
#include "dqlib/platform/locale.h"
#include "dqlib/platform/platform.h"
#include "dqlib/platform/system_time.h"

namespace dq::detail {
namespace {

constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;
constexpr int kHalfDay = 12;

/// The part of a run of a letter; a text if it is none.
DatePart PartOf(char letter, std::size_t run) {
  switch (letter) {
    case 'd':
      return run < 3 ? DatePart::kDay : DatePart::kWeekDay;
    case 'M':
      return DatePart::kMonth;
    case 'y':
      return DatePart::kYear;
    case 'H':
      return DatePart::kHour;
    case 'h':
      return DatePart::kHour12;
    case 'm':
      return DatePart::kMinute;
    case 's':
      return DatePart::kSecond;
    case 't':
      return DatePart::kHalf;
    default:
      return DatePart::kText;
  }
}

std::string LocaleText(DWORD item, std::string_view otherwise = {}) {
  const std::string name = LocaleName(item, LOCALE_USER_DEFAULT);
  return name.empty() ? std::string(otherwise) : name;
}

/// In full, or its first character.
std::string HalfDayName(bool afternoon, bool in_full) {
  std::string name = afternoon ? LocaleText(LOCALE_S2359, "PM") : LocaleText(LOCALE_S1159, "AM");
  if (!in_full) name.resize(FirstCharacter(name, multi_byte::CurrentCodePage()).size);
  return name;
}

std::string Padded(int number, std::size_t width) {
  std::string text = std::to_string(number);
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  return text;
}

int* FieldOf(DatePart part, DateTimeParts& time) {
  switch (part) {
    case DatePart::kDay:
    case DatePart::kWeekDay:
      return &time.day;
    case DatePart::kMonth:
      return &time.month;
    case DatePart::kYear:
      return &time.year;
    case DatePart::kHour:
    case DatePart::kHour12:
      return &time.hour;
    case DatePart::kMinute:
      return &time.minute;
    case DatePart::kSecond:
      return &time.second;
    default:
      return nullptr;
  }
}

void SkipBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
}

/// Takes one of so many names of the locale off the text, the longest that it begins with; its
/// index, or -1.
int TakeName(std::string_view& text, DWORD first, DWORD first_short, int count) {
  int found = -1;
  std::size_t taken = 0;
  for (int at = 0; at < 2 * count; ++at) {
    const DWORD item =
        at < count ? first + static_cast<DWORD>(at) : first_short + static_cast<DWORD>(at - count);
    const std::string name = LocaleText(item);
    if (name.size() <= taken) continue;
    if (!platform::EqualIgnoringCase(text.substr(0, name.size()), name)) continue;
    found = at % count;
    taken = name.size();
  }
  text.remove_prefix(taken);
  return found;
}

/// Takes at most so many digits off the text; how many, and their number.
std::size_t TakeDigits(std::string_view& text, std::size_t most, int& number) {
  const std::string_view digits = text.substr(0, most);
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool is_number = error == std::errc() && digits.front() != '-';
  const auto count = is_number ? static_cast<std::size_t>(end - digits.data()) : 0;
  text.remove_prefix(count);
  return count;
}

/// What a text tells of a point in time, before the half of the day is known.
struct Reading12 {
  DateTimeParts time;
  std::optional<int> hour12;
  std::optional<bool> afternoon;
};

bool TakePart(const PicturePart& part, std::string_view& text, Reading12& read) {
  int number = 0;
  switch (part.part) {
    case DatePart::kWeekDay:
      return TakeName(text, LOCALE_SDAYNAME1, LOCALE_SABBREVDAYNAME1, 7) >= 0;
    case DatePart::kHalf:
      for (const bool afternoon : {false, true}) {
        const std::string name = HalfDayName(afternoon, part.letters.size() > 1);
        if (!platform::EqualIgnoringCase(text.substr(0, name.size()), name)) continue;
        text.remove_prefix(name.size());
        read.afternoon = afternoon;
        return true;
      }
      return false;
    case DatePart::kYear: {
      const std::size_t digits = TakeDigits(text, 4, number);
      const bool is_same = digits <= 2 && number == read.time.year % 100;
      if (!is_same) read.time.year = digits > 2 ? number : FullYear(number);
      return digits > 0;
    }
    case DatePart::kMonth:
      if (part.letters.size() > 2) {
        read.time.month = 1 + TakeName(text, LOCALE_SMONTHNAME1, LOCALE_SABBREVMONTHNAME1, 12);
        return read.time.month > 0;
      }
      return TakeDigits(text, 2, read.time.month) > 0;
    case DatePart::kHour12:
      if (TakeDigits(text, 2, number) == 0) return false;
      read.hour12 = number;
      return true;
    default:
      return TakeDigits(text, 2, *FieldOf(part.part, read.time)) > 0;
  }
}

}  // namespace

DatePicture::DatePicture(std::string_view picture) {
  const auto add_text = [this](std::string_view text) {
    if (parts_.empty() || parts_.back().part != DatePart::kText) parts_.emplace_back();
    parts_.back().letters += text;
  };
  while (!picture.empty()) {
    const char letter = picture.front();
    if (letter == '\'') {
      picture.remove_prefix(1);
      while (!picture.empty() && (picture.front() != '\'' || picture.starts_with("''"))) {
        add_text(picture.substr(0, 1));
        picture.remove_prefix(picture.front() == '\'' ? 2 : 1);
      }
      picture.remove_prefix(std::min<std::size_t>(1, picture.size()));
      continue;
    }
    const std::size_t run = std::min(picture.find_first_not_of(letter), picture.size());
    const DatePart part = PartOf(letter, run);
    if (part == DatePart::kText) {
      add_text(picture.substr(0, run));
    } else {
      parts_.push_back({part, std::string(picture.substr(0, run))});
    }
    picture.remove_prefix(run);
  }
}

std::string DatePicture::TextOf(const PicturePart& part, const DateTimeParts& time) {
  const std::size_t width = std::min<std::size_t>(2, part.letters.size());
  switch (part.part) {
    case DatePart::kText:
      return part.letters;
    case DatePart::kHour:
      return Padded(time.hour, width);
    case DatePart::kHour12:
      return Padded((time.hour + kHalfDay - 1) % kHalfDay + 1, width);
    case DatePart::kMinute:
      return Padded(time.minute, width);
    case DatePart::kSecond:
      return Padded(time.second, width);
    case DatePart::kHalf:
      return HalfDayName(time.hour >= kHalfDay, width > 1);
    default: {
      const SYSTEMTIME date{.wYear = static_cast<WORD>(time.year),
                            .wMonth = static_cast<WORD>(time.month),
                            .wDay = static_cast<WORD>(time.day)};
      return platform::LayOutDate(date, part.letters, *platform::Current().locale,
                                  LOCALE_USER_DEFAULT);
    }
  }
}

std::optional<DateTimeParts> DatePicture::Read(std::string_view text,
                                               const DateTimeParts& time) const {
  Reading12 read{.time = time, .hour12 = {}, .afternoon = {}};
  for (const PicturePart& part : parts_) {
    SkipBlanks(text);
    if (part.part != DatePart::kText) {
      if (text.empty() || !TakePart(part, text, read)) return std::nullopt;
      continue;
    }
    for (std::string_view wanted = part.letters; SkipBlanks(wanted), !wanted.empty();) {
      SkipBlanks(text);
      if (!text.starts_with(wanted.front())) return std::nullopt;
      text.remove_prefix(1);
      wanted.remove_prefix(1);
    }
  }
  SkipBlanks(text);
  if (!text.empty()) return std::nullopt;
  if (read.hour12) {
    if (*read.hour12 < 1 || *read.hour12 > kHalfDay) return std::nullopt;
    read.time.hour = *read.hour12 % kHalfDay + (time.hour >= kHalfDay ? kHalfDay : 0);
  }
  if (read.afternoon) read.time.hour = read.time.hour % kHalfDay + (*read.afternoon ? kHalfDay : 0);
  return read.time.Exists() ? std::optional(read.time) : std::nullopt;
}

int FullYear(int year) { return year < 30 ? 2000 + year : 1900 + year; }

int LowestOf(DatePart part) {
  if (part == DatePart::kYear) return kFirstYear;
  return part == DatePart::kDay || part == DatePart::kWeekDay || part == DatePart::kMonth ? 1 : 0;
}

int HighestOf(DatePart part, const DateTimeParts& time) {
  switch (part) {
    case DatePart::kDay:
    case DatePart::kWeekDay:
      return platform::DaysInMonth(time.year, time.month);
    case DatePart::kMonth:
      return 12;
    case DatePart::kYear:
      return kLastYear;
    case DatePart::kHour:
    case DatePart::kHour12:
      return 23;
    case DatePart::kMinute:
    case DatePart::kSecond:
      return 59;
    case DatePart::kHalf:
      return 1;
    default:
      return 0;
  }
}

int NumberOf(DatePart part, const DateTimeParts& time) {
  if (part == DatePart::kHalf) return time.hour / kHalfDay;
  DateTimeParts copy = time;
  const int* const field = FieldOf(part, copy);
  return field == nullptr ? 0 : *field;
}

bool SetNumber(DatePart part, int number, DateTimeParts& time) {
  if (part == DatePart::kText || number < LowestOf(part) || number > HighestOf(part, time)) {
    return false;
  }
  if (part == DatePart::kHalf) {
    time.hour = time.hour % kHalfDay + number * kHalfDay;
  } else {
    *FieldOf(part, time) = number;
  }
  time.day = std::min(time.day, platform::DaysInMonth(time.year, time.month));
  return true;
}

bool StepNumber(DatePart part, int steps, DateTimeParts& time) {
  const long long lowest = LowestOf(part);
  const long long count = HighestOf(part, time) - lowest + 1;
  const long long number = NumberOf(part, time) - lowest + steps;
  const bool wraps = part != DatePart::kYear;
  if (!wraps && (number < 0 || number >= count)) return false;
  return SetNumber(part, static_cast<int>(lowest + (number % count + count) % count), time);
}

}  // namespace dq::detail
