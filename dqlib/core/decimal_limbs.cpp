#include "dqlib/core/decimal_limbs.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace dq::detail {
namespace {

using Limb = std::uint64_t;

constexpr std::size_t kDigits = 8;
constexpr Limb kBase = 100'000'000;
/// Products of limbs whose sum an accumulator holds beside a carry.
constexpr std::size_t kSummands = 1024;

/// The digit "0" in each byte.
constexpr Limb kZeros = 0x3030303030303030;

constexpr std::size_t LimbsOf(std::size_t digits) { return (digits + kDigits - 1) / kDigits; }

using Limbs = std::span<Limb>;

/// Room for limbs, without memory from the heap where they are few. They begin as anything.
class LimbRoom {
 public:
  explicit LimbRoom(std::size_t size) : size_(size) {
    if (size > few_.size()) many_.resize(size);
  }
  operator Limbs() { return {size_ > few_.size() ? many_.data() : few_.data(), size_}; }

 private:
  std::size_t size_;
  std::array<Limb, 40> few_;
  std::vector<Limb> many_;
};

/// The bytes in the other order where the machine's highest comes first.
Limb LowestFirst(Limb bytes) {
  if constexpr (std::endian::native == std::endian::little) return bytes;
  Limb turned = 0;
  for (std::size_t i = 0; i < kDigits; ++i) turned = turned << 8 | (bytes >> (8 * i) & 0xFF);
  return turned;
}

/// Eight characters, the first in the lowest byte.
Limb Load(const char* from) {
  Limb bytes;
  std::memcpy(&bytes, from, kDigits);
  return LowestFirst(bytes);
}

void Store(Limb bytes, char* to) {
  bytes = LowestFirst(bytes);
  std::memcpy(to, &bytes, kDigits);
}

/// Has a bit of `kNoDigit` where a byte, from which "0" was subtracted, is no digit. What is
/// borrowed from a neighbour is so by a byte that is none.
Limb NoDigits(Limb numbers) { return (numbers | (numbers + 0x7676767676767676)); }
constexpr Limb kNoDigit = 0x8080808080808080;

/// The number whose digits are the bytes: neighbours are joined, then pairs, then fours, each by
/// one multiplication that puts the lower one beside the higher one's multiple.
Limb NumberOf(Limb digits) {
  const Limb pairs = digits * ((1 << 8) + 10) >> 8 & 0x00FF00FF00FF00FF;
  const Limb fours = pairs * ((1 << 16) + 100) >> 16 & 0x0000FFFF0000FFFF;
  return fours * ((Limb{1} << 32) + 10'000) >> 32;
}

/// The other way. Each step takes a quotient, by a multiplication, out of all lanes at once.
Limb DigitsOf(Limb number) {
  const Limb high = number * 109'951'163 >> 40;
  const Limb fours = number + high * ((Limb{1} << 32) - 10'000);
  const Limb hundreds = fours * 10'486 >> 20 & 0x0000007F0000007F;
  const Limb pairs = fours + hundreds * ((1 << 16) - 100);
  const Limb tens = pairs * 103 >> 10 & 0x000F000F000F000F;
  return pairs + tens * ((1 << 8) - 10);
}

/// Reads digits into their limbs; false if there are other characters.
inline bool Read(std::span<const char> digits, Limbs limbs) {
  Limb others = 0;
  const std::size_t whole = digits.size() / kDigits;
  for (std::size_t i = 0; i < whole; ++i) {
    const Limb numbers = Load(digits.data() + i * kDigits) - kZeros;
    others |= NoDigits(numbers);
    limbs[i] = NumberOf(numbers);
  }
  const std::size_t rest = digits.size() % kDigits;
  if (rest != 0) {
    Limb bytes = 0;
    if (whole > 0) {
      bytes = Load(digits.data() + digits.size() - kDigits) >> (8 * (kDigits - rest));
    } else {
      for (std::size_t i = rest; i-- > 0;) {
        bytes = bytes << 8 | static_cast<unsigned char>(digits[i]);
      }
    }
    bytes |= kZeros << (8 * rest);
    const Limb numbers = bytes - kZeros;
    others |= NoDigits(numbers);
    limbs[whole] = NumberOf(numbers);
  }
  return (others & kNoDigit) == 0;
}

/// Writes the lowest digits, as many as there is room for.
inline void Write(Limbs limbs, std::span<char> digits) {
  const std::size_t whole = digits.size() / kDigits;
  for (std::size_t i = 0; i < whole; ++i) {
    Store(DigitsOf(limbs[i]) + kZeros, digits.data() + i * kDigits);
  }
  if (whole * kDigits == digits.size()) return;
  Limb bytes = DigitsOf(limbs[whole]) + kZeros;
  for (char& digit : digits.subspan(whole * kDigits)) {
    digit = static_cast<char>(bytes & 0xFF);
    bytes >>= 8;
  }
}

/// Brings all limbs below the base.
void Carry(Limbs limbs) {
  Limb carry = 0;
  for (Limb& limb : limbs) {
    const Limb sum = limb + carry;
    carry = sum / kBase;
    limb = sum - carry * kBase;
  }
}

/// Divides by one limb and returns the remainder.
Limb DivideByLimb(Limbs limbs, std::size_t size, Limb divisor) {
  Limb remainder = 0;
  for (std::size_t i = size; i-- > 0;) {
    const Limb dividend = remainder * kBase + limbs[i];
    limbs[i] = dividend / divisor;
    remainder = dividend % divisor;
  }
  return remainder;
}

void MultiplyByLimb(Limbs limbs, std::size_t size, Limb factor) {
  Limb carry = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const Limb product = limbs[i] * factor + carry;
    carry = product / kBase;
    limbs[i] = product - carry * kBase;
  }
}

/// Subtracts `factor` times the divisor from the limbs at `at`; true if that was once too often.
bool SubtractProduct(Limbs limbs, std::size_t at, Limbs divisor, Limb factor) {
  Limb borrow = 0;
  for (std::size_t i = 0; i < divisor.size(); ++i) {
    const Limb product = factor * divisor[i] + borrow;
    borrow = product / kBase;
    const Limb low = product - borrow * kBase;
    if (limbs[at + i] < low) {
      limbs[at + i] += kBase;
      ++borrow;
    }
    limbs[at + i] -= low;
  }
  const bool too_often = limbs[at + divisor.size()] < borrow;
  limbs[at + divisor.size()] -= borrow;
  return too_often;
}

void AddBack(Limbs limbs, std::size_t at, Limbs divisor) {
  Limb carry = 0;
  for (std::size_t i = 0; i < divisor.size(); ++i) {
    const Limb sum = limbs[at + i] + divisor[i] + carry;
    carry = sum >= kBase ? 1 : 0;
    limbs[at + i] = sum - carry * kBase;
  }
  limbs[at + divisor.size()] += carry;
}

/// Long division (Knuth's algorithm D) by two or more limbs. Leaves the remainder in `rest`, which
/// has one limb more than the dividend. Quotient limbs past the room for them are 0.
void DivideByLimbs(Limbs rest, Limbs divisor, Limbs quotient) {
  const std::size_t size = divisor.size();
  // The highest limb of the divisor becomes at least half the base, so that guesses are close.
  const Limb scale = kBase / (divisor[size - 1] + 1);
  MultiplyByLimb(rest, rest.size(), scale);
  MultiplyByLimb(divisor, size, scale);
  const Limb top = divisor[size - 1];
  for (std::size_t at = rest.size() - size; at-- > 0;) {
    const Limb dividend = rest[at + size] * kBase + rest[at + size - 1];
    Limb guess = dividend / top;
    Limb left = dividend - guess * top;
    while (left < kBase &&
           (guess >= kBase || guess * divisor[size - 2] > left * kBase + rest[at + size - 2])) {
      --guess;
      left += top;
    }
    if (SubtractProduct(rest, at, divisor, guess)) {
      --guess;
      AddBack(rest, at, divisor);
    }
    if (at < quotient.size()) quotient[at] = guess;
  }
  DivideByLimb(rest, size, scale);
}

}  // namespace

std::size_t ProductDigits(std::size_t left, std::size_t right) {
  return (LimbsOf(left) + LimbsOf(right)) * kDigits;
}

bool MultiplyDigits(std::span<const char> left, std::span<const char> right,
                    std::span<char> product) {
  LimbRoom left_room(LimbsOf(left.size()));
  LimbRoom right_room(LimbsOf(right.size()));
  LimbRoom sum_room(LimbsOf(left.size()) + LimbsOf(right.size()));
  const Limbs one = left_room;
  const Limbs other = right_room;
  const Limbs sum = sum_room;
  if (!Read(left, one) || !Read(right, other)) return false;
  for (Limb& limb : sum) limb = 0;
  // Two rows at once, which halves the loads and stores of the sums.
  std::size_t i = 0;
  for (; i + 1 < other.size(); i += 2) {
    const Limb low = other[i];
    const Limb high = other[i + 1];
    Limb* const row = &sum[i];
    Limb before = 0;
    for (std::size_t k = 0; k < one.size(); ++k) {
      const Limb limb = one[k];
      row[k] += limb * low + before * high;
      before = limb;
    }
    row[one.size()] += before * high;
    if ((i + 2) % kSummands == 0) Carry(sum);
  }
  if (i < other.size()) {
    for (std::size_t k = 0; k < one.size(); ++k) sum[i + k] += one[k] * other[i];
  }
  // Carrying waits for itself, so it goes along with the writing.
  Limb carry = 0;
  char* to = product.data();
  for (const Limb limb : sum) {
    const Limb value = limb + carry;
    carry = value / kBase;
    Store(DigitsOf(value - carry * kBase) + kZeros, to);
    to += kDigits;
  }
  return true;
}

bool DivideDigits(std::span<const char> dividend, std::span<const char> divisor,
                  std::span<char> quotient, std::span<char> remainder) {
  LimbRoom rooms[] = {LimbRoom(LimbsOf(dividend.size()) + 1), LimbRoom(LimbsOf(divisor.size())),
                      LimbRoom(LimbsOf(quotient.size()))};
  const Limbs rest = rooms[0];
  const Limbs by = rooms[1];
  if (!Read(dividend, rest) || !Read(divisor, by)) return false;
  rest[rest.size() - 1] = 0;
  if (by.size() == 1) {
    const Limb left = DivideByLimb(rest, rest.size() - 1, by[0]);
    Write(rest, quotient);
    rest[0] = left;
    Write(rest, remainder);
    return true;
  }
  const Limbs result = rooms[2];
  DivideByLimbs(rest, by, result);
  Write(result, quotient);
  Write(rest, remainder);
  return true;
}

}  // namespace dq::detail
