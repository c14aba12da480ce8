// Big integers against GMP, but for the rules of their own. Input: two texts with a blank between.

#include <gmp.h>

#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
/// What an operation of GMP makes of two numbers.
static std::string Peer(auto operation, const std::string& left, const std::string& right) {
  mpz_t number, other;
  mpz_init_set_str(number, left.c_str(), 10);
  mpz_init_set_str(other, right.c_str(), 10);
  operation(number, number, other);
  std::string text(mpz_sizeinbase(number, 10) + 2, '\0');
  text = mpz_get_str(text.data(), 10, number);
  mpz_clears(number, other, nullptr);
  return text;
}

static void Reckon(const CDQBigInt& a, const CDQBigInt& b, const std::string& l,
                   const std::string& r) {
  const std::string difference = Peer(mpz_sub, l, r);
  Require(a.toString() == Peer(mpz_add, l, "0") && (a + b).toString() == Peer(mpz_add, l, r));
  Require((a - b).toString() == difference && (a * b).toString() == Peer(mpz_mul, l, r));
  Require((a < b) == difference.starts_with('-') && (a == b) == (difference == "0"));
  Require(static_cast<int>(a) == std::stoi(Peer(mpz_tdiv_r, l, "1000000")));
  if (b == 0) return;
  const std::string quotient = Peer(mpz_tdiv_q, l, r);
  Require((a / b).toString() == quotient);
  // A smaller number leaves the larger one, and the sign is the quotient's, also of zero.
  std::string rest = Peer(quotient == "0" ? mpz_add : mpz_tdiv_r, quotient == "0" ? "0" : l, r);
  std::erase(rest, '-');
  const bool negative = a.toString().starts_with('-') != b.toString().starts_with('-');
  Require((a % b).toString() == (negative ? "-" : "") + rest);
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
  if (is_number(left) && is_number(right)) return Reckon(a, b, left, right);
  // Whatever comes out, nothing may break.
  static_cast<void>((a + b) * (a - b) * -3);
  if (is_number(right) && b != 0) static_cast<void>(a / b % b);
}

}  // namespace dq::fuzz
