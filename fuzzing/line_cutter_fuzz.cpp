// Output is cut into the lines that the plain cutting finds, whatever its bytes.

#include <cstdint>
#include <cstdlib>

#include "dqlib/output/line_cutter.h"
#include "tests/support/plain_line_cutter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const bool trim_left = data[0] % 2 != 0;
  const std::string_view output(reinterpret_cast<const char*>(data + 1), size - 1);
  const auto cut = dq::test::CutWith(dq::detail::LineCutter(trim_left), output, 255);
  if (cut != dq::test::CutPlainly(output, 255, trim_left)) std::abort();
  return 0;
}
