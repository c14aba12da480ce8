#include "dqlib/platform/posix/volumes.h"

#include <cerrno>
#include <climits>

#include "dqlib/platform/posix/mount_table.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// The full path without links of a file that need not exist: that of what is there of it, and the
/// rest as it stands.
Result<std::string> RealPath(SystemCalls& calls, const std::string& path) {
  char real[PATH_MAX];
  std::string there = path;
  std::string rest;
  while (calls.RealPath(there.c_str(), real) == nullptr) {
    if (errno != ENOENT && errno != ENOTDIR) return ErrorFromErrno(errno);
    const std::size_t slash = there.rfind('/');
    if (!rest.empty()) rest.insert(0, 1, '/');
    rest.insert(0, there, slash + 1);  // npos + 1 is 0
    there = slash == std::string::npos ? "." : there.substr(0, slash);
    if (there.empty()) there = "/";
  }
  std::string full = real;
  if (!rest.empty() && full != "/") full += '/';
  return full + rest;
}

/// The mount that a path lies on; no value if none is known.
Result<std::optional<Mount>> MountOf(SystemCalls& calls, const std::string& full_path) {
  const Result<std::string> table = ReadMountTable(calls);
  if (!table.ok()) return table.error;
  return FindMount(table.value, full_path);
}

/// The label of a device, which the system keeps as the name of a link to it; "" if it has none.
Result<std::string> LabelOf(SystemCalls& calls, dev_t device) {
  const std::string labels = "/dev/disk/by-label/";
  DirectoryReader entries(calls, labels);
  while (const char* const name = entries.Next()) {
    struct stat status;
    if (calls.Status((labels + name).c_str(), &status) == 0 && S_ISBLK(status.st_mode) &&
        status.st_rdev == device) {
      return std::string(name);
    }
  }
  // Without labels there is no such directory.
  if (entries.error().kind == ErrorKind::kNotFound) return std::string();
  return entries.error();
}

}  // namespace

Result<VolumeFacts> VolumeOf(SystemCalls& calls, const std::string& path) {
  struct statvfs volume;
  struct stat status;
  if (calls.VolumeStatus(path.c_str(), &volume) != 0) return ErrorFromErrno(errno);
  if (calls.Status(path.c_str(), &status) != 0) return ErrorFromErrno(errno);
  const Result<std::string> label = LabelOf(calls, status.st_dev);
  const Result<std::string> real = RealPath(calls, path);
  if (!label.ok()) return label.error;
  if (!real.ok()) return real.error;
  const Result<std::optional<Mount>> mount = MountOf(calls, real.value);
  if (!mount.ok()) return mount.error;
  VolumeFacts facts;
  facts.label = label.value;
  facts.serial_number = static_cast<DWORD>(volume.f_fsid ^ (volume.f_fsid >> 32));
  if (mount.value) facts.file_system = mount.value->type;
  facts.bytes_total = std::uint64_t{volume.f_blocks} * volume.f_frsize;
  facts.bytes_free = std::uint64_t{volume.f_bavail} * volume.f_frsize;
  facts.longest_name = static_cast<DWORD>(volume.f_namemax);
  return facts;
}

Result<std::string> UniversalNameOf(SystemCalls& calls, const std::string& path) {
  const Result<std::string> real = RealPath(calls, path);
  if (!real.ok()) return real.error;
  const Result<std::optional<Mount>> mount = MountOf(calls, real.value);
  if (!mount.ok()) return mount.error;
  if (mount.value) {
    if (auto name = NetworkPath(*mount.value, real.value)) return *std::move(name);
  }
  return Error{ErrorKind::kUnsupported, ENOTSUP};
}

UINT KindOfVolume(SystemCalls& calls, const std::string& path) {
  struct stat status;
  if (calls.Status(path.c_str(), &status) != 0) {
    return ErrorFromErrno(errno).kind == ErrorKind::kNotFound ? UINT{DRIVE_KIND_NO_ROOT}
                                                              : UINT{DRIVE_KIND_UNKNOWN};
  }
  const Result<std::string> real = RealPath(calls, path);
  if (!real.ok()) return DRIVE_KIND_UNKNOWN;
  const Result<std::optional<Mount>> mount = MountOf(calls, real.value);
  if (!mount.ok()) return DRIVE_KIND_UNKNOWN;
  return mount.value && IsRemote(*mount.value) ? DRIVE_KIND_REMOTE : DRIVE_KIND_FIXED;
}

}  // namespace dq::platform::posix
