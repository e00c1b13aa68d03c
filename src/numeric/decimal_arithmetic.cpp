// Magnitudes are added, multiplied and divided as they stand; what the operations add is the sign,
// the change to the result's scale and the check of its digits.
#include "numeric/decimal_arithmetic.hpp"

#include <compare>

namespace tvx::numeric {
namespace {

DecimalStatus checked(const Decimal& result) {
  return exceeds_precision(result.magnitude, result.precision) ? DecimalStatus::kOverflow
                                                               : DecimalStatus::kDone;
}

DecimalStatus bring_to_type(Decimal& value, int32_t precision, int32_t scale) {
  if (value.precision == precision && value.scale == scale) return DecimalStatus::kDone;
  value.precision = precision;
  const DecimalStatus status = rescale(value, scale);
  return status == DecimalStatus::kDone ? checked(value) : status;
}

}  // namespace

DecimalStatus bring_to_one_type(Decimal& a, Decimal& b) {
  const int32_t scale = detail::larger(a.scale, b.scale);
  const int32_t whole = detail::larger(a.precision - a.scale, b.precision - b.scale);
  const int32_t precision = whole + scale < kMaxPrecision ? whole + scale : kMaxPrecision;
  const DecimalStatus status = bring_to_type(a, precision, scale);
  return status == DecimalStatus::kDone ? bring_to_type(b, precision, scale) : status;
}

DecimalStatus add_or_subtract(const Decimal& a, const Decimal& b, bool subtracts, Decimal& result) {
  const bool opposite = (a.negative != b.negative) != subtracts;
  const bool turns = opposite && a.magnitude < b.magnitude;
  Uint256 magnitude = turns ? b.magnitude : a.magnitude;
  const Uint256& other = turns ? a.magnitude : b.magnitude;
  const bool carry = opposite ? subtract(magnitude, other) : add(magnitude, other);
  if (carry || shift_digits(magnitude, result.scale - a.scale) != DecimalStatus::kDone)
    return DecimalStatus::kOverflow;
  result.magnitude = magnitude;
  result.negative = a.negative != turns;
  return checked(result);
}

DecimalStatus multiply(const Decimal& a, const Decimal& b, Decimal& result) {
  if (narrow(multiply(a.magnitude, b.magnitude), result.magnitude)) return DecimalStatus::kOverflow;
  const DecimalStatus status = shift_digits(result.magnitude, result.scale - a.scale - b.scale);
  if (status != DecimalStatus::kDone && status != DecimalStatus::kDigitsDropped) return status;
  result.negative = a.negative != b.negative;
  return checked(result);
}

DecimalStatus divide(const Decimal& a, const Decimal& b, Decimal& result, Decimal* remainder) {
  if (b.is_zero()) return DecimalStatus::kDivisionByZero;
  const int32_t shift = result.scale - a.scale + b.scale;
  if (shift > kGreatestTen || shift < -kGreatestTen) return DecimalStatus::kOverflow;

  // A power of ten comes to the side where it is a factor.
  Uint256 scaled_divisor;
  const Uint256* divisor = &b.magnitude;
  bool divisor_is_greater = false;
  if (shift < 0) {
    scaled_divisor = b.magnitude;
    divisor = &scaled_divisor;
    // A divisor beyond 256 bits is greater than any dividend.
    divisor_is_greater = multiply_by_ten_to(scaled_divisor, -shift);
  }
  Uint256 rest;
  bool overflow = false;
  if (divisor_is_greater) {
    result.magnitude = {};
    rest = a.magnitude;
  } else {
    const int32_t digits = shift > 0 ? shift : 0;
    const Uint256& power = kWidePowersOfTen[static_cast<size_t>(digits)];
    overflow = divide(multiply(a.magnitude, power), *divisor, result.magnitude, rest);
  }
  result.negative = a.negative != b.negative;
  if (remainder != nullptr) {
    remainder->magnitude = rest;
    remainder->negative = a.negative;
  }
  if (overflow) return DecimalStatus::kOverflow;
  return checked(result);
}

int32_t compare(const Decimal& a, const Decimal& b, int32_t mode) {
  const bool is_signed = (mode & kCompareSigned) != 0;
  if (is_signed && a.negative != b.negative && !(a.is_zero() && b.is_zero()))
    return a.negative ? -1 : 1;

  std::strong_ordering order = a.magnitude <=> b.magnitude;
  if ((mode & kCompareScaled) != 0 && a.scale != b.scale) {
    const bool a_grows = a.scale < b.scale;
    Uint256 grown = a_grows ? a.magnitude : b.magnitude;
    Uint256 other = a_grows ? b.magnitude : a.magnitude;
    const int32_t digits = a_grows ? b.scale - a.scale : a.scale - b.scale;
    const bool fits = shift_digits(grown, digits) == DecimalStatus::kDone &&
                      !exceeds_precision(grown, kMaxPrecision);
    if (!fits) {
      grown = a_grows ? a.magnitude : b.magnitude;
      // Cutting off is what is wanted here.
      static_cast<void>(shift_digits(other, -digits));
    }
    order = a_grows ? grown <=> other : other <=> grown;
  }
  if (is_signed && a.negative) order = 0 <=> order;
  return order < 0 ? -1 : order > 0;
}

}  // namespace tvx::numeric
