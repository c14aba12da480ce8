// The toolkit's text control for a text of the library's: that of an edit control or of the edit
// part of a combo box.

#pragma once

#include <string>
#include <wx/textctrl.h>

#include "apps/workbench/layer/text.h"

namespace workbench {

/// What a person has done to a text, in the library's bytes: replaced some by others and then
/// selected, from `anchor` to `caret`.
struct TextEdit {
  bool is_edited = false;
  int first = 0;
  int removed = 0;
  std::string inserted;
  int anchor = 0;
  int caret = 0;
};

/// Keeps a text control and a text alike. Not owned: the control outlives it.
class EditPart {
 public:
  /// `lines`: of several lines.
  EditPart(wxTextEntry& control, bool lines) : control_(control), lines_(lines) {}

  /// Puts the text, and what is selected in it, into the control, if it has others.
  void ShowText(std::string_view text);
  void ShowSelection(int first, int last);

  /// The control has another text.
  void NoteEdit() { edited_ = true; }
  /// What the person has done since the last call, or since the text was shown; false if nothing.
  bool Take(TextEdit& edit);

 private:
  struct Selection {
    long anchor = 0;
    long caret = 0;
    friend bool operator==(const Selection&, const Selection&) = default;
  };

  bool Append(std::string_view text);
  Selection SelectionNow() const;
  std::string Encode(const wxString& text) const {
    return lines_ ? ToLibraryLines(text) : ToLibrary(text);
  }

  wxTextEntry& control_;
  bool lines_;
  /// As the library's text was last.
  ShownText shown_;
  std::string shown_bytes_;
  Selection selection_;
  bool edited_ = false;
};

}  // namespace workbench
