#include "apps/workbench/layer/gtk_window.h"

#include <gtk/gtk.h>
#include <utility>
#include <wx/notebook.h>
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

/// Null if there is no such tab.
GtkWidget* TabLabel(const wxNotebook& book, int index) {
  GtkNotebook* const native = GTK_NOTEBOOK(book.m_widget);
  GtkWidget* const page = gtk_notebook_get_nth_page(native, index);
  return page == nullptr ? nullptr : gtk_notebook_get_tab_label(native, page);
}

}  // namespace

bool HasKeyboard(const wxWindow& window) {
  GtkWidget* const widget = FocusWidget(window);
  GtkWindow* const top = TopLevel(widget);
  if (top == nullptr) return false;
  GtkWidget* const focus = gtk_window_get_focus(top);
  if (gtk_widget_get_can_focus(widget) == 0 && window.m_wxwindow != nullptr) {
    return focus == nullptr;
  }
  return focus != nullptr && (focus == widget || gtk_widget_is_ancestor(focus, widget));
}

void GrabKeyboard(wxWindow& window) {
  GtkWidget* const widget = FocusWidget(window);
  GtkWindow* const top = TopLevel(widget);
  if (gtk_widget_get_can_focus(widget) != 0) {
    gtk_widget_grab_focus(widget);
  } else if (top != nullptr) {
    gtk_window_set_focus(top, nullptr);
  }
}

void TakeNoKeys(wxWindow& window) { window.SetCanFocus(false); }

void WhenMapped(wxWindow& window, std::function<void()> act) {
  using Act = std::function<void()>;
  void (*const run)(GtkWidget*, void*) = [](GtkWidget*, void* kept) {
    (*static_cast<Act*>(kept))();
  };
  void (*const drop)(void*, GClosure*) = [](void* kept, GClosure*) {
    delete static_cast<Act*>(kept);
  };
  g_signal_connect_data(window.m_widget, "map", G_CALLBACK(run), new Act(std::move(act)), drop,
                        G_CONNECT_AFTER);
}

bool IsActive(const wxTopLevelWindow& window) {
  return gtk_window_is_active(GTK_WINDOW(window.m_widget)) != 0;
}

void LayOutNow(wxTopLevelWindow& window) {
  gtk_container_check_resize(GTK_CONTAINER(window.m_widget));
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

void WrapLines(wxWindow& text, bool wrap) {
  gtk_text_view_set_wrap_mode(GTK_TEXT_VIEW(FocusWidget(text)),
                              wrap ? GTK_WRAP_WORD_CHAR : GTK_WRAP_NONE);
}

void FrameScrolled(wxWindow& window) {
  gtk_scrolled_window_set_shadow_type(GTK_SCROLLED_WINDOW(window.m_widget), GTK_SHADOW_IN);
}

void KeepBarsBeside(wxWindow& window) {
  gtk_scrolled_window_set_overlay_scrolling(GTK_SCROLLED_WINDOW(window.m_widget), FALSE);
}

int ScrollBarWidth() {
  GtkWidget* const bar = gtk_scrollbar_new(GTK_ORIENTATION_VERTICAL, nullptr);
  g_object_ref_sink(bar);
  int least = 0;
  int width = 0;
  gtk_widget_get_preferred_width(bar, &least, &width);
  gtk_widget_destroy(bar);
  g_object_unref(bar);
  return width;
}

void EnableTab(wxNotebook& book, int index, bool enable) {
  if (GtkWidget* const label = TabLabel(book, index)) {
    gtk_widget_set_sensitive(label, enable ? TRUE : FALSE);
  }
}

wxRect TabRect(const wxNotebook& book, int index) {
  GtkWidget* const label = TabLabel(book, index);
  if (label == nullptr) return {};
  int x = 0;
  int y = 0;
  gtk_widget_translate_coordinates(label, book.m_widget, 0, 0, &x, &y);
  return {x, y, gtk_widget_get_allocated_width(label), gtk_widget_get_allocated_height(label)};
}

}  // namespace workbench
