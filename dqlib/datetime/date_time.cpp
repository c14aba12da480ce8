#include "dqlib/datetime/date_time.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

#include "dqlib/datetime/date_time_cells.h"
#include "dqlib/datetime/date_time_fmt_dictionary.h"
#include "dqlib/framework/base/date_time_text.h"
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

/// Adds what stands between separators, and each separator. Where a token begins with a name,
/// separators are a part of it as far as the name goes, `name_length` bytes.
template <typename NameLength>
void CutTokens(const char* text, NameLength name_length, CStringList& tokens) {
  std::string_view rest = text == nullptr ? std::string_view() : std::string_view(text);
  while (!rest.empty()) {
    const std::size_t name = name_length(rest);
    const std::size_t end =
        std::min(rest.find_first_of(detail::kDateTimeSeparators, name), rest.size());
    if (end > 0) tokens.AddTail(CString(rest.substr(0, end)));
    rest.remove_prefix(end);
    if (rest.empty()) break;
    tokens.AddTail(CString(rest.substr(0, 1)));
    rest.remove_prefix(1);
  }
}

/// Whether there may be a name in the text.
bool HasLetters(std::string_view text) {
  return text.find_first_not_of("0123456789 /-,;:.") != std::string_view::npos;
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
  const CLGDateTimeFmtDef* const format = def != nullptr ? def : m_pFormat;
  if (ParseDateTimeWithExactMatch(tokens, format) != 0) return 1;
  // In some locales names hold separators.
  if (!HasLetters(text)) return 0;
  const auto name_length = [](std::string_view rest) {
    return detail::NameLength(rest, detail::kDateTimeSeparators);
  };
  CStringList named_tokens;
  CutTokens(text, name_length, named_tokens);
  const bool other = named_tokens.GetCount() != tokens.GetCount();
  return other ? ParseDateTimeWithExactMatch(named_tokens, format) : 0;
}

void CLGDateTime::ExtractDateTimeStr(const char* text, CStringList& tokens) const {
  CutTokens(
      text, [](std::string_view) { return std::size_t{0}; }, tokens);
}

int CLGDateTime::ParseDateTimeWithExactMatch(const CStringList& tokens,
                                             const CLGDateTimeFmtDef* def) {
  Elements elements;
  if (def == nullptr || !AssignTokens(tokens, def->GetFmtElementList(), elements)) return 0;
  auto& [day, month, year, hour, minute, second, marker] = elements;
  detail::DateTimeParts parts;
  const bool has_date = !day.IsEmpty() && !month.IsEmpty() && !year.IsEmpty();
  const bool has_time = !hour.IsEmpty() && !minute.IsEmpty();
  if (has_date) {
    CheckMisOrderedDateMonth(month, day);
    Make4DigitYear(year);
    const CString text = year + "-" + month + "-" + day;
    const auto date = detail::ReadDateTime(text.View(), LOCALE_NOUSEROVERRIDE, LANG_SYSTEM_DEFAULT,
                                           detail::Reading::kExact);
    if (!date) return 0;
    parts = *date;
  }
  if (has_time) {
    CString text = hour + ":" + minute;
    if (!second.IsEmpty()) text += ":" + second;
    text += " " + marker;
    text.TrimRight();
    const auto time =
        detail::ReadDateTime(text.View(), VAR_TIMEVALUEONLY, 0, detail::Reading::kExact);
    if (!time) return 0;
    parts.hour = time->hour;
    parts.minute = time->minute;
    parts.second = time->second;
  }
  if (!has_date && !has_time) return 0;
  m_value.SetDateTime(parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second);
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
