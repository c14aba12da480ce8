#include "apps/workbench/layer/gtk_menu.h"

#include <algorithm>
#include <gtk/gtk.h>
#include <iterator>
#include <string>
#include <wx/menuitem.h>
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
