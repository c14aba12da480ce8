// Any text as a number, in any format. Input: places, leading zero, grouping, negative order, then
// the number.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "dqlib/platform/locale.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 4) return 0;
  dq::platform::NumberFormat format{.decimal_places = data[0],
                                    .leading_zero = data[1] % 2 != 0,
                                    .grouping = data[2],
                                    .decimal_separator = ".",
                                    .thousands_separator = "",
                                    .negative_order = data[3]};
  const std::string_view number(reinterpret_cast<const char*>(data) + 4, size - 4);
  const auto text = dq::platform::LayOutNumber(number, format);
  if (!text) return 0;

  // What is laid out is a number again, and laying it out once more changes nothing.
  format.negative_order = 1;
  const auto plain = dq::platform::LayOutNumber(number, format);
  if (!plain || dq::platform::LayOutNumber(*plain, format) != plain) std::abort();

  // Separators are all that grouping adds.
  format.thousands_separator = ",";
  auto grouped = dq::platform::LayOutNumber(number, format);
  std::erase(*grouped, ',');
  if (grouped != plain) std::abort();
  return 0;
}
