#include "dqlib/datetime/date_time_format.h"

#include "dqlib/datetime/data_type.h"
#include "dqlib/platform/checksum.h"
#include "siblings/options/options_server.h"
#include "tests/support/memory_registry.h"
#include "tests/support/own_settings.h"
#include "tests/support/scripted_locale.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/system_locale.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using Kind = CLGDateTimeFormat;

/// Any option of text.
constexpr UINT kOption = 50255;

std::unique_ptr<Kind> Make(int platform, UINT option = kOption) {
  return std::unique_ptr<Kind>(
      CDateTimeFormatFactory(static_cast<DBMS>(platform), option, 8.1).CreateObject());
}

/// The texts of the current, the saved and the default choice.
std::string Choices(const Kind& format) {
  CString text;
  for (const auto kind : {Kind::DFK_CURRENT, Kind::DFK_SAVED, Kind::DFK_DBMS_DEFAULT}) {
    text += "|" + format.GetDispDateTimeFmt(DATATYPE_DATETIME, kind);
  }
  return std::string(text.View());
}

TEST(DateTimeFormat, IsSeededFromTheLocaleOnce) {
  CDQOptionsServer& options = *CDQOptionsServer::GetObject();
  const std::string preset = "|YYYY-MM-DD HH24:MI:SS";
  test::ScriptedLocale locale;
  for (const auto& [date, kept, choice, seed] :
       test::Rows<const char*, const char*, std::string, const char*>{
           {"M/d/yyyy", "YYYY/DD", "|YYYY/DD", "YYYY/DD"},
           {"M/d/yyyy", "no format", preset, "no format"},
           {"M/d/yyyy", "", "|mm/dd/YYYY HH24:MI", "mm/dd/YYYY HH24:MI"},
           // What comes before a text that is no element is kept all the same.
           {"dd/MM 'x'", "", "|DD/MM ", "DD/MM "},
           {"yyyy'年'MM'月'", "", preset, ""}}) {
    locale.items = {{LOCALE_SSHORTDATE, date}, {LOCALE_STIMEFORMAT, "HH:mm"}};
    EXPECT_TRUE(options.SetString(kOption, kept));
    EXPECT_EQ(Choices(*Make(DBMS_DB2)), choice + choice + preset) << date << kept;
    EXPECT_EQ(options.GetString(kOption), seed) << date << kept;
  }
  locale.items[LOCALE_SSHORTDATE] = "dd.MM.yy";
  const std::string german = "|DD.MM.YY HH24:MI|DD.MM.YY HH24:MI" + preset;
  EXPECT_EQ(Choices(*Make(DBMS_DB2, 60001)), german) << "without an option";

  test::MemoryRegistry registry;
  const platform::ScopedPlatform scope(test::With(&platform::Platform::registry, &registry));
  testing::ScriptedPrompts prompts;
  EXPECT_TRUE(options.SetString(kOption, "YYYY/DD"));
  registry.unreadable = {platform::ErrorKind::kBusy, 16};
  EXPECT_EQ(Choices(*Make(DBMS_DB2)), german);
  EXPECT_EQ(prompts.shown.size(), 1U);
  registry.unreadable = {};
  EXPECT_EQ(options.GetString(kOption), "YYYY/DD") << "what was not read is not written over";
}

TEST(DateTimeFormat, PlatformsDifferInNameNumberAndDefault) {
  constexpr char kMonthFirst[] = "MM/DD/YYYY HH12:MI:SS AM";
  for (const auto& [platform, type, preset] :
       test::Rows<int, const char*, const char*>{{2, "Sybase", kMonthFirst},
                                                 {3, "SQL Server", kMonthFirst},
                                                 {4, "DB2", "YYYY-MM-DD HH24:MI:SS"},
                                                 {5, "Oracle", kMonthFirst},
                                                 {10, "DB2OS390", "YYYY-MM-DD HH24:MI:SS"}}) {
    const auto made = Make(platform);
    // A factory of copies takes the number from the source.
    const std::unique_ptr<Kind> copy(CDateTimeFormatFactory(made.get()).CreateObject());
    for (const Kind* format : {made.get(), copy.get()}) {
      EXPECT_EQ(format->GetDBMSType(), type);
      EXPECT_EQ(format->GetDatasourceType(), platform);
      EXPECT_EQ(format->GetDispDateTimeFmt(6, Kind::DFK_DBMS_DEFAULT), preset);
      EXPECT_TRUE(format->GetOptionServerIDO() == kOption && format->GetVersionNo() == 8.1);
    }
  }
  EXPECT_EQ(Make(9), nullptr);
  EXPECT_EQ(CDateTimeFormatFactory(nullptr).CreateObject(), nullptr);
  test::ScriptedLocale double_byte;
  ASSERT_TRUE(double_byte.SetCodePage(932));
  EXPECT_EQ(Make(DBMS_ORACLE)->GetDispDateTimeFmt(6, Kind::DFK_DBMS_DEFAULT),
            "YYYY/MM/DD HH24:MI:SS");
}

TEST(DateTimeFormat, ChoosesByTextAndInsertsWhatNoListHas) {
  const auto format = Make(DBMS_SQLSERVER);
  const auto& customized = format->GetCustomizedDateTimeFmtList();
  const int count = customized.GetCount();
  for (const auto& [fmt, choice, added] : test::Rows<const char*, const char*, int>{
           {"", "MM/DD/YYYY", 0},
           {"no format", "MM/DD/YYYY", 0},
           {"%d.%m.%y", "DD.MM.YY", 1},
           {"%d.%m.%y", "DD.MM.YY", 1},
           // Valid for the locale alone: each time a definition that nobody finds.
           {"MM/dd/yyyy hh:mm:ss tt", "", 2},
           {"MM/dd/yyyy hh:mm:ss tt", "", 3}}) {
    format->SetDateTimeFmt("MM/DD/YYYY", Kind::DFK_CURRENT);
    format->SetDateTimeFmt(fmt, Kind::DFK_CURRENT);
    EXPECT_EQ(format->GetDispDateTimeFmt(6, Kind::DFK_CURRENT), choice) << fmt;
    EXPECT_EQ(customized.GetCount(), count + added) << fmt;
  }
  EXPECT_EQ(customized[count + 1]->GetFmtDateTime(DTF_DISP), "MM/dd/ :mm:ss ");
  format->Reset();
  EXPECT_EQ(format->GetDateTimeFmtPtr(Kind::DFK_CURRENT),
            format->GetDateTimeFmtPtr(Kind::DFK_SAVED));

  const auto none = static_cast<Kind::DATETIMEFMTTYPE>(3);
  format->SetDateTimeFmt(customized[0], none);
  EXPECT_EQ(format->GetDateTimeFmtPtr(none), nullptr);
  EXPECT_EQ(format->GetWinDateTimeFmt(26, Kind::DFK_DBMS_DEFAULT), "hh:mm:ss tt");
  EXPECT_EQ(Make(DBMS_ORACLE)->GetOleDateTimeFmt(26, Kind::DFK_DBMS_DEFAULT),
            "%m/%d/%Y %I:%M:%S %p");
}

TEST(DateTimeFormat, HasThePredefinedFormatsInOrder) {
  CString all;
  const auto format = Make(DBMS_DB2);
  CConstPtrArrayIterT<CLGDateTimeFmtDef> walk(format->GetPredefinedDateTimeFmtList());
  while (const CLGDateTimeFmtDef* def = walk.Next()) {
    all += std::to_string(def->GetDateTimeType()) + "|" + def->GetFmtDefTitle();
    for (const auto each : {DTF_DISP, DTF_OLE, DTF_WIN}) all += "|" + def->GetFmtDateTime(each);
    all += '\n';
  }
  EXPECT_EQ(platform::Checksum(all.View()), 0xD699B1ECU) << all;
}

TEST(DateTimeFormat, ACopyHasChoicesInItsOwnLists) {
  EXPECT_TRUE(CDQOptionsServer::GetObject()->SetString(kOption, "no format"));
  const auto source = Make(DBMS_ORACLE);
  source->SetDateTimeFmt("YYYY;MM", Kind::DFK_CURRENT);
  CLGDB2DateTimeFormat copy(*source);
  const CLGDB2DateTimeFormat& same = copy;
  copy = same;
  EXPECT_EQ(Choices(copy), "|YYYY;MM|MM/DD/YYYY HH12:MI:SS AM|MM/DD/YYYY HH12:MI:SS AM");
  EXPECT_EQ(copy.GetDateTimeFmtPtr(Kind::DFK_CURRENT), copy.GetCustomizedDateTimeFmtList()[0]);
  // The stand-in for the saved format has become the definition that it was a copy of.
  for (const auto kind : {Kind::DFK_SAVED, Kind::DFK_DBMS_DEFAULT}) {
    EXPECT_EQ(copy.GetDateTimeFmtPtr(kind), copy.GetPredefinedDateTimeFmtList()[0]);
  }
  source->SetDateTimeFmt(nullptr, Kind::DFK_SAVED);
  static_cast<Kind&>(copy) = *source;
  EXPECT_EQ(copy.GetDateTimeFmtPtr(Kind::DFK_SAVED), nullptr);
}

TEST(DateTimeFormat, ConvertsValuesByThePlatformsHabits) {
  constexpr char kUs[] = "MM/DD/YYYY HH12:MI:SS AM";
  constexpr char kIso[] = "YYYY-MM-DD HH24:MI:SS";
  const test::SystemLocale locale("C");
  for (const auto& [platform, code, in, in_fmt, out_fmt, done, out] :
       test::Rows<DBMS, int, const char*, const char*, const char*, int, const char*>{
           {DBMS_DB2, 6, "[NULL]", "", kIso, 0, "[NULL]"},
           {DBMS_DB2, 5, "04/03/1993 05:34:00 PM", kUs, kIso, 1, "1993-04-03"},
           {DBMS_DB2, 6, "4/3/1993 5:34 PM", "", kIso, 1, "1993-04-03 17:34:00"},
           {DBMS_DB2OS390, 6, "04/03/1993 05:34:00.1 PM", kUs, kIso, 0, "04/03/1993 05:34:00.1 PM"},
           {DBMS_ORACLE, 5, "04/03/1993 05:34:00 PM", kUs, kIso, 1, "1993-04-03 17:34:00"},
           {DBMS_SQLSERVER, 6, "04/03/1993 1:2:3.12 PM", kUs, kIso, 1, "1993-04-03 13:02:03.12"},
           {DBMS_SYBASE, 6, "1993-04-03 17:34:00.1", kIso, kUs, 1, "04/03/1993 05:34:00.1 PM"},
           {DBMS_SYBASE, 6, "1993-04-03 7:4:5. ", "", kIso, 1, "1993-04-03 07:04:05"},
           {DBMS_SYBASE, 6, "1993-04-03 17:34:00.1", kIso, "YYYY", 1, "1993"},
           {DBMS_SYBASE, 6, "1993-04-03 x:34.123", kIso, kUs, 0, "1993-04-03 x:34.123"}}) {
    // Into the value's own text, too.
    CString text = in;
    EXPECT_EQ(Make(platform)->FormatDateTime(code, text, text, in_fmt, out_fmt), done) << in;
    EXPECT_EQ(text, out) << in;
  }
  CString rest;
  CString ms = "x";
  Kind::ExtractMilliSecond("1.2", rest, ms);
  EXPECT_EQ(rest + ms, "1.2");
}

TEST(DataType, QuotesElevenTypesAndNamesFortyWords) {
  std::string quoted, words;
  for (int code = -1; code <= 42; ++code) {
    if (CDQDataType::DataTypeNeedQuote(code)) quoted += std::to_string(code) + " ";
    const char* const word = GetSqlFragment(code);
    words += word == nullptr ? "none\n" : word + std::string("\n");
  }
  EXPECT_EQ(quoted, "4 5 6 10 11 12 19 20 25 26 30 ");
  EXPECT_EQ(platform::Checksum(words), 0x8B0C4C92U) << words;
}

}  // namespace
}  // namespace dq
