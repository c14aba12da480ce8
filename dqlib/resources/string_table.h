// The library's own resource module: its strings, and other data as it comes.

#pragma once

#include <span>
#include <string_view>

#include "dqlib/framework/base/resource_module.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

/// The library's strings, sorted by id.
std::span<const StringRow> StringTable();

/// The library's own string with the id, whatever a translation shows in its place; "" if there is
/// none. For texts that are kept or compared.
std::string_view EnglishText(UINT id);

/// The module that carries the library's resources. It lives as long as the process.
const ResourceModule& LibraryResources();

}  // namespace dq
