// The four operations and the comparison on records, comn_numeric, whose headers is_numeric() has
// approved. The result may be an operand.
#pragma once

#include <cstdint>

#include "numeric/decimal.hpp"

namespace tvx::numeric {

// They set the result's precision and scale by the types of the operands. Statuses are those of the
// operations on Decimals; where a result has a type but no value, its zero is stored. Nothing is
// stored when an operand of a sum does not fit their one type, or the result's type has no digits
// (kOverflow).
[[nodiscard]] DecimalStatus add(const comn_numeric& a, const comn_numeric& b, comn_numeric& out);
[[nodiscard]] DecimalStatus subtract(const comn_numeric& a, const comn_numeric& b,
                                     comn_numeric& out);
[[nodiscard]] DecimalStatus multiply(const comn_numeric& a, const comn_numeric& b,
                                     comn_numeric& out);
[[nodiscard]] DecimalStatus divide(const comn_numeric& a, const comn_numeric& b, comn_numeric& out);

// -1, 0 or 1 as a is less than, equal to or greater than b, whatever their scales.
[[nodiscard]] int32_t compare(const comn_numeric& a, const comn_numeric& b);

}  // namespace tvx::numeric
