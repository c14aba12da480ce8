#include "dqlib/core/registry_tools.h"

#include <algorithm>
#include <array>
#include <new>
#include <string>
#include <string_view>

#include "dqlib/framework/base/registry_key.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

constexpr std::size_t kLongestText = 260;
/// Room for one value while it is moved.
constexpr std::size_t kNameBytes = 512;
constexpr std::size_t kDataBytes = 7680;

platform::Registry& Registry() { return *platform::Current().registry; }

enum class Outcome { kMoved, kUnread, kTooDeep };

/// `kMoved` at the end of an enumeration, `kUnread` where it could not be told what is left.
Outcome AtEnd(const platform::Error& error) {
  return error.kind == platform::ErrorKind::kNotFound ? Outcome::kMoved : Outcome::kUnread;
}

/// Moves values until none is left, or one is met that is too large or refused, which stays.
Outcome MoveValues(HKEY source, HKEY target) {
  for (;;) {
    const auto value = Registry().EnumValue(source, 0);
    if (!value.ok()) return AtEnd(value.error);
    if (IsTooLargeToMove(value.value)) return Outcome::kMoved;
    const auto& [name, type, data] = value.value;
    if (!Registry().SetValue(target, name, type, data).ok()) return Outcome::kMoved;
    // A value that can't be deleted would be found again for ever.
    if (!Registry().DeleteValue(source, name).ok()) return Outcome::kMoved;
  }
}

/// `kTooDeep` also where a key is moved below itself, which has no end.
Outcome MoveKey(HKEY source, HKEY target, int depth) {
  if (depth == kMovedLevels) return Outcome::kTooDeep;
  const Outcome values = MoveValues(source, target);
  if (values != Outcome::kMoved) return values;
  for (;;) {
    const auto name = Registry().EnumKey(source, 0);
    if (!name.ok()) return AtEnd(name.error);
    {
      const RegistryKey to(Registry().CreateKey(target, name.value));
      const RegistryKey from(Registry().CreateKey(source, name.value));
      if (!to.ok() || !from.ok()) return Outcome::kMoved;
      const Outcome below = MoveKey(from.get(), to.get(), depth + 1);
      if (below != Outcome::kMoved) return below;
    }
    // With the values that stayed in it. A key that can't be deleted would be found again for ever.
    if (!Registry().DeleteKey(source, name.value).ok()) return Outcome::kMoved;
  }
}

/// Onto itself, a move would set each value and then delete it.
Outcome Move(HKEY source, HKEY target) {
  return Registry().IsSameKey(source, target) ? Outcome::kMoved : MoveKey(source, target, 0);
}

/// The path with one `\` between its names and none around them.
std::string Normalized(std::string_view path) {
  std::string names;
  while (!path.empty()) {
    const std::string_view name = path.substr(0, path.find('\\'));
    path.remove_prefix(std::min(name.size() + 1, path.size()));
    if (name.empty()) continue;
    if (!names.empty()) names += '\\';
    names += name;
  }
  return names;
}

/// Whether the path of `below` leads through `above`.
bool LeadsThrough(std::string_view below, std::string_view above) {
  return below.size() > above.size() && below[above.size()] == '\\' &&
         platform::EqualIgnoringCase(below.substr(0, above.size()), above);
}

bool Rename(HKEY root, const std::string& old_name, const std::string& new_name) {
  {
    const RegistryKey from(Registry().OpenKey(root, old_name));
    if (!from.ok()) return false;
    const RegistryKey to(Registry().CreateKey(root, new_name));
    if (!to.ok() || Move(from.get(), to.get()) != Outcome::kMoved) return false;
  }
  // The move is what counts; an empty key that stays is found by whoever looks.
  Registry().DeleteKey(root, old_name);
  return true;
}

}  // namespace

CString DQLIB_AppFindValueInRegistry(HKEY root, const char* path, const char* name) {
  if (path == nullptr || name == nullptr) return {};
  const RegistryKey key(Registry().OpenKey(root, path));
  if (!key.ok()) return {};
  std::array<char, kLongestText + 1> data{};
  const auto read = Registry().ReadValue(key.get(), name, std::span(data).first(kLongestText));
  return read.ok() ? CString(data.data()) : CString();
}

void DQLIB_AppWriteValueInRegistry(HKEY root, const char* path, const char* name, const char* text,
                                   int length) {
  if (path == nullptr || name == nullptr || text == nullptr || length < 0) return;
  const RegistryKey key(Registry().CreateKey(root, path));
  if (!key.ok()) return;
  // Failures are not reported: callers write state that is nice to have.
  Registry().SetValue(key.get(), name, REGISTRY_STRING, {text, static_cast<std::size_t>(length)});
}

BOOL DQLIB_CopyRegistryKey(HKEY source, HKEY target) try {
  return Move(source, target) != Outcome::kTooDeep;
} catch (const std::bad_alloc&) {
  return 0;
}

BOOL DQLIB_RenameRegistryItem(HKEY root, const char* old_name, const char* new_name) try {
  if (old_name == nullptr || new_name == nullptr) return 0;
  const std::string from = Normalized(old_name);
  const std::string to = Normalized(new_name);
  if (from == to) return 1;
  if (from.empty() || to.empty() || LeadsThrough(from, to) || LeadsThrough(to, from)) return 0;
  // By the store's own rule of case, since a move of a key onto itself would lose its values.
  if (!platform::EqualIgnoringCase(from, to)) return Rename(root, from, to);
  const std::string temporary = to + std::to_string(platform::Current().clock->SecondsSince1970());
  return Rename(root, from, temporary) && Rename(root, temporary, to);
} catch (const std::bad_alloc&) {
  return 0;
}

bool IsTooLargeToMove(const platform::RegistryValue& value) {
  return value.data.size() > kDataBytes || value.name.size() >= kNameBytes;
}

}  // namespace dq
