// Date-time values as data editors read and print them: by a format.

#pragma once

#include "dqlib/datetime/date_time_fmt_def.h"
#include "dqlib/framework/base/ole_date_time.h"
#include "dqlib/framework/base/string_collections.h"

namespace dq {

/// A date and time that is read by one format and printed by another. User-interface thread, since
/// reading may show a message.
class CLGDateTime : public CObject {
  DECLARE_DYNAMIC(CLGDateTime)
  /// 1899-12-30 00:00, without a format.
  CLGDateTime() = default;
  /// Keeps the format, which isn't owned and may be null, and reads the text unless it is null;
  /// whether that succeeds isn't told.
  CLGDateTime(const char* text, CLGDateTimeFmtDef* def);

  /// The format to read by when none is given. Not owned; null for none.
  void SetDateTimeFormat(CLGDateTimeFmtDef* def) { m_pFormat = def; }

  /// The value in the format, limited to the part that a column of the data type holds; "" for a
  /// null format or an invalid value. With a format that isn't stored as a time, and whose year has
  /// two digits, the value itself is moved to 1900 to 1999 first and stays there: that is how a
  /// year of two digits is printed from any century, and editors go on with what they have shown.
  virtual CString Format(int code, CLGDateTimeFmtDef* def);
  /// The value by codes of `COleDateTime::Format`.
  virtual CString Format(const char* ole_format) const;

  /// Reads a text by the format, or by the one kept if `def` is null; non-zero on success. Text and
  /// format are walked token by token until one of them ends: elements are taken as they come, a
  /// separator of the date must be the format's, colons and weekdays are passed over whatever they
  /// are. A text that can't be read so is tried with the names of the user's locale as one token
  /// each, for they may hold separators ("3-janv.-1993"). There must be a whole date or an hour and
  /// a minute; a time alone is on 1899-12-30, a date alone at midnight. On failure the value stays
  /// as it was. Without any format the text is read by the user's locale, and failure leaves an
  /// invalid value.
  virtual int ParseDateTime(const char* text, const CLGDateTimeFmtDef* def);

  int GetDay() const { return m_value.GetDay(); }
  int GetMonth() const { return m_value.GetMonth(); }
  int GetYear() const { return m_value.GetYear(); }
  int GetHour() const { return m_value.GetHour(); }
  int GetMinute() const { return m_value.GetMinute(); }
  int GetSecond() const { return m_value.GetSecond(); }
  const COleDateTime& GetDateTime() const { return m_value; }

 protected:
  /// Adds the text's tokens: what stands between separators, and each separator as one.
  void ExtractDateTimeStr(const char* text, CStringList& tokens) const;
  int ParseDateTimeWithExactMatch(const CStringList& tokens, const CLGDateTimeFmtDef* def);
  /// Stands for a more forgiving reading that no release has had: does nothing and returns true.
  bool ParseDateTimeWithFuzzyMatch(const CStringList& tokens, const CLGDateTimeFmtDef* def);
  /// Tells the user if month and day are numbers that make sense only the other way round. The
  /// parser exchanges them; nothing is changed here.
  void CheckMisOrderedDateMonth(const CString& month, const CString& day) const;
  /// Puts a year from 1 to 99 into 1950 to 2049.
  void Make4DigitYear(CString& year) const;

 private:
  COleDateTime m_value;
  CLGDateTimeFmtDef* m_pFormat = nullptr;
};

/// Formats from one notation to another, by text alone.
class CDQDateTimeFmtTransfer : public CObject {
  DECLARE_DYNAMIC(CDQDateTimeFmtTransfer)
  using DATETIMEFMTTYPE = DATETIME_FMTTYPE;

  /// Writes `source` in another notation to `target`, which must be large enough for it: at most
  /// `kLongestGrowth` bytes for each of the source's, and a zero. An element that isn't known is
  /// dropped without a word; separators stay. Always true.
  static bool ParseDateTimeFmt(const char* source, DATETIMEFMTTYPE from, char* target,
                               DATETIMEFMTTYPE to);
  static constexpr int kLongestGrowth = 4;
};

}  // namespace dq
