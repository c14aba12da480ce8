#include "dqlib/datetime/date_time.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

#include "dqlib/datetime/date_time_cells.h"
#include "dqlib/datetime/date_time_fmt_dictionary.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

/// The number at the beginning of a text, 0 if there is none.
long NumberOf(const CString& text) { return std::strtol(text, nullptr, 10); }

/// The texts of the seven elements that make up a value, by `DATETIMETYPE`.
using Elements = std::array<CString, DTT_AMPM + 1>;

/// Assigns tokens to cells. False if a separator of the date isn't the format's.
bool AssignTokens(const CStringList& tokens, const CLGDateTimeFmtCellList& cells,
                  Elements& elements) {
  POSITION token_position = tokens.GetHeadPosition();
  POSITION cell_position = cells.GetHeadPosition();
  while (token_position != nullptr && cell_position != nullptr) {
    const CString& token = tokens.GetNext(token_position);
    const CLGDateTimeFmtCell& cell = *cells.GetNext(cell_position);
    const DATETIMETYPE kind = cell.GetDateTimeElementType();
    if (kind <= DTT_AMPM) {
      elements[static_cast<std::size_t>(kind)] = token;
    } else if (kind == DTT_DATESEP && token != cell.GetDateTimeElementFmt(DTF_DISP)) {
      return false;
    }
  }
  return true;
}

}  // namespace

IMPLEMENT_DYNAMIC(CLGDateTime, CObject)
IMPLEMENT_DYNAMIC(CDQDateTimeFmtTransfer, CObject)

CLGDateTime::CLGDateTime(const char* text, CLGDateTimeFmtDef* def) : m_pFormat(def) {
  if (text != nullptr) CLGDateTime::ParseDateTime(text, def);
}

CString CLGDateTime::Format(int code, CLGDateTimeFmtDef* def) {
  if (def == nullptr || m_value.GetStatus() == COleDateTime::invalid) return {};
  if (def->PrintsTwoDigitYear()) {
    m_value.SetDateTime(m_value.GetYear() % 100 + 1900, m_value.GetMonth(), m_value.GetDay(),
                        m_value.GetHour(), m_value.GetMinute(), m_value.GetSecond());
    // 29 February of a century that has one may have no such day in 1900.
    if (m_value.GetStatus() == COleDateTime::invalid) return {};
  }
  return m_value.Format(def->GetFmtDateTime(code, DTF_OLE));
}

CString CLGDateTime::Format(const char* ole_format) const { return m_value.Format(ole_format); }

int CLGDateTime::ParseDateTime(const char* text, const CLGDateTimeFmtDef* def) {
  if (text == nullptr) return 0;
  if (def == nullptr && m_pFormat == nullptr) {
    return m_value.ParseDateTime(text, 0, LANG_USER_DEFAULT) ? 1 : 0;
  }
  CStringList tokens;
  ExtractDateTimeStr(text, tokens);
  return ParseDateTimeWithExactMatch(tokens, def != nullptr ? def : m_pFormat);
}

void CLGDateTime::ExtractDateTimeStr(const char* text, CStringList& tokens) const {
  std::string_view rest = text == nullptr ? std::string_view() : std::string_view(text);
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find_first_of(detail::kDateTimeSeparators), rest.size());
    if (end > 0) tokens.AddTail(CString(rest.substr(0, end)));
    rest.remove_prefix(end);
    if (rest.empty()) break;
    tokens.AddTail(CString(rest.substr(0, 1)));
    rest.remove_prefix(1);
  }
}

int CLGDateTime::ParseDateTimeWithExactMatch(const CStringList& tokens,
                                             const CLGDateTimeFmtDef* def) {
  Elements elements;
  if (def == nullptr || !AssignTokens(tokens, def->GetFmtElementList(), elements)) return 0;
  auto& [day, month, year, hour, minute, second, marker] = elements;
  COleDateTime date;
  COleDateTime time;
  const bool has_date = !day.IsEmpty() && !month.IsEmpty() && !year.IsEmpty();
  const bool has_time = !hour.IsEmpty() && !minute.IsEmpty();
  if (has_date) {
    CheckMisOrderedDateMonth(month, day);
    Make4DigitYear(year);
    const CString text = year + "-" + month + "-" + day;
    if (!date.ParseDateTime(text, LOCALE_NOUSEROVERRIDE, LANG_SYSTEM_DEFAULT)) return 0;
  }
  if (has_time) {
    CString text = hour + ":" + minute;
    if (!second.IsEmpty()) text += ":" + second;
    text += " " + marker;
    text.TrimRight();
    if (!time.ParseDateTime(text, VAR_TIMEVALUEONLY, 0)) return 0;
  }
  if (!has_date && !has_time) return 0;
  m_value.SetDateTime(date.GetYear(), date.GetMonth(), date.GetDay(), time.GetHour(),
                      time.GetMinute(), time.GetSecond());
  return 1;
}

bool CLGDateTime::ParseDateTimeWithFuzzyMatch(const CStringList&, const CLGDateTimeFmtDef*) {
  return true;
}

void CLGDateTime::CheckMisOrderedDateMonth(const CString& month, const CString& day) const {
  if (month.GetLength() > 2 || day.GetLength() > 2) return;
  const long month_number = NumberOf(month);
  const long day_number = NumberOf(day);
  if (month_number >= 13 && month_number <= 31 && day_number >= 1 && day_number <= 12) {
    AfxMessageBox(IDS_DAY_MONTH_ORDER);
  }
}

void CLGDateTime::Make4DigitYear(CString& year) const {
  const long number = NumberOf(year);
  if (number < 1 || number >= 100) return;
  year = std::to_string(number + (number < 50 ? 2000 : 1900));
}

bool CDQDateTimeFmtTransfer::ParseDateTimeFmt(const char* source, DATETIMEFMTTYPE from,
                                              char* target, DATETIMEFMTTYPE to) {
  std::string_view rest = source == nullptr ? std::string_view() : std::string_view(source);
  std::string result;
  if (from == to) {
    result = rest;
  } else {
    const detail::DictionaryUse<CDQDateTimeFmtDictionary> dictionary;
    while (!rest.empty()) {
      const std::size_t end =
          std::min(rest.find_first_of(detail::kDateTimeSeparators), rest.size());
      const auto* const cell =
          end == 0 ? nullptr : dictionary->GetEntry(CString(rest.substr(0, end)), from);
      if (cell != nullptr) result += cell->GetDateTimeElementFmt(to);
      rest.remove_prefix(end);
      if (rest.empty()) break;
      result += rest.front();
      rest.remove_prefix(1);
    }
  }
  result.copy(target, result.size());
  target[result.size()] = '\0';
  return true;
}

}  // namespace dq
