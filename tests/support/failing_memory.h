// Memory that runs out on demand.

#pragma once

namespace dq::test {

/// For its lifetime no allocation by `new` succeeds on the calling thread.
class FailingMemory {
 public:
  FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;
  ~FailingMemory();
};

}  // namespace dq::test
