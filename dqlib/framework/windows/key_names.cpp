#include "dqlib/framework/windows/key_names.h"

#include "dqlib/framework/windows/resource_text.h"
#include "dqlib/platform/ascii.h"

namespace dq::detail {
namespace {

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

/// Keys of a row, which have numbers from the first on: "F1".
struct KeyRow {
  std::string_view name;
  WORD first_key;
  int first;
  int last;
};

constexpr KeyRow kRows[] = {
    {"F", 0x70, 1, 24},
    {"Num", 0x60, 0, 9},
    {"Key", 1, 1, 255},
};

bool IsLetterOrDigit(WORD key) { return (key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9'); }

}  // namespace

WORD KeyOfName(std::string_view name) {
  if (name.size() == 1) {
    const auto key = static_cast<unsigned char>(platform::AsciiUpper(name.front()));
    return IsLetterOrDigit(key) ? WORD{key} : WORD{0};
  }
  for (const NamedKey& each : kNamedKeys) {
    if (EqualIgnoringCase(name, each.name)) return each.key;
  }
  for (const KeyRow& row : kRows) {
    if (!EqualIgnoringCase(name.substr(0, row.name.size()), row.name)) continue;
    const auto number = ReadWholeNumber(name.substr(row.name.size()), row.first, row.last);
    if (number) return static_cast<WORD>(row.first_key + *number - row.first);
  }
  return 0;
}

std::string NameOfKey(WORD key) {
  if (IsLetterOrDigit(key)) return {static_cast<char>(key)};
  for (const NamedKey& each : kNamedKeys) {
    if (each.key == key) return std::string(each.name);
  }
  for (const KeyRow& row : kRows) {
    const int number = key - row.first_key + row.first;
    if (number >= row.first && number <= row.last) {
      return std::string(row.name) + std::to_string(number);
    }
  }
  return {};
}

std::optional<KeyCombination> ReadCombination(std::string_view text) {
  KeyCombination combination;
  for (std::size_t plus; (plus = text.find('+')) != std::string_view::npos;) {
    const std::string_view modifier = text.substr(0, plus);
    text.remove_prefix(plus + 1);
    bool* held = nullptr;
    if (EqualIgnoringCase(modifier, "ctrl")) held = &combination.control;
    if (EqualIgnoringCase(modifier, "shift")) held = &combination.shift;
    if (EqualIgnoringCase(modifier, "alt")) held = &combination.alt;
    if (held == nullptr || *held) return std::nullopt;
    *held = true;
  }
  combination.key = KeyOfName(text);
  return combination.key == 0 ? std::nullopt : std::optional(combination);
}

std::string TextOf(const KeyCombination& combination) {
  if (combination.key == 0) return {};
  return std::string(combination.control ? "Ctrl+" : "") + (combination.shift ? "Shift+" : "") +
         (combination.alt ? "Alt+" : "") + NameOfKey(combination.key);
}

}  // namespace dq::detail
