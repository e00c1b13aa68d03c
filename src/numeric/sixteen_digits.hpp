// Sixteen decimal digits at a time, from characters and back: in a vector of the processor where
// there is one, else in two words. Both forms offer the same.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "numeric/eight_digits.hpp"

namespace tvx::numeric {

namespace detail {

// Zeros, then sixteen bytes with all bits set: sixteen bytes from n on have them in the last n.
inline constexpr auto kLastBytes = [] {
  std::array<char, 32> bytes{};
  for (size_t i = 16; i < bytes.size(); ++i) bytes[i] = '\xFF';
  return bytes;
}();

// The last eight characters of a text; zero bytes stand in front of a shorter one.
inline uint64_t load_last_eight(std::string_view text) {
  const size_t size = text.size();
  const char* const begin = text.data();
  if (size >= 8) return load_eight(begin + size - 8);
  if (size >= 4) {
    uint32_t head;
    uint32_t tail;
    std::memcpy(&head, begin, sizeof head);
    std::memcpy(&tail, begin + size - 4, sizeof tail);
    return (uint64_t{tail} << 32) | (uint64_t{head} << (64 - 8 * size));
  }
  uint64_t word = 0;
  for (const char c : text) word = (word >> 8) | (uint64_t{static_cast<uint8_t>(c)} << 56);
  return word;
}

}  // namespace detail

// Each byte is a character less '0', that of a digit its value; the first one is the lowest.
class SixteenDigitsInWords {
public:
  static SixteenDigitsInWords load(const char* at) {
    return from_text(load_eight(at), load_eight(at + 8));
  }
  static SixteenDigitsInWords from_text(uint64_t first, uint64_t second) {
    return {first ^ kZeros, second ^ kZeros};
  }
  // Those of a number below 10^16.
  static SixteenDigitsInWords of(uint64_t value) {
    return {eight_digits_of(static_cast<uint32_t>(value / 100'000'000)),
            eight_digits_of(static_cast<uint32_t>(value % 100'000'000))};
  }

  // The last `count`, 0 to 16, behind zeros.
  [[nodiscard]] SixteenDigitsInWords last(size_t count) const {
    const char* const kept = detail::kLastBytes.data() + count;
    return {first_ & load_eight(kept), second_ & load_eight(kept + 8)};
  }
  // These, but the last `count` of others.
  [[nodiscard]] SixteenDigitsInWords joined(SixteenDigitsInWords others, size_t count) const {
    const SixteenDigitsInWords taken =
        SixteenDigitsInWords(first_ ^ others.first_, second_ ^ others.second_).last(count);
    return {first_ ^ taken.first_, second_ ^ taken.second_};
  }
  // A zero and the first fifteen.
  [[nodiscard]] SixteenDigitsInWords moved_back() const {
    return {first_ << 8, second_ << 8 | first_ >> 56};
  }

  // How many are digits before the first that is none.
  [[nodiscard]] size_t leading_digits() const {
    const uint64_t first = marks(first_);
    const int bits = first != 0 ? std::countr_zero(first) : 64 + std::countr_zero(marks(second_));
    return static_cast<size_t>(bits / 8);
  }
  [[nodiscard]] bool are_digits() const { return (marks(first_) | marks(second_)) == 0; }
  // How many there are without the zeros at the end.
  [[nodiscard]] size_t significant_digits() const {
    const int zeros = second_ != 0 ? std::countl_zero(second_) : 64 + std::countl_zero(first_);
    return static_cast<size_t>(16 - zeros / 8);
  }

  [[nodiscard]] uint64_t value() const {
    return uint64_t{value_of_eight_digits(first_ + kZeros)} * 100'000'000 +
           value_of_eight_digits(second_ + kZeros);
  }

  // Writes the characters.
  void store(char* at) const {
    store_eight(at, first_ | kZeros);
    store_eight(at + 8, second_ | kZeros);
  }

private:
  static constexpr uint64_t kZeros = 0x3030303030303030;

  SixteenDigitsInWords(uint64_t first, uint64_t second) : first_(first), second_(second) {}

  // Marks bytes above 9 by their upper bits, exactly so up to the first of them.
  static uint64_t marks(uint64_t word) {
    return ((word + 0x7676767676767676) | word) & 0x8080808080808080;
  }

  uint64_t first_;
  uint64_t second_;
};

#ifdef __SSE2__

class SixteenDigitsInVector {
public:
  static SixteenDigitsInVector load(const char* at) {
    return from_characters(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)));
  }
  static SixteenDigitsInVector from_text(uint64_t first, uint64_t second) {
    return from_characters(
        _mm_set_epi64x(static_cast<int64_t>(second), static_cast<int64_t>(first)));
  }

  // Eights are parted into fours, fours into pairs and pairs into digits, all at once: quotients by
  // reciprocals that are exact for the parts' ranges, 0xD1B71759 / 2^45, 5243 / 2^19, 103 / 2^10.
  static SixteenDigitsInVector of(uint64_t value) {
    const __m128i eights = _mm_set_epi64x(static_cast<int64_t>(value % 100'000'000),
                                          static_cast<int64_t>(value / 100'000'000));
    const __m128i upper_fours =
        _mm_srli_epi64(_mm_mul_epu32(eights, _mm_set1_epi64x(0xD1B71759)), 45);
    const __m128i lower_fours =
        _mm_sub_epi64(eights, _mm_mul_epu32(upper_fours, _mm_set1_epi64x(10'000)));
    const __m128i fours = _mm_or_si128(upper_fours, _mm_slli_epi64(lower_fours, 32));
    const __m128i upper_pairs = _mm_srli_epi16(_mm_mulhi_epu16(fours, _mm_set1_epi16(5243)), 3);
    const __m128i lower_pairs =
        _mm_sub_epi16(fours, _mm_mullo_epi16(upper_pairs, _mm_set1_epi16(100)));
    const __m128i pairs = _mm_or_si128(upper_pairs, _mm_slli_epi32(lower_pairs, 16));
    const __m128i tens = _mm_srli_epi16(_mm_mullo_epi16(pairs, _mm_set1_epi16(103)), 10);
    const __m128i ones = _mm_sub_epi16(pairs, _mm_mullo_epi16(tens, _mm_set1_epi16(10)));
    return {_mm_or_si128(tens, _mm_slli_epi16(ones, 8))};
  }

  [[nodiscard]] SixteenDigitsInVector last(size_t count) const {
    return {_mm_and_si128(digits_, last_bytes(count))};
  }
  [[nodiscard]] SixteenDigitsInVector joined(SixteenDigitsInVector others, size_t count) const {
    const __m128i taken = last_bytes(count);
    return {_mm_or_si128(_mm_andnot_si128(taken, digits_), _mm_and_si128(taken, others.digits_))};
  }
  [[nodiscard]] SixteenDigitsInVector moved_back() const { return {_mm_slli_si128(digits_, 1)}; }

  [[nodiscard]] size_t leading_digits() const {
    return static_cast<size_t>(std::countr_zero(marks() | 1U << 16));
  }
  [[nodiscard]] bool are_digits() const { return marks() == 0; }
  [[nodiscard]] size_t significant_digits() const {
    const int zeros = _mm_movemask_epi8(_mm_cmpeq_epi8(digits_, _mm_setzero_si128()));
    return static_cast<size_t>(std::bit_width(static_cast<uint32_t>(zeros ^ 0xFFFF)));
  }

  // Neighbours are joined to pairs, pairs to fours and fours to eights.
  [[nodiscard]] uint64_t value() const {
    const __m128i pairs = _mm_and_si128(
        _mm_add_epi16(_mm_mullo_epi16(digits_, _mm_set1_epi16(10)), _mm_srli_epi16(digits_, 8)),
        _mm_set1_epi16(0xFF));
    const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(100 + (1 << 16)));
    const __m128i eights =
        _mm_madd_epi16(_mm_packs_epi32(fours, fours), _mm_set1_epi32(10'000 + (1 << 16)));
    const auto both = static_cast<uint64_t>(_mm_cvtsi128_si64(eights));
    return static_cast<uint32_t>(both) * uint64_t{100'000'000} + (both >> 32);
  }

  void store(char* at) const {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(at), _mm_or_si128(digits_, _mm_set1_epi8('0')));
  }

private:
  SixteenDigitsInVector(__m128i digits) : digits_(digits) {}

  static SixteenDigitsInVector from_characters(__m128i characters) {
    return {_mm_sub_epi8(characters, _mm_set1_epi8('0'))};
  }
  static __m128i last_bytes(size_t count) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(detail::kLastBytes.data() + count));
  }
  // A bit for each that is above 9.
  [[nodiscard]] uint32_t marks() const {
    const __m128i above = _mm_cmpeq_epi8(_mm_max_epu8(digits_, _mm_set1_epi8(10)), digits_);
    return static_cast<uint32_t>(_mm_movemask_epi8(above));
  }

  __m128i digits_;
};

using SixteenDigits = SixteenDigitsInVector;

#else

using SixteenDigits = SixteenDigitsInWords;

#endif

// The last sixteen characters of a text; those in front of a shorter one are no digits.
template <class Digits = SixteenDigits>
inline Digits load_last_sixteen(std::string_view text) {
  const size_t size = text.size();
  if (size >= 16) [[likely]]
    return Digits::load(text.data() + size - 16);
  // Shifting by 56 at the most and by 8 more moves all out that is in the second word as well.
  const uint64_t first = size < 8 ? 0 : load_eight(text.data()) << 8 * (15 - size) << 8;
  return Digits::from_text(first, detail::load_last_eight(text));
}

}  // namespace tvx::numeric
