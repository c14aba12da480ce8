// An opening of the registry's files, as a program has one, that does what steps say.
//
//   RegistryUser user(directory.path());
//   user.Do("a=1 k\\sub\\b=#5000 -a leave");
//   EXPECT_EQ(user.All(), "k: k\\sub: b=#5000 ");

#pragma once

#include "tests/support/memory_registry.h"

namespace dq::test {

class RegistryUser : public platform::posix::FileRegistry {
 public:
  using FileRegistry::FileRegistry;

  /// Does steps up to the first one that fails: "name=data" sets a value, "name=#5000" one of so
  /// many letters, "-name" deletes it, "+path" and "!path" make and delete a key, "flush" and
  /// "leave" call. A name without a path is one in the key "k".
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
  platform::Error WithKey(const std::string& path,
                          const std::function<platform::Error(HKEY)>& work) {
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
