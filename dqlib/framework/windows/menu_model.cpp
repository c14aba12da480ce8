#include "dqlib/framework/windows/menu_model.h"

#include <unordered_map>

#include "dqlib/framework/windows/ui_state.h"

namespace dq::detail {
namespace {

using Menus = std::unordered_map<std::uintptr_t, std::unique_ptr<MenuModel>>;

/// Never taken down: menus of static objects may end after everything else.
Menus& AllMenus() {
  static Menus& menus = *new Menus;
  return menus;
}

std::uintptr_t Number(HMENU menu) { return reinterpret_cast<std::uintptr_t>(menu); }

/// Calls `visit` with the items from `menu` down in the order of a reader, until it gives true, and
/// returns where. A menu to which several ways lead is passed once.
template <typename Visit>
MenuPlace Walk(HMENU menu, Visit visit) {
  static std::uint64_t walks = 0;
  const std::uint64_t walk = ++walks;
  std::vector<MenuPlace> way;
  const auto enter = [&](HMENU handle) {
    MenuModel* const model = FindMenu(handle);
    if (model == nullptr || model->seen == walk) return;
    model->seen = walk;
    way.push_back({model, 0});
  };
  enter(menu);
  while (!way.empty()) {
    const MenuPlace here = way.back();
    if (here.position == here.menu->items.size()) {
      way.pop_back();
      continue;
    }
    if (visit(here.item())) return here;
    ++way.back().position;
    enter(here.item().submenu);
  }
  return {};
}

}  // namespace

HMENU NewMenu() {
  static std::uintptr_t last = 0;
  MenuModel& made = *AllMenus().emplace(++last, std::make_unique<MenuModel>()).first->second;
  made.handle = reinterpret_cast<HMENU>(last);
  return made.handle;
}

MenuModel* FindMenu(HMENU menu) {
  const auto found = AllMenus().find(Number(menu));
  return found == AllMenus().end() ? nullptr : found->second.get();
}

bool DestroyMenuTree(HMENU menu) {
  if (FindMenu(menu) == nullptr) return false;
  std::vector<HMENU> doomed{menu};
  while (!doomed.empty()) {
    // Out of the table first, so that what its objects do on their end finds a dead handle.
    const auto node = AllMenus().extract(Number(doomed.back()));
    doomed.pop_back();
    if (node.empty()) continue;
    const MenuModel& model = *node.mapped();
    for (const MenuItem& item : model.items) {
      if (item.submenu != nullptr) doomed.push_back(item.submenu);
    }
    if (model.permanent != nullptr) model.permanent->m_hMenu = nullptr;
    for (const std::unique_ptr<CMenu>& each : model.temporary) {
      if (Number(each->m_hMenu) == node.key()) each->m_hMenu = nullptr;
    }
    TellMenuChange(model.handle, MenuChange::kDestroyed, {});
  }
  return true;
}

void CountPlace(HMENU submenu, int change) {
  if (MenuModel* const model = FindMenu(submenu)) model->places += change;
}

bool IsInMenu(HMENU outer, const MenuModel& inner) {
  if (FindMenu(outer) == &inner) return true;
  if (inner.places == 0) return false;
  return static_cast<bool>(
      Walk(outer, [&inner](const MenuItem& item) { return FindMenu(item.submenu) == &inner; }));
}

MenuPlace FindCommand(HMENU menu, UINT id) {
  return Walk(menu, [id](const MenuItem& item) {
    return (item.flags & (MF_POPUP | MF_SEPARATOR)) == 0 && item.id == id;
  });
}

}  // namespace dq::detail
