// Buttons: pressed, marked, or a frame around others.

#pragma once

#include "dqlib/framework/controls/control.h"

namespace dq {

enum class ButtonKind { kPush, kDefault, kCheck, kThreeState, kRadio, kGroup };

/// A button. Window class "Button".
class CButton : public Control {
  DECLARE_DYNAMIC(CButton)
  explicit CButton(ButtonKind kind = ButtonKind::kPush) : kind_(kind) {}

  ButtonKind GetKind() const { return kind_; }
  void SetKind(ButtonKind kind);

  /// The mark: 0 none, 1 set, 2 undetermined. Buttons that aren't marked have 0 for ever; 2 counts
  /// as 1 where there are two states, and other numbers as 0. Setting one of a group of radio
  /// buttons leaves the others as they are.
  int GetCheck() const { return check_; }
  void SetCheck(int check);

  /// The radio buttons of the group that this one stands in, in their order. Not owned.
  std::vector<CButton*> GroupButtons() const;

  void Describe(platform::DialogControl& control) const override;
  /// Of a group of radio buttons the marked one, or without a mark the first.
  bool IsTabStop() const override;
  /// A person enters the mark, "0", "1" or "2"; a radio button takes "0" only if it has no mark.
  bool Enter(std::string_view value) override;
  /// A person presses it: a check goes on to its next state, a radio button takes the mark from the
  /// others of its group, and then the parent gets `BN_CLICKED`. False if it is disabled or a
  /// group. Arrow keys press the radio button of the group before or behind this one.
  bool Press() override;

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnSubclassed(CWnd& former) override;

 private:
  void StepInGroup(int step);
  bool IsMarked() const { return kind_ >= ButtonKind::kCheck && kind_ <= ButtonKind::kRadio; }
  void Mark(int check);

  ButtonKind kind_;
  int check_ = 0;
};

}  // namespace dq
