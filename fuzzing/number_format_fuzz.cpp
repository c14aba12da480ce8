// Any text as a number, in any format. Input: places, leading zero, grouping, negative order, then
// the number.

#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  if (input.size() < 4) return;
  const auto setting = [&](int at) { return static_cast<unsigned char>(input[at]); };
  platform::NumberFormat format{.decimal_places = setting(0),
                                .leading_zero = setting(1) % 2 != 0,
                                .grouping = setting(2),
                                .decimal_separator = ".",
                                .thousands_separator = "",
                                .negative_order = setting(3)};
  const std::string_view number = input.substr(4);
  if (!platform::LayOutNumber(number, format)) return;

  // What is laid out is a number again, and laying it out once more changes nothing.
  format.negative_order = 1;
  const auto plain = platform::LayOutNumber(number, format);
  Require(plain && platform::LayOutNumber(*plain, format) == plain);

  // Separators are all that grouping adds.
  format.thousands_separator = ",";
  auto grouped = platform::LayOutNumber(number, format);
  std::erase(*grouped, ',');
  Require(grouped == plain);
}
