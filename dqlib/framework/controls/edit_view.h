// Views that are an edit.

#pragma once

#include "dqlib/framework/controls/edit_model.h"
#include "dqlib/framework/windows/view.h"

namespace dq {

/// A view that is an edit of several lines. Window class "Edit". What its text is to the document a
/// derived class says; the base keeps neither up to date by the other. Its own notifications it may
/// have by reflected entries. Handlers for `WM_CHAR` and `WM_KEYDOWN` come before the text changes,
/// and take the key by not passing it on to the base class; behind the base class's handling of
/// `WM_CHAR` the character is in the text.
class CEditView : public CView, public EditModel {
  DECLARE_DYNCREATE(CEditView)
  CEditView() : EditModel(*this, {.multi_line = true}) {}

  using CView::Create;
  bool Create(CWnd* parent, const CRect& place, int id, const CCreateContext* context) override;

  void Describe(platform::DialogControl& control) const override;
  /// A person replaces the whole text. Line ends become CR LF.
  bool Enter(std::string_view value) override { return EnterText(value); }

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  CString OnGetText() const override { return Text(); }
  int OnGetTextLength() const override { return static_cast<int>(Text().size()); }
  void OnSetText(const char* text) override { SetText(text); }
  void OnTextWasSet() override { NotifyTextWasSet(); }
  bool NotifyEdit(int code) override;

 private:
  void TellEdit(WindowChange change) override;
};

}  // namespace dq
