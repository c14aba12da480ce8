
#include "tests/support/system_locale.h"

/// Where `LOCPATH` is set, the C library's `newlocale` never frees its copy of it.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace dq::test {
namespace {

using Text = const char*;
constexpr char kStandard[] = "%Y-%m-%d %H:%M:%S";
constexpr char kIso[] = "YYYY-MM-DD HH24:MI:SS";

struct DateTime : testing::Test {
  /// The value, without a time of 0, or "0" if the text can't be read, and "!" for a message, by
  /// the format and by a conversion alike.
  std::string Read(const std::string& text, const char* fmt) {
    ScriptedPrompts prompts;
    const CLGDateTimeFmtDef def(fmt);
    CLGDateTime value("1:02", nullptr);
    const bool read = value.ParseDateTime(text.c_str(), &def) == 1;
    const CString printed = value.Format(kStandard);
    EXPECT_TRUE(read || printed == "1899-12-30 01:02:00") << "stays as it was";
    EXPECT_EQ(Converted(6, text, fmt, kIso), read ? "1:" + printed : CString("0:" + text));
    const std::string order = "The order of day and month is not correct. ";
    const ShownBox box{order + "Data Editor will automatically change the order.", 0, 44114};
    EXPECT_EQ(prompts.shown, std::vector(prompts.shown.empty() ? 0 : 2, box)) << "one for each";
    std::string told = read ? printed.View().data() : "0";
    if (told.ends_with(" 00:00:00")) told.resize(10);
    return told + (prompts.shown.empty() ? "" : "!");
  }

  /// The result of a conversion, ":" and what it made.
  CString Converted(int code, const CString& text, const char* in_fmt, const char* out_fmt) {
    CString out = "former";
    const int done = format_.FormatDateTime(code, text, out, in_fmt, out_fmt);
    return std::to_string(done) + ":" + out;
  }

  /// More formats are asked of it than it keeps prepared.
  CLGDB2DateTimeFormat format_{1, 8};
};

TEST_F(DateTime, ReadsTokenByTokenAlongTheFormat) {
  // Formats, texts with "=" and the value, or none where they can't be read, and the locale if
  // it is not any. What "Jan" is in English, it isn't everywhere.
  auto rows = Cases<3>(R"(DAY, MONTH dd, YYYY => Fri, April 3, 93=1993-04-03|?, 4 3, 1993=1993-04-03
      MM/DD/YYYY HH12:MI:SS AM => 04/03/1993 05:34:00 PM=1993-04-03 17:34:00|apr/3/1993=1993-04-03
      MM/DD/YYYY => 13/13/2001|32/12/2001|025/12/2001|13/001/2001||02/30/2001|0/1/2001|01/02/0000
      MM/DD/YYYY HH12:MI:SS AM => 4/3/93 5:34:0 pm=1993-04-03 17:34:00|April/03/1993=1993-04-03
      HH12:MI:SS AM => 12:00:00 AM=1899-12-30|0:0:0 am=1899-12-30|1:0:0 PM=1899-12-30 13:00:00
      DD-MON-YYYY HH12:MI:SS AM => 03-11-р сар-1993 05:34:00 PM=1993-11-03 17:34:00 => mn_MN
      HH12:MI:SS AM => 0:00:00 PM=1899-12-30 12:00:00|12:0:0=1899-12-30 12:00:00|05:34:00 P
      MM/DD/YYYY => 25/12/2001=2001-12-25!|13/1/2001=2001-01-13!|31/04/2001=0!|13/0/2001
      DD-MON-YYYY HH12:MI:SS AM => 03-oct.-1993 05:34:00 PM=1993-10-03 17:34:00 => fr_FR
      HH12:MI:SS AM => 13:00:00 AM=1899-12-30 13:00:00|01:00:00 XM|01:00:00 PN|05:34 PM
      MM/DD/YYYY => 01/02/0099=1999-01-02|01/02/100=0100-01-02|12/31/9999=9999-12-31
      MM/DD/YY => 01/02/49=2049-01-02|01/02/50=1950-01-02|01/02/1=2001-01-02 ;; XX => 04/03/1993
      MM/DD/YYYY => 1993-04-03|04//1993|1/2|1/2/10000|01/002/2001|x/3/1993
      DAY, MONTH dd, YYYY => e shtunë, prill 3, 1993=1993-04-03 => sq_AL
      MM/DD/YYYY HH24:MI:SS => 04/03/1993 05.34 09=1993-04-03 05:34:09 ;; HH12 AM => 5 PM|04/03/1993
      DD-MON-YYYY HH12:MI:SS AM => 03-oct.1993 05:34:00 PM => fr_FR
      HH12:MI:SS AM => 05:34:00 P.M.=1899-12-30 17:34:00 => es_CR
      HH24:MI:SS => 24:00:00|23:60:00|23:59:60|10|005:34|1/:2
      DY DD/MM/YYYY => sam. 02/01/1993=1993-01-02 => fr_FR ;; DD/DD/MM/YYYY => 1/2/3/2001=2001-03-02
      DD/MON/YYYY => 03/octobre/1993=1993-10-03 => fr_FR ;; DD-MON-YYYY => 3-apr-1993=1993-04-03
      MM/DD/YYYY HH12:MI:SS AM => 04/03/1993=1993-04-03 ;; MON 'DD' YYYY => 1-р сар 03 1993 => mn_MN
      DD-MON.YYYY => 03-oct.1993=1993-10-03 => fr_FR ;; YYYY-MM-DD => 2001|2001-1|4-2001|2001-<-03
      DD-MON-YYYY => 03-Jan-1993=1993-06-03 => st_ZA
      DD.MON.YYYY => 3.Mär.1993=1993-03-03 => de_DE)");
  const std::set<std::string> any = {"C", "de_DE", "ja_JP"};
  std::string long_text = "04/03/1993";
  for (int i = 0; i < 2000; ++i) long_text += " x";
  rows.push_back({"MM/DD/YYYY", long_text + "=1993-04-03|1/\t2/2001|04/\xFF\x80/1993", ""});
  for (const char* name : {"C", "de_DE", "ja_JP", "fr_FR", "mn_MN", "sq_AL", "es_CR", "st_ZA"}) {
    const SystemLocale system(name);
    for (const auto& [fmt, texts, locale] : rows) {
      if (locale.empty() ? !any.contains(name) : locale != name) continue;
      std::istringstream all(texts);
      for (std::string text; std::getline(all, text, '|');) {
        const std::size_t end = std::min(text.find('='), text.size());
        const std::string value = end < text.size() ? text.substr(end + 1) : "0";
        EXPECT_EQ(Read(text.substr(0, end), fmt.c_str()), value) << name << text << fmt;
      }
    }
  }
}

TEST_F(DateTime, ReadsByTheFormatKeptOrByTheLocale) {
  const SystemLocale german("de_DE");
  CLGDateTimeFmtDef def("MM/DD/YYYY");
  CLGDateTime value("04/03/1993", &def);
  const auto read = [&](const char* text, CLGDateTimeFmtDef* by) {
    const int done = value.ParseDateTime(text, by);
    return std::to_string(done) + " " + value.Format(kStandard);
  };
  EXPECT_EQ(read(nullptr, &def), "0 1993-04-03 00:00:00");
  EXPECT_EQ(read("05/03/1993", nullptr), "1 1993-05-03 00:00:00");
  value.SetDateTimeFormat(nullptr);
  EXPECT_EQ(read("6.7.1993 1:02:03", nullptr), "1 1993-07-06 01:02:03");
  EXPECT_EQ(value.ParseDateTime("x", nullptr), 0);
  EXPECT_EQ(value.Format(6, &def), "") << "of what is no value any more";
}

TEST_F(DateTime, ATwoDigitYearMovesTheValueTo1900) {
  const SystemLocale locale("C");
  CLGDateTimeFmtDef whole("YYYY-MM-DD");
  for (const auto& [text, fmt, type, printed, after] : Cases<5>(R"(2001-04-03 => => 6 => => 2001
      2001-04-03 => DY MM/DD/YY => 6 => Wed 04/03/01 => 1901
      2000-02-29 => DY MM/DD/YY => 6 => => -1
      2001-04-03 => DY MM/DD/YY => 26 => Tue 04/03/01 => 2001
      2001-04-03 => DY MM/DD/YYYY => 6 => Tue 04/03/2001 => 2001)")) {
    CLGDateTimeFmtDef def(fmt.c_str());
    def.SetDateTimeType(std::stoi(type));
    CLGDateTime value(text.c_str(), &whole);
    EXPECT_EQ(value.Format(6, fmt.empty() ? nullptr : &def).View(), printed) << text;
    EXPECT_EQ(value.GetYear(), std::stoi(after)) << text;
    // No format of a conversion is stored as a time's.
    const CString converted = type == "26" ? "Wed 04/03/01" : printed.c_str();
    EXPECT_EQ(Converted(6, text, "YYYY-MM-DD", fmt.c_str()), "1:" + converted);
  }
}

TEST_F(DateTime, PrintsPredefinedFormatsWithAllTheirDisagreements) {
  const SystemLocale locale("C");
  CLGDateTimeFmtDef standard("YYYY-MM-DD HH24:MI:SS");
  CLGDateTime value("1993-04-03 17:04:03", &standard);
  CString all;
  for (const int row : {17, 18, 20, 21, 22}) {
    CLGDateTimeFmtDef* const def = format_.GetPredefinedDateTimeFmtList()[row];
    all += value.Format(6, def) + "|" + value.Format(def->GetDateTimeType(), def) + "|";
  }
  EXPECT_EQ(all,
            "03-Apr-93|03-Apr-93|Saturday, April 03, 1993 17:04:03|Saturday, April 3, 1993|"
            "05:04 PM|5:4:3 PM|17:04|17:04:03|05:04:03 PM|17:4:3|");
}

TEST_F(DateTime, SeesElementsThatAreAddedAndDropsTheDictionary) {
  const SystemLocale locale("C");
  // A year of two letters counts as one of two digits.
  for (const std::string expected : {"01/", "01/1993y", "01/"}) {
    // Is used as long as the format isn't as it was.
    CLGDateTimeFmtDictionary& used = *CLGDateTimeFmtDictionary::Instance();
    if (expected.ends_with('y')) {
      used.AddEntry(new CLGDateTimeFmtCell(DTT_YEAR, "QQ", "%Yy", nullptr, "", ""));
      used.AddEntry(new CLGDateTimeFmtCell(DTT_DATESEP, "~~", "~~", nullptr, "", ""));
    }
    EXPECT_EQ(Converted(6, "1993-01-02", "YYYY-MM-DD", "MM/QQ"), "1:" + CString(expected));
    EXPECT_EQ(Converted(6, "1993~01-02", "YYYY/~~/MM-DD", "MM/QQ"), "0:1993~01-02");
    used.Release();
  }
}

TEST_F(DateTime, AMessageMayLeadToOtherConversions) {
  ScriptedPrompts prompts;
  prompts.on_box = [this] {
    for (int code = 0; code < 20; ++code) Converted(code, "1/2/2001", "MM/DD/YYYY", "YYYY");
  };
  EXPECT_EQ(Converted(6, "25/12/2001", "MM/DD/YYYY", "YYYY-MM-DD"), "1:2001-12-25");
  EXPECT_EQ(prompts.shown.size(), 1U);
}

TEST(DateTimeFmtTransfer, DropsWhatItDoesNotKnowAndNeverFails) {
  for (const auto& [text, from, to, target] : Rows<Text, DATETIME_FMTTYPE, DATETIME_FMTTYPE, Text>{
           {"MM-XX", DTF_DISP, DTF_OLE, "%m-"},
           {"M/d/yyyy  h:mm tt", DTF_WIN, DTF_DISP, "mm/dd/YYYY  hh12:MI AM"},
           {"h;h", DTF_WIN, DTF_DISP, "hh12;hh12"},
           {"DDD;D;DY", DTF_DISP, DTF_OLE, ";;%a"},
           {"any text", DTF_OLE, DTF_OLE, "any text"},
           {nullptr, DTF_OLE, DTF_WIN, ""}}) {
    char buffer[64];
    EXPECT_TRUE(CDQDateTimeFmtTransfer::ParseDateTimeFmt(text, from, buffer, to));
    EXPECT_STREQ(buffer, target);
  }
  CDQDateTimeFmtDictionary& dictionary = *CDQDateTimeFmtDictionary::Instance();
  dictionary.AddEntry(new CDQDateTimeFmtCell("QQ", "%q", "q"));
  dictionary.Release();
  const detail::DictionaryUse<CDQDateTimeFmtDictionary> next;
  EXPECT_EQ(next->GetEntry("QQ", DTF_DISP), nullptr) << "it went with the last use";
}

}  // namespace
}  // namespace dq::test
