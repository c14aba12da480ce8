// dqtool settings: the current user's settings tree.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/dqtool/command.h"
#include "apps/dqtool/settings_text.h"
#include "dqlib/core/registry_tools.h"
#include "dqlib/framework/base/error_text.h"
#include "dqlib/framework/base/little_endian.h"
#include "dqlib/framework/base/registry_key.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/platform.h"
#include "siblings/options/option_value.h"

namespace dqtool {
namespace {

using dq::DWORD;
using dq::HKEY;
using dq::RegistryKey;
using dq::platform::Error;
using dq::platform::ErrorKind;
using dq::platform::RegistryValue;

dq::platform::Registry& Registry() { return *dq::platform::Current().registry; }

constexpr std::pair<DWORD, std::string_view> kKinds[] = {
    {dq::REGISTRY_NONE, "none"},
    {dq::REGISTRY_STRING, "string"},
    {dq::REGISTRY_EXPAND_STRING, "expand"},
    {dq::REGISTRY_BINARY, "binary"},
    {dq::REGISTRY_DWORD, "dword"},
    {dq::REGISTRY_MULTI_STRING, "multi"},
    {dq::REGISTRY_QWORD, "qword"},
};

std::string KindWord(DWORD type) {
  const auto* const kind =
      std::ranges::find(kKinds, type, &std::pair<DWORD, std::string_view>::first);
  return kind == std::end(kKinds) ? std::to_string(type) : std::string(kind->second);
}

/// The texts of a value: several of a multi text, else one. Numbers are decimal, and what is
/// neither number nor text is bytes in hexadecimal.
std::vector<std::string> Texts(const RegistryValue& value) {
  const std::string_view data = value.data;
  if (value.type == dq::REGISTRY_STRING || value.type == dq::REGISTRY_EXPAND_STRING) {
    return {std::string(data.substr(0, data.find('\0')))};
  }
  if (value.type == dq::REGISTRY_MULTI_STRING) {
    std::vector<std::string> texts;
    for (std::string_view rest = data; !rest.empty() && rest.front() != '\0';) {
      texts.emplace_back(rest.substr(0, rest.find('\0')));
      rest.remove_prefix(std::min(texts.back().size() + 1, rest.size()));
    }
    return texts;
  }
  if (value.type == dq::REGISTRY_DWORD && data.size() == sizeof(DWORD)) {
    return {std::to_string(dq::detail::FromLittleEndian<DWORD>(data))};
  }
  if (value.type == dq::REGISTRY_QWORD && data.size() == sizeof(std::uint64_t)) {
    return {std::to_string(dq::detail::FromLittleEndian<std::uint64_t>(data))};
  }
  return {dq::HexOfBytes(data)};
}

/// A key's path from the root, with one `\` between names, whatever is between them in the word.
std::string KeyPath(std::string_view word) {
  std::string path;
  for (const char each : word) {
    if (each != '\\' && each != '/') {
      path += each;
    } else if (!path.empty() && path.back() != '\\') {
      path += '\\';
    }
  }
  if (path.ends_with('\\')) path.pop_back();
  return path;
}

int Refused(const std::string& what, const Error& error) {
  return Complain("settings: " + what + ": " + dq::detail::ErrorText(error));
}

int NoKey(const std::string& path, const Error& error) {
  if (error.kind == ErrorKind::kNotFound) return Complain("settings: no key " + path);
  return Refused(path.empty() ? "the root" : path, error);
}

/// All values of a key, or all names of its sub-keys, sorted by name.
Error ReadValues(HKEY key, std::vector<RegistryValue>& values) {
  auto value = Registry().EnumValue(key, 0);
  for (; value.ok(); value = Registry().EnumValue(key, values.size())) {
    values.push_back(std::move(value.value));
  }
  std::ranges::sort(values, {}, &RegistryValue::name);
  return value.error.kind == ErrorKind::kNotFound ? Error{} : value.error;
}

Error ReadKeys(HKEY key, std::vector<std::string>& names) {
  auto name = Registry().EnumKey(key, 0);
  for (; name.ok(); name = Registry().EnumKey(key, names.size())) {
    names.push_back(std::move(name.value));
  }
  std::ranges::sort(names);
  return name.error.kind == ErrorKind::kNotFound ? Error{} : name.error;
}

int List(const std::string& path) {
  const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, path));
  if (!key.ok()) return NoKey(path, key.error());
  std::vector<RegistryValue> values;
  std::vector<std::string> names;
  Error error = ReadValues(key.get(), values);
  if (error.ok()) error = ReadKeys(key.get(), names);
  if (!error.ok()) return Refused(path, error);
  for (const RegistryValue& value : values) {
    std::string line = OnOneLine(value.name) + '\t' + KindWord(value.type);
    const std::vector<std::string> texts = Texts(value);
    if (texts.empty()) line += '\t';
    for (const std::string& text : texts) line += '\t' + OnOneLine(text);
    PrintLine(line);
  }
  for (const std::string& name : names) PrintLine('[' + OnOneLine(name) + ']');
  return kYes;
}

int Get(const std::string& path, const std::string& name) {
  const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, path));
  if (!key.ok()) return NoKey(path, key.error());
  const auto value = dq::ReadRegistryValue(key.get(), name);
  if (value.error.kind == ErrorKind::kNotFound) {
    return Complain("settings: no value " + name + " in " + path);
  }
  if (!value.ok()) return Refused(path, value.error);
  for (const std::string& text : Texts(value.value)) PrintLine(text);
  return kYes;
}

int Set(const std::string& path, const std::string& name, const std::string& text) {
  const RegistryKey key(Registry().CreateKey(dq::kCurrentUser, path));
  Error error = key.error();
  if (error.ok()) {
    const std::string_view with_zero(text.c_str(), text.size() + 1);
    error = Registry().SetValue(key.get(), name, dq::REGISTRY_STRING, with_zero);
  }
  return error.ok() ? int{kYes} : Refused(path, error);
}

int DeleteKey(const std::string& path) {
  if (path.empty()) throw WrongUsage("KEY is the root, which stays");
  const Error error = dq::DeleteRegistryTree(dq::kCurrentUser, path);
  return error.ok() ? int{kYes} : NoKey(path, error);
}

int DeleteValue(const std::string& path, const std::string& name) {
  const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, path));
  if (!key.ok()) return NoKey(path, key.error());
  const Error error = Registry().DeleteValue(key.get(), name);
  if (error.kind == ErrorKind::kNotFound) {
    return Complain("settings: no value " + name + " in " + path);
  }
  return error.ok() ? int{kYes} : Refused(path, error);
}

/// The path of the first key, this one or below it, that has a value which a move loses; "" if
/// there is none.
std::string KeyWithTooMuch(const std::string& path) {
  const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, path));
  std::vector<RegistryValue> values;
  std::vector<std::string> names;
  if (!key.ok() || !ReadValues(key.get(), values).ok() || !ReadKeys(key.get(), names).ok()) {
    return {};
  }
  if (std::ranges::any_of(values, dq::IsTooLargeToMove)) return path;
  for (const std::string& name : names) {
    if (std::string found = KeyWithTooMuch(path + '\\' + name); !found.empty()) return found;
  }
  return {};
}

int Rename(const std::string& path, const std::string& word) {
  if (path.empty()) throw WrongUsage("KEY is the root, which stays");
  std::string target = KeyPath(word);
  if (target.empty()) throw WrongUsage("NEW is empty");
  const bool is_name = word.find_first_of("\\/") == word.npos;
  if (is_name) target.insert(0, path, 0, path.rfind('\\') + 1);
  {
    const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, path));
    if (!key.ok()) return NoKey(path, key.error());
  }
  if (const std::string key = KeyWithTooMuch(path); !key.empty()) {
    return Complain("settings: " + key + " holds a value that is too large to be moved");
  }
  const bool moved =
      dq::DQLIB_RenameRegistryItem(dq::kCurrentUser, path.c_str(), target.c_str()) != 0;
  // A move counts what the store refuses as done, but then the key is still there.
  const bool same = dq::platform::EqualIgnoringCase(path, target);
  if (moved && (same || !RegistryKey(Registry().OpenKey(dq::kCurrentUser, path)).ok())) return kYes;
  return Complain("settings: " + path + " could not be renamed to " + target);
}

int Export() {
  std::string text;
  if (const Error error = ExportSettings(text); !error.ok()) return Refused("export", error);
  text.pop_back();  // `PrintLine` ends the last line.
  PrintLine(text);
  return kYes;
}

int Import(const std::string& file) {
  std::string text;
  const Error error = dq::platform::Current().files->ReadAll(file, text);
  if (!error.ok()) return Refused(file, error);
  std::vector<SettingsChange> changes;
  const BadLines bad = ReadSettings(text, changes);
  if (bad.no_header) Complain("settings: " + file + ": line 1: the header is missing");
  for (const std::size_t number : bad.numbers) {
    Complain("settings: " + file + ": line " + std::to_string(number) + " can't be used");
  }
  if (bad.any()) return Complain("settings: nothing was imported");
  const auto [refused, not_undone] = MakeChanges(changes);
  if (refused.ok()) return kYes;
  Refused(file, refused);
  return not_undone.ok() ? Complain("settings: nothing was imported")
                         : Refused("a part of it was imported and can't be undone", not_undone);
}

int RunSettings(Words words) {
  if (words.empty()) throw WrongUsage("list, get, set, delete, rename, export or import is needed");
  const std::string& action = words[0];
  const std::size_t count = words.size() - 1;
  const std::string path = KeyPath(count > 0 ? words[1] : "");
  if (action == "list" && count <= 1) return List(path);
  if (action == "get" && count == 2) return Get(path, words[2]);
  if (action == "set" && count == 3) return Set(path, words[2], words[3]);
  if (action == "delete" && count == 1) return DeleteKey(path);
  if (action == "delete" && count == 2) return DeleteValue(path, words[2]);
  if (action == "rename" && count == 2) return Rename(path, words[2]);
  if (action == "export" && count == 0) return Export();
  if (action == "import" && count == 1) return Import(words[1]);
  throw WrongUsage("'" + action + "' with " + std::to_string(count) + " words makes no sense");
}

const Command kSettings{
    "settings",
    "list [KEY] | get KEY NAME | set KEY NAME VALUE | delete KEY [NAME] | rename KEY NEW | export "
    "| import FILE",
    "Shows and changes the settings of the user.",
    "KEY is a path from the root of the user's tree, with '\\' or '/' between names. NAME is a\n"
    "value's, and '' the default value's.\n"
    "\n"
    "  list    print NAME<TAB>KIND<TAB>VALUE lines, then sub-keys as [NAME]; control characters\n"
    "          as \\xHH, the texts of a multi value with tabs between\n"
    "  get     print the value: numbers in decimal, bytes in hexadecimal, texts as they are\n"
    "  set     write a text\n"
    "  delete  delete a value, or a key with all below it\n"
    "  rename  give the key another name, or move it where NEW is a path; onto an existing key it\n"
    "          merges\n"
    "  export  print the whole tree in the registry editor's text format\n"
    "  import  make what such a file says; with a line that can't be used, nothing of it;\n"
    "          if the store refuses a change, those before it are undone, which only a store that\n"
    "          refuses that too, or the end of the program in between, prevents\n"
    "\n"
    "Kinds are string, expand, binary, dword, qword, multi, none, or a number.\n",
    RunSettings};

}  // namespace
}  // namespace dqtool
