// Message boxes.

#pragma once

#include "dqlib/platform/prompts.h"
#include "dqlib/platform/types.h"

namespace dq {

/// No help topic.
inline constexpr UINT kNoHelp = 0xFFFFFFFF;

/// Shows a text under the application's name in a box of `type` (a sum of `BoxType` values) and
/// returns the `BoxButton` pressed. A null text counts as "".
int AfxMessageBox(const char* text, UINT type = BOX_OK, UINT help_id = 0);

/// The same under a caption of its own, without a help topic.
int AfxMessageBoxWithCaption(const char* text, const char* caption, UINT type);

/// As the first, with the string of the id, found by the chain of resource modules; "" if there is
/// none. A help id of `kNoHelp` stands for the string's own id.
int AfxMessageBox(UINT id, UINT type = BOX_OK, UINT help_id = kNoHelp);

}  // namespace dq
