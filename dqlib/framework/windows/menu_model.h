// What menus are behind their handles.

#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "dqlib/framework/windows/menu.h"

namespace dq::detail {

/// One item.
struct MenuItem {
  /// `MenuFlag` bits that are states or kinds.
  UINT flags = 0;
  UINT id = 0;
  /// Of a popup; dead if the menu has been destroyed.
  HMENU submenu = nullptr;
  std::string text = {};
  /// The owner's, of an item that it draws.
  const void* data = nullptr;

  friend bool operator==(const MenuItem&, const MenuItem&) = default;
};

/// One menu.
struct MenuModel {
  HMENU handle = nullptr;
  /// Items are put in and taken out at both ends in constant time.
  std::deque<MenuItem> items;
  /// Of the default item, or -1.
  int default_position = -1;
  /// The object that is attached, or null.
  CMenu* permanent = nullptr;
  /// Those that stand in for it, made when somebody asks; more than one only if the former has been
  /// attached to another menu.
  std::vector<std::unique_ptr<CMenu>> temporary;
  /// How many items pop it up.
  int places = 0;
  /// The last search that came by; see `FindCommand`.
  std::uint64_t seen = 0;
};

/// A new menu without items.
HMENU NewMenu();
/// Null for a dead handle. Good until the menu is destroyed.
MenuModel* FindMenu(HMENU menu);
/// Destroys the menu and those below it. False for a dead handle.
bool DestroyMenuTree(HMENU menu);
/// An item pops the menu up, or no longer does; nothing for a dead handle.
void CountPlace(HMENU submenu, int change);
/// Whether `inner` is `outer` or below it.
bool IsInMenu(HMENU outer, const MenuModel& inner);

/// Where an item stands.
struct MenuPlace {
  MenuModel* menu = nullptr;
  std::size_t position = 0;

  explicit operator bool() const { return menu != nullptr; }
  MenuItem& item() const { return menu->items[position]; }
};

/// The item with the command id, in the menu and those below it, in the order in which a person
/// reads them.
MenuPlace FindCommand(HMENU menu, UINT id);

/// Makes a menu of a text; null if it breaks the form. Then `error`, if not null, takes the line,
/// from 1, and why.
HMENU ReadMenuText(std::string_view text, std::string* error);

}  // namespace dq::detail
