// Binary data as hexadecimal text and back.
#pragma once

#include "convert/forms.hpp"

namespace tvx::convert {

// ---- Without formats ---------------------------------------------------------------------------

// The digits of a text: what is left without white space (of the built-in character set) at both
// ends and a "0x" or "0X" in front.
[[nodiscard]] Text hex_digits(Text text);

// The bytes that digits stand for; the first of an odd number is a byte of its own.
[[nodiscard]] constexpr int32_t bytes_of_digits(int32_t digits) {
  return digits / 2 + digits % 2;
}

struct HexReading {
  int32_t length;  // bytes written; 0 with CS_CONV_SYNTAX
  int32_t code;    // CS_SUCCEED, `too_long`, CS_CONV_SYNTAX
};

// Reads digits into a destination of `capacity` bytes. Those that have no room are not looked at.
// An odd number of digits without any room is CS_CONV_OVERFLOW.
[[nodiscard]] HexReading read_hex_digits(Text digits, uint8_t* bytes, int32_t capacity,
                                         int32_t too_long);

// Writes the digits of bytes to a text destination and completes it. With too little room it gets
// the digits of as many whole bytes as fit, nothing behind them, and `too_long`.
int32_t deliver_hex_text(const Call& call, Text bytes, int32_t too_long);

// ---- Conversions -------------------------------------------------------------------------------

// From bin and varbin.
template <Form source>
int32_t binary_to_char(const Call& call);
template <Form source>
int32_t binary_to_varchar(const Call& call);

// From text and varchar.
template <Form source>
int32_t text_to_bin(const Call& call);
int32_t char_to_varbin(const Call& call);

// CS_CONV_OVERFLOW also when there are as many bytes as the format's maxlength or more, which a
// record does not need otherwise.
int32_t varchar_to_varbin(const Call& call);

}  // namespace tvx::convert
