// The clipboard.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dqlib/platform/error.h"
#include "dqlib/platform/types.h"

namespace dq {

/// Formats of clipboard data.
enum ClipboardFormat : UINT {
  CLIPBOARD_TEXT = 1,
};

namespace platform {

/// The clipboard: the desktop's where a host with windows puts it in place, else one for the
/// process. On the user-interface thread.
class Clipboard {
 public:
  Clipboard() = default;
  Clipboard(const Clipboard&) = delete;
  Clipboard& operator=(const Clipboard&) = delete;
  virtual ~Clipboard();

  /// Replaces everything on the clipboard by one piece of data. `kBusy` if someone else holds it.
  virtual Error Set(UINT format, std::string_view data) = 0;
  /// The data in that format, if there is any.
  virtual std::optional<std::string> Get(UINT format) = 0;
};

}  // namespace platform
}  // namespace dq
