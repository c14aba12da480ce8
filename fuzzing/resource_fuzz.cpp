// Any bytes as a resource of each kind, and as a script. What is read holds the promises of the
// form, what has a form for writing comes back the same from it, and what breaks it leaves nothing.

#include "fuzzing/fuzzing.h"

namespace dq::fuzz {

static int Depth(const CMenu* menu) {
  if (menu == nullptr) return 0;
  int deepest = 0;
  for (int at = 0; at < menu->GetMenuItemCount(); ++at) {
    deepest = std::max(deepest, Depth(menu->GetSubMenu(at)));
  }
  return deepest + 1;
}

void Try(std::string_view text) {
  std::string error;
  const auto dialog = ReadDialogTemplate(text, &error);
  Require(dialog.has_value() == error.empty());
  for (const auto& control : dialog ? dialog->controls : std::vector<ControlTemplate>()) {
    Require(control.id >= -1 && !control.window_class.empty() && control.place.Width() >= 0);
  }
  CMenu menu;
  const bool has_menu = menu.LoadMenuIndirect(text) != 0;
  Require(has_menu ? Depth(&menu) <= 33 : menu.GetSafeHmenu() == nullptr);
  AcceleratorTable keys;
  Require(keys.Read(text) || keys.entries().empty());
  for (const Accelerator& each : keys.entries()) {
    Require(keys.Find(each.key, each.control, each.shift, each.alt) != 0);
  }
  platform::DialogScript script;
  Require(!platform::DialogScript::Read(text, script) || script.IsDone());
  if (const auto bar = ReadToolBarTemplate(text)) {
    Require(text.starts_with(WriteToolBarTemplate(bar->picture_size, bar->commands)));
  }
  const auto picture = ReadDib(text);
  if (picture == nullptr) return;
  const auto again = ReadDib(WriteDib(*picture));
  Require(again != nullptr && again->size == picture->size && again->pixels == picture->pixels);
}

}  // namespace dq::fuzz
