// Signed integers of any length, kept as decimal digits.
//
//   CDQBigInt size("123456789012345678901");
//   size *= 1024;
//   std::cout << size;

#pragma once

#include <concepts>
#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

namespace dq {

class CDQBigInt;

namespace detail {
/// Integers that an `int` may not hold.
template <typename T>
concept WideInteger = std::integral<T> &&
    (sizeof(T) > sizeof(int) || (sizeof(T) == sizeof(int) && std::unsigned_integral<T>));
/// A big integer and a plain one, in either order.
template <typename L, typename R>
concept BigAndPlain = (std::same_as<L, CDQBigInt> && std::integral<R>) ||
                      (std::integral<L> && std::same_as<R, CDQBigInt>);
}  // namespace detail

/// A signed integer of any length. Reading and writing text is linear; arithmetic is as exact as on
/// paper, but with rules of its own that stored values and callers rely on:
///  - The remainder of a smaller number by a larger one is the larger one: 3 % 5 is 5.
///  - The sign of a remainder follows that of the quotient, and a remainder of zero can be
///    negative, which is then not equal to 0: 7 % -7. Multiplying a zero by a negative `int` gives
///    one too, "-0".
///  - Conversion to `int` reads the last six digits.
///  - A text is not checked: callers do that first. Other characters become digits out of the
///    range 0 to 9, which print as they came and reckon as they can.
/// A divisor of zero as a `CDQBigInt`, other than for 0 / 0, which is 1, is the caller's error. A
/// value: not for several threads at once, unless const.
class CDQBigInt {
 public:
  /// The number 0.
  CDQBigInt();
  CDQBigInt(int number);
  CDQBigInt(long long number);
  CDQBigInt(unsigned long long number);
  /// Any other integer, without a loss.
  template <std::signed_integral T>
  CDQBigInt(T number) : CDQBigInt(static_cast<long long>(number)) {}
  template <std::unsigned_integral T>
  CDQBigInt(T number) : CDQBigInt(static_cast<unsigned long long>(number)) {}
  /// A text of digits with an optional leading "-"; "" is 0, and so are "-" and "-0".
  CDQBigInt(const std::string& text);
  CDQBigInt(const CDQBigInt& other);
  /// The error that `/= 0` leaves stays with its object.
  CDQBigInt& operator=(const CDQBigInt& other);
  ~CDQBigInt() = default;

  /// The number modulo a million, with its sign. Dialogs with six places rely on it. What isn't
  /// declared here, such as unary minus, reckons with this `int`.
  operator int() const;

  /// "-" if negative, then the digits.
  std::string toString() const;

  bool equals(const CDQBigInt& other) const;
  bool lessThan(const CDQBigInt& other) const;

  CDQBigInt& operator+=(const CDQBigInt& other);
  CDQBigInt& operator-=(const CDQBigInt& other);
  CDQBigInt& operator*=(const CDQBigInt& other);
  CDQBigInt& operator*=(int factor);
  CDQBigInt& operator/=(const CDQBigInt& other);
  /// A divisor of 0 leaves the number, and the error is remembered inside.
  CDQBigInt& operator/=(int divisor);
  CDQBigInt& operator%=(const CDQBigInt& other);
  /// A wide operand is made a number, so that nothing of it is lost on the way to an `int`.
  template <detail::WideInteger T>
  CDQBigInt& operator*=(T factor) {
    return *this *= CDQBigInt(factor);
  }
  template <detail::WideInteger T>
  CDQBigInt& operator/=(T divisor) {
    return *this /= CDQBigInt(divisor);
  }

 private:
  friend CDQBigInt operator*(const CDQBigInt& left, const CDQBigInt& right);
  friend CDQBigInt operator/(const CDQBigInt& left, const CDQBigInt& right);

  /// So many digits, all 0, for a result that is to be normalised.
  struct Room {
    std::size_t digits;
  };
  explicit CDQBigInt(Room room);

  int size() const { return m_nDigits; }
  /// The digit with an index from 0, lowest first, as a number; 0 out of range.
  int getDigit(int index) const;
  /// Out of range, a line on standard output and no change.
  void changeDigit(int index, int value);
  void addSigDigit(int value);
  bool IsNeg() const { return m_bNegative; }
  /// Drops leading zeros; zero becomes positive.
  void Normalize();
  /// Assigns a result that isn't needed any more.
  CDQBigInt& Take(CDQBigInt& result);
  /// Below 0, 0 or above 0, signs left aside.
  int CompareMagnitude(const CDQBigInt& other) const;
  /// Whether this magnitude is below that of `number` times a digit times 10 to the power `shift`.
  bool IsBelowProduct(const CDQBigInt& number, int factor, int shift) const;
  /// Subtracts such a product that isn't larger.
  void SubtractProduct(const CDQBigInt& number, int factor, int shift);
  static void DivideHelp(const CDQBigInt& lhs, const CDQBigInt& rhs, CDQBigInt* quotient,
                         CDQBigInt* remainder);
  static CDQBigInt Product(const CDQBigInt& left, const CDQBigInt& right);
  static CDQBigInt Quotient(const CDQBigInt& left, const CDQBigInt& right);
  /// What operands of digits alone don't need: steps that reckon with whatever the characters are.
  void AddProducts(const CDQBigInt& left, const CDQBigInt& right);
  static void DivideByDigits(CDQBigInt& rest, const CDQBigInt& rhs, CDQBigInt& quotient);
  std::span<const char> Digits() const {
    return {m_digits.data(), static_cast<std::size_t>(m_nDigits)};
  }

  bool m_bNegative = false;
  /// The characters "0" to "9", lowest digit first; the vector's length is a capacity.
  std::vector<char> m_digits;
  int m_nDigits = 1;
  /// 3 after a division by the `int` 0. Not copied.
  int m_nError = 0;
};

inline bool operator==(const CDQBigInt& left, const CDQBigInt& right) { return left.equals(right); }
inline bool operator!=(const CDQBigInt& left, const CDQBigInt& right) {
  return !left.equals(right);
}
inline bool operator<(const CDQBigInt& left, const CDQBigInt& right) {
  return left.lessThan(right);
}
inline bool operator>(const CDQBigInt& left, const CDQBigInt& right) {
  return right.lessThan(left);
}
inline bool operator<=(const CDQBigInt& left, const CDQBigInt& right) { return !(left > right); }
inline bool operator>=(const CDQBigInt& left, const CDQBigInt& right) { return !(left < right); }

CDQBigInt operator+(const CDQBigInt& left, const CDQBigInt& right);
CDQBigInt operator-(const CDQBigInt& left, const CDQBigInt& right);
CDQBigInt operator*(const CDQBigInt& left, const CDQBigInt& right);
CDQBigInt operator*(const CDQBigInt& left, int right);
CDQBigInt operator*(int left, const CDQBigInt& right);
CDQBigInt operator/(const CDQBigInt& left, const CDQBigInt& right);
CDQBigInt operator/(const CDQBigInt& left, int right);
CDQBigInt operator%(const CDQBigInt& left, const CDQBigInt& right);
template <detail::WideInteger T>
CDQBigInt operator*(const CDQBigInt& left, T right) {
  return left * CDQBigInt(right);
}
template <detail::WideInteger T>
CDQBigInt operator*(T left, const CDQBigInt& right) {
  return CDQBigInt(left) * right;
}
template <detail::WideInteger T>
CDQBigInt operator/(const CDQBigInt& left, T right) {
  return left / CDQBigInt(right);
}
template <std::integral T>
CDQBigInt operator/(T left, const CDQBigInt& right) {
  return CDQBigInt(left) / right;
}

// Between a big integer and a plain one the plain one becomes big. Without these the big one could
// as well become an `int`, of its last six digits.
template <typename L, typename R>
requires detail::BigAndPlain<L, R> CDQBigInt operator+(const L& left, const R& right) {
  CDQBigInt result(left);
  result += right;
  return result;
}
template <typename L, typename R>
requires detail::BigAndPlain<L, R> CDQBigInt operator-(const L& left, const R& right) {
  CDQBigInt result(left);
  result -= right;
  return result;
}
template <typename L, typename R>
requires detail::BigAndPlain<L, R> CDQBigInt operator%(const L& left, const R& right) {
  CDQBigInt result(left);
  result %= right;
  return result;
}
template <typename L, typename R>
requires detail::BigAndPlain<L, R>
bool operator==(const L& left, const R& right) {
  return static_cast<const CDQBigInt&>(left).equals(right);
}
template <typename L, typename R>
requires detail::BigAndPlain<L, R>
bool operator!=(const L& left, const R& right) { return !(left == right); }
template <typename L, typename R>
requires detail::BigAndPlain<L, R>
bool operator<(const L& left, const R& right) {
  return static_cast<const CDQBigInt&>(left).lessThan(right);
}
template <typename L, typename R>
requires detail::BigAndPlain<L, R>
bool operator>(const L& left, const R& right) { return right < left; }
template <typename L, typename R>
requires detail::BigAndPlain<L, R>
bool operator<=(const L& left, const R& right) { return !(left > right); }
template <typename L, typename R>
requires detail::BigAndPlain<L, R>
bool operator>=(const L& left, const R& right) { return !(left < right); }

/// Reads a word and makes a number of it, which stays as it is at the end of the stream; writes
/// `toString()`.
std::istream& operator>>(std::istream& in, CDQBigInt& number);
std::ostream& operator<<(std::ostream& out, const CDQBigInt& number);

}  // namespace dq
