// Bytes as hexadecimal digits, two a byte, the one of the high half first.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/ascii.hpp"

namespace tvx::base {

inline constexpr int kNoHexDigit = -1;

// The value of a digit of either case, else kNoHexDigit.
[[nodiscard]] constexpr int hex_digit_value(char character) {
  if (is_digit(character)) return character - '0';
  const char lower = static_cast<char>(character | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : kNoHexDigit;
}

// Writes the 2 * count digits of `count` bytes in lower case. The two must not overlap.
void write_hex(const uint8_t* bytes, size_t count, char* digits);

// Reads `count` pairs of digits as bytes. Returns the pairs in front of the first one that is no
// number; only their bytes are written. `bytes` may begin where `digits` does.
[[nodiscard]] size_t read_hex(const char* digits, size_t count, uint8_t* bytes);

}  // namespace tvx::base
