// A registry of a test's own, in force while it lives, whose files lie in memory, and whose changes
// can be refused; and what stands in any registry, as data to compare.
//
//   MemoryRegistry registry;
//   registry.refusal = {platform::ErrorKind::kNoSpace, ENOSPC};

#pragma once

#include "dqlib/platform/posix/registry.h"
#include "tests/support/doubles.h"
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
    auto opened = refusal.ok() ? FileRegistry::CreateKey(key, path) : OpenKey(key, path);
    if (!refusal.ok() && !opened.ok()) opened.error = refusal;
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

 private:
  platform::ScopedPlatform scope_{With(&platform::Platform::registry, this)};
};

/// All of them are of a kind.
inline void ExpectEach(platform::ErrorKind kind, std::initializer_list<platform::Error> errors) {
  for (const platform::Error& error : errors) EXPECT_EQ(error.kind, kind);
}

/// Types and data of values by name, by the path of their key; that of the first key is "".
using RegistryDump = std::map<std::string, std::map<std::string, std::pair<DWORD, std::string>>>;

/// A key and all below it; empty if it can't be read.
inline RegistryDump Dump(platform::Registry& registry, HKEY key = kCurrentUser) {
  RegistryDump dump;
  const std::function<void(const std::string&)> add = [&](const std::string& path) {
    const HKEY at = registry.OpenKey(key, path).value;
    if (at == kNoKey) return;
    auto& values = dump[path];
    platform::Result<platform::RegistryValue> value;
    for (std::size_t i = 0; (value = registry.EnumValue(at, i)).ok(); ++i) {
      values[value.value.name] = {value.value.type, value.value.data};
    }
    platform::Result<std::string> name;
    for (std::size_t i = 0; (name = registry.EnumKey(at, i)).ok(); ++i) {
      add((path.empty() ? "" : path + "\\") + name.value);
    }
    registry.CloseKey(at);
  };
  add("");
  return dump;
}

/// The data of a value, or "(error <kind>)".
inline std::string Read(platform::Registry& registry, HKEY key, std::string_view name) {
  std::string data(std::size_t{1} << 16, '\0');
  const auto info = registry.ReadValue(key, name, data);
  if (!info.ok()) return "(error " + std::to_string(static_cast<int>(info.error.kind)) + ")";
  return data.substr(0, info.value.size);
}

/// An opening of the registry's files, as a program has one, that does what steps say.
///
///   RegistryUser user(directory.path());
///   user.Do("a=1 k\\sub\\b=#5000 -a leave");
///   EXPECT_EQ(user.All(), "k: k\\sub: b=#5000 ");
class RegistryUser : public platform::posix::FileRegistry {
 public:
  using FileRegistry::FileRegistry;

  /// Does steps up to the first one that fails: "name=data" sets a value, "name=#5000" one of so
  /// many letters, "-name" deletes it, "+path", "!path" and "?path" make, delete and open a key,
  /// "flush" and "leave" call. A name without a path is one in the key "k".
  platform::Error Try(const std::string& steps) {
    std::istringstream words(steps);
    platform::Error error;
    for (std::string word; error.ok() && words >> word;) error = Step(word);
    return error;
  }
  void Do(const std::string& steps) { EXPECT_TRUE(Try(steps).ok()) << steps; }

  /// The keys with their values; long ones by their sizes.
  std::string All() {
    const auto root = OpenKey(kCurrentUser, "");
    if (!root.ok()) return "(error " + std::to_string(static_cast<int>(root.error.kind)) + ")";
    std::string all;
    for (const auto& [path, values] : Dump(*this)) {
      if (!path.empty()) all += path + ": ";
      for (const auto& [name, value] : values) {
        const std::string& data = value.second;
        all += name + "=" + (data.size() < 100 ? data : "#" + std::to_string(data.size())) + " ";
      }
    }
    CloseKey(root.value);
    return all;
  }

 private:
  platform::Error Step(const std::string& step) {
    if (step == "flush") return Flush();
    if (step == "leave") return Leave();
    if (step[0] == '?') return OpenKey(kCurrentUser, step.substr(1)).error;
    if (step[0] == '!') return DeleteKey(kCurrentUser, step.substr(1));
    if (step[0] == '+') return WithKey(step.substr(1), [](HKEY) { return platform::Error(); });
    const std::size_t sign = step.find('=');
    const std::string path = step.substr(sign == step.npos, std::min(sign, step.size()));
    const std::size_t slash = path.rfind('\\') + 1;
    return WithKey(slash == 0 ? "k" : path.substr(0, slash - 1), [&](HKEY key) {
      if (sign == step.npos) return DeleteValue(key, path.substr(slash));
      std::string data = step.substr(sign + 1);
      if (data[0] == '#') data.assign(std::stoul(data.substr(1)), 'x');
      return SetValue(key, path.substr(slash), REGISTRY_BINARY, data);
    });
  }
  platform::Error WithKey(const std::string& path, std::function<platform::Error(HKEY)> work) {
    const auto key = CreateKey(kCurrentUser, path);
    const platform::Error error = key.ok() ? work(key.value) : key.error;
    CloseKey(key.value);
    return error;
  }
};

/// Puts the files there that a program leaves which is killed after these steps.
inline void Fill(const std::string& files, const std::string& steps) {
  const MemoryDirectory work;
  RegistryUser user(work.path());
  user.Do(steps);
  std::filesystem::copy(work.path(), files);
}

/// What a program finds in the registry if all others are killed now.
inline std::string Found(const std::string& files) {
  const MemoryDirectory copy;
  if (std::filesystem::exists(files)) std::filesystem::copy(files, copy.path());
  return RegistryUser(copy.path()).All();
}

}  // namespace dq::test
