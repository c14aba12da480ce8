// Menus.

#pragma once

#include <functional>
#include <memory>
#include <vector>
#include <wx/string.h>

#include "apps/workbench/layer/gtk_menu.h"
#include "apps/workbench/layer/scale.h"
#include "dqlib/framework/windows/menu.h"
#include "dqlib/framework/windows/window_observer.h"

class wxMenu;
class wxMenuBar;
class wxMenuItem;

namespace dq {
class CWnd;
}

namespace workbench {

/// What is shown of a menu's item.
struct MenuItemFacts {
  enum class Kind { kCommand, kSeparator, kPopup };

  Kind kind = Kind::kCommand;
  dq::UINT id = 0;
  dq::HMENU submenu = nullptr;
  wxString text;
  dq::UINT state = 0;
  bool is_default = false;
  /// Its owner draws it, with these data, at the position.
  bool is_drawn = false;
  const void* data = nullptr;
  int position = 0;

  /// Whether an item of the toolkit's that shows the one can be made to show the other.
  bool IsSameItem(const MenuItemFacts& other) const;
};

/// A menu as one of the toolkit's, or as its menu bar. Submenus are mirrored in it. What is shown
/// of an item changes when the item does; the others stay.
class MenuMirror {
 public:
  /// What a person does with the menu, told from within the toolkit: `command` for an item that
  /// they choose, `opens` for a menu that is about to drop down at a position of the one above,
  /// `looked_at` for an item that they point at, with its state, 0 and 0xFFFF for none. And what
  /// the menu needs: `with_owner` has an act done to its owner, outside of the toolkit.
  struct Events {
    std::function<void(dq::UINT id)> command = {};
    std::function<void(dq::HMENU menu, int position)> opens = {};
    std::function<void(dq::UINT id, dq::UINT state, dq::HMENU menu)> looked_at = {};
    std::function<void(std::function<void(dq::CWnd& owner)> act)> with_owner = {};
    const Scale& scale;
  };

  /// For a menu that drops down, from that of `above` unless it is null; `native` isn't owned.
  MenuMirror(dq::HMENU menu, wxMenu& native, const Events& events,
             const MenuMirror* above = nullptr);
  /// For a main menu.
  MenuMirror(dq::HMENU menu, wxMenuBar& native, const Events& events);
  MenuMirror(const MenuMirror&) = delete;
  MenuMirror& operator=(const MenuMirror&) = delete;
  ~MenuMirror();

  dq::HMENU menu() const { return menu_; }
  /// Its items, or those of a menu below it, have changed.
  bool Mark(dq::HMENU menu);
  /// Shows the items of those that were marked.
  void Update();
  /// Outside of the toolkit, for a main menu: that of its menus which the owner, who draws
  /// their items, has drop down by a character; null if there is none. The owner may end
  /// everything.
  wxMenu* MenuOfKey(const wxString& key, dq::CWnd& owner);
  /// Outside of the toolkit: measures and draws the items that the owner draws, before the menu is
  /// shown.
  void DrawItems(dq::CWnd& owner);

 private:
  struct Item;

  void Watch();
  int PositionOf(const MenuMirror& below) const;
  void UpdateItems();
  void Insert(std::size_t at, const MenuItemFacts& facts);
  void Erase(std::size_t at);
  void Show(Item& item, std::size_t at, const MenuItemFacts& facts);
  void MakeDrawn(Item& item);
  void PostDrawing();
  bool HasDrawn() const;
  bool IsOwnersKey(const wxString& key) const;
  bool TakeKey(unsigned int character);
  void Answer(dq::WPARAM answer);

  dq::HMENU menu_;
  wxMenu* native_ = nullptr;
  wxMenuBar* bar_ = nullptr;
  const MenuMirror* above_ = nullptr;
  const Events& events_;
  std::vector<Item> items_;
  bool changed_ = true;
  /// The items are to be drawn anew, which is under way.
  bool draws_ = false;
  /// Gone with this.
  std::shared_ptr<MenuMirror*> self_ = std::make_shared<MenuMirror*>(this);
  std::unique_ptr<MenuKeys> keys_;
};

}  // namespace workbench
