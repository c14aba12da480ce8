// Menus, tool bars and accelerators, and how they are brought up to date.

#include "dqlib/framework/windows/menu_model.h"
#include "tests/support/doubles.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

constexpr UINT kNone = 0xFFFFFFFF;

std::uintptr_t Id(HMENU menu) { return reinterpret_cast<std::uintptr_t>(menu); }

/// "id:text" of the items, those of popups in parentheses, and "+" with the state, which for popups
/// has the number of their items in front.
std::string Dump(const CMenu& menu) {
  std::ostringstream dump;
  for (int at = 0; at < menu.GetMenuItemCount(); ++at) {
    const UINT state = menu.GetMenuState(at, MF_BYPOSITION);
    dump << (at > 0 ? " " : "") << std::dec << static_cast<int>(menu.GetMenuItemID(at)) << ':'
         << menu.GetMenuString(at, MF_BYPOSITION).View();
    if (const CMenu* submenu = menu.GetSubMenu(at)) dump << '(' << Dump(*submenu) << ')';
    if (state != 0) dump << '+' << std::hex << state;
  }
  return dump.str();
}

/// Of two commands and the menus "File" and "Recent".
struct Menu : testing::Test {
  Menu() {
    menu.LoadMenuIndirect(
        "popup \"&File\"\n  item 10 \"&Open\\tCtrl+O\"\n  popup \"&Recent\" grayed\n    item 11 "
        "\"A\" checked grayed\n  end\nend\nseparator\nitem 12 \"&Help\"\n");
  }
  CMenu menu;
};

TEST_F(Menu, TextGivesItemsAndPopupsThatAreNotNestedTooDeep) {
  EXPECT_EQ(Dump(menu), "-1:&File(10:&Open\tCtrl+O -1:&Recent(11:A+9)+111)+210 0:+800 12:&Help");
  EXPECT_FALSE(menu.LoadMenuIndirect("")) << "it has a menu";
  for (const int levels : {32, 33}) {
    std::string deep;
    for (int level = 0; level < levels; ++level) deep.insert(0, "popup \"x\"\n").append("end\n");
    std::string error;
    EXPECT_EQ(CMenu().Attach(detail::ReadMenuText(deep, &error)), levels == 32);
    EXPECT_EQ(error, levels == 32 ? "" : "line 33: popups are nested too deep");
  }
  EXPECT_TRUE(CMenu().LoadMenuIndirect("item 65535 \"\""));
}

TEST_F(Menu, ItemsAreFoundByCommandInSubmenusAndByPosition) {
  EXPECT_TRUE(menu.InsertMenu(11, MF_STRING, 20, "B") && menu.InsertMenu(999, MF_STRING, 21, ""));
  int data = 0;
  EXPECT_TRUE(menu.ModifyMenu(12, MF_OWNERDRAW, 12, reinterpret_cast<const char*>(&data)));
  EXPECT_EQ(menu.GetItemData(12, MF_BYCOMMAND), &data);
  EXPECT_TRUE(menu.CheckMenuItem(20, MF_CHECKED) == 0 && menu.EnableMenuItem(21, MF_GRAYED) == 0);
  EXPECT_EQ(menu.CheckMenuItem(20, MF_UNCHECKED), UINT{MF_CHECKED});
  EXPECT_TRUE(menu.CheckMenuRadioItem(11, 20, 20, MF_BYCOMMAND));
  EXPECT_EQ(Dump(menu),
            "-1:&File(10:&Open\tCtrl+O -1:&Recent(20:B+208 11:A+1)+211)+210 0:+800 12:+100 21:+1");
  EXPECT_TRUE(menu.CheckMenuRadioItem(2, 3, 3, MF_BYPOSITION));
  EXPECT_EQ(menu.GetMenuState(3, MF_BYPOSITION), UINT{MF_CHECKED | MF_RADIOCHECK | MF_GRAYED});
  menu.SetDefaultItem(21, false);
  EXPECT_TRUE(menu.InsertMenu(3, MF_BYPOSITION, 22, "Before"));
  EXPECT_TRUE(menu.DeleteMenu(0, MF_BYPOSITION) && !menu.DeleteMenu(4, MF_BYPOSITION));
  EXPECT_EQ(menu.GetDefaultItem(), 21U) << "the same one wherever it lies";
  EXPECT_TRUE(menu.CheckMenuItem(20, MF_CHECKED) == kNone && menu.DeleteMenu(21, MF_BYCOMMAND));
  EXPECT_EQ(menu.GetDefaultItem(), kNone);
}

TEST_F(Menu, RemovedSubmenusLiveAndDeletedOnesAreDead) {
  const HMENU file = menu.GetSubMenu(0)->GetSafeHmenu();
  const HMENU recent = menu.GetSubMenu(0)->GetSubMenu(1)->GetSafeHmenu();
  EXPECT_TRUE(menu.ModifyMenu(0, UINT{MF_BYPOSITION} | MF_POPUP | MF_OWNERDRAW, Id(file), nullptr))
      << "the same submenu isn't destroyed";
  EXPECT_TRUE(menu.RemoveMenu(0, MF_BYPOSITION));
  CMenu kept;
  EXPECT_TRUE(kept.Attach(file) && !CMenu().Attach(file));
  EXPECT_TRUE(kept.DeleteMenu(1, MF_BYPOSITION) && CMenu::FromHandle(recent) == nullptr);
  EXPECT_FALSE(menu.AppendMenu(MF_POPUP, Id(recent), "dead"));
  ASSERT_TRUE(menu.AppendMenu(MF_POPUP, Id(file), "back"));
  for (const HMENU circle : {menu.GetSafeHmenu(), file}) {
    EXPECT_FALSE(kept.AppendMenu(MF_POPUP, Id(circle), ""));
  }
  EXPECT_TRUE(menu.DestroyMenu() && kept.GetSafeHmenu() == nullptr) << "it went with the whole";
  EXPECT_FALSE(kept.AppendMenu(MF_STRING, 1, "x") || kept.DestroyMenu());
  EXPECT_TRUE(menu.LoadMenuIndirect("popup \"a\"\n  item 1 \"b\"\nend\n"));
  EXPECT_TRUE(menu.GetSubMenu(0)->DestroyMenu() && Dump(menu) == "-1:a+10") << "it has no menu";
}

TEST_F(Menu, ManyWaysToASubmenuAndDeepNestingAreHarmless) {
  // Each of 60 menus pops up the next one twice; then 2,000 follow in one line.
  HMENU last = menu.GetSafeHmenu();
  for (int level = 0; level < 2060; ++level) {
    CMenu next;
    next.CreatePopupMenu();
    const HMENU handle = next.Detach();
    for (int way = 0; way < (level < 60 ? 2 : 1); ++way) {
      ASSERT_TRUE(CMenu::FromHandle(last)->AppendMenu(MF_POPUP, Id(handle), ""));
    }
    last = handle;
  }
  EXPECT_EQ(menu.GetMenuState(5, MF_BYCOMMAND), kNone);
  EXPECT_FALSE(CMenu::FromHandle(last)->AppendMenu(MF_POPUP, Id(menu.GetSafeHmenu()), ""));
}

/// Handles the commands 10 to 19, keeps which are brought up to date and does something to some.
struct Frame : CFrameWnd {
  Frame() { Create("Frame", "", {}); }
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* only_ask) override {
    if (id < 10 || id > 19) return 0;
    if (code == CN_COMMAND) return updated += only_ask == nullptr ? "! " : "", 1;
    auto& ui = *static_cast<CCmdUI*>(extra);
    updated += std::to_string(id) + ' ';
    if (id == 10) ui.SetCheck(1);
    if (id == 12) ui.Enable(0);
    if (id == 13) ui.SetRadio(1);
    if (id == 13) ui.SetText("r");
    if (id == 14) end();
    if (id == 11) ui.m_pMenu->RemoveMenu(ui.m_nIndex, MF_BYPOSITION);
    return id != 15;
  }
  static inline std::string updated;
  std::function<void()> end;
};

TEST(Updates, ReachEveryItemWhileHandlersChangeTheMenuAndControlsToo) {
  CMenu menu;
  ASSERT_TRUE(menu.LoadMenuIndirect(
      "item 10 \"\"\nitem 11 \"\"\nitem 12 \"\"\npopup \"\"\nitem 13 \"\"\nend\nitem 15 \"\"\n"
      "item 30 \"\"\n"));
  Frame frame;
  Frame::updated.clear();
  menu.UpdateItems(frame);
  EXPECT_EQ(Frame::updated, "10 11 12 15 13 ");
  Frame::updated.clear();
  frame.SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu.GetSafeHmenu()));
  EXPECT_EQ(Frame::updated, "10 12 15 ") << "those below when they drop down";
  CCmdUI popup, control;
  popup.m_pMenu = &menu;
  popup.m_pSubMenu = menu.GetSubMenu(popup.m_nIndex = 2);
  CButton check(ButtonKind::kCheck);
  check.CreateWnd("Button");
  control.m_pOther = &check;
  for (CCmdUI* each : {&popup, &control}) {
    each->Enable(0);
    each->SetRadio(1);
    each->SetText("x");
  }
  EXPECT_TRUE(!check.IsWindowEnabled() && check.GetCheck() == 1);
  control.m_nID = 15;
  EXPECT_TRUE(!control.DoUpdate(frame, true) && check.IsWindowEnabled());
  EXPECT_EQ(Dump(menu) + " " + check.GetWindowText(), "10:+8 12:+3 -1:(13:r+208)+110 15: 30:+3 x")
      << "the popup stays as it was";
}

TEST(Updates, MayEndWhatCalledThem) {
  const WORD commands[] = {9, 10, 14, 15};
  for (const std::string what : {"frame", "frame by command", "bar", "menu"}) {
    auto frame = std::make_unique<Frame>();
    auto bar = std::make_unique<CToolBar>();
    ASSERT_TRUE(bar->Create(frame.get()));
    bar->SetButtons(commands);
    CMenu menu;
    ASSERT_TRUE(menu.LoadMenuIndirect(
        "item 9 \"\"\npopup \"\"\nitem 10 \"\"\nitem 14 \"\"\nitem 15 \"\"\nend\n"));
    frame->SetMenu(&menu);
    frame->end = [&] {
      if (what == "bar") bar.reset();
      if (what == "menu") menu.DestroyMenu();
      if (what.starts_with("frame")) frame.reset();
    };
    Frame::updated.clear();
    // The bar goes by the message that an idle thread sends it, and the menu by its frame.
    if (what == "menu") frame->UpdateMenu();
    if (what == "frame by command") frame->SendMessage(WM_COMMAND, 14);
    if (what == "frame" || what == "bar") bar->SendMessage(WM_IDLEUPDATECMDUI, 1);
    EXPECT_EQ(Frame::updated, what == "frame by command" ? "14 " : "10 14 ") << what;
    EXPECT_EQ(frame == nullptr, what.starts_with("frame"));
  }
}

TEST(AcceleratorTable, CombinationsHaveCommands) {
  MainWindow main;
  AcceleratorTable table;
  ASSERT_TRUE(table.Read("# keys\nctrl+shift+f 44412\nF24 65535\nALT+z 2\ncTrl+Shift+F 3\n9 7\n"));
  const Rows<WORD, bool, bool, bool, WORD> rows = {
      {'F', true, true, false, 44412}, {'F', true, false, false, 0},
      {'F', true, true, true, 0},      {0x87, false, false, false, 65535},
      {'Z', false, false, true, 2},    {'9', false, false, false, 7}};
  for (const auto& [key, control, shift, alt, command] : rows) {
    EXPECT_EQ(table.Find(key, control, shift, alt), command) << key;
    EXPECT_EQ(table.Translate(main, key, control, shift, alt), command != 0);
  }
  ASSERT_TRUE(
      table.Read("bACK 1\nTab 1\nEnter 1\nEsc 1\nSpace 1\nPgUp 1\nPgDn 1\nEnd 1\nHome 1\nLeft 1\n"
                 "Up 1\nRight 1\nDown 1\nIns 1\nDel 1\na 1\nZ 1\n0 1\nF1 1\n"));
  std::string keys;
  for (const Accelerator& each : table.entries()) keys += std::to_string(each.key) + " ";
  EXPECT_EQ(keys, "8 9 13 27 32 33 34 35 36 37 38 39 40 45 46 65 90 48 112 ");
  EXPECT_FALSE(table.Load(64999) || !table.entries().empty()) << "there is no such resource";
  for (const char* text : {"F25 1", "F0 1", "ctrl+ 1", "ctrl+ctrl+A 1", "A", "A 0", "A 65536",
                           "A 1 2", "meta+A 1", "A 99999999999", ": 1", "[ 1"}) {
    EXPECT_TRUE(!table.Read(text) && table.entries().empty()) << text;
  }
}

TEST(ToolBar, ResourceGivesButtonsAndEveryChangeIsTold) {
  const WORD commands[] = {10, 0, 12, 30}, others[] = {1, 2, 3, 4, 5};
  ResourceModule module;
  const std::string data = WriteToolBarTemplate({20, 19}, commands);
  EXPECT_EQ(data, std::string("\1\0\24\0\23\0\4\0\n\0\0\0\14\0\36\0", 16));
  module.AddResource(RESOURCE_TOOLBAR, 5, data);
  module.AddResource(RESOURCE_TOOLBAR, 6, data.substr(0, data.size() - 1));
  module.AddResource(RESOURCE_TOOLBAR, 7, "\x02" + data.substr(1));
  const CDynLinkLibrary link(&module);
  Frame frame;
  CToolBar bar;
  ASSERT_TRUE(bar.Create(&frame, 1));
  bar.SetButtons(others);
  RecordingObserver observer;
  EXPECT_TRUE(bar.LoadToolBar(5));
  for (const UINT broken : {6U, 7U, 8U}) EXPECT_FALSE(bar.LoadToolBar(broken));
  EXPECT_TRUE(observer.Take() == "1 -rows@0*5 1 +rows@0*4 " &&
              bar.GetPictureSize() == (CSize{20, 19}));
  EXPECT_TRUE(bar.CommandToIndex(12) == 2 && bar.CommandToIndex(0) + bar.CommandToIndex(99) == -2);
  for (const int none : {-1, 1, 4}) EXPECT_EQ(bar.GetItemID(none), 0U);
  // It is brought up to date by the frame around it while it is in sight and the thread idle.
  CWinApp app("idle");
  app.m_pMainWnd = &frame;
  Frame::updated.clear();
  for (const int show : {SW_HIDE, SW_SHOW, SW_SHOW}) {
    bar.ShowWindow(show);
    PumpUntilIdle();
    Frame::updated += ". ";
  }
  EXPECT_TRUE(bar.ClickButton(0) && !bar.ClickButton(1) && !bar.ClickButton(2));
  EXPECT_EQ(Frame::updated, ". 10 12 . 10 12 . ! ");
  EXPECT_TRUE(bar.GetButton(0) == (ToolBarButton{10, true, 1, false}) && !bar.GetButton(3).enabled);
  for (const int at : {0, 2}) bar.PressButton(at, true);
  EXPECT_EQ(bar.GetButton(0), (ToolBarButton{10, true, 1, true}));
  EXPECT_EQ(bar.GetButton(2), (ToolBarButton{12, false, 0, false}));
  bar.EnableButton(0, false);
  bar.CheckButton(0, 3);
  EXPECT_EQ(bar.GetButton(0), (ToolBarButton{10, false, 2, false}));
}

}  // namespace
}  // namespace dq::test
