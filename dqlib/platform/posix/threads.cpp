#include "dqlib/platform/threads.h"

#include <cerrno>
#include <sched.h>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

class PosixThreads final : public Threads {
 public:
  Error SetPriority(ThreadPriority priority) override {
    const int policy = priority == ThreadPriority::kIdle ? SCHED_IDLE : SCHED_OTHER;
    const sched_param parameter{};
    // On Linux 0 stands for the calling thread.
    return sched_setscheduler(0, policy, &parameter) == 0 ? Error() : ErrorFromErrno(errno);
  }
};

}  // namespace

Threads& SystemThreads() {
  static PosixThreads& threads = *new PosixThreads;
  return threads;
}

}  // namespace dq::platform::posix
