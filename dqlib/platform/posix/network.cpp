#include "dqlib/platform/network.h"

#include <cerrno>
#include <optional>
#include <utility>

#include "dqlib/platform/per_thread.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

struct Recorded {
  std::optional<NetworkError> error;
};

class RecordingNetwork : public Network {
 public:
  Result<NetworkError> LastError() override {
    const Recorded* const recorded = PerThread<Recorded>();
    if (recorded == nullptr || !recorded->error) return ErrorFromErrno(ENODATA);
    return *recorded->error;
  }
};

}  // namespace

void RecordNetworkError(NetworkError error) {
  if (Recorded* const recorded = PerThread<Recorded>()) recorded->error = std::move(error);
}

Network& SystemNetwork() {
  static RecordingNetwork& network = *new RecordingNetwork;
  return network;
}

}  // namespace dq::platform::posix
