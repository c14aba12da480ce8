#include "dqlib/framework/base/resource_module.h"

#include <algorithm>

#include "dqlib/framework/base/resource_chain.h"

namespace dq {
namespace {

WORD BlockOf(UINT id) { return static_cast<WORD>(id / 16 + 1); }

}  // namespace

ResourceModule::ResourceModule(std::span<const StringRow> strings) : table_(strings) {
  for (const StringRow& row : strings) {
    string_blocks_[BlockOf(row.id)] = {RESOURCE_STRING, BlockOf(row.id), {}};
  }
}

void ResourceModule::AddString(UINT id, std::string text) {
  strings_[id] = std::move(text);
  string_blocks_[BlockOf(id)] = {RESOURCE_STRING, BlockOf(id), {}};
  ++detail::resource_generation;
}

void ResourceModule::AddResource(WORD type, WORD name, std::string data) {
  Entry& entry = resources_[{type, name}];
  entry.data = std::move(data);
  entry.resource = {type, name, entry.data};
}

const platform::Resource* ResourceModule::Find(WORD type, WORD name) const {
  if (type == RESOURCE_STRING) {
    const auto block = string_blocks_.find(name);
    return block == string_blocks_.end() ? nullptr : &block->second;
  }
  const auto entry = resources_.find({type, name});
  return entry == resources_.end() ? nullptr : &entry->second.resource;
}

std::optional<std::string_view> ResourceModule::String(UINT id) const {
  if (const auto own = strings_.find(id); own != strings_.end()) return own->second;
  const auto row = std::ranges::lower_bound(table_, id, {}, &StringRow::id);
  if (row == table_.end() || row->id != id) return std::nullopt;
  return row->text;
}

}  // namespace dq
