// Spin buttons: they step a number, which stands in another control.

#pragma once

#include "dqlib/framework/controls/control.h"

namespace dq {

/// A spin button. Window class "Spin". The number also stands in its buddy's text, if it has one.
/// The range is 0 to 100 at first; where its first end is the larger one, steps go the other way.
class CSpinButtonCtrl : public Control {
  DECLARE_DYNAMIC(CSpinButtonCtrl)
  bool IsTabStop() const override { return false; }
  /// With `auto_buddy` the control before it becomes its buddy when the window is made.
  explicit CSpinButtonCtrl(bool auto_buddy = false) : auto_buddy_(auto_buddy) {}

  /// The range. The position is brought into it; the buddy's text stays what it is, so that a
  /// number that somebody has put there before isn't lost.
  void SetRange(int lower, int upper);
  void GetRange(int& lower, int& upper) const;

  /// Sets the number, brought into the range, and the buddy's text. Returns the former number.
  int SetPos(int position);
  /// The number in the buddy's text; where that isn't one in the range, and without a buddy, the
  /// one that was set last.
  int GetPos() const;

  /// The control with the number, or null for none; returns the former one. Not owned; one that
  /// ends is a buddy no more.
  CWnd* SetBuddy(CWnd* buddy);
  CWnd* GetBuddy() const { return FromHandle(buddy_); }

  /// A person steps the number, `steps` may be negative; the buddy is told as if the person had
  /// entered the number there. False if it is disabled or at the range's end.
  bool Step(int steps);

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnSubclassed(CWnd& former) override;

 private:
  int Clamp(long long position) const;

  int lower_ = 0;
  int upper_ = 100;
  int position_ = 0;
  HWND buddy_ = nullptr;
  bool auto_buddy_;
};

}  // namespace dq
