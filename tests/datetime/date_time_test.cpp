#include "dqlib/datetime/date_time.h"

#include <gtest/gtest.h>
#include <string>

#include "dqlib/datetime/date_time_cells.h"
#include "dqlib/datetime/predefined_formats.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/system_locale.h"

namespace dq {
namespace {

constexpr char kStandard[] = "%Y-%m-%d %H:%M:%S";

/// The value, "0" if the text can't be read, and "!" for each message.
std::string Read(const std::string& text, const char* fmt) {
  testing::ScriptedPrompts prompts;
  const CLGDateTimeFmtDef def(fmt);
  CLGDateTime value("1:02", nullptr);
  const int read = value.ParseDateTime(text.c_str(), &def);
  std::string result(value.Format(kStandard).View());
  if (read == 0 && result == "1899-12-30 01:02:00") result = "0";
  for (const testing::ShownBox& box : prompts.shown) {
    EXPECT_EQ(box, (testing::ShownBox{"The order of day and month is not correct. Data Editor will "
                                      "automatically change the order.",
                                      0, 44114}));
    result += '!';
  }
  return result;
}

TEST(DateTime, ReadsTokenByTokenAlongTheFormat) {
  std::string long_text = "04/03/1993";
  for (int i = 0; i < 2000; ++i) long_text += " x";
  constexpr char kUs[] = "MM/DD/YYYY HH12:MI:SS AM";
  for (const char* name : {"C", "de_DE", "ja_JP"}) {
    const test::SystemLocale locale(name);
    for (const auto& [text, fmt, value] : test::Rows<std::string, const char*, const char*>{
             {"04/03/1993 05:34:00 PM", kUs, "1993-04-03 17:34:00"},
             {"04/03/1993", kUs, "1993-04-03 00:00:00"},
             {long_text, "MM/DD/YYYY", "1993-04-03 00:00:00"},
             // Any separator may stand in the time.
             {"04/03/1993 05.34 09", "MM/DD/YYYY HH24:MI:SS", "1993-04-03 05:34:09"},
             {"3-apr-1993", "DD-MON-YYYY", "1993-04-03 00:00:00"},
             {"Fri, April 3, 93", "DAY, MONTH dd, YYYY", "1993-04-03 00:00:00"},
             {"1/2/3/2001", "DD/DD/MM/YYYY", "2001-03-02 00:00:00"},
             // A year of two digits, and one whose number has two.
             {"01/02/49", "MM/DD/YY", "2049-01-02 00:00:00"},
             {"01/02/50", "MM/DD/YY", "1950-01-02 00:00:00"},
             {"01/02/0099", "MM/DD/YYYY", "1999-01-02 00:00:00"},
             {"01/02/100", "MM/DD/YYYY", "0100-01-02 00:00:00"},
             // Month and day exchanged, or so it seems.
             {"25/12/2001", "MM/DD/YYYY", "2001-12-25 00:00:00!"},
             {"31/04/2001", "MM/DD/YYYY", "0!"},
             {"13/13/2001", "MM/DD/YYYY", "0"},
             {"025/12/2001", "MM/DD/YYYY", "0"},
             // The half day.
             {"12:00:00 AM", "HH12:MI:SS AM", "1899-12-30 00:00:00"},
             {"0:00:00 PM", "HH12:MI:SS AM", "1899-12-30 12:00:00"},
             {"13:00:00 AM", "HH12:MI:SS AM", "1899-12-30 13:00:00"},
             {"01:00:00 XM", "HH12:MI:SS AM", "0"},
             {"05:34 PM", "HH12:MI:SS AM", "0"},
             // No such date or time, too little of it, or no text of the format.
             {"02/30/2001", "MM/DD/YYYY", "0"},
             {"01/02/0000", "MM/DD/YYYY", "0"},
             {"24:00:00", "HH24:MI:SS", "0"},
             {"1993-04-03", "MM/DD/YYYY", "0"},
             {"04//1993", "MM/DD/YYYY", "0"},
             {"2001", "YYYY-MM-DD", "0"},
             // What only plain reading takes.
             {"01/002/2001", "MM/DD/YYYY", "0"},
             {"1/\t2/2001", "MM/DD/YYYY", "0"},
             {"005:34", "HH24:MI", "0"},
             {"05:34:00 P", "HH12:MI:SS AM", "0"},
             {"4-2001", "MM-YYYY", "0"},
             {"5 PM", "HH12 AM", "0"},
             {"04/\xFF\x80/1993", "MM/DD/YYYY", "0"},
             {"04/03/1993", "", "0"},
             {"", "MM/DD/YYYY", "0"}}) {
      EXPECT_EQ(Read(text, fmt), value) << name << " " << text << " by " << fmt;
    }
  }
}

TEST(DateTime, ReadsNamesOfTheLocaleThatHoldSeparators) {
  constexpr char kNamed[] = "DD-MON-YYYY HH12:MI:SS AM";
  constexpr char kFull[] = "DAY, MONTH dd, YYYY";
  for (const auto& [name, fmt, text, value] :
       test::Rows<const char*, const char*, const char*, const char*>{
           {"de_DE", "DD.MON.YYYY", "3.M\xC3\xA4r.1993", "1993-03-03 00:00:00"},
           {"fr_FR", kNamed, "03-oct.-1993 05:34:00 PM", "1993-10-03 17:34:00"},
           {"fr_FR", "DD-MON.YYYY", "03-oct.1993", "1993-10-03 00:00:00"},
           {"fr_FR", "DD/MON/YYYY", "03/octobre/1993", "1993-10-03 00:00:00"},
           {"fr_FR", "DY DD/MM/YYYY", "sam. 02/01/1993", "1993-01-02 00:00:00"},
           {"fr_FR", kNamed, "03-oct.1993 05:34:00 PM", "0"},
           {"mn_MN", kNamed, "03-11-р сар-1993 05:34:00 PM", "1993-11-03 17:34:00"},
           {"mn_MN", "MON 'DD' YYYY", "1-р сар 03 1993", "0"},
           {"sq_AL", kFull, "e shtunë, prill 3, 1993", "1993-04-03 00:00:00"},
           {"es_CR", "HH12:MI:SS AM", "05:34:00 p.m.", "1899-12-30 17:34:00"},
           {"es_CR", "HH12:MI:SS AM", "05:34:00 P.M.", "1899-12-30 17:34:00"},
           // Another month has that name in English.
           {"st_ZA", "DD-MON-YYYY", "03-Jan-1993", "1993-06-03 00:00:00"}}) {
    const test::SystemLocale locale(name);
    EXPECT_EQ(Read(text, fmt), value) << name << " " << text << " by " << fmt;
  }
}

TEST(DateTime, ReadsByTheFormatKeptOrByTheLocale) {
  const test::SystemLocale german("de_DE");
  CLGDateTimeFmtDef def("MM/DD/YYYY");
  CLGDateTime value("04/03/1993", &def);
  EXPECT_EQ(value.ParseDateTime(nullptr, &def), 0);
  EXPECT_EQ(value.Format(kStandard), "1993-04-03 00:00:00");
  EXPECT_EQ(value.ParseDateTime("05/03/1993", nullptr), 1);
  EXPECT_EQ(value.Format(kStandard), "1993-05-03 00:00:00");
  value.SetDateTimeFormat(nullptr);
  EXPECT_EQ(value.ParseDateTime("6.7.1993 1:02:03", nullptr), 1);
  EXPECT_EQ(value.Format(kStandard), "1993-07-06 01:02:03");
  EXPECT_EQ(value.ParseDateTime("x", nullptr), 0);
  EXPECT_EQ(value.Format(6, &def), "") << "of what is no value any more";
}

TEST(DateTime, ATwoDigitYearMovesTheValueTo1900) {
  CLGDateTimeFmtDef two("MM/DD/YY");
  CLGDateTimeFmtDef time("HH24:MI");
  CLGDateTimeFmtDef whole("YYYY-MM-DD");
  for (const auto& [text, code, def, printed, after] :
       test::Rows<const char*, int, CLGDateTimeFmtDef*, const char*, int>{
           {"2001-04-03", 5, &two, "04/03/01", 1901},
           {"2000-02-29", 6, &two, "", -1},
           {"2001-04-03", 26, &time, "00:00", 2001},
           {"2001-04-03", 6, nullptr, "", 2001}}) {
    CLGDateTime value(text, &whole);
    EXPECT_EQ(value.Format(code, def), printed) << text;
    EXPECT_EQ(value.GetYear(), after) << text;
  }
}

TEST(DateTime, PrintsPredefinedFormatsWithAllTheirDisagreements) {
  const test::SystemLocale locale("C");
  CLGDateTimeFmtDef standard("YYYY-MM-DD HH24:MI:SS");
  CLGDateTime value("1993-04-03 17:04:03", &standard);
  for (const auto& [row, whole, part] : test::Rows<int, const char*, const char*>{
           {18, "03-Apr-93", "03-Apr-93"},
           {19, "Saturday, April 03, 1993 17:04:03", "Saturday, April 3, 1993"},
           {21, "05:04 PM", "5:4:3 PM"},
           {22, "17:04", "17:04:03"},
           {23, "05:04:03 PM", "17:4:3"}}) {
    const PredefinedDateTimeFmt& fmt = kPredefinedDateTimeFmts[row - 1];
    CLGDateTimeFmtDef def(fmt.type, "", "", fmt.example, fmt.disp, fmt.ole, fmt.win);
    EXPECT_EQ(value.Format(6, &def), whole) << row;
    EXPECT_EQ(value.Format(fmt.type, &def), part) << row;
  }
}

TEST(DateTimeFmtTransfer, DropsWhatItDoesNotKnowAndNeverFails) {
  for (const auto& [source, from, to, target] :
       test::Rows<const char*, DATETIME_FMTTYPE, DATETIME_FMTTYPE, const char*>{
           {"MM-XX", DTF_DISP, DTF_OLE, "%m-"},
           {"M/d/yyyy  h:mm tt", DTF_WIN, DTF_DISP, "mm/dd/YYYY  hh12:MI AM"},
           {"DDD;D;DY", DTF_DISP, DTF_OLE, ";;%a"},
           {"any text", DTF_OLE, DTF_OLE, "any text"},
           {nullptr, DTF_OLE, DTF_WIN, ""}}) {
    char buffer[64];
    EXPECT_TRUE(CDQDateTimeFmtTransfer::ParseDateTimeFmt(source, from, buffer, to));
    EXPECT_STREQ(buffer, target);
  }
  const auto longest = static_cast<std::size_t>(CDQDateTimeFmtTransfer::kLongestGrowth);
  for (const detail::DateTimeCellRow& row : detail::kDateTimeCells) {
    for (const std::string from : {row.disp, row.ole, row.win}) {
      for (const std::string to : {row.disp, row.ole, row.win}) {
        EXPECT_TRUE(from.empty() || to.size() <= from.size() * longest) << from << " " << to;
      }
    }
  }
}

}  // namespace
}  // namespace dq
