#include "dqlib/datetime/date_time_format.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "dqlib/datetime/data_type.h"
#include "dqlib/datetime/predefined_formats.h"
#include "dqlib/framework/base/multi_byte.h"
#include "siblings/options/options_server.h"

namespace dq {
namespace {

constexpr const char kMonthFirstDefault[] = "MM/DD/YYYY HH12:MI:SS AM";
constexpr const char kDoubleByteOracleDefault[] = "YYYY/MM/DD HH24:MI:SS";
constexpr const char kDb2Default[] = "YYYY-MM-DD HH24:MI:SS";

/// What ends milliseconds.
std::string_view Blank() { return GetSqlFragment(SQL_FRAGMENT_BLANK); }

/// Where the "." stands that milliseconds follow; `npos` if there is none.
std::size_t FindMilliSecond(std::string_view text) {
  const std::size_t colon = text.rfind(':');
  return colon == text.npos ? colon : text.find('.', colon);
}

/// No option.
constexpr UINT kNoOption = static_cast<UINT>(-1);

}  // namespace

CLGDateTimeFormat::CLGDateTimeFormat(UINT option_id, double version)
    : m_nOptionId(option_id), m_dVersion(version) {
  InitMember();
}

CLGDateTimeFormat::CLGDateTimeFormat(const CLGDateTimeFormat& other)
    : m_nOptionId(other.m_nOptionId), m_dVersion(other.m_dVersion) {
  CLGDateTimeFormat::Copy(other);
}

CLGDateTimeFormat& CLGDateTimeFormat::operator=(const CLGDateTimeFormat& other) {
  Copy(other);
  return *this;
}

CLGDateTimeFormat::~CLGDateTimeFormat() = default;

void CLGDateTimeFormat::InitMember() {
  for (const PredefinedDateTimeFmt& row : kPredefinedDateTimeFmts) {
    m_predefined.AddTail(std::make_unique<CLGDateTimeFmtDef>(row.type, "", "", row.example,
                                                             row.disp, row.ole, row.win)
                             .release());
  }
}

void CLGDateTimeFormat::InitFromOption() {
  CString fmt;
  LoadRegistryDateTimeFmt(fmt);
  InitDBMSDefaultDateTimeFmt(fmt);
}

void CLGDateTimeFormat::LoadRegistryDateTimeFmt(CString& fmt) {
  CDQOptionsServer& options = *CDQOptionsServer::GetObject();
  const int id = static_cast<int>(m_nOptionId);
  fmt = options.GetString(id);
  const platform::Error read = options.GetReadError();
  if (!fmt.IsEmpty()) return;
  // What could be translated of the locale's format is kept even if not all of it could be.
  CLGDateTimeFmtDef::GetLocaleDateTimeFmt(DATATYPE_DATETIME, fmt, DTF_DISP);
  // One that is there and could not be read isn't written over.
  if (read.ok()) options.SetString(id, fmt);
}

void CLGDateTimeFormat::InitDBMSDefaultDateTimeFmt(const CString& fmt) {
  PreInitDBMSDefaultDateTimeFmt(fmt);
  const CLGDateTimeFmtDef* const preset = m_choices[DFK_DBMS_DEFAULT];
  if (preset == nullptr) return;
  for (CLGDateTimeFmtDef** const choice : {&m_choices[DFK_CURRENT], &m_choices[DFK_SAVED]}) {
    if (*choice != nullptr) continue;
    *choice = std::make_unique<CLGDateTimeFmtDef>(*preset).release();
    m_copies.AddTail(*choice);
  }
}

void CLGDateTimeFormat::PreInitDBMSDefaultDateTimeFmt(const CString& fmt) {
  SetDateTimeFmt(fmt, DFK_SAVED);
  SetDateTimeFmt(fmt, DFK_CURRENT);
}

void CLGDateTimeFormat::SetDateTimeFmt(const CString& fmt, DATETIMEFMTTYPE kind) {
  if (!CLGDateTimeFmtDef::IsValidDateTimeFmt(fmt)) return;
  CLGDateTimeFmtDef* def = FindDateTimeFmt(fmt);
  if (def == nullptr) {
    InsertCustomizedDateTimeFmt(fmt);
    def = FindDateTimeFmt(fmt);
  }
  SetDateTimeFmt(def, kind);
}

void CLGDateTimeFormat::SetDateTimeFmt(CLGDateTimeFmtDef* def, DATETIMEFMTTYPE kind) {
  if (IsKind(kind)) m_choices[kind] = def;
}

void CLGDateTimeFormat::InsertCustomizedDateTimeFmt(const CString& fmt) {
  m_customized.InsertDateTimeFmt(fmt);
}

void CLGDateTimeFormat::InsertPredefinedDateTimeFmt(const CString& fmt) {
  m_predefined.InsertDateTimeFmt(fmt);
}

void CLGDateTimeFormat::Reset() { m_choices[DFK_CURRENT] = m_choices[DFK_SAVED]; }

void CLGDateTimeFormat::Copy(const CLGDateTimeFormat& other) {
  if (this == &other) return;
  m_predefined = other.m_predefined;
  m_customized = other.m_customized;
  m_nOptionId = other.m_nOptionId;
  m_dVersion = other.m_dVersion;
  for (int kind = 0; kind < kKinds; ++kind) {
    const CLGDateTimeFmtDef* const choice = other.m_choices[kind];
    m_choices[kind] =
        choice == nullptr ? nullptr : FindDateTimeFmt(choice->GetFmtDateTime(DTF_DISP));
  }
  m_copies.RemoveAll();
}

CString CLGDateTimeFormat::PartOfChoice(int code, DATETIMEFMTTYPE kind,
                                        DATETIME_FMTTYPE notation) const {
  const CLGDateTimeFmtDef* const def = GetDateTimeFmtPtr(kind);
  return def == nullptr ? CString() : def->GetFmtDateTime(code, notation);
}

CString CLGDateTimeFormat::GetDispDateTimeFmt(int code, DATETIMEFMTTYPE kind) const {
  return PartOfChoice(code, kind, DTF_DISP);
}

CString CLGDateTimeFormat::GetOleDateTimeFmt(int code, DATETIMEFMTTYPE kind) const {
  return PartOfChoice(code, kind, DTF_OLE);
}

CString CLGDateTimeFormat::GetWinDateTimeFmt(int code, DATETIMEFMTTYPE kind) const {
  return PartOfChoice(code, kind, DTF_WIN);
}

CLGDateTimeFmtDef* CLGDateTimeFormat::GetDateTimeFmtPtr(DATETIMEFMTTYPE kind) const {
  return IsKind(kind) ? m_choices[kind] : nullptr;
}

CLGDateTimeFmtDef* CLGDateTimeFormat::FindDateTimeFmt(const CString& fmt) const {
  CLGDateTimeFmtDef* const def = m_predefined.FindDateTimeFmt(fmt);
  return def != nullptr ? def : m_customized.FindDateTimeFmt(fmt);
}

int CLGDateTimeFormat::FormatDateTime(int code, const CString& in, CString& out,
                                      const CString& in_fmt, const CString& out_fmt) {
  return m_conversions.Convert(code, in, out, in_fmt, out_fmt);
}

void CLGDateTimeFormat::ExtractMilliSecond(const CString& in, CString& rest, CString& ms) {
  const std::string_view text = in.View();
  const std::size_t point = FindMilliSecond(text);
  const std::size_t end = std::min(text.find(Blank(), point), text.size());
  if (point == text.npos) {
    rest = in;
    ms.Empty();
    return;
  }
  // Either may be the text itself.
  const std::string digits(text.substr(point + 1, end - point - 1));
  std::string others(text.substr(0, point));
  others += text.substr(end);
  rest = others;
  ms = digits;
}

void CLGDateTimeFormat::InsertMilliSecond(CString& out, const CString& text, const CString& ms) {
  std::string result(text.View());
  const std::size_t colon = result.rfind(':');
  if (!ms.IsEmpty() && colon != result.npos) {
    const std::size_t blank = std::min(result.find(Blank(), colon), result.size());
    result.insert(blank, "." + std::string(ms.View()));
  }
  out = result;
}

// ---- Oracle

CLGOracleDateTimeFormat::CLGOracleDateTimeFormat(UINT option_id, double version)
    : CLGDateTimeFormat(option_id, version) {
  InitFromOption();
}

void CLGOracleDateTimeFormat::PreInitDBMSDefaultDateTimeFmt(const CString& fmt) {
  CLGDateTimeFormat::PreInitDBMSDefaultDateTimeFmt(fmt);
  const bool double_byte = !multi_byte::CurrentCodePage().IsSingleByte();
  SetDateTimeFmt(double_byte ? kDoubleByteOracleDefault : kMonthFirstDefault, DFK_DBMS_DEFAULT);
}

CString CLGOracleDateTimeFormat::GetDispDateTimeFmt(int, DATETIMEFMTTYPE kind) const {
  return CLGDateTimeFormat::GetDispDateTimeFmt(DATATYPE_DATETIME, kind);
}

CString CLGOracleDateTimeFormat::GetOleDateTimeFmt(int, DATETIMEFMTTYPE kind) const {
  return CLGDateTimeFormat::GetOleDateTimeFmt(DATATYPE_DATETIME, kind);
}

CString CLGOracleDateTimeFormat::GetWinDateTimeFmt(int, DATETIMEFMTTYPE kind) const {
  return CLGDateTimeFormat::GetWinDateTimeFmt(DATATYPE_DATETIME, kind);
}

int CLGOracleDateTimeFormat::FormatDateTime(int, const CString& in, CString& out,
                                            const CString& in_fmt, const CString& out_fmt) {
  return CLGDateTimeFormat::FormatDateTime(DATATYPE_DATETIME, in, out, in_fmt, out_fmt);
}

// ---- SQL Server and Sybase

void CLGMilliSecondDateTimeFormat::PreInitDBMSDefaultDateTimeFmt(const CString& fmt) {
  CLGDateTimeFormat::PreInitDBMSDefaultDateTimeFmt(fmt);
  SetDateTimeFmt(kMonthFirstDefault, DFK_DBMS_DEFAULT);
}

int CLGMilliSecondDateTimeFormat::FormatDateTime(int code, const CString& in, CString& out,
                                                 const CString& in_fmt, const CString& out_fmt) {
  if (FindMilliSecond(in.View()) == std::string_view::npos) {
    return CLGDateTimeFormat::FormatDateTime(code, in, out, in_fmt, out_fmt);
  }
  const CString value = in;
  CString rest;
  CString ms;
  ExtractMilliSecond(value, rest, ms);
  CString formatted;
  if (CLGDateTimeFormat::FormatDateTime(code, rest, formatted, in_fmt, out_fmt) == 0) {
    out = value;
    return 0;
  }
  InsertMilliSecond(out, formatted, ms);
  return 1;
}

CLGSQLServerDateTimeFormat::CLGSQLServerDateTimeFormat(UINT option_id, double version)
    : CLGMilliSecondDateTimeFormat(option_id, version) {
  InitFromOption();
}

CLGSybaseDateTimeFormat::CLGSybaseDateTimeFormat(UINT option_id, double version)
    : CLGMilliSecondDateTimeFormat(option_id, version) {
  InitFromOption();
}

// ---- DB2

CLGDB2DateTimeFormat::CLGDB2DateTimeFormat(UINT option_id, double version)
    : CLGDateTimeFormat(option_id, version) {
  InitFromOption();
}

void CLGDB2DateTimeFormat::PreInitDBMSDefaultDateTimeFmt(const CString& fmt) {
  CLGDateTimeFormat::PreInitDBMSDefaultDateTimeFmt(fmt);
  SetDateTimeFmt(kDb2Default, DFK_DBMS_DEFAULT);
}

CDB2OS390DateTimeFormat::CDB2OS390DateTimeFormat(UINT option_id, double version)
    : CLGDateTimeFormat(option_id, version) {
  InitFromOption();
}

void CDB2OS390DateTimeFormat::PreInitDBMSDefaultDateTimeFmt(const CString& fmt) {
  CLGDateTimeFormat::PreInitDBMSDefaultDateTimeFmt(fmt);
  SetDateTimeFmt(kDb2Default, DFK_DBMS_DEFAULT);
}

// ---- The factory

CDateTimeFormatFactory::CDateTimeFormatFactory(DBMS platform, UINT option_id, double version)
    : CDBMSFactoryT(platform), m_dVersion(version), m_nOptionId(option_id), m_pSource(nullptr) {}

CDateTimeFormatFactory::CDateTimeFormatFactory(const CLGDateTimeFormat* source)
    : CDBMSFactoryT(source == nullptr ? DBMS_NONE : static_cast<DBMS>(source->GetDatasourceType())),
      m_dVersion(source == nullptr ? 0 : source->GetVersionNo()),
      m_nOptionId(source == nullptr ? kNoOption : source->GetOptionServerIDO()),
      m_pSource(source) {}

template <typename Format>
CLGDateTimeFormat* CDateTimeFormatFactory::Make() const {
  if (m_pSource != nullptr) return std::make_unique<Format>(*m_pSource).release();
  return std::make_unique<Format>(m_nOptionId, m_dVersion).release();
}

CLGDateTimeFormat* CDateTimeFormatFactory::CreateSybase() {
  return Make<CLGSybaseDateTimeFormat>();
}

CLGDateTimeFormat* CDateTimeFormatFactory::CreateSQLServer() {
  return Make<CLGSQLServerDateTimeFormat>();
}

CLGDateTimeFormat* CDateTimeFormatFactory::CreateOracle() {
  return Make<CLGOracleDateTimeFormat>();
}

CLGDateTimeFormat* CDateTimeFormatFactory::CreateDB2() { return Make<CLGDB2DateTimeFormat>(); }

CLGDateTimeFormat* CDateTimeFormatFactory::CreateDB2OS390() {
  return Make<CDB2OS390DateTimeFormat>();
}

}  // namespace dq
