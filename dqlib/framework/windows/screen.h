// The screen, as a window layer reports it.

#pragma once

#include "dqlib/framework/base/geometry.h"

namespace dq {

/// Width and height of the primary screen in pixels. 1920 by 1080 until a window layer reports the
/// real one. On the user-interface thread.
CSize GetScreenSize();
void SetScreenSize(const CSize& size);

}  // namespace dq
