// The four operations on exact numerics and their comparison.
#pragma once

#include <cstdint>

#include "numeric/decimal.hpp"

namespace tvx::numeric {

struct DecimalType {
  int32_t precision;  // below 1 when the operands' scales leave no digit: an overflow
  int32_t scale;

  [[nodiscard]] constexpr bool is_valid() const { return is_precision(precision); }
};

namespace detail {

// Integer digits come first: the scale gets what the precision leaves.
constexpr DecimalType capped_type(int32_t integer_digits, int32_t scale) {
  const int32_t whole = integer_digits < kMaxPrecision ? integer_digits : kMaxPrecision;
  const int32_t wanted = scale < kMaxScale ? scale : kMaxScale;
  const int32_t all = whole + wanted;
  const int32_t precision = all < kMaxPrecision ? all : kMaxPrecision;
  return {precision, wanted < precision - whole ? wanted : precision - whole};
}

constexpr int32_t larger(int32_t a, int32_t b) {
  return a > b ? a : b;
}

}  // namespace detail

// The types of results, from precisions and scales of the operands, which are Decimals or records;
// those of a sum have one type.
template <class Operand>
constexpr DecimalType sum_type(const Operand& operand) {
  const int32_t precision = operand.precision + 1;
  return {precision < kMaxPrecision ? precision : kMaxPrecision, operand.scale};
}
template <class Operand>
constexpr DecimalType product_type(const Operand& a, const Operand& b) {
  return detail::capped_type(a.precision - a.scale + b.precision - b.scale + 1, a.scale + b.scale);
}
template <class Operand>
constexpr DecimalType quotient_type(const Operand& a, const Operand& b) {
  return detail::capped_type(a.precision - a.scale + b.scale,
                             detail::larger(6, b.scale + a.precision + 1));
}

constexpr bool have_one_type(const Decimal& a, const Decimal& b) {
  // Two comparisons joined by && become one load of both numbers, which waits for their stores.
  return ((a.precision ^ b.precision) | (a.scale ^ b.scale)) == 0;
}

// Gives both operands of a sum the same precision and scale, the integer digits and the scale of
// the larger; kOverflow when a value does not fit 77 digits then.
[[nodiscard]] DecimalStatus bring_to_one_type(Decimal& a, Decimal& b);

// The operations below compute into a result whose precision and scale stand and which is not an
// operand; the rest of it is unspecified unless the status is kDone. Digits behind its scale are
// cut off.

// a + b or a - b, the two having the same scale. kOverflow when the result has too many digits, or
// loses digits other than zero behind its scale.
[[nodiscard]] inline DecimalStatus add_or_subtract(const Decimal& a, const Decimal& b,
                                                   bool subtracts, Decimal& result) {
  const bool opposite = (a.negative != b.negative) != subtracts;
  const bool turns = opposite && is_less(a.magnitude, b.magnitude);
  result.magnitude = turns ? b.magnitude : a.magnitude;
  const Uint256& other = turns ? a.magnitude : b.magnitude;
  const bool carry = opposite ? subtract(result.magnitude, other) : add(result.magnitude, other);
  result.negative = a.negative != turns;
  if (result.scale != a.scale) {
    Uint256 shifted = result.magnitude;
    if (shift_digits(shifted, result.scale - a.scale) != DecimalStatus::kDone)
      return DecimalStatus::kOverflow;
    result.magnitude = shifted;
  }
  const bool overflow = carry || exceeds_precision(result.magnitude, result.precision);
  return overflow ? DecimalStatus::kOverflow : DecimalStatus::kDone;
}

// a * b. kOverflow when the product of the magnitudes takes more than 256 bits, be it before digits
// are cut off, or the result has too many digits.
[[nodiscard]] inline DecimalStatus multiply(const Decimal& a, const Decimal& b, Decimal& result) {
  result.negative = a.negative != b.negative;
  if ((upper_half(a.magnitude) | upper_half(b.magnitude)) == 0) {
    result.magnitude = multiply(lower_half(a.magnitude), lower_half(b.magnitude));
  } else {
    // Copies, so that operands of the short way need not lie in memory.
    const Uint256 x = a.magnitude;
    const Uint256 y = b.magnitude;
    Uint256 product;
    if (narrow(multiply(x, y), product)) return DecimalStatus::kOverflow;
    result.magnitude = product;
  }
  const int32_t digits = result.scale - a.scale - b.scale;
  if (digits != 0) {
    Uint256 shifted = result.magnitude;
    const DecimalStatus status = shift_digits(shifted, digits);
    if (status != DecimalStatus::kDone && status != DecimalStatus::kDigitsDropped) return status;
    result.magnitude = shifted;
  }
  return exceeds_precision(result.magnitude, result.precision) ? DecimalStatus::kOverflow
                                                               : DecimalStatus::kDone;
}

// a / b. kDivisionByZero; kOverflow when the operands' scales and the result's lie more than 77
// digits apart or the result has too many digits. The remainder, when asked for, is that of the
// magnitudes as they were divided: result scale + b's scale digits stand behind its point, or a's
// scale when those are more. It has the sign of a.
[[nodiscard]] DecimalStatus divide(const Decimal& a, const Decimal& b, Decimal& result,
                                   Decimal* remainder);

inline constexpr int32_t kCompareSigned = 1;  // otherwise magnitudes only
inline constexpr int32_t kCompareScaled = 2;  // at the same scale; otherwise as they stand

// -1, 0 or 1 as a is less than, equal to or greater than b. To the same scale comes the value with
// the smaller one, or, when that would take more than 77 digits, the other by truncation.
[[nodiscard]] int32_t compare(const Decimal& a, const Decimal& b, int32_t mode);

}  // namespace tvx::numeric
