#include "dqlib/datetime/date_time_fmt_cell.h"

namespace dq {

IMPLEMENT_DYNAMIC(CLGDateTimeFmtCell, CObject)

CLGDateTimeFmtCell::CLGDateTimeFmtCell(DATETIMETYPE kind, const char* disp, const char* ole,
                                       const char* win, const char* description,
                                       const char* example)
    : m_eType(kind),
      m_strDisp(disp),
      m_strOle(ole),
      m_strWin(win),
      m_strDescription(description),
      m_strExample(example) {}

CLGDateTimeFmtCell::CLGDateTimeFmtCell(const CLGDateTimeFmtCell& other)
    : CObject(),
      m_eType(other.m_eType),
      m_strDisp(other.m_strDisp),
      m_strOle(other.m_strOle),
      m_strWin(other.m_strWin),
      m_strDescription(other.m_strDescription),
      m_strExample(other.m_strExample) {}

CLGDateTimeFmtCell& CLGDateTimeFmtCell::operator=(const CLGDateTimeFmtCell& other) {
  if (this != &other) {
    m_eType = other.m_eType;
    m_strDisp = other.m_strDisp;
    m_strOle = other.m_strOle;
    m_strWin = other.m_strWin;
    m_strDescription = other.m_strDescription;
    m_strExample = other.m_strExample;
  }
  return *this;
}

const CString& CLGDateTimeFmtCell::GetDateTimeElementFmt(DATETIME_FMTTYPE notation) const {
  switch (notation) {
    case DTF_OLE:
      return m_strOle;
    case DTF_WIN:
      return m_strWin;
    default:
      return m_strDisp;
  }
}

void CLGDateTimeFmtCell::SetDateTimeElementFmt(const CString& code, DATETIME_FMTTYPE notation) {
  switch (notation) {
    case DTF_OLE:
      m_strOle = code;
      break;
    case DTF_DISP:
      m_strDisp = code;
      break;
    case DTF_WIN:
      m_strWin = code;
      break;
  }
}

}  // namespace dq
