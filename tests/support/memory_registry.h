// A registry of a test's own, whose files lie in memory, and whose changes can be refused.
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
  /// Changes of values that were done.
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
    return refusal.ok() ? Counted(FileRegistry::SetValue(key, name, type, data)) : refusal;
  }
  platform::Error DeleteValue(HKEY key, std::string_view name) override {
    return refusal.ok() ? Counted(FileRegistry::DeleteValue(key, name)) : refusal;
  }
  platform::Error DeleteKey(HKEY key, std::string_view path) override {
    return refusal.ok() ? FileRegistry::DeleteKey(key, path) : refusal;
  }

  platform::Result<std::string> EnumKey(HKEY key, std::size_t index) override {
    return unlisted.ok() ? FileRegistry::EnumKey(key, index) : unlisted;
  }

 private:
  platform::Error Counted(platform::Error error) {
    changes += error.ok() ? 1 : 0;
    return error;
  }
};

}  // namespace dq::test
