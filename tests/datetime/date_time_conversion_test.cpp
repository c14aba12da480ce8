#include "dqlib/datetime/date_time_conversion.h"

#include <array>
#include <chrono>
#include <ctime>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <regex>
#include <string>
#include <string_view>

#include "dqlib/datetime/date_time_cells.h"
#include "dqlib/datetime/date_time_fmt_dictionary.h"
#include "dqlib/datetime/date_time_format.h"
#include "dqlib/datetime/predefined_formats.h"
#include "tests/support/plain_date_conversion.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/system_locale.h"

/// Where `LOCPATH` is set, the C library's `newlocale` never frees its copy of it.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace dq {
namespace {

/// Formats and values for them, good and bad.
class Generator {
 public:
  std::size_t Below(std::size_t count) { return random_() % count; }
  const auto& Pick(const auto& list) { return list[Below(std::size(list))]; }

  std::string Format() {
    std::string fmt;
    for (std::size_t left = Below(9); left > 0; --left) {
      const detail::DateTimeCellRow& row = Pick(detail::kDateTimeCells);
      fmt += Below(20) == 0 ? "XX" : Below(8) == 0 ? row.ole : row.disp;
      if (Below(4) != 0) fmt += kBytes[Below(7)];
    }
    return fmt;
  }

  std::string Value(const std::string& fmt, int code) {
    std::string text;
    const CLGDateTimeFmtDef def(CLGDateTimeFmtDef(fmt.c_str()).GetFmtDateTime(code, DTF_DISP));
    CConstPtrArrayIterT<CLGDateTimeFmtCell> walk(def.GetFmtElementList());
    while (const CLGDateTimeFmtCell* cell = walk.Next()) text += Element(*cell);
    for (std::size_t left = Below(3) == 0 ? Below(4) : 0; left > 0 && !text.empty(); --left) {
      const std::size_t at = Below(text.size());
      text[at] = Pick(kBytes);
      if (Below(3) == 0) text.resize(at);
    }
    return text;
  }

 private:
  static constexpr std::string_view kBytes{" /-,.;:0129aAmMpP\t\xFF\0", 21};
  static constexpr std::string_view kMonths[] = {"Apr",        "MAY", "december", "Dez",
                                                 "M\xC3\xA4r", "4月", "Mayo",     ""};
  static constexpr std::string_view kMarkers[] = {"AM", "pm", "PM", "午後", "XM", ""};

  std::string Element(const CLGDateTimeFmtCell& cell) {
    switch (cell.GetDateTimeElementType()) {
      case DTT_DATESEP:
      case DTT_TIMESEP:
        return std::string(cell.GetDetail().View());
      case DTT_AMPM:
        return std::string(Pick(kMarkers));
      case DTT_YEAR:
        return Number(Below(2) == 0 ? 100 : 10'100);
      case DTT_MONTH:
        return Below(3) == 0 ? std::string(Pick(kMonths)) : Number(14);
      default:
        return Number(Below(3) == 0 ? 62 : 25);
    }
  }

  std::string Number(std::size_t count) {
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
      const int code = pair % 2 == 0 ? 6 : generator.Pick(std::array{6, 5, 26, 19, 20, 7});
      const std::string in_fmt =
          pair % 3 == 0 ? generator.Pick(kPredefinedDateTimeFmts).disp : generator.Format();
      const std::string out_fmt = generator.Format();
      for (int count = 0; count < 6; ++count) {
        const std::string in = generator.Value(in_fmt, code);
        SCOPED_TRACE(in + " | " + in_fmt + " | " + out_fmt + " | " + std::to_string(code));
        CString expected;
        testing::ScriptedPrompts plain_prompts;
        const int result = test::ConvertPlainly(code, in, expected, in_fmt, out_fmt);
        testing::ScriptedPrompts prompts;
        CString out = "former";
        ASSERT_EQ(format.FormatDateTime(code, in, out, in_fmt, out_fmt), result);
        ASSERT_EQ(out, expected);
        ASSERT_EQ(prompts.shown, plain_prompts.shown);
        converted += result;
      }
    }
  }
  EXPECT_GT(converted, 1500);
}

TEST(DateTimeConversion, SeesElementsThatAreAddedAndDropsTheDictionary) {
  const test::SystemLocale locale("C");
  CLGDB2DateTimeFormat format(1, 8);
  // A year of two letters counts as one of two digits.
  for (const std::string expected : {"01/", "01/1993y", "01/"}) {
    // Is used as long as the format isn't as it was.
    CLGDateTimeFmtDictionary* used = nullptr;
    if (expected.ends_with('y')) {
      used = CLGDateTimeFmtDictionary::Instance();
      used->AddEntry(new CLGDateTimeFmtCell(DTT_YEAR, "QQ", "%Yy", nullptr, "", ""));
    }
    CString out;
    EXPECT_EQ(format.FormatDateTime(6, "1993-01-02", out, "YYYY-MM-DD", "MM/QQ"), 1);
    EXPECT_EQ(out, expected);
    if (used != nullptr) used->Release();
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

/// The predefined format as the C library, which knows nothing of it, takes it.
std::string ForLibrary(const PredefinedDateTimeFmt& fmt) {
  const std::string day = "%A, %B %#d, %Y";
  std::string text = fmt.ole != std::string("%#c") ? fmt.ole : fmt.type == 5 ? day : day + " %T";
  text = std::regex_replace(text, std::regex("#"), "-");
  return std::regex_replace(text, std::regex("%Y"), "%04Y");
}

std::string Print(const std::string& format, std::time_t time) {
  char text[100];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  return {text, std::strftime(text, sizeof text, format.c_str(), std::gmtime(&time))};
#pragma GCC diagnostic pop
}

std::time_t FirstSecond(int year) {
  using namespace std::chrono;
  return sys_seconds(sys_days(std::chrono::year(year) / 1 / 1)).time_since_epoch().count();
}

TEST(DateTimeConversion, TakesPredefinedFormatsThereAndBack) {
  const test::ScopedVariable zone("TZ", "America/St_Johns");
  const CString standard_fmt = "YYYY-MM-DD HH24:MI:SS";
  CLGDB2DateTimeFormat format(1, 8);
  for (const std::string name : {"C", "de_DE", "ja_JP"}) {
    const test::SystemLocale locale(name);
    for (const PredefinedDateTimeFmt& fmt : kPredefinedDateTimeFmts) {
      const std::string c_format = ForLibrary(fmt);
      const bool two_digits = c_format.find("%y") != c_format.npos;
      if (fmt.type == 26 || (two_digits && name != "C")) continue;
      const std::time_t end = FirstSecond(two_digits ? 2050 : 10'000);
      // No time of day comes soon again.
      const std::time_t step = two_digits ? 80'009 : name == "C" ? 8'766'409 : 86'140'817;
      for (std::time_t time = FirstSecond(two_digits ? 1950 : 100); time < end; time += step) {
        const CString standard = Print(fmt.type == 5 ? "%04Y-%m-%d" : "%04Y-%m-%d %T", time);
        CString text;
        format.FormatDateTime(fmt.type, standard, text, standard_fmt, fmt.disp);
        if (name == "C") {
          const CString expected = Print(c_format, time);
          // 1900 has no such day.
          const bool missing = two_digits && standard.View().starts_with("2000-02-29");
          ASSERT_EQ(text, missing ? "" : expected);
          text = expected;
        }
        CString back;
        format.FormatDateTime(fmt.type, text, back, fmt.disp, standard_fmt);
        ASSERT_EQ(back, standard) << text << " by " << fmt.disp;
      }
    }
  }
}

}  // namespace
}  // namespace dq
