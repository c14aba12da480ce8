// A registry of a test's own, whose files lie in memory, and whose changes can be refused; and what
// stands in any registry, as data to compare.
//
//   MemoryRegistry registry;
//   platform::Platform services = platform::Current();
//   services.registry = &registry;
//   const platform::ScopedPlatform scope(services);

#pragma once

#include "dqlib/platform/posix/registry.h"
#include "tests/support/temp_directory.h"

namespace dq::test {

class MemoryRegistry : private MemoryDirectory, public platform::posix::FileRegistry {
 public:
  MemoryRegistry() : FileRegistry(path()) {}

  /// While it is set, every change fails with it.
  platform::Error refusal;
  /// While it is set, no value can be read, and this is why.
  platform::Error unreadable;
  /// The same for the names of keys.
  platform::Error unlisted;
  /// Changes of values that were not refused.
  int changes = 0;

  platform::Result<HKEY> CreateKey(HKEY key, std::string_view path) override {
    if (refusal.ok()) return FileRegistry::CreateKey(key, path);
    auto opened = OpenKey(key, path);
    if (!opened.ok()) opened.error = refusal;
    return opened;
  }
  platform::Result<platform::RegistryValueInfo> ReadValue(HKEY key, std::string_view name,
                                                          std::span<char> data) override {
    return unreadable.ok() ? FileRegistry::ReadValue(key, name, data) : unreadable;
  }
  platform::Error SetValue(HKEY key, std::string_view name, DWORD type,
                           std::string_view data) override {
    changes += refusal.ok() ? 1 : 0;
    return refusal.ok() ? FileRegistry::SetValue(key, name, type, data) : refusal;
  }
  platform::Error DeleteValue(HKEY key, std::string_view name) override {
    changes += refusal.ok() ? 1 : 0;
    return refusal.ok() ? FileRegistry::DeleteValue(key, name) : refusal;
  }
  platform::Error DeleteKey(HKEY key, std::string_view path) override {
    return refusal.ok() ? FileRegistry::DeleteKey(key, path) : refusal;
  }

  platform::Result<std::string> EnumKey(HKEY key, std::size_t index) override {
    return unlisted.ok() ? FileRegistry::EnumKey(key, index) : unlisted;
  }
};

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
