// Operations on exact numerics in descriptors: sign and magnitude stand in a field of bytes, their
// length, precision and scale beside it. Each loads Decimals, computes and stores. The result may
// be an operand.
//
// The field of every descriptor is there. The statuses are those of the operations on Decimals, and
// kInvalid, with nothing written, for a field whose length is none of 2 to 33; kOverflow for a
// result that its field does not hold. Unless a status is kDone or kDigitsDropped the field of the
// result is zero.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "numeric/decimal.hpp"

namespace tvx::numeric {

[[nodiscard]] inline bool has_field_length(const comnb_value& value) {
  return is_field_length(value.length);
}

// ---- Arithmetic --------------------------------------------------------------------------------

// The type of the result stands in its descriptor.
[[nodiscard]] DecimalStatus add_or_subtract(const comnb_value& a, const comnb_value& b,
                                            bool subtracts, comnb_value& result);
[[nodiscard]] DecimalStatus multiply(const comnb_value& a, const comnb_value& b,
                                     comnb_value& result);

// The remainder may be null. One whose field has no such length is kInvalid, too; one that its
// field does not hold is an overflow of both.
[[nodiscard]] DecimalStatus divide(const comnb_value& a, const comnb_value& b, comnb_value& result,
                                   comnb_value* remainder);

// Add one to the magnitude and take one off it, whatever the sign.
[[nodiscard]] DecimalStatus increment(comnb_value& value);
[[nodiscard]] DecimalStatus decrement(comnb_value& value);

// Divides the magnitude by ten; the remainder is left alone when the status is kInvalid.
[[nodiscard]] DecimalStatus divide_by_ten(comnb_value& value, int32_t& remainder);

// ---- Change of scale ---------------------------------------------------------------------------

// Multiplies the magnitude by 10^digits, as shift_digits does for magnitudes, or rounds halves away
// from zero instead of cutting off. Precisions and scales are left as they are.
[[nodiscard]] DecimalStatus shift_digits(const comnb_value& value, int32_t digits, bool rounding,
                                         comnb_value& out);

[[nodiscard]] DecimalStatus copy(const comnb_value& from, comnb_value& to);

// Rounds to a scale, halves away from zero, when the value has more digits behind the point, and
// sets the scale of `out`. kInvalid below 0.
[[nodiscard]] DecimalStatus round_half_away(const comnb_value& value, int32_t scale,
                                            comnb_value& out);

// The least integer that is not below the value and the greatest that is not above it; the scale of
// `out` becomes 0.
enum class Rounding { kCeiling, kFloor };
[[nodiscard]] DecimalStatus round_to_whole(const comnb_value& value, Rounding rounding,
                                           comnb_value& out);

// ---- Comparison --------------------------------------------------------------------------------

// Of values whose fields have a length of 2 to 33.
[[nodiscard]] int32_t compare(const comnb_value& a, const comnb_value& b, int32_t mode);
[[nodiscard]] bool exceeds_precision(const comnb_value& value);
[[nodiscard]] bool has_magnitude(const comnb_value& value, int32_t magnitude);

// ---- Machine numbers and text ------------------------------------------------------------------

// Stores a 32- or 64-bit integer or a double, at the precision and scale of `out` or, when the
// precision is none of 1 to 77, those of take_default_type(), which are set then. A double may
// leave the scale to its digits (kFromText).
template <class Number>
[[nodiscard]] DecimalStatus store_number(Number number, comnb_value& out);

// Reads a text as parse_decimal does. What the text decides of length, precision and scale is set
// when it was read; a precision that takes a longer field than there is, is kOverflow. The field is
// zero after kDigitsDropped, too.
[[nodiscard]] DecimalStatus read_text(std::string_view text, bool rounding, comnb_value& out);

// Writes the text of DecimalText at the end of the buffer and returns it; nothing when it does not
// fit, or the value has a scale above 77 or no field length.
[[nodiscard]] std::span<char> write_text(const comnb_value& value, std::span<char> buffer);

}  // namespace tvx::numeric
