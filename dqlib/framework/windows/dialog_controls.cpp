#include "dqlib/framework/windows/dialog_controls.h"

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/windows/dialog.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {
namespace {

using platform::DialogControl;
using platform::DialogControlKind;

std::map<std::string, WindowFactory, std::less<>>& Factories() {
  static auto& factories = *new std::map<std::string, WindowFactory, std::less<>>;
  return factories;
}

/// A label without its mnemonic, nor the colon and blanks at its end.
std::string PlainLabel(std::string_view text) {
  std::string plain = detail::WithoutMnemonic(text);
  while (!plain.empty() && (plain.back() == ' ' || plain.back() == ':')) plain.pop_back();
  return plain;
}

bool IsLabelledByItself(DialogControlKind kind) {
  return kind == DialogControlKind::kButton || kind == DialogControlKind::kCheck ||
         kind == DialogControlKind::kRadio || kind == DialogControlKind::kText;
}

/// Adds what is below `parent`; `usable` tells whether that is visible and enabled itself.
void AddControls(const CWnd& parent, bool visible, bool enabled,
                 std::vector<DialogControl>& controls) {
  std::string label;
  for (const CWnd* child = parent.GetTopWindow(); child != nullptr;
       child = child->GetNextWindow()) {
    const bool shown = visible && child->IsShown();
    const bool usable = enabled && child->IsWindowEnabled();
    if (child->IsKindOf(RUNTIME_CLASS(CDialog))) {
      AddControls(*child, shown, usable, controls);
      continue;
    }
    DialogControl control;
    child->Describe(control);
    control.id = child->GetDlgCtrlID();
    control.visible = shown;
    control.enabled = usable;
    const std::string text = PlainLabel(static_cast<const char*>(child->GetWindowText()));
    if (IsLabelledByItself(control.kind)) {
      control.label = text;
      label = child->GetWindowClass() == "Static" ? text : std::string();
    } else if (control.label.empty()) {
      control.label = std::exchange(label, {});
    }
    controls.push_back(std::move(control));
  }
}

}  // namespace

void RegisterControlClass(std::string_view window_class, WindowFactory make) {
  Factories().insert_or_assign(std::string(window_class), make);
}

namespace detail {

bool MakeControls(const DialogTemplate& pattern, CWnd& dialog,
                  std::vector<std::unique_ptr<CWnd>>& controls) {
  const Watched parent(dialog);
  // Plain windows in the place of all controls would look like a dialog and do nothing.
  if (Factories().empty()) throw std::logic_error("dqlib is linked without control_classes.cpp");
  controls.reserve(controls.size() + pattern.controls.size());
  for (const ControlTemplate& control : pattern.controls) {
    const auto factory = Factories().find(control.window_class);
    std::unique_ptr<CWnd> window =
        factory == Factories().end() ? nullptr : factory->second(control);
    if (window == nullptr) window = std::make_unique<CWnd>();
    window->CreateWnd({.class_name = control.window_class,
                       .text = control.text,
                       .place = control.place,
                       .parent = &dialog,
                       .id = control.id,
                       .visible = !control.Has("hidden"),
                       .enabled = !control.Has("disabled")});
    if (!parent.IsThere()) return false;
    controls.push_back(std::move(window));
  }
  return true;
}

std::vector<DialogControl> DescribeControls(const CWnd& dialog) {
  std::vector<DialogControl> controls;
  AddControls(dialog, true, true, controls);
  return controls;
}

std::string WithoutMnemonic(std::string_view label) {
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  std::string plain;
  for (bool marked = false; !label.empty();) {
    const std::size_t size = page.CharacterSize(label);
    marked = label.front() == '&' && !marked;
    if (!marked) plain += label.substr(0, size);
    label.remove_prefix(size);
  }
  return plain;
}

CWnd* FindControl(const CWnd& dialog, int id) {
  if (CWnd* const control = dialog.GetDlgItem(id)) return control;
  for (CWnd* child = dialog.GetTopWindow(); child != nullptr; child = child->GetNextWindow()) {
    if (!child->IsShown() || !child->IsKindOf(RUNTIME_CLASS(CDialog))) continue;
    if (CWnd* const control = FindControl(*child, id)) return control;
  }
  return nullptr;
}

}  // namespace detail
}  // namespace dq
