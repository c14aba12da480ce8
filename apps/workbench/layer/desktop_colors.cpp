#include "apps/workbench/layer/desktop_colors.h"

#include <algorithm>
#include <gtk/gtk.h>
#include <iterator>
#include <wx/settings.h>

#include "apps/workbench/layer/layer.h"
#include "dqlib/framework/windows/screen.h"

namespace workbench {
namespace {

constexpr struct {
  dq::SystemColor index;
  wxSystemColour native;
} kColors[] = {
    {dq::COLOR_MENU, wxSYS_COLOUR_MENU},
    {dq::COLOR_WINDOW, wxSYS_COLOUR_WINDOW},
    {dq::COLOR_MENUTEXT, wxSYS_COLOUR_MENUTEXT},
    {dq::COLOR_WINDOWTEXT, wxSYS_COLOUR_WINDOWTEXT},
    {dq::COLOR_HIGHLIGHT, wxSYS_COLOUR_HIGHLIGHT},
    {dq::COLOR_HIGHLIGHTTEXT, wxSYS_COLOUR_HIGHLIGHTTEXT},
    {dq::COLOR_BTNFACE, wxSYS_COLOUR_BTNFACE},
    {dq::COLOR_BTNSHADOW, wxSYS_COLOUR_BTNSHADOW},
    {dq::COLOR_GRAYTEXT, wxSYS_COLOUR_GRAYTEXT},
    {dq::COLOR_BTNTEXT, wxSYS_COLOUR_BTNTEXT},
    {dq::COLOR_BTNHIGHLIGHT, wxSYS_COLOUR_BTNHIGHLIGHT},
    {dq::COLOR_3DDKSHADOW, wxSYS_COLOUR_3DDKSHADOW},
    {dq::COLOR_3DLIGHT, wxSYS_COLOUR_3DLIGHT},
};

constexpr const char* kThemeSettings[] = {"notify::gtk-theme-name",
                                          "notify::gtk-application-prefer-dark-theme"};

void OnTheme(GObject*, GParamSpec*, gpointer layer) {
  // Not before the toolkit has taken it in.
  static_cast<Layer*>(layer)->Post([] { dq::SystemColorsChanged(); });
}

}  // namespace

DesktopColors::DesktopColors(Layer& layer) : layer_(layer) {
  for (const char* const setting : kThemeSettings) {
    g_signal_connect(gtk_settings_get_default(), setting, G_CALLBACK(OnTheme), &layer_);
  }
}

DesktopColors::~DesktopColors() {
  if (!layer_.RunsDialogs()) return;
  g_signal_handlers_disconnect_by_data(gtk_settings_get_default(), &layer_);
}

dq::COLORREF DesktopColors::Color(int index) {
  const auto* const known = std::ranges::find(
      kColors, index, [](const auto& each) { return static_cast<int>(each.index); });
  if (known == std::end(kColors) || !layer_.RunsDialogs()) {
    return dq::platform::UsualColors().Color(index);
  }
  const wxColour color = wxSystemSettings::GetColour(known->native);
  return dq::RGB(color.Red(), color.Green(), color.Blue());
}

}  // namespace workbench
