#include "dqlib/framework/controls/button.h"

#include <algorithm>

namespace dq {

IMPLEMENT_DYNAMIC(CButton, CWnd)

void CButton::SetKind(ButtonKind kind) {
  if (kind == kind_) return;
  kind_ = kind;
  Tell(WindowChange::kContent);
  SetCheck(check_);
}

void CButton::SetCheck(int check) {
  if (!IsMarked() || check < 0 || check > 2) check = 0;
  if (check == 2 && kind_ != ButtonKind::kThreeState) check = 1;
  if (check == check_) return;
  check_ = check;
  Tell(WindowChange::kContent);
}

std::vector<CButton*> CButton::GroupButtons() const {
  const auto begins_group = [](const CWnd* window) {
    const auto* control = dynamic_cast<const Control*>(window);
    return control != nullptr && control->BeginsGroup();
  };
  const CWnd* first = this;
  while (!begins_group(first) && first->GetPrevWindow() != nullptr) first = first->GetPrevWindow();
  std::vector<CButton*> buttons;
  const auto add = [&](CButton* button) {
    if (button != nullptr && button->kind_ == ButtonKind::kRadio) buttons.push_back(button);
  };
  add(DYNAMIC_DOWNCAST(CButton, const_cast<CWnd*>(first)));
  for (CWnd* next = first->GetNextWindow(); next != nullptr && !begins_group(next);
       next = next->GetNextWindow()) {
    add(DYNAMIC_DOWNCAST(CButton, next));
  }
  return buttons;
}

bool CButton::IsTabStop() const {
  if (kind_ == ButtonKind::kGroup) return false;
  if (kind_ != ButtonKind::kRadio || check_ != 0) return true;
  const std::vector<CButton*> group = GroupButtons();
  return group.front() == this && std::ranges::none_of(group, &CButton::GetCheck);
}

/// A person goes to the next radio button of the group that can be pressed, or to the one before.
void CButton::StepInGroup(int step) {
  const std::vector<CButton*> group = GroupButtons();
  const int count = static_cast<int>(group.size());
  int at = static_cast<int>(std::ranges::find(group, this) - group.begin());
  for (int tried = 1; tried < count; ++tried) {
    at = (at + step + count) % count;
    CButton* const next = group[static_cast<std::size_t>(at)];
    if (!next->TakesInput() || !next->IsShown()) continue;
    const HWND handle = next->GetSafeHwnd();
    next->SetFocus();
    if (FromHandle(handle) == next) next->Press();
    return;
  }
}

void CButton::Mark(int check) {
  if (kind_ == ButtonKind::kRadio) {
    for (CButton* button : GroupButtons()) button->SetCheck(button == this ? 1 : 0);
  } else {
    SetCheck(check);
  }
}

void CButton::Describe(platform::DialogControl& control) const {
  using Kind = platform::DialogControlKind;
  Control::Describe(control);
  control.kind = kind_ == ButtonKind::kGroup   ? Kind::kText
                 : kind_ == ButtonKind::kRadio ? Kind::kRadio
                 : IsMarked()                  ? Kind::kCheck
                                               : Kind::kButton;
  control.is_default = kind_ == ButtonKind::kDefault;
  if (IsMarked()) control.value = std::to_string(check_);
}

bool CButton::Enter(std::string_view value) {
  if (!TakesInput() || !IsMarked() || value.size() != 1) return false;
  const int check = value.front() - '0';
  if (check < 0 || check > (kind_ == ButtonKind::kThreeState ? 2 : 1)) return false;
  if (check == check_) return true;
  if (kind_ == ButtonKind::kRadio && check == 0) return false;
  Mark(check);
  Notify(BN_CLICKED);
  return true;
}

bool CButton::Press() {
  if (!TakesInput() || kind_ == ButtonKind::kGroup) return false;
  if (IsMarked()) Mark((check_ + 1) % (kind_ == ButtonKind::kThreeState ? 3 : 2));
  Notify(BN_CLICKED);
  return true;
}

LRESULT CButton::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case BM_GETCHECK:
      return GetCheck();
    case BM_SETCHECK:
      SetCheck(static_cast<int>(wparam));
      return 0;
    case WM_GETDLGCODE:
      switch (kind_) {
        case ButtonKind::kGroup:
          return DLGC_STATIC;
        case ButtonKind::kRadio:
          return DLGC_BUTTON | DLGC_RADIOBUTTON;
        case ButtonKind::kPush:
          return DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON;
        case ButtonKind::kDefault:
          return DLGC_BUTTON | DLGC_DEFPUSHBUTTON;
        default:
          return DLGC_BUTTON;
      }
    case WM_KEYDOWN:
      if (kind_ == ButtonKind::kRadio && wparam >= VK_LEFT && wparam <= VK_DOWN) {
        StepInGroup(wparam == VK_LEFT || wparam == VK_UP ? -1 : 1);
        return 0;
      }
      return Control::DefWindowProc(message, wparam, lparam);
    case WM_NCHITTEST:
      // What a frame is around lies below it.
      return kind_ == ButtonKind::kGroup ? HTTRANSPARENT : HTCLIENT;
    default:
      return Control::DefWindowProc(message, wparam, lparam);
  }
}

void CButton::OnSubclassed(CWnd& former) {
  Control::OnSubclassed(former);
  if (const CButton* const button = DYNAMIC_DOWNCAST(CButton, &former)) {
    kind_ = button->kind_;
    check_ = button->check_;
  }
}

}  // namespace dq
