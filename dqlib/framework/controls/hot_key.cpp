#include "dqlib/framework/controls/hot_key.h"

#include <algorithm>
#include <iterator>

#include "dqlib/framework/windows/key_names.h"
#include "dqlib/framework/windows/screen.h"

namespace dq {

IMPLEMENT_DYNAMIC(CHotKeyCtrl, CWnd)

namespace {

constexpr WORD kHeld = HOTKEYF_SHIFT | HOTKEYF_CONTROL | HOTKEYF_ALT;
/// Of the second argument of a key's message: it is an extended one.
constexpr LPARAM kExtended = 1 << 24;

/// By the bits of what is held down.
constexpr WORD kCombinations[] = {HKCOMB_NONE, HKCOMB_S,  HKCOMB_C,  HKCOMB_SC,
                                  HKCOMB_A,    HKCOMB_SA, HKCOMB_CA, HKCOMB_SCA};

/// Keys that are held down with others, or lock.
constexpr WORD kModifierKeys[] = {VK_SHIFT, VK_CONTROL, VK_MENU, VK_CAPITAL, 0x5B, 0x5C, 0x90,
                                  0x91,     0xA0,       0xA1,    0xA2,       0xA3, 0xA4, 0xA5};

WORD HeldModifiers() {
  return static_cast<WORD>((IsKeyDown(VK_SHIFT) ? HOTKEYF_SHIFT : 0) |
                           (IsKeyDown(VK_CONTROL) ? HOTKEYF_CONTROL : 0) |
                           (IsKeyDown(VK_MENU) ? HOTKEYF_ALT : 0));
}

/// Keys that work in a dialog unless Ctrl or Alt is held down.
bool IsDialogKey(WPARAM key) {
  return key == VK_TAB || key == VK_RETURN || key == VK_ESCAPE || key == VK_SPACE;
}

}  // namespace

void CHotKeyCtrl::SetHotKey(WORD key, WORD modifiers) {
  modifiers = key == 0 ? WORD{0} : static_cast<WORD>(modifiers & (kHeld | HOTKEYF_EXT));
  if (key == key_ && modifiers == modifiers_) return;
  key_ = key;
  modifiers_ = modifiers;
  Tell(WindowChange::kText);
}

void CHotKeyCtrl::GetHotKey(WORD& key, WORD& modifiers) const {
  key = key_;
  modifiers = modifiers_;
}

void CHotKeyCtrl::SetRules(WORD invalid, WORD modifiers) {
  invalid_ = invalid;
  added_ = modifiers;
}

WORD CHotKeyCtrl::Allowed(WORD modifiers) const {
  const bool is_invalid = (kCombinations[modifiers & kHeld] & invalid_) != 0;
  return static_cast<WORD>(is_invalid ? modifiers | added_ : modifiers);
}

bool CHotKeyCtrl::Change(WORD key, WORD modifiers) {
  const DWORD former = GetHotKey();
  SetHotKey(key, modifiers);
  if (GetHotKey() != former) Notify(EN_CHANGE);
  return true;
}

bool CHotKeyCtrl::PressKey(WORD key, WORD modifiers) {
  const bool is_modifier = std::ranges::find(kModifierKeys, key) != std::end(kModifierKeys);
  if (!TakesInput() || key == 0 || is_modifier) return false;
  const bool is_plain = (modifiers & (HOTKEYF_CONTROL | HOTKEYF_ALT)) == 0;
  if (is_plain && IsDialogKey(key)) return false;
  if (is_plain && (key == VK_BACK || key == VK_DELETE)) return Change(0, 0);
  return Change(key, Allowed(modifiers));
}

CString CHotKeyCtrl::OnGetText() const {
  return detail::TextOf({.control = (modifiers_ & HOTKEYF_CONTROL) != 0,
                         .shift = (modifiers_ & HOTKEYF_SHIFT) != 0,
                         .alt = (modifiers_ & HOTKEYF_ALT) != 0,
                         .key = key_});
}

void CHotKeyCtrl::Describe(platform::DialogControl& control) const {
  Control::Describe(control);
  control.kind = platform::DialogControlKind::kEdit;
  control.editable = true;
  control.value = GetWindowText().View();
}

bool CHotKeyCtrl::Enter(std::string_view value) {
  if (!TakesInput()) return false;
  // A name doesn't tell which of two keys with one number it is.
  if (value == GetWindowText().View()) return true;
  if (value.empty()) return Change(0, 0);
  const auto keys = detail::ReadCombination(value);
  if (!keys) return false;
  return PressKey(keys->key, static_cast<WORD>((keys->shift ? HOTKEYF_SHIFT : 0) |
                                               (keys->control ? HOTKEYF_CONTROL : 0) |
                                               (keys->alt ? HOTKEYF_ALT : 0)));
}

LRESULT CHotKeyCtrl::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_GETDLGCODE: {
      const auto* const asked = reinterpret_cast<const MSG*>(lparam);
      const bool wants_it = asked != nullptr &&
                            (asked->message == WM_SYSCHAR || IsKeyDown(VK_CONTROL)) &&
                            asked->wParam != VK_TAB;
      return DLGC_WANTCHARS | DLGC_WANTARROWS | (wants_it ? UINT{DLGC_WANTALLKEYS} : 0U);
    }
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN: {
      const WORD extended = (lparam & kExtended) != 0 ? WORD{HOTKEYF_EXT} : WORD{0};
      if (PressKey(static_cast<WORD>(wparam), static_cast<WORD>(HeldModifiers() | extended))) {
        return 0;
      }
      break;
    }
    default:
      break;
  }
  return Control::DefWindowProc(message, wparam, lparam);
}

void CHotKeyCtrl::OnSubclassed(CWnd& former) {
  Control::OnSubclassed(former);
  if (const CHotKeyCtrl* const control = DYNAMIC_DOWNCAST(CHotKeyCtrl, &former)) {
    key_ = control->key_;
    modifiers_ = control->modifiers_;
    invalid_ = control->invalid_;
    added_ = control->added_;
  }
}

}  // namespace dq
