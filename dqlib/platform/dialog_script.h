// Dialogs answered by a text, for hosts without a person.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/dialog_view.h"

namespace dq::platform {

/// What a script does to dialogs, step by step. A line is `id=value` or `press id`; blanks around
/// the id are dropped, the value goes to the line's end as it stands with `\n`, `\t` and `\\` for
/// line feed, tab and backslash. Empty lines and lines that begin with `#` are nothing.
class DialogScript {
 public:
  /// A line that can't be read, or a step that a dialog didn't take.
  struct Problem {
    /// From 1.
    std::size_t line = 0;
    /// In lower case, without a full stop.
    std::string text;
  };

  /// Reads a script into `script`; the first line that can't be read is returned, and then the
  /// script is empty.
  static std::optional<Problem> Read(std::string_view text, DialogScript& script);

  /// Plays the steps from where the script stands until the dialog is closed or the steps are used
  /// up. A dialog that a step opens meanwhile is played the steps that follow. The first step that
  /// a dialog doesn't take is kept as the problem, and no step is played after it.
  void Play(DialogView& dialog);

  const std::optional<Problem>& problem() const { return problem_; }
  /// Whether all steps were played.
  bool IsDone() const { return next_ == steps_.size(); }

 private:
  struct Step {
    std::size_t line = 0;
    int id = 0;
    bool press = false;
    std::string value;
  };

  std::vector<Step> steps_;
  std::size_t next_ = 0;
  std::optional<Problem> problem_;
};

}  // namespace dq::platform
