// Doubles read from text.
#pragma once

#include <cstdint>

namespace tvx::numeric {

enum class FloatRange : uint8_t {
  kWithin,
  kOverflow,   // the number rounds to infinity
  kUnderflow,  // the number is not zero but rounds to zero
};

struct FloatParse {
  double value;
  const char* end;  // behind the number; the start of the text when it does not begin with a number
  FloatRange range;
};

// Reads the number at the start of [begin, end) as C's strtod does in the C locale: white space, a
// sign, and a decimal number, a hexadecimal one (0x1.8p3), "inf", "infinity", "nan" or "nan(...)"
// with letters, digits and underscores between the parentheses; letters of either case. The result
// is the nearest double, of two equally near ones the even one. Overflow gives an infinity,
// underflow a zero, NaN the quiet one without payload, all with the sign of the text; no number
// gives 0. Nothing outside [begin, end) is read.
FloatParse parse_float(const char* begin, const char* end);

struct PlainFloat {
  double value;
  bool is_plain;
};

// The short way of parse_float for what nearly every text is: at most a "-", then a decimal number
// in range up to the end. The text has 1 to kPlainFloatBytes bytes.
inline constexpr int kPlainFloatBytes = 32;  // seventeen digits and an exponent take up to 24
PlainFloat read_plain_float(const char* begin, const char* end);

}  // namespace tvx::numeric
