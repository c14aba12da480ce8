#include "dqlib/framework/base/registry_key.h"

#include "dqlib/platform/platform.h"

namespace dq {
namespace {

platform::Registry& Registry() { return *platform::Current().registry; }

}  // namespace

RegistryKey::~RegistryKey() { Registry().CloseKey(opened_.value); }

platform::Result<platform::RegistryValue> ReadRegistryValue(HKEY key, std::string_view name) {
  platform::RegistryValue value;
  value.name = name;
  // Most values fit at the first try.
  constexpr std::size_t kUsualSize = 64;
  value.data.resize(kUsualSize);
  auto read = Registry().ReadValue(key, name, value.data);
  // Another process may make the value larger between two calls.
  while (read.error.kind == platform::ErrorKind::kBufferTooSmall) {
    value.data.resize(read.value.size);
    read = Registry().ReadValue(key, name, value.data);
  }
  if (!read.ok()) return read.error;
  value.type = read.value.type;
  value.data.resize(read.value.size);
  return value;
}

platform::Error SetRegistryText(HKEY root, std::string_view path, std::string_view name,
                                const std::string& text) {
  const RegistryKey key(Registry().CreateKey(root, path));
  const std::string_view with_zero(text.c_str(), text.size() + 1);
  return key.ok() ? Registry().SetValue(key.get(), name, REGISTRY_STRING, with_zero) : key.error();
}

platform::Error DeleteRegistryTree(HKEY root, const std::string& path) {
  platform::Error error;
  {
    const RegistryKey key(Registry().OpenKey(root, path));
    error = key.error();
    while (error.ok()) {
      const auto name = Registry().EnumKey(key.get(), 0);
      if (name.error.kind == platform::ErrorKind::kNotFound) break;
      error = name.ok() ? DeleteRegistryTree(key.get(), name.value) : name.error;
    }
  }
  return error.ok() ? Registry().DeleteKey(root, path) : error;
}

}  // namespace dq
