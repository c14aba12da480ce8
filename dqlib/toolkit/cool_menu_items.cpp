// Menus with pictures: their items, and the keys that choose them.

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "dqlib/framework/base/drawn_character.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/windows/menu_model.h"
#include "dqlib/framework/windows/window_messages.h"
#include "dqlib/toolkit/cool_menu.h"

namespace dq {
namespace {

constexpr UINT kAtEnd = 0xFFFFFFFF;
/// In the high word of an answer to `WM_MENUCHAR`.
constexpr UINT kExecute = 2;
constexpr int kHighestByte = 0xFF;

/// A string of the resources; "" if there is none.
CString TextOf(UINT id) {
  CString text;
  text.LoadString(id);
  return text;
}

bool IsSeparatorItem(const detail::MenuItem& item) {
  return (item.flags & MF_POPUP) == 0 && item.id == 0;
}

int LowerCode(UINT ch) {
  if (ch > kHighestByte) return static_cast<int>(ch);
  const char byte = static_cast<char>(ch);
  return static_cast<unsigned char>(multi_byte::Lower({&byte, 1}).front());
}

/// Where the items with a text stand, the last one of each, as `FindMenuItem` finds them. Items are
/// added at the end meanwhile, or take the place of one with the same text.
class TextPlaces {
 public:
  explicit TextPlaces(const CDQCoolMenu& menu) : menu_(menu) {}

  bool Holds(const CString& text) const { return exact_.contains(std::string(text.View())); }
  void Note(const CString& text, int position) {
    exact_.emplace(text.View());
    NotePlace(text, position);
  }
  /// Of a popup that is added, whose text the menu's own items don't hold.
  void NotePlace(const CString& text, int position) {
    last_[multi_byte::Lower(text.View())] = position;
  }
  /// A record that several items share has another text now: places are looked up from here on.
  void Distrust() { is_trusted_ = false; }
  int Find(const CString& text) const {
    if (!is_trusted_) return menu_.FindMenuItem(text);
    const auto found = last_.find(multi_byte::Lower(text.View()));
    return found == last_.end() ? -1 : found->second;
  }

 private:
  const CDQCoolMenu& menu_;
  std::unordered_set<std::string> exact_;
  std::unordered_map<std::string, int> last_;
  bool is_trusted_ = true;
};

}  // namespace

// ---- Adding

bool CDQCoolMenu::AddItem(UINT id, const char* text, UINT image) {
  return Insert(kAtEnd, 0, id, text, image);
}

bool CDQCoolMenu::AddItem(UINT flags, UINT id, const char* text, UINT image) {
  return Insert(kAtEnd, flags, id, text, image);
}

bool CDQCoolMenu::AddItem(UINT id, UINT text_id, UINT image) {
  return Insert(kAtEnd, 0, id, TextOf(text_id), image);
}

bool CDQCoolMenu::AddItem(UINT flags, UINT id, UINT text_id, UINT image) {
  return Insert(kAtEnd, flags, id, TextOf(text_id), image);
}

bool CDQCoolMenu::InsertItem(int position, UINT id, const char* text, UINT image) {
  return Insert(static_cast<UINT>(position), 0, id, text, image);
}

bool CDQCoolMenu::InsertItem(int position, UINT flags, UINT id, const char* text, UINT image) {
  return Insert(static_cast<UINT>(position), flags, id, text, image);
}

bool CDQCoolMenu::InsertItem(int position, UINT id, UINT text_id, UINT image) {
  return Insert(static_cast<UINT>(position), 0, id, TextOf(text_id), image);
}

bool CDQCoolMenu::InsertItem(int position, UINT flags, UINT id, UINT text_id, UINT image) {
  return Insert(static_cast<UINT>(position), flags, id, TextOf(text_id), image);
}

bool CDQCoolMenu::Insert(UINT position, UINT flags, UINT id, const char* text, UINT image) {
  if (GetMenuItemCount() < 0) return false;
  RecalcWidth();
  const UINT drawn = MF_BYPOSITION | MF_OWNERDRAW | (flags & kKeptStates);
  if ((flags & MF_SEPARATOR) != 0) return InsertMenu(position, drawn | MF_SEPARATOR);
  const int index = image == kPopupId ? CommandToImageIndex(id) : static_cast<int>(image);
  return InsertMenu(position, drawn, id, items_.AddOrReplace(id, index, text)->AsItemData());
}

bool CDQCoolMenu::InsertPopup(int position, HMENU menu, const char* text, bool owner_draw) {
  CMenuItemInfo* const record = items_.AddItem(text);
  const UINT flags = MF_BYPOSITION | MF_POPUP | (owner_draw ? UINT{MF_OWNERDRAW} : 0);
  const char* shown = record->m_strText;
  if (owner_draw) shown = record->AsItemData();
  const auto id = reinterpret_cast<std::uintptr_t>(menu);
  if (!InsertMenu(static_cast<UINT>(position), flags, id, shown)) {
    items_.Delete(record);
    return false;
  }
  if (!owner_draw) plain_popups_[menu] = record;
  RecalcWidth();
  return true;
}

bool CDQCoolMenu::InsertItemInAlphabeticOrder(UINT id, const char* text, UINT image) {
  const detail::MenuModel* const menu = detail::FindMenu(m_hMenu);
  if (menu == nullptr) return false;
  const std::string_view wanted = text == nullptr ? "" : text;
  const auto is_smaller = [&](const detail::MenuItem& item) {
    return !IsSeparatorItem(item) && multi_byte::CompareNoCase(ShownText(item), wanted) < 0;
  };
  const auto last = std::ranges::find_if(menu->items.rbegin(), menu->items.rend(), is_smaller);
  auto place = last.base();
  if (last != menu->items.rend()) {
    place = std::find_if_not(place, menu->items.end(), IsSeparatorItem);
  }
  return InsertItem(static_cast<int>(place - menu->items.begin()), id, text, image);
}

// ---- Taking out

bool CDQCoolMenu::DeleteItem(int position) { return TakeOut(position, Leaving::kDelete); }

bool CDQCoolMenu::DeleteItem(UINT id) { return TakeOut(FindMenuItem(id), Leaving::kDelete); }

bool CDQCoolMenu::RemoveItem(int position) { return TakeOut(position, Leaving::kRemove); }

bool CDQCoolMenu::RemoveItem(UINT id) { return TakeOut(FindMenuItem(id), Leaving::kRemove); }

bool CDQCoolMenu::HideItem(int position) { return TakeOut(position, Leaving::kHide); }

bool CDQCoolMenu::HideItem(UINT id) { return TakeOut(FindMenuItem(id), Leaving::kHide); }

bool CDQCoolMenu::RemoveSubMenu(int position, bool destroy) {
  if (PopupAt(position) == nullptr) return false;
  return TakeOut(position, destroy ? Leaving::kDelete : Leaving::kRemove);
}

bool CDQCoolMenu::TakeOut(int position, Leaving leaving) {
  if (position < 0 || position >= GetMenuItemCount()) return false;
  const CMenuItemInfo* const record = RecordAt(position);
  const HMENU popup = PopupAt(position);
  // While the popup is there, so that its items get their texts back.
  if (popup != nullptr && leaving != Leaving::kHide) DropSubMenu(popup);
  const UINT at = static_cast<UINT>(position);
  if (leaving == Leaving::kDelete) {
    DeleteMenu(at, MF_BYPOSITION);
  } else {
    RemoveMenu(at, MF_BYPOSITION);
  }
  RecalcWidth();
  if (leaving == Leaving::kHide) return true;
  if (popup != nullptr) plain_popups_.erase(popup);
  DropRecord(record);
  return true;
}

/// Deletes the record unless an item still has it.
void CDQCoolMenu::DropRecord(const CMenuItemInfo* record) {
  const detail::MenuModel* const menu = detail::FindMenu(m_hMenu);
  if (record == nullptr || menu == nullptr) return;
  const auto has_record = [&](const detail::MenuItem& item) {
    const bool is_plain_popup = item.data == nullptr && item.submenu != nullptr;
    return (is_plain_popup ? RecordOf(item) : item.data) == record;
  };
  if (std::ranges::none_of(menu->items, has_record)) items_.Delete(record);
}

// ---- Records

CMenuItemInfo* CDQCoolMenu::RecordOf(const detail::MenuItem& item) const {
  if (item.data != nullptr || item.submenu == nullptr) return items_.Find(item.data);
  const auto plain = plain_popups_.find(item.submenu);
  return plain == plain_popups_.end() ? nullptr : plain->second;
}

/// Null if there is no such item.
const detail::MenuItem* CDQCoolMenu::ItemAt(int position) const {
  const detail::MenuModel* const menu = detail::FindMenu(m_hMenu);
  if (menu == nullptr || position < 0 || position >= GetMenuItemCount()) return nullptr;
  return &menu->items[static_cast<std::size_t>(position)];
}

/// Null without a record, and if there is no such item.
CMenuItemInfo* CDQCoolMenu::RecordAt(int position) const {
  const detail::MenuItem* const item = ItemAt(position);
  return item == nullptr ? nullptr : RecordOf(*item);
}

/// The handle of a popup that is there, or null.
HMENU CDQCoolMenu::PopupAt(int position) const {
  const detail::MenuItem* const item = ItemAt(position);
  return item == nullptr || detail::FindMenu(item->submenu) == nullptr ? nullptr : item->submenu;
}

/// The record's text, or the menu's own of an item that isn't drawn.
std::string_view CDQCoolMenu::ShownText(const detail::MenuItem& item) const {
  const CMenuItemInfo* const record = RecordOf(item);
  return record != nullptr ? record->m_strText.View() : item.text;
}

CString CDQCoolMenu::TextAt(int position) const {
  const detail::MenuItem* const item = ItemAt(position);
  return item == nullptr ? CString() : CString(ShownText(*item));
}

bool CDQCoolMenu::ModifyItem(UINT id, const char* text, UINT image) {
  if (items_.Find(id) == nullptr) return false;
  items_.AddOrReplace(id, static_cast<int>(image), text);
  return true;
}

CString CDQCoolMenu::GetMenuItemText(UINT id_or_position, bool by_position) const {
  const CMenuItemInfo* const record =
      by_position ? RecordAt(static_cast<int>(id_or_position)) : items_.Find(id_or_position);
  return record == nullptr ? CString() : record->m_strText;
}

int CDQCoolMenu::GetMenuItemImageIndex(UINT id) const {
  const CMenuItemInfo* const record = items_.Find(id);
  return record == nullptr ? kNoImage : record->m_nImage;
}

int CDQCoolMenu::FindMenuItem(const char* text) const {
  const detail::MenuModel* const menu = detail::FindMenu(m_hMenu);
  if (menu == nullptr || text == nullptr) return -1;
  const auto is_wanted = [this, wanted = std::string_view(text)](const detail::MenuItem& item) {
    return !IsSeparatorItem(item) && multi_byte::CompareNoCase(ShownText(item), wanted) == 0;
  };
  const auto found = std::ranges::find_if(menu->items.rbegin(), menu->items.rend(), is_wanted);
  return static_cast<int>(menu->items.rend() - found) - 1;
}

int CDQCoolMenu::FindMenuItem(UINT id) const {
  if (id == 0 || id == kPopupId) return -1;
  for (int position = 0; position < GetMenuItemCount(); ++position) {
    if (GetMenuItemID(position) == id) return position;
  }
  return -1;
}

// ---- Extending

bool CDQCoolMenu::ExtendMenu(CDQCoolMenu* other) {
  if (other == nullptr || other == this || GetMenuItemCount() < 0) return false;
  TextPlaces texts(*this);
  for (int position = 0; position < GetMenuItemCount(); ++position) {
    if (GetMenuItemID(position) != 0) texts.Note(TextAt(position), position);
  }
  for (int from = 0; from < other->GetMenuItemCount(); ++from) {
    const UINT id = other->GetMenuItemID(from);
    const CString text = other->TextAt(from);
    const UINT flags = other->GetMenuState(static_cast<UINT>(from), MF_BYPOSITION) & kKeptStates;
    if (id == 0) {
      AddItem(MF_SEPARATOR, 0, "");
      continue;
    }
    if (id == kPopupId) {
      InsertPopup(GetMenuItemCount(), other->PopupAt(from), text, true);
      texts.NotePlace(text, GetMenuItemCount() - 1);
      continue;
    }
    const CMenuItemInfo* const known = items_.Find(id);
    if (known != nullptr && known->m_strText != text) texts.Distrust();
    const int image = CopyImage(*other, id);
    const int place = texts.Holds(text) ? texts.Find(text) : -1;
    if (place >= 0) {
      ReplaceItem(place, flags, id, text, image);
    } else {
      AddItem(flags, id, text, static_cast<UINT>(image));
      texts.Note(text, GetMenuItemCount() - 1);
    }
  }
  return true;
}

bool CDQCoolMenu::ExtendMenu(UINT menu_id) {
  CDQCoolMenu other;
  if (!other.Coolify(menu_id, false) || !other.CoolifyPopup(0, 0)) return false;
  CDQCoolMenu* const popup = other.GetCoolSubMenu(0);
  const bool extended = ExtendMenu(popup);
  // What hangs here now stays when the other menu ends.
  for (int at = popup == nullptr ? 0 : popup->GetMenuItemCount(); extended && at-- > 0;) {
    if (popup->PopupAt(at) != nullptr) popup->RemovePopup(at);
  }
  return extended;
}

/// The index here of a command's picture, for which one of the other menu is added if there is none
/// here.
int CDQCoolMenu::CopyImage(const CDQCoolMenu& from, UINT id) {
  const int known = GetMenuItemImageIndex(id);
  const int own = known != kNoImage ? known : CommandToImageIndex(id);
  const int theirs = from.GetMenuItemImageIndex(id);
  if (own != kNoImage || theirs == kNoImage || from.image_list_ == nullptr) return own;
  if (image_list_ == from.image_list_) return theirs;
  return image_list_ == nullptr ? kNoImage : image_list_->Add(*from.image_list_, theirs);
}

/// Puts a command in the place of an item with the same text.
void CDQCoolMenu::ReplaceItem(int position, UINT flags, UINT id, const CString& text, int image) {
  if (PopupAt(position) != nullptr) {
    RemovePopup(position);
    InsertItem(position, flags, id, text, static_cast<UINT>(image));
    return;
  }
  const CMenuItemInfo* const former = RecordAt(position);
  const CMenuItemInfo* const record = items_.AddOrReplace(id, image, text);
  ModifyMenu(static_cast<UINT>(position), MF_BYPOSITION | MF_OWNERDRAW | flags, id,
             record->AsItemData());
  if (former != record) DropRecord(former);
  RecalcWidth();
}

// ---- Keys

int CDQCoolMenu::ExtractMnemonic(const char* text) {
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  std::string_view rest = text == nullptr ? "" : text;
  while (!rest.empty()) {
    const bool is_mark = rest.front() == '&';
    rest.remove_prefix(std::min(detail::FirstCharacter(rest, page).size, rest.size()));
    if (is_mark && !rest.starts_with('&')) {
      return LowerCode(MenuCharacter(rest));
    }
  }
  return 0;
}

LRESULT CDQCoolMenu::CheckMnemonic(UINT ch) const {
  const int wanted = LowerCode(ch);
  for (int position = 0; wanted != 0 && position < GetMenuItemCount(); ++position) {
    if (GetMenuItemID(position) == 0 || ExtractMnemonic(TextAt(position)) != wanted) continue;
    return static_cast<LRESULT>(MakeWParam(static_cast<UINT>(position), kExecute));
  }
  return 0;
}

LRESULT CDQCoolMenu::OnMenuChar(UINT ch, UINT flags, CMenu* menu) {
  const auto* const cool = DYNAMIC_DOWNCAST(CDQCoolMenu, menu);
  return flags == MF_POPUP && cool != nullptr ? cool->CheckMnemonic(ch) : 0;
}

}  // namespace dq
