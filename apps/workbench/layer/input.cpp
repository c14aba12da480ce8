#include "apps/workbench/layer/input.h"

#include <gtk/gtk.h>
#include <wx/toplevel.h>

#include "apps/workbench/layer/drag_out.h"
#include "apps/workbench/layer/frame_mirror.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/top_level_mirror.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/framework/windows/window_input.h"

namespace workbench {
namespace {

using dq::CWnd;
using dq::HWND;
using dq::UINT;

constexpr const char* kMirror = "workbench-mirror";

GtkWidget* TopOf(const GdkEvent& event) {
  GtkWidget* const widget = gtk_get_event_widget(const_cast<GdkEvent*>(&event));
  return widget == nullptr ? nullptr : gtk_widget_get_toplevel(widget);
}

/// Null for windows of the toolkit's own, as those of menus.
TopLevelMirror* MirrorOf(GtkWidget* top) {
  if (top == nullptr) return nullptr;
  return static_cast<TopLevelMirror*>(g_object_get_data(G_OBJECT(top), kMirror));
}

bool IsMenuOpen() {
  GtkWidget* const grabber = gtk_grab_get_current();
  return grabber != nullptr && GTK_IS_MENU_SHELL(grabber);
}

unsigned int StateOf(const GdkEvent& event) {
  GdkModifierType state{};
  gdk_event_get_state(&event, &state);
  return state;
}

/// Whether the toolkit may go to another control by the key.
bool IsMove(dq::WORD key) {
  return key == dq::VK_TAB || (key >= dq::VK_LEFT && key <= dq::VK_DOWN);
}

/// A text whose bytes are messages of their own.
void SendCharacters(HWND target, UINT message, const std::string& text) {
  for (const char byte : text) {
    dq::SendToWindow(target, message, static_cast<unsigned char>(byte), 1);
  }
}

}  // namespace

Input::Input(Layer& layer) : layer_(layer), drag_in_(layer) {
  gdk_event_handler_set(OnEvent, this, nullptr);
}

Input::~Input() {
  const auto usual = [](GdkEvent* event, void*) { gtk_main_do_event(event); };
  gdk_event_handler_set(usual, nullptr, nullptr);
}

void Input::SetMirror(wxTopLevelWindow& window, TopLevelMirror& mirror) {
  g_object_set_data(G_OBJECT(window.m_widget), kMirror, &mirror);
}

void Input::OnEvent(GdkEvent* event, void* input) {
  if (!static_cast<Input*>(input)->Take(*event)) gtk_main_do_event(event);
}

TopLevelMirror* Input::MirrorOf(GdkWindow& window) {
  void* widget = nullptr;
  gdk_window_get_user_data(&window, &widget);
  return widget == nullptr ? nullptr
                           : workbench::MirrorOf(gtk_widget_get_toplevel(GTK_WIDGET(widget)));
}

void Input::SetDrag(DragOut* drag) {
  drag_ = drag;
  drag_in_.SetOwn(drag == nullptr ? nullptr : drag->window());
}

/// Whether the toolkit doesn't get the event now.
bool Input::Take(const GdkEvent& event) {
  if ((drag_ != nullptr && drag_->Take(event)) || drag_in_.Take(event)) return true;
  switch (event.type) {
    case GDK_KEY_PRESS:
    case GDK_KEY_RELEASE:
    case GDK_BUTTON_PRESS:
    case GDK_2BUTTON_PRESS:
    case GDK_3BUTTON_PRESS:
    case GDK_BUTTON_RELEASE:
    case GDK_SCROLL:
    case GDK_TOUCH_BEGIN:
    case GDK_TOUCH_END:
      break;
    default:
      return false;
  }
  TopLevelMirror* const mirror = workbench::MirrorOf(TopOf(event));
  const bool is_key = event.type == GDK_KEY_PRESS || event.type == GDK_KEY_RELEASE;
  if (!is_key) modifiers_ = ModifiersOf(StateOf(event));
  if (mirror == nullptr || IsMenuOpen()) return false;
  if (mirror->IsBlocked()) {
    if (event.type == GDK_BUTTON_PRESS) layer_.Post([this] { layer_.RefuseInput(); });
    return true;
  }
  if (is_key) Hold(event, *mirror);
  return is_key;
}

void Input::Hold(const GdkEvent& event, TopLevelMirror& mirror) {
  const std::shared_ptr<GdkEvent> held(gdk_event_copy(&event), gdk_event_free);
  layer_.Post([this, held, top = mirror.handle()] { Deliver(*held, top); });
}

void Input::Deliver(GdkEvent& event, HWND top_level) {
  const KeyStroke stroke = KeyStrokeOf(event.key);
  const bool is_down = event.type == GDK_KEY_PRESS;
  modifiers_ = stroke.modifiers;
  if (stroke.key < std::size(down_)) down_[stroke.key] = is_down;
  const CWnd* const focus = CWnd::GetFocus();
  const HWND target = focus == nullptr ? top_level : focus->GetSafeHwnd();
  // So that whoever is asked finds what the person has done in the control before.
  if (Mirror* const control = layer_.Find(target)) control->TakeIn();
  const Mirror* const offered = layer_.Find(target);
  if (is_down && Offer(target, stroke, offered != nullptr && offered->IsControl())) return;
  // Whoever was offered it may have ended the window.
  Mirror* const mirror = layer_.Find(target);
  if (mirror != nullptr && !mirror->IsControl()) {
    Send(target, stroke, is_down);
    // What is left is the main menu's.
    if (!stroke.IsSystem()) return;
  }
  if (is_down && mirror != nullptr && mirror->TakeKey(stroke)) return;
  // The toolkit's own way from control to control isn't the library's.
  if (IsMove(stroke.key) && (mirror == nullptr || !mirror->TakesMove(stroke.key))) return;
  layer_.Update();
  auto* const frame = dynamic_cast<FrameMirror*>(layer_.Find(top_level));
  const bool is_menu_key = is_down && stroke.IsSystem() && !stroke.character.empty();
  if (is_menu_key && frame != nullptr && frame->TakeMenuKey(stroke.character, event)) return;
  if (event.key.window != nullptr && gdk_window_is_destroyed(event.key.window) == 0) {
    gtk_main_do_event(&event);
  }
}

/// Whether the library has taken it. A window without a control gets it later, if nobody has.
bool Input::Offer(HWND target, const KeyStroke& stroke, bool is_control) const {
  const bool is_system = stroke.IsSystem();
  const auto offer = [is_control](dq::MSG message) {
    return is_control ? dq::OfferKey(message) : dq::PreTranslateInput(message);
  };
  const UINT down = is_system ? dq::WM_SYSKEYDOWN : dq::WM_KEYDOWN;
  if (stroke.key != 0 && offer({target, down, stroke.key, 1})) return true;
  if (stroke.character.empty() || CWnd::FromHandle(target) == nullptr) return false;
  const UINT character = is_system ? dq::WM_SYSCHAR : dq::WM_CHAR;
  const auto first = static_cast<unsigned char>(stroke.character.front());
  if (!offer({target, character, first, 1})) return false;
  // Who has taken the first byte gets the others too.
  if (is_control) SendCharacters(target, character, stroke.character.substr(1));
  return true;
}

void Input::Send(HWND target, const KeyStroke& stroke, bool is_down) const {
  const bool is_system = stroke.IsSystem();
  const UINT down = is_system ? dq::WM_SYSKEYDOWN : dq::WM_KEYDOWN;
  const UINT up = is_system ? dq::WM_SYSKEYUP : dq::WM_KEYUP;
  if (stroke.key != 0) dq::SendToWindow(target, is_down ? down : up, stroke.key, 1);
  SendCharacters(target, is_system ? dq::WM_SYSCHAR : dq::WM_CHAR, stroke.character);
}

int Input::GetKeyState(int key) const {
  const auto held = [](bool is_held) { return is_held ? dq::kKeyDown : 0; };
  switch (key) {
    case dq::VK_SHIFT:
      return held(modifiers_.shift);
    case dq::VK_CONTROL:
      return held(modifiers_.control);
    case dq::VK_MENU:
      return held(modifiers_.alt);
    case dq::VK_CAPITAL:
      return held(down_[dq::VK_CAPITAL]) | (modifiers_.caps_lock ? dq::kKeyLocked : 0);
    default:
      return key >= 0 && key < static_cast<int>(std::size(down_)) ? held(down_[key]) : 0;
  }
}

}  // namespace workbench
