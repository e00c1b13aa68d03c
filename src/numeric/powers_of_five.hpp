// Powers of five to 128 bits, which carry a decimal exponent over to a binary one: both directions
// between doubles and text multiply a 64-bit significand by one of them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "numeric/big_integer.hpp"

namespace tvx::numeric {

// The least and the greatest power in use. Reading: w * 10^q with w < 10^19 is less than half the
// smallest double, 2^-1075 = 2.47e-324, for q < -342. Writing: 10^340 lifts the smallest
// double, 4.94e-324, to 17 digits.
inline constexpr int kLeastPower = -342;
inline constexpr int kGreatestPower = 340;

// 5^0 .. 5^27 fit the upper word of an entry.
inline constexpr int kGreatestExactPower = 27;

// The 128 most significant bits of 5^q, the leading one in bit 127 of (high, low), bits below cut
// off: with an exponent e, entry * 2^e <= 5^q < (entry + 1) * 2^e.
struct PowerOfFive {
  uint64_t high;
  uint64_t low;
};

extern const std::array<PowerOfFive, kGreatestPower - kLeastPower + 1> kPowersOfFive;

// floor(log2(10^q)): 217706 / 2^16 is log2(10) + 1.9e-6, near enough for |q| <= 642; for the powers
// above that is checked where the table is computed.
constexpr int floor_log2_of_power_of_ten(int q) {
  return (q * 217706) >> 16;
}

// floor(log10(2^e)): 315653 / 2^20 is log10(2) + 1.7e-7, near enough for |e| <= 2620.
constexpr int floor_log10_of_power_of_two(int e) {
  return (e * 315653) >> 20;
}

// Multiplies a significand w by 10^q: returns the upper 128 of the 192 bits of w * entry, that is
//
//   product * 2^s <= w * 10^q < (product + 2) * 2^s   with   s = floor(log2(10^q)) - 63,
//
// an equality for q = 0 .. 27 and never one for any other q. One of the two units is the bits cut
// off the entry (less than one entry unit times w < 2^64), the other the lower 64 bits of the 192.
inline Uint128 multiply_by_power_of_ten(uint64_t significand, int q) {
  const PowerOfFive& power = kPowersOfFive[static_cast<size_t>(q - kLeastPower)];
  const Uint128 upper = static_cast<Uint128>(significand) * power.high;
  const Uint128 lower = static_cast<Uint128>(significand) * power.low;
  return upper + (lower >> 64);
}

}  // namespace tvx::numeric
