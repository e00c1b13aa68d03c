// A finite double is m * 2^e. Multiplied by a power of ten that gives it 17 digits before the
// point, it is rounded to an integer and laid out. The power is known to 128 bits only, so that the
// product is known to lie in a narrow interval; but no double except those of exact products comes
// so near to a tie that the interval contains it (see seventeen_digits), and rounding needs no
// second, slower way. After U. Adams, "Ryu revisited: printf floating point conversion" (2019),
// where a wider table takes the place of that argument.
#include "numeric/float_write.hpp"

#include <bit>
#include <cstdint>
#include <cstring>

#include "numeric/powers_of_five.hpp"
#include "numeric/sixteen_digits.hpp"

namespace tvx::numeric {
namespace {

constexpr uint64_t kTenTo16 = 10'000'000'000'000'000;

struct Decimal17 {
  uint64_t digits;  // 10^16 .. 10^17 - 1
  int exponent;     // of the first digit: value = digits * 10^(exponent - 16)
};

// Rounds significand * 2^(exponent - 63), the significand's bit 63 set, to 17 digits.
//
// The power q is chosen from the exponent alone and gives an integer part of 10^16 .. 2 * 10^17: in
// the upper half of that the last digit is one too many and joins the fraction.
//
// The product is exact for q = 0 .. 27 and otherwise too small by less than two units of its last
// bit. Ties occur in the exact range only: a double with a tie at the digit 10^-q is an odd
// multiple of 5 * 10^(-q - 1), or of 5 * 10^-q with 18 digits, the odd factor being between 2^53
// and 2 * 10^17. For q < 0 no double has such a factor; for q > 0 the factor must be divisible by
// 5^(q - 1), which q > 25 makes greater than 2 * 10^17.
// And no other double comes nearer to a tie of its own 17 digits than 351 units (0x13de005bd620df *
// 2^164 does), so that cutting off does not take the product across one. A search over all doubles
// stands in the tests.
Decimal17 seventeen_digits(uint64_t significand, int exponent) {
  const int decimal_exponent = floor_log10_of_power_of_two(exponent);
  const int q = 16 - decimal_exponent;
  const Uint128 product = multiply_by_power_of_ten(significand, q);

  // product * 2^(exponent - 63 + floor(log2(10^q)) - 63) is below 2 * 10^17 < 2^58 and at least
  // 2^53, so that the fraction takes 69 to 74 of the product's 127 or 128 bits.
  const int fraction_bits = 126 - exponent - floor_log2_of_power_of_ten(q);
  const uint64_t integer = static_cast<uint64_t>(product >> fraction_bits);
  const Uint128 fraction = product << (128 - fraction_bits);  // in units of 2^-128

  // What is discarded is scaled so that a tie is 8/16 of a full unit or, with the digit too many,
  // 5/16 for a unit of 10/16. The fraction has at least 54 zeros at its end: nothing is shifted
  // out, and the one that sends a tie of an odd number upwards does not carry.
  const bool one_too_many = integer >= 10 * kTenTo16;
  const uint64_t kept = one_too_many ? integer / 10 : integer;
  const Uint128 discarded = one_too_many ? Uint128{integer % 10} << 124 | fraction >> 4 : fraction;
  const Uint128 tie = Uint128{one_too_many ? 5u : 8u} << 124;
  const uint64_t rounded = kept + (discarded + (kept & 1) > tie);
  if (rounded == 10 * kTenTo16) [[unlikely]]
    return {kTenTo16, decimal_exponent + one_too_many + 1};
  return {rounded, decimal_exponent + one_too_many};
}

// The digits of a Decimal17.
struct DigitBytes {
  char first;
  SixteenDigits others;
  size_t count;  // without trailing zeros

  explicit DigitBytes(uint64_t digits)
      : first(static_cast<char>('0' + digits / kTenTo16)),
        others(SixteenDigits::of(digits % kTenTo16)),
        count(1 + others.significant_digits()) {}

  void store(char* out) const {
    out[0] = first;
    others.store(out + 1);
  }
};

char* write_exponent_form(const DigitBytes& digits, int exponent, char* out) {
  digits.store(out + 1);
  out[0] = out[1];
  out[1] = '.';
  out += digits.count > 1 ? digits.count + 1 : 1;
  const unsigned magnitude = static_cast<unsigned>(exponent < 0 ? -exponent : exponent);
  out[0] = 'e';
  out[1] = exponent < 0 ? '-' : '+';
  out[2] = static_cast<char>('0' + magnitude / 100);
  out += magnitude >= 100 ? 3 : 2;
  out[0] = static_cast<char>('0' + magnitude / 10 % 10);
  out[1] = static_cast<char>('0' + magnitude % 10);
  return out + 2;
}

// `exponent` is -4 .. 16.
char* write_fixed_form(const DigitBytes& digits, int exponent, char* out) {
  if (exponent < 0) {
    std::memcpy(out, "0.000000", 8);
    digits.store(out + 1 - exponent);
    return out + 1 - exponent + digits.count;
  }
  digits.store(out);
  const auto in_front = static_cast<size_t>(exponent);  // of the point, behind the first digit
  if (digits.count <= in_front + 1) return out + in_front + 1;
  // Those behind the point move up by a character.
  out[17] = out[16];
  digits.others.joined(digits.others.moved_back(), 16 - in_front).store(out + 1);
  out[in_front + 1] = '.';
  return out + digits.count + 1;
}

}  // namespace

char* write_general17(double value, char* out) {
  const uint64_t bits = std::bit_cast<uint64_t>(value);
  *out = '-';
  out += bits >> 63;
  const int exponent_field = static_cast<int>(bits >> 52 & 0x7FF);
  const uint64_t fraction_field = bits & 0x000F'FFFF'FFFF'FFFF;

  if (exponent_field == 0x7FF) {
    std::memcpy(out, fraction_field == 0 ? "inf" : "nan", 3);
    return out + 3;
  }
  uint64_t significand = fraction_field << 11 | uint64_t{1} << 63;
  int exponent = exponent_field - 1023;
  if (exponent_field == 0) [[unlikely]] {
    if (fraction_field == 0) {
      *out = '0';
      return out + 1;
    }
    const int zeros = std::countl_zero(fraction_field);
    significand = fraction_field << zeros;
    exponent = -1011 - zeros;  // 12 zeros: the bit of 2^-1023
  }
  const Decimal17 decimal = seventeen_digits(significand, exponent);
  const DigitBytes digits(decimal.digits);
  return decimal.exponent < -4 || decimal.exponent > 16
             ? write_exponent_form(digits, decimal.exponent, out)
             : write_fixed_form(digits, decimal.exponent, out);
}

}  // namespace tvx::numeric
