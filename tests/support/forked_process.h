// Work in other processes that begin with this one's state, and what this one holds of the system.
//
//   std::atomic<int>& done = MakeSharedCount();
//   ForkedProcess child([&] { EXPECT_TRUE(Work()); ++done; });
//   ... work at the same time ...
//   EXPECT_TRUE(child.EndsWell());

#pragma once

#include <csignal>
#include <deque>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/testing.h"

namespace dq::test {

class ForkedProcess {
 public:
  /// Starts the work. No other thread of this process may hold a lock meanwhile.
  template <typename Work>
  explicit ForkedProcess(Work work) : id_(::fork()) {
    if (id_ != 0) return;
    work();
    ::_exit(testing::Test::HasFailure() ? 1 : 0);
  }
  ForkedProcess(const ForkedProcess&) = delete;

  /// Waits for the end, once; whether the process started and did all its work as was expected.
  bool EndsWell() { return Status() == 0; }
  /// Kills it, once; false if it had come to its end.
  bool Kill() { return ::kill(id_, SIGKILL) == 0 && Status() == SIGKILL; }

 private:
  int Status() const {
    int status = -1;
    return id_ > 0 && ::waitpid(id_, &status, 0) == id_ ? status : -1;
  }

  const pid_t id_;
};

/// Whether so many processes, which work at the same time and are told their numbers, all end well.
template <typename Work>
bool AllEndWell(int count, Work work) {
  std::deque<ForkedProcess> children;
  for (int i = 0; i < count; ++i) children.emplace_back([&] { work(i); });
  return std::ranges::count_if(children, &ForkedProcess::EndsWell) == count;
}

/// A count from 0, shared with the processes that are forked from now on; it stays to the end.
inline std::atomic<int>& MakeSharedCount() {
  void* const page = ::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  return *new (page) std::atomic<int>(0);
}

/// Runs a command of the shell in a directory of files, and returns what it writes.
inline std::string RunShell(const std::string& files, const std::string& command) {
  FILE* const pipe = ::popen(("cd '" + files + "' || exit; " + command).c_str(), "r");
  char text[1'000];
  const std::size_t size = std::fread(text, 1, sizeof text, pipe);
  EXPECT_EQ(::pclose(pipe), 0) << command;
  return std::string(text, size);
}

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
