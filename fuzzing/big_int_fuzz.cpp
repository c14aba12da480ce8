// Big integers against GMP, but for the rules of their own. Input: two texts with a blank between.

#include <cstdint>
#include <cstdlib>
#include <gmp.h>
#include <string>

#include "dqlib/core/big_int.h"

namespace {

using dq::CDQBigInt;

void Require(bool holds) {
  if (!holds) std::abort();
}

/// A number of the peer.
class Peer {
 public:
  explicit Peer(const std::string& text = "0") { mpz_init_set_str(value_, text.c_str(), 10); }
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;
  ~Peer() { mpz_clear(value_); }
  mpz_t& value() { return value_; }
  std::string Text() const {
    char* const digits = mpz_get_str(nullptr, 10, value_);
    std::string text = digits;
    std::free(digits);
    return text;
  }

 private:
  mpz_t value_;
};

bool IsNumber(const std::string& text) {
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  return text.size() > first && text.find_first_not_of("0123456789", first) == text.npos;
}

void Divide(const CDQBigInt& a, const CDQBigInt& b, Peer& left, Peer& right) {
  Peer quotient;
  Peer remainder;
  mpz_tdiv_qr(quotient.value(), remainder.value(), left.value(), right.value());
  Require((a / b).toString() == quotient.Text());
  // A smaller number leaves the larger one, and the sign is the quotient's, also of zero.
  if (mpz_cmpabs(left.value(), right.value()) < 0) mpz_set(remainder.value(), right.value());
  mpz_abs(remainder.value(), remainder.value());
  const bool negative = a.toString().starts_with('-') != b.toString().starts_with('-');
  Require((a % b).toString() == (negative ? "-" : "") + remainder.Text());
}

void Compare(const CDQBigInt& a, const CDQBigInt& b, Peer& left, Peer& right) {
  Peer result;
  mpz_add(result.value(), left.value(), right.value());
  Require((a + b).toString() == result.Text());
  mpz_sub(result.value(), left.value(), right.value());
  Require((a - b).toString() == result.Text());
  mpz_mul(result.value(), left.value(), right.value());
  Require((a * b).toString() == result.Text());
  Require((a < b) == (mpz_cmp(left.value(), right.value()) < 0));
  Require((a == b) == (mpz_cmp(left.value(), right.value()) == 0));
  if (b != 0) Divide(a, b, left, right);
  mpz_tdiv_r_ui(result.value(), left.value(), 1'000'000);
  Require(static_cast<int>(a) == mpz_get_si(result.value()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::size_t blank = input.find(' ');
  if (size > 2000 || blank == input.npos) return 0;
  const std::string left = input.substr(0, blank);
  const std::string right = input.substr(blank + 1);
  const CDQBigInt a(left);
  const CDQBigInt b(right);
  if (!IsNumber(left) || !IsNumber(right)) {
    // Whatever comes out, nothing may break.
    static_cast<void>((a + b) * (a - b) * -3);
    if (right.find_first_of("123456789") != right.npos && IsNumber(right)) {
      static_cast<void>(a / b % b);
    }
    return 0;
  }
  Peer peer_left(left);
  Peer peer_right(right);
  Require(a.toString() == peer_left.Text());
  Compare(a, b, peer_left, peer_right);
  return 0;
}
