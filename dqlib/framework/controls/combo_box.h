// Combo boxes: a list that drops down, under an edit part or under the chosen row's text.

#pragma once

#include "dqlib/framework/controls/edit_text.h"
#include "dqlib/framework/controls/row_control.h"

namespace dq {

struct ComboStyle {
  /// Without an edit part: the text is that of the chosen row.
  bool list_only = false;
  bool sorted = false;
};

/// A combo box. Window class "ComboBox". Its place is the one with the list dropped down. The
/// window's text is the edit part's; setting it makes a row that has another text be chosen no
/// more, and does nothing to a combo box without an edit part. The parent gets `CBN_EDITUPDATE` and
/// then `CBN_EDITCHANGE` for each change of the edit part's text but those by a choice of a row.
class CComboBox : public RowControl {
  DECLARE_DYNAMIC(CComboBox)
  explicit CComboBox(const ComboStyle& style = {})
      : RowControl(style.sorted), list_only_(style.list_only) {}

  bool HasEditPart() const { return !list_only_; }

  /// The row's text and its length; "" and -1 if there is no such row.
  CString GetLBText(int index) const { return CString(rows_.Text(index)); }
  int GetLBText(int index, CString& text) const;
  int GetLBTextLen(int index) const;

  /// The chosen row, or -1.
  int GetCurSel() const { return current_; }
  /// Chooses a row, whose text becomes the window's, and returns it. Any other index chooses none,
  /// empties the text and gives -1.
  int SetCurSel(int index);
  /// Chooses the row that `FindString` finds and returns it; -1, and no change, if there is none.
  int SelectString(int after, const char* text);

  /// What is selected in the edit part: start in the low and end in the high word; -1 without an
  /// edit part, or if they don't fit there. `SetEditSel` takes them as `CEdit::SetSel` does; false
  /// without an edit part.
  DWORD GetEditSel() const;
  bool SetEditSel(int start, int end);
  /// The most bytes that a person may enter; 0 is as many as there can be.
  bool LimitText(int bytes);

  /// Whether the list is dropped down, and by how much at least it is wide then. Before it drops
  /// down the parent gets `CBN_DROPDOWN`; when it goes without a choice, `CBN_SELENDCANCEL` and
  /// `CBN_CLOSEUP`.
  void ShowDropDown(bool show = true);
  bool GetDroppedState() const { return dropped_; }
  int GetDroppedWidth() const;
  int SetDroppedWidth(UINT width);
  /// The rectangle of the dropped-down combo box, on the screen.
  void GetDroppedControlRect(CRect* rect) const;

  /// A person chooses the row: `CBN_SELENDOK` goes to the parent, `CBN_CLOSEUP` if the list was
  /// dropped down, and `CBN_SELCHANGE` if it is another one. False if there is no such row or the
  /// control is disabled.
  bool Choose(int index);
  /// A person drops the list down or lets it go; false if the control is disabled.
  bool DropDown(bool show);
  /// A person edits the edit part's text: see `CEdit::EditText`. False without an edit part.
  bool EditText(int first, int removed, std::string_view inserted, int anchor, int caret);

  void Describe(platform::DialogControl& control) const override;
  /// A person enters a text, `CBN_EDITCHANGE`, or one that is exactly a row's, which chooses that
  /// row. Without an edit part, a row by its text or number from 1.
  bool Enter(std::string_view value) override;

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  CString OnGetText() const override;
  void OnSetText(const char* text) override;
  void OnTextWasSet() override;
  void OnRowsGone(bool had_current) override;
  void OnSubclassed(CWnd& former) override;

 private:
  void TellText();
  bool Accepts(std::string_view entered) const;
  void TextEdited();

  detail::EditText text_;
  bool list_only_;
  bool dropped_ = false;
  int dropped_width_ = 0;
};

}  // namespace dq
