#include "apps/workbench/layer/gtk_window.h"

#include <gtk/gtk.h>
#include <wx/toplevel.h>

namespace workbench {
namespace {

GtkWidget* FocusWidget(const wxWindow& window) {
  return window.m_wxwindow != nullptr ? window.m_wxwindow : window.m_focusWidget;
}

GtkWindow* TopLevel(GtkWidget* widget) {
  GtkWidget* const top = gtk_widget_get_toplevel(widget);
  return GTK_IS_WINDOW(top) ? GTK_WINDOW(top) : nullptr;
}

}  // namespace

bool HasKeyboard(const wxWindow& window) {
  GtkWidget* const widget = FocusWidget(window);
  GtkWindow* const top = TopLevel(widget);
  if (top == nullptr) return false;
  GtkWidget* const focus = gtk_window_get_focus(top);
  return focus != nullptr && (focus == widget || gtk_widget_is_ancestor(focus, widget));
}

void GrabKeyboard(wxWindow& window) { gtk_widget_grab_focus(FocusWidget(window)); }

bool IsActive(const wxTopLevelWindow& window) {
  return gtk_window_is_active(GTK_WINDOW(window.m_widget)) != 0;
}

void Activate(wxTopLevelWindow& window) { gtk_window_present(GTK_WINDOW(window.m_widget)); }

void SetOwner(wxTopLevelWindow& window, wxTopLevelWindow* owner) {
  gtk_window_set_transient_for(GTK_WINDOW(window.m_widget),
                               owner == nullptr ? nullptr : GTK_WINDOW(owner->m_widget));
}

void WrapLabel(wxWindow& label) {
  GtkLabel* const native = GTK_LABEL(label.m_widget);
  gtk_label_set_line_wrap(native, TRUE);
  gtk_label_set_line_wrap_mode(native, PANGO_WRAP_WORD_CHAR);
  gtk_label_set_yalign(native, 0);
}

}  // namespace workbench
