#include "dqlib/datetime/date_time_fmt_def.h"

#include <gtest/gtest.h>
#include <iterator>
#include <string>

#include "dqlib/datetime/date_time_fmt_dictionary.h"
#include "dqlib/datetime/predefined_formats.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_locale.h"

namespace dq {
namespace {

/// The texts in display, OLE and locale notation, the type and the number of cells.
std::string Summary(const CLGDateTimeFmtDef& def) {
  std::string text;
  for (const DATETIME_FMTTYPE notation : {DTF_DISP, DTF_OLE, DTF_WIN}) {
    text += std::string(def.GetFmtDateTime(notation).View()) + "|";
  }
  return text + std::to_string(def.GetType()) + "|" +
         std::to_string(def.GetFmtElementList().GetCount());
}

CLGDateTimeFmtDef Predefined(int row) {
  const PredefinedDateTimeFmt& fmt = kPredefinedDateTimeFmts[row - 1];
  return {fmt.type, "", "", fmt.example, fmt.disp, fmt.ole, fmt.win};
}

TEST(DateTimeFmtDef, KeepsOnlyWhatTheDictionaryKnows) {
  for (const auto& [fmt, summary] : test::Rows<const char*, const char*>{
           {"MM/DD/YYYY HH24:MI:SS",
            "MM/DD/YYYY HH24:MI:SS|%m/%d/%Y %H:%M:%S|MM/dd/yyyy HH:mm:ss|6|11"},
           {"%m/%d/%Y", "MM/DD/YYYY|%m/%d/%Y|MM/dd/yyyy|5|5"},
           {"DAY, DDD", "DAY, DDD|%A, %j|dddd, |-1|4"},
           {"MM/XX/YYYY", "MM//YYYY|%m//%Y|MM//yyyy|5|4"},
           {"hh12:mi AM", "hh12:mi AM|%#I:%#M %p|h:m tt|26|5"},
           {"MM\xFF\x80/MM", "/MM|/%m|/MM|5|2"},
           {nullptr, "|||-1|0"}}) {
    const CLGDateTimeFmtDef def(fmt);
    EXPECT_EQ(Summary(def), summary);
    CLGDateTimeFmtDef copy("YYYY");
    copy = def;
    EXPECT_EQ(Summary(copy), summary);
    EXPECT_EQ(Summary(CLGDateTimeFmtDef(&def.GetFmtElementList())), summary);
  }
}

TEST(DateTimeFmtDef, AnswersTheWholeFromItsTextsAndPartsFromItsCells) {
  for (const auto& [row, code, notation, text] :
       test::Rows<int, int, int, const char*>{{1, 5, DTF_DISP, "MM/DD/YYYY"},
                                              {1, 27, DTF_WIN, "MM/dd/yyyy hh:mm:ss tt"},
                                              {1, 7, DTF_DISP, ""},
                                              {1, 5, 9, "MM/DD/YYYY"},
                                              {10, 20, DTF_OLE, "%#c"},
                                              {18, 19, DTF_OLE, "%d-%b-%y"},
                                              {18, 26, DTF_DISP, "HH12:MI:SS AM"},
                                              {19, 5, DTF_OLE, "%A, %B %#d, %Y"},
                                              {19, 6, DTF_OLE, "%#c"}}) {
    EXPECT_EQ(Predefined(row).GetFmtDateTime(code, static_cast<DATETIME_FMTTYPE>(notation)), text)
        << row << " " << code;
  }
  // Only right ends are trimmed.
  const CLGDateTimeFmtDef time_first("HH24:MI:SS MM/DD/YYYY  AM");
  EXPECT_EQ(time_first.GetFmtDateTime(5, DTF_DISP), " MM/DD/YYYY");
  EXPECT_EQ(time_first.GetFmtDateTime(26, DTF_DISP), "HH24:MI:SS AM");

  CLGDateTimeFmtDef def = Predefined(12);
  def.SetFmtTitle("Short ");
  EXPECT_EQ(def.GetFmtDefTitle(), "Short 4/3/1993");
  def.SetFmtDateTime("changed", DTF_OLE);
  def.SetFmtDateTime("lost", static_cast<DATETIME_FMTTYPE>(-1));
  EXPECT_EQ(Summary(def), "MM/DD/YYYY|changed|MM/dd/yyyy|5|5");
  EXPECT_EQ(def.GetFmtMonth(DTF_OLE) + def.GetFmtAMPM(DTF_OLE), "%m");
}

TEST(DateTimeFmtDef, TranslatesUntilATextIsNoElement) {
  for (const auto& [from, source, is_valid, to, converted, result] :
       test::Rows<int, const char*, bool, int, bool, const char*>{
           {DTF_WIN, "M/d/yyyy h:mm:ss tt", true, DTF_DISP, true, "mm/dd/YYYY hh12:MI:SS AM"},
           {DTF_WIN, "HH:mm:ss.fff", false, DTF_DISP, true, "HH24:MI:SS"},
           {DTF_WIN, "ff.fHH", false, DTF_DISP, true, "HH24"},
           {DTF_WIN, "..fHH.ff.", false, DTF_DISP, true, "D.HH24."},
           {DTF_WIN, "dd'.'MM", false, DTF_DISP, false, ""},
           {DTF_WIN, "dddd, MMMM d", true, DTF_DISP, true, "DAY,D MONTH dd"},
           {DTF_DISP, "DAY, MONTH dd", true, DTF_WIN, false, "dddd,"},
           {DTF_OLE, "%#m/%q/%Y", false, DTF_DISP, false, "mm/"},
           {DTF_OLE, "%#c", false, DTF_DISP, false, ""},
           {DTF_DISP, "D-DDD", true, DTF_WIN, true, "-"},
           {DTF_DISP, "///", true, DTF_WIN, false, ""},
           {7, "MM", true, 8, true, "MM"},
           {DTF_DISP, "", false, DTF_OLE, false, ""}}) {
    const auto notation = static_cast<DATETIME_FMTTYPE>(from);
    CString text;
    EXPECT_EQ(CLGDateTimeFmtDef::GetDateTimeFmt(notation, source, static_cast<DATETIME_FMTTYPE>(to),
                                                text),
              converted)
        << source;
    EXPECT_EQ(text, result) << source;
    EXPECT_EQ(CLGDateTimeFmtDef::IsValidDateTimeFmt(source, notation), is_valid) << source;
    EXPECT_EQ(CLGDateTimeFmtDef::IsValidDateTimeFmt(source), is_valid) << "in any notation";
  }
}

TEST(DateTimeFmtDef, TakesTheUsersFormatFromTheLocale) {
  for (const auto& [date, time, texts] : test::Rows<const char*, const char*, const char*>{
           {"M/d/yyyy", "h:mm:ss tt",
            "mm/dd/YYYY|hh12:MI:SS AM|mm/dd/YYYY hh12:MI:SS AM|mm/dd/YYYY hh12:MI:SS AM|4"},
           {"yy'年'MM'月'dd'日'", "HH:mm", "!|HH24:MI|!|!|2"}}) {
    test::ScriptedLocale locale;
    locale.items = {{LOCALE_SSHORTDATE, date}, {LOCALE_STIMEFORMAT, time}};
    std::string all;
    for (const int code : {5, 26, 6, 19}) {
      CString text;
      if (!CLGDateTimeFmtDef::GetLocaleDateTimeFmt(code, text, DTF_DISP)) text += '!';
      all += std::string(text.View()) + "|";
    }
    EXPECT_EQ(all + (CLGDateTimeFmtDef::IsLocaleTwoDigitYear() ? "2" : "4"), texts);
  }
}

TEST(DateTimeFmtDef, TellsTheElementThatItDropped) {
  for (const auto& [fmt, element] : test::Rows<const char*, const char*>{{"MM/DD/YYYY HH24:MI", ""},
                                                                         {"%m/DD", ""},
                                                                         {"///", ""},
                                                                         {"MM/XX/ZZ", "XX"},
                                                                         {"MM/dd/yyyy", "yyyy"},
                                                                         {"nonsense", "nonsense"},
                                                                         {"", ""}}) {
    EXPECT_EQ(CLGDateTimeFmtDef::FindUnknownElement(fmt), element) << fmt;
  }
}

TEST(DateTimeFmtDefList, FindsByTheTextOfOneNotation) {
  CLGDateTimeFmtDefList list;
  for (int row = 1; row <= static_cast<int>(std::size(kPredefinedDateTimeFmts)); ++row) {
    list.AddTail(new CLGDateTimeFmtDef(Predefined(row)));
  }
  for (const auto& [fmt, row] : test::Rows<const char*, int>{{"MM/DD/YYYY", 11},
                                                             {"%m/%d/%Y", 11},
                                                             {"%I:%M:%S %p", 20},
                                                             {"hh24:mi:ss", 23},
                                                             {"%#c", 0},
                                                             {"MM/dd/yyyy", 0},
                                                             {"", 0}}) {
    EXPECT_EQ(list.FindDateTimeFmt(fmt), row == 0 ? nullptr : list[row - 1]) << fmt;
  }
  list.InsertDateTimeFmt("YYYY");
  list.InsertDateTimeFmt("YYYY");
  EXPECT_EQ(list.GetCount(), 25);
  EXPECT_EQ(list.FindDateTimeFmt("YYYY"), list[23]);
}

TEST(DateTimeFmtDictionary, HoldsItsCellsInOrder) {
  std::string all;
  const detail::DictionaryUse<CLGDateTimeFmtDictionary> dictionary;
  const detail::DictionaryUse<CDQDateTimeFmtDictionary> small;
  for (POSITION position = dictionary->GetFirstEntry(); position != nullptr;) {
    const CLGDateTimeFmtCell& cell = *dictionary->GetNext(position);
    const CString codes = cell.GetDateTimeElementFmt(DTF_DISP) + "|" +
                          cell.GetDateTimeElementFmt(DTF_OLE) + "|" +
                          cell.GetDateTimeElementFmt(DTF_WIN);
    all += std::to_string(cell.GetDateTimeElementType()) + "|" + std::string(codes.View()) + "|" +
           std::string((cell.GetDescription() + "|" + cell.GetExample()).View()) + "\n";
    // The small one has all that locales have, too.
    const auto* const other = small->GetEntry(cell.GetDetail(), DTF_DISP);
    CString small_codes;
    if (other != nullptr) {
      small_codes = other->GetDateTimeElementFmt(DTF_DISP) + "|" +
                    other->GetDateTimeElementFmt(DTF_OLE) + "|" +
                    other->GetDateTimeElementFmt(DTF_WIN);
    }
    EXPECT_TRUE(small_codes == codes || (other == nullptr && codes.Right(1) == "|")) << codes;
  }
  EXPECT_EQ(all,
            "1|mm|%#m|M|Single digit month of the year|7\n"
            "1|MM|%m|MM|Double digit month of the year|07\n"
            "1|MON|%b|MMM|Three letter abbrev. of the month|JAN\n"
            "1|MONTH|%B|MMMM|Full name of the month|MARCH\n"
            "0|dd|%#d|d|Single digit day of the month|6\n"
            "0|DD|%d|dd|Double digit day of the month|06\n"
            "9|DY|%a|ddd|Three letter abbrev day of the week|WED\n"
            "9|DAY|%A|dddd|Full name of the weekday|FRIDAY\n"
            "9|D|%w||Number of days in the week|3\n"
            "9|DDD|%j||Number of days in the year|234\n"
            "2|YY|%y|yy|Last two digits of the year|01\n"
            "2|YYYY|%Y|yyyy|Four digit year|2001\n"
            "3|hh12|%#I|h|Single digit hours of the day(1 to 12)|4\n"
            "3|HH12|%I|hh|Double digit hours of the day(1 to 12)|04\n"
            "3|hh24|%#H|H|Single digit hours of the day(0 to 23)|7\n"
            "3|HH24|%H|HH|Double digit hours of the day(0 to 23)|07\n"
            "4|mi|%#M|m|Single digit minutes of the hour|1\n"
            "4|MI|%M|mm|Double digit minutes of the hour|01\n"
            "5|ss|%#S|s|Single digit seconds of the minute|9\n"
            "5|SS|%S|ss|Double digit seconds of the minute|09\n"
            "6|AM|%p|tt|Display AM or PM|AM\n"
            "7|/|/|/|Forward slash separator|\n"
            "7|-|-|-|Dash separator|\n"
            "7|,|,|,|Comma separator|\n"
            "7|.|.|.|Period separator|\n"
            "7|;|;|;|Semicolon separator|\n"
            "7| | | |Blank space separator|\n"
            "8|:|:|:|Colon Time separator|\n");
}

TEST(DateTimeFmtDictionary, FindsTheFirstCellWithExactlyTheCode) {
  const detail::DictionaryUse<CLGDateTimeFmtDictionary> dictionary;
  // The notation -1 stands for all but that of locales.
  for (const auto& [code, notation, found] : test::Rows<const char*, int, const char*>{
           {"mm", -1, "Single digit month of the year"},
           {"%m", -1, "Double digit month of the year"},
           {"Mm", -1, "none"},
           {"hh", -1, "none"},
           {"", -1, "none"},
           {"hh", DTF_WIN, "Double digit hours of the day(1 to 12)"},
           {"mm", DTF_WIN, "Double digit minutes of the hour"},
           {"mm", 3, "Single digit month of the year"},
           {"%m", DTF_DISP, "none"},
           {"", DTF_WIN, "Number of days in the week"}}) {
    const CLGDateTimeFmtCell* const cell =
        notation < 0 ? dictionary->GetEntry(code)
                     : dictionary->GetEntry(code, static_cast<DATETIME_FMTTYPE>(notation));
    EXPECT_EQ(cell != nullptr ? cell->GetDescription() : "none", found) << code << " " << notation;
  }
}

TEST(DateTimeFmtCell, TakesAnyOtherNotationForDisplayAndWritesNothing) {
  CLGDateTimeFmtCell cell(DTT_DAY, "disp", "ole", "win", "text", "7");
  const auto unknown = static_cast<DATETIME_FMTTYPE>(3);
  cell.SetDateTimeElementFmt("x", unknown);
  EXPECT_EQ(cell.GetDateTimeElementFmt(unknown), "disp");
}

}  // namespace
}  // namespace dq
