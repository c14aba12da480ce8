// Output is cut into the same lines however it arrives.

#include "dqlib/output/line_cutter.h"
#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  // Zeros end the chunk they are in.
  if (input.empty() || input.find('\0') != input.npos) return;
  const auto cut = [&](std::size_t chunk) {
    detail::LineCutter cutter(input[0] % 2 != 0);
    std::string lines;
    for (std::string_view output = input.substr(1); !output.empty();) {
      cutter.Feed(std::string(output.substr(0, chunk)).c_str());
      output.remove_prefix(std::min(chunk, output.size()));
      for (std::string_view line; cutter.Next(line); lines += '\n') lines += line.data();
    }
    return lines + cutter.Rest().data();
  };
  Require(cut(255) == cut(1));
}
