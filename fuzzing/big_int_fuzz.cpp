// Big integers against GMP, but for the rules of their own. Input: two texts with a blank between.

#include <gmpxx.h>

#include "fuzzing/fuzzing.h"

namespace dq::fuzz {

static void Reckon(const CDQBigInt& a, const CDQBigInt& b, const mpz_class& l, const mpz_class& r) {
  const auto is = [](const CDQBigInt& number, const mpz_class& expected) {
    return number.toString() == expected.get_str();
  };
  Require(is(a, l) && is(a + b, l + r) && is(a - b, l - r) && is(a * b, l * r));
  Require((a < b) == (l < r) && (a == b) == (l == r));
  Require(static_cast<int>(a) == mpz_class(l % 1000000).get_si());
  if (b == 0) return;
  const mpz_class quotient = l / r;
  Require(is(a / b, quotient));
  // A smaller number leaves the larger one, and the sign is the quotient's, also of zero.
  const mpz_class rest = abs(quotient == 0 ? r : mpz_class(l % r));
  const bool negative = a.toString().starts_with('-') != b.toString().starts_with('-');
  Require((a % b).toString() == (negative ? "-" : "") + rest.get_str());
}

void Try(std::string_view input) {
  const std::size_t blank = input.find(' ');
  if (input.size() > 2000 || blank == input.npos) return;
  const std::string left(input.substr(0, blank)), right(input.substr(blank + 1));
  const CDQBigInt a(left), b(right);
  const auto is_number = [](const std::string& text) {
    const std::size_t first = text.starts_with('-') ? 1 : 0;
    return text.size() > first && text.find_first_not_of("0123456789", first) == text.npos;
  };
  if (is_number(left) && is_number(right)) {
    return Reckon(a, b, mpz_class(left, 10), mpz_class(right, 10));
  }
  // Whatever comes out, nothing may break.
  static_cast<void>((a + b) * (a - b) * -3);
  if (is_number(right) && b != 0) static_cast<void>(a / b % b);
}

}  // namespace dq::fuzz
