#include "apps/workbench/layer/combo_mirror.h"

#include <algorithm>
#include <wx/dcclient.h>

#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/renderer.h"
#include "apps/workbench/layer/style.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/controls/combo_box.h"
#include "dqlib/toolkit/tool_tip_combo_box.h"

namespace workbench {

using dq::CComboBox;
using dq::CWnd;
using dq::WindowChange;

namespace {

/// Around the text, at 96 dots to the inch.
constexpr dq::LONG kMargin = 4;
constexpr dq::LONG kButtonWidth = 18;

}  // namespace

ComboMirror::~ComboMirror() = default;

CComboBox* ComboMirror::combo() const { return As<CComboBox>(); }

bool ComboMirror::Serves(const CWnd& window) const {
  const auto* const own = dynamic_cast<const CComboBox*>(&window);
  return own != nullptr && own->HasEditPart() == has_edit_;
}

wxWindow* ComboMirror::Focusable() {
  return text_ != nullptr ? static_cast<wxWindow*>(text_) : native();
}

wxWindow* ComboMirror::DoMake(wxWindow* parent) {
  has_edit_ = combo() != nullptr && combo()->HasEditPart();
  auto* const face =
      new wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxWANTS_CHARS);
  face->SetBackgroundStyle(wxBG_STYLE_PAINT);
  face->SetFont(DialogFont());
  face->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { OnPaint(); });
  for (const auto& type : {wxEVT_LEFT_DOWN, wxEVT_LEFT_DCLICK}) {
    face->Bind(type, [this](wxMouseEvent&) { OnPress(); });
  }
  if (has_edit_) {
    text_ = new wxTextCtrl(face, wxID_ANY);
    part_ = std::make_unique<EditPart>(*text_, false);
    text_->Bind(wxEVT_TEXT, [this](wxCommandEvent&) {
      part_->NoteEdit();
      Post([this](CWnd&) { TakeIn(); });
    });
  } else {
    for (const auto& type : {wxEVT_SET_FOCUS, wxEVT_KILL_FOCUS}) {
      face->Bind(type, [face](wxFocusEvent& event) {
        event.Skip();
        face->Refresh();
      });
    }
  }
  return face;
}

// ---- The face

int ComboMirror::Height() const {
  const int line = native()->GetCharHeight() + 2 * scale().ToNative(kMargin);
  const int whole = scale().ToNative(window().GetPlace()).height;
  return std::min(line, std::max(1, whole));
}

wxRect ComboMirror::ButtonRect() const {
  const wxSize size = native()->GetClientSize();
  const int width = std::min(scale().ToNative(kButtonWidth), size.x);
  return {size.x - width, 0, width, size.y};
}

void ComboMirror::ShowPlace() {
  const wxRect whole = scale().ToNative(window().GetPlace());
  native()->SetSize(whole.x, whole.y, whole.width, Height());
  if (text_ != nullptr) text_->SetSize(0, 0, ButtonRect().x, Height());
  native()->Refresh();
}

void ComboMirror::OnPaint() {
  wxPaintDC context(native());
  wxRendererNative& renderer = Renderer();
  const wxSize size = native()->GetClientSize();
  const int state =
      When(!native()->IsEnabled(), wxCONTROL_DISABLED) | When(rows_ != nullptr, wxCONTROL_PRESSED);
  if (has_edit_) {
    renderer.DrawComboBoxDropButton(native(), context, ButtonRect(), state);
    return;
  }
  renderer.DrawPushButton(native(), context, wxRect(size), state);
  renderer.DrawDropArrow(native(), context, ButtonRect(), state);
  context.SetFont(native()->GetFont());
  context.SetTextForeground(
      SystemColor(native()->IsEnabled() ? wxSYS_COLOUR_BTNTEXT : wxSYS_COLOUR_GRAYTEXT));
  const int margin = scale().ToNative(kMargin);
  const wxRect text(margin + 1, 0, ButtonRect().x - margin, size.y);
  context.SetClippingRegion(text);
  context.DrawText(ToNative(window().GetWindowText().View()), text.x,
                   (size.y - context.GetCharHeight()) / 2);
  context.DestroyClippingRegion();
  if (!native()->HasFocus()) return;
  renderer.DrawFocusRect(native(), context, wxRect(size).Deflate(scale().ToNative(2)));
}

void ComboMirror::OnPress() {
  Focusable()->SetFocus();
  Post([this](CWnd&) { Drop(!combo()->GetDroppedState()); });
}

// ---- What it shows

void ComboMirror::ShowText() {
  if (part_ != nullptr) part_->ShowText(window().GetWindowText().View());
  native()->Refresh();
}

void ComboMirror::ShowContent(const Changes& changes) {
  if (combo() == nullptr) return;
  if (part_ != nullptr && changes.Has(WindowChange::kSelection, WindowChange::kText)) {
    const dq::DWORD selected = combo()->GetEditSel();
    if (selected != 0xFFFFFFFF) part_->ShowSelection(dq::LoWord(selected), dq::HiWord(selected));
  }
  native()->Refresh();
  ShowList(combo()->GetDroppedState());
}

void ComboMirror::ShowList(bool show) {
  if (!show) {
    rows_ = nullptr;
    popup_.reset();
    return;
  }
  if (!native()->IsShownOnScreen()) return;
  const bool is_new = popup_ == nullptr;
  if (is_new) {
    popup_ =
        std::make_unique<PopupWindow>(native(), [this] { Post([this](CWnd&) { Drop(false); }); });
    rows_ = new RowWindow(popup_.get(), *this,
                          {.hit = [this](int row) { Post([this, row](CWnd&) { Choose(row); }); }});
    rows_->FollowPointer();
    UseDialogStyle(*popup_);
  }
  const dq::CRect place = window().GetPlace();
  const int most = std::max(1, (scale().ToNative(place).height - Height()) / rows_->row_height());
  const int shown = std::clamp(Count(), 1, most);
  const wxSize size(scale().ToNative(combo()->GetDroppedWidth()), shown * rows_->row_height() + 2);
  rows_->SetSize(1, 1, size.x - 2, size.y - 2);
  rows_->ShowRows();
  if (is_new) rows_->SetCaret(combo()->GetCurSel());
  popup_->ShowAt({native()->GetScreenPosition(), native()->GetSize()}, size);
}

int ComboMirror::Count() const { return combo() == nullptr ? 0 : combo()->GetCount(); }

wxString ComboMirror::Text(int row) const { return ToNative(combo()->GetLBText(row).View()); }

bool ComboMirror::IsSelected(int row) const { return row == combo()->GetCurSel(); }

wxString ComboMirror::Tip(int row) const {
  const auto* const tips = As<dq::CToolTipComboBox>();
  return tips == nullptr ? wxString() : ToNative(tips->GetItemTip(row).View());
}

// ---- What a person does

void ComboMirror::Drop(bool drop) {
  // One that can't be dropped, or is closed already, shows what it is.
  layer().Mark(window(), WindowChange::kContent);
  if (CComboBox* const own = combo()) own->DropDown(drop);
}

void ComboMirror::Choose(int row) {
  layer().Mark(window(), WindowChange::kContent);
  if (CComboBox* const own = combo()) own->Choose(row);
}

void ComboMirror::TakeIn() {
  TextEdit done;
  CComboBox* const own = combo();
  if (own == nullptr || part_ == nullptr || !part_->Take(done)) return;
  layer().Mark(window(), WindowChange::kText);
  layer().Mark(window(), WindowChange::kSelection);
  if (done.is_edited) {
    own->EditText(done.first, done.removed, done.inserted, done.anchor, done.caret);
  } else {
    own->SetEditSel(done.anchor, done.caret);
  }
}

bool ComboMirror::TakeKey(const KeyStroke& stroke) {
  if (combo() == nullptr) return false;
  const bool is_arrow = stroke.key == dq::VK_DOWN || stroke.key == dq::VK_UP;
  constexpr dq::WORD kF4 = dq::VK_F1 + 3;
  if (stroke.key == kF4 || (is_arrow && stroke.modifiers.alt)) {
    Drop(!combo()->GetDroppedState());
    return true;
  }
  if (rows_ != nullptr) return TakeKeyOfList(stroke);
  // In a text, these move the caret.
  const bool moves_caret = stroke.key == dq::VK_LEFT || stroke.key == dq::VK_RIGHT ||
                           stroke.key == dq::VK_HOME || stroke.key == dq::VK_END;
  if (has_edit_ && moves_caret) return false;
  int row = combo()->GetCurSel();
  if (is_arrow) {
    row = std::clamp(row + (stroke.key == dq::VK_DOWN ? 1 : -1), 0, std::max(0, Count() - 1));
  } else if (!has_edit_ && stroke.key == dq::VK_HOME) {
    row = 0;
  } else if (!has_edit_ && stroke.key == dq::VK_END) {
    row = Count() - 1;
  } else if (!has_edit_ && !stroke.character.empty() && !stroke.modifiers.control) {
    row = combo()->FindString(row, stroke.character.c_str());
  } else {
    return false;
  }
  if (row >= 0 && row < Count()) Choose(row);
  return true;
}

/// While the list is dropped down, going isn't choosing.
bool ComboMirror::TakeKeyOfList(const KeyStroke& stroke) {
  if (const auto row = rows_->RowOfKey(stroke, rows_->caret())) {
    rows_->SetCaret(*row);
    return true;
  }
  switch (stroke.key) {
    case dq::VK_RETURN:
      if (rows_->caret() >= 0) {
        Choose(rows_->caret());
        return true;
      }
      [[fallthrough]];
    case dq::VK_ESCAPE:
      Drop(false);
      return true;
    default:
      break;
  }
  if (has_edit_ || stroke.character.empty()) return false;
  const int row = combo()->FindString(rows_->caret(), stroke.character.c_str());
  if (row >= 0) rows_->SetCaret(row);
  return true;
}

void ComboMirror::Trace(TraceLine& line) const {
  line.Add("rows", static_cast<long long>(Count()));
  if (rows_ == nullptr) return;
  const wxRect list(rows_->GetScreenPosition(), rows_->GetSize());
  line.Add("list", {list.x, list.y, list.width, list.height});
  line.Add("first", static_cast<long long>(rows_->first()));
  line.Add("row_height", static_cast<long long>(rows_->row_height()));
}

}  // namespace workbench
