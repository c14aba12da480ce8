#include "apps/workbench/layer/style.h"

#include <cstdlib>
#include <gtk/gtk.h>
#include <string>
#include <wx/dcmemory.h>
#include <wx/fontutil.h>
#include <wx/settings.h>
#include <wx/window.h>

#include "apps/workbench/layer/text.h"
#include "dqlib/framework/base/drawing.h"

namespace workbench {
namespace {

/// The size of the dialogs' font. Their templates are drawn for lines of 14 pixels and characters
/// of 6 on average.
constexpr int kDialogPoints = 8;

/// The margins of the toolkit's controls are meant for larger ones than dialogs have. `N px` is
/// replaced by as many pixels of the display.
constexpr const char* kRules = R"(
.dialog-style, .dialog-style * { font-size: 8pt; }
.dialog-style button { padding: 0 4px; min-height: 0; min-width: 0; }
.dialog-style button.default { border-color: @theme_selected_bg_color; }
.dialog-style entry { padding: 0 3px; min-height: 0; }
.dialog-style checkbutton, .dialog-style radiobutton { padding: 0; min-height: 0; }
.dialog-style checkbutton check, .dialog-style radiobutton radio {
  min-height: 11px; min-width: 11px; margin: 0 4px 0 0; }
.dialog-style frame > label { padding: 0; }
.dialog-style notebook header tab { padding: 1px 8px; min-height: 18px; }
.dialog-style notebook header { padding: 0; }
.dialog-style scrollbar slider { min-width: 6px; min-height: 6px; margin: 0; border-width: 1px; }
.dialog-style scrollbar, .dialog-style scrollbar trough, .dialog-style scrollbar contents { margin: 0; padding: 0; border-width: 0; }
scrolledwindow undershoot, scrolledwindow overshoot { background-image: none; }
)";

std::string Scaled(const Scale& scale) {
  std::string rules;
  const std::string_view text = kRules;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find_first_not_of("0123456789", at);
    if (end > at && text.substr(end).starts_with("px")) {
      const int length = std::atoi(std::string(text.substr(at, end - at)).c_str());
      rules += std::to_string(scale.ToNative(length));
      at = end;
    } else {
      rules += text[at++];
    }
  }
  return rules;
}

/// Whether a font whose characters are of one width has the name on other systems.
bool IsFixedFace(const wxString& face) {
  for (const char* const fixed : {"FixedSys", "Courier", "Terminal"}) {
    if (face.StartsWith(fixed)) return true;
  }
  return false;
}

}  // namespace

void InstallDialogStyle(const Scale& scale) {
  GtkCssProvider* const provider = gtk_css_provider_new();
  gtk_css_provider_load_from_data(provider, Scaled(scale).c_str(), -1, nullptr);
  gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(provider),
                                            GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  g_object_unref(provider);
}

void UseDialogStyle(wxWindow& window) {
  gtk_style_context_add_class(gtk_widget_get_style_context(window.m_widget), "dialog-style");
}

wxFont DialogFont() {
  wxFont font = wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT);
  font.SetPointSize(kDialogPoints);
  return font;
}

int DialogLineHeight() {
  wxMemoryDC context;
  context.SetFont(DialogFont());
  return context.GetCharHeight();
}

wxSize WrappedTextSize(const wxString& text, int width) {
  PangoContext* const context = gdk_pango_context_get();
  PangoLayout* const layout = pango_layout_new(context);
  const wxFont font = DialogFont();
  pango_layout_set_font_description(layout, font.GetNativeFontInfo()->description);
  pango_layout_set_width(layout, width * PANGO_SCALE);
  pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
  pango_layout_set_text(layout, text.utf8_str(), -1);
  wxSize size;
  pango_layout_get_pixel_size(layout, &size.x, &size.y);
  g_object_unref(layout);
  g_object_unref(context);
  return size;
}

wxFont ToNativeFont(const dq::LOGFONT& font) {
  wxFont native = DialogFont();
  const wxString face = ToNative(font.lfFaceName);
  if (!face.empty() && !native.SetFaceName(face) && IsFixedFace(face)) {
    native.SetFamily(wxFONTFAMILY_TELETYPE);
  }
  constexpr dq::LONG kLeastBold = 600;
  native.SetWeight(font.lfWeight >= kLeastBold ? wxFONTWEIGHT_BOLD : wxFONTWEIGHT_NORMAL);
  native.SetStyle(font.lfItalic != 0 ? wxFONTSTYLE_ITALIC : wxFONTSTYLE_NORMAL);
  native.SetUnderlined(font.lfUnderline != 0);
  native.SetStrikethrough(font.lfStrikeOut != 0);
  if (font.lfHeight != 0) {
    constexpr double kPointsOfPixel = 72.0 / 96;
    native.SetFractionalPointSize(std::abs(font.lfHeight) * kPointsOfPixel);
  }
  return native;
}

void SetNativeFont(wxWindow& window, const dq::CFont* font) {
  const bool has_font = font != nullptr && font->IsCreated();
  window.SetFont(has_font ? ToNativeFont(font->GetLogFont()) : DialogFont());
}

}  // namespace workbench
