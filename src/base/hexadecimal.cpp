// Sixteen bytes at a time in the vector types of the compiler, which become the instructions of the
// machine where it has them and plain ones where not; what is left over byte by byte.
#include "base/hexadecimal.hpp"

#include "base/bytes.hpp"

namespace tvx::base {
namespace {

constexpr size_t kBlock = 16;

using Vector = uint8_t __attribute__((vector_size(kBlock)));

// What the digits 'a' to 'f' lie beyond those that would follow '9'.
constexpr uint8_t kGap = 'a' - ('9' + 1);

// ---- Writing -----------------------------------------------------------------------------------

// Of values below 16. Those above 9 become negative numbers, of which only the bits of the gap
// remain.
Vector digits_of(Vector values) {
  return values + '0' + (Vector(values > 9) & kGap);
}

void write_block(const uint8_t* bytes, char* digits) {
  const auto block = load<Vector>(bytes);
  const Vector high = digits_of(block >> 4), low = digits_of(block & 15);
  store(digits,
        __builtin_shufflevector(high, low, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
  store(digits + kBlock, __builtin_shufflevector(high, low, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28,
                                                 13, 29, 14, 30, 15, 31));
}

// ---- Reading -----------------------------------------------------------------------------------

struct Values {
  Vector values;
  Vector legal;  // all bits of a byte, or none
};

Values values_of(Vector digits) {
  const Vector decimal = digits - '0', letter = (digits | 0x20) - 'a';
  const Vector is_decimal(decimal < 10), is_letter(letter < 6);
  return {(is_decimal & decimal) | (is_letter & (letter + 10)), is_decimal | is_letter};
}

// Whether all pairs of the block are numbers; nothing is written when not.
bool read_block(const char* digits, uint8_t* bytes) {
  const auto [first, first_legal] = values_of(load<Vector>(digits));
  const auto [second, second_legal] = values_of(load<Vector>(digits + kBlock));
  const Vector legal = first_legal & second_legal;
  uint64_t halves[2];
  store(halves, legal);
  if ((halves[0] & halves[1]) != ~uint64_t{0}) return false;
  const Vector high = __builtin_shufflevector(first, second, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20,
                                              22, 24, 26, 28, 30);
  const Vector low = __builtin_shufflevector(first, second, 1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21,
                                             23, 25, 27, 29, 31);
  store(bytes, (high << 4) | low);
  return true;
}

}  // namespace

void write_hex(const uint8_t* bytes, size_t count, char* digits) {
  static constexpr char kDigits[] = "0123456789abcdef";
  size_t i = 0;
  for (; count - i >= kBlock; i += kBlock) write_block(bytes + i, digits + 2 * i);
  for (; i < count; ++i) {
    digits[2 * i] = kDigits[bytes[i] >> 4];
    digits[2 * i + 1] = kDigits[bytes[i] & 15];
  }
}

size_t read_hex(const char* digits, size_t count, uint8_t* bytes) {
  size_t i = 0;
  while (count - i >= kBlock && read_block(digits + 2 * i, bytes + i)) i += kBlock;
  for (; i < count; ++i) {
    const int high = hex_digit_value(digits[2 * i]), low = hex_digit_value(digits[2 * i + 1]);
    if (high == kNoHexDigit || low == kNoHexDigit) break;
    bytes[i] = static_cast<uint8_t>(high << 4 | low);
  }
  return i;
}

}  // namespace tvx::base
