// The nearest double to a number whose digits have been read: the arithmetic half of parse_float.
// What nearly every number takes is in this header, the rest out of line.
//
// Three ways lead from a decimal to a double, each taken when the one before it does not decide.
// First, significand and power of ten may be doubles themselves, so that one multiplication or
// division rounds correctly: W. Clinger, "How to read floating point numbers accurately" (1990).
// Second, the significand times the power of ten to 128 bits gives a lower and an upper bound, and
// mostly both round to the same double: after D. Lemire, "Number parsing at a gigabyte per second"
// (2021), with one rule, the bounds, in place of the case distinctions there. Third, the bounds
// round to two neighbours, and the number is compared exactly with the point half-way between them.
#pragma once

#include <bit>
#include <cstdint>

#include "numeric/powers_of_five.hpp"

namespace tvx::numeric {

// The bits of a double without its sign, 0 .. kInfinityBits, ascend with the values.
inline constexpr int kFractionBits = 52;
inline constexpr int kExponentBias = 1023;
inline constexpr uint64_t kInfinityBits = 0x7FF0'0000'0000'0000;

// Returns the bits of the double nearest to (significand + fraction) * 2^exponent, a tie going to
// the even one; the significand is at least 2^62 and the fraction is below 1, not zero if
// `inexact`. The result is 0 for a number that rounds to zero, kInfinityBits for one that rounds to
// infinity.
constexpr uint64_t nearest_double(uint64_t significand, bool inexact, int64_t exponent) {
  // Eleven bits more than a double has, the lowest of which can stand for all bits behind it.
  const int zeros = significand >> 63 == 0;
  significand = significand << zeros | uint64_t{inexact};
  int64_t exponent_field = exponent - zeros + 63 + kExponentBias;
  if (exponent_field > int64_t{2} * kExponentBias) [[unlikely]]
    return kInfinityBits;
  if (exponent_field <= 0) [[unlikely]] {
    const int64_t excess = exponent_field < -62 ? 63 : 1 - exponent_field;
    significand = significand >> excess | uint64_t{significand << (64 - excess) != 0};
    exponent_field = 1;
  }
  const uint64_t kept = significand >> 11;
  const uint64_t round_up = (significand & 0x7FF) + (kept & 1) > 0x400;
  // The leading bit of `kept` adds one to the exponent field; a carry of the rounding goes there by
  // itself, from the subnormal to the normal numbers as from the greatest double to infinity.
  return (static_cast<uint64_t>(exponent_field - 1) << kFractionBits) + kept + round_up;
}

// A non-negative decimal number, significand * 10^exponent. When it has more than 19 significant
// digits, `significand` is the first 19 and all of them stand in the text [first_digit, end),
// perhaps with a point among them.
struct DecimalNumber {
  uint64_t significand;
  int64_t exponent;
  const char* first_digit = nullptr;  // not a zero; null when `significand` is all
  const char* end = nullptr;
};

inline constexpr int kSignificandDigits = 19;  // 10^19 < 2^64

// Returns the bits of the double nearest to a decimal number, in the same way.
uint64_t nearest_double(const DecimalNumber& number);

// Powers of ten that are doubles: 5^22 < 2^53.
inline constexpr double kExactPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                               1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                               1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// The same for a number of at most 19 digits.
inline uint64_t nearest_double(uint64_t significand, int64_t exponent) {
  if (exponent >= -22 && exponent <= 22 && significand <= uint64_t{1} << 53) {
    const double exact = static_cast<double>(static_cast<int64_t>(significand));
    return std::bit_cast<uint64_t>(exponent < 0 ? exact / kExactPowersOfTen[-exponent]
                                                : exact * kExactPowersOfTen[exponent]);
  }

  // Below the first exponent all numbers are less than half the least double (see kLeastPower).
  if (significand == 0 || exponent < kLeastPower) return 0;
  if (exponent > 308) return kInfinityBits;
  const int q = static_cast<int>(exponent);

  // The number lies between the product and two units more; only when those carry into the upper
  // word does it matter how much.
  const int zeros = std::countl_zero(significand);
  const Uint128 product = multiply_by_power_of_ten(significand << zeros, q);
  const uint64_t low = static_cast<uint64_t>(product);
  const bool exact = q >= 0 && q <= kGreatestExactPower;
  if (low > UINT64_MAX - 1 && !exact) [[unlikely]]
    return nearest_double(DecimalNumber{significand, exponent});
  return nearest_double(static_cast<uint64_t>(product >> 64), low != 0 || !exact,
                        floor_log2_of_power_of_ten(q) + 1 - zeros);
}

}  // namespace tvx::numeric
