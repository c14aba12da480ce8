#include "apps/workbench/layer/child_frame_mirror.h"

#include <algorithm>
#include <utility>
#include <wx/control.h>
#include <wx/cursor.h>
#include <wx/dcclient.h>
#include <wx/utils.h>

#include "apps/workbench/layer/gtk_window.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/style.h"
#include "apps/workbench/layer/text.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/windows/mdi_frame.h"

namespace workbench {
namespace {

using dq::CMDIChildWnd;
using dq::CRect;
using dq::CWnd;
using dq::LONG;

constexpr LONG kBorder = 4;
constexpr LONG kCaptionHeight = 20;
/// A corner sizes both ways.
constexpr LONG kCorner = 12;

bool IsActive(const CWnd& window) {
  const auto* const child = dynamic_cast<const CMDIChildWnd*>(&window);
  return child != nullptr && child->IsActiveFrame();
}

/// The least size that the window wants to have; it may end the window to be asked.
dq::CSize LeastSize(CWnd& window) {
  const CRect frame = ChildFrameWidths(window);
  dq::MINMAXINFO limits;
  window.SendMessage(dq::WM_GETMINMAXINFO, 0, reinterpret_cast<dq::LPARAM>(&limits));
  return {std::max<LONG>(limits.ptMinTrackSize.x, 4 * frame.top),
          std::max<LONG>(limits.ptMinTrackSize.y, frame.top + frame.bottom)};
}

}  // namespace

CRect ChildFrameWidths(const CWnd& window) {
  if (dynamic_cast<const CMDIChildWnd*>(&window) == nullptr) return {};
  return {kBorder, kBorder + kCaptionHeight, kBorder, kBorder};
}

wxWindow* ChildFrameMirror::DoMake(wxWindow* parent) {
  auto* const native =
      new wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxWANTS_CHARS);
  native->SetBackgroundStyle(wxBG_STYLE_PAINT);
  TakeNoKeys(*native);
  inside_ = PlainMirror::DoMake(native);
  // Not that of an edge.
  inside_->SetCursor(wxCursor(wxCURSOR_ARROW));
  native->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { OnPaint(); });
  native->Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent& event) { OnPress(event.GetPosition()); });
  native->Bind(wxEVT_MOTION, [this](wxMouseEvent& event) { OnMove(event.GetPosition()); });
  native->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& event) { OnRelease(event.GetPosition()); });
  native->Bind(wxEVT_LEFT_DCLICK, [this](wxMouseEvent& event) {
    const wxPoint at = event.GetPosition();
    if (PartAt(at) != kCaption) return OnPress(at);
    Push(window().IsIconic() ? kMinimize : kMaximize);
  });
  native->Bind(wxEVT_MOUSE_CAPTURE_LOST, [this](wxMouseCaptureLostEvent&) {
    held_ = kNothing;
    this->native()->Refresh();
  });
  return native;
}

void ChildFrameMirror::Apply(const Changes& changes) {
  PlainMirror::Apply(changes);
  // Another one is the active one then.
  if (changes.Has(dq::WindowChange::kOrder)) native()->GetParent()->Refresh();
}

void ChildFrameMirror::ShowPlace() {
  CRect place = window().GetPlace();
  const CRect frame = ChildFrameWidths(window());
  const CRect within{frame.left, frame.top, place.Width() - frame.right,
                     place.Height() - frame.bottom};
  wxRect inside = scale().ToNative(within);
  if (window().IsIconic()) {
    place.bottom = place.top + frame.top + frame.bottom;
    // Out of sight.
    inside.y = scale().ToNative(place.Height());
  }
  inside_->SetSize(inside.x, inside.y, std::max(0, inside.width), std::max(0, inside.height));
  native()->SetSize(scale().ToNative(place));
  native()->Refresh();
}

void ChildFrameMirror::ShowText() { native()->Refresh(); }

void ChildFrameMirror::Trace(TraceLine& line) const {
  const wxPoint at = inside_->GetPosition();
  line.Add("inset", {at.x, at.y});
}

// ---- How it looks

/// They stand at the right end of the caption.
wxRect ChildFrameMirror::ButtonRect(Part button) const {
  const int place = button == kClose ? 1 : button == kMaximize ? 2 : 3;
  const int side = scale().ToNative(kCaptionHeight);
  const int border = scale().ToNative(kBorder);
  return {native()->GetSize().x - border - place * side, border, side, side};
}

void ChildFrameMirror::OnPaint() {
  wxPaintDC context(native());
  const bool is_active = IsActive(window());
  context.SetBackground(wxBrush(SystemColor(wxSYS_COLOUR_BTNFACE)));
  context.Clear();
  const wxSize size = native()->GetSize();
  const int border = scale().ToNative(kBorder);
  context.SetPen(wxPen(SystemColor(wxSYS_COLOUR_BTNSHADOW)));
  context.SetBrush(*wxTRANSPARENT_BRUSH);
  context.DrawRectangle(wxRect(size));
  const wxRect caption(border, border, size.x - 2 * border, scale().ToNative(kCaptionHeight));
  context.SetPen(*wxTRANSPARENT_PEN);
  context.SetBrush(
      wxBrush(SystemColor(is_active ? wxSYS_COLOUR_HIGHLIGHT : wxSYS_COLOUR_BTNSHADOW)));
  context.DrawRectangle(caption);
  const wxColour ink = SystemColor(is_active ? wxSYS_COLOUR_HIGHLIGHTTEXT : wxSYS_COLOUR_BTNTEXT);
  context.SetTextForeground(ink);
  context.SetPen(wxPen(ink));
  context.SetBrush(*wxTRANSPARENT_BRUSH);
  for (const Part button : {kMinimize, kMaximize, kClose}) DrawButton(context, button);
  context.SetFont(DialogFont());
  const wxRect room(caption.x + border, caption.y,
                    std::max(0, ButtonRect(kMinimize).x - caption.x - 2 * border), caption.height);
  const wxString text = wxControl::Ellipsize(ToNative(window().GetWindowText().View()), context,
                                             wxELLIPSIZE_END, room.width, wxELLIPSIZE_FLAGS_NONE);
  const wxDCClipper clip(context, room);
  context.DrawLabel(text, room, wxALIGN_LEFT | wxALIGN_CENTER_VERTICAL);
}

void ChildFrameMirror::DrawButton(wxDC& context, Part button) const {
  wxRect sign = ButtonRect(button);
  sign.Deflate(sign.width / 3 - (held_ == button ? 1 : 0));
  const bool restores = button == kMinimize ? window().IsIconic() : window().IsZoomed();
  if (button == kClose) {
    context.DrawLine(sign.GetTopLeft(), sign.GetBottomRight() + wxPoint(1, 1));
    context.DrawLine(sign.GetBottomLeft(), sign.GetTopRight() + wxPoint(1, -1));
  } else if (restores) {
    context.DrawRectangle(sign.x, sign.y + 2, sign.width - 2, sign.height - 2);
    context.DrawLine(sign.x + 2, sign.y, sign.GetRight(), sign.y);
    context.DrawLine(sign.GetRight(), sign.y, sign.GetRight(), sign.GetBottom() - 2);
  } else if (button == kMaximize) {
    context.DrawRectangle(sign);
    context.DrawLine(sign.x, sign.y + 1, sign.GetRight(), sign.y + 1);
  } else {
    context.DrawLine(sign.x, sign.GetBottom(), sign.GetRight() + 1, sign.GetBottom());
  }
}

// ---- What a person does

unsigned ChildFrameMirror::PartAt(const wxPoint& at) const {
  for (const Part button : {kMinimize, kMaximize, kClose}) {
    if (ButtonRect(button).Contains(at)) return button;
  }
  const wxSize size = native()->GetSize();
  const int border = scale().ToNative(kBorder);
  const wxRect within(border, border, size.x - 2 * border, size.y - 2 * border);
  if (within.Contains(at)) return kCaption;
  const int corner = scale().ToNative(kCorner);
  unsigned edges = kNothing;
  if (at.x < corner) edges |= kLeft;
  if (at.y < corner) edges |= kTop;
  if (at.x >= size.x - corner) edges |= kRight;
  if (at.y >= size.y - corner) edges |= kBottom;
  return window().IsZoomed() || window().IsIconic() ? kNothing : edges;
}

/// A point of the display in the parent, where no frame would be dragged out of sight.
wxPoint ChildFrameMirror::InParent(const wxPoint& on_display) const {
  const wxWindow& parent = *native()->GetParent();
  const wxPoint at = parent.ScreenToClient(on_display);
  const wxSize size = parent.GetClientSize();
  return {std::clamp(at.x, 0, std::max(0, size.x)), std::clamp(at.y, 0, std::max(0, size.y))};
}

void ChildFrameMirror::OnPress(const wxPoint& at) {
  held_ = PartAt(at);
  // The pointer may have gone on since.
  from_ = InParent(native()->ClientToScreen(at));
  place_ = window().GetPlace();
  native()->Refresh();
  if (held_ != kNothing && !native()->HasCapture()) native()->CaptureMouse();
  // It becomes the active one by that.
  Post([](CWnd& window) {
    if (!window.IsChild(CWnd::GetFocus())) window.SetFocus();
  });
}

void ChildFrameMirror::OnMove(const wxPoint& at) {
  const unsigned part = held_ != kNothing ? held_ : PartAt(at);
  const bool across = (part & (kLeft | kRight)) != 0;
  const bool down = (part & (kTop | kBottom)) != 0;
  const bool falls = (part & (kLeft | kTop)) == (kLeft | kTop) ||
                     (part & (kRight | kBottom)) == (kRight | kBottom);
  native()->SetCursor(wxCursor(across && down ? (falls ? wxCURSOR_SIZENWSE : wxCURSOR_SIZENESW)
                               : across       ? wxCURSOR_SIZEWE
                               : down         ? wxCURSOR_SIZENS
                                              : wxCURSOR_ARROW));
  if ((held_ & (kEdges | kCaption)) == 0 || window().IsZoomed()) return;
  // The event's place is in a frame that has moved since.
  const dq::CPoint way = scale().ToLogical(InParent(wxGetMousePosition()) - from_);
  Post([held = held_, from = place_, way](CWnd& window) {
    const dq::HWND self = window.GetSafeHwnd();
    const dq::CSize least = LeastSize(window);
    if (CWnd::FromHandle(self) == &window) window.MoveWindow(Dragged(from, held, way, least));
  });
}

/// The place with what is held of it moved that way.
CRect ChildFrameMirror::Dragged(CRect place, unsigned held, const dq::CPoint& way,
                                const dq::CSize& least) {
  if (held == kCaption) place.OffsetRect(way.x, way.y);
  if ((held & kLeft) != 0) place.left = std::min(place.left + way.x, place.right - least.cx);
  if ((held & kTop) != 0) place.top = std::min(place.top + way.y, place.bottom - least.cy);
  if ((held & kRight) != 0) place.right = std::max(place.right + way.x, place.left + least.cx);
  if ((held & kBottom) != 0) place.bottom = std::max(place.bottom + way.y, place.top + least.cy);
  return place;
}

void ChildFrameMirror::OnRelease(const wxPoint& at) {
  if (native()->HasCapture()) native()->ReleaseMouse();
  const unsigned held = std::exchange(held_, kNothing);
  native()->Refresh();
  if (held == PartAt(at)) Push(held);
}

/// One of the buttons.
void ChildFrameMirror::Push(unsigned part) {
  Post([part](CWnd& window) {
    if (part == kClose) window.PostMessage(dq::WM_CLOSE);
    if (part == kMinimize) window.ShowWindow(window.IsIconic() ? dq::SW_RESTORE : dq::SW_MINIMIZE);
    if (part == kMaximize) {
      window.ShowWindow(window.IsZoomed() ? dq::SW_RESTORE : dq::SW_SHOWMAXIMIZED);
    }
  });
}

}  // namespace workbench
