// A program's place at a shell: its standard streams, and the requests to end that reach it there.

#pragma once

#include <functional>
#include <memory>

namespace dq::platform {

/// The console of the process, for a host that is a command-line program; a library call never
/// needs it.
class Console {
 public:
  /// A watch that is under way. Dropping it ends it, after a call of its function that runs, and
  /// gives the requests back to the system.
  class StopWatch {
   public:
    StopWatch() = default;
    StopWatch(const StopWatch&) = delete;
    StopWatch& operator=(const StopWatch&) = delete;
    virtual ~StopWatch();
  };

  Console() = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  virtual ~Console();

  /// Makes the standard streams safe; to be called first in `main`. A write whose reader is gone
  /// fails from now on, and so does one beyond the user's limit for the size of files, where the
  /// system would end the program. A stream that is closed is put on a
  /// file that refuses what the stream is for, so that nothing else the program opens is taken for
  /// it. Children are not affected.
  virtual void PrepareStreams() = 0;

  /// From now on a request to end the program (Ctrl-C, Ctrl-\, the terminal's hang-up, a request
  /// to terminate) doesn't end it but calls `on_stop`, on a thread of the watch's own, once for
  /// each request; those that come during a call may count as one. Requests that the program was
  /// started to ignore stay ignored. One watch at a time. Null if the system is out of resources.
  virtual std::unique_ptr<StopWatch> WatchStopRequests(std::function<void()> on_stop) = 0;
};

}  // namespace dq::platform
