#include "siblings/options/option_store.h"

#include <utility>

#include "dqlib/framework/base/registry_key.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/settings_failure.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/string_ids.h"

namespace dq::detail {
namespace {

platform::Registry& Registry() { return *platform::Current().registry; }

/// Path of the section below the current user.
CString SectionPath() { return AppRegistryRoot() + "Options"; }

std::string ValueName(const OptionDefinition& option, DBMS platform) {
  std::string name = std::to_string(option.id);
  if (platform != DBMS_NONE) name.append(".").append(PlatformWord(platform));
  return name;
}

platform::Result<platform::RegistryValue> ReadRegistry(HKEY root, std::string_view path,
                                                       std::string_view name) {
  const RegistryKey key(Registry().OpenKey(root, path));
  return key.ok() ? ReadRegistryValue(key.get(), name) : key.error();
}

}  // namespace

std::string OptionRoot() { return std::string(AppRegistryRoot().View()); }

bool IsOptionRoot(std::string_view root) {
  // The parts of `AppRegistryRoot`, one behind the other.
  const CWinApp* const app = AfxGetApp();
  const std::string_view parts[] = {AfxFindString(IDS_REGISTRY_ROOT).value_or(""),
                                    app == nullptr ? "" : app->GetAppName(), "\\"};
  for (const std::string_view part : parts) {
    if (!root.starts_with(part)) return false;
    root.remove_prefix(part.size());
  }
  return root.empty();
}

FoundOption ReadKeptOption(const OptionDefinition& option, DBMS platform) {
  const auto kept = ReadRegistry(kCurrentUser, SectionPath().View(), ValueName(option, platform));
  const platform::Error failure = NoteSettingsReading(SettingsStore::kUser, kept.error);
  if (!failure.ok()) return failure;
  if (!kept.ok()) return std::optional<OptionValue>();
  return ReadKeptValue(option.kind, kept.value.type, kept.value.data);
}

platform::Error KeepOption(const OptionDefinition& option, DBMS platform,
                           const OptionValue& value) {
  const RegistryKey key(Registry().CreateKey(kCurrentUser, SectionPath().View()));
  if (!key.ok()) return key.error();
  const KeptValue kept = KeepOptionValue(option.kind, value);
  return Registry().SetValue(key.get(), ValueName(option, platform), kept.type, kept.data);
}

platform::Error ForgetOption(const OptionDefinition& option, DBMS platform) {
  const RegistryKey key(Registry().OpenKey(kCurrentUser, SectionPath().View()));
  platform::Error error = key.error();
  if (error.ok()) error = Registry().DeleteValue(key.get(), ValueName(option, platform));
  return error.kind == platform::ErrorKind::kNotFound ? platform::Error{} : error;
}

FoundOption ReadMachineOption(const OptionDefinition& option) {
  std::optional<OptionValue> found;
  if (option.machine_key.empty()) return found;
  const auto entry = ReadRegistry(kLocalMachine, option.machine_key, option.machine_value);
  const platform::Error failure = NoteSettingsReading(SettingsStore::kMachine, entry.error);
  if (!failure.ok()) return failure;
  if (!entry.ok() || entry.value.type != REGISTRY_STRING) return found;
  OptionValue value = entry.value.data;
  if (value.ends_with('\0')) value.pop_back();
  if (IsOptionValue(option.kind, value)) found = std::move(value);
  return found;
}

}  // namespace dq::detail
