#include "dqlib/core/big_int.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <stdexcept>

#include "dqlib/core/decimal_limbs.h"

namespace dq {
namespace {

constexpr std::size_t kFirstCapacity = 5;
constexpr int kConvertedDigits = 6;
constexpr int kDivisionByZero = 3;
/// From these on an `int` operand is turned into a number of its own.
constexpr int kBigFactor = 100;
constexpr int kBigDivisor = 11;

}  // namespace

CDQBigInt::CDQBigInt() : m_digits(kFirstCapacity, '0') {}

CDQBigInt::CDQBigInt(Room room)
    : m_digits(room.digits, '0'), m_nDigits(static_cast<int>(room.digits)) {}

CDQBigInt::CDQBigInt(int number) : CDQBigInt(static_cast<long long>(number)) {}

CDQBigInt::CDQBigInt(long long number)
    // The lowest 64-bit number has no positive counterpart among the signed ones.
    : CDQBigInt(number < 0 ? 0 - static_cast<unsigned long long>(number)
                           : static_cast<unsigned long long>(number)) {
  m_bNegative = number < 0;
}

CDQBigInt::CDQBigInt(unsigned long long number) : m_nDigits(0) {
  m_digits.resize(kFirstCapacity, '0');
  do {
    addSigDigit(static_cast<int>(number % 10));
    number /= 10;
  } while (number != 0);
}

CDQBigInt::CDQBigInt(const std::string& text) {
  if (text.empty()) {
    m_digits.assign(kFirstCapacity, '0');
    return;
  }
  if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw std::length_error("CDQBigInt");
  }
  m_bNegative = text.front() == '-';
  const auto first = text.begin() + (m_bNegative ? 1 : 0);
  m_digits.reserve(text.size());
  m_digits.assign(std::make_reverse_iterator(text.end()), std::make_reverse_iterator(first));
  m_nDigits = static_cast<int>(m_digits.size());
  m_digits.resize(text.size(), '0');
  Normalize();
}

CDQBigInt::CDQBigInt(const CDQBigInt& other)
    : m_bNegative(other.m_bNegative), m_digits(other.m_digits), m_nDigits(other.m_nDigits) {}

CDQBigInt& CDQBigInt::operator=(const CDQBigInt& other) {
  if (this != &other) {
    m_bNegative = other.m_bNegative;
    m_digits = other.m_digits;
    m_nDigits = other.m_nDigits;
  }
  return *this;
}

CDQBigInt& CDQBigInt::Take(CDQBigInt& result) {
  m_bNegative = result.m_bNegative;
  m_digits.swap(result.m_digits);
  m_nDigits = result.m_nDigits;
  return *this;
}

CDQBigInt::operator int() const {
  int number = 0;
  for (int i = std::min(size(), kConvertedDigits) - 1; i >= 0; --i) {
    number = number * 10 + getDigit(i);
  }
  return IsNeg() ? -number : number;
}

std::string CDQBigInt::toString() const {
  std::string text;
  text.reserve(static_cast<std::size_t>(size()) + 1);
  if (IsNeg()) text += '-';
  text.append(m_digits.rend() - size(), m_digits.rend());
  return text;
}

bool CDQBigInt::equals(const CDQBigInt& other) const {
  return IsNeg() == other.IsNeg() && size() == other.size() &&
         std::equal(m_digits.begin(), m_digits.begin() + size(), other.m_digits.begin());
}

bool CDQBigInt::lessThan(const CDQBigInt& other) const {
  if (IsNeg() != other.IsNeg()) return IsNeg();
  const int order = CompareMagnitude(other);
  return IsNeg() ? order > 0 : order < 0;
}

int CDQBigInt::CompareMagnitude(const CDQBigInt& other) const {
  if (size() != other.size()) return size() < other.size() ? -1 : 1;
  for (int i = size() - 1; i >= 0; --i) {
    const int difference = getDigit(i) - other.getDigit(i);
    if (difference != 0) return difference;
  }
  return 0;
}

CDQBigInt& CDQBigInt::operator+=(const CDQBigInt& other) {
  if (this == &other) return *this *= 2;
  if (IsNeg() != other.IsNeg()) return *this -= -1 * other;
  int carry = 0;
  const int length = std::max(size(), other.size());
  for (int i = 0; i < length; ++i) {
    const int sum = getDigit(i) + other.getDigit(i) + carry;
    carry = sum / 10;
    if (i < size()) {
      changeDigit(i, sum % 10);
    } else {
      addSigDigit(sum % 10);
    }
  }
  if (carry != 0) addSigDigit(carry);
  return *this;
}

CDQBigInt& CDQBigInt::operator-=(const CDQBigInt& other) {
  if (this == &other) return *this = CDQBigInt();
  if (IsNeg() != other.IsNeg()) return *this += -1 * other;
  if (CompareMagnitude(other) < 0) {
    CDQBigInt difference(other);
    difference -= *this;
    difference.m_bNegative = !difference.m_bNegative;
    return Take(difference);
  }
  int borrow = 0;
  for (int i = 0; i < size(); ++i) {
    int digit = getDigit(i) - other.getDigit(i) - borrow;
    borrow = digit < 0 ? 1 : 0;
    if (borrow != 0) digit += 10;
    changeDigit(i, digit);
  }
  Normalize();
  return *this;
}

CDQBigInt& CDQBigInt::operator*=(int factor) {
  if (factor == 0) return *this = CDQBigInt();
  if (factor >= kBigFactor) return *this *= CDQBigInt(factor);
  m_bNegative = IsNeg() != (factor < 0);
  if (factor == 1) return *this;
  const std::int64_t magnitude = std::abs(static_cast<std::int64_t>(factor));
  std::int64_t carry = 0;
  for (int i = 0; i < size(); ++i) {
    const std::int64_t product = getDigit(i) * magnitude + carry;
    changeDigit(i, static_cast<int>(product % 10));
    carry = product / 10;
  }
  for (; carry != 0; carry /= 10) addSigDigit(static_cast<int>(carry % 10));
  return *this;
}

CDQBigInt& CDQBigInt::operator*=(const CDQBigInt& other) {
  CDQBigInt product = Product(*this, other);
  return Take(product);
}

CDQBigInt CDQBigInt::Product(const CDQBigInt& left, const CDQBigInt& right) {
  CDQBigInt product(Room{detail::ProductDigits(left.Digits().size(), right.Digits().size())});
  if (!detail::MultiplyDigits(left.Digits(), right.Digits(), product.m_digits)) {
    product.AddProducts(left, right);
  }
  product.m_bNegative = left.IsNeg() != right.IsNeg();
  product.Normalize();
  return product;
}

void CDQBigInt::AddProducts(const CDQBigInt& left, const CDQBigInt& right) {
  for (int i = 0; i < right.size(); ++i) {
    const int factor = right.getDigit(i);
    int carry = 0;
    for (int j = 0; j < left.size(); ++j) {
      const int sum = getDigit(i + j) + left.getDigit(j) * factor + carry;
      changeDigit(i + j, sum % 10);
      carry = sum / 10;
    }
    changeDigit(i + left.size(), carry);
  }
}

CDQBigInt& CDQBigInt::operator/=(int divisor) {
  if (divisor >= kBigDivisor || divisor < 0) return *this /= CDQBigInt(divisor);
  if (divisor == 0) {
    m_nError = kDivisionByZero;
    return *this;
  }
  int remainder = 0;
  for (int i = size() - 1; i >= 0; --i) {
    const int dividend = remainder * 10 + getDigit(i);
    changeDigit(i, dividend / divisor);
    remainder = dividend % divisor;
  }
  Normalize();
  return *this;
}

CDQBigInt& CDQBigInt::operator/=(const CDQBigInt& other) {
  CDQBigInt quotient = Quotient(*this, other);
  return Take(quotient);
}

CDQBigInt CDQBigInt::Quotient(const CDQBigInt& left, const CDQBigInt& right) {
  CDQBigInt quotient(Room{0});
  DivideHelp(left, right, &quotient, nullptr);
  quotient.m_bNegative = left.IsNeg() != right.IsNeg();
  quotient.Normalize();
  return quotient;
}

CDQBigInt& CDQBigInt::operator%=(const CDQBigInt& other) {
  CDQBigInt remainder(Room{0});
  const bool negative = IsNeg() != other.IsNeg();
  DivideHelp(*this, other, nullptr, &remainder);
  remainder.m_bNegative = negative;
  return Take(remainder);
}

int CDQBigInt::getDigit(int index) const {
  return index < 0 || index >= size() ? 0 : m_digits[static_cast<std::size_t>(index)] - '0';
}

void CDQBigInt::changeDigit(int index, int value) {
  if (index < 0 || index >= size()) {
    std::cout << "error change " << index << ' ' << size() << std::endl;
    return;
  }
  m_digits[static_cast<std::size_t>(index)] = static_cast<char>(value + '0');
}

void CDQBigInt::addSigDigit(int value) {
  if (static_cast<std::size_t>(m_nDigits) >= m_digits.size()) {
    m_digits.resize(std::max(m_digits.size() * 2, kFirstCapacity), '0');
  }
  ++m_nDigits;
  changeDigit(m_nDigits - 1, value);
}

void CDQBigInt::Normalize() {
  while (m_nDigits > 1 && getDigit(m_nDigits - 1) == 0) --m_nDigits;
  if (m_nDigits == 0) {
    if (m_digits.empty()) m_digits.assign(kFirstCapacity, '0');
    m_digits.front() = '0';
    m_nDigits = 1;
  }
  if (m_nDigits == 1 && getDigit(0) == 0) m_bNegative = false;
}

/// Quotient and remainder of the magnitudes, each unless it is null; a dividend below the divisor
/// leaves the divisor as its remainder.
void CDQBigInt::DivideHelp(const CDQBigInt& lhs, const CDQBigInt& rhs, CDQBigInt* quotient,
                           CDQBigInt* remainder) {
  const int order = lhs.CompareMagnitude(rhs);
  if (order <= 0) {
    if (quotient != nullptr) *quotient = CDQBigInt(order == 0 ? 1 : 0);
    if (remainder != nullptr) *remainder = order == 0 ? CDQBigInt() : rhs;
    return;
  }
  assert(rhs.size() > 1 || rhs.getDigit(0) != 0);
  const auto shifts = static_cast<std::size_t>(lhs.size() - rhs.size());
  CDQBigInt result(Room{quotient == nullptr ? 0 : shifts + 1});
  CDQBigInt rest(Room{remainder == nullptr ? 0 : static_cast<std::size_t>(rhs.size())});
  // Only texts that are no numbers have a top digit of 0, and the number 0.
  if (rhs.getDigit(rhs.size() - 1) == 0 ||
      !detail::DivideDigits(lhs.Digits(), rhs.Digits(), result.m_digits, rest.m_digits)) {
    result = CDQBigInt(Room{shifts + 1});
    rest = lhs;
    DivideByDigits(rest, rhs, result);
    rest.m_bNegative = false;
  }
  if (quotient != nullptr) quotient->Take(result).Normalize();
  if (remainder != nullptr) remainder->Take(rest).Normalize();
}

/// Long division, digit by digit, which leaves the remainder in `rest`.
void CDQBigInt::DivideByDigits(CDQBigInt& rest, const CDQBigInt& rhs, CDQBigInt& quotient) {
  const int divisor = rhs.getDigit(rhs.size() - 1);
  // The digit above the shifted divisor belongs to the guess: the rest may have one more.
  for (int shift = rest.size() - rhs.size(); shift >= 0; --shift) {
    const int top = rest.getDigit(shift + rhs.size()) * 10 + rest.getDigit(shift + rhs.size() - 1);
    int guess = divisor == 0 ? 9 : std::min(9, top / divisor);
    while (guess > 0 && rest.IsBelowProduct(rhs, guess, shift)) --guess;
    rest.SubtractProduct(rhs, guess, shift);
    quotient.changeDigit(shift, guess);
  }
}

bool CDQBigInt::IsBelowProduct(const CDQBigInt& number, int factor, int shift) const {
  // Walks the difference upwards; what is borrowed at the end says which is larger.
  int borrow = 0;
  for (int i = 0; i <= number.size(); ++i) {
    const int difference = getDigit(i + shift) - number.getDigit(i) * factor - borrow;
    borrow = difference < 0 ? (9 - difference) / 10 : 0;
  }
  return borrow > 0;
}

void CDQBigInt::SubtractProduct(const CDQBigInt& number, int factor, int shift) {
  int borrow = 0;
  for (int i = 0; i <= number.size() && i + shift < size(); ++i) {
    int difference = getDigit(i + shift) - number.getDigit(i) * factor - borrow;
    borrow = difference < 0 ? (9 - difference) / 10 : 0;
    difference += borrow * 10;
    changeDigit(i + shift, difference);
  }
}

CDQBigInt operator+(const CDQBigInt& left, const CDQBigInt& right) {
  CDQBigInt result(left);
  result += right;
  return result;
}

CDQBigInt operator-(const CDQBigInt& left, const CDQBigInt& right) {
  CDQBigInt result(left);
  result -= right;
  return result;
}

CDQBigInt operator*(const CDQBigInt& left, const CDQBigInt& right) {
  return CDQBigInt::Product(left, right);
}

CDQBigInt operator*(const CDQBigInt& left, int right) {
  CDQBigInt result(left);
  result *= right;
  return result;
}

CDQBigInt operator*(int left, const CDQBigInt& right) { return right * left; }

CDQBigInt operator/(const CDQBigInt& left, const CDQBigInt& right) {
  return CDQBigInt::Quotient(left, right);
}

CDQBigInt operator/(const CDQBigInt& left, int right) {
  CDQBigInt result(left);
  result /= right;
  return result;
}

CDQBigInt operator%(const CDQBigInt& left, const CDQBigInt& right) {
  CDQBigInt result(left);
  result %= right;
  return result;
}

std::istream& operator>>(std::istream& in, CDQBigInt& number) {
  std::string text;
  if (in >> text) number = CDQBigInt(text);
  return in;
}

std::ostream& operator<<(std::ostream& out, const CDQBigInt& number) {
  return out << number.toString();
}

}  // namespace dq
