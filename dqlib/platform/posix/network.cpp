#include "dqlib/platform/network.h"

#include <cerrno>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>
#include <unistd.h>
#include <utility>

#include "dqlib/platform/per_thread.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

struct Recorded {
  std::optional<NetworkError> error;
};

/// Where the administrator enters machines: an address and names, the machine's proper one first.
constexpr const char* kHostsFile = "/etc/hosts";

/// Whether an address is the machine's own, or that of a group of machines.
bool IsMachineAddress(std::string_view address) {
  for (const std::string_view start : {"127.", "0.", "255.", "::", "ff", "FF", "fe00:", "FE00:"}) {
    if (address.starts_with(start)) return false;
  }
  return true;
}

std::string OwnName() {
  char name[256] = {};
  return gethostname(name, sizeof name - 1) == 0 ? name : "";
}

class RecordingNetwork : public Network {
 public:
  Result<NetworkError> LastError() override {
    const Recorded* const recorded = PerThread<Recorded>();
    if (recorded == nullptr || !recorded->error) return ErrorFromErrno(ENODATA);
    return *recorded->error;
  }

  Result<std::vector<std::string>> Machines() override try {
    std::vector<std::string> names;
    std::set<std::string> known;
    const auto add = [&](const std::string& name) {
      if (!name.empty() && known.insert(name).second) names.push_back(name);
    };
    add(OwnName());
    errno = 0;
    std::ifstream hosts(kHostsFile);
    // A system may do without the file.
    if (!hosts && errno != ENOENT) return ErrorFromErrno(errno);
    for (std::string line; std::getline(hosts, line);) {
      std::istringstream words(line.substr(0, line.find('#')));
      std::string address;
      std::string name;
      if (words >> address >> name && IsMachineAddress(address)) add(name);
    }
    return names;
  } catch (const std::exception&) {
    return ErrorOfException();
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
