#include <algorithm>

#include "dqlib/framework/windows/key_names.h"
#include "dqlib/framework/windows/menu.h"
#include "dqlib/framework/windows/resource_text.h"
#include "dqlib/framework/windows/wnd.h"
#include "dqlib/platform/modules.h"

namespace dq {

using detail::ResourceTextReader;

namespace {

constexpr int kHighestCommand = 0xFFFF;

}  // namespace

bool AcceleratorTable::Load(UINT id) {
  entries_.clear();
  const std::optional<std::string_view> data = detail::FindResourceData(id, RESOURCE_ACCELERATOR);
  return data && Read(*data);
}

bool AcceleratorTable::Read(std::string_view text) {
  entries_.clear();
  std::vector<Accelerator> read;
  ResourceTextReader lines(text);
  while (lines.NextLine()) {
    const std::optional<std::string_view> combination = lines.Word();
    const std::optional<int> command = lines.Number(1, kHighestCommand);
    const auto keys = command ? detail::ReadCombination(*combination) : std::nullopt;
    if (!keys) return false;
    read.push_back({.control = keys->control,
                    .shift = keys->shift,
                    .alt = keys->alt,
                    .key = keys->key,
                    .command = static_cast<WORD>(*command)});
  }
  if (lines.failed()) return false;
  entries_ = std::move(read);
  return true;
}

WORD AcceleratorTable::Find(WORD key, bool control, bool shift, bool alt) const {
  const auto found = std::ranges::find_if(entries_, [&](const Accelerator& each) {
    return each.key == key && each.control == control && each.shift == shift && each.alt == alt;
  });
  return found == entries_.end() ? WORD{0} : found->command;
}

bool AcceleratorTable::Translate(CWnd& window, WORD key, bool control, bool shift, bool alt) const {
  const WORD command = Find(key, control, shift, alt);
  if (command != 0) window.SendMessage(WM_COMMAND, MakeWParam(command, 1));
  return command != 0;
}

}  // namespace dq
