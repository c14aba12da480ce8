// Date-time formats in all their forms at once, and their translation between notations.
//
//   const CLGDateTimeFmtDef format("MM/DD/YYYY HH12:MI:SS AM");
//   text = COleDateTime::GetCurrentTime().Format(format.GetFmtDateTime(5, DTF_OLE));

#pragma once

#include "dqlib/datetime/date_time_fmt_cell.h"
#include "dqlib/framework/base/c_string.h"

namespace dq {

/// A format as texts in the three notations and as cells. Thread of the user interface only.
///
/// A text is cut into cells at the separators " /-,;:.". What lies between them and is no element
/// of the dictionary is dropped without a word: formats come from users' settings and are never
/// refused here (`IsValidDateTimeFmt` tells before).
///
/// The texts and the cells need not agree: a predefined format keeps the texts that it is given and
/// takes its cells from the display text alone. The whole format is always answered from the texts,
/// a part of it always from the cells.
class CLGDateTimeFmtDef : public CObject {
  DECLARE_DYNAMIC(CLGDateTimeFmtDef)

  /// Keeps all of it and cuts `disp` into cells. Null texts count as "".
  CLGDateTimeFmtDef(int type, const char* title, const char* description, const char* example,
                    const char* disp, const char* ole, const char* win);
  /// A format in display or OLE notation; null counts as "".
  explicit CLGDateTimeFmtDef(const char* fmt);
  /// Copies of the cells; null counts as none. The type stays 0 until `SetDateTimeType`.
  explicit CLGDateTimeFmtDef(const CLGDateTimeFmtCellList* cells);
  CLGDateTimeFmtDef(const CLGDateTimeFmtDef& other);
  CLGDateTimeFmtDef& operator=(const CLGDateTimeFmtDef& other);

  /// Replaces a text, not the cells. Any other notation is ignored.
  virtual void SetFmtDateTime(const CString& fmt, DATETIME_FMTTYPE notation);

  /// What a column of the data type shows of the format: all of it for 6, 20 and 27, the date for
  /// 5 and 19, the time for 26, "" for any other. A part is made of the cells, without blanks at
  /// its right end: days, months, years, weekdays and all separators but the colon are the date,
  /// and the marker of the half day brings a blank of its own, for the one before it is the date's.
  virtual CString GetFmtDateTime(int code, DATETIME_FMTTYPE notation) const;

  /// The text in a notation, the display text for any other value.
  virtual const CString& GetFmtDateTime(DATETIME_FMTTYPE notation) const;

  /// What the cells make it: 6 for date and time, 5 for a date, 26 for a time, -1 for neither.
  /// Weekdays count as neither, and the stored type doesn't count.
  virtual int GetType() const;

  /// Adds the codes of the cells, or of the format's own for null, to the three texts.
  virtual void GenerateDateTimeFmtStr(CLGDateTimeFmtCellList* cells);

  /// Adds the cells of a text in display or OLE notation.
  virtual void GenerateDateTimeFmtCellList(const CString& fmt);

  const CString& GetFmtTitle() const { return m_strTitle; }
  const CString& GetFmtDiscription() const { return m_strDescription; }
  const CString& GetFmtExample() const { return m_strExample; }
  void SetFmtTitle(const CString& title) { m_strTitle = title; }
  void SetFmtDescription(const CString& description) { m_strDescription = description; }
  void SetFmtExample(const CString& example) { m_strExample = example; }
  /// The title and the example right behind it.
  CString GetFmtDefTitle() const { return m_strTitle + m_strExample; }

  /// Whether values that are printed by the format are moved to 1900 to 1999 first: it isn't stored
  /// as a time, and its year has two digits.
  bool PrintsTwoDigitYear() const;

  /// The cells, for overrides of `GenerateDateTimeFmtCellList` to add to.
  CLGDateTimeFmtCellList& GetFmtElementList() { return m_cells; }
  const CLGDateTimeFmtCellList& GetFmtElementList() const { return m_cells; }
  /// The stored type, a data type code.
  int GetDateTimeType() const { return m_nType; }
  void SetDateTimeType(int type) { m_nType = type; }

  /// The first cell of the kind, or null.
  const CLGDateTimeFmtCell* GetFmtCellDay() const { return FirstCell(DTT_DAY); }
  const CLGDateTimeFmtCell* GetFmtCellMonth() const { return FirstCell(DTT_MONTH); }
  const CLGDateTimeFmtCell* GetFmtCellYear() const { return FirstCell(DTT_YEAR); }
  const CLGDateTimeFmtCell* GetFmtCellHour() const { return FirstCell(DTT_HOUR); }
  const CLGDateTimeFmtCell* GetFmtCellMinute() const { return FirstCell(DTT_MINUTE); }
  const CLGDateTimeFmtCell* GetFmtCellSecond() const { return FirstCell(DTT_SECOND); }
  const CLGDateTimeFmtCell* GetFmtCellAMPM() const { return FirstCell(DTT_AMPM); }

  /// That cell's code in the notation; "" if there is no such cell.
  CString GetFmtDay(DATETIME_FMTTYPE notation) const { return FirstCode(DTT_DAY, notation); }
  CString GetFmtMonth(DATETIME_FMTTYPE notation) const { return FirstCode(DTT_MONTH, notation); }
  CString GetFmtYear(DATETIME_FMTTYPE notation) const { return FirstCode(DTT_YEAR, notation); }
  CString GetFmtHour(DATETIME_FMTTYPE notation) const { return FirstCode(DTT_HOUR, notation); }
  CString GetFmtMinute(DATETIME_FMTTYPE notation) const { return FirstCode(DTT_MINUTE, notation); }
  CString GetFmtSecond(DATETIME_FMTTYPE notation) const { return FirstCode(DTT_SECOND, notation); }
  CString GetFmtAMPM(DATETIME_FMTTYPE notation) const { return FirstCode(DTT_AMPM, notation); }

  /// Adds `source`, read in one notation, to `result` in another, and returns true. False if
  /// `source` is empty, and at the first text between separators that is no element; what was added
  /// before stays, so a caller that shows an example takes false for "". Fractions of seconds
  /// (".fff") are dropped, and with them every "f". An empty text between two separators is no
  /// element in display and OLE notation; in locale notation it is the number of the day, so that
  /// "dddd, MMMM d" becomes "DAY,D MONTH dd".
  static bool GetDateTimeFmt(DATETIME_FMTTYPE from, const CString& source, DATETIME_FMTTYPE to,
                             CString& result);

  /// Adds the user's format to `result` in a notation, as `GetDateTimeFmt` does: the short date for
  /// code 5, the time for 26, and the short date, a blank and the time for any other, 19 too.
  static bool GetLocaleDateTimeFmt(int code, CString& result, DATETIME_FMTTYPE to);

  /// Whether the user's short date and time have no year of four digits.
  static bool IsLocaleTwoDigitYear();

  /// Whether a text isn't empty and every text between its separators is empty or an element in the
  /// notation; so a text of separators alone is valid. Without a notation: in any of the three.
  static bool IsValidDateTimeFmt(const CString& fmt, DATETIME_FMTTYPE notation);
  static bool IsValidDateTimeFmt(const CString& fmt);

  /// The first text between separators that a definition made of a format in display or OLE
  /// notation leaves out, for hosts that refuse such a format; "" if there is none.
  static CString FindUnknownElement(const CString& fmt);

 private:
  const CLGDateTimeFmtCell* FirstCell(DATETIMETYPE kind) const;
  CString FirstCode(DATETIMETYPE kind, DATETIME_FMTTYPE notation) const;

  int m_nType = 0;
  CString m_strTitle;
  CString m_strDescription;
  CString m_strExample;
  CString m_strDisp;
  CString m_strOle;
  CString m_strWin;
  CLGDateTimeFmtCellList m_cells;
};

/// Formats in an order. Owns them.
class CLGDateTimeFmtDefList : public CLGAutoDeletePtrCollectionT<CLGDateTimeFmtDef> {
 public:
  /// Adds the format, also when it is there already.
  void InsertDateTimeFmt(const CString& fmt);

  /// The first format with exactly this text, or null: the OLE text if `fmt` is valid in that
  /// notation, else the display text. Locale texts are never compared.
  CLGDateTimeFmtDef* FindDateTimeFmt(const CString& fmt) const;
};

}  // namespace dq
