#include "apps/workbench/layer/gtk_menu.h"

#include <algorithm>
#include <gtk/gtk.h>
#include <iterator>
#include <string>
#include <utility>
#include <wx/menu.h>
#include <wx/tokenzr.h>

namespace workbench {
namespace {

/// Words of key combinations and the toolkit's for them.
constexpr struct {
  const char* word;
  const char* name;
} kWords[] = {
    {"Alt", "<Alt>"},    {"Back", "BackSpace"}, {"Ctrl", "<Control>"}, {"Del", "Delete"},
    {"Enter", "Return"}, {"Esc", "Escape"},     {"Ins", "Insert"},     {"PgDn", "Page_Down"},
    {"PgUp", "Page_Up"}, {"Shift", "<Shift>"},  {"Space", "space"},
};

/// "Ctrl+O" as the toolkit writes it.
std::string NameOf(const wxString& keys) {
  std::string name;
  wxStringTokenizer words(keys, "+");
  while (words.HasMoreTokens()) {
    const wxString word = words.GetNextToken();
    const auto* const known = std::ranges::find_if(
        kWords, [&](const auto& each) { return word.IsSameAs(each.word, false); });
    if (known != std::end(kWords)) {
      name += known->name;
    } else {
      name += word.length() == 1 ? word.Lower().utf8_str() : word.utf8_str();
    }
  }
  return name;
}

}  // namespace

void ShowKeys(wxMenuItem& item, const wxString& keys) {
  GtkWidget* const label = gtk_bin_get_child(GTK_BIN(item.GetMenuItem()));
  if (!GTK_IS_ACCEL_LABEL(label)) return;
  guint key = 0;
  GdkModifierType modifiers{};
  gtk_accelerator_parse(NameOf(keys).c_str(), &key, &modifiers);
  gtk_accel_label_set_accel(GTK_ACCEL_LABEL(label), key, modifiers);
}

void ShowAsRadio(wxMenuItem& item, bool radio) {
  GtkWidget* const native = item.GetMenuItem();
  if (!GTK_IS_CHECK_MENU_ITEM(native)) return;
  gtk_check_menu_item_set_draw_as_radio(GTK_CHECK_MENU_ITEM(native), radio ? TRUE : FALSE);
}

void ReserveMarks(wxMenu& menu, bool reserve) {
  gtk_menu_set_reserve_toggle_size(GTK_MENU(menu.m_menu), reserve ? TRUE : FALSE);
}

namespace {

/// Has the widget get a press of a key, which the toolkit wants to see before it drops a menu down.
void PressKey(GtkWidget* widget, guint key) {
  GdkWindow* const window = gtk_widget_get_window(widget);
  GdkDisplay* const display = gdk_window_get_display(window);
  GdkKeymapKey* places = nullptr;
  gint count = 0;
  gdk_keymap_get_entries_for_keyval(gdk_keymap_get_for_display(display), key, &places, &count);
  GdkEvent* const event = gdk_event_new(GDK_KEY_PRESS);
  event->key.window = GDK_WINDOW(g_object_ref(window));
  event->key.keyval = key;
  if (count > 0) {
    event->key.hardware_keycode = static_cast<guint16>(places->keycode);
    event->key.group = static_cast<guint8>(places->group);
  }
  g_free(places);
  gdk_event_set_device(event, gdk_seat_get_keyboard(gdk_display_get_default_seat(display)));
  gtk_main_do_event(event);
  gdk_event_free(event);
}

}  // namespace

MenuKeys::MenuKeys(wxMenu& menu, std::function<bool(unsigned int character)> takes)
    : menu_(menu.m_menu), takes_(std::move(takes)) {
  g_object_ref(menu_);
  g_signal_connect(menu_, "key-press-event", G_CALLBACK(OnKey), this);
}

MenuKeys::~MenuKeys() {
  g_signal_handlers_disconnect_by_data(menu_, this);
  g_object_unref(menu_);
}

int MenuKeys::OnKey(GtkWidget*, GdkEventKey* event, void* self) {
  constexpr guint kDelete = 0x7F;
  const guint character = gdk_keyval_to_unicode(event->keyval);
  const bool is_text = character > ' ' && character != kDelete;
  if (!is_text || (event->state & GDK_CONTROL_MASK) != 0) return FALSE;
  return static_cast<const MenuKeys*>(self)->takes_(character) ? TRUE : FALSE;
}

void MenuKeys::Choose(wxMenuItem& item, bool execute) {
  if (!gtk_widget_get_mapped(menu_)) return;
  GtkMenuShell* const shell = GTK_MENU_SHELL(menu_);
  GtkWidget* const native = item.GetMenuItem();
  if (execute && !item.IsSubMenu()) return gtk_menu_shell_activate_item(shell, native, TRUE);
  gtk_menu_shell_select_item(shell, native);
  const bool is_mirrored = gtk_widget_get_direction(menu_) == GTK_TEXT_DIR_RTL;
  if (execute) PressKey(menu_, is_mirrored ? GDK_KEY_Left : GDK_KEY_Right);
}

void MenuKeys::Close() {
  if (gtk_widget_get_mapped(menu_)) g_signal_emit_by_name(menu_, "cancel");
}

namespace {

void OnMenuLeft(GtkMenuShell*, gpointer done) { (*static_cast<std::function<void()>*>(done))(); }

}  // namespace

bool DropMenu(wxMenu& menu, wxWindow& over, const wxPoint& at, MenuSide side,
              std::function<void()> done) {
  menu.SetInvokingWindow(&over);
  GtkWidget* const native = menu.m_menu;
  auto* const called = new std::function<void()>(std::move(done));
  g_signal_connect_data(
      native, "selection-done", G_CALLBACK(OnMenuLeft), called,
      [](gpointer data, GClosure*) { delete static_cast<std::function<void()>*>(data); },
      GConnectFlags{});
  const wxPoint inside = over.ScreenToClient(at);
  const GdkRectangle rect{inside.x, inside.y, 1, 1};
  // Whatever the person did to have the menu is over; the toolkit wants to know who did it.
  GdkWindow* const window = gtk_widget_get_window(over.m_wxwindow);
  GdkSeat* const seat = gdk_display_get_default_seat(gdk_window_get_display(window));
  GdkEvent* const trigger = gdk_event_new(GDK_BUTTON_PRESS);
  trigger->button.window = GDK_WINDOW(g_object_ref(window));
  gdk_event_set_device(trigger, gdk_seat_get_pointer(seat));
  // Where the point's corner and the menu's meet.
  constexpr GdkGravity kMeet[][2] = {{GDK_GRAVITY_SOUTH_EAST, GDK_GRAVITY_NORTH_WEST},
                                     {GDK_GRAVITY_SOUTH, GDK_GRAVITY_NORTH},
                                     {GDK_GRAVITY_SOUTH_WEST, GDK_GRAVITY_NORTH_EAST}};
  const auto& meet = kMeet[static_cast<std::size_t>(side)];
  gtk_menu_popup_at_rect(GTK_MENU(native), window, &rect, meet[0], meet[1], trigger);
  gdk_event_free(trigger);
  return gtk_widget_get_visible(native) != 0;
}

namespace {

int OnBarKey(GtkWidget*, GdkEvent*, gpointer item) {
  return gtk_widget_mnemonic_activate(GTK_WIDGET(item), FALSE);
}

}  // namespace

void DropFromBar(wxMenu& menu, GdkEvent& press) {
  // Within the event, by which the toolkit knows who has the keyboard, and before its other
  // handlers.
  GtkWidget* const window = gtk_widget_get_toplevel(menu.m_owner);
  g_object_ref(window);
  const gulong handler = g_signal_connect(window, "event", G_CALLBACK(OnBarKey), menu.m_owner);
  gtk_main_do_event(&press);
  g_signal_handler_disconnect(window, handler);
  g_object_unref(window);
}

int MenuBarHeight() {
  GtkWidget* const bar = gtk_menu_bar_new();
  g_object_ref_sink(bar);
  GtkWidget* const item = gtk_menu_item_new_with_label("M");
  gtk_menu_shell_append(GTK_MENU_SHELL(bar), item);
  gtk_widget_show_all(bar);
  int least = 0;
  int height = 0;
  gtk_widget_get_preferred_height(bar, &least, &height);
  gtk_widget_destroy(bar);
  g_object_unref(bar);
  return height;
}

}  // namespace workbench
