#include "apps/workbench/layer/mouse.h"

#include <memory>
#include <utility>
#include <wx/cursor.h>

#include "apps/workbench/layer/layer.h"
#include "dqlib/framework/windows/dialog.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/splitter_wnd.h"
#include "dqlib/framework/windows/window_input.h"

namespace workbench {
namespace {

using dq::UINT;

UINT KeysOf(const wxMouseEvent& event) {
  UINT keys = 0;
  if (event.LeftIsDown()) keys |= dq::MK_LBUTTON;
  if (event.RightIsDown()) keys |= dq::MK_RBUTTON;
  if (event.MiddleIsDown()) keys |= dq::MK_MBUTTON;
  if (event.ShiftDown()) keys |= dq::MK_SHIFT;
  if (event.ControlDown()) keys |= dq::MK_CONTROL;
  return keys;
}

bool TakesKeyboard(const dq::CWnd& window) {
  return !window.IsKindOf(&dq::CDialog::classCDialog) &&
         !window.IsKindOf(&dq::CFrameWnd::classCFrameWnd) &&
         !window.IsKindOf(&dq::CControlBar::classCControlBar) &&
         !window.IsKindOf(&dq::CSplitterWnd::classCSplitterWnd);
}

}  // namespace

void ReportMouse(Layer& layer, wxWindow& native, dq::HWND window) {
  const auto report = [&layer, &native, window](const wxMouseEvent& event, UINT message) {
    UINT keys = KeysOf(event);
    if (message == dq::WM_MOUSEWHEEL) {
      // To the side it is what turning it up and down is with the shift key, where up is left.
      const bool is_aside = event.GetWheelAxis() == wxMOUSE_WHEEL_HORIZONTAL;
      const int turned = is_aside ? -event.GetWheelRotation() : event.GetWheelRotation();
      if (is_aside) keys |= dq::MK_SHIFT;
      keys |= static_cast<UINT>(static_cast<dq::WORD>(turned)) << 16;
    }
    const dq::CPoint at = layer.scale().ToLogical(native.ClientToScreen(event.GetPosition()));
    layer.Post(window, [=, &layer](dq::CWnd& under) {
      layer.SetPointed(window);
      // A press takes the keyboard to the window, but not to what only lies around others.
      const bool is_press = message == dq::WM_LBUTTONDOWN || message == dq::WM_LBUTTONDBLCLK;
      if (is_press && TakesKeyboard(under)) under.SetFocus();
      if (dq::CWnd* const left = dq::CWnd::FromHandle(window)) {
        dq::MouseInput(message, keys, at, left);
      }
    });
  };
  const std::pair<wxEventTypeTag<wxMouseEvent>, UINT> kMessages[] = {
      {wxEVT_LEFT_DOWN, dq::WM_LBUTTONDOWN},       {wxEVT_LEFT_UP, dq::WM_LBUTTONUP},
      {wxEVT_LEFT_DCLICK, dq::WM_LBUTTONDBLCLK},   {wxEVT_RIGHT_DOWN, dq::WM_RBUTTONDOWN},
      {wxEVT_RIGHT_UP, dq::WM_RBUTTONUP},          {wxEVT_RIGHT_DCLICK, dq::WM_RBUTTONDBLCLK},
      {wxEVT_MIDDLE_DOWN, dq::WM_MBUTTONDOWN},     {wxEVT_MIDDLE_UP, dq::WM_MBUTTONUP},
      {wxEVT_MIDDLE_DCLICK, dq::WM_MBUTTONDBLCLK}, {wxEVT_MOTION, dq::WM_MOUSEMOVE},
      {wxEVT_MOUSEWHEEL, dq::WM_MOUSEWHEEL},
  };
  for (const auto& [type, message] : kMessages) {
    native.Bind(type, [report, message = message](wxMouseEvent& event) { report(event, message); });
  }
  native.Bind(wxEVT_MOUSE_CAPTURE_LOST, [&layer](wxMouseCaptureLostEvent&) {
    layer.Post([] { dq::CWnd::ReleaseCapture(); });
  });
}

wxCursor ToNativePointer(dq::PointerShape shape) {
  switch (shape) {
    case dq::PointerShape::kArrow:
      return wxCursor(wxCURSOR_ARROW);
    case dq::PointerShape::kText:
      return wxCursor(wxCURSOR_IBEAM);
    case dq::PointerShape::kWait:
      return wxCursor(wxCURSOR_WAIT);
    case dq::PointerShape::kCross:
      return wxCursor(wxCURSOR_CROSS);
    case dq::PointerShape::kHand:
      return wxCursor(wxCURSOR_HAND);
    case dq::PointerShape::kSizeLeftRight:
      return wxCursor(wxCURSOR_SIZEWE);
    case dq::PointerShape::kSizeUpDown:
      return wxCursor(wxCURSOR_SIZENS);
    case dq::PointerShape::kNo:
      return wxCursor(wxCURSOR_NO_ENTRY);
  }
  return wxCursor(wxCURSOR_ARROW);
}

}  // namespace workbench
