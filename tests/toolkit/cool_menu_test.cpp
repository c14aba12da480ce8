// Menus with pictures.

#include "dqlib/framework/windows/menu_model.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// A module of the test's with menus, and the tool bar 900 with its strip of blue and red pictures.
struct CoolMenus : testing::Test {
  CoolMenus() {
    const WORD commands[] = {100, 0, 100, 200};
    module.AddResource(RESOURCE_TOOLBAR, 900, WriteToolBarTemplate({2, 15}, commands));
    module.AddResource(RESOURCE_TOOLBAR, 901, WriteToolBarTemplate({2, 15}, commands));
    BitmapDescription strip{.size = {4, 15}, .pixels = std::vector<COLORREF>(60, 0xFF0000)};
    for (std::size_t at = 0; at < 60; ++at) strip.pixels[at] = at % 4 < 2 ? 0xFF0000 : 0x0000FF;
    module.AddResource(RESOURCE_BITMAP, 900, WriteDib(strip));
    module.AddResource(RESOURCE_MENU, 900,
                       "popup \"&Edit\"\nitem 100 \"&Copy\\tCtrl+C\" checked\nseparator\n"
                       "popup \"&More\"\nitem 7 \"Deep\"\nend\nitem 200 \"&Paste\" grayed\n"
                       "item 300 \"\"\nend\n");
  }

  static std::string TextsOf(const CDQCoolMenu& menu) {
    std::string texts;
    for (int at = 0; at < menu.GetMenuItemCount(); ++at) {
      const UINT id = menu.GetMenuItemID(at);
      texts += id == 0 ? "-" : std::string(menu.GetMenuItemText(static_cast<UINT>(at), true));
      texts += '|';
    }
    return texts;
  }

  ResourceModule module;
  CDynLinkLibrary link{&module};
};

TEST_F(CoolMenus, TakeAMenuOverWithItsStatesAndGiveItBackAsItWas) {
  CMenu former;
  ASSERT_TRUE(former.LoadMenu(900));
  const HMENU handle = former.GetSafeHmenu();
  const HMENU popup = former.GetSubMenu(0)->GetSafeHmenu();
  const auto items = detail::FindMenu(popup)->items;
  CWnd frame;
  frame.CreateWnd({.class_name = "Frame"});
  frame.SetMenu(&former);
  {
    CDQCoolMenu menu;
    const UINT toolbars[] = {900};
    EXPECT_FALSE(menu.Coolify(nullptr) || menu.Coolify(handle, nullptr, 1));
    ASSERT_TRUE(menu.Coolify(handle, toolbars, 1));
    EXPECT_TRUE(former.GetSafeHmenu() == nullptr && frame.GetMenu() == &menu);
    CDQCoolMenu& edit = *menu.GetCoolSubMenu(0);
    EXPECT_TRUE(menu.GetCoolSubMenu(1) == nullptr && menu.GetCoolSubMenu(-1) == nullptr);
    EXPECT_TRUE(menu.CoolifyPopup(5, 900) && menu.GetCoolSubMenu(1) == nullptr);
    EXPECT_EQ(TextsOf(edit), "&Copy\tCtrl+C|-|&More|&Paste||");
    EXPECT_EQ(edit.CoolifyExistingItems(), 3) << "again, without another record";
    std::string states;
    for (UINT at = 0; at < 5; ++at) {
      states += std::to_string(edit.GetMenuState(at, MF_BYPOSITION) & 0xFF) + " " +
                std::to_string(edit.GetItemData(at, MF_BYPOSITION) != nullptr) + "|";
    }
    EXPECT_EQ(states, "8 1|0 0|16 1|1 1|0 0|");
    EXPECT_TRUE(edit.GetMenuItemImageIndex(100) == 0 && edit.GetMenuItemImageIndex(200) == 1);
    EXPECT_TRUE(edit.GetMenuItemImageIndex(300) == -1 && edit.GetMenuItemText(300, false) == "");
    // Once more, by another object.
    CDQCoolMenu thief;
    ASSERT_TRUE(thief.MapToToolbar(900) && thief.Coolify(popup));
    EXPECT_TRUE(thief.CommandToImageIndex(200) == 1 && thief.GetImageList() != nullptr);
    EXPECT_EQ(detail::FindMenu(popup)->items, items);
    EXPECT_TRUE(menu.CoolifyPopup(0, 0) && thief.GetSafeHmenu() == nullptr);
    EXPECT_EQ(TextsOf(*menu.GetCoolSubMenu(1)), "&Copy\tCtrl+C|-|&More|&Paste||");
  }
  EXPECT_EQ(detail::FindMenu(popup)->items, items);
  EXPECT_EQ(frame.GetMenu(), CMenu::FromHandle(handle));
}

TEST_F(CoolMenus, LoadTheirMenusAnewAndEndWhatNobodyElseHas) {
  std::string traced;
  TraceSink former = SetTraceSink([&](std::string_view text) { traced += text; });
  CDQCoolMenu menu;
  EXPECT_EQ(DQLoadMenu(menu, 900, &module) + menu.LoadMenuA(900) + menu.LoadMenuA(5), 2);
  SetTraceSink(std::move(former));
  EXPECT_EQ(traced, "CDQCoolMenu::LoadMenu - Failed to load menu 5\n");
  EXPECT_TRUE(menu.LoadMenuA(900) == 1 && menu.LoadMenuA(900) == 1);
  EXPECT_EQ(menu.CommandToImageIndex(200), 1) << "the buttons aren't added up";
  EXPECT_TRUE(menu.MapToToolbar(901) && menu.GetImageList() == nullptr);
  EXPECT_FALSE(menu.MapToToolbar(0) || menu.MapToToolbar(5));
  EXPECT_EQ(menu.LoadButtonInfo("#900") * 10 + menu.LoadButtonInfo("900"), 10);
  CDQCoolMenu other;
  EXPECT_TRUE(menu.MapToToolbar(900) && other.MapToToolbar(900));
  EXPECT_EQ(menu.GetImageList(), other.GetImageList());

  for (const bool is_shared : {false, true}) {
    CMenu shared;
    shared.CreateMenu();
    ASSERT_TRUE(menu.Coolify(900, true));
    const HMENU top = menu.GetSafeHmenu();
    const HMENU popup = menu.GetCoolSubMenu(0)->GetSafeHmenu();
    if (is_shared) shared.AppendMenu(MF_POPUP, reinterpret_cast<std::uintptr_t>(popup), "P");
    menu.CleanMenu();
    EXPECT_TRUE(menu.GetSafeHmenu() == nullptr && CMenu::FromHandle(top) == nullptr);
    EXPECT_EQ(CMenu::FromHandle(popup) != nullptr, is_shared);
    // Deeper ones too.
    CDQCoolMenu extended;
    extended.CreatePopupMenu();
    ASSERT_TRUE(menu.Coolify(900, true) && extended.ExtendMenu(menu.GetCoolSubMenu(0)));
    menu.CleanMenu();
    EXPECT_TRUE(extended.GetSubMenu(2) != nullptr && extended.GetSubMenu(2)->GetMenuItemID(0) == 7);
  }
}

TEST_F(CoolMenus, KeepARecordOfEachItemUntilTheLastOneWithItGoes) {
  CDQCoolMenu menu;
  EXPECT_FALSE(menu.AddItem(100, "No menu") || menu.InsertItemInAlphabeticOrder(1, "a"));
  EXPECT_EQ(menu.GetItems().GetSize(), 0);
  menu.CreatePopupMenu();
  menu.MapToToolbar(900);
  EXPECT_TRUE(menu.AddItem(100, "&One") && menu.AddItem(MF_GRAYED, 200, "Two", 7) &&
              menu.AddItem(MF_SEPARATOR, 0, "") && menu.InsertItem(0, 100, "Uno"));
  EXPECT_EQ(TextsOf(menu), "Uno|Uno|Two|-|");
  EXPECT_EQ(menu.GetMenuItemImageIndex(100) * 10 + menu.GetMenuItemImageIndex(200), 7);
  EXPECT_TRUE(menu.DeleteItem(100U) && menu.GetMenuItemText(100, false) == "Uno");
  EXPECT_TRUE(menu.RemoveItem(0) && menu.GetMenuItemText(100, false) == "");
  EXPECT_TRUE(menu.HideItem(200U) && menu.FindMenuItem(200U) == -1 &&
              menu.FindMenuItem("two") == -1);
  EXPECT_TRUE(menu.GetMenuItemText(200, false) == "Two" && menu.GetMenuItemImageIndex(200) == 7);
  EXPECT_TRUE(menu.ModifyItem(200, "Deux", 3) && !menu.ModifyItem(9, "", 0));
  EXPECT_FALSE(menu.DeleteItem(200U) || menu.DeleteItem(5) || menu.HideItem(-1));

  CMenu drawn, plain;
  drawn.CreatePopupMenu();
  plain.CreatePopupMenu();
  const HMENU first = drawn.Detach(), second = plain.Detach();
  EXPECT_FALSE(menu.InsertPopup(0, nullptr, "x", true));
  EXPECT_TRUE(menu.InsertPopup(0, first, "D&rawn", true) && menu.CoolifyPopup(0, 0));
  EXPECT_TRUE(menu.InsertPopup(1, second, "Plain", false));
  EXPECT_EQ(TextsOf(menu) + menu.GetMenuString(1, MF_BYPOSITION).operator const char*(),
            "D&rawn|Plain|-|Plain");
  EXPECT_EQ(menu.FindMenuItem("PLAIN"), 1);
  EXPECT_FALSE(menu.RemovePopup(2) || menu.DeletePopup(9));
  EXPECT_TRUE(menu.RemovePopup(1) && menu.RemoveSubMenu(0, true));
  EXPECT_TRUE(CMenu::FromHandle(first) == nullptr && CMenu::FromHandle(second) != nullptr);
  EXPECT_EQ(menu.GetItems().GetSize(), 1) << "the hidden one";
  EXPECT_EQ(menu.GetCoolSubMenu(0), nullptr);
  // What no longer is a record isn't taken for one.
  menu.AppendMenu(MF_OWNERDRAW, 5, "somebody's");
  EXPECT_EQ(menu.GetMenuItemText(1, true), "");
}

TEST_F(CoolMenus, InsertInAlphabeticOrderBehindSeparatorsAndBeforeEqualTexts) {
  for (const auto& [texts, inserted, result] : Cases<3>(R"(
      Alpha|-|Gamma => Beta => Alpha|-|Beta|Gamma| ;; Alpha|-|- => Beta => Alpha|-|-|Beta|
      -|b => a => a|-|b| ;; a|B|c => b => a|b|B|c| ;; b|a => c => b|a|c| ;; b|a|c => b => b|a|b|c|)")) {
    if (texts.empty()) continue;
    CDQCoolMenu menu;
    menu.CreatePopupMenu();
    UINT id = 1;
    std::stringstream all(texts);
    for (std::string text; std::getline(all, text, '|'); ++id) {
      menu.AddItem(text == "-" ? UINT{MF_SEPARATOR} : 0, id, text.c_str());
    }
    ASSERT_TRUE(menu.InsertItemInAlphabeticOrder(99, inserted.c_str()));
    EXPECT_EQ(TextsOf(menu), result) << texts;
    EXPECT_EQ(menu.FindMenuItem(99U) >= 0, true);
  }
  // By bytes, and many in good time.
  CDQCoolMenu menu;
  menu.CreatePopupMenu();
  for (UINT id = 1; id <= 10'000; ++id) menu.AddItem(id, std::to_string(id + 10'000).c_str());
  ASSERT_TRUE(menu.InsertItemInAlphabeticOrder(20'000, "15000x"));
  EXPECT_TRUE(menu.FindMenuItem("15000X") == 5000 && menu.FindMenuItem("10001") == 0);
  CDQCoolMenu same;
  same.CreatePopupMenu();
  same.ExtendMenu(&menu);
  ASSERT_TRUE(same.ExtendMenu(&menu));
  EXPECT_EQ(same.GetMenuItemCount(), 10'001);
}

TEST_F(CoolMenus, AnswerTheKeyOfAnItemsMnemonic) {
  EXPECT_EQ(CDQCoolMenu::ExtractMnemonic(nullptr), 0);
  for (const auto& [text, mnemonic] :
       Cases<2>("&Open => o ;; &&x => x ;; A&& =>  ;; a&b&c => b ;; & =>  ;; abc => ;; &&& => ")) {
    EXPECT_EQ(CDQCoolMenu::ExtractMnemonic(text.c_str()), mnemonic.empty() ? 0 : mnemonic[0])
        << text;
  }
  EXPECT_EQ(CDQCoolMenu::ExtractMnemonic("&\xC3\xB6l"), 0xF6);
  CDQCoolMenu menu;
  ASSERT_TRUE(menu.Coolify(900, true));
  CDQCoolMenu& edit = *menu.GetCoolSubMenu(0);
  CMenu plain;
  for (const auto& [key, flags, asked, answer] :
       Rows<char, UINT, CMenu*, LRESULT>{{'C', 16, &edit, 0x20000},
                                         {'m', 16, &edit, 0x20002},
                                         {'p', 16, &edit, 0x20003},
                                         {'x', 16, &edit, 0},
                                         {'m', 0, &edit, 0},
                                         {'m', 16, &plain, 0},
                                         {'m', 16, nullptr, 0},
                                         {'\0', 16, &edit, 0}}) {
    EXPECT_EQ(CDQCoolMenu::OnMenuChar(static_cast<UINT>(key), flags, asked), answer) << key;
  }
}

TEST_F(CoolMenus, ExtendReplacesEqualTextsAndBringsPicturesAlong) {
  CDQCoolMenu menu;
  menu.CreatePopupMenu();
  menu.MapToToolbar(900);
  for (const auto& [id, text] : Rows<UINT, const char*>{{1, "&Paste"}, {2, "Zoom"}, {3, "copy"}}) {
    menu.AddItem(id, text);
  }
  ASSERT_TRUE(menu.ExtendMenu(900));
  EXPECT_EQ(TextsOf(menu), "&Paste|Zoom|copy|&Copy\tCtrl+C|-|&More||");
  EXPECT_TRUE(menu.GetMenuItemID(0) == 200 &&
              menu.GetMenuState(0, MF_BYPOSITION) % 256 == MF_GRAYED);
  EXPECT_EQ(menu.GetMenuItemImageIndex(200), 1) << "by its own tool bar";
  EXPECT_TRUE(menu.GetSubMenu(5) != nullptr && menu.GetSubMenu(5)->GetMenuItemID(0) == 7);
  EXPECT_FALSE(menu.ExtendMenu(5) || menu.ExtendMenu(nullptr) || menu.ExtendMenu(&menu));

  const WORD commands[] = {500};
  module.AddResource(RESOURCE_TOOLBAR, 902, WriteToolBarTemplate({2, 15}, commands));
  module.AddResource(RESOURCE_BITMAP, 902, WriteDib({{2, 15}, std::vector<COLORREF>(30, 9)}));
  CDQCoolMenu other;
  other.CreatePopupMenu();
  other.MapToToolbar(902);
  other.AddItem(500, "Copy");
  other.AddItem(2, "COPY", 0);
  const int pictures = menu.GetImageList()->GetImageCount();
  ASSERT_TRUE(menu.ExtendMenu(&other) && menu.ExtendMenu(&other));
  EXPECT_EQ(TextsOf(menu), "&Paste|COPY|copy|&Copy\tCtrl+C|-|&More||Copy|COPY|");
  EXPECT_EQ(menu.GetMenuItemImageIndex(500), pictures) << "copied once";
  EXPECT_EQ(menu.GetImageList()->GetImage(pictures).pixels[0], 9U);

  // A popup that was added is the last one with its text from then on.
  CDQCoolMenu found, more;
  CMenu popup;
  popup.CreatePopupMenu();
  found.CreatePopupMenu();
  more.CreatePopupMenu();
  found.AddItem(1, "X");
  found.AddItem(2, "Other");
  more.InsertPopup(0, popup.Detach(), "x", true);
  more.AddItem(5, "X");
  ASSERT_TRUE(found.ExtendMenu(&more));
  EXPECT_EQ(TextsOf(found), "X|Other|X|");
  EXPECT_EQ(found.GetMenuItemID(2), 5U);
}

TEST_F(CoolMenus, MeasureAndDrawItemsByTheirRecords) {
  CDQCoolMenu menu;
  menu.CreatePopupMenu();
  menu.AddItem(1, "&Long");
  EXPECT_EQ(menu.GetMaxItemWidth(), 20 + 5 * 7 + 4) << "with the mark";
  menu.AddItem(2, "A\t");
  EXPECT_EQ(menu.GetAcceleratorOffset(), 59);
  menu.MapToToolbar(900);
  menu.AddItem(100, "B\tF1");
  EXPECT_EQ(menu.GetAcceleratorOffset(), 2 + 35 + 4 + 10);
  menu.ModifyItem(2, "A much longer text", 0);
  EXPECT_EQ(menu.GetMaxItemWidth(), 51 + 14);
  menu.AddItem(MF_SEPARATOR, 0, "");
  CWnd owner;
  owner.CreateWnd({.class_name = "Owner"});
  std::string sizes;
  for (UINT at = 2; at < 4; ++at) {
    MEASUREITEMSTRUCT item{.hMenu = menu.GetSafeHmenu()};
    item.itemData = reinterpret_cast<std::uintptr_t>(menu.GetItemData(at, MF_BYPOSITION));
    owner.SendMessage(WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&item));
    sizes += std::to_string(item.itemWidth) + "x" + std::to_string(item.itemHeight) + " ";
  }
  EXPECT_EQ(sizes, "156x15 0x10 ");

  RecordingDC dc;
  const auto draw = [&](UINT at, UINT state) {
    dc.Clear();
    DRAWITEMSTRUCT item{.itemState = state, .hMenu = menu.GetSafeHmenu(), .pDC = &dc};
    item.rcItem = {0, 0, 160, 19};
    item.itemData = reinterpret_cast<std::uintptr_t>(menu.GetItemData(at, MF_BYPOSITION));
    owner.SendMessage(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&item));
    return dc.Text();
  };
  const std::string font = "font \"MS Shell Dlg\" -11\n";
  const std::string bold = "font \"MS Shell Dlg\" -11 bold\n";
  const std::string red = "picture 0,2 2,17 of 2x15 ", blue = red + "de31beea\n";
  for (const auto& [at, state, drawn] : Rows<UINT, UINT, std::string>{
           {2, 0, blue + font + "text 6,3 \"B\"\ntext 142,3 \"F1\"\n"},
           {2, ODS_SELECTED,
            "fill 4,0 160,19 0078d7\n" + blue +
                "fill 0,2 2,3 ffffff\nfill 0,2 1,17 ffffff\nfill 1,2 2,17 a0a0a0\n"
                "fill 0,16 2,17 a0a0a0\ntext 6,3 \"B\" ffffff\ntext 142,3 \"F1\" ffffff\n"},
           {2, ODS_GRAYED,
            red + "52e0d63e\ntext 7,4 \"B\" ffffff\ntext 143,4 \"F1\" ffffff\n"
                  "text 6,3 \"B\" 6d6d6d\ntext 142,3 \"F1\" 6d6d6d\n"},
           {0, ODS_CHECKED,
            "picture -9,0 11,19 of 20x19 fe7ab748\ntext 6,3 \"Long\"\nfill 6,15 13,16 000000\n"},
           {1, ODS_DEFAULT, blue + bold + "text 6,3 \"A much longer text\"\n"},
           {3, 0, "fill 0,8 160,9 a0a0a0\nfill 0,9 160,10 ffffff\n"}}) {
    EXPECT_EQ(draw(at, state), "fill 0,0 160,19 f0f0f0\n" + drawn) << state;
  }
  struct WideBold : RecordingObserver {
    CSize MeasureText(const LOGFONT* of, std::string_view, const CSize& usual) override {
      return {usual.cx * (of->lfWeight == 700 ? 2 : 1), usual.cy};
    }
  } wide;
  menu.SetDefaultItem(1, true);
  EXPECT_EQ(menu.GetAcceleratorOffset(), 142 + 126) << "the widest is bold now";
  // The other check mark, and no picture there.
  EXPECT_TRUE(!menu.DrawImage(dc, {}, -1, ODS_SELECTED));
  dc.Clear();
  EXPECT_TRUE(menu.DrawImage(dc, {}, -1, ODS_SELECTED | ODS_CHECKED));
  EXPECT_EQ(dc.Text(), "picture 0,0 20,19 of 20x19 710e5073\n");
}

TEST_F(CoolMenus, KnowWhoTracksWhichMenu) {
  struct Tracker : RecordingObserver {
    UINT TrackMenu(HMENU menu, const MenuSpot&, CWnd& owner) override {
      EXPECT_TRUE(CDQCoolMenu::GetTrackMenu() == menu && CDQCoolMenu::GetTrackWindow() == &owner);
      if (inner != nullptr) std::exchange(inner, nullptr)->TrackPopupMenu(0, 0, 0, &owner);
      EXPECT_EQ(CDQCoolMenu::GetTrackMenu(), menu);
      return 1;
    }
    CDQCoolMenu* inner = nullptr;
  } layer;
  CDQCoolMenu outer, inner;
  outer.CreatePopupMenu();
  inner.CreatePopupMenu();
  layer.inner = &inner;
  CWnd owner;
  owner.CreateWnd({.class_name = "Owner"});
  EXPECT_EQ(outer.TrackPopupMenu(TPM_RETURNCMD, 1, 2, &owner), 1);
  EXPECT_TRUE(CDQCoolMenu::GetTrackMenu() == nullptr && CDQCoolMenu::GetTrackWindow() == nullptr);
}

}  // namespace
}  // namespace dq::test
