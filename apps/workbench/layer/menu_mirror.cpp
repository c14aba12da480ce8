#include "apps/workbench/layer/menu_mirror.h"

#include <algorithm>
#include <utility>
#include <wx/menu.h>
#include <wx/utils.h>

#include "apps/workbench/layer/drawn_item.h"
#include "apps/workbench/layer/text.h"
#include "dqlib/framework/windows/owner_draw.h"
#include "dqlib/framework/windows/wnd.h"

namespace workbench {
namespace {

using dq::CMenu;
using dq::CWnd;
using dq::HMENU;
using dq::UINT;
using Kind = MenuItemFacts::Kind;

constexpr UINT kInactive = dq::MF_GRAYED | dq::MF_DISABLED;
constexpr UINT kShownState = kInactive | dq::MF_CHECKED | dq::MF_RADIOCHECK;

/// What owners answer in the high word to the key of a menu.
constexpr dq::WORD kClose = 1;
constexpr dq::WORD kExecute = 2;
constexpr dq::WORD kSelect = 3;

/// What the owner answers to a key of its menu. It may end everything.
dq::WPARAM AskForKey(CWnd& owner, HMENU menu, const wxString& key) {
  const UINT ch = dq::MenuCharacter(ToLibrary(key));
  return static_cast<dq::WPARAM>(owner.SendMessage(
      dq::WM_MENUCHAR, dq::MakeWParam(ch, dq::MF_POPUP), reinterpret_cast<dq::LPARAM>(menu)));
}

/// Items that have a mark at times are another kind of item of the toolkit's.
bool IsMarked(UINT state) { return (state & dq::MF_CHECKED) != 0; }

MenuItemFacts FactsOf(const CMenu& menu, int position) {
  const UINT at = static_cast<UINT>(position);
  MenuItemFacts facts;
  const UINT flags = menu.GetMenuState(at, dq::MF_BYPOSITION);
  facts.state = flags & kShownState;
  if (const CMenu* const submenu = menu.GetSubMenu(position)) {
    facts.kind = Kind::kPopup;
    facts.submenu = submenu->GetSafeHmenu();
  } else if ((flags & dq::MF_SEPARATOR) != 0) {
    facts.kind = Kind::kSeparator;
  } else {
    facts.id = menu.GetMenuItemID(position);
  }
  facts.text = ToNative(menu.GetMenuString(at, dq::MF_BYPOSITION).View());
  facts.position = position;
  facts.is_default = menu.GetDefaultItem(true) == at;
  facts.is_drawn = menu.IsOwnerDrawn(at, dq::MF_BYPOSITION);
  facts.data = menu.GetItemData(at, dq::MF_BYPOSITION);
  return facts;
}

std::vector<MenuItemFacts> ItemsOf(HMENU menu) {
  std::vector<MenuItemFacts> items;
  if (const CMenu* const source = CMenu::FromHandle(menu)) {
    for (int at = 0; at < source->GetMenuItemCount(); ++at) items.push_back(FactsOf(*source, at));
  }
  return items;
}

wxString LabelOf(const wxString& text) {
  const wxString label = text.BeforeFirst('\t');
  // The toolkit doesn't take an item without one.
  return label.empty() ? wxString(" ") : label;
}

}  // namespace

bool MenuItemFacts::IsSameItem(const MenuItemFacts& other) const {
  return kind == other.kind && id == other.id && submenu == other.submenu &&
         is_drawn == other.is_drawn && (is_drawn || IsMarked(state) == IsMarked(other.state));
}

struct MenuMirror::Item {
  MenuItemFacts facts;
  /// Null in a menu bar.
  wxMenuItem* native = nullptr;
  wxMenu* submenu = nullptr;
  std::unique_ptr<MenuMirror> below;
  /// Of an item that its owner draws.
  std::shared_ptr<DrawnItem> drawn;
};

MenuMirror::MenuMirror(HMENU menu, wxMenu& native, const Events& events, const MenuMirror* above)
    : menu_(menu), native_(&native), above_(above), events_(events) {
  Watch();
  UpdateItems();
}

MenuMirror::MenuMirror(HMENU menu, wxMenuBar& native, const Events& events)
    : menu_(menu), bar_(&native), events_(events) {
  UpdateItems();
}

MenuMirror::~MenuMirror() = default;

bool MenuMirror::Mark(HMENU menu) {
  bool found = menu == menu_;
  changed_ = changed_ || found;
  for (Item& item : items_) found = (item.below != nullptr && item.below->Mark(menu)) || found;
  return found;
}

void MenuMirror::Update() {
  if (std::exchange(changed_, false)) UpdateItems();
  for (Item& item : items_) {
    if (item.below != nullptr) item.below->Update();
  }
}

void MenuMirror::UpdateItems() {
  changed_ = false;
  std::vector<MenuItemFacts> now = ItemsOf(menu_);
  // A menu bar has menus only.
  if (bar_ != nullptr) {
    std::erase_if(now, [](const MenuItemFacts& item) { return item.kind != Kind::kPopup; });
  }
  const std::size_t most = std::min(items_.size(), now.size());
  std::size_t begin = 0;
  while (begin < most && items_[begin].facts.IsSameItem(now[begin])) ++begin;
  std::size_t end = 0;
  while (end < most - begin &&
         items_[items_.size() - 1 - end].facts.IsSameItem(now[now.size() - 1 - end])) {
    ++end;
  }
  while (items_.size() > begin + end) Erase(begin);
  while (items_.size() < now.size()) {
    const std::size_t at = items_.size() - end;
    Insert(at, now[at]);
  }
  for (std::size_t at = 0; at < items_.size(); ++at) Show(items_[at], at, now[at]);
  // Owners draw marks themselves.
  const auto is_plain = [](const Item& item) { return item.drawn == nullptr; };
  if (native_ != nullptr) ReserveMarks(*native_, std::ranges::any_of(items_, is_plain));
  PostDrawing();
}

void MenuMirror::Insert(std::size_t at, const MenuItemFacts& facts) {
  Item item;
  item.facts = facts;
  // Shown below.
  item.facts.text = wxString();
  item.facts.state = IsMarked(facts.state) ? UINT{dq::MF_CHECKED} : 0;
  if (facts.kind == Kind::kPopup) {
    item.submenu = new wxMenu;
    item.below = std::make_unique<MenuMirror>(facts.submenu, *item.submenu, events_, this);
  }
  if (bar_ != nullptr) {
    bar_->Insert(at, item.submenu, LabelOf(facts.text));
  } else {
    const wxItemKind kind = facts.kind == Kind::kSeparator             ? wxITEM_SEPARATOR
                            : IsMarked(facts.state) && !facts.is_drawn ? wxITEM_CHECK
                                                                       : wxITEM_NORMAL;
    const int id = kind == wxITEM_SEPARATOR ? wxID_SEPARATOR : wxID_ANY;
    item.native = native_->Insert(
        at, new wxMenuItem(native_, id, kind == wxITEM_SEPARATOR ? wxString() : wxString(" "),
                           wxString(), kind, item.submenu));
    if (kind == wxITEM_CHECK) item.native->Check(true);
    native_->Bind(
        wxEVT_MENU,
        [this, command = facts.id](wxCommandEvent&) {
          // The toolkit's item has changed its mark by itself.
          changed_ = true;
          events_.command(command);
        },
        item.native->GetId());
  }
  if (facts.is_drawn) MakeDrawn(item);
  items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(at), std::move(item));
}

void MenuMirror::MakeDrawn(Item& item) {
  GtkWidget* const native = bar_ != nullptr ? item.submenu->m_owner : item.native->GetMenuItem();
  item.drawn = std::make_shared<DrawnItem>(native, events_.scale, [this] { PostDrawing(); });
}

void MenuMirror::DrawItems(CWnd& owner) {
  draws_ = false;
  // Owners may end this mirror.
  std::vector<std::shared_ptr<DrawnItem>> drawn;
  for (const Item& item : items_) {
    if (item.drawn != nullptr) drawn.push_back(item.drawn);
  }
  const dq::HWND window = owner.GetSafeHwnd();
  const auto is_there = [&] { return CWnd::FromHandle(window) == &owner; };
  for (const auto& item : drawn) {
    if (is_there()) item->Measure(owner);
  }
  for (const auto& item : drawn) {
    if (is_there()) item->Paint(owner);
  }
}

bool MenuMirror::HasDrawn() const {
  return std::ranges::any_of(items_, [](const Item& item) { return item.drawn != nullptr; });
}

/// Has the items that the owner draws drawn, once for all that has changed.
void MenuMirror::PostDrawing() {
  if (!HasDrawn() || std::exchange(draws_, true)) return;
  events_.with_owner([self = std::weak_ptr(self_)](CWnd& owner) {
    if (const auto live = self.lock()) (*live)->DrawItems(owner);
  });
}

/// Whether the owner is to say whose key a character is, for it draws items, and none of the others
/// has that key.
bool MenuMirror::IsOwnersKey(const wxString& key) const {
  const auto has_key = [&key](const Item& item) {
    const int mark = item.facts.text.Find('&');
    return !item.facts.is_drawn && mark != wxNOT_FOUND &&
           item.facts.text.Mid(static_cast<std::size_t>(mark) + 1, 1).IsSameAs(key, false);
  };
  return HasDrawn() && std::ranges::none_of(items_, has_key);
}

/// A character is typed while the menu has the keyboard. False if it is the toolkit's.
bool MenuMirror::TakeKey(unsigned int character) {
  const wxString key = wxString(wxUniChar(character));
  if (!IsOwnersKey(key)) return false;
  events_.with_owner([self = std::weak_ptr(self_), key, menu = menu_](CWnd& owner) {
    const dq::WPARAM answer = AskForKey(owner, menu, key);
    if (const auto live = self.lock()) (*live)->Answer(answer);
  });
  return true;
}

wxMenu* MenuMirror::MenuOfKey(const wxString& key, CWnd& owner) {
  if (!IsOwnersKey(key)) return nullptr;
  const std::weak_ptr<MenuMirror*> self = self_;
  const dq::WPARAM answer = AskForKey(owner, menu_, key);
  const dq::WORD what = dq::HiWord(answer);
  if (self.expired() || (what != kExecute && what != kSelect)) return nullptr;
  const auto found = std::ranges::find_if(items_, [&](const Item& item) {
    return item.facts.position == dq::LoWord(answer) && (item.facts.state & kInactive) == 0;
  });
  return found == items_.end() ? nullptr : found->submenu;
}

/// Does what the owner has answered to a key.
void MenuMirror::Answer(dq::WPARAM answer) {
  const dq::WORD what = dq::HiWord(answer);
  const std::size_t at = dq::LoWord(answer);
  if (what == kClose) return keys_->Close();
  if (at >= items_.size() || (what != kExecute && what != kSelect)) return wxBell();
  const Item& item = items_[at];
  if (what == kExecute && (item.facts.state & kInactive) != 0) return wxBell();
  keys_->Choose(*item.native, what == kExecute);
}

void MenuMirror::Erase(std::size_t at) {
  if (bar_ != nullptr) {
    delete bar_->Remove(at);
  } else {
    native_->Destroy(items_[at].native);
  }
  items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(at));
}

void MenuMirror::Show(Item& item, std::size_t at, const MenuItemFacts& facts) {
  const MenuItemFacts former = std::exchange(item.facts, facts);
  const bool is_active = (facts.state & kInactive) == 0;
  if (item.drawn != nullptr) {
    UINT state = IsMarked(facts.state) ? UINT{dq::ODS_CHECKED} : 0;
    if (!is_active) state |= UINT{dq::ODS_GRAYED} | UINT{dq::ODS_DISABLED};
    if (facts.is_default) state |= UINT{dq::ODS_DEFAULT};
    item.drawn->SetFacts({menu_, facts.position, facts.id, state, facts.data});
  }
  if (facts.kind == Kind::kSeparator) return;
  if (bar_ != nullptr) {
    const bool is_other = former.text != facts.text;
    if (is_other && item.drawn == nullptr) bar_->SetMenuLabel(at, LabelOf(facts.text));
    if (bar_->IsEnabledTop(at) != is_active) bar_->EnableTop(at, is_active);
    return;
  }
  if (former.text != facts.text && item.drawn == nullptr) {
    item.native->SetItemLabel(LabelOf(facts.text));
    ShowKeys(*item.native, facts.text.AfterFirst('\t'));
  }
  if (item.native->IsEnabled() != is_active) item.native->Enable(is_active);
  if (item.native->IsCheckable()) {
    if (!item.native->IsChecked()) item.native->Check(true);
    ShowAsRadio(*item.native, (facts.state & dq::MF_RADIOCHECK) != 0);
  }
}

void MenuMirror::Watch() {
  native_->Bind(wxEVT_MENU_OPEN, [this](wxMenuEvent& event) {
    if (event.GetMenu() != native_) return;
    events_.opens(menu_, above_ == nullptr ? 0 : above_->PositionOf(*this));
    // Their records may say something else by now.
    for (const Item& item : items_) {
      if (item.drawn != nullptr) item.drawn->Outdate();
    }
    PostDrawing();
  });
  keys_ = std::make_unique<MenuKeys>(*native_,
                                     [this](unsigned int character) { return TakeKey(character); });
  native_->Bind(wxEVT_MENU_HIGHLIGHT, [this](wxMenuEvent& event) {
    const auto found = std::ranges::find_if(items_, [&](const Item& item) {
      return item.native != nullptr && item.native->GetId() == event.GetMenuId();
    });
    if (event.GetMenu() != native_ || found == items_.end()) return;
    events_.looked_at(found->facts.id, found->facts.state, menu_);
  });
}

int MenuMirror::PositionOf(const MenuMirror& below) const {
  const auto found = std::ranges::find_if(
      items_, [&below](const Item& item) { return item.below.get() == &below; });
  return static_cast<int>(found - items_.begin());
}

}  // namespace workbench
