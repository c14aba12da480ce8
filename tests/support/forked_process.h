// Work in a second process that begins with this one's state.
//
//   ForkedProcess child([&] { ... });
//   ... work at the same time ...
//   EXPECT_TRUE(child.EndsWell());

#pragma once

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dq::test {

class ForkedProcess {
 public:
  /// Starts the work. No other thread of this process may hold a lock meanwhile.
  template <typename Work>
  explicit ForkedProcess(Work work) : id_(::fork()) {
    if (id_ != 0) return;
    work();
    ::_exit(0);
  }
  ForkedProcess(const ForkedProcess&) = delete;
  ForkedProcess& operator=(const ForkedProcess&) = delete;

  /// Waits for the end, once; whether the process started and did all its work.
  bool EndsWell() {
    int status = -1;
    return id_ > 0 && ::waitpid(id_, &status, 0) == id_ && status == 0;
  }

 private:
  pid_t id_;
};

}  // namespace dq::test
