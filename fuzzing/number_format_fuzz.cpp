// Any text as a number, in any format. Input: places, leading zero, grouping, negative order, then
// the number.

#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  platform::NumberFormat format;
  format.decimal_places = TakeByte(input);
  format.leading_zero = TakeByte(input) % 2 != 0;
  format.grouping = TakeByte(input);
  format.negative_order = TakeByte(input);
  format.decimal_separator = ".";
  if (!platform::LayOutNumber(input, format)) return;

  // What is laid out is a number again, and laying it out once more changes nothing.
  format.negative_order = 1;
  const auto plain = platform::LayOutNumber(input, format);
  Require(plain && platform::LayOutNumber(*plain, format) == plain);

  // Separators are all that grouping adds.
  format.thousands_separator = ",";
  auto grouped = platform::LayOutNumber(input, format);
  std::erase(*grouped, ',');
  Require(grouped == plain);
}
