// Reads a tool bar resource; what can be read comes back the same from its own written form.

#include "dqlib/framework/windows/tool_bar.h"
#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view bytes) {
  const auto bar = dq::ReadToolBarTemplate(bytes);
  if (!bar) return;
  const std::string again = dq::WriteToolBarTemplate(bar->picture_size, bar->commands);
  Require(bytes.starts_with(again));
}
