#include "dqlib/datetime/date_time_fmt_def.h"

#include "dqlib/datetime/date_time_fmt_dictionary.h"
#include "dqlib/datetime/predefined_formats.h"
#include "dqlib/platform/checksum.h"
#include "tests/support/scripted_locale.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using Def = CLGDateTimeFmtDef;

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
    const Def def(fmt);
    EXPECT_EQ(Summary(def), summary);
    Def copy("YYYY");
    copy = def;
    EXPECT_EQ(Summary(copy), summary);
    EXPECT_EQ(Summary(Def(&def.GetFmtElementList())), summary);
  }
  Def full("");
  const Def copy(Def(5, "", "about", "example", "DD", "%d", "dd"));
  (full = copy).SetFmtTitle("Short ");
  EXPECT_EQ(full.GetFmtDefTitle() + full.GetFmtDiscription(), "Short exampleabout");
  EXPECT_EQ(full.GetDateTimeType(), 5);
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
  Def def = Predefined(12);
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
           {DTF_WIN, "fHH", false, DTF_DISP, false, ""},
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
    EXPECT_EQ(Def::GetDateTimeFmt(notation, source, static_cast<DATETIME_FMTTYPE>(to), text),
              converted)
        << source;
    EXPECT_EQ(text, result) << source;
    EXPECT_EQ(Def::IsValidDateTimeFmt(source, notation), is_valid) << source;
    EXPECT_EQ(Def::IsValidDateTimeFmt(source), is_valid) << "in any notation";
  }
}

TEST(DateTimeFmtDef, TakesTheUsersFormatFromTheLocale) {
  test::ScriptedLocale locale;
  for (const auto& [date, time, texts] : test::Rows<const char*, const char*, const char*>{
           {"M/d/yyyy", "h:mm:ss tt",
            "mm/dd/YYYY|hh12:MI:SS AM|mm/dd/YYYY hh12:MI:SS AM|mm/dd/YYYY hh12:MI:SS AM|4"},
           {"yy'年'MM'月'dd'日'", "HH:mm", "!|HH24:MI|!|!|2"}}) {
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

TEST(DateTimeFmtDef, TellsTheElementThatItDropped) {
  std::string found;
  for (const char* fmt : {"MM/DD/YYYY HH24:MI", "%m/DD", "///", "", "MM/XX/ZZ", "MM/dd/yyyy"}) {
    found += std::string(Def::FindUnknownElement(fmt).View()) + "|";
  }
  EXPECT_EQ(found, "||||XX|yyyy|");
}

TEST(DateTimeFmtDefList, FindsByTheTextOfOneNotation) {
  CLGDateTimeFmtDefList list;
  for (int row = 1; row <= 23; ++row) list.AddTail(new Def(Predefined(row)));
  list.InsertDateTimeFmt("YYYY");
  list.InsertDateTimeFmt("YYYY");
  std::string found;
  for (const char* fmt :
       {"MM/DD/YYYY", "%m/%d/%Y", "%I:%M:%S %p", "hh24:mi:ss", "%#c", "MM/dd/yyyy", "", "YYYY"}) {
    int row = 0;
    while (row < 25 && list[row] != list.FindDateTimeFmt(fmt)) ++row;
    found += std::to_string(row + 1) + " ";
  }
  EXPECT_EQ(found, "11 11 20 23 26 26 26 24 ") << "26 is none";
}

TEST(DateTimeFmtDictionary, HoldsItsCellsInOrder) {
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
}

TEST(DateTimeFmtDictionary, FindsTheFirstCellWithExactlyTheCode) {
  const detail::DictionaryUse<CLGDateTimeFmtDictionary> dictionary;
  const auto detail_of = [](const auto* cell) { return cell != nullptr ? cell->GetDetail() : "-"; };
  CString found;
  for (const char* code : {"mm", "%m", "Mm", "hh", ""}) {
    found += detail_of(dictionary->GetEntry(code)) + "|" +
             Texts([&](auto notation) {
               return detail_of(dictionary->GetEntry(code, notation));
             }).c_str();
  }
  CLGDateTimeFmtCell cell(DTT_DAY, "disp", "ole", "win", "text", "7");
  cell.SetDateTimeElementFmt("x", static_cast<DATETIME_FMTTYPE>(3));
  EXPECT_EQ(cell.GetDateTimeElementFmt(static_cast<DATETIME_FMTTYPE>(3)), "disp");
  EXPECT_EQ(found, "mm|mm|-|MI|MM|-|MM|-|-|-|-|-|-|-|-|HH12|-|-|-|D|");
}

}  // namespace
}  // namespace dq
