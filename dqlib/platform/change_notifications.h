// Changes in directories, as they happen.
//
//   const HANDLE watch = notifications.Open(directory, false, CHANGE_SIZE).value;
//   ... a thread:
//   while (notifications.Wait(watch).value == ChangeNotice::kChanged) Tell();
//   ... another one:
//   notifications.Interrupt(watch);

#pragma once

#include <string_view>

#include "dqlib/platform/error.h"
#include "dqlib/platform/processes.h"
#include "dqlib/platform/types.h"

namespace dq {

/// What counts as a change, as a sum. A file that is renamed to a name of the directory changes
/// what the name stands for: it counts for files' names, attributes, sizes and last writes alike.
enum ChangeFilter : DWORD {
  CHANGE_FILE_NAME = 0x01,       ///< A file is made, removed or renamed.
  CHANGE_DIRECTORY_NAME = 0x02,  ///< The same of a directory.
  CHANGE_ATTRIBUTES = 0x04,
  CHANGE_SIZE = 0x08,
  CHANGE_LAST_WRITE = 0x10,
};

namespace platform {

/// How a wait for a change has ended.
enum class ChangeNotice {
  /// By `Interrupt` or `Close`, or by an error.
  kInterrupted,
  /// Something has changed since the last wait or the begin of the watch; what, and how often,
  /// isn't told. It comes too when more has happened at once than the system keeps.
  kChanged,
  /// The directory was removed or renamed, or its volume was taken away. Nothing more will come.
  kGone,
};

/// Watches on directories. Any thread may make, interrupt and close watches; one thread at a time
/// waits for one watch. What other machines change on a volume of the network isn't told, nor what
/// a program writes through mapped memory.
class ChangeNotifications {
 public:
  ChangeNotifications() = default;
  ChangeNotifications(const ChangeNotifications&) = delete;
  ChangeNotifications& operator=(const ChangeNotifications&) = delete;
  virtual ~ChangeNotifications();

  /// Begins to watch a directory's entries, and with `subtree` those of all directories below it
  /// that the user may read, also of those that are made later; not what links lead to. `filter` is
  /// a sum of `ChangeFilter` values, `kInvalidArgument` if it has none of them. `kNotFound` if the
  /// directory isn't there or is none; `kNoSpace` if the user has no watches left.
  virtual Result<HANDLE> Open(std::string_view directory, bool subtree, DWORD filter) = 0;

  /// Waits for the next change. What happens between two waits is told by the second. A directory
  /// that appears in a subtree with something in it counts as a change whatever the filter. An
  /// error ends the watch: a directory that was made below can't be watched.
  virtual Result<ChangeNotice> Wait(HANDLE watch) = 0;

  /// Has the wait that is under way, and each later one, end with `kInterrupted`.
  virtual void Interrupt(HANDLE watch) = 0;

  /// Ends the watch, and a wait for it with `kInterrupted`. A number that is none is ignored.
  virtual void Close(HANDLE watch) = 0;
};

}  // namespace platform
}  // namespace dq
