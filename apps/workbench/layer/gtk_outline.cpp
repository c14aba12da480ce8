#include "apps/workbench/layer/gtk_outline.h"

#include <algorithm>
#include <gtk/gtk.h>

namespace workbench {
namespace {

constexpr int kThickness = 3;

GtkWidget* MakeEdge() {
  GtkWidget* const edge = gtk_window_new(GTK_WINDOW_POPUP);
  gtk_style_context_add_class(gtk_widget_get_style_context(edge), GTK_STYLE_CLASS_RUBBERBAND);
  gtk_widget_realize(edge);
  cairo_region_t* const nothing = cairo_region_create();
  gdk_window_input_shape_combine_region(gtk_widget_get_window(edge), nothing, 0, 0);
  cairo_region_destroy(nothing);
  return edge;
}

}  // namespace

Outline::Outline() { std::ranges::generate(edges_, MakeEdge); }

Outline::~Outline() {
  for (GtkWidget* const edge : edges_) gtk_widget_destroy(edge);
}

void Outline::Show(const wxRect& place) {
  const int width = std::max(1, place.width);
  const int height = std::max(1, place.height);
  const int across = std::min(kThickness, width);
  const int down = std::min(kThickness, height);
  const wxRect parts[] = {{place.x, place.y, width, down},
                          {place.x, place.y + height - down, width, down},
                          {place.x, place.y, across, height},
                          {place.x + width - across, place.y, across, height}};
  for (std::size_t at = 0; at < edges_.size(); ++at) {
    gtk_window_move(GTK_WINDOW(edges_[at]), parts[at].x, parts[at].y);
    gtk_window_resize(GTK_WINDOW(edges_[at]), parts[at].width, parts[at].height);
    gtk_widget_show(edges_[at]);
  }
}

}  // namespace workbench
