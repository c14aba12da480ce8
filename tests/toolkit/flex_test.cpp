// Windows and dialogs that stretch with their controls.

#include "tests/support/doubles.h"

namespace dq::test {
namespace {

using View = platform::DialogView;

TEST(FlexPlace, EachEdgeMovesByItsOwnTruncatedShareOfTheGrowthWhichIsNeverNegative) {
  constexpr LONG kMin = std::numeric_limits<LONG>::min();
  constexpr LONG kMax = std::numeric_limits<LONG>::max();
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  // 0.7 times 10 would be 7 in single precision.
  const Rows<float, float, LONG, LONG, LONG> rows = {
      {0, 1, 10, 7, 19},           {0.5, 0.5, 10, 12, 14}, {-0.5, 2, 3, 6, 15},
      {0.7f, 0.3f, 10, 13, 12},    {kNan, kNan, 10, 7, 9}, {1e30f, 1, kMax, kMax, kMax},
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
    for (const UINT id : flexible) Add(id);
  }
  ~Host() override { DestroyWindow(); }

  void Add(UINT id) { AddFlexConstraint(id, NSFlexShiftRight, NSFlexExpandDown); }
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
  EXPECT_EQ(host.Resize(130, 150), "...");
  host.Resize(100, 100);
  host.InitFlex();
  EXPECT_EQ(host.Resize(130, 150), "...");
  Control late;
  late.CreateWnd({.class_name = "Edit", .place = {0, 0, 1, 1}, .parent = &host, .id = 9});
  EXPECT_EQ(host.Resize(131, 150), "??.");
  EXPECT_EQ(host.Resize(130, 150), "xx.");
  EXPECT_EQ(late.GetPlace(), (CRect{30, 0, 31, 51}));
  host.Add(3);
  late.DestroyWindow();
  EXPECT_EQ(host.Resize(50, 50), "...");
  EXPECT_EQ(host.Resize(130, 150), "xx.") << "the third was added after the places were taken";
}

TEST(FlexConstraintList, ControlsAndTheirChildrenAreErasedAndMinimisedHostsLeftAlone) {
  Host host({3});
  host.InitFlex();
  bool erase = false;
  host.SendMessage(WM_SIZE, SIZE_MINIMIZED, MakeLParam(130, 150));
  EXPECT_EQ(host.controls[2].GetPlace(), kDesign);
  host.SendMessage(WM_SIZE, SIZE_RESTORED, MakeLParam(130, 150));
  EXPECT_EQ(host.controls[2].GetPlace(), kMoved);
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
  return *ReadDialogTemplate(
      "caption \"" + caption +
      "\"\nsize 300 200\nedit 20 \"\" 10 10 100 20\n"
      "defbutton 1 \"OK\" 10 50 50 20\nbutton 12321 \"Apply\" 70 50 50 20\n");
}

struct Dialog : CNSFlexDialog {
  Dialog() { InitModalIndirect(Form("Subject")); }
  void OnApplyChanges(void* subject) override {
    ++*static_cast<int*>(subject);
    modified = IsModified();
  }
  void DoDataExchange(CDataExchange* exchange) override {
    if (exchange->m_bSaveAndValidate && GetDlgItemText(20) == "bad") exchange->Fail();
  }
  bool modified = false;
};

TEST(FlexDialog, AppliesToItsSubjectWhenTheControlsAgree) {
  ScriptedPrompts prompts;
  Dialog dialog;
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
    EXPECT_TRUE(dialog.modified && !dialog.IsModified() && subject == 1);
    view.Press(IDOK);
  };
  EXPECT_TRUE(dialog.DoModal() == IDOK && subject == 2);
}

TEST(FlexMdiChildWnd, IsNoSmallerThanItsViewWithTheFrameAround) {
  CMDIFrameWnd main;
  CNSFlexMDIChildWnd child;
  ASSERT_TRUE(main.Create("Main", "", {}) && child.Create("Child", "", {0, 0, 308, 230}, &main));
  child.SetFrameWidths({4, 26, 4, 4});
  CDocument document;
  CNSFlexFormView view(Form("Form"));
  view.AddFlexConstraint(1, NSFlexShiftRight, NSFlexShiftDown);
  ASSERT_TRUE(view.Create(&child, CNSFlexMDIChildWnd::kViewId, &document));
  view.OnInitialUpdate();
  Control own;
  own.CreateWnd({.class_name = "Edit", .place = {1, 2, 3, 4}, .parent = &child, .id = 77});
  child.AddFlexConstraint(77, NSFlexShiftRight, NSFlexShiftDown);
  MINMAXINFO info{};
  child.SendMessage(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
  EXPECT_EQ(info.ptMinTrackSize, (CPoint{308, 230}));
  child.MoveWindow(0, 0, 318, 250);
  EXPECT_EQ(view.GetPlace(), (CRect{0, 0, 310, 220}));
  EXPECT_EQ(own.GetPlace(), (CRect{11, 22, 13, 24}));
  EXPECT_EQ(view.GetDlgItem(1)->GetPlace(), (CRect{20, 70, 70, 90}));
  EXPECT_EQ(CNSFlexMDIChildWnd::SetMinTrackSizeMessage(),
            RegisterWindowMessage("cnsflexmdichildwnd::setmintracksize"));
  EXPECT_EQ(RegisterWindowMessage("") + RegisterWindowMessage(nullptr), 0U);
}

struct Page : CNSFlexPropertyPage {
  explicit Page(const char* caption) : CNSFlexPropertyPage(Form(caption)), name(caption) {
    AddFlexConstraint(20, NSFlexExpandRight, NSFlexExpandDown);
    log.clear();
  }
  BOOL Answer(const char* call) {
    log += name + call;
    const bool agrees = refuses != call;
    if (goes_at == call) delete this;
    return agrees;
  }
  BOOL OnSetActive() override { return Answer("+ "); }
  BOOL OnKillActive() override { return Answer("- "); }
  BOOL OnApply() override { return Answer("! "); }
  void OnCancel() override { Answer("x "); }
  void OnUpdate(CView*, LPARAM hint, CObject*) override { log += name + std::to_string(hint); }
  static inline std::string log;
  std::string name, refuses, goes_at;
};

TEST(FlexPropertySheet, APageTakesItsValuesWhenTheyAreApplied) {
  struct : CNSFlexPropertyPage {
    using CNSFlexPropertyPage::CNSFlexPropertyPage;
    void OnOK() override { ++times; }
    int times = 0;
  } page(Form("a"));
  EXPECT_EQ(page.OnApply() + page.times, 2);
}

TEST(FlexPropertySheet, AsksItsPagesInOrderAndStaysAtTheFirstThatRefuses) {
  ScriptedPrompts prompts;
  std::string& log = Page::log;
  Page a("a"), b("b"), c("c");
  struct Sheet : CNSFlexPropertySheet {
    using CNSFlexPropertySheet::CNSFlexPropertySheet;
    void OnApplyChanges(void* subject) override { *static_cast<std::string*>(subject) += "S "; }
    BOOL OnInitDialog() override {
      MoveWindow(0, 0, 400, 300);  // before the pages are there
      return CNSFlexPropertySheet::OnInitDialog();
    }
  } sheet("Sheet");
  sheet.AddFlexConstraint(IDCANCEL, NSFlexHorizontallyFixed, NSFlexVerticallyFixed);
  for (Page* page : {&a, &b, &c}) ASSERT_TRUE(sheet.AddPage(page));
  EXPECT_FALSE(sheet.AddPage(&a));
  sheet.SetSubject(&log);
  a.refuses = "+ ";
  // What the pages were asked, and which is active then.
  const auto took = [&](const std::string& expected) {
    const CPropertyPage* const active = sheet.GetActivePage();
    log += active == nullptr ? "" : static_cast<const Page*>(active)->name;
    EXPECT_EQ(std::exchange(log, {}), expected);
  };
  prompts.on_dialog = [&](View& view) {
    took("a+ b+ b");  // a page that refuses leaves the place to the next
    a.refuses.clear();
    EXPECT_TRUE(view.Enter(CPropertySheet::kTabControlId, "1") && !b.IsShown());
    took("b- a+ a");
    a.refuses = "- ";
    EXPECT_TRUE(view.Enter(CPropertySheet::kTabControlId, "b"));
    EXPECT_FALSE(view.Enter(CPropertySheet::kTabControlId, "4"));
    took("a- a");
    a.refuses.clear();
    b.refuses = "! ";
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
  const Rows<std::string, const char*, int, const char*> rows = {
      {"! ", "", IDOK, "c- a! b! c! "},
      {"! ", "! ", IDOK, "c- a! b! ax cx "},
      {"x ", "", IDCANCEL, "ax bx cx "},
      {"+ ", "", IDCANCEL, "c- b+ c+ ax cx "},
      {"- ", "", IDOK, "c- b+ b- c+ c- a! c! "}};
  for (const auto& [goes_at, refuses, button, told] : rows) {
    auto* const a = new Page("a");
    auto* const b = new Page("b");
    Page c("c");
    CPropertySheet sheet("Sheet", nullptr, 0);
    for (Page* page : {a, b, &c}) ASSERT_TRUE(sheet.AddPage(page));
    prompts.on_dialog = [&, at = goes_at, refused = refuses, pressed = button](View& view) {
      for (const int page : {1, 2}) sheet.SetActivePage(page);
      Page::log.clear();
      EXPECT_FALSE(sheet.GetDlgItem(ID_APPLY_NOW)->IsWindowEnabled());
      for (const BOOL modified : {1, 1, 0, 1}) b->SetModified(modified);
      b->goes_at = at;
      b->refuses = refused;
      if (at == "+ " || at == "- ") sheet.SetActivePage(1);
      if (at == "- ") sheet.SetActivePage(2);
      EXPECT_EQ(sheet.IsModified(), sheet.GetPageCount() == 3);
      EXPECT_EQ(sheet.GetDlgItem(ID_APPLY_NOW)->IsWindowEnabled(), sheet.GetPageCount() == 3);
      view.Press(pressed);
    };
    sheet.DoModal();
    EXPECT_EQ(Page::log, told) << goes_at << refuses;
    EXPECT_TRUE(sheet.GetPageCount() == 2 && sheet.GetPage(0) == a && !sheet.IsModified());
    delete a;
  }
}

TEST(FlexPropertySheetView, ShowsADocumentOnItsPages) {
  CFrameWnd frame;
  ASSERT_TRUE(frame.Create("Frame", "", {0, 0, 500, 500}));
  CDocument document;
  auto page = std::make_unique<Page>("p");
  CNSFlexPropertySheetView view;
  view.GetSheet().AddPage(page.get());
  ASSERT_TRUE(view.Create(&frame, {5, 7, 15, 17}, 1, &document));
  view.SetFrameWidths({1, 2, 3, 4});
  EXPECT_EQ(page->GetView(), nullptr);
  view.OnInitialUpdate();
  EXPECT_TRUE(page->GetView() == &view && page->GetDocument() == &document);
  EXPECT_EQ(view.GetPlace(), (CRect{5, 7, 329, 253})) << "as large as its page wants it";
  document.UpdateAllViews(nullptr, 7);
  document.UpdateAllViews(&view, 8);
  EXPECT_EQ(Page::log, "p+ p0p7");
  view.MoveWindow(5, 5, 600, 400);
  EXPECT_EQ(view.GetSizeGripRect(), (CRect{580, 378, 596, 394}));
  page.reset();
  view.MoveWindow(5, 5, 700, 400);
  EXPECT_EQ(view.GetSheet().GetPageCount(), 0);
}

}  // namespace
}  // namespace dq::test
