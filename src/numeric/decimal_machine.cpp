// Doubles as exact numerics and back; integers are in the header.
#include "numeric/decimal_machine.hpp"

#include <bit>

#include "numeric/decimal_text.hpp"
#include "numeric/float_nearest.hpp"
#include "numeric/float_write.hpp"

namespace tvx::numeric {
namespace {

// value >> bits, or << -bits, as a 512-bit number; `inexact` becomes true when ones are shifted
// out.
Uint512 shifted_down(const Uint256& value, int bits, bool& inexact) {
  Uint512 result{};
  const int whole = (bits < 0 ? bits - 63 : bits) / 64;  // rounded down
  const int rest = bits - 64 * whole;
  for (int i = 0; i < 4; ++i) {
    const uint64_t word = value.limb[i];
    const uint64_t below = word << 1 << (63 - rest);
    const int to = i - whole;
    if (to >= 0) result.limb[to] |= word >> rest;
    if (to >= 1) result.limb[to - 1] |= below;
    inexact |= (to < 0 && word != 0) || (to == 0 && below != 0);
  }
  return result;
}

// magnitude / 10^scale to 63 or 64 bits, which nearest_double rounds. The dividend is scaled to 63
// bits more than the divisor has, so that it takes 256 + 63 at most.
uint64_t nearest_quotient(const Uint256& magnitude, int32_t scale) {
  const Uint256& divisor = kWidePowersOfTen[static_cast<size_t>(scale)];
  const int shift = magnitude.bit_length() - divisor.bit_length() - 63;
  bool inexact = false;
  Uint256 quotient;
  Uint256 remainder;
  divide(shifted_down(magnitude, shift, inexact), divisor, quotient, remainder);
  return nearest_double(quotient.limb[0], inexact || !remainder.is_zero(), shift);
}

}  // namespace

DecimalStatus from_double(double number, Decimal& value) {
  char text[kGeneral17Bytes];
  const char* const end = write_general17(number, text);
  return parse_decimal({text, static_cast<size_t>(end - text)},
                       {value.precision, value.scale, kMaxPrecision, true}, value);
}

double to_double(const Decimal& value) {
  const uint64_t bits = value.magnitude.used() <= 1
                            ? nearest_double(value.magnitude.limb[0], int64_t{-value.scale})
                            : nearest_quotient(value.magnitude, value.scale);
  const bool negative = value.negative && !value.is_zero();
  return std::bit_cast<double>(bits | uint64_t{negative} << 63);
}

}  // namespace tvx::numeric
