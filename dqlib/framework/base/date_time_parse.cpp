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
  /// Of a number; of a month, 1 to 12; of a marker, 0 or 12 hours.
  int value = 0;
  /// Bytes of the text.
  std::size_t length = 0;
};

constexpr std::array<std::string_view, 12> kEnglishMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

bool IsBoundary(std::string_view text, std::size_t at) {
  return at >= text.size() || std::string_view(" /-.,:").find(text[at]) != std::string_view::npos;
}

/// Whether the text begins with the word, in either case, and the word ends there.
bool BeginsWith(std::string_view text, std::string_view word) {
  return !word.empty() && text.size() >= word.size() && IsBoundary(text, word.size()) &&
         platform::EqualIgnoringCase(text.substr(0, word.size()), word);
}

/// Takes the name if the text begins with it and with no longer one so far.
void TakeName(std::string_view text, std::string_view name, Token::Kind kind, int value,
              Token& best) {
  // A short name's full stop may be left out.
  for (const std::string_view form :
       {name, name.ends_with('.') ? name.substr(0, name.size() - 1) : std::string_view()}) {
    if (form.size() > best.length && BeginsWith(text, form)) best = {kind, value, form.size()};
  }
}

/// The English name that the text begins with, else the locale's; of no length if there is none.
Token ReadName(std::string_view text, DWORD locale) {
  Token best;
  int number = 0;
  for (const std::string_view month : kEnglishMonths) {
    ++number;
    TakeName(text, month, Token::kMonth, number, best);
    TakeName(text, month.substr(0, 3), Token::kMonth, number, best);
  }
  TakeName(text, "AM", Token::kMarker, 0, best);
  TakeName(text, "PM", Token::kMarker, 12, best);
  if (best.length > 0) return best;
  for (DWORD month = 0; month < kEnglishMonths.size(); ++month) {
    const int value = static_cast<int>(month) + 1;
    TakeName(text, LocaleName(LOCALE_SMONTHNAME1 + month, locale), Token::kMonth, value, best);
    TakeName(text, LocaleName(LOCALE_SABBREVMONTHNAME1 + month, locale), Token::kMonth, value,
             best);
  }
  TakeName(text, LocaleName(LOCALE_S1159, locale), Token::kMarker, 0, best);
  TakeName(text, LocaleName(LOCALE_S2359, locale), Token::kMarker, 12, best);
  return best;
}

Token ReadNumber(std::string_view text) {
  // A year has the most digits.
  constexpr std::size_t kMostDigits = 4;
  Token number{Token::kNumber, 0, 0};
  while (number.length < text.size() && IsDigit(text[number.length])) {
    if (number.length == kMostDigits) return {};
    number.value = number.value * 10 + (text[number.length++] - '0');
  }
  return number;
}

/// The token that a text which isn't empty begins with; of no length if there is none.
Token ReadToken(std::string_view text, DWORD locale) {
  switch (text.front()) {
    case ' ':
      return {Token::kBlank, 0, std::min(text.find_first_not_of(' '), text.size())};
    case '/':
    case '-':
    case '.':
    case ',':
      return {Token::kSeparator, 0, 1};
    case ':':
      return {Token::kColon, 0, 1};
    default:
      break;
  }
  if (!IsDigit(text.front())) return ReadName(text, locale);
  const Token number = ReadNumber(text);
  if (number.length == 0 || IsBoundary(text, number.length)) return number;
  // In some languages the names of months begin with digits.
  const Token name = ReadName(text, locale);
  return name.length > 0 ? name : number;
}

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
  if (year.length > 2) return year.value;
  return year.value + (year.value < 30 ? 2000 : 1900);
}

/// Takes the date over if there is one of these parts; no year means the present one.
bool TakeDate(const Token* year, const Token& month, const Token& day, DateTimeParts& parts) {
  if ((year != nullptr && year->kind != Token::kNumber) || day.kind != Token::kNumber ||
      day.length > 2 || (month.kind == Token::kNumber && month.length > 2)) {
    return false;
  }
  DateTimeParts date = parts;
  date.year = year != nullptr ? FullYear(*year) : platform::Current().clock->LocalTime().wYear;
  date.month = month.value;
  date.day = day.value;
  if (!date.Exists()) return false;
  parts = date;
  return true;
}

class Reader {
 public:
  Reader(DWORD flags, DWORD locale)
      : fixed_order_((flags & LOCALE_NOUSEROVERRIDE) != 0), locale_(locale) {}

  bool Read(std::string_view text, DateTimeParts& parts) {
    if (!Cut(text)) return false;
    if (!IsTime()) {
      if (!ReadDate(parts)) return false;
      if (Here().kind == Token::kEnd) return true;
      if (!Skip(Token::kBlank)) return false;
    }
    return ReadTime(parts) && Here().kind == Token::kEnd;
  }

 private:
  bool Cut(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    text = text.substr(0, text.find_last_not_of(' ') + 1);
    std::size_t count = 0;
    while (!text.empty()) {
      // One stays free for the end.
      if (count + 1 == kMostTokens) return false;
      const Token token = ReadToken(text, locale_);
      if (token.length == 0) return false;
      tokens_[count++] = token;
      text.remove_prefix(token.length);
    }
    return count > 0;
  }

  const Token& Here() const { return tokens_[at_]; }

  bool Skip(Token::Kind kind) {
    if (Here().kind != kind) return false;
    ++at_;
    return true;
  }

  bool IsTime() const {
    return Here().kind == Token::kNumber && tokens_[at_ + 1].kind == Token::kColon;
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
        if (!blank && !mark) break;
      }
      if (IsTime() || (Here().kind != Token::kNumber && Here().kind != Token::kMonth)) {
        at_ = former;
        break;
      }
      elements[count++] = Here();
      ++at_;
    }
    return count > 1 && Interpret(std::span(elements).first(count), parts);
  }

  /// What can't be read in its order is read with month and day exchanged.
  bool Interpret(std::span<const Token> elements, DateTimeParts& parts) const {
    if (elements.size() == 2) {
      const bool day_first = !fixed_order_ && OfLocale().day == 0;
      const Token& month = elements[day_first ? 1 : 0];
      const Token& day = elements[day_first ? 0 : 1];
      return TakeDate(nullptr, month, day, parts) || TakeDate(nullptr, day, month, parts);
    }
    const auto take = [&](const DateOrder& order) {
      const Token& month = elements[order.month];
      const Token& day = elements[order.day];
      return TakeDate(&elements[order.year], month, day, parts) ||
             TakeDate(&elements[order.year], day, month, parts);
    };
    const bool year_first = elements[0].kind == Token::kNumber && elements[0].length > 2;
    if (fixed_order_ || year_first) return take(kYearMonthDay);
    if (take(OfLocale())) return true;
    const bool named = std::any_of(elements.begin(), elements.end(),
                                   [](const Token& t) { return t.kind == Token::kMonth; });
    return named && take(kDayMonthYear);
  }

  DateOrder OfLocale() const {
    const std::string order = LocaleName(LOCALE_IDATE, locale_);
    return order == "2" ? kYearMonthDay : order == "1" ? kDayMonthYear : kMonthDayYear;
  }

  bool ReadTime(DateTimeParts& parts) {
    std::array<int, 3> numbers{};
    std::size_t count = 0;
    do {
      if (Here().kind != Token::kNumber || Here().length > 2) return false;
      numbers[count++] = Here().value;
      ++at_;
    } while (count < numbers.size() && Skip(Token::kColon));
    if (count < 2) return false;
    parts.hour = numbers[0];
    parts.minute = numbers[1];
    parts.second = numbers[2];
    if (!parts.Exists()) return false;
    const bool blank = Skip(Token::kBlank);
    if (Here().kind != Token::kMarker) return !blank;
    // On a clock of 24 hours a marker says nothing new.
    if (parts.hour <= 12) parts.hour = parts.hour % 12 + Here().value;
    ++at_;
    return true;
  }

  bool fixed_order_;
  DWORD locale_;
  std::array<Token, kMostTokens> tokens_{};
  std::size_t at_ = 0;
};

}  // namespace

int EnglishMonth(std::string_view name) {
  int number = 0;
  for (const std::string_view month : kEnglishMonths) {
    ++number;
    if ((name.size() == 3 || name.size() == month.size()) &&
        platform::EqualIgnoringCase(name, month.substr(0, name.size()))) {
      return number;
    }
  }
  return 0;
}

std::optional<DateTimeParts> ReadDateTime(std::string_view text, DWORD flags, DWORD locale) {
  DateTimeParts parts;
  if (!Reader(flags, locale == 0 ? LOCALE_USER_DEFAULT : locale).Read(text, parts)) return {};
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
