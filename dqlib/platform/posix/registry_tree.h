// One root of the registry in memory: keys that hold values and further keys.

#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/posix/registry_names.h"
#include "dqlib/platform/types.h"

namespace dq::platform::posix {

/// Sizes that names, paths and data may have, in bytes.
inline constexpr std::size_t kMaxKeyName = 255;
inline constexpr std::size_t kMaxKeyPath = 16'383;
inline constexpr std::size_t kMaxValueName = 16'383;
inline constexpr std::size_t kMaxValueData = std::size_t{64} << 20;

/// Whether a value may have this name.
bool IsValueName(std::string_view name);
/// Whether all names on a path, which may be empty, are names that keys may have.
bool IsKeyPath(std::string_view path);

/// Takes the first name off a path, and separators before it; "" at the end of the path.
inline std::string_view TakeKeyName(std::string_view& path) {
  while (!path.empty() && path.front() == '\\') path.remove_prefix(1);
  const std::string_view name = path.substr(0, path.find('\\'));
  path.remove_prefix(name.size());
  return name;
}

/// Name and data are parts of the text that the tree keeps, or of `own`.
struct TreeValue {
  std::string_view name{};
  std::uint32_t hash = 0;
  DWORD type = 0;
  std::string_view data{};
  std::unique_ptr<char[]> own{};
};

/// The values of a key. Those of a snapshot stand as its lines until somebody asks for one.
class ValueTable {
 public:
  std::size_t size() const { return Decoded().size(); }
  const TreeValue& operator[](std::size_t index) const { return Decoded()[index]; }
  auto begin() const { return Decoded().begin(); }
  auto end() const { return Decoded().end(); }

  /// Takes lines that hold values, parts of the text that the tree keeps.
  void SetLines(std::span<char> lines) {
    if (!lines_.empty()) Decode();
    lines_ = lines;
  }
  /// The values themselves. Without memory nothing has changed.
  NameTable<TreeValue>& Decoded() const {
    if (!lines_.empty()) Decode();
    return table_;
  }

 private:
  void Decode() const;

  mutable std::span<char> lines_;
  mutable NameTable<TreeValue> table_;
};

struct TreeKey;

/// How a key is known to the one above it. `name` is that of the key.
struct TreeChild {
  std::string_view name;
  std::uint32_t hash = 0;
  TreeKey* key = nullptr;
};

struct TreeKey {
  std::string name;
  TreeKey* parent = nullptr;
  /// Never used twice in a tree; 0 for a key that was deleted.
  std::uint64_t id = 0;
  ValueTable values;
  NameTable<TreeChild> children;
};

/// A tree of keys below a root without a name. Keys stay where they are in memory as long as the
/// tree; one that was deleted is used again under another id. One thread at a time, and several
/// only to read, once all is decoded.
class RegistryTree {
 public:
  RegistryTree();
  RegistryTree(const RegistryTree&) = delete;
  RegistryTree& operator=(const RegistryTree&) = delete;

  TreeKey& root() { return *root_; }
  const TreeKey& root() const { return *root_; }

  /// The key at a path below another, or null.
  TreeKey* FindKey(TreeKey& from, std::string_view path) const;
  /// The same, and makes what isn't there. The path must be one that keys may have.
  TreeKey& MakeKey(TreeKey& from, std::string_view path);
  /// Deletes a key that isn't the root, with all below it.
  void DeleteKey(TreeKey& key);

  /// Adds what another tree has and this one hasn't; where both have a value, this one's stays.
  /// Returns how many values and keys were missing or are others.
  std::size_t AddMissing(const RegistryTree& other);

  /// Keeps a text as long as the tree, the only one, for values to be parts of.
  std::span<char> KeepText(std::string text);
  /// Decodes the values of all keys.
  void Decode() const;
  /// Sets a value to parts of the text that is kept; else like `SetValue`.
  static void SetKept(TreeKey& key, std::string_view name, DWORD type, std::string_view data);

  static const TreeValue* FindValue(const TreeKey& key, std::string_view name);
  /// Sets a value; one that exists keeps the spelling of its name.
  static void SetValue(TreeKey& key, std::string_view name, DWORD type, std::string_view data);
  /// False if there is no such value.
  static bool DeleteValue(TreeKey& key, std::string_view name);

  /// The names from the root to a key, with separators between them; "" for the root.
  static std::string PathOf(const TreeKey& key);

 private:
  TreeKey& NewKey();

  std::string text_;
  std::deque<TreeKey> keys_;
  std::vector<TreeKey*> unused_;
  std::uint64_t last_id_ = 0;
  TreeKey* root_;
};

}  // namespace dq::platform::posix
