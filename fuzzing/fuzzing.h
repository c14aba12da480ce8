// What fuzz targets share, and all that is public. A target is one source, which includes this and
// defines `Try`.

#pragma once

#include <algorithm>
#include <cstdlib>

#include "dqlib/dqlib.h"

namespace dq::fuzz {

/// Does with the input what the target is about, and ends the program where something is wrong.
void Try(std::string_view input);

inline void Require(bool holds) {
  if (!holds) std::abort();
}

/// Takes the first byte of the input, 0 if there is none.
inline int TakeByte(std::string_view& input) {
  const int taken = input.empty() ? 0 : static_cast<unsigned char>(input.front());
  input.remove_prefix(std::min<std::size_t>(input.size(), 1));
  return taken;
}

/// Takes the first line of the input, without its end.
inline std::string_view TakeLine(std::string_view& input) {
  const std::size_t end = std::min(input.find('\n'), input.size());
  const std::string_view line = input.substr(0, end);
  input.remove_prefix(std::min(end + 1, input.size()));
  return line;
}

}  // namespace dq::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  dq::fuzz::Try({reinterpret_cast<const char*>(data), size});
  return 0;
}
