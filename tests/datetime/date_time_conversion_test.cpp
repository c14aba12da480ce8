#include "dqlib/datetime/date_time_conversion.h"

#include <chrono>
#include <ctime>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "dqlib/datetime/date_time_cells.h"
#include "dqlib/datetime/date_time_fmt_dictionary.h"
#include "dqlib/datetime/date_time_format.h"
#include "dqlib/datetime/predefined_formats.h"
#include "tests/support/plain_date_conversion.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/system_locale.h"

/// Where `LOCPATH` is set, the C library's `newlocale` never frees its copy of it.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace dq {
namespace {

/// Formats and values for them, good and bad.
class Generator {
 public:
  int Below(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

  std::string Format() {
    std::string fmt;
    for (int left = Below(9); left > 0; --left) {
      const int row = Below(30);
      if (row >= 28) {
        fmt += row == 28 ? "XX" : "";
      } else {
        fmt += Below(8) == 0 ? detail::kDateTimeCells[row].ole : detail::kDateTimeCells[row].disp;
      }
      if (Below(4) != 0) fmt += kSeparators[Below(7)];
    }
    return fmt;
  }

  std::string Value(const char* fmt, int code) {
    std::string text;
    const CLGDateTimeFmtDef def(CLGDateTimeFmtDef(fmt).GetFmtDateTime(code, DTF_DISP));
    CConstPtrArrayIterT<CLGDateTimeFmtCell> walk(def.GetFmtElementList());
    while (const CLGDateTimeFmtCell* cell = walk.Next()) text += Element(*cell);
    for (int left = Below(3) == 0 ? Below(4) : 0; left > 0 && !text.empty(); --left) {
      const auto at = static_cast<std::size_t>(Below(static_cast<int>(text.size())));
      if (Below(3) == 0) {
        text.resize(at);
      } else {
        text[at] = kBytes[static_cast<std::size_t>(Below(static_cast<int>(kBytes.size())))];
      }
    }
    return text;
  }

 private:
  static constexpr char kSeparators[] = " /-,.;:";
  static constexpr std::string_view kBytes{" /-,.;:0129aAmMpP\t\xFF\0", 21};

  std::string Element(const CLGDateTimeFmtCell& cell) {
    static const std::vector<std::string> months = {"Apr",        "MAY", "december", "Dez",
                                                    "M\xC3\xA4r", "4月", "Mayo",     ""};
    static const std::vector<std::string> markers = {"AM", "pm", "PM", "午後", "XM", ""};
    switch (cell.GetDateTimeElementType()) {
      case DTT_DATESEP:
      case DTT_TIMESEP:
        return std::string(cell.GetDetail().View());
      case DTT_AMPM:
        return markers[static_cast<std::size_t>(Below(6))];
      case DTT_YEAR:
        return Below(2) == 0 ? Number(100) : Number(10'100);
      case DTT_MONTH:
        return Below(3) == 0 ? months[static_cast<std::size_t>(Below(8))] : Number(14);
      case DTT_DAY:
        return Number(33);
      default:
        return Number(Below(3) == 0 ? 62 : 25);
    }
  }

  std::string Number(int count) {
    const std::string text = std::to_string(Below(count));
    return text.size() < 2 && Below(2) == 0 ? "0" + text : text;
  }

  std::mt19937 random_{20010403};
};

TEST(DateTimeConversion, DoesWhatThePlainWalkDoes) {
  Generator generator;
  int converted = 0;
  for (const char* name : {"C", "de_DE", "ja_JP"}) {
    const test::ScopedVariable zone("TZ", "Asia/Kolkata");
    const test::SystemLocale locale(name);
    CLGDB2DateTimeFormat format(1, 8);
    for (int pair = 0; pair < 700; ++pair) {
      const int code = std::vector{
          6, 5, 26, 19, 20, 7}[static_cast<std::size_t>(generator.Below(pair % 2 == 0 ? 1 : 6))];
      const std::string in_fmt =
          pair % 3 == 0 ? kPredefinedDateTimeFmts[generator.Below(23)].disp : generator.Format();
      const std::string out_fmt = generator.Format();
      for (int count = 0; count < 6; ++count) {
        const std::string in = generator.Value(in_fmt.c_str(), code);
        CString expected;
        testing::ScriptedPrompts plain_prompts;
        const int result = test::ConvertPlainly(code, in, expected, in_fmt, out_fmt);
        testing::ScriptedPrompts prompts;
        CString out = "former";
        ASSERT_EQ(format.FormatDateTime(code, in, out, in_fmt, out_fmt), result)
            << in << " | " << in_fmt << " | " << out_fmt << " | " << code;
        ASSERT_EQ(out, expected) << in << " | " << in_fmt << " | " << out_fmt << " | " << code;
        ASSERT_EQ(prompts.shown, plain_prompts.shown) << in << " | " << in_fmt;
        converted += result;
      }
    }
  }
  EXPECT_GT(converted, 1500);
}

TEST(DateTimeConversion, SeesElementsThatAreAddedAndDropsTheDictionary) {
  const test::SystemLocale locale("C");
  CLGDB2DateTimeFormat format(1, 8);
  for (const char* expected : {"01/", "01/1993y", "01/"}) {
    // Lives as long as the format isn't as it was.
    std::unique_ptr<detail::DictionaryUse<CLGDateTimeFmtDictionary>> use;
    if (std::string(expected).ends_with('y')) {
      use = std::make_unique<detail::DictionaryUse<CLGDateTimeFmtDictionary>>();
      CLGDateTimeFmtDictionary* const dictionary = CLGDateTimeFmtDictionary::Instance();
      dictionary->AddEntry(new CLGDateTimeFmtCell(DTT_YEAR, "QQ", "%Yy", "", "", ""));
      dictionary->Release();
    }
    CString out;
    EXPECT_EQ(format.FormatDateTime(6, "1993-01-02", out, "YYYY-MM-DD", "MM/QQ"), 1);
    // A year of two letters counts as one of two digits.
    EXPECT_EQ(out, expected);
  }
}

TEST(DateTimeConversion, AMessageMayLeadToOtherConversions) {
  struct Prompts : testing::ScriptedPrompts {
    int Show(std::string_view caption, std::string_view text, UINT type, UINT help_id) override {
      for (int code = 0; code < 20; ++code) {
        CString out;
        format->FormatDateTime(code, "1/2/2001", out, "MM/DD/YYYY", "YYYY");
      }
      return ScriptedPrompts::Show(caption, text, type, help_id);
    }
    CLGDateTimeFormat* format = nullptr;
  } prompts;
  CLGDB2DateTimeFormat format(1, 8);
  prompts.format = &format;
  CString out;
  EXPECT_EQ(format.FormatDateTime(6, "25/12/2001", out, "MM/DD/YYYY", "YYYY-MM-DD"), 1);
  EXPECT_EQ(out, "2001-12-25");
  EXPECT_EQ(prompts.shown.size(), 1U);
}

/// A predefined format, and what the C library, which knows nothing of it, prints it by.
struct Predefined {
  int row;
  const char* c_format;
};

constexpr Predefined kFourDigits[] = {{1, "%m/%d/%04Y %I:%M:%S %p"},
                                      {2, "%-m/%-d/%04Y %-I:%M:%S %p"},
                                      {4, "%04Y-%m-%d %I:%M:%S %p"},
                                      {5, "%04Y-%-m-%-d %-I:%M:%S %p"},
                                      {6, "%04Y-%m-%d %H:%M:%S"},
                                      {7, "%d-%b-%04Y %I:%M:%S %p"},
                                      {8, "%-d-%b-%04Y %-I:%M:%S %p"},
                                      {10, "%A, %B %-d, %04Y %H:%M:%S"},
                                      {11, "%m/%d/%04Y"},
                                      {12, "%m/%d/%04Y"},
                                      {14, "%04Y-%m-%d"},
                                      {15, "%04Y-%-m-%-d"},
                                      {16, "%d-%b-%04Y"},
                                      {17, "%-d-%b-%04Y"},
                                      {19, "%A, %B %-d, %04Y"}};
constexpr Predefined kTwoDigits[] = {
    {3, "%m/%d/%y %I:%M:%S %p"}, {9, "%d-%b-%y %I:%M:%S %p"}, {13, "%m/%d/%y"}, {18, "%d-%b-%y"}};

CString Print(const char* c_format, const std::tm& parts) {
  char text[100];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  return {text, static_cast<int>(std::strftime(text, sizeof text, c_format, &parts))};
#pragma GCC diagnostic pop
}

/// Days so many apart from a standard format to the predefined one and back.
void GoThroughCalendar(const Predefined& predefined, int first_year, int last_year, int step,
                       bool c_names) {
  CLGDB2DateTimeFormat format(1, 8);
  const PredefinedDateTimeFmt& fmt = kPredefinedDateTimeFmts[predefined.row - 1];
  const std::chrono::sys_days end(std::chrono::year(last_year) / 12 / 31);
  int seconds = 0;
  // Formats begin on days of their own.
  for (auto day = std::chrono::sys_days(std::chrono::year(first_year) / 1 / 1) +
                  std::chrono::days(predefined.row % step);
       day <= end; day += std::chrono::days(step), seconds = (seconds + 40'009) % 86'400) {
    const std::chrono::year_month_day date(day);
    std::tm parts{};
    parts.tm_year = static_cast<int>(date.year()) - 1900;
    parts.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    parts.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    parts.tm_wday = static_cast<int>(std::chrono::weekday(day).c_encoding());
    parts.tm_hour = seconds / 3600;
    parts.tm_min = seconds / 60 % 60;
    parts.tm_sec = seconds % 60;
    const CString standard_fmt = "YYYY-MM-DD HH24:MI:SS";
    const CString standard = Print(fmt.type == 5 ? "%04Y-%m-%d" : "%04Y-%m-%d %H:%M:%S", parts);
    CString text;
    CString back;
    format.FormatDateTime(fmt.type, standard, text, standard_fmt, fmt.disp);
    if (c_names) {
      const CString expected = Print(predefined.c_format, parts);
      // 1900 has no such day.
      const bool missing = text == "" && standard.View().starts_with("2000-02-29") &&
                           std::string(predefined.c_format).find("%y") != std::string::npos;
      ASSERT_TRUE(text == expected || missing) << text << " not " << expected;
      text = expected;
    }
    format.FormatDateTime(fmt.type, text, back, fmt.disp, standard_fmt);
    ASSERT_EQ(back, standard) << text << ", predefined format " << predefined.row;
  }
}

TEST(DateTimeConversion, TakesPredefinedFormatsThereAndBack) {
  const test::ScopedVariable zone("TZ", "America/St_Johns");
  {
    const test::SystemLocale locale("C");
    for (const Predefined& fmt : kFourDigits) GoThroughCalendar(fmt, 100, 9999, 101, true);
    for (const Predefined& fmt : kTwoDigits) GoThroughCalendar(fmt, 1950, 2049, 1, true);
  }
  for (const char* name : {"de_DE", "ja_JP"}) {
    const test::SystemLocale locale(name);
    for (const Predefined& fmt : kFourDigits) GoThroughCalendar(fmt, 100, 9999, 997, false);
  }
}

}  // namespace
}  // namespace dq
