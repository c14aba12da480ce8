#include "tests/framework_controls/control_dialog.h"
#include "tests/support/doubles.h"
#include "tests/support/registries.h"
#include "tests/support/temp_directory.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

using View = platform::DialogView;

/// A module of the test's, current and in the chain for the test: dialog 3000 with tabs, 3001 to
/// 3003 as pages.
struct Dialogs : testing::Test {
  Dialogs() {
    module.AddResource(
        RESOURCE_DIALOG, 3000,
        "caption \"Sheet\"\nsize 300 200\nclass \"TabStrip\" 2900 \"\" 0 0 90 200\ntext 2901 \"\" "
        "100 5 190 150 hidden\ndefbutton 1 \"OK\" 0 180 50 14\n");
    for (WORD id = 3001; id < 3004; ++id) {
      module.AddResource(RESOURCE_DIALOG, id,
                         "size 190 150\nedit 10 \"\" 0 0 50 14\nbutton 2 \"Cancel\" 0 20 50 14\n");
    }
    AfxSetResourceHandle(&module);
  }
  ~Dialogs() override { AfxSetResourceHandle(nullptr); }

  ResourceModule module;
  CDynLinkLibrary link{&module};
  MainWindow main;
  ScriptedPrompts prompts;
};

/// Has a number.
template <typename Base>
struct WithNumber : Base {
  using Base::Base;
  void DoDataExchange(CDataExchange* exchange) override { DDX_Text(exchange, 10, number); }
  int number = 1;
};

/// Writes what it is shown (+), asked (?) and told (! or x).
struct Page : WithNumber<CDQSftTabsPage> {
  Page(UINT id, const char* title) : WithNumber(id, title), name(title) { log.clear(); }
  void ActivatePage() override { log += name + "+ "; }
  bool ClosePossible() override {
    log += name + "? ";
    on_ask();
    return closes && WithNumber::ClosePossible();
  }
  void OnOK() override { log += name + "! "; }
  void OnCancel() override { log += name + "x "; }

  static inline std::string log;
  std::string name;
  bool closes = true;
  std::function<void()> on_ask = [] {};
};

TEST_F(Dialogs, OkAsksEachPageInOrderAndStaysAtTheFirstThatRefusesThenTellsEach) {
  std::string& log = Page::log;
  CDQSftTabsDialog sheet(3000);
  Page a(3001, "a"), off(3002, "off"), b(3002, "b"), c(3003, "c");
  for (Page* const page : {&off, &a, &b, &c}) ASSERT_GE(sheet.AddPage(*page), 0);
  sheet.EnableTab(0, false);
  EXPECT_FALSE(sheet.SetActivePage(0));
  b.closes = false;
  prompts.on_dialog = [&](View& view) {
    EXPECT_EQ(sheet.AddPage(a), -1);
    EXPECT_EQ(a.GetPlace(), (CRect{100, 5, 290, 155})) << "where the control lies, and behind it";
    EXPECT_EQ(a.GetPrevWindow(), sheet.GetDlgItem(2901));
    EXPECT_TRUE(!view.Enter(2900, "off") && view.Enter(2900, "c"));
    log += "| ";
    ASSERT_TRUE(view.Press(IDOK) && view.IsOpen());
    EXPECT_TRUE(b.IsShown() && !c.IsShown() && !a.IsShown());
    EXPECT_TRUE(view.Press(IDOK) && view.IsOpen()) << "it is open already";
    log += "| ";
    EXPECT_FALSE(view.Enter(2900, "a")) << "it can't be left";
    b.closes = true;
    EXPECT_TRUE(view.Enter(2900, "a"));
    b.SetDlgItemText(10, "x");
    ASSERT_TRUE(view.Press(IDOK) && view.IsOpen());
    EXPECT_EQ(CWnd::GetFocus(), b.GetDlgItem(10)) << "on what is wrong";
    b.SetDlgItemText(10, "2");
    log += "| ";
    EXPECT_TRUE(view.Press(IDOK));
  };
  EXPECT_EQ(sheet.DoModal(), IDOK);
  // The second time by the button of a page, which is the dialog's.
  prompts.on_dialog = [](View& view) { EXPECT_TRUE(view.Press(IDCANCEL)); };
  EXPECT_EQ(sheet.DoModal(), IDCANCEL);
  EXPECT_EQ(log, "a+ a? c+ | a? b? b+ a? b? | b? b? a+ a? b? b+ | a? b? c? a! b! c! b+ ax bx cx ");
}

TEST_F(Dialogs, PagesMayGoOrEndTheDialogWhileTheyAreAsked) {
  for (const bool whole : {false, true}) {
    CDQSftTabsDialog sheet(3000);
    std::unique_ptr<Page> gone(new Page(3001, "gone")), last(new Page(3002, "last"));
    Page first(3001, "first");
    for (Page* page : {gone.get(), &first, last.get()}) sheet.AddPage(*page);
    EXPECT_TRUE(sheet.SetActivePage(1));
    gone.reset();
    EXPECT_EQ(sheet.GetActivePage(), 0) << "the same one";
    first.on_ask = [&] { whole ? static_cast<void>(sheet.DestroyWindow()) : last.reset(); };
    prompts.on_dialog = [&](View& view) {
      EXPECT_FALSE(view.Enter(2900, "last"));
      EXPECT_EQ(view.IsOpen(), !whole);
      if (!whole) view.Press(IDOK);
    };
    EXPECT_EQ(sheet.DoModal(), whole ? IDCANCEL : IDOK);
    EXPECT_EQ(Page::log, whole ? "first+ first? " : "first+ first? first? first! ");
    EXPECT_EQ(sheet.GetPageCount(), whole ? 2 : 1);
  }
  CDQSftTabsDialog sheet(3000);
  Page first(3001, "first"), last(3002, "last");
  for (Page* page : {&first, &last}) sheet.AddPage(*page);
  sheet.SetActivePage(1);
  first.on_ask = [&] { sheet.DestroyWindow(); };
  prompts.on_dialog = [](View& view) { view.Press(IDOK); };
  EXPECT_EQ(sheet.DoModal(), IDCANCEL);
  EXPECT_EQ(Page::log, "last+ first? ") << "no page of a dialog that is gone is opened";
}

TEST_F(Dialogs, CollectionShowsOneChildAndMovesItsValuesOnly) {
  WithNumber<CDQChildDialog> first(3001), second(3002), missing(3999);
  CDQChildDialogCollection all;
  for (CDQChildDialog* child : {&first, &second}) all.Add(*child);
  EXPECT_TRUE(!all.Show(0) && all.UpdateData(true)) << "none is made, none is shown";
  ASSERT_TRUE(all.CreateAll(&main, 77) && !first.IsShown() && !second.IsShown());
  EXPECT_TRUE(all.ShowById(3002) && !all.Show(2) && !all.ShowById(3999));
  EXPECT_TRUE(second.IsShown() && !first.IsShown());
  first.SetDlgItemText(10, "x");
  second.SetDlgItemText(10, "8");
  EXPECT_TRUE(all.UpdateData(true) && second.number == 8);
  all.Show(0);
  EXPECT_TRUE(!all.UpdateData(true) && prompts.shown.size() == 1 && all.UpdateData(false));
  EXPECT_EQ(first.GetDlgItemText(10) + second.GetDlgItemText(10), "18");
  all.Enable(false);
  EXPECT_FALSE(first.IsWindowEnabled() || second.IsWindowEnabled());
  EXPECT_TRUE(all.Show(-1) && !first.IsShown());
  all.Add(missing);
  EXPECT_FALSE(all.CreateAll(&main, 77));
}

TEST_F(Dialogs, NamedModuleIsSearchedFirstAndForOneRun) {
  ResourceModule named;
  named.AddResource(RESOURCE_DIALOG, 3000, "caption \"Named\"\nsize 9 9\n");
  struct Dialog : CDQDialog {
    Dialog() : CDQDialog(3000) {}
    BOOL OnInitDialog() override {
      opened_with = AfxGetResourceHandle();
      return CDQDialog::OnInitDialog();
    }
    HINSTANCE opened_with = nullptr;
  } dialog;
  EXPECT_EQ(DQDoModalDialog(dialog, &named), IDCANCEL);
  EXPECT_TRUE(dialog.opened_with == &named && AfxGetResourceHandle() == &module);
  EXPECT_EQ(DQDoModalDialog(dialog, nullptr), IDCANCEL);
  EXPECT_EQ(dialog.opened_with, DQLIB_GetInstanceHandle());
  EXPECT_EQ(prompts.dialogs, (std::vector<std::string>{"Named", "Sheet"}));
}

TEST_F(Dialogs, RowsOfAComboBoxHaveTheirTipsAndTheRoomTheyNeed) {
  ControlDialog dialog;
  CToolTipComboBox combo;
  combo.AddString("own", "tip");
  ASSERT_TRUE(combo.SubclassDlgItem(ControlDialog::kCombo, &dialog));
  EXPECT_EQ(combo.InsertString(1, "new", "its own"), 1);
  std::string rows;
  for (int at = -1; at < 5; ++at) rows += combo.GetLBText(at) + "=" + combo.GetItemTip(at) + " ";
  EXPECT_EQ(rows, "= One= new=its own Two= Three= = ") << "those that were there have none";
  CDQAutoDropWidthCombo wide;
  ASSERT_TRUE(wide.SubclassDlgItem(ControlDialog::kDropList, &dialog));
  EXPECT_TRUE(wide.AddItem("eleven more", 7) == 3 && wide.GetItemData(3) == 7);
  wide.AddItem("ten do too", 8);
  EXPECT_EQ(wide.GetDroppedWidth(), 101);
}

/// The options server with an options file of its own, and some of the library's options.
struct Options : Dialogs {
  Options() {
    directory.Put("own.dqo",
                  "dqoptions 1\noption 10 bool a\nlabel \"A flag\"\ndefault 1\n"
                  "option 11 int n\nlabel \"l\"\ndefault 3\n"
                  "option 12 bool b\nlabel \"Another\"\ndefault 0\n"
                  "option 13 bool c\nlabel \"Third\"\ndefault 0\n");
    directory.Put(
        "DQLib.dqo",
        "dqoptions 1\noption 50391 int page\nlabel \"Page\"\ndefault 1\n"
        "option 50183 int t\nlabel \"A label that is as long as a line may be\"\ndefault 4\n"
        "option 50198 int p\nlabel \"A label that is as long as a line may be,\"\ndefault 2\n"
        "option 50180 bool f\nlabel \"Flag\"\ndefault 1\n"
        "option 50203 bool g\nlabel \"Last\"\ndefault 0\n"
        "option 50241 int k\nlabel \"\"\ndefault 1\n");
    server.SetOptionsDirectories({directory.path().c_str()});
    EXPECT_TRUE(server.AddOptions("own.dqo", 1, 100, true, false));
  }
  ~Options() override { server.RemoveOptions("own.dqo", 1, 100); }
  MemoryRegistry registry;
  const platform::ScopedPlatform scope{With(&platform::Platform::registry, &registry)};
  TempDirectory directory;
  CDQOptionsServer& server = *CDQOptionsServer::GetObject();
};

TEST_F(Options, ListsKeepMarksOfAllTheirArrays) {
  module.AddString(500, "General");
  module.AddString(501, "More");
  const UINT general[] = {10, 11, 99, 12}, more[] = {13};
  CComboBox combo(ComboStyle{.list_only = true});
  CDQOptionChecklist list;
  EXPECT_TRUE(list.SaveOptions()) << "nothing is shown";
  CDQOptionMultiList lists;
  lists.OnComboSelChange();
  lists.AddList(500, general);
  lists.AddList(501, more);
  lists.SetControls(combo, list);
  EXPECT_EQ(combo.GetWindowText() + std::string("|") + list.GetText(0), "General|A flag");
  EXPECT_TRUE(list.GetCount() == 2 && list.GetCheck(0) == 1 && list.GetCheck(1) == 0);
  list.SetCheck(0, 0);
  const auto choose = [&](int index) {
    combo.SetCurSel(index);
    lists.OnComboSelChange();
  };
  choose(1);
  lists.SetControls(combo, list);
  EXPECT_EQ(list.GetCheck(0), 1) << "what a cancelled run has marked is gone";
  list.SetCheck(0, 0);
  choose(1);
  ASSERT_EQ(list.GetCount(), 1);
  list.SetCheck(0, 1);
  choose(0);
  EXPECT_EQ(list.GetCheck(0), 0) << "a mark stays while another list is shown";
  list.SetCheck(1, 1);
  EXPECT_TRUE(server.GetBool(10) && !server.GetBool(12)) << "nothing is kept yet";
  choose(-1);
  EXPECT_TRUE(lists.SaveOptions());
  EXPECT_TRUE(!server.GetBool(10) && server.GetBool(12) && server.GetBool(13));
  server.RemoveOptions("own.dqo", 1, 100);
  list.SetCheck(0, 1);
  EXPECT_FALSE(list.SaveOptions()) << "the options are gone";
}

TEST_F(Options, DialogShowsThemOnPagesAndOpensWithTheLastOne) {
  EXPECT_TRUE(CDQOptionsDlg(64999, 50391).DoModal() == -1 && main.messages.empty());
  CDQLibraryOptionsDlg dialog;
  std::string shown;
  const auto show = [&](View& view) {
    for (const platform::DialogControl& each : view.Controls()) {
      if (each.id == 2900) shown += each.value + "\n";
      if (each.id < 50000 || !each.visible) continue;
      const CRect at = dialog.GetPage(dialog.GetActivePage())->GetDlgItem(each.id)->GetPlace();
      std::ostringstream line;
      line << each.id << ' ' << at.left << ' ' << at.top << ' ' << at.right << ' ' << at.bottom
           << ' ' << each.label << '=' << each.value << (each.editable ? " editable" : "");
      for (const std::string& item : each.items) line << '|' << item;
      shown += line.str() + "\n";
    }
  };
  prompts.on_dialog = [&](View& view) {
    show(view);
    EXPECT_TRUE(view.Enter(2900, "Editor"));
    show(view);
    EXPECT_TRUE(view.Enter(50183, "7") && view.Press(IDOK));
  };
  EXPECT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(shown,
            "SQL Formatter\n50241 238 8 398 98 =Upper case|As written|Upper case|Lower case\n"
            "Editor\n50180 8 8 398 22 Flag=1\n"
            "50183 238 30 398 44 A label that is as long as a line may be=4 editable\n"
            "50198 238 52 398 142 A label that is as long as a line may be,=Ask|Save it "
            "first|Discard it|Ask\n"
            "50203 8 88 398 102 Last=0\n");
  EXPECT_EQ(server.GetInt(50391) * 10 + server.GetInt(50183), 7);
  EXPECT_EQ(main.messages.at(0).message, 33796U);
}

}  // namespace
}  // namespace dq::test
