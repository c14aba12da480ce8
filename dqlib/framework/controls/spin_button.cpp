#include "dqlib/framework/controls/spin_button.h"

#include <algorithm>
#include <charconv>

#include "dqlib/framework/controls/edit.h"

namespace dq {

IMPLEMENT_DYNAMIC(CSpinButtonCtrl, CWnd)

int CSpinButtonCtrl::Clamp(long long position) const {
  const auto [low, high] = std::minmax(lower_, upper_);
  return static_cast<int>(std::clamp<long long>(position, low, high));
}

void CSpinButtonCtrl::SetRange(int lower, int upper) {
  lower_ = lower;
  upper_ = upper;
  position_ = Clamp(position_);
  Tell(WindowChange::kContent);
}

void CSpinButtonCtrl::GetRange(int& lower, int& upper) const {
  lower = lower_;
  upper = upper_;
}

int CSpinButtonCtrl::GetPos() const {
  const CWnd* const buddy = GetBuddy();
  if (buddy == nullptr) return position_;
  const CString text = buddy->GetWindowText();
  const std::string_view digits = text.View();
  int value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  const bool whole = error == std::errc() && end == digits.data() + digits.size();
  return whole && Clamp(value) == value ? value : position_;
}

int CSpinButtonCtrl::SetPos(int position) {
  const int former = GetPos();
  position_ = Clamp(position);
  Tell(WindowChange::kContent);
  const std::string text = std::to_string(position_);
  CWnd* const buddy = GetBuddy();
  if (buddy != nullptr && buddy->GetWindowText().View() != text) buddy->SetWindowText(text.c_str());
  return former;
}

CWnd* CSpinButtonCtrl::SetBuddy(CWnd* buddy) {
  CWnd* const former = GetBuddy();
  buddy_ = buddy == nullptr || buddy == this ? nullptr : buddy->GetSafeHwnd();
  Tell(WindowChange::kContent);
  return former;
}

bool CSpinButtonCtrl::Step(int steps) {
  if (!TakesInput()) return false;
  const int former = GetPos();
  const long long step = upper_ < lower_ ? -static_cast<long long>(steps) : steps;
  const int next = Clamp(former + step);
  if (next == former) return false;
  position_ = next;
  Tell(WindowChange::kContent);
  CWnd* const buddy = GetBuddy();
  const std::string text = std::to_string(next);
  // A buddy that a person can't type into takes the number all the same.
  if (buddy != nullptr && !buddy->Enter(text)) buddy->SetWindowText(text.c_str());
  return true;
}

LRESULT CSpinButtonCtrl::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_CREATE && auto_buddy_) SetBuddy(GetPrevWindow());
  return Control::DefWindowProc(message, wparam, lparam);
}

void CSpinButtonCtrl::OnSubclassed(CWnd& former) {
  Control::OnSubclassed(former);
  if (const CSpinButtonCtrl* const spin = DYNAMIC_DOWNCAST(CSpinButtonCtrl, &former)) {
    lower_ = spin->lower_;
    upper_ = spin->upper_;
    position_ = spin->position_;
    buddy_ = spin->buddy_;
    auto_buddy_ = spin->auto_buddy_;
  }
}

}  // namespace dq
