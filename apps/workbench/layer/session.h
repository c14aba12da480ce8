// The end of the desktop's session, and of the program from outside.

#pragma once

#include <array>
#include <functional>

namespace workbench {

/// For its lifetime, the signals by which a program is asked to end (`SIGTERM`, `SIGHUP` and
/// `SIGINT`) are told from within the toolkit instead of ending it on the spot.
class SessionWatch {
 public:
  explicit SessionWatch(std::function<void()> ends);
  SessionWatch(const SessionWatch&) = delete;
  SessionWatch& operator=(const SessionWatch&) = delete;
  ~SessionWatch();

 private:
  static int OnSignal(void* watch);

  std::function<void()> ends_;
  std::array<unsigned int, 3> sources_;
};

}  // namespace workbench
