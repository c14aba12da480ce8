#include "apps/workbench/layer/field_mirrors.h"

#include <algorithm>
#include <wx/calctrl.h>
#include <wx/dcclient.h>
#include <wx/gauge.h>

#include "apps/workbench/layer/gtk_window.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/renderer.h"
#include "apps/workbench/layer/style.h"
#include "apps/workbench/layer/text.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/controls/date_time_ctrl.h"
#include "dqlib/framework/controls/progress.h"

namespace workbench {
namespace {

using dq::CDateTimeCtrl;
using dq::CWnd;

// At 96 dots to the inch.
constexpr dq::LONG kMargin = 4;
constexpr dq::LONG kButtonWidth = 18;
constexpr dq::LONG kMark = 16;

}  // namespace

// ---- Progress bars

wxWindow* ProgressMirror::DoMake(wxWindow* parent) {
  return new wxGauge(parent, wxID_ANY, 1, wxDefaultPosition, wxDefaultSize,
                     wxGA_HORIZONTAL | wxGA_SMOOTH);
}

void ProgressMirror::ShowContent(const Changes&) {
  const auto* const bar = As<dq::CProgressCtrl>();
  if (bar == nullptr) return;
  auto* const gauge = static_cast<wxGauge*>(native());
  const int width = std::max(1, static_cast<int>(window().GetClientRect().Width()));
  gauge->SetRange(width);
  gauge->SetValue(std::clamp(bar->GetFilledWidth(), 0, width));
}

// ---- Fields

wxWindow* FieldMirror::DoMake(wxWindow* parent) {
  auto* const face =
      new wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxWANTS_CHARS);
  face->SetBackgroundStyle(wxBG_STYLE_PAINT);
  face->SetFont(DialogFont());
  TakeNoKeys(*face);
  face->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { OnPaint(); });
  for (const auto& type : {wxEVT_LEFT_DOWN, wxEVT_LEFT_DCLICK}) {
    face->Bind(type, [this](wxMouseEvent& event) {
      Post([this, at = event.GetPosition()](CWnd& pressed) {
        const dq::HWND self = handle();
        pressed.SetFocus();
        if (layer().Find(self) == this) OnPress(at);
      });
    });
  }
  return face;
}

void FieldMirror::Apply(const Changes& changes) {
  Mirror::Apply(changes);
  native()->Refresh();
}

wxRect FieldMirror::TextRect() const {
  wxRect rect(native()->GetClientSize());
  return rect.Deflate(scale().ToNative(kMargin), scale().ToNative(1));
}

int FieldMirror::ByteAt(int x) const {
  const ShownText text(window().GetWindowText().View(), false);
  wxClientDC context(native());
  context.SetFont(native()->GetFont());
  wxArrayInt widths;
  context.GetPartialTextExtents(text.native(), widths);
  long at = 0;
  while (at < text.size() && widths[static_cast<std::size_t>(at)] <= x - TextRect().x) ++at;
  return text.ByteAt(at);
}

void FieldMirror::OnPaint() {
  wxPaintDC context(native());
  context.SetBackground(wxBrush(SystemColor(wxSYS_COLOUR_BTNFACE)));
  context.Clear();
  const bool is_active = native()->IsEnabled();
  const bool has_focus = CWnd::GetFocus() == &window();
  Renderer().DrawTextCtrl(
      native(), context, wxRect(native()->GetClientSize()),
      When(!is_active, wxCONTROL_DISABLED) | When(has_focus, wxCONTROL_FOCUSED));
  const ShownText text(window().GetWindowText().View(), false);
  const wxRect rect = TextRect();
  context.SetFont(native()->GetFont());
  const int top = rect.y + (rect.height - context.GetCharHeight()) / 2;
  {
    const wxDCClipper clip(context, rect);
    const auto width_to = [&](long end) {
      return context.GetTextExtent(text.native().Left(static_cast<std::size_t>(end))).x;
    };
    const dq::ChangedRange chosen = has_focus ? Chosen() : dq::ChangedRange();
    const long first = text.CharacterAt(chosen.first);
    const long last = text.CharacterAt(chosen.first + chosen.count);
    context.SetTextForeground(
        SystemColor(is_active ? wxSYS_COLOUR_WINDOWTEXT : wxSYS_COLOUR_GRAYTEXT));
    context.DrawText(text.native(), rect.x, top);
    if (last > first) {
      const wxRect part(rect.x + width_to(first), top, width_to(last) - width_to(first),
                        context.GetCharHeight());
      context.SetPen(*wxTRANSPARENT_PEN);
      context.SetBrush(wxBrush(SystemColor(wxSYS_COLOUR_HIGHLIGHT)));
      context.DrawRectangle(part);
      context.SetTextForeground(SystemColor(wxSYS_COLOUR_HIGHLIGHTTEXT));
      context.DrawText(text.native().Mid(static_cast<std::size_t>(first),
                                         static_cast<std::size_t>(last - first)),
                       part.x, top);
    }
  }
  DrawParts(context, is_active);
}

// ---- Dates and times

DateTimeMirror::~DateTimeMirror() = default;

CDateTimeCtrl* DateTimeMirror::field() const { return As<CDateTimeCtrl>(); }

wxRect DateTimeMirror::MarkRect() const {
  if (field() == nullptr || !field()->GetStyle().optional) return {};
  const int size = scale().ToNative(kMark);
  return {scale().ToNative(kMargin) / 2, (native()->GetClientSize().y - size) / 2, size, size};
}

wxRect DateTimeMirror::ButtonRect() const {
  const wxSize size = native()->GetClientSize();
  const int width = std::min(scale().ToNative(kButtonWidth), size.x);
  return {size.x - width, 0, width, size.y};
}

wxRect DateTimeMirror::TextRect() const {
  wxRect rect = FieldMirror::TextRect();
  const int left = std::max(rect.x, MarkRect().GetRight() + scale().ToNative(kMargin));
  rect.width = std::max(0, ButtonRect().x - left);
  rect.x = left;
  return rect;
}

dq::ChangedRange DateTimeMirror::Chosen() const {
  return field() == nullptr ? dq::ChangedRange() : field()->GetPart();
}

void DateTimeMirror::DrawParts(wxDC& context, bool enabled) {
  if (field() == nullptr) return;
  const int state = When(!enabled, wxCONTROL_DISABLED);
  if (!MarkRect().IsEmpty()) {
    Renderer().DrawCheckBox(native(), context, MarkRect(),
                            state | When(field()->HasTime(), wxCONTROL_CHECKED));
  }
  const wxRect button = ButtonRect();
  if (!field()->GetStyle().time) {
    Renderer().DrawComboBoxDropButton(native(), context, button,
                                      state | When(popup_ != nullptr, wxCONTROL_PRESSED));
    return;
  }
  const wxColour color = SystemColor(enabled ? wxSYS_COLOUR_BTNTEXT : wxSYS_COLOUR_GRAYTEXT);
  for (const bool up : {true, false}) {
    const int half = button.height / 2;
    const wxRect rect(button.x, up ? 0 : half, button.width, up ? half : button.height - half);
    Renderer().DrawPushButton(native(), context, rect, state);
    context.SetPen(wxPen(color));
    context.SetBrush(wxBrush(color));
    DrawArrow(context, rect, up);
  }
}

void DateTimeMirror::OnPress(const wxPoint& at) {
  CDateTimeCtrl* const own = field();
  if (own == nullptr) return;
  if (MarkRect().Contains(at)) {
    own->Check(!own->HasTime());
  } else if (!ButtonRect().Contains(at)) {
    own->SelectPart(ByteAt(at.x));
  } else if (own->GetStyle().time) {
    own->Step(at.y < native()->GetClientSize().y / 2 ? 1 : -1);
  } else {
    Drop();
  }
}

void DateTimeMirror::Drop() {
  if (popup_ != nullptr) return Close();
  dq::SYSTEMTIME time;
  const bool has_time = field()->GetTime(&time) == dq::GDT_VALID;
  const wxDateTime shown =
      has_time ? wxDateTime(wxDateTime::wxDateTime_t{time.wDay},
                            static_cast<wxDateTime::Month>(time.wMonth - 1), int{time.wYear})
               : wxDateTime::Today();
  const auto close = [this] { Post([this](CWnd&) { Close(); }); };
  popup_ = std::make_unique<PopupWindow>(native(), close);
  auto* const calendar = new wxCalendarCtrl(popup_.get(), wxID_ANY, shown, wxPoint(1, 1));
  calendar_ = calendar;
  calendar->Bind(wxEVT_CALENDAR_SEL_CHANGED, [this](wxCalendarEvent& event) {
    const wxDateTime day = event.GetDate();
    PostTo<CDateTimeCtrl>(
        [year = day.GetYear(), month = int{day.GetMonth()} + 1,
         number = int{day.GetDay()}](CDateTimeCtrl& own) { own.Choose(year, month, number); });
  });
  calendar->Bind(wxEVT_CALENDAR_DOUBLECLICKED, [close](wxCalendarEvent&) { close(); });
  const wxSize size = calendar->GetBestSize();
  calendar->SetSize(size);
  popup_->ShowAt({native()->GetScreenPosition(), native()->GetSize()}, size + wxSize(2, 2));
  layer().NoteTraced(handle());
  native()->Refresh();
}

void DateTimeMirror::Close() {
  calendar_ = nullptr;
  popup_.reset();
  layer().NoteTraced(handle());
  native()->Refresh();
}

void DateTimeMirror::Trace(TraceLine& line) const {
  if (calendar_ == nullptr) return;
  const wxRect place(calendar_->GetScreenPosition(), calendar_->GetSize());
  line.Add("list", {place.x, place.y, place.width, place.height});
}

}  // namespace workbench
