// The date-time formats of a platform: those there are, those chosen, and values from one to
// another.
//
//   const std::unique_ptr<CLGDateTimeFormat> format(
//       CDateTimeFormatFactory(DBMS_ORACLE, option, 8.1).CreateObject());
//   format->FormatDateTime(6, "04/03/1993 05:34:00 PM", text, "MM/DD/YYYY HH12:MI:SS AM",
//                          format->GetDispDateTimeFmt(6, CLGDateTimeFormat::DFK_CURRENT));

#pragma once

#include "dqlib/datetime/date_time.h"
#include "dqlib/datetime/date_time_conversion.h"
#include "dqlib/dbvocab/dbms_factory.h"

namespace dq {

/// Base of the platforms' formats. User-interface thread.
///
/// A format is kept under the host's option id as one text in display notation. It is read when the
/// object is made; where the option is empty, the user's locale gives the format, which is written
/// back at once. Later choices aren't written back: that is the host's.
class CLGDateTimeFormat {
 public:
  /// Which of three choices.
  enum DATETIMEFMTTYPE : int {
    DFK_CURRENT = 0,       ///< In force.
    DFK_SAVED = 1,         ///< As the option had it; `Reset` goes back to it.
    DFK_DBMS_DEFAULT = 2,  ///< The platform's.
  };

  /// With the predefined formats and no choice.
  CLGDateTimeFormat(UINT option_id, double version);
  CLGDateTimeFormat(const CLGDateTimeFormat& other);
  CLGDateTimeFormat& operator=(const CLGDateTimeFormat& other);
  virtual ~CLGDateTimeFormat();

  /// Sets saved and current from a text; derived classes set their default too.
  virtual void PreInitDBMSDefaultDateTimeFmt(const CString& fmt);
  /// Chooses the format with this text. A text that isn't valid in any notation changes nothing.
  /// One that no list has goes to the customised ones first. That takes it in display or OLE
  /// notation: a text that is valid for the locale alone isn't found again, so the choice becomes
  /// none, and each such call leaves one more definition.
  virtual void SetDateTimeFmt(const CString& fmt, DATETIMEFMTTYPE kind);
  /// Chooses a definition of the lists, or none with null. Another kind is ignored.
  virtual void SetDateTimeFmt(CLGDateTimeFmtDef* def, DATETIMEFMTTYPE kind);
  virtual void InsertCustomizedDateTimeFmt(const CString& fmt);
  virtual void InsertPredefinedDateTimeFmt(const CString& fmt);
  /// The current choice becomes the saved one.
  virtual void Reset();
  /// Takes over lists, option, version and choices; these are found by their display texts in this
  /// object's own lists.
  virtual void Copy(const CLGDateTimeFormat& other);
  /// `PreInitDBMSDefaultDateTimeFmt`; then copies of the platform's default stand in for a current
  /// and a saved choice that are none.
  virtual void InitDBMSDefaultDateTimeFmt(const CString& fmt);
  /// The option's text to `fmt`; if that is empty, the locale's format, which is kept in the
  /// option.
  virtual void LoadRegistryDateTimeFmt(CString& fmt);
  /// What a column of the data type shows of the choice, in display, OLE or locale notation; "" if
  /// the choice is none, or for another kind.
  virtual CString GetDispDateTimeFmt(int code, DATETIMEFMTTYPE kind) const;
  virtual CString GetOleDateTimeFmt(int code, DATETIMEFMTTYPE kind) const;
  virtual CString GetWinDateTimeFmt(int code, DATETIMEFMTTYPE kind) const;
  /// The choice, which may be null, as it is for another kind. Not the caller's to delete.
  virtual CLGDateTimeFmtDef* GetDateTimeFmtPtr(DATETIMEFMTTYPE kind) const;
  /// The predefined or else the customised format with exactly this text, or null.
  virtual CLGDateTimeFmtDef* FindDateTimeFmt(const CString& fmt) const;
  /// The platform's word and number.
  virtual CString GetDBMSType() const = 0;
  virtual int GetDatasourceType() const = 0;

  /// A value's text from one format to another, for a column of the data type: `in` is read by
  /// what such a column shows of `in_fmt`, or by the user's locale if that is empty, and printed by
  /// what it shows of `out_fmt`, to "" if that is empty. Returns 1; or 0, with `in` in `out`, for
  /// "[NULL]" and for a text that can't be read. Formats are in display or OLE notation.
  virtual int FormatDateTime(int code, const CString& in, CString& out, const CString& in_fmt,
                             const CString& out_fmt);

  /// Cuts ".123" behind the last ":" of `in`, to the next blank or the end: digits to `ms` and the
  /// rest, with a marker behind it, to `rest`. Without any, `rest` is `in` and `ms` is "".
  static void ExtractMilliSecond(const CString& in, CString& rest, CString& ms);
  /// `text` to `out`, with "." and `ms` before the first blank behind its last ":", or at its end;
  /// without `ms` or a ":", as it stands.
  static void InsertMilliSecond(CString& out, const CString& text, const CString& ms);

  UINT GetOptionServerIDO() const { return m_nOptionId; }
  double GetVersionNo() const { return m_dVersion; }
  void SetVersionNo(double version) { m_dVersion = version; }
  CLGDateTimeFmtDefList& GetPredefinedDateTimeFmtList() { return m_predefined; }
  const CLGDateTimeFmtDefList& GetPredefinedDateTimeFmtList() const { return m_predefined; }
  CLGDateTimeFmtDefList& GetCustomizedDateTimeFmtList() { return m_customized; }
  const CLGDateTimeFmtDefList& GetCustomizedDateTimeFmtList() const { return m_customized; }

 protected:
  /// Fills the list of predefined formats.
  void InitMember();
  /// What a derived class does last when it is made anew.
  void InitFromOption();

 private:
  static constexpr int kKinds = 3;
  static bool IsKind(int kind) { return kind >= 0 && kind < kKinds; }
  CString PartOfChoice(int code, DATETIMEFMTTYPE kind, DATETIME_FMTTYPE notation) const;

  UINT m_nOptionId;
  double m_dVersion;
  CLGDateTimeFmtDefList m_predefined;
  CLGDateTimeFmtDefList m_customized;
  /// Copies of the default that stand in for choices; they lie in neither list.
  CLGDateTimeFmtDefList m_copies;
  CLGDateTimeFmtDef* m_choices[kKinds] = {};
  detail::DateTimeConversions m_conversions;
};

/// Oracle's: a date there always holds a time, so the data type of a column doesn't count.
class CLGOracleDateTimeFormat : public CLGDateTimeFormat {
 public:
  CLGOracleDateTimeFormat(UINT option_id, double version);
  explicit CLGOracleDateTimeFormat(const CLGDateTimeFormat& other) : CLGDateTimeFormat(other) {}

  void PreInitDBMSDefaultDateTimeFmt(const CString& fmt) override;
  CString GetDispDateTimeFmt(int code, DATETIMEFMTTYPE kind) const override;
  CString GetOleDateTimeFmt(int code, DATETIMEFMTTYPE kind) const override;
  CString GetWinDateTimeFmt(int code, DATETIMEFMTTYPE kind) const override;
  CString GetDBMSType() const override { return "Oracle"; }
  int GetDatasourceType() const override { return DBMS_ORACLE; }
  int FormatDateTime(int code, const CString& in, CString& out, const CString& in_fmt,
                     const CString& out_fmt) override;
};

/// Of the platforms whose values may carry milliseconds, which are handed on as they stand.
class CLGMilliSecondDateTimeFormat : public CLGDateTimeFormat {
 public:
  using CLGDateTimeFormat::CLGDateTimeFormat;
  explicit CLGMilliSecondDateTimeFormat(const CLGDateTimeFormat& other)
      : CLGDateTimeFormat(other) {}

  void PreInitDBMSDefaultDateTimeFmt(const CString& fmt) override;
  /// As the base; a target without a ":" drops the milliseconds.
  int FormatDateTime(int code, const CString& in, CString& out, const CString& in_fmt,
                     const CString& out_fmt) override;
};

class CLGSQLServerDateTimeFormat : public CLGMilliSecondDateTimeFormat {
 public:
  CLGSQLServerDateTimeFormat(UINT option_id, double version);
  explicit CLGSQLServerDateTimeFormat(const CLGDateTimeFormat& other)
      : CLGMilliSecondDateTimeFormat(other) {}
  CString GetDBMSType() const override { return "SQL Server"; }
  int GetDatasourceType() const override { return DBMS_SQLSERVER; }
};

class CLGSybaseDateTimeFormat : public CLGMilliSecondDateTimeFormat {
 public:
  CLGSybaseDateTimeFormat(UINT option_id, double version);
  explicit CLGSybaseDateTimeFormat(const CLGDateTimeFormat& other)
      : CLGMilliSecondDateTimeFormat(other) {}
  CString GetDBMSType() const override { return "Sybase"; }
  int GetDatasourceType() const override { return DBMS_SYBASE; }
};

class CLGDB2DateTimeFormat : public CLGDateTimeFormat {
 public:
  CLGDB2DateTimeFormat(UINT option_id, double version);
  explicit CLGDB2DateTimeFormat(const CLGDateTimeFormat& other) : CLGDateTimeFormat(other) {}
  void PreInitDBMSDefaultDateTimeFmt(const CString& fmt) override;
  CString GetDBMSType() const override { return "DB2"; }
  int GetDatasourceType() const override { return DBMS_DB2; }
};

class CDB2OS390DateTimeFormat : public CLGDateTimeFormat {
 public:
  CDB2OS390DateTimeFormat(UINT option_id, double version);
  explicit CDB2OS390DateTimeFormat(const CLGDateTimeFormat& other) : CLGDateTimeFormat(other) {}
  void PreInitDBMSDefaultDateTimeFmt(const CString& fmt) override;
  CString GetDBMSType() const override { return "DB2OS390"; }
  int GetDatasourceType() const override { return DBMS_DB2OS390; }
};

/// Makes the formats of a platform, anew or as a copy.
class CDateTimeFormatFactory : public CDBMSFactoryT<CLGDateTimeFormat> {
 public:
  CDateTimeFormatFactory(DBMS platform, UINT option_id, double version);
  /// For copies of `source`, which isn't owned and must outlive the factory; null makes nothing.
  explicit CDateTimeFormatFactory(const CLGDateTimeFormat* source);

  CLGDateTimeFormat* CreateSybase() override;
  CLGDateTimeFormat* CreateSQLServer() override;
  CLGDateTimeFormat* CreateOracle() override;
  CLGDateTimeFormat* CreateDB2() override;
  CLGDateTimeFormat* CreateDB2OS390() override;

 private:
  template <typename Format>
  CLGDateTimeFormat* Make() const;

  double m_dVersion;
  UINT m_nOptionId;
  const CLGDateTimeFormat* m_pSource;
};

}  // namespace dq
