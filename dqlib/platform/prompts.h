// Every question to the person at the machine.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "dqlib/platform/choosers.h"
#include "dqlib/platform/dialog_view.h"
#include "dqlib/platform/types.h"

namespace dq {

/// Kinds of message box: one set of buttons, plus an icon, plus the default button.
enum BoxType : UINT {
  BOX_OK = 0,
  BOX_OK_CANCEL = 1,
  BOX_ABORT_RETRY_IGNORE = 2,
  BOX_YES_NO_CANCEL = 3,
  BOX_YES_NO = 4,
  BOX_RETRY_CANCEL = 5,
  BOX_STOP = 16,
  BOX_QUESTION = 32,
  BOX_EXCLAMATION = 48,
  BOX_INFORMATION = 64,
  BOX_DEFAULT_SECOND = 0x100,
  BOX_DEFAULT_THIRD = 0x200,
};

/// Buttons by which a message box is left.
enum BoxButton : int {
  BUTTON_OK = 1,
  BUTTON_CANCEL = 2,
  BUTTON_ABORT = 3,
  BUTTON_RETRY = 4,
  BUTTON_IGNORE = 5,
  BUTTON_YES = 6,
  BUTTON_NO = 7,
};

/// The buttons of a message box in their order; those of `BOX_OK` for an unknown set.
std::span<const BoxButton> BoxButtons(UINT type);

/// The button that a message box has preselected: the first one, unless the type names another that
/// it has.
BoxButton DefaultBoxButton(UINT type);

namespace platform {

class DialogView;

/// Asks the person. Calls block until there is an answer; on the thread that calls, which may be
/// any.
class Prompts {
 public:
  Prompts() = default;
  Prompts(const Prompts&) = delete;
  Prompts& operator=(const Prompts&) = delete;
  virtual ~Prompts();

  /// Shows `text` under `caption`, which may be empty, with the buttons and icon of `type` (a sum
  /// of `BoxType` values; unknown bits are ignored, an unknown set of buttons counts as `BOX_OK`)
  /// and returns the `BoxButton` pressed. `help_id` names the help topic of the box; 0 and -1 are
  /// none.
  virtual int Show(std::string_view caption, std::string_view text, UINT type, UINT help_id) = 0;

  /// Has the person answer the open dialog, until it is closed or there is nobody who answers; who
  /// opened it cancels what is left open. Handlers of the dialog may ask questions and run dialogs
  /// meanwhile.
  virtual void RunDialog(DialogView& dialog) = 0;

  /// Have the person choose files to open or one to save, a folder that exists, and what to print;
  /// no value if the person leaves it. What is chosen keeps to all that the question asks for:
  /// default extensions are there, and problems have been told. The base asks in dialogs of its own
  /// that it runs by `RunDialog`; see `choosers.h`.
  virtual std::optional<ChosenFiles> ChooseFile(const FileQuestion& question);
  /// From the root; "" titles are the usual one, and a "" start is the current directory.
  virtual std::optional<std::string> ChooseFolder(std::string_view title, std::string_view start);
  virtual std::optional<PrintChoice> ChoosePrint(const PrintQuestion& question);
};

}  // namespace platform
}  // namespace dq
