#include "dqlib/platform/posix/directory_watches.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// The same for every directory, since several watches may share one.
constexpr std::uint32_t kEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ATTRIB |
                                  IN_MODIFY | IN_DELETE_SELF | IN_MOVE_SELF | IN_EXCL_UNLINK |
                                  IN_ONLYDIR;
constexpr std::uint32_t kEndOfRoot = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

/// What an event changes, as a filter.
DWORD ChangesBy(std::uint32_t mask) {
  const bool is_directory = (mask & IN_ISDIR) != 0;
  DWORD changes = 0;
  if ((mask & (IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO)) != 0) {
    changes |= is_directory ? CHANGE_DIRECTORY_NAME : CHANGE_FILE_NAME;
  }
  if ((mask & IN_MOVED_TO) != 0 && !is_directory) {
    changes |= CHANGE_ATTRIBUTES | CHANGE_SIZE | CHANGE_LAST_WRITE;
  }
  // Times that are set by hand are told so.
  if ((mask & IN_ATTRIB) != 0) changes |= CHANGE_ATTRIBUTES | CHANGE_LAST_WRITE;
  if ((mask & IN_MODIFY) != 0) changes |= CHANGE_SIZE | CHANGE_LAST_WRITE;
  return changes;
}

std::string Below(const std::string& directory, const std::string& name) {
  return directory + (directory.ends_with('/') ? "" : "/") + name;
}

/// What is no directory any more, or not for this user, is passed over.
bool IsPassedOver(int error) {
  return error == ENOENT || error == ENOTDIR || error == EACCES || error == ELOOP ||
         error == ENAMETOOLONG;
}

}  // namespace

Error DirectoryWatches::Add(DirectoryWatch& watch) {
  bool found_entries = false;
  const Error error = Enter(watch, watch.root, found_entries);
  if (error.ok()) {
    watches_.push_back(&watch);
  } else {
    LeaveAll(watch);
  }
  return error;
}

void DirectoryWatches::Remove(DirectoryWatch& watch) {
  LeaveAll(watch);
  std::erase(watches_, &watch);
}

void DirectoryWatches::Fail(Error error) {
  for (DirectoryWatch* watch : watches_) watch->error = error;
}

void DirectoryWatches::Handle(std::string_view events) {
  while (events.size() >= sizeof(inotify_event)) {
    inotify_event event;
    std::memcpy(&event, events.data(), sizeof event);
    events.remove_prefix(sizeof event);
    // Filled up with zeros.
    const std::string_view name = events.substr(0, event.len);
    Handle(event.wd, event.mask, std::string(name.substr(0, name.find('\0'))));
    events.remove_prefix(name.size());
  }
}

void DirectoryWatches::Handle(int number, std::uint32_t mask, const std::string& name) {
  if ((mask & IN_Q_OVERFLOW) != 0) {
    for (DirectoryWatch* watch : watches_) Renew(*watch);
    return;
  }
  const auto found = parts_.find(number);
  if (found == parts_.end()) return;
  // A copy, because what follows may change them.
  for (const Part& part : std::vector(found->second)) HandlePart(part, mask, name);
}

void DirectoryWatches::HandlePart(const Part& part, std::uint32_t mask, const std::string& name) {
  DirectoryWatch& watch = *part.watch;
  if (part.IsRoot() && (mask & kEndOfRoot) != 0) {
    watch.gone = true;
    LeaveAll(watch);
  } else if ((mask & IN_IGNORED) != 0) {
    Leave(watch, part.path);
  }
  // What happens to a directory itself is told by the one above it too.
  if (name.empty()) return;
  if ((ChangesBy(mask) & watch.filter) != 0) watch.changed = true;
  if (!watch.subtree || (mask & IN_ISDIR) == 0) return;
  const std::string path = Below(part.path, name);
  if ((mask & IN_MOVED_FROM) != 0) Leave(watch, path);
  if ((mask & (IN_CREATE | IN_MOVED_TO)) != 0) {
    // What happened in it before nobody has told.
    const Error error = Enter(watch, path, watch.changed);
    if (!error.ok()) watch.error = error;
  }
}

Error DirectoryWatches::Enter(DirectoryWatch& watch, const std::string& top, bool& found_entries) {
  std::vector<std::string> left = {top};
  while (!left.empty()) {
    const std::string path = std::move(left.back());
    left.pop_back();
    const bool is_root = path == watch.root;
    const int number =
        inotify_add_watch(inotify_, path.c_str(), kEvents | (is_root ? 0 : IN_DONT_FOLLOW));
    if (number < 0) {
      if (is_root || !IsPassedOver(errno)) return ErrorFromErrno(errno);
      continue;
    }
    parts_[number].push_back({&watch, path});
    if (const auto known = watch.directories.find(path); known != watch.directories.end()) {
      Drop(known->second, watch, path);
    }
    watch.directories[path] = number;
    if (!watch.subtree) continue;
    std::error_code error;
    std::filesystem::directory_iterator entry(path, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
      found_entries = true;
      std::error_code gone;
      const auto status = entry->symlink_status(gone);
      if (is_directory(status)) left.push_back(Below(path, entry->path().filename().string()));
    }
  }
  return {};
}

void DirectoryWatches::Leave(DirectoryWatch& watch, const std::string& top) {
  std::map<std::string, int>& directories = watch.directories;
  const auto leave = [&](auto place) {
    Drop(place->second, watch, place->first);
    return directories.erase(place);
  };
  if (const auto place = directories.find(top); place != directories.end()) leave(place);
  const std::string prefix = Below(top, "");
  auto place = directories.lower_bound(prefix);
  while (place != directories.end() && place->first.starts_with(prefix)) place = leave(place);
}

void DirectoryWatches::LeaveAll(DirectoryWatch& watch) {
  for (const auto& [path, number] : watch.directories) Drop(number, watch, path);
  watch.directories.clear();
}

void DirectoryWatches::Drop(int number, const DirectoryWatch& watch, const std::string& path) {
  const auto found = parts_.find(number);
  if (found == parts_.end()) return;
  std::vector<Part>& parts = found->second;
  // One only: what is entered a second time is there twice for a moment.
  const auto part = std::ranges::find_if(
      parts, [&](const Part& each) { return each.watch == &watch && each.path == path; });
  if (part != parts.end()) parts.erase(part);
  if (!parts.empty()) return;
  parts_.erase(found);
  // Fails for a directory that is gone.
  inotify_rm_watch(inotify_, number);
}

void DirectoryWatches::Renew(DirectoryWatch& watch) {
  if (watch.gone) return;
  watch.changed = true;
  const std::map<std::string, int> former = std::exchange(watch.directories, {});
  const Error error = Enter(watch, watch.root, watch.changed);
  watch.gone = error.kind == ErrorKind::kNotFound ||
               (error.ok() && watch.directories.at(watch.root) != former.at(watch.root));
  if (!watch.gone && !error.ok()) watch.error = error;
  // What is watched still has been entered a second time.
  for (const auto& [path, number] : former) Drop(number, watch, path);
  if (watch.gone) LeaveAll(watch);
}

}  // namespace dq::platform::posix
