#include "dqlib/framework/windows/menu.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/resource_module.h"
#include "dqlib/framework/windows/cmd_target.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/tool_bar.h"
#include "dqlib/framework/windows/win_app.h"
#include "tests/support/recording_observer.h"
#include "tests/support/rows.h"

namespace dq {
namespace {

constexpr UINT kNone = 0xFFFFFFFF;
constexpr std::string_view kFileMenu =
    "popup \"&File\"\n"
    "  item 10 \"&Open\\tCtrl+O\"\n"
    "  popup \"&Recent\" grayed\n    item 11 \"A\" checked grayed\n  end\n"
    "end\nseparator\nitem 12 \"&Help\"\n";

std::uintptr_t Id(HMENU menu) { return reinterpret_cast<std::uintptr_t>(menu); }

/// "id:text" of the items, with those of popups in parentheses.
std::string Dump(const CMenu& menu) {
  std::string dump;
  for (int at = 0; at < menu.GetMenuItemCount(); ++at) {
    if (at > 0) dump += ' ';
    dump += std::to_string(static_cast<int>(menu.GetMenuItemID(at))) + ':' +
            std::string(menu.GetMenuString(static_cast<UINT>(at), MF_BYPOSITION));
    if (const CMenu* submenu = menu.GetSubMenu(at)) dump += '(' + Dump(*submenu) + ')';
  }
  return dump;
}

TEST(Menu, TextGivesItemsAndABrokenOneNone) {
  CMenu menu;
  ASSERT_TRUE(menu.LoadMenuIndirect(kFileMenu));
  EXPECT_EQ(Dump(menu), "-1:&File(10:&Open\tCtrl+O -1:&Recent(11:A)) 0: 12:&Help");
  EXPECT_EQ(menu.GetMenuState(11, MF_BYCOMMAND), UINT{MF_CHECKED | MF_GRAYED});
  EXPECT_EQ(menu.GetMenuState(0, MF_BYPOSITION), UINT{MF_POPUP | 0x200});
  EXPECT_FALSE(menu.LoadMenuIndirect(kFileMenu)) << "it has a menu";
  std::string deep;
  for (int level = 0; level < 33; ++level) deep.insert(0, "popup \"x\"\n").append("end\n");
  for (const char* text : {"popup \"x\"\n", "end\n", deep.c_str(), "item 0 \"x\"\n", "item 1 \"x\n",
                           "item 1 \"x\\q\"\n", "item 65536 \"\"", "item 1 \"x\" green\n",
                           "entry\n", "separator 3\n"}) {
    CMenu broken;
    EXPECT_FALSE(broken.LoadMenuIndirect(text)) << text;
    EXPECT_EQ(broken.GetMenuItemCount(), -1);
  }
}

TEST(Menu, ItemsAreFoundByCommandInSubmenusAndByPosition) {
  CMenu menu;
  ASSERT_TRUE(menu.LoadMenuIndirect(kFileMenu));
  EXPECT_TRUE(menu.InsertMenu(11, MF_STRING, 20, "B"));
  EXPECT_TRUE(menu.InsertMenu(999, MF_STRING, 21, "End"));
  int data = 0;
  EXPECT_TRUE(menu.ModifyMenu(12, MF_OWNERDRAW, 12, reinterpret_cast<const char*>(&data)));
  EXPECT_EQ(menu.GetItemData(12, MF_BYCOMMAND), &data);
  EXPECT_EQ(Dump(menu), "-1:&File(10:&Open\tCtrl+O -1:&Recent(20:B 11:A)) 0: 12: 21:End");
  EXPECT_EQ(menu.CheckMenuItem(20, MF_CHECKED), 0U);
  EXPECT_EQ(menu.CheckMenuItem(20, MF_UNCHECKED), UINT{MF_CHECKED});
  EXPECT_TRUE(menu.CheckMenuRadioItem(11, 20, 20, MF_BYCOMMAND));
  EXPECT_EQ(menu.GetMenuState(11, 0), UINT{MF_GRAYED});
  EXPECT_EQ(menu.GetMenuState(20, 0), UINT{MF_CHECKED | MF_RADIOCHECK});
  menu.SetDefaultItem(21, false);
  EXPECT_TRUE(menu.DeleteMenu(0, MF_BYPOSITION));
  EXPECT_FALSE(menu.DeleteMenu(3, MF_BYPOSITION));
  EXPECT_EQ(Dump(menu), "0: 12: 21:End");
  EXPECT_EQ(menu.GetDefaultItem(), 21U);
  EXPECT_EQ(menu.CheckMenuItem(20, MF_CHECKED), kNone);
}

TEST(Menu, RemovedSubmenusLiveAndDeletedOnesAreDead) {
  CMenu menu;
  ASSERT_TRUE(menu.LoadMenuIndirect(kFileMenu));
  const HMENU file = menu.GetSubMenu(0)->GetSafeHmenu();
  const HMENU recent = menu.GetSubMenu(0)->GetSubMenu(1)->GetSafeHmenu();
  EXPECT_TRUE(menu.ModifyMenu(0, UINT{MF_BYPOSITION} | MF_POPUP | MF_OWNERDRAW, Id(file), nullptr))
      << "the same submenu isn't destroyed";
  EXPECT_TRUE(menu.RemoveMenu(0, MF_BYPOSITION));
  CMenu kept;
  CMenu second;
  EXPECT_TRUE(kept.Attach(file));
  EXPECT_FALSE(second.Attach(file));
  EXPECT_TRUE(kept.DeleteMenu(1, MF_BYPOSITION));
  EXPECT_EQ(CMenu::FromHandle(recent), nullptr);
  EXPECT_FALSE(menu.AppendMenu(MF_POPUP, Id(recent), "dead"));
  ASSERT_TRUE(menu.AppendMenu(MF_POPUP, Id(file), "back"));
  EXPECT_FALSE(kept.AppendMenu(MF_POPUP, Id(menu.GetSafeHmenu()), "circle"));
  EXPECT_FALSE(kept.AppendMenu(MF_POPUP, Id(file), "itself"));
  EXPECT_TRUE(menu.DestroyMenu());
  EXPECT_EQ(kept.GetSafeHmenu(), nullptr) << "it went with the whole";
  EXPECT_FALSE(kept.AppendMenu(MF_STRING, 1, "x"));
}

TEST(Menu, ManyWaysToASubmenuAndDeepNestingAreHarmless) {
  // Each of 60 menus pops up the next one twice; then 2,000 follow in one line.
  CMenu menu;
  menu.CreateMenu();
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

/// Commands 10 to 19 have handlers; the update of 11 removes its item, that of 14 the menu.
struct Handlers : CCmdTarget {
  BOOL OnCmdMsg(UINT id, int code, void* extra, void*) override {
    if (id < 10 || id > 19) return 0;
    if (code == CN_COMMAND) return 1;
    auto& ui = *static_cast<CCmdUI*>(extra);
    updated += std::to_string(id) + ' ';
    if (id == 10) ui.SetCheck(1);
    if (id == 12) ui.Enable(0);
    if (id == 13) ui.SetRadio(1);
    if (id == 13) ui.SetText("r");
    if (id == 14) menu->DestroyMenu();
    if (id == 11) ui.m_pMenu->RemoveMenu(ui.m_nIndex, MF_BYPOSITION);
    return id != 15;
  }
  std::string updated;
  CMenu* menu = nullptr;
};

TEST(Menu, UpdateReachesEveryItemWhileHandlersChangeTheMenu) {
  CMenu menu;
  ASSERT_TRUE(menu.LoadMenuIndirect(
      "item 10 \"\"\nitem 11 \"\"\nitem 12 \"\"\npopup \"\"\nitem 13 \"\"\nend\nitem 15 \"\"\n"
      "item 30 \"\"\n"));
  Handlers handlers;
  handlers.menu = &menu;
  menu.UpdateItems(handlers);
  EXPECT_EQ(handlers.updated, "10 11 12 15 13 ");
  constexpr UINT kOff = MF_GRAYED | MF_DISABLED;
  for (const auto& [id, state] : test::Rows<UINT, UINT>{
           {10, MF_CHECKED}, {12, kOff}, {13, MF_CHECKED | MF_RADIOCHECK}, {15, 0}, {30, kOff}}) {
    EXPECT_EQ(menu.GetMenuState(id, 0), state) << id;
  }
  EXPECT_EQ(Dump(menu), "10: 12: -1:(13:r) 15: 30:");
  menu.InsertMenu(0, MF_BYPOSITION, 14, "");
  menu.UpdateItems(handlers);
  EXPECT_EQ(menu.GetSafeHmenu(), nullptr);
}

TEST(AcceleratorTable, CombinationsHaveCommands) {
  AcceleratorTable table;
  ASSERT_TRUE(table.Read("# keys\nctrl+shift+f 44412\nF24 1\nALT+pgup 2\nctrl+Shift+F 3\n"));
  EXPECT_EQ(table.Find('F', true, true, false), 44412);
  EXPECT_EQ(table.Find('F', true, false, false), 0);
  EXPECT_EQ(table.Find(0x87, false, false, false), 1);
  EXPECT_EQ(table.Find(0x21, false, false, true), 2);
  for (const char* text : {"F25 1", "ctrl+ 1", "ctrl+ctrl+A 1", "A", "A 0", "A 65536", "A 1 2",
                           "meta+A 1", "A 99999999999"}) {
    EXPECT_FALSE(table.Read(text)) << text;
    EXPECT_TRUE(table.entries().empty());
  }
}

TEST(ToolBar, ResourceGivesButtonsAndEveryChangeIsTold) {
  const WORD commands[] = {10, 0, 12, 30};
  ResourceModule module;
  const std::string data = WriteToolBarTemplate({20, 19}, commands);
  module.AddResource(RESOURCE_TOOLBAR, 5, data);
  module.AddResource(RESOURCE_TOOLBAR, 6, data.substr(0, data.size() - 1));
  module.AddResource(RESOURCE_TOOLBAR, 7, "\x02" + data.substr(1));
  const CDynLinkLibrary link(&module);
  testing::RecordingObserver observer;
  CToolBar bar;
  ASSERT_TRUE(bar.Create(nullptr, 1));
  observer.changes.clear();
  EXPECT_TRUE(bar.LoadToolBar(5));
  for (const UINT broken : {6U, 7U, 8U}) EXPECT_FALSE(bar.LoadToolBar(broken));
  EXPECT_EQ(observer.Take(bar), std::vector(1, WindowChange::kContent));
  EXPECT_EQ(bar.GetPictureSize(), (CSize{20, 19}));
  for (const auto& [id, index] : test::Rows<UINT, int>{{12, 2}, {0, -1}, {99, -1}})
    EXPECT_EQ(bar.CommandToIndex(id), index);
  for (const int none : {-1, 1, 4}) EXPECT_EQ(bar.GetItemID(none), 0U);
  Handlers handlers;
  bar.OnUpdateCmdUI(handlers, true);
  bar.OnUpdateCmdUI(handlers, true);
  EXPECT_EQ(bar.GetButton(0), (ToolBarButton{10, true, 1, false}));
  EXPECT_EQ(bar.GetButton(2), (ToolBarButton{12, false, 0, false}));
  EXPECT_FALSE(bar.GetButton(3).enabled);
  bar.PressButton(0, true);
  bar.PressButton(2, true);
  bar.EnableButton(0, false);
  EXPECT_EQ(observer.Take(bar), std::vector(5, WindowChange::kContent));
  EXPECT_EQ(bar.GetButton(0), (ToolBarButton{10, false, 1, false}));
}

TEST(Updates, MayEndWhatCalledThem) {
  struct Frame : CFrameWnd {
    bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override {
      if (key.code == CN_UPDATE_COMMAND_UI && !arguments.only_ask) {
        updated += std::to_string(key.id) + ' ';
        if (key.id == 10) end();
        return key.id != 10;
      }
      return CFrameWnd::CallMapped(key, arguments);
    }
    void PostNcDestroy() override {
      if (deletes_itself) delete this;
    }
    std::string& updated;
    std::function<void()> end;
    bool deletes_itself = false;
    explicit Frame(std::string& to) : updated(to) {}
  };
  const WORD commands[] = {9, 10, 11};
  enum { kFrame, kObject, kBar, kMenu };
  for (const int what : {kFrame, kObject, kBar, kMenu}) {
    std::string updated;
    auto* const frame = new Frame(updated);
    ASSERT_TRUE(frame->Create("Frame", "", {}));
    auto bar = std::make_unique<CToolBar>();
    ASSERT_TRUE(bar->Create(frame));
    bar->SetButtons(commands);
    CMenu menu;
    ASSERT_TRUE(
        menu.LoadMenuIndirect("item 9 \"\"\npopup \"\"\nitem 10 \"\"\nitem 11 \"\"\nend\n"));
    frame->SetMenu(&menu);
    frame->deletes_itself = what == kObject;
    frame->end = [&] {
      if (what == kBar) bar.reset();
      if (what == kMenu) menu.DestroyMenu();
      if (what == kFrame || what == kObject) frame->DestroyWindow();
    };
    const HWND handle = frame->GetSafeHwnd();
    // The bar goes by the message that an idle thread sends it, and the menu by its frame.
    if (what == kMenu) {
      frame->UpdateMenu();
    } else {
      bar->SendMessage(WM_IDLEUPDATECMDUI, 1);
    }
    EXPECT_EQ(updated, "9 10 ") << what;
    if (what == kFrame || what == kObject) {
      EXPECT_EQ(CWnd::FromHandle(handle), nullptr);
    }
    if (what != kObject) delete frame;
    // The same by a command of a menu, whose update ends the frame before it is run.
    auto* const second = new Frame(updated);
    ASSERT_TRUE(second->Create("Frame", "", {}));
    second->deletes_itself = true;
    second->end = [&] { second->DestroyWindow(); };
    second->SendMessage(WM_COMMAND, 10);
  }
}

TEST(ToolBar, IsBroughtUpToDateByTheFrameAroundItWhileItIsInSightAndTheThreadIdle) {
  struct Frame : CFrameWnd {
    BOOL OnCmdMsg(UINT id, int code, void* extra, void* info) override {
      return handlers.OnCmdMsg(id, code, extra, info);
    }
    Handlers handlers;
  } frame;
  CWinApp app("idle");
  ASSERT_TRUE(frame.Create("Frame", "", {}));
  app.m_pMainWnd = &frame;
  CToolBar bar;
  ASSERT_TRUE(bar.Create(&frame));
  const WORD commands[] = {10, 12, 30};
  bar.SetButtons(commands);
  bar.ShowWindow(SW_HIDE);
  PumpUntilIdle();
  EXPECT_EQ(frame.handlers.updated, "");
  bar.ShowWindow(SW_SHOW);
  PumpUntilIdle();
  EXPECT_EQ(frame.handlers.updated, "10 12 ");
  EXPECT_FALSE(bar.GetButton(1).enabled || bar.GetButton(2).enabled);
}

}  // namespace
}  // namespace dq
