// Hot key controls: a key combination that a person presses.

#pragma once

#include "dqlib/framework/controls/control.h"

namespace dq {

/// Bits of what is held down with a hot key. An extended key is one of the two that share a number,
/// as the arrow keys that aren't on the number pad.
enum HotKeyFlag : WORD { HOTKEYF_SHIFT = 1, HOTKEYF_CONTROL = 2, HOTKEYF_ALT = 4, HOTKEYF_EXT = 8 };

/// Bits of combinations, for `CHotKeyCtrl::SetRules`: what is held down, and nothing else.
enum HotKeyCombination : WORD {
  HKCOMB_NONE = 0x01,
  HKCOMB_S = 0x02,
  HKCOMB_C = 0x04,
  HKCOMB_A = 0x08,
  HKCOMB_SC = 0x10,
  HKCOMB_SA = 0x20,
  HKCOMB_CA = 0x40,
  HKCOMB_SCA = 0x80,
};

/// A hot key control. Window class "HotKey". Its text is the combination as a person reads it:
/// "Ctrl+Shift+F5"; "" without a key.
class CHotKeyCtrl : public Control {
  DECLARE_DYNAMIC(CHotKeyCtrl)

  /// The virtual key number, 0 for no key, and a sum of `HotKeyFlag` values; as one number they are
  /// its low and its high word.
  void SetHotKey(WORD key, WORD modifiers);
  void GetHotKey(WORD& key, WORD& modifiers) const;
  DWORD GetHotKey() const { return static_cast<DWORD>(modifiers_) << 16 | key_; }

  /// The combinations that a person can't enter, a sum of `HotKeyCombination` values, and what is
  /// added to what they hold down with a key then, a sum of `HotKeyFlag` values. None at first.
  void SetRules(WORD invalid, WORD modifiers);

  /// A person presses a key with what `modifiers` says. Without Ctrl and Alt, Tab, Enter, Esc and
  /// Space aren't taken, and Back and Del take the combination away. False if the key isn't taken,
  /// as of those that are held down with others; else `EN_CHANGE` goes to the parent, if it is
  /// another one.
  bool PressKey(WORD key, WORD modifiers);

  void Describe(platform::DialogControl& control) const override;
  /// A person enters a combination by name; "" is none.
  bool Enter(std::string_view value) override;

 protected:
  /// Keys come by `WM_KEYDOWN` and `WM_SYSKEYDOWN`.
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  CString OnGetText() const override;
  /// The text is that of the combination.
  void OnSetText(const char*) override {}
  void OnSubclassed(CWnd& former) override;

 private:
  bool Change(WORD key, WORD modifiers);
  WORD Allowed(WORD modifiers) const;

  WORD key_ = 0;
  WORD modifiers_ = 0;
  WORD invalid_ = 0;
  WORD added_ = 0;
};

}  // namespace dq
