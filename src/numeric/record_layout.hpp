// Magnitudes in records, comn_numeric, as words. A record always has room for the longest
// magnitude, so that a short one is loaded as part of a whole word; it is stored exactly. Nineteen
// digits are a word: 10^(19 n) needs 8 n bytes, up to n = 4.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/bytes.hpp"
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

// The first two bytes of a record, precision and scale, as one number; what they are added to or
// compared with is both at once.
inline uint32_t header_of(const comn_numeric& record) {
  return base::load<uint16_t>(&record);
}
constexpr uint32_t make_header(int32_t precision, int32_t scale) {
  return static_cast<uint32_t>(precision | scale << 8);
}
constexpr int32_t precision_of(uint32_t header) {
  return static_cast<int32_t>(header & 0xFF);
}

// Of a precision and a scale up to 205: whether both are 77 at the most, adding 50 then setting the
// top bit of none.
constexpr bool is_valid_header(uint32_t header) {
  static_assert(kMaxPrecision == 77);
  return ((header + make_header(50, 50)) & make_header(0x80, 0x80)) == 0;
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

// Loads a magnitude of so many words into one of as many or more.
template <size_t kWords, size_t kLimbs = kWords>
inline WideInteger<kLimbs> load_words(const comn_numeric& record, int32_t precision) {
  const MagnitudeWords words(record.magnitude, precision);
  WideInteger<kLimbs> magnitude{};
  for (size_t i = 0; i + 1 < kWords; ++i) magnitude.limb[i] = words.load(i);
  magnitude.limb[kWords - 1] = words.load_upper();
  return magnitude;
}

// Stores a magnitude's lower words, as many as its precision has; one may be missing in it.
template <size_t kWords, size_t kLimbs>
inline void store_words(const WideInteger<kLimbs>& magnitude, int32_t precision,
                        comn_numeric& record) {
  const MagnitudeWords words(record.magnitude, precision);
  words.store_upper(kWords > kLimbs ? 0 : magnitude.limb[kWords - 1]);
  for (size_t i = kWords - 1; i-- > 0;) words.store(i, magnitude.limb[i]);
}

// Loads the magnitude of a record of a precision that has at most so many words.
template <size_t kLimbs, size_t kWords = kLimbs>
inline WideInteger<kLimbs> load_magnitude(const comn_numeric& record, int32_t precision) {
  if constexpr (kWords > 1)
    if (precision <= static_cast<int32_t>(kWords - 1) * kDigitsOfWord)
      return load_magnitude<kLimbs, kWords - 1>(record, precision);
  return load_words<kWords, kLimbs>(record, precision);
}

// Stores a magnitude that fits the precision, which has kLeast to kMost words; nothing is written
// behind it.
template <size_t kLeast, size_t kMost, size_t kLimbs>
inline void store_magnitude(const WideInteger<kLimbs>& magnitude, int32_t precision,
                            comn_numeric& record) {
  if constexpr (kMost == 1)
    store_big_endian(magnitude.limb[0], record.magnitude, layout_of(precision).bytes);
  else if (kLeast == kMost || precision > static_cast<int32_t>(kMost - 1) * kDigitsOfWord)
    store_words<kMost>(magnitude, precision, record);
  else
    store_magnitude<kLeast, kMost - 1>(magnitude, precision, record);
}

}  // namespace tvx::numeric
