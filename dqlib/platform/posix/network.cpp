#include "dqlib/platform/network.h"

#include <cerrno>
#include <optional>
#include <utility>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

std::optional<NetworkError>& Recorded() {
  static thread_local std::optional<NetworkError> error;
  return error;
}

class RecordingNetwork : public Network {
 public:
  Result<NetworkError> LastError() override {
    if (!Recorded()) return ErrorFromErrno(ENODATA);
    return *Recorded();
  }
};

}  // namespace

void RecordNetworkError(NetworkError error) { Recorded() = std::move(error); }

Network& SystemNetwork() {
  static RecordingNetwork& network = *new RecordingNetwork;
  return network;
}

}  // namespace dq::platform::posix
