// Products and quotients of whole numbers that are texts of decimal digits, lowest digit first, by
// limbs of eight digits.

#pragma once

#include <cstddef>
#include <span>

namespace dq::detail {

/// The room for the product of numbers with so many digits.
std::size_t ProductDigits(std::size_t left, std::size_t right);

/// Writes the product to `product`, which has just the room that `ProductDigits` says, with zeros
/// above it. Returns false, with nothing written, if a factor has a character that is no digit. The
/// product overlaps no factor.
bool MultiplyDigits(std::span<const char> left, std::span<const char> right,
                    std::span<char> product);

/// Writes quotient and remainder of a dividend that has at least as many digits as the divisor,
/// whose highest digit isn't 0. The quotient has room for the digits by which the dividend is
/// longer and one more; the remainder for the divisor's; either may be empty if it isn't wanted.
/// Returns false, with nothing written, if there is a character that is no digit.
bool DivideDigits(std::span<const char> dividend, std::span<const char> divisor,
                  std::span<char> quotient, std::span<char> remainder);

}  // namespace dq::detail
