#include "dqlib/datetime/date_time_conversion.h"

#include <algorithm>

#include "dqlib/datetime/data_type.h"
#include "dqlib/datetime/date_time.h"
#include "dqlib/datetime/date_time_cells.h"
#include "dqlib/datetime/date_time_fmt_dictionary.h"
#include "dqlib/framework/base/date_time_text.h"

namespace dq::detail {
namespace {

/// No text, for an element.
constexpr int kNone = -1;

bool IsSeparator(char character) {
  return kDateTimeSeparators.find(character) != kDateTimeSeparators.npos;
}

/// Up to so many digits as a number; `kNone` for any other text.
int PlainNumber(std::string_view text, std::size_t most_digits) {
  if (text.size() > most_digits) return kNone;
  int number = 0;
  for (const char character : text) {
    if (character < '0' || character > '9') return kNone;
    number = number * 10 + (character - '0');
  }
  return number;
}

/// Hours that the marker of a half day adds; `kNone` for any but the English ones.
int PlainMarker(std::string_view text) {
  if (text.size() != 2 || (text[1] | ' ') != 'm') return kNone;
  const int letter = text[0] | ' ';
  return letter == 'a' ? 0 : letter == 'p' ? 12 : kNone;
}

int PlainElement(DATETIMETYPE kind, std::string_view text) {
  switch (kind) {
    case DTT_AMPM:
      return PlainMarker(text);
    case DTT_YEAR:
      return PlainNumber(text, 4);
    case DTT_MONTH: {
      const int number = PlainNumber(text, 2);
      if (number != kNone) return number;
      const int named = EnglishMonth(text);
      return named != 0 ? named : kNone;
    }
    default:
      return PlainNumber(text, 2);
  }
}

/// The elements' values, by `DATETIMETYPE`.
using Values = std::array<int, DTT_AMPM + 1>;

/// False unless there is such a date or time, in the order that the format says.
bool TakeValues(const Values& values, DateTimeParts& parts) {
  const auto& [day, month, year, hour, minute, second, marker] = values;
  const bool has_date = day != kNone && month != kNone && year != kNone;
  const bool has_time = hour != kNone && minute != kNone;
  if (has_date) {
    // A year 0 is the parser's to judge.
    if (year == 0) return false;
    parts.year = year >= 100 ? year : year < 50 ? 2000 + year : 1900 + year;
    parts.month = month;
    parts.day = day;
  }
  if (has_time) {
    parts.hour = marker != kNone && hour <= 12 ? hour % 12 + marker : hour;
    parts.minute = minute;
    parts.second = second != kNone ? second : 0;
  }
  return (has_date || has_time) && parts.Exists();
}

}  // namespace

DateTimeConversion::DateTimeConversion(int code, const CString& in_fmt, const CString& out_fmt)
    : code_(code), in_fmt_(in_fmt), out_fmt_(out_fmt) {
  if (!in_fmt.IsEmpty()) {
    source_ = std::make_shared<CLGDateTimeFmtDef>(in_fmt);
    const CString part = source_->GetFmtDateTime(code, DTF_DISP);
    if (part != in_fmt) source_ = std::make_shared<CLGDateTimeFmtDef>(part);
    PrepareSteps();
  }
  if (!out_fmt.IsEmpty()) {
    target_ = std::make_shared<CLGDateTimeFmtDef>(out_fmt);
    layout_ = target_->GetFmtDateTime(code, DTF_OLE);
    two_digit_year_ = target_->PrintsTwoDigitYear();
  }
}

void DateTimeConversion::PrepareSteps() {
  CConstPtrArrayIterT<CLGDateTimeFmtCell> walk(source_->GetFmtElementList());
  while (const CLGDateTimeFmtCell* cell = walk.Next()) {
    const DATETIMETYPE kind = cell->GetDateTimeElementType();
    const CString& code = cell->GetDateTimeElementFmt(DTF_DISP);
    // Whoever adds separators to the dictionary has their texts compared.
    if (kind == DTT_DATESEP && code.GetLength() != 1) {
      steps_.clear();
      return;
    }
    steps_.push_back({kind, code[0]});
  }
}

bool DateTimeConversion::ReadPlain(std::string_view text, DateTimeParts& parts) const {
  Values values;
  values.fill(kNone);
  std::size_t at = 0;
  for (const Step& step : steps_) {
    if (at == text.size()) break;
    if (step.kind == DTT_DATESEP || step.kind == DTT_TIMESEP) {
      const char separator = text[at++];
      if (step.kind == DTT_DATESEP ? separator != step.separator : !IsSeparator(separator)) {
        return false;
      }
      continue;
    }
    const std::size_t start = at;
    while (at < text.size() && !IsSeparator(text[at])) ++at;
    const std::string_view token = text.substr(start, at - start);
    if (token.empty()) return false;
    if (step.kind == DTT_WEEKDAY) {
      // A zero would end the value.
      if (token.find('\0') != token.npos) return false;
      continue;
    }
    int& value = values[static_cast<std::size_t>(step.kind)];
    value = PlainElement(step.kind, token);
    if (value == kNone) return false;
  }
  return TakeValues(values, parts);
}

int DateTimeConversion::Convert(const CString& in, CString& out) {
  DateTimeParts parts;
  if (!ReadPlain(in.View(), parts)) return Walk(in, out);
  if (two_digit_year_) parts.year = parts.year % 100 + 1900;
  if (target_ == nullptr || !parts.Exists()) {
    out.Empty();
  } else {
    LayOutDateTime(parts, layout_.View(), out);
  }
  return 1;
}

int DateTimeConversion::Walk(const CString& in, CString& out) {
  // Reading may show a message, under which another value may be converted and this conversion be
  // dropped for it.
  const auto source = source_;
  const auto target = target_;
  const int code = code_;
  CLGDateTime date_time;
  if (in == GetSqlFragment(SQL_FRAGMENT_NULL_TEXT) ||
      date_time.ParseDateTime(in, source.get()) == 0) {
    out = in;
    return 0;
  }
  out = date_time.Format(code, target.get());
  return 1;
}

int DateTimeConversions::Convert(int code, const CString& in, CString& out, const CString& in_fmt,
                                 const CString& out_fmt) {
  // What was made of elements that somebody has added lasts no longer than they do.
  if (CLGDateTimeFmtDictionary::HasAddedEntries()) {
    return DateTimeConversion(code, in_fmt, out_fmt).Convert(in, out);
  }
  return Find(code, in_fmt, out_fmt)->Convert(in, out);
}

DateTimeConversion* DateTimeConversions::Find(int code, const CString& in_fmt,
                                              const CString& out_fmt) {
  if (prepared_[last_] != nullptr && prepared_[last_]->IsFor(code, in_fmt, out_fmt)) {
    return prepared_[last_].get();
  }
  const auto found = std::find_if(prepared_.begin(), prepared_.end(), [&](const auto& one) {
    return one != nullptr && one->IsFor(code, in_fmt, out_fmt);
  });
  if (found != prepared_.end()) {
    last_ = static_cast<std::size_t>(found - prepared_.begin());
  } else {
    prepared_[next_] = std::make_unique<DateTimeConversion>(code, in_fmt, out_fmt);
    last_ = next_;
    next_ = (next_ + 1) % prepared_.size();
  }
  return prepared_[last_].get();
}

}  // namespace dq::detail
