// Thin layers over the registry of the platform in force.

#pragma once

#include <string>
#include <string_view>

#include "dqlib/platform/registry.h"

namespace dq {

/// An open key of the registry for a scope. Not for several threads at once.
class RegistryKey {
 public:
  /// Takes over what an opening gave; the roots and a failed opening will do.
  explicit RegistryKey(const platform::Result<HKEY>& opened) : opened_(opened) {}
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;
  /// Closes it.
  ~RegistryKey();

  bool ok() const { return opened_.ok(); }
  const platform::Error& error() const { return opened_.error; }
  HKEY get() const { return opened_.value; }

 private:
  platform::Result<HKEY> opened_;
};

/// Reads a whole value, of any type and size, with its name as it is given.
platform::Result<platform::RegistryValue> ReadRegistryValue(HKEY key, std::string_view name);

/// Makes the key, if it isn't there, and sets a value of it to a text; "" names its default value.
platform::Error SetRegistryText(HKEY root, std::string_view path, std::string_view name,
                                const std::string& text);

/// Deletes a key with all below it. What was deleted before a refusal stays deleted; `kNotFound` if
/// there is no such key.
platform::Error DeleteRegistryTree(HKEY root, const std::string& path);

}  // namespace dq
