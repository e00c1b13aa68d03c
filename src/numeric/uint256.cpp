// Products by the schoolbook and long division in words of 64 bits: D. Knuth, "The Art of Computer
// Programming", volume 2, 4.3.1, algorithm D, each digit of the quotient found from three words of
// the dividend and two of the divisor by a reciprocal, so that it is exact but for an excess of one
// in rare cases: N. Moeller and T. Granlund, "Improved division by invariant integers" (2011),
// algorithms 5 and 6.
#include "numeric/uint256.hpp"

#include <algorithm>

namespace tvx::numeric {
namespace {

constexpr uint64_t low(Uint128 value) {
  return static_cast<uint64_t>(value);
}
constexpr uint64_t high(Uint128 value) {
  return static_cast<uint64_t>(value >> 64);
}

// The two upper words of a divisor, the upper bit set, and floor((2^192 - 1) / them) - 2^64.
struct TwoWordDivisor {
  Uint128 divisor;
  uint64_t reciprocal;

  explicit TwoWordDivisor(Uint128 value)
      : divisor(value), reciprocal(WordDivisor(high(value)).reciprocal) {
    const uint64_t upper = high(divisor);
    uint64_t rest = upper * reciprocal + low(divisor);
    if (rest < low(divisor)) {
      --reciprocal;
      if (rest >= upper) {
        --reciprocal;
        rest -= upper;
      }
      rest -= upper;
    }
    const Uint128 product = static_cast<Uint128>(reciprocal) * low(divisor);
    rest += high(product);
    if (rest < high(product)) {
      --reciprocal;
      if (((static_cast<Uint128>(rest) << 64) | low(product)) >= divisor) --reciprocal;
    }
  }

  // Divides (remainder, word) by the divisor, leaves the new remainder and returns the quotient;
  // the remainder handed in is below the divisor.
  uint64_t step(Uint128& remainder, uint64_t word) const {
    const Uint128 estimate = static_cast<Uint128>(reciprocal) * high(remainder) + remainder;
    uint64_t quotient = high(estimate) + 1;
    const uint64_t upper = low(remainder) - high(estimate) * high(divisor);
    remainder = ((static_cast<Uint128>(upper) << 64) | word) -
                static_cast<Uint128>(high(estimate)) * low(divisor) - divisor;
    if (high(remainder) >= low(estimate)) {
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

// words[0 .. count - 1] -= factor * divisor[0 .. count - 1]; returns the borrow.
uint64_t subtract_multiple(uint64_t* words, const uint64_t* divisor, size_t count,
                           uint64_t factor) {
  uint64_t borrow = 0;
  for (size_t i = 0; i < count; ++i) {
    const Uint128 product = static_cast<Uint128>(divisor[i]) * factor + borrow;
    borrow = high(product) + (words[i] < low(product) ? 1 : 0);
    words[i] -= low(product);
  }
  return borrow;
}

// words[0 .. count - 1] += divisor[0 .. count - 1], modulo 2^(64 * count).
void add_back(uint64_t* words, const uint64_t* divisor, size_t count) {
  uint64_t carry = 0;
  for (size_t i = 0; i < count; ++i) {
    const Uint128 sum = static_cast<Uint128>(words[i]) + divisor[i] + carry;
    words[i] = low(sum);
    carry = high(sum);
  }
}

// One digit: divides words[0 .. count], of which the upper `count` are below the divisor, leaves
// the remainder in words[0 .. count - 1] and returns the quotient.
uint64_t divide_digit(uint64_t* words, const uint64_t* divisor, size_t count,
                      const TwoWordDivisor& upper) {
  Uint128 remainder = (static_cast<Uint128>(words[count]) << 64) | words[count - 1];
  if (remainder >= upper.divisor) [[unlikely]] {
    // Equal upper words: the quotient is the greatest digit.
    subtract_multiple(words, divisor, count, UINT64_MAX);
    return UINT64_MAX;
  }
  uint64_t quotient = upper.step(remainder, words[count - 2]);
  const uint64_t borrow = subtract_multiple(words, divisor, count - 2, quotient);
  const bool excess = remainder < borrow;
  remainder -= borrow;
  words[count - 2] = low(remainder);
  words[count - 1] = high(remainder);
  if (excess) [[unlikely]] {
    --quotient;
    add_back(words, divisor, count);
  }
  return quotient;
}

// The words of a number shifted up by 0 to 63 bits, one more than the number has.
struct ShiftedWords {
  const uint64_t* words;
  size_t count;
  int shift;

  uint64_t operator[](size_t i) const {
    const uint64_t lower = i == 0 ? 0 : words[i - 1] >> 1 >> (63 - shift);
    return (i == count ? 0 : words[i] << shift) | lower;
  }
};

// Stores digit i of a quotient; true when it does not fit.
bool store_digit(Uint256& quotient, size_t i, uint64_t digit) {
  if (i >= 4) return digit != 0;
  quotient.limb[i] = digit;
  return false;
}

// Divides by one or two words, in registers: digits from the last of `count` words on.
template <class Divisor, class Remainder>
bool divide_words(const ShiftedWords& dividend, size_t count, const Divisor& divisor,
                  Remainder& remainder, Uint256& quotient) {
  bool overflow = false;
  for (size_t i = count; i-- > 0;)
    overflow |= store_digit(quotient, i, divisor.step(remainder, dividend[i]));
  return overflow;
}

// Divides by three or four words.
bool divide_long(const ShiftedWords& dividend, const ShiftedWords& divisor, Uint256& quotient,
                 Uint256& remainder) {
  const size_t size = divisor.count;
  uint64_t scaled[4];
  uint64_t words[9];
  for (size_t i = 0; i < size; ++i) scaled[i] = divisor[i];
  for (size_t i = 0; i <= dividend.count; ++i) words[i] = dividend[i];

  const TwoWordDivisor upper((static_cast<Uint128>(scaled[size - 1]) << 64) | scaled[size - 2]);
  bool overflow = false;
  for (size_t i = dividend.count - size + 1; i-- > 0;)
    overflow |= store_digit(quotient, i, divide_digit(words + i, scaled, size, upper));

  for (size_t i = 0; i < size; ++i) {
    const uint64_t above = i + 1 < size ? words[i + 1] : 0;
    remainder.limb[i] = words[i] >> divisor.shift | above << 1 << (63 - divisor.shift);
  }
  return overflow;
}

}  // namespace

Uint512 multiply(const Uint256& a, const Uint256& b) {
  Uint512 product{};
  const size_t a_used = a.used();
  const size_t b_used = b.used();
  for (size_t i = 0; i < a_used; ++i) {
    uint64_t carry = 0;
    for (size_t j = 0; j < b_used; ++j) {
      // (2^64 - 1)^2 and two more words below 2^64 are at most 2^128 - 1.
      const Uint128 sum = static_cast<Uint128>(a.limb[i]) * b.limb[j] + product.limb[i + j] + carry;
      product.limb[i + j] = static_cast<uint64_t>(sum);
      carry = static_cast<uint64_t>(sum >> 64);
    }
    product.limb[i + b_used] = carry;
  }
  return product;
}

template <size_t kLimbs>
bool divide(const WideInteger<kLimbs>& dividend, const Uint256& divisor, Uint256& quotient,
            Uint256& remainder) {
  quotient = {};
  remainder = {};
  const size_t size = divisor.used();
  const size_t count = dividend.used();
  if (count < size) {
    std::copy_n(dividend.limb, count, remainder.limb);
    return false;
  }
  const int shift = std::countl_zero(divisor.limb[size - 1]);
  const ShiftedWords words{dividend.limb, count, shift};
  // The word that the shift adds is below the divisor.
  if (size == 1) {
    uint64_t rest = words[count];
    const bool overflow = divide_words(words, count, WordDivisor(divisor.limb[0]), rest, quotient);
    remainder.limb[0] = rest >> shift;
    return overflow;
  }
  if (size == 2) {
    Uint128 rest = (static_cast<Uint128>(words[count]) << 64) | words[count - 1];
    const TwoWordDivisor by(lower_half(divisor) << shift);
    const bool overflow = divide_words(words, count - 1, by, rest, quotient);
    remainder = make_uint256(0, rest >> shift);
    return overflow;
  }
  return divide_long(words, {divisor.limb, size, shift}, quotient, remainder);
}

// Below 8 bytes as words or bytes that overlap.
void store_big_endian(uint64_t word, uint8_t* bytes, size_t count) {
  const auto from = [=](size_t begin, size_t size) { return word >> (8 * (count - begin - size)); };
  if (count == 8) {
    detail::store_word(bytes, word);
  } else if (count >= 4) {
    detail::store_half_word(bytes, static_cast<uint32_t>(from(0, 4)));
    detail::store_half_word(bytes + count - 4, static_cast<uint32_t>(word));
  } else {
    const size_t middle = count / 2;
    bytes[0] = static_cast<uint8_t>(from(0, 1));
    bytes[middle] = static_cast<uint8_t>(from(middle, 1));
    bytes[count - 1] = static_cast<uint8_t>(word);
  }
}

template bool divide(const Uint256&, const Uint256&, Uint256&, Uint256&);
template bool divide(const Uint512&, const Uint256&, Uint256&, Uint256&);

}  // namespace tvx::numeric
