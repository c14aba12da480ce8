// Dialogs that the seam asks for by their controls alone, as dialogs of the library's.

#pragma once

#include <string>
#include <vector>

#include "dqlib/framework/windows/dialog.h"
#include "dqlib/platform/dialog_view.h"

namespace workbench {

/// Shows a view's controls below one another, with their labels before them, and its buttons in a
/// row at the bottom. What the person has entered goes to the view when they press a button; the
/// view says whether that closes it.
class ViewDialog : public dq::CDialog {
 public:
  /// The view outlives it.
  explicit ViewDialog(dq::platform::DialogView& view);
  ~ViewDialog() override;

 protected:
  dq::BOOL OnInitDialog() override;
  void OnOK() override { PressButton(dq::IDOK); }
  void OnCancel() override { PressButton(dq::IDCANCEL); }
  bool CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) override;

 private:
  void OnButton(dq::UINT id) { PressButton(static_cast<int>(id)); }
  void PressButton(int id);
  bool EnterAll();
  void ShowValues();

  dq::platform::DialogView& view_;
};

}  // namespace workbench
