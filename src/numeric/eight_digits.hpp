// Eight decimal digits at a time in one 64-bit word, the first digit of the text in its lowest byte
// ("SIMD within a register").
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace tvx::numeric {

static_assert(std::endian::native == std::endian::little, "digits lie in words in memory order");

inline uint64_t load_eight(const char* text) {
  uint64_t word;
  std::memcpy(&word, text, sizeof word);
  return word;
}

inline void store_eight(char* text, uint64_t word) {
  std::memcpy(text, &word, sizeof word);
}

inline void store_four(char* text, uint32_t word) {
  std::memcpy(text, &word, sizeof word);
}

// Marks the bytes that are not '0' .. '9' by their upper bits, exactly so up to the first of them.
// Adding 0x46 lifts bytes above '9' over 0x7F, subtracting '0' drops those below '0' under 0; a
// carry or borrow into a neighbour comes from a byte that is caught itself.
constexpr uint64_t marks_of_non_digits(uint64_t word) {
  return ((word + 0x4646464646464646) | (word - 0x3030303030303030)) & 0x8080808080808080;
}

constexpr bool are_eight_digits(uint64_t word) {
  return marks_of_non_digits(word) == 0;
}

// The number that eight digits spell: neighbours are joined to pairs, pairs to fours and fours to
// the whole; the two multiplications of the last step add up a pair of pairs each, in bits 32 and
// up. Source: D. Lemire, "Quickly parsing eight digits" (2018).
constexpr uint32_t value_of_eight_digits(uint64_t word) {
  constexpr uint64_t kPairs = 0x000000FF000000FF;
  constexpr uint64_t kFirstAndThird = 100 + (uint64_t{1'000'000} << 32);
  constexpr uint64_t kSecondAndFourth = 1 + (uint64_t{10'000} << 32);
  word -= 0x3030303030303030;
  word = word * 10 + (word >> 8);
  return static_cast<uint32_t>(
      ((word & kPairs) * kFirstAndThird + ((word >> 16) & kPairs) * kSecondAndFourth) >> 32);
}

// The eight digits of a number below 10^8, one a byte as values 0 .. 9 (add "00000000" for text).
// Halves the number three times, each time all parts at once; the multipliers are reciprocals that
// are exact for the parts' ranges: 10486 / 2^20 = 1 / 99.998 below 10^4, 103 / 2^10 = 1 / 9.94
// below 100. Quotient q and remainder v - d * q are joined by one product: q + ((v - d * q) << s)
// is (v << s) - q * ((d << s) - 1). Source: P. Khuong, "How to print integers really fast" (2017).
constexpr uint64_t eight_digits_of(uint32_t value) {
  const uint64_t fours = (uint64_t{value} << 32) - value / 10'000 * ((uint64_t{10'000} << 32) - 1);
  const uint64_t hundreds = ((fours * 10'486) >> 20) & 0x0000007F0000007F;
  const uint64_t pairs = (fours << 16) - hundreds * ((100 << 16) - 1);
  const uint64_t tens = ((pairs * 103) >> 10) & 0x000F000F000F000F;
  return (pairs << 8) - tens * ((10 << 8) - 1);
}

// The two digits of a number below 100, in the same way.
constexpr uint32_t two_digits_of(uint32_t value) {
  const uint32_t tens = (value * 103) >> 10;
  return (value << 8) - tens * ((10 << 8) - 1);
}

// A zero and the three digits of a number below 1000; 41 / 2^12 = 1 / 99.9.
constexpr uint32_t three_digits_of(uint32_t value) {
  const uint32_t hundreds = (value * 41) >> 12;
  return (hundreds << 8) | (two_digits_of(value - 100 * hundreds) << 16);
}

static_assert(are_eight_digits(0x3938373635343330) && !are_eight_digits(0x393837363534333A));
static_assert(value_of_eight_digits(0x3837363534333231) == 12'345'678);
static_assert(eight_digits_of(12'345'678) == 0x0807060504030201);
static_assert(three_digits_of(987) == 0x07080900 && three_digits_of(99) == 0x09090000);

}  // namespace tvx::numeric
