// Signals that a thread leaves to others.

#pragma once

#include <signal.h>

namespace dq::platform::posix {

/// Blocks signals for this thread, and for threads that it starts meanwhile.
class SignalBlock {
 public:
  explicit SignalBlock(const sigset_t& signals) { pthread_sigmask(SIG_BLOCK, &signals, &former_); }
  SignalBlock(const SignalBlock&) = delete;
  SignalBlock& operator=(const SignalBlock&) = delete;
  ~SignalBlock() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }

 private:
  sigset_t former_;
};

/// All that there are, for threads that the program doesn't know of.
inline sigset_t AllSignals() {
  sigset_t all;
  sigfillset(&all);
  return all;
}

}  // namespace dq::platform::posix
