// Reads a tool bar resource; what can be read comes back the same from its own written form.

#include <cstdint>
#include <cstdlib>

#include "dqlib/framework/windows/tool_bar.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto bar = dq::ReadToolBarTemplate(bytes);
  if (!bar) return 0;
  const std::string again = dq::WriteToolBarTemplate(bar->picture_size, bar->commands);
  if (!bytes.starts_with(again)) std::abort();
  return 0;
}
