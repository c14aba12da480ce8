#include "dqlib/platform/posix/file_search.h"

#include <algorithm>
#include <cerrno>

#include "dqlib/platform/paths.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {

FileStatus DescribeFile(std::string_view name, const struct stat& status) {
  FileStatus described;
  described.size = S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
  if (S_ISDIR(status.st_mode)) {
    described.attributes = FILE_DIRECTORY;
  } else {
    described.attributes = S_ISREG(status.st_mode) ? FILE_ARCHIVE : FILE_SYSTEM;
  }
  if ((status.st_mode & S_IWUSR) == 0) described.attributes |= FILE_READ_ONLY;
  if (name.starts_with('.') && name != "." && name != "..") described.attributes |= FILE_HIDDEN;
  described.modified = status.st_mtim.tv_sec;
  described.accessed = status.st_atim.tv_sec;
  described.changed = status.st_ctim.tv_sec;
  return described;
}

Result<std::vector<FoundFile>> FindFiles(SystemCalls& calls, const std::string& pattern) {
  const std::string name_pattern = pattern.substr(pattern.rfind('/') + 1);  // npos + 1 is 0
  const std::string directory = pattern.substr(0, pattern.size() - name_pattern.size());
  DirectoryReader entries(calls, directory.empty() ? "./" : directory);
  std::vector<FoundFile> found;
  while (const char* const entry = entries.Next()) {
    const std::string_view name(entry);
    // A path with such a name would lead elsewhere.
    if (FindSeparator(name) != std::string_view::npos) continue;
    if (!MatchesPattern(name, name_pattern)) continue;
    struct stat status;
    // A link that leads nowhere is found as itself; an entry that is gone by now isn't found.
    if (calls.StatusAt(entries.fd(), entry, &status, 0) != 0 &&
        calls.StatusAt(entries.fd(), entry, &status, AT_SYMLINK_NOFOLLOW) != 0) {
      if (errno == ENOENT) continue;
      return ErrorFromErrno(errno);
    }
    found.push_back({std::string(name), DescribeFile(name, status)});
  }
  if (!entries.error().ok()) return entries.error();
  if (found.empty()) return ErrorFromErrno(ENOENT);
  std::sort(found.begin(), found.end(),
            [](const FoundFile& left, const FoundFile& right) { return left.name < right.name; });
  return found;
}

}  // namespace dq::platform::posix
