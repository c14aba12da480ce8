// Trees: sorting by a click on a column's title.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/ole_date_time.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/toolkit/tree.h"

namespace dq {

using detail::OrEmpty;

namespace {

constexpr int kMegabyteFactor = 1000;
/// Bytes of a date and time without fraction: "2024-05-06 07:08:09".
constexpr std::size_t kDateTimeLength = 19;

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

template <typename Value>
int Order(const Value& a, const Value& b) {
  return a > b ? 1 : a == b ? 0 : -1;
}

/// -1, 0 or 1.
int CompareNoCase(const char* a, const char* b) {
  return Order(multi_byte::CompareNoCase(a, b), 0);
}

/// A number that is too large or too small to be held: infinite or 0.
double OutOfRange(std::string_view number) {
  long long point = 0;
  bool counts = false;
  bool behind_point = false;
  std::size_t at = 0;
  for (; at < number.size() && (IsDigit(number[at]) || number[at] == '.'); ++at) {
    if (number[at] == '.') {
      behind_point = true;
    } else {
      counts = counts || number[at] != '0';
      if (counts && !behind_point) ++point;
      if (!counts && behind_point) --point;
    }
  }
  long long exponent = 0;
  bool negative = false;
  if (at < number.size()) {
    // Behind the mark there are a sign, if any, and digits.
    ++at;
    negative = number[at] == '-';
    if (!IsDigit(number[at])) ++at;
    constexpr long long kLargest = std::numeric_limits<int>::max();
    for (; at < number.size(); ++at) {
      exponent = std::min(kLargest, exponent * 10 + (number[at] - '0'));
    }
  }
  return point + (negative ? -exponent : exponent) > 0 ? std::numeric_limits<double>::infinity()
                                                       : 0;
}

/// The text behind white space and a sign, which it tells.
std::string_view SkipSign(std::string_view text, bool& negative) {
  text = multi_byte::TrimLeft(text);
  negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  return text;
}

/// The number that a text begins with: sign, decimal digits, point and exponent.
double ReadDouble(std::string_view text) {
  bool negative = false;
  text = SkipSign(text, negative);
  const bool begins = !text.empty() &&
                      (IsDigit(text[0]) || (text[0] == '.' && text.size() > 1 && IsDigit(text[1])));
  if (!begins) return 0;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    value = OutOfRange(text.substr(0, static_cast<std::size_t>(end - text.data())));
  }
  return negative ? -value : value;
}

/// The same for an integer, kept within what an `int` holds.
int ReadInteger(std::string_view text, int factor = 1) {
  bool negative = false;
  text = SkipSign(text, negative);
  long long value = 0;
  for (const char digit : text) {
    if (!IsDigit(digit) || value > std::numeric_limits<int>::max()) break;
    value = value * 10 + (digit - '0');
  }
  value *= negative ? -factor : factor;
  return static_cast<int>(std::clamp<long long>(value, std::numeric_limits<int>::min(),
                                                std::numeric_limits<int>::max()));
}

int UnitFactor(std::string_view text) {
  const std::size_t blank = text.find(' ');
  if (blank == std::string_view::npos) return 1;
  text.remove_prefix(blank);
  if (text.find(" KB") != std::string_view::npos) return 1;
  return text.find(" MB") != std::string_view::npos ? kMegabyteFactor : 1;
}

// What the texts of a column are compared by, taken out of them once for a sort.

class NumberKey {
 public:
  explicit NumberKey(const char* text)
      : text_(OrEmpty(text).data()), value_(CDQTree::Str2Double(text)) {
    has_zero_ = value_ != 0 || std::strchr(text_, '0') != nullptr;
  }

  friend int Compare(const NumberKey& a, const NumberKey& b) {
    // Two that are no numbers at all, or one of them.
    if (a.value_ == 0 && b.value_ == 0 && (!a.has_zero_ || !b.has_zero_)) {
      return CompareNoCase(a.text_, b.text_);
    }
    return Order(a.value_, b.value_);
  }

 private:
  const char* text_;
  double value_;
  bool has_zero_;
};

/// Reads dates and times by the user's locale, the usual forms of plain numbers in one go.
class DateReader {
 public:
  /// Finds out how the locale orders numbers, which pays for many texts.
  void LearnOrder() {
    COleDateTime date;
    if (!date.ParseDateTime("1/2/2003", 0, LOCALE_USER_DEFAULT)) return;
    month_first_ = date.GetMonth() == 1;
    day_first_ = date.GetMonth() == 2;
  }

  /// On one line with all others, earlier ones below; no value for a text that is none.
  std::optional<double> Read(std::string_view text) const {
    if (const auto value = ReadNumbers(text)) return value;
    COleDateTime date;
    if (!date.ParseDateTime(std::string(text).c_str(), 0, LOCALE_USER_DEFAULT)) return {};
    return OnOneLine(date);
  }

 private:
  /// The time of day counts away from zero in a `DATE`.
  static double OnOneLine(const COleDateTime& date) {
    const double days = std::trunc(date.ToDate());
    return days + std::fabs(date.ToDate() - days);
  }

  static std::optional<int> TakeNumber(std::string_view& text, std::size_t most) {
    std::size_t length = 0;
    int value = 0;
    while (length < text.size() && IsDigit(text[length])) {
      if (length == most) return {};
      value = value * 10 + (text[length++] - '0');
    }
    if (length == 0) return {};
    text.remove_prefix(length);
    return value;
  }

  static bool Take(std::string_view& text, char mark) {
    if (!text.starts_with(mark)) return false;
    text.remove_prefix(1);
    return true;
  }

  static bool TakeTime(std::string_view text, int (&time)[3]) {
    for (int at = 0; at < 3; ++at) {
      if (at > 0 && !Take(text, ':')) break;
      const auto number = TakeNumber(text, 2);
      if (!number) return false;
      time[at] = *number;
      if (at > 0 && text.empty()) return true;
    }
    return false;
  }

  /// "2024-05-06" or, where the locale says how, "05/06/2024", alone or with a time of day behind a
  /// blank. No value for anything else, and for what isn't there in this order.
  std::optional<double> ReadNumbers(std::string_view text) const {
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    const bool year_first = digits == 4;
    if (!year_first && !month_first_ && !day_first_) return {};
    int date[3] = {};
    char mark = 0;
    for (int at = 0; at < 3; ++at) {
      const bool is_year = at == (year_first ? 0 : 2);
      if (at == 1 && !text.empty()) mark = text.front();
      if (at > 0 && ((mark != '-' && mark != '/') || !Take(text, mark))) return {};
      const std::size_t before = text.size();
      const auto number = TakeNumber(text, is_year ? 4 : 2);
      if (!number || (is_year && (before - text.size() != 4 || *number < 100))) return {};
      date[at] = *number;
    }
    int time[3] = {};
    if (!text.empty() && (!Take(text, ' ') || !TakeTime(text, time))) return {};
    const int year = date[year_first ? 0 : 2];
    const int month = date[year_first ? 1 : month_first_ ? 0 : 1];
    const int day = date[year_first ? 2 : month_first_ ? 1 : 0];
    const COleDateTime value(year, month, day, time[0], time[1], time[2]);
    if (value.GetStatus() != COleDateTime::valid) return {};
    return OnOneLine(value);
  }

  bool month_first_ = false;
  bool day_first_ = false;
};

class DateKey {
 public:
  DateKey(const char* text, const DateReader& reader) {
    const std::string_view whole = OrEmpty(text);
    const auto value = reader.Read(whole);
    is_date_ = value.has_value();
    whole_ = value.value_or(0);
    start_ = whole_;
    if (whole.size() > kDateTimeLength) {
      start_ = reader.Read(whole.substr(0, kDateTimeLength)).value_or(0);
    }
  }

  /// What `a` is decides which parts of both are compared, so that the order of the two matters.
  friend int Compare(const DateKey& a, const DateKey& b) {
    return a.is_date_ ? Order(a.whole_, b.whole_) : Order(a.start_, b.start_);
  }

 private:
  double whole_;
  /// Of the first bytes alone.
  double start_;
  bool is_date_;
};

/// Sorts by keys that are made once for each row.
template <typename Key, typename Make>
void SortByKeys(CDQTree& tree, int column, bool ascending, Make make) {
  std::vector<Key> keys;
  keys.reserve(static_cast<std::size_t>(tree.GetCount()));
  tree.ForEachText(column, [&](const char* text) { keys.push_back(make(text)); });
  if (ascending) {
    tree.SortRowsByKeys(keys, [](const Key& a, const Key& b) { return Compare(a, b); });
  } else {
    tree.SortRowsByKeys(keys, [](const Key& a, const Key& b) { return Compare(b, a); });
  }
}

}  // namespace

BOOL CDQTree::OnHeaderButtonDown() {
  const detail::Watched self(*this);
  const bool sorted = m_bAutoSort && SortByColumn(GetHeaderColumn());
  if (self.IsThere()) ResetHeader();
  return sorted ? 1 : 0;
}

bool CDQTree::SortByColumn(int column) {
  if (GetCount() < 2 || !HasCell(0, column)) return false;
  const CWaitCursor wait;
  const detail::Watched self(*this);
  m_bSortAscending = column != m_nSortColumn || !m_bSortAscending;
  m_nSortColumn = column;
  const UINT format = GetColumnFormat(column);
  if ((format & kColumnNumber) != 0) {
    SortByKeys<NumberKey>(*this, column, m_bSortAscending,
                          [](const char* text) { return NumberKey(text); });
  } else if ((format & kColumnDateTime) != 0) {
    DateReader reader;
    reader.LearnOrder();
    SortByKeys<DateKey>(*this, column, m_bSortAscending,
                        [&](const char* text) { return DateKey(text, reader); });
  } else {
    SortRowsByText(column, m_bSortAscending);
  }
  if (self.IsThere()) SetSortMark(column, m_bSortAscending);
  return true;
}

double CDQTree::Str2Double(const char* text) {
  return text == nullptr ? 0 : ReadDouble(text) * UnitFactor(text);
}

int CDQTree::Str2Number(const char* text) {
  return text == nullptr ? 0 : ReadInteger(text, UnitFactor(text));
}

int CDQTree::SortNumberAscendingCallback(CSftTree&, const char* a, const char* b, std::uintptr_t,
                                         std::uintptr_t) {
  return Compare(NumberKey(a), NumberKey(b));
}

int CDQTree::SortNumberDescendingCallback(CSftTree&, const char* a, const char* b, std::uintptr_t,
                                          std::uintptr_t) {
  return Compare(NumberKey(b), NumberKey(a));
}

int CDQTree::SortIntegerAscendingCallback(CSftTree&, const char* a, const char* b, std::uintptr_t,
                                          std::uintptr_t) {
  return Order(ReadInteger(OrEmpty(a)), ReadInteger(OrEmpty(b)));
}

int CDQTree::SortIntegerDescendingCallback(CSftTree&, const char* a, const char* b, std::uintptr_t,
                                           std::uintptr_t) {
  return Order(ReadInteger(b), ReadInteger(a));
}

int CDQTree::SortStringDescendingCallback(CSftTree&, const char* a, const char* b, std::uintptr_t,
                                          std::uintptr_t) {
  return a == nullptr || b == nullptr ? 0 : CompareNoCase(b, a);
}

int CDQTree::SortDateTimeHelper(const char* a, const char* b) {
  const DateReader reader;
  return Compare(DateKey(a, reader), DateKey(b, reader));
}

int CDQTree::SortDateTimeAscendingCallback(CSftTree&, const char* a, const char* b, std::uintptr_t,
                                           std::uintptr_t) {
  return SortDateTimeHelper(a, b);
}

int CDQTree::SortDateTimeDescendingCallback(CSftTree&, const char* a, const char* b, std::uintptr_t,
                                            std::uintptr_t) {
  return SortDateTimeHelper(b, a);
}

}  // namespace dq
