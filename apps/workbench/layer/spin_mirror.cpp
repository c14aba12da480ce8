#include "apps/workbench/layer/spin_mirror.h"

#include <algorithm>
#include <wx/dcclient.h>
#include <wx/settings.h>

#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/renderer.h"
#include "dqlib/framework/controls/spin_button.h"

namespace workbench {
namespace {

/// How long an arrow is held until it steps again, and then each time, in milliseconds.
constexpr int kFirstWait = 400;
constexpr int kNextWait = 60;

}  // namespace

wxWindow* SpinMirror::DoMake(wxWindow* parent) {
  auto* const face = new wxWindow(parent, wxID_ANY);
  face->SetBackgroundStyle(wxBG_STYLE_PAINT);
  face->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { OnPaint(); });
  for (const auto& type : {wxEVT_LEFT_DOWN, wxEVT_LEFT_DCLICK}) {
    face->Bind(type, [this, face](wxMouseEvent& event) {
      Press(event.GetY() < face->GetSize().y / 2 ? 1 : -1);
    });
  }
  face->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent&) { Release(); });
  face->Bind(wxEVT_MOUSE_CAPTURE_LOST, [this](wxMouseCaptureLostEvent&) { Release(); });
  face->Bind(wxEVT_MOUSEWHEEL, [this](wxMouseEvent& event) {
    PostTo<dq::CSpinButtonCtrl>([step = event.GetWheelRotation() > 0 ? 1 : -1](
                                    dq::CSpinButtonCtrl& spin) { spin.Step(step); });
  });
  again_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
    Step();
    again_.StartOnce(kNextWait);
  });
  return face;
}

void SpinMirror::Press(int step) {
  held_ = step;
  if (!native()->HasCapture()) native()->CaptureMouse();
  native()->Refresh();
  Step();
  again_.StartOnce(kFirstWait);
}

void SpinMirror::Release() {
  held_ = 0;
  again_.Stop();
  if (native()->HasCapture()) native()->ReleaseMouse();
  native()->Refresh();
}

void SpinMirror::Step() {
  PostTo<dq::CSpinButtonCtrl>([step = held_](dq::CSpinButtonCtrl& spin) { spin.Step(step); });
}

void SpinMirror::OnPaint() {
  wxPaintDC context(native());
  const wxSize size = native()->GetClientSize();
  const int middle = size.y / 2;
  const wxRect upper(0, 0, size.x, middle);
  const wxRect lower(0, middle, size.x, size.y - middle);
  const bool is_active = native()->IsEnabled();
  for (const int step : {1, -1}) {
    const wxRect& rect = step > 0 ? upper : lower;
    const int state = When(!is_active, wxCONTROL_DISABLED) | When(held_ == step, wxCONTROL_PRESSED);
    Renderer().DrawPushButton(native(), context, rect, state);
    const wxColour color =
        wxSystemSettings::GetColour(is_active ? wxSYS_COLOUR_BTNTEXT : wxSYS_COLOUR_GRAYTEXT);
    context.SetPen(wxPen(color));
    context.SetBrush(wxBrush(color));
    DrawArrow(context, rect, step > 0);
  }
}

}  // namespace workbench
