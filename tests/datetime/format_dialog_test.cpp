#include "dqlib/datetime/format_dialog.h"

#include "tests/support/manual_clock.h"
#include "tests/support/own_settings.h"
#include "tests/support/recording_observer.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using detail::DateTimeFmtParts;
using Dlg = CLGDateTimeFormatDlg;

TEST(FormatBuilder, BuildsAFormatFromTheElementsOfAnother) {
  for (const auto& [from, code, built] : test::Rows<const char*, int, const char*>{
           {"MM/DD/YYYY HH12:MI:SS AM", 27, "MM/DD/YYYY HH12:MI:SS AM"},
           {"MM/DD/YYYY HH12:MI:SS AM", 19, "MM/DD/YYYY"},
           {"MM/DD/YYYY HH12:MI:SS AM", 26, "HH12:MI:SS AM"},
           {"MM/DD/YYYY HH12:MI:SS AM", 4, ""},
           {"HH24:MI:SS YYYY-MM.DD", 6, "HH24:MI:SS YYYY-MM.DD"},
           {"HH24:MI:SS AM", 26, "HH24:MI:SS"},
           {"hh24:MI:SS AM", 26, "hh24:MI:SS AM"},
           {"DAY, MONTH dd, YYYY HH24:MI", 6, "MONTH dd,YYYY HH24:MI:"},
           {"MM/YYYY HH24:MI:SS", 6, " HH24:MI:SS"},
           {"", 6, " ::"}}) {
    const DateTimeFmtParts parts =
        DateTimeFmtParts::Of(CLGDateTimeFmtDef(from).GetFmtElementList());
    EXPECT_EQ(parts.GenerateDateTimeFmt(code), built) << from << ' ' << code;
  }
  DateTimeFmtParts parts = DateTimeFmtParts::Of(CLGDateTimeFmtDef("DD.MM-YY").GetFmtElementList());
  parts.separators[DTT_MONTH] = "";
  for (const char* built :
       {"DD.MM YY", "DD.YY-MM", "MM DD.YY", "MM YY-DD", "YY-MM DD", "YY-DD.MM"}) {
    EXPECT_EQ(parts.GenerateDateFmt(), built);
    ++parts.date_order;
  }
}

class FormatDialog : public ::testing::Test {
 protected:
  /// Runs the dialog on Oracle's formats, with `fmt` the current one.
  int Run(const char* fmt, int code, std::function<void(platform::DialogView&)> answer) {
    format_.SetDateTimeFmt(fmt, CLGDateTimeFormat::DFK_CURRENT);
    prompts_.on_dialog = std::move(answer);
    return Dlg(&format_, code).DoModal();
  }
  static platform::DialogControl Find(platform::DialogView& view, int id) {
    for (auto& control : view.Controls()) {
      if (control.id == id) return control;
    }
    return {};
  }

  testing::ManualClock clock_;
  platform::ScopedPlatform scope_{test::With(&platform::Platform::clock, &clock_)};
  testing::ScriptedPrompts prompts_;
  CLGOracleDateTimeFormat format_{0, 0};
};

TEST_F(FormatDialog, ShowsWhatIsBuiltFourTimesASecondWithThePresentTime) {
  testing::RecordingObserver observer;
  format_.SetDateTimeFmt("DD-MM-YYYY HH24:MI:SS", CLGDateTimeFormat::DFK_CURRENT);
  Dlg dialog(&format_, 6);
  prompts_.on_dialog = [&](platform::DialogView& view) {
    const LONG small = dialog.GetPlace().Height();
    EXPECT_FALSE(view.Enter(Dlg::kDay, "dd")) << "hidden";
    ASSERT_TRUE(view.Press(Dlg::kCustomize));
    EXPECT_EQ(dialog.GetPlace().Height() - small, 414 - 130);
    EXPECT_FALSE(Find(view, Dlg::kAMPM).enabled);
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
  constexpr int kControls[] = {Dlg::kPredefined,    Dlg::kDay,      Dlg::kYearSeparator,
                               Dlg::kLastDateOrder, Dlg::kTimeDate, Dlg::kHour,
                               Dlg::kAMPM};
  for (const auto& [code, enabled] : {std::pair(5, "-+++--+"), {26, "-----++"}, {19, "-++++++"}}) {
    Run("MM/DD/YYYY HH12:MI:SS AM", code, [&, wanted = enabled](platform::DialogView& view) {
      view.Press(Dlg::kCustomize);
      std::string found;
      for (const int id : kControls) found += Find(view, id).enabled ? '+' : '-';
      EXPECT_EQ(found, wanted) << "but for hours, the marker is the hours' matter";
      view.Press(Dlg::kCustomize);
      EXPECT_TRUE(Find(view, Dlg::kPredefined).enabled);
    });
  }
}

TEST_F(FormatDialog, OkMakesTheFormatTheCurrentOneAndAddsWhatWasBuilt) {
  const char* const own = "dd/MM/YYYY hh24:MI:SS";
  const auto ok = [](platform::DialogView& view) { view.Press(IDOK); };
  const auto build = [](platform::DialogView& view) {
    view.Press(Dlg::kCustomize);
    view.Press(IDOK);
  };
  format_.InsertCustomizedDateTimeFmt(own);
  const int before = format_.GetCustomizedDateTimeFmtList().GetSize();
  EXPECT_EQ(Run(own, 6, build), IDOK);
  EXPECT_EQ(format_.GetCustomizedDateTimeFmtList().GetSize(), before + 1) << "though it is known";
  const auto choose = [&](platform::DialogView& view) {
    EXPECT_EQ(Find(view, Dlg::kPredefined).value, "1993-04-03 17:34:00");
    EXPECT_TRUE(view.Enter(Dlg::kPredefined, own)) << "it has no title";
    view.Press(IDOK);
  };
  EXPECT_EQ(Run("YYYY-MM-DD HH24:MI:SS", 6, choose), IDOK);
  const auto* const chosen = format_.GetDateTimeFmtPtr(CLGDateTimeFormat::DFK_CURRENT);
  EXPECT_EQ(chosen, format_.FindDateTimeFmt(own)) << "the format's own, not the dialog's copy";
  EXPECT_EQ(Run(own, 26, ok), IDCANCEL) << "the current one isn't among the times";
  EXPECT_EQ(Run(own, 7, ok), IDCANCEL);
  Dlg none(nullptr, 6);
  prompts_.on_dialog = [&none](platform::DialogView& view) {
    none.SendMessage(WM_COMMAND, Dlg::kCustomize, 0);
    view.Press(IDOK);
  };
  EXPECT_EQ(none.DoModal(), IDCANCEL);
}

}  // namespace
}  // namespace dq
