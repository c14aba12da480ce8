// Messages that are known by name, between windows that have agreed on nothing else.

#pragma once

#include "dqlib/platform/types.h"

namespace dq {

/// The message number of a name, from C000h to FFFFh: the same for every call with the same text,
/// whose case (ASCII) doesn't count, as long as the process lives. 0 for a null or empty name, or
/// when the numbers are used up. Any thread.
UINT RegisterWindowMessage(const char* name);

}  // namespace dq
