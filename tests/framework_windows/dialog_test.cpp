#include "dqlib/framework/windows/dialog.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>

#include "dqlib/framework/controls/button.h"
#include "dqlib/framework/controls/dialog_exchange.h"
#include "dqlib/framework/controls/edit.h"
#include "tests/support/main_window.h"
#include "tests/support/recording_observer.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_prompts.h"

namespace dq {
namespace {

constexpr const char kTemplate[] =
    "caption \"Go To\"\n"
    "size 200 80\n"
    "text -1 \"&Line Number:\" 8 8 60 14\n"
    "edit 100 \"\" 72 8 60 14\n"
    "check 101 \"&Wrap\" 8 24 60 14\n"
    "button 102 \"&More\" 72 24 60 14\n"
    "edit 103 \"\" 72 40 60 14 disabled\n"
    "defbutton 1 \"OK\" 8 56 50 14\n"
    "button 2 \"Cancel\" 72 56 50 14\n";

/// A dialog with a number from 1 to 20 and a mark.
struct GotoDlg : CDialog {
  explicit GotoDlg(CWnd* parent = nullptr) {
    InitModalIndirect(ReadDialogTemplate(kTemplate).value(), parent);
  }
  ~GotoDlg() override { DestroyWindow(); }

  BOOL OnInitDialog() override {
    CDialog::OnInitDialog();
    on_init();
    return 1;
  }
  void DoDataExchange(CDataExchange* exchange) override {
    ++exchanged;
    EXPECT_FALSE(UpdateData(0)) << "an exchange doesn't begin within another";
    DDX_Control(exchange, 100, edit);
    DDX_Text(exchange, 100, line);
    DDV_MinMaxInt(exchange, line, 1, 20);
    DDX_Check(exchange, 101, wrap);
  }
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
    static constexpr MessageMapEntry kEntries[] = {CommandEntry<&GotoDlg::OnMore>(102)};
    return CallEntry(kEntries, *this, key, arguments) || CDialog::CallMapped(key, arguments);
  }
  void OnMore() { on_more(); }

  CEdit edit;
  int line = 5;
  int wrap = 0;
  int exchanged = 0;
  std::function<void()> on_more = [] {};
  std::function<void()> on_init = [] {};
};

using View = platform::DialogView;
void PressMore(View& view) { view.Press(102); }
void PressOk(View& view) { view.Press(IDOK); }

TEST(Dialog, ShowsItsControlsAndTakesWhatIsEntered) {
  testing::MainWindow main;
  testing::ScriptedPrompts prompts;
  GotoDlg dialog;
  prompts.on_dialog = [&](View& view) {
    EXPECT_FALSE(main.IsWindowEnabled());
    EXPECT_EQ(view.Caption(), "Go To");
    EXPECT_EQ(CWnd::GetFocus(), dialog.GetDlgItem(100));
    const std::vector<platform::DialogControl> controls = view.Controls();
    ASSERT_EQ(controls.size(), 7U);
    EXPECT_EQ(controls[1].label + controls[1].value + controls[2].label, "Line Number5Wrap");
    EXPECT_FALSE(controls[4].enabled);
    EXPECT_FALSE(view.Enter(103, "x")) << "it is disabled";
    EXPECT_FALSE(view.Enter(9999, "x") || view.Press(100));
    EXPECT_TRUE(view.Enter(100, "12") && view.Enter(101, "1") && view.Press(IDOK));
    EXPECT_FALSE(view.IsOpen());
    EXPECT_FALSE(view.Press(IDOK)) << "it is closed";
  };
  EXPECT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(dialog.line, 12);
  EXPECT_EQ(dialog.wrap, 1);
  EXPECT_TRUE(main.IsWindowEnabled());
  EXPECT_EQ(dialog.GetSafeHwnd(), nullptr);
  prompts.on_dialog = nullptr;
  EXPECT_EQ(dialog.DoModal(), IDCANCEL) << "what is left open is cancelled";
}

TEST(Dialog, AnExchangeThatFailsHalfWayTellsOnceAndKeepsTheRest) {
  testing::ScriptedPrompts prompts;
  GotoDlg dialog;
  dialog.on_more = [] { ADD_FAILURE() << "the exchange isn't over"; };
  prompts.on_box = [&] { dialog.GetDlgItem(102)->Press(); };
  prompts.on_dialog = [&](View& view) {
    view.Enter(101, "1");
    for (const auto& [entered, text] :
         test::Rows<const char*, const char*>{{"x", "Please enter an integer."},
                                              {"0", "Please enter an integer between 1 and 20."}}) {
      dialog.GetDlgItem(101)->SetFocus();
      view.Enter(100, entered);
      EXPECT_TRUE(view.Press(IDOK));
      ASSERT_TRUE(view.IsOpen()) << entered;
      EXPECT_EQ(prompts.shown.back().text, text);
      EXPECT_EQ(CWnd::GetFocus(), dialog.GetDlgItem(100));
      EXPECT_EQ(dialog.wrap, 0) << "what comes behind isn't moved";
    }
    EXPECT_TRUE(view.Press(IDCANCEL));
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  EXPECT_EQ(prompts.shown.size(), 2U);
}

TEST(Dialog, MayCloseItselfInAnyOfItsHandlersAndInItsExchangeAndRunAnew) {
  testing::ScriptedPrompts prompts;
  GotoDlg dialog;
  prompts.on_box = [&] { dialog.DestroyWindow(); };
  prompts.on_dialog = [](View& view) {
    view.Enter(100, "x");
    view.Press(IDOK);
    EXPECT_FALSE(view.IsOpen());
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  prompts.on_dialog = PressMore;
  dialog.on_more = [&] { dialog.DestroyWindow(); };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  dialog.on_more = [&] {
    dialog.EndDialog(3);
    dialog.EndDialog(4);
    EXPECT_EQ(dialog.DoModal(), -1) << "it runs already";
  };
  EXPECT_EQ(dialog.DoModal(), 3);
  dialog.on_init = [&] { dialog.EndDialog(7); };
  EXPECT_EQ(dialog.DoModal(), 7);
  EXPECT_EQ(prompts.dialogs.size(), 3U) << "the last one is never shown";
}

TEST(Dialog, IsNotShownWithHalfOfItsValuesAndMayHaveSetItsFocus) {
  struct FirstDlg : GotoDlg {
    BOOL OnInitDialog() override {
      CDialog::OnInitDialog();
      GetDlgItem(101)->SetFocus();
      return focus_first;
    }
    void DoDataExchange(CDataExchange* exchange) override {
      CString text;
      DDX_Text(exchange, missing, text);
    }
    int missing = 104;
    BOOL focus_first = 0;
  } dialog;
  testing::ScriptedPrompts prompts;
  prompts.on_dialog = [&](View&) {
    EXPECT_EQ(CWnd::GetFocus(), dialog.GetDlgItem(dialog.focus_first != 0 ? 100 : 101));
  };
  EXPECT_EQ(dialog.DoModal(), -1);
  dialog.missing = 103;
  for (const BOOL first : {0, 1}) {
    dialog.focus_first = first;
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  }
  EXPECT_EQ(prompts.dialogs.size(), 2U);
}

TEST(Dialog, RunsWithinAnotherAndGivesItTheScreenAndTheFocusBack) {
  testing::MainWindow main;
  testing::ScriptedPrompts prompts;
  CEdit field;
  ASSERT_TRUE(field.CreateWnd({.class_name = "Edit", .parent = &main, .id = 5}));
  field.SetFocus();
  GotoDlg outer;
  outer.on_more = [&] {
    GotoDlg inner;  // without a parent, the dialog that runs is it
    prompts.on_dialog = [&](View& view) {
      EXPECT_FALSE(outer.IsWindowEnabled());
      view.Press(IDOK);
    };
    EXPECT_EQ(inner.DoModal(), IDOK);
    EXPECT_EQ(CWnd::GetFocus(), outer.GetDlgItem(101));
    EXPECT_EQ(CWnd::GetActiveWindow(), &outer);
    // Over the main window, which is disabled already.
    prompts.on_dialog = PressOk;
    EXPECT_EQ(GotoDlg(&main).DoModal(), IDOK);
    EXPECT_EQ(CWnd::GetFocus(), outer.GetDlgItem(101));
    EXPECT_EQ(CWnd::GetActiveWindow(), &outer);
  };
  prompts.on_dialog = [&](View& view) {
    outer.GetDlgItem(101)->SetFocus();
    view.Press(102);
    view.Press(IDOK);
  };
  EXPECT_EQ(outer.DoModal(), IDOK);
  EXPECT_EQ(prompts.dialogs.size(), 3U);
  EXPECT_EQ(CWnd::GetActiveWindow(), &main);
  EXPECT_EQ(CWnd::GetFocus(), &field);
  // What takes the focus meanwhile keeps it, and what can't have it any more doesn't get it.
  prompts.on_dialog = [&](View&) { field.EnableWindow(false); };
  EXPECT_EQ(outer.DoModal(), IDCANCEL);
  EXPECT_EQ(CWnd::GetFocus(), nullptr);
}

TEST(Dialog, ClosesWhenTheThreadIsToldToEnd) {
  CWinApp app("quit");
  testing::ScriptedPrompts prompts;
  GotoDlg outer;
  GotoDlg inner;
  inner.on_more = [] { PostQuitMessage(3); };
  outer.on_more = [&] {
    prompts.on_dialog = PressMore;
    EXPECT_EQ(inner.DoModal(), IDCANCEL);
  };
  prompts.on_dialog = [&](View& view) {
    EXPECT_TRUE(view.Press(102));
    EXPECT_FALSE(view.IsOpen());
    EXPECT_FALSE(view.Press(IDOK) || view.Enter(100, "7"));
    EXPECT_TRUE(view.Controls().empty());
  };
  EXPECT_EQ(outer.DoModal(), IDCANCEL);
  EXPECT_EQ(outer.DoModal(), IDCANCEL) << "the thread is still to end";
  EXPECT_EQ(prompts.dialogs.size(), 2U);
  EXPECT_EQ(app.Run(), 3);
}

TEST(Dialog, MayBeDroppedByItsOwnHandlers) {
  struct DroppedDlg : GotoDlg {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      const bool drops = message == at;
      const LRESULT result = GotoDlg::WindowProc(message, wparam, lparam);
      if (drops) delete this;
      return result;
    }
    void PostNcDestroy() override {
      if (at == 0) delete this;
    }
    UINT at = 0;
  };
  testing::ScriptedPrompts prompts;
  prompts.on_dialog = PressOk;
  for (const auto& [at, result] : test::Rows<UINT, int>{
           {WM_CREATE, -1}, {WM_SHOWWINDOW, IDCANCEL}, {WM_COMMAND, IDCANCEL}, {0, IDOK}}) {
    auto* const dialog = new DroppedDlg;
    dialog->at = at;
    EXPECT_EQ(dialog->DoModal(), result) << at;
  }
}

TEST(Dialog, RunsTheMessageLoopUnderAWindowLayer) {
  struct Layer : testing::RecordingObserver {
    bool RunsDialogs() const override { return true; }
  } layer;
  const auto on_post = [](GotoDlg& dialog, std::function<void()> act) {
    dialog.on_init = [&dialog] { dialog.PostMessage(WM_COMMAND, 102); };
    dialog.on_more = std::move(act);
  };
  GotoDlg outer;
  GotoDlg inner;
  on_post(inner, [&] { outer.DestroyWindow(); });
  on_post(outer,
          [&] { EXPECT_EQ(inner.DoModal(), IDCANCEL) << "it ends with the one it stands over"; });
  EXPECT_EQ(outer.DoModal(), IDCANCEL);
  inner.on_init = [&] {
    outer.EndDialog(9);  // the outer one is closed first, and ends last
    inner.PostMessage(WM_CLOSE);
  };
  EXPECT_EQ(outer.DoModal(), 9);
}

TEST(Dialog, HandlersThatThrowWhileItIsClosedDoNotEndTheProgram) {
  struct ThrowingDlg : GotoDlg {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      if (message == WM_DESTROY) throw CUserException();
      return GotoDlg::WindowProc(message, wparam, lparam);
    }
  } dialog;
  testing::ScriptedPrompts prompts;
  prompts.on_dialog = PressOk;
  EXPECT_EQ(dialog.DoModal(), IDOK);
}

TEST(Dialog, WithoutATemplateOrAParentOfItsThreadDoesNotRun) {
  EXPECT_EQ(CDialog(64999).DoModal(), -1);
  CWnd elsewhere;
  std::thread([&] { elsewhere.CreateWnd("Main"); }).join();
  GotoDlg dialog(&elsewhere);
  EXPECT_EQ(dialog.DoModal(), -1);
  EXPECT_TRUE(elsewhere.IsWindowEnabled());
  EXPECT_FALSE(dialog.Create(64999, nullptr));
  EXPECT_FALSE(dialog.UpdateData());
  EXPECT_EQ(dialog.exchanged, 0);
}

}  // namespace
}  // namespace dq
