#include "apps/workbench/layer/display.h"

#include <cstdlib>
#include <gdk/gdkx.h>
#include <gtk/gtk.h>
#include <utility>
#include <wx/app.h>
#include <wx/display.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/toplevel.h>
// Behind the others, for it defines names in everybody's way.
#include <X11/Xatom.h>
#include <X11/Xlib.h>

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

std::optional<FrameExtents> ReadExtents(GdkWindow* window) {
  if (window == nullptr) return std::nullopt;
  GdkDisplay* const display = gdk_window_get_display(window);
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  constexpr long kEdges = 4;
  const int status =
      XGetWindowProperty(gdk_x11_display_get_xdisplay(display), gdk_x11_window_get_xid(window),
                         gdk_x11_get_xatom_by_name_for_display(display, "_NET_FRAME_EXTENTS"), 0,
                         kEdges, False, XA_CARDINAL, &type, &format, &count, &rest, &data);
  std::optional<FrameExtents> extents;
  if (status == Success && data != nullptr && count == kEdges && format == 32) {
    // Items of 32 bits come as `long`.
    const long* const edges = reinterpret_cast<const long*>(data);
    const int scale = gdk_window_get_scale_factor(window);
    const auto edge = [&](int index) { return static_cast<int>(edges[index]) / scale; };
    extents = {edge(0), edge(1), edge(2), edge(3)};
  }
  if (data != nullptr) XFree(data);
  return extents;
}

bool WindowManagerKnows(const char* message) {
  return gdk_x11_screen_supports_net_wm_hint(Screen(), gdk_atom_intern(message, FALSE)) != 0;
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
  if (!wxEntryStart(count, arguments) || !wxTheApp->CallOnInit()) return;
  wxLog::SetActiveTarget(new wxLogStderr);
  WhenLost() = std::move(lost);
  XSetIOErrorHandler(OnConnectionBroken);
  XSetIOErrorExitHandler(gdk_x11_display_get_xdisplay(gdk_display_get_default()), OnConnectionEnd,
                         nullptr);
  ok_ = true;
}

Toolkit::~Toolkit() {
  const bool is_lost = ok_ && WhenLost() == nullptr;
  WhenLost() = nullptr;
  if (!is_lost) wxEntryCleanup();
}

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

void KeepPlace(wxTopLevelWindow& window) {
  GtkWindow* const native = GTK_WINDOW(window.GetHandle());
  gtk_window_set_position(native, GTK_WIN_POS_NONE);
  gtk_window_set_geometry_hints(native, nullptr, nullptr, GDK_HINT_USER_POS);
}

}  // namespace workbench
