// Big integers against GMP, but for the rules of their own. Input: two texts with a blank between.

#include <gmpxx.h>

#include "dqlib/core/big_int.h"
#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

bool IsNumber(const std::string& text) {
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  return text.size() > first && text.find_first_not_of("0123456789", first) == text.npos;
}

void Reckon(const CDQBigInt& a, const CDQBigInt& b, const mpz_class& left, const mpz_class& right) {
  Require(a.toString() == left.get_str());
  Require((a + b).toString() == mpz_class(left + right).get_str());
  Require((a - b).toString() == mpz_class(left - right).get_str());
  Require((a * b).toString() == mpz_class(left * right).get_str());
  Require((a < b) == (left < right) && (a == b) == (left == right));
  Require(static_cast<int>(a) == mpz_class(left % 1'000'000).get_si());
  if (b == 0) return;
  Require((a / b).toString() == mpz_class(left / right).get_str());
  // A smaller number leaves the larger one, and the sign is the quotient's, also of zero.
  const mpz_class rest = abs(left) < abs(right) ? right : mpz_class(left % right);
  const bool negative = a.toString().starts_with('-') != b.toString().starts_with('-');
  Require((a % b).toString() == (negative ? "-" : "") + mpz_class(abs(rest)).get_str());
}

}  // namespace

void Try(std::string_view input) {
  const std::size_t blank = input.find(' ');
  if (input.size() > 2000 || blank == input.npos) return;
  const std::string left(input.substr(0, blank));
  const std::string right(input.substr(blank + 1));
  const CDQBigInt a(left);
  const CDQBigInt b(right);
  if (IsNumber(left) && IsNumber(right)) {
    Reckon(a, b, mpz_class(left, 10), mpz_class(right, 10));
    return;
  }
  // Whatever comes out, nothing may break.
  static_cast<void>((a + b) * (a - b) * -3);
  if (right.find_first_of("123456789") != right.npos && IsNumber(right)) {
    static_cast<void>(a / b % b);
  }
}

}  // namespace dq::fuzz
