// Doubles written as text.
#pragma once

#include <cstddef>

namespace tvx::numeric {

// Room that write_general17 needs: sign, digit, point, 16 digits, "e-" and three digits of
// exponent, as in "-2.2250738585072014e-308". The fixed form needs less: "-0.000" and 17 digits.
inline constexpr size_t kGeneral17Bytes = 1 + 1 + 1 + 16 + 2 + 3;

// Writes a double as C's printf writes it with "%.17g" in the C locale: correctly rounded to 17
// significant digits (a tie to the even digit), without trailing zeros, in the exponent form when
// the exponent is below -4 or above 16; infinities and NaNs as "inf", "nan", with "-" when the sign
// bit is set. Returns the end of the text, which has no terminator. `out` has room for
// kGeneral17Bytes bytes; those behind the end may have been overwritten too.
char* write_general17(double value, char* out);

}  // namespace tvx::numeric
