#include "dqlib/datetime/date_time_fmt_dictionary.h"

#include <gtest/gtest.h>

#include "tests/support/rows.h"

namespace dq {
namespace {

template <typename Dictionary>
std::string Codes(const Dictionary& dictionary, DATETIME_FMTTYPE notation) {
  std::string codes;
  for (POSITION at = dictionary->GetFirstEntry(); at != nullptr;) {
    codes += std::string(dictionary->GetNext(at)->GetDateTimeElementFmt(notation).View()) + "|";
  }
  return codes;
}

TEST(DateTimeFmtDictionary, FindsTheFirstCellWithExactlyTheCode) {
  const detail::DictionaryUse<CLGDateTimeFmtDictionary> dictionary;
  const auto example = [](const CLGDateTimeFmtCell* cell) {
    return cell != nullptr ? std::string(cell->GetDescription().View()) : "(null)";
  };
  for (const auto& [code, found] :
       test::Rows<const char*, const char*>{{"MM", "Double digit month of the year"},
                                            {"mm", "Single digit month of the year"},
                                            {"%m", "Double digit month of the year"},
                                            {"D", "Number of days in the week"},
                                            {"DDD", "Number of days in the year"},
                                            {";", "Semicolon separator"},
                                            {"Mm", "(null)"},
                                            {"hh", "(null)"},
                                            {"yyyy", "(null)"},
                                            {"PM", "(null)"},
                                            {"", "(null)"}}) {
    EXPECT_EQ(example(dictionary->GetEntry(code)), found) << code;
  }
  for (const auto& [code, notation, found] : test::Rows<const char*, int, const char*>{
           {"hh", DTF_WIN, "Double digit hours of the day(1 to 12)"},
           {"mm", DTF_WIN, "Double digit minutes of the hour"},
           {"mm", DTF_DISP, "Single digit month of the year"},
           {"mm", 3, "Single digit month of the year"},
           {"%m", DTF_DISP, "(null)"},
           {"", DTF_WIN, "Number of days in the week"},
           {"", DTF_OLE, "(null)"}}) {
    EXPECT_EQ(example(dictionary->GetEntry(code, static_cast<DATETIME_FMTTYPE>(notation))), found)
        << code << " " << notation;
  }
}

TEST(DateTimeFmtDictionary, LivesFromTheFirstUseToTheLastRelease) {
  const std::string all =
      "mm|MM|MON|MONTH|dd|DD|DY|DAY|D|DDD|YY|YYYY|hh12|HH12|hh24|HH24|mi|MI|ss|SS|AM|"
      "/|-|,|.|;| |:|";
  for (const char* extra : {"new|", ""}) {
    const detail::DictionaryUse<CLGDateTimeFmtDictionary> first;
    EXPECT_EQ(Codes(first, DTF_DISP), all) << "built anew";
    CLGDateTimeFmtDictionary* second = CLGDateTimeFmtDictionary::Instance();
    if (*extra != '\0') {
      second->AddEntry(new CLGDateTimeFmtCell(DTT_YEAR, "new", nullptr, nullptr, "", ""));
    }
    second->Release();
    EXPECT_EQ(Codes(first, DTF_DISP), all + extra);
  }
}

TEST(DateTimeFmtDictionary, TheSmallerOneHasNoNumbersOfDays) {
  const detail::DictionaryUse<CDQDateTimeFmtDictionary> dictionary;
  EXPECT_EQ(Codes(dictionary, DTF_OLE),
            "%#m|%m|%b|%B|%#d|%d|%a|%A|%y|%Y|%#I|%I|%#H|%H|%#M|%M|%#S|%S|%p|/|-|,|.|;| |:|");
  EXPECT_EQ(Codes(dictionary, DTF_WIN),
            "M|MM|MMM|MMMM|d|dd|ddd|dddd|yy|yyyy|h|hh|H|HH|m|mm|s|ss|tt|/|-|,|.|;| |:|");
  EXPECT_EQ(dictionary->GetEntry("", DTF_WIN), nullptr);
}

TEST(DateTimeFmtCell, TakesAnyOtherNotationForDisplayAndWritesNothing) {
  CLGDateTimeFmtCell cell(DTT_DAY, "disp", "ole", "win", "text", "7");
  const auto unknown = static_cast<DATETIME_FMTTYPE>(3);
  cell.SetDateTimeElementFmt("x", unknown);
  EXPECT_EQ(cell.GetDateTimeElementFmt(unknown), "disp");
  cell.SetDateTimeElementFmt("x", DTF_WIN);
  const CLGDateTimeFmtCell& same = cell;
  cell = same;
  CLGDateTimeFmtCell copy(cell);
  cell.SetDateTimeElementFmt("y", DTF_WIN);
  EXPECT_EQ(copy.GetDateTimeElementFmt(DTF_WIN), "x");
  EXPECT_TRUE(copy.GetDetail() == "disp" && copy.GetDateTimeElementFmt(DTF_OLE) == "ole");
}

}  // namespace
}  // namespace dq
