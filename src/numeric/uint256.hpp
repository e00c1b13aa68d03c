// Unsigned integers of 256 bits, the magnitudes of exact numerics, of fewer words where that many
// are enough, and of 512 bits, their products and scaled dividends. 10^77 - 1, the greatest
// magnitude of a numeric, fits 256 bits; a field of 32 bytes can hold a little more, which every
// operation takes as well.
#pragma once

#include <array>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>
#include <utility>

#ifdef __x86_64__
#include <x86intrin.h>
#endif

#include "base/bytes.hpp"
#include "numeric/big_integer.hpp"
#include "numeric/integer_write.hpp"

namespace tvx::numeric {

template <size_t kLimbs>
struct WideInteger {
  uint64_t limb[kLimbs];  // least significant first

  [[nodiscard]] constexpr bool is_zero() const {
    uint64_t any = 0;
    for (const uint64_t word : limb) any |= word;
    return any == 0;
  }

  // Limbs without the zeros at the upper end.
  [[nodiscard]] constexpr size_t used() const {
    size_t count = kLimbs;
    while (count != 0 && limb[count - 1] == 0) --count;
    return count;
  }

  [[nodiscard]] constexpr int bit_length() const {
    const size_t count = used();
    return count == 0 ? 0 : static_cast<int>(count * 64) - std::countl_zero(limb[count - 1]);
  }

  friend constexpr bool operator==(const WideInteger&, const WideInteger&) = default;

  friend constexpr std::strong_ordering operator<=>(const WideInteger& a, const WideInteger& b) {
    for (size_t i = kLimbs; i-- > 0;)
      if (a.limb[i] != b.limb[i]) return a.limb[i] <=> b.limb[i];
    return std::strong_ordering::equal;
  }
};

using TwoWords = WideInteger<2>;
using Uint256 = WideInteger<4>;
using Uint512 = WideInteger<8>;

constexpr Uint256 make_uint256(uint64_t value) {
  return {{value, 0, 0, 0}};
}

constexpr Uint128 whole(const TwoWords& value) {
  return (static_cast<Uint128>(value.limb[1]) << 64) | value.limb[0];
}
constexpr TwoWords make_two_words(Uint128 value) {
  return {{static_cast<uint64_t>(value), static_cast<uint64_t>(value >> 64)}};
}

// The halves of a number, in which compilers carry from word to word by themselves.
constexpr Uint128 lower_half(const Uint256& value) {
  return (static_cast<Uint128>(value.limb[1]) << 64) | value.limb[0];
}
constexpr Uint128 upper_half(const Uint256& value) {
  return (static_cast<Uint128>(value.limb[3]) << 64) | value.limb[2];
}
constexpr Uint256 make_uint256(Uint128 upper, Uint128 lower) {
  return {{static_cast<uint64_t>(lower), static_cast<uint64_t>(lower >> 64),
           static_cast<uint64_t>(upper), static_cast<uint64_t>(upper >> 64)}};
}

// a < b without a branch.
constexpr bool is_less(const Uint256& a, const Uint256& b) {
  const bool lower = lower_half(a) < lower_half(b);
  const Uint128 x = upper_half(a);
  const Uint128 y = upper_half(b);
  return (x < y) | ((x == y) & lower);
}

// ---- Sums --------------------------------------------------------------------------------------

// a += b; true when a carry leaves the upper end.
constexpr bool add(Uint256& a, const Uint256& b) {
  const Uint128 lower = lower_half(a) + lower_half(b);
  const Uint128 upper = upper_half(a) + upper_half(b);
  const Uint128 whole = upper + (lower < lower_half(b));
  const bool carry = (upper < upper_half(b)) | (whole < upper);
  a = make_uint256(whole, lower);
  return carry;
}

// a -= b; true when a was the smaller one, the difference being modulo 2^256.
constexpr bool subtract(Uint256& a, const Uint256& b) {
  const bool borrow = is_less(a, b);
  const Uint128 below = lower_half(a) < lower_half(b);
  a = make_uint256(upper_half(a) - upper_half(b) - below, lower_half(a) - lower_half(b));
  return borrow;
}

// a += b + carry, modulo 2^256; the carry is 0 or 1. Compilers find the processor's chain of
// additions in no other form.
inline void add_with_carry(Uint256& a, const Uint256& b, uint64_t carry) {
#ifdef __x86_64__
  __asm__(
      "addq $-1, %4\n\t"  // the flag is the carry
      "adcq %5, %0\n\t"
      "adcq %6, %1\n\t"
      "adcq %7, %2\n\t"
      "adcq %8, %3"
      : "+&r"(a.limb[0]), "+&r"(a.limb[1]), "+&r"(a.limb[2]), "+r"(a.limb[3]), "+&r"(carry)
      : "rm"(b.limb[0]), "rm"(b.limb[1]), "rm"(b.limb[2]), "rm"(b.limb[3])
      : "cc");
#else
  add(a, b);
  add(a, make_uint256(carry));
#endif
}

inline void add_with_carry(TwoWords& a, const TwoWords& b, uint64_t carry) {
#ifdef __x86_64__
  __asm__(
      "addq $-1, %2\n\t"
      "adcq %3, %0\n\t"
      "adcq %4, %1"
      : "+&r"(a.limb[0]), "+r"(a.limb[1]), "+&r"(carry)
      : "rm"(b.limb[0]), "rm"(b.limb[1])
      : "cc");
#else
  a = make_two_words(whole(a) + whole(b) + carry);
#endif
}

// a += b, modulo the size of the numbers, for a `subtracts` of 0. For 1 a becomes the magnitude of
// a - b, numbers whose upper bit is zero; returns 1 when the difference is below zero, else 0. Out
// of line it would take its numbers from memory.
template <class Magnitude>
[[gnu::always_inline]] inline uint64_t add_signed(Magnitude& a, const Magnitude& b,
                                                  uint64_t subtracts) {
  const auto complement = [](const Magnitude& value, uint64_t bit) {
    Magnitude result;  // made word by word: a copy of the whole would wait for its words' stores
    for (size_t i = 0; i < std::size(result.limb); ++i) result.limb[i] = value.limb[i] ^ (0 - bit);
    return result;
  };
  add_with_carry(a, complement(b, subtracts), subtracts);
  const uint64_t is_below = subtracts & std::end(a.limb)[-1] >> 63;
  a = complement(a, is_below);
  add_with_carry(a, Magnitude{}, is_below);
  return is_below;
}

// ---- Products ----------------------------------------------------------------------------------

// value = value * factor + addend; returns what is carried out of the upper end.
template <size_t kLimbs>
constexpr uint64_t multiply_add(WideInteger<kLimbs>& value, uint64_t factor, uint64_t addend) {
  uint64_t carry = addend;
  for (uint64_t& limb : value.limb) {
    const Uint128 product = static_cast<Uint128>(limb) * factor + carry;
    limb = static_cast<uint64_t>(product);
    carry = static_cast<uint64_t>(product >> 64);
  }
  return carry;
}

Uint512 multiply(const Uint256& a, const Uint256& b);

// The product of numbers of a few words each, modulo the size of the result, by the schoolbook and
// without a branch on how much of the numbers is used.
template <size_t kLimbs, size_t kA, size_t kB>
constexpr WideInteger<kLimbs> multiply_low(const WideInteger<kA>& a, const WideInteger<kB>& b) {
  static_assert(kA <= kLimbs && kB <= kLimbs);
  WideInteger<kLimbs> product;
  uint64_t carry = 0;
  const auto put = [&](size_t i, Uint128 sum) {
    product.limb[i] = static_cast<uint64_t>(sum);
    carry = static_cast<uint64_t>(sum >> 64);
  };
  for (size_t i = 0; i < kA; ++i) put(i, static_cast<Uint128>(a.limb[i]) * b.limb[0] + carry);
  for (size_t i = kA; i < kLimbs; ++i) put(i, carry);
  for (size_t j = 1; j < kB; ++j) {
    carry = 0;
    for (size_t i = 0; i < kA && i + j < kLimbs; ++i)
      put(i + j, static_cast<Uint128>(a.limb[i]) * b.limb[j] + product.limb[i + j] + carry);
    if (kA + j < kLimbs) product.limb[kA + j] = carry;
  }
  return product;
}

// The same of two numbers and a result of one size, in which compilers make more of the halves.
constexpr TwoWords multiply_low(const TwoWords& a, const TwoWords& b) {
  return make_two_words(whole(a) * whole(b));
}
constexpr Uint256 multiply_low(const Uint256& a, const Uint256& b) {
  const Uint256 product =
      multiply_low<4>(make_two_words(lower_half(a)), make_two_words(lower_half(b)));
  return make_uint256(
      upper_half(product) + upper_half(a) * lower_half(b) + lower_half(a) * upper_half(b),
      lower_half(product));
}

// The lower half into `value`; true when the upper one is not zero.
constexpr bool narrow(const Uint512& wide, Uint256& value) {
  value = {{wide.limb[0], wide.limb[1], wide.limb[2], wide.limb[3]}};
  return (wide.limb[4] | wide.limb[5] | wide.limb[6] | wide.limb[7]) != 0;
}

// ---- Quotients ---------------------------------------------------------------------------------

namespace detail {

// Divides (upper, lower) by a divisor above `upper`. Compilers call a function of the support
// library for it, for they cannot know that the quotient fits a word.
constexpr uint64_t divide_two_words(uint64_t upper, uint64_t lower, uint64_t divisor) {
#ifdef __x86_64__
  if (!std::is_constant_evaluated()) {
    uint64_t quotient = lower;
    __asm__("divq %2" : "+a"(quotient), "+d"(upper) : "r"(divisor) : "cc");
    return quotient;
  }
#endif
  return static_cast<uint64_t>(((static_cast<Uint128>(upper) << 64) | lower) / divisor);
}

}  // namespace detail

// A divisor of one word, shifted up until its upper bit is set, with its reciprocal
// floor((2^128 - 1) / divisor) - 2^64. Source of this and of the division by it: N. Moeller and
// T. Granlund, "Improved division by invariant integers" (2011), algorithms 2 and 4.
struct WordDivisor {
  uint64_t divisor;
  uint64_t reciprocal;
  int shift;

  explicit constexpr WordDivisor(uint64_t value)
      : divisor(value << std::countl_zero(value)),
        reciprocal(detail::divide_two_words(~divisor, UINT64_MAX, divisor)),
        shift(std::countl_zero(value)) {}

  // Divides (remainder, word) by the divisor, leaves the new remainder and returns the quotient;
  // the remainder handed in is below the divisor.
  constexpr uint64_t step(uint64_t& remainder, uint64_t word) const {
    Uint128 estimate = static_cast<Uint128>(reciprocal) * remainder;
    estimate += (static_cast<Uint128>(remainder) << 64) | word;
    uint64_t quotient = static_cast<uint64_t>(estimate >> 64) + 1;
    remainder = word - quotient * divisor;
    if (remainder > static_cast<uint64_t>(estimate)) {
      --quotient;
      remainder += divisor;
    }
    if (remainder >= divisor) [[unlikely]] {
      ++quotient;
      remainder -= divisor;
    }
    return quotient;
  }
};

// value /= divisor; returns the remainder.
template <size_t kLimbs>
constexpr uint64_t divide(WideInteger<kLimbs>& value, const WordDivisor& by) {
  size_t i = value.used();
  // The bits that the shift moves out of the upper limb are below the divisor. Shifting by 63 and
  // by one more keeps the count below 64 when there is nothing to shift.
  const auto upper_bits = [&](uint64_t word) { return word >> 1 >> (63 - by.shift); };
  uint64_t remainder = i == 0 ? 0 : upper_bits(value.limb[i - 1]);
  if (by.shift == 0 && i != 0 && value.limb[i - 1] < by.divisor) {
    remainder = value.limb[--i];  // the first digit is zero
    value.limb[i] = 0;
  }
  while (i-- > 0) {
    const uint64_t lower = i == 0 ? 0 : upper_bits(value.limb[i - 1]);
    value.limb[i] = by.step(remainder, (value.limb[i] << by.shift) | lower);
  }
  return remainder >> by.shift;
}

// Divides by any number but zero; true when the quotient does not fit, its lower half being stored.
template <size_t kLimbs>
bool divide(const WideInteger<kLimbs>& dividend, const Uint256& divisor, Uint256& quotient,
            Uint256& remainder);
extern template bool divide(const Uint256&, const Uint256&, Uint256&, Uint256&);
extern template bool divide(const Uint512&, const Uint256&, Uint256&, Uint256&);

// ---- Powers of ten -----------------------------------------------------------------------------

inline constexpr int32_t kGreatestTen = 77;  // 10^77 < 2^256 < 10^78

namespace detail {

constexpr std::array<Uint256, kGreatestTen + 1> make_wide_powers_of_ten() {
  std::array<Uint256, kGreatestTen + 1> powers{};
  powers[0] = make_uint256(1);
  for (size_t i = 1; i < powers.size(); ++i) {
    powers[i] = powers[i - 1];
    multiply_add(powers[i], 10, 0);
  }
  return powers;
}

template <size_t... kExponents>
constexpr std::array<WordDivisor, sizeof...(kExponents)> make_ten_divisors(
    std::index_sequence<kExponents...>) {
  return {WordDivisor(kPowersOfTen[kExponents])...};
}

}  // namespace detail

inline constexpr auto kWidePowersOfTen = detail::make_wide_powers_of_ten();  // 10^0 to 10^77
inline constexpr auto kTenDivisors = detail::make_ten_divisors(std::make_index_sequence<20>{});

// value *= 10^exponent, 0 to 77; true when the product does not fit.
inline bool multiply_by_ten_to(Uint256& value, int32_t exponent) {
  const size_t index = static_cast<size_t>(exponent);
  if (index < kPowersOfTen.size()) return multiply_add(value, kPowersOfTen[index], 0) != 0;
  return narrow(multiply(value, kWidePowersOfTen[index]), value);
}

// value /= 10^exponent, 0 to 77; true when the remainder is not zero.
constexpr bool divide_by_ten_to(Uint256& value, int32_t exponent) {
  bool dropped = false;
  for (; exponent > 19; exponent -= 19) dropped |= divide(value, kTenDivisors[19]) != 0;
  return (divide(value, kTenDivisors[static_cast<size_t>(exponent)]) != 0) | dropped;
}

// floor(log10(2^bits)) for up to 256 bits: 1233 / 4096 is log10(2) - 4.7e-6.
constexpr int32_t floor_log10_of_two_to(int bits) {
  return bits * 1233 >> 12;
}

// Decimal digits of a value, 0 for 0 and up to 78. The power of two above the value has as many
// digits or one more.
constexpr int32_t decimal_digits(const Uint256& value) {
  const int32_t estimate = floor_log10_of_two_to(value.bit_length());
  return estimate + (value >= kWidePowersOfTen[static_cast<size_t>(estimate)] ? 1 : 0);
}

// ---- Bytes -------------------------------------------------------------------------------------

namespace detail {

inline uint64_t load_word(const uint8_t* bytes) {
  return __builtin_bswap64(base::load<uint64_t>(bytes));
}
inline uint32_t load_half_word(const uint8_t* bytes) {
  return __builtin_bswap32(base::load<uint32_t>(bytes));
}
inline void store_word(uint8_t* bytes, uint64_t word) {
  base::store(bytes, __builtin_bswap64(word));
}
inline void store_half_word(uint8_t* bytes, uint32_t word) {
  base::store(bytes, __builtin_bswap32(word));
}

}  // namespace detail

// Loads a big-endian integer of 1 to 32 bytes; nothing outside them is read. Words are loaded from
// the end; what is left over at the beginning is the upper part of a whole word or, below 8 bytes,
// of two words or bytes that overlap.
inline Uint256 load_big_endian(const uint8_t* bytes, size_t count) {
  const uint8_t* const end = bytes + count;
  const auto whole = [=](size_t from_end) { return detail::load_word(end - 8 * from_end); };
  const auto rest = [=](size_t words) {
    return detail::load_word(bytes) >> (64 * words - 8 * count);
  };
  if (count > 24) return {{whole(1), whole(2), whole(3), rest(4)}};
  if (count > 16) return {{whole(1), whole(2), rest(3), 0}};
  if (count > 8) return {{whole(1), rest(2), 0, 0}};
  if (count == 8) return {{whole(1), 0, 0, 0}};
  const size_t middle = count / 2;
  if (count < 4)
    return make_uint256(static_cast<uint64_t>(bytes[0]) << (8 * (count - 1)) |
                        static_cast<uint64_t>(bytes[middle]) << (8 * (count - 1 - middle)) |
                        bytes[count - 1]);
  return make_uint256(static_cast<uint64_t>(detail::load_half_word(bytes)) << (8 * (count - 4)) |
                      detail::load_half_word(end - 4));
}

// Stores the lower `count` bytes of a word, 1 to 8, as a big-endian integer.
void store_big_endian(uint64_t word, uint8_t* bytes, size_t count);

// Stores the lower `count` bytes, 1 to 32, of a value as a big-endian integer: the upper part comes
// first, so that the words behind it mend what it writes too far.
inline void store_big_endian(const Uint256& value, uint8_t* bytes, size_t count) {
  if (count < 8) return store_big_endian(value.limb[0], bytes, count);
  const size_t top = (count - 1) / 8;
  detail::store_word(bytes, value.limb[top] << (64 * (top + 1) - 8 * count));
  for (size_t i = 0; i < top; ++i) detail::store_word(bytes + count - 8 * (i + 1), value.limb[i]);
}

// Bytes that a value takes, 0 for 0.
constexpr int32_t byte_length(const Uint256& value) {
  return (value.bit_length() + 7) / 8;
}

}  // namespace tvx::numeric
