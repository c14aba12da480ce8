// Modules that carry resources: strings, pictures and other data by number.
//
// A host makes one for its own strings and puts it in the chain (see `resource_chain.h`):
//
//   static ResourceModule host;
//   host.AddString(1000, "Ready");
//   static CDynLinkLibrary link(&host);

#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "dqlib/platform/modules.h"
#include "dqlib/platform/seam_texts.h"

namespace dq {

/// True if the rows are sorted by id and no id stands twice, as a table must be.
constexpr bool IsStrictlySorted(std::span<const StringRow> rows) {
  return std::ranges::adjacent_find(rows, std::ranges::greater_equal{}, &StringRow::id) ==
         rows.end();
}

/// A module whose resources are in memory. Fill it before others use it: it takes no lock.
class ResourceModule : public platform::Module {
 public:
  ResourceModule() = default;
  /// With the strings of a table that is sorted by id and outlives the module; it is not copied.
  explicit ResourceModule(std::span<const StringRow> strings);

  /// Adds a string or replaces the one with the id, including one of the table. An empty text is as
  /// good as none, as everywhere in string resources.
  void AddString(UINT id, std::string text);

  /// Adds a resource with a copy of `data`, or replaces the one of that type and name. Strings are
  /// added by `AddString` only.
  void AddResource(WORD type, WORD name, std::string data);

  const platform::Resource* Find(WORD type, WORD name) const override;
  std::optional<std::string_view> String(UINT id) const override;

 private:
  struct Entry {
    platform::Resource resource;
    std::string data;
  };

  std::span<const StringRow> table_;
  std::map<UINT, std::string> strings_;
  std::map<std::pair<WORD, WORD>, Entry> resources_;
  /// Records of string blocks: one for each block that has a string.
  std::map<WORD, platform::Resource> string_blocks_;
};

}  // namespace dq
