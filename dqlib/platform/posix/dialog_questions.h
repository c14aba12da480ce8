// A dialog answered on the terminal, control by control.

#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/dialog_view.h"
#include "dqlib/platform/posix/terminal.h"

namespace dq::platform::posix {

/// Asks for the controls of one dialog and for the button. An empty answer keeps a value, `""`
/// empties it. Line feeds of texts with several lines are `\n`.
class DialogQuestions {
 public:
  /// `one_at_a_time` is held for each question.
  DialogQuestions(const Terminal& terminal, DialogView& dialog, std::mutex& one_at_a_time)
      : terminal_(terminal), dialog_(dialog), one_at_a_time_(one_at_a_time) {}

  /// Returns when the dialog is closed, at the end of input, and when answers lead nowhere.
  void Run();

 private:
  using Controls = std::vector<DialogControl>;

  /// All controls in order. False if the dialog is closed or nobody answers.
  bool AskControls();
  bool AskControl(const DialogControl& control);
  /// The buttons. False as before.
  bool AskButton();
  /// Writes the question and reads the answer, which is hidden if it is `secret`. No value if
  /// nobody answers.
  std::optional<std::string> Ask(std::string_view question, bool secret = false);
  void Tell(std::string_view text);

  const Terminal& terminal_;
  DialogView& dialog_;
  std::mutex& one_at_a_time_;
};

}  // namespace dq::platform::posix
