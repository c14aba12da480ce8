#include "apps/workbench/layer/edit_mirror.h"

#include "apps/workbench/layer/layer.h"
#include "dqlib/framework/controls/edit.h"

namespace workbench {

using dq::CEdit;
using dq::CWnd;
using dq::WindowChange;

wxWindow* EditMirror::DoMake(wxWindow* parent) {
  if (const CEdit* const edit = As<CEdit>()) {
    lines_ = edit->GetStyle().multi_line;
    password_ = edit->GetStyle().password;
  }
  const long style = (lines_ ? wxTE_MULTILINE : 0) | (password_ ? wxTE_PASSWORD : 0);
  auto* const control =
      new wxTextCtrl(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, style);
  part_ = std::make_unique<EditPart>(*control, lines_);
  control->Bind(wxEVT_TEXT, [this](wxCommandEvent&) {
    part_->NoteEdit();
    Post([this](CWnd&) { TakeIn(); });
  });
  return control;
}

bool EditMirror::Serves(const CWnd& window) const {
  const auto* const edit = dynamic_cast<const CEdit*>(&window);
  return edit != nullptr && edit->GetStyle().multi_line == lines_ &&
         edit->GetStyle().password == password_;
}

void EditMirror::ShowText() { part_->ShowText(window().GetWindowText().View()); }

void EditMirror::ShowContent(const Changes& changes) {
  const CEdit* const edit = As<CEdit>();
  if (edit == nullptr) return;
  if (changes.Has(WindowChange::kContent)) control().SetEditable(!edit->GetStyle().read_only);
  if (!changes.Has(WindowChange::kSelection, WindowChange::kText)) return;
  int first = 0;
  int last = 0;
  edit->GetSel(first, last);
  part_->ShowSelection(first, last);
}

void EditMirror::TakeIn() {
  CEdit* const edit = As<CEdit>();
  TextEdit done;
  if (edit == nullptr || !part_->Take(done)) return;
  // Whatever comes of it, the control then shows what the window holds.
  layer().Mark(window(), WindowChange::kText);
  layer().Mark(window(), WindowChange::kSelection);
  if (done.is_edited) {
    edit->EditText(done.first, done.removed, done.inserted, done.anchor, done.caret);
  } else {
    edit->SetSel(done.anchor, done.caret);
  }
}

}  // namespace workbench
