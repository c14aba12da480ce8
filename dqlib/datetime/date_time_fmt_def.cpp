#include "dqlib/datetime/date_time_fmt_def.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "dqlib/core/locale_info.h"
#include "dqlib/datetime/data_type.h"
#include "dqlib/datetime/date_time_cells.h"
#include "dqlib/datetime/date_time_fmt_dictionary.h"

namespace dq {
namespace {

using Dictionary = detail::DictionaryUse<CLGDateTimeFmtDictionary>;

/// Calls `visit` with each text before a separator or the end, and with the separator or "". Stops
/// and returns false as soon as `visit` does.
template <typename Visit>
bool Scan(std::string_view text, Visit visit) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(detail::kDateTimeSeparators), text.size());
    const std::string_view separator = text.substr(end, 1);
    if (!visit(CString(text.substr(0, end)), CString(separator))) return false;
    text.remove_prefix(end + separator.size());
  }
  return true;
}

/// A locale picture without fractions of seconds: no other element has an "f".
std::string WithoutFractions(std::string_view text) {
  std::string whole;
  bool found = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool fraction = text[i] == '.' && text.substr(i + 1, 1) == "f";
    found = found || fraction;
    if (!fraction) whole += text[i];
  }
  if (found) std::erase(whole, 'f');
  return whole;
}

void TrimBlanks(CString& text) {
  int length = text.GetLength();
  while (length > 0 && text[length - 1] == ' ') --length;
  text = text.Left(length);
}

}  // namespace

IMPLEMENT_DYNAMIC(CLGDateTimeFmtDef, CObject)

CLGDateTimeFmtDef::CLGDateTimeFmtDef(int type, const char* title, const char* description,
                                     const char* example, const char* disp, const char* ole,
                                     const char* win)
    : m_nType(type),
      m_strTitle(title),
      m_strDescription(description),
      m_strExample(example),
      m_strDisp(disp),
      m_strOle(ole),
      m_strWin(win) {
  CLGDateTimeFmtDef::GenerateDateTimeFmtCellList(m_strDisp);
}

CLGDateTimeFmtDef::CLGDateTimeFmtDef(const char* fmt) {
  CLGDateTimeFmtDef::GenerateDateTimeFmtCellList(fmt);
  CLGDateTimeFmtDef::GenerateDateTimeFmtStr(nullptr);
  m_nType = CLGDateTimeFmtDef::GetType();
}

CLGDateTimeFmtDef::CLGDateTimeFmtDef(const CLGDateTimeFmtCellList* cells) {
  if (cells != nullptr) m_cells = *cells;
  CLGDateTimeFmtDef::GenerateDateTimeFmtStr(nullptr);
}

CLGDateTimeFmtDef::CLGDateTimeFmtDef(const CLGDateTimeFmtDef& other)
    : CObject(),
      m_nType(other.m_nType),
      m_strTitle(other.m_strTitle),
      m_strDescription(other.m_strDescription),
      m_strExample(other.m_strExample),
      m_strDisp(other.m_strDisp),
      m_strOle(other.m_strOle),
      m_strWin(other.m_strWin),
      m_cells(other.m_cells) {}

CLGDateTimeFmtDef& CLGDateTimeFmtDef::operator=(const CLGDateTimeFmtDef& other) {
  if (this != &other) {
    m_nType = other.m_nType;
    m_strTitle = other.m_strTitle;
    m_strDescription = other.m_strDescription;
    m_strExample = other.m_strExample;
    m_strDisp = other.m_strDisp;
    m_strOle = other.m_strOle;
    m_strWin = other.m_strWin;
    m_cells = other.m_cells;
  }
  return *this;
}

void CLGDateTimeFmtDef::SetFmtDateTime(const CString& fmt, DATETIME_FMTTYPE notation) {
  switch (notation) {
    case DTF_OLE:
      m_strOle = fmt;
      break;
    case DTF_DISP:
      m_strDisp = fmt;
      break;
    case DTF_WIN:
      m_strWin = fmt;
      break;
  }
}

CString CLGDateTimeFmtDef::GetFmtDateTime(int code, DATETIME_FMTTYPE notation) const {
  const int wanted = detail::DateTimeClassOf(code);
  if (wanted == DATATYPE_DATETIME) return GetFmtDateTime(notation);
  CString date;
  CString time;
  CConstPtrArrayIterT<CLGDateTimeFmtCell> walk(m_cells);
  while (const CLGDateTimeFmtCell* cell = walk.Next()) {
    const CString& text = cell->GetDateTimeElementFmt(notation);
    switch (cell->GetDateTimeElementType()) {
      case DTT_DAY:
      case DTT_MONTH:
      case DTT_YEAR:
      case DTT_DATESEP:
      case DTT_WEEKDAY:
        date += text;
        break;
      case DTT_HOUR:
      case DTT_MINUTE:
      case DTT_SECOND:
      case DTT_TIMESEP:
        time += text;
        break;
      case DTT_AMPM:
        time += ' ';
        time += text;
        break;
    }
  }
  TrimBlanks(date);
  TrimBlanks(time);
  if (wanted == DATATYPE_DATE) return date;
  return wanted == DATATYPE_TIME ? time : CString();
}

const CString& CLGDateTimeFmtDef::GetFmtDateTime(DATETIME_FMTTYPE notation) const {
  switch (notation) {
    case DTF_OLE:
      return m_strOle;
    case DTF_WIN:
      return m_strWin;
    default:
      return m_strDisp;
  }
}

int CLGDateTimeFmtDef::GetType() const {
  bool date = false;
  bool time = false;
  CConstPtrArrayIterT<CLGDateTimeFmtCell> walk(m_cells);
  while (const CLGDateTimeFmtCell* cell = walk.Next()) {
    const DATETIMETYPE kind = cell->GetDateTimeElementType();
    date = date || (kind >= DTT_DAY && kind <= DTT_YEAR);
    time = time || (kind >= DTT_HOUR && kind <= DTT_AMPM);
  }
  if (date) return time ? DATATYPE_DATETIME : DATATYPE_DATE;
  return time ? DATATYPE_TIME : -1;
}

void CLGDateTimeFmtDef::GenerateDateTimeFmtStr(CLGDateTimeFmtCellList* cells) {
  CConstPtrArrayIterT<CLGDateTimeFmtCell> walk(cells != nullptr ? *cells : m_cells);
  while (const CLGDateTimeFmtCell* cell = walk.Next()) {
    m_strDisp += cell->GetDateTimeElementFmt(DTF_DISP);
    m_strOle += cell->GetDateTimeElementFmt(DTF_OLE);
    m_strWin += cell->GetDateTimeElementFmt(DTF_WIN);
  }
}

void CLGDateTimeFmtDef::GenerateDateTimeFmtCellList(const CString& fmt) {
  const Dictionary dictionary;
  const auto add = [&](const CString& code) {
    if (const CLGDateTimeFmtCell* cell = dictionary->GetEntry(code)) {
      m_cells.AddTail(std::make_unique<CLGDateTimeFmtCell>(*cell).release());
    }
  };
  Scan(fmt.View(), [&](const CString& token, const CString& separator) {
    add(token);
    add(separator);
    return true;
  });
}

bool CLGDateTimeFmtDef::PrintsTwoDigitYear() const {
  return m_nType != DATATYPE_TIME && GetFmtYear(DTF_DISP).GetLength() == 2;
}

const CLGDateTimeFmtCell* CLGDateTimeFmtDef::FirstCell(DATETIMETYPE kind) const {
  CConstPtrArrayIterT<CLGDateTimeFmtCell> walk(m_cells);
  const CLGDateTimeFmtCell* cell = walk.Next();
  while (cell != nullptr && cell->GetDateTimeElementType() != kind) cell = walk.Next();
  return cell;
}

CString CLGDateTimeFmtDef::FirstCode(DATETIMETYPE kind, DATETIME_FMTTYPE notation) const {
  const CLGDateTimeFmtCell* cell = FirstCell(kind);
  return cell != nullptr ? cell->GetDateTimeElementFmt(notation) : CString();
}

bool CLGDateTimeFmtDef::GetDateTimeFmt(DATETIME_FMTTYPE from, const CString& source,
                                       DATETIME_FMTTYPE to, CString& result) {
  if (source.IsEmpty()) return false;
  const Dictionary dictionary;
  return Scan(WithoutFractions(source.View()), [&](const CString& token, const CString& separator) {
    const CLGDateTimeFmtCell* cell = dictionary->GetEntry(token, from);
    if (cell == nullptr) return false;
    result += cell->GetDateTimeElementFmt(to);
    result += separator;
    return true;
  });
}

bool CLGDateTimeFmtDef::GetLocaleDateTimeFmt(int code, CString& result, DATETIME_FMTTYPE to) {
  const CString picture = code == DATATYPE_TIME ? CDQLocaleInfo::GetTimeFormat()
                                                : CDQLocaleInfo::GetDateFormat(
                                                      LOCALE_SSHORTDATE, code != DATATYPE_DATE);
  return GetDateTimeFmt(DTF_WIN, picture, to, result);
}

bool CLGDateTimeFmtDef::IsLocaleTwoDigitYear() {
  return CDQLocaleInfo::GetDateFormat(LOCALE_SSHORTDATE, true).Find("yyyy") < 0;
}

bool CLGDateTimeFmtDef::IsValidDateTimeFmt(const CString& fmt, DATETIME_FMTTYPE notation) {
  if (fmt.IsEmpty()) return false;
  const Dictionary dictionary;
  return Scan(fmt.View(), [&](const CString& token, const CString&) {
    return token.IsEmpty() || dictionary->GetEntry(token, notation) != nullptr;
  });
}

bool CLGDateTimeFmtDef::IsValidDateTimeFmt(const CString& fmt) {
  return IsValidDateTimeFmt(fmt, DTF_DISP) || IsValidDateTimeFmt(fmt, DTF_WIN) ||
         IsValidDateTimeFmt(fmt, DTF_OLE);
}

CString CLGDateTimeFmtDef::FindUnknownElement(const CString& fmt) {
  const Dictionary dictionary;
  CString unknown;
  Scan(fmt.View(), [&](const CString& token, const CString&) {
    if (dictionary->GetEntry(token) == nullptr) unknown = token;
    return unknown.IsEmpty();
  });
  return unknown;
}

void CLGDateTimeFmtDefList::InsertDateTimeFmt(const CString& fmt) {
  AddTail(std::make_unique<CLGDateTimeFmtDef>(fmt).release());
}

CLGDateTimeFmtDef* CLGDateTimeFmtDefList::FindDateTimeFmt(const CString& fmt) const {
  const DATETIME_FMTTYPE notation =
      CLGDateTimeFmtDef::IsValidDateTimeFmt(fmt, DTF_OLE) ? DTF_OLE : DTF_DISP;
  for (int i = 0; i < GetSize(); ++i) {
    if (GetAt(i)->GetFmtDateTime(notation) == fmt) return GetAt(i);
  }
  return nullptr;
}

}  // namespace dq
