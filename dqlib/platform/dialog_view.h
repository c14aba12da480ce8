// A dialog as the person sees it who answers it: by name, value and what can be pressed.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace dq::platform {

/// What a control is to the person.
enum class DialogControlKind {
  /// Only shown.
  kText,
  /// Pressed.
  kButton,
  /// Holds "0" or "1".
  kCheck,
  /// Holds "0" or "1"; entering "1" takes the mark from the others of its group.
  kRadio,
  /// Holds a text.
  kEdit,
  /// Holds one of its items, or with `multiple` any of them, one a line; entered by text or by
  /// number from 1.
  kList,
  /// Holds one of its items or, if it is editable, any text.
  kCombo,
  /// Nothing the person deals with by itself.
  kOther,
};

/// A control as it stands now.
struct DialogControl {
  int id = 0;
  DialogControlKind kind = DialogControlKind::kOther;
  /// What it is called: its own text for buttons and checks, the text before it for others. Marks
  /// of mnemonics ("&") are left out.
  std::string label = {};
  /// Its value in the form that `DialogView::Enter` takes.
  std::string value = {};
  std::vector<std::string> items = {};
  bool visible = true;
  bool enabled = true;
  /// Several items can be chosen, or the text has several lines.
  bool multiple = false;
  bool editable = false;
  bool is_default = false;
  /// What is typed into it must not be shown or logged.
  bool secret = false;
};

/// An open dialog. On the thread that runs it.
class DialogView {
 public:
  DialogView() = default;
  DialogView(const DialogView&) = delete;
  DialogView& operator=(const DialogView&) = delete;
  virtual ~DialogView();

  virtual std::string Caption() = 0;
  /// All controls in the dialog's order.
  virtual std::vector<DialogControl> Controls() = 0;
  /// Enters a value, as the person would who types, marks or chooses. False if there is no such
  /// control, it is hidden or disabled, or it doesn't take the value.
  virtual bool Enter(int id, std::string_view value) = 0;
  /// Presses a button; false as before. The dialog may be closed afterwards.
  virtual bool Press(int id) = 0;
  /// Whether it still runs.
  virtual bool IsOpen() = 0;
};

}  // namespace dq::platform
