// Message boxes that a test answers beforehand and looks at afterwards.

#pragma once

#include <deque>
#include <initializer_list>
#include <string>
#include <vector>

#include "dqlib/platform/platform.h"

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
/// and by their default buttons when it has come to its end. For one thread.
class ScriptedPrompts : public platform::Prompts {
 public:
  ScriptedPrompts(std::initializer_list<BoxButton> script = {})
      : script_(script), scope_(With(this)) {}

  int Show(std::string_view caption, std::string_view text, UINT type, UINT help_id) override {
    shown.push_back({std::string(text), type, help_id, std::string(caption)});
    if (script_.empty()) return DefaultBoxButton(type);
    const BoxButton button = script_.front();
    script_.pop_front();
    return button;
  }

  /// The boxes in the order in which they were shown.
  std::vector<ShownBox> shown;

 private:
  static platform::Platform With(Prompts* prompts) {
    platform::Platform platform = platform::Current();
    platform.prompts = prompts;
    return platform;
  }

  std::deque<BoxButton> script_;
  platform::ScopedPlatform scope_;
};

}  // namespace dq::testing
