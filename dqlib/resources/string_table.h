// The library's own resource module: its strings, and other data as it comes.

#pragma once

#include <span>

#include "dqlib/framework/base/resource_module.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

/// The library's strings, sorted by id.
std::span<const StringRow> StringTable();

/// The module that carries the library's resources. It lives as long as the process.
const ResourceModule& LibraryResources();

}  // namespace dq
