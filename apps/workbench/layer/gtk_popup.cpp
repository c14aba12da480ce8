#include "apps/workbench/layer/gtk_popup.h"

#include <algorithm>
#include <gtk/gtk.h>
#include <utility>
#include <wx/dcclient.h>
#include <wx/display.h>
#include <wx/settings.h>

namespace workbench {

PopupWindow::PopupWindow(wxWindow* parent, std::function<void()> pressed_outside)
    : wxPopupWindow(parent) {
  Bind(wxEVT_PAINT, [this](wxPaintEvent&) {
    wxPaintDC context(this);
    context.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNSHADOW)));
    context.SetBrush(*wxTRANSPARENT_BRUSH);
    context.DrawRectangle(GetClientSize());
  });
  // So the toolkit tells of a press outside.
  Bind(wxEVT_KILL_FOCUS, [told = std::move(pressed_outside)](wxFocusEvent&) { told(); });
}

PopupWindow::~PopupWindow() { Hide(); }

void PopupWindow::ShowAt(const wxRect& below, const wxSize& size) {
  const int index = wxDisplay::GetFromPoint(below.GetPosition());
  const wxRect screen =
      wxDisplay(index == wxNOT_FOUND ? 0u : static_cast<unsigned>(index)).GetClientArea();
  const int room_below = screen.GetBottom() - below.GetBottom();
  const int room_above = below.y - screen.y;
  const bool is_below = size.y <= room_below || room_below >= room_above;
  const int height = std::min(size.y, std::max(1, is_below ? room_below : room_above));
  const int left = std::max(screen.x, std::min(below.x, screen.GetRight() + 1 - size.x));
  SetSize(left, is_below ? below.GetBottom() + 1 : below.y - height, size.x, height,
          wxSIZE_ALLOW_MINUS_ONE);
  if (std::exchange(shown_, true)) return;
  Show();
  gtk_grab_add(m_widget);
  GdkWindow* const window = gtk_widget_get_window(m_widget);
  gdk_seat_grab(gdk_display_get_default_seat(gdk_window_get_display(window)), window,
                GDK_SEAT_CAPABILITY_ALL_POINTING, TRUE, nullptr, nullptr, nullptr, nullptr);
}

void PopupWindow::Hide() {
  if (!std::exchange(shown_, false)) return;
  gdk_seat_ungrab(gdk_display_get_default_seat(gtk_widget_get_display(m_widget)));
  gtk_grab_remove(m_widget);
  Show(false);
}

}  // namespace workbench
