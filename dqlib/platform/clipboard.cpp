#include "dqlib/platform/clipboard.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>

#include "dqlib/platform/ascii.h"

namespace dq::platform {
namespace {

constexpr std::size_t kMostRegistered = 0x10000 - CLIPBOARD_FIRST_REGISTERED;

/// The formats with names.
struct FormatNames {
  std::mutex mutex;
  /// By number, from the first one.
  std::vector<std::string> names;
  /// By name in lower case.
  std::unordered_map<std::string, UINT> numbers;
};

FormatNames& Names() {
  static FormatNames& names = *new FormatNames;
  return names;
}

}  // namespace

Error Clipboard::Set(UINT format, std::string_view bytes) {
  const ClipboardData piece{format, bytes};
  return SetAll({&piece, 1});
}

UINT Clipboard::RegisterFormat(std::string_view name) {
  if (name.empty()) return 0;
  std::string key(name);
  std::ranges::transform(key, key.begin(), AsciiLower);
  FormatNames& formats = Names();
  const std::lock_guard lock(formats.mutex);
  if (const auto known = formats.numbers.find(key); known != formats.numbers.end()) {
    return known->second;
  }
  if (formats.names.size() == kMostRegistered) return 0;
  const auto number = static_cast<UINT>(UINT{CLIPBOARD_FIRST_REGISTERED} + formats.names.size());
  formats.names.emplace_back(name);
  formats.numbers.emplace(std::move(key), number);
  return number;
}

std::string Clipboard::FormatName(UINT format) {
  FormatNames& formats = Names();
  const std::lock_guard lock(formats.mutex);
  // A number below them wraps, and is none either.
  const UINT index = format - CLIPBOARD_FIRST_REGISTERED;
  return index < formats.names.size() ? formats.names[index] : "";
}

std::string FileListData(std::span<const std::string> paths) {
  std::string data;
  for (const std::string& path : paths) {
    // One more zero would end the list.
    if (!path.empty()) data.append(path).push_back('\0');
  }
  data.push_back('\0');
  return data;
}

std::vector<std::string> ReadFileList(std::string_view data) {
  std::vector<std::string> paths;
  while (!data.empty() && data.front() != '\0') {
    const std::size_t end = std::min(data.find('\0'), data.size());
    paths.emplace_back(data.substr(0, end));
    data.remove_prefix(std::min(end + 1, data.size()));
  }
  return paths;
}

}  // namespace dq::platform
