// Dialogs, the templates they are made from, and message boxes.

#include "tests/support/doubles.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

TEST(DialogTemplate, TextGivesControlsAndABrokenOneNamesItsLine) {
  const auto dialog = ReadDialogTemplate(
      "caption \"A \\\"b\\\"\"\r\nsize 260 120\r\n# c\r\n\r\n"
      "edit 2757 \"x\\n\" 72 -8 120 14 limit=30 hidden\r\nclass \"Tree\" -1 \"\" 0 0 1 2\r\n");
  ASSERT_TRUE(dialog && dialog->controls.size() == 2U);
  const ControlTemplate& edit = dialog->controls[0];
  EXPECT_EQ(dialog->caption + edit.window_class + edit.text + edit.word, "A \"b\"Editx\nedit");
  EXPECT_TRUE(dialog->controls[1].window_class == "Tree" && dialog->size == (CSize{260, 120}));
  EXPECT_EQ(edit.place, (CRect{72, -8, 192, 6}));
  EXPECT_TRUE(edit.Has("hidden") && !edit.Has("limit"));
  EXPECT_EQ(edit.Number("limit", 0) + edit.Number("lim", 7), 37);
  EXPECT_TRUE(
      ReadDialogTemplate("size\t32767 0\nedit 65535 \"\" -32767 32767 0 32767 limit=0 dropdown\n"
                         "text -1\"\t\\t\\\\\"0 0 0 0 hidden disabled\n"));
  const Rows<const char*, std::vector<std::string>> rows = {
      {"line 2: a second caption", {"caption \"\"\ncaption \"\""}},
      {"line 3: a second size", {"size 1 1\n\nsize 1 1"}},
      {"line 1: the dialog has no size", {"caption \"a\""}},
      {"line 1: more stands on the line than belongs there", {"size 1 2 3"}},
      {"line 1: a word is missing", {"size 1", "edit 1 \"\" 0 0 0", "\"edit\" 1"}},
      {"line 1: an unknown word begins the line", {"tree 1 \"\" 0 0 0 0"}},
      {"line 1: a window class without a name", {"class \"\" 1 \"\" 0 0 0 0"}},
      {"line 1: a number from 0 to 32767 is missing",
       {"size 1 -1", "size 32768 1", "edit 1 \"\" 0 0 -1 0", "edit 1 \"\" 0 0 0 32768"}},
      {"line 1: a number from -32767 to 32767 is missing",
       {"edit 1 \"\" -32768 0 0 0", "edit 1 \"\" 0 32768 0 0"}},
      {"line 1: a number from -1 to 65535 is missing",
       {"edit 65536 \"\" 0 0 0 0", "edit -2 \"\" 0 0 0 0", "edit x \"\" 0 0 0 0"}},
      {"line 1: an unknown flag",
       {"edit 1 \"\" 0 0 0 0 limit=x", "edit 1 \"\" 0 0 0 0 limit=-1",
        "edit 1 \"\" 0 0 0 0 shiny"}},
      {"line 1: a text in quotes is missing", {"edit 1 x 0 0 0 0"}},
      {"line 1: a text isn't closed", {"caption \"a", "caption \"a\\\""}},
      {"line 1: an unknown escape in a text", {"caption \"\\a\"", "caption \"\\"}},
      {"line 1: a control character in a text", {"caption \"\x1F\"", "caption \"\x7F\""}}};
  for (const auto& [why, texts] : rows) {
    for (const std::string& text : texts) {
      std::string error;
      EXPECT_FALSE(ReadDialogTemplate(text, &error));
      EXPECT_EQ(error, why) << text;
    }
  }
}

constexpr const char kTemplate[] =
    "caption \"Go To\"\nsize 200 80\n"
    "text -1 \"&Line && Number: \" 8 8 60 14\n"
    "edit 100 \"\" 72 8 60 14\ncheck 101 \"&Wrap\" 8 24 60 14\n"
    "button 102 \"&More\" 72 24 60 14\nedit 103 \"\" 72 40 60 14 disabled\n"
    "defbutton 1 \"OK\" 8 56 50 14\nbutton 2 \"Cancel\" 72 56 50 14 hidden\n";

/// A dialog with a number from 1 to 20 and a mark.
struct GotoDlg : CDialog {
  explicit GotoDlg(CWnd* parent = nullptr) {
    InitModalIndirect(ReadDialogTemplate(kTemplate).value(), parent);
  }
  BOOL OnInitDialog() override {
    CDialog::OnInitDialog();
    on_init();
    return chooses_focus;
  }
  void DoDataExchange(CDataExchange* exchange) override {
    EXPECT_FALSE(UpdateData(0)) << "an exchange doesn't begin within another";
    DDX_Control(exchange, 100, edit);
    DDX_Text(exchange, missing, line);
    DDV_MinMaxInt(exchange, line, 1, 20);
    DDX_Check(exchange, 101, wrap);
  }
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
    static constexpr MessageMapEntry kEntries[] = {CommandEntry<&GotoDlg::OnMore>(102)};
    return CallEntry(kEntries, *this, key, arguments) || CDialog::CallMapped(key, arguments);
  }
  void OnMore() { on_more(); }

  CEdit edit;
  int line = 5, wrap = 0, missing = 100;
  BOOL chooses_focus = 1;
  std::function<void()> on_more = [] {}, on_init = [] {};
};

using View = platform::DialogView;
void PressMore(View& view) { view.Press(102); }
void PressOk(View& view) { view.Press(IDOK); }

/// A main window and prompts.
struct Dialog : testing::Test {
  MainWindow main;
  ScriptedPrompts prompts;
  GotoDlg dialog, inner;
};

TEST_F(Dialog, ShowsItsControlsAndTakesWhatIsEntered) {
  main.MoveWindow(100, 100, 500, 300);
  prompts.on_dialog = [&](View& view) {
    EXPECT_FALSE(main.IsWindowEnabled());
    EXPECT_EQ(dialog.GetWindowRect(), (CRect{250, 210, 450, 290})) << "in the middle";
    EXPECT_EQ(CWnd::GetFocus(), dialog.GetDlgItem(100));
    std::string shown = view.Caption();
    for (const platform::DialogControl& each : view.Controls()) {
      shown += "\n" + std::to_string(each.id) + " " + each.label + "=" + each.value +
               (each.enabled ? "" : " disabled") + (each.visible ? "" : " hidden");
    }
    EXPECT_EQ(shown,
              "Go To\n-1 Line & Number=\n100 Line & Number=5\n101 Wrap=0\n102 More=\n"
              "103 = disabled\n1 OK=\n2 Cancel= hidden");
    int handled = 0;
    dialog.on_more = [&] { ++handled; };
    for (const int step : {1, 2, 3}) {
      dialog.PostMessage(WM_COMMAND, 102);
      if (step == 1) view.Controls();
      if (step == 2) view.Enter(100, "6");
      if (step == 3) view.Press(9999);
      EXPECT_EQ(handled, step) << "what is posted is handled meanwhile";
    }
    EXPECT_FALSE(view.Enter(103, "x") || view.Enter(9999, "x") || view.Press(100));
    EXPECT_TRUE(view.Enter(100, "12") && view.Enter(101, "1") && view.Press(IDOK));
    EXPECT_FALSE(view.IsOpen() || view.Press(IDOK));
  };
  EXPECT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(dialog.line * 10 + dialog.wrap, 121);
  EXPECT_TRUE(main.IsWindowEnabled() && dialog.GetSafeHwnd() == nullptr);
}

TEST_F(Dialog, AnExchangeThatFailsHalfWayTellsOnceAndKeepsTheRest) {
  dialog.on_more = [] { ADD_FAILURE() << "the exchange isn't over"; };
  prompts.on_box = [&] { dialog.GetDlgItem(102)->Press(); };
  prompts.on_dialog = [&](View& view) {
    view.Enter(101, "1");
    for (const char* entered : {"x", "0"}) {
      dialog.GetDlgItem(101)->SetFocus();
      ASSERT_TRUE(view.Enter(100, entered) && view.Press(IDOK) && view.IsOpen());
      EXPECT_TRUE(CWnd::GetFocus() == &dialog.edit && dialog.edit.GetSel() == 0x10000);
      EXPECT_EQ(dialog.wrap, 0) << "what comes behind isn't moved";
    }
    EXPECT_TRUE(view.Press(IDCANCEL) || dialog.SendMessage(WM_CLOSE) == 0);
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  EXPECT_EQ(prompts.shown.size(), 2U);
}

TEST_F(Dialog, MayCloseItselfInAnyOfItsHandlersAndInItsExchangeAndRunAnew) {
  prompts.on_box = [&] { dialog.DestroyWindow(); };
  prompts.on_dialog = [](View& view) {
    EXPECT_TRUE(view.Enter(100, "x") && view.Press(IDOK) && !view.IsOpen());
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

TEST_F(Dialog, MayHaveSetItsFocusAndMovesItAroundTheControlsThatTakeIt) {
  std::string way;
  const auto go = [&](void (CDialog::*step)(), int steps) {
    for (; steps > 0; --steps) {
      way += std::to_string(CWnd::GetFocus()->GetDlgCtrlID()) + " ";
      (dialog.*step)();
    }
  };
  dialog.on_init = [&] { dialog.GetDlgItem(101)->SetFocus(); };
  prompts.on_dialog = [&](View&) { go(&CDialog::NextDlgCtrl, 1); };
  for (const BOOL chooses : {0, 1}) {
    dialog.chooses_focus = chooses;
    dialog.DoModal();
  }
  dialog.on_init = [&] { dialog.GotoDlgCtrl(dialog.GetDlgItem(102)); };
  prompts.on_dialog = [&](View&) {
    go(&CDialog::NextDlgCtrl, 4);
    go(&CDialog::PrevDlgCtrl, 5);
    for (const int id : {103, 1}) dialog.GotoDlgCtrl(dialog.GetDlgItem(id));
    go(&CDialog::NextDlgCtrl, 1);
  };
  dialog.DoModal();
  EXPECT_EQ(way, "101 100 102 1 100 101 102 101 100 1 102 1 ");
}

TEST_F(Dialog, RunsWithinAnotherAndGivesItTheScreenAndTheFocusBack) {
  CEdit field;
  ASSERT_TRUE(field.CreateWnd({.class_name = "Edit", .parent = &main, .id = 5}));
  field.SetFocus();
  dialog.on_more = [&] {
    // Without a parent, the dialog that runs is it.
    prompts.on_dialog = [&](View& view) {
      EXPECT_TRUE(!dialog.IsWindowEnabled() && view.Press(IDOK));
    };
    // Over the main window, which is disabled already.
    GotoDlg over_main(&main);
    for (GotoDlg* each : {&inner, &over_main}) {
      EXPECT_EQ(each->DoModal(), IDOK);
      EXPECT_TRUE(CWnd::GetFocus() == dialog.GetDlgItem(101) && CWnd::GetActiveWindow() == &dialog);
      prompts.on_dialog = PressOk;
    }
  };
  prompts.on_dialog = [&](View& view) {
    dialog.GetDlgItem(101)->SetFocus();
    EXPECT_TRUE(view.Press(102) && view.Press(IDOK));
  };
  EXPECT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(prompts.dialogs.size(), 3U);
  EXPECT_TRUE(CWnd::GetActiveWindow() == &main && CWnd::GetFocus() == &field);
  // What can't have the focus any more doesn't get it.
  prompts.on_dialog = [&](View&) { field.EnableWindow(false); };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL) << "what is left open is cancelled";
  EXPECT_EQ(CWnd::GetFocus(), nullptr);
}

TEST_F(Dialog, ClosesWhenTheThreadIsToldToEnd) {
  inner.on_more = [] { PostQuitMessage(3); };
  dialog.on_more = [&] {
    prompts.on_dialog = PressMore;
    EXPECT_EQ(inner.DoModal(), IDCANCEL);
  };
  prompts.on_dialog = [&](View& view) {
    EXPECT_TRUE(view.Press(102) && view.Controls().empty());
    EXPECT_FALSE(view.IsOpen() || view.Press(IDOK) || view.Enter(100, "7"));
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  EXPECT_EQ(dialog.DoModal(), IDCANCEL) << "the thread is still to end";
  EXPECT_EQ(prompts.dialogs.size(), 2U);
  EXPECT_EQ(main.app.Run(), 3);
}

TEST_F(Dialog, MayBeDroppedByItsOwnHandlersWhichMayThrowWhileItIsClosed) {
  struct DroppedDlg : GotoDlg {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      const bool drops = message == at;
      if (drops && message == WM_DESTROY) throw CUserException();
      const LRESULT result = GotoDlg::WindowProc(message, wparam, lparam);
      if (drops) delete this;
      return result;
    }
    void PostNcDestroy() override {
      if (at == 0) delete this;
    }
    UINT at = 0;
  };
  prompts.on_dialog = PressOk;
  std::string results;
  for (const UINT at : std::vector<UINT>{WM_CREATE, WM_SHOWWINDOW, WM_COMMAND, WM_DESTROY, 0}) {
    auto* const dropped = new DroppedDlg;
    dropped->at = at;
    results += std::to_string(dropped->DoModal()) + " ";
    if (at == WM_DESTROY) delete dropped;
  }
  EXPECT_EQ(results, "-1 2 2 1 1 ");
}

TEST_F(Dialog, RunsTheMessageLoopUnderAWindowLayer) {
  struct Layer : RecordingObserver {
    bool RunsDialogs() const override { return true; }
  } layer;
  for (GotoDlg* each : {&dialog, &inner}) {
    each->on_init = [each] { each->PostMessage(WM_COMMAND, 102); };
  }
  inner.on_more = [&] { dialog.DestroyWindow(); };
  dialog.on_more = [&] {
    EXPECT_EQ(inner.DoModal(), IDCANCEL) << "it ends with the one it stands over";
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  inner.on_init = [&] {
    dialog.EndDialog(9);  // it is closed first, and ends last
    inner.PostMessage(WM_CLOSE);
  };
  EXPECT_EQ(dialog.DoModal(), 9);
}

TEST_F(Dialog, WithoutATemplateAllItsValuesOrAParentOfItsThreadDoesNotRun) {
  dialog.missing = 999;
  EXPECT_EQ(dialog.DoModal() + CDialog(64999).DoModal(), -2);
  CWnd elsewhere;
  std::thread([&] { elsewhere.CreateWnd("Main"); }).join();
  GotoDlg lost(&elsewhere);
  EXPECT_TRUE(lost.DoModal() == -1 && elsewhere.IsWindowEnabled() && prompts.dialogs.empty());
  EXPECT_FALSE(lost.Create(64999, nullptr) || lost.UpdateData() || lost.GetTemplateId() != 0);
}

TEST(MessageBox, ShowsATextOrTheStringOfAnIdWhichIsItsOwnHelpTopic) {
  ResourceModule module;
  module.AddString(50100, "100% done");
  const CDynLinkLibrary link(&module);
  CWinApp app("Boxes");
  ScriptedPrompts prompts = {BUTTON_NO};
  EXPECT_EQ(AfxMessageBox("Go on?", BOX_YES_NO | BOX_QUESTION, 77), BUTTON_NO);
  EXPECT_EQ(AfxMessageBox(static_cast<const char*>(nullptr)), BUTTON_OK);
  AfxMessageBox(50100, BOX_STOP);
  AfxMessageBox(50100, BOX_OK, 0);
  AfxMessageBox(50101, BOX_OK, kNoHelp);
  AfxMessageBoxWithCaption("text", "caption", BOX_STOP);
  std::string shown;
  for (const ShownBox& box : prompts.shown) {
    shown += box.caption + "|" + box.text + "|" + std::to_string(box.type) + "|" +
             std::to_string(box.help_id) + "\n";
  }
  EXPECT_EQ(shown,
            "Boxes|Go on?|36|77\nBoxes||0|0\nBoxes|100% done|16|50100\nBoxes|100% done|0|0\n"
            "Boxes||0|50101\ncaption|text|16|0\n");
}

}  // namespace
}  // namespace dq::test
