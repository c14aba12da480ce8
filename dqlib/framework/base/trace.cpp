#include "dqlib/framework/base/trace.h"

#include <cstdio>
#include <utility>

namespace dq {
namespace {

TraceSink& Sink() {
  // Never destroyed: destructors of static objects may trace.
  static TraceSink& sink = *new TraceSink;
  return sink;
}

}  // namespace

void AfxTrace(std::string_view text) {
  // A copy, because a sink may put another one in its place.
  if (const TraceSink sink = Sink()) {
    sink(text);
  } else {
    std::fwrite(text.data(), 1, text.size(), stderr);
  }
}

bool IsDebugTraced() { return Sink() != nullptr; }

void AfxDebugTrace(std::string_view text) {
  if (IsDebugTraced()) AfxTrace(text);
}

TraceSink SetTraceSink(TraceSink sink) { return std::exchange(Sink(), std::move(sink)); }

}  // namespace dq
