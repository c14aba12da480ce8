// Maps from texts to objects that they own.

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "dqlib/dbvocab/version_string.h"

namespace dq {

/// Objects by text, compared byte by byte. Destroying the map deletes them.
template <typename T>
class CDQMapStrToPtr {
 public:
  CDQMapStrToPtr() = default;
  CDQMapStrToPtr(const CDQMapStrToPtr&) = delete;
  CDQMapStrToPtr& operator=(const CDQMapStrToPtr&) = delete;

  int GetCount() const { return static_cast<int>(m_values.size()); }

  /// True, and the object, which stays the map's; false, and no change, if the key isn't there.
  /// Takes no memory.
  bool Lookup(std::string_view key, T*& value) const {
    const auto found = m_values.find(key);
    if (found == m_values.end()) return false;
    value = found->second.get();
    return true;
  }

  /// Takes the object over; the one that the key had is deleted.
  void SetAt(std::string_view key, std::unique_ptr<T> value) {
    m_values.insert_or_assign(std::string(key), std::move(value));
  }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const {
      return std::hash<std::string_view>{}(key);
    }
  };

  std::unordered_map<std::string, std::unique_ptr<T>, Hash, std::equal_to<>> m_values;
};

/// Versions by the text that they were made from and their platform.
class CDQDBVersionMap : public CDQMapStrToPtr<CDQDBVersionString> {};

}  // namespace dq
