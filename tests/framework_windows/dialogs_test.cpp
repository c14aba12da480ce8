// Dialogs, the templates they are made from, and message boxes.

#include "dqlib/framework/windows/menu_model.h"
#include "tests/support/doubles.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

TEST(DialogTemplate, TextGivesControlsAndABrokenOneNamesItsLineAsThatOfAMenuDoes) {
  const auto dialog = ReadDialogTemplate(
      "caption \"A \\\"b\\\"\"\r\nsize 260 120\r\n# c\r\n\r\n"
      "edit 2757 \"x\\n\" 72 -8 120 14 limit=30 hidden\r\nclass \"Tree\" -1 \"\" 0 0 1 2\r\n");
  ASSERT_TRUE(dialog && dialog->controls.size() == 2U);
  const ControlTemplate& edit = dialog->controls[0];
  EXPECT_EQ(dialog->caption + edit.window_class + edit.text + edit.word, "A \"b\"Editx\nedit");
  EXPECT_TRUE(dialog->controls[1].window_class == "Tree" && dialog->size == (CSize{260, 120}));
  EXPECT_TRUE(edit.place == (CRect{72, -8, 192, 6}) && edit.Has("hidden") && !edit.Has("limit"));
  EXPECT_EQ(edit.Number("limit", 0) + edit.Number("lim", 7), 37);
  EXPECT_TRUE(
      ReadDialogTemplate("size\t32767 0\nedit 65535 \"\" -32767 32767 0 32767 limit=0 dropdown\n"
                         "text -1\"\t\\t\\\\\"0 0 0 0 hidden disabled\n"));
  // Broken texts of dialogs and, behind ":", of menus. "/" ends a line; "^" and "~" are control
  // characters.
  for (const auto& [why, texts] : Cases<2>(R"(
    1: a popup has no end => :popup ""/ ;; 1: a word is missing => size 1, edit 1 "" 0 0 0, "edit" 1
    3: a second size => size 1 1//size 1 1 ;; 1: a text isn't closed => caption "a, caption "a\"
    1: the dialog has no size => caption "" ;; 1: an unknown word begins the line => tree, :entry/
    1: a text in quotes is missing => edit 1 x ;; 2: an end without its popup => :item 1 ""/end/
    2: a second caption => caption ""/caption "" ;; 1: a window class without a name => class "" 1
    1: more stands on the line than belongs there => size 1 2 3
    1: a number from 0 to 32767 is missing => size 1 -1, size 32768 1, edit 1 "" 0 0 -1 0
    1: a number from 0 to 32767 is missing => edit 1 "" 0 0 0 32768
    1: a number from -32767 to 32767 is missing => edit 1 "" -32768 0 0 0, edit 1 "" 0 32768 0 0
    1: a number from -1 to 65535 is missing => edit 65536 "" 0, edit -2 "" 0, edit x "" 0
    1: a number from 1 to 65535 is missing => :item 0 "x", :item 65536 ""
    1: an unknown flag => edit 1 "" 0 0 0 0 limit=x, edit 1 "" 0 0 0 0 limit=-1
    1: an unknown flag => edit 1 "" 0 0 0 0 shiny, :item 1 "x" green/, :popup "x" checked/end/
    1: an unknown escape in a text => caption "\a", caption "\
    1: a control character in a text => caption "^", caption "~")")) {
    std::istringstream rest(texts);
    for (std::string text; std::getline(rest >> std::ws, text, ',');) {
      for (const auto& [sign, byte] : Rows<char, char>{{'/', '\n'}, {'^', '\x1F'}, {'~', '\x7F'}}) {
        std::ranges::replace(text, sign, byte);
      }
      std::string error;
      EXPECT_FALSE(text[0] == ':' ? detail::ReadMenuText(text.substr(1), &error) != nullptr
                                  : ReadDialogTemplate(text, &error).has_value());
      EXPECT_EQ(error, "line " + why) << text;
    }
  }
}

/// A dialog with a number from 1 to 20 and a mark.
struct GotoDlg : CDialog {
  explicit GotoDlg(CWnd* parent = nullptr) {
    const auto pattern = ReadDialogTemplate(
        "caption \"Go To\"\nsize 200 80\ntext -1 \"&Line && No: \" 0 0 1 1\nedit 100 \"\" 0 0 1 1\n"
        "check 101 \"&Wrap\" 0 0 1 1\nbutton 102 \"&More\" 0 0 1 1\nedit 103 \"\" 0 0 1 1 "
        "disabled\ndefbutton 1 \"OK\" 0 0 1 1\nbutton 2 \"Cancel\" 0 0 1 1 hidden\n");
    InitModalIndirect(*pattern, parent);
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
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* only_ask) override {
    if (id == 102 && code == CN_COMMAND) on_more();
    return CDialog::OnCmdMsg(id, code, extra, only_ask);
  }

  CEdit edit;
  int line = 5, wrap = 0, missing = 100;
  BOOL chooses_focus = 1;
  std::function<void()> on_more = [] {}, on_init = [] {};
};

using View = platform::DialogView;

/// A main window and prompts.
struct Dialog : testing::Test {
  MainWindow main;
  ScriptedPrompts prompts;
  GotoDlg dialog, inner;
};

TEST_F(Dialog, ShowsItsControlsAndTakesWhatIsEntered) {
  main.MoveWindow(100, 100, 500, 300);
  prompts.on_dialog = [&](View& view) {
    EXPECT_TRUE(!main.IsWindowEnabled() && CWnd::GetFocus() == dialog.GetDlgItem(100));
    EXPECT_EQ(dialog.GetWindowRect(), (CRect{250, 210, 450, 290})) << "in the middle";
    std::string shown = view.Caption();
    for (const platform::DialogControl& each : view.Controls()) {
      shown += "\n" + std::to_string(each.id) + " " + each.label + "=" + each.value +
               (each.enabled ? "" : " disabled") + (each.visible ? "" : " hidden");
    }
    EXPECT_EQ(shown,
              "Go To\n-1 Line & No=\n100 Line & No=5\n101 Wrap=0\n102 More=\n"
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
    EXPECT_TRUE(view.Enter(100, "7") && dialog.UpdateData() && dialog.line == 7);
    EXPECT_TRUE(view.Enter(100, "12") && view.Enter(101, "1") && view.Press(IDOK));
    EXPECT_FALSE(view.IsOpen() || view.Press(IDOK));
  };
  EXPECT_TRUE(dialog.DoModal() == IDOK && dialog.line == 12 && dialog.wrap == 1);
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
  EXPECT_TRUE(dialog.DoModal() == IDCANCEL && prompts.shown.size() == 2);
}

TEST_F(Dialog, MayCloseItselfInAnyOfItsHandlersAndInItsExchangeAndRunAnew) {
  prompts.on_box = [&] { dialog.DestroyWindow(); };
  prompts.on_dialog = [](View& view) {
    EXPECT_TRUE(view.Enter(100, "x") && view.Press(IDOK) && !view.IsOpen());
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  prompts.on_dialog = [](View& view) { view.Press(102); };
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
  const auto go = [&](const char* steps) {
    for (; *steps != '\0'; ++steps) {
      way += std::to_string(CWnd::GetFocus()->GetDlgCtrlID()) + " ";
      *steps == '>' ? dialog.NextDlgCtrl() : dialog.PrevDlgCtrl();
    }
  };
  dialog.on_init = [&] { dialog.GetDlgItem(101)->SetFocus(); };
  prompts.on_dialog = [&](View&) { go(">"); };
  for (const BOOL chooses : {0, 1}) {
    dialog.chooses_focus = chooses;
    dialog.DoModal();
  }
  dialog.on_init = [&] { dialog.GotoDlgCtrl(dialog.GetDlgItem(102)); };
  prompts.on_dialog = [&](View&) {
    go(">>>><<<<<");
    for (const int id : {103, 1}) dialog.GotoDlgCtrl(dialog.GetDlgItem(id));
    go(">");
    for (const int show : {SW_HIDE, SW_SHOW}) dialog.ShowWindow(show);
    EXPECT_EQ(CWnd::GetFocus()->GetDlgCtrlID(), 100) << "where it was";
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
    prompts.on_dialog = [&](View& view) { view.Press(dialog.IsWindowEnabled() ? 0 : IDOK); };
    // Over the main window, which is disabled already.
    GotoDlg over_main(&main);
    for (GotoDlg* each : {&inner, &over_main}) {
      EXPECT_EQ(each->DoModal(), IDOK);
      EXPECT_TRUE(CWnd::GetFocus() == dialog.GetDlgItem(101) && CWnd::GetActiveWindow() == &dialog);
      prompts.on_dialog = [](View& view) { view.Press(IDOK); };
    }
  };
  prompts.on_dialog = [&](View& view) {
    dialog.GetDlgItem(101)->SetFocus();
    EXPECT_TRUE(view.Press(102) && view.Press(IDOK));
  };
  EXPECT_TRUE(dialog.DoModal() == IDOK && prompts.dialogs.size() == 3);
  EXPECT_TRUE(CWnd::GetActiveWindow() == &main && CWnd::GetFocus() == &field);
  // Without a parent it belongs to what was active, which is so again behind it, or is ending.
  struct Other : CWnd {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      if (message == WM_DESTROY) on_destroy();
      return CWnd::WindowProc(message, wparam, lparam);
    }
    std::function<void()> on_destroy;
  } other;
  other.CreateWnd("Other");
  other.SetActiveWindow();
  const CWnd* over = &other;
  prompts.on_dialog = [&](View&) {
    EXPECT_TRUE(inner.GetOwner() == over && !over->IsWindowEnabled() && !main.IsWindowEnabled());
  };
  EXPECT_TRUE(inner.DoModal() == IDCANCEL && CWnd::GetActiveWindow() == &other);
  over = &main;
  other.on_destroy = [&] { EXPECT_EQ(inner.DoModal(), IDCANCEL); };
  other.DestroyWindow();
  EXPECT_TRUE(CWnd::GetActiveWindow() == &main && prompts.dialogs.size() == 5);
  field.SetFocus();
  // What can't have the focus any more doesn't get it.
  prompts.on_dialog = [&](View&) { field.EnableWindow(false); };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL) << "what is left open is cancelled";
  EXPECT_EQ(CWnd::GetFocus(), &main);
}

TEST_F(Dialog, ClosesWhenTheThreadIsToldToEnd) {
  inner.on_more = [] { PostQuitMessage(3); };
  dialog.on_more = [&] {
    prompts.on_dialog = [](View& view) { view.Press(102); };
    EXPECT_EQ(inner.DoModal(), IDCANCEL);
  };
  prompts.on_dialog = [&](View& view) {
    EXPECT_TRUE(view.Press(102) && view.Controls().empty());
    EXPECT_FALSE(view.IsOpen() || view.Press(IDOK) || view.Enter(100, "7"));
  };
  // The second time, the thread is still to end.
  for (int twice = 0; twice < 2; ++twice) EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  EXPECT_TRUE(prompts.dialogs.size() == 2 && main.app.Run() == 3);
}

TEST_F(Dialog, MayBeDroppedByItsOwnHandlersWhichMayThrowWhileItIsClosed) {
  struct DroppedDlg : GotoDlg {
    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
      const bool drops = message == at && (message != WM_COMMAND || HiWord(wparam) == BN_CLICKED);
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
  prompts.on_dialog = [](View& view) { view.Press(IDOK); };
  std::string results;
  for (const UINT at : std::vector<UINT>{WM_CREATE, WM_SHOWWINDOW, WM_COMMAND, WM_DESTROY, 0}) {
    auto* const dropped = new DroppedDlg;
    dropped->at = at;
    results += std::to_string(dropped->DoModal()) + " ";
    if (at == WM_DESTROY) delete dropped;
  }
  EXPECT_EQ(results, "-1 2 1 1 1 ");
}

TEST_F(Dialog, RunsTheMessageLoopUnderAWindowLayer) {
  struct Layer : RecordingObserver {
    bool RunsDialogs() const override { return true; }
  } layer;
  for (GotoDlg* it : {&dialog, &inner}) it->on_init = [it] { it->PostMessage(WM_COMMAND, 102); };
  inner.on_more = [&] { dialog.DestroyWindow(); };
  // It ends with the one it stands over.
  dialog.on_more = [&] { EXPECT_EQ(inner.DoModal(), IDCANCEL); };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  inner.on_init = [&] {
    dialog.EndDialog(9);  // it is closed first, and ends last
    inner.PostMessage(WM_CLOSE);
  };
  EXPECT_EQ(dialog.DoModal(), 9);
}

TEST_F(Dialog, GivesWayToItsOwnersBeforeItsWindowGoesAndMayKeepThat) {
  struct KeptDlg : CDialog {
    int DoModal() override { return RunWindow(); }
  } kept;
  CWnd top, owner;
  top.CreateWnd({.class_name = "Top", .id = 8});
  owner.CreateWnd({.class_name = "Owner", .owner = &top, .id = 9});
  owner.SetActiveWindow();
  CDialog ended;
  const DialogTemplate pattern = *ReadDialogTemplate("size 9 9\nbutton 1 \"\" 0 0 1 1\n");
  ended.InitModalIndirect(pattern, &owner);
  EXPECT_EQ(kept.DoModal(), -1) << "without a window";
  ASSERT_TRUE(kept.CreateIndirect(pattern, &owner));
  const HWND window = kept.GetSafeHwnd();
  RecordingObserver told;
  prompts.on_dialog = [&](View& view) {
    EXPECT_TRUE(!top.IsWindowEnabled() && !owner.IsWindowEnabled());
    EXPECT_EQ(kept.IsShown() ? kept.DoModal() : -1, -1) << "not while it runs";
    told.Take();
    view.Press(IDOK);
  };
  EXPECT_EQ(ended.DoModal(), IDOK);
  EXPECT_EQ(told.Take(), "8 enabled 9 enabled 1 focus 1 destroyed 0 destroyed 9 active 9 focus ");
  for (int twice = 0; twice < 2; ++twice) {
    EXPECT_TRUE(kept.DoModal() == IDOK && kept.GetSafeHwnd() == window && !kept.IsShown());
    EXPECT_EQ(told.Take(), "8 enabled 9 enabled 0 shown 1 focus 0 active 9 active 9 focus ");
  }
  prompts.on_dialog = [&](View&) { kept.DestroyWindow(); };
  EXPECT_TRUE(kept.DoModal() == IDCANCEL && kept.GetSafeHwnd() == nullptr);
  EXPECT_TRUE(CWnd::GetActiveWindow() == &owner && top.IsWindowEnabled());
  // One without an owner, which is shown before it runs.
  prompts.on_dialog = {};
  ASSERT_TRUE(kept.CreateIndirect(pattern, nullptr));
  kept.ShowWindow(SW_SHOW);
  EXPECT_TRUE(kept.DoModal() == IDCANCEL && CWnd::GetActiveWindow() == nullptr);
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
  const char* const none = nullptr;
  EXPECT_TRUE(AfxMessageBox(none) == BUTTON_OK && AfxMessageBox(50100, BOX_STOP) == BUTTON_OK);
  AfxMessageBox(50100, BOX_OK, 0);
  AfxMessageBox(50101, BOX_OK, kNoHelp);
  AfxMessageBoxWithCaption("text", "caption", BOX_STOP);
  std::string shown;
  for (const auto& [text, type, help, caption] : prompts.shown) {
    shown += caption + "|" + text + "|" + std::to_string(type) + "|" + std::to_string(help) + "\n";
  }
  EXPECT_EQ(shown,
            "Boxes|Go on?|36|77\nBoxes||0|0\nBoxes|100% done|16|50100\nBoxes|100% done|0|0\n"
            "Boxes||0|50101\ncaption|text|16|0\n");
}

}  // namespace
}  // namespace dq::test
