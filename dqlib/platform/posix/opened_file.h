// Files as they are opened, shared with others and put in the place of one another.

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <sys/stat.h>

#include "dqlib/platform/files.h"
#include "dqlib/platform/posix/system_calls.h"

namespace dq::platform::posix {

/// The error for an error number where a file is asked for: a directory is something that can't be
/// had then, not a wrong argument.
Error ErrorOfFile(int error);

/// Whether the owner may not write the file, which is how it is marked read-only.
bool IsReadOnly(const struct stat& status);

/// Opens without waiting for the other end of a pipe. What is read or written later may wait.
Result<int> OpenAtOnce(SystemCalls& calls, const std::string& native, int flags, mode_t mode,
                       struct stat& status);

/// A file that is open, shared by its handle and the operation that is under way.
struct OpenedFile {
  FileDescriptor descriptor;
  bool ordinary = false;
  /// Of one that is open for appending: held by whoever writes, so that the position is that of the
  /// last write.
  std::unique_ptr<std::mutex> appending;
  /// Of one that is to be replaced: its path, links followed, and whether opening has made it.
  std::string target;
  bool made = false;
};

/// Opens a file and claims for it what the options say. One that is made gets the mode.
Error OpenShared(SystemCalls& calls, const std::string& native, int flags, mode_t mode,
                 const OpenOptions& options, OpenedFile& opened);

/// Writes all bytes, and tells the position behind them if asked to.
Error WriteOpened(SystemCalls& calls, OpenedFile& opened, std::string_view bytes,
                  std::uint64_t* position);

/// `Files::ReplaceAndClose` but for the closing; `write` fills the new file.
Error ReplaceOpened(SystemCalls& calls, OpenedFile& opened,
                    const std::function<Error(int fd)>& write);

/// Closes, and removes a file that was made to be replaced and wasn't.
Error CloseOpened(SystemCalls& calls, OpenedFile& opened);

}  // namespace dq::platform::posix
