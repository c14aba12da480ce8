#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>

#include "dqlib/framework/base/date_time_text.h"
#include "dqlib/framework/base/ole_date_time.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/date_text.h"
#include "dqlib/platform/platform.h"

namespace dq::detail {
namespace {

struct Token {
  enum Kind { kEnd, kNumber, kMonth, kMarker, kSeparator, kBlank, kColon };
  Kind kind = kEnd;
  /// Of a number; of a month, 1 to 12; of a marker, 0 or 12 hours; of a separator, its character.
  int value = 0;
  /// Bytes of the text.
  std::size_t length = 0;
  /// Of a number, as far as four of them hold its value.
  std::size_t digits = 0;

  /// Nothing else is as large.
  bool IsYear() const { return kind == kNumber && value >= 100; }
};

constexpr std::array<std::string_view, 12> kEnglishMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

constexpr std::string_view kBlanks = " \t\r\n";
/// A year has the most digits.
constexpr std::size_t kMostDigits = 4;

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

/// Cuts the token that a text begins with.
class Cutter {
 public:
  Cutter(DWORD locale, Reading reading)
      : locale_(locale),
        plain_(reading == Reading::kPlain),
        names_of_digits_(BeginsWithDigit(LOCALE_SMONTHNAME1) ||
                         BeginsWithDigit(LOCALE_SABBREVMONTHNAME1)) {}

  std::string_view blanks() const { return kBlanks.substr(0, plain_ ? kBlanks.size() : 1); }

  /// The token that a text which isn't empty begins with; of no length if there is none.
  Token Cut(std::string_view text) const {
    const char first = text.front();
    if (blanks().find(first) != std::string_view::npos) {
      return {Token::kBlank, 0, std::min(text.find_first_not_of(blanks()), text.size())};
    }
    if (first == ':') return {Token::kColon, 0, 1};
    if (std::string_view("/-.,").find(first) != std::string_view::npos) {
      return {Token::kSeparator, first, 1};
    }
    if (!IsDigit(first)) return ReadName(text);
    const Token number = ReadNumber(text);
    const Token name = names_of_digits_ ? ReadName(text) : Token();
    return name.length > number.length ? name : number;
  }

 private:
  bool BeginsWithDigit(DWORD item) const {
    const std::string name = LocaleName(item, locale_);
    return !name.empty() && IsDigit(name.front());
  }

  bool IsBoundary(std::string_view text, std::size_t at) const {
    return at >= text.size() ||
           std::string_view("/-.,:").find(text[at]) != std::string_view::npos ||
           blanks().find(text[at]) != std::string_view::npos;
  }

  /// Takes the name if the text begins with it, in either case, and with no longer one so far.
  void TakeName(std::string_view text, std::string_view name, Token::Kind kind, int value,
                Token& best) const {
    // A short name's full stop may be left out.
    for (const std::string_view form :
         {name, name.ends_with('.') ? name.substr(0, name.size() - 1) : std::string_view()}) {
      const std::size_t length = form.size();
      if (length <= best.length || !platform::EqualIgnoringCase(text.substr(0, length), form)) {
        continue;
      }
      const bool glued = plain_ && kind == Token::kMonth && length < text.size() &&
                         IsDigit(text[length]) && !IsDigit(form.back());
      if (glued || IsBoundary(text, length)) best = {kind, value, length};
    }
  }

  /// The longest name that the text begins with, the locale's rather than the English one of that
  /// length, for it is what is printed; of no length if there is none.
  Token ReadName(std::string_view text) const {
    Token best;
    for (DWORD month = 0; month < kEnglishMonths.size(); ++month) {
      const int value = static_cast<int>(month) + 1;
      TakeName(text, LocaleName(LOCALE_SMONTHNAME1 + month, locale_), Token::kMonth, value, best);
      TakeName(text, LocaleName(LOCALE_SABBREVMONTHNAME1 + month, locale_), Token::kMonth, value,
               best);
    }
    TakeName(text, LocaleName(LOCALE_S1159, locale_), Token::kMarker, 0, best);
    TakeName(text, LocaleName(LOCALE_S2359, locale_), Token::kMarker, 12, best);
    int number = 0;
    for (const std::string_view month : kEnglishMonths) {
      ++number;
      TakeName(text, month, Token::kMonth, number, best);
      TakeName(text, month.substr(0, 3), Token::kMonth, number, best);
    }
    for (const std::string_view marker : {"AM", "A", "PM", "P"}) {
      if (!plain_ && marker.size() == 1) continue;
      TakeName(text, marker, Token::kMarker, marker.front() == 'A' ? 0 : 12, best);
    }
    return best;
  }

  Token ReadNumber(std::string_view text) const {
    Token number{Token::kNumber};
    while (number.length < text.size() && IsDigit(text[number.length])) {
      if (number.value >= 1000) return {};
      number.value = number.value * 10 + (text[number.length++] - '0');
    }
    number.digits = std::min(number.length, kMostDigits);
    const std::size_t needed = number.IsYear() ? kMostDigits : 2;
    return plain_ || number.length <= needed ? number : Token();
  }

  DWORD locale_;
  bool plain_;
  /// In some languages the names of months begin with their numbers.
  bool names_of_digits_;
};

constexpr std::size_t kMostTokens = 20;

/// Day, month and year by their places in the text.
struct DateOrder {
  std::size_t year;
  std::size_t month;
  std::size_t day;
};

constexpr DateOrder kYearMonthDay{0, 1, 2};
constexpr DateOrder kMonthDayYear{2, 0, 1};
constexpr DateOrder kDayMonthYear{2, 1, 0};

/// Years of two digits are those from 1930 to 2029.
int FullYear(const Token& year) {
  if (year.IsYear() || year.digits == kMostDigits) return year.value;
  return year.value + (year.value < 30 ? 2000 : 1900);
}

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

/// Which of the elements shows by itself that it is the year: the one that is large enough, or else
/// the one that has as many digits as a year.
std::size_t FindYear(std::span<const Token> elements) {
  std::size_t found = kNowhere;
  for (std::size_t i = elements.size(); i-- > 0;) {
    if (elements[i].digits == kMostDigits && found == kNowhere) found = i;
  }
  for (std::size_t i = elements.size(); i-- > 0;) {
    if (elements[i].IsYear()) found = i;
  }
  return found;
}

/// Takes the date over if there is one of these parts.
bool TakeDate(int year, const Token& month, const Token& day, DateTimeParts& parts) {
  if (day.kind != Token::kNumber) return false;
  DateTimeParts date = parts;
  date.year = year;
  date.month = month.value;
  date.day = day.value;
  if (!date.Exists()) return false;
  parts = date;
  return true;
}

class Reader {
 public:
  Reader(DWORD flags, DWORD locale, Reading reading)
      : fixed_order_((flags & LOCALE_NOUSEROVERRIDE) != 0),
        locale_(locale),
        cutter_(locale, reading) {}

  bool Read(std::string_view text, DateTimeParts& parts) {
    if (!Cut(text)) return false;
    // Where dates have another separator, numbers between full stops are a time unless a year shows
    // that they are a date.
    const bool perhaps_time = has_stop_ && LocaleName(LOCALE_SDATE, locale_) != ".";
    if ((!perhaps_time || has_year_) && ReadWhole(parts)) return true;
    if (!perhaps_time) return false;
    stops_in_times_ = true;
    at_ = 0;
    parts = {};
    return ReadWhole(parts);
  }

  const ToldParts& told() const { return told_; }

 private:
  bool Cut(std::string_view text) {
    const std::string_view blanks = cutter_.blanks();
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    text = text.substr(0, text.find_last_not_of(blanks) + 1);
    std::size_t count = 0;
    while (!text.empty()) {
      if (count == kMostTokens) return false;
      const Token token = cutter_.Cut(text);
      if (token.length == 0) return false;
      text.remove_prefix(token.length);
      const Token::Kind former = count > 0 ? tokens_[count - 1].kind : Token::kEnd;
      // Blanks round a colon say nothing.
      if (former == Token::kColon && token.kind == Token::kBlank) continue;
      if (former == Token::kBlank && token.kind == Token::kColon) --count;
      tokens_[count++] = token;
      has_stop_ = has_stop_ || IsStop(token);
      has_year_ = has_year_ || token.IsYear();
    }
    return count > 0;
  }

  static bool IsStop(const Token& token) {
    return token.kind == Token::kSeparator && token.value == '.';
  }

  const Token& Here() const { return tokens_[at_]; }

  bool Skip(Token::Kind kind) {
    if (Here().kind != kind) return false;
    ++at_;
    return true;
  }

  /// Skips what stands between a date and a time.
  bool SkipGap() {
    const bool blank = Skip(Token::kBlank);
    const bool comma = Here().value == ',' && Skip(Token::kSeparator);
    if (comma) Skip(Token::kBlank);
    return blank || comma;
  }

  /// A date, a time or both.
  bool ReadWhole(DateTimeParts& parts) {
    const bool time_first = IsTime();
    told_ = {.date = !time_first, .time = time_first};
    if (!(time_first ? ReadTime(parts) : ReadDate(parts))) return false;
    if (Here().kind == Token::kEnd) return true;
    told_ = {.date = true, .time = true};
    if (!SkipGap() || !(time_first ? ReadDate(parts) : ReadTime(parts))) return false;
    return Here().kind == Token::kEnd;
  }

  bool IsTime() const {
    if (Here().kind != Token::kNumber) return false;
    const Token& next = tokens_[at_ + 1];
    const Token& last = tokens_[at_ + 2];
    return next.kind == Token::kColon || next.kind == Token::kMarker ||
           (next.kind == Token::kBlank && last.kind == Token::kMarker) ||
           (stops_in_times_ && IsStop(next) && last.kind == Token::kNumber);
  }

  bool ReadDate(DateTimeParts& parts) {
    std::array<Token, 3> elements;
    std::size_t count = 0;
    while (count < elements.size()) {
      const std::size_t former = at_;
      if (count > 0) {
        const bool blank = Skip(Token::kBlank);
        const bool mark = Skip(Token::kSeparator);
        if (mark) Skip(Token::kBlank);
        // Nothing stands between a number and a month's name that is glued to it.
        const bool glued =
            Here().kind == Token::kMonth || elements[count - 1].kind == Token::kMonth;
        if (!blank && !mark && !glued) break;
      }
      if ((count > 1 && IsTime()) ||
          (Here().kind != Token::kNumber && Here().kind != Token::kMonth)) {
        at_ = former;
        break;
      }
      elements[count++] = Here();
      ++at_;
    }
    return count > 1 && Interpret(std::span(elements).first(count), parts);
  }

  bool Interpret(std::span<const Token> elements, DateTimeParts& parts) const {
    const std::size_t year_at = FindYear(elements);
    if (elements.size() == 2) return TakePair(elements, year_at, parts);
    const auto take = [&](const DateOrder& order, bool exchanged) {
      const Token& year = elements[order.year];
      if (year.kind != Token::kNumber || (year_at != kNowhere && year_at != order.year)) {
        return false;
      }
      return TakeDate(FullYear(year), elements[exchanged ? order.day : order.month],
                      elements[exchanged ? order.month : order.day], parts);
    };
    if (fixed_order_ || year_at == 0)
      return take(kYearMonthDay, false) || take(kYearMonthDay, true);
    const DateOrder order = OfLocale();
    const bool named = std::any_of(elements.begin(), elements.end(),
                                   [](const Token& t) { return t.kind == Token::kMonth; });
    if (take(order, false) || (!named && take(kYearMonthDay, false)) || take(order, true)) {
      return true;
    }
    return named && (take(kDayMonthYear, false) || take(kDayMonthYear, true));
  }

  /// Month and year, or month and day of the present year.
  bool TakePair(std::span<const Token> elements, std::size_t year_at, DateTimeParts& parts) const {
    if (year_at != kNowhere) {
      const Token first_day{Token::kNumber, 1, 0};
      return TakeDate(FullYear(elements[year_at]), elements[1 - year_at], first_day, parts);
    }
    const int year = platform::Current().clock->LocalTime().wYear;
    const bool day_first = !fixed_order_ && OfLocale().day == 0;
    const Token& month = elements[day_first ? 1 : 0];
    const Token& day = elements[day_first ? 0 : 1];
    return TakeDate(year, month, day, parts) || TakeDate(year, day, month, parts);
  }

  DateOrder OfLocale() const {
    const std::string order = LocaleName(LOCALE_IDATE, locale_);
    return order == "2" ? kYearMonthDay : order == "1" ? kDayMonthYear : kMonthDayYear;
  }

  bool ReadTime(DateTimeParts& parts) {
    std::array<int, 3> numbers{};
    std::size_t count = 0;
    const Token::Kind separator =
        stops_in_times_ && IsStop(tokens_[at_ + 1]) ? Token::kSeparator : Token::kColon;
    do {
      if (Here().kind != Token::kNumber) return false;
      numbers[count++] = Here().value;
      ++at_;
    } while (count < numbers.size() && (separator == Token::kColon || IsStop(Here())) &&
             Skip(separator));
    DateTimeParts time = parts;
    time.hour = numbers[0];
    time.minute = numbers[1];
    time.second = numbers[2];
    if (!time.Exists()) return false;
    const std::size_t behind_numbers = at_;
    Skip(Token::kBlank);
    if (Here().kind == Token::kMarker) {
      // On a clock of 24 hours a marker says nothing new.
      if (time.hour <= 12) time.hour = time.hour % 12 + Here().value;
      ++at_;
    } else {
      at_ = behind_numbers;
      // A lone number is no time.
      if (count < 2) return false;
    }
    parts = time;
    return true;
  }

  bool fixed_order_;
  DWORD locale_;
  Cutter cutter_;
  /// Those that there aren't are ends.
  std::array<Token, kMostTokens + 3> tokens_{};
  std::size_t at_ = 0;
  bool has_stop_ = false;
  bool has_year_ = false;
  ToldParts told_;
  bool stops_in_times_ = false;
};

/// Whether the user's locale calls another month by that name.
bool IsForeignMonth(std::string_view name, int number) {
  const auto is_called = [name](int month) {
    const DWORD index = static_cast<DWORD>(month) - 1;
    const DWORD first = name.size() == 3 ? LOCALE_SABBREVMONTHNAME1 : LOCALE_SMONTHNAME1;
    const DWORD second = name.size() == 3 ? LOCALE_SMONTHNAME1 : LOCALE_SABBREVMONTHNAME1;
    return platform::EqualIgnoringCase(name, LocaleName(first + index, LOCALE_USER_DEFAULT)) ||
           platform::EqualIgnoringCase(name, LocaleName(second + index, LOCALE_USER_DEFAULT));
  };
  if (is_called(number)) return false;
  for (int month = 1; month <= 12; ++month) {
    if (is_called(month)) return true;
  }
  return false;
}

}  // namespace

int EnglishMonth(std::string_view name) {
  int number = 0;
  for (const std::string_view month : kEnglishMonths) {
    ++number;
    if ((name.size() == 3 || name.size() == month.size()) &&
        platform::EqualIgnoringCase(name, month.substr(0, name.size()))) {
      return IsForeignMonth(name, number) ? 0 : number;
    }
  }
  return 0;
}

std::size_t NameLength(std::string_view text, std::string_view separators) {
  struct Run {
    DWORD first;
    DWORD count;
  };
  std::size_t length = 0;
  for (const auto& [first, count] :
       {Run{LOCALE_S1159, 2}, {LOCALE_SDAYNAME1, 14}, {LOCALE_SMONTHNAME1, 24}}) {
    for (DWORD item = first; item < first + count; ++item) {
      const std::string name = LocaleName(item, LOCALE_USER_DEFAULT);
      const bool ends = text.size() <= name.size() ||
                        separators.find(text[name.size()]) != std::string_view::npos;
      if (name.size() > length && ends &&
          platform::EqualIgnoringCase(text.substr(0, name.size()), name)) {
        length = name.size();
      }
    }
  }
  return length;
}

std::optional<DateTimeParts> ReadDateTime(std::string_view text, DWORD flags, DWORD locale,
                                          Reading reading, ToldParts* told) {
  DateTimeParts parts;
  Reader reader(flags, locale == 0 ? LOCALE_USER_DEFAULT : locale, reading);
  if (!reader.Read(text, parts)) return {};
  if (told != nullptr) *told = reader.told();
  const DateTimeParts origin;
  if ((flags & VAR_TIMEVALUEONLY) != 0) {
    parts.year = origin.year;
    parts.month = origin.month;
    parts.day = origin.day;
  }
  if ((flags & VAR_DATEVALUEONLY) != 0) {
    parts.hour = origin.hour;
    parts.minute = origin.minute;
    parts.second = origin.second;
  }
  return parts;
}

}  // namespace dq::detail
