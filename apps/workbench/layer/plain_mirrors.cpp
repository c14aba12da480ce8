#include "apps/workbench/layer/plain_mirrors.h"

#include <algorithm>
#include <cstdint>
#include <gtk/gtk.h>
#include <iterator>
#include <limits>
#include <utility>
#include <wx/artprov.h>
#include <wx/dcclient.h>
#include <wx/settings.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "apps/workbench/layer/bar_mirrors.h"
#include "apps/workbench/layer/gtk_window.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/mouse.h"
#include "apps/workbench/layer/native_dc.h"
#include "apps/workbench/layer/text.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/view.h"

namespace workbench {
namespace {

using dq::CWnd;
using dq::WindowChange;

/// Whether it has had something to scroll.
bool HasBars(const CWnd& window) {
  return window.GetScrollInfo(dq::SB_HORZ) != dq::SCROLLINFO() ||
         window.GetScrollInfo(dq::SB_VERT) != dq::SCROLLINFO();
}

/// How much a scroll bar runs over.
int LengthOf(const dq::SCROLLINFO& info) {
  constexpr std::int64_t kMost = std::numeric_limits<int>::max();
  return static_cast<int>(
      std::clamp<std::int64_t>(std::int64_t{info.nMax} - info.nMin + 1, 0, kMost));
}

}  // namespace

// ---- Windows that draw themselves

wxWindow* PlainMirror::DoMake(wxWindow* parent) {
  has_bars_ = HasBars(window());
  auto* const native = new wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                    wxWANTS_CHARS | (has_bars_ ? wxHSCROLL | wxVSCROLL : 0));
  if (has_bars_) {
    KeepBarsBeside(*native);
    for (const auto& type :
         {wxEVT_SCROLLWIN_TOP, wxEVT_SCROLLWIN_BOTTOM, wxEVT_SCROLLWIN_LINEUP,
          wxEVT_SCROLLWIN_LINEDOWN, wxEVT_SCROLLWIN_PAGEUP, wxEVT_SCROLLWIN_PAGEDOWN,
          wxEVT_SCROLLWIN_THUMBTRACK, wxEVT_SCROLLWIN_THUMBRELEASE}) {
      native->Bind(type, [this](wxScrollWinEvent& event) { OnScroll(event); });
    }
  }
  WhenMapped(*native, [this] { PostFact([this](CWnd& window) { layer().RaiseInOrder(window); }); });
  native->Bind(wxEVT_PAINT, [this, native](wxPaintEvent&) {
    wxPaintDC context(native);
    if (picture_.IsOk()) context.DrawBitmap(picture_, 0, 0);
  });
  TakeNoKeys(*native);
  ReportMouse(layer(), *native, handle());
  return native;
}

bool PlainMirror::Serves(const CWnd& window) const { return has_bars_ || !HasBars(window); }

void PlainMirror::Apply(const Changes& changes) {
  Mirror::Apply(changes);
  if (has_bars_ && changes.Has(WindowChange::kScroll)) {
    ShowBar(dq::SB_HORZ);
    ShowBar(dq::SB_VERT);
  }
  if (changes.Has(WindowChange::kInvalidated) && !std::exchange(paints_, true)) {
    PostFact([this](CWnd& window) { Paint(window); });
  }
}

void PlainMirror::ShowContent(const Changes&) {
  layer().ShowOutlines(handle(), DraggedPlaces(window()));
}

void PlainMirror::Paint(CWnd& window) {
  paints_ = false;
  if (!window.IsWindowVisible()) return;
  const wxSystemColour ground = dynamic_cast<const dq::CView*>(&window) != nullptr
                                    ? wxSYS_COLOUR_WINDOW
                                    : wxSYS_COLOUR_BTNFACE;
  const dq::HWND self = handle();
  const dq::CSize area = window.GetClientRect().Size();
  // A picture of another size has nothing of what was drawn.
  if (picture_.IsOk() && picture_.GetSize() != scale().ToNative(area)) window.Invalidate();
  const dq::CRect update = window.GetUpdateRect();
  if (update.IsRectEmpty()) return;
  NativeDC context(area, scale(), picture_, wxSystemSettings::GetColour(ground));
  context.IntersectClipRect(update);
  window.Paint(context);
  if (layer().Find(self) != this || !context.HasDrawn()) return;
  Inside()->RefreshRect(scale().ToNative(update), false);
}

void PlainMirror::ShowBar(dq::ScrollBar bar) {
  const dq::SCROLLINFO info = window().GetScrollInfo(bar);
  const int range = LengthOf(info);
  const int orientation = bar == dq::SB_HORZ ? wxHORIZONTAL : wxVERTICAL;
  const std::int64_t position = std::int64_t{info.nPos} - info.nMin;
  Inside()->SetScrollbar(orientation, static_cast<int>(std::min<std::int64_t>(position, range)),
                         info.nPage, range);
}

void PlainMirror::OnScroll(wxScrollWinEvent& event) {
  static constexpr struct {
    const wxEventTypeTag<wxScrollWinEvent>& type;
    dq::ScrollCode code;
  } kCodes[] = {
      {wxEVT_SCROLLWIN_TOP, dq::SB_TOP},
      {wxEVT_SCROLLWIN_BOTTOM, dq::SB_BOTTOM},
      {wxEVT_SCROLLWIN_LINEUP, dq::SB_LINEUP},
      {wxEVT_SCROLLWIN_LINEDOWN, dq::SB_LINEDOWN},
      {wxEVT_SCROLLWIN_PAGEUP, dq::SB_PAGEUP},
      {wxEVT_SCROLLWIN_PAGEDOWN, dq::SB_PAGEDOWN},
      {wxEVT_SCROLLWIN_THUMBTRACK, dq::SB_THUMBTRACK},
      {wxEVT_SCROLLWIN_THUMBRELEASE, dq::SB_THUMBPOSITION},
  };
  const auto* const found = std::ranges::find_if(
      kCodes, [&](const auto& each) { return each.type == event.GetEventType(); });
  if (found == std::end(kCodes)) return;
  const bool is_vertical = event.GetOrientation() == wxVERTICAL;
  Post([=, this, position = event.GetPosition()](CWnd& window) {
    const dq::SCROLLINFO info = window.GetScrollInfo(is_vertical ? dq::SB_VERT : dq::SB_HORZ);
    const int place = info.nMin + position;
    // The bar shows what the window makes of it.
    layer().Mark(window, WindowChange::kScroll);
    window.SendMessage(is_vertical ? dq::WM_VSCROLL : dq::WM_HSCROLL,
                       dq::MakeScrollParam(found->code, place));
  });
}

dq::CRect ScrollBarWidths(const CWnd& window) {
  const auto width = [&window](dq::ScrollBar bar, dq::SystemMetric metric) {
    const dq::SCROLLINFO info = window.GetScrollInfo(bar);
    const bool is_shown = LengthOf(info) > std::max(1, info.nPage);
    return is_shown ? dq::LONG{dq::GetSystemMetrics(metric)} : 0;
  };
  return {0, 0, width(dq::SB_VERT, dq::SM_CXVSCROLL), width(dq::SB_HORZ, dq::SM_CYHSCROLL)};
}

// ---- Labels

wxWindow* LabelMirror::DoMake(wxWindow* parent) {
  auto* const label = new wxStaticText(parent, wxID_ANY, wxString(), wxDefaultPosition,
                                       wxDefaultSize, wxST_NO_AUTORESIZE);
  WrapLabel(*label);
  // Whom the label is for the library knows; the toolkit would give the keyboard to what is around
  // it.
  g_signal_connect(label->m_widget, "mnemonic-activate",
                   G_CALLBACK(+[]() -> gboolean { return TRUE; }), nullptr);
  return label;
}

void LabelMirror::ShowText() { native()->SetLabel(ToNative(window().GetWindowText().View())); }

wxWindow* IconMirror::DoMake(wxWindow* parent) {
  const std::string name(window().GetWindowText().View());
  const wxSize size = scale().ToNative(window().GetPlace().Size());
  const wxBitmap picture =
      wxArtProvider::GetBitmap("wxART_" + wxString(name).Upper(), wxART_MESSAGE_BOX, size);
  return new wxStaticBitmap(parent, wxID_ANY, picture);
}

}  // namespace workbench
