#include "apps/workbench/layer/view_dialog.h"

#include <algorithm>

#include "apps/workbench/layer/style.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/platform/prompts.h"

namespace workbench {
namespace {

using dq::ControlTemplate;
using dq::LONG;
using dq::platform::DialogControl;
using Kind = dq::platform::DialogControlKind;

// How a dialog is laid out, in pixels at 96 dots to the inch.
constexpr LONG kMargin = 12;
constexpr LONG kGap = 8;
constexpr LONG kLine = 20;
constexpr LONG kLines = 60;
constexpr LONG kList = 160;
constexpr LONG kField = 300;
constexpr LONG kButtonWidth = 84;
constexpr LONG kButtonHeight = 24;

bool IsMark(const DialogControl& control) {
  return control.kind == Kind::kCheck || control.kind == Kind::kRadio;
}

/// Which window class shows it, by which word of templates, with which flags.
ControlTemplate TemplateOf(const DialogControl& control) {
  ControlTemplate made;
  made.id = control.id;
  made.items = control.items;
  switch (control.kind) {
    case Kind::kText:
      made.window_class = "Static";
      made.word = "text";
      break;
    case Kind::kButton:
      made.window_class = "Button";
      made.word = control.is_default ? "defbutton" : "button";
      break;
    case Kind::kCheck:
    case Kind::kRadio:
      made.window_class = "Button";
      made.word = control.kind == Kind::kCheck ? "check" : "radio";
      break;
    case Kind::kList:
      made.window_class = "ListBox";
      made.word = "list";
      if (control.multiple) made.flags = {"multiple"};
      break;
    case Kind::kCombo:
      made.window_class = "ComboBox";
      made.word = "combo";
      if (!control.editable) made.flags = {"droplist"};
      break;
    default:
      made.window_class = "Edit";
      made.word = "edit";
      if (control.multiple) made.flags = {"multiline"};
      if (control.secret) made.flags.push_back("password");
      break;
  }
  if (IsMark(control) || control.kind == Kind::kButton) made.text = control.label;
  return made;
}

LONG HeightOf(const DialogControl& control) {
  if (control.kind == Kind::kList) return kList / 2;
  return control.multiple ? kLines : kLine;
}

dq::DialogTemplate Design(dq::platform::DialogView& view) {
  dq::DialogTemplate design;
  design.caption = view.Caption();
  const std::vector<DialogControl> controls = view.Controls();
  LONG labels = 0;
  for (const DialogControl& each : controls) {
    if (IsMark(each) || each.kind == Kind::kButton) continue;
    labels = std::max(labels, dq::GetTextExtent(nullptr, each.label + ':').cx);
  }
  const LONG left = kMargin + labels + kGap;
  const LONG right = left + kField;
  LONG top = kMargin;
  LONG button = right;
  std::vector<ControlTemplate> buttons;
  for (const DialogControl& each : controls) {
    if (each.kind == Kind::kOther) continue;
    ControlTemplate made = TemplateOf(each);
    if (each.kind == Kind::kButton) {
      buttons.push_back(std::move(made));
      continue;
    }
    if (!IsMark(each) && !each.label.empty()) {
      design.controls.push_back(
          {"Static", -1, each.label + ':', {kMargin, top + 3, left, top + 17}, "text", {}});
    }
    made.place = {left, top, right, top + HeightOf(each)};
    top = made.place.bottom + kGap;
    if (each.kind == Kind::kCombo) made.place.bottom = made.place.top + kList;
    design.controls.push_back(std::move(made));
  }
  // The last one at the right.
  for (auto each = buttons.rbegin(); each != buttons.rend(); ++each) {
    each->place = {button - kButtonWidth, top, button, top + kButtonHeight};
    button -= kButtonWidth + kGap;
  }
  std::ranges::move(buttons, std::back_inserter(design.controls));
  design.size = {right + kMargin, top + kButtonHeight + kMargin};
  return design;
}

}  // namespace

ViewDialog::ViewDialog(dq::platform::DialogView& view) : view_(view) {
  InitModalIndirect(Design(view));
}

ViewDialog::~ViewDialog() { ViewDialog::DestroyWindow(); }

dq::BOOL ViewDialog::OnInitDialog() {
  ShowValues();
  return CDialog::OnInitDialog();
}

bool ViewDialog::CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) {
  static constexpr dq::MessageMapEntry kEntries[] = {
      dq::CommandRangeEntry<&ViewDialog::OnButton>(1, 0xFFFF),
  };
  const bool is_press = key.message == dq::WM_COMMAND && key.code == dq::BN_CLICKED;
  if (is_press && key.id != dq::IDOK && key.id != dq::IDCANCEL) {
    const auto controls = view_.Controls();
    const auto pressed = std::ranges::find(controls, static_cast<int>(key.id), &DialogControl::id);
    const bool is_button = pressed != controls.end() && pressed->kind == Kind::kButton;
    if (is_button && dq::CallEntry(kEntries, *this, key, arguments)) return true;
  }
  return CDialog::CallMapped(key, arguments);
}

/// Brings the controls to what the view's hold.
void ViewDialog::ShowValues() {
  for (const DialogControl& each : view_.Controls()) {
    CWnd* const control = GetDlgItem(each.id);
    if (control == nullptr) continue;
    if (each.kind == Kind::kText) {
      control->SetWindowText(each.value.c_str());
    } else if (each.kind != Kind::kButton) {
      control->Enter(each.value);
    }
    control->EnableWindow(each.enabled);
    control->ShowWindow(each.visible ? dq::SW_SHOW : dq::SW_HIDE);
  }
}

/// Enters what the person has; false if the view doesn't take a value, which is shown.
bool ViewDialog::EnterAll() {
  for (const DialogControl& each : view_.Controls()) {
    CWnd* const control = GetDlgItem(each.id);
    const bool is_fixed = each.kind == Kind::kText || each.kind == Kind::kButton;
    if (control == nullptr || is_fixed || !each.enabled || !each.visible) continue;
    DialogControl shown;
    control->Describe(shown);
    // A radio button loses its mark to another one.
    if (shown.value == each.value || (each.kind == Kind::kRadio && shown.value == "0")) continue;
    if (view_.Enter(each.id, shown.value)) continue;
    GotoDlgCtrl(control);
    return false;
  }
  return true;
}

void ViewDialog::PressButton(int id) {
  if (id != dq::IDCANCEL && !EnterAll()) return dq::MessageBeep(dq::BOX_EXCLAMATION);
  const bool pressed = view_.Press(id);
  if (!view_.IsOpen()) {
    EndDialog(id);
  } else if (pressed) {
    ShowValues();
  }
}

}  // namespace workbench
