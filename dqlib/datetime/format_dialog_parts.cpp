#include "dqlib/datetime/format_dialog_parts.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "dqlib/datetime/data_type.h"

namespace dq::detail {
namespace {

constexpr const char kBlank[] = " ";
constexpr const char kColon[] = ":";
/// Hours that never have a marker of the half day.
constexpr std::string_view kPaddedHours24 = "HH24";

}  // namespace

DateTimeFmtParts DateTimeFmtParts::Of(const CLGDateTimeFmtCellList& cells) {
  DateTimeFmtParts parts;
  DATETIMETYPE date[kSeparators] = {};
  int dates = 0;
  bool any_time = false;
  const CLGDateTimeFmtCell* before = nullptr;
  CConstPtrArrayIterT<CLGDateTimeFmtCell> walk(cells);
  while (const CLGDateTimeFmtCell* const cell = walk.Next()) {
    const DATETIMETYPE kind = cell->GetDateTimeElementType();
    if (kind == DTT_DATESEP && before != nullptr && before->GetDateTimeElementType() <= DTT_YEAR) {
      CString& separator = parts.separators[before->GetDateTimeElementType()];
      if (separator.IsEmpty()) separator = cell->GetDetail();
    }
    before = cell;
    if (kind > DTT_AMPM || !parts.elements[kind].IsEmpty()) continue;
    parts.elements[kind] = cell->GetDetail();
    if (kind <= DTT_YEAR) {
      parts.time_first = parts.time_first || any_time;
      date[dates++] = kind;
    } else {
      any_time = true;
    }
  }
  if (dates < kSeparators) return parts;
  const auto* const order = std::ranges::find_if(
      kDateOrders,
      [&date](const DATETIMETYPE(&kinds)[kSeparators]) { return std::ranges::equal(kinds, date); });
  parts.date_order = static_cast<int>(order - std::begin(kDateOrders));
  parts.separators[date[2]] = parts.separators[date[1]];
  return parts;
}

CString DateTimeFmtParts::GenerateDateFmt() const {
  CString fmt;
  if (date_order < 0) return fmt;
  const auto& order = kDateOrders[date_order];
  for (const DATETIMETYPE kind : order) {
    fmt += elements[kind];
    if (kind == order[2]) break;
    fmt += separators[kind].IsEmpty() ? CString(kBlank) : separators[kind];
  }
  return fmt;
}

CString DateTimeFmtParts::GenerateTimeFmt() const {
  CString fmt = elements[DTT_HOUR] + kColon + elements[DTT_MINUTE] + kColon + elements[DTT_SECOND];
  if (elements[DTT_HOUR].View() != kPaddedHours24) fmt += kBlank + elements[DTT_AMPM];
  fmt.TrimRight();
  return fmt;
}

CString DateTimeFmtParts::GenerateDateTimeFmt(int code) const {
  switch (DateTimeClassOf(code)) {
    case DATATYPE_DATE:
      return GenerateDateFmt();
    case DATATYPE_TIME:
      return GenerateTimeFmt();
    case DATATYPE_DATETIME:
      return time_first ? GenerateTimeFmt() + kBlank + GenerateDateFmt()
                        : GenerateDateFmt() + kBlank + GenerateTimeFmt();
    default:
      return CString();
  }
}

}  // namespace dq::detail
