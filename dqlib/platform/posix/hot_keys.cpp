#include "dqlib/platform/hot_keys.h"

#include <cerrno>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// Keys belong to the window system, which a host with windows puts in place of this.
class NoHotKeys final : public HotKeys {
 public:
  Error Register(const HotKey&, std::function<void()>) override { return ErrorFromErrno(ENOSYS); }
  Error Unregister(std::uintptr_t, int) override { return ErrorFromErrno(ENOENT); }
};

}  // namespace

HotKeys& SystemHotKeys() {
  static NoHotKeys& hot_keys = *new NoHotKeys;
  return hot_keys;
}

}  // namespace dq::platform::posix
