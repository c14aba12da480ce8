#include "dqlib/platform/clipboard.h"

#include <algorithm>
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
  Error SetAll(std::span<const ClipboardData> pieces) override try {
    Pieces copy;
    for (const auto& [format, bytes] : pieces) {
      const auto same = Find(copy, format);
      if (same == copy.end()) {
        copy.emplace_back(format, bytes);
      } else {
        same->second = bytes;
      }
    }
    const std::lock_guard lock(mutex_);
    pieces_ = std::move(copy);
    return {};
  } catch (const std::exception&) {
    return ErrorOfException();
  }

  std::optional<std::string> Get(UINT format) override {
    const std::lock_guard lock(mutex_);
    const auto piece = Find(pieces_, format);
    return piece == pieces_.end() ? std::nullopt : std::optional(piece->second);
  }

  std::vector<UINT> Formats() override {
    const std::lock_guard lock(mutex_);
    std::vector<UINT> formats;
    for (const auto& [format, bytes] : pieces_) formats.push_back(format);
    return formats;
  }

 private:
  using Pieces = std::vector<std::pair<UINT, std::string>>;

  static Pieces::iterator Find(Pieces& pieces, UINT format) {
    return std::ranges::find(pieces, format, &Pieces::value_type::first);
  }

  std::mutex mutex_;
  Pieces pieces_;
};

}  // namespace

Clipboard& SystemClipboard() {
  static ProcessClipboard& clipboard = *new ProcessClipboard;
  return clipboard;
}

}  // namespace dq::platform::posix
