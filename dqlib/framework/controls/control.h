// What the models of controls have in common.

#pragma once

#include "dqlib/framework/controls/control_classes.h"
#include "dqlib/framework/windows/dialog_template.h"
#include "dqlib/framework/windows/wnd.h"
#include "dqlib/platform/dialog_view.h"

namespace dq {

/// Base of the controls. What the program does to one is told to the observer alone; what a person
/// does, by the operations that say so or by `Enter` and `Press`, is told to the parent too, whose
/// handler may destroy the control. A control may be filled before its window is made.
class Control : public CWnd {
 public:
  /// Whether a group of radio buttons begins here; it ends before the next control that says so.
  bool BeginsGroup() const { return begins_group_; }
  void SetBeginsGroup(bool begins) { begins_group_ = begins; }

  bool IsTabStop() const override { return true; }

 protected:
  void OnSubclassed(CWnd& former) override;

  /// Tells the observer, once there is a window.
  void Tell(WindowChange change, const ChangedRange& range = {}) {
    if (m_hWnd != nullptr) Changed(change, range);
  }
  /// Tells the parent of what a person has done. False if the control is gone afterwards: then
  /// nothing of it may be touched.
  bool Notify(int code);
  /// Whether a person can use it: not without a window, or if it is disabled.
  bool TakesInput() const { return m_hWnd != nullptr && IsWindowEnabled(); }

 private:
  bool begins_group_ = false;
};

namespace detail {

/// The lines of a text, without their ends: LF, CR LF or CR. "" has none; an end at the text's end
/// begins no further line.
std::vector<std::string_view> SplitLines(std::string_view text);

/// The index from 0 that a person means by a number from 1 to `count`; -1 for anything else.
int IndexFromNumber(std::string_view number, int count);

/// The place in a text of `length` bytes that a caller means by a 32-bit number, of which negative
/// ones are large; never inside a character.
int ClipToText(std::string_view text, int position);

/// Enters the control classes, once. Called before `main` in every program with the library.
bool RegisterControlClasses();

}  // namespace detail
}  // namespace dq
