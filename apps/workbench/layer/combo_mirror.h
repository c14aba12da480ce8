// Combo boxes.

#pragma once

#include <memory>

#include "apps/workbench/layer/edit_part.h"
#include "apps/workbench/layer/gtk_popup.h"
#include "apps/workbench/layer/mirror.h"
#include "apps/workbench/layer/row_window.h"
#include "dqlib/framework/windows/window_messages.h"

namespace dq {
class CComboBox;
}

namespace workbench {

/// A combo box: a face, with a text control where it has an edit part, and a list that drops down.
/// The library's rectangle is that with the list, so the face is as high as a line needs.
class ComboMirror : public Mirror, private RowSource {
 public:
  using Mirror::Mirror;
  ~ComboMirror() override;

  wxWindow* Focusable() override;
  bool Serves(const dq::CWnd& window) const override;
  bool TakeKey(const KeyStroke& stroke) override;
  bool TakesMove(dq::WORD key) const override {
    return has_edit_ && (key == dq::VK_LEFT || key == dq::VK_RIGHT);
  }
  void TakeIn() override;
  void Trace(TraceLine& line) const override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowPlace() override;
  void ShowText() override;
  void ShowContent(const Changes& changes) override;

 private:
  int Count() const override;
  wxString Text(int row) const override;
  bool IsSelected(int row) const override;
  wxString Tip(int row) const override;

  dq::CComboBox* combo() const;
  int Height() const;
  wxRect ButtonRect() const;
  void OnPaint();
  void OnPress();
  void ShowList(bool show);
  /// As acts.
  void Drop(bool drop);
  void Choose(int row);
  bool TakeKeyOfList(const KeyStroke& stroke);

  bool has_edit_ = false;
  wxTextCtrl* text_ = nullptr;
  std::unique_ptr<EditPart> part_;
  std::unique_ptr<PopupWindow> popup_;
  RowWindow* rows_ = nullptr;
};

}  // namespace workbench
