// What the test's own process holds of the system.

#pragma once

#include "tests/support/testing.h"

namespace dq::test {

/// Descriptors that are open, the one for counting among them.
inline std::ptrdiff_t OpenDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// Numbers of the children that run or still have to be reaped, with a blank behind each.
inline std::string Children() {
  std::string children;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream list(thread.path() / "children");
    children.append(std::istreambuf_iterator<char>(list), {});
  }
  return children;
}

/// Waits for something that another thread or process does in no time; false after half a minute.
template <typename Condition>
bool Eventually(Condition condition) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > limit) return false;
    std::this_thread::yield();
  }
  return true;
}

}  // namespace dq::test
