// The framework's trace log: remarks for developers, never shown to a user.

#pragma once

#include <functional>
#include <string_view>

namespace dq {

/// Takes a trace text as it stands, line end included. Called on the thread that traces.
using TraceSink = std::function<void(std::string_view)>;

/// Writes to the trace log: by default to standard error. Any thread.
void AfxTrace(std::string_view text);

/// Whether remarks for debugging are taken down: while a sink has been set. They cost time where a
/// program makes many, so they don't go to standard error by themselves.
bool IsDebugTraced();
/// Writes a remark for debugging, if those are taken down. Any thread.
void AfxDebugTrace(std::string_view text);

/// Replaces the sink, null by the default, and returns the former one. Call it while no other
/// thread traces.
TraceSink SetTraceSink(TraceSink sink);

}  // namespace dq
