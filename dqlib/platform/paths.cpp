#include "dqlib/platform/paths.h"

#include <vector>

#include "dqlib/platform/ascii.h"

namespace dq::platform {
namespace {

constexpr std::string_view kSeparators = "\\/";

/// Whether the path itself shows which form it is in.
bool ShowsForm(std::string_view path) {
  return HasDrive(path) || FindSeparator(path) != std::string_view::npos;
}

/// The next part of a path without separators; `path` then begins behind it. "" at the end.
std::string_view TakePart(std::string_view& path) {
  path.remove_prefix(std::min(path.find_first_not_of(kSeparators), path.size()));
  const std::string_view part = path.substr(0, path.find_first_of(kSeparators));
  path.remove_prefix(part.size());
  return part;
}

/// `root` with the parts of `path` behind it, of which ".." takes one back, and never one of the
/// root. A separator at the end of `path` stays.
std::string Resolve(std::string root, std::string_view path, char separator) {
  const bool ends_in_separator = !path.empty() && IsSeparator(path.back());
  std::vector<std::string_view> parts;
  for (std::string_view part = TakePart(path); !part.empty(); part = TakePart(path)) {
    if (part == "..") {
      if (!parts.empty()) parts.pop_back();
    } else if (part != ".") {
      parts.push_back(part);
    }
  }
  for (const std::string_view part : parts) {
    if (!root.empty() && !IsSeparator(root.back())) root += separator;
    root += part;
  }
  if (ends_in_separator && !parts.empty()) root += separator;
  return root;
}

/// The number of bytes of one character, which a sequence of UTF-8 is.
std::size_t CharacterSize(std::string_view text) {
  std::size_t size = 1;
  if (static_cast<unsigned char>(text.front()) < 0xC0) return size;
  while (size < text.size() && size < 4 &&
         (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) {
    ++size;
  }
  return size;
}

}  // namespace

bool HasDrive(std::string_view path) {
  if (path.size() < 2 || path[1] != ':') return false;
  const char letter = AsciiLower(path[0]);
  return letter >= 'a' && letter <= 'z';
}

PathForm FormOf(std::string_view path) {
  if (HasDrive(path)) return PathForm::kWindows;
  return path.find('\\') != std::string_view::npos && path.find('/') == std::string_view::npos
             ? PathForm::kWindows
             : PathForm::kPosix;
}

char SeparatorFor(std::string_view path) { return FormOf(path) == PathForm::kWindows ? '\\' : '/'; }

std::size_t FindSeparator(std::string_view path, std::size_t start) {
  return path.find_first_of(kSeparators, start);
}

std::size_t FindLastSeparator(std::string_view path) { return path.find_last_of(kSeparators); }

bool IsNetworkPath(std::string_view path) {
  return path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]) &&
         FormOf(path) == PathForm::kWindows;
}

std::size_t RootSize(std::string_view path) {
  if (IsNetworkPath(path)) {
    constexpr std::size_t kNetworkMark = 2;
    const std::size_t server = FindSeparator(path, kNetworkMark);
    const std::size_t share = server == path.npos ? path.npos : FindSeparator(path, server + 1);
    return share == path.npos ? path.size() : share + 1;
  }
  const std::size_t drive = HasDrive(path) ? 2 : 0;
  return drive < path.size() && IsSeparator(path[drive]) ? drive + 1 : drive;
}

bool IsSamePath(std::string_view left, std::string_view right) {
  const bool windows = FormOf(left) == PathForm::kWindows && FormOf(right) == PathForm::kWindows;
  return windows ? EqualIgnoringCase(left, right) : left == right;
}

std::string AbbreviatePath(std::string_view path, std::size_t room, bool at_least_name) {
  if (path.size() <= room) return std::string(path);
  const std::size_t last = FindLastSeparator(path);
  const std::string_view name = last == path.npos ? path : path.substr(last + 1);
  std::string shortened(name.size() <= room || at_least_name ? name : std::string_view());
  std::string_view root = path.substr(0, RootSize(path));
  if (!root.empty() && IsSeparator(root.back())) root.remove_suffix(1);
  const char separator = SeparatorFor(path);
  const std::string head = std::string(root) + separator + "..." + separator;
  for (std::size_t start = last; start != path.npos && start > root.size();) {
    const std::string_view tail = path.substr(start + 1);
    if (head.size() + tail.size() > room) break;
    shortened = head + std::string(tail);
    start = FindLastSeparator(path.substr(0, start));
  }
  return shortened;
}

PathParts SplitPath(std::string_view path) {
  PathParts parts;
  if (HasDrive(path)) {
    parts.drive = path.substr(0, 2);
    path.remove_prefix(2);
  }
  const std::size_t last = FindLastSeparator(path);
  if (last != std::string_view::npos) {
    parts.directory = path.substr(0, last + 1);
    path.remove_prefix(last + 1);
  }
  const std::size_t dot = std::min(path.rfind('.'), path.size());
  parts.name = path.substr(0, dot);
  parts.extension = path.substr(dot);
  return parts;
}

std::string MakePath(std::string_view drive, std::string_view directory, std::string_view name,
                     std::string_view extension) {
  std::string path;
  if (!drive.empty()) {
    path += drive.front();
    path += ':';
  }
  if (!directory.empty()) {
    path += directory;
    if (!IsSeparator(path.back())) path += SeparatorFor(ShowsForm(path) ? path : std::string(name));
  }
  path += name;
  if (!extension.empty()) {
    if (extension.front() != '.') path += '.';
    path += extension;
  }
  return path;
}

std::string JoinPath(std::string_view directory, std::string_view name) {
  if (directory.empty()) return std::string(name);
  name.remove_prefix(std::min(name.find_first_not_of(kSeparators), name.size()));
  std::string path(directory);
  if (!IsSeparator(path.back())) path += SeparatorFor(ShowsForm(path) ? directory : name);
  return path += name;
}

std::string FullPath(std::string_view path, std::string_view current_directory) {
  if (HasDrive(path)) {
    return Resolve(std::string(path.substr(0, 2)) + '\\', path.substr(2), '\\');
  }
  if (IsNetworkPath(path)) {
    std::string root = "\\\\";
    root += TakePart(path);
    root += '\\';
    root += TakePart(path);
    return Resolve(std::move(root), path, '\\');
  }
  if (!path.empty() && IsSeparator(path.front())) {
    const char separator = SeparatorFor(path);
    return Resolve(std::string(1, separator), path, separator);
  }
  const char separator = SeparatorFor(current_directory);
  return FullPath(std::string(current_directory) + separator + std::string(path), {});
}

bool MatchesPattern(std::string_view name, std::string_view pattern) {
  if (pattern == "*.*") return true;
  // Behind the last `*` seen, and what of the name it has taken so far; a longer run is tried only
  // for that one, which keeps the time below the product of the lengths.
  std::string_view behind_star;
  std::string_view rest;
  bool star = false;
  while (!name.empty()) {
    if (!pattern.empty() && pattern.front() == '*') {
      star = true;
      pattern.remove_prefix(1);
      behind_star = pattern;
      rest = name;
    } else if (!pattern.empty() && pattern.front() == '?') {
      pattern.remove_prefix(1);
      name.remove_prefix(CharacterSize(name));
    } else if (!pattern.empty() && AsciiLower(pattern.front()) == AsciiLower(name.front())) {
      pattern.remove_prefix(1);
      name.remove_prefix(1);
    } else if (star) {
      rest.remove_prefix(1);
      name = rest;
      pattern = behind_star;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*') == std::string_view::npos;
}

}  // namespace dq::platform
