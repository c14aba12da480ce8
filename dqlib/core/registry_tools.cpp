#include "dqlib/core/registry_tools.h"

#include <array>
#include <cstring>
#include <memory>
#include <new>

#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

constexpr std::size_t kLongestText = 260;
/// Room for one value while it is moved.
constexpr std::size_t kNameBytes = 512;
constexpr std::size_t kDataBytes = 7680;

platform::Registry& Registry() { return *platform::Current().registry; }

/// An open key for a scope.
class ScopedKey {
 public:
  explicit ScopedKey(const platform::Result<HKEY>& opened) : key_(opened.value) {}
  ScopedKey(const ScopedKey&) = delete;
  ScopedKey& operator=(const ScopedKey&) = delete;
  ~ScopedKey() { Registry().CloseKey(key_); }

  HKEY get() const { return key_; }
  bool ok() const { return key_ != kNoKey; }

 private:
  HKEY key_;
};

/// Moves values until none is left, or one can't be moved.
void MoveValues(HKEY source, HKEY target) {
  for (;;) {
    const auto value = Registry().EnumValue(source, 0);
    if (!value.ok() || value.value.data.size() > kDataBytes ||
        value.value.name.size() >= kNameBytes) {
      return;
    }
    const auto& [name, type, data] = value.value;
    if (!Registry().SetValue(target, name, type, data).ok()) return;
    if (!Registry().DeleteValue(source, name).ok()) return;
  }
}

}  // namespace

CString AppRegistryRoot() {
  CString root;
  root.LoadString(IDS_REGISTRY_ROOT);
  const CWinApp* const app = AfxGetApp();
  return root + (app == nullptr ? "" : app->GetAppName()) + "\\";
}

CString DQLIB_AppFindValueInRegistry(HKEY root, const char* path, const char* name) {
  if (path == nullptr || name == nullptr) return {};
  const ScopedKey key(Registry().OpenKey(root, path));
  if (!key.ok()) return {};
  std::array<char, kLongestText + 1> data{};
  const auto read = Registry().ReadValue(key.get(), name, std::span(data).first(kLongestText));
  return read.ok() ? CString(data.data()) : CString();
}

void DQLIB_AppWriteValueInRegistry(HKEY root, const char* path, const char* name, const char* text,
                                   int length) {
  if (path == nullptr || name == nullptr || text == nullptr || length < 0) return;
  const ScopedKey key(Registry().CreateKey(root, path));
  if (!key.ok()) return;
  // Failures are not reported: callers write state that is nice to have.
  Registry().SetValue(key.get(), name, REGISTRY_STRING, {text, static_cast<std::size_t>(length)});
}

BOOL DQLIB_CopyRegistryKey(HKEY source, HKEY target) try {
  MoveValues(source, target);
  for (;;) {
    const auto name = Registry().EnumKey(source, 0);
    if (!name.ok()) return 1;
    {
      const ScopedKey to(Registry().CreateKey(target, name.value));
      const ScopedKey from(Registry().CreateKey(source, name.value));
      if (!to.ok() || !from.ok()) return 1;
      if (!DQLIB_CopyRegistryKey(from.get(), to.get())) return 0;
    }
    // A key that can't be deleted would be found again for ever.
    if (!Registry().DeleteKey(source, name.value).ok()) return 1;
  }
} catch (const std::bad_alloc&) {
  return 0;
}

BOOL DQLIB_RenameRegistryItem(HKEY root, const char* old_name, const char* new_name) {
  if (old_name == nullptr || new_name == nullptr) return 0;
  if (std::strcmp(old_name, new_name) == 0) return 1;
  if (CString(old_name).CompareNoCase(new_name) == 0) {
    CString temporary;
    temporary.Format("%s%ld", new_name,
                     static_cast<long>(platform::Current().clock->SecondsSince1970()));
    return DQLIB_RenameRegistryItem(root, old_name, temporary) &&
           DQLIB_RenameRegistryItem(root, temporary, new_name);
  }
  BOOL moved = 0;
  {
    const ScopedKey from(Registry().OpenKey(root, old_name));
    if (!from.ok()) return 0;
    const ScopedKey to(Registry().CreateKey(root, new_name));
    if (!to.ok()) return 0;
    moved = DQLIB_CopyRegistryKey(from.get(), to.get());
  }
  if (moved) Registry().DeleteKey(root, old_name);
  return moved;
}

}  // namespace dq
