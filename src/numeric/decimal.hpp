// Exact numerics: a sign, a magnitude of up to 77 digits and a fixed number of digits behind the
// point. Outside the library a numeric is a field of bytes, the sign and a big-endian magnitude,
// alone or behind a header of precision and scale; inside it is a Decimal. Its text is in
// decimal_text.hpp, machine numbers are in decimal_machine.hpp, the four operations in
// decimal_arithmetic.hpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/bytes.hpp"
#include "numeric/precision.hpp"
#include "numeric/record_layout.hpp"
#include "numeric/uint256.hpp"
#include "tvxcomn/datatypes.h"

namespace tvx::numeric {

// The results of the exported primitives.
enum class DecimalStatus : int32_t {
  kDone = 0,
  kOverflow = 1,
  kInvalid = 2,  // an argument outside its range, or a text that is no number
  kDivisionByZero = 3,
  kDigitsDropped = 6,  // digits other than zero, by truncation; the truncated value stands
};

inline constexpr int32_t kMaxScale = 77;

// The value is magnitude / 10^scale. A magnitude taken from a field may have more digits than the
// precision, up to 78; zero may be negative. What the library stores has neither.
struct Decimal {
  Uint256 magnitude;
  int32_t precision;
  int32_t scale;
  bool negative;

  [[nodiscard]] constexpr bool is_zero() const { return magnitude.is_zero(); }
};

// True when the magnitude has more digits than a precision, of which 78 and more never do.
constexpr bool exceeds_precision(const Uint256& magnitude, int32_t precision) {
  return precision <= kGreatestTen &&
         !is_less(magnitude, kWidePowersOfTen[static_cast<size_t>(precision)]);
}

// ---- Change of scale ---------------------------------------------------------------------------

// Multiplies a magnitude by 10^digits. Above 0: kInvalid from 78 on, kOverflow when the product
// does not fit 256 bits, the magnitude being unspecified after both. Below 0: truncates,
// kDigitsDropped.
[[nodiscard]] inline DecimalStatus shift_digits(Uint256& magnitude, int32_t digits) {
  if (digits == 0) return DecimalStatus::kDone;
  if (digits > 0) {
    if (digits > kGreatestTen) return DecimalStatus::kInvalid;
    return multiply_by_ten_to(magnitude, digits) ? DecimalStatus::kOverflow : DecimalStatus::kDone;
  }
  bool dropped = !magnitude.is_zero();
  if (digits < -kGreatestTen)
    magnitude = {};
  else
    dropped = divide_by_ten_to(magnitude, -digits);
  return dropped ? DecimalStatus::kDigitsDropped : DecimalStatus::kDone;
}

// Divides a magnitude by 10^digits, 0 or more, and rounds to the nearest, halves up.
constexpr void drop_digits_rounding(Uint256& magnitude, int32_t digits) {
  if (digits <= 0) return;
  if (digits > kGreatestTen + 1) {  // less than a tenth of a unit
    magnitude = {};
    return;
  }
  // Only the first of the dropped digits decides.
  divide_by_ten_to(magnitude, digits - 1);
  const uint64_t first = divide(magnitude, kTenDivisors[1]);
  if (first >= 5) add(magnitude, make_uint256(1));
}

// Changes the scale by truncation; the precision stays and is not checked. Statuses as those of
// shift_digits; after kOverflow and kInvalid the value is unspecified.
[[nodiscard]] inline DecimalStatus rescale(Decimal& value, int32_t scale) {
  const int32_t digits = scale - value.scale;
  value.scale = scale;
  return shift_digits(value.magnitude, digits);
}

// Rounds to a scale of 0 or more, halves away from zero, when the value has more digits behind the
// point; does nothing otherwise. A value that becomes zero loses its sign.
constexpr void round_half_away(Decimal& value, int32_t scale) {
  if (value.scale <= scale) return;
  drop_digits_rounding(value.magnitude, value.scale - scale);
  value.scale = scale;
  if (value.is_zero()) value.negative = false;
}

// ---- Fields and records ------------------------------------------------------------------------

constexpr bool is_field_length(int32_t length) {
  return length >= kMinFieldLength && length <= kMagnitudeBytes + 1;
}

// Loads a field of sign and magnitude; its length is 2 to 33.
inline Decimal load_field(const uint8_t* field, int32_t length, int32_t precision, int32_t scale) {
  return {load_big_endian(field + 1, static_cast<size_t>(length - 1)), precision, scale,
          field[0] != 0};
}

inline void clear_field(uint8_t* field, int32_t length) {
  std::memset(field, 0, static_cast<size_t>(length));
}

// Stores a value whose magnitude fits right-aligned in a field of 2 to 33 bytes, the sign of zero
// as 0.
inline void put_field(const Decimal& value, uint8_t* field, int32_t length) {
  field[0] = value.negative && !value.is_zero();
  store_big_endian(value.magnitude, field + 1, static_cast<size_t>(length - 1));
}

// Stores a value in a field of 2 to 33 bytes. kOverflow when the magnitude
// is too long: the field is zero then. The sign of zero is 0.
[[nodiscard]] inline DecimalStatus store_field(const Decimal& value, uint8_t* field,
                                               int32_t length) {
  if (byte_length(value.magnitude) >= length) [[unlikely]] {
    clear_field(field, length);
    return DecimalStatus::kOverflow;
  }
  put_field(value, field, length);
  return DecimalStatus::kDone;
}

// True for a precision of 1 to 77 and a scale of at most 77: records with another header are no
// numerics (CS_CONV_DOMAIN).
constexpr bool is_numeric_type(int32_t precision, int32_t scale) {
  return is_precision(precision) && scale >= 0 && scale <= kMaxScale;
}

inline bool is_numeric(const comn_numeric& record) {
  return (record.precision - 1u < kMaxPrecision) & (record.scale <= kMaxScale);
}

// The same of two records, whose four bytes are looked at together: none is above 77 when adding 50
// sets the top bit of none that has it clear, and no precision is 0 when adding 127 sets that of
// both.
inline bool are_numerics(const comn_numeric& a, const comn_numeric& b) {
  static_assert(kMaxPrecision == 77 && kMaxScale == 77);
  constexpr uint32_t tops = 0x8080'8080;
  constexpr uint32_t tops_of_precisions = 0x0080'0080;
  const uint32_t headers = header_of(a) | header_of(b) << 16;
  const uint32_t above = (headers | (headers + 0x3232'3232)) & tops;
  const uint32_t given = ((headers & 0x007F'007F) + 0x007F'007F) & tops_of_precisions;
  return (above | (given ^ tops_of_precisions)) == 0;
}

// Bytes of a record in use: header, sign and magnitude of the precision.
constexpr int32_t record_length(int32_t precision) {
  return 2 + field_length(precision);
}

// Loads a record whose header is_numeric() has approved; nothing behind its bytes in use is read.
inline Decimal load_numeric(const comn_numeric& record) {
  return {load_big_endian(record.magnitude, layout_of(record.precision).bytes), record.precision,
          record.scale, record.sign != 0};
}

// Stores a value whose digits do not exceed its precision of 1 to 77, the sign of zero as 0;
// nothing is written behind the bytes in use. The precision has kLeast to kMost words.
template <size_t kLeast = 1, size_t kMost = 4, size_t kLimbs>
inline void put_numeric(const WideInteger<kLimbs>& magnitude, bool negative, uint32_t header,
                        comn_numeric& record) {
  base::store(&record, static_cast<uint16_t>(header));
  record.sign = negative & !magnitude.is_zero();
  store_magnitude<kLeast, kMost>(magnitude, precision_of(header), record);
}
inline void put_numeric(const Decimal& value, comn_numeric& record) {
  put_numeric(value.magnitude, value.negative, make_header(value.precision, value.scale), record);
}

// Stores a value of a precision of 1 to 77. kOverflow when it has more digits: its zero is stored
// then.
[[nodiscard]] inline DecimalStatus store_numeric(const Decimal& value, comn_numeric& record) {
  if (exceeds_precision(value.magnitude, value.precision)) [[unlikely]] {
    put_numeric({{}, value.precision, value.scale, false}, record);
    return DecimalStatus::kOverflow;
  }
  put_numeric(value, record);
  return DecimalStatus::kDone;
}

}  // namespace tvx::numeric
