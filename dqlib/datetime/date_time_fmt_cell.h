// The elements that date-time formats are made of, each in the three notations.

#pragma once

#include "dqlib/datetime/ptr_collection.h"
#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/object.h"

namespace dq {

/// What a cell stands for.
enum DATETIMETYPE : int {
  DTT_DAY = 0,      ///< Day of the month.
  DTT_MONTH = 1,    ///< Month.
  DTT_YEAR = 2,     ///< Year.
  DTT_HOUR = 3,     ///< Hour.
  DTT_MINUTE = 4,   ///< Minute.
  DTT_SECOND = 5,   ///< Second.
  DTT_AMPM = 6,     ///< Marker of the half day.
  DTT_DATESEP = 7,  ///< Separator in a date, the blank too.
  DTT_TIMESEP = 8,  ///< The colon.
  DTT_WEEKDAY = 9,  ///< Name of the weekday, number of the day in the week or year.
};

/// Notations of formats.
enum DATETIME_FMTTYPE : int {
  DTF_OLE = 0,   ///< Codes of `COleDateTime::Format`: "%m/%d/%Y".
  DTF_DISP = 1,  ///< What users read and type: "MM/DD/YYYY". Upper case is padded with zeros.
  DTF_WIN = 2,   ///< Pictures of the locale: "MM/dd/yyyy".
};

/// One element of a format. A value.
class CLGDateTimeFmtCell : public CObject {
  DECLARE_DYNAMIC(CLGDateTimeFmtCell)

  /// A null text counts as "".
  CLGDateTimeFmtCell(DATETIMETYPE kind, const char* disp, const char* ole, const char* win,
                     const char* description, const char* example);
  CLGDateTimeFmtCell(const CLGDateTimeFmtCell& other);
  CLGDateTimeFmtCell& operator=(const CLGDateTimeFmtCell& other);

  DATETIMETYPE GetDateTimeElementType() const { return m_eType; }
  void SetDateTimeElementType(DATETIMETYPE kind) { m_eType = kind; }

  /// The code in display notation.
  CString GetDetail() const { return m_strDisp; }
  /// Text for tool tips.
  const CString& GetDescription() const { return m_strDescription; }
  /// A sample of what the element prints; "" for separators.
  const CString& GetExample() const { return m_strExample; }
  void SetExample(const CString& example) { m_strExample = example; }

  /// The code in a notation, which may be ""; any other value reads the display code, and writes
  /// nothing, for callers hand on what they have been told.
  const CString& GetDateTimeElementFmt(DATETIME_FMTTYPE notation) const;
  void SetDateTimeElementFmt(const CString& code, DATETIME_FMTTYPE notation);

 private:
  DATETIMETYPE m_eType;
  CString m_strDisp;
  CString m_strOle;
  CString m_strWin;
  CString m_strDescription;
  CString m_strExample;
};

/// Cells in the order of a format. Owns them.
class CLGDateTimeFmtCellList : public CLGAutoDeletePtrCollectionT<CLGDateTimeFmtCell> {};

}  // namespace dq
