// Arithmetic on records, comn_numeric to comn_numeric. In front of the general operations on
// Decimals stand short ways for what records nearly always hold: magnitudes within their precision
// and results that fit. They have no branch on the sizes of numbers, which nobody can predict, and
// leave everything else, overflow above all, to the general operation.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "base/bytes.hpp"
#include "numeric/decimal.hpp"
#include "numeric/decimal_arithmetic.hpp"
#include "numeric/precision.hpp"
#include "numeric/uint256.hpp"

namespace tvx::numeric {

// ---- Magnitudes of records ---------------------------------------------------------------------

namespace detail {

inline constexpr size_t kMagnitudeAt = offsetof(comn_numeric, magnitude);

// Where the words of a magnitude lie in a record of a precision. Those below the uppermost end at
// fixed distances from its end; the uppermost one is what is left over of the first eight bytes.
struct MagnitudeLayout {
  uint64_t below[4];  // all bits for a word below the uppermost, else none
  uint64_t upper[4];  // all bits for the uppermost word, or as many as it has when it is the lowest
  uint64_t limit;     // the first bytes of 10^precision, as those of a magnitude
  uint8_t bytes;
  uint8_t at[4];        // of the words; of others it is a place that may be read
  uint8_t first_at;     // of the word that has the first bytes,
  uint8_t first_shift;  // when shifted up by so many bits
  uint8_t uppermost;    // word
  uint8_t excess;       // bits by which the first eight bytes are too far up for it
};

constexpr MagnitudeLayout make_magnitude_layout(size_t precision) {
  MagnitudeLayout layout{};
  const size_t bytes = kFieldLengthOfPrecision[precision] - size_t{1};
  layout.bytes = static_cast<uint8_t>(bytes);
  layout.uppermost = static_cast<uint8_t>((bytes - 1) / 8);
  // Below 8 bytes no word fits behind the header: it ends where the magnitude ends and is masked.
  const bool is_short = bytes < 8;
  layout.first_at = is_short ? 0 : kMagnitudeAt;
  layout.first_shift = is_short ? 8 * kMagnitudeAt : 0;
  layout.excess =
      static_cast<uint8_t>(is_short ? 0 : 8 * (size_t{8} * (layout.uppermost + 1u) - bytes));
  for (size_t i = 0; i < 4; ++i) {
    const bool is_below = i < layout.uppermost;
    layout.below[i] = is_below ? UINT64_MAX : 0;
    layout.at[i] = static_cast<uint8_t>(is_below ? kMagnitudeAt + bytes - 8 * (i + 1)
                                                 : size_t{layout.first_at});
  }
  layout.upper[layout.uppermost] = is_short ? (uint64_t{1} << (8 * bytes)) - 1 : UINT64_MAX;
  const Uint256& power = kWidePowersOfTen[precision];
  const size_t known = std::min(bytes, size_t{8} - layout.first_shift / 8);
  for (size_t i = 0; i < known; ++i) {
    const size_t from_end = bytes - 1 - i;
    const uint64_t byte = power.limb[from_end / 8] >> (8 * (from_end % 8)) & 0xFF;
    layout.limit |= byte << (56 - 8 * i);
  }
  return layout;
}

constexpr std::array<MagnitudeLayout, kMaxPrecision + 1> make_magnitude_layouts() {
  std::array<MagnitudeLayout, kMaxPrecision + 1> layouts{};
  for (size_t precision = 1; precision < layouts.size(); ++precision)
    layouts[precision] = make_magnitude_layout(precision);
  return layouts;
}

inline constexpr auto kMagnitudeLayouts = make_magnitude_layouts();

inline const MagnitudeLayout& layout_of(const comn_numeric& record) {
  return kMagnitudeLayouts[record.precision];
}

inline const uint8_t* bytes_of(const comn_numeric& record) {
  return reinterpret_cast<const uint8_t*>(&record);
}

// Keeps a word in a register of its own: compilers put pairs of words together into vectors, which
// takes longer than the arithmetic.
inline uint64_t alone(uint64_t word) {
#ifdef __GNUC__
  __asm__("" : "+r"(word));
#endif
  return word;
}

// Up to 4 bytes, with those of the header before them.
inline uint64_t load_short_magnitude(const uint8_t* record, const MagnitudeLayout& layout) {
  return load_half_word(record + kMagnitudeAt + layout.bytes - 4) & layout.upper[0];
}

// The magnitude's first bytes as the upper bytes of a word; four at least where there are so many.
inline uint64_t leading_bytes(const comn_numeric& record, const MagnitudeLayout& layout) {
  const uint8_t* const bytes = bytes_of(record);
  if (layout.bytes <= 4) return load_short_magnitude(bytes, layout) << (64 - 8 * layout.bytes);
  return load_word(bytes + layout.first_at) << layout.first_shift;
}

// True when the magnitude is less than 10^precision; false also in a few cases just below that.
inline bool is_clearly_in_precision(const comn_numeric& record) {
  const MagnitudeLayout& layout = layout_of(record);
  return leading_bytes(record, layout) < layout.limit;
}

// Loads the magnitude of an approved record, whatever its size; nothing behind it is read.
inline Uint256 load_magnitude(const comn_numeric& record) {
  const uint8_t* const bytes = bytes_of(record);
  const MagnitudeLayout& layout = layout_of(record);
  if (layout.bytes <= 4) return make_uint256(load_short_magnitude(bytes, layout));
  // Header and magnitude are 8 bytes at least.
  const size_t upper_at = layout.bytes < 8 ? kMagnitudeAt + layout.bytes - 8 : kMagnitudeAt;
  const uint64_t upper = load_word(bytes + upper_at) >> layout.excess;
  const auto word = [&](size_t i) {
    return alone((alone(load_word(bytes + layout.at[i])) & layout.below[i]) |
                 (upper & layout.upper[i]));
  };
  return {{word(0), word(1), word(2), upper & layout.upper[3]}};
}

// Stores a value that fits the precision, the sign of zero as 0.
inline void store_record(DecimalType type, bool negative, const Uint256& magnitude,
                         comn_numeric& out) {
  uint8_t* const bytes = reinterpret_cast<uint8_t*>(&out);
  const auto& limb = magnitude.limb;
  const uint64_t any = limb[0] | limb[1] | limb[2] | limb[3];
  out.precision = static_cast<uint8_t>(type.precision);
  out.scale = static_cast<uint8_t>(type.scale);
  out.sign = static_cast<uint8_t>(negative & (any != 0));
  store_big_endian(magnitude, bytes + kMagnitudeAt,
                   kMagnitudeLayouts[static_cast<size_t>(type.precision)].bytes);
}

inline uint64_t sign_of(const comn_numeric& record) {
  return record.sign != 0;
}

}  // namespace detail

// ---- Short ways --------------------------------------------------------------------------------

// They take approved records and return false, nothing being written, when the general operation
// has to answer.

namespace detail {

inline constexpr uint32_t kLeastOfTwoWords = 20;  // digits in 9 bytes
inline constexpr uint32_t kMostOfTwoWords = 38;   // in 16 bytes

inline bool has_two_words(const comn_numeric& record) {
  return record.precision - kLeastOfTwoWords <= kMostOfTwoWords - kLeastOfTwoWords;
}

struct TwoWords {
  uint64_t lower;
  uint64_t upper;
};

inline TwoWords load_two_words(const comn_numeric& record) {
  const uint8_t* const magnitude = bytes_of(record) + kMagnitudeAt;
  const size_t bytes = layout_of(record).bytes;
  return {load_word(magnitude + bytes - 8), load_word(magnitude) >> (128 - 8 * bytes)};
}

}  // namespace detail

// The sum or difference of records of 20 to 38 digits with the same header, in two words.
inline bool add_two_words(const comn_numeric& a, const comn_numeric& b, bool subtracts,
                          comn_numeric& out) {
  const uint8_t* const left = detail::bytes_of(a);
  const uint8_t* const right = detail::bytes_of(b);
  const uint16_t header = base::load<uint16_t>(left);
  const uint32_t precision = a.precision;
  if (header != base::load<uint16_t>(right) || !detail::has_two_words(a)) return false;

  const auto [x_lower, x_upper] = detail::load_two_words(a);
  const auto [y_lower, y_upper] = detail::load_two_words(b);
  // Below the upper word of 10^precision the operands are below 10^precision, so that the sum is
  // below 2 * 10^precision: it has one digit more at the most, which the result's type has.
  const uint64_t limit = kWidePowersOfTen[precision].limb[1];
  if ((x_upper >= limit) | (y_upper >= limit)) [[unlikely]]
    return false;

  const uint64_t opposite = detail::sign_of(a) ^ detail::sign_of(b) ^ uint64_t { subtracts };
  const uint64_t mask = 0 - opposite;
  uint64_t lower;
  uint64_t upper;
  const uint64_t middle = add_with_carry(opposite, x_lower, y_lower ^ mask, lower);
  const uint64_t carry = add_with_carry(middle, x_upper, y_upper ^ mask, upper);
  // A sum carries into the third word; a difference carries unless it is below zero.
  const uint64_t turns = opposite & ~carry;
  const uint64_t third = carry & ~opposite;
  const uint64_t turned = add_with_carry(turns, lower ^ (0 - turns), 0, lower);
  add_with_carry(turned, upper ^ (0 - turns), 0, upper);

  uint8_t* const result = reinterpret_cast<uint8_t*>(&out);
  const uint64_t sign = (detail::sign_of(a) ^ turns) & uint64_t{(lower | upper | third) != 0};
  out.precision = static_cast<uint8_t>(precision + 1);
  out.scale = static_cast<uint8_t>(header >> 8);
  out.sign = static_cast<uint8_t>(sign);
  uint8_t* const magnitude = result + detail::kMagnitudeAt;
  if (precision == detail::kMostOfTwoWords) {  // 39 digits take 17 bytes
    magnitude[0] = static_cast<uint8_t>(third);
    detail::store_word(magnitude + 1, upper);
    detail::store_word(magnitude + 9, lower);
  } else {  // the third word is zero
    const size_t stored = detail::kMagnitudeLayouts[precision + 1].bytes;
    detail::store_word(magnitude, upper << (128 - 8 * stored));
    detail::store_word(magnitude + stored - 8, lower);
  }
  return true;
}

// The sum or difference of any records whose one type leaves the result its digit more.
inline bool add_fitting(const comn_numeric& a, const comn_numeric& b, bool subtracts,
                        comn_numeric& out) {
  // A sum of signed values does not depend on their order: the first has the smaller scale.
  const bool swaps = a.scale > b.scale;
  const comn_numeric& first = swaps ? b : a;
  const comn_numeric& second = swaps ? a : b;
  const uint64_t turned = uint64_t{subtracts};
  const uint64_t first_sign = detail::sign_of(first) ^ (turned & uint64_t{swaps});
  const uint64_t second_sign = detail::sign_of(second) ^ (turned & uint64_t{!swaps});

  const int32_t scale = second.scale;
  const int32_t digits = scale - first.scale;
  const int32_t whole = std::max(first.precision - first.scale, second.precision - scale);
  const int32_t precision = whole + scale;
  if (precision >= kMaxPrecision) return false;
  if (!(detail::is_clearly_in_precision(a) && detail::is_clearly_in_precision(b))) [[unlikely]]
    return false;
  Uint256 x = detail::load_magnitude(first);
  const Uint256 y = detail::load_magnitude(second);
  // As x < 10^first.precision, x * 10^digits < 10^(first.precision + digits) <= 10^precision; so is
  // y. Their sum is below 10^(precision + 1), which is 10^77 at most and below 2^256.
  if (digits != 0) x = multiply_low(x, kWidePowersOfTen[static_cast<size_t>(digits)]);

  const uint64_t opposite = first_sign ^ second_sign;
  const uint64_t turns = opposite & ~add_signed(x, y, opposite);
  detail::store_record({precision + 1, scale}, (first_sign ^ turns) != 0, with_sign(turns, x), out);
  return true;
}

// The product of records of 20 to 38 digits each when its type holds every digit.
inline bool multiply_two_words(const comn_numeric& a, const comn_numeric& b, comn_numeric& out) {
  if (!(detail::has_two_words(a) && detail::has_two_words(b))) return false;
  const int32_t scale = a.scale + b.scale;
  const int32_t precision = a.precision + b.precision + 1;  // up to 77
  if ((scale > kMaxScale) | (precision - scale > kMaxPrecision)) return false;
  const auto [x_lower, x_upper] = detail::load_two_words(a);
  const auto [y_lower, y_upper] = detail::load_two_words(b);
  // Below these limits the operands are in their precisions: the product is below 10^(precision-1).
  if ((x_upper >= kWidePowersOfTen[a.precision].limb[1]) ||
      (y_upper >= kWidePowersOfTen[b.precision].limb[1])) [[unlikely]]
    return false;
  const Uint256 product = multiply((static_cast<Uint128>(x_upper) << 64) | x_lower,
                                   (static_cast<Uint128>(y_upper) << 64) | y_lower);
  detail::store_record({precision, scale}, detail::sign_of(a) != detail::sign_of(b), product, out);
  return true;
}

// Compares records that differ in sign or by more than a half in the decimal logarithm: sets -1 or
// 1 as a is less or greater.
inline bool compare_leading_bits(const comn_numeric& a, const comn_numeric& b, int32_t& order) {
  const detail::MagnitudeLayout& a_layout = detail::layout_of(a);
  const detail::MagnitudeLayout& b_layout = detail::layout_of(b);
  const uint64_t x = detail::leading_bytes(a, a_layout);
  const uint64_t y = detail::leading_bytes(b, b_layout);
  if ((x == 0) | (y == 0)) return false;
  // The logarithm of a number of n bits lies in [n - 1, n) * log10(2), here in units of 1 / 4096;
  // 1233 such units are log10(2) - 4.7e-6. Numbers whose upper limits differ by a half, less an
  // error of 256 * 4.7e-6, hence differ, by a factor of 1.5 at least. That factor also decides
  // where surplus digits would be cut off: there the magnitude that does not fit 77 digits is
  // 10^77 at least and the other is below 2^256.
  const auto logarithm = [](uint64_t leading, size_t bytes, int32_t scale) {
    const int32_t bits = static_cast<int32_t>(8 * bytes) - std::countl_zero(leading);
    return bits * 1233 - scale * 4096;
  };
  const int32_t difference =
      logarithm(x, a_layout.bytes, a.scale) - logarithm(y, b_layout.bytes, b.scale);
  const uint64_t a_sign = detail::sign_of(a);
  const bool same_sign = a_sign == detail::sign_of(b);
  if (same_sign & (difference <= 2048) & (difference >= -2048)) return false;
  const bool less = same_sign & (difference < 0);
  order = (less ^ (a_sign != 0)) ? -1 : 1;
  return true;
}

// Compares the magnitudes of records with the same header, whose scales need no thought.
inline bool compare_same_type(const comn_numeric& a, const comn_numeric& b, int32_t& order) {
  if (base::load<uint16_t>(detail::bytes_of(a)) != base::load<uint16_t>(detail::bytes_of(b)))
    return false;
  const detail::MagnitudeLayout& layout = detail::layout_of(a);
  const uint64_t x = detail::leading_bytes(a, layout);
  const uint64_t y = detail::leading_bytes(b, layout);
  const uint64_t a_sign = detail::sign_of(a);
  const bool same_sign = a_sign == detail::sign_of(b);
  // Where one is zero in front, zero may have a sign; where both are equal, the rest decides.
  if ((x == 0) | (y == 0) | (same_sign & (x == y))) return false;
  const bool less = same_sign & (x < y);
  order = (less ^ (a_sign != 0)) ? -1 : 1;
  return true;
}

}  // namespace tvx::numeric
