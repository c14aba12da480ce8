// Menus with pictures: taking menus over and giving them up, and what tool bars say.

#include "dqlib/toolkit/cool_menu.h"

#include <algorithm>
#include <span>
#include <utility>

#include "dqlib/frame/switch_resource_handle.h"
#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/menu_model.h"
#include "dqlib/framework/windows/resource_text.h"
#include "dqlib/framework/windows/tool_bar.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDQCoolMenu, CMenu)

namespace {

/// Of a popup's text, in bytes.
constexpr int kLongestPopupText = 1024;
constexpr UINT kHighestResource = 0xFFFF;

}  // namespace

CDQCoolMenu::~CDQCoolMenu() { CleanMenu(); }

bool CDQCoolMenu::Coolify(HMENU menu) {
  if (detail::FindMenu(menu) == nullptr || (m_hMenu != nullptr && m_hMenu != menu)) return false;
  CMenu* const holder = FromHandlePermanent(menu);
  if (auto* const cool = DYNAMIC_DOWNCAST(CDQCoolMenu, holder)) cool->ForgetItems();
  if (holder != nullptr) holder->Detach();
  ForgetItems();
  attached_ = borrowed_ = Attach(menu);
  return attached_;
}

bool CDQCoolMenu::Coolify(HMENU menu, const UINT* toolbars, UINT count) {
  if ((toolbars == nullptr && count > 0) || !Coolify(menu)) return false;
  int position = 0;
  return std::ranges::all_of(std::span(toolbars, count),
                             [&](UINT toolbar) { return CoolifyPopup(position++, toolbar); });
}

bool CDQCoolMenu::Coolify(UINT menu_id, bool popup_too) {
  CleanMenu();
  DestroyMenu();
  return LoadMenu(menu_id) && (!popup_too || CoolifyPopup(0, menu_id));
}

bool CDQCoolMenu::CoolifyPopup(int position, UINT toolbar_id) {
  const HMENU popup = PopupAt(position);
  if (popup == nullptr) return true;
  DropSubMenu(popup);
  CDQCoolMenu& submenu = *submenus_.emplace_back(std::make_unique<CDQCoolMenu>());
  submenu.Coolify(popup);
  attached_ = true;
  submenu.MapToToolbar(toolbar_id);
  submenu.CoolifyExistingItems();
  return true;
}

int CDQCoolMenu::CoolifyExistingItems() {
  const int count = GetMenuItemCount();
  for (int position = 0; position < count; ++position) CoolifyItem(position);
  RecalcWidth();
  return items_.GetSize();
}

void CDQCoolMenu::CoolifyItem(int position) {
  const UINT at = static_cast<UINT>(position);
  const UINT id = GetMenuItemID(position);
  const UINT state = GetMenuState(at, MF_BYPOSITION);
  const UINT flags = MF_BYPOSITION | MF_OWNERDRAW | (state & kKeptStates);
  if (id == 0) {
    ModifyMenu(at, flags | MF_SEPARATOR);
    return;
  }
  const HMENU popup = PopupAt(position);
  // One that is drawn already has its text elsewhere.
  if (IsOwnerDrawn(at, MF_BYPOSITION)) return;
  const CString text = GetMenuString(at, MF_BYPOSITION);
  if (id == kPopupId) {
    if (popup == nullptr) return;
    const CMenuItemInfo* record = RecordAt(position);
    if (record == nullptr) record = items_.AddItem(text.Left(kLongestPopupText));
    plain_popups_.erase(popup);
    ModifyMenu(at, flags | MF_POPUP, reinterpret_cast<std::uintptr_t>(popup), record->AsItemData());
  } else if (!text.IsEmpty()) {
    const CMenuItemInfo* const record = items_.AddOrReplace(id, CommandToImageIndex(id), text);
    ModifyMenu(at, flags, id, record->AsItemData());
  }
}

/// What the menu's items were before they were drawn.
void CDQCoolMenu::RestoreItems() {
  const int count = GetMenuItemCount();
  for (int position = 0; position < count; ++position) {
    const UINT at = static_cast<UINT>(position);
    const detail::MenuItem item = detail::FindMenu(m_hMenu)->items[at];
    if ((item.flags & MF_OWNERDRAW) == 0) continue;
    const CMenuItemInfo* const record = RecordOf(item);
    const bool is_popup = (item.flags & MF_POPUP) != 0;
    if (record == nullptr && (item.flags & MF_SEPARATOR) == 0) continue;
    const std::uintptr_t id =
        is_popup ? reinterpret_cast<std::uintptr_t>(item.submenu) : std::uintptr_t{item.id};
    const char* text = nullptr;
    if (record != nullptr) text = record->m_strText;
    ModifyMenu(at, MF_BYPOSITION | (item.flags & ~UINT{MF_OWNERDRAW}), id, text);
  }
}

/// Makes the menu's items what they were before this had them.
void CDQCoolMenu::ForgetItems() {
  submenus_.clear();
  RestoreItems();
  items_.RemoveAll();
  plain_popups_.clear();
  RecalcWidth();
}

/// Makes this what it was before it had a menu, which it keeps.
void CDQCoolMenu::Forget() {
  ForgetItems();
  button_commands_.RemoveAll();
  image_list_ = nullptr;
  image_size_ = kUsualImageSize;
}

void CDQCoolMenu::CleanMenu() {
  Forget();
  if (!std::exchange(attached_, false)) return;
  const HMENU menu = Detach();
  if (!std::exchange(borrowed_, false)) EndOwnMenu(menu);
}

/// Destroys a menu that nobody else has, but for popups at any depth that somebody has.
void CDQCoolMenu::EndOwnMenu(HMENU menu) {
  const detail::MenuModel* const own = detail::FindMenu(menu);
  if (own == nullptr || own->places > 0) return;
  std::vector<HMENU> ending{menu};
  const auto is_kept = [&ending](const detail::MenuItem& item) {
    detail::MenuModel* const popup = detail::FindMenu(item.submenu);
    if (popup == nullptr) return false;
    if (popup->places > 1 || popup->permanent != nullptr) {
      --popup->places;
      return true;
    }
    ending.push_back(item.submenu);
    return false;
  };
  while (!ending.empty()) {
    detail::MenuModel* const next = detail::FindMenu(ending.back());
    ending.pop_back();
    std::erase_if(next->items, is_kept);
  }
  detail::DestroyMenuTree(menu);
}

int CDQCoolMenu::LoadMenuA(UINT id) {
  if (Coolify(id, false)) {
    MapToToolbar(id);
    return 1;
  }
  CString text;
  text.Format("CDQCoolMenu::LoadMenu - Failed to load menu %d\n", id);
  AfxTrace(text.View());
  return 0;
}

bool CDQCoolMenu::MapToToolbar(UINT id) {
  image_list_ = nullptr;
  if (id == 0 || LoadButtonInfo(id) == 0) return false;
  CreateImageList(id, kMaskColor);
  return true;
}

int CDQCoolMenu::LoadButtonInfo(UINT id) {
  const std::optional<std::string_view> data = detail::FindResourceData(id, RESOURCE_TOOLBAR);
  const std::optional<ToolBarTemplate> bar = data ? ReadToolBarTemplate(*data) : std::nullopt;
  if (!bar) return 0;
  // A command's index is that of its picture in this tool bar's strip.
  button_commands_.RemoveAll();
  GetButtonCommands(bar->commands.data(), static_cast<int>(bar->commands.size()));
  image_size_ = bar->picture_size;
  RecalcWidth();
  return 1;
}

int CDQCoolMenu::LoadButtonInfo(const char* name) {
  const std::string_view text = name == nullptr ? "" : name;
  if (!text.starts_with('#')) return 0;
  const std::optional<int> id = detail::ReadWholeNumber(text.substr(1), 1, kHighestResource);
  return id ? LoadButtonInfo(static_cast<UINT>(*id)) : 0;
}

void CDQCoolMenu::GetButtonCommands(const WORD* commands, int count) {
  for (int at = 0; commands != nullptr && at < count; ++at) {
    const int last = button_commands_.GetSize() - 1;
    if (commands[at] == 0 || (last >= 0 && button_commands_[last] == commands[at])) continue;
    button_commands_.Add(commands[at]);
  }
}

bool CDQCoolMenu::CreateImageList(UINT id, COLORREF mask) {
  image_list_ = CImageListInfoArray::Shared().FindOrCreate(id, image_size_.cx, mask);
  return image_list_ != nullptr;
}

int CDQCoolMenu::CommandToImageIndex(UINT id) const {
  for (int at = 0; at < button_commands_.GetSize(); ++at) {
    if (button_commands_[at] == id) return at;
  }
  return kNoImage;
}

CDQCoolMenu* CDQCoolMenu::GetCoolSubMenu(int n) const {
  const bool is_there = n >= 0 && static_cast<std::size_t>(n) < submenus_.size();
  return is_there ? submenus_[static_cast<std::size_t>(n)].get() : nullptr;
}

void CDQCoolMenu::DropSubMenu(HMENU menu) {
  std::erase_if(submenus_, [menu](const auto& submenu) { return submenu->GetSafeHmenu() == menu; });
}

int CDQCoolMenu::TrackPopupMenu(UINT flags, int x, int y, CWnd* owner, const CRect* stays_open_in) {
  // One that is tracked within another gives the former values back, whatever its owner throws.
  struct Tracking {
    Tracking(CWnd* window, HMENU menu)
        : former_window(std::exchange(track_window_, window)),
          former_menu(std::exchange(track_menu_, menu)) {}
    Tracking(const Tracking&) = delete;
    Tracking& operator=(const Tracking&) = delete;
    ~Tracking() {
      track_window_ = former_window;
      track_menu_ = former_menu;
    }
    CWnd* const former_window;
    const HMENU former_menu;
  } const tracking(owner, m_hMenu);
  return CMenu::TrackPopupMenu(flags, x, y, owner, stays_open_in);
}

bool DQLoadMenu(CDQCoolMenu& menu, UINT id, HINSTANCE module) {
  const CDQSwitchResourceHandle switched(module);
  return menu.LoadMenuA(id) != 0;
}

}  // namespace dq
