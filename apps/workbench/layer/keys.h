// Keys as the display tells them and as the library's messages do.

#pragma once

#include <string>

#include "dqlib/framework/windows/window_messages.h"

typedef struct _GdkEventKey GdkEventKey;

namespace workbench {

/// What is held down with a key or a button of the mouse.
struct Modifiers {
  bool shift = false;
  bool control = false;
  bool alt = false;
  bool caps_lock = false;
  dq::UINT mouse_buttons = 0;
};

/// By the toolkit's bits.
Modifiers ModifiersOf(unsigned int state);

/// A key that goes down or up.
struct KeyStroke {
  /// Its virtual key number; 0 if it has none.
  dq::WORD key = 0;
  /// The character that it types, in the library's bytes; "" if none.
  std::string character;
  Modifiers modifiers;

  /// It comes as a message of the system's kind.
  bool IsSystem() const { return (modifiers.alt && !modifiers.control) || key == dq::VK_F10; }
};

KeyStroke KeyStrokeOf(const GdkEventKey& event);

}  // namespace workbench
