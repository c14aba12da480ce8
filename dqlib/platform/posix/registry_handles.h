// The numbers under which callers know open keys.

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "dqlib/platform/posix/registry_tree.h"
#include "dqlib/platform/registry.h"

namespace dq::platform::posix {

/// Open keys by their numbers. Finding one takes constant time. One thread at a time.
class RegistryHandles {
 public:
  /// Which of the roots a number belongs to, in the order of `kClassesRoot` and those that follow;
  /// -1 for a number that isn't open.
  int RootOf(HKEY number) const;

  /// The key of a number in the tree of its root, or null if it isn't open or the key was deleted.
  TreeKey* Find(HKEY number, RegistryTree& tree) const;

  /// Makes room for one more, so that opening the next one takes no memory. False if too many are
  /// open.
  bool Reserve();
  /// `kNoKey` if too many are open.
  HKEY Open(int root, TreeKey& key);
  void Close(HKEY number);

  /// Moves the numbers of a root to the keys at the same paths of another tree. Without memory none
  /// has moved.
  void Move(int root, RegistryTree& to);

 private:
  struct Slot {
    HKEY number = kNoKey;
    int root = 0;
    TreeKey* key = nullptr;
    /// What the key was when it was opened.
    std::uint64_t id = 0;
  };

  const Slot* SlotOf(HKEY number) const;

  std::vector<Slot> slots_;
  std::vector<std::uint32_t> unused_;
  std::uint64_t last_opening_ = 0;
};

}  // namespace dq::platform::posix
