// A registry in memory, for tests of what is kept in it rather than of how.
//
//   MemoryRegistry registry;
//   platform::Platform services = platform::Current();
//   services.registry = &registry;
//   const platform::ScopedPlatform scope(services);

#pragma once

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "dqlib/platform/ascii.h"
#include "dqlib/platform/platform.h"

namespace dq::test {

/// One thread at a time.
class MemoryRegistry : public platform::Registry {
 public:
  /// While it is set, every change fails with it.
  platform::Error refusal;
  /// Changes of values that were done.
  int changes = 0;

  platform::Result<HKEY> OpenKey(HKEY key, std::string_view path) override {
    return Walk(key, path, false);
  }
  platform::Result<HKEY> CreateKey(HKEY key, std::string_view path) override {
    return Walk(key, path, true);
  }
  void CloseKey(HKEY key) override {
    if (key < kClassesRoot || key > kLocalMachine) open_.erase(key);
  }

  platform::Result<platform::RegistryValueInfo> ReadValue(HKEY key, std::string_view name,
                                                          std::span<char> data) override {
    const auto node = Find(key);
    if (node == nullptr || !node->values.contains(name)) return kMissing;
    const Value& value = node->values.find(name)->second;
    platform::Result<platform::RegistryValueInfo> result({value.first, value.second.size()});
    if (value.second.size() > data.size()) {
      result.error.kind = platform::ErrorKind::kBufferTooSmall;
    } else {
      std::ranges::copy(value.second, data.begin());
    }
    return result;
  }
  platform::Error SetValue(HKEY key, std::string_view name, DWORD type,
                           std::string_view data) override {
    const auto node = Find(key);
    if (node == nullptr || !refusal.ok()) return node == nullptr ? kMissing : refusal;
    const auto found = node->values.try_emplace(std::string(name)).first;
    found->second = {type, std::string(data)};
    ++changes;
    return {};
  }
  platform::Error DeleteValue(HKEY key, std::string_view name) override {
    const auto node = Find(key);
    if (node == nullptr || !node->values.contains(name)) return kMissing;
    if (!refusal.ok()) return refusal;
    node->values.erase(node->values.find(name));
    ++changes;
    return {};
  }

  platform::Error DeleteKey(HKEY key, std::string_view path) override {
    const std::size_t last = path.rfind('\\') + 1;
    const auto opened = Walk(key, path.substr(0, last), false);
    const auto above = Find(opened.value);
    CloseKey(opened.value);
    const auto node = above == nullptr ? nullptr : above->Below(path.substr(last));
    if (node == nullptr) return kMissing;
    if (!node->keys.empty()) return {platform::ErrorKind::kBusy, 0};
    if (!refusal.ok()) return refusal;
    node->deleted = true;
    above->keys.erase(above->keys.find(path.substr(last)));
    return {};
  }

  platform::Result<platform::RegistryValue> EnumValue(HKEY key, std::size_t index) override {
    const auto node = Find(key);
    if (node == nullptr || index >= node->values.size()) return kMissing;
    const auto& [name, value] = *std::next(node->values.begin(), static_cast<int>(index));
    return platform::RegistryValue{name, value.first, value.second};
  }
  platform::Result<std::string> EnumKey(HKEY key, std::size_t index) override {
    const auto node = Find(key);
    if (node == nullptr || index >= node->keys.size()) return kMissing;
    return std::next(node->keys.begin(), static_cast<int>(index))->first;
  }
  platform::Error Flush() override { return {}; }

 private:
  static constexpr platform::Error kMissing{platform::ErrorKind::kNotFound, 2};
  using Value = std::pair<DWORD, std::string>;
  struct NameLess {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const {
      return std::ranges::lexicographical_compare(left, right, {}, platform::AsciiLower,
                                                  platform::AsciiLower);
    }
  };
  struct Node {
    std::map<std::string, Value, NameLess> values;
    std::map<std::string, std::shared_ptr<Node>, NameLess> keys;
    bool deleted = false;

    std::shared_ptr<Node> Below(std::string_view name) const {
      const auto found = keys.find(name);
      return found == keys.end() ? nullptr : found->second;
    }
  };

  /// Cuts the first name off; "" if there is none.
  static std::string_view NextName(std::string_view& path) {
    path.remove_prefix(std::min(path.find_first_not_of('\\'), path.size()));
    const std::string_view name = path.substr(0, path.find('\\'));
    path.remove_prefix(name.size());
    return name;
  }

  std::shared_ptr<Node> Find(HKEY key) const {
    const auto found = open_.find(key);
    return found == open_.end() || found->second->deleted ? nullptr : found->second;
  }

  platform::Result<HKEY> Walk(HKEY key, std::string_view path, bool create) {
    std::shared_ptr<Node> node = Find(key);
    for (std::string_view name; node != nullptr && !(name = NextName(path)).empty();) {
      std::shared_ptr<Node> below = node->Below(name);
      if (below == nullptr && create) {
        if (!refusal.ok()) return refusal;
        below = node->keys[std::string(name)] = std::make_shared<Node>();
      }
      node = std::move(below);
    }
    if (node == nullptr) return kMissing;
    open_[++last_key_] = node;
    return last_key_;
  }

  std::map<HKEY, std::shared_ptr<Node>> open_{{kClassesRoot, std::make_shared<Node>()},
                                              {kCurrentUser, std::make_shared<Node>()},
                                              {kLocalMachine, std::make_shared<Node>()}};
  HKEY last_key_ = 0;
};

}  // namespace dq::test
