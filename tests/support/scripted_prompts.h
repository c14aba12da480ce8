// Message boxes and dialogs that a test answers beforehand and looks at afterwards.

#pragma once

#include "tests/support/own_service.h"
#include "tests/support/testing.h"

namespace dq::testing {

/// One message box that was shown.
struct ShownBox {
  std::string text;
  UINT type = 0;
  UINT help_id = 0;
  std::string caption = {};

  /// Boxes alike but for their captions, which few tests ask for.
  friend bool operator==(const ShownBox& left, const ShownBox& right) {
    return left.text == right.text && left.type == right.type && left.help_id == right.help_id;
  }
};

/// The platform's prompts for its lifetime. Boxes are left by the buttons of the script, one each,
/// and by their default buttons when it has come to its end. Dialogs are left open, which cancels
/// them, unless `on_dialog` does otherwise. For one thread.
class ScriptedPrompts : public platform::Prompts {
 public:
  ScriptedPrompts(std::initializer_list<BoxButton> script = {})
      : script_(script), scope_(test::With(&platform::Platform::prompts, this)) {}

  int Show(std::string_view caption, std::string_view text, UINT type, UINT help_id) override {
    shown.push_back({std::string(text), type, help_id, std::string(caption)});
    if (on_box) on_box();
    if (script_.empty()) return DefaultBoxButton(type);
    const BoxButton button = script_.front();
    script_.erase(script_.begin());
    return button;
  }

  void RunDialog(platform::DialogView& dialog) override {
    dialogs.push_back(dialog.Caption());
    if (on_dialog) on_dialog(dialog);
  }

  /// Called while a box is shown.
  std::function<void()> on_box;
  /// Answers each dialog.
  std::function<void(platform::DialogView&)> on_dialog;

  /// The captions of the dialogs that were run.
  std::vector<std::string> dialogs;
  /// The boxes in the order in which they were shown.
  std::vector<ShownBox> shown;

 private:
  std::vector<BoxButton> script_;
  platform::ScopedPlatform scope_;
};

}  // namespace dq::testing
