// Snapshots of the registry: any bytes are read, and what was read of them is written and read back
// whole.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "dqlib/platform/posix/registry_snapshot.h"

namespace {

using dq::platform::Error;
using dq::platform::posix::LoadedSnapshot;
using dq::platform::posix::ReadSnapshot;

constexpr std::string_view kRoot = "HKEY_CURRENT_USER";

std::string Written(const dq::platform::posix::RegistryTree& tree) {
  std::string text;
  const Error error = WriteSnapshot(tree, kRoot, [&](std::string_view piece) {
    text += piece;
    return Error{};
  });
  if (!error.ok()) std::abort();
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const LoadedSnapshot loaded = ReadSnapshot(text, kRoot);
  const std::string written = Written(*loaded.tree);
  const LoadedSnapshot again = ReadSnapshot(written, kRoot);
  if (again.damaged || Written(*again.tree) != written) std::abort();
  return 0;
}
