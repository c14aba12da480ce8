// Menus: items by position and command id, with submenus.
//
// A menu is a handle to a tree of items; a `CMenu` object is attached to it. Items that pop up a
// submenu hold its handle. As data of a resource of type 4 it is a text:
//
//   popup "&File"
//     item 43538 "&Open...\tCtrl+O"
//     separator
//     item 43539 "E&xit" checked grayed
//   end
//
// Texts are written as in `dialog_template.h`; ids are 1 to 65535, popups are nested at most 32
// deep, and both kinds of items may be `grayed`.

#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/object.h"
#include "dqlib/platform/types.h"

namespace dq {

class CWnd;

/// A menu by its handle: an opaque number, never reused while the process lives.
struct MenuHandle;
using HMENU = MenuHandle*;

/// Bits that describe an item, and say how operations find one.
enum MenuFlag : UINT {
  MF_BYCOMMAND = 0,
  MF_ENABLED = 0,
  MF_STRING = 0,
  MF_UNCHECKED = 0,
  MF_GRAYED = 0x1,
  MF_DISABLED = 0x2,
  MF_CHECKED = 0x8,
  MF_POPUP = 0x10,
  MF_OWNERDRAW = 0x100,
  /// The item's check mark is a radio mark.
  MF_RADIOCHECK = 0x200,
  MF_BYPOSITION = 0x400,
  MF_SEPARATOR = 0x800,
};

/// Bits for `CMenu::TrackPopupMenu`.
enum TrackFlag : UINT {
  /// The menu lies to the right of the point, to both sides or to the left.
  TPM_LEFTALIGN = 0,
  TPM_CENTERALIGN = 4,
  TPM_RIGHTALIGN = 8,
  /// The right button chooses too, and not the left one alone.
  TPM_RIGHTBUTTON = 2,
  /// The command is the call's result, and no message.
  TPM_RETURNCMD = 0x100,
};

/// A menu. For the user-interface thread. An operation on an item takes its command id, which is
/// looked for in submenus too, or with `MF_BYPOSITION` its position from 0; without a menu or such
/// an item it answers false, -1, 0 or "" and does nothing.
class CMenu : public CObject {
  DECLARE_DYNAMIC(CMenu)
  CMenu() = default;
  /// Destroys the menu that it is attached to.
  ~CMenu() override;

  bool CreateMenu();
  bool CreatePopupMenu();
  /// The menu with the id from the chain of resource modules, and from a text. False if there is
  /// none or it breaks the form, or if the object has a menu already. `error`, if not null, takes
  /// where a text breaks the form and how: "line 3: a text isn't closed".
  bool LoadMenu(UINT id);
  bool LoadMenuIndirect(std::string_view text, std::string* error = nullptr);
  /// Destroys the menu and its submenus; their handles are dead. False without a menu.
  bool DestroyMenu();

  HMENU GetSafeHmenu() const { return m_hMenu; }
  /// Takes over a handle. False if it is dead, another object has it, or this one has a menu.
  bool Attach(HMENU menu);
  /// Gives its handle away.
  HMENU Detach();
  /// The object that is attached to a handle, or null.
  static CMenu* FromHandlePermanent(HMENU menu);
  /// The object attached to a handle, or if there is none, one that lives as long as the menu does.
  /// Null for a dead handle.
  static CMenu* FromHandle(HMENU menu);

  /// How many items; -1 without a menu.
  int GetMenuItemCount() const;
  /// The command id at the position; 0 for a separator, -1 for a popup, and -1 if there is no item.
  UINT GetMenuItemID(int position) const;
  /// Flags of the item, the count of a popup's items in the second byte; -1 if there is no item.
  UINT GetMenuState(UINT item, UINT flags) const;
  /// The item's text: "" for one that its owner draws. The second form returns the length.
  CString GetMenuString(UINT item, UINT flags) const;
  int GetMenuString(UINT item, CString& text, UINT flags) const;
  CMenu* GetSubMenu(int position) const;
  /// Whether the owner draws the item, which the flags of a popup don't tell.
  bool IsOwnerDrawn(UINT item, UINT flags) const;
  /// What the owner of an item that it draws has put there; null otherwise.
  void* GetItemData(UINT item, UINT flags) const;

  /// Add an item at the end, or before another one (at the end if there is no such). With
  /// `MF_POPUP`, `id` is the submenu's handle, which the menu takes over; with `MF_OWNERDRAW`,
  /// `text` is the owner's data. A submenu may hang in several menus; the first of them that is
  /// destroyed takes it along, and it isn't there for the others then. False without a menu, for a
  /// dead submenu, and for one that has this menu in it.
  bool AppendMenu(UINT flags, std::uintptr_t id = 0, const char* text = nullptr);
  bool InsertMenu(UINT item, UINT flags, std::uintptr_t id = 0, const char* text = nullptr);
  /// Replaces an item; a submenu that it had is destroyed, unless the new item has the same. False,
  /// and no change, as before and if there is no such item.
  bool ModifyMenu(UINT item, UINT flags, std::uintptr_t id = 0, const char* text = nullptr);
  /// Takes the item out and destroys its submenu.
  bool DeleteMenu(UINT item, UINT flags);
  /// Takes the item out; its submenu's handle lives on and belongs to the caller.
  bool RemoveMenu(UINT item, UINT flags);

  /// Return the former flags of the kind, -1 if there is no item. A mark by the first is a check
  /// mark.
  UINT CheckMenuItem(UINT item, UINT flags);
  UINT EnableMenuItem(UINT item, UINT flags);
  /// Marks one of a range of items by a radio mark and takes the mark from the others. The range is
  /// that of positions, or of command ids in the menu that has `item`. False without that one.
  bool CheckMenuRadioItem(UINT first, UINT last, UINT item, UINT flags);
  /// The item that a double click on the menu chooses; there is none if `item` isn't in the menu.
  void SetDefaultItem(UINT item, bool by_position);
  /// Its command id (-1 for a popup), or its position; -1 if there is none.
  UINT GetDefaultItem(bool by_position = false) const;

  /// Brings all items up to date by their handlers: those of `target` and its route. With
  /// `auto_disable`, commands without a handler are disabled. Handlers may change the menus,
  /// destroy them, and end `target` if that is a window, which ends the update. `deep`: those of
  /// the menus below too.
  void UpdateItems(class CCmdTarget& target, bool auto_disable = true, bool deep = true);

  /// Shows the menu at a point of the screen and has the person choose, in the window layer;
  /// nothing happens without one. `owner` gets `WM_INITMENUPOPUP` before each menu drops down, and
  /// the command chosen by `WM_COMMAND`, unless `flags` has `TPM_RETURNCMD`: then it is the result.
  /// Otherwise that is 1, or 0 if there is no menu or no owner. `flags` is a sum of `TrackFlag`
  /// bits; in the rectangle of the screen, which may be null, a person may press without leaving
  /// the menu. A layer heeds both as far as its toolkit can.
  virtual int TrackPopupMenu(UINT flags, int x, int y, CWnd* owner,
                             const struct CRect* stays_open_in = nullptr);

  /// The owner of an item that it draws is asked for its size, or is to draw it. The base does
  /// nothing: who adds such items derives from it.
  virtual void MeasureItem(struct MEASUREITEMSTRUCT* /*item*/) {}
  virtual void DrawItem(struct DRAWITEMSTRUCT* /*item*/) {}

  /// Null without a menu. Read only.
  HMENU m_hMenu = nullptr;
};

/// The number by which `WM_MENUCHAR` tells the first character of a text: a byte, of two bytes the
/// first one in the high half, and in UTF-8 the character's code. 0 for "".
UINT MenuCharacter(std::string_view text);

/// One key combination for a command.
struct Accelerator {
  bool control = false;
  bool shift = false;
  bool alt = false;
  /// The key's number: that of its upper-case letter or digit, or a virtual key number.
  WORD key = 0;
  WORD command = 0;
};

/// Key combinations for commands. As data of a resource of type 9 a text of lines "ctrl+shift+F
/// 44412"; keys are letters, digits, F1 to F24, Ins, Del, Home, End, PgUp, PgDn, Left, Right, Up,
/// Down, Tab, Esc, Enter, Space, Back, Num0 to Num9 and, by their numbers, Key1 to Key255, in any
/// case. Where a combination stands twice, the first
/// counts.
class AcceleratorTable {
 public:
  /// By the chain of resource modules, and from a text. False, and an empty table, if there is none
  /// or it breaks the form.
  bool Load(UINT id);
  bool Read(std::string_view text);
  std::span<const Accelerator> entries() const { return entries_; }
  /// The command of a combination, 0 if there is none.
  WORD Find(WORD key, bool control, bool shift, bool alt) const;
  /// Sends `window` the command of a combination by `WM_COMMAND`, with 1 in the high word of its
  /// first argument. False if there is none.
  bool Translate(CWnd& window, WORD key, bool control, bool shift, bool alt) const;

 private:
  std::vector<Accelerator> entries_;
};

}  // namespace dq
