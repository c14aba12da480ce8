// Tables of things with names that are compared without regard to the case of ASCII letters.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace dq::platform::posix {

/// Whether two names are the same but for the case of ASCII letters.
inline bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  // Mostly they are spelled alike.
  if (std::memcmp(a.data(), b.data(), a.size()) == 0) return true;
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; };
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

namespace detail {

template <typename Word>
std::uint64_t LoadWord(const char* bytes) {
  Word word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

/// All of up to 8 bytes in one number; loads that overlap are cheaper than a loop.
inline std::uint64_t LoadUpTo8(const char* bytes, std::size_t size) {
  if (size >= 8) return LoadWord<std::uint64_t>(bytes);
  if (size >= 4) {
    return LoadWord<std::uint32_t>(bytes) | LoadWord<std::uint32_t>(bytes + size - 4) << 32;
  }
  if (size >= 2) {
    return LoadWord<std::uint16_t>(bytes) | LoadWord<std::uint16_t>(bytes + size - 2) << 16;
  }
  return size == 1 ? LoadWord<std::uint8_t>(bytes) : 0;
}

}  // namespace detail

/// Numbers of this process that nobody else knows.
struct HashSecret {
  std::uint64_t first;
  std::uint64_t second;
};
HashSecret MakeHashSecret();
inline const HashSecret& Secret() {
  static const HashSecret secret = MakeHashSecret();
  return secret;
}

/// Both halves of a product in one number.
inline std::uint64_t MixProduct(std::uint64_t a, std::uint64_t b) {
  __extension__ using Product = unsigned __int128;
  const Product product = Product{a} * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

/// The letters A to Z among eight bytes made small, and nothing else.
inline std::uint64_t LowerWord(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  const std::uint64_t low = word & (kOnes * 0x7F);
  const std::uint64_t from_a = low + kOnes * (0x80 - 'A');
  const std::uint64_t behind_z = low + kOnes * (0x7F - 'Z');
  const std::uint64_t letters = (from_a ^ behind_z) & ~word & (kOnes * 0x80);
  return word | letters >> 2;
}

/// A hash that is equal for names that are the same. It differs from process to process, so that
/// nobody can make up a file of names whose hashes are all equal, which would take time in the
/// square of their number.
inline std::uint32_t HashName(std::string_view name) {
  const char* bytes = name.data();
  std::size_t left = name.size();
  const HashSecret& secret = Secret();
  std::uint64_t hash = secret.first ^ left;
  for (; left > 8; left -= 8, bytes += 8) {
    hash = MixProduct(hash ^ LowerWord(detail::LoadUpTo8(bytes, 8)), secret.second);
  }
  hash = MixProduct(hash ^ LowerWord(detail::LoadUpTo8(bytes, left)), secret.second);
  return static_cast<std::uint32_t>(hash >> 32);
}

/// Items by name and by index. `Item` has `name` and `hash`, the hash of its name. Adding and
/// removing take constant time; removing moves the last item to the index that becomes free.
/// Few items are searched one by one, more through a hash index.
template <typename Item>
class NameTable {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::size_t size() const { return items_.size(); }
  Item& operator[](std::size_t index) { return items_[index]; }
  const Item& operator[](std::size_t index) const { return items_[index]; }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

  /// The index of the item of this name, or `kNone`.
  std::size_t Find(std::string_view name, std::uint32_t hash) const {
    if (slots_.empty()) {
      for (std::size_t i = 0; i < items_.size(); ++i) {
        if (items_[i].hash == hash && SameName(items_[i].name, name)) return i;
      }
      return kNone;
    }
    for (std::size_t slot = Home(hash); slots_[slot] != kFree; slot = Next(slot)) {
      const Item& item = items_[slots_[slot]];
      if (item.hash == hash && SameName(item.name, name)) return slots_[slot];
    }
    return kNone;
  }

  /// Makes room, so that up to this many items can be added without memory.
  void Reserve(std::size_t size) {
    items_.reserve(size);
    if (NeedsSlots(size)) MakeSlots(size * 2);
  }

  /// Adds an item whose name isn't there yet. Without memory nothing has changed.
  Item& Add(Item item) {
    const std::size_t size = items_.size() + 1;
    if (NeedsSlots(size)) MakeSlots(size * 4);
    items_.push_back(std::move(item));
    if (!slots_.empty()) Insert(size - 1);
    return items_.back();
  }

  void Remove(std::size_t index) {
    const std::size_t last = items_.size() - 1;
    if (!slots_.empty()) {
      Free(SlotOf(index));
      if (index != last) slots_[SlotOf(last)] = static_cast<std::uint32_t>(index);
    }
    if (index != last) items_[index] = std::move(items_[last]);
    items_.pop_back();
  }

  void Clear() {
    items_.clear();
    slots_.clear();
  }

 private:
  static constexpr std::size_t kFewItems = 8;
  static constexpr std::uint32_t kFree = 0xFFFFFFFF;

  bool NeedsSlots(std::size_t size) const {
    return slots_.empty() ? size > kFewItems : size * 2 > slots_.size();
  }

  void MakeSlots(std::size_t least) {
    std::size_t count = 4 * kFewItems;
    while (count < least) count *= 2;
    slots_ = std::vector<std::uint32_t>(count, kFree);
    for (std::size_t i = 0; i < items_.size(); ++i) Insert(i);
  }

  std::size_t Home(std::uint32_t hash) const { return hash & (slots_.size() - 1); }
  std::size_t Next(std::size_t slot) const { return (slot + 1) & (slots_.size() - 1); }

  void Insert(std::size_t index) {
    std::size_t slot = Home(items_[index].hash);
    while (slots_[slot] != kFree) slot = Next(slot);
    slots_[slot] = static_cast<std::uint32_t>(index);
  }

  std::size_t SlotOf(std::size_t index) const {
    std::size_t slot = Home(items_[index].hash);
    while (slots_[slot] != index) slot = Next(slot);
    return slot;
  }

  /// Frees a slot and moves those behind it that could not stand at their homes because of it.
  void Free(std::size_t hole) {
    for (std::size_t slot = Next(hole); slots_[slot] != kFree; slot = Next(slot)) {
      const std::size_t home = Home(items_[slots_[slot]].hash);
      const std::size_t mask = slots_.size() - 1;
      if (((slot - home) & mask) >= ((slot - hole) & mask)) {
        slots_[hole] = slots_[slot];
        hole = slot;
      }
    }
    slots_[hole] = kFree;
  }

  std::vector<Item> items_;
  std::vector<std::uint32_t> slots_;
};

}  // namespace dq::platform::posix
