#include "dqlib/platform/posix/mount_table.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace dq::platform::posix {
namespace {

constexpr std::string_view kRemoteTypes[] = {"9p",    "afs", "ceph", "cifs",       "coda",
                                             "ncpfs", "nfs", "nfs4", "fuse.sshfs", "smb3"};

std::vector<std::string_view> Fields(std::string_view line) {
  std::vector<std::string_view> fields;
  while (!line.empty()) {
    const std::size_t blank = std::min(line.find(' '), line.size());
    fields.push_back(line.substr(0, blank));
    line.remove_prefix(std::min(blank + 1, line.size()));
  }
  return fields;
}

/// Undoes the escapes of blanks and the like, a backslash and three octal digits.
std::string Unescape(std::string_view field) {
  std::string text;
  const auto digit = [&](std::size_t i) { return field[i] >= '0' && field[i] <= '7'; };
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] == '\\' && i + 3 < field.size() && digit(i + 1) && digit(i + 2) && digit(i + 3)) {
      text += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 +
                                (field[i + 3] - '0'));
      i += 3;
    } else {
      text += field[i];
    }
  }
  return text;
}

/// A line has an id, the parent's id, a device, root, mount point, options, any number of further
/// fields, "-", the type, the source and more options.
std::optional<Mount> ParseMount(std::string_view line) {
  constexpr std::size_t kOptions = 5;
  const std::vector<std::string_view> fields = Fields(line);
  if (fields.size() <= kOptions) return std::nullopt;
  const auto dash = std::find(fields.begin() + kOptions, fields.end(), "-");
  if (fields.end() - dash < 3) return std::nullopt;
  return Mount{Unescape(fields[3]), Unescape(fields[4]), Unescape(dash[1]), Unescape(dash[2])};
}

/// What is behind the mount point: "" or a text that begins with the separator.
std::optional<std::string_view> Below(std::string_view point, std::string_view path) {
  if (point == "/") return path == "/" ? std::string_view{} : path;
  if (!path.starts_with(point)) return std::nullopt;
  path.remove_prefix(point.size());
  if (!path.empty() && path.front() != '/') return std::nullopt;
  return path;
}

}  // namespace

std::optional<Mount> FindMount(std::string_view table, std::string_view full_path) {
  std::optional<Mount> found;
  while (!table.empty()) {
    const std::size_t end = std::min(table.find('\n'), table.size());
    std::optional<Mount> mount = ParseMount(table.substr(0, end));
    table.remove_prefix(std::min(end + 1, table.size()));
    // A later mount on the same point hides the earlier one.
    if (mount && Below(mount->point, full_path) &&
        (!found || mount->point.size() >= found->point.size())) {
      found = std::move(mount);
    }
  }
  return found;
}

bool IsRemote(const Mount& mount) {
  return std::find(std::begin(kRemoteTypes), std::end(kRemoteTypes), mount.type) !=
         std::end(kRemoteTypes);
}

std::optional<std::string> NetworkPath(const Mount& mount, std::string_view full_path) {
  const std::optional<std::string_view> below = Below(mount.point, full_path);
  if (!below) return std::nullopt;
  std::string path;
  if (mount.type == "cifs" || mount.type == "smb3") {
    if (!mount.source.starts_with("//")) return std::nullopt;
    path = mount.source;
  } else if (mount.type == "nfs" || mount.type == "nfs4") {
    const std::size_t colon = mount.source.find(":/");
    if (colon == 0 || colon == std::string::npos) return std::nullopt;
    path = "//" + mount.source.substr(0, colon) + mount.source.substr(colon + 1);
  } else {
    return std::nullopt;
  }
  while (path.ends_with('/')) path.pop_back();
  if (mount.root != "/") path += mount.root;
  path += *below;
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

Result<std::string> ReadMountTable(SystemCalls& calls) {
  Result<std::string> table = ReadText(calls, "/proc/self/mountinfo");
  if (table.error.kind == ErrorKind::kNotFound) return std::string();
  return table;
}

}  // namespace dq::platform::posix
