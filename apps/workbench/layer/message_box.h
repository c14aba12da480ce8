// Message boxes as dialogs of the library's, which the window layer draws as any other.

#pragma once

#include <string>
#include <string_view>

#include "dqlib/framework/windows/dialog.h"
#include "dqlib/platform/prompts.h"

namespace workbench {

class Layer;

/// A message box, to be run once. It shows the text, or a part of a long one that the person can
/// scroll, beside the icon; Escape and the frame's button are Cancel where there is such a button
/// or OK alone, and nothing in other boxes.
class MessageBox : public dq::CDialog {
 public:
  /// `type` is a sum of `dq::BoxType` values.
  MessageBox(const Layer& layer, std::string_view caption, std::string_view text, dq::UINT type);

  /// Returns the `dq::BoxButton` pressed; the preselected one if the box can't be shown or is
  /// closed otherwise.
  int Ask();

 protected:
  dq::BOOL OnInitDialog() override;
  void OnOK() override { EndDialog(dq::BUTTON_OK); }
  void OnCancel() override;
  bool CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) override;

 private:
  void OnButton(dq::UINT id) { EndDialog(static_cast<int>(id)); }
  bool HasButton(int button) const;

  dq::UINT type_;
};

/// Enters the window class of icons, which are labels whose text names a picture of the toolkit's.
void RegisterIconClass();
inline constexpr const char kIconClass[] = "MessageIcon";

}  // namespace workbench
