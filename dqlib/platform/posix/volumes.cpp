#include "dqlib/platform/posix/volumes.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <system_error>

#include "dqlib/platform/posix/mount_table.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

namespace fs = std::filesystem;

/// The full path without links of a file that need not exist; "" if the system can't tell.
std::string RealPath(const std::string& path) {
  std::error_code error;
  std::string real = fs::weakly_canonical(fs::absolute(path, error), error).string();
  if (error) return {};
  if (real.size() > 1 && real.ends_with('/')) real.pop_back();
  return real;
}

/// The label of a device, which the system keeps as the name of a link to it; "" if it has none.
std::string LabelOf(dev_t device) {
  std::error_code error;  // without labels there is no such directory
  for (fs::directory_iterator entry("/dev/disk/by-label", error), end; !error && entry != end;
       entry.increment(error)) {
    struct stat status;
    if (::stat(entry->path().c_str(), &status) == 0 && S_ISBLK(status.st_mode) &&
        status.st_rdev == device) {
      return entry->path().filename().string();
    }
  }
  return {};
}

}  // namespace

Result<VolumeFacts> VolumeOf(const std::string& path) {
  struct statvfs volume;
  struct stat status;
  if (::statvfs(path.c_str(), &volume) != 0) return ErrorFromErrno(errno);
  if (::stat(path.c_str(), &status) != 0) return ErrorFromErrno(errno);
  VolumeFacts facts;
  facts.label = LabelOf(status.st_dev);
  facts.serial_number = static_cast<DWORD>(volume.f_fsid ^ (volume.f_fsid >> 32));
  if (const auto mount = FindMount(ReadMountTable(), RealPath(path))) {
    facts.file_system = mount->type;
  }
  facts.bytes_total = std::uint64_t{volume.f_blocks} * volume.f_frsize;
  facts.bytes_free = std::uint64_t{volume.f_bavail} * volume.f_frsize;
  return facts;
}

Result<std::string> UniversalNameOf(const std::string& path) {
  const std::string real = RealPath(path);
  if (const auto mount = FindMount(ReadMountTable(), real)) {
    if (auto name = NetworkPath(*mount, real)) return *std::move(name);
  }
  return Error{ErrorKind::kUnsupported, ENOTSUP};
}

UINT KindOfVolume(const std::string& path) {
  struct stat status;
  if (::stat(path.c_str(), &status) != 0) return DRIVE_KIND_NO_ROOT;
  const auto mount = FindMount(ReadMountTable(), RealPath(path));
  return mount && IsRemote(*mount) ? DRIVE_KIND_REMOTE : DRIVE_KIND_FIXED;
}

}  // namespace dq::platform::posix
