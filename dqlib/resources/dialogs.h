// The library's dialog templates; their form is told in `framework/windows/dialog_template.h`.

#pragma once

#include <span>
#include <string_view>

#include "dqlib/platform/types.h"

namespace dq {

/// A template as data of a resource.
struct DialogRow {
  WORD id;
  std::string_view text;
};

/// The library's templates, sorted by id.
std::span<const DialogRow> DialogTable();

}  // namespace dq
