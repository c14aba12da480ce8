// Snapshots of the registry: any bytes are read, and what was read of them is written and read back
// whole.

#include <cstddef>

#include "dqlib/platform/posix/registry_snapshot.h"
#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

using dq::platform::Error;
using dq::platform::posix::LoadedSnapshot;
using dq::platform::posix::ReadSnapshot;

constexpr std::string_view kRoot = "HKEY_CURRENT_USER";

std::string Written(const dq::platform::posix::RegistryTree& tree) {
  std::string text;
  const Error error = WriteSnapshot(tree, kRoot, std::nullopt, [&](std::string_view piece) {
    text += piece;
    return Error{};
  });
  Require(error.ok());
  return text;
}

}  // namespace

void Try(std::string_view text) {
  const LoadedSnapshot loaded = ReadSnapshot(std::string(text), kRoot);
  const std::string written = Written(*loaded.tree);
  const LoadedSnapshot again = ReadSnapshot(written, kRoot);
  Require(!again.damaged && Written(*again.tree) == written);
}

}  // namespace dq::fuzz
