// The snapshot of a registry root: the whole tree as a text that the registry editor can read.
//
// It is the text export format, with a key line for every key that has values or nothing below it,
// which makes those above it, and ends in a comment line that tells
// how many values it has and the checksum of all before that line, so that missing and changed
// bytes are found:
//
//   ; 2 values, checksum 1a2b3c4d

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "dqlib/platform/error.h"
#include "dqlib/platform/posix/registry_tree.h"

namespace dq::platform::posix {

/// Takes the next piece of a snapshot; an error ends the writing.
using SnapshotWriter = std::function<Error(std::string_view)>;

/// Writes a tree in pieces. `root_name` is what its keys' paths begin with.
Error WriteSnapshot(const RegistryTree& tree, std::string_view root_name,
                    const SnapshotWriter& write);

struct LoadedSnapshot {
  std::unique_ptr<RegistryTree> tree;
  /// The bytes aren't those that were written.
  bool damaged = false;
  /// Lines that could not be used; a damaged snapshot may have none, for one whose bytes changed
  /// and still make sense, or that lacks its end.
  std::size_t lost_lines = 0;
  std::size_t values = 0;
};

/// Reads a snapshot, or what makes sense of one that is damaged. Any bytes are safe.
LoadedSnapshot ReadSnapshot(std::string_view text, std::string_view root_name);

}  // namespace dq::platform::posix
