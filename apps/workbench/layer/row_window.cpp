#include "apps/workbench/layer/row_window.h"

#include <algorithm>
#include <utility>
#include <wx/dcclient.h>

#include "apps/workbench/layer/renderer.h"
#include "apps/workbench/layer/style.h"

namespace workbench {
namespace {

/// Pixels of the display around a text, as its font is high.
int MarginOf(int line_height) { return std::max(1, line_height / 10); }

}  // namespace

RowSource::~RowSource() = default;

RowWindow::RowWindow(wxWindow* parent, const RowSource& source, Events events)
    : wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxVSCROLL | wxWANTS_CHARS),
      source_(source),
      events_(std::move(events)) {
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  SetFont(DialogFont());
  row_height_ = GetCharHeight() + 2 * MarginOf(GetCharHeight());
  Bind(wxEVT_PAINT, [this](wxPaintEvent&) { OnPaint(); });
  Bind(wxEVT_SIZE, [this](wxSizeEvent&) { UpdateScrollBar(); });
  Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent& event) { OnLeftDown(event.GetPosition()); });
  Bind(wxEVT_LEFT_DCLICK, [this](wxMouseEvent& event) {
    const int row = RowAt(event.GetPosition());
    OnLeftDown(event.GetPosition());
    if (row >= 0) events_.double_hit(row);
  });
  Bind(wxEVT_MOTION, [this](wxMouseEvent& event) { OnPointer(event.GetPosition()); });
  Bind(wxEVT_MOUSEWHEEL, [this](wxMouseEvent& event) {
    constexpr int kRowsOfNotch = 3;
    const int notches = event.GetWheelRotation() / std::max(1, event.GetWheelDelta());
    SetFirst(first_ - notches * kRowsOfNotch);
    events_.scrolled(first_);
  });
  for (const auto& type :
       {wxEVT_SCROLLWIN_TOP, wxEVT_SCROLLWIN_BOTTOM, wxEVT_SCROLLWIN_LINEUP,
        wxEVT_SCROLLWIN_LINEDOWN, wxEVT_SCROLLWIN_PAGEUP, wxEVT_SCROLLWIN_PAGEDOWN,
        wxEVT_SCROLLWIN_THUMBTRACK, wxEVT_SCROLLWIN_THUMBRELEASE}) {
    Bind(type, &RowWindow::OnScroll, this);
  }
  for (const auto& type : {wxEVT_SET_FOCUS, wxEVT_KILL_FOCUS}) {
    Bind(type, [this](wxFocusEvent& event) {
      event.Skip();
      Refresh();
    });
  }
}

// ---- Rows in sight

int RowWindow::Page() const { return std::max(1, GetClientSize().y / row_height_); }

void RowWindow::ShowRows() {
  caret_ = std::min(caret_, source_.Count() - 1);
  UpdateScrollBar();
  Refresh();
}

void RowWindow::UpdateScrollBar() {
  const int count = source_.Count();
  first_ = std::clamp(first_, 0, std::max(0, count - Page()));
  if (GetScrollPos(wxVERTICAL) != first_ || GetScrollRange(wxVERTICAL) != count ||
      GetScrollThumb(wxVERTICAL) != Page()) {
    SetScrollbar(wxVERTICAL, first_, Page(), count);
  }
}

void RowWindow::SetFirst(int row) {
  const int former = std::exchange(first_, row);
  UpdateScrollBar();
  if (first_ != former) Refresh();
}

void RowWindow::ShowRow(int row) {
  if (row < 0) return;
  if (row < first_) {
    SetFirst(row);
  } else if (row >= first_ + Page()) {
    SetFirst(row - Page() + 1);
  }
}

void RowWindow::SetCaret(int row) {
  if (std::exchange(caret_, row) == row) return;
  ShowRow(row);
  Refresh();
}

int RowWindow::RowAt(const wxPoint& at) const {
  if (!wxRect(GetClientSize()).Contains(at)) return -1;
  const int row = first_ + at.y / row_height_;
  return row < source_.Count() ? row : -1;
}

wxRect RowWindow::RowRect(int row) const {
  return {0, (row - first_) * row_height_, GetClientSize().x, row_height_};
}

wxRect RowWindow::MarkRect(const wxRect& row) const {
  const int size = row_height_ - 2 * MarginOf(row_height_);
  return {row.x + MarginOf(row_height_), row.y + (row.height - size) / 2, size, size};
}

// ---- Drawing

void RowWindow::OnPaint() {
  wxPaintDC context(this);
  context.SetBackground(wxBrush(SystemColor(wxSYS_COLOUR_LISTBOX)));
  context.Clear();
  context.SetFont(GetFont());
  const int last = std::min(source_.Count() - 1, first_ + Page());
  for (int row = first_; row <= last; ++row) DrawRow(context, row);
}

void RowWindow::DrawRow(wxDC& context, int row) {
  const wxRect rect = RowRect(row);
  const bool is_active = IsEnabled() && source_.IsEnabled(row);
  const bool is_selected = follows_ ? row == caret_ : source_.IsSelected(row);
  if (is_selected) {
    context.SetPen(*wxTRANSPARENT_PEN);
    context.SetBrush(
        wxBrush(SystemColor(is_active ? wxSYS_COLOUR_HIGHLIGHT : wxSYS_COLOUR_BTNSHADOW)));
    context.DrawRectangle(rect);
  }
  context.SetTextForeground(SystemColor(!is_active    ? wxSYS_COLOUR_GRAYTEXT
                                        : is_selected ? wxSYS_COLOUR_LISTBOXHIGHLIGHTTEXT
                                                      : wxSYS_COLOUR_LISTBOXTEXT));
  const int margin = MarginOf(row_height_);
  int left = rect.x + 2 * margin;
  const int mark = source_.Mark(row);
  if (mark != RowSource::kNoMark) {
    const wxRect box = MarkRect(rect);
    const int state = When(mark == 1, wxCONTROL_CHECKED) | When(mark == 2, wxCONTROL_UNDETERMINED) |
                      When(!is_active, wxCONTROL_DISABLED);
    Renderer().DrawCheckBox(this, context, box, state);
    left = box.GetRight() + 2 * margin;
  }
  context.DrawText(source_.Text(row), left, rect.y + (rect.height - context.GetCharHeight()) / 2);
  if (row == caret_ && HasFocus() && !follows_) {
    Renderer().DrawFocusRect(this, context, rect, When(is_selected, wxCONTROL_SELECTED));
  }
}

// ---- The mouse

void RowWindow::OnLeftDown(const wxPoint& at) {
  if (!follows_) SetFocus();
  const int row = RowAt(at);
  if (row < 0) return;
  SetCaret(row);
  const bool on_mark =
      source_.Mark(row) != RowSource::kNoMark && at.x <= MarkRect(RowRect(row)).GetRight();
  (on_mark ? events_.mark : events_.hit)(row);
}

void RowWindow::OnPointer(const wxPoint& at) {
  const int row = RowAt(at);
  if (follows_ && row >= 0) SetCaret(row);
  if (std::exchange(tip_row_, row) == row) return;
  const wxString tip = row < 0 ? wxString() : source_.Tip(row);
  if (!tip.empty()) {
    SetToolTip(tip);
  } else if (GetToolTip() != nullptr) {
    UnsetToolTip();
  }
}

void RowWindow::OnScroll(wxScrollWinEvent& event) {
  const wxEventType type = event.GetEventType();
  int first = event.GetPosition();
  if (type == wxEVT_SCROLLWIN_TOP) first = 0;
  if (type == wxEVT_SCROLLWIN_BOTTOM) first = source_.Count();
  if (type == wxEVT_SCROLLWIN_LINEUP) first = first_ - 1;
  if (type == wxEVT_SCROLLWIN_LINEDOWN) first = first_ + 1;
  if (type == wxEVT_SCROLLWIN_PAGEUP) first = first_ - Page();
  if (type == wxEVT_SCROLLWIN_PAGEDOWN) first = first_ + Page();
  SetFirst(first);
  events_.scrolled(first_);
}

// ---- Keys

std::optional<int> RowWindow::RowOfKey(const KeyStroke& stroke, int from) const {
  if (stroke.modifiers.alt || stroke.modifiers.control) return std::nullopt;
  const int last = source_.Count() - 1;
  const auto row = [last](int wanted) { return std::clamp(wanted, 0, std::max(0, last)); };
  switch (stroke.key) {
    case dq::VK_UP:
    case dq::VK_LEFT:
      return row(from - 1);
    case dq::VK_DOWN:
    case dq::VK_RIGHT:
      return row(from + 1);
    case dq::VK_PRIOR:
      return row(from - std::max(1, Page() - 1));
    case dq::VK_NEXT:
      return row(from + std::max(1, Page() - 1));
    case dq::VK_HOME:
      return row(0);
    case dq::VK_END:
      return row(last);
    default:
      return std::nullopt;
  }
}

}  // namespace workbench
