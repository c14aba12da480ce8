// What stands in a registry, as data to compare.

#pragma once

#include "dqlib/platform/registry.h"
#include "tests/support/testing.h"

namespace dq::test {

/// Type and data of a value.
using DumpedValue = std::pair<DWORD, std::string>;
/// Values by name, by the path of their key; the key that the dump begins with is "".
using RegistryDump = std::map<std::string, std::map<std::string, DumpedValue>>;

inline void DumpInto(platform::Registry& registry, HKEY key, const std::string& path,
                     RegistryDump& dump) {
  auto& values = dump[path];
  for (std::size_t i = 0;; ++i) {
    const auto value = registry.EnumValue(key, i);
    if (!value.ok()) break;
    values[value.value.name] = {value.value.type, value.value.data};
  }
  for (std::size_t i = 0;; ++i) {
    const auto name = registry.EnumKey(key, i);
    if (!name.ok()) break;
    const auto below = registry.OpenKey(key, name.value);
    DumpInto(registry, below.value, path.empty() ? name.value : path + "\\" + name.value, dump);
    registry.CloseKey(below.value);
  }
}

/// A key and all below it; empty if it can't be read.
inline RegistryDump Dump(platform::Registry& registry, HKEY key = kCurrentUser) {
  RegistryDump dump;
  const auto opened = registry.OpenKey(key, "");
  if (opened.ok()) DumpInto(registry, opened.value, "", dump);
  registry.CloseKey(opened.value);
  return dump;
}

/// The data of a value, or "(error <kind>)".
inline std::string Read(platform::Registry& registry, HKEY key, std::string_view name) {
  std::string data(std::size_t{1} << 16, '\0');
  const auto info = registry.ReadValue(key, name, data);
  if (!info.ok()) return "(error " + std::to_string(static_cast<int>(info.error.kind)) + ")";
  return data.substr(0, info.value.size);
}

}  // namespace dq::test
