// Edit controls: a text that a person changes.

#pragma once

#include <vector>

#include "dqlib/framework/controls/control.h"
#include "dqlib/framework/controls/edit_text.h"

namespace dq {

/// What an edit control takes from a person.
struct EditStyle {
  bool multi_line = false;
  bool password = false;
  bool read_only = false;
  /// Digits only.
  bool number = false;
};

/// An edit control. Window class "Edit". Lines end with CR LF. Setting the window's text puts the
/// caret at the beginning and takes the modified mark away; neither that nor `ReplaceSel` heeds
/// the limit or the style, which are for what a person enters. The parent gets `EN_UPDATE` and then
/// `EN_CHANGE` for each change of the text, by whom ever, but not where the text of a control of
/// several lines is set.
class CEdit : public Control {
  DECLARE_DYNAMIC(CEdit)
  explicit CEdit(const EditStyle& style = {}) : style_(style) {}

  /// Selects from `start` to `end`, in bytes, with the caret at `end`; -1 for `end` is the text's
  /// end. A `start` of -1 drops the selection and leaves the caret at its end.
  void SetSel(int start, int end);
  void GetSel(int& start, int& end) const;
  /// Start in the low and end in the high word; -1 if they don't fit there.
  DWORD GetSel() const;
  /// Replaces what is selected and sets the modified mark; null counts as "".
  void ReplaceSel(const char* text);

  /// The most bytes that a person may enter; 0 is as many as there can be.
  void LimitText(UINT bytes = 0);
  UINT GetLimitText() const { return text_.limit(); }

  const EditStyle& GetStyle() const { return style_; }
  void SetStyle(const EditStyle& style);
  void SetReadOnly(bool read_only = true);
  bool GetModify() const { return modified_; }
  void SetModify(bool modified = true) { modified_ = modified; }

  /// Lines count from 0. One that isn't multi-line has one line.
  int GetLineCount() const;
  /// The line of a place in the text, or with -1 of the selection's start.
  int LineFromChar(int place = -1) const;
  /// Where a line begins, or with -1 the one with the caret or selection; -1 if there is none such.
  int LineIndex(int line = -1) const;

  /// A person types or pastes the text at the selection; "\b" removes a character. Any line end
  /// becomes CR LF; in an edit control of one line the text ends there. If it is over the limit,
  /// `EN_MAXTEXT` comes first, whose handler may raise that; what is over it then is left out.
  /// False, and nothing, if the control doesn't take it.
  bool Type(std::string_view text);
  /// A person has replaced `removed` bytes from `first` on by the text: typed, pasted, dropped,
  /// deleted, undone or composed it, whatever a window layer's own control offers. Then they have
  /// selected from `anchor` to `caret`. False if the control took it in part or not at all: what
  /// the layer shows isn't the text then. Handlers may have changed it once more in any case.
  bool EditText(int first, int removed, std::string_view inserted, int anchor, int caret);

  void Describe(platform::DialogControl& control) const override;
  /// A person replaces the whole text. Line ends become CR LF.
  bool Enter(std::string_view value) override;

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  CString OnGetText() const override { return text_.text(); }
  void OnSetText(const char* text) override;
  void OnTextWasSet() override;
  void OnSubclassed(CWnd& former) override;

 private:
  /// The text as it is stored; false if a person can't enter it.
  bool Accept(std::string_view entered, std::string& stored) const;
  const std::vector<int>& Lines() const;
  bool TextChanged();
  bool AskForRoom(std::string_view text, int removed);

  detail::EditText text_;
  EditStyle style_;
  bool modified_ = false;
  /// Where the lines begin; empty until somebody asks.
  mutable std::vector<int> lines_;
};

}  // namespace dq
