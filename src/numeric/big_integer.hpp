// Non-negative integers of up to 2,624 bits, as far as floating-point text needs them: the table of
// powers of five is computed with them, and a decimal text is compared with the point half-way
// between two doubles. Everything is constexpr, so that the table is computed by the compiler.
#pragma once

#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>

namespace tvx::numeric {

__extension__ typedef unsigned __int128 Uint128;

class BigInteger {
public:
  // A text to be compared with a half-way point is an integer of at most 769 digits (2555 bits)
  // times a power of ten not below 10^-1092, for the least such point is 2.47e-324. The half-way
  // point, an integer below 2^54 times a power of two, takes at most 54 + log2(5^1092) = 2590 bits
  // when the power of ten is moved to its side. The two are nearly equal, so that this bounds both
  // after a shift of either.
  static constexpr size_t kWords = 41;

  explicit constexpr BigInteger(uint64_t value) : words_{value}, size_(value != 0) {}

  constexpr void multiply_add(uint64_t factor, uint64_t addend) {
    uint64_t carry = addend;
    for (size_t i = 0; i < size_; ++i) {
      const Uint128 product = static_cast<Uint128>(words_[i]) * factor + carry;
      words_[i] = static_cast<uint64_t>(product);
      carry = static_cast<uint64_t>(product >> 64);
    }
    if (carry != 0) words_[size_++] = carry;
  }

  constexpr void multiply_by_power_of_five(int64_t exponent) {
    constexpr uint64_t k5To27 = 7'450'580'596'923'828'125;  // the largest power below 2^64
    for (; exponent >= 27; exponent -= 27) multiply_add(k5To27, 0);
    uint64_t rest = 1;
    for (; exponent > 0; --exponent) rest *= 5;
    multiply_add(rest, 0);
  }

  // Divides and rounds down.
  constexpr void divide(uint64_t divisor) {
    uint64_t remainder = 0;
    for (size_t i = size_; i-- > 0;) {
      const Uint128 part = (static_cast<Uint128>(remainder) << 64) | words_[i];
      words_[i] = static_cast<uint64_t>(part / divisor);
      remainder = static_cast<uint64_t>(part % divisor);
    }
    if (size_ != 0 && words_[size_ - 1] == 0) --size_;
  }

  constexpr void shift_left(int64_t bits) {
    if (size_ == 0) return;
    const size_t whole = static_cast<size_t>(bits / 64);
    multiply_add(uint64_t{1} << (bits % 64), 0);
    for (size_t i = size_; i-- > 0;) words_[i + whole] = words_[i];
    for (size_t i = 0; i < whole; ++i) words_[i] = 0;
    size_ += whole;
  }

  [[nodiscard]] constexpr int bit_length() const {
    return size_ == 0 ? 0 : static_cast<int>(size_ * 64) - std::countl_zero(words_[size_ - 1]);
  }

  // The 128 most significant bits of a number other than zero: its leading one is bit 127 of the
  // result, bits below are cut off, missing ones zero.
  [[nodiscard]] constexpr Uint128 leading_bits() const {
    const auto word = [this](size_t from_top) {
      return Uint128{from_top <= size_ ? words_[size_ - from_top] : 0};
    };
    const int zeros = std::countl_zero(words_[size_ - 1]);
    const Uint128 two_words = (word(1) << 64) | word(2);
    return zeros == 0 ? two_words : (two_words << zeros) | (word(3) >> (64 - zeros));
  }

  friend constexpr std::strong_ordering operator<=>(const BigInteger& a, const BigInteger& b) {
    if (a.size_ != b.size_) return a.size_ <=> b.size_;
    for (size_t i = a.size_; i-- > 0;)
      if (a.words_[i] != b.words_[i]) return a.words_[i] <=> b.words_[i];
    return std::strong_ordering::equal;
  }

private:
  uint64_t words_[kWords];  // least significant first; those from size_ on mean nothing
  size_t size_;             // words in use, the last of them not zero
};

}  // namespace tvx::numeric
