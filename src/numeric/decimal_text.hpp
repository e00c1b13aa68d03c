// Exact numerics read from text and written as text.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

#include "numeric/decimal.hpp"

namespace tvx::numeric {

inline constexpr int32_t kFromText = 255;  // a precision or scale that the text decides

struct DecimalTextRules {
  int32_t precision;   // 1 to 77, or kFromText
  int32_t scale;       // 0 to 77, or kFromText
  int32_t max_digits;  // significant digits taken, up to 77: those that always fit the field
  bool rounding;       // digits that cannot be taken are rounded, halves away from zero
};

// The rules of a destination whose field has the standard length.
constexpr DecimalTextRules text_rules(int32_t precision, int32_t scale, bool rounding) {
  const int32_t length = precision == kFromText ? kMagnitudeBytes + 1 : field_length(precision);
  return {precision, scale, kPrecisionOfFieldLength[static_cast<size_t>(length - kMinFieldLength)],
          rounding};
}

// Reads a text of single-byte characters: blanks, a sign, blanks, digits with at most one point,
// then white space, or "e" or "E" with a sign and digits, of which the second character, when there
// is one, is a digit too; from the third on blanks may end the exponent. A mantissa without digits
// is 0, an exponent without digits 0 too.
//
// A digit that cannot be taken, because there are `max_digits` already, leading zeros not counted,
// or because it lies behind the scale, is kDigitsDropped without rounding, zero or not; with
// rounding and behind the point it ends the reading. kInvalid: no number, or one to be multiplied
// by 10^78 or more for its scale. kOverflow: too many digits for the precision, or a scale
// above 77.
//
// Of a precision from the text: as many digits as were read, and one more than the scale when they
// do not exceed it (77 at most). Of a scale from the text: the digits behind the point that are
// left when the exponent has moved it. The value stands when the status is kDone.
[[nodiscard]] DecimalStatus parse_decimal(std::string_view text, const DecimalTextRules& rules,
                                          Decimal& value);

// "-0." and 77 digits, or a sign, 78 digits of an overlong magnitude and a point.
inline constexpr int32_t kMaxDecimalText = 80;

// The text of one value: "-" when it is below zero, integer digits without leading zeros but at
// least one, and, for a scale above 0, a point and as many digits as the scale says (0 to 77).
class DecimalText {
public:
  explicit DecimalText(const Decimal& value);

  [[nodiscard]] int32_t length() const {
    return (negative_ ? 1 : 0) + digits_ + (scale_ > 0 ? 1 : 0);
  }

  // Where the point stands, which the text must have.
  [[nodiscard]] int32_t point() const { return length() - scale_ - 1; }

  // Writes length() characters, or the first ones of them.
  void write(char* out) const {
    const char* const digits = buffer_ + sizeof buffer_ - digits_;
    const auto whole = static_cast<size_t>(digits_ - scale_);
    *out = '-';
    out += negative_ ? 1 : 0;
    std::memcpy(out, digits, whole);
    if (scale_ == 0) return;
    out[whole] = '.';
    std::memcpy(out + whole + 1, digits + whole, static_cast<size_t>(scale_));
  }
  void write_first(int32_t characters, char* out) const;

  DecimalText(const DecimalText&) = delete;
  DecimalText& operator=(const DecimalText&) = delete;

private:
  char buffer_[kMaxDecimalText + 40];  // digits up to the end: five pieces of nineteen and zeros
  int32_t digits_;                     // more than the scale
  int32_t scale_;
  bool negative_;
};

}  // namespace tvx::numeric
