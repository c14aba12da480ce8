#include "apps/workbench/layer/display.h"

#include <algorithm>
#include <cstdlib>
#include <gdk/gdkx.h>
#include <gtk/gtk.h>
#include <iterator>
#include <stdexcept>
#include <utility>
#include <vector>
#include <wx/app.h>
#include <wx/display.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/toplevel.h>
// Behind the others, for it defines names in everybody's way.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "dqlib/framework/base/trace.h"

namespace workbench {
namespace {

constexpr gint64 kLongestWait = 500 * G_TIME_SPAN_MILLISECOND;
constexpr gulong kBetweenLooks = 2 * G_TIME_SPAN_MILLISECOND;

std::function<void()>& WhenLost() {
  static std::function<void()> when_lost;
  return when_lost;
}

/// The toolkit's own handler would end the process on the spot.
int OnConnectionBroken(Display*) { return 0; }
/// Xlib would end it afterwards, unless this is in place; its calls answer nothing from then on.
void OnConnectionEnd(Display*, void*) {
  if (const auto lost = std::exchange(WhenLost(), nullptr)) lost();
}

class LayerApp : public wxApp {
 public:
  bool OnInit() override { return true; }
};

void OnAssert(const wxString& file, int line, const wxString& function, const wxString& condition,
              const wxString& message) {
  const wxString text =
      wxString::Format("%s:%d: %s: %s: %s\n", file, line, function, condition, message);
  dq::AfxTrace(std::string(text.utf8_str()));
}

GdkScreen* Screen() { return gdk_screen_get_default(); }

constexpr const char* kExtents = "_NET_FRAME_EXTENTS";
/// Of a window that a window manager has taken over; its first number is the state.
constexpr const char* kState = "WM_STATE";

Atom AtomOf(GdkWindow* window, const char* name) {
  return gdk_x11_get_xatom_by_name_for_display(gdk_window_get_display(window), name);
}

/// The first numbers of a window's property; none if it hasn't so many.
std::vector<long> ReadNumbers(GdkWindow* window, const char* property, long wanted) {
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  const int status =
      XGetWindowProperty(gdk_x11_display_get_xdisplay(gdk_window_get_display(window)),
                         gdk_x11_window_get_xid(window), AtomOf(window, property), 0, wanted, False,
                         AnyPropertyType, &type, &format, &count, &rest, &data);
  std::vector<long> numbers;
  if (status == Success && data != nullptr && format == 32 &&
      count == static_cast<unsigned long>(wanted)) {
    // Items of 32 bits come as `long`.
    const long* const items = reinterpret_cast<const long*>(data);
    numbers.assign(items, std::next(items, wanted));
  }
  if (data != nullptr) XFree(data);
  return numbers;
}

std::optional<FrameExtents> ReadExtents(GdkWindow* window) {
  if (window == nullptr) return std::nullopt;
  const std::vector<long> edges = ReadNumbers(window, kExtents, 4);
  if (edges.empty()) return std::nullopt;
  const int scale = gdk_window_get_scale_factor(window);
  const auto edge = [&](std::size_t index) { return static_cast<int>(edges[index]) / scale; };
  return FrameExtents{edge(0), edge(1), edge(2), edge(3)};
}

bool WindowManagerKnows(const char* message) {
  return gdk_x11_screen_supports_net_wm_hint(Screen(), gdk_atom_intern(message, FALSE)) != 0;
}

void Call(void* told) { (*static_cast<std::function<void()>*>(told))(); }

gboolean OnProperty(GtkWidget*, GdkEventProperty* event, void* framed) {
  const bool is_state = event->atom == gdk_atom_intern_static_string(kState);
  if (is_state && event->state == GDK_PROPERTY_NEW_VALUE) Call(framed);
  return FALSE;
}

gboolean OnState(GtkWidget*, GdkEventWindowState* event, void* changed) {
  if ((event->changed_mask & GDK_WINDOW_STATE_MAXIMIZED) != 0) Call(changed);
  return FALSE;
}

/// `handler` gets what is told.
void Connect(wxTopLevelWindow& window, const char* signal, GCallback handler,
             std::function<void()> told) {
  const auto forget = [](void* data, GClosure*) {
    delete static_cast<std::function<void()>*>(data);
  };
  g_signal_connect_data(window.GetHandle(), signal, handler,
                        new std::function<void()>(std::move(told)), forget, GConnectFlags());
}

void RequestExtents(GdkWindow* window) {
  GdkDisplay* const display = gdk_window_get_display(window);
  Display* const xdisplay = gdk_x11_display_get_xdisplay(display);
  XEvent request{};
  request.xclient.type = ClientMessage;
  request.xclient.window = gdk_x11_window_get_xid(window);
  request.xclient.message_type =
      gdk_x11_get_xatom_by_name_for_display(display, "_NET_REQUEST_FRAME_EXTENTS");
  request.xclient.format = 32;
  XSendEvent(xdisplay, DefaultRootWindow(xdisplay), False,
             SubstructureNotifyMask | SubstructureRedirectMask, &request);
}

}  // namespace

std::optional<std::string> WhyNoDisplay() {
  const char* const name = XDisplayName(nullptr);
  if (name == nullptr || *name == '\0') return "DISPLAY isn't set";
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr) return "the display " + std::string(name) + " can't be opened";
  XCloseDisplay(display);
  return std::nullopt;
}

Toolkit::Toolkit(std::function<void()> lost) {
  // Places of windows are a matter of X; on other displays it is emulated. Once, for the toolkit
  // keeps each text.
  static const bool on_x = (gdk_set_allowed_backends("x11"), true);
  static_cast<void>(on_x);
  wxApp::SetInstance(new LayerApp);
  wxSetAssertHandler(OnAssert);
  int count = 1;
  char name[] = "workbench";
  char* arguments[] = {name, nullptr};
  if (!wxEntryStart(count, arguments) || !wxTheApp->CallOnInit()) {
    throw std::runtime_error("the toolkit can't be started");
  }
  wxLog::SetActiveTarget(new wxLogStderr);
  // The toolkit ends its target.
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
  WhenLost() = std::move(lost);
  XSetIOErrorHandler(OnConnectionBroken);
  XSetIOErrorExitHandler(gdk_x11_display_get_xdisplay(gdk_display_get_default()), OnConnectionEnd,
                         nullptr);
}

Toolkit::~Toolkit() {
  const bool is_lost = WhenLost() == nullptr;
  WhenLost() = nullptr;
  if (!is_lost) wxEntryCleanup();
}

void CheckConnection(const std::vector<GPollFD>& polled) {
  const int connection = ConnectionNumber(gdk_x11_display_get_xdisplay(gdk_display_get_default()));
  const bool is_over = std::ranges::any_of(polled, [connection](const GPollFD& each) {
    return each.fd == connection && (each.revents & (G_IO_HUP | G_IO_ERR)) != 0;
  });
  if (is_over) OnConnectionEnd(nullptr, nullptr);
}

void SyncDisplay() { gdk_display_sync(gdk_display_get_default()); }

double DisplayScale() {
  constexpr double kUsual = 96;
  const double resolution = gdk_screen_get_resolution(Screen());
  return resolution > 0 ? resolution / kUsual : 1;
}

wxSize DisplaySize() {
  const wxDisplay primary(0u);
  for (unsigned int index = 0; index < wxDisplay::GetCount(); ++index) {
    const wxDisplay display(index);
    if (display.IsPrimary()) return display.GetGeometry().GetSize();
  }
  return primary.GetGeometry().GetSize();
}

FrameExtents AskFrameExtents(bool sizable) {
  FrameExtents extents;
  if (!WindowManagerKnows("_NET_REQUEST_FRAME_EXTENTS")) return extents;
  GtkWidget* const probe = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_widget_realize(probe);
  GdkWindow* const window = gtk_widget_get_window(probe);
  if (!sizable) {
    GdkGeometry fixed{};
    fixed.min_width = fixed.max_width = fixed.min_height = fixed.max_height = 1;
    gdk_window_set_geometry_hints(
        window, &fixed, static_cast<GdkWindowHints>(GDK_HINT_MIN_SIZE | GDK_HINT_MAX_SIZE));
  }
  RequestExtents(window);
  const gint64 end = g_get_monotonic_time() + kLongestWait;
  for (;;) {
    if (const auto answer = ReadExtents(window)) {
      extents = *answer;
      break;
    }
    if (g_get_monotonic_time() > end) break;
    g_usleep(kBetweenLooks);
  }
  gtk_widget_destroy(probe);
  return extents;
}

std::optional<FrameExtents> ReadFrameExtents(const wxTopLevelWindow& window) {
  return ReadExtents(gtk_widget_get_window(window.GetHandle()));
}

std::optional<wxPoint> ReadPlace(const wxTopLevelWindow& window) {
  GdkWindow* const native = gtk_widget_get_window(window.GetHandle());
  // What the toolkit itself has noted may be from before the window manager framed the window.
  if (native == nullptr || !WindowManagerKnows(kExtents)) return window.GetPosition();
  if (ReadNumbers(native, kState, 1) != std::vector<long>{NormalState}) return std::nullopt;
  const FrameExtents extents = ReadExtents(native).value_or(FrameExtents());
  wxPoint at;
  gdk_window_get_origin(native, &at.x, &at.y);
  return at - wxPoint(extents.left, extents.top);
}

void WhenFramed(wxTopLevelWindow& window, std::function<void()> framed) {
  gtk_widget_add_events(window.GetHandle(), GDK_PROPERTY_CHANGE_MASK);
  Connect(window, "property-notify-event", G_CALLBACK(OnProperty), std::move(framed));
}

void WhenMaximizedOrNot(wxTopLevelWindow& window, std::function<void()> changed) {
  Connect(window, "window-state-event", G_CALLBACK(OnState), std::move(changed));
}

void KeepPlace(wxTopLevelWindow& window) {
  GtkWindow* const native = GTK_WINDOW(window.GetHandle());
  gtk_window_set_position(native, GTK_WIN_POS_NONE);
  gtk_window_set_geometry_hints(native, nullptr, nullptr, GDK_HINT_USER_POS);
}

}  // namespace workbench
