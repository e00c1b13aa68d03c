#include "numeric/powers_of_five.hpp"

namespace tvx::numeric {
namespace {

using Table = decltype(kPowersOfFive);

// Called during compilation only, where leaving the function by a throw is an error.
constexpr void store(std::remove_const_t<Table>& table, int q, const BigInteger& number,
                     int scale) {
  const Uint128 bits = number.leading_bits();
  table[static_cast<size_t>(q - kLeastPower)] = {static_cast<uint64_t>(bits >> 64),
                                                 static_cast<uint64_t>(bits)};
  const int floor_log2_of_power_of_five = number.bit_length() - 1 - scale;
  if (floor_log2_of_power_of_ten(q) != floor_log2_of_power_of_five + q) throw q;
}

// Upwards by multiplying 1, downwards by dividing 2^kScale: floor(floor(x / 5^n) / 5) = floor(x /
// 5^(n + 1)), so every quotient is exactly floor(2^kScale / 5^n), and its leading 128 bits are
// those of the true value as long as it has that many: kScale >= 128 + log2(5^342) = 128 + 794.1.
constexpr auto compute() {
  constexpr int kScale = 960;
  std::remove_const_t<Table> table{};
  BigInteger power(1);
  for (int q = 0; q <= kGreatestPower; ++q) {
    store(table, q, power, 0);
    power.multiply_add(5, 0);
  }
  BigInteger quotient(1);
  quotient.shift_left(kScale);
  for (int q = -1; q >= kLeastPower; --q) {
    quotient.divide(5);
    store(table, q, quotient, kScale);
  }
  return table;
}

}  // namespace

constexpr Table kPowersOfFive = compute();

}  // namespace tvx::numeric
