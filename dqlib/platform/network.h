// What the library asks of the network layer.

#pragma once

#include <string>
#include <vector>

#include "dqlib/platform/error.h"
#include "dqlib/platform/types.h"

namespace dq::platform {

/// An error that a network provider reported in its own terms.
struct NetworkError {
  DWORD code = 0;
  std::string description;
  std::string provider;
};

/// The network layer of the process. Any thread. A POSIX system has no providers that report errors
/// by themselves: there the layer knows what the host's own code records on the thread with
/// `posix::RecordNetworkError`, and nothing else.
class Network {
 public:
  Network() = default;
  Network(const Network&) = delete;
  Network& operator=(const Network&) = delete;
  virtual ~Network();

  /// The calling thread's last network error. An error of kind `kNotFound` when no provider has
  /// reported one on this thread.
  virtual Result<NetworkError> LastError() = 0;

  /// The names of the machines of the network that the system knows, each once, in its order, with
  /// two backslashes before them where the system writes them so. It doesn't search for others. The
  /// base knows none and answers `kUnsupported`.
  virtual Result<std::vector<std::string>> Machines();
};

}  // namespace dq::platform
