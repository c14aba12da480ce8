#include "siblings/options/option_store.h"

#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/string_ids.h"

namespace dq::detail {
namespace {

platform::Registry& Registry() { return *platform::Current().registry; }

/// Path of the section below the current user.
std::string SectionPath() {
  CString root;
  root.LoadString(IDS_REGISTRY_ROOT);
  std::string path(root.View());
  if (const CWinApp* const app = AfxGetApp(); app != nullptr) path += app->GetAppName();
  return path + "\\Options";
}

std::string ValueName(const OptionDefinition& option, DBMS platform) {
  std::string name = std::to_string(option.id);
  if (platform != DBMS_NONE) name.append(".").append(PlatformWord(platform));
  return name;
}

struct ReadValue {
  DWORD type = REGISTRY_NONE;
  std::string data;
};

std::optional<ReadValue> ReadRegistry(HKEY root, std::string_view path, std::string_view name) {
  const auto key = Registry().OpenKey(root, path);
  if (!key.ok()) return std::nullopt;
  // Most values fit at the first try.
  std::string data(64, '\0');
  auto read = Registry().ReadValue(key.value, name, data);
  // Another process may make the value larger between two calls.
  while (read.error.kind == platform::ErrorKind::kBufferTooSmall) {
    data.resize(read.value.size);
    read = Registry().ReadValue(key.value, name, data);
  }
  Registry().CloseKey(key.value);
  if (!read.ok()) return std::nullopt;
  data.resize(read.value.size);
  return ReadValue{read.value.type, std::move(data)};
}

}  // namespace

std::optional<OptionValue> ReadKeptOption(const OptionDefinition& option, DBMS platform) {
  const auto kept = ReadRegistry(kCurrentUser, SectionPath(), ValueName(option, platform));
  return kept ? ReadKeptValue(option.kind, kept->type, kept->data) : std::nullopt;
}

platform::Error KeepOption(const OptionDefinition& option, DBMS platform,
                           const OptionValue& value) {
  const auto key = Registry().CreateKey(kCurrentUser, SectionPath());
  if (!key.ok()) return key.error;
  const KeptValue kept = KeepOptionValue(option.kind, value);
  const platform::Error error =
      Registry().SetValue(key.value, ValueName(option, platform), kept.type, kept.data);
  Registry().CloseKey(key.value);
  return error;
}

std::optional<OptionValue> ReadMachineOption(const OptionDefinition& option) {
  if (option.machine_key.empty()) return std::nullopt;
  const auto entry = ReadRegistry(kLocalMachine, option.machine_key, option.machine_value);
  if (!entry || entry->type != REGISTRY_STRING) return std::nullopt;
  OptionValue value = entry->data;
  if (value.ends_with('\0')) value.pop_back();
  return IsOptionValue(option.kind, value) ? std::optional(value) : std::nullopt;
}

}  // namespace dq::detail
