// Dialogs with pages and options, and windows and dialogs that stretch with their controls.

#include "tests/support/windows.h"

#include "tests/support/doubles.h"
#include "tests/support/registries.h"

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
    const char page[] = "size 190 150\nedit 10 \"\" 0 0 50 14\nbutton 2 \"Cancel\" 0 20 50 14\n";
    for (WORD id = 3001; id < 3004; ++id) module.AddResource(RESOURCE_DIALOG, id, page);
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
    return answer() && WithNumber::ClosePossible();
  }
  void OnOK() override { log += name + "! "; }
  void OnCancel() override { log += name + "x "; }

  static inline std::string log;
  std::string name;
  std::function<bool()> answer = [] { return true; };
};

TEST_F(Dialogs, OkAsksEachPageInOrderAndStaysAtTheFirstThatRefusesThenTellsEach) {
  CDQSftTabsDialog sheet(3000);
  Page a(3001, "a"), off(3002, "off"), b(3002, "b"), c(3003, "c");
  for (Page* const page : {&off, &a, &b, &c}) ASSERT_GE(sheet.AddPage(*page), 0);
  sheet.EnableTab(0, false);
  EXPECT_FALSE(sheet.SetActivePage(0));
  b.answer = [] { return false; };
  prompts.on_dialog = [&](View& view) {
    // Where the control lies, and behind it.
    EXPECT_EQ(a.GetPlace(), (CRect{100, 5, 290, 155}));
    EXPECT_TRUE(a.GetPrevWindow() == sheet.GetDlgItem(2901) && sheet.AddPage(a) == -1);
    EXPECT_TRUE(!view.Enter(2900, "off") && view.Enter(2900, "c"));
    ASSERT_TRUE(view.Press(IDOK) && view.IsOpen());
    EXPECT_TRUE(b.IsShown() && !c.IsShown() && !a.IsShown());
    EXPECT_TRUE(view.Press(IDOK) && view.IsOpen()) << "it is open already";
    Page::log += "| ";
    EXPECT_FALSE(view.Enter(2900, "a")) << "it can't be left";
    b.answer = [] { return true; };
    EXPECT_TRUE(view.Enter(2900, "a"));
    b.SetDlgItemText(10, "x");
    ASSERT_TRUE(view.Press(IDOK) && view.IsOpen());
    EXPECT_EQ(CWnd::GetFocus(), b.GetDlgItem(10)) << "on what is wrong";
    b.SetDlgItemText(10, "2");
    Page::log += "| ";
    EXPECT_TRUE(view.Press(IDOK));
  };
  EXPECT_EQ(sheet.DoModal(), IDOK);
  // The second time by the button of a page, which is the dialog's.
  prompts.on_dialog = [](View& view) { EXPECT_TRUE(view.Press(IDCANCEL)); };
  EXPECT_EQ(sheet.DoModal(), IDCANCEL);
  EXPECT_EQ(Page::log,
            "a+ a? c+ a? b? b+ a? b? | b? b? a+ a? b? b+ | a? b? c? a! b! c! b+ ax bx cx ");
}

TEST_F(Dialogs, PagesMayGoOrEndTheDialogWhileTheyAreAsked) {
  // What goes while the first page is asked, by a choice or by the button, and what is told.
  for (const auto& [goes, told] :
       Cases<2>("page => a+ a? a? a! 1 ;; dialog => a+ a? 2 ;; by OK => b+ a? 2")) {
    CDQSftTabsDialog sheet(3000);
    std::unique_ptr<Page> gone(new Page(3001, "gone")), last(new Page(3002, "b"));
    Page first(3001, "a");
    for (Page* page : {gone.get(), &first, last.get()}) sheet.AddPage(*page);
    EXPECT_TRUE(sheet.SetActivePage(1));
    gone.reset();
    EXPECT_EQ(sheet.GetActivePage(), 0) << "the same one";
    const bool page_goes = goes == "page", by_choice = goes != "by OK";
    if (!by_choice) sheet.SetActivePage(1);
    first.answer = [&] { return page_goes ? (last.reset(), true) : sheet.DestroyWindow(); };
    prompts.on_dialog = [&](View& view) {
      EXPECT_FALSE(by_choice && view.Enter(2900, "b"));
      EXPECT_EQ(view.IsOpen(), page_goes || !by_choice);
      view.Press(IDOK);
    };
    EXPECT_EQ(sheet.DoModal(), page_goes ? IDOK : IDCANCEL);
    EXPECT_EQ(Page::log + std::to_string(sheet.GetPageCount()), told);
  }
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
  EXPECT_TRUE(all.UpdateData(true) && second.number == 8 && all.Show(0));
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
  CDQDialog dialog(3000);
  HINSTANCE used = nullptr;
  prompts.on_dialog = [&](View&) { used = AfxGetResourceHandle(); };
  EXPECT_EQ(DQDoModalDialog(dialog, &named), IDCANCEL);
  EXPECT_TRUE(used == &named && AfxGetResourceHandle() == &module);
  EXPECT_TRUE(DQDoModalDialog(dialog, nullptr) == IDCANCEL && used == DQLIB_GetInstanceHandle());
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
  EXPECT_TRUE(wide.AddItem("ten do too", 8) == 4 && wide.GetDroppedWidth() == 101);
}

/// The options server with an options file of its own, and some of the library's options.
struct Options : Dialogs {
  Options() {
    directory.Put("own.dqo",
                  "dqoptions 1\noption 10 bool a\nlabel \"A flag\"\ndefault 1\noption 11 int "
                  "n\nlabel \"\"\ndefault 3\noption 12 bool b\nlabel \"\"\ndefault 0\noption 13 "
                  "bool c\nlabel \"\"\ndefault 0\n");
    directory.Put("DQLib.dqo",
                  "dqoptions 1\noption 50391 int page\nlabel \"\"\ndefault 1\noption 50241 int "
                  "k\nlabel \"\"\ndefault 1\noption 50183 int t\nlabel \"A label that is as long "
                  "as a line may be\"\ndefault 4\noption 50198 int p\nlabel \"A label that is as "
                  "long as a line may be,\"\ndefault 2\noption 50180 bool f\nlabel "
                  "\"Flag\"\ndefault 1\noption 50203 bool g\nlabel \"Last\"\ndefault 0\n");
    server.SetOptionsDirectories({directory.path().c_str()});
    EXPECT_TRUE(server.AddOptions("own.dqo", 1, 100, true, false));
  }
  ~Options() override { server.RemoveOptions("own.dqo", 1, 100); }
  MemoryRegistry registry;
  TempDirectory directory;
  CDQOptionsServer& server = *CDQOptionsServer::GetObject();
};

TEST_F(Options, ListsKeepMarksOfAllTheirArrays) {
  module.AddString(500, "General");
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
  const auto mark_and_choose = [&](int row, int mark, int index) {
    list.SetCheck(row, mark);
    combo.SetCurSel(index);
    lists.OnComboSelChange();
  };
  mark_and_choose(0, 0, 1);
  lists.SetControls(combo, list);
  EXPECT_EQ(list.GetCheck(0), 1) << "what a cancelled run has marked is gone";
  mark_and_choose(0, 0, 1);
  ASSERT_EQ(list.GetCount(), 1);
  mark_and_choose(0, 1, 0);
  EXPECT_EQ(list.GetCheck(0), 0) << "a mark stays while another list is shown";
  EXPECT_TRUE(server.GetBool(10) && !server.GetBool(12)) << "nothing is kept yet";
  mark_and_choose(1, 1, -1);
  EXPECT_TRUE(lists.SaveOptions());
  EXPECT_TRUE(!server.GetBool(10) && server.GetBool(12) && server.GetBool(13));
  server.RemoveOptions("own.dqo", 1, 100);
  list.SetCheck(0, 1);
  EXPECT_FALSE(list.SaveOptions()) << "the options are gone";
}

TEST_F(Options, DialogShowsThemOnPagesAndOpensWithTheLastOne) {
  EXPECT_TRUE(CDQOptionsDlg(64999, 50391).DoModal() == -1 && main.messages.empty());
  CDQLibraryOptionsDlg dialog;
  std::ostringstream shown;
  const auto show = [&](View& view) {
    for (const platform::DialogControl& each : view.Controls()) {
      if (each.id == 2900) shown << each.value << '\n';
      if (each.id < 50000 || !each.visible) continue;
      const CRect at = dialog.GetPage(dialog.GetActivePage())->GetDlgItem(each.id)->GetPlace();
      shown << each.id << ' ' << at.left << ' ' << at.top << ' ' << at.right << ' ' << at.bottom
            << ' ' << each.label << '=' << each.value << (each.editable ? " editable" : "");
      for (const std::string& item : each.items) shown << '|' << item;
      shown << '\n';
    }
  };
  prompts.on_dialog = [&](View& view) {
    show(view);
    EXPECT_TRUE(view.Enter(2900, "Editor"));
    show(view);
    EXPECT_TRUE(view.Enter(50183, "7") && view.Press(IDOK));
  };
  EXPECT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(shown.str(),
            "SQL Formatter\n50241 238 8 398 98 =Upper case|As written|Upper case|Lower "
            "case\nEditor\n50180 8 8 398 22 Flag=1\n50183 238 30 398 44 A label that is as long as "
            "a line may be=4 editable\n50198 238 52 398 142 A label that is as long as a line may "
            "be,=Ask|Save it first|Discard it|Ask\n50203 8 88 398 102 Last=0\n");
  EXPECT_TRUE(server.GetInt(50391) == 0 && server.GetInt(50183) == 7);
  EXPECT_EQ(main.messages.at(0).message, 33796U);
}

// ---- Windows and dialogs that stretch with their controls

TEST(FlexPlace, EachEdgeMovesByItsOwnTruncatedShareOfTheGrowthWhichIsNeverNegative) {
  constexpr LONG kMax = 2147483647, kMin = -kMax - 1;
  // 0.7 times 10 would be 7 in single precision.
  const Rows<float, float, LONG, LONG, LONG> rows = {
      {0, 1, 10, 7, 19},           {0.5, 0.5, 10, 12, 14}, {-0.5, 2, 3, 6, 15},
      {0.7f, 0.3f, 10, 13, 12},    {NAN, NAN, 10, 7, 9},   {1e30f, 1, kMax, kMax, kMax},
      {-1e30f, 1, 1, 7 - kMax, 10}};
  for (const auto& [first, second, growth, near, far] : rows) {
    const CRect moved = FlexPlace({7, 7, 9, 9}, {first, second}, {first, second}, {growth, growth});
    EXPECT_EQ(moved, (CRect{near, near, far, far})) << first << " " << growth;
  }
  EXPECT_EQ(FlexGrowth({100, 50}, {101, 49}), (CSize{1, 0}));
  EXPECT_EQ(FlexGrowth({100, 50}, {0, 50}), (CSize{0, 0}));
  EXPECT_EQ(FlexGrowth({kMin, kMax}, {kMax, kMin}), (CSize{kMax, 0}));
}

struct Control : CWnd {
  LRESULT WindowProc(UINT message, WPARAM, LPARAM second) override {
    if (message == CB_GETDROPPEDCONTROLRECT) *reinterpret_cast<CRect*>(second) = {0, 5, 10, 45};
    if (message == WM_MOVE) on_move();
    return 0;
  }
  std::function<void()> on_move = [] {};
};

constexpr CRect kDesign{10, 10, 20, 20};
constexpr CRect kMoved{40, 10, 50, 70};

/// A host of 100 by 100 at 1000, 1000 with controls 1 to 3, the last of which has a child.
struct Host : detail::FlexHost<CWnd> {
  explicit Host(std::initializer_list<UINT> flexible) {
    CreateWnd({.class_name = "Host", .place = {1000, 1000, 1100, 1100}});
    for (const int i : {0, 1, 2}) {
      const char* const name = i == 1 ? "ComboBox" : "combobox";
      controls[i].CreateWnd({.class_name = name, .place = kDesign, .parent = this, .id = i + 1});
    }
    inner.CreateWnd({.class_name = "Edit", .place = {0, 0, 5, 5}, .parent = &controls[2]});
    for (const UINT id : flexible) AddFlexConstraint(id, NSFlexShiftRight, NSFlexExpandDown);
  }

  /// Which controls have moved as they do with the host at 130 by 150.
  std::string Resize(int cx, int cy) {
    MoveWindow(1000, 1000, cx, cy, false);
    std::string moved;
    for (const Control& each : controls) {
      moved += each.GetPlace() == kMoved ? 'x' : each.GetPlace() == kDesign ? '.' : '?';
    }
    return moved;
  }
  using FlexHost::InitFlex;

  Control controls[3], inner;
};

TEST(FlexConstraintList, NothingMovesBeforeTheDesignSizeIsSetAndAllControlsAreThere) {
  Host host({1, 9, 2});
  EXPECT_TRUE(host.Resize(130, 150) == "..." && host.Resize(100, 100) == "...");
  host.InitFlex();
  EXPECT_EQ(host.Resize(130, 150), "...");
  Control late;
  late.CreateWnd({.class_name = "Edit", .place = {0, 0, 1, 1}, .parent = &host, .id = 9});
  EXPECT_TRUE(host.Resize(131, 150) == "??." && host.Resize(130, 150) == "xx.");
  EXPECT_EQ(late.GetPlace(), (CRect{30, 0, 31, 51}));
  host.AddFlexConstraint(3, NSFlexShiftRight, NSFlexExpandDown);
  late.DestroyWindow();
  EXPECT_EQ(host.Resize(50, 50), "...");
  EXPECT_EQ(host.Resize(130, 150), "xx.") << "the third was added after the places were taken";
}

TEST(FlexConstraintList, ControlsAndTheirChildrenAreErasedAndMinimisedHostsLeftAlone) {
  Host host({3});
  host.InitFlex();
  bool erase = false;
  for (const WPARAM state : {SIZE_MINIMIZED, SIZE_RESTORED}) {
    host.SendMessage(WM_SIZE, state, MakeLParam(130, 150));
    EXPECT_EQ(host.controls[2].GetPlace(), state == SIZE_RESTORED ? kMoved : kDesign);
  }
  for (const CWnd* window : std::initializer_list<CWnd*>{&host.controls[2], &host.inner, &host}) {
    EXPECT_TRUE(window->GetUpdateRect(&erase) == window->GetClientRect() && erase);
  }
  EXPECT_TRUE(host.controls[0].GetUpdateRect().IsRectEmpty());
  MINMAXINFO info{};
  host.SendMessage(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
  EXPECT_EQ(info.ptMinTrackSize, (CPoint{100, 100}));
}

TEST(FlexConstraintList, ComboBoxesTakeTheirListsAlongOnOldPlatforms) {
  ScriptedPlatform platform;
  for (const DWORD major : {3u, 4u}) {
    platform.facts.version = platform::SystemVersion{.major = major};
    Host host({1, 2});
    host.InitFlex();
    EXPECT_EQ(host.Resize(130, 150), major == 3 ? "x?." : "xx.") << "the class's case counts";
    EXPECT_EQ(host.controls[1].GetPlace().bottom, major == 3 ? 110 : 70);
  }
}

TEST(FlexConstraintList, HandlersMayEndControlsAndTheHostInAPass) {
  for (const bool whole : {false, true}) {
    Host host({1, 2, 3});
    host.InitFlex();
    host.controls[0].on_move = [&host, whole] {
      if (whole) host.DestroyWindow();
      for (Control* control : {&host.controls[0], &host.controls[1]}) control->DestroyWindow();
    };
    EXPECT_EQ(host.Resize(130, 150), whole ? "x.." : "x.x");
    EXPECT_EQ(host.GetSafeHwnd() == nullptr, whole);
  }
}

DialogTemplate Form(const std::string& caption) {
  return *ReadDialogTemplate("caption \"" + caption +
                             "\"\nsize 300 200\nedit 20 \"\" 10 10 100 20\ndefbutton 1 \"OK\" 10 "
                             "50 50 20\nbutton 12321 \"Apply\" 70 50 50 20\n");
}

struct SubjectDlg : CNSFlexDialog {
  SubjectDlg() { InitModalIndirect(Form("Subject")); }
  void OnApplyChanges(void* sum) override { *static_cast<int*>(sum) += IsModified() ? 10 : 1; }
  void DoDataExchange(CDataExchange* exchange) override {
    if (exchange->m_bSaveAndValidate && GetDlgItemText(20) == "bad") exchange->Fail();
  }
};

TEST(FlexDialog, AppliesToItsSubjectWhenTheControlsAgree) {
  ScriptedPrompts prompts;
  SubjectDlg dialog;
  int subject = 0;
  dialog.SetSubject(&subject);
  dialog.AddFlexConstraint(20, NSFlexExpandRight, NSFlexVerticallyFixed);
  prompts.on_dialog = [&](View& view) {
    dialog.MoveWindow(0, 0, 350, 250);
    EXPECT_EQ(dialog.GetDlgItem(20)->GetPlace(), (CRect{10, 10, 160, 30}));
    EXPECT_FALSE(view.Press(ID_APPLY_NOW)) << "nothing to apply yet";
    dialog.SetModified();
    EXPECT_TRUE(view.Enter(20, "bad") && view.Press(ID_APPLY_NOW) && view.Press(IDOK));
    EXPECT_TRUE(view.IsOpen() && dialog.IsModified() && subject == 0);
    EXPECT_TRUE(view.Enter(20, "good") && view.Press(ID_APPLY_NOW));
    EXPECT_TRUE(!dialog.IsModified() && subject == 10);
    view.Press(IDOK);
  };
  EXPECT_TRUE(dialog.DoModal() == IDOK && subject == 11);
}

TEST_F(Dialogs, FlexDialogHasTheModuleCaptionAndHelpOfTheLibrarysDialogs) {
  struct Helped : CNSFlexDialog {
    using CNSFlexDialog::CNSFlexDialog;
    void OnHelp() override { contexts += GetHelpContext(); }
    DWORD contexts = 0;
  } dialog(3001);
  dialog.SetCaption("Own");
  HINSTANCE used = nullptr;
  prompts.on_dialog = [&](View&) {
    used = AfxGetResourceHandle();
    EXPECT_EQ(dialog.GetMinTrackSize(), (CSize{190, 150}));
    EXPECT_NE(dialog.SendMessage(WM_HELP), 0);
    dialog.SendMessage(WM_COMMAND, kHelpCommand);
  };
  EXPECT_TRUE(dialog.DoModal() == IDCANCEL && used == DQLIB_GetInstanceHandle());
  EXPECT_EQ(dialog.contexts, 2 * (0x20000U + 3001));
  EXPECT_TRUE(DQDoModalDialog(dialog, &module) == IDCANCEL && used == &module);
  EXPECT_EQ(prompts.dialogs, (std::vector<std::string>{"Own", "Own"}));
}

TEST(FlexMdiChildWnd, IsNoSmallerThanItsViewWithTheFrameAround) {
  CMDIFrameWnd main;
  CNSFlexMDIChildWnd child;
  ASSERT_TRUE(main.Create("Main", "", {}) && child.Create("Child", "", {0, 0, 308, 230}, &main));
  SetFrameWidths(child, {4, 26, 4, 4});
  CDocument document;
  CNSFlexFormView view(Form("Form"));
  view.AddFlexConstraint(1, NSFlexShiftRight, NSFlexShiftDown);
  ASSERT_TRUE(view.Create(&child, kFirstPaneId, &document));
  view.OnInitialUpdate();
  Control own;
  own.CreateWnd({.class_name = "Edit", .place = {1, 2, 3, 4}, .parent = &child, .id = 77});
  child.AddFlexConstraint(77, NSFlexShiftRight, NSFlexShiftDown);
  EXPECT_EQ(child.GetMinTrackSize(), (CSize{308, 230}));
  child.MoveWindow(0, 0, 318, 250);
  EXPECT_EQ(view.GetPlace(), (CRect{0, 0, 310, 220}));
  EXPECT_EQ(own.GetPlace(), (CRect{11, 22, 13, 24}));
  EXPECT_EQ(view.GetDlgItem(1)->GetPlace(), (CRect{20, 70, 70, 90}));
  EXPECT_EQ(CNSFlexMDIChildWnd::SetMinTrackSizeMessage(),
            RegisterWindowMessage("cnsflexmdichildwnd::setmintracksize"));
  EXPECT_EQ(RegisterWindowMessage("") + RegisterWindowMessage(nullptr), 0U);
}

struct SheetPage : CNSFlexPropertyPage {
  explicit SheetPage(const char* caption) : CNSFlexPropertyPage(Form(caption)), name(caption) {
    AddFlexConstraint(20, NSFlexExpandRight, NSFlexExpandDown);
    log.clear();
  }
  BOOL Answer(const char* call) {
    log += name + call + " ";
    const bool agrees = refuses != call;
    if (goes_at == call) delete this;
    return agrees;
  }
  BOOL OnSetActive() override { return Answer("+"); }
  BOOL OnKillActive() override { return Answer("-"); }
  BOOL OnApply() override { return Answer("!"); }
  void OnCancel() override { Answer("x"); }
  void OnOK() override { Answer("="); }
  void OnUpdate(CView*, LPARAM hint, CObject*) override { log += name + std::to_string(hint); }
  static inline std::string log;
  std::string name, refuses, goes_at;
};

TEST(FlexPropertySheet, AsksItsPagesInOrderAndStaysAtTheFirstThatRefuses) {
  ScriptedPrompts prompts;
  std::string& log = SheetPage::log;
  SheetPage a("a"), b("b"), c("c");
  struct Sheet : CNSFlexPropertySheet {
    using CNSFlexPropertySheet::CNSFlexPropertySheet;
    void OnApplyChanges(void* subject) override { *static_cast<std::string*>(subject) += "S "; }
    BOOL OnInitDialog() override {
      MoveWindow(0, 0, 400, 300);  // before the pages are there
      return CNSFlexPropertySheet::OnInitDialog();
    }
  } sheet("Sheet");
  sheet.AddFlexConstraint(IDCANCEL, NSFlexHorizontallyFixed, NSFlexVerticallyFixed);
  for (SheetPage* page : {&a, &b, &c}) ASSERT_TRUE(sheet.AddPage(page));
  EXPECT_FALSE(sheet.AddPage(&a));
  sheet.SetSubject(&log);
  a.refuses = "+";
  // What the pages were asked, and which is active then.
  const auto took = [&](const std::string& expected) {
    const auto* const active = static_cast<const SheetPage*>(sheet.GetActivePage());
    EXPECT_EQ(std::exchange(log, {}) + (active == nullptr ? "" : active->name), expected);
  };
  prompts.on_dialog = [&](View& view) {
    took("a+ b+ b");  // a page that refuses leaves the place to the next
    a.refuses.clear();
    EXPECT_TRUE(view.Enter(CPropertySheet::kTabControlId, "1") && !b.IsShown());
    took("b- a+ a");
    a.refuses = "-";
    EXPECT_TRUE(view.Enter(sheet.kTabControlId, "b") && !view.Enter(sheet.kTabControlId, "4"));
    took("a- a");
    a.refuses.clear();
    b.refuses = "!";
    EXPECT_TRUE(view.Press(IDOK) && view.IsOpen());
    took("a- a! b! b+ b");
    b.refuses.clear();
    c.SetModified();
    EXPECT_TRUE(view.Press(ID_APPLY_NOW) && !c.IsModified() && !view.Press(ID_APPLY_NOW));
    took("b- a! b! S b+ b");
    sheet.MoveWindow(0, 0, 430, 340);
    EXPECT_EQ(b.GetDlgItem(20)->GetPlace(), (CRect{10, 10, 220, 101}));
    EXPECT_EQ(sheet.GetDlgItem(IDOK)->GetPlace(), (CRect{107, 280, 182, 303}));
    // By a constraint of its own.
    EXPECT_EQ(sheet.GetDlgItem(IDCANCEL)->GetPlace(), (CRect{158, 240, 233, 263}));
    EXPECT_EQ(sheet.GetSizeGripRect(), (CRect{414, 324, 430, 340}));
    sheet.ShowWindow(SW_SHOWMAXIMIZED);
    EXPECT_TRUE(sheet.GetSizeGripRect().IsRectEmpty());
    view.Press(IDOK);
  };
  EXPECT_EQ(sheet.DoModal(), IDOK);
  took("b- a! b! S b");
  EXPECT_EQ(CPropertySheet("none").DoModal(), -1);
}

TEST(FlexPropertySheet, PagesMayDropThemselvesAndCountAsModifiedUntilThen) {
  ScriptedPrompts prompts;
  // What the second of three pages goes at and refuses, the button, and who is told what.
  for (const auto& [goes_at, refuses, button, told] : Cases<4>(R"(
      ! => => 1 => c- a! b! c! ;; ! => ! => 1 => c- a! b! ax cx ;; x => => 2 => ax bx cx
      + => => 2 => c- b+ c+ ax cx ;; - => => 1 => c- b+ b- c+ c- a! c!)")) {
    auto* const b = new SheetPage("b");
    SheetPage a("a"), c("c");
    CPropertySheet sheet("Sheet", nullptr, 0);
    for (SheetPage* page : {&a, b, &c}) ASSERT_TRUE(sheet.AddPage(page));
    prompts.on_dialog = [&, at = goes_at, said = refuses, press = std::stoi(button)](View& view) {
      for (const int page : {1, 2}) sheet.SetActivePage(page);
      SheetPage::log.clear();
      EXPECT_FALSE(sheet.GetDlgItem(ID_APPLY_NOW)->IsWindowEnabled());
      for (const BOOL modified : {1, 1, 0, 1}) b->SetModified(modified);
      b->goes_at = at;
      b->refuses = said;
      if (at == "+" || at == "-") sheet.SetActivePage(1);
      if (at == "-") sheet.SetActivePage(2);
      EXPECT_EQ(sheet.IsModified(), sheet.GetPageCount() == 3);
      EXPECT_EQ(sheet.GetDlgItem(ID_APPLY_NOW)->IsWindowEnabled(), sheet.GetPageCount() == 3);
      view.Press(press);
    };
    sheet.DoModal();
    EXPECT_EQ(SheetPage::log, told + " ") << goes_at << refuses;
    EXPECT_TRUE(sheet.GetPageCount() == 2 && sheet.GetPage(0) == &a && !sheet.IsModified());
  }
}

TEST(FlexPropertySheetView, ShowsADocumentOnItsPages) {
  CFrameWnd frame;
  ASSERT_TRUE(frame.Create("Frame", "", {0, 0, 500, 500}));
  CDocument document;
  auto page = std::make_unique<SheetPage>("p");
  CNSFlexPropertySheetView view;
  view.GetSheet().AddPage(page.get());
  ASSERT_TRUE(view.Create(&frame, {5, 7, 15, 17}, 1, &document) && page->GetView() == nullptr);
  SetFrameWidths(view, {1, 2, 3, 4});
  view.OnInitialUpdate();
  EXPECT_TRUE(page->GetView() == &view && page->GetDocument() == &document);
  EXPECT_EQ(view.GetPlace(), (CRect{5, 7, 329, 253})) << "as large as its page wants it";
  document.UpdateAllViews(nullptr, 7);
  document.UpdateAllViews(&view, 8);
  // What is applied is taken.
  EXPECT_TRUE(page->CNSFlexPropertyPage::OnApply() && SheetPage::log == "p+ p0p7p= ");
  view.MoveWindow(5, 5, 600, 400);
  EXPECT_EQ(view.GetSizeGripRect(), (CRect{580, 378, 596, 394}));
  page.reset();
  view.MoveWindow(5, 5, 700, 400);
  EXPECT_EQ(view.GetSheet().GetPageCount(), 0);
}

}  // namespace
}  // namespace dq::test
