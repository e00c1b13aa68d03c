// Magnitudes in records, comn_numeric, as words. A record always has room for the longest
// magnitude, so that a short one is loaded as part of a whole word; it is stored exactly. Nineteen
// digits are a word: 10^(19 n) needs 8 n bytes, up to n = 4.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "numeric/precision.hpp"
#include "numeric/uint256.hpp"
#include "tvxcomn/datatypes.h"

namespace tvx::numeric {

inline constexpr int32_t kDigitsOfWord = 19;

// How a magnitude of a precision stands in a record.
struct MagnitudeLayout {
  uint64_t limit;        // 10^precision as leading_word() would give it
  uint8_t bytes;         // 1 to 32
  uint8_t missing_bits;  // which its uppermost word is short of 64
};

namespace detail {

constexpr MagnitudeLayout make_magnitude_layout(size_t precision) {
  const size_t bytes = kFieldLengthOfPrecision[precision] - size_t{1};
  const size_t top = (bytes - 1) / 8;
  const size_t shift = 64 * (top + 1) - 8 * bytes;
  const auto& limb = kWidePowersOfTen[precision].limb;
  const uint64_t below = top == 0 || shift == 0 ? 0 : limb[top - 1] >> (64 - shift);
  return {limb[top] << shift | below, static_cast<uint8_t>(bytes), static_cast<uint8_t>(shift)};
}

constexpr std::array<MagnitudeLayout, kMaxPrecision + 1> make_magnitude_layouts() {
  std::array<MagnitudeLayout, kMaxPrecision + 1> layouts{};
  for (size_t precision = 0; precision < layouts.size(); ++precision)
    layouts[precision] = make_magnitude_layout(precision);
  return layouts;
}

inline constexpr auto kMagnitudeLayouts = make_magnitude_layouts();

static_assert(kMagnitudeLayouts[19].bytes == 8 && kMagnitudeLayouts[20].bytes == 9 &&
              kMagnitudeLayouts[38].bytes == 16 && kMagnitudeLayouts[39].bytes == 17 &&
              kMagnitudeLayouts[57].bytes == 24 && kMagnitudeLayouts[58].bytes == 25);

}  // namespace detail

// The functions below take records with a precision of 1 to 77.

inline const MagnitudeLayout& layout_of(int32_t precision) {
  return detail::kMagnitudeLayouts[static_cast<uint32_t>(precision)];
}

// The first eight bytes of a magnitude's place. What is behind a shorter magnitude means nothing.
inline uint64_t leading_word(const comn_numeric& record) {
  return detail::load_word(record.magnitude);
}

// True when the magnitude is less than 10^precision; false also in a few cases just below that.
// Bytes behind a shorter magnitude do not matter, for the limit has zeros there.
inline bool is_clearly_in_precision(const comn_numeric& record, int32_t precision) {
  return leading_word(record) < layout_of(precision).limit;
}

// The words of a magnitude in a record of a precision.
template <class Bytes>
class MagnitudeWords {
public:
  MagnitudeWords(Bytes* begin, int32_t precision)
      : begin_(begin),
        end_(begin + layout_of(precision).bytes),
        missing_bits_(layout_of(precision).missing_bits) {}

  // The uppermost word, which may be shorter than eight bytes, and word i of those below it.
  [[nodiscard]] uint64_t load_upper() const { return detail::load_word(begin_) >> missing_bits_; }
  [[nodiscard]] uint64_t load(size_t i) const { return detail::load_word(end_ - 8 * (i + 1)); }

  // The uppermost word is stored first: those below it mend what it writes beyond its end.
  void store_upper(uint64_t word) const { detail::store_word(begin_, word << missing_bits_); }
  void store(size_t i, uint64_t word) const { detail::store_word(end_ - 8 * (i + 1), word); }

private:
  Bytes* begin_;
  Bytes* end_;
  int missing_bits_;
};

// Loads the magnitude of a record of a precision. Of two words when the precision is 38 at most.
template <class Magnitude>
Magnitude load_magnitude(const comn_numeric& record, int32_t precision);

template <>
inline TwoWords load_magnitude(const comn_numeric& record, int32_t precision) {
  const MagnitudeWords words(record.magnitude, precision);
  if (precision > kDigitsOfWord) return {{words.load(0), words.load_upper()}};
  return {{words.load_upper(), 0}};
}

template <>
inline Uint256 load_magnitude(const comn_numeric& record, int32_t precision) {
  const MagnitudeWords words(record.magnitude, precision);
  if (precision > 3 * kDigitsOfWord)
    return {{words.load(0), words.load(1), words.load(2), words.load_upper()}};
  if (precision > 2 * kDigitsOfWord) return {{words.load(0), words.load(1), words.load_upper(), 0}};
  if (precision > kDigitsOfWord) return {{words.load(0), words.load_upper(), 0, 0}};
  return make_uint256(words.load_upper());
}

// Stores a magnitude that fits the precision; nothing is written behind it.
inline void store_magnitude(const TwoWords& magnitude, int32_t precision, comn_numeric& record) {
  const auto& limb = magnitude.limb;
  const MagnitudeWords words(record.magnitude, precision);
  if (precision > 2 * kDigitsOfWord) {  // 39 digits, whose third word is zero
    words.store_upper(0);
    words.store(1, limb[1]);
    words.store(0, limb[0]);
  } else if (precision > kDigitsOfWord) {
    words.store_upper(limb[1]);
    words.store(0, limb[0]);
  } else {
    store_big_endian(limb[0], record.magnitude, layout_of(precision).bytes);
  }
}

inline void store_magnitude(const Uint256& magnitude, int32_t precision, comn_numeric& record) {
  const auto& limb = magnitude.limb;
  const MagnitudeWords words(record.magnitude, precision);
  if (precision > 3 * kDigitsOfWord) {
    words.store_upper(limb[3]);
    words.store(2, limb[2]);
    words.store(1, limb[1]);
    words.store(0, limb[0]);
  } else if (precision > 2 * kDigitsOfWord) {
    words.store_upper(limb[2]);
    words.store(1, limb[1]);
    words.store(0, limb[0]);
  } else if (precision > kDigitsOfWord) {
    words.store_upper(limb[1]);
    words.store(0, limb[0]);
  } else {
    store_big_endian(limb[0], record.magnitude, layout_of(precision).bytes);
  }
}

}  // namespace tvx::numeric
