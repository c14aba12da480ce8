#include "apps/dqtool/settings_text.h"

#include <algorithm>
#include <optional>

#include "dqlib/framework/base/registry_key.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/platform.h"
#include "dqlib/platform/registry_text.h"

namespace dqtool {
namespace {

using dq::DWORD;
using dq::HKEY;
using dq::platform::Error;
using dq::platform::ErrorKind;

constexpr std::string_view kRootName = "HKEY_CURRENT_USER";

dq::platform::Registry& Registry() { return *dq::platform::Current().registry; }

/// The end of an enumeration is no failure.
Error UnlessNotFound(const Error& error) {
  return error.kind == ErrorKind::kNotFound ? Error{} : error;
}

Error ExportKey(HKEY key, const std::string& path, std::string& text) {
  text += dq::platform::kRegistryTextLineEnd;
  dq::platform::AppendRegistryKey(path, text);
  std::vector<dq::platform::RegistryValue> values;
  auto value = Registry().EnumValue(key, 0);
  for (; value.ok(); value = Registry().EnumValue(key, values.size())) {
    values.push_back(std::move(value.value));
  }
  Error error = UnlessNotFound(value.error);
  std::ranges::sort(values, {}, &dq::platform::RegistryValue::name);
  for (const auto& each : values) {
    dq::platform::AppendRegistryValue(each.name, each.type, each.data, text);
  }
  std::vector<std::string> names;
  auto name = Registry().EnumKey(key, 0);
  for (; error.ok() && name.ok(); name = Registry().EnumKey(key, names.size())) {
    names.push_back(std::move(name.value));
  }
  if (error.ok()) error = UnlessNotFound(name.error);
  std::ranges::sort(names);
  for (const std::string& each : names) {
    if (!error.ok()) break;
    const dq::RegistryKey below(Registry().OpenKey(key, each));
    // One that another process has deleted meanwhile is left out.
    std::string below_path = path;
    below_path.append(1, '\\').append(each);
    error = below.ok() ? ExportKey(below.get(), below_path, text) : UnlessNotFound(below.error());
  }
  return error;
}

bool IsKeyPath(std::string_view path) {
  constexpr std::size_t kLongestName = 255;
  if (path.find('\0') != path.npos) return false;
  while (!path.empty()) {
    const std::string_view name = path.substr(0, path.find('\\'));
    if (name.size() > kLongestName) return false;
    path.remove_prefix(std::min(name.size() + 1, path.size()));
  }
  return true;
}

/// Gathers the changes of a text and the lines that can't be used.
class Gatherer : public dq::platform::RegistryTextSink {
 public:
  bool OnKey(std::string_view path) override {
    const auto below = BelowRoot(path);
    if (below) changes.push_back({.path = path_ = *below});
    return below.has_value();
  }
  bool OnDeletedKey(std::string_view path) override {
    const auto below = BelowRoot(path);
    // The root itself stays.
    if (!below || below->find_first_not_of('\\') == below->npos) return false;
    changes.push_back({.path = *below, .deleted = true});
    return true;
  }
  bool OnValue(std::string_view name, DWORD type, std::string_view data) override {
    constexpr std::size_t kMostData = std::size_t{64} << 20;
    if (!IsValueName(name) || data.size() > kMostData) return false;
    changes.push_back(
        {.path = path_, .name = std::string(name), .type = type, .data = std::string(data)});
    return true;
  }
  bool OnDeletedValue(std::string_view name) override {
    if (!IsValueName(name)) return false;
    changes.push_back({.path = path_, .deleted = true, .name = std::string(name)});
    return true;
  }
  void OnLostLine(std::size_t number) override { bad.push_back(number); }

  std::vector<SettingsChange> changes;
  std::vector<std::size_t> bad;

 private:
  static bool IsValueName(std::string_view name) {
    constexpr std::size_t kLongestName = 16383;
    return name.size() <= kLongestName && name.find('\0') == name.npos;
  }
  /// The path below the root of the current user; no value if it is another's.
  static std::optional<std::string> BelowRoot(std::string_view path) {
    if (!dq::platform::EqualIgnoringCase(path.substr(0, kRootName.size()), kRootName)) {
      return std::nullopt;
    }
    path.remove_prefix(kRootName.size());
    if (!path.empty() && path.front() != '\\') return std::nullopt;
    return IsKeyPath(path) ? std::optional<std::string>(path) : std::nullopt;
  }

  std::string path_;
};

}  // namespace

Error ExportSettings(std::string& text) {
  text += dq::platform::kRegistryTextHeader;
  text += dq::platform::kRegistryTextLineEnd;
  return ExportKey(dq::kCurrentUser, std::string(kRootName), text);
}

BadLines ReadSettings(std::string_view text, std::vector<SettingsChange>& changes) {
  Gatherer gatherer;
  const bool no_header = dq::platform::ReadRegistryText(text, gatherer).no_header;
  changes = std::move(gatherer.changes);
  return {no_header, std::move(gatherer.bad)};
}

}  // namespace dqtool
