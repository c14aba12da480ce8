// Menus that show the pictures of their commands' tool bar buttons.

#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "dqlib/framework/base/array.h"
#include "dqlib/framework/windows/menu.h"
#include "dqlib/platform/modules.h"
#include "dqlib/toolkit/image_list_info.h"
#include "dqlib/toolkit/menu_item_info.h"

namespace dq {

namespace detail {
struct MenuItem;
}

class CDQCoolMenu;
using CDQCoolMenuArray = std::vector<std::unique_ptr<CDQCoolMenu>>;

/// A menu that draws its items. It takes over an existing menu or loads one, learns from the tool
/// bar resource with a number which command has which picture of the bitmap with that number, and
/// keeps a record of each item, for one that its owner draws has no text in the menu.
///
///   CDQCoolMenu menu;
///   if (menu.Coolify(IDM_OUTPUT, true)) menu.GetCoolSubMenu(0)->TrackPopupMenu(0, x, y, this);
///
/// Owners of a tracked menu, and frames with one, answer `WM_MENUCHAR` by `OnMenuChar`; what else
/// such a menu needs of them `CWnd` does. Positions count from 0. A text is an item's with its "&"
/// and, behind a tab, its keys. Operations answer false, and change nothing, without a menu and for
/// an item that isn't there. For the user-interface thread.
class CDQCoolMenu : public CMenu {
  DECLARE_DYNAMIC(CDQCoolMenu)

  /// Of pictures that are seen through where they have it.
  static constexpr COLORREF kMaskColor = 0xFF00FF;
  /// Of pictures, until a tool bar says another one.
  static constexpr CSize kUsualImageSize{20, 19};

  /// How items are drawn, beside what the record says.
  struct Look {
    bool shows_pictures = true;
    /// What is selected has its colour behind the picture too.
    bool selects_whole_row = false;
    /// Disabled texts are grey, without relief.
    bool plain_disabled = false;
  };

  CDQCoolMenu() = default;
  ~CDQCoolMenu() override;

  // Taking menus over.

  /// Takes the menu over from the object that has it; `CleanMenu` gives it up as it was. What has
  /// been learned of a tool bar stays. False for a dead handle, and if this object has another
  /// menu.
  bool Coolify(HMENU menu);
  /// The same, and `CoolifyPopup` for the popups at the first `count` positions.
  bool Coolify(HMENU menu, const UINT* toolbars, UINT count);
  /// Loads the menu resource in the place of what it had, and with `popup_too` takes over the popup
  /// at position 0 with the tool bar of the same number.
  bool Coolify(UINT menu_id, bool popup_too);
  /// Has the popup at the position drawn with the pictures of a tool bar, 0 for none, as a menu of
  /// `GetCoolSubMenu`. Those below it stay as they are. True without a popup there.
  bool CoolifyPopup(int position, UINT toolbar_id);
  /// Has all items of the menu drawn, their states and texts as before, of which popups keep 1024
  /// bytes. Commands without a text stay as they are. Returns the number of records.
  int CoolifyExistingItems();
  /// Gives the items their texts back, and forgets records, pictures and submenus. A menu that was
  /// taken over is given up. One of its own that had a popup taken over ends, but for popups that
  /// hang elsewhere too, or that another object has.
  void CleanMenu();

  /// `CleanMenu`, then loads the menu resource and the tool bar with its number. 0, which is
  /// traced, if there is no such menu.
  int LoadMenuA(UINT id);
  bool HasAttachedMenu() const { return attached_; }

  // Pictures.

  /// Learns the commands and pictures of a tool bar. False, and no pictures, without the tool bar;
  /// one whose bitmap is missing counts.
  bool MapToToolbar(UINT id);
  /// Takes the buttons of a tool bar in the place of the former ones, and their size. 0, and no
  /// change, without it. A text names the resource "#NUMBER".
  int LoadButtonInfo(UINT id);
  int LoadButtonInfo(const char* name);
  /// Adds the commands but for separators and repeated neighbours, which share a picture.
  void GetButtonCommands(const WORD* commands, int count);
  /// Takes the shared image list of a bitmap, whose pictures are as wide as `GetImageSize`.
  bool CreateImageList(UINT id, COLORREF mask);
  /// The first picture of the command; -1 if it has none.
  int CommandToImageIndex(UINT id) const;
  CImageList* GetImageList() const { return image_list_; }
  const CSize& GetImageSize() const { return image_size_; }

  // Items. An image of -1 means the command's by the tool bar; a new item of a command that has
  // been in the menu takes over its record. `MF_SEPARATOR` among the flags makes a separator.

  bool AddItem(UINT id, const char* text, UINT image = kPopupId);
  bool AddItem(UINT flags, UINT id, const char* text, UINT image = kPopupId);
  bool AddItem(UINT id, UINT text_id, UINT image);
  bool AddItem(UINT flags, UINT id, UINT text_id, UINT image);
  /// Before the item at the position; at the end if there is none.
  bool InsertItem(int position, UINT id, const char* text, UINT image = kPopupId);
  bool InsertItem(int position, UINT flags, UINT id, const char* text, UINT image = kPopupId);
  bool InsertItem(int position, UINT id, UINT text_id, UINT image);
  bool InsertItem(int position, UINT flags, UINT id, UINT text_id, UINT image);
  /// Without `owner_draw` it is a plain popup, which has a record all the same.
  bool InsertPopup(int position, HMENU menu, const char* text, bool owner_draw);
  /// Inserts behind the last item whose text is smaller, and the separators behind that one; at 0
  /// if there is none. Lower-case forms are compared, byte by byte.
  bool InsertItemInAlphabeticOrder(UINT id, const char* text, UINT image = kPopupId);

  /// Take the item out of the menu, with its record unless another one shares that. A popup goes
  /// with its `CDQCoolMenu`; deleted ones are destroyed, removed ones belong to the caller. Ids are
  /// those of commands of this menu itself.
  bool DeleteItem(int position);
  bool DeleteItem(UINT id);
  bool RemoveItem(int position);
  bool RemoveItem(UINT id);
  /// Takes the item out and keeps the record, for when it is inserted again.
  bool HideItem(int position);
  bool HideItem(UINT id);
  /// The same for popups only. The second form deletes or removes.
  bool DeletePopup(int position) { return RemoveSubMenu(position, true); }
  bool RemovePopup(int position) { return RemoveSubMenu(position, false); }
  bool RemoveSubMenu(int position, bool destroy);

  /// Changes the command's record. The width of the menu stays.
  bool ModifyItem(UINT id, const char* text, UINT image);
  /// The record's text; "" without a record. Hidden items are found by their id.
  CString GetMenuItemText(UINT id_or_position, bool by_position) const;
  /// The record's picture, or -1.
  int GetMenuItemImageIndex(UINT id) const;
  /// The position, or -1: of the last item with the text, case ignored, and of the first one of the
  /// command.
  int FindMenuItem(const char* text) const;
  int FindMenuItem(UINT id) const;
  /// The popups taken over, in the order in which they were; null for others.
  CDQCoolMenu* GetCoolSubMenu(int n) const;
  const CMenuItemInfoArray& GetItems() const { return items_; }

  /// Adds the items of another menu at the end; a command whose text an item of this menu has takes
  /// the place of that one. What has no picture here gets the other's. Popups hang in both menus
  /// then. False for null and for this menu.
  bool ExtendMenu(CDQCoolMenu* other);
  /// The same with the first popup of a menu resource.
  bool ExtendMenu(UINT menu_id);

  // Keys.

  /// The number, as `WM_MENUCHAR` has it, of the character behind the first "&" that another one
  /// doesn't follow, in lower case; 0 without one. Of two in a row the second is looked at in its
  /// turn, so that of "&&x" it is x.
  static int ExtractMnemonic(const char* text);
  /// An answer to `WM_MENUCHAR`: the position of the first item with the mnemonic, and 2 in the
  /// high word, for popups too; 0 if there is none.
  LRESULT CheckMnemonic(UINT ch) const;
  /// What the owner of a menu answers to `WM_MENUCHAR`: `CheckMnemonic` of a menu of this class
  /// that drops down, else 0.
  static LRESULT OnMenuChar(UINT ch, UINT flags, CMenu* menu);

  // Showing.

  int TrackPopupMenu(UINT flags, int x, int y, CWnd* owner,
                     const CRect* stays_open_in = nullptr) override;
  /// The owner, and the menu, of the innermost `TrackPopupMenu` that is under way, or null.
  static CWnd* GetTrackWindow() { return track_window_; }
  static HMENU GetTrackMenu() { return track_menu_; }

  /// The full width of an item in pixels, measured when it is asked for the first time since an
  /// item came or went, or another one became the default item; and from where on in it the keys
  /// are written.
  int GetMaxItemWidth();
  int GetAcceleratorOffset();
  void RecalcWidth() { max_width_ = -1; }
  void MeasureItem(MEASUREITEMSTRUCT* item) override;
  void DrawItem(DRAWITEMSTRUCT* item) override;
  /// Draws a picture of the list, or for -1 the check mark of a checked item, in a state of
  /// `OwnerDrawState` bits. False if nothing is to be drawn.
  bool DrawImage(CDC& dc, const CPoint& at, int image, UINT state);
  Look& look() { return look_; }

 protected:
  virtual void DrawEmbossed(CDC& dc, const CPoint& at, int image);
  /// Draws the text in the row behind the picture, and the keys at their offset from its left; bold
  /// for the default item.
  virtual void DrawItemText(CDC& dc, const CRect& row, const CMenuItemInfo& record, UINT state);

 private:
  enum class Leaving { kDelete, kRemove, kHide };

  /// What an item keeps when it is drawn from now on, or no longer, and when another menu gets it.
  static constexpr UINT kKeptStates = MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_RADIOCHECK;

  CMenuItemInfo* RecordOf(const detail::MenuItem& item) const;
  const detail::MenuItem* ItemAt(int position) const;
  CMenuItemInfo* RecordAt(int position) const;
  std::string_view ShownText(const detail::MenuItem& item) const;
  HMENU PopupAt(int position) const;
  CString TextAt(int position) const;
  bool Insert(UINT position, UINT flags, UINT id, const char* text, UINT image);
  bool TakeOut(int position, Leaving leaving);
  void DropRecord(const CMenuItemInfo* record);
  void DropSubMenu(HMENU menu);
  void CoolifyItem(int position);
  void RestoreItems();
  void ForgetItems();
  void Forget();
  void EndOwnMenu(HMENU menu);
  int CopyImage(const CDQCoolMenu& from, UINT id);
  void ReplaceItem(int position, UINT flags, UINT id, const CString& text, int image);
  void MeasureItems();
  void CalculateMaxItemWidth();

  inline static CWnd* track_window_ = nullptr;
  inline static HMENU track_menu_ = nullptr;

  /// `CleanMenu` gives the menu up.
  bool attached_ = false;
  /// It was somebody else's.
  bool borrowed_ = false;
  CImageList* image_list_ = nullptr;
  CMenuItemInfoArray items_;
  CWordArray button_commands_;
  Look look_;
  CSize image_size_ = kUsualImageSize;
  int max_width_ = -1;
  int accelerator_offset_ = -1;
  /// The default item's position at that time, whose text is bold.
  UINT measured_default_ = 0;
  CDQCoolMenuArray submenus_;
  /// Records of popups that aren't drawn, whose items have no room for them.
  std::unordered_map<HMENU, CMenuItemInfo*> plain_popups_;
};

/// Has the cool menu load itself, with the module current; see `frame/resources.h`. True on
/// success.
bool DQLoadMenu(CDQCoolMenu& menu, UINT id, HINSTANCE module);

}  // namespace dq
