// Which window, child frame and view are active, and where the focus goes with them.

#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// What happens, in its order: "a+" for a view that becomes active, "a-" for one that stops being
/// it, with "=" where it stays its frame's.
std::string g_log;

/// "-" for no window.
std::string Name(const CWnd* window) {
  return window == nullptr ? "-" : std::string(window->GetWindowText());
}

struct NamedView : CView {
  NamedView(CWnd& frame, const char* name, int id) {
    CDocument* const none = nullptr;
    Create(&frame, {0, 0, 20, 20}, id, none);
    SetWindowText(name);
  }
  ~NamedView() override { DestroyWindow(); }
  void OnActivateView(bool activate, CView* activated, CView* deactivated) override {
    g_log += Name(this) + (activate ? "+" : "-") + (activated == deactivated ? "= " : " ");
    CView::OnActivateView(activate, activated, deactivated);
  }
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message == WM_MOUSEACTIVATE && answer != 0) return answer;
    if (message == WM_LBUTTONDOWN) g_log += Name(this) + " pressed ";
    return CView::WindowProc(message, wparam, lparam);
  }
  LRESULT answer = 0;
};

struct NamedForm : CFormView {
  explicit NamedForm(CWnd& frame)
      : CFormView(ReadDialogTemplate("size 30 20\ntext 1 \"\" 0 0 9 9\nedit 2 \"first\" 0 0 9 9\n"
                                     "edit 3 \"second\" 0 0 9 9\n")
                      .value()) {
    Create(&frame, kFirstPaneId, nullptr);
    SetWindowText("form");
  }
  ~NamedForm() override { DestroyWindow(); }
};

/// A main frame with a bar, a child frame "one" with the views a and b, "two" with a form, and
/// "none" without a view; and another window.
struct Activation : testing::Test {
  struct Child : CMDIChildWnd {
    Child(CMDIFrameWnd& main, const char* name) { Create("", name, {0, 0, 50, 50}, &main); }
  };

  Activation() {
    field.CreateWnd({.class_name = "Edit", .text = "field", .parent = &bar});
    main.SetActiveWindow();
  }
  ~Activation() override {
    main.DestroyWindow();
    g_log.clear();
  }

  /// The log, the active child frame and its view, and what has the focus.
  std::string State() {
    return std::exchange(g_log, {}) + Name(main.MDIGetActive()) + " " +
           Name(main.GetActiveFrame()->GetActiveView()) + " " + Name(CWnd::GetFocus());
  }
  static void Press(CWnd& window) { MouseInput(WM_LBUTTONDOWN, MK_LBUTTON, {5, 5}, &window); }

  HeldKeys layer;
  struct Main : CMDIFrameWnd {
    Main() { Create("Frame", "main", {0, 0, 300, 200}); }
    BOOL OnCmdMsg(UINT id, int code, void* extra, void* info) override {
      if (code == CN_COMMAND) command = id;
      return CMDIFrameWnd::OnCmdMsg(id, code, extra, info);
    }
    UINT command = 0;
  } main;
  struct Bar : CControlBar {
    explicit Bar(CWnd& main) { CreateWnd({.class_name = "Bar", .text = "bar", .parent = &main}); }
  } bar{main};
  CEdit field;
  Child none{main, "none"}, two{main, "two"};
  NamedForm form{two};
  Child one{main, "one"};
  NamedView a{one, "a", kFirstPaneId}, b{one, "b", kFirstPaneId + 1};
  struct Other : CWnd {
    Other() { CreateWnd({.class_name = "Other", .text = "other"}); }
  } other;
};

TEST_F(Activation, GoesWhereAPersonPressesOrPutsTheFocus) {
  using Step = std::function<void()>;
  CWnd& second = *form.GetDlgItem(3);
  int at = 0;
  for (const auto& [step, state] : Rows<Step, std::string>{
           {[] {}, "a+= one a a"},
           {[&] { Press(b); }, "a- b+ b pressed one b b"},
           {[&] { Press(b); }, "b pressed one b b"},
           {[&] { field.SetFocus(); }, "one b field"},
           {[&] { Press(b); }, "b pressed one b b"},
           // Another child frame, with the focus's or the form's own choice of a control.
           {[&] { Press(form); }, "b-= two form first"},
           {[&] { second.SetFocus(); }, "two form second"},
           {[&] { a.SetFocus(); }, "b+= b- a+ one a a"},
           {[&] { main.MDIActivate(&two); }, "a-= two form second"},
           {[&] { none.MDIActivate(); }, "none - none"},
           {[&] { main.SetFocus(); }, "none - none"},
           {[&] { one.SetActiveView(&b); }, "a- b+ none - none"},
           {[&] { main.MDINext(); }, "two form second"},
           {[&] { main.MDINext(); }, "b+= one b b"},
           // Who leaves the window doesn't leave the view, and comes back to what had the focus.
           {[&] { other.SetActiveWindow(); }, "one b other"},
           {[&] { Press(a); }, "b- a+ a+= a pressed one a a"},
           {[&] { field.SetFocus(); }, "one a field"},
           {[&] { CWnd::LeaveActiveWindow(); }, "one a -"},
           {[&] { main.SetActiveWindow(); }, "a+= one a field"},
           {[&] { second.SetFocus(), other.SetActiveWindow(); }, "a-= two form other"},
           {[&] { main.SetActiveWindow(); }, "two form second"},
           {[&] { other.SetActiveWindow(), one.MDIActivate(); }, "a+= one a other"},
           {[&] { main.SetActiveWindow(); }, "a+= one a a"},
           // The press may be refused, or dropped.
           {[&] { b.answer = MA_NOACTIVATE, Press(b); }, "b pressed one a a"},
           {[&] { b.answer = MA_NOACTIVATEANDEAT, Press(b); }, "one a a"},
           {[&] { b.answer = MA_ACTIVATEANDEAT, Press(b); }, "a- b+ one b b"},
           // Where the focus is lost the window around has it.
           {[&] { second.SetFocus(), second.ShowWindow(SW_HIDE); }, "b-= two form first"},
           {[&] { two.ShowWindow(SW_HIDE); }, "b+= one b b"},
           {[&] { two.MDIDestroy(); }, "one b b"},
           {[&] { b.DestroyWindow(); }, "b- one - one"}}) {
    step();
    EXPECT_EQ(State(), state) << "step " << at;
    ++at;
  }
}

TEST_F(Activation, RaisesTheActiveChildFrameAndGoesRoundAll) {
  const auto order = [&] {
    std::string names;
    const CWnd* each = main.GetMDIClient()->GetTopWindow();
    for (; each != nullptr; each = each->GetNextWindow()) names += Name(each) + " ";
    return names;
  };
  EXPECT_EQ(order(), "one two none ");
  EXPECT_EQ(main.GetMDIClient()->WindowAt({5, 5}), &a);
  std::string rounds;
  for (int times = 0; times < 4; ++times) rounds += (main.MDINext(), order()) + "/ ";
  EXPECT_EQ(rounds, "two none one / none one two / one two none / two none one / ");
  none.ShowWindow(SW_HIDE);
  one.EnableWindow(false);
  main.MDINext();
  EXPECT_EQ(main.MDIGetActive(), &two) << "there is no other that a person can use";
  two.ShowWindow(SW_HIDE);
  EXPECT_EQ(main.MDIGetActive(), nullptr);
}

TEST_F(Activation, GoesToAndClosesChildFramesByKeys) {
  std::string actives;
  const auto press = [&](std::set<int> held, WPARAM key) {
    layer.held = std::move(held);
    KeyInput(WM_KEYDOWN, key);
    actives += Name(main.MDIGetActive()) + ' ';
  };
  for (const WPARAM key : {VK_F6, VK_TAB}) {
    for (int times = 0; times < 2; ++times) press({VK_CONTROL}, key);
    for (int times = 0; times < 3; ++times) press({VK_CONTROL, VK_SHIFT}, key);
    press({VK_CONTROL}, key);
    actives += '/';
  }
  EXPECT_EQ(actives, "two none two one none one /two none two one none one /");
  actives.clear();
  press({}, VK_F6);
  press({VK_CONTROL, VK_MENU}, VK_F4);
  press({VK_CONTROL}, VK_F1);
  main.GetAccelTable().Read("Ctrl+F4 8\n");
  press({VK_CONTROL}, VK_F4);
  main.GetAccelTable().Read("");
  for (int times = 0; times < 4; ++times) press({VK_CONTROL}, VK_F4);
  EXPECT_EQ(actives, "one one one one two none - - ");
}

TEST_F(Activation, ComesBackToTheWindowAroundTheOwner) {
  CWnd owned;
  for (const auto& [leave, state] : Rows<std::function<void()>, std::string>{
           {[&] { owned.DestroyWindow(); }, "a+= a+= one a a"},
           {[&] { owned.ShowWindow(SW_HIDE), owned.DestroyWindow(); }, "a+= one a a"},
           {[&] { a.DestroyWindow(); }, "a- one - one"}}) {
    owned.CreateWnd({.class_name = "Owned", .text = "owned", .owner = &a});
    owned.SetActiveWindow();
    leave();
    EXPECT_EQ(State() + Name(CWnd::GetActiveWindow()), state + "main");
  }
  other.SetActiveWindow();
  EXPECT_TRUE(b.SetActiveWindow() == &other && CWnd::GetActiveWindow() == &main);
}

TEST_F(Activation, KeysOfTheFramesComeBeforeThoseOfAForm) {
  form.GetDlgItem(2)->SetFocus();
  two.GetAccelTable().Read("F1 7\n");
  main.GetAccelTable().Read("Enter 8\n");
  std::string done;
  for (const WPARAM key : {VK_F1, VK_RETURN, VK_TAB}) {
    EXPECT_TRUE(KeyInput(WM_KEYDOWN, key));
    done += std::to_string(std::exchange(main.command, 0)) + Name(CWnd::GetFocus()) + " ";
  }
  EXPECT_EQ(done, "7first 8first 0second ");
}

TEST(PropertySheetKeys, TurnThePagesAndTakeTheFocusAlong) {
  struct Keys : RecordingObserver {
    int GetKeyState(int key) override { return std::ranges::count(held, key) > 0 ? kKeyDown : 0; }
    std::vector<int> held;
  } layer;
  struct Page : CPropertyPage {
    explicit Page(const std::string& name)
        : CPropertyPage(ReadDialogTemplate("caption \"" + name +
                                           "\"\nsize 9 9\ntext 1 \"\" 0 0 1 1\n" + "edit 2 \"" +
                                           name + "\" 0 0 1 1\n")
                            .value()) {}
    BOOL OnSetActive() override { return agrees; }
    BOOL OnKillActive() override { return leaves; }
    BOOL agrees = 1, leaves = 1;
  } a("a"), b("b"), c("c");
  MainWindow main;
  CPropertySheet sheet("sheet");
  for (Page* const page : {&a, &b, &c}) sheet.AddPage(page);
  ASSERT_TRUE(sheet.Create(&main));
  sheet.ShowWindow(SW_SHOW);
  EXPECT_EQ(CWnd::GetFocus(), a.GetDlgItem(2)) << "the first control of the page";
  const std::vector<int> control{VK_CONTROL}, both{VK_CONTROL, VK_SHIFT};
  const auto nothing = [] {};
  for (const auto& [before, held, key, state] :
       Rows<std::function<void()>, std::vector<int>, int, std::string>{
           {nothing, control, VK_TAB, "bb"},
           {nothing, both, VK_TAB, "aa"},
           {nothing, both, VK_TAB, "cc"},
           {[&] { b.agrees = 0; }, control, VK_NEXT, "aa"},
           {nothing, control, VK_NEXT, "cc"},
           {nothing, control, VK_PRIOR, "aa"},
           {[&] { a.leaves = 0; }, control, VK_TAB, "aa"},
           // The focus stays where it isn't in a page.
           {[&] { a.leaves = 1, sheet.SetFocus(); }, control, VK_TAB, "csheet"}}) {
    before();
    layer.held = held;
    EXPECT_TRUE(KeyInput(WM_KEYDOWN, static_cast<WPARAM>(key)));
    EXPECT_EQ(Name(sheet.GetActivePage()) + Name(CWnd::GetFocus()), state);
  }
}

}  // namespace
}  // namespace dq::test
