#include "apps/dqtool/settings_changes.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "dqlib/framework/base/registry_key.h"
#include "dqlib/platform/platform.h"

namespace dqtool {
namespace {

using dq::RegistryKey;
using dq::platform::Error;
using dq::platform::ErrorKind;

dq::platform::Registry& Registry() { return *dq::platform::Current().registry; }

Error UnlessNotFound(const Error& error) {
  return error.kind == ErrorKind::kNotFound ? Error{} : error;
}

Error Make(const SettingsChange& change) {
  if (!change.name && change.deleted) {
    return UnlessNotFound(dq::DeleteRegistryTree(dq::kCurrentUser, change.path));
  }
  const RegistryKey key(change.deleted ? Registry().OpenKey(dq::kCurrentUser, change.path)
                                       : Registry().CreateKey(dq::kCurrentUser, change.path));
  Error error = key.error();
  if (error.ok() && change.name) {
    error = change.deleted ? Registry().DeleteValue(key.get(), *change.name)
                           : Registry().SetValue(key.get(), *change.name, change.type, change.data);
  }
  return change.deleted ? UnlessNotFound(error) : error;
}

/// Adds what makes the key again, with all below it.
Error NoteTree(const std::string& path, std::vector<SettingsChange>& undo) {
  const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, path));
  if (!key.ok()) return UnlessNotFound(key.error());
  undo.push_back({.path = path});
  auto value = Registry().EnumValue(key.get(), 0);
  for (std::size_t i = 1; value.ok(); value = Registry().EnumValue(key.get(), i++)) {
    undo.push_back({.path = path,
                    .name = std::move(value.value.name),
                    .type = value.value.type,
                    .data = std::move(value.value.data)});
  }
  if (const Error error = UnlessNotFound(value.error); !error.ok()) return error;
  auto name = Registry().EnumKey(key.get(), 0);
  for (std::size_t i = 1; name.ok(); name = Registry().EnumKey(key.get(), i++)) {
    if (const Error error = NoteTree(path + '\\' + name.value, undo); !error.ok()) return error;
  }
  return UnlessNotFound(name.error);
}

/// Adds what deletes the first key of the path that isn't there; nothing if all are.
Error NoteMissing(const std::string& path, std::vector<SettingsChange>& undo) {
  const auto open = [&](std::size_t end) {
    const auto begin = std::string_view(path).substr(0, end);
    return RegistryKey(Registry().OpenKey(dq::kCurrentUser, begin)).error();
  };
  if (const Error error = open(path.size()); error.kind != ErrorKind::kNotFound) return error;
  // Where the names end. Behind the first is the root, which is there.
  std::vector<std::size_t> ends{0};
  while (ends.back() < path.size()) {
    ends.push_back(std::min(path.find('\\', ends.back() + 1), path.size()));
  }
  // From the end in steps that grow, because mostly little is missing of a long path.
  std::size_t there = 0;
  std::size_t missing = ends.size() - 1;
  for (std::size_t step = 1; missing - there > 1; step *= 2) {
    const std::size_t middle = missing - std::min(step, (missing - there) / 2);
    const Error error = open(ends[middle]);
    if (!error.ok() && error.kind != ErrorKind::kNotFound) return error;
    (error.ok() ? there : missing) = middle;
  }
  undo.push_back({.path = path.substr(0, ends[missing]), .deleted = true});
  return {};
}

/// Adds what undoes the change, as things stand.
Error NoteUndo(const SettingsChange& change, std::vector<SettingsChange>& undo) {
  if (!change.name) {
    return change.deleted ? NoteTree(change.path, undo) : NoteMissing(change.path, undo);
  }
  const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, change.path));
  if (key.error().kind == ErrorKind::kNotFound) return NoteMissing(change.path, undo);
  if (!key.ok()) return key.error();
  auto value = dq::ReadRegistryValue(key.get(), *change.name);
  if (value.error.kind == ErrorKind::kNotFound) {
    undo.push_back({.path = change.path, .deleted = true, .name = change.name});
    return {};
  }
  undo.push_back({.path = change.path,
                  .name = change.name,
                  .type = value.value.type,
                  .data = std::move(value.value.data)});
  return value.error;
}

}  // namespace

SettingsRefusal MakeChanges(std::span<const SettingsChange> changes) {
  SettingsRefusal refusal;
  // For each change what undoes it.
  std::vector<std::vector<SettingsChange>> undo;
  for (const SettingsChange& change : changes) {
    std::vector<SettingsChange> steps;
    refusal.refused = NoteUndo(change, steps);
    if (!refusal.refused.ok()) break;
    // A key may be refused with a part of it deleted already, so this change is among the undone.
    undo.push_back(std::move(steps));
    refusal.refused = Make(change);
    if (!refusal.refused.ok()) break;
  }
  if (refusal.refused.ok()) return refusal;
  for (auto steps = undo.rbegin(); steps != undo.rend(); ++steps) {
    for (const SettingsChange& step : *steps) {
      const Error error = Make(step);
      if (refusal.not_undone.ok()) refusal.not_undone = error;
    }
  }
  return refusal;
}

}  // namespace dqtool
