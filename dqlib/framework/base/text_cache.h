// Strings that are shown so often that they aren't searched for each time.

#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "dqlib/framework/base/resource_chain.h"

namespace dq::detail {

/// The strings with the ids from `first`. Each is searched for when it is asked for, and again when
/// the search may find another one. For one thread; made `thread_local constinit` it costs nothing
/// to make and is never dead.
template <UINT first, std::size_t count>
class TextCache {
 public:
  /// The string with the id, one of the block; "" if no module has it. It holds as long as what
  /// `AfxFindString` gives.
  std::string_view Find(UINT id) {
    Entry& entry = entries_[id - first];
    // Asked for before the search: a change meanwhile makes the next call search again.
    const std::uint64_t generation = resource_generation;
    if (entry.generation != generation) entry = {AfxFindString(id).value_or(""), generation};
    return entry.text;
  }

 private:
  struct Entry {
    std::string_view text;
    std::uint64_t generation = 0;
  };

  std::array<Entry, count> entries_;
};

}  // namespace dq::detail
