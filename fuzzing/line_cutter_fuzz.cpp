// Output is cut into the lines that the plain cutting finds, whatever its bytes.

#include "dqlib/output/line_cutter.h"
#include "fuzzing/fuzzing.h"
#include "tests/support/plain_line_cutter.h"

void dq::fuzz::Try(std::string_view input) {
  if (input.empty()) return;
  const bool trim_left = input[0] % 2 != 0;
  const std::string_view output = input.substr(1);
  const auto cut = dq::test::CutWith(dq::detail::LineCutter(trim_left), output, 255);
  Require(cut == dq::test::CutPlainly(output, 255, trim_left));
}
