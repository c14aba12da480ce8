// The text of an edit control or of an edit view, and what a person and a program do to it.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/controls/edit_text.h"
#include "dqlib/framework/windows/wnd.h"
#include "dqlib/platform/dialog_view.h"

namespace dq {

/// What an edit control takes from a person.
struct EditStyle {
  bool multi_line = false;
  bool password = false;
  bool read_only = false;
  /// Digits only.
  bool number = false;
};

/// The part of a window that makes it an edit: `CEdit` and `CEditView` derive from it too. Lines
/// end with CR LF. Setting the window's text puts the caret at the beginning and takes the modified
/// mark away; neither that nor `ReplaceSel` heeds the limit or the style, which are for what a
/// person enters. The parent gets `EN_UPDATE` and then `EN_CHANGE` for each change of the text, by
/// whom ever, but not where the text of an edit of several lines is set.
///
/// The window answers `EM_GETSEL`, `EM_SETSEL`, `EM_REPLACESEL` and, as all windows do,
/// `WM_SETTEXT` and its kin, by which another thread may read and change the text. It types what
/// comes by `WM_CHAR`; keys that move and delete it handles itself, unless a native control does.
class EditModel {
 public:
  EditModel(const EditModel&) = delete;
  EditModel& operator=(const EditModel&) = delete;

  /// Selects from `start` to `end`, in bytes, with the caret at `end`; -1 for `end` is the text's
  /// end. A `start` of -1 drops the selection and leaves the caret at its end.
  void SetSel(int start, int end);
  void GetSel(int& start, int& end) const;
  /// Start in the low and end in the high word; -1 if they don't fit there.
  DWORD GetSel() const;
  /// Replaces what is selected and sets the modified mark; null counts as "".
  void ReplaceSel(const char* text);

  /// The text itself, until it changes.
  const std::string& Text() const { return text_.text(); }

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
  /// becomes CR LF; in an edit of one line the text ends there. If it is over the limit,
  /// `EN_MAXTEXT` comes first, whose handler may raise that; what is over it then is left out.
  /// False, and nothing, if the control doesn't take it.
  bool Type(std::string_view text);
  /// A person has replaced `removed` bytes from `first` on by the text: typed, pasted, dropped,
  /// deleted, undone or composed it, whatever a window layer's own control offers. Then they have
  /// selected from `anchor` to `caret`. False if the control took it in part or not at all: what
  /// the layer shows isn't the text then. Handlers may have changed it once more in any case.
  bool EditText(int first, int removed, std::string_view inserted, int anchor, int caret);

 protected:
  /// `window` is the object itself.
  EditModel(CWnd& window, const EditStyle& style) : window_(window), style_(style) {}
  ~EditModel() = default;

  /// Tell the observer, once there is a window, and the parent; false if the window is gone then.
  virtual void TellEdit(WindowChange change) = 0;
  virtual bool NotifyEdit(int code) = 0;

  /// Answers a message as edits do; no value for one that goes on to the base class. The window may
  /// be gone afterwards.
  std::optional<LRESULT> AnswerEdit(UINT message, WPARAM wparam, LPARAM lparam);
  /// `CWnd`'s operations of these kinds. `DescribeEdit` leaves what all windows have alone.
  void DescribeEdit(platform::DialogControl& control) const;
  bool EnterText(std::string_view value);
  void SetText(const char* text);
  void NotifyTextWasSet();
  /// Takes over text, style and mark.
  void CopyFrom(const EditModel& former);

 private:
  bool TakesInput() const;
  bool MoveCaret(int place, bool extends);
  bool KeyDown(WPARAM key);

  /// The text as it is stored; false if a person can't enter it.
  bool Accept(std::string_view entered, std::string& stored) const;
  const std::vector<int>& Lines() const;
  bool TextChanged();
  bool AskForRoom(std::string_view text, int removed);

  CWnd& window_;
  detail::EditText text_;
  EditStyle style_;
  bool modified_ = false;
  /// Where the lines begin; empty until somebody asks.
  mutable std::vector<int> lines_;
};

}  // namespace dq
