#include "apps/workbench/layer/gtk_drag.h"

#include <array>
#include <gtk/gtk.h>
#include <wx/toplevel.h>

#include "apps/workbench/layer/top_level_mirror.h"
#include "dqlib/framework/windows/drag_drop.h"

namespace workbench {
namespace {

using dq::UINT;

struct Meaning {
  UINT own;
  guint native;
};

constexpr std::array<Meaning, 3> kEffects{{{dq::DROPEFFECT_COPY, GDK_ACTION_COPY},
                                           {dq::DROPEFFECT_MOVE, GDK_ACTION_MOVE},
                                           {dq::DROPEFFECT_LINK, GDK_ACTION_LINK}}};
constexpr std::array<Meaning, 5> kKeys{{{dq::MK_LBUTTON, GDK_BUTTON1_MASK},
                                        {dq::MK_MBUTTON, GDK_BUTTON2_MASK},
                                        {dq::MK_RBUTTON, GDK_BUTTON3_MASK},
                                        {dq::MK_SHIFT, GDK_SHIFT_MASK},
                                        {dq::MK_CONTROL, GDK_CONTROL_MASK}}};

/// Where the pointer is, and what is held down.
guint AskPointer(wxPoint& at) {
  GdkModifierType state{};
  gdk_window_get_device_position(
      gdk_get_default_root_window(),
      gdk_seat_get_pointer(gdk_display_get_default_seat(gdk_display_get_default())), &at.x, &at.y,
      &state);
  return state;
}

}  // namespace

GdkDragAction ActionsOf(UINT effects) {
  guint actions = 0;
  for (const auto& [own, native] : kEffects) actions |= (effects & own) != 0 ? native : 0;
  return static_cast<GdkDragAction>(actions);
}

UINT EffectsOf(GdkDragAction actions) {
  UINT effects = 0;
  for (const auto& [own, native] : kEffects) effects |= (actions & native) != 0 ? own : 0;
  return effects;
}

UINT MouseKeysOf(guint state) {
  UINT keys = 0;
  for (const auto& [own, native] : kKeys) keys |= (state & native) != 0 ? own : 0;
  return keys;
}

UINT HeldMouseKeys() {
  wxPoint at;
  return MouseKeysOf(AskPointer(at));
}

wxPoint PointerPlace() {
  wxPoint at;
  AskPointer(at);
  return at;
}

dq::CWnd* TakerAt(const TopLevelMirror* top, const dq::CPoint& screen) {
  if (top == nullptr || top->IsBlocked()) return nullptr;
  dq::CWnd* const window = dq::CWnd::FromHandle(top->handle());
  dq::CWnd* const under = window == nullptr ? nullptr : window->WindowAt(screen);
  for (const dq::CWnd* each = under; each != nullptr; each = each->GetParent()) {
    if (dq::COleDropTarget::Of(each) != nullptr) return under;
  }
  return nullptr;
}

void AwaitDrags(wxTopLevelWindow& window) {
  void (*const await)(GtkWidget*, void*) = [](GtkWidget* widget, void*) {
    gdk_window_register_dnd(gtk_widget_get_window(widget));
  };
  if (gtk_widget_get_realized(window.m_widget) != 0) await(window.m_widget, nullptr);
  g_signal_connect_after(window.m_widget, "realize", G_CALLBACK(await), nullptr);
}

}  // namespace workbench
