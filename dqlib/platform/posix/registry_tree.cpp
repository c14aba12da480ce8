#include "dqlib/platform/posix/registry_tree.h"

#include <algorithm>
#include <exception>
#include <random>
#include <utility>

#include "dqlib/platform/registry_text.h"

namespace dq::platform::posix {
namespace {

void SetKeptValue(NameTable<TreeValue>& values, std::string_view name, DWORD type,
                  std::string_view data) {
  const std::uint32_t hash = HashName(name);
  const std::size_t index = values.Find(name, hash);
  if (index == NameTable<TreeValue>::kNone) {
    values.Add({.name = name, .hash = hash, .type = type, .data = data});
  } else {
    values[index].data = data;
    values[index].type = type;
  }
}

/// Takes the values of one key.
class ValueSink : public RegistryTextSink {
 public:
  explicit ValueSink(NameTable<TreeValue>& values) : values_(values) {}

  bool OnValue(std::string_view name, DWORD type, std::string_view data) override {
    if (!IsValueName(name) || data.size() > kMaxValueData) return false;
    SetKeptValue(values_, name, type, data);
    return true;
  }
  bool OnKey(std::string_view) override { return false; }
  bool OnDeletedKey(std::string_view) override { return false; }
  bool OnDeletedValue(std::string_view) override { return false; }

 private:
  NameTable<TreeValue>& values_;
};

}  // namespace

void ValueTable::Decode() const {
  // All that takes memory first, because what has been decoded can't be decoded again.
  const auto lines = static_cast<std::size_t>(std::count(lines_.begin(), lines_.end(), '\n'));
  table_.Reserve(table_.size() + lines + 1);
  ValueSink sink(table_);
  // The checksum has told that the lines are those that were written, all of which can be read.
  static_cast<void>(ReadRegistryLinesInPlace(std::exchange(lines_, {}), sink));
}

HashSecret MakeHashSecret() {
  constexpr HashSecret kFallback{0x9E3779B97F4A7C15, 0xD6E8FEB86659FD93};
  try {
    std::random_device random;
    const auto word = [&] { return std::uint64_t{random()} << 32 | random(); };
    return {word(), word() | 1};
  } catch (const std::exception&) {
    return kFallback;  // a system without random numbers is slow at worst
  }
}

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
  // All that takes memory first, so that without it nothing has changed.
  std::vector<TreeKey*> doomed{&key};
  for (std::size_t i = 0; i < doomed.size(); ++i) {
    const auto& children = doomed[i]->children;
    for (const TreeChild& child : children) doomed.push_back(child.key);
  }
  unused_.insert(unused_.end(), doomed.begin(), doomed.end());
  const TreeChild self{key.name, HashName(key.name), &key};
  key.parent->children.Remove(key.parent->children.Find(self.name, self.hash));
  for (TreeKey* const dead : doomed) *dead = TreeKey{};
}

const TreeValue* RegistryTree::FindValue(const TreeKey& key, std::string_view name) {
  const NameTable<TreeValue>& values = key.values.Decoded();
  const std::size_t index = values.Find(name, HashName(name));
  return index == NameTable<TreeValue>::kNone ? nullptr : &values[index];
}

void RegistryTree::SetValue(TreeKey& key, std::string_view name, DWORD type,
                            std::string_view data) {
  NameTable<TreeValue>& values = key.values.Decoded();
  TreeValue value{.hash = HashName(name), .type = type};
  const std::size_t index = values.Find(name, value.hash);
  const bool is_new = index == NameTable<TreeValue>::kNone;
  if (!is_new) name = values[index].name;
  value.own = std::make_unique_for_overwrite<char[]>(name.size() + data.size());
  char* const end = std::copy(name.begin(), name.end(), value.own.get());
  value.name = {value.own.get(), name.size()};
  value.data = {end, data.size()};
  std::copy(data.begin(), data.end(), end);
  if (is_new) {
    values.Add(std::move(value));
  } else {
    values[index] = std::move(value);
  }
}

std::span<char> RegistryTree::KeepText(std::string text) {
  text_ = std::move(text);
  return text_;
}

void RegistryTree::Decode() const {
  for (const TreeKey& key : keys_) key.values.Decoded();
}

void RegistryTree::SetKept(TreeKey& key, std::string_view name, DWORD type, std::string_view data) {
  SetKeptValue(key.values.Decoded(), name, type, data);
}

bool RegistryTree::DeleteValue(TreeKey& key, std::string_view name) {
  NameTable<TreeValue>& values = key.values.Decoded();
  const std::size_t index = values.Find(name, HashName(name));
  if (index == NameTable<TreeValue>::kNone) return false;
  values.Remove(index);
  return true;
}

std::size_t RegistryTree::AddMissing(const RegistryTree& other) {
  std::size_t differing = 0;
  std::vector<std::pair<const TreeKey*, TreeKey*>> rest{{other.root_, root_}};
  while (!rest.empty()) {
    const auto [from, to] = rest.back();
    rest.pop_back();
    for (const TreeValue& value : from->values) {
      const TreeValue* const here = FindValue(*to, value.name);
      if (here == nullptr) {
        SetValue(*to, value.name, value.type, value.data);
        ++differing;
      } else if (here->type != value.type || here->data != value.data) {
        ++differing;
      }
    }
    for (const TreeChild& child : from->children) {
      const bool is_new = to->children.Find(child.name, child.hash) == NameTable<TreeChild>::kNone;
      if (is_new) ++differing;
      rest.emplace_back(child.key, &MakeKey(*to, child.name));
    }
  }
  return differing;
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
