#include "dqlib/platform/clipboard.h"

#include <exception>
#include <mutex>
#include <utility>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// A desktop's clipboard belongs to its window system, which a host with windows puts in place of
/// this one.
class ProcessClipboard : public Clipboard {
 public:
  Error Set(UINT format, std::string_view data) override try {
    std::string copy(data);
    const std::lock_guard lock(mutex_);
    format_ = format;
    data_ = std::move(copy);
    return {};
  } catch (const std::exception&) {
    return ErrorOfException();
  }

  std::optional<std::string> Get(UINT format) override {
    const std::lock_guard lock(mutex_);
    if (!data_ || format_ != format) return std::nullopt;
    return data_;
  }

 private:
  std::mutex mutex_;
  UINT format_ = 0;
  std::optional<std::string> data_;
};

}  // namespace

Clipboard& SystemClipboard() {
  static ProcessClipboard& clipboard = *new ProcessClipboard;
  return clipboard;
}

}  // namespace dq::platform::posix
