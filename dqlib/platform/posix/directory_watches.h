// What inotify tells, as changes of the directories that are watched and of those below them.

#pragma once

#include <map>
#include <string>
#include <string_view>
#include <sys/inotify.h>
#include <unordered_map>
#include <vector>

#include "dqlib/platform/change_notifications.h"

namespace dq::platform::posix {

/// One watch, and what it has to tell.
struct DirectoryWatch {
  /// An absolute path without a separator at its end, but for the root's.
  std::string root;
  bool subtree = false;
  DWORD filter = 0;

  bool changed = false;
  bool gone = false;
  /// Why a directory that was made below isn't watched.
  Error error = {};

  /// The directories that belong to it, with the system's number for each.
  std::map<std::string, int> directories = {};
};

/// All watches of one inotify instance, which limits their number per user more narrowly than that
/// of directories. For one thread at a time.
class DirectoryWatches {
 public:
  /// Of the instance with this descriptor, which outlives it.
  explicit DirectoryWatches(int inotify) : inotify_(inotify) {}

  /// Begins with a watch, which must stay where it is until it is removed. If it fails, it isn't
  /// added.
  Error Add(DirectoryWatch& watch);
  void Remove(DirectoryWatch& watch);
  /// Ends all watches by an error.
  void Fail(Error error);
  bool empty() const { return watches_.empty(); }

  /// Enters events, as they are read, into the watches that they concern.
  void Handle(std::string_view events);

 private:
  /// A directory as a part of one watch.
  struct Part {
    DirectoryWatch* watch;
    std::string path;
    bool IsRoot() const { return path == watch->root; }
  };

  /// `name` is "" if the event has none.
  void Handle(int number, std::uint32_t mask, const std::string& name);
  void HandlePart(const Part& part, std::uint32_t mask, const std::string& name);
  /// Watches a directory, and those below if the watch wants them. `found_entries` is set if there
  /// is anything in them.
  Error Enter(DirectoryWatch& watch, const std::string& top, bool& found_entries);
  void Leave(DirectoryWatch& watch, const std::string& top);
  void LeaveAll(DirectoryWatch& watch);
  /// Takes a part from the directory with this number, which isn't watched without any.
  void Drop(int number, const DirectoryWatch& watch, const std::string& path);
  /// Looks again at all there is, because events were lost.
  void Renew(DirectoryWatch& watch);

  int inotify_;
  std::vector<DirectoryWatch*> watches_;
  std::unordered_map<int, std::vector<Part>> parts_;
};

}  // namespace dq::platform::posix
