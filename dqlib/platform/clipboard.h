// The clipboard.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/error.h"
#include "dqlib/platform/types.h"

namespace dq {

/// Formats of clipboard data, and of data that is dragged.
enum ClipboardFormat : UINT {
  CLIPBOARD_TEXT = 1,
  /// Paths of files, as `FileListData` has them.
  CLIPBOARD_FILES = 15,
  /// Numbers from here to FFFFh belong to names; see `Clipboard::RegisterFormat`.
  CLIPBOARD_FIRST_REGISTERED = 0xC000,
};

namespace platform {

/// A piece of data in one format. The bytes are those of whoever made it.
struct ClipboardData {
  UINT format = 0;
  std::string_view bytes;
};

/// The clipboard: the desktop's where a host with windows puts it in place, else one for the
/// process. On the user-interface thread.
class Clipboard {
 public:
  Clipboard() = default;
  Clipboard(const Clipboard&) = delete;
  Clipboard& operator=(const Clipboard&) = delete;
  virtual ~Clipboard();

  /// Replaces everything on the clipboard by the same thing in several formats, the best one first;
  /// of two pieces in one format the second counts. No piece empties it. `kBusy` if someone else
  /// holds it; then it stays as it is.
  virtual Error SetAll(std::span<const ClipboardData> pieces) = 0;
  /// The same with one format.
  Error Set(UINT format, std::string_view bytes);

  /// The data in that format, if there is any.
  virtual std::optional<std::string> Get(UINT format) = 0;
  /// The formats that there are, in the order in which they were given.
  virtual std::vector<UINT> Formats() = 0;

  /// The number of a format of the program's own, the same for the same name, whose case doesn't
  /// count, as long as the process lives and whichever clipboard is in place; 0 for "" and when all
  /// numbers are given out. Any thread. To be overridden by a system with such numbers of its own.
  virtual UINT RegisterFormat(std::string_view name);
  /// The name as it was first given; "" for a number that has none. Any thread.
  virtual std::string FormatName(UINT format);
};

/// The paths in the form of `CLIPBOARD_FILES`: each with a zero behind it, and one more zero at the
/// end. An empty one is left out.
std::string FileListData(std::span<const std::string> paths);
/// The paths of such data, which may lack zeros at its end.
std::vector<std::string> ReadFileList(std::string_view data);

}  // namespace platform
}  // namespace dq
