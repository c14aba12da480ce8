#include <algorithm>

#include "dqlib/framework/windows/menu.h"
#include "dqlib/framework/windows/resource_text.h"
#include "dqlib/framework/windows/wnd.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/modules.h"

namespace dq {
namespace {

using detail::ResourceTextReader;
using platform::EqualIgnoringCase;

struct NamedKey {
  std::string_view name;
  WORD key;
};

constexpr NamedKey kNamedKeys[] = {
    {"Back", 0x08}, {"Tab", 0x09},   {"Enter", 0x0D}, {"Esc", 0x1B},  {"Space", 0x20},
    {"PgUp", 0x21}, {"PgDn", 0x22},  {"End", 0x23},   {"Home", 0x24}, {"Left", 0x25},
    {"Up", 0x26},   {"Right", 0x27}, {"Down", 0x28},  {"Ins", 0x2D},  {"Del", 0x2E},
};

constexpr WORD kF1 = 0x70;
constexpr int kFunctionKeys = 24;
constexpr int kHighestCommand = 0xFFFF;

/// The number of a key, 0 if the name is none.
WORD KeyOfName(std::string_view name) {
  if (name.size() == 1) {
    const char letter = platform::AsciiLower(name.front());
    if (letter >= 'a' && letter <= 'z') return static_cast<WORD>(letter - 'a' + 'A');
    return letter >= '0' && letter <= '9' ? static_cast<WORD>(letter) : WORD{0};
  }
  if (!name.empty() && platform::AsciiLower(name.front()) == 'f') {
    const auto number = detail::ReadWholeNumber(name.substr(1), 1, kFunctionKeys);
    if (number) return static_cast<WORD>(kF1 + *number - 1);
  }
  for (const NamedKey& each : kNamedKeys) {
    if (EqualIgnoringCase(name, each.name)) return each.key;
  }
  return 0;
}

/// Takes "ctrl+shift+F". False if it names no key or a modifier twice.
bool ReadCombination(std::string_view text, Accelerator& accelerator) {
  for (std::size_t plus; (plus = text.find('+')) != std::string_view::npos;) {
    const std::string_view modifier = text.substr(0, plus);
    text.remove_prefix(plus + 1);
    bool* held = nullptr;
    if (EqualIgnoringCase(modifier, "ctrl")) held = &accelerator.control;
    if (EqualIgnoringCase(modifier, "shift")) held = &accelerator.shift;
    if (EqualIgnoringCase(modifier, "alt")) held = &accelerator.alt;
    if (held == nullptr || *held) return false;
    *held = true;
  }
  accelerator.key = KeyOfName(text);
  return accelerator.key != 0;
}

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
    Accelerator entry;
    const std::optional<std::string_view> combination = lines.Word();
    const std::optional<int> command = lines.Number(1, kHighestCommand);
    if (!command || !ReadCombination(*combination, entry)) return false;
    entry.command = static_cast<WORD>(*command);
    read.push_back(entry);
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
