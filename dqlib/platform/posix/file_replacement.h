// Putting a new file in the place of an old one, so that at any moment one of them is there whole.

#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <sys/stat.h>

#include "dqlib/platform/posix/lock_patience.h"
#include "dqlib/platform/posix/system_calls.h"

namespace dq::platform::posix {

inline constexpr const char* kTemporaryStem = ".dq";

/// How `ReplaceFile` works.
struct Replacement {
  /// The file, which is no link.
  std::string target;
  /// The new one's name until it is complete, in the same directory. Nobody else uses it now, so
  /// that a file of that name is what a writer has left that died, and goes. If there is one that
  /// can't be removed, or if this is empty, `ReplaceFile` makes up a name, and removes what
  /// processes that died meanwhile have left under such names in the directory.
  std::string temporary;
  /// What a name that is made up begins with. Whoever sets another holds a lock against all who
  /// make such files here, so that even those go which can't be opened to see whether they are in
  /// use, as an administrator may leave them in a user's directory.
  std::string stem = kTemporaryStem;
  /// That of the old file, whose owner and permissions the new one gets; none if there is none.
  std::optional<struct stat> old;
  /// Permissions of a file that is made, before those that the user's mask takes away.
  mode_t mode = 0666;
  /// Fails with `kAlreadyExists` rather than replace a file.
  bool only_new = false;
  /// Whether the new directory entry too is on the disk at the end. Without, the system may after a
  /// breakdown come up with the old file.
  bool sync_directory = true;
  /// Called when the new file is on the disk, before it is put in place; its error keeps it from
  /// there. Null if nothing is to be asked.
  std::function<Error()> permission;
};

/// Calls `write` to fill the new file, and puts it in place once it is on the disk. If that fails,
/// the old file is there and the new one isn't; only if syncing the directory fails, the new one
/// may be there in the place of an old one.
Error ReplaceFile(SystemCalls& calls, const Replacement& replacement,
                  const std::function<Error(int fd)>& write);

/// Makes an empty file for the user only, or for the owner of its directory as `GiveToOwnerOf`
/// does, whose it is from its first moment; `kAlreadyExists` if there is one, or a link, which
/// isn't followed. Nothing is brought to the disk.
Error MakeEmptyFile(SystemCalls& calls, const std::string& path);

/// Waits until the files that are being filled in the directory under names that are made up from
/// the stem are in place, or given up; at the deadline `kBusy`. Those that can't be opened are
/// taken for what dead processes have left.
Error AwaitReplacements(SystemCalls& calls, LockPatience& patience, const std::string& directory,
                        const std::string& stem, std::chrono::nanoseconds deadline);

/// Renames a file or directory; `kAlreadyExists` if `to` is there. Where the system can't do that
/// in one step, nor give a file two names, what comes in at `to` meanwhile is replaced.
Error RenameToNew(SystemCalls& calls, const std::string& from, const std::string& to);

/// The directory of a path, "." if it has none.
std::string DirectoryOf(const std::string& path);

}  // namespace dq::platform::posix
