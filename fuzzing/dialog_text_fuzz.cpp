// Any text as a dialog template, a menu, key combinations and a script. What is read holds the
// promises of the form, and a text that breaks it leaves nothing.

#include "dqlib/framework/windows/dialog_template.h"
#include "dqlib/framework/windows/menu.h"
#include "dqlib/platform/dialog_script.h"
#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

int Depth(const dq::CMenu& menu) {
  int deepest = 0;
  for (int at = 0; at < menu.GetMenuItemCount(); ++at) {
    const dq::CMenu* const submenu = menu.GetSubMenu(at);
    if (submenu != nullptr) deepest = std::max(deepest, 1 + Depth(*submenu));
  }
  return deepest;
}

}  // namespace

void Try(std::string_view text) {
  std::string error;
  const auto dialog = dq::ReadDialogTemplate(text, &error);
  Require(dialog.has_value() == error.empty());
  if (dialog) {
    for (const dq::ControlTemplate& control : dialog->controls) {
      Require(control.id >= -1 && !control.window_class.empty() && control.place.Width() >= 0);
    }
  }
  dq::CMenu menu;
  if (menu.LoadMenuIndirect(text)) {
    Require(Depth(menu) <= 32);
  } else {
    Require(menu.GetSafeHmenu() == nullptr);
  }
  dq::AcceleratorTable keys;
  if (!keys.Read(text)) Require(keys.entries().empty());
  for (const dq::Accelerator& each : keys.entries()) {
    Require(keys.Find(each.key, each.control, each.shift, each.alt) != 0);
  }
  dq::platform::DialogScript script;
  if (dq::platform::DialogScript::Read(text, script)) Require(script.IsDone());
}

}  // namespace dq::fuzz
