// Keys and combinations of keys by name.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dqlib/platform/types.h"

namespace dq::detail {

/// A key, by its virtual key number, and what is held down with it.
struct KeyCombination {
  bool control = false;
  bool shift = false;
  bool alt = false;
  WORD key = 0;

  friend bool operator==(const KeyCombination&, const KeyCombination&) = default;
};

/// The number of the key with a name, in any case: a letter or digit, F1 to F24, Ins, Del, Home,
/// End, PgUp, PgDn, Left, Right, Up, Down, Tab, Esc, Enter, Space, Back, Num0 to Num9, and for any
/// other one "Key" and its number. 0 if it is none.
WORD KeyOfName(std::string_view name);
/// The name of a key; "" for the number 0.
std::string NameOfKey(WORD key);

/// Reads "ctrl+shift+F"; no value if it names no key, or a modifier twice.
std::optional<KeyCombination> ReadCombination(std::string_view text);
/// "Ctrl+Shift+Alt+F"; "" without a key.
std::string TextOf(const KeyCombination& combination);

}  // namespace dq::detail
