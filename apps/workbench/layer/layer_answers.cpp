// What the library asks the window layer.

#include <utility>
#include <wx/dcmemory.h>
#include <wx/menu.h>
#include <wx/utils.h>

#include "apps/workbench/layer/child_frame_mirror.h"
#include "apps/workbench/layer/drag_out.h"
#include "apps/workbench/layer/frame_mirror.h"
#include "apps/workbench/layer/gtk_menu.h"
#include "apps/workbench/layer/gtk_window.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/mouse.h"
#include "apps/workbench/layer/plain_mirrors.h"
#include "apps/workbench/layer/style.h"
#include "apps/workbench/layer/text.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/win_thread.h"

namespace workbench {

using dq::CWnd;
using dq::HWND;
using dq::UINT;

dq::CRect Layer::GetFrameWidths(const CWnd& window) {
  if (window.GetParent() != nullptr) {
    const dq::CRect bars = ScrollBarWidths(window);
    const dq::CRect frame = ChildFrameWidths(window);
    return {frame.left, frame.top, frame.right + bars.right, frame.bottom + bars.bottom};
  }
  const auto* const mirror = dynamic_cast<TopLevelMirror*>(Find(&window));
  const FrameExtents extents = mirror == nullptr ? FrameExtentsOf(window) : mirror->frame_extents();
  const Bars bars = mirror == nullptr ? UsualBars(window) : mirror->bars();
  return {scale_.ToLogical(extents.left), scale_.ToLogical(extents.top + bars.above),
          scale_.ToLogical(extents.right), scale_.ToLogical(extents.bottom)};
}

int Layer::GetMetric(int metric, int usual) {
  if (!loop_.HasDisplay()) return usual;
  int native = -1;
  switch (metric) {
    case dq::SM_CXVSCROLL:
    case dq::SM_CYHSCROLL: {
      static const int width = ScrollBarWidth();
      native = width;
      break;
    }
    case dq::SM_CYCAPTION:
      native = frame_extents_[0].top;
      break;
    case dq::SM_CYMENU:
      native = MenuBarHeight();
      break;
    default:
      break;
  }
  return native > 0 ? scale_.ToLogical(native) : usual;
}

dq::CSize Layer::MeasureText(const dq::LOGFONT* font, std::string_view text,
                             const dq::CSize& usual) {
  if (!loop_.HasDisplay()) return usual;
  wxMemoryDC context;
  context.SetFont(font == nullptr ? DialogFont() : ToNativeFont(*font));
  return scale_.ToLogical(context.GetTextExtent(ToNative(text)));
}

void Layer::SetPointer(dq::PointerShape shape) {
  if (loop_.HasDisplay() && input_.drag() != nullptr) return input_.drag()->SetPointer(shape);
  Mirror* const mirror = Find(pointed_);
  if (loop_.HasDisplay() && mirror != nullptr && !mirror->IsControl()) {
    mirror->Pointed()->SetCursor(ToNativePointer(shape));
  }
}

dq::UINT Layer::TrackMenu(dq::HMENU menu, const dq::MenuSpot& spot, CWnd& owner) {
  if (!loop_.HasDisplay()) return 0;
  const HWND window = owner.GetSafeHwnd();
  UINT chosen = 0;
  bool is_left = false;
  const MenuMirror::Events events{
      .command = [&](UINT id) { chosen = id; },
      .opens =
          [&](dq::HMENU opened, int position) {
            // Of the menu itself the owner knows.
            if (opened == menu) return;
            Post(window, [=](CWnd& live) {
              live.SendMessage(dq::WM_INITMENUPOPUP, reinterpret_cast<dq::WPARAM>(opened),
                               position);
            });
          },
      .looked_at =
          [&](UINT id, UINT state, dq::HMENU in) {
            Post(window, [=](CWnd& live) {
              live.SendMessage(dq::WM_MENUSELECT, dq::MakeWParam(id, state),
                               reinterpret_cast<dq::LPARAM>(in));
            });
          },
      .with_owner = [&](std::function<void(CWnd&)> act) { Post(window, std::move(act)); },
      .scale = scale_};
  wxMenu native;
  MenuMirror mirror(menu, native, events);
  // Handlers may throw, and show menus of their own.
  struct Tracking {
    Tracking(MenuMirror*& tracked, MenuMirror& menu)
        : tracked_menu(tracked), former(std::exchange(tracked, &menu)) {}
    Tracking(const Tracking&) = delete;
    Tracking& operator=(const Tracking&) = delete;
    ~Tracking() { tracked_menu = former; }
    MenuMirror*& tracked_menu;
    MenuMirror* const former;
  } const tracking(tracked_menu_, mirror);
  Update();
  // So that it is shown as large as it is.
  mirror.DrawItems(owner);
  if (CWnd::FromHandle(window) != &owner) return 0;
  Mirror* const over = Find(owner.GetTopLevelParent());
  if (over == nullptr) return 0;
  const MenuSide side = (spot.flags & dq::TPM_RIGHTALIGN) != 0    ? MenuSide::kLeft
                        : (spot.flags & dq::TPM_CENTERALIGN) != 0 ? MenuSide::kBoth
                                                                  : MenuSide::kRight;
  const wxPoint at = scale_.ToNative(spot.at);
  if (DropMenu(native, *over->Inside(), at, side, [&is_left] { is_left = true; })) {
    if (host_.trace != nullptr) host_.trace->Write(TraceLine("dropped"));
    dq::PumpUntil([&] { return is_left || !loop_.HasDisplay(); });
  }
  return chosen;
}

UINT Layer::StartDrag(CWnd&, const dq::COleDataObject& data, UINT effects,
                      dq::COleDropSource& source) {
  if (!loop_.HasDisplay() || input_.drag() != nullptr) return dq::DROPEFFECT_NONE;
  // The drag has the mouse now.
  CWnd::ReleaseCapture();
  Update();
  DragOut drag(*this, data, effects, source);
  const std::unique_ptr<DragOut, std::function<void(DragOut*)>> under_way(
      &drag, [this](DragOut*) { input_.SetDrag(nullptr); });
  input_.SetDrag(&drag);
  drag.Begin();
  dq::PumpUntil([&] { return drag.IsOver() || !loop_.HasDisplay(); });
  return drag.effect();
}

void Layer::ShowWaitPointer(bool show) {
  if (!loop_.HasDisplay()) return;
  if (show) {
    wxBeginBusyCursor();
  } else {
    wxEndBusyCursor();
  }
}

void Layer::Beep(dq::UINT) {
  if (loop_.HasDisplay()) wxBell();
}

dq::CPoint Layer::GetPointer() {
  return loop_.HasDisplay() ? scale_.ToLogical(wxGetMousePosition()) : dq::CPoint{};
}

}  // namespace workbench
