#include "dqlib/datetime/date_time_format.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "dqlib/datetime/data_type.h"
#include "siblings/options/options_server.h"
#include "tests/support/memory_registry.h"
#include "tests/support/own_service.h"
#include "tests/support/own_settings.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_locale.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/system_locale.h"

namespace dq {
namespace {

/// Any option of text.
constexpr UINT kOption = 50255;

std::unique_ptr<CLGDateTimeFormat> Make(DBMS platform, UINT option = kOption) {
  return std::unique_ptr<CLGDateTimeFormat>(
      CDateTimeFormatFactory(platform, option, 8.1).CreateObject());
}

/// The texts of the current, the saved and the default choice.
std::string Choices(const CLGDateTimeFormat& format) {
  std::string text;
  for (const auto kind : {CLGDateTimeFormat::DFK_CURRENT, CLGDateTimeFormat::DFK_SAVED,
                          CLGDateTimeFormat::DFK_DBMS_DEFAULT}) {
    text += "|" + std::string(format.GetDispDateTimeFmt(DATATYPE_DATETIME, kind).View());
  }
  return text;
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
  EXPECT_EQ(Choices(*Make(DBMS_DB2, 60001)), "|DD.MM.YY HH24:MI|DD.MM.YY HH24:MI" + preset)
      << "without an option";

  test::MemoryRegistry registry;
  const platform::ScopedPlatform scope(test::With(&platform::Platform::registry, &registry));
  testing::ScriptedPrompts prompts;
  EXPECT_TRUE(options.SetString(kOption, "YYYY/DD"));
  registry.unreadable = {platform::ErrorKind::kBusy, 16};
  EXPECT_EQ(Choices(*Make(DBMS_DB2)), "|DD.MM.YY HH24:MI|DD.MM.YY HH24:MI" + preset);
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
    const auto made = Make(static_cast<DBMS>(platform));
    // A factory of copies takes the number from the source.
    const std::unique_ptr<CLGDateTimeFormat> copy(
        CDateTimeFormatFactory(made.get()).CreateObject());
    for (const CLGDateTimeFormat* format : {made.get(), copy.get()}) {
      EXPECT_EQ(format->GetDBMSType(), type);
      EXPECT_EQ(format->GetDatasourceType(), platform);
      EXPECT_EQ(format->GetDispDateTimeFmt(6, CLGDateTimeFormat::DFK_DBMS_DEFAULT), preset);
      EXPECT_TRUE(format->GetOptionServerIDO() == kOption && format->GetVersionNo() == 8.1);
    }
  }
  EXPECT_EQ(Make(static_cast<DBMS>(9)), nullptr);
  EXPECT_EQ(CDateTimeFormatFactory(nullptr).CreateObject(), nullptr);
  test::ScriptedLocale double_byte;
  ASSERT_TRUE(double_byte.SetCodePage(932));
  EXPECT_EQ(Make(DBMS_ORACLE)->GetDispDateTimeFmt(6, CLGDateTimeFormat::DFK_DBMS_DEFAULT),
            "YYYY/MM/DD HH24:MI:SS");
}

TEST(DateTimeFormat, ChoosesByTextAndInsertsWhatNoListHas) {
  using Kind = CLGDateTimeFormat;
  const auto format = Make(DBMS_SQLSERVER);
  const auto& customized = format->GetCustomizedDateTimeFmtList();
  EXPECT_EQ(format->GetPredefinedDateTimeFmtList().GetCount(), 23);
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
  std::string all;
  const auto format = Make(DBMS_DB2);
  const CLGDateTimeFmtDefList& list = format->GetPredefinedDateTimeFmtList();
  for (int i = 0; i < list.GetSize(); ++i) {
    const CLGDateTimeFmtDef& def = *list[i];
    all += std::to_string(def.GetDateTimeType());
    for (const CString& text : {def.GetFmtDefTitle(), def.GetFmtDateTime(DTF_DISP),
                                def.GetFmtDateTime(DTF_OLE), def.GetFmtDateTime(DTF_WIN)}) {
      all += "|" + std::string(text.View());
    }
    all += "\n";
  }
  EXPECT_EQ(
      all,
      "6|04/03/1993 05:34:00 PM|MM/DD/YYYY HH12:MI:SS AM|%m/%d/%Y %I:%M:%S %p|MM/dd/yyyy hh:mm:ss "
      "tt\n"
      "6|4/3/1993 5:34:00 PM|mm/dd/YYYY hh12:MI:SS AM|%#m/%#d/%Y %#I:%M:%S %p|M/d/yyyy h:mm:ss tt\n"
      "6|04/03/93 05:34:00 PM|MM/DD/YY HH12:MI:SS AM|%m/%d/%y %I:%M:%S %p|MM/dd/yy hh:mm:ss tt\n"
      "6|1993-04-03 05:34:00 PM|YYYY-MM-DD HH12:MI:SS AM|%Y-%m-%d %I:%M:%S %p|yyyy-MM-dd hh:mm:ss "
      "tt\n"
      "6|1993-4-3 5:34:00 PM|YYYY-mm-dd hh12:MI:SS AM|%Y-%#m-%#d %#I:%M:%S %p|yyyy-M-d h:mm:ss tt\n"
      "6|1993-04-03 17:34:00|YYYY-MM-DD HH24:MI:SS|%Y-%m-%d %H:%M:%S|yyyy-MM-dd HH:mm:ss\n"
      "6|03-Apr-1993 05:34:00 PM|DD-MON-YYYY HH12:MI:SS AM|%d-%b-%Y %I:%M:%S %p|dd-MMM-yyyy "
      "h:mm:ss tt\n"
      "6|3-Apr-1993 5:34:00 PM|dd-MON-YYYY hh12:MI:SS AM|%#d-%b-%Y %#I:%M:%S %p|d-MMM-yyyy "
      "hh:mm:ss tt\n"
      "6|03-Apr-93 05:34:00 PM|DD-MON-YY HH12:MI:SS AM|%d-%b-%y %I:%M:%S %p|dd-MMM-yy hh:mm:ss tt\n"
      "6|Saturday, April 3, 1993 05:34:00|DAY, MONTH dd, YYYY HH24:MI:SS|%#c|dddd, MMMM d, yyyy "
      "HH:mm:ss\n"
      "5|04/03/1993|MM/DD/YYYY|%m/%d/%Y|MM/dd/yyyy\n"
      "5|4/3/1993|MM/DD/YYYY|%m/%d/%Y|MM/dd/yyyy\n"
      "5|04/03/93|MM/DD/YY|%m/%d/%y|MM/dd/yy\n"
      "5|1993-04-03|YYYY-MM-DD|%Y-%m-%d|yyyy-MM-dd\n"
      "5|1993-4-3|YYYY-mm-dd|%Y-%#m-%#d|yyyy-M-d\n"
      "5|03-Apr-1993|DD-MON-YYYY|%d-%b-%Y|dd-MMM-yyyy\n"
      "5|3-Apr-1993|dd-MON-YYYY|%#d-%b-%Y|d-MMM-yyyy\n"
      "5|03-Apr-93|DD-MON-YY HH12:MI:SS AM|%d-%b-%y|dd-MMM-yy\n"
      "5|Saturday, April 3, 1993|DAY, MONTH dd, YYYY|%#c|dddd, MMMM d, yyyy\n"
      "26|05:04:03 PM|HH12:MI:SS AM|%I:%M:%S %p|hh:mm:ss tt\n"
      "26|5:4:3 PM|hh12:mi:ss AM|%I:%M %p|hh:mm tt\n"
      "26|17:04:03|HH24:MI:SS|%H:%M|HH:mm\n"
      "26|17:4:3|hh24:mi:ss|%I:%M:%S %p|hh:mm:ss tt\n");
}

TEST(DateTimeFormat, ACopyHasChoicesInItsOwnLists) {
  EXPECT_TRUE(CDQOptionsServer::GetObject()->SetString(kOption, "no format"));
  const auto source = Make(DBMS_ORACLE);
  source->SetDateTimeFmt("YYYY;MM", CLGDateTimeFormat::DFK_CURRENT);
  CLGDB2DateTimeFormat copy(*source);
  const CLGDB2DateTimeFormat& same = copy;
  copy = same;
  EXPECT_EQ(Choices(copy), "|YYYY;MM|MM/DD/YYYY HH12:MI:SS AM|MM/DD/YYYY HH12:MI:SS AM");
  EXPECT_EQ(copy.GetDateTimeFmtPtr(CLGDateTimeFormat::DFK_CURRENT),
            copy.GetCustomizedDateTimeFmtList()[0]);
  // The stand-in for the saved format has become the definition that it was a copy of.
  for (const auto kind : {CLGDateTimeFormat::DFK_SAVED, CLGDateTimeFormat::DFK_DBMS_DEFAULT}) {
    EXPECT_EQ(copy.GetDateTimeFmtPtr(kind), copy.GetPredefinedDateTimeFmtList()[0]);
  }
  source->SetDateTimeFmt(nullptr, CLGDateTimeFormat::DFK_SAVED);
  static_cast<CLGDateTimeFormat&>(copy) = *source;
  EXPECT_EQ(copy.GetDateTimeFmtPtr(CLGDateTimeFormat::DFK_SAVED), nullptr);
}

TEST(DateTimeFormat, CutsMilliSecondsOutAndPutsThemBack) {
  for (const auto& [in, rest, ms, back] :
       test::Rows<const char*, const char*, const char*, const char*>{
           {"5:34:00.123 PM x", "5:34:00 PM x", "123", "5:34:00.123 PM x"},
           {"10:20:30.5", "10:20:30", "5", "10:20:30.5"},
           {"10:20. PM", "10:20 PM", "", "10:20 PM"},
           {"1.2", "1.2", "", "1.2"}}) {
    CString found_rest = in;
    CString found_ms = "x";
    CLGDateTimeFormat::ExtractMilliSecond(found_rest, found_rest, found_ms);
    EXPECT_TRUE(found_rest == rest && found_ms == ms) << in;
    CLGDateTimeFormat::InsertMilliSecond(found_rest, found_rest, found_ms);
    EXPECT_EQ(found_rest, back);
  }
}

TEST(DateTimeFormat, ConvertsValuesByThePlatformsHabits) {
  constexpr char kUs[] = "MM/DD/YYYY HH12:MI:SS AM";
  constexpr char kIso[] = "YYYY-MM-DD HH24:MI:SS";
  for (const auto& [platform, code, in, in_fmt, out_fmt, done, out] :
       test::Rows<DBMS, int, const char*, const char*, const char*, int, const char*>{
           {DBMS_DB2, 6, "[NULL]", "MM/DD/YYYY", "YYYY-MM-DD", 0, "[NULL]"},
           {DBMS_DB2, 5, "04/03/1993 05:34:00 PM", kUs, "YYYY-MM-DD", 1, "1993-04-03"},
           {DBMS_DB2, 6, "4/3/1993 5:34 PM", "", kIso, 1, "1993-04-03 17:34:00"},
           {DBMS_DB2OS390, 6, "04/03/1993 05:34:00.1 PM", kUs, kIso, 0, "04/03/1993 05:34:00.1 PM"},
           {DBMS_ORACLE, 5, "04/03/1993 05:34:00 PM", kUs, kIso, 1, "1993-04-03 17:34:00"},
           {DBMS_SQLSERVER, 6, "04/03/1993 05:34:00.123 PM", kUs, kIso, 1,
            "1993-04-03 17:34:00.123"},
           {DBMS_SYBASE, 6, "1993-04-03 17:34:00.123", kIso, kUs, 1, "04/03/1993 05:34:00.123 PM"},
           {DBMS_SYBASE, 6, "1993-04-03 x:34.123", kIso, kUs, 0, "1993-04-03 x:34.123"}}) {
    const test::SystemLocale locale("C");
    // Into the value's own text, too.
    CString text = in;
    EXPECT_EQ(Make(platform)->FormatDateTime(code, text, text, in_fmt, out_fmt), done) << in;
    EXPECT_EQ(text, out) << in;
  }
}

TEST(DataType, QuotesElevenTypesAndNamesFortyWords) {
  std::string quoted;
  for (int code = -1; code <= 42; ++code) {
    if (CDQDataType::DataTypeNeedQuote(code)) quoted += std::to_string(code) + " ";
  }
  EXPECT_EQ(quoted, "4 5 6 10 11 12 19 20 25 26 30 ");
  std::string words;
  for (int position = 0; position < 40; ++position) {
    words += std::string(GetSqlFragment(position)) + "|";
  }
  EXPECT_EQ(words,
            "NULL|[NULL]|IS NULL|DEFAULT|=| AND|(|)| |.|,|'|;|USE|BEGIN TRAN|COMMIT "
            "TRAN|ROLLBACK|ROLLBACK TRAN|BEGIN|END|COMMIT|INSERT|INSERT "
            "INTO|UPDATE|DELETE|SELECT|SET|WHERE|FROM|VALUES|NCHAR|VARCHAR|NVARCHAR|VARCHAR2|ID|"
            "EMPID|TID|TIMESTAMP|TIMESTAMP WITH TIME ZONE|TIMESTAMP WITH LOCAL TIME ZONE|");
  EXPECT_TRUE(GetSqlFragment(-1) == nullptr && GetSqlFragment(40) == nullptr);
}

}  // namespace
}  // namespace dq
