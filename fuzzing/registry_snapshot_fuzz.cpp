// Snapshots of the registry: any bytes are read, and what was read of them is written and read back
// whole.

#include "dqlib/platform/posix/registry_snapshot.h"
#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view text) {
  using namespace platform::posix;
  constexpr std::string_view kRoot = "HKEY_CURRENT_USER";
  const auto written = [&](const LoadedSnapshot& snapshot) {
    std::string all;
    const auto put = [&](std::string_view piece) {
      all += piece;
      return platform::Error{};
    };
    Require(WriteSnapshot(*snapshot.tree, kRoot, std::nullopt, put).ok());
    return all;
  };
  const std::string once = written(ReadSnapshot(std::string(text), kRoot));
  const LoadedSnapshot again = ReadSnapshot(once, kRoot);
  Require(!again.damaged && written(again) == once);
}
