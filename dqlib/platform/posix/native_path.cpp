#include "dqlib/platform/posix/native_path.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "dqlib/platform/paths.h"
#include "dqlib/platform/posix/file_replacement.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// Whether a link may be followed to a file that is written.
Error CheckLink(SystemCalls& calls, const std::string& path) {
  struct stat directory;
  struct stat link;
  if (calls.Status(DirectoryOf(path).c_str(), &directory) != 0) return ErrorFromErrno(errno);
  constexpr mode_t kShared = S_ISVTX | S_IWOTH;
  if ((directory.st_mode & kShared) != kShared) return {};
  if (calls.LinkStatus(path.c_str(), &link) != 0) return ErrorFromErrno(errno);
  const bool trusted = link.st_uid == ::geteuid() || link.st_uid == directory.st_uid;
  return trusted ? Error{} : ErrorFromErrno(EACCES);
}

}  // namespace

Result<std::string> NativePath(std::string_view path) {
  if (path.size() > kMaxPath) return Error{ErrorKind::kInvalidArgument, ENAMETOOLONG};
  if (path.find('\0') != std::string_view::npos) return ErrorFromErrno(EINVAL);
  if (path.empty() || HasDrive(path) || IsNetworkPath(path)) {
    return ErrorFromErrno(ENOENT);
  }
  std::string native(path);
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

Result<std::string> AbsolutePath(std::string_view path) {
  const Result<std::string> native = NativePath(path);
  if (!native.ok()) return native.error;
  std::error_code error;
  std::string absolute = std::filesystem::absolute(native.value, error).string();
  if (error) return ErrorFromErrno(error.value());
  while (absolute.size() > 1 && absolute.ends_with('/')) absolute.pop_back();
  return absolute;
}

Result<std::string> FollowLinks(std::string path, SystemCalls& calls) {
  constexpr int kMaxLinks = 40;
  for (int links = 0; links < kMaxLinks; ++links) {
    char target[kMaxPath + 1];
    const ssize_t size = calls.ReadLink(path.c_str(), target, sizeof target);
    if (size < 0 && errno == EINTR) continue;
    // No link, or nothing there. A link that can't be read must not be taken for the file itself,
    // which would be put in its place.
    if (size < 0 && (errno == EINVAL || errno == ENOENT)) return path;
    if (size < 0) return ErrorFromErrno(errno);
    if (const Error error = CheckLink(calls, path); !error.ok()) return error;
    const std::string_view link(target, static_cast<std::size_t>(size));
    if (link.starts_with('/')) {
      path = link;
    } else {
      path.resize(path.rfind('/') + 1);  // npos + 1 is 0
      path += link;
    }
  }
  return ErrorFromErrno(ELOOP);
}

}  // namespace dq::platform::posix
