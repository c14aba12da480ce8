#include "apps/workbench/layer/edit_mirror.h"

#include <algorithm>

#include "apps/workbench/layer/gtk_window.h"
#include "apps/workbench/layer/layer.h"
#include "dqlib/framework/controls/edit_model.h"

namespace workbench {

namespace {

using dq::CWnd;
using dq::EditModel;
using dq::WindowChange;

/// Longer lines aren't broken, in bytes: the time that takes the toolkit grows with the square.
constexpr std::size_t kLongestWrapped = 4000;

std::size_t LongestLine(std::string_view text) {
  std::size_t longest = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1);
    longest = std::max(longest, end);
    text.remove_prefix(end + 1);
  }
  return longest;
}

}  // namespace

wxWindow* EditMirror::DoMake(wxWindow* parent) {
  if (const EditModel* const edit = As<EditModel>()) {
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
  const auto* const edit = dynamic_cast<const EditModel*>(&window);
  return edit != nullptr && edit->GetStyle().multi_line == lines_ &&
         edit->GetStyle().password == password_;
}

void EditMirror::ShowText() {
  const dq::CString text = window().GetWindowText();
  if (lines_) WrapLines(control(), LongestLine(text.View()) <= kLongestWrapped);
  part_->ShowText(text.View());
}

void EditMirror::ShowContent(const Changes& changes) {
  const EditModel* const edit = As<EditModel>();
  if (edit == nullptr) return;
  if (changes.Has(WindowChange::kContent)) control().SetEditable(!edit->GetStyle().read_only);
  if (!changes.Has(WindowChange::kSelection, WindowChange::kText)) return;
  int first = 0;
  int last = 0;
  edit->GetSel(first, last);
  part_->ShowSelection(first, last);
  // What the program adds at the end comes into sight, as what a person types does.
  if (lines_ && changes.Has(WindowChange::kText)) {
    control().ShowPosition(control().GetInsertionPoint());
  }
}

void EditMirror::TakeIn() {
  EditModel* const edit = As<EditModel>();
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
