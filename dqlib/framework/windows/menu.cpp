#include "dqlib/framework/windows/menu.h"

#include <algorithm>
#include <set>
#include <utility>

#include "dqlib/framework/base/drawn_character.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/windows/cmd_target.h"
#include "dqlib/framework/windows/menu_model.h"
#include "dqlib/framework/windows/resource_text.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/wnd.h"
#include "dqlib/platform/modules.h"

namespace dq {

IMPLEMENT_DYNAMIC(CMenu, CObject)

namespace {

using detail::FindCommand;
using detail::FindMenu;
using detail::MenuItem;
using detail::MenuModel;
using detail::MenuPlace;

constexpr UINT kNoItem = 0xFFFFFFFF;
constexpr UINT kRadioMark = MF_CHECKED | MF_RADIOCHECK;
/// What an item keeps of the flags it is made with.
constexpr UINT kItemFlags =
    MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_POPUP | MF_OWNERDRAW | MF_SEPARATOR | MF_RADIOCHECK;

MenuPlace PlaceOf(HMENU menu, UINT item, UINT flags) {
  if ((flags & MF_BYPOSITION) == 0) return FindCommand(menu, item);
  MenuModel* const model = FindMenu(menu);
  if (model == nullptr || item >= model->items.size()) return {};
  return {model, item};
}

/// The item that the arguments of an addition to the menu describe. False if it can't be there.
bool MakeItem(const MenuModel& menu, UINT flags, std::uintptr_t id, const char* text,
              MenuItem& item) {
  item.flags = flags & kItemFlags;
  if ((flags & MF_POPUP) != 0) {
    item.submenu = reinterpret_cast<HMENU>(id);
    if (FindMenu(item.submenu) == nullptr || detail::IsInMenu(item.submenu, menu)) return false;
  } else if ((flags & MF_SEPARATOR) == 0) {
    item.id = static_cast<UINT>(id);
  }
  if ((flags & MF_OWNERDRAW) != 0) {
    item.data = text;
  } else if (text != nullptr) {
    item.text = text;
  }
  return true;
}

/// The default item stays the same one when an item is put in or taken out before it.
void Insert(MenuModel& menu, std::size_t position, MenuItem item) {
  detail::CountPlace(item.submenu, 1);
  menu.items.insert(menu.items.begin() + static_cast<std::ptrdiff_t>(position), std::move(item));
  if (menu.default_position >= static_cast<int>(position)) ++menu.default_position;
  detail::TellMenuChange(menu.handle, MenuChange::kItemsInserted, {static_cast<int>(position), 1});
}

/// Puts an item in the place of one.
void Replace(const MenuPlace& place, MenuItem item) {
  if (place.item() == item) return;
  detail::CountPlace(item.submenu, 1);
  detail::CountPlace(place.item().submenu, -1);
  place.item() = std::move(item);
  detail::TellMenuChange(place.menu->handle, MenuChange::kItemsChanged,
                         {static_cast<int>(place.position), 1});
}

/// Changes the flags of `mask` to those of `flags`.
void SetFlags(const MenuPlace& place, UINT flags, UINT mask) {
  MenuItem item = place.item();
  item.flags = (item.flags & ~mask) | (flags & mask);
  Replace(place, std::move(item));
}

/// Takes the item out and returns its submenu, if any.
HMENU TakeOut(const MenuPlace& place) {
  const HMENU submenu = place.item().submenu;
  detail::CountPlace(submenu, -1);
  MenuModel& menu = *place.menu;
  const int position = static_cast<int>(place.position);
  menu.items.erase(menu.items.begin() + position);
  if (menu.default_position == position) menu.default_position = -1;
  if (menu.default_position > position) --menu.default_position;
  detail::TellMenuChange(menu.handle, MenuChange::kItemsRemoved, {position, 1});
  return submenu;
}

UINT StateOf(const MenuItem& item) {
  if ((item.flags & MF_POPUP) == 0) return item.flags;
  const MenuModel* const submenu = FindMenu(item.submenu);
  const std::size_t count = submenu == nullptr ? 0 : submenu->items.size();
  return (item.flags & 0xFF) | (static_cast<UINT>(count & 0xFF) << 8);
}

bool ShowsCommand(const MenuItem& item) { return (item.flags & (MF_POPUP | MF_SEPARATOR)) == 0; }

/// Where the update goes on behind an item. The handler may have put items in the place of its own,
/// as a list of recent files, and says so by the position; or it has taken some out, and then what
/// stands there now isn't passed over.
int NextToUpdate(const CCmdUI& updated, const MenuModel& menu) {
  const int count = static_cast<int>(menu.items.size());
  const int former = static_cast<int>(updated.m_nIndexMax);
  int index = static_cast<int>(updated.m_nIndex);
  if (count < former) {
    index = std::max(index - (former - count), -1);
    while (index >= 0 && index < count &&
           menu.items[static_cast<std::size_t>(index)].id == updated.m_nID) {
      ++index;
    }
  }
  return index + 1;
}

/// Brings the items of one menu up to date and adds its submenus to `found`.
void UpdateLevel(HMENU handle, CCmdTarget& target, bool auto_disable, std::vector<HMENU>& found) {
  const detail::Watched route(target);
  const MenuModel* menu = FindMenu(handle);
  for (int index = 0; menu != nullptr && index < static_cast<int>(menu->items.size());) {
    const MenuItem& item = menu->items[static_cast<std::size_t>(index)];
    if (!ShowsCommand(item)) {
      if (item.submenu != nullptr) found.push_back(item.submenu);
      ++index;
      continue;
    }
    CCmdUI ui;
    ui.m_nID = item.id;
    ui.m_nIndex = static_cast<UINT>(index);
    ui.m_nIndexMax = static_cast<UINT>(menu->items.size());
    ui.m_pMenu = CMenu::FromHandle(handle);
    ui.DoUpdate(target, auto_disable);
    if (!route.IsThere()) return;
    menu = FindMenu(handle);
    if (menu != nullptr) index = NextToUpdate(ui, *menu);
  }
}

}  // namespace

CMenu::~CMenu() { DestroyMenu(); }

bool CMenu::CreateMenu() { return m_hMenu == nullptr && Attach(detail::NewMenu()); }

bool CMenu::CreatePopupMenu() { return CreateMenu(); }

bool CMenu::LoadMenu(UINT id) {
  const std::optional<std::string_view> data = detail::FindResourceData(id, RESOURCE_MENU);
  return data && LoadMenuIndirect(*data);
}

bool CMenu::LoadMenuIndirect(std::string_view text, std::string* error) {
  return m_hMenu == nullptr && Attach(detail::ReadMenuText(text, error));
}

bool CMenu::DestroyMenu() {
  // The object may go with its menu: nothing of it is touched afterwards.
  return detail::DestroyMenuTree(Detach());
}

bool CMenu::Attach(HMENU menu) {
  MenuModel* const model = FindMenu(menu);
  if (model == nullptr || model->permanent != nullptr || m_hMenu != nullptr) return false;
  model->permanent = this;
  m_hMenu = menu;
  return true;
}

HMENU CMenu::Detach() {
  MenuModel* const model = FindMenu(m_hMenu);
  if (model != nullptr && model->permanent == this) model->permanent = nullptr;
  return std::exchange(m_hMenu, nullptr);
}

CMenu* CMenu::FromHandlePermanent(HMENU menu) {
  const MenuModel* const model = FindMenu(menu);
  return model == nullptr ? nullptr : model->permanent;
}

CMenu* CMenu::FromHandle(HMENU menu) {
  MenuModel* const model = FindMenu(menu);
  if (model == nullptr) return nullptr;
  if (model->permanent != nullptr) return model->permanent;
  for (const std::unique_ptr<CMenu>& each : model->temporary) {
    if (each->m_hMenu == nullptr) each->m_hMenu = menu;
    if (each->m_hMenu == menu) return each.get();
  }
  model->temporary.push_back(std::make_unique<CMenu>());
  model->temporary.back()->m_hMenu = menu;
  return model->temporary.back().get();
}

int CMenu::GetMenuItemCount() const {
  const MenuModel* const model = FindMenu(m_hMenu);
  return model == nullptr ? -1 : static_cast<int>(model->items.size());
}

UINT CMenu::GetMenuItemID(int position) const {
  const MenuPlace place = PlaceOf(m_hMenu, static_cast<UINT>(position), MF_BYPOSITION);
  return !place || (place.item().flags & MF_POPUP) != 0 ? kNoItem : place.item().id;
}

UINT CMenu::GetMenuState(UINT item, UINT flags) const {
  const MenuPlace place = PlaceOf(m_hMenu, item, flags);
  return place ? StateOf(place.item()) : kNoItem;
}

CString CMenu::GetMenuString(UINT item, UINT flags) const {
  const MenuPlace place = PlaceOf(m_hMenu, item, flags);
  return place ? CString(place.item().text) : CString();
}

int CMenu::GetMenuString(UINT item, CString& text, UINT flags) const {
  text = GetMenuString(item, flags);
  return text.GetLength();
}

CMenu* CMenu::GetSubMenu(int position) const {
  const MenuPlace place = PlaceOf(m_hMenu, static_cast<UINT>(position), MF_BYPOSITION);
  return place ? FromHandle(place.item().submenu) : nullptr;
}

bool CMenu::IsOwnerDrawn(UINT item, UINT flags) const {
  const MenuPlace place = PlaceOf(m_hMenu, item, flags);
  return place && (place.item().flags & MF_OWNERDRAW) != 0;
}

void* CMenu::GetItemData(UINT item, UINT flags) const {
  const MenuPlace place = PlaceOf(m_hMenu, item, flags);
  return place ? const_cast<void*>(place.item().data) : nullptr;
}

bool CMenu::AppendMenu(UINT flags, std::uintptr_t id, const char* text) {
  return InsertMenu(kNoItem, flags | MF_BYPOSITION, id, text);
}

bool CMenu::InsertMenu(UINT item, UINT flags, std::uintptr_t id, const char* text) {
  MenuModel* const menu = FindMenu(m_hMenu);
  if (menu == nullptr) return false;
  MenuPlace place = PlaceOf(m_hMenu, item, flags);
  if (!place) place = {menu, menu->items.size()};
  MenuItem made;
  if (!MakeItem(*place.menu, flags, id, text, made)) return false;
  Insert(*place.menu, place.position, std::move(made));
  return true;
}

bool CMenu::ModifyMenu(UINT item, UINT flags, std::uintptr_t id, const char* text) {
  const MenuPlace place = PlaceOf(m_hMenu, item, flags);
  MenuItem made;
  if (!place || !MakeItem(*place.menu, flags, id, text, made)) return false;
  const HMENU former = place.item().submenu;
  const bool is_other = former != made.submenu;
  Replace(place, std::move(made));
  if (is_other) detail::DestroyMenuTree(former);
  return true;
}

bool CMenu::DeleteMenu(UINT item, UINT flags) {
  const MenuPlace place = PlaceOf(m_hMenu, item, flags);
  if (!place) return false;
  detail::DestroyMenuTree(TakeOut(place));
  return true;
}

bool CMenu::RemoveMenu(UINT item, UINT flags) {
  const MenuPlace place = PlaceOf(m_hMenu, item, flags);
  if (place) TakeOut(place);
  return static_cast<bool>(place);
}

UINT CMenu::CheckMenuItem(UINT item, UINT flags) {
  const MenuPlace place = PlaceOf(m_hMenu, item, flags);
  if (!place) return kNoItem;
  const UINT former = place.item().flags & MF_CHECKED;
  SetFlags(place, flags & MF_CHECKED, MF_CHECKED | MF_RADIOCHECK);
  return former;
}

UINT CMenu::EnableMenuItem(UINT item, UINT flags) {
  constexpr UINT kStates = MF_GRAYED | MF_DISABLED;
  const MenuPlace place = PlaceOf(m_hMenu, item, flags);
  if (!place) return kNoItem;
  const UINT former = place.item().flags & kStates;
  SetFlags(place, flags, kStates);
  return former;
}

bool CMenu::CheckMenuRadioItem(UINT first, UINT last, UINT item, UINT flags) {
  const MenuPlace place = PlaceOf(m_hMenu, item, flags);
  if (!place) return false;
  const bool by_position = (flags & MF_BYPOSITION) != 0;
  for (std::size_t at = 0; at < place.menu->items.size(); ++at) {
    const MenuItem& each = place.menu->items[at];
    const UINT key = by_position ? static_cast<UINT>(at) : each.id;
    if (key < first || key > last || !ShowsCommand(each) || at == place.position) continue;
    SetFlags({place.menu, at}, 0, kRadioMark);
  }
  if (ShowsCommand(place.item())) SetFlags(place, kRadioMark, kRadioMark);
  return true;
}

void CMenu::SetDefaultItem(UINT item, bool by_position) {
  MenuModel* const menu = FindMenu(m_hMenu);
  if (menu == nullptr) return;
  const MenuPlace place = PlaceOf(m_hMenu, item, by_position ? MF_BYPOSITION : MF_BYCOMMAND);
  const int former = menu->default_position;
  menu->default_position = place.menu == menu ? static_cast<int>(place.position) : -1;
  for (const int changed : {former, menu->default_position}) {
    if (changed < 0 || former == menu->default_position) continue;
    detail::TellMenuChange(menu->handle, MenuChange::kItemsChanged, {changed, 1});
  }
}

UINT CMenu::GetDefaultItem(bool by_position) const {
  const MenuModel* const menu = FindMenu(m_hMenu);
  const int position = menu == nullptr ? -1 : menu->default_position;
  return by_position ? static_cast<UINT>(position) : GetMenuItemID(position);
}

int CMenu::TrackPopupMenu(UINT flags, int x, int y, CWnd* owner, const CRect* stays_open_in) {
  if (FindMenu(m_hMenu) == nullptr || owner == nullptr || owner->GetSafeHwnd() == nullptr) return 0;
  const HWND window = owner->GetSafeHwnd();
  const HMENU menu = m_hMenu;
  const MenuSpot spot{{x, y}, flags, stays_open_in == nullptr ? CRect() : *stays_open_in};
  owner->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu));
  UINT command = 0;
  WindowObserver* const observer = GetWindowObserver();
  if (observer != nullptr && FindMenu(menu) != nullptr && CWnd::FromHandle(window) == owner) {
    detail::Guarded([&] { command = observer->TrackMenu(menu, spot, *owner); });
  }
  // From here on the menu and its object may be gone.
  SendToWindow(window, WM_MENUSELECT, MakeWParam(0, 0xFFFF), 0);
  if ((flags & TPM_RETURNCMD) != 0) return static_cast<int>(command);
  if (command != 0) PostToWindow(window, WM_COMMAND, command, 0);
  return 1;
}

UINT MenuCharacter(std::string_view text) {
  if (text.empty()) return 0;
  const auto byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const detail::DrawnCharacter first = detail::FirstCharacter(text, multi_byte::CurrentCodePage());
  if (first.size == 1 || first.size > text.size()) return byte(0);
  if (first.code != detail::kUnknownCharacter) return first.code;
  return static_cast<UINT>(byte(0) << 8 | byte(1));
}

void CMenu::UpdateItems(CCmdTarget& target, bool auto_disable, bool deep) {
  // By handles alone, because handlers may end any menu and this object with it.
  const detail::Watched route(target);
  std::vector<HMENU> found{m_hMenu};
  std::set<HMENU> updated;
  while (!found.empty() && route.IsThere()) {
    const HMENU menu = found.back();
    found.pop_back();
    if (updated.insert(menu).second) UpdateLevel(menu, target, auto_disable, found);
    if (!deep) return;
  }
}

}  // namespace dq
