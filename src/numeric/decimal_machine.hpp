// Exact numerics from machine numbers and back.
#pragma once

#include <cstdint>
#include <limits>

#include "numeric/decimal.hpp"

namespace tvx::numeric {

// Gives the value a precision of its own when it has none of 1 to 77: the most digits that always
// fit a field of the length, 2 to 33, with scale 0.
constexpr void take_default_type(Decimal& value, int32_t field_length) {
  if (is_precision(value.precision)) return;
  value.precision = kPrecisionOfFieldLength[static_cast<size_t>(field_length - kMinFieldLength)];
  value.scale = 0;
}

// Gives the value, whose precision and scale stand, the number of an integer. kOverflow when it has
// too many digits, kInvalid for a scale above 77; the magnitude is unspecified after both.
template <class Integer>
[[nodiscard]] inline DecimalStatus from_integer(Integer number, Decimal& value) {
  const uint64_t bits = static_cast<uint64_t>(number);
  value.negative = number < 0;
  value.magnitude = make_uint256(value.negative ? 0 - bits : bits);
  const DecimalStatus status = shift_digits(value.magnitude, value.scale);
  if (status != DecimalStatus::kDone) return status;
  return exceeds_precision(value.magnitude, value.precision) ? DecimalStatus::kOverflow
                                                             : DecimalStatus::kDone;
}

// Gives the value, whose precision and scale stand, the 17 significant digits of a double, halves
// rounded away from zero at the scale; either zero becomes 0. kOverflow when there are too many
// digits, kInvalid for infinities and NaNs; the rest is unspecified after both.
[[nodiscard]] DecimalStatus from_double(double number, Decimal& value);

// The double nearest to the value, of two equally near ones the even one: what strtod makes of the
// value's text. Zero has no sign.
[[nodiscard]] double to_double(const Decimal& value);

enum class IntegerRange : uint8_t { kWithin, kAbove, kBelow };

template <class Integer>
struct IntegerPart {
  Integer value;       // the nearer limit when the integer part is out of range
  IntegerRange range;  // of the integer part: -0.5 is within the range of unsigned integers
  bool has_fraction;   // digits other than zero were cut off
};

// The value cut off at the point.
template <class Integer>
[[nodiscard]] inline IntegerPart<Integer> to_integer(const Decimal& value) {
  using Limits = std::numeric_limits<Integer>;
  Uint256 whole = value.magnitude;
  const bool has_fraction = shift_digits(whole, -value.scale) != DecimalStatus::kDone;
  const uint64_t least = 0 - static_cast<uint64_t>(Limits::min());
  const uint64_t limit = value.negative ? least : static_cast<uint64_t>(Limits::max());
  if (whole > make_uint256(limit)) {
    return value.negative ? IntegerPart<Integer>{Limits::min(), IntegerRange::kBelow, has_fraction}
                          : IntegerPart<Integer>{Limits::max(), IntegerRange::kAbove, has_fraction};
  }
  const uint64_t bits = value.negative ? 0 - whole.limb[0] : whole.limb[0];
  return {static_cast<Integer>(bits), IntegerRange::kWithin, has_fraction};
}

}  // namespace tvx::numeric
