// The snapshot of a registry root: the whole tree as a text that the registry editor can read.
//
// It is the text export format, with a key line for every key that has values or nothing below it,
// which makes those above it. Its second line is a comment with epochs in hexadecimal: its own,
// that of the journal that was folded into it, how many bytes of that one, and that of the journal
// that goes on from it:
//
//   ; epochs 5e3f00a1b2f00d05 5e3f00a1b2c3d4e5 1f40 5e3f00a1b2c3d4e6
//
// It ends in a comment line that tells how many values it has and the checksum of all before that
// line, so that missing and changed bytes are found:
//
//   ; 2 values, checksum 1a2b3c4d

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "dqlib/platform/error.h"
#include "dqlib/platform/posix/registry_tree.h"

namespace dq::platform::posix {

/// Takes the next piece of a snapshot; an error ends the writing.
using SnapshotWriter = std::function<Error(std::string_view)>;

/// What a snapshot goes with.
struct SnapshotEpochs {
  /// Its own, by which the journal that goes on from it names it. No two are the same.
  std::uint64_t epoch = 0;
  /// The journal that was folded into it, and how many of its bytes.
  std::uint64_t folded_epoch = 0;
  std::uint64_t folded_size = 0;
  /// The one that goes on from it.
  std::uint64_t next_epoch = 0;
};

/// Writes a tree in pieces. `root_name` is what its keys' paths begin with.
Error WriteSnapshot(const RegistryTree& tree, std::string_view root_name,
                    const std::optional<SnapshotEpochs>& epochs, const SnapshotWriter& write);

struct LoadedSnapshot {
  /// There is a file.
  bool is_there = false;
  std::unique_ptr<RegistryTree> tree;
  /// The bytes aren't those that were written.
  bool damaged = false;
  /// Lines that could not be used; a damaged snapshot may have none, for one whose bytes changed
  /// and still make sense, or that lacks its end.
  std::size_t lost_lines = 0;
  std::size_t values = 0;
  /// None if it tells none, as those of earlier versions.
  std::optional<SnapshotEpochs> epochs;
};

/// The bytes at the begin of a snapshot that tell its epochs.
inline constexpr std::size_t kSnapshotHeadSize = 128;
/// Those of a snapshot that begins so.
std::optional<SnapshotEpochs> FindSnapshotEpochs(std::string_view head);

/// Reads a snapshot, or what makes sense of one that is damaged. Any bytes are safe.
LoadedSnapshot ReadSnapshot(std::string text, std::string_view root_name);

}  // namespace dq::platform::posix
