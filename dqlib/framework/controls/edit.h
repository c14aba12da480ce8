// Edit controls: a text that a person changes.

#pragma once

#include "dqlib/framework/controls/control.h"
#include "dqlib/framework/controls/edit_model.h"

namespace dq {

/// An edit control. Window class "Edit".
class CEdit : public Control, public EditModel {
  DECLARE_DYNAMIC(CEdit)
  explicit CEdit(const EditStyle& style = {}) : EditModel(*this, style) {}

  void Describe(platform::DialogControl& control) const override;
  /// A person replaces the whole text. Line ends become CR LF.
  bool Enter(std::string_view value) override { return EnterText(value); }

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  CString OnGetText() const override { return Text(); }
  int OnGetTextLength() const override { return static_cast<int>(Text().size()); }
  void OnSetText(const char* text) override { SetText(text); }
  void OnTextWasSet() override { NotifyTextWasSet(); }
  void OnSubclassed(CWnd& former) override;

 private:
  void TellEdit(WindowChange change) override { Tell(change); }
  bool NotifyEdit(int code) override { return Notify(code); }
};

}  // namespace dq
