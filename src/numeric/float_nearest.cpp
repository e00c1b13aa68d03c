// The exact way from a decimal to a double, for the few numbers that lie about half-way between
// two.
#include "numeric/float_nearest.hpp"

#include <algorithm>
#include <bit>

#include "numeric/powers_of_five.hpp"

namespace tvx::numeric {
namespace {

// A half-way point of doubles has at most 768 significant digits, those of (2^54 - 1) * 5^1075, so
// of what follows after so many it matters only whether it is zero.
constexpr int kDecidingDigits = 768;

struct ExactDecimal {
  BigInteger significand;
  int64_t exponent;
};

// The number with the first 768 digits and, if any other than zero follows, a one behind them.
ExactDecimal exact_decimal(const DecimalNumber& number) {
  ExactDecimal exact{BigInteger(number.significand), number.exponent};
  if (number.first_digit == nullptr) return exact;
  exact.significand = BigInteger(0);
  int digits = 0;
  const char* text = number.first_digit;
  // Digits gather in a word before they go to the long number.
  uint64_t part = 0;
  uint64_t part_unit = 1;
  for (; text != number.end && digits < kDecidingDigits; ++text) {
    if (*text == '.') continue;
    part = part * 10 + static_cast<uint64_t>(*text - '0');
    part_unit *= 10;
    ++digits;
    if (digits % kSignificandDigits == 0) {
      exact.significand.multiply_add(part_unit, part);
      part = 0;
      part_unit = 1;
    }
  }
  exact.significand.multiply_add(part_unit, part);
  exact.exponent += kSignificandDigits - digits;
  if (std::any_of(text, number.end, [](char c) { return c != '0' && c != '.'; })) {
    exact.significand.multiply_add(10, 1);
    --exact.exponent;
  }
  return exact;
}

// Decides between the double `lower` and the next one.
uint64_t nearer_neighbour(const DecimalNumber& number, uint64_t lower) {
  const uint64_t exponent_field = lower >> kFractionBits;
  const uint64_t hidden_bit = uint64_t{exponent_field != 0} << kFractionBits;
  const uint64_t significand = (lower & ((uint64_t{1} << kFractionBits) - 1)) | hidden_bit;
  BigInteger half_way(2 * significand + 1);
  const int64_t binary_exponent = static_cast<int64_t>(std::max<uint64_t>(exponent_field, 1)) -
                                  kExponentBias - kFractionBits - 1;

  // Decimal d * 10^q against h * 2^b, that is d * 5^q against h * 2^(b - q).
  ExactDecimal decimal = exact_decimal(number);
  if (decimal.exponent >= 0)
    decimal.significand.multiply_by_power_of_five(decimal.exponent);
  else
    half_way.multiply_by_power_of_five(-decimal.exponent);
  const int64_t shift = binary_exponent - decimal.exponent;
  if (shift >= 0)
    half_way.shift_left(shift);
  else
    decimal.significand.shift_left(-shift);

  const std::strong_ordering order = decimal.significand <=> half_way;
  return lower + (order > 0 || (order == 0 && (lower & 1) != 0));
}

}  // namespace

uint64_t nearest_double(const DecimalNumber& number) {
  const bool is_cut = number.first_digit != nullptr;
  if (number.significand == 0 || number.exponent < kLeastPower) return 0;
  if (number.exponent > 308) return kInfinityBits;
  const int q = static_cast<int>(number.exponent);
  const bool inexact = q < 0 || q > kGreatestExactPower;

  const auto nearest_to_product = [=](uint64_t significand, unsigned units) {
    const int zeros = std::countl_zero(significand);
    const Uint128 product = multiply_by_power_of_ten(significand << zeros, q) + units;
    return nearest_double(static_cast<uint64_t>(product >> 64),
                          inexact || static_cast<uint64_t>(product) != 0,
                          floor_log2_of_power_of_ten(q) + 1 - zeros);
  };
  const uint64_t lower = nearest_to_product(number.significand, 0);
  const uint64_t upper = nearest_to_product(number.significand + is_cut, inexact ? 2 : 0);
  return lower == upper ? lower : nearer_neighbour(number, lower);
}

}  // namespace tvx::numeric
