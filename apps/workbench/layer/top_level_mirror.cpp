#include "apps/workbench/layer/top_level_mirror.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <wx/toplevel.h>

#include "apps/workbench/layer/frame_mirror.h"
#include "apps/workbench/layer/gtk_drag.h"
#include "apps/workbench/layer/gtk_window.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/mouse.h"
#include "apps/workbench/layer/style.h"
#include "apps/workbench/layer/text.h"
#include "apps/workbench/layer/trace.h"

namespace workbench {
namespace {

using dq::CRect;
using dq::CSize;
using dq::CWnd;
using dq::LONG;
using dq::WindowChange;

constexpr long kDialogStyle = wxCAPTION | wxCLOSE_BOX | wxSYSTEM_MENU;
constexpr long kSizableStyle = wxRESIZE_BORDER | wxMAXIMIZE_BOX;

/// What a frame leaves of a place that may have been kept in any shape; 16 bits hold it, as the
/// display's.
LONG InnerLength(LONG first, LONG last, LONG frame) {
  constexpr std::int64_t kMost = 0x7FFF;
  return static_cast<LONG>(std::clamp<std::int64_t>(std::int64_t{last} - first - frame, 0, kMost));
}

/// Without what the toolkit's own dialogs do with keys and buttons.
class DialogWindow : public wxTopLevelWindow {
 public:
  explicit DialogWindow(long style) {
    SetExtraStyle(wxTOPLEVEL_EX_DIALOG);
    Create(nullptr, wxID_ANY, wxString(), wxDefaultPosition, wxSize(1, 1), style);
  }
};

}  // namespace

wxTopLevelWindow* TopLevelMirror::top_level() const {
  return static_cast<wxTopLevelWindow*>(native());
}

wxTopLevelWindow* TopLevelMirror::MakeTopLevel(long style) { return new DialogWindow(style); }

wxWindow* TopLevelMirror::DoMake(wxWindow*) {
  extents_ = restored_ = layer().FrameExtentsOf(window());
  bars_ = UsualBars(window());
  wxTopLevelWindow* const native =
      MakeTopLevel(kDialogStyle | (window().IsSizable() ? kSizableStyle : 0));
  // The toolkit itself would end the window with its owner.
  auto* const owner = dynamic_cast<TopLevelMirror*>(layer().Find(window().GetOwner()));
  if (owner != nullptr) SetOwner(*native, owner->top_level());
  inside_ = new wxWindow(native, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxWANTS_CHARS);
  UseDialogStyle(*inside_);
  TakeNoKeys(*inside_);
  ReportMouse(layer(), *inside_, handle());
  Input::SetMirror(*native, *this);
  AwaitDrags(*native);
  Watch(*native);
  return native;
}

void TopLevelMirror::Watch(wxTopLevelWindow& native) {
  native.Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
    event.Veto();
    PostFact([](CWnd& window) {
      if (window.IsWindowEnabled()) window.SendMessage(dq::WM_CLOSE);
    });
  });
  const auto take_place = [this] { PostFact([this](CWnd& window) { TakePlace(window); }); };
  // The toolkit's own handler would lay out what lies in the window.
  native.Bind(wxEVT_SIZE, [this, take_place](wxSizeEvent&) {
    inside_->SetSize(wxRect(top_level()->GetClientSize()));
    take_place();
  });
  native.Bind(wxEVT_MOVE, [take_place](wxMoveEvent&) { take_place(); });
  WhenFramed(native, take_place);
  const auto take_state = [this] { PostFact([this](CWnd& window) { TakeState(window); }); };
  WhenMaximizedOrNot(native, take_state);
  native.Bind(wxEVT_ICONIZE, [take_state](wxIconizeEvent& event) {
    event.Skip();
    take_state();
  });
  native.Bind(wxEVT_ACTIVATE, [this](wxActivateEvent& event) {
    event.Skip();
    layer().NoteActive(handle(), event.GetActive());
  });
}

void TopLevelMirror::Apply(const Changes& changes) {
  if (changes.Has(WindowChange::kEnabled)) blocked_ = !window().IsWindowEnabled();
  Mirror::Apply(changes);
}

void TopLevelMirror::ShowText() {
  top_level()->SetTitle(ToNative(window().GetWindowText().View()));
}

void TopLevelMirror::ShowPlace() {
  const CWnd& own = window();
  // Before it is first shown, so that the window manager knows where to restore it.
  if (!top_level()->IsShown()) ShowRestoredPlace();
  ShowState();
  if (own.IsIconic() || own.IsZoomed() || taken_ == own.GetPlace()) return;
  ShowRestoredPlace();
}

void TopLevelMirror::ShowRestoredPlace() {
  taken_.reset();
  dq::WINDOWPLACEMENT placement;
  window().GetWindowPlacement(&placement);
  const CRect& place = placement.rcNormalPosition;
  const Scale& scaled = scale();
  const LONG width = scaled.ToLogical(restored_.left) + scaled.ToLogical(restored_.right);
  const LONG height =
      scaled.ToLogical(restored_.top + bars_.above) + scaled.ToLogical(restored_.bottom);
  const CSize client{InnerLength(place.left, place.right, width),
                     InnerLength(place.top, place.bottom, height)};
  const wxPoint at = scale().ToNative(place.TopLeft());
  if (top_level()->GetPosition() != at) top_level()->Move(at, wxSIZE_ALLOW_MINUS_ONE);
  const wxSize size = scale().ToNative(client);
  if (top_level()->GetClientSize() != size) {
    // The toolkit reckons the bars by what a client area of the present size leaves for them.
    top_level()->SetSize(size.x, size.y + bars_.above);
    top_level()->SetClientSize(size);
  }
  inside_->SetSize(wxRect(size));
}

void TopLevelMirror::ShowState() {
  const CWnd& own = window();
  if (own.IsZoomed() != top_level()->IsMaximized() && !own.IsIconic()) {
    top_level()->Maximize(own.IsZoomed());
  }
  if (own.IsIconic() != top_level()->IsIconized()) top_level()->Iconize(own.IsIconic());
}

void TopLevelMirror::ApplyShown() {
  const bool shown = window().IsShown();
  if (shown == top_level()->IsShown()) return;
  if (shown) {
    KeepPlace(*top_level());
    PostFact([this](CWnd& window) { TakeLimits(window); });
  }
  if (shown && CWnd::GetActiveWindow() != &window()) {
    top_level()->ShowWithoutActivating();
  } else {
    top_level()->Show(shown);
  }
}

void TopLevelMirror::TakeFrame(CWnd& window) {
  const FrameExtents extents = ReadFrameExtents(*top_level()).value_or(extents_);
  const Bars bars = ShownBars();
  if (extents == extents_ && bars == bars_) return;
  extents_ = extents;
  bars_ = bars;
  if (!window.IsZoomed()) {
    restored_ = extents_;
    layer().SetFrameExtents(window, extents_);
  }
  // The client area is what it was.
  window.UpdateFrameWidths();
}

void TopLevelMirror::TakePlace(CWnd& window) {
  if (!top_level()->IsShown() || top_level()->IsIconized()) return;
  layer().NoteTraced(handle());
  const dq::HWND self = handle();
  TakeFrame(window);
  if (CWnd::FromHandle(self) != &window || layer().Find(self) != this) return;
  const wxSize size = top_level()->GetClientSize();
  const CRect place = window.GetPlace();
  const CRect frame = window.GetFrameWidths();
  CRect now = place;
  const wxPoint known = scale().ToNative(place.TopLeft());
  const wxPoint at =
      top_level()->GetPosition() == known ? known : ReadPlace(*top_level()).value_or(known);
  if (at != known) {
    const dq::CPoint corner = scale().ToLogical(at);
    now.OffsetRect(corner.x - now.left, corner.y - now.top);
  }
  if (scale().ToNative(window.GetClientRect().Size()) != size) {
    const CSize client = scale().ToLogical(size);
    now.right = now.left + client.cx + frame.left + frame.right;
    now.bottom = now.top + client.cy + frame.top + frame.bottom;
  }
  if (now == place) return;
  taken_ = now;
  window.MoveWindow(now);
}

void TopLevelMirror::TakeState(CWnd& window) {
  if (!top_level()->IsShown()) return;
  const bool iconic = top_level()->IsIconized();
  const bool zoomed = top_level()->IsMaximized();
  if (iconic != window.IsIconic()) {
    window.ShowWindow(iconic ? dq::SW_MINIMIZE : zoomed ? dq::SW_SHOWMAXIMIZED : dq::SW_RESTORE);
  } else if (!iconic && zoomed != window.IsZoomed()) {
    window.ShowWindow(zoomed ? dq::SW_SHOWMAXIMIZED : dq::SW_SHOWNORMAL);
  }
}

void TopLevelMirror::TakeLimits(CWnd& window) {
  if (!window.IsSizable()) return;
  const dq::HWND self = handle();
  dq::MINMAXINFO limits;
  window.SendMessage(dq::WM_GETMINMAXINFO, 0, reinterpret_cast<dq::LPARAM>(&limits));
  if (CWnd::FromHandle(self) != &window || layer().Find(self) != this) return;
  const CRect frame = window.GetFrameWidths();
  const CSize least{limits.ptMinTrackSize.x - frame.left - frame.right,
                    limits.ptMinTrackSize.y - frame.top - frame.bottom};
  if (least.cx > 0 && least.cy > 0) top_level()->SetMinClientSize(scale().ToNative(least));
}

void TopLevelMirror::Trace(TraceLine& line) const {
  const wxPoint origin = inside_->GetScreenPosition();
  line.Add("origin", {origin.x, origin.y});
}

}  // namespace workbench
