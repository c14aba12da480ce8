#include "dqlib/platform/posix/registry_handles.h"

namespace dq::platform::posix {
namespace {

constexpr int kRoots = 3;

/// A number is that of the opening and, in its lowest bits, the slot. The first opening makes the
/// smallest number greater than those of the roots.
constexpr int kSlotBits = 24;
constexpr std::uint64_t kFirstOpening = std::uint64_t{1} << (33 - kSlotBits);
constexpr std::size_t kMaxSlots = std::size_t{1} << kSlotBits;

bool IsRoot(HKEY number) { return number >= kClassesRoot && number < kClassesRoot + kRoots; }

}  // namespace

const RegistryHandles::Slot* RegistryHandles::SlotOf(HKEY number) const {
  const std::size_t index = number & (kMaxSlots - 1);
  if (number == kNoKey || index >= slots_.size() || slots_[index].number != number) return nullptr;
  return &slots_[index];
}

int RegistryHandles::RootOf(HKEY number) const {
  if (IsRoot(number)) return static_cast<int>(number - kClassesRoot);
  const Slot* const slot = SlotOf(number);
  return slot == nullptr ? -1 : slot->root;
}

TreeKey* RegistryHandles::Find(HKEY number, RegistryTree& tree) const {
  if (IsRoot(number)) return &tree.root();
  const Slot* const slot = SlotOf(number);
  if (slot == nullptr || slot->key == nullptr || slot->key->id != slot->id) return nullptr;
  return slot->key;
}

bool RegistryHandles::Reserve() {
  if (!unused_.empty()) return true;
  if (slots_.size() >= kMaxSlots) return false;
  if (slots_.size() == slots_.capacity()) slots_.reserve(2 * slots_.size() + 8);
  // Closing takes no memory then.
  unused_.reserve(slots_.capacity());
  return true;
}

HKEY RegistryHandles::Open(int root, TreeKey& key) {
  if (!Reserve()) return kNoKey;
  std::size_t index = slots_.size();
  if (!unused_.empty()) {
    index = unused_.back();
    unused_.pop_back();
  } else {
    slots_.emplace_back();
  }
  slots_[index] = {((kFirstOpening + last_opening_++) << kSlotBits) | index, root, &key, key.id};
  return slots_[index].number;
}

void RegistryHandles::Close(HKEY number) {
  if (SlotOf(number) == nullptr) return;
  const std::size_t index = number & (kMaxSlots - 1);
  slots_[index] = {};
  unused_.push_back(static_cast<std::uint32_t>(index));
}

void RegistryHandles::Move(int root, RegistryTree& to) {
  std::vector<TreeKey*> found(slots_.size());
  const auto moves = [&](const Slot& slot) {
    return slot.number != kNoKey && slot.root == root && slot.key != nullptr;
  };
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    const Slot& slot = slots_[i];
    if (!moves(slot) || slot.key->id != slot.id) continue;
    found[i] = to.FindKey(to.root(), RegistryTree::PathOf(*slot.key));
  }
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    if (!moves(slots_[i])) continue;
    slots_[i].key = found[i];
    if (found[i] != nullptr) slots_[i].id = found[i]->id;
  }
}

}  // namespace dq::platform::posix
