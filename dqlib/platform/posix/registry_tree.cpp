#include "dqlib/platform/posix/registry_tree.h"

#include <algorithm>
#include <utility>

namespace dq::platform::posix {

bool IsValueName(std::string_view name) {
  return name.size() <= kMaxValueName && name.find('\0') == std::string_view::npos;
}

bool IsKeyPath(std::string_view path) {
  if (path.size() > kMaxKeyPath || path.find('\0') != std::string_view::npos) return false;
  if (path.size() <= kMaxKeyName) return true;
  for (std::string_view name = TakeKeyName(path); !name.empty(); name = TakeKeyName(path)) {
    if (name.size() > kMaxKeyName) return false;
  }
  return true;
}

RegistryTree::RegistryTree() : root_(&NewKey()) {}

TreeKey& RegistryTree::NewKey() {
  TreeKey* key = nullptr;
  if (unused_.empty()) {
    key = &keys_.emplace_back();
  } else {
    key = unused_.back();
    unused_.pop_back();
  }
  key->id = ++last_id_;
  return *key;
}

TreeKey* RegistryTree::FindKey(TreeKey& from, std::string_view path) const {
  TreeKey* key = &from;
  for (std::string_view name = TakeKeyName(path); !name.empty(); name = TakeKeyName(path)) {
    const std::size_t index = key->children.Find(name, HashName(name));
    if (index == NameTable<TreeChild>::kNone) return nullptr;
    key = key->children[index].key;
  }
  return key;
}

TreeKey& RegistryTree::MakeKey(TreeKey& from, std::string_view path) {
  TreeKey* key = &from;
  for (std::string_view name = TakeKeyName(path); !name.empty(); name = TakeKeyName(path)) {
    const std::uint32_t hash = HashName(name);
    const std::size_t index = key->children.Find(name, hash);
    if (index != NameTable<TreeChild>::kNone) {
      key = key->children[index].key;
      continue;
    }
    TreeKey& made = NewKey();
    made.name = name;
    made.parent = key;
    key->children.Add({made.name, hash, &made});
    key = &made;
  }
  return *key;
}

void RegistryTree::DeleteKey(TreeKey& key) {
  TreeChild self{key.name, HashName(key.name), &key};
  key.parent->children.Remove(key.parent->children.Find(self.name, self.hash));
  std::vector<TreeKey*> doomed{&key};
  while (!doomed.empty()) {
    TreeKey* const dead = doomed.back();
    doomed.pop_back();
    for (const TreeChild& child : dead->children) doomed.push_back(child.key);
    *dead = TreeKey{};
    unused_.push_back(dead);
  }
}

const TreeValue* RegistryTree::FindValue(const TreeKey& key, std::string_view name) {
  const std::size_t index = key.values.Find(name, HashName(name));
  return index == NameTable<TreeValue>::kNone ? nullptr : &key.values[index];
}

void RegistryTree::SetValue(TreeKey& key, std::string_view name, DWORD type,
                            std::string_view data) {
  const std::uint32_t hash = HashName(name);
  const std::size_t index = key.values.Find(name, hash);
  if (index == NameTable<TreeValue>::kNone) {
    key.values.Add({std::string(name), hash, type, std::string(data)});
    return;
  }
  key.values[index].type = type;
  key.values[index].data = data;
}

bool RegistryTree::DeleteValue(TreeKey& key, std::string_view name) {
  const std::size_t index = key.values.Find(name, HashName(name));
  if (index == NameTable<TreeValue>::kNone) return false;
  key.values.Remove(index);
  return true;
}

std::string RegistryTree::PathOf(const TreeKey& key) {
  std::vector<const TreeKey*> way;
  for (const TreeKey* step = &key; step->parent != nullptr; step = step->parent) {
    way.push_back(step);
  }
  std::string path;
  for (auto step = way.rbegin(); step != way.rend(); ++step) {
    if (!path.empty()) path += '\\';
    path += (*step)->name;
  }
  return path;
}

}  // namespace dq::platform::posix
