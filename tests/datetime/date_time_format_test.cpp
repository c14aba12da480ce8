
#include "dqlib/platform/checksum.h"
#include "tests/support/own_settings.h"
#include "tests/support/registries.h"
#include "tests/support/system_locale.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

using detail::DateTimeFmtParts;

using Def = CLGDateTimeFmtDef;
using Text = const char*;

constexpr auto kUs = "MM/DD/YYYY HH12:MI:SS AM", kIso = "YYYY-MM-DD HH24:MI:SS";

/// The texts in display, OLE and locale notation, "|" behind each.
std::string Texts(const auto& texts) {
  CString all;
  for (const auto notation : {DTF_DISP, DTF_OLE, DTF_WIN}) all += texts(notation) + "|";
  return static_cast<const char*>(all);
}

/// The texts, the type and the number of cells.
std::string Summary(const Def& def) {
  return Texts([&](auto notation) { return def.GetFmtDateTime(notation); }) +
         std::to_string(def.GetType()) + "|" + std::to_string(def.GetFmtElementList().GetCount());
}

Def Predefined(int row) {
  const PredefinedDateTimeFmt& fmt = kPredefinedDateTimeFmts[row - 1];
  return {fmt.type, "", "", fmt.example, fmt.disp, fmt.ole, fmt.win};
}

TEST(DateTimeFmtDef, KeepsOnlyWhatTheDictionaryKnowsAndTellsWhatItDropped) {
  Def def("YYYY");
  for (const auto& [fmt, summary, dropped] :
       Cases<3>(R"(MM/XX/YYYY/ZZ => MM//YYYY/|%m//%Y/|MM//yyyy/|5|5 => XX ;; => |||-1|0
      MM/DD/YYYY HH24:MI:SS => MM/DD/YYYY HH24:MI:SS|%m/%d/%Y %H:%M:%S|MM/dd/yyyy HH:mm:ss|6|11
      hh12:mi AM => hh12:mi AM|%#I:%#M %p|h:m tt|26|5 ;; DAY, DDD => DAY, DDD|%A, %j|dddd, |-1|4
      %m/DD/%Y => MM/DD/YYYY|%m/%d/%Y|MM/dd/yyyy|5|5)"
                "\nMM\xFF\x80/MM => /MM|/%m|/MM|5|2 => MM\xFF\x80")) {
    const Def made(fmt.c_str());
    EXPECT_EQ(Summary(def = made), summary);
    EXPECT_EQ(Summary(Def(&made.GetFmtElementList())), summary);
    EXPECT_EQ(Def::FindUnknownElement(fmt).View(), dropped);
  }
  Def full(static_cast<const char*>(nullptr));
  EXPECT_EQ(Summary(full), "|||-1|0");
  const Def copy(Def(5, "", "about", "example", "DD", "%d", "dd"));
  (full = copy).SetFmtTitle("Short ");
  EXPECT_EQ(full.GetFmtDefTitle() + full.GetFmtDiscription(), "Short exampleabout");
  EXPECT_EQ(full.GetDateTimeType(), 5);
  full.SetFmtExample("2");
  full.SetFmtDescription("1");
  EXPECT_EQ(full.GetFmtDiscription() + full.GetFmtDefTitle(), "1Short 2");
}

TEST(DateTimeFmtDef, AnswersTheWholeFromItsTextsAndPartsFromItsCells) {
  std::string parts;
  for (const auto& [row, code] : {std::pair(1, 5), {1, 7}, {18, 19}, {18, 26}, {19, 5}, {19, 6}}) {
    const Def def = Predefined(row);
    parts += Texts([&def, c = code](auto notation) { return def.GetFmtDateTime(c, notation); });
  }
  EXPECT_EQ(parts,
            "MM/DD/YYYY|%m/%d/%Y|MM/dd/yyyy||||DD-MON-YY|%d-%b-%y|dd-MMM-yy|"
            "HH12:MI:SS AM|%I:%M:%S %p|hh:mm:ss tt|DAY, MONTH dd, YYYY|%A, %B %#d, %Y|"
            "dddd, MMMM d, yyyy|DAY, MONTH dd, YYYY|%#c|dddd, MMMM d, yyyy|");
  // Only right ends are trimmed.
  const Def time_first("HH24:MI:SS MM/DD/YYYY  AM");
  EXPECT_EQ(time_first.GetFmtDateTime(5, DTF_DISP), " MM/DD/YYYY");
  EXPECT_EQ(time_first.GetFmtDateTime(26, DTF_DISP), "HH24:MI:SS AM");
  const Def d("AM SS:MI:HH24 YYYY/MM/DD");
  EXPECT_EQ(d.GetFmtDay(DTF_DISP) + d.GetFmtMonth(DTF_OLE) + d.GetFmtYear(DTF_WIN) +
                d.GetFmtHour(DTF_DISP) + d.GetFmtMinute(DTF_OLE) + d.GetFmtSecond(DTF_WIN) +
                d.GetFmtAMPM(DTF_OLE),
            "DD%myyyyHH24%Mss%p");
  Def def = Predefined(12);
  def.SetFmtDateTime("changed", DTF_OLE);
  def.SetFmtDateTime("lost", static_cast<DATETIME_FMTTYPE>(-1));
  EXPECT_EQ(Summary(def), "MM/DD/YYYY|changed|MM/dd/yyyy|5|5");
  EXPECT_EQ(def.GetFmtMonth(DTF_OLE) + def.GetFmtAMPM(DTF_OLE), "%m");
}

TEST(DateTimeFmtDef, TranslatesUntilATextIsNoElement) {
  // The numbers of two notations, a text, whether it is valid and all converted, and the result.
  for (const auto& [notations, text, done, expected] : Cases<4>(R"(21 => ..fHH.ff. => 01 => D.HH24.
      21 => M/d/yyyy h:mm:ss tt => 11 => mm/dd/YYYY hh12:MI:SS AM ;; 01 => %#m/%q/%Y => 00 => mm/
      21 => dddd, MMMM d => 11 => DAY,D MONTH dd ;; 21 => HH:mm:ss.fff => 01 => HH24:MI:SS
      12 => DAY, MONTH dd => 10 => dddd, ;; 12 => D-DDD => 11 => - ;; 78 => MM => 11 => MM
      21 => dd'.'MM => 00 ;; 21 => fHH => 00 ;; 12 => /// => 10 ;; 10 => => 00)")) {
    const CString source = text;
    const auto from = static_cast<DATETIME_FMTTYPE>(notations[0] - '0');
    const auto to = static_cast<DATETIME_FMTTYPE>(notations[1] - '0');
    CString result;
    EXPECT_EQ(Def::GetDateTimeFmt(from, source, to, result), done[1] == '1') << text;
    EXPECT_EQ(Def::IsValidDateTimeFmt(source, from), done[0] == '1') << text;
    EXPECT_EQ(result.View(), expected);
    EXPECT_EQ(Def::IsValidDateTimeFmt(source), done[0] == '1') << text << " in any notation";
  }
}

TEST(DateTimeFmtDef, TakesTheUsersFormatFromTheLocale) {
  ScriptedLocale locale;
  for (const auto& [date, time, texts] : Cases<3>(R"(yy'年'MM'月'dd'日' => HH:mm => !|HH24:MI|!|!|2
      M/d/yyyy => h:mm => mm/dd/YYYY|hh12:MI|mm/dd/YYYY hh12:MI|mm/dd/YYYY hh12:MI|4)")) {
    locale.items = {{LOCALE_SSHORTDATE, date}, {LOCALE_STIMEFORMAT, time}};
    std::string all;
    for (const int code : {5, 26, 6, 19}) {
      CString text;
      if (!Def::GetLocaleDateTimeFmt(code, text, DTF_DISP)) text += '!';
      all += std::string(text.View()) + "|";
    }
    EXPECT_EQ(all + (Def::IsLocaleTwoDigitYear() ? "2" : "4"), texts);
  }
}

TEST(DateTimeFmtDefList, DeletesItsElementsAndCopiesThem) {
  const auto counted = std::make_shared<int>();
  {
    CLGAutoDeletePtrCollectionT<std::shared_ptr<int>> list;
    list.AddTail(new std::shared_ptr<int>(counted));
    const auto copy = list;
    EXPECT_EQ(counted.use_count(), 3);
  }
  EXPECT_EQ(counted.use_count(), 1);
}

TEST(DateTimeFmtDictionary, HoldsItsCellsInOrderAndFindsTheFirstWithExactlyTheCode) {
  std::string all;
  const detail::DictionaryUse<CLGDateTimeFmtDictionary> dictionary;
  const detail::DictionaryUse<CDQDateTimeFmtDictionary> small;
  for (POSITION position = dictionary->GetFirstEntry(); position != nullptr;) {
    const CLGDateTimeFmtCell& cell = *dictionary->GetNext(position);
    const auto codes = [](const auto& each) {
      return Texts([&](auto notation) { return each.GetDateTimeElementFmt(notation); });
    };
    const CDQDateTimeFmtCell* const same = small->GetEntry(cell.GetDetail(), DTF_DISP);
    all += std::to_string(cell.GetDateTimeElementType()) + "|" + codes(cell) +
           (same != nullptr ? codes(*same) : "no number of days|") +
           std::string((cell.GetDescription() + "|" + cell.GetExample()).View()) + "\n";
  }
  EXPECT_EQ(platform::Checksum(all), 0x326ED06BU) << all;

  // Finds the first cell with exactly the code, in any notation and in one.
  const auto detail_of = [](const auto* cell) { return cell != nullptr ? cell->GetDetail() : "-"; };
  std::string found;
  for (const char* code : {"mm", "%m", "Mm", "hh", ""}) {
    const auto find = [&](auto... notation) {
      return detail_of(dictionary->GetEntry(code, notation...));
    };
    found += std::string(find().View()) + "|" + Texts(find);
  }
  CLGDateTimeFmtCell cell(DTT_DAY, "disp", "ole", "win", "text", "7");
  cell.SetDateTimeElementFmt("x", static_cast<DATETIME_FMTTYPE>(3));
  EXPECT_EQ(cell.GetDateTimeElementFmt(static_cast<DATETIME_FMTTYPE>(3)), "disp");
  EXPECT_EQ(found, "mm|mm|-|MI|MM|-|MM|-|-|-|-|-|-|-|-|HH12|-|-|-|D|");
}

using Kind = CLGDateTimeFormat;
using enum Kind::DATETIMEFMTTYPE;

/// Any option of text.
constexpr UINT kOption = 50255;

std::unique_ptr<Kind> Make(int platform, UINT option = kOption) {
  return std::unique_ptr<Kind>(CDateTimeFormatFactory(DBMS{platform}, option, 8.1).CreateObject());
}

/// The texts of the current, the saved and the default choice.
std::string Choices(const Kind& format) {
  CString text;
  for (const auto kind : {DFK_CURRENT, DFK_SAVED, DFK_DBMS_DEFAULT}) {
    text += "|" + format.GetDispDateTimeFmt(DATATYPE_DATETIME, kind);
  }
  return std::string(text.View());
}

TEST(DateTimeFormat, IsSeededFromTheLocaleOnce) {
  CDQOptionsServer& options = *CDQOptionsServer::GetObject();
  const std::string preset = "|YYYY-MM-DD HH24:MI:SS";
  ScriptedLocale locale;
  for (const auto& [date, kept, choice, seed] : Rows<Text, Text, std::string, Text>{
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

  MemoryRegistry registry;
  ScriptedPrompts prompts;
  EXPECT_TRUE(options.SetString(kOption, "YYYY/DD"));
  registry.unreadable = {platform::ErrorKind::kBusy, 16};
  EXPECT_EQ(Choices(*Make(DBMS_DB2)), german);
  EXPECT_EQ(prompts.shown.size(), 1U);
  registry.unreadable = {};
  EXPECT_EQ(options.GetString(kOption), "YYYY/DD") << "what was not read is not written over";
}

TEST(DateTimeFormat, PlatformsDifferInNameNumberAndDefault) {
  for (const auto& [platform, told] : Cases<2>(R"(2 => Sybase MM/DD/YYYY HH12:MI:SS AM
      3 => SQL Server MM/DD/YYYY HH12:MI:SS AM ;; 5 => Oracle MM/DD/YYYY HH12:MI:SS AM
      4 => DB2 YYYY-MM-DD HH24:MI:SS ;; 10 => DB2OS390 YYYY-MM-DD HH24:MI:SS)")) {
    const auto made = Make(std::stoi(platform));
    // A factory of copies takes the number from the source.
    const std::unique_ptr<Kind> copy(CDateTimeFormatFactory(made.get()).CreateObject());
    for (const Kind* format : {made.get(), copy.get()}) {
      const CString preset = format->GetDispDateTimeFmt(6, DFK_DBMS_DEFAULT);
      EXPECT_EQ((format->GetDBMSType() + " " + preset).View(), told);
      EXPECT_EQ(std::to_string(format->GetDatasourceType()), platform);
      EXPECT_TRUE(format->GetOptionServerIDO() == kOption && format->GetVersionNo() == 8.1);
    }
  }
  EXPECT_TRUE(Make(9) == nullptr && CDateTimeFormatFactory(nullptr).CreateObject() == nullptr);
  ScriptedLocale double_byte;
  ASSERT_TRUE(double_byte.SetCodePage(932));
  EXPECT_EQ(Make(DBMS_ORACLE)->GetDispDateTimeFmt(6, DFK_DBMS_DEFAULT), "YYYY/MM/DD HH24:MI:SS");
}

TEST(DateTimeFormat, ChoosesByTextAndInsertsWhatNoListHas) {
  const auto format = Make(DBMS_SQLSERVER);
  const auto& customized = format->GetCustomizedDateTimeFmtList();
  const int count = customized.GetCount();
  // What is valid for the locale alone is each time a definition that nobody finds.
  for (const auto& [fmt, choice, added] : Cases<3>(R"(=> MM/DD/YYYY => 0
      no format => MM/DD/YYYY => 0 ;; %d.%m.%y => DD.MM.YY => 1 ;; %d.%m.%y => DD.MM.YY => 1
      MM/dd/yyyy hh:mm:ss tt => => 2 ;; MM/dd/yyyy hh:mm:ss tt => => 3)")) {
    format->SetDateTimeFmt("MM/DD/YYYY", DFK_CURRENT);
    format->SetDateTimeFmt(fmt.c_str(), DFK_CURRENT);
    EXPECT_EQ(format->GetDispDateTimeFmt(6, DFK_CURRENT).View(), choice) << fmt;
    EXPECT_EQ(customized.GetCount(), count + std::stoi(added)) << fmt;
  }
  EXPECT_EQ(customized[count + 1]->GetFmtDateTime(DTF_DISP), "MM/dd/ :mm:ss ");
  format->Reset();
  EXPECT_EQ(format->GetDateTimeFmtPtr(DFK_CURRENT), format->GetDateTimeFmtPtr(DFK_SAVED));

  const auto none = static_cast<Kind::DATETIMEFMTTYPE>(3);
  format->SetDateTimeFmt(customized[0], none);
  EXPECT_EQ(format->GetDateTimeFmtPtr(none), nullptr);
  EXPECT_EQ(format->GetWinDateTimeFmt(26, DFK_DBMS_DEFAULT), "hh:mm:ss tt");
  EXPECT_EQ(Make(DBMS_ORACLE)->GetOleDateTimeFmt(26, DFK_DBMS_DEFAULT), "%m/%d/%Y %I:%M:%S %p");
}

TEST(DateTimeFormat, HasThePredefinedFormatsInOrderAndFindsByTheTextOfOneNotation) {
  CString all;
  CLGDateTimeFmtDefList list = Make(DBMS_DB2)->GetPredefinedDateTimeFmtList();
  CConstPtrArrayIterT<CLGDateTimeFmtDef> walk(list);
  while (const CLGDateTimeFmtDef* def = walk.Next()) {
    all += std::to_string(def->GetDateTimeType()) + "|" + def->GetFmtDefTitle();
    for (const auto each : {DTF_DISP, DTF_OLE, DTF_WIN}) all += "|" + def->GetFmtDateTime(each);
    all += '\n';
  }
  EXPECT_EQ(platform::Checksum(all.View()), 0xD699B1ECU) << all;
  for (int i = 0; i < 2; ++i) list.InsertDateTimeFmt("YYYY");
  std::string found;
  for (const char* fmt :
       {"MM/DD/YYYY", "%m/%d/%Y", "%I:%M:%S %p", "hh24:mi:ss", "%#c", "MM/dd/yyyy", "", "YYYY"}) {
    int row = 0;
    while (row < 25 && list[row] != list.FindDateTimeFmt(fmt)) ++row;
    found += std::to_string(row + 1) + " ";
  }
  EXPECT_EQ(found, "11 11 20 23 26 26 26 24 ") << "26 is none";
}

TEST(DateTimeFormat, ACopyHasChoicesInItsOwnLists) {
  EXPECT_TRUE(CDQOptionsServer::GetObject()->SetString(kOption, "no format"));
  const auto source = Make(DBMS_ORACLE);
  source->SetDateTimeFmt("YYYY;MM", DFK_CURRENT);
  CLGDB2DateTimeFormat copy(*source);
  const CLGDB2DateTimeFormat& same = copy;
  copy = same;
  EXPECT_EQ(Choices(copy), "|YYYY;MM|MM/DD/YYYY HH12:MI:SS AM|MM/DD/YYYY HH12:MI:SS AM");
  EXPECT_EQ(copy.GetDateTimeFmtPtr(DFK_CURRENT), copy.GetCustomizedDateTimeFmtList()[0]);
  // The stand-in for the saved format has become the definition that it was a copy of.
  for (const auto kind : {DFK_SAVED, DFK_DBMS_DEFAULT}) {
    EXPECT_EQ(copy.GetDateTimeFmtPtr(kind), copy.GetPredefinedDateTimeFmtList()[0]);
  }
  source->SetDateTimeFmt(nullptr, DFK_SAVED);
  static_cast<Kind&>(copy) = *source;
  EXPECT_EQ(copy.GetDateTimeFmtPtr(DFK_SAVED), nullptr);
}

TEST(DateTimeFormat, ConvertsValuesByThePlatformsHabits) {
  const SystemLocale locale("C");
  for (const auto& [db, code, in, from, to, ok, out] : Rows<DBMS, int, Text, Text, Text, int, Text>{
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
    EXPECT_EQ(Make(db)->FormatDateTime(code, text, text, from, to), ok) << in;
    EXPECT_EQ(text, out) << in;
  }
  CString rest, ms = "x";
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

using Dlg = CLGDateTimeFormatDlg;

TEST(FormatBuilder, BuildsAFormatFromTheElementsOfAnother) {
  const auto parts_of = [](const char* fmt) {
    return DateTimeFmtParts::Of(CLGDateTimeFmtDef(fmt).GetFmtElementList());
  };
  for (const auto& [from, code, built] : Cases<3>(R"(
      MM/DD/YYYY HH12:MI:SS AM => 27 => [MM/DD/YYYY HH12:MI:SS AM]
      MM/DD/YYYY HH12:MI:SS AM => 19 => [MM/DD/YYYY] ;; MM/DD/YYYY HH12:MI:SS AM => 7 => []
      MM/DD/YYYY HH12:MI:SS AM => 26 => [HH12:MI:SS AM] ;; HH24:MI:SS AM => 26 => [HH24:MI:SS]
      HH24:MI:SS YYYY-MM.DD => 6 => [HH24:MI:SS YYYY-MM.DD] ;; /DD-MM,YYYY => 5 => [DD-MM,YYYY]
      DAY, MONTH dd, YYYY HH24:MI => 6 => [MONTH dd,YYYY HH24:MI:] ;; => 6 => [ ::]
      MM/YYYY HH24:MI:SS => 6 => [ HH24:MI:SS] ;; hh24:MI:SS AM => 26 => [hh24:MI:SS AM])")) {
    const CString made = parts_of(from.c_str()).GenerateDateTimeFmt(std::stoi(code));
    EXPECT_EQ("[" + made + "]", built.c_str()) << from << ' ' << code;
  }
  DateTimeFmtParts parts = parts_of("DD.MM-YY");
  parts.separators[DTT_MONTH] = "";
  CString all;
  for (; parts.date_order < 6; ++parts.date_order) all += parts.GenerateDateFmt() + "|";
  EXPECT_EQ(all, "DD.MM YY|DD.YY-MM|MM DD.YY|MM YY-DD|YY-MM DD|YY-DD.MM|");
}

struct FormatDialog : testing::Test {
  /// Runs the dialog on Oracle's formats, with `fmt` the current one.
  int Run(const char* fmt, int code, std::function<void(platform::DialogView&)> answer) {
    format_.SetDateTimeFmt(fmt, DFK_CURRENT);
    prompts_.on_dialog = std::move(answer);
    return Dlg(&format_, code).DoModal();
  }
  static platform::DialogControl Find(platform::DialogView& view, int id) {
    const auto all = view.Controls();
    return *std::ranges::find(all, id, &platform::DialogControl::id);
  }

  ManualClock clock_;
  ScriptedPrompts prompts_;
  CLGOracleDateTimeFormat format_{0, 0};
};

TEST_F(FormatDialog, ShowsWhatIsBuiltFourTimesASecondWithThePresentTime) {
  RecordingObserver observer;
  format_.SetDateTimeFmt("DD-MM-YYYY HH24:MI:SS", DFK_CURRENT);
  Dlg dialog(&format_, 6);
  prompts_.on_dialog = [&](platform::DialogView& view) {
    const LONG small = dialog.GetPlace().Height();
    EXPECT_FALSE(view.Enter(Dlg::kDay, "dd")) << "hidden";
    ASSERT_TRUE(view.Press(Dlg::kCustomize));
    EXPECT_EQ(dialog.GetPlace().Height() - small, 414 - 130);
    EXPECT_FALSE(Find(view, Dlg::kAMPM).enabled);
    EXPECT_TRUE(view.Enter(Dlg::kHour, "hh24") && !Find(view, Dlg::kAMPM).enabled);
    EXPECT_EQ(Find(view, Dlg::kExample).value, "03-02-2001 04:05:06");
    EXPECT_TRUE(view.Enter(Dlg::kHour, "hh12") && view.Enter(Dlg::kAMPM, "AM"));
    EXPECT_TRUE(view.Enter(Dlg::kDay, "dd") && view.Enter(Dlg::kTimeDate, "1"));
    clock_.Advance(249);
    EXPECT_EQ(Find(view, Dlg::kFormat).value, "DD-MM-YYYY HH24:MI:SS");
    clock_.Advance(1);
    EXPECT_EQ(Find(view, Dlg::kFormat).value, "hh12:MI:SS AM dd-MM-YYYY");
    EXPECT_EQ(Find(view, Dlg::kExample).value, "4:05:06 AM 3-02-2001");
    observer.changes.clear();
    clock_.Advance(250);
    view.Controls();
    EXPECT_TRUE(observer.changes.empty()) << "nothing is written anew";
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
}

TEST_F(FormatDialog, DisablesWhatTheColumnDoesNotHold) {
  for (const auto& [code, enabled] : {std::pair(5, "-+++--+"), {26, "-----++"}, {19, "-++++++"}}) {
    Run(kUs, code, [&, wanted = enabled](platform::DialogView& view) {
      view.Press(Dlg::kCustomize);
      std::string found;
      for (const int id : {Dlg::kPredefined, Dlg::kDay, Dlg::kYearSeparator, Dlg::kLastDateOrder,
                           Dlg::kTimeDate, Dlg::kHour, Dlg::kAMPM})
        found += Find(view, id).enabled ? '+' : '-';
      EXPECT_EQ(found, wanted) << "but for hours, the marker is the hours' matter";
      EXPECT_EQ(Find(view, Dlg::kCustomize).label, "Use Predefined");
      view.Press(Dlg::kCustomize);
      EXPECT_EQ(Find(view, Dlg::kCustomize).label, "Customize");
      EXPECT_TRUE(Find(view, Dlg::kPredefined).enabled);
    });
  }
}

TEST_F(FormatDialog, OkMakesTheFormatTheCurrentOneAndAddsWhatWasBuilt) {
  const char* const own = "dd/MM/YYYY hh24:MI:SS";
  const auto ok = [](platform::DialogView& view) { view.Press(IDOK); };
  const auto build = [](platform::DialogView& view) {
    EXPECT_TRUE(view.Press(Dlg::kCustomize) && view.Press(IDOK));
  };
  const auto& customized = format_.GetCustomizedDateTimeFmtList();
  format_.InsertCustomizedDateTimeFmt(own);
  const int before = customized.GetSize();
  EXPECT_EQ(Run(own, 6, build), IDOK);
  EXPECT_EQ(customized.GetSize(), before + 1) << "though it is known";
  const auto choose = [&](platform::DialogView& view) {
    EXPECT_EQ(Find(view, Dlg::kPredefined).value, "1993-04-03 17:34:00");
    EXPECT_TRUE(view.Enter(Dlg::kPredefined, own)) << "it has no title";
    ok(view);
  };
  EXPECT_EQ(Run(kIso, 6, choose), IDOK);
  const auto* const chosen = format_.GetDateTimeFmtPtr(DFK_CURRENT);
  EXPECT_EQ(chosen, format_.FindDateTimeFmt(own)) << "the format's own, not the dialog's copy";
  EXPECT_EQ(Run(own, 26, ok), IDCANCEL) << "the current one isn't among the times";
  EXPECT_EQ(Run(own, 7, ok), IDCANCEL);
  Dlg none(nullptr, 6);
  prompts_.on_dialog = [&none](platform::DialogView& view) {
    EXPECT_EQ(Find(view, Dlg::kCustomize).label, "Customize");
    EXPECT_FALSE(Find(view, Dlg::kCustomize).enabled);
    none.SendMessage(WM_COMMAND, Dlg::kCustomize, 0);
    view.Press(IDOK);
  };
  EXPECT_EQ(none.DoModal(), IDCANCEL);
}

}  // namespace
}  // namespace dq::test
