#include "apps/workbench/layer/bar_mirrors.h"

#include <utility>
#include <wx/dcclient.h>
#include <wx/image.h>

#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/mouse.h"
#include "apps/workbench/layer/pictures.h"
#include "apps/workbench/layer/renderer.h"
#include "apps/workbench/layer/style.h"
#include "apps/workbench/layer/text.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/splitter_wnd.h"
#include "dqlib/framework/windows/status_bar.h"
#include "dqlib/framework/windows/tool_bar.h"

namespace workbench {
namespace {

using dq::CStatusBar;
using dq::CToolBar;
using dq::CWnd;

/// What a command's string has behind its line end.
wxString TipOf(dq::UINT command) {
  const std::string_view text = dq::AfxFindString(command).value_or(std::string_view());
  const std::size_t end = text.find('\n');
  return end == std::string_view::npos ? wxString() : ToNative(text.substr(end + 1));
}

}  // namespace

std::vector<dq::CRect> DraggedPlaces(const CWnd& window) {
  std::vector<dq::CRect> places;
  if (const auto* const bar = dynamic_cast<const dq::CControlBar*>(&window)) {
    places.push_back(bar->GetDragRect());
  }
  if (const auto* const splitter = dynamic_cast<const dq::CSplitterWnd*>(&window)) {
    const dq::CPoint origin = splitter->ClientToScreen({});
    for (dq::CRect bar : {splitter->GetTrackedRowBar(), splitter->GetTrackedColumnBar()}) {
      if (bar.IsRectEmpty()) continue;
      bar.OffsetRect(origin.x, origin.y);
      places.push_back(bar);
    }
  }
  std::erase_if(places, [](const dq::CRect& place) { return place.IsRectEmpty(); });
  return places;
}

// ---- Tool bars

CToolBar* ToolBarMirror::bar() const { return As<CToolBar>(); }

wxWindow* ToolBarMirror::DoMake(wxWindow* parent) {
  auto* const face = new wxWindow(parent, wxID_ANY);
  face->SetBackgroundStyle(wxBG_STYLE_PAINT);
  face->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { OnPaint(); });
  // What isn't about a button is the bar's own: its gripper and its sizing edge.
  ReportMouse(layer(), *face, handle());
  face->Bind(wxEVT_MOTION, [this](wxMouseEvent& event) {
    OnPointer(ButtonAt(event.GetPosition()));
    event.Skip();
  });
  face->Bind(wxEVT_LEAVE_WINDOW, [this](wxMouseEvent&) { OnPointer(-1); });
  for (const auto& type : {wxEVT_LEFT_DOWN, wxEVT_LEFT_DCLICK}) {
    face->Bind(type, [this](wxMouseEvent& event) {
      held_ = ButtonAt(event.GetPosition());
      native()->Refresh();
      event.Skip(held_ < 0);
    });
  }
  face->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& event) {
    event.Skip(held_ < 0);
    OnRelease(ButtonAt(event.GetPosition()));
  });
  return face;
}

void ToolBarMirror::ShowContent(const Changes&) {
  native()->Refresh();
  layer().ShowOutlines(handle(), DraggedPlaces(window()));
}

/// As the bar itself would.
void ToolBarMirror::DrawGrips(wxDC& context) {
  const wxColour light = SystemColor(wxSYS_COLOUR_BTNHIGHLIGHT);
  const wxColour dark = SystemColor(wxSYS_COLOUR_BTNSHADOW);
  for (const dq::CRect& part : {bar()->GetGripperRect(), bar()->GetSizingRect()}) {
    const wxRect rect = scale().ToNative(part);
    if (rect.IsEmpty()) continue;
    context.SetPen(wxPen(dark));
    context.DrawLine(rect.GetBottomLeft(), rect.GetBottomRight());
    context.DrawLine(rect.GetTopRight(), rect.GetBottomRight());
    context.SetPen(wxPen(light));
    context.DrawLine(rect.GetTopLeft(), rect.GetTopRight());
    context.DrawLine(rect.GetTopLeft(), rect.GetBottomLeft());
  }
}

int ToolBarMirror::ButtonAt(const wxPoint& at) const {
  if (bar() == nullptr) return -1;
  for (int position = 0; position < bar()->GetItemCount(); ++position) {
    const bool is_button = bar()->GetItemID(position) != 0;
    if (is_button && scale().ToNative(bar()->GetItemRect(position)).Contains(at)) return position;
  }
  return -1;
}

void ToolBarMirror::OnPointer(int button) {
  if (std::exchange(pointed_, button) == button) return;
  native()->Refresh();
  const wxString tip = button < 0 ? wxString() : TipOf(bar()->GetItemID(button));
  if (!tip.empty()) {
    native()->SetToolTip(tip);
  } else if (native()->GetToolTip() != nullptr) {
    native()->UnsetToolTip();
  }
}

void ToolBarMirror::OnRelease(int button) {
  const int held = std::exchange(held_, -1);
  native()->Refresh();
  if (button < 0 || button != held) return;
  PostTo<CToolBar>([command = bar()->GetItemID(button)](CToolBar& own) {
    own.ClickButton(own.CommandToIndex(command));
  });
}

void ToolBarMirror::OnPaint() {
  wxPaintDC context(native());
  context.SetBackground(wxBrush(SystemColor(wxSYS_COLOUR_BTNFACE)));
  context.Clear();
  if (bar() == nullptr) return;
  DrawGrips(context);
  for (int position = 0; position < bar()->GetItemCount(); ++position) {
    const dq::ToolBarButton button = bar()->GetButton(position);
    const wxRect rect = scale().ToNative(bar()->GetItemRect(position));
    if (button.command == 0) {
      context.SetPen(wxPen(SystemColor(wxSYS_COLOUR_BTNSHADOW)));
      const wxPoint middle(rect.x + rect.width / 2, rect.y + rect.height / 2);
      if (bar()->IsVertical()) {
        context.DrawLine(rect.x + 2, middle.y, rect.GetRight() - 1, middle.y);
      } else {
        context.DrawLine(middle.x, rect.y + 2, middle.x, rect.GetBottom() - 1);
      }
      continue;
    }
    const bool is_down = button.pressed || position == held_ || button.checked != 0;
    if (is_down || (position == pointed_ && button.enabled)) {
      Renderer().DrawPushButton(native(), context, rect,
                                is_down ? wxCONTROL_PRESSED : wxCONTROL_CURRENT);
    }
    const dq::CSize size = bar()->GetPictureSize();
    const wxSize picture(scale().ToNative(size.cx), scale().ToNative(size.cy));
    const wxBitmap bitmap = layer().PictureOf(button.command, picture, button.enabled);
    if (!bitmap.IsOk()) continue;
    context.DrawBitmap(bitmap, rect.x + (rect.width - picture.x) / 2,
                       rect.y + (rect.height - picture.y) / 2, true);
  }
}

void ToolBarMirror::Trace(TraceLine& line) const {
  std::string buttons = "[";
  for (int position = 0; bar() != nullptr && position < bar()->GetItemCount(); ++position) {
    const wxRect rect = scale().ToNative(bar()->GetItemRect(position));
    const wxPoint middle(rect.x + rect.width / 2, rect.y + rect.height / 2);
    if (position > 0) buttons += ',';
    buttons += '[' + std::to_string(bar()->GetItemID(position)) + ',' + std::to_string(middle.x) +
               ',' + std::to_string(middle.y) + ']';
  }
  line.AddRaw("buttons", buttons + ']');
}

// ---- Status bars

wxWindow* StatusBarMirror::DoMake(wxWindow* parent) {
  auto* const face = new wxWindow(parent, wxID_ANY);
  face->SetBackgroundStyle(wxBG_STYLE_PAINT);
  face->SetFont(DialogFont());
  face->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { OnPaint(); });
  face->Bind(wxEVT_SIZE, [face](wxSizeEvent&) { face->Refresh(); });
  return face;
}

void StatusBarMirror::ShowContent(const Changes&) { native()->Refresh(); }

void StatusBarMirror::OnPaint() {
  wxPaintDC context(native());
  context.SetBackground(wxBrush(SystemColor(wxSYS_COLOUR_BTNFACE)));
  context.Clear();
  context.SetFont(native()->GetFont());
  const auto* const bar = As<CStatusBar>();
  for (int position = 0; bar != nullptr && position < bar->GetItemCount(); ++position) {
    const dq::StatusPane pane = bar->GetPane(position);
    const wxRect rect = scale().ToNative(bar->GetItemRect(position));
    if (rect.IsEmpty()) continue;
    if ((pane.style & dq::SBPS_NOBORDERS) == 0) {
      context.SetPen(wxPen(SystemColor(wxSYS_COLOUR_BTNSHADOW)));
      context.SetBrush((pane.style & dq::SBPS_POPOUT) != 0
                           ? wxBrush(SystemColor(wxSYS_COLOUR_BTNHIGHLIGHT))
                           : *wxTRANSPARENT_BRUSH);
      context.DrawRectangle(rect);
    }
    if ((pane.style & dq::SBPS_DISABLED) != 0) continue;
    context.SetTextForeground(SystemColor(wxSYS_COLOUR_BTNTEXT));
    const wxDCClipper clip(context, rect);
    constexpr dq::LONG kTextMargin = 3;
    context.DrawText(ToNative(pane.text.View()), rect.x + scale().ToNative(kTextMargin),
                     rect.y + (rect.height - context.GetCharHeight()) / 2);
  }
}

}  // namespace workbench
