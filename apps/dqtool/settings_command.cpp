// dqtool settings: the current user's settings tree.

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/common/content.h"
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

/// As an answer has it.
Value ValueOf(const RegistryValue& value) {
  std::vector<std::string> texts = Texts(value);
  return value.type == dq::REGISTRY_MULTI_STRING ? Value(texts) : Value(texts.front());
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
  return Complain(what + ": " + dq::detail::ErrorText(error));
}

int NoKey(const std::string& path, const Error& error) {
  if (error.kind == ErrorKind::kNotFound) return Complain("no key " + path);
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

int List(const Arguments& arguments) {
  const std::string path = KeyPath(arguments.words.empty() ? "" : arguments.words[0]);
  const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, path));
  if (!key.ok()) return NoKey(path, key.error());
  std::vector<RegistryValue> values;
  std::vector<std::string> names;
  Error error = ReadValues(key.get(), values);
  if (error.ok()) error = ReadKeys(key.get(), names);
  if (!error.ok()) return Refused(path, error);
  Listing listing(arguments);
  for (const RegistryValue& value : values) {
    listing.Add({{"name", value.name}, {"kind", KindWord(value.type)}, {"value", ValueOf(value)}});
  }
  for (const std::string& name : names) listing.Add('[' + OnOneLine(name) + ']', {{"key", name}});
  return listing.End();
}

int Get(const Arguments& arguments) {
  const std::string path = KeyPath(arguments.words[0]);
  const std::string& name = arguments.words[1];
  const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, path));
  if (!key.ok()) return NoKey(path, key.error());
  const auto value = dq::ReadRegistryValue(key.get(), name);
  if (value.error.kind == ErrorKind::kNotFound) {
    return Complain("no value " + name + " in " + path);
  }
  if (!value.ok()) return Refused(path, value.error);
  if (arguments.Has(kJson.name)) {
    return PrintAnswer(arguments, "",
                       {{"kind", KindWord(value.value.type)}, {"value", ValueOf(value.value)}});
  }
  for (const std::string& text : Texts(value.value)) PrintLine(text);
  return kYes;
}

int Set(const Arguments& arguments) {
  const std::string path = KeyPath(arguments.words[0]);
  const std::string& name = arguments.words[1];
  const std::string& text = arguments.words[2];
  const RegistryKey key(Registry().CreateKey(dq::kCurrentUser, path));
  Error error = key.error();
  if (error.ok()) {
    const std::string_view with_zero(text.c_str(), text.size() + 1);
    error = Registry().SetValue(key.get(), name, dq::REGISTRY_STRING, with_zero);
  }
  return error.ok() ? int{kYes} : Refused(path, error);
}

int DeleteKey(const Arguments& arguments) {
  const std::string path = KeyPath(arguments.words[0]);
  if (path.empty()) throw WrongUsage("KEY is the root, which stays");
  const Error error = dq::DeleteRegistryTree(dq::kCurrentUser, path);
  return error.ok() ? int{kYes} : NoKey(path, error);
}

int DeleteValue(const Arguments& arguments) {
  const std::string path = KeyPath(arguments.words[0]);
  const std::string& name = arguments.words[1];
  const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, path));
  if (!key.ok()) return NoKey(path, key.error());
  const Error error = Registry().DeleteValue(key.get(), name);
  if (error.kind == ErrorKind::kNotFound) {
    return Complain("no value " + name + " in " + path);
  }
  return error.ok() ? int{kYes} : Refused(path, error);
}

/// What keeps the key `top` from being moved whole with all below it, as seen from the key at the
/// path and so many levels down from there; "" if nothing does.
std::string WhyUnmovable(const std::string& top, const std::string& path, int levels) {
  const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, path));
  std::vector<RegistryValue> values;
  std::vector<std::string> names;
  if (!key.ok() || !ReadValues(key.get(), values).ok() || !ReadKeys(key.get(), names).ok()) {
    return {};
  }
  if (levels == 0) return top + " has more levels of keys than are moved";
  if (std::ranges::any_of(values, dq::IsTooLargeToMove)) {
    return path + " holds a value that is too large to be moved";
  }
  for (const std::string& name : names) {
    std::string sub_path = path;
    sub_path.append(1, '\\').append(name);
    if (std::string why = WhyUnmovable(top, sub_path, levels - 1); !why.empty()) return why;
  }
  return {};
}

int Rename(const Arguments& arguments) {
  const std::string path = KeyPath(arguments.words[0]);
  const std::string& word = arguments.words[1];
  if (path.empty()) throw WrongUsage("KEY is the root, which stays");
  std::string target = KeyPath(word);
  if (target.empty()) throw WrongUsage("NEW is empty");
  const bool is_name = word.find_first_of("\\/") == word.npos;
  if (is_name) target.insert(0, path, 0, path.rfind('\\') + 1);
  {
    const RegistryKey key(Registry().OpenKey(dq::kCurrentUser, path));
    if (!key.ok()) return NoKey(path, key.error());
  }
  const std::string why = WhyUnmovable(path, path, dq::kMovedLevels);
  if (!why.empty()) return Complain(why);
  const bool moved =
      dq::DQLIB_RenameRegistryItem(dq::kCurrentUser, path.c_str(), target.c_str()) != 0;
  // A move counts what the store refuses as done, but then the key is still there.
  const bool same = dq::platform::EqualIgnoringCase(path, target);
  if (moved && (same || !RegistryKey(Registry().OpenKey(dq::kCurrentUser, path)).ok())) return kYes;
  return Complain(path + " could not be renamed to " + target);
}

int Export(const Arguments& arguments) {
  std::string text;
  if (const Error error = ExportSettings(text); !error.ok()) return Refused("export", error);
  // A line that is printed ends of itself.
  const std::string_view lines = std::string_view(text).substr(0, text.size() - 1);
  return PrintAnswer(arguments, lines, {{"text", text}});
}

int Import(const Arguments& arguments) {
  const std::optional<std::string> text = dqapps::ReadContent(arguments.words[0]);
  if (!text) return kNo;
  const std::string file = dqapps::NameOfInput(arguments.words[0]);
  std::vector<SettingsChange> changes;
  const BadLines bad = ReadSettings(*text, changes);
  if (bad.no_header) Complain(file + ": line 1: the header is missing");
  for (const std::size_t number : bad.numbers) {
    Complain(file + ": line " + std::to_string(number) + " can't be used");
  }
  if (bad.any()) return Complain("nothing was imported");
  const auto [refused, not_undone] = MakeChanges(changes);
  if (refused.ok()) return kYes;
  Refused(file, refused);
  return not_undone.ok() ? Complain("nothing was imported")
                         : Refused("a part of it was imported and can't be undone", not_undone);
}

const Command kSettings{
    "settings",
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
    "Kinds are string, expand, binary, dword, qword, multi, none, or a number.\n"
    "\n"
    "JSON: list [{\"name\", \"kind\", \"value\"}, ..., {\"key\"}, ...], get {\"kind\", "
    "\"value\"}, export\n"
    "{\"text\"};\n"
    "the value of a multi is an array of texts, any other the text that is printed.\n",
    {{"list [KEY]", List, {kJson}},
     {"get KEY NAME", Get, {kJson}},
     {"set KEY NAME VALUE", Set},
     {"delete KEY", DeleteKey},
     {"delete KEY NAME", DeleteValue},
     {"rename KEY NEW", Rename},
     {"export", Export, {kJson}},
     {"import FILE", Import}}};

}  // namespace
}  // namespace dqtool
