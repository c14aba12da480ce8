#include "dqlib/framework/controls/progress.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>

namespace dq {

IMPLEMENT_DYNAMIC(CProgressCtrl, CWnd)

void CProgressCtrl::SetRange(int lower, int upper) {
  const int filled = GetFilledWidth();
  std::tie(lower_, upper_) = std::minmax(lower, upper);
  position_ = std::clamp(position_, lower_, upper_);
  if (GetFilledWidth() != filled) Tell(WindowChange::kContent);
}

void CProgressCtrl::GetRange(int& lower, int& upper) const {
  lower = lower_;
  upper = upper_;
}

void CProgressCtrl::MoveTo(long long position) {
  const int filled = GetFilledWidth();
  position_ = static_cast<int>(std::clamp<long long>(position, lower_, upper_));
  if (GetFilledWidth() != filled) Tell(WindowChange::kContent);
}

int CProgressCtrl::SetPos(int position) {
  const int former = position_;
  MoveTo(position);
  return former;
}

int CProgressCtrl::OffsetPos(int by) {
  const int former = position_;
  MoveTo(0LL + former + by);
  return former;
}

int CProgressCtrl::StepIt() {
  const int former = position_;
  const long long range = 0LL + upper_ - lower_;
  long long done = 0LL + former - lower_ + step_;
  if (range > 0 && (done > range || done < 0)) done = (done % range + range) % range;
  MoveTo(lower_ + done);
  return former;
}

int CProgressCtrl::SetStep(int step) { return std::exchange(step_, step); }

int CProgressCtrl::ShareOf(int parts) const {
  const long long range = 0LL + upper_ - lower_;
  return range == 0 ? 0 : static_cast<int>((0LL + position_ - lower_) * parts / range);
}

int CProgressCtrl::GetPercent() const { return ShareOf(100); }

int CProgressCtrl::GetFilledWidth() const { return ShareOf(GetClientRect().Width()); }

void CProgressCtrl::Describe(platform::DialogControl& control) const {
  Control::Describe(control);
  control.kind = platform::DialogControlKind::kText;
  control.value = std::to_string(GetPercent()) + "%";
}

LRESULT CProgressCtrl::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_GETDLGCODE) return DLGC_STATIC;
  return Control::DefWindowProc(message, wparam, lparam);
}

void CProgressCtrl::OnSubclassed(CWnd& former) {
  Control::OnSubclassed(former);
  if (const CProgressCtrl* const progress = DYNAMIC_DOWNCAST(CProgressCtrl, &former)) {
    lower_ = progress->lower_;
    upper_ = progress->upper_;
    position_ = progress->position_;
    step_ = progress->step_;
  }
}

}  // namespace dq
