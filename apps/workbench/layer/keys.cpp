#include "apps/workbench/layer/keys.h"

#include <algorithm>
#include <gtk/gtk.h>
#include <iterator>

#include "apps/workbench/layer/text.h"

namespace workbench {
namespace {

/// Keys by the display's symbols. Both symbols of a key on the number pad are its key.
constexpr struct {
  guint symbol;
  dq::WORD key;
} kKeys[] = {
    {GDK_KEY_BackSpace, dq::VK_BACK},    {GDK_KEY_Tab, dq::VK_TAB},
    {GDK_KEY_ISO_Left_Tab, dq::VK_TAB},  {GDK_KEY_KP_Tab, dq::VK_TAB},
    {GDK_KEY_Return, dq::VK_RETURN},     {GDK_KEY_KP_Enter, dq::VK_RETURN},
    {GDK_KEY_Shift_L, dq::VK_SHIFT},     {GDK_KEY_Shift_R, dq::VK_SHIFT},
    {GDK_KEY_Control_L, dq::VK_CONTROL}, {GDK_KEY_Control_R, dq::VK_CONTROL},
    {GDK_KEY_Alt_L, dq::VK_MENU},        {GDK_KEY_Alt_R, dq::VK_MENU},
    {GDK_KEY_Caps_Lock, dq::VK_CAPITAL}, {GDK_KEY_Escape, dq::VK_ESCAPE},
    {GDK_KEY_space, dq::VK_SPACE},       {GDK_KEY_Page_Up, dq::VK_PRIOR},
    {GDK_KEY_KP_Page_Up, dq::VK_PRIOR},  {GDK_KEY_Page_Down, dq::VK_NEXT},
    {GDK_KEY_KP_Page_Down, dq::VK_NEXT}, {GDK_KEY_End, dq::VK_END},
    {GDK_KEY_KP_End, dq::VK_END},        {GDK_KEY_Home, dq::VK_HOME},
    {GDK_KEY_KP_Home, dq::VK_HOME},      {GDK_KEY_Left, dq::VK_LEFT},
    {GDK_KEY_KP_Left, dq::VK_LEFT},      {GDK_KEY_Up, dq::VK_UP},
    {GDK_KEY_KP_Up, dq::VK_UP},          {GDK_KEY_Right, dq::VK_RIGHT},
    {GDK_KEY_KP_Right, dq::VK_RIGHT},    {GDK_KEY_Down, dq::VK_DOWN},
    {GDK_KEY_KP_Down, dq::VK_DOWN},      {GDK_KEY_Insert, dq::VK_INSERT},
    {GDK_KEY_KP_Insert, dq::VK_INSERT},  {GDK_KEY_Delete, dq::VK_DELETE},
    {GDK_KEY_KP_Delete, dq::VK_DELETE},  {GDK_KEY_Menu, dq::VK_APPS},
    {GDK_KEY_KP_Add, dq::VK_ADD},        {GDK_KEY_KP_Subtract, dq::VK_SUBTRACT},
};

dq::WORD KeyOfSymbol(guint symbol) {
  if (symbol >= GDK_KEY_F1 && symbol <= GDK_KEY_F24) {
    return static_cast<dq::WORD>(dq::VK_F1 + symbol - GDK_KEY_F1);
  }
  const guint upper = gdk_keyval_to_upper(symbol);
  const bool is_letter = upper >= 'A' && upper <= 'Z';
  const bool is_digit = upper >= '0' && upper <= '9';
  if (is_letter || is_digit) return static_cast<dq::WORD>(upper);
  const auto* const known =
      std::ranges::find_if(kKeys, [symbol](const auto& each) { return each.symbol == symbol; });
  return known == std::end(kKeys) ? dq::WORD{0} : known->key;
}

/// The number of a key whose symbol, as the keyboard is set, has none: that of the letter or digit
/// which it has under another setting.
dq::WORD KeyOfPlace(guint16 place) {
  GdkKeymapKey* keys = nullptr;
  guint* symbols = nullptr;
  gint count = 0;
  GdkKeymap* const map = gdk_keymap_get_for_display(gdk_display_get_default());
  if (gdk_keymap_get_entries_for_keycode(map, place, &keys, &symbols, &count) == 0) return 0;
  dq::WORD key = 0;
  for (gint at = 0; at < count && key == 0; ++at) {
    if (keys[at].level == 0) key = KeyOfSymbol(symbols[at]);
  }
  g_free(keys);
  g_free(symbols);
  return key;
}

}  // namespace

Modifiers ModifiersOf(unsigned int state) {
  Modifiers held;
  held.shift = (state & GDK_SHIFT_MASK) != 0;
  held.control = (state & GDK_CONTROL_MASK) != 0;
  held.alt = (state & GDK_MOD1_MASK) != 0;
  held.caps_lock = (state & GDK_LOCK_MASK) != 0;
  if ((state & GDK_BUTTON1_MASK) != 0) held.mouse_buttons |= dq::MK_LBUTTON;
  if ((state & GDK_BUTTON2_MASK) != 0) held.mouse_buttons |= dq::MK_MBUTTON;
  if ((state & GDK_BUTTON3_MASK) != 0) held.mouse_buttons |= dq::MK_RBUTTON;
  return held;
}

KeyStroke KeyStrokeOf(const GdkEventKey& event) {
  KeyStroke stroke;
  stroke.modifiers = ModifiersOf(event.state);
  stroke.key = KeyOfSymbol(event.keyval);
  if (stroke.key == 0) stroke.key = KeyOfPlace(event.hardware_keycode);
  const bool is_down = event.type == GDK_KEY_PRESS;
  // The event tells how the others stood before it.
  if (stroke.key == dq::VK_SHIFT) stroke.modifiers.shift = is_down;
  if (stroke.key == dq::VK_CONTROL) stroke.modifiers.control = is_down;
  if (stroke.key == dq::VK_MENU) stroke.modifiers.alt = is_down;
  if (!is_down) return stroke;
  const guint32 character = gdk_keyval_to_unicode(event.keyval);
  const bool is_letter = stroke.key >= 'A' && stroke.key <= 'Z';
  if (stroke.modifiers.control && !stroke.modifiers.alt) {
    constexpr int kFirstControl = 1;
    if (is_letter) stroke.character = static_cast<char>(stroke.key - 'A' + kFirstControl);
  } else if (character != 0) {
    stroke.character = ToLibrary(wxString(wxUniChar(character)));
  }
  return stroke;
}

}  // namespace workbench
