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

// Gives both operands of a sum the same precision and scale, the integer digits and the scale of
// the larger; kOverflow when a value does not fit 77 digits then.
[[nodiscard]] DecimalStatus bring_to_one_type(Decimal& a, Decimal& b);

// The operations below compute into a result whose precision and scale stand and which is not an
// operand; the rest of it is unspecified unless the status is kDone. Digits behind its scale are
// cut off.

// a + b or a - b, the two having the same scale. kOverflow when the result has too many digits, or
// loses digits other than zero behind its scale.
[[nodiscard]] DecimalStatus add_or_subtract(const Decimal& a, const Decimal& b, bool subtracts,
                                            Decimal& result);

// a * b. kOverflow when the product of the magnitudes takes more than 256 bits, be it before digits
// are cut off, or the result has too many digits.
[[nodiscard]] DecimalStatus multiply(const Decimal& a, const Decimal& b, Decimal& result);

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
