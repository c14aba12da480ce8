// Progress bars.

#pragma once

#include "dqlib/framework/controls/control.h"

namespace dq {

/// A progress bar. Window class "Progress". The range is 0 to 100 at first; of its ends, the lower
/// one comes first however they are given. The position is always in the range. The observer is
/// told when another part of the bar is filled, in pixels.
class CProgressCtrl : public Control {
  DECLARE_DYNAMIC(CProgressCtrl)
  bool IsTabStop() const override { return false; }

  void SetRange(int lower, int upper);
  void GetRange(int& lower, int& upper) const;

  /// Each returns the former position. The first two bring a position beyond the range to its end.
  int SetPos(int position);
  int OffsetPos(int by);
  /// Goes on by the step, and from the range's end on at its beginning.
  int StepIt();
  int GetPos() const { return position_; }
  /// 10 at first. Returns the former step.
  int SetStep(int step);

  /// How much of the range is done, from 0 to 100.
  int GetPercent() const;
  /// How much of the client area is filled, from the left, in pixels.
  int GetFilledWidth() const;

  /// A person sees it as a text of per cent.
  void Describe(platform::DialogControl& control) const override;

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnSubclassed(CWnd& former) override;

 private:
  void MoveTo(long long position);
  /// The position's share of so many parts.
  int ShareOf(int parts) const;

  int lower_ = 0;
  int upper_ = 100;
  int position_ = 0;
  int step_ = 10;
};

}  // namespace dq
